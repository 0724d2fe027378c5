// Complex transforms: the exported functions.
#include "fft/complex/forms.h"
#include "frame/checks.h"
#include "vornsr/fft.h"

using namespace vorn;
using namespace vorn::fft;

VornStatus vornsFFTFwd_CToC_32fc(const Vorn32fc* src, Vorn32fc* dst, const VornsFFTSpec* ctx, Vorn8u* buffer) {
    VORN_CHECK(notNull(ctx));
    VORN_CHECK(matches(ctx, tagC32fc));
    VORN_CHECK(notNull(src, dst));
    return transform(Direction::Forward, *recordOf<Vorn32f>(ctx), src, dst, buffer);
}

VornStatus vornsFFTFwd_CToC_32fc_I(Vorn32fc* srcDst, const VornsFFTSpec* ctx, Vorn8u* buffer) {
    return vornsFFTFwd_CToC_32fc(srcDst, srcDst, ctx, buffer);
}

VornStatus vornsFFTInv_CToC_32fc(const Vorn32fc* src, Vorn32fc* dst, const VornsFFTSpec* ctx, Vorn8u* buffer) {
    VORN_CHECK(notNull(ctx));
    VORN_CHECK(matches(ctx, tagC32fc));
    VORN_CHECK(notNull(src, dst));
    return transform(Direction::Inverse, *recordOf<Vorn32f>(ctx), src, dst, buffer);
}

VornStatus vornsFFTInv_CToC_32fc_I(Vorn32fc* srcDst, const VornsFFTSpec* ctx, Vorn8u* buffer) {
    return vornsFFTInv_CToC_32fc(srcDst, srcDst, ctx, buffer);
}

VornStatus vornsFFTFwd_CToC_64fc(const Vorn64fc* src, Vorn64fc* dst, const VornsFFTSpec* ctx, Vorn8u* buffer) {
    VORN_CHECK(notNull(ctx));
    VORN_CHECK(matches(ctx, tagC64fc));
    VORN_CHECK(notNull(src, dst));
    return transform(Direction::Forward, *recordOf<Vorn64f>(ctx), src, dst, buffer);
}

VornStatus vornsFFTFwd_CToC_64fc_I(Vorn64fc* srcDst, const VornsFFTSpec* ctx, Vorn8u* buffer) {
    return vornsFFTFwd_CToC_64fc(srcDst, srcDst, ctx, buffer);
}

VornStatus vornsFFTInv_CToC_64fc(const Vorn64fc* src, Vorn64fc* dst, const VornsFFTSpec* ctx, Vorn8u* buffer) {
    VORN_CHECK(notNull(ctx));
    VORN_CHECK(matches(ctx, tagC64fc));
    VORN_CHECK(notNull(src, dst));
    return transform(Direction::Inverse, *recordOf<Vorn64f>(ctx), src, dst, buffer);
}

VornStatus vornsFFTInv_CToC_64fc_I(Vorn64fc* srcDst, const VornsFFTSpec* ctx, Vorn8u* buffer) {
    return vornsFFTInv_CToC_64fc(srcDst, srcDst, ctx, buffer);
}

VornStatus vornsFFTFwd_CToC_32f(const Vorn32f* srcRe, const Vorn32f* srcIm, Vorn32f* dstRe, Vorn32f* dstIm,
                                const VornsFFTSpec* ctx, Vorn8u* buffer) {
    VORN_CHECK(notNull(ctx));
    VORN_CHECK(matches(ctx, tagC32f));
    VORN_CHECK(notNull(srcRe, srcIm, dstRe, dstIm));
    return transform(Direction::Forward, *recordOf<Vorn32f>(ctx), srcRe, srcIm, dstRe, dstIm, buffer);
}

VornStatus vornsFFTFwd_CToC_32f_I(Vorn32f* srcDstRe, Vorn32f* srcDstIm, const VornsFFTSpec* ctx, Vorn8u* buffer) {
    return vornsFFTFwd_CToC_32f(srcDstRe, srcDstIm, srcDstRe, srcDstIm, ctx, buffer);
}

VornStatus vornsFFTInv_CToC_32f(const Vorn32f* srcRe, const Vorn32f* srcIm, Vorn32f* dstRe, Vorn32f* dstIm,
                                const VornsFFTSpec* ctx, Vorn8u* buffer) {
    VORN_CHECK(notNull(ctx));
    VORN_CHECK(matches(ctx, tagC32f));
    VORN_CHECK(notNull(srcRe, srcIm, dstRe, dstIm));
    return transform(Direction::Inverse, *recordOf<Vorn32f>(ctx), srcRe, srcIm, dstRe, dstIm, buffer);
}

VornStatus vornsFFTInv_CToC_32f_I(Vorn32f* srcDstRe, Vorn32f* srcDstIm, const VornsFFTSpec* ctx, Vorn8u* buffer) {
    return vornsFFTInv_CToC_32f(srcDstRe, srcDstIm, srcDstRe, srcDstIm, ctx, buffer);
}

VornStatus vornsFFTFwd_CToC_64f(const Vorn64f* srcRe, const Vorn64f* srcIm, Vorn64f* dstRe, Vorn64f* dstIm,
                                const VornsFFTSpec* ctx, Vorn8u* buffer) {
    VORN_CHECK(notNull(ctx));
    VORN_CHECK(matches(ctx, tagC64f));
    VORN_CHECK(notNull(srcRe, srcIm, dstRe, dstIm));
    return transform(Direction::Forward, *recordOf<Vorn64f>(ctx), srcRe, srcIm, dstRe, dstIm, buffer);
}

