// Natural logarithms of vectors.
#include <cstddef>

#include "frame/checks.h"
#include "frame/rounding.h"
#include "logarithm_kernels.h"
#include "vornsr/signal.h"

namespace vorn {
namespace {

// Whole vectors from i on, up to one that holds anything but normal positive numbers; returns where it stopped. A
// function of its own, so that its constants stay in registers.
template <class Element>
VORN_NOINLINE std::ptrdiff_t lnOfNormals(const Element* src, Element* dst, std::ptrdiff_t i, std::ptrdiff_t len) {
    using V = Wide<Element>;
    for (; i + V::lanes <= len; i += V::lanes) {
        const V x = load<V>(src + i);
        if (!all(isNormalPositive(x))) [[unlikely]]
            break;
        store(dst + i, lnOfSeparated(separate(x)));
    }
    return i;
}

// dst may be src. Returns the code of the first bad element.
template <class Element>
LnCode lnVector(const Element* src, Element* dst, std::ptrdiff_t len) {
    using V = Wide<Element>;
    LnCode code = lnGood;
    std::ptrdiff_t i = lnOfNormals(src, dst, 0, len);
    while (i + V::lanes <= len) {
        store(dst + i, lnOfAny(load<V>(src + i), code));
        i = lnOfNormals(src, dst, i + V::lanes, len);
    }
    if (i < len) {
        // The rest of a whole vector holds ones.
        Element last[V::lanes];
        store(last, splat<V>(1));
        storeFirst(last, loadFirst<V>(src + i, len - i), len - i);
        if (lnOfNormals(last, last, 0, V::lanes) == 0) store(last, lnOfAny(load<V>(last), code));
        storeFirst(dst + i, load<V>(last), len - i);
    }
    return code;
}

VornStatus lnStatus(LnCode code) {
    return code == lnGood ? vornStsNoErr : code == lnZero ? vornStsLnZeroArg : vornStsLnNegArg;
}

}  // namespace
}  // namespace vorn

using namespace vorn;

VornStatus vornsLn_32f(const Vorn32f* src, Vorn32f* dst, int len) {
    VORN_CHECK(notNull(src, dst));
    VORN_CHECK(positive(len));
    return lnStatus(lnVector(src, dst, len));
}

VornStatus vornsLn_32f_I(Vorn32f* srcDst, int len) {
    VORN_CHECK(notNull(srcDst));
    VORN_CHECK(positive(len));
    return lnStatus(lnVector(srcDst, srcDst, len));
}
