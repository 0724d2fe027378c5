#include "plain/log_arithmetic.h"

#include <algorithm>
#include <cmath>

namespace plain {
namespace {

float pairSum(float a, float b) {
    const float m = std::max(a, b);
    return m + log1pf(expf(std::min(a, b) - m));
}
double pairSum(double a, double b) {
    const double m = std::max(a, b);
    return m + log1p(exp(std::min(a, b) - m));
}
float pairDifference(float a, float b) { return a + log1pf(-expf(b - a)); }
double pairDifference(double a, double b) { return a + log1p(-exp(b - a)); }

template <class T>
void addLoop(const T* src, T* srcDst, int len) {
    for (int i = 0; i < len; ++i) srcDst[i] = pairSum(src[i], srcDst[i]);
}
template <class T>
void addLoop(const T* src, T* srcDst, int len, float scale) {
    const float unit = 1 / scale;
    for (int i = 0; i < len; ++i) srcDst[i] = static_cast<T>(pairSum(src[i] * scale, srcDst[i] * scale) * unit);
}
template <class T>
T sumLoop(const T* src, int len) {
    T sum = src[0];
    for (int i = 1; i < len; ++i) sum = pairSum(sum, src[i]);
    return sum;
}
template <class T>
T sumLoop(const T* src, int len, float scale) {
    float sum = src[0] * scale;
    for (int i = 1; i < len; ++i) sum = pairSum(sum, src[i] * scale);
    return static_cast<T>(sum / scale);
}
template <class T>
void subLoop(const T* src, T* srcDst, int len) {
    for (int i = 0; i < len; ++i) srcDst[i] = pairDifference(src[i], srcDst[i]);
}
template <class T>
void subLoop(const T* src, T* srcDst, int len, float scale) {
    for (int i = 0; i < len; ++i) {
        srcDst[i] = static_cast<T>(
            pairDifference(static_cast<float>(src[i]) * scale, static_cast<float>(srcDst[i]) * scale) / scale);
    }
}

}  // namespace

void logAdd(const Vorn32f* src, Vorn32f* srcDst, int len) { addLoop(src, srcDst, len); }
void logAdd(const Vorn64f* src, Vorn64f* srcDst, int len) { addLoop(src, srcDst, len); }
void logAdd(const Vorn32s* src, Vorn32s* srcDst, int len, float scale) { addLoop(src, srcDst, len, scale); }
void logAdd(const Vorn16s* src, Vorn16s* srcDst, int len, float scale) { addLoop(src, srcDst, len, scale); }
Vorn32f logSum(const Vorn32f* src, int len) { return sumLoop(src, len); }
Vorn64f logSum(const Vorn64f* src, int len) { return sumLoop(src, len); }
Vorn32s logSum(const Vorn32s* src, int len, float scale) { return sumLoop(src, len, scale); }
Vorn16s logSum(const Vorn16s* src, int len, float scale) { return sumLoop(src, len, scale); }
void logSub(const Vorn32f* src, Vorn32f* srcDst, int len) { subLoop(src, srcDst, len); }
void logSub(const Vorn64f* src, Vorn64f* srcDst, int len) { subLoop(src, srcDst, len); }
void logSub(const Vorn32s* src, Vorn32s* srcDst, int len, float scale) { subLoop(src, srcDst, len, scale); }
void logSub(const Vorn16s* src, Vorn16s* srcDst, int len, float scale) { subLoop(src, srcDst, len, scale); }

}  // namespace plain
