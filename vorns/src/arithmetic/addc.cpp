// Sums and differences of a vector and a constant.
#include "arithmetic/compute.h"
#include "frame/checks.h"
#include "vornsr/signal.h"

using namespace vorn;

VornStatus vornsAddC_8u_Sfs(const Vorn8u* src, Vorn8u val, Vorn8u* dst, int len, int scaleFactor) {
    VORN_CHECK(notNull(src, dst));
    VORN_CHECK(positive(len));
    computeScaled<Sum8u>(elements(src), constant(val), dst, len, scaleFactor);
    return vornStsNoErr;
}

VornStatus vornsAddC_8u_ISfs(Vorn8u val, Vorn8u* srcDst, int len, int scaleFactor) {
    return vornsAddC_8u_Sfs(srcDst, val, srcDst, len, scaleFactor);
}

VornStatus vornsAddC_16s_I(Vorn16s val, Vorn16s* srcDst, int len) {
    return vornsAddC_16s_Sfs(srcDst, val, srcDst, len, 0);
}

VornStatus vornsAddC_16s_Sfs(const Vorn16s* src, Vorn16s val, Vorn16s* dst, int len, int scaleFactor) {
    VORN_CHECK(notNull(src, dst));
    VORN_CHECK(positive(len));
    if (val == 0 && scaleFactor == 0) {
        copyElements(src, dst, len);
        return vornStsNoErr;
    }
    computeScaled<SumOf<Vorn16s>>(elements(src), constantOfParts(val), dst, len, scaleFactor);
    return vornStsNoErr;
}

VornStatus vornsAddC_16s_ISfs(Vorn16s val, Vorn16s* srcDst, int len, int scaleFactor) {
    return vornsAddC_16s_Sfs(srcDst, val, srcDst, len, scaleFactor);
}

VornStatus vornsAddC_16sc_Sfs(const Vorn16sc* src, Vorn16sc val, Vorn16sc* dst, int len, int scaleFactor) {
    VORN_CHECK(notNull(src, dst));
    VORN_CHECK(positive(len));
    computeScaled<SumOf<Vorn16s>>(parts(src), constant(val), lanesAt(dst), twice(len), scaleFactor);
    return vornStsNoErr;
}

VornStatus vornsAddC_16sc_ISfs(Vorn16sc val, Vorn16sc* srcDst, int len, int scaleFactor) {
    return vornsAddC_16sc_Sfs(srcDst, val, srcDst, len, scaleFactor);
}

VornStatus vornsAddC_32s_Sfs(const Vorn32s* src, Vorn32s val, Vorn32s* dst, int len, int scaleFactor) {
    VORN_CHECK(notNull(src, dst));
    VORN_CHECK(positive(len));
    computeScaled<SumOf<Vorn32s>>(elements(src), constantOfParts(val), dst, len, scaleFactor);
    return vornStsNoErr;
}

VornStatus vornsAddC_32s_ISfs(Vorn32s val, Vorn32s* srcDst, int len, int scaleFactor) {
    return vornsAddC_32s_Sfs(srcDst, val, srcDst, len, scaleFactor);
}

VornStatus vornsAddC_32sc_Sfs(const Vorn32sc* src, Vorn32sc val, Vorn32sc* dst, int len, int scaleFactor) {
    VORN_CHECK(notNull(src, dst));
    VORN_CHECK(positive(len));
    computeScaled<SumOf<Vorn32s>>(parts(src), constant(val), lanesAt(dst), twice(len), scaleFactor);
    return vornStsNoErr;
}

VornStatus vornsAddC_32sc_ISfs(Vorn32sc val, Vorn32sc* srcDst, int len, int scaleFactor) {
    return vornsAddC_32sc_Sfs(srcDst, val, srcDst, len, scaleFactor);
}

VornStatus vornsAddC_32f(const Vorn32f* src, Vorn32f val, Vorn32f* dst, int len) {
    VORN_CHECK(notNull(src, dst));
    VORN_CHECK(positive(len));
    // A zero changes nothing: a negative zero stays, and a signalling value is not touched.
    if (val == 0) {
        copyElements(src, dst, len);
        return vornStsNoErr;
    }
    compute<InFloat<Vorn32f, Plus>>(elements(src), constantOfParts(val), dst, len);
    return vornStsNoErr;
}

