// Transform contexts: the exported functions.
#include "fft/contexts/context.h"
#include "frame/checks.h"
#include "vornsr/fft.h"

using namespace vorn;
using namespace vorn::fft;

VornStatus vornsFFTGetSize_C_32fc(int order, int, int, int* specSize, int* initBufSize, int* workBufSize) {
    return getSize<Vorn32f>(complex32fc, order, specSize, initBufSize, workBufSize);
}

VornStatus vornsFFTGetSize_C_32f(int order, int, int, int* specSize, int* initBufSize, int* workBufSize) {
    return getSize<Vorn32f>(complex32f, order, specSize, initBufSize, workBufSize);
}

VornStatus vornsFFTGetSize_R_32f(int order, int, int, int* specSize, int* initBufSize, int* workBufSize) {
    return getSize<Vorn32f>(real32f, order, specSize, initBufSize, workBufSize);
}

VornStatus vornsFFTGetSize_C_64fc(int order, int, int, int* specSize, int* initBufSize, int* workBufSize) {
    return getSize<Vorn64f>(complex64fc, order, specSize, initBufSize, workBufSize);
}

VornStatus vornsFFTGetSize_C_64f(int order, int, int, int* specSize, int* initBufSize, int* workBufSize) {
    return getSize<Vorn64f>(complex64f, order, specSize, initBufSize, workBufSize);
}

VornStatus vornsFFTGetSize_R_64f(int order, int, int, int* specSize, int* initBufSize, int* workBufSize) {
    return getSize<Vorn64f>(real64f, order, specSize, initBufSize, workBufSize);
}

VornStatus vornsFFTGetSize_C_32sc(int order, int, int, int* specSize, int* initBufSize, int* workBufSize) {
    return getSize<Vorn64f>(complex32sc, order, specSize, initBufSize, workBufSize);
}

VornStatus vornsFFTGetSize_C_32s(int order, int, int, int* specSize, int* initBufSize, int* workBufSize) {
    return getSize<Vorn64f>(complex32s, order, specSize, initBufSize, workBufSize);
}

VornStatus vornsFFTGetSize_R_32s(int order, int, int, int* specSize, int* initBufSize, int* workBufSize) {
    return getSize<Vorn64f>(real32s, order, specSize, initBufSize, workBufSize);
}

VornStatus vornsFFTGetSize_R_16s32s(int order, int, int, int* specSize, int* initBufSize, int* workBufSize) {
    return getSize<Vorn32f>(real16s32s, order, specSize, initBufSize, workBufSize);
}

VornStatus vornsFFTInitAlloc_C_32fc(VornsFFTSpec** ctxOut, int order, int flag, int hint) {
    return initAlloc<Vorn32f>(complex32fc, ctxOut, order, flag, hint);
}

VornStatus vornsFFTInitAlloc_C_32f(VornsFFTSpec** ctxOut, int order, int flag, int hint) {
    return initAlloc<Vorn32f>(complex32f, ctxOut, order, flag, hint);
}

VornStatus vornsFFTInitAlloc_R_32f(VornsFFTSpec** ctxOut, int order, int flag, int hint) {
    return initAlloc<Vorn32f>(real32f, ctxOut, order, flag, hint);
}

VornStatus vornsFFTInitAlloc_C_64fc(VornsFFTSpec** ctxOut, int order, int flag, int hint) {
    return initAlloc<Vorn64f>(complex64fc, ctxOut, order, flag, hint);
}

VornStatus vornsFFTInitAlloc_C_64f(VornsFFTSpec** ctxOut, int order, int flag, int hint) {
    return initAlloc<Vorn64f>(complex64f, ctxOut, order, flag, hint);
}

VornStatus vornsFFTInitAlloc_R_64f(VornsFFTSpec** ctxOut, int order, int flag, int hint) {
    return initAlloc<Vorn64f>(real64f, ctxOut, order, flag, hint);
}

VornStatus vornsFFTInitAlloc_C_32sc(VornsFFTFixedSpec** ctxOut, int order, int flag, int hint) {
    return initAlloc<Vorn64f>(complex32sc, ctxOut, order, flag, hint);
}

VornStatus vornsFFTInitAlloc_C_32s(VornsFFTFixedSpec** ctxOut, int order, int flag, int hint) {
    return initAlloc<Vorn64f>(complex32s, ctxOut, order, flag, hint);
}

VornStatus vornsFFTInitAlloc_R_32s(VornsFFTFixedSpec** ctxOut, int order, int flag, int hint) {
    return initAlloc<Vorn64f>(real32s, ctxOut, order, flag, hint);
}

