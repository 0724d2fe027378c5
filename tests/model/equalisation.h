// Plain models of blind equalisation and of the coding of a high band.
#pragma once

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "elementary/elementary.h"
#include "model/integers.h"
#include "model/reductions.h"
#include "vornsr.h"

namespace model {

inline void equaliseBlindly(const std::vector<float>& ref, std::vector<float>& x, std::vector<float>& bias,
                            float energy) {
    float level = energy - 3.296875f;
    if (!(level > 0.0f)) level = 0.0f;
    if (level > 1.0f) level = 1.0f;
    const float step = level * 0.0087890625f;
    for (std::size_t i = 0; i < x.size(); ++i) {
        const float c = x[i] - bias[i];
        x[i] = c;
        const float move = (c - ref[i]) * step;
        bias[i] = move + bias[i];
    }
}

inline void equaliseBlindly(const std::vector<std::int16_t>& ref, std::vector<std::int16_t>& x,
                            std::vector<std::int16_t>& bias, int energy) {
    std::int64_t w = std::int64_t{energy} - 211;
    if (w < 0) w = 0;
    if (w > 64) w = 64;
    for (std::size_t i = 0; i < x.size(); ++i) {
        const std::int64_t c = std::int64_t{x[i]} - bias[i];
        x[i] = saturateTo<std::int16_t>(c);
        const double moved = std::floor(static_cast<double>(w * 9 * (c - ref[i])) / 65536.0);
        bias[i] = saturateTo<std::int16_t>(std::int64_t{bias[i]} + static_cast<std::int64_t>(moved));
    }
}

// The elements from first to last.
template <class T>
std::vector<T> bins(const std::vector<T>& x, int first, int last) {
    return {x.begin() + first, x.begin() + last + 1};
}

inline float flooredLn(float v) {
    return static_cast<double>(v) > 4.5399929762484854e-05 ? static_cast<float>(vorn::log64(v)) : -10.0f;
}

inline std::vector<float> codedHighBand(const std::vector<float>& highBands, const std::vector<float>& lowSpec,
                                        const std::vector<float>& highSpec) {
    float h0 = 0.0f, h1 = 0.0f;
    for (int i = 33; i <= 38; ++i) h0 += lowSpec[i];
    for (int i = 39; i <= 48; ++i) h1 += lowSpec[i];
    const float H[3] = {flooredLn(h0), flooredLn(h1), flooredLn(sumAccurate(bins(lowSpec, 49, 64)))};
    const float N[3] = {flooredLn(0.5f * sumAccurate(bins(highSpec, 66, 76))),
                        flooredLn(0.5f * sumAccurate(bins(highSpec, 78, 96))),
                        flooredLn(0.5f * sumAccurate(bins(highSpec, 98, 128)))};
    std::vector<float> dst(3);
    for (int i = 0; i < 3; ++i) {
        const float L = flooredLn(highBands[i]);
        float D[3];
        for (int j = 0; j < 3; ++j) D[j] = H[j] - L;
        const float first = (N[2] - D[2]) * 0.7f, second = (N[1] - D[1]) * 0.2f, third = (N[0] - D[0]) * 0.1f;
        dst[i] = (first + second) + third;
    }
    return dst;
}

// The sum times 2^-scale, to nearest even, saturated.
inline std::int32_t scaledSum(const std::vector<std::int32_t>& x, int scale) {
    std::int64_t sum = 0;
    for (std::int32_t v : x) sum += v;
    return saturateTo<std::int32_t>(nearestRatio(sum, Big{1} << scale));
}

// ln in Q7, by the library's own logarithm of one number; -10 below 1.
inline std::int32_t flooredLnQ7(std::int32_t v) {
    if (v < 1) return -1280;
    std::int32_t ln = 0;
    vornsLn_32s_Sfs(&v, &ln, 1, -7);
    return ln;
}

inline std::vector<std::int32_t> codedHighBand(const std::vector<std::int32_t>& highBands,
                                               const std::vector<std::int32_t>& lowSpec,
                                               const std::vector<std::int32_t>& highSpec, int scale) {
    const std::int32_t H[3] = {flooredLnQ7(scaledSum(bins(lowSpec, 33, 38), 0)),
                               flooredLnQ7(scaledSum(bins(lowSpec, 39, 48), 0)),
                               flooredLnQ7(scaledSum(bins(lowSpec, 49, 64), 0))};
    std::int32_t N[3] = {flooredLnQ7(scaledSum(bins(highSpec, 66, 76), 3)),
                         flooredLnQ7(scaledSum(bins(highSpec, 78, 96), 3)),
                         flooredLnQ7(scaledSum(bins(highSpec, 98, 128), 3))};
    for (std::int32_t& n : N) {
        if (n != -1280) n += 177;  // a logarithm of an integer from 1 on is not negative
    }
    const auto q10 = [](std::int32_t product) { return static_cast<std::int32_t>(std::floor(product / 1024.0)); };
    std::vector<std::int32_t> dst(3);
    for (int i = 0; i < 3; ++i) {
        const std::int32_t L = flooredLnQ7(highBands[i]);
        const std::int32_t D[3] = {H[0] - L, H[1] - L, H[2] - L};
        const std::int32_t v = q10(102 * N[0] - 102 * D[0]) + q10(205 * N[1] - 205 * D[1]) + q10(717 * (N[2] - D[2]));
        const std::int64_t shift = std::int64_t{scale} + 7;
        const int count = static_cast<int>(((shift < 0 ? -shift : shift) % 32 + 32) % 32);
        dst[i] = scale < -7 ? wrapTo<std::int32_t>(Big{v} << count)
                            : static_cast<std::int32_t>(std::floor(std::ldexp(v, -count)));
    }
    return dst;
}

}  // namespace model
