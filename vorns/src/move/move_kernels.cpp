// Block moves stand on the C library, fills on one loop for every width of element; conjugation is a change of bits.
#include "move/move_kernels.h"

#include <bit>
#include <cstring>
#include <type_traits>

#include "frame/wrap.h"
#include "loops/elementwise.h"
#include "loops/operands.h"
#include "simd/short_block.h"
#include "simd/simd.h"

namespace vorn {
namespace {

// From here on the processor's string store is as fast as wide stores in the cache and faster outside it.
constexpr std::int64_t stringBytes = 128 * i8xN::lanes;

// len is a whole number of patterns of period bytes; even and odd are the pattern, repeated to 16 bytes.
template <int period>
VORN_INLINE void fill(std::int64_t even, std::int64_t odd, Vorn8u* dst, std::int64_t len) {
    constexpr std::int64_t lanes = i64xN::lanes, size = 8 * lanes;
    if (len <= shortBytes) return fillShort(even, odd, dst, len);

    const i64xN pattern = splatPair<i64xN>(even, odd);
    auto at = [dst](std::int64_t i) { return reinterpret_cast<std::int64_t*>(dst + i); };
    const std::int64_t end = len - size;
    if (end < 8 * size) {
        for (std::int64_t i = 0; i < end; i += size) store(at(i), pattern);
        store(at(end), pattern);
        return;
    }
    // At a register's boundary the pattern may begin in its middle: what the first registers hold shows how.
    store(at(0), pattern);
    store(at(size), pattern);
    std::int64_t i = elementsToBoundary(dst, size);
    const auto turned = load<i64xN>(at(i));
    if (bypassesCache(len)) {
        for (; i < end; i += size) storeStream(at(i), turned);
        storeFence();
    } else if (period <= 8 && len >= stringBytes) {
        fillString(reinterpret_cast<std::uint64_t*>(at(i)), static_cast<std::uint64_t>(firstLane(load<i64x2>(at(i)))),
                   (len - i) / 8);
    } else {
        for (; i + 4 * size <= len; i += 4 * size) {
            store(at(i), turned);
            store(at(i + size), turned);
            store(at(i + 2 * size), turned);
            store(at(i + 3 * size), turned);
        }
        for (; i < end; i += size) store(at(i), turned);
    }
    store(at(end), pattern);
}

template <int period>
VORN_INLINE void fill(std::int64_t word, void* dst, std::int64_t len) {
    fill<period>(word, word, static_cast<Vorn8u*>(dst), len);
}

// What conjugation does to whole registers: elements are seen as integers of the width that the change needs.

struct Conjugate16sc {
    using Element = std::int16_t;
    static constexpr int perComplex = 2;
    // With all bits of the imaginary lanes set in m, (x ^ m) - m negates them; -32768 saturates to 32767.
    template <class V>
    static V of(V x) {
        const V m = std::bit_cast<V>(splat<i32xN>(static_cast<std::int32_t>(0xFFFF0000)));
        return subSat(x ^ m, m);
    }
    template <class V>
    static V reversed(V x) {
        return std::bit_cast<V>(reverse(std::bit_cast<i32xN>(x)));
    }
    static Vorn16sc of(Vorn16sc x) { return {x.re, saturate<Vorn16s>(-x.im)}; }
};

constexpr std::uint32_t sign32 = 0x80000000;
constexpr std::uint64_t sign64 = 0x8000000000000000;

struct Conjugate32fc {
    using Element = std::int64_t;
    static constexpr int perComplex = 1;
    static i64xN of(i64xN x) { return x ^ splat<i64xN>(static_cast<std::int64_t>(sign64)); }
    static i64xN reversed(i64xN x) { return reverse(x); }
    static Vorn32fc of(Vorn32fc x) {
        return {x.re, std::bit_cast<Vorn32f>(std::bit_cast<std::uint32_t>(x.im) ^ sign32)};
    }
};

struct Conjugate64fc {
    using Element = std::int64_t;
    static constexpr int perComplex = 2;
    static i64xN of(i64xN x) { return x ^ splatPair<i64xN>(0, static_cast<std::int64_t>(sign64)); }
    static i64xN reversed(i64xN x) { return reversePairs(x); }
    static Vorn64fc of(Vorn64fc x) {
        return {x.re, std::bit_cast<Vorn64f>(std::bit_cast<std::uint64_t>(x.im) ^ sign64)};
    }
};

template <class Change, class T, bool reversing>
struct ConjugateKernel {
    using Element = typename Change::Element;
    using V = Wide<Element>;
    static constexpr std::int64_t step = V::lanes / Change::perComplex;
    static constexpr bool unrolled = true;
    const T* src;
    T* dst;
    std::int64_t len;

