// Products of two vectors.
#include "arithmetic/compute.h"
#include "frame/checks.h"
#include "vornsr/signal.h"

using namespace vorn;

VornStatus vornsMul_8u_Sfs(const Vorn8u* src1, const Vorn8u* src2, Vorn8u* dst, int len, int scaleFactor) {
    VORN_CHECK(notNull(src1, src2, dst));
    VORN_CHECK(positive(len));
    computeScaled<Product8u>(elements(src1), elements(src2), dst, len, scaleFactor);
    return vornStsNoErr;
}

VornStatus vornsMul_8u_ISfs(const Vorn8u* src, Vorn8u* srcDst, int len, int scaleFactor) {
    return vornsMul_8u_Sfs(src, srcDst, srcDst, len, scaleFactor);
}

VornStatus vornsMul_8u16u(const Vorn8u* src1, const Vorn8u* src2, Vorn16u* dst, int len) {
    VORN_CHECK(notNull(src1, src2, dst));
    VORN_CHECK(positive(len));
    compute<Product8u16u>(elements(src1), elements(src2), dst, len);
    return vornStsNoErr;
}

VornStatus vornsMul_16s(const Vorn16s* src1, const Vorn16s* src2, Vorn16s* dst, int len) {
    VORN_CHECK(notNull(src1, src2, dst));
    VORN_CHECK(positive(len));
    compute<PlainOf<Product16s>>(elements(src1), elements(src2), dst, len);
    return vornStsNoErr;
}

VornStatus vornsMul_16s_I(const Vorn16s* src, Vorn16s* srcDst, int len) {
    return vornsMul_16s(src, srcDst, srcDst, len);
}

VornStatus vornsMul_16s_Sfs(const Vorn16s* src1, const Vorn16s* src2, Vorn16s* dst, int len, int scaleFactor) {
    VORN_CHECK(notNull(src1, src2, dst));
    VORN_CHECK(positive(len));
    computeScaled<Product16s>(elements(src1), elements(src2), dst, len, scaleFactor);
    return vornStsNoErr;
}

VornStatus vornsMul_16s_ISfs(const Vorn16s* src, Vorn16s* srcDst, int len, int scaleFactor) {
    return vornsMul_16s_Sfs(src, srcDst, srcDst, len, scaleFactor);
}

VornStatus vornsMul_16s32f(const Vorn16s* src1, const Vorn16s* src2, Vorn32f* dst, int len) {
    VORN_CHECK(notNull(src1, src2, dst));
    VORN_CHECK(positive(len));
    compute<In32f<Times>>(elements(src1), elements(src2), dst, len);
    return vornStsNoErr;
}

VornStatus vornsMul_16s32s_Sfs(const Vorn16s* src1, const Vorn16s* src2, Vorn32s* dst, int len, int scaleFactor) {
    VORN_CHECK(notNull(src1, src2, dst));
    VORN_CHECK(positive(len));
    computeScaled<Product16s32s>(elements(src1), elements(src2), dst, len, scaleFactor);
    return vornStsNoErr;
}

VornStatus vornsMul_16u16s_Sfs(const Vorn16u* src1, const Vorn16s* src2, Vorn16s* dst, int len, int scaleFactor) {
    VORN_CHECK(notNull(src1, src2, dst));
    VORN_CHECK(positive(len));
    computeScaled<Product16u16s>(elements(src1), elements(src2), dst, len, scaleFactor);
    return vornStsNoErr;
}

VornStatus vornsMul_16sc_Sfs(const Vorn16sc* src1, const Vorn16sc* src2, Vorn16sc* dst, int len, int scaleFactor) {
    VORN_CHECK(notNull(src1, src2, dst));
    VORN_CHECK(positive(len));
    computeScaled<Product16sc>(elements(src1), elements(src2), dst, len, scaleFactor);
    return vornStsNoErr;
}

VornStatus vornsMul_16sc_ISfs(const Vorn16sc* src, Vorn16sc* srcDst, int len, int scaleFactor) {
    return vornsMul_16sc_Sfs(src, srcDst, srcDst, len, scaleFactor);
}

