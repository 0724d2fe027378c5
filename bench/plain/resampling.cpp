#include "plain/resampling.h"

#include <algorithm>
#include <cmath>

namespace plain {
namespace {

void store(double y, float* dst) { *dst = static_cast<float>(y); }
void store(double y, std::int16_t* dst) {
    *dst = static_cast<std::int16_t>(std::lrint(std::clamp(y, -32768.0, 32767.0)));
}

template <class Sum, class Sample, class Tap>
int overPhases(const Tap* rows, int stride, int in, int out, int halfLen, const Sample* src, int len, Sample* dst,
               float gain) {
    int made = 0;
    for (long position = 0; position < static_cast<long>(len) * out; position += in) {
        const int phase = static_cast<int>(position % out);
        const Sample* window = src + position / out + 1 - halfLen - (phase == 0);
        const Tap* row = rows + static_cast<long>(phase) * stride;
        Sum sum = 0;
        for (int m = 0; m < 2 * halfLen + (phase == 0); ++m)
            sum += static_cast<Sum>(window[m]) * static_cast<Sum>(row[m]);
        store(static_cast<double>(sum) * static_cast<double>(gain), dst + made++);
    }
    return made;
}

template <class Sample>
int atAnyFactor(const float* table, int nStep, int tableLen, const Sample* src, int len, Sample* dst, double factor,
                float norm) {
    const double stretch = std::min(factor, 1.0), h = stretch * nStep, end = tableLen - 1e-5;
    int made = 0;
    for (double t = 0; t < len; t += 1 / factor) {
        const int i = static_cast<int>(t);
        const double f = t - i;
        double sum = 0;
        int k = 0;
        const auto weight = [&](double p) {
            const int q = static_cast<int>(p);
            const double r = p - q;
            return static_cast<double>(table[q]) * (1 - r) + static_cast<double>(table[q + 1]) * r;
        };
        for (double p = f * h; p < end; p += h) sum += weight(p) * static_cast<double>(src[i - k++]);
        k = 0;
        for (double p = (1 - f) * h; p < end; p += h) sum += weight(p) * static_cast<double>(src[i + 1 + k++]);
        store(sum * stretch * static_cast<double>(norm), dst + made++);
    }
    return made;
}

}  // namespace

int resampleFixed(const float* rows, int stride, int in, int out, int halfLen, const float* src, int len, float* dst,
                  float gain) {
    return overPhases<float>(rows, stride, in, out, halfLen, src, len, dst, gain);
}
int resampleFixed(const float* rows, int stride, int in, int out, int halfLen, const std::int16_t* src, int len,
                  std::int16_t* dst, float gain) {
    return overPhases<float>(rows, stride, in, out, halfLen, src, len, dst, gain);
}
int resampleFixed(const std::int16_t* rows, int stride, int in, int out, int halfLen, const std::int16_t* src, int len,
                  std::int16_t* dst, float gain) {
    return overPhases<std::int64_t>(rows, stride, in, out, halfLen, src, len, dst, gain);
}

int resample(const float* table, int nStep, int tableLen, const float* src, int len, float* dst, double factor,
             float norm) {
    return atAnyFactor(table, nStep, tableLen, src, len, dst, factor, norm);
}
int resample(const float* table, int nStep, int tableLen, const std::int16_t* src, int len, std::int16_t* dst,
             double factor, float norm) {
    return atAnyFactor(table, nStep, tableLen, src, len, dst, factor, norm);
}

}  // namespace plain
