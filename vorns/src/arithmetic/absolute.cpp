// Absolute values of vectors.
#include <cstddef>
#include <cstdint>

#include "frame/checks.h"
#include "loops/elementwise.h"
#include "simd/part.h"
#include "simd/simd.h"
#include "vornsr/signal.h"

namespace vorn {
namespace {

VORN_INLINE f32xN absolute(f32xN x) { return absOf(x); }
VORN_INLINE f64xN absolute(f64xN x) { return absOf(x); }
// -32768 gives 32767.
VORN_INLINE i16xN absolute(i16xN x) { return maxOf(x, subSat(splat<i16xN>(0), x)); }
VORN_INLINE i32xN absolute(i32xN x) { return absSat(x); }

template <class Element>
struct AbsoluteKernel {
    using V = Wide<Element>;
    static constexpr std::int64_t step = V::lanes;
    static constexpr bool unrolled = true;
    const Element* src;
    Element* dst;

    VORN_INLINE V at(std::int64_t i) const { return absolute(load<V>(src + i)); }
    VORN_INLINE void put(std::int64_t i, V x) const { store(dst + i, x); }
    VORN_INLINE void putPastCache(std::int64_t i, V x) const { storeStream(dst + i, x); }
    VORN_INLINE void part(std::int64_t n) const { storePart(dst, absolute(loadPart<V>(src, n)), n); }
    VORN_INLINE Element* result() const { return dst; }
};

template <class Element>
void absolutes(const Element* src, Element* dst, std::ptrdiff_t len) {
    forEachStep(len, AbsoluteKernel<Element>{src, dst});
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

VornStatus vornsAbs_16s_I(Vorn16s* srcDst, int len) { return vornsAbs_16s(srcDst, srcDst, len); }

VornStatus vornsAbs_32s(const Vorn32s* src, Vorn32s* dst, int len) {
    VORN_CHECK(notNull(src, dst));
    VORN_CHECK(positive(len));
    absolutes(src, dst, len);
    return vornStsNoErr;
}

VornStatus vornsAbs_32s_I(Vorn32s* srcDst, int len) { return vornsAbs_32s(srcDst, srcDst, len); }

VornStatus vornsAbs_32f(const Vorn32f* src, Vorn32f* dst, int len) {
    VORN_CHECK(notNull(src, dst));
    VORN_CHECK(positive(len));
    absolutes(src, dst, len);
    return vornStsNoErr;
}

VornStatus vornsAbs_32f_I(Vorn32f* srcDst, int len) { return vornsAbs_32f(srcDst, srcDst, len); }

VornStatus vornsAbs_64f(const Vorn64f* src, Vorn64f* dst, int len) {
    VORN_CHECK(notNull(src, dst));
    VORN_CHECK(positive(len));
    absolutes(src, dst, len);
    return vornStsNoErr;
}

VornStatus vornsAbs_64f_I(Vorn64f* srcDst, int len) { return vornsAbs_64f(srcDst, srcDst, len); }
