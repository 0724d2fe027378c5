// Sums and differences of two vectors. A difference takes its first operand from its second.
#include "arithmetic/compute.h"
#include "frame/checks.h"
#include "vornsr/signal.h"

using namespace vorn;

VornStatus vornsAdd_8u_Sfs(const Vorn8u* src1, const Vorn8u* src2, Vorn8u* dst, int len, int scaleFactor) {
    VORN_CHECK(notNull(src1, src2, dst));
    VORN_CHECK(positive(len));
    computeScaled<Sum8u>(elements(src1), elements(src2), dst, len, scaleFactor);
    return vornStsNoErr;
}

VornStatus vornsAdd_8u_ISfs(const Vorn8u* src, Vorn8u* srcDst, int len, int scaleFactor) {
    return vornsAdd_8u_Sfs(src, srcDst, srcDst, len, scaleFactor);
}

VornStatus vornsAdd_8u16u(const Vorn8u* src1, const Vorn8u* src2, Vorn16u* dst, int len) {
    VORN_CHECK(notNull(src1, src2, dst));
    VORN_CHECK(positive(len));
    compute<Sum8u16u>(elements(src1), elements(src2), dst, len);
    return vornStsNoErr;
}

VornStatus vornsAdd_16u(const Vorn16u* src1, const Vorn16u* src2, Vorn16u* dst, int len) {
    VORN_CHECK(notNull(src1, src2, dst));
    VORN_CHECK(positive(len));
    compute<Sum16u>(elements(src1), elements(src2), dst, len);
    return vornStsNoErr;
}

VornStatus vornsAdd_16s(const Vorn16s* src1, const Vorn16s* src2, Vorn16s* dst, int len) {
    VORN_CHECK(notNull(src1, src2, dst));
    VORN_CHECK(positive(len));
    compute<PlainOf<SumOf<Vorn16s>>>(elements(src1), elements(src2), dst, len);
    return vornStsNoErr;
}

VornStatus vornsAdd_16s_I(const Vorn16s* src, Vorn16s* srcDst, int len) {
    return vornsAdd_16s(src, srcDst, srcDst, len);
}

VornStatus vornsAdd_16s_Sfs(const Vorn16s* src1, const Vorn16s* src2, Vorn16s* dst, int len, int scaleFactor) {
    VORN_CHECK(notNull(src1, src2, dst));
    VORN_CHECK(positive(len));
    computeScaled<SumOf<Vorn16s>>(elements(src1), elements(src2), dst, len, scaleFactor);
    return vornStsNoErr;
}

VornStatus vornsAdd_16s_ISfs(const Vorn16s* src, Vorn16s* srcDst, int len, int scaleFactor) {
    return vornsAdd_16s_Sfs(src, srcDst, srcDst, len, scaleFactor);
}

VornStatus vornsAdd_16s32f(const Vorn16s* src1, const Vorn16s* src2, Vorn32f* dst, int len) {
    VORN_CHECK(notNull(src1, src2, dst));
    VORN_CHECK(positive(len));
    compute<In32f<Plus>>(elements(src1), elements(src2), dst, len);
    return vornStsNoErr;
}

// The one in-place form without a sister: a sum in 32 bits has its operands in two types.
VornStatus vornsAdd_16s32s_I(const Vorn16s* src, Vorn32s* srcDst, int len) {
    VORN_CHECK(notNull(src, srcDst));
    VORN_CHECK(positive(len));
    compute<Sum32s16s>(elementPairs(srcDst), elements(src), srcDst, len);
    return vornStsNoErr;
}

VornStatus vornsAdd_16sc_Sfs(const Vorn16sc* src1, const Vorn16sc* src2, Vorn16sc* dst, int len, int scaleFactor) {
    VORN_CHECK(notNull(src1, src2, dst));
    VORN_CHECK(positive(len));
    computeScaled<SumOf<Vorn16s>>(parts(src1), parts(src2), lanesAt(dst), twice(len), scaleFactor);
    return vornStsNoErr;
}

VornStatus vornsAdd_16sc_ISfs(const Vorn16sc* src, Vorn16sc* srcDst, int len, int scaleFactor) {
    return vornsAdd_16sc_Sfs(src, srcDst, srcDst, len, scaleFactor);
}

VornStatus vornsAdd_32u(const Vorn32u* src1, const Vorn32u* src2, Vorn32u* dst, int len) {
    VORN_CHECK(notNull(src1, src2, dst));
    VORN_CHECK(positive(len));
    compute<Sum32u>(elements(src1), elements(src2), dst, len);
    return vornStsNoErr;
}

VornStatus vornsAdd_32s_Sfs(const Vorn32s* src1, const Vorn32s* src2, Vorn32s* dst, int len, int scaleFactor) {
    VORN_CHECK(notNull(src1, src2, dst));
    VORN_CHECK(positive(len));
    computeScaled<SumOf<Vorn32s>>(elements(src1), elements(src2), dst, len, scaleFactor);
    return vornStsNoErr;
}

