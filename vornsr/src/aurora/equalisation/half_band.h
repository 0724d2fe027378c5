// The split of a signal into two bands at half its rate.
//
// With E(n) the sum of the products of even taps and O(n) that of odd ones, the low band is E + O and the high band,
// the same filter modulated, O - E or E - O in turn: both bands take each product once. Samples of even and of odd
// index are dealt out to two streams, in which the samples of neighbouring outputs are neighbours.
#pragma once

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>

#include "frame/opaque.h"
#include "frame/wrap.h"
#include "simd/block.h"
#include "simd/simd.h"
#include "vornsr/types.h"

namespace vorn::half_band {

// Outputs that are made together, and words of taps that enter their sums together: whatever the lengths, the stack
// holds the streams.
inline constexpr std::ptrdiff_t blockOutputs = 256, chunkWords = 128;

// Singles: a word is a sample or a tap.
struct Singles {
    using Sample = Vorn32f;
    using Word = Vorn32f;
    using V = f32xN;
    static constexpr std::ptrdiff_t wordTaps = 1;
    static constexpr std::ptrdiff_t splitReads = 2 * V::lanes;

    static VORN_INLINE void split(const Sample* p, V& even, V& odd) { loadPairs(p, even, odd); }
    // One word of a stream, p its first sample and the next one two behind it, of which so many are left.
    static VORN_INLINE Word word(const Sample* p, std::ptrdiff_t left) { return left > 0 ? *p : 0.0f; }
    static VORN_INLINE V product(V samples, V taps) { return samples * taps; }
};

// 16-bit integers: a word is two neighbours of a stream, and two taps of one.
struct Shorts {
    using Sample = Vorn16s;
    using Word = std::int32_t;
    using V = i32xN;
    static constexpr std::ptrdiff_t wordTaps = 2;
    static constexpr std::ptrdiff_t splitReads = 2 * V::lanes + 2;

    static VORN_INLINE void split(const Sample* p, V& even, V& odd) {
        const V here = intsOf(load<i16xN>(p)), next = intsOf(load<i16xN>(p + 2));
        const V low = splat<V>(0xFFFF);
        even = (here & low) | shiftLeft<16>(next);
        odd = shiftRightLogical<16>(here) | andNot(low, next);
    }
    static VORN_INLINE Word word(const Sample* p, std::ptrdiff_t left) {
        const std::uint32_t first = left > 0 ? static_cast<std::uint32_t>(p[0]) & 0xFFFF : 0;
        const std::uint32_t second = left > 2 ? static_cast<std::uint32_t>(p[2]) : 0;
        return static_cast<std::int32_t>(first | second << 16);
    }
    static VORN_INLINE V product(V samples, V taps) { return mulAddPairs(shortsOf(samples), shortsOf(taps)); }
};

// The words of the two streams of samples. Behind the last sample they hold zeros, so that vectors may end there.
template <class Arithmetic>
struct Streams {
    using V = typename Arithmetic::V;
    static constexpr std::ptrdiff_t words = blockOutputs + Arithmetic::wordTaps * chunkWords + V::lanes;
    alignas(64) typename Arithmetic::Word even[words];
    alignas(64) typename Arithmetic::Word odd[words];

