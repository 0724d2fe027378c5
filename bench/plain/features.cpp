#include "plain/features.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <limits>

namespace plain {

void compensateOffset(const float* src, float* dst, int len, float* srcLast, float dstLast, float val) {
    float before = *srcLast, y = dstLast;
    for (int n = 0; n < len; ++n) {
        y = src[n] - before + val * y;
        before = src[n];
        dst[n] = y;
    }
    *srcLast = before;
}

void compensateOffset(const std::int16_t* src, std::int16_t* dst, int len, std::int16_t* srcLast, std::int16_t dstLast,
                      float val) {
    const int q = static_cast<int>(val * 4096.0f);
    int before = *srcLast, y = dstLast;
    for (int n = 0; n < len; ++n) {
        const int d = std::clamp(src[n] - before, -32768, 32767);
        y = std::clamp(((y * q) >> 12) + d, -32768, 32767);
        before = src[n];
        dst[n] = static_cast<std::int16_t>(y);
    }
    *srcLast = static_cast<std::int16_t>(before);
}

void compensateOffsetQ15(const std::int16_t* src, std::int16_t* dst, int len, std::int16_t* srcLast,
                         std::int16_t dstLast, std::int16_t val) {
    int before = *srcLast, y = dstLast;
    for (int n = 0; n < len; ++n) {
        const std::int64_t sum = std::int64_t{y} * val + std::int64_t{src[n] - before} * 32768;
        y = static_cast<int>(std::clamp<std::int64_t>(sum / 32768, -32768, 32767));
        before = src[n];
        dst[n] = static_cast<std::int16_t>(y);
    }
    *srcLast = static_cast<std::int16_t>(before);
}

void compensateOffsetRounded(const std::int16_t* src, std::int16_t* dst, int len, std::int16_t* srcLast,
                             std::int16_t dstLast, float val) {
    float before = *srcLast, y = dstLast;
    for (int n = 0; n < len; ++n) {
        y = static_cast<float>(src[n]) - before + val * y;
        y = std::clamp(y + (y < 0 ? -0.5f : 0.5f), -32768.0f, 32767.0f);
        before = src[n];
        dst[n] = static_cast<std::int16_t>(y);
        y = dst[n];
    }
    *srcLast = static_cast<std::int16_t>(before);
}

namespace {

template <class T, class Step>
int countSteps(const T* src, int len, Step step) {
    int sum = 0;
    for (int n = 1; n < len; ++n) sum += step(src[n - 1], src[n]);
    return sum;
}

template <class T>
float largest(const T* x, int step, int height) {
    T m = std::numeric_limits<T>::lowest();
    for (int i = 0; i < height; ++i) m = std::max(m, x[static_cast<std::ptrdiff_t>(i) * step]);
    return m;
}

}  // namespace

int signChanges(const std::int16_t* src, int len) {
    return countSteps(src, len, [](int a, int b) { return a * b < 0; });
}
int signChanges(const float* src, int len) {
    return countSteps(src, len, [](float a, float b) { return !(a * b >= 0); });
}
int signBits(const float* src, int len) {
    return countSteps(src, len, [](float a, float b) { return std::signbit(a) != std::signbit(b); });
}
int signSteps(const std::int16_t* src, int len) {
    const auto sign = [](int x) { return (x > 0) - (x < 0); };
    return countSteps(src, len, [=](int a, int b) { return std::abs(sign(a) - sign(b)); });
}
int signSteps(const float* src, int len) {
    const auto sign = [](float x) { return x > 0 ? 1 : x == 0 ? 0 : -1; };
    return countSteps(src, len, [=](float a, float b) { return std::abs(sign(a) - sign(b)); });
}

void normEnergy(float* x, int step, int height, float minDb, float maxE, float val) {
    const float floor = maxE - minDb * 0.230259f;
    for (int i = 0; i < height; ++i) {
        float& e = x[static_cast<std::ptrdiff_t>(i) * step];
        e = 1.0f - (maxE - std::max(e, floor)) * val;
    }
}
void normEnergy(float* x, int step, int height, float minDb, float val) {
    normEnergy(x, step, height, minDb, largest(x, step, height), val);
}
void normEnergy(std::int16_t* x, int step, int height, float minDb, float maxE, float top, float val) {
    const float floor = maxE - minDb * 0.230259f;
    for (int i = 0; i < height; ++i) {
        std::int16_t& e = x[static_cast<std::ptrdiff_t>(i) * step];
        const float y = top - (maxE - std::max(static_cast<float>(e), floor)) * val;
        e = static_cast<std::int16_t>(std::clamp(y, -32768.0f, 32767.0f));
    }
}
void normEnergy(std::int16_t* x, int step, int height, float minDb, float top, float val) {
    normEnergy(x, step, height, minDb, largest(x, step, height), top, val);
}

void zeroMean(std::int16_t* x, int len) {
    int sum = 0;
    for (int n = 0; n < len; ++n) sum += x[n];
    const int mean = static_cast<int>(2 * std::int64_t{sum} / len);
    for (int n = 0; n < len; ++n) {
        const int d = 2 * x[n] - mean;
        x[n] = static_cast<std::int16_t>(std::clamp((d + (d > 0) - (d < 0)) >> 1, -32767, 32767));
    }
}

float gaussConstant(const float* var, int len) {
    float sum = static_cast<float>(len * 1.8378770664093);
    for (int i = 0; i < len; ++i) sum += std::log(var[i]);
    return sum;
}

void dctLifter(const float* x, float* dst, const float* rows, int stride, const float* weight, int lenDCT, int lenCep) {
    for (int i = 0; i < lenCep; ++i) {
        float sum = 0;
        for (int j = 0; j < lenDCT; ++j) sum += x[j] * rows[static_cast<std::ptrdiff_t>(i) * stride + j];
        dst[i] = weight[i] * sum;
    }
}

void cosines(float* rows, int stride, float* weight, int lenDCT, int lenCep, int nLifter, float val) {
    constexpr double pi = 3.141592653589793;
    for (int i = 0; i <= lenCep; ++i) {
        weight[i] = static_cast<float>(1 + 0.5 * nLifter * std::sin(i * pi / nLifter)) * val;
        for (int j = 0; j < lenDCT; ++j) {
            rows[static_cast<std::ptrdiff_t>(i) * stride + j] =
                static_cast<float>(std::cos((j + 0.5) * i * pi / lenDCT));
        }
    }
}

void filterBank(const float* spectrum, float* dst, const int* center, const float* rises, const float* falls,
                int stride, int nFilter) {
    for (int k = 0; k < nFilter; ++k) {
        const float* rise = rises + static_cast<std::ptrdiff_t>(k) * stride - center[k];
        const float* fall = falls + static_cast<std::ptrdiff_t>(k) * stride - center[k + 1] - 1;
        float sum = 0;
        for (int j = center[k]; j <= center[k + 1]; ++j) sum += rise[j] * spectrum[j];
        for (int j = center[k + 1] + 1; j <= center[k + 2]; ++j) sum += fall[j] * spectrum[j];
        dst[k] = sum;
    }
}

namespace {

template <class Result>
void fixedFilterBank(const std::int16_t* spectrum, Result* dst, const int* center, const int* rises, const int* falls,
                     int stride, int nFilter, int shift) {
    using Limits = std::numeric_limits<Result>;
    for (int k = 0; k < nFilter; ++k) {
        const int* rise = rises + static_cast<std::ptrdiff_t>(k) * stride - center[k];
        const int* fall = falls + static_cast<std::ptrdiff_t>(k) * stride - center[k + 1] - 1;
        std::int64_t sum = 0;
        for (int j = center[k]; j <= center[k + 1]; ++j) sum += rise[j] * spectrum[j];
        for (int j = center[k + 1] + 1; j <= center[k + 2]; ++j) sum += fall[j] * spectrum[j];
        dst[k] = static_cast<Result>(std::clamp<std::int64_t>(sum >> shift, Limits::min(), Limits::max()));
    }
}

template <class Weight>
void straightBank(int* center, Weight* rises, Weight* falls, int stride, int fftLen, int nFilter, Weight one) {
    const double low = std::log(1 + 64.0 / 700), high = std::log(1 + 4000.0 / 700);
    for (int i = 0; i <= nFilter + 1; ++i) {
        const double hertz = 700 * (std::exp(low + i * (high - low) / (nFilter + 1)) - 1);
        center[i] = static_cast<int>(std::lround(hertz * fftLen / 8000));
    }
    for (int k = 0; k < nFilter; ++k) {
        Weight* rise = rises + static_cast<std::ptrdiff_t>(k) * stride;
        Weight* fall = falls + static_cast<std::ptrdiff_t>(k) * stride;
        const int up = center[k + 1] - center[k] + 1, down = center[k + 2] - center[k + 1] + 1;
        for (int j = 0; j < up; ++j) rise[j] = static_cast<Weight>(j + 1) * one / static_cast<Weight>(up);
        for (int j = 1; j < down; ++j) fall[j - 1] = static_cast<Weight>(down - j) * one / static_cast<Weight>(down);
    }
}

}  // namespace

void filterBank(const std::int16_t* spectrum, std::int16_t* dst, const int* center, const int* rises, const int* falls,
                int stride, int nFilter, int shift) {
    fixedFilterBank(spectrum, dst, center, rises, falls, stride, nFilter, shift);
}
void filterBank(const std::int16_t* spectrum, std::int32_t* dst, const int* center, const int* rises, const int* falls,
                int stride, int nFilter, int shift) {
    fixedFilterBank(spectrum, dst, center, rises, falls, stride, nFilter, shift);
}
void melBank(int* center, float* rises, float* falls, int stride, int fftLen, int nFilter, float one) {
    straightBank(center, rises, falls, stride, fftLen, nFilter, one);
}
void melBank(int* center, int* rises, int* falls, int stride, int fftLen, int nFilter, int one) {
    straightBank(center, rises, falls, stride, fftLen, nFilter, one);
}

}  // namespace plain