VornStatus vornsAddC_32f_I(Vorn32f val, Vorn32f* srcDst, int len) { return vornsAddC_32f(srcDst, val, srcDst, len); }

VornStatus vornsAddC_32fc(const Vorn32fc* src, Vorn32fc val, Vorn32fc* dst, int len) {
    VORN_CHECK(notNull(src, dst));
    VORN_CHECK(positive(len));
    compute<InFloat<Vorn32f, Plus>>(parts(src), constant(val), lanesAt(dst), twice(len));
    return vornStsNoErr;
}

VornStatus vornsAddC_32fc_I(Vorn32fc val, Vorn32fc* srcDst, int len) {
    return vornsAddC_32fc(srcDst, val, srcDst, len);
}

VornStatus vornsAddC_64f(const Vorn64f* src, Vorn64f val, Vorn64f* dst, int len) {
    VORN_CHECK(notNull(src, dst));
    VORN_CHECK(positive(len));
    compute<InFloat<Vorn64f, Plus>>(elements(src), constantOfParts(val), dst, len);
    return vornStsNoErr;
}

VornStatus vornsAddC_64f_I(Vorn64f val, Vorn64f* srcDst, int len) { return vornsAddC_64f(srcDst, val, srcDst, len); }

VornStatus vornsAddC_64fc(const Vorn64fc* src, Vorn64fc val, Vorn64fc* dst, int len) {
    VORN_CHECK(notNull(src, dst));
    VORN_CHECK(positive(len));
    compute<InFloat<Vorn64f, Plus>>(parts(src), constant(val), lanesAt(dst), twice(len));
    return vornStsNoErr;
}

VornStatus vornsAddC_64fc_I(Vorn64fc val, Vorn64fc* srcDst, int len) {
    return vornsAddC_64fc(srcDst, val, srcDst, len);
}

VornStatus vornsSubC_8u_Sfs(const Vorn8u* src, Vorn8u val, Vorn8u* dst, int len, int scaleFactor) {
    VORN_CHECK(notNull(src, dst));
    VORN_CHECK(positive(len));
    computeScaled<Difference8u>(elements(src), constant(val), dst, len, scaleFactor);
    return vornStsNoErr;
}

VornStatus vornsSubC_8u_ISfs(Vorn8u val, Vorn8u* srcDst, int len, int scaleFactor) {
    return vornsSubC_8u_Sfs(srcDst, val, srcDst, len, scaleFactor);
}

VornStatus vornsSubC_16s_I(Vorn16s val, Vorn16s* srcDst, int len) {
    return vornsSubC_16s_Sfs(srcDst, val, srcDst, len, 0);
}

VornStatus vornsSubC_16s_Sfs(const Vorn16s* src, Vorn16s val, Vorn16s* dst, int len, int scaleFactor) {
    VORN_CHECK(notNull(src, dst));
    VORN_CHECK(positive(len));
    computeScaled<DifferenceOf<Vorn16s>>(elements(src), constantOfParts(val), dst, len, scaleFactor);
    return vornStsNoErr;
}

VornStatus vornsSubC_16s_ISfs(Vorn16s val, Vorn16s* srcDst, int len, int scaleFactor) {
    return vornsSubC_16s_Sfs(srcDst, val, srcDst, len, scaleFactor);
}

VornStatus vornsSubC_16sc_Sfs(const Vorn16sc* src, Vorn16sc val, Vorn16sc* dst, int len, int scaleFactor) {
    VORN_CHECK(notNull(src, dst));
    VORN_CHECK(positive(len));
    computeScaled<DifferenceOf<Vorn16s>>(parts(src), constant(val), lanesAt(dst), twice(len), scaleFactor);
    return vornStsNoErr;
}

VornStatus vornsSubC_16sc_ISfs(Vorn16sc val, Vorn16sc* srcDst, int len, int scaleFactor) {
    return vornsSubC_16sc_Sfs(srcDst, val, srcDst, len, scaleFactor);
}

VornStatus vornsSubC_32s_Sfs(const Vorn32s* src, Vorn32s val, Vorn32s* dst, int len, int scaleFactor) {
    VORN_CHECK(notNull(src, dst));
    VORN_CHECK(positive(len));
    computeScaled<DifferenceOf<Vorn32s>>(elements(src), constantOfParts(val), dst, len, scaleFactor);
    return vornStsNoErr;
}

