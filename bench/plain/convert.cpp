// Conversions as plain loops, in the form that the compiler turns into vector code where it can.
#include "plain/convert.h"

#include <bit>
#include <climits>
#include <cmath>
#include <cstdint>

namespace plain {
namespace {

template <class S, class D>
void each(const S* __restrict src, D* __restrict dst, int len) {
    for (int i = 0; i < len; ++i) dst[i] = static_cast<D>(src[i]);
}

template <class S, class D>
void scaled(const S* __restrict src, D* __restrict dst, int len, int scale) {
    const D factor = std::ldexp(D{1}, -scale);
    for (int i = 0; i < len; ++i) dst[i] = static_cast<D>(src[i]) * factor;
}

template <class S, class D>
void toInteger(const S* __restrict src, D* __restrict dst, int len, VornRoundMode mode, int scale, S lowest,
               S highest) {
    const S factor = std::ldexp(S{1}, -scale);
    if (mode == vornRndZero) {
        for (int i = 0; i < len; ++i) {
            const S x = src[i] * factor, low = x > lowest ? x : lowest, y = low < highest ? low : highest;
            dst[i] = static_cast<D>(static_cast<std::int32_t>(y));
        }
    } else {
        for (int i = 0; i < len; ++i) {
            const S x = src[i] * factor, low = x > lowest ? x : lowest, y = low < highest ? low : highest;
            dst[i] = static_cast<D>(static_cast<std::int32_t>(std::rint(y)));
        }
    }
}

float fromHalf(std::uint32_t half) {
    const std::uint32_t magnitude = (half & 0x7FFF) << 13, sign = (half & 0x8000) << 16;
    const float value = std::bit_cast<float>(magnitude) * 0x1p112f;
    return std::bit_cast<float>(std::bit_cast<std::uint32_t>(value) | sign |
                                (magnitude >= 0x0F800000 ? 0x7F800000 : 0));
}

}  // namespace

void convert_8s16s(const Vorn8s* src, Vorn16s* dst, int len) { each(src, dst, len); }
void convert_16s32s(const Vorn16s* src, Vorn32s* dst, int len) { each(src, dst, len); }
void convert_8s32f(const Vorn8s* src, Vorn32f* dst, int len) { each(src, dst, len); }
void convert_8u32f(const Vorn8u* src, Vorn32f* dst, int len) { each(src, dst, len); }
void convert_16s32f(const Vorn16s* src, Vorn32f* dst, int len) { each(src, dst, len); }
void convert_16u32f(const Vorn16u* src, Vorn32f* dst, int len) { each(src, dst, len); }
void convert_32s64f(const Vorn32s* src, Vorn64f* dst, int len) { each(src, dst, len); }
void convert_32f64f(const Vorn32f* src, Vorn64f* dst, int len) { each(src, dst, len); }
void convert_32s32f(const Vorn32s* src, Vorn32f* dst, int len) { each(src, dst, len); }

void convert_32s16s(const Vorn32s* __restrict src, Vorn16s* __restrict dst, int len) {
    for (int i = 0; i < len; ++i) {
        const Vorn32s x = src[i] > 32767 ? 32767 : src[i];
        dst[i] = static_cast<Vorn16s>(x < -32768 ? -32768 : x);
    }
}

void convert_64f32f(const Vorn64f* __restrict src, Vorn32f* __restrict dst, int len) {
    for (int i = 0; i < len; ++i) {
        const double x = src[i] < 3.402823466e+38 ? src[i] : 3.402823466e+38;
        dst[i] = static_cast<float>(x > -3.402823466e+38 ? x : -3.402823466e+38);
    }
}

void convert_16s32f_Sfs(const Vorn16s* src, Vorn32f* dst, int len, int scale) { scaled(src, dst, len, scale); }
void convert_16s64f_Sfs(const Vorn16s* src, Vorn64f* dst, int len, int scale) { scaled(src, dst, len, scale); }
void convert_32s32f_Sfs(const Vorn32s* src, Vorn32f* dst, int len, int scale) { scaled(src, dst, len, scale); }
void convert_32s64f_Sfs(const Vorn32s* src, Vorn64f* dst, int len, int scale) { scaled(src, dst, len, scale); }

void convert_32s16s_Sfs(const Vorn32s* __restrict src, Vorn16s* __restrict dst, int len, int scale) {
    if (scale > 0) {
        const std::uint32_t dropped = (1u << scale) - 1, belowHalf = (1u << (scale - 1)) - 1;
        for (int i = 0; i < len; ++i) {
            const Vorn32s floor = src[i] >> scale;
            const std::uint32_t rest = static_cast<std::uint32_t>(src[i]) & dropped;
            const Vorn32s x =
                floor + static_cast<Vorn32s>((rest + belowHalf + static_cast<std::uint32_t>(floor & 1)) >> scale);
            const Vorn32s low = x > 32767 ? 32767 : x;
            dst[i] = static_cast<Vorn16s>(low < -32768 ? -32768 : low);
        }
    } else {
        for (int i = 0; i < len; ++i) {
            const Vorn32s low = src[i] > 32767 ? 32767 : src[i];
            const Vorn32s x = (low < -32768 ? -32768 : low) * (1 << -scale);
            const Vorn32s high = x > 32767 ? 32767 : x;
            dst[i] = static_cast<Vorn16s>(high < -32768 ? -32768 : high);
        }
    }
}

void convert_32f8s_Sfs(const Vorn32f* src, Vorn8s* dst, int len, VornRoundMode mode, int scale) {
    toInteger(src, dst, len, mode, scale, -128.0f, 127.0f);
}
void convert_32f8u_Sfs(const Vorn32f* src, Vorn8u* dst, int len, VornRoundMode mode, int scale) {
    toInteger(src, dst, len, mode, scale, 0.0f, 255.0f);
}
void convert_32f16s_Sfs(const Vorn32f* src, Vorn16s* dst, int len, VornRoundMode mode, int scale) {
    toInteger(src, dst, len, mode, scale, -32768.0f, 32767.0f);
}
void convert_32f16u_Sfs(const Vorn32f* src, Vorn16u* dst, int len, VornRoundMode mode, int scale) {
    toInteger(src, dst, len, mode, scale, 0.0f, 65535.0f);
}
void convert_32f32s_Sfs(const Vorn32f* src, Vorn32s* dst, int len, VornRoundMode mode, int scale) {
    toInteger(src, dst, len, mode, scale, -2147483648.0f, 2147483520.0f);
}
void convert_64f32s_Sfs(const Vorn64f* src, Vorn32s* dst, int len, VornRoundMode mode, int scale) {
    toInteger(src, dst, len, mode, scale, -2147483648.0, 2147483647.0);
}

void convert_16f16s_Sfs(const Vorn16f* __restrict src, Vorn16s* __restrict dst, int len, VornRoundMode mode,
                        int scale) {
    const float factor = std::ldexp(1.0f, -scale);
    for (int i = 0; i < len; ++i) {
        const float x = fromHalf(src[i]) * factor, low = x > -32768.0f ? x : -32768.0f,
                    y = low < 32767.0f ? low : 32767.0f;
        dst[i] = static_cast<Vorn16s>(static_cast<std::int32_t>(mode == vornRndNear ? std::rint(y) : y));
    }
}

void convert_16s16f(const Vorn16s* __restrict src, Vorn16f* __restrict dst, int len, VornRoundMode mode) {
    const std::uint32_t belowHalf = mode == vornRndNear ? 0xFFF : 0, oddMask = mode == vornRndNear ? 1 : 0;
    for (int i = 0; i < len; ++i) {
        const std::uint32_t p = std::bit_cast<std::uint32_t>(std::fabs(static_cast<float>(src[i])) * 0x1p-112f);
        dst[i] = static_cast<Vorn16f>(((p + belowHalf + ((p >> 13) & oddMask)) >> 13) | (src[i] & 0x8000));
    }
}

void convert_32f16f(const Vorn32f* __restrict src, Vorn16f* __restrict dst, int len, VornRoundMode mode) {
    const std::uint32_t belowHalf = mode == vornRndNear ? 0xFFF : 0, oddMask = mode == vornRndNear ? 1 : 0;
    for (int i = 0; i < len; ++i) {
        const float a = std::fabs(src[i]), limited = 65536.0f < a ? 65536.0f : a;
        const std::uint32_t p = std::bit_cast<std::uint32_t>(limited * 0x1p-112f);
        dst[i] = static_cast<Vorn16f>(((p + belowHalf + ((p >> 13) & oddMask)) >> 13) |
                                      ((std::bit_cast<std::uint32_t>(src[i]) >> 16) & 0x8000));
    }
}

void convert_16f32f(const Vorn16f* __restrict src, Vorn32f* __restrict dst, int len) {
    for (int i = 0; i < len; ++i) dst[i] = fromHalf(src[i]);
}

}  // namespace plain
