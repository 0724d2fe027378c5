// Largest and smallest elements of vectors, with and without their index, and of two vectors element by element.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <type_traits>

#include "frame/checks.h"
#include "loops/elementwise.h"
#include "simd/fold.h"
#include "simd/part.h"
#include "simd/simd.h"
#include "simd/unsigned.h"
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
    template <class V>
    static VORN_INLINE V keepUnsigned(V x, V best) {
        return maxOfUnsigned(x, best);
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
    template <class V>
    static VORN_INLINE V keepUnsigned(V x, V best) {
        return minOfUnsigned(x, best);
    }
};

// How elements become lanes and lanes are compared. inOrder() makes lanes of them whose own order is that of the
// elements.
template <class Element>
struct Ordered {
    using V = Wide<Element>;
    static VORN_INLINE V load(const Element* p) { return vorn::load<V>(p); }
    static VORN_INLINE V splat(Element x) { return vorn::splat<V>(x); }
    template <class Better>
    static VORN_INLINE V keep(V x, V best) {
        return Better::keep(x, best);
    }
    static VORN_INLINE V inOrder(V x) { return x; }
    static Element element(typename V::Element x) { return x; }
};
// Unsigned numbers have it with their top bit turned: at once, or at the end where lanes can be compared as unsigned.
template <class Element, class Signed>
struct OrderedUnsigned {
    using V = Wide<Signed>;
    static constexpr Signed top = std::numeric_limits<Signed>::min();
    static constexpr Signed turnedAtOnce = hasUnsignedOrder ? 0 : top, turnedAtEnd = top ^ turnedAtOnce;
    static VORN_INLINE V load(const Element* p) {
        return vorn::load<V>(reinterpret_cast<const Signed*>(p)) ^ vorn::splat<V>(turnedAtOnce);
    }
    static VORN_INLINE V splat(Element x) {
        return vorn::splat<V>(static_cast<Signed>(static_cast<Signed>(x) ^ turnedAtOnce));
    }
    template <class Better>
    static VORN_INLINE V keep(V x, V best) {
        if constexpr (hasUnsignedOrder) return Better::keepUnsigned(x, best);
        return Better::keep(x, best);
    }
    static VORN_INLINE V inOrder(V x) { return x ^ vorn::splat<V>(turnedAtEnd); }
    static Element element(Signed x) { return static_cast<Element>(x ^ top); }
};
template <>
struct Ordered<Vorn16u> : OrderedUnsigned<Vorn16u, Vorn16s> {};
template <>
struct Ordered<Vorn32u> : OrderedUnsigned<Vorn32u, Vorn32s> {};

// The best so far, up to the sign of a zero. It is kept in several chains, each of which waits for itself only.
template <class Better, class Element, int chains>
class Running {
public:
    using Lanes = Ordered<Element>;
    using V = typename Lanes::V;
    explicit Running(Element first) {
        for (V& lanes : chain_) lanes = Lanes::splat(first);
    }
    VORN_INLINE void meet(int k, V x) { chain_[k] = Lanes::template keep<Better>(x, chain_[k]); }
    VORN_INLINE Element best() const {
        V all = chain_[0];
        for (int k = 1; k < chains; ++k) all = Lanes::template keep<Better>(chain_[k], all);
        return Lanes::element(
            folded(Lanes::inOrder(all), [](auto lower, auto upper) { return Better::keep(upper, lower); }));
    }

private:
    V chain_[chains];
};

// One pass for all searches over a vector of at least one register. The last register ends at the last element.
template <int chains, class Element, class... Search>
VORN_INLINE void scan(const Element* src, std::ptrdiff_t len, Search&... search) {
    using Lanes = Ordered<Element>;
    constexpr std::ptrdiff_t lanes = Lanes::V::lanes;
    const auto meet = [&](int k, const Element* p) {
        const auto x = Lanes::load(p);
        (search.meet(k, x), ...);
    };
    std::ptrdiff_t i = 0;
    for (; i + chains * lanes <= len; i += chains * lanes) {
        for (int k = 0; k < chains; ++k) meet(k, src + i + k * lanes);
    }
    for (; i + lanes <= len; i += lanes) meet(0, src + i);
    if (i < len) meet(0, src + len - lanes);
}

