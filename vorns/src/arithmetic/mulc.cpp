// Products of a vector and a constant.
#include "arithmetic/compute.h"
#include "frame/checks.h"
#include "vornsr/signal.h"

using namespace vorn;

namespace {

// (src val) 2^-sf in single precision, rounded to nearest whatever the caller's mode.
void multiply32f16s(const Vorn32f* src, Vorn32f val, Vorn16s* dst, std::int64_t len, int sf) {
    const RoundingGuard nearest(Rounding::Nearest);
    computeWith(Product32f16s(GetScale_32s32f(sf)), elementPairs(src), constant(val), dst, len);
}

}  // namespace

VornStatus vornsMulC_8u_Sfs(const Vorn8u* src, Vorn8u val, Vorn8u* dst, int len, int scaleFactor) {
    VORN_CHECK(notNull(src, dst));
    VORN_CHECK(positive(len));
    computeScaled<Product8u>(elements(src), constant(val), dst, len, scaleFactor);
    return vornStsNoErr;
}

VornStatus vornsMulC_8u_ISfs(Vorn8u val, Vorn8u* srcDst, int len, int scaleFactor) {
    return vornsMulC_8u_Sfs(srcDst, val, srcDst, len, scaleFactor);
}

VornStatus vornsMulC_16s_I(Vorn16s val, Vorn16s* srcDst, int len) {
    return vornsMulC_16s_Sfs(srcDst, val, srcDst, len, 0);
}

VornStatus vornsMulC_16s_Sfs(const Vorn16s* src, Vorn16s val, Vorn16s* dst, int len, int scaleFactor) {
    VORN_CHECK(notNull(src, dst));
    VORN_CHECK(positive(len));
    if (val == 0) {
        zeroElements(dst, len);
        return vornStsNoErr;
    }
    if (val == 1 && scaleFactor == 0) {
        copyElements(src, dst, len);
        return vornStsNoErr;
    }
    computeScaled<Product16s>(elements(src), constant(val), dst, len, scaleFactor);
    return vornStsNoErr;
}

VornStatus vornsMulC_16s_ISfs(Vorn16s val, Vorn16s* srcDst, int len, int scaleFactor) {
    return vornsMulC_16s_Sfs(srcDst, val, srcDst, len, scaleFactor);
}

VornStatus vornsMulC_16sc_Sfs(const Vorn16sc* src, Vorn16sc val, Vorn16sc* dst, int len, int scaleFactor) {
    VORN_CHECK(notNull(src, dst));
    VORN_CHECK(positive(len));
    computeScaled<Product16sc>(elements(src), constant(val), dst, len, scaleFactor);
    return vornStsNoErr;
}

VornStatus vornsMulC_16sc_ISfs(Vorn16sc val, Vorn16sc* srcDst, int len, int scaleFactor) {
    return vornsMulC_16sc_Sfs(srcDst, val, srcDst, len, scaleFactor);
}

VornStatus vornsMulC_32s_Sfs(const Vorn32s* src, Vorn32s val, Vorn32s* dst, int len, int scaleFactor) {
    VORN_CHECK(notNull(src, dst));
    VORN_CHECK(positive(len));
    if (val == 0) {
        zeroElements(dst, len);
        return vornStsNoErr;
    }
    multiply32s(elements(src), constant(val), dst, len, scaleFactor);
    return vornStsNoErr;
}

VornStatus vornsMulC_32s_ISfs(Vorn32s val, Vorn32s* srcDst, int len, int scaleFactor) {
    return vornsMulC_32s_Sfs(srcDst, val, srcDst, len, scaleFactor);
}

VornStatus vornsMulC_32sc_Sfs(const Vorn32sc* src, Vorn32sc val, Vorn32sc* dst, int len, int scaleFactor) {
    VORN_CHECK(notNull(src, dst));
    VORN_CHECK(positive(len));
    computeScaled<Product32sc>(elements(src), constant(val), dst, len, scaleFactor);
    return vornStsNoErr;
}

VornStatus vornsMulC_32sc_ISfs(Vorn32sc val, Vorn32sc* srcDst, int len, int scaleFactor) {
    return vornsMulC_32sc_Sfs(srcDst, val, srcDst, len, scaleFactor);
}

VornStatus vornsMulC_32f(const Vorn32f* src, Vorn32f val, Vorn32f* dst, int len) {
    VORN_CHECK(notNull(src, dst));
    VORN_CHECK(positive(len));
    multiplyByConstant(src, val, dst, len);
    return vornStsNoErr;
}

VornStatus vornsMulC_32f_I(Vorn32f val, Vorn32f* srcDst, int len) { return vornsMulC_32f(srcDst, val, srcDst, len); }

VornStatus vornsMulC_32fc(const Vorn32fc* src, Vorn32fc val, Vorn32fc* dst, int len) {
    VORN_CHECK(notNull(src, dst));
    VORN_CHECK(positive(len));
    compute<ComplexTimes<Vorn32f>>(complexFactors(src), constant(val), dst, len);
    return vornStsNoErr;
}

VornStatus vornsMulC_32fc_I(Vorn32fc val, Vorn32fc* srcDst, int len) {
    return vornsMulC_32fc(srcDst, val, srcDst, len);
}

VornStatus vornsMulC_64f(const Vorn64f* src, Vorn64f val, Vorn64f* dst, int len) {
    VORN_CHECK(notNull(src, dst));
    VORN_CHECK(positive(len));
    compute<InFloat<Vorn64f, Times>>(elements(src), constant(val), dst, len);
    return vornStsNoErr;
}

VornStatus vornsMulC_64f_I(Vorn64f val, Vorn64f* srcDst, int len) { return vornsMulC_64f(srcDst, val, srcDst, len); }

VornStatus vornsMulC_64fc(const Vorn64fc* src, Vorn64fc val, Vorn64fc* dst, int len) {
    VORN_CHECK(notNull(src, dst));
    VORN_CHECK(positive(len));
    compute<ComplexTimes<Vorn64f>>(complexFactors(src), constant(val), dst, len);
    return vornStsNoErr;
}

VornStatus vornsMulC_64fc_I(Vorn64fc val, Vorn64fc* srcDst, int len) {
    return vornsMulC_64fc(srcDst, val, srcDst, len);
}

VornStatus vornsMulC_32f16s_Sfs(const Vorn32f* src, Vorn32f val, Vorn16s* dst, int len, int scaleFactor) {
    VORN_CHECK(notNull(src, dst));
    VORN_CHECK(positive(len));
    multiply32f16s(src, val, dst, len, scaleFactor);
    return vornStsNoErr;
}

VornStatus vornsMulC_Low_32f16s(const Vorn32f* src, Vorn32f val, Vorn16s* dst, int len) {
    VORN_CHECK(notNull(src, dst));
    VORN_CHECK(positive(len));
    multiply32f16s(src, val, dst, len, 0);
    return vornStsNoErr;
}
