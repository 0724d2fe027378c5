// Transform contexts: the exported functions.
#include "fft/context.h"
#include "frame/checks.h"
#include "vornsr/fft.h"

using namespace vorn;
using namespace vorn::fft;

VornStatus vornsFFTGetSize_R_32f(int order, int, int, int* specSize, int* initBufSize, int* workBufSize) {
    return getSize<Vorn32f>(real32f, order, specSize, initBufSize, workBufSize);
}

VornStatus vornsFFTGetSize_R_16s32s(int order, int, int, int* specSize, int* initBufSize, int* workBufSize) {
    return getSize<Vorn32f>(real16s32s, order, specSize, initBufSize, workBufSize);
}

VornStatus vornsFFTInitAlloc_R_32f(VornsFFTSpec** ctxOut, int order, int flag, int hint) {
    return initAlloc<Vorn32f>(real32f, ctxOut, order, flag, hint);
}

VornStatus vornsFFTInitAlloc_R_16s32s(VornsFFTFixedSpec** ctxOut, int order, int flag, int hint) {
    return initAlloc<Vorn32f>(real16s32s, ctxOut, order, flag, hint);
}

VornStatus vornsFFTInit_R_32f(VornsFFTSpec** ctxOut, int order, int flag, int hint, Vorn8u* specMem, Vorn8u* initBuf) {
    return init<Vorn32f>(real32f, ctxOut, order, flag, hint, specMem, initBuf);
}

VornStatus vornsFFTInit_R_16s32s(VornsFFTFixedSpec** ctxOut, int order, int flag, int hint, Vorn8u* specMem,
                                 Vorn8u* initBuf) {
    return init<Vorn32f>(real16s32s, ctxOut, order, flag, hint, specMem, initBuf);
}

VornStatus vornsFFTFree_R_32f(VornsFFTSpec* ctx) {
    VORN_CHECK(notNull(ctx));
    VORN_CHECK(matches(ctx, real32f.tag));
    release<Vorn32f>(ctx);
    return vornStsNoErr;
}

VornStatus vornsFFTFree_R_16s32s(VornsFFTFixedSpec* ctx) {
    VORN_CHECK(notNull(ctx));
    VORN_CHECK(matches(ctx, real16s32s.tag));
    release<Vorn32f>(ctx);
    return vornStsNoErr;
}

VornStatus vornsFFTGetBufSize_R_32f(const VornsFFTSpec* ctx, int* size) {
    VORN_CHECK(notNull(ctx, size));
    VORN_CHECK(matches(ctx, real32f.tag));
    *size = bufSizeFor(recordOf<Vorn32f>(ctx)->workBufSize);
    return vornStsNoErr;
}

VornStatus vornsFFTGetBufSize_R_16s32s(const VornsFFTFixedSpec* ctx, int* size) {
    VORN_CHECK(notNull(ctx, size));
    VORN_CHECK(matches(ctx, real16s32s.tag));
    *size = bufSizeFor(recordOf(ctx)->workBufSize);
    return vornStsNoErr;
}