VornStatus vornsAdd_32s_ISfs(const Vorn32s* src, Vorn32s* srcDst, int len, int scaleFactor) {
    return vornsAdd_32s_Sfs(src, srcDst, srcDst, len, scaleFactor);
}

VornStatus vornsAdd_32sc_Sfs(const Vorn32sc* src1, const Vorn32sc* src2, Vorn32sc* dst, int len, int scaleFactor) {
    VORN_CHECK(notNull(src1, src2, dst));
    VORN_CHECK(positive(len));
    computeScaled<SumOf<Vorn32s>>(parts(src1), parts(src2), lanesAt(dst), twice(len), scaleFactor);
    return vornStsNoErr;
}

VornStatus vornsAdd_32sc_ISfs(const Vorn32sc* src, Vorn32sc* srcDst, int len, int scaleFactor) {
    return vornsAdd_32sc_Sfs(src, srcDst, srcDst, len, scaleFactor);
}

VornStatus vornsAdd_32f(const Vorn32f* src1, const Vorn32f* src2, Vorn32f* dst, int len) {
    VORN_CHECK(notNull(src1, src2, dst));
    VORN_CHECK(positive(len));
    compute<InFloat<Vorn32f, Plus>>(elements(src1), elements(src2), dst, len);
    return vornStsNoErr;
}

VornStatus vornsAdd_32f_I(const Vorn32f* src, Vorn32f* srcDst, int len) {
    return vornsAdd_32f(src, srcDst, srcDst, len);
}

VornStatus vornsAdd_32fc(const Vorn32fc* src1, const Vorn32fc* src2, Vorn32fc* dst, int len) {
    VORN_CHECK(notNull(src1, src2, dst));
    VORN_CHECK(positive(len));
    compute<InFloat<Vorn32f, Plus>>(parts(src1), parts(src2), lanesAt(dst), twice(len));
    return vornStsNoErr;
}

VornStatus vornsAdd_32fc_I(const Vorn32fc* src, Vorn32fc* srcDst, int len) {
    return vornsAdd_32fc(src, srcDst, srcDst, len);
}

VornStatus vornsAdd_64f(const Vorn64f* src1, const Vorn64f* src2, Vorn64f* dst, int len) {
    VORN_CHECK(notNull(src1, src2, dst));
    VORN_CHECK(positive(len));
    compute<InFloat<Vorn64f, Plus>>(elements(src1), elements(src2), dst, len);
    return vornStsNoErr;
}

VornStatus vornsAdd_64f_I(const Vorn64f* src, Vorn64f* srcDst, int len) {
    return vornsAdd_64f(src, srcDst, srcDst, len);
}

VornStatus vornsAdd_64fc(const Vorn64fc* src1, const Vorn64fc* src2, Vorn64fc* dst, int len) {
    VORN_CHECK(notNull(src1, src2, dst));
    VORN_CHECK(positive(len));
    compute<InFloat<Vorn64f, Plus>>(parts(src1), parts(src2), lanesAt(dst), twice(len));
    return vornStsNoErr;
}

VornStatus vornsAdd_64fc_I(const Vorn64fc* src, Vorn64fc* srcDst, int len) {
    return vornsAdd_64fc(src, srcDst, srcDst, len);
}

VornStatus vornsSub_8u_Sfs(const Vorn8u* src1, const Vorn8u* src2, Vorn8u* dst, int len, int scaleFactor) {
    VORN_CHECK(notNull(src1, src2, dst));
    VORN_CHECK(positive(len));
    computeScaled<Difference8u>(elements(src2), elements(src1), dst, len, scaleFactor);
    return vornStsNoErr;
}

VornStatus vornsSub_8u_ISfs(const Vorn8u* src, Vorn8u* srcDst, int len, int scaleFactor) {
    return vornsSub_8u_Sfs(src, srcDst, srcDst, len, scaleFactor);
}

VornStatus vornsSub_16s(const Vorn16s* src1, const Vorn16s* src2, Vorn16s* dst, int len) {
    VORN_CHECK(notNull(src1, src2, dst));
    VORN_CHECK(positive(len));
    compute<PlainOf<DifferenceOf<Vorn16s>>>(elements(src2), elements(src1), dst, len);
    return vornStsNoErr;
}

VornStatus vornsSub_16s_I(const Vorn16s* src, Vorn16s* srcDst, int len) {
    return vornsSub_16s(src, srcDst, srcDst, len);
}

VornStatus vornsSub_16s_Sfs(const Vorn16s* src1, const Vorn16s* src2, Vorn16s* dst, int len, int scaleFactor) {
    VORN_CHECK(notNull(src1, src2, dst));
    VORN_CHECK(positive(len));
    computeScaled<DifferenceOf<Vorn16s>>(elements(src2), elements(src1), dst, len, scaleFactor);
    return vornStsNoErr;
}

