// Products of packed spectra and their expansion: the exported functions.
#include "fft/packed/kernels.h"
#include "frame/checks.h"
#include "vornsr/fft.h"

using namespace vorn;
using namespace vorn::fft;

VornStatus vornsMulPack_32f(const Vorn32f* src1, const Vorn32f* src2, Vorn32f* dst, int len) {
    VORN_CHECK(notNull(src1, src2, dst));
    VORN_CHECK(positive(len));
    multiplyPacked<PackBins>(src1, src2, dst, len, FloatProduct<Vorn32f, Second::AsItIs>());
    return vornStsNoErr;
}

VornStatus vornsMulPack_32f_I(const Vorn32f* src, Vorn32f* srcDst, int len) {
    return vornsMulPack_32f(src, srcDst, srcDst, len);
}

VornStatus vornsMulPack_64f(const Vorn64f* src1, const Vorn64f* src2, Vorn64f* dst, int len) {
    VORN_CHECK(notNull(src1, src2, dst));
    VORN_CHECK(positive(len));
    multiplyPacked<PackBins>(src1, src2, dst, len, FloatProduct<Vorn64f, Second::AsItIs>());
    return vornStsNoErr;
}

VornStatus vornsMulPack_64f_I(const Vorn64f* src, Vorn64f* srcDst, int len) {
    return vornsMulPack_64f(src, srcDst, srcDst, len);
}

VornStatus vornsMulPack_16s_Sfs(const Vorn16s* src1, const Vorn16s* src2, Vorn16s* dst, int len, int scaleFactor) {
    VORN_CHECK(notNull(src1, src2, dst));
    VORN_CHECK(positive(len));
    multiplyPacked<PackBins>(src1, src2, dst, len, FixedProduct(scaleFactor));
    return vornStsNoErr;
}

VornStatus vornsMulPack_16s_ISfs(const Vorn16s* src, Vorn16s* srcDst, int len, int scaleFactor) {
    return vornsMulPack_16s_Sfs(src, srcDst, srcDst, len, scaleFactor);
}

VornStatus vornsMulPerm_32f(const Vorn32f* src1, const Vorn32f* src2, Vorn32f* dst, int len) {
    VORN_CHECK(notNull(src1, src2, dst));
    VORN_CHECK(positive(len));
    multiplyPacked<PermBins>(src1, src2, dst, len, FloatProduct<Vorn32f, Second::AsItIs>());
    return vornStsNoErr;
}

VornStatus vornsMulPerm_32f_I(const Vorn32f* src, Vorn32f* srcDst, int len) {
    return vornsMulPerm_32f(src, srcDst, srcDst, len);
}

VornStatus vornsMulPerm_64f(const Vorn64f* src1, const Vorn64f* src2, Vorn64f* dst, int len) {
    VORN_CHECK(notNull(src1, src2, dst));
    VORN_CHECK(positive(len));
    multiplyPacked<PermBins>(src1, src2, dst, len, FloatProduct<Vorn64f, Second::AsItIs>());
    return vornStsNoErr;
}

VornStatus vornsMulPerm_64f_I(const Vorn64f* src, Vorn64f* srcDst, int len) {
    return vornsMulPerm_64f(src, srcDst, srcDst, len);
}

VornStatus vornsMulPerm_16s_Sfs(const Vorn16s* src1, const Vorn16s* src2, Vorn16s* dst, int len, int scaleFactor) {
    VORN_CHECK(notNull(src1, src2, dst));
    VORN_CHECK(positive(len));
    multiplyPacked<PermBins>(src1, src2, dst, len, FixedProduct(scaleFactor));
    return vornStsNoErr;
}

VornStatus vornsMulPerm_16s_ISfs(const Vorn16s* src, Vorn16s* srcDst, int len, int scaleFactor) {
    return vornsMulPerm_16s_Sfs(src, srcDst, srcDst, len, scaleFactor);
}

VornStatus vornsMulPackConj_32f_I(const Vorn32f* src, Vorn32f* srcDst, int len) {
    VORN_CHECK(notNull(src, srcDst));
    VORN_CHECK(positive(len));
    multiplyPacked<PackBins>(src, srcDst, srcDst, len, FloatProduct<Vorn32f, Second::Conjugated>());
    return vornStsNoErr;
}

VornStatus vornsMulPackConj_64f_I(const Vorn64f* src, Vorn64f* srcDst, int len) {
    VORN_CHECK(notNull(src, srcDst));
    VORN_CHECK(positive(len));
    multiplyPacked<PackBins>(src, srcDst, srcDst, len, FloatProduct<Vorn64f, Second::Conjugated>());
    return vornStsNoErr;
}