VornStatus vornsSubC_32s_ISfs(Vorn32s val, Vorn32s* srcDst, int len, int scaleFactor) {
    return vornsSubC_32s_Sfs(srcDst, val, srcDst, len, scaleFactor);
}

VornStatus vornsSubC_32sc_Sfs(const Vorn32sc* src, Vorn32sc val, Vorn32sc* dst, int len, int scaleFactor) {
    VORN_CHECK(notNull(src, dst));
    VORN_CHECK(positive(len));
    computeScaled<DifferenceOf<Vorn32s>>(parts(src), constant(val), lanesAt(dst), twice(len), scaleFactor);
    return vornStsNoErr;
}

VornStatus vornsSubC_32sc_ISfs(Vorn32sc val, Vorn32sc* srcDst, int len, int scaleFactor) {
    return vornsSubC_32sc_Sfs(srcDst, val, srcDst, len, scaleFactor);
}

VornStatus vornsSubC_32f(const Vorn32f* src, Vorn32f val, Vorn32f* dst, int len) {
    VORN_CHECK(notNull(src, dst));
    VORN_CHECK(positive(len));
    // A zero changes nothing: a negative zero stays, and a signalling value is not touched.
    if (val == 0) {
        copyElements(src, dst, len);
        return vornStsNoErr;
    }
    compute<InFloat<Vorn32f, Minus>>(elements(src), constantOfParts(val), dst, len);
    return vornStsNoErr;
}

VornStatus vornsSubC_32f_I(Vorn32f val, Vorn32f* srcDst, int len) { return vornsSubC_32f(srcDst, val, srcDst, len); }

VornStatus vornsSubC_32fc(const Vorn32fc* src, Vorn32fc val, Vorn32fc* dst, int len) {
    VORN_CHECK(notNull(src, dst));
    VORN_CHECK(positive(len));
    compute<InFloat<Vorn32f, Minus>>(parts(src), constant(val), lanesAt(dst), twice(len));
    return vornStsNoErr;
}

VornStatus vornsSubC_32fc_I(Vorn32fc val, Vorn32fc* srcDst, int len) {
    return vornsSubC_32fc(srcDst, val, srcDst, len);
}

VornStatus vornsSubC_64f(const Vorn64f* src, Vorn64f val, Vorn64f* dst, int len) {
    VORN_CHECK(notNull(src, dst));
    VORN_CHECK(positive(len));
    compute<InFloat<Vorn64f, Minus>>(elements(src), constantOfParts(val), dst, len);
    return vornStsNoErr;
}

VornStatus vornsSubC_64f_I(Vorn64f val, Vorn64f* srcDst, int len) { return vornsSubC_64f(srcDst, val, srcDst, len); }

VornStatus vornsSubC_64fc(const Vorn64fc* src, Vorn64fc val, Vorn64fc* dst, int len) {
    VORN_CHECK(notNull(src, dst));
    VORN_CHECK(positive(len));
    compute<InFloat<Vorn64f, Minus>>(parts(src), constant(val), lanesAt(dst), twice(len));
    return vornStsNoErr;
}

VornStatus vornsSubC_64fc_I(Vorn64fc val, Vorn64fc* srcDst, int len) {
    return vornsSubC_64fc(srcDst, val, srcDst, len);
}

VornStatus vornsSubCRev_8u_Sfs(const Vorn8u* src, Vorn8u val, Vorn8u* dst, int len, int scaleFactor) {
    VORN_CHECK(notNull(src, dst));
    VORN_CHECK(positive(len));
    computeScaled<Difference8u>(constant(val), elements(src), dst, len, scaleFactor);
    return vornStsNoErr;
}

VornStatus vornsSubCRev_8u_ISfs(Vorn8u val, Vorn8u* srcDst, int len, int scaleFactor) {
    return vornsSubCRev_8u_Sfs(srcDst, val, srcDst, len, scaleFactor);
}

VornStatus vornsSubCRev_16s_Sfs(const Vorn16s* src, Vorn16s val, Vorn16s* dst, int len, int scaleFactor) {
    VORN_CHECK(notNull(src, dst));
    VORN_CHECK(positive(len));
    computeScaled<DifferenceOf<Vorn16s>>(constantOfParts(val), elements(src), dst, len, scaleFactor);
    return vornStsNoErr;
}

VornStatus vornsSubCRev_16s_ISfs(Vorn16s val, Vorn16s* srcDst, int len, int scaleFactor) {
    return vornsSubCRev_16s_Sfs(srcDst, val, srcDst, len, scaleFactor);
}