VornStatus vornsFFTInitAlloc_R_16s32s(VornsFFTFixedSpec** ctxOut, int order, int flag, int hint) {
    return initAlloc<Vorn32f>(real16s32s, ctxOut, order, flag, hint);
}

VornStatus vornsFFTInit_C_32fc(VornsFFTSpec** ctxOut, int order, int flag, int hint, Vorn8u* specMem, Vorn8u* initBuf) {
    return init<Vorn32f>(complex32fc, ctxOut, order, flag, hint, specMem, initBuf);
}

VornStatus vornsFFTInit_C_32f(VornsFFTSpec** ctxOut, int order, int flag, int hint, Vorn8u* specMem, Vorn8u* initBuf) {
    return init<Vorn32f>(complex32f, ctxOut, order, flag, hint, specMem, initBuf);
}

VornStatus vornsFFTInit_R_32f(VornsFFTSpec** ctxOut, int order, int flag, int hint, Vorn8u* specMem, Vorn8u* initBuf) {
    return init<Vorn32f>(real32f, ctxOut, order, flag, hint, specMem, initBuf);
}

VornStatus vornsFFTInit_C_64fc(VornsFFTSpec** ctxOut, int order, int flag, int hint, Vorn8u* specMem, Vorn8u* initBuf) {
    return init<Vorn64f>(complex64fc, ctxOut, order, flag, hint, specMem, initBuf);
}

VornStatus vornsFFTInit_C_64f(VornsFFTSpec** ctxOut, int order, int flag, int hint, Vorn8u* specMem, Vorn8u* initBuf) {
    return init<Vorn64f>(complex64f, ctxOut, order, flag, hint, specMem, initBuf);
}

VornStatus vornsFFTInit_R_64f(VornsFFTSpec** ctxOut, int order, int flag, int hint, Vorn8u* specMem, Vorn8u* initBuf) {
    return init<Vorn64f>(real64f, ctxOut, order, flag, hint, specMem, initBuf);
}

VornStatus vornsFFTInit_C_32sc(VornsFFTFixedSpec** ctxOut, int order, int flag, int hint, Vorn8u* specMem,
                               Vorn8u* initBuf) {
    return init<Vorn64f>(complex32sc, ctxOut, order, flag, hint, specMem, initBuf);
}

VornStatus vornsFFTInit_C_32s(VornsFFTFixedSpec** ctxOut, int order, int flag, int hint, Vorn8u* specMem,
                              Vorn8u* initBuf) {
    return init<Vorn64f>(complex32s, ctxOut, order, flag, hint, specMem, initBuf);
}

VornStatus vornsFFTInit_R_32s(VornsFFTFixedSpec** ctxOut, int order, int flag, int hint, Vorn8u* specMem,
                              Vorn8u* initBuf) {
    return init<Vorn64f>(real32s, ctxOut, order, flag, hint, specMem, initBuf);
}

VornStatus vornsFFTInit_R_16s32s(VornsFFTFixedSpec** ctxOut, int order, int flag, int hint, Vorn8u* specMem,
                                 Vorn8u* initBuf) {
    return init<Vorn32f>(real16s32s, ctxOut, order, flag, hint, specMem, initBuf);
}

VornStatus vornsFFTFree_C_32fc(VornsFFTSpec* ctx) {
    VORN_CHECK(notNull(ctx));
    VORN_CHECK(matches(ctx, complex32fc.tag));
    release<Vorn32f>(ctx);
    return vornStsNoErr;
}

VornStatus vornsFFTFree_C_32f(VornsFFTSpec* ctx) {
    VORN_CHECK(notNull(ctx));
    VORN_CHECK(matches(ctx, complex32f.tag));
    release<Vorn32f>(ctx);
    return vornStsNoErr;
}

VornStatus vornsFFTFree_R_32f(VornsFFTSpec* ctx) {
    VORN_CHECK(notNull(ctx));
    VORN_CHECK(matches(ctx, real32f.tag));
    release<Vorn32f>(ctx);
    return vornStsNoErr;
}

VornStatus vornsFFTFree_C_64fc(VornsFFTSpec* ctx) {
    VORN_CHECK(notNull(ctx));
    VORN_CHECK(matches(ctx, complex64fc.tag));
    release<Vorn64f>(ctx);
    return vornStsNoErr;
}

VornStatus vornsFFTFree_C_64f(VornsFFTSpec* ctx) {
    VORN_CHECK(notNull(ctx));
    VORN_CHECK(matches(ctx, complex64f.tag));
    release<Vorn64f>(ctx);
    return vornStsNoErr;
}

VornStatus vornsFFTFree_R_64f(VornsFFTSpec* ctx) {
    VORN_CHECK(notNull(ctx));
    VORN_CHECK(matches(ctx, real64f.tag));
    release<Vorn64f>(ctx);
    return vornStsNoErr;
}

