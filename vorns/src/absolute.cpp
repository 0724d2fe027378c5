// Absolute values of vectors.
#include <cstddef>

#include "frame/checks.h"
#include "simd.h"
#include "vornsr/signal.h"

namespace vorn {
namespace {

VORN_INLINE f32xN absolute(f32xN x) { return absOf(x); }
VORN_INLINE f64xN absolute(f64xN x) { return absOf(x); }
// -32768 gives 32767.
VORN_INLINE i16xN absolute(i16xN x) { return maxOf(x, subSat(splat<i16xN>(0), x)); }
// -2147483648, which has no opposite, is still negative after the first line; its complement is 2147483647.
VORN_INLINE i32xN absolute(i32xN x) {
    const i32xN wrapped = (x ^ shiftRight<31>(x)) - shiftRight<31>(x);
    return wrapped ^ shiftRight<31>(wrapped);
}

template <class Element>
void absolutes(const Element* src, Element* dst, std::ptrdiff_t len) {
    using V = Wide<Element>;
    std::ptrdiff_t i = 0;
    for (; i + V::lanes <= len; i += V::lanes) store(dst + i, absolute(load<V>(src + i)));
    if (i < len) storeFirst(dst + i, absolute(loadFirst<V>(src + i, len - i)), len - i);
}

}  // namespace
}  // namespace vorn

using namespace vorn;

VornStatus vornsAbs_16s(const Vorn16s* src, Vorn16s* dst, int len) {
    VORN_CHECK(notNull(src, dst));
    VORN_CHECK(positive(len));
    absolutes(src, dst, len);
    return vornStsNoErr;
}

VornStatus vornsAbs_16s_I(Vorn16s* srcDst, int len) {
    VORN_CHECK(notNull(srcDst));
    VORN_CHECK(positive(len));
    absolutes(srcDst, srcDst, len);
    return vornStsNoErr;
}

VornStatus vornsAbs_32s(const Vorn32s* src, Vorn32s* dst, int len) {
    VORN_CHECK(notNull(src, dst));
    VORN_CHECK(positive(len));
    absolutes(src, dst, len);
    return vornStsNoErr;
}

VornStatus vornsAbs_32s_I(Vorn32s* srcDst, int len) {
    VORN_CHECK(notNull(srcDst));
    VORN_CHECK(positive(len));
    absolutes(srcDst, srcDst, len);
    return vornStsNoErr;
}

VornStatus vornsAbs_32f(const Vorn32f* src, Vorn32f* dst, int len) {
    VORN_CHECK(notNull(src, dst));
    VORN_CHECK(positive(len));
    absolutes(src, dst, len);
    return vornStsNoErr;
}

VornStatus vornsAbs_32f_I(Vorn32f* srcDst, int len) {
    VORN_CHECK(notNull(srcDst));
    VORN_CHECK(positive(len));
    absolutes(srcDst, srcDst, len);
    return vornStsNoErr;
}

VornStatus vornsAbs_64f(const Vorn64f* src, Vorn64f* dst, int len) {
    VORN_CHECK(notNull(src, dst));
    VORN_CHECK(positive(len));
    absolutes(src, dst, len);
    return vornStsNoErr;
}

VornStatus vornsAbs_64f_I(Vorn64f* srcDst, int len) {
    VORN_CHECK(notNull(srcDst));
    VORN_CHECK(positive(len));
    absolutes(srcDst, srcDst, len);
    return vornStsNoErr;
}
