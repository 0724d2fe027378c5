// Blind equalisation of cepstra: a bias that pulls the mean towards a reference is taken off and follows. The exported
// functions, and their arithmetic.
#include <algorithm>
#include <cstdint>

#include "frame/checks.h"
#include "loops/elementwise.h"
#include "simd/part.h"
#include "simd/simd.h"
#include "vornsr/aurora.h"

namespace vorn::equalisation {
namespace {

// A register of both results.
template <class V>
struct Equalised {
    V value, bias;
};

// How far the bias moves: less in quiet frames, and not at all in silence. An energy that is none is silence.
Vorn32f stepOf(Vorn32f energy) {
    const Vorn32f above = energy - 211.0f / 64;
    const Vorn32f notBelow = above > 0 ? above : 0;
    return (notBelow < 1 ? notBelow : 1) * (9.0f / 1024);
}

// What a step does to registers V of the three arrays.
template <class V>
struct SingleStep {
    V step;
    VORN_INLINE explicit SingleStep(Vorn32f energy) : step(splat<V>(stepOf(energy))) {}
    VORN_INLINE Equalised<V> operator()(V ref, V x, V bias) const {
        const V value = x - bias;
        return {value, (value - ref) * step + bias};
    }
};

// The difference c - ref has 18 bits: its product with the step is formed of those of x, bias and ref, in 32 bits. Each
// result saturates by itself.
template <class V>
struct ShortStep {
    using Sum = decltype(intsOf(V{}));
    V ofValue, ofRef;  // the factors of the pairs x, bias and ref, 0
    VORN_INLINE explicit ShortStep(int energy) {
        const auto loudness = std::clamp<std::int64_t>(std::int64_t{energy} - 211, 0, 64);
        const auto step = static_cast<std::uint32_t>(9 * loudness), opposite = (0 - step) & 0xFFFFu;
        ofValue = shortsOf(splat<Sum>(static_cast<std::int32_t>(opposite << 16 | step)));
        ofRef = shortsOf(splat<Sum>(static_cast<std::int32_t>(opposite)));
    }
    VORN_INLINE Equalised<V> operator()(V ref, V x, V bias) const {
        const Halves<Sum> value = zip(x, bias), reference = zip(ref, splat<V>(0));
        const V change = joinSat(Halves<Sum>{changeOf(value.low, reference.low),  //
                                             changeOf(value.high, reference.high)});
        return {subSat(x, bias), addSat(bias, change)};
    }

private:
    VORN_INLINE Sum changeOf(Sum value, Sum ref) const {
        return shiftRight<16>(mulAddPairs(shortsOf(value), ofValue) + mulAddPairs(shortsOf(ref), ofRef));
    }
};

// The element loop's kernel. Cepstra are short, and are used again at once: the cache is never passed by.
template <class Step, class T, class V>
struct EqualiseLoop {
    static constexpr std::int64_t step = V::lanes;
    static constexpr bool unrolled = false;
    Step equalised;
    const T* ref;
    T *srcDst, *bias;

    VORN_INLINE auto at(std::int64_t i) const {
        return equalised(load<V>(ref + i), load<V>(srcDst + i), load<V>(bias + i));
    }
    VORN_INLINE void put(std::int64_t i, const Equalised<V>& x) const {
        store(srcDst + i, x.value);
        store(bias + i, x.bias);
    }
    VORN_INLINE void part(std::int64_t n) const {
        const auto x = equalised(loadPart<V>(ref, n), loadPart<V>(srcDst, n), loadPart<V>(bias, n));
        storePart(srcDst, x.value, n);
        storePart(bias, x.bias, n);
    }
    T* result() const { return srcDst; }
};

// A cepstrum that does not fill a register may fill one of 16 bytes.
template <template <class> class Step, class Short, class T, class Energy>
void equalise(const T* ref, T* srcDst, T* bias, std::int64_t len, Energy energy) {
    using V = Wide<T>;
    if (V::lanes > Short::lanes && len >= Short::lanes && len < V::lanes) {
        stepsInCache(len, EqualiseLoop<Step<Short>, T, Short>{Step<Short>(energy), ref, srcDst, bias});
    } else {
        const EqualiseLoop<Step<V>, T, V> loop{Step<V>(energy), ref, srcDst, bias};
        len < V::lanes ? loop.part(len) : stepsInCache(len, loop);
    }
}

}  // namespace
}  // namespace vorn::equalisation

using namespace vorn;

VornStatus vornsBlindEqualization_Aurora_32f(const Vorn32f* ref, Vorn32f* srcDst, Vorn32f* bias, int len,
                                             Vorn32f energy) {
    VORN_CHECK(notNull(ref, srcDst, bias));
    VORN_CHECK(positive(len));
    equalisation::equalise<equalisation::SingleStep, f32x4>(ref, srcDst, bias, len, energy);
    return vornStsNoErr;
}

VornStatus vornsBlindEqualization_Aurora_16s(const Vorn16s* ref, Vorn16s* srcDst, Vorn16s* bias, int len, int energy) {
    VORN_CHECK(notNull(ref, srcDst, bias));
    VORN_CHECK(positive(len));
    equalisation::equalise<equalisation::ShortStep, i16x8>(ref, srcDst, bias, len, energy);
    return vornStsNoErr;
}