VornStatus vornsConjPack_32fc(const Vorn32f* src, Vorn32fc* dst, int len) {
    VORN_CHECK(notNull(src, dst));
    VORN_CHECK(positive(len));
    expandPacked<PackBins>(src, dst, len);
    return vornStsNoErr;
}

VornStatus vornsConjPack_32fc_I(Vorn32fc* srcDst, int len) {
    return vornsConjPack_32fc(reinterpret_cast<const Vorn32f*>(srcDst), srcDst, len);
}

VornStatus vornsConjPack_64fc(const Vorn64f* src, Vorn64fc* dst, int len) {
    VORN_CHECK(notNull(src, dst));
    VORN_CHECK(positive(len));
    expandPacked<PackBins>(src, dst, len);
    return vornStsNoErr;
}

VornStatus vornsConjPack_64fc_I(Vorn64fc* srcDst, int len) {
    return vornsConjPack_64fc(reinterpret_cast<const Vorn64f*>(srcDst), srcDst, len);
}

VornStatus vornsConjPack_16sc(const Vorn16s* src, Vorn16sc* dst, int len) {
    VORN_CHECK(notNull(src, dst));
    VORN_CHECK(positive(len));
    expandPacked<PackBins>(src, dst, len);
    return vornStsNoErr;
}

VornStatus vornsConjPack_16sc_I(Vorn16sc* srcDst, int len) {
    return vornsConjPack_16sc(reinterpret_cast<const Vorn16s*>(srcDst), srcDst, len);
}

VornStatus vornsConjPerm_32fc(const Vorn32f* src, Vorn32fc* dst, int len) {
    VORN_CHECK(notNull(src, dst));
    VORN_CHECK(positive(len));
    expandPacked<PermBins>(src, dst, len);
    return vornStsNoErr;
}

VornStatus vornsConjPerm_32fc_I(Vorn32fc* srcDst, int len) {
    return vornsConjPerm_32fc(reinterpret_cast<const Vorn32f*>(srcDst), srcDst, len);
}

VornStatus vornsConjPerm_64fc(const Vorn64f* src, Vorn64fc* dst, int len) {
    VORN_CHECK(notNull(src, dst));
    VORN_CHECK(positive(len));
    expandPacked<PermBins>(src, dst, len);
    return vornStsNoErr;
}

VornStatus vornsConjPerm_64fc_I(Vorn64fc* srcDst, int len) {
    return vornsConjPerm_64fc(reinterpret_cast<const Vorn64f*>(srcDst), srcDst, len);
}

VornStatus vornsConjPerm_16sc(const Vorn16s* src, Vorn16sc* dst, int len) {
    VORN_CHECK(notNull(src, dst));
    VORN_CHECK(positive(len));
    expandPacked<PermBins>(src, dst, len);
    return vornStsNoErr;
}

VornStatus vornsConjPerm_16sc_I(Vorn16sc* srcDst, int len) {
    return vornsConjPerm_16sc(reinterpret_cast<const Vorn16s*>(srcDst), srcDst, len);
}

VornStatus vornsConjCcs_32fc(const Vorn32f* src, Vorn32fc* dst, int len) {
    VORN_CHECK(notNull(src, dst));
    VORN_CHECK(positive(len));
    expandCcs(src, dst, len);
    return vornStsNoErr;
}

VornStatus vornsConjCcs_32fc_I(Vorn32fc* srcDst, int len) {
    return vornsConjCcs_32fc(reinterpret_cast<const Vorn32f*>(srcDst), srcDst, len);
}

VornStatus vornsConjCcs_64fc(const Vorn64f* src, Vorn64fc* dst, int len) {
    VORN_CHECK(notNull(src, dst));
    VORN_CHECK(positive(len));
    expandCcs(src, dst, len);
    return vornStsNoErr;
}

VornStatus vornsConjCcs_64fc_I(Vorn64fc* srcDst, int len) {
    return vornsConjCcs_64fc(reinterpret_cast<const Vorn64f*>(srcDst), srcDst, len);
}

VornStatus vornsConjCcs_16sc(const Vorn16s* src, Vorn16sc* dst, int len) {
    VORN_CHECK(notNull(src, dst));
    VORN_CHECK(positive(len));
    expandCcs(src, dst, len);
    return vornStsNoErr;
}

VornStatus vornsConjCcs_16sc_I(Vorn16sc* srcDst, int len) {
    return vornsConjCcs_16sc(reinterpret_cast<const Vorn16s*>(srcDst), srcDst, len);
}
