// Conversions between the element types: the exported functions.
#include "frame/checks.h"
#include "move/convert_kernels.h"
#include "vornsr/signal.h"

VornStatus vornsConvert_8s16s(const Vorn8s* src, Vorn16s* dst, int len) {
    VORN_CHECK(vorn::notNull(src, dst));
    VORN_CHECK(vorn::positive(len));
    vorn::convert(src, dst, len);
    return vornStsNoErr;
}

VornStatus vornsConvert_16s32s(const Vorn16s* src, Vorn32s* dst, int len) {
    VORN_CHECK(vorn::notNull(src, dst));
    VORN_CHECK(vorn::positive(len));
    vorn::convert(src, dst, len);
    return vornStsNoErr;
}

VornStatus vornsConvert_8s32f(const Vorn8s* src, Vorn32f* dst, int len) {
    VORN_CHECK(vorn::notNull(src, dst));
    VORN_CHECK(vorn::positive(len));
    vorn::convert(src, dst, len);
    return vornStsNoErr;
}

VornStatus vornsConvert_8u32f(const Vorn8u* src, Vorn32f* dst, int len) {
    VORN_CHECK(vorn::notNull(src, dst));
    VORN_CHECK(vorn::positive(len));
    vorn::convert(src, dst, len);
    return vornStsNoErr;
}

VornStatus vornsConvert_16s32f(const Vorn16s* src, Vorn32f* dst, int len) {
    VORN_CHECK(vorn::notNull(src, dst));
    VORN_CHECK(vorn::positive(len));
    vorn::convert(src, dst, len);
    return vornStsNoErr;
}

VornStatus vornsConvert_16u32f(const Vorn16u* src, Vorn32f* dst, int len) {
    VORN_CHECK(vorn::notNull(src, dst));
    VORN_CHECK(vorn::positive(len));
    vorn::convert(src, dst, len);
    return vornStsNoErr;
}

VornStatus vornsConvert_32s64f(const Vorn32s* src, Vorn64f* dst, int len) {
    VORN_CHECK(vorn::notNull(src, dst));
    VORN_CHECK(vorn::positive(len));
    vorn::convert(src, dst, len);
    return vornStsNoErr;
}

VornStatus vornsConvert_32f64f(const Vorn32f* src, Vorn64f* dst, int len) {
    VORN_CHECK(vorn::notNull(src, dst));
    VORN_CHECK(vorn::positive(len));
    vorn::convert(src, dst, len);
    return vornStsNoErr;
}

VornStatus vornsConvert_32s32f(const Vorn32s* src, Vorn32f* dst, int len) {
    VORN_CHECK(vorn::notNull(src, dst));
    VORN_CHECK(vorn::positive(len));
    vorn::convert(src, dst, len);
    return vornStsNoErr;
}

VornStatus vornsConvert_32s16s(const Vorn32s* src, Vorn16s* dst, int len) {
    VORN_CHECK(vorn::notNull(src, dst));
    VORN_CHECK(vorn::positive(len));
    vorn::convert(src, dst, len);
    return vornStsNoErr;
}

VornStatus vornsConvert_64f32f(const Vorn64f* src, Vorn32f* dst, int len) {
    VORN_CHECK(vorn::notNull(src, dst));
    VORN_CHECK(vorn::positive(len));
    vorn::convert(src, dst, len);
    return vornStsNoErr;
}

VornStatus vornsConvert_16s32f_Sfs(const Vorn16s* src, Vorn32f* dst, int len, int scale) {
    VORN_CHECK(vorn::notNull(src, dst));
    VORN_CHECK(vorn::positive(len));
    vorn::convert(src, dst, len, scale);
    return vornStsNoErr;
}

VornStatus vornsConvert_16s64f_Sfs(const Vorn16s* src, Vorn64f* dst, int len, int scale) {
    VORN_CHECK(vorn::notNull(src, dst));
    VORN_CHECK(vorn::positive(len));
    vorn::convert(src, dst, len, scale);
    return vornStsNoErr;
}

VornStatus vornsConvert_32s32f_Sfs(const Vorn32s* src, Vorn32f* dst, int len, int scale) {
    VORN_CHECK(vorn::notNull(src, dst));
    VORN_CHECK(vorn::positive(len));
    vorn::convert(src, dst, len, scale);
    return vornStsNoErr;
}

