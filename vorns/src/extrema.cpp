// Largest and smallest elements of vectors, with and without their index, and of two vectors element by element.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <type_traits>

#include "frame/checks.h"
#include "simd.h"
#include "vornsr/signal.h"

namespace vorn {
namespace {

// `strictly` is the rule of a scan that keeps its first element until a strictly better one comes; `keep` is the same
// for lanes: x replaces best only where it is better, so equal lanes and not-a-numbers change nothing.
struct Largest {
    template <class T>
    static bool strictly(T x, T best) {
        return x > best;
    }
    template <class V>
    static VORN_INLINE V keep(V x, V best) {
        return maxOf(x, best);
    }
};
struct Smallest {
    template <class T>
    static bool strictly(T x, T best) {
        return x < best;
    }
    template <class V>
    static VORN_INLINE V keep(V x, V best) {
        return minOf(x, best);
    }
};

// How elements become lanes whose order is theirs: unsigned numbers with their top bit turned.
template <class Element>
struct Ordered {
    using V = Wide<Element>;
    static VORN_INLINE V load(const Element* p) { return vorn::load<V>(p); }
    static VORN_INLINE V splat(Element x) { return vorn::splat<V>(x); }
    static Element element(typename V::Element x) { return x; }
};
template <class Element, class Signed>
struct OrderedUnsigned {
    using V = Wide<Signed>;
    static constexpr Signed top = std::numeric_limits<Signed>::min();
    static VORN_INLINE V load(const Element* p) {
        return vorn::load<V>(reinterpret_cast<const Signed*>(p)) ^ vorn::splat<V>(top);
    }
    static VORN_INLINE V splat(Element x) { return vorn::splat<V>(static_cast<Signed>(static_cast<Signed>(x) ^ top)); }
    static Element element(Signed x) { return static_cast<Element>(x ^ top); }
};
template <>
struct Ordered<Vorn16u> : OrderedUnsigned<Vorn16u, Vorn16s> {};
template <>
struct Ordered<Vorn32u> : OrderedUnsigned<Vorn32u, Vorn32s> {};

// The best of `best` and the elements, up to the sign of a zero.
template <class Better, class Element>
Element bestOf(const Element* src, std::ptrdiff_t len, Element best) {
    using Lanes = Ordered<Element>;
    using V = typename Lanes::V;
    constexpr int step = 4 * V::lanes;
    std::ptrdiff_t i = 0;
    if (len >= V::lanes) {
        V lanes[4] = {Lanes::splat(best), Lanes::splat(best), Lanes::splat(best), Lanes::splat(best)};
        for (; i + step <= len; i += step) {
            for (int k = 0; k < 4; ++k) lanes[k] = Better::keep(Lanes::load(src + i + k * V::lanes), lanes[k]);
        }
        for (; i + V::lanes <= len; i += V::lanes) lanes[0] = Better::keep(Lanes::load(src + i), lanes[0]);
        const V all = Better::keep(Better::keep(lanes[3], lanes[2]), Better::keep(lanes[1], lanes[0]));
        typename V::Element lane[V::lanes];
        store(lane, all);
        for (auto x : lane) {
            if (Better::strictly(Lanes::element(x), best)) best = Lanes::element(x);
        }
    }
    for (; i < len; ++i) {
        if (Better::strictly(src[i], best)) best = src[i];
    }
    return best;
}

// Bytes: the even and the odd ones as 16-bit lanes.
template <class Better>
Vorn8u bestOf(const Vorn8u* src, std::ptrdiff_t len, Vorn8u best) {
    constexpr int step = 2 * i16xN::lanes;
    std::ptrdiff_t i = 0;
    if (len >= step) {
        i16xN even = splat<i16xN>(best), odd = even;
        for (; i + step <= len; i += step) {
            const i16xN both = load<i16xN>(reinterpret_cast<const Vorn16s*>(src + i));
            even = Better::keep(both & splat<i16xN>(0xFF), even);
            odd = Better::keep(shiftRightLogical<8>(both), odd);
        }
        Vorn16s lane[i16xN::lanes];
        store(lane, Better::keep(odd, even));
        for (Vorn16s x : lane) {
            if (Better::strictly(x, Vorn16s{best})) best = static_cast<Vorn8u>(x);
        }
    }
    for (; i < len; ++i) {
        if (Better::strictly(src[i], best)) best = src[i];
    }
    return best;
}

// The first element that compares equal.
template <class Element>
std::ptrdiff_t firstEqual(const Element* src, std::ptrdiff_t len, Element value) {
    using V = Wide<Element>;
    std::ptrdiff_t i = 0;
    for (; i + V::lanes <= len; i += V::lanes) {
        if (any(load<V>(src + i) == splat<V>(value))) break;
    }
    for (; i < len; ++i) {
        if (src[i] == value) return i;
    }
    return 0;  // a not-a-number in front, which nothing replaces
}

// What the plain scan finds. Lanes do not keep the order of zeros of both signs: the first zero decides.
template <class Better, class Element>
Element extreme(const Element* src, std::ptrdiff_t len) {
    const Element best = bestOf<Better>(src, len, src[0]);
    if constexpr (std::is_floating_point_v<Element>) {
        if (best == 0) return src[firstEqual(src, len, best)];
    }
    return best;
}

// Blocks are scanned for their best value; the index is looked for in the one block that holds the best of all.
template <class Better, class Element>
VornStatus extremeWithIndex(const Element* src, std::ptrdiff_t len, Element* result, int* index) {
    if (index == nullptr) {
        *result = extreme<Better>(src, len);
        return vornStsNoErr;
    }
    constexpr std::ptrdiff_t block = 4096;
    Element best = src[0];
    std::ptrdiff_t bestBlock = 0;
    for (std::ptrdiff_t i = 0; i < len; i += block) {
        const Element ofBlock = bestOf<Better>(src + i, std::min(block, len - i), best);
        if (Better::strictly(ofBlock, best)) {
            best = ofBlock;
            bestBlock = i;
        }
    }
    const std::ptrdiff_t at = bestBlock + firstEqual(src + bestBlock, std::min(block, len - bestBlock), best);
    *result = src[at];
    *index = static_cast<int>(at);
    return vornStsNoErr;
}

template <class Better, class Element>
VornStatus everyBetter(const Element* src, Element* srcDst, std::ptrdiff_t len) {
    using V = Wide<Element>;
    std::ptrdiff_t i = 0;
    for (; i + V::lanes <= len; i += V::lanes) store(srcDst + i, Better::keep(load<V>(src + i), load<V>(srcDst + i)));
    if (i < len) {
        const std::ptrdiff_t n = len - i;
        storeFirst(srcDst + i, Better::keep(loadFirst<V>(src + i, n), loadFirst<V>(srcDst + i, n)), n);
    }
    return vornStsNoErr;
}

}  // namespace
}  // namespace vorn