// The best of `best` and the elements, up to the sign of a zero.
template <class Better, class Element>
Element bestOf(const Element* src, std::ptrdiff_t len, Element best) {
    constexpr int lanes = Ordered<Element>::V::lanes, chains = 8;
    if (len >= chains * lanes) {
        Running<Better, Element, chains> running(best);
        scan<chains>(src, len, running);
        return running.best();
    }
    if (len >= lanes) {
        Running<Better, Element, 1> running(best);
        scan<1>(src, len, running);
        return running.best();
    }
    for (std::ptrdiff_t i = 0; i < len; ++i) {
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

// Lanes do not keep the order of zeros of both signs: the first zero decides.
template <class Element>
Element firstOfZeros(const Element* src, std::ptrdiff_t len, Element best) {
    if constexpr (std::is_floating_point_v<Element>) {
        if (best == 0) return src[firstEqual(src, len, best)];
    }
    return best;
}

// What the plain scan finds.
template <class Better, class Element>
Element extreme(const Element* src, std::ptrdiff_t len) {
    return firstOfZeros(src, len, bestOf<Better>(src, len, src[0]));
}

template <class Element>
void extremes(const Element* src, std::ptrdiff_t len, Element* min, Element* max) {
    Element smallest = src[0], largest = src[0];
    if (len >= Ordered<Element>::V::lanes) {
        constexpr int chains = 4;
        Running<Smallest, Element, chains> low(src[0]);
        Running<Largest, Element, chains> high(src[0]);
        scan<chains>(src, len, low, high);
        smallest = firstOfZeros(src, len, low.best());
        largest = firstOfZeros(src, len, high.best());
    } else {
        for (std::ptrdiff_t i = 1; i < len; ++i) {
            if (Smallest::strictly(src[i], smallest)) smallest = src[i];
            if (Largest::strictly(src[i], largest)) largest = src[i];
        }
    }
    *min = smallest;
    *max = largest;
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
struct EveryKernel {
    using V = Wide<Element>;
    static constexpr std::int64_t step = V::lanes;
    static constexpr bool unrolled = true;
    const Element* src;
    Element* srcDst;

    VORN_INLINE V at(std::int64_t i) const { return Better::keep(load<V>(src + i), load<V>(srcDst + i)); }
    VORN_INLINE void put(std::int64_t i, V x) const { store(srcDst + i, x); }
    VORN_INLINE void putPastCache(std::int64_t i, V x) const { storeStream(srcDst + i, x); }
    VORN_INLINE void part(std::int64_t n) const {
        storePart(srcDst, Better::keep(loadPart<V>(src, n), loadPart<V>(srcDst, n)), n);
    }
    VORN_INLINE Element* result() const { return srcDst; }
};

template <class Better, class Element>
VornStatus everyBetter(const Element* src, Element* srcDst, std::ptrdiff_t len) {
    forEachStep(len, EveryKernel<Better, Element>{src, srcDst});
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
    extremes(src, len, min, max);
    return vornStsNoErr;
}

VornStatus vornsMinMax_16u(const Vorn16u* src, int len, Vorn16u* min, Vorn16u* max) {
    VORN_CHECK(notNull(src, min, max));
    VORN_CHECK(positive(len));
    extremes(src, len, min, max);
    return vornStsNoErr;
}

VornStatus vornsMinMax_16s(const Vorn16s* src, int len, Vorn16s* min, Vorn16s* max) {
    VORN_CHECK(notNull(src, min, max));
    VORN_CHECK(positive(len));
    extremes(src, len, min, max);
    return vornStsNoErr;
}

VornStatus vornsMinMax_32u(const Vorn32u* src, int len, Vorn32u* min, Vorn32u* max) {
    VORN_CHECK(notNull(src, min, max));
    VORN_CHECK(positive(len));
    extremes(src, len, min, max);
    return vornStsNoErr;
}

VornStatus vornsMinMax_32s(const Vorn32s* src, int len, Vorn32s* min, Vorn32s* max) {
    VORN_CHECK(notNull(src, min, max));
    VORN_CHECK(positive(len));
    extremes(src, len, min, max);
    return vornStsNoErr;
}

VornStatus vornsMinMax_32f(const Vorn32f* src, int len, Vorn32f* min, Vorn32f* max) {
    VORN_CHECK(notNull(src, min, max));
    VORN_CHECK(positive(len));
    extremes(src, len, min, max);
    return vornStsNoErr;
}

VornStatus vornsMinMax_64f(const Vorn64f* src, int len, Vorn64f* min, Vorn64f* max) {
    VORN_CHECK(notNull(src, min, max));
    VORN_CHECK(positive(len));
    extremes(src, len, min, max);
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
