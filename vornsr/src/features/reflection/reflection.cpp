// Features of reflection coefficients: area ratios, their logarithms and running products, tilts.
#include <algorithm>
#include <cstdint>

#include "features/detour.h"
#include "features/reflection/ratios.h"
#include "frame/checks.h"
#include "frame/rounding.h"
#include "frame/scale.h"
#include "vornsr/features.h"

namespace vorn::reflection {
namespace {

// Written so that a not-a-number fails.
constexpr VornStatus betweenZeroAndOne(Vorn32f val) { return require(val > 0 && val < 1, vornStsRangeErr); }

// dst[i] = Op(a[i], b[i])
template <class Op, class A, class B>
VORN_NOINLINE VornStatus ratios(A a, B b, Vorn32f* dst, std::int64_t len) {
    const Op op;
    forEachStep(len, elementKernel(op, a, b, dst));
    return op.metZero() ? vornStsDivByZero : vornStsNoErr;
}

constexpr std::int64_t runLength = 512;

// The same by runs of singles that put makes integers: so nothing is allocated, and dst may be a source.
template <class Op, class A, class B, class Store>
VornStatus fixedRatios(A a, B b, Vorn16s* dst, std::int64_t len, const Store& put) {
    alignas(64) Vorn32f run[runLength];
    VornStatus status = vornStsNoErr;
    for (std::int64_t i = 0; i < len; i += runLength) {
        const std::int64_t n = std::min(runLength, len - i);
        if (const VornStatus ofRun = ratios<Op>(a.from(i), b.from(i), run, n)) status = ofRun;
        put(run, dst + i, n);
    }
    return status;
}

VORN_NOINLINE VornStatus fixedRunningProduct(const Vorn16s* src, Vorn32f factor, Vorn16s* dst, std::int64_t len,
                                             NearestStore put) {
    alignas(64) Vorn32f run[runLength];
    RunningProduct product;
    for (std::int64_t i = 0; i < len; i += runLength) {
        const std::int64_t n = std::min(runLength, len - i);
        product([=](std::int64_t j) { return static_cast<Vorn32f>(src[i + j]) * factor; }, run, n);
        put(run, dst + i, n);
    }
    return product.status();
}

}  // namespace
}  // namespace vorn::reflection

using namespace vorn;

VornStatus vornsReflectionToAR_32f(const Vorn32f* src, Vorn32f* dst, int len) {
    VORN_CHECK(notNull(src, dst));
    VORN_CHECK(positive(len));
    return reflection::ratios<reflection::AreaRatio>(elements(src), constant(1.0f), dst, len);
}

VornStatus vornsReflectionToAR_16s_Sfs(const Vorn16s* src, int scaleIn, Vorn16s* dst, int len, int scaleOut) {
    VORN_CHECK(notNull(src, dst));
    VORN_CHECK(positive(len));
    const reflection::Shorts k{src, GetScale_32s32f(oppositeScale(scaleIn))};
    return reflection::fixedRatios<reflection::AreaRatio>(k, constant(1.0f), dst, len, NearestStore{scaleOut});
}

VornStatus vornsReflectionToTrueAR_32f(const Vorn32f* src, Vorn32f* dst, int len) {
    VORN_CHECK(notNull(src, dst));
    VORN_CHECK(positive(len));
    reflection::RunningProduct product;
    product([=](std::int64_t i) { return src[i]; }, dst, len);
    return product.status();
}

VornStatus vornsReflectionToTrueAR_16s_Sfs(const Vorn16s* src, int scaleIn, Vorn16s* dst, int len, int scaleOut) {
    VORN_CHECK(notNull(src, dst));
    VORN_CHECK(positive(len));
    return reflection::fixedRunningProduct(src, GetScale_32s32f(oppositeScale(scaleIn)), dst, len,
                                           NearestStore{scaleOut});
}

VornStatus vornsReflectionToLAR_32f(const Vorn32f* src, Vorn32f* dst, int len, Vorn32f val) {
    VORN_CHECK(notNull(src, dst));
    VORN_CHECK(positive(len));
    VORN_CHECK(reflection::betweenZeroAndOne(val));
    return reflection::ratios<reflection::LogAreaRatio>(elements(src), constant(val), dst, len);
}

// The scale factor of the input has the opposite sense of that of the other forms.
VornStatus vornsReflectionToLAR_16s_Sfs(const Vorn16s* src, int scaleIn, Vorn16s* dst, int len, int scaleOut,
                                        Vorn32f val) {
    VORN_CHECK(notNull(src, dst));
    VORN_CHECK(positive(len));
    VORN_CHECK(reflection::betweenZeroAndOne(val));
    const reflection::Shorts k{src, GetScale_32s32f(scaleIn)};
    return reflection::fixedRatios<reflection::LogAreaRatio>(k, constant(val), dst, len, TruncatedStore{scaleOut});
}

VornStatus vornsReflectionToTilt_32f(const Vorn32f* src1, const Vorn32f* src2, Vorn32f* dst, int len) {
    VORN_CHECK(notNull(src1, src2, dst));
    VORN_CHECK(positive(len));
    return reflection::ratios<reflection::Tilt>(elements(src1), elements(src2), dst, len);
}

VornStatus vornsReflectionToTilt_16s_Sfs(const Vorn16s* src1, const Vorn16s* src2, Vorn16s* dst, int len, int scale) {
    VORN_CHECK(notNull(src1, src2, dst));
    VORN_CHECK(positive(len));
    return reflection::fixedRatios<reflection::Tilt>(reflection::Shorts{src1, 1}, reflection::Shorts{src2, 1}, dst, len,
                                                     NearestStore{scale});
}

VornStatus vornsReflectionToAbsTilt_32f(const Vorn32f* src1, const Vorn32f* src2, Vorn32f* dst, int len) {
    VORN_CHECK(notNull(src1, src2, dst));
    VORN_CHECK(positive(len));
    return reflection::ratios<reflection::AbsTilt>(elements(src1), elements(src2), dst, len);
}

VornStatus vornsReflectionToAbsTilt_16s_Sfs(const Vorn16s* src1, const Vorn16s* src2, Vorn16s* dst, int len,
                                            int scale) {
    VORN_CHECK(notNull(src1, src2, dst));
    VORN_CHECK(positive(len));
    return reflection::fixedRatios<reflection::AbsTilt>(reflection::Shorts{src1, 1}, reflection::Shorts{src2, 1}, dst,
                                                        len, NearestStore{scale});
}
