// Transforms of real values: the exported functions.
#include "fft/context.h"
#include "fft/real_forms.h"
#include "frame/checks.h"
#include "vornsr/fft.h"
#include "vornsr/signal.h"

using namespace vorn;
using namespace vorn::fft;

VornStatus vornsFFTFwd_RToCCS_32f(const Vorn32f* src, Vorn32f* dst, const VornsFFTSpec* ctx, Vorn8u* buffer) {
    VORN_CHECK(notNull(ctx));
    VORN_CHECK(matches(ctx, tagR32f));
    VORN_CHECK(notNull(src, dst));
    return forwardTo<Ccs>(*recordOf<Vorn32f>(ctx), src, dst, buffer);
}

VornStatus vornsFFTFwd_RToCCS_32f_I(Vorn32f* srcDst, const VornsFFTSpec* ctx, Vorn8u* buffer) {
    return vornsFFTFwd_RToCCS_32f(srcDst, srcDst, ctx, buffer);
}

VornStatus vornsFFTFwd_RToCCS_16s32s_Sfs(const Vorn16s* src, Vorn32s* dst, const VornsFFTFixedSpec* ctx,
                                         int scaleFactor, Vorn8u* buffer) {
    VORN_CHECK(notNull(ctx));
    VORN_CHECK(matches(ctx, tagR16s32s));
    VORN_CHECK(notNull(src, dst));
    return fixedForwardTo<Ccs, Vorn32f>(*recordOf(ctx), src, dst, scaleFactor, buffer, vornsConvert_16s32f,
                                        vornsConvert_32f32s_Sfs);
}