VornStatus vornsSubCRev_16sc_Sfs(const Vorn16sc* src, Vorn16sc val, Vorn16sc* dst, int len, int scaleFactor) {
    VORN_CHECK(notNull(src, dst));
    VORN_CHECK(positive(len));
    computeScaled<DifferenceOf<Vorn16s>>(constant(val), parts(src), lanesAt(dst), twice(len), scaleFactor);
    return vornStsNoErr;
}

VornStatus vornsSubCRev_16sc_ISfs(Vorn16sc val, Vorn16sc* srcDst, int len, int scaleFactor) {
    return vornsSubCRev_16sc_Sfs(srcDst, val, srcDst, len, scaleFactor);
}

VornStatus vornsSubCRev_32s_Sfs(const Vorn32s* src, Vorn32s val, Vorn32s* dst, int len, int scaleFactor) {
    VORN_CHECK(notNull(src, dst));
    VORN_CHECK(positive(len));
    computeScaled<DifferenceOf<Vorn32s>>(constantOfParts(val), elements(src), dst, len, scaleFactor);
    return vornStsNoErr;
}

VornStatus vornsSubCRev_32s_ISfs(Vorn32s val, Vorn32s* srcDst, int len, int scaleFactor) {
    return vornsSubCRev_32s_Sfs(srcDst, val, srcDst, len, scaleFactor);
}

VornStatus vornsSubCRev_32sc_Sfs(const Vorn32sc* src, Vorn32sc val, Vorn32sc* dst, int len, int scaleFactor) {
    VORN_CHECK(notNull(src, dst));
    VORN_CHECK(positive(len));
    computeScaled<DifferenceOf<Vorn32s>>(constant(val), parts(src), lanesAt(dst), twice(len), scaleFactor);
    return vornStsNoErr;
}

VornStatus vornsSubCRev_32sc_ISfs(Vorn32sc val, Vorn32sc* srcDst, int len, int scaleFactor) {
    return vornsSubCRev_32sc_Sfs(srcDst, val, srcDst, len, scaleFactor);
}

VornStatus vornsSubCRev_32f(const Vorn32f* src, Vorn32f val, Vorn32f* dst, int len) {
    VORN_CHECK(notNull(src, dst));
    VORN_CHECK(positive(len));
    compute<InFloat<Vorn32f, Minus>>(constantOfParts(val), elements(src), dst, len);
    return vornStsNoErr;
}

VornStatus vornsSubCRev_32f_I(Vorn32f val, Vorn32f* srcDst, int len) {
    return vornsSubCRev_32f(srcDst, val, srcDst, len);
}

VornStatus vornsSubCRev_32fc(const Vorn32fc* src, Vorn32fc val, Vorn32fc* dst, int len) {
    VORN_CHECK(notNull(src, dst));
    VORN_CHECK(positive(len));
    compute<InFloat<Vorn32f, Minus>>(constant(val), parts(src), lanesAt(dst), twice(len));
    return vornStsNoErr;
}

VornStatus vornsSubCRev_32fc_I(Vorn32fc val, Vorn32fc* srcDst, int len) {
    return vornsSubCRev_32fc(srcDst, val, srcDst, len);
}

VornStatus vornsSubCRev_64f(const Vorn64f* src, Vorn64f val, Vorn64f* dst, int len) {
    VORN_CHECK(notNull(src, dst));
    VORN_CHECK(positive(len));
    compute<InFloat<Vorn64f, Minus>>(constantOfParts(val), elements(src), dst, len);
    return vornStsNoErr;
}

VornStatus vornsSubCRev_64f_I(Vorn64f val, Vorn64f* srcDst, int len) {
    return vornsSubCRev_64f(srcDst, val, srcDst, len);
}

VornStatus vornsSubCRev_64fc(const Vorn64fc* src, Vorn64fc val, Vorn64fc* dst, int len) {
    VORN_CHECK(notNull(src, dst));
    VORN_CHECK(positive(len));
    compute<InFloat<Vorn64f, Minus>>(constant(val), parts(src), lanesAt(dst), twice(len));
    return vornStsNoErr;
}

VornStatus vornsSubCRev_64fc_I(Vorn64fc val, Vorn64fc* srcDst, int len) {
    return vornsSubCRev_64fc(srcDst, val, srcDst, len);
}
