// Transforms of real values: the exported functions.
#include "fft/contexts/context.h"
#include "fft/real/forms.h"
#include "frame/checks.h"
#include "vornsr/fft.h"

using namespace vorn;
using namespace vorn::fft;

VornStatus vornsFFTFwd_RToPerm_32f(const Vorn32f* src, Vorn32f* dst, const VornsFFTSpec* ctx, Vorn8u* buffer) {
    VORN_CHECK(notNull(ctx));
    VORN_CHECK(matches(ctx, tagR32f));
    VORN_CHECK(notNull(src, dst));
    return forwardTo<Perm>(*recordOf<Vorn32f>(ctx), src, dst, buffer);
}

VornStatus vornsFFTFwd_RToPerm_32f_I(Vorn32f* srcDst, const VornsFFTSpec* ctx, Vorn8u* buffer) {
    return vornsFFTFwd_RToPerm_32f(srcDst, srcDst, ctx, buffer);
}

VornStatus vornsFFTFwd_RToPack_32f(const Vorn32f* src, Vorn32f* dst, const VornsFFTSpec* ctx, Vorn8u* buffer) {
    VORN_CHECK(notNull(ctx));
    VORN_CHECK(matches(ctx, tagR32f));
    VORN_CHECK(notNull(src, dst));
    return forwardTo<Pack>(*recordOf<Vorn32f>(ctx), src, dst, buffer);
}

VornStatus vornsFFTFwd_RToPack_32f_I(Vorn32f* srcDst, const VornsFFTSpec* ctx, Vorn8u* buffer) {
    return vornsFFTFwd_RToPack_32f(srcDst, srcDst, ctx, buffer);
}

VornStatus vornsFFTFwd_RToCCS_32f(const Vorn32f* src, Vorn32f* dst, const VornsFFTSpec* ctx, Vorn8u* buffer) {
    VORN_CHECK(notNull(ctx));
    VORN_CHECK(matches(ctx, tagR32f));
    VORN_CHECK(notNull(src, dst));
    return forwardTo<Ccs>(*recordOf<Vorn32f>(ctx), src, dst, buffer);
}

VornStatus vornsFFTFwd_RToCCS_32f_I(Vorn32f* srcDst, const VornsFFTSpec* ctx, Vorn8u* buffer) {
    return vornsFFTFwd_RToCCS_32f(srcDst, srcDst, ctx, buffer);
}

VornStatus vornsFFTInv_PermToR_32f(const Vorn32f* src, Vorn32f* dst, const VornsFFTSpec* ctx, Vorn8u* buffer) {
    VORN_CHECK(notNull(ctx));
    VORN_CHECK(matches(ctx, tagR32f));
    VORN_CHECK(notNull(src, dst));
    return inverseFrom<Perm>(*recordOf<Vorn32f>(ctx), src, dst, buffer);
}

VornStatus vornsFFTInv_PermToR_32f_I(Vorn32f* srcDst, const VornsFFTSpec* ctx, Vorn8u* buffer) {
    return vornsFFTInv_PermToR_32f(srcDst, srcDst, ctx, buffer);
}

VornStatus vornsFFTInv_PackToR_32f(const Vorn32f* src, Vorn32f* dst, const VornsFFTSpec* ctx, Vorn8u* buffer) {
    VORN_CHECK(notNull(ctx));
    VORN_CHECK(matches(ctx, tagR32f));
    VORN_CHECK(notNull(src, dst));
    return inverseFrom<Pack>(*recordOf<Vorn32f>(ctx), src, dst, buffer);
}

VornStatus vornsFFTInv_PackToR_32f_I(Vorn32f* srcDst, const VornsFFTSpec* ctx, Vorn8u* buffer) {
    return vornsFFTInv_PackToR_32f(srcDst, srcDst, ctx, buffer);
}

VornStatus vornsFFTInv_CCSToR_32f(const Vorn32f* src, Vorn32f* dst, const VornsFFTSpec* ctx, Vorn8u* buffer) {
    VORN_CHECK(notNull(ctx));
    VORN_CHECK(matches(ctx, tagR32f));
    VORN_CHECK(notNull(src, dst));
    return inverseFrom<Ccs>(*recordOf<Vorn32f>(ctx), src, dst, buffer);
}

VornStatus vornsFFTInv_CCSToR_32f_I(Vorn32f* srcDst, const VornsFFTSpec* ctx, Vorn8u* buffer) {
    return vornsFFTInv_CCSToR_32f(srcDst, srcDst, ctx, buffer);
}

VornStatus vornsFFTFwd_RToPerm_64f(const Vorn64f* src, Vorn64f* dst, const VornsFFTSpec* ctx, Vorn8u* buffer) {
    VORN_CHECK(notNull(ctx));
    VORN_CHECK(matches(ctx, tagR64f));
    VORN_CHECK(notNull(src, dst));
    return forwardTo<Perm>(*recordOf<Vorn64f>(ctx), src, dst, buffer);
}