VornStatus vornsFFTFwd_CToC_64f_I(Vorn64f* srcDstRe, Vorn64f* srcDstIm, const VornsFFTSpec* ctx, Vorn8u* buffer) {
    return vornsFFTFwd_CToC_64f(srcDstRe, srcDstIm, srcDstRe, srcDstIm, ctx, buffer);
}

VornStatus vornsFFTInv_CToC_64f(const Vorn64f* srcRe, const Vorn64f* srcIm, Vorn64f* dstRe, Vorn64f* dstIm,
                                const VornsFFTSpec* ctx, Vorn8u* buffer) {
    VORN_CHECK(notNull(ctx));
    VORN_CHECK(matches(ctx, tagC64f));
    VORN_CHECK(notNull(srcRe, srcIm, dstRe, dstIm));
    return transform(Direction::Inverse, *recordOf<Vorn64f>(ctx), srcRe, srcIm, dstRe, dstIm, buffer);
}

VornStatus vornsFFTInv_CToC_64f_I(Vorn64f* srcDstRe, Vorn64f* srcDstIm, const VornsFFTSpec* ctx, Vorn8u* buffer) {
    return vornsFFTInv_CToC_64f(srcDstRe, srcDstIm, srcDstRe, srcDstIm, ctx, buffer);
}

VornStatus vornsFFTFwd_CToC_32sc_Sfs(const Vorn32sc* src, Vorn32sc* dst, const VornsFFTFixedSpec* ctx, int scaleFactor,
                                     Vorn8u* buffer) {
    VORN_CHECK(notNull(ctx));
    VORN_CHECK(matches(ctx, tagC32sc));
    VORN_CHECK(notNull(src, dst));
    return transform(Direction::Forward, *recordOf(ctx), src, dst, scaleFactor, buffer);
}

VornStatus vornsFFTFwd_CToC_32sc_ISfs(Vorn32sc* srcDst, const VornsFFTFixedSpec* ctx, int scaleFactor, Vorn8u* buffer) {
    return vornsFFTFwd_CToC_32sc_Sfs(srcDst, srcDst, ctx, scaleFactor, buffer);
}

VornStatus vornsFFTInv_CToC_32sc_Sfs(const Vorn32sc* src, Vorn32sc* dst, const VornsFFTFixedSpec* ctx, int scaleFactor,
                                     Vorn8u* buffer) {
    VORN_CHECK(notNull(ctx));
    VORN_CHECK(matches(ctx, tagC32sc));
    VORN_CHECK(notNull(src, dst));
    return transform(Direction::Inverse, *recordOf(ctx), src, dst, scaleFactor, buffer);
}

VornStatus vornsFFTInv_CToC_32sc_ISfs(Vorn32sc* srcDst, const VornsFFTFixedSpec* ctx, int scaleFactor, Vorn8u* buffer) {
    return vornsFFTInv_CToC_32sc_Sfs(srcDst, srcDst, ctx, scaleFactor, buffer);
}

VornStatus vornsFFTFwd_CToC_32s_Sfs(const Vorn32s* srcRe, const Vorn32s* srcIm, Vorn32s* dstRe, Vorn32s* dstIm,
                                    const VornsFFTFixedSpec* ctx, int scaleFactor, Vorn8u* buffer) {
    VORN_CHECK(notNull(ctx));
    VORN_CHECK(matches(ctx, tagC32s));
    VORN_CHECK(notNull(srcRe, srcIm, dstRe, dstIm));
    return transform(Direction::Forward, *recordOf(ctx), srcRe, srcIm, dstRe, dstIm, scaleFactor, buffer);
}

VornStatus vornsFFTFwd_CToC_32s_ISfs(Vorn32s* srcDstRe, Vorn32s* srcDstIm, const VornsFFTFixedSpec* ctx,
                                     int scaleFactor, Vorn8u* buffer) {
    return vornsFFTFwd_CToC_32s_Sfs(srcDstRe, srcDstIm, srcDstRe, srcDstIm, ctx, scaleFactor, buffer);
}

VornStatus vornsFFTInv_CToC_32s_Sfs(const Vorn32s* srcRe, const Vorn32s* srcIm, Vorn32s* dstRe, Vorn32s* dstIm,
                                    const VornsFFTFixedSpec* ctx, int scaleFactor, Vorn8u* buffer) {
    VORN_CHECK(notNull(ctx));
    VORN_CHECK(matches(ctx, tagC32s));
    VORN_CHECK(notNull(srcRe, srcIm, dstRe, dstIm));
    return transform(Direction::Inverse, *recordOf(ctx), srcRe, srcIm, dstRe, dstIm, scaleFactor, buffer);
}

VornStatus vornsFFTInv_CToC_32s_ISfs(Vorn32s* srcDstRe, Vorn32s* srcDstIm, const VornsFFTFixedSpec* ctx,
                                     int scaleFactor, Vorn8u* buffer) {
    return vornsFFTInv_CToC_32s_Sfs(srcDstRe, srcDstIm, srcDstRe, srcDstIm, ctx, scaleFactor, buffer);
}