VornStatus vornsSub_16s_ISfs(const Vorn16s* src, Vorn16s* srcDst, int len, int scaleFactor) {
    return vornsSub_16s_Sfs(src, srcDst, srcDst, len, scaleFactor);
}

VornStatus vornsSub_16s32f(const Vorn16s* src1, const Vorn16s* src2, Vorn32f* dst, int len) {
    VORN_CHECK(notNull(src1, src2, dst));
    VORN_CHECK(positive(len));
    compute<In32f<Minus>>(elements(src2), elements(src1), dst, len);
    return vornStsNoErr;
}

VornStatus vornsSub_16sc_Sfs(const Vorn16sc* src1, const Vorn16sc* src2, Vorn16sc* dst, int len, int scaleFactor) {
    VORN_CHECK(notNull(src1, src2, dst));
    VORN_CHECK(positive(len));
    computeScaled<DifferenceOf<Vorn16s>>(parts(src2), parts(src1), lanesAt(dst), twice(len), scaleFactor);
    return vornStsNoErr;
}

VornStatus vornsSub_16sc_ISfs(const Vorn16sc* src, Vorn16sc* srcDst, int len, int scaleFactor) {
    return vornsSub_16sc_Sfs(src, srcDst, srcDst, len, scaleFactor);
}

VornStatus vornsSub_32s_Sfs(const Vorn32s* src1, const Vorn32s* src2, Vorn32s* dst, int len, int scaleFactor) {
    VORN_CHECK(notNull(src1, src2, dst));
    VORN_CHECK(positive(len));
    computeScaled<DifferenceOf<Vorn32s>>(elements(src2), elements(src1), dst, len, scaleFactor);
    return vornStsNoErr;
}

VornStatus vornsSub_32s_ISfs(const Vorn32s* src, Vorn32s* srcDst, int len, int scaleFactor) {
    return vornsSub_32s_Sfs(src, srcDst, srcDst, len, scaleFactor);
}

VornStatus vornsSub_32sc_Sfs(const Vorn32sc* src1, const Vorn32sc* src2, Vorn32sc* dst, int len, int scaleFactor) {
    VORN_CHECK(notNull(src1, src2, dst));
    VORN_CHECK(positive(len));
    computeScaled<DifferenceOf<Vorn32s>>(parts(src2), parts(src1), lanesAt(dst), twice(len), scaleFactor);
    return vornStsNoErr;
}

VornStatus vornsSub_32sc_ISfs(const Vorn32sc* src, Vorn32sc* srcDst, int len, int scaleFactor) {
    return vornsSub_32sc_Sfs(src, srcDst, srcDst, len, scaleFactor);
}

VornStatus vornsSub_32f(const Vorn32f* src1, const Vorn32f* src2, Vorn32f* dst, int len) {
    VORN_CHECK(notNull(src1, src2, dst));
    VORN_CHECK(positive(len));
    compute<InFloat<Vorn32f, Minus>>(elements(src2), elements(src1), dst, len);
    return vornStsNoErr;
}

VornStatus vornsSub_32f_I(const Vorn32f* src, Vorn32f* srcDst, int len) {
    return vornsSub_32f(src, srcDst, srcDst, len);
}

VornStatus vornsSub_32fc(const Vorn32fc* src1, const Vorn32fc* src2, Vorn32fc* dst, int len) {
    VORN_CHECK(notNull(src1, src2, dst));
    VORN_CHECK(positive(len));
    compute<InFloat<Vorn32f, Minus>>(parts(src2), parts(src1), lanesAt(dst), twice(len));
    return vornStsNoErr;
}

VornStatus vornsSub_32fc_I(const Vorn32fc* src, Vorn32fc* srcDst, int len) {
    return vornsSub_32fc(src, srcDst, srcDst, len);
}

VornStatus vornsSub_64f(const Vorn64f* src1, const Vorn64f* src2, Vorn64f* dst, int len) {
    VORN_CHECK(notNull(src1, src2, dst));
    VORN_CHECK(positive(len));
    compute<InFloat<Vorn64f, Minus>>(elements(src2), elements(src1), dst, len);
    return vornStsNoErr;
}

VornStatus vornsSub_64f_I(const Vorn64f* src, Vorn64f* srcDst, int len) {
    return vornsSub_64f(src, srcDst, srcDst, len);
}

VornStatus vornsSub_64fc(const Vorn64fc* src1, const Vorn64fc* src2, Vorn64fc* dst, int len) {
    VORN_CHECK(notNull(src1, src2, dst));
    VORN_CHECK(positive(len));
    compute<InFloat<Vorn64f, Minus>>(parts(src2), parts(src1), lanesAt(dst), twice(len));
    return vornStsNoErr;
}

VornStatus vornsSub_64fc_I(const Vorn64fc* src, Vorn64fc* srcDst, int len) {
    return vornsSub_64fc(src, srcDst, srcDst, len);
}