VornStatus vornsMul_32s_Sfs(const Vorn32s* src1, const Vorn32s* src2, Vorn32s* dst, int len, int scaleFactor) {
    VORN_CHECK(notNull(src1, src2, dst));
    VORN_CHECK(positive(len));
    multiply32s(elements(src1), elements(src2), dst, len, scaleFactor);
    return vornStsNoErr;
}

VornStatus vornsMul_32s_ISfs(const Vorn32s* src, Vorn32s* srcDst, int len, int scaleFactor) {
    return vornsMul_32s_Sfs(src, srcDst, srcDst, len, scaleFactor);
}

VornStatus vornsMul_32sc_Sfs(const Vorn32sc* src1, const Vorn32sc* src2, Vorn32sc* dst, int len, int scaleFactor) {
    VORN_CHECK(notNull(src1, src2, dst));
    VORN_CHECK(positive(len));
    computeScaled<Product32sc>(elements(src1), elements(src2), dst, len, scaleFactor);
    return vornStsNoErr;
}

VornStatus vornsMul_32sc_ISfs(const Vorn32sc* src, Vorn32sc* srcDst, int len, int scaleFactor) {
    return vornsMul_32sc_Sfs(src, srcDst, srcDst, len, scaleFactor);
}

VornStatus vornsMul_32s32sc_Sfs(const Vorn32s* src1, const Vorn32sc* src2, Vorn32sc* dst, int len, int scaleFactor) {
    VORN_CHECK(notNull(src1, src2, dst));
    VORN_CHECK(positive(len));
    computeScaled<Product32s32sc>(Elements32sInto64{src1}, elements(src2), dst, len, scaleFactor);
    return vornStsNoErr;
}

VornStatus vornsMul_32s32sc_ISfs(const Vorn32s* src, Vorn32sc* srcDst, int len, int scaleFactor) {
    return vornsMul_32s32sc_Sfs(src, srcDst, srcDst, len, scaleFactor);
}

VornStatus vornsMul_32f(const Vorn32f* src1, const Vorn32f* src2, Vorn32f* dst, int len) {
    VORN_CHECK(notNull(src1, src2, dst));
    VORN_CHECK(positive(len));
    compute<InFloat<Vorn32f, Times>>(elements(src1), elements(src2), dst, len);
    return vornStsNoErr;
}

VornStatus vornsMul_32f_I(const Vorn32f* src, Vorn32f* srcDst, int len) {
    return vornsMul_32f(src, srcDst, srcDst, len);
}

VornStatus vornsMul_32fc(const Vorn32fc* src1, const Vorn32fc* src2, Vorn32fc* dst, int len) {
    VORN_CHECK(notNull(src1, src2, dst));
    VORN_CHECK(positive(len));
    compute<ComplexTimes<Vorn32f>>(complexFactors(src1), elements(src2), dst, len);
    return vornStsNoErr;
}

VornStatus vornsMul_32fc_I(const Vorn32fc* src, Vorn32fc* srcDst, int len) {
    return vornsMul_32fc(src, srcDst, srcDst, len);
}

VornStatus vornsMul_64f(const Vorn64f* src1, const Vorn64f* src2, Vorn64f* dst, int len) {
    VORN_CHECK(notNull(src1, src2, dst));
    VORN_CHECK(positive(len));
    compute<InFloat<Vorn64f, Times>>(elements(src1), elements(src2), dst, len);
    return vornStsNoErr;
}

VornStatus vornsMul_64f_I(const Vorn64f* src, Vorn64f* srcDst, int len) {
    return vornsMul_64f(src, srcDst, srcDst, len);
}

VornStatus vornsMul_64fc(const Vorn64fc* src1, const Vorn64fc* src2, Vorn64fc* dst, int len) {
    VORN_CHECK(notNull(src1, src2, dst));
    VORN_CHECK(positive(len));
    compute<ComplexTimes<Vorn64f>>(complexFactors(src1), elements(src2), dst, len);
    return vornStsNoErr;
}

VornStatus vornsMul_64fc_I(const Vorn64fc* src, Vorn64fc* srcDst, int len) {
    return vornsMul_64fc(src, srcDst, srcDst, len);
}
