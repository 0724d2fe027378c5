#include "plain/equalisation.h"

#include <algorithm>
#include <cmath>

namespace plain {
namespace {

template <class Sum, class T>
Sum sumOf(const T* x, int first, int last) {
    Sum sum = 0;
    for (int i = first; i <= last; ++i) sum += static_cast<Sum>(x[i]);
    return sum;
}

float flooredLn(float v) { return v > 4.54e-5f ? static_cast<float>(std::log(static_cast<double>(v))) : -10.0f; }
int flooredLnQ7(std::int64_t v) {
    return v > 0 ? static_cast<int>(std::lrint(128.0f * std::log(static_cast<float>(v)))) : -1280;
}

}  // namespace

void equaliseBlindly(const float* ref, float* x, float* bias, int len, float energy) {
    const float step = std::min(std::max(energy - 3.296875f, 0.0f), 1.0f) * 0.0087890625f;
    for (int i = 0; i < len; ++i) {
        const float c = x[i] - bias[i];
        bias[i] = (c - ref[i]) * step + bias[i];
        x[i] = c;
    }
}

void equaliseBlindly(const std::int16_t* ref, std::int16_t* x, std::int16_t* bias, int len, int energy) {
    const int step = 9 * std::clamp(energy, 211, 275) - 9 * 211;
    for (int i = 0; i < len; ++i) {
        const int c = x[i] - bias[i], moved = bias[i] + (step * (c - ref[i]) >> 16);
        bias[i] = static_cast<std::int16_t>(std::clamp(moved, -32768, 32767));
        x[i] = static_cast<std::int16_t>(std::clamp(c, -32768, 32767));
    }
}

void codeHighBand(const float* bands, const float* low, const float* high, float* dst) {
    const float h[] = {flooredLn(sumOf<float>(low, 33, 38)), flooredLn(sumOf<float>(low, 39, 48)),
                       flooredLn(sumOf<float>(low, 49, 64))};
    const float n[] = {flooredLn(0.5f * sumOf<float>(high, 66, 76)), flooredLn(0.5f * sumOf<float>(high, 78, 96)),
                       flooredLn(0.5f * sumOf<float>(high, 98, 128))};
    for (int i = 0; i < 3; ++i) {
        const float l = flooredLn(bands[i]);
        dst[i] = (n[2] - (h[2] - l)) * 0.7f + (n[1] - (h[1] - l)) * 0.2f + (n[0] - (h[0] - l)) * 0.1f;
    }
}

void codeHighBand(const std::int32_t* bands, const std::int32_t* low, const std::int32_t* high, std::int32_t* dst,
                  int scaleFactor) {
    using Wide = std::int64_t;
    const int h[] = {flooredLnQ7(sumOf<Wide>(low, 33, 38)), flooredLnQ7(sumOf<Wide>(low, 39, 48)),
                     flooredLnQ7(sumOf<Wide>(low, 49, 64))};
    int n[] = {flooredLnQ7(sumOf<Wide>(high, 66, 76) >> 3), flooredLnQ7(sumOf<Wide>(high, 78, 96) >> 3),
               flooredLnQ7(sumOf<Wide>(high, 98, 128) >> 3)};
    for (int& x : n) x += x == -1280 ? 0 : 177;
    for (int i = 0; i < 3; ++i) {
        const int l = flooredLnQ7(bands[i]);
        const int v =
            (102 * (n[0] - (h[0] - l)) >> 10) + (205 * (n[1] - (h[1] - l)) >> 10) + (717 * (n[2] - (h[2] - l)) >> 10);
        dst[i] = scaleFactor < -7 ? v << -(scaleFactor + 7) : v >> (scaleFactor + 7);
    }
}

}  // namespace plain