VornStatus vornsConvert_32s64f_Sfs(const Vorn32s* src, Vorn64f* dst, int len, int scale) {
    VORN_CHECK(vorn::notNull(src, dst));
    VORN_CHECK(vorn::positive(len));
    vorn::convert(src, dst, len, scale);
    return vornStsNoErr;
}

VornStatus vornsConvert_32s16s_Sfs(const Vorn32s* src, Vorn16s* dst, int len, int scale) {
    VORN_CHECK(vorn::notNull(src, dst));
    VORN_CHECK(vorn::positive(len));
    vorn::convert(src, dst, len, scale);
    return vornStsNoErr;
}

VornStatus vornsConvert_32f8s_Sfs(const Vorn32f* src, Vorn8s* dst, int len, VornRoundMode rndMode, int scale) {
    VORN_CHECK(vorn::notNull(src, dst));
    VORN_CHECK(vorn::positive(len));
    vorn::convert(src, dst, len, rndMode, scale);
    return vornStsNoErr;
}

VornStatus vornsConvert_32f8u_Sfs(const Vorn32f* src, Vorn8u* dst, int len, VornRoundMode rndMode, int scale) {
    VORN_CHECK(vorn::notNull(src, dst));
    VORN_CHECK(vorn::positive(len));
    vorn::convert(src, dst, len, rndMode, scale);
    return vornStsNoErr;
}

VornStatus vornsConvert_32f16s_Sfs(const Vorn32f* src, Vorn16s* dst, int len, VornRoundMode rndMode, int scale) {
    VORN_CHECK(vorn::notNull(src, dst));
    VORN_CHECK(vorn::positive(len));
    vorn::convert(src, dst, len, rndMode, scale);
    return vornStsNoErr;
}

VornStatus vornsConvert_32f16u_Sfs(const Vorn32f* src, Vorn16u* dst, int len, VornRoundMode rndMode, int scale) {
    VORN_CHECK(vorn::notNull(src, dst));
    VORN_CHECK(vorn::positive(len));
    vorn::convert(src, dst, len, rndMode, scale);
    return vornStsNoErr;
}

VornStatus vornsConvert_32f32s_Sfs(const Vorn32f* src, Vorn32s* dst, int len, VornRoundMode rndMode, int scale) {
    VORN_CHECK(vorn::notNull(src, dst));
    VORN_CHECK(vorn::positive(len));
    vorn::convert(src, dst, len, rndMode, scale);
    return vornStsNoErr;
}

VornStatus vornsConvert_64f32s_Sfs(const Vorn64f* src, Vorn32s* dst, int len, VornRoundMode rndMode, int scale) {
    VORN_CHECK(vorn::notNull(src, dst));
    VORN_CHECK(vorn::positive(len));
    vorn::convert(src, dst, len, rndMode, scale);
    return vornStsNoErr;
}

VornStatus vornsConvert_16f16s_Sfs(const Vorn16f* src, Vorn16s* dst, int len, VornRoundMode rndMode, int scale) {
    VORN_CHECK(vorn::notNull(src, dst));
    VORN_CHECK(vorn::positive(len));
    vorn::convertFromHalf(src, dst, len, rndMode, scale);
    return vornStsNoErr;
}

VornStatus vornsConvert_16s16f(const Vorn16s* src, Vorn16f* dst, int len, VornRoundMode rndMode) {
    VORN_CHECK(vorn::notNull(src, dst));
    VORN_CHECK(vorn::positive(len));
    vorn::convertToHalf(src, dst, len, rndMode);
    return vornStsNoErr;
}

VornStatus vornsConvert_32f16f(const Vorn32f* src, Vorn16f* dst, int len, VornRoundMode rndMode) {
    VORN_CHECK(vorn::notNull(src, dst));
    VORN_CHECK(vorn::positive(len));
    vorn::convertToHalf(src, dst, len, rndMode);
    return vornStsNoErr;
}

VornStatus vornsConvert_16f32f(const Vorn16f* src, Vorn32f* dst, int len) {
    VORN_CHECK(vorn::notNull(src, dst));
    VORN_CHECK(vorn::positive(len));
    vorn::convertFromHalf(src, dst, len);
    return vornStsNoErr;
}