    V at(std::int64_t i) const {
        const std::int64_t first = reversing ? len - step - i : i;
        const V x = load<V>(reinterpret_cast<const Element*>(src + first));
        return Change::of(reversing ? Change::reversed(x) : x);
    }
    void put(std::int64_t i, V x) const { store(reinterpret_cast<Element*>(dst + i), x); }
    void putPastCache(std::int64_t i, V x) const { storeStream(reinterpret_cast<Element*>(dst + i), x); }
    void part(std::int64_t n) const {
        if constexpr (step > 4 && !reversing) {
            using Whole = Wide<std::conditional_t<sizeof(T) == 4, std::int32_t, std::int64_t>>;
            constexpr std::int64_t words = sizeof(T) / sizeof(typename Whole::Element);
            const auto x = loadFirst<Whole>(reinterpret_cast<const typename Whole::Element*>(src), words * n);
            storeFirst(reinterpret_cast<typename Whole::Element*>(dst),
                       std::bit_cast<Whole>(Change::of(std::bit_cast<V>(x))), words * n);
            return;
        }
        for (std::int64_t i = 0; i < n; ++i) dst[i] = Change::of(src[reversing ? n - 1 - i : i]);
    }
    T* result() const { return dst; }
};

template <class Change, bool reversing, class T>
VORN_INLINE void applyConjugate(const T* src, T* dst, std::int64_t len) {
    forEachStep(len, ConjugateKernel<Change, T, reversing>{src, dst, len});
}

}  // namespace

void conjugate(const Vorn16sc* src, Vorn16sc* dst, std::int64_t len) {
    applyConjugate<Conjugate16sc, false>(src, dst, len);
}
void conjugate(const Vorn32fc* src, Vorn32fc* dst, std::int64_t len) {
    applyConjugate<Conjugate32fc, false>(src, dst, len);
}
void conjugate(const Vorn64fc* src, Vorn64fc* dst, std::int64_t len) {
    applyConjugate<Conjugate64fc, false>(src, dst, len);
}

void conjugateReversed(const Vorn16sc* src, Vorn16sc* dst, std::int64_t len) {
    applyConjugate<Conjugate16sc, true>(src, dst, len);
}
void conjugateReversed(const Vorn32fc* src, Vorn32fc* dst, std::int64_t len) {
    applyConjugate<Conjugate32fc, true>(src, dst, len);
}
void conjugateReversed(const Vorn64fc* src, Vorn64fc* dst, std::int64_t len) {
    applyConjugate<Conjugate64fc, true>(src, dst, len);
}

}  // namespace vorn

using namespace vorn;

void ownsMove_8u_M7(const Vorn8u* src, Vorn8u* dst, std::int64_t len) {
    if (len <= shortBytes) return moveShort(src, dst, len);
    std::memmove(dst, src, static_cast<std::size_t>(len));
}

void ownsSet_8u_M7(Vorn8u val, Vorn8u* dst, std::int64_t len) {
    const std::int64_t word = static_cast<std::int64_t>(val * 0x0101010101010101u);
    if (len <= shortBytes || bypassesCache(len)) return fill<1>(word, dst, len);
    std::memset(dst, val, static_cast<std::size_t>(len));
}

void ownsSet_16u_M7(Vorn16u val, Vorn16u* dst, std::int64_t len) {
    fill<2>(static_cast<std::int64_t>(val * 0x0001000100010001u), dst, 2 * len);
}

void ownsSet_32s_M7(Vorn32s val, Vorn32s* dst, std::int64_t len) {
    fill<4>(static_cast<std::int64_t>(static_cast<std::uint32_t>(val) * 0x0000000100000001u), dst, 4 * len);
}

void ownsSet_64s_M7(Vorn64s val, Vorn64s* dst, std::int64_t len) { fill<8>(val, dst, 8 * len); }

void ownsSet_64sc_M7(Vorn64sc val, Vorn64sc* dst, std::int64_t len) {
    fill<16>(val.re, val.im, reinterpret_cast<Vorn8u*>(dst), 16 * len);
}

void ownsConjExtend_16sc_M7(const Vorn16sc* src, Vorn16sc* dst, std::int64_t len) {
    const std::int64_t mirrored = (len - 1) / 2;
    if (src != dst) std::memcpy(dst, src, static_cast<std::size_t>(len / 2 + 1) * sizeof *dst);
    if (mirrored > 0) conjugateReversed(dst + 1, dst + len - mirrored, mirrored);
}