VornStatus vornsFFTFree_C_32sc(VornsFFTFixedSpec* ctx) {
    VORN_CHECK(notNull(ctx));
    VORN_CHECK(matches(ctx, complex32sc.tag));
    release<Vorn64f>(ctx);
    return vornStsNoErr;
}

VornStatus vornsFFTFree_C_32s(VornsFFTFixedSpec* ctx) {
    VORN_CHECK(notNull(ctx));
    VORN_CHECK(matches(ctx, complex32s.tag));
    release<Vorn64f>(ctx);
    return vornStsNoErr;
}

VornStatus vornsFFTFree_R_32s(VornsFFTFixedSpec* ctx) {
    VORN_CHECK(notNull(ctx));
    VORN_CHECK(matches(ctx, real32s.tag));
    release<Vorn64f>(ctx);
    return vornStsNoErr;
}

VornStatus vornsFFTFree_R_16s32s(VornsFFTFixedSpec* ctx) {
    VORN_CHECK(notNull(ctx));
    VORN_CHECK(matches(ctx, real16s32s.tag));
    release<Vorn32f>(ctx);
    return vornStsNoErr;
}

VornStatus vornsFFTGetBufSize_C_32fc(const VornsFFTSpec* ctx, int* size) {
    VORN_CHECK(notNull(ctx, size));
    VORN_CHECK(matches(ctx, complex32fc.tag));
    *size = bufSizeFor(recordOf<Vorn32f>(ctx)->workBufSize);
    return vornStsNoErr;
}

VornStatus vornsFFTGetBufSize_C_32f(const VornsFFTSpec* ctx, int* size) {
    VORN_CHECK(notNull(ctx, size));
    VORN_CHECK(matches(ctx, complex32f.tag));
    *size = bufSizeFor(recordOf<Vorn32f>(ctx)->workBufSize);
    return vornStsNoErr;
}

VornStatus vornsFFTGetBufSize_R_32f(const VornsFFTSpec* ctx, int* size) {
    VORN_CHECK(notNull(ctx, size));
    VORN_CHECK(matches(ctx, real32f.tag));
    *size = bufSizeFor(recordOf<Vorn32f>(ctx)->workBufSize);
    return vornStsNoErr;
}

VornStatus vornsFFTGetBufSize_C_64fc(const VornsFFTSpec* ctx, int* size) {
    VORN_CHECK(notNull(ctx, size));
    VORN_CHECK(matches(ctx, complex64fc.tag));
    *size = bufSizeFor(recordOf<Vorn64f>(ctx)->workBufSize);
    return vornStsNoErr;
}

VornStatus vornsFFTGetBufSize_C_64f(const VornsFFTSpec* ctx, int* size) {
    VORN_CHECK(notNull(ctx, size));
    VORN_CHECK(matches(ctx, complex64f.tag));
    *size = bufSizeFor(recordOf<Vorn64f>(ctx)->workBufSize);
    return vornStsNoErr;
}

VornStatus vornsFFTGetBufSize_R_64f(const VornsFFTSpec* ctx, int* size) {
    VORN_CHECK(notNull(ctx, size));
    VORN_CHECK(matches(ctx, real64f.tag));
    *size = bufSizeFor(recordOf<Vorn64f>(ctx)->workBufSize);
    return vornStsNoErr;
}

VornStatus vornsFFTGetBufSize_C_32sc(const VornsFFTFixedSpec* ctx, int* size) {
    VORN_CHECK(notNull(ctx, size));
    VORN_CHECK(matches(ctx, complex32sc.tag));
    *size = bufSizeFor(recordOf(ctx)->workBufSize);
    return vornStsNoErr;
}

VornStatus vornsFFTGetBufSize_C_32s(const VornsFFTFixedSpec* ctx, int* size) {
    VORN_CHECK(notNull(ctx, size));
    VORN_CHECK(matches(ctx, complex32s.tag));
    *size = bufSizeFor(recordOf(ctx)->workBufSize);
    return vornStsNoErr;
}

VornStatus vornsFFTGetBufSize_R_32s(const VornsFFTFixedSpec* ctx, int* size) {
    VORN_CHECK(notNull(ctx, size));
    VORN_CHECK(matches(ctx, real32s.tag));
    *size = bufSizeFor(recordOf(ctx)->workBufSize);
    return vornStsNoErr;
}

VornStatus vornsFFTGetBufSize_R_16s32s(const VornsFFTFixedSpec* ctx, int* size) {
    VORN_CHECK(notNull(ctx, size));
    VORN_CHECK(matches(ctx, real16s32s.tag));
    *size = bufSizeFor(recordOf(ctx)->workBufSize);
    return vornStsNoErr;
}
