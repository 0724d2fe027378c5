#include "plain/reflection.h"

#include <algorithm>
#include <cmath>

namespace plain {
namespace {

float ratioOf(float k) { return (1.0f - k) / (1.0f + k); }
float logRatioOf(float k, float val) { return std::log(ratioOf(std::clamp(k, -val, val))); }
float tiltOf(float a, float b) { return (std::fabs(a) - std::fabs(b)) / (a + b); }
float absTiltOf(float a, float b) { return (std::fabs(a) - std::fabs(b)) / (std::fabs(a) + std::fabs(b)); }

std::int16_t rounded(float y) { return static_cast<std::int16_t>(std::clamp(std::rint(y), -32768.0f, 32767.0f)); }
std::int16_t truncated(float y) { return static_cast<std::int16_t>(std::clamp(y, -32768.0f, 32767.0f)); }

}  // namespace

void areaRatios(const float* k, float* dst, int len) {
    for (int n = 0; n < len; ++n) dst[n] = ratioOf(k[n]);
}
void runningAreaRatios(const float* k, float* dst, int len) {
    float y = 1;
    for (int n = 0; n < len; ++n) dst[n] = y = y * (1.0f - k[n]) / (k[n] + 1.0f);
}
void logAreaRatios(const float* k, float* dst, int len, float val) {
    for (int n = 0; n < len; ++n) dst[n] = logRatioOf(k[n], val);
}
void tilts(const float* a, const float* b, float* dst, int len) {
    for (int n = 0; n < len; ++n) dst[n] = tiltOf(a[n], b[n]);
}
void absTilts(const float* a, const float* b, float* dst, int len) {
    for (int n = 0; n < len; ++n) dst[n] = absTiltOf(a[n], b[n]);
}

void areaRatios(const std::int16_t* k, int in, std::int16_t* dst, int len, int out) {
    const float from = std::ldexp(1.0f, in), to = std::ldexp(1.0f, -out);
    for (int n = 0; n < len; ++n) dst[n] = rounded(ratioOf(static_cast<float>(k[n]) * from) * to);
}
void runningAreaRatios(const std::int16_t* k, int in, std::int16_t* dst, int len, int out) {
    const float from = std::ldexp(1.0f, in), to = std::ldexp(1.0f, -out);
    float y = 1;
    for (int n = 0; n < len; ++n) {
        const float x = static_cast<float>(k[n]) * from;
        y = y * (1.0f - x) / (x + 1.0f);
        dst[n] = rounded(y * to);
    }
}
void logAreaRatios(const std::int16_t* k, int in, std::int16_t* dst, int len, int out, float val) {
    const float from = std::ldexp(1.0f, in), to = std::ldexp(1.0f, -out);
    for (int n = 0; n < len; ++n) dst[n] = truncated(logRatioOf(static_cast<float>(k[n]) * from, val) * to);
}
void tilts(const std::int16_t* a, const std::int16_t* b, std::int16_t* dst, int len, int out) {
    const float to = std::ldexp(1.0f, -out);
    for (int n = 0; n < len; ++n) dst[n] = rounded(tiltOf(a[n], b[n]) * to);
}
void absTilts(const std::int16_t* a, const std::int16_t* b, std::int16_t* dst, int len, int out) {
    const float to = std::ldexp(1.0f, -out);
    for (int n = 0; n < len; ++n) dst[n] = rounded(absTiltOf(a[n], b[n]) * to);
}

}  // namespace plain