using namespace vorn;

VornStatus vornsMax_16s(const Vorn16s* src, int len, Vorn16s* result) {
    VORN_CHECK(notNull(src, result));
    VORN_CHECK(positive(len));
    *result = extreme<Largest>(src, len);
    return vornStsNoErr;
}

VornStatus vornsMax_32f(const Vorn32f* src, int len, Vorn32f* result) {
    VORN_CHECK(notNull(src, result));
    VORN_CHECK(positive(len));
    *result = extreme<Largest>(src, len);
    return vornStsNoErr;
}

VornStatus vornsMax_64f(const Vorn64f* src, int len, Vorn64f* result) {
    VORN_CHECK(notNull(src, result));
    VORN_CHECK(positive(len));
    *result = extreme<Largest>(src, len);
    return vornStsNoErr;
}

VornStatus vornsMin_16s(const Vorn16s* src, int len, Vorn16s* result) {
    VORN_CHECK(notNull(src, result));
    VORN_CHECK(positive(len));
    *result = extreme<Smallest>(src, len);
    return vornStsNoErr;
}

VornStatus vornsMin_32f(const Vorn32f* src, int len, Vorn32f* result) {
    VORN_CHECK(notNull(src, result));
    VORN_CHECK(positive(len));
    *result = extreme<Smallest>(src, len);
    return vornStsNoErr;
}

VornStatus vornsMin_64f(const Vorn64f* src, int len, Vorn64f* result) {
    VORN_CHECK(notNull(src, result));
    VORN_CHECK(positive(len));
    *result = extreme<Smallest>(src, len);
    return vornStsNoErr;
}

VornStatus vornsMinMax_8u(const Vorn8u* src, int len, Vorn8u* min, Vorn8u* max) {
    VORN_CHECK(notNull(src, min, max));
    VORN_CHECK(positive(len));
    const Vorn8u smallest = extreme<Smallest>(src, len);
    *max = extreme<Largest>(src, len);
    *min = smallest;
    return vornStsNoErr;
}

VornStatus vornsMinMax_16u(const Vorn16u* src, int len, Vorn16u* min, Vorn16u* max) {
    VORN_CHECK(notNull(src, min, max));
    VORN_CHECK(positive(len));
    const Vorn16u smallest = extreme<Smallest>(src, len);
    *max = extreme<Largest>(src, len);
    *min = smallest;
    return vornStsNoErr;
}

VornStatus vornsMinMax_16s(const Vorn16s* src, int len, Vorn16s* min, Vorn16s* max) {
    VORN_CHECK(notNull(src, min, max));
    VORN_CHECK(positive(len));
    const Vorn16s smallest = extreme<Smallest>(src, len);
    *max = extreme<Largest>(src, len);
    *min = smallest;
    return vornStsNoErr;
}

