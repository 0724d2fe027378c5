#include "plain/reductions.h"

#include <algorithm>
#include <cmath>

namespace plain {

void ln(const Vorn32f* src, Vorn32f* dst, int len) {
    for (int i = 0; i < len; ++i) dst[i] = std::log(src[i]);
}

float sumLn(const Vorn32f* src, int len) {
    double sum = 0.0;
    for (int i = 0; i < len; ++i) sum += static_cast<double>(std::log(src[i]));
    return static_cast<float>(sum);
}

float sum(const Vorn32f* src, int len) {
    float sum = 0.0f;
    for (int i = 0; i < len; ++i) sum += src[i];
    return sum;
}

float sumInDouble(const Vorn32f* src, int len) {
    double sum = 0.0;
    for (int i = 0; i < len; ++i) sum += static_cast<double>(src[i]);
    return static_cast<float>(sum);
}

void magnitude(const Vorn32fc* src, Vorn32f* dst, int len) {
    for (int i = 0; i < len; ++i) dst[i] = std::sqrt(src[i].re * src[i].re + src[i].im * src[i].im);
}

void magnitude(const Vorn32sc* src, Vorn32s* dst, int len, int scaleFactor) {
    const double scale = std::ldexp(1.0, -scaleFactor);
    for (int i = 0; i < len; ++i) {
        const double re = src[i].re, im = src[i].im;
        dst[i] = static_cast<Vorn32s>(std::nearbyint(std::min(std::sqrt(re * re + im * im) * scale, 2147483647.0)));
    }
}

}  // namespace plain