    // The words 0 to count - 1, of which those behind the samples are less than two vectors.
    void fill(const typename Arithmetic::Sample* src, std::ptrdiff_t samples, std::ptrdiff_t count) {
        const std::ptrdiff_t last = (samples - Arithmetic::splitReads) / 2;
        std::ptrdiff_t m = 0;
        if (samples >= Arithmetic::splitReads) {
            for (; m < last; m += V::lanes) fillVector(src + 2 * m, m);
            fillVector(src + 2 * last, last);
            m = last + V::lanes;
        }
        for (std::ptrdiff_t rest = m; rest < count; rest += V::lanes) {
            store(even + rest, splat<V>(0));
            store(odd + rest, splat<V>(0));
        }
        for (; 2 * m < samples; ++m) {
            even[m] = Arithmetic::word(src + 2 * m, samples - 2 * m);
            odd[m] = Arithmetic::word(src + 2 * m + 1, samples - 2 * m - 1);
        }
    }

private:
    VORN_INLINE void fillVector(const typename Arithmetic::Sample* p, std::ptrdiff_t m) {
        V evens, odds;
        Arithmetic::split(p, evens, odds);
        store(even + m, evens);
        store(odd + m, odds);
    }
};

// The words of a chunk of taps; an odd number of taps may have an even word more.
template <class Arithmetic>
struct Taps {
    static constexpr std::ptrdiff_t most = 2 * Arithmetic::wordTaps * chunkWords;
    typename Arithmetic::Word even[chunkWords], odd[chunkWords];
    std::ptrdiff_t evenCount, oddCount;
};

VORN_INLINE void deal(const Vorn32f* taps, std::ptrdiff_t count, Taps<Singles>& dealt) {
    dealt.evenCount = (count + 1) / 2;
    dealt.oddCount = count / 2;
    for (std::ptrdiff_t k = 0; k < dealt.evenCount; ++k) dealt.even[k] = taps[2 * k];
    for (std::ptrdiff_t k = 0; k < dealt.oddCount; ++k) dealt.odd[k] = taps[2 * k + 1];
}
// part(tap) is what of a tap counts. Zeros fill up the last words, and as integers multiply whatever stands there.
template <class Part>
VORN_INLINE void deal(const Vorn16s* taps, std::ptrdiff_t count, Taps<Shorts>& dealt, Part part) {
    const auto word = [=](const Vorn16s* tap, std::ptrdiff_t left) {
        const Vorn16s parts[3] = {part(left > 0 ? tap[0] : Vorn16s{0}), 0, part(left > 2 ? tap[2] : Vorn16s{0})};
        return Shorts::word(parts, 3);
    };
    dealt.evenCount = dealt.oddCount = (count + 3) / 4;
    for (std::ptrdiff_t k = 0; k < dealt.evenCount; ++k) {
        dealt.even[k] = word(taps + 4 * k, count - 4 * k);
        dealt.odd[k] = word(taps + 4 * k + 1, count - 4 * k - 1);
    }
}

// Sums of products, of even and of odd taps.
template <class Arithmetic>
struct Sums {
    alignas(64) typename Arithmetic::Word even[blockOutputs + 2 * Arithmetic::V::lanes];
    alignas(64) typename Arithmetic::Word odd[blockOutputs + 2 * Arithmetic::V::lanes];
};

// Adds the products of a chunk to the sums of some vectors of outputs from output n on, the taps in their order.
template <class Arithmetic, int vectors>
VORN_INLINE void addProducts(const Streams<Arithmetic>& samples, const Taps<Arithmetic>& taps, std::ptrdiff_t n,
                             bool first, Sums<Arithmetic>& sums) {
    using V = typename Arithmetic::V;
    V even[vectors], odd[vectors];
    const V zero = splat<V>(opaque(typename Arithmetic::Word{0}));
#pragma GCC unroll 4
    for (int i = 0; i < vectors; ++i) {
        even[i] = first ? zero : load<V>(sums.even + n + i * V::lanes);
        odd[i] = first ? zero : load<V>(sums.odd + n + i * V::lanes);
    }
    const auto* evenSamples = samples.even + n;
    const auto* oddSamples = samples.odd + n;
    std::ptrdiff_t k = 0;
    for (; k < taps.oddCount; ++k, evenSamples += Arithmetic::wordTaps, oddSamples += Arithmetic::wordTaps) {
        const V evenTap = splat<V>(taps.even[k]), oddTap = splat<V>(taps.odd[k]);
#pragma GCC unroll 4
        for (int i = 0; i < vectors; ++i) {
            even[i] = even[i] + Arithmetic::product(load<V>(evenSamples + i * V::lanes), evenTap);
            odd[i] = odd[i] + Arithmetic::product(load<V>(oddSamples + i * V::lanes), oddTap);
        }
    }
    if (k < taps.evenCount) {
        const V evenTap = splat<V>(taps.even[k]);
#pragma GCC unroll 4
        for (int i = 0; i < vectors; ++i) {
            even[i] = even[i] + Arithmetic::product(load<V>(evenSamples + i * V::lanes), evenTap);
        }
    }
#pragma GCC unroll 4
    for (int i = 0; i < vectors; ++i) {
        store(sums.even + n + i * V::lanes, even[i]);
        store(sums.odd + n + i * V::lanes, odd[i]);
    }
}
// The same for a block of outputs.
template <class Arithmetic>
void addProducts(const Streams<Arithmetic>& samples, const Taps<Arithmetic>& taps, std::ptrdiff_t outputs, bool first,
                 Sums<Arithmetic>& sums) {
    constexpr std::ptrdiff_t lanes = Arithmetic::V::lanes;
    // Two vectors and more at a time: one alone would wait for its own sums.
    for (std::ptrdiff_t n = 0; n < outputs;) {
        const std::ptrdiff_t left = (outputs - n + lanes - 1) / lanes;
        if (left == 1) {
            addProducts<Arithmetic, 1>(samples, taps, n, first, sums);
            n += lanes;
        } else if (left == 2) {
            addProducts<Arithmetic, 2>(samples, taps, n, first, sums);
            n += 2 * lanes;
        } else if (left == 3 || left == 5) {
            addProducts<Arithmetic, 3>(samples, taps, n, first, sums);
            n += 3 * lanes;
        } else {
            addProducts<Arithmetic, 4>(samples, taps, n, first, sums);
            n += 4 * lanes;
        }
    }
}

// The samples of a block of outputs and a chunk of so many taps.
template <class Arithmetic>
VORN_INLINE void fill(Streams<Arithmetic>& samples, const typename Arithmetic::Sample* src, std::ptrdiff_t outputs,
                      std::ptrdiff_t count) {
    constexpr std::ptrdiff_t lanes = Arithmetic::V::lanes, wordTaps = Arithmetic::wordTaps;
    const std::ptrdiff_t sumLanes = (outputs + lanes - 1) / lanes * lanes;
    const std::ptrdiff_t tapWords = ((count + 1) / 2 + wordTaps - 1) / wordTaps;
    samples.fill(src, 2 * outputs + count - 2, sumLanes + (tapWords - 1) * wordTaps);
}

// x, the odd lanes with their sign changed.
VORN_INLINE f32xN alternating(f32xN x) { return x ^ std::bit_cast<f32xN>(splat<i64xN>(std::int64_t{1} << 63)); }
VORN_INLINE i32xN alternating(i32xN x) {
    const auto odd = std::bit_cast<i32xN>(splat<i64xN>(~std::int64_t{0xFFFFFFFF}));
    return (x ^ odd) - odd;
}

// One block of outputs.

inline void splitBlock(const Vorn32f* src, std::ptrdiff_t outputs, const Vorn32f* taps, std::ptrdiff_t tapsLen,
                       Vorn32f* low, Vorn32f* high) {
    Streams<Singles> samples;
    Taps<Singles> dealt;
    Sums<Singles> sums;
    for (std::ptrdiff_t t = 0; t < tapsLen; t += dealt.most) {
        const std::ptrdiff_t count = std::min(tapsLen - t, dealt.most);
        fill(samples, src + t, outputs, count);
        deal(taps + t, count, dealt);
        addProducts(samples, dealt, outputs, t == 0, sums);
    }
    for (std::ptrdiff_t n = 0; n < outputs; n += f32xN::lanes) {
        const f32xN even = load<f32xN>(sums.even + n), odd = load<f32xN>(sums.odd + n);
        storeUpTo(low + n, even + odd, outputs - n);
        storeUpTo(high + n, alternating(odd) - alternating(even), outputs - n);
    }
}

// The magnitudes of these taps add up to so little that no sum of their products leaves 32 bits.
inline bool fitIn32(const Vorn16s* taps, std::ptrdiff_t count) {
    std::int32_t sum = 0;
    for (std::ptrdiff_t k = 0; k < count; ++k) sum += taps[k] < 0 ? -taps[k] : taps[k];
    return sum <= 65535;
}

// The sums of all products in 32 bits; the scale factor is not negative.
inline void splitBlock32(const Vorn16s* src, std::ptrdiff_t outputs, const Vorn16s* taps, std::ptrdiff_t tapsLen,
                         int scaleFactor, Vorn16s* low, Vorn16s* high) {
    Streams<Shorts> samples;
    Taps<Shorts> dealt;
    Sums<Shorts> sums;
    fill(samples, src, outputs, tapsLen);
    deal(taps, tapsLen, dealt, [](Vorn16s tap) { return tap; });
    addProducts(samples, dealt, outputs, true, sums);
    const int shift = scaleFactor & 63;
    for (std::ptrdiff_t n = 0; n < outputs; n += i16xN::lanes) {
        const auto scaled = [&](auto bandOf) __attribute__((always_inline)) {
            const auto half = [&](std::ptrdiff_t at) __attribute__((always_inline)) {
                return shiftRight(bandOf(load<i32xN>(sums.even + at), load<i32xN>(sums.odd + at)), shift);
            };
            return narrowSat(half(n), half(n + i32xN::lanes));
        };
        storeUpTo(low + n, scaled([](i32xN even, i32xN odd) __attribute__((always_inline)) { return even + odd; }),
                  outputs - n);
        storeUpTo(high + n,
                  scaled([](i32xN even, i32xN odd) __attribute__((always_inline)) { return alternating(odd - even); }),
                  outputs - n);
    }
}

VORN_INLINE Vorn16s scaled(std::int64_t sum, int scaleFactor) {
    return saturate<Vorn16s>(scaleFactor > 0
                                 ? shiftRight64(sum, scaleFactor)
                                 : shiftLeft64(sum, static_cast<int>(0u - static_cast<unsigned>(scaleFactor))));
}

// Any taps, any scale factor: of a chunk whose sums may leave 32 bits, the taps go in as two digits.
inline void splitBlock64(const Vorn16s* src, std::ptrdiff_t outputs, const Vorn16s* taps, std::ptrdiff_t tapsLen,
                         int scaleFactor, Vorn16s* low, Vorn16s* high) {
    Streams<Shorts> samples;
    Taps<Shorts> dealt;
    Sums<Shorts> sums;
    std::int64_t lowSums[blockOutputs], highSums[blockOutputs];
    std::fill_n(lowSums, outputs, 0);
    std::fill_n(highSums, outputs, 0);
    const auto addSums = [&](std::int64_t weight) {
        addProducts(samples, dealt, outputs, true, sums);
        for (std::ptrdiff_t n = 0; n < outputs; ++n) {
            const std::int64_t even = sums.even[n], odd = sums.odd[n];
            lowSums[n] += (even + odd) * weight;
            highSums[n] += (odd - even) * weight;
        }
    };
    for (std::ptrdiff_t t = 0; t < tapsLen; t += dealt.most) {
        const std::ptrdiff_t count = std::min(tapsLen - t, dealt.most);
        fill(samples, src + t, outputs, count);
        if (fitIn32(taps + t, count)) {
            deal(taps + t, count, dealt, [](Vorn16s tap) { return tap; });
            addSums(1);
        } else {
            // The digits of a chunk are small enough: 256 x 255 < 65536.
            static_assert(dealt.most / 2 * 255 < 65536);
            deal(taps + t, count, dealt, [](Vorn16s tap) { return static_cast<Vorn16s>(tap & 255); });
            addSums(1);
            deal(taps + t, count, dealt, [](Vorn16s tap) { return static_cast<Vorn16s>(tap >> 8); });
            addSums(256);
        }
    }
    for (std::ptrdiff_t n = 0; n < outputs; ++n) {
        low[n] = scaled(lowSums[n], scaleFactor);
        high[n] = scaled(n % 2 != 0 ? -highSums[n] : highSums[n], scaleFactor);
    }
}

// So few products that vectors would take longer to fill than to use. Sums in 64 bits cost more.
constexpr bool areFew(std::ptrdiff_t outputs, std::ptrdiff_t tapsLen, bool in64Bits = false) {
    return outputs < 16 && outputs * tapsLen <= (in64Bits ? 256 : 64);
}

template <class Sum, class T, class Store>
VORN_INLINE void splitFew(const T* src, std::ptrdiff_t outputs, const T* taps, std::ptrdiff_t tapsLen, T* low, T* high,
                          Store stored) {
    for (std::ptrdiff_t n = 0; n < outputs; ++n, src += 2) {
        Sum even = opaque(Sum{0}), odd = even;
        for (std::ptrdiff_t k = 0; k + 1 < tapsLen; k += 2) {
            even += static_cast<Sum>(src[k]) * static_cast<Sum>(taps[k]);
            odd += static_cast<Sum>(src[k + 1]) * static_cast<Sum>(taps[k + 1]);
        }
        if (tapsLen % 2 != 0) even += static_cast<Sum>(src[tapsLen - 1]) * static_cast<Sum>(taps[tapsLen - 1]);
        low[n] = stored(even + odd);
        high[n] = stored(n % 2 != 0 ? even - odd : odd - even);
    }
}

// block(src, outputs, at) for blocks of outputs, which begin at output `at`, an even one.
template <class T, class Block>
VORN_INLINE void overBlocks(const T* src, int len, Block block) {
    for (std::ptrdiff_t n = 0; n < len / 2; n += blockOutputs) {
        block(src + 2 * n, std::min<std::ptrdiff_t>(len / 2 - n, blockOutputs), n);
    }
}

}  // namespace vorn::half_band