VornStatus vornsMinMax_32u(const Vorn32u* src, int len, Vorn32u* min, Vorn32u* max) {
    VORN_CHECK(notNull(src, min, max));
    VORN_CHECK(positive(len));
    const Vorn32u smallest = extreme<Smallest>(src, len);
    *max = extreme<Largest>(src, len);
    *min = smallest;
    return vornStsNoErr;
}

VornStatus vornsMinMax_32s(const Vorn32s* src, int len, Vorn32s* min, Vorn32s* max) {
    VORN_CHECK(notNull(src, min, max));
    VORN_CHECK(positive(len));
    const Vorn32s smallest = extreme<Smallest>(src, len);
    *max = extreme<Largest>(src, len);
    *min = smallest;
    return vornStsNoErr;
}

VornStatus vornsMinMax_32f(const Vorn32f* src, int len, Vorn32f* min, Vorn32f* max) {
    VORN_CHECK(notNull(src, min, max));
    VORN_CHECK(positive(len));
    const Vorn32f smallest = extreme<Smallest>(src, len);
    *max = extreme<Largest>(src, len);
    *min = smallest;
    return vornStsNoErr;
}

VornStatus vornsMinMax_64f(const Vorn64f* src, int len, Vorn64f* min, Vorn64f* max) {
    VORN_CHECK(notNull(src, min, max));
    VORN_CHECK(positive(len));
    const Vorn64f smallest = extreme<Smallest>(src, len);
    *max = extreme<Largest>(src, len);
    *min = smallest;
    return vornStsNoErr;
}

VornStatus vornsMaxIndx_16s(const Vorn16s* src, int len, Vorn16s* result, int* index) {
    VORN_CHECK(notNull(src, result));
    VORN_CHECK(positive(len));
    return extremeWithIndex<Largest>(src, len, result, index);
}

VornStatus vornsMaxIndx_32f(const Vorn32f* src, int len, Vorn32f* result, int* index) {
    VORN_CHECK(notNull(src, result));
    VORN_CHECK(positive(len));
    return extremeWithIndex<Largest>(src, len, result, index);
}

VornStatus vornsMaxIndx_64f(const Vorn64f* src, int len, Vorn64f* result, int* index) {
    VORN_CHECK(notNull(src, result));
    VORN_CHECK(positive(len));
    return extremeWithIndex<Largest>(src, len, result, index);
}

VornStatus vornsMinIndx_16s(const Vorn16s* src, int len, Vorn16s* result, int* index) {
    VORN_CHECK(notNull(src, result));
    VORN_CHECK(positive(len));
    return extremeWithIndex<Smallest>(src, len, result, index);
}

VornStatus vornsMinIndx_32f(const Vorn32f* src, int len, Vorn32f* result, int* index) {
    VORN_CHECK(notNull(src, result));
    VORN_CHECK(positive(len));
    return extremeWithIndex<Smallest>(src, len, result, index);
}

VornStatus vornsMinIndx_64f(const Vorn64f* src, int len, Vorn64f* result, int* index) {
    VORN_CHECK(notNull(src, result));
    VORN_CHECK(positive(len));
    return extremeWithIndex<Smallest>(src, len, result, index);
}

VornStatus vornsMaxEvery_16s_I(const Vorn16s* src, Vorn16s* srcDst, int len) {
    VORN_CHECK(notNull(src, srcDst));
    VORN_CHECK(positive(len));
    return everyBetter<Largest>(src, srcDst, len);
}

VornStatus vornsMaxEvery_32s_I(const Vorn32s* src, Vorn32s* srcDst, int len) {
    VORN_CHECK(notNull(src, srcDst));
    VORN_CHECK(positive(len));
    return everyBetter<Largest>(src, srcDst, len);
}

VornStatus vornsMaxEvery_32f_I(const Vorn32f* src, Vorn32f* srcDst, int len) {
    VORN_CHECK(notNull(src, srcDst));
    VORN_CHECK(positive(len));
    return everyBetter<Largest>(src, srcDst, len);
}

VornStatus vornsMinEvery_16s_I(const Vorn16s* src, Vorn16s* srcDst, int len) {
    VORN_CHECK(notNull(src, srcDst));
    VORN_CHECK(positive(len));
    return everyBetter<Smallest>(src, srcDst, len);
}

VornStatus vornsMinEvery_32s_I(const Vorn32s* src, Vorn32s* srcDst, int len) {
    VORN_CHECK(notNull(src, srcDst));
    VORN_CHECK(positive(len));
    return everyBetter<Smallest>(src, srcDst, len);
}

VornStatus vornsMinEvery_32f_I(const Vorn32f* src, Vorn32f* srcDst, int len) {
    VORN_CHECK(notNull(src, srcDst));
    VORN_CHECK(positive(len));
    return everyBetter<Smallest>(src, srcDst, len);
}