VornStatus vornsFFTFwd_RToPerm_64f_I(Vorn64f* srcDst, const VornsFFTSpec* ctx, Vorn8u* buffer) {
    return vornsFFTFwd_RToPerm_64f(srcDst, srcDst, ctx, buffer);
}

VornStatus vornsFFTFwd_RToPack_64f(const Vorn64f* src, Vorn64f* dst, const VornsFFTSpec* ctx, Vorn8u* buffer) {
    VORN_CHECK(notNull(ctx));
    VORN_CHECK(matches(ctx, tagR64f));
    VORN_CHECK(notNull(src, dst));
    return forwardTo<Pack>(*recordOf<Vorn64f>(ctx), src, dst, buffer);
}

VornStatus vornsFFTFwd_RToPack_64f_I(Vorn64f* srcDst, const VornsFFTSpec* ctx, Vorn8u* buffer) {
    return vornsFFTFwd_RToPack_64f(srcDst, srcDst, ctx, buffer);
}

VornStatus vornsFFTFwd_RToCCS_64f(const Vorn64f* src, Vorn64f* dst, const VornsFFTSpec* ctx, Vorn8u* buffer) {
    VORN_CHECK(notNull(ctx));
    VORN_CHECK(matches(ctx, tagR64f));
    VORN_CHECK(notNull(src, dst));
    return forwardTo<Ccs>(*recordOf<Vorn64f>(ctx), src, dst, buffer);
}

VornStatus vornsFFTFwd_RToCCS_64f_I(Vorn64f* srcDst, const VornsFFTSpec* ctx, Vorn8u* buffer) {
    return vornsFFTFwd_RToCCS_64f(srcDst, srcDst, ctx, buffer);
}

VornStatus vornsFFTInv_PermToR_64f(const Vorn64f* src, Vorn64f* dst, const VornsFFTSpec* ctx, Vorn8u* buffer) {
    VORN_CHECK(notNull(ctx));
    VORN_CHECK(matches(ctx, tagR64f));
    VORN_CHECK(notNull(src, dst));
    return inverseFrom<Perm>(*recordOf<Vorn64f>(ctx), src, dst, buffer);
}

VornStatus vornsFFTInv_PermToR_64f_I(Vorn64f* srcDst, const VornsFFTSpec* ctx, Vorn8u* buffer) {
    return vornsFFTInv_PermToR_64f(srcDst, srcDst, ctx, buffer);
}

VornStatus vornsFFTInv_PackToR_64f(const Vorn64f* src, Vorn64f* dst, const VornsFFTSpec* ctx, Vorn8u* buffer) {
    VORN_CHECK(notNull(ctx));
    VORN_CHECK(matches(ctx, tagR64f));
    VORN_CHECK(notNull(src, dst));
    return inverseFrom<Pack>(*recordOf<Vorn64f>(ctx), src, dst, buffer);
}

VornStatus vornsFFTInv_PackToR_64f_I(Vorn64f* srcDst, const VornsFFTSpec* ctx, Vorn8u* buffer) {
    return vornsFFTInv_PackToR_64f(srcDst, srcDst, ctx, buffer);
}

VornStatus vornsFFTInv_CCSToR_64f(const Vorn64f* src, Vorn64f* dst, const VornsFFTSpec* ctx, Vorn8u* buffer) {
    VORN_CHECK(notNull(ctx));
    VORN_CHECK(matches(ctx, tagR64f));
    VORN_CHECK(notNull(src, dst));
    return inverseFrom<Ccs>(*recordOf<Vorn64f>(ctx), src, dst, buffer);
}

VornStatus vornsFFTInv_CCSToR_64f_I(Vorn64f* srcDst, const VornsFFTSpec* ctx, Vorn8u* buffer) {
    return vornsFFTInv_CCSToR_64f(srcDst, srcDst, ctx, buffer);
}

VornStatus vornsFFTFwd_RToPerm_32s_Sfs(const Vorn32s* src, Vorn32s* dst, const VornsFFTFixedSpec* ctx, int scaleFactor,
                                       Vorn8u* buffer) {
    VORN_CHECK(notNull(ctx));
    VORN_CHECK(matches(ctx, tagR32s));
    VORN_CHECK(notNull(src, dst));
    return fixedForwardTo<Perm, Through64f>(*recordOf(ctx), real32s, src, dst, scaleFactor, buffer);
}

VornStatus vornsFFTFwd_RToPerm_32s_ISfs(Vorn32s* srcDst, const VornsFFTFixedSpec* ctx, int scaleFactor,
                                        Vorn8u* buffer) {
    return vornsFFTFwd_RToPerm_32s_Sfs(srcDst, srcDst, ctx, scaleFactor, buffer);
}

VornStatus vornsFFTFwd_RToPack_32s_Sfs(const Vorn32s* src, Vorn32s* dst, const VornsFFTFixedSpec* ctx, int scaleFactor,
                                       Vorn8u* buffer) {
    VORN_CHECK(notNull(ctx));
    VORN_CHECK(matches(ctx, tagR32s));
    VORN_CHECK(notNull(src, dst));
    return fixedForwardTo<Pack, Through64f>(*recordOf(ctx), real32s, src, dst, scaleFactor, buffer);
}

VornStatus vornsFFTFwd_RToPack_32s_ISfs(Vorn32s* srcDst, const VornsFFTFixedSpec* ctx, int scaleFactor,
                                        Vorn8u* buffer) {
    return vornsFFTFwd_RToPack_32s_Sfs(srcDst, srcDst, ctx, scaleFactor, buffer);
}

VornStatus vornsFFTFwd_RToCCS_32s_Sfs(const Vorn32s* src, Vorn32s* dst, const VornsFFTFixedSpec* ctx, int scaleFactor,
                                      Vorn8u* buffer) {
    VORN_CHECK(notNull(ctx));
    VORN_CHECK(matches(ctx, tagR32s));
    VORN_CHECK(notNull(src, dst));
    return fixedForwardTo<Ccs, Through64f>(*recordOf(ctx), real32s, src, dst, scaleFactor, buffer);
}

VornStatus vornsFFTFwd_RToCCS_32s_ISfs(Vorn32s* srcDst, const VornsFFTFixedSpec* ctx, int scaleFactor, Vorn8u* buffer) {
    return vornsFFTFwd_RToCCS_32s_Sfs(srcDst, srcDst, ctx, scaleFactor, buffer);
}

VornStatus vornsFFTInv_PermToR_32s_Sfs(const Vorn32s* src, Vorn32s* dst, const VornsFFTFixedSpec* ctx, int scaleFactor,
                                       Vorn8u* buffer) {
    VORN_CHECK(notNull(ctx));
    VORN_CHECK(matches(ctx, tagR32s));
    VORN_CHECK(notNull(src, dst));
    return fixedInverseFrom<Perm, Through64f>(*recordOf(ctx), real32s, src, dst, scaleFactor, buffer);
}

VornStatus vornsFFTInv_PermToR_32s_ISfs(Vorn32s* srcDst, const VornsFFTFixedSpec* ctx, int scaleFactor,
                                        Vorn8u* buffer) {
    return vornsFFTInv_PermToR_32s_Sfs(srcDst, srcDst, ctx, scaleFactor, buffer);
}

VornStatus vornsFFTInv_PackToR_32s_Sfs(const Vorn32s* src, Vorn32s* dst, const VornsFFTFixedSpec* ctx, int scaleFactor,
                                       Vorn8u* buffer) {
    VORN_CHECK(notNull(ctx));
    VORN_CHECK(matches(ctx, tagR32s));
    VORN_CHECK(notNull(src, dst));
    return fixedInverseFrom<Pack, Through64f>(*recordOf(ctx), real32s, src, dst, scaleFactor, buffer);
}

VornStatus vornsFFTInv_PackToR_32s_ISfs(Vorn32s* srcDst, const VornsFFTFixedSpec* ctx, int scaleFactor,
                                        Vorn8u* buffer) {
    return vornsFFTInv_PackToR_32s_Sfs(srcDst, srcDst, ctx, scaleFactor, buffer);
}

VornStatus vornsFFTInv_CCSToR_32s_Sfs(const Vorn32s* src, Vorn32s* dst, const VornsFFTFixedSpec* ctx, int scaleFactor,
                                      Vorn8u* buffer) {
    VORN_CHECK(notNull(ctx));
    VORN_CHECK(matches(ctx, tagR32s));
    VORN_CHECK(notNull(src, dst));
    return fixedInverseFrom<Ccs, Through64f>(*recordOf(ctx), real32s, src, dst, scaleFactor, buffer);
}

VornStatus vornsFFTInv_CCSToR_32s_ISfs(Vorn32s* srcDst, const VornsFFTFixedSpec* ctx, int scaleFactor, Vorn8u* buffer) {
    return vornsFFTInv_CCSToR_32s_Sfs(srcDst, srcDst, ctx, scaleFactor, buffer);
}

VornStatus vornsFFTFwd_RToCCS_16s32s_Sfs(const Vorn16s* src, Vorn32s* dst, const VornsFFTFixedSpec* ctx,
                                         int scaleFactor, Vorn8u* buffer) {
    VORN_CHECK(notNull(ctx));
    VORN_CHECK(matches(ctx, tagR16s32s));
    VORN_CHECK(notNull(src, dst));
    return fixedForwardTo<Ccs, Through32f>(*recordOf(ctx), real16s32s, src, dst, scaleFactor, buffer);
}

VornStatus vornsFFTInv_CCSToR_32s16s_Sfs(const Vorn32s* src, Vorn16s* dst, const VornsFFTFixedSpec* ctx,
                                         int scaleFactor, Vorn8u* buffer) {
    VORN_CHECK(notNull(ctx));
    VORN_CHECK(matches(ctx, tagR16s32s));
    VORN_CHECK(notNull(src, dst));
    return fixedInverseFrom<Ccs, Through32f>(*recordOf(ctx), real16s32s, src, dst, scaleFactor, buffer);
}
