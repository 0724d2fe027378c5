#include "plain/pitch.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <vector>

namespace plain {
namespace {

float reciprocal[17], root[17];
std::int64_t reciprocalQ30[17], rootQ30[17];
const bool ready = [] {
    for (int n = 1; n <= 16; ++n) {
        reciprocal[n] = 1.0f / static_cast<float>(n);
        root[n] = 1.0f / std::sqrt(static_cast<float>(n));
        reciprocalQ30[n] = (std::int64_t{1} << 30) / n;
        rootQ30[n] = static_cast<std::int64_t>(std::ldexp(1.0, 30) / std::sqrt(n));
    }
    return true;
}();

// The longest run of whole teeth comes first, so that the inner loop has no test.
template <class T, class Sum, class Mean, class MeanOf>
Sum bestComb(const T* x, int len, int low, int high, int* period, Mean best, MeanOf meanOf) {
    Sum bestSum = 0;
    *period = 0;
    for (int p = low; p <= high; ++p) {
        for (int j = 0; j < p; ++j) {
            const int n = std::min(6, (len - 1 - j) / p + 1);
            Sum s = x[j];
            for (int m = 1; m < n; ++m) s += x[j + m * p];
            const Mean a = meanOf(s, n);
            if (a > best) {
                best = a;
                bestSum = s;
                *period = p;
            }
        }
    }
    return bestSum;
}

template <class T, class Value, class MeanOf>
void markPeaks(const T* src, std::uint8_t* dst, int n, int q, int m, MeanOf meanOf) {
    std::fill(dst, dst + n, std::uint8_t{0});
    if (n == 1) {
        dst[0] = 1;
        return;
    }
    if (m >= n - 1) return;
    std::vector<Value> held;
    const Value* s;
    if constexpr (sizeof(T) == sizeof(Value)) s = reinterpret_cast<const Value*>(src);
    if (m > 0 || sizeof(T) != sizeof(Value)) {
        held.resize(static_cast<std::size_t>(n));
        meanOf(held.data());
        s = held.data();
    }
    int i = 1;
    while (i < n && s[i] < s[i - 1]) ++i;
    if (i == n || i - 1 >= q) dst[0] = 1;
    if (i == n) return;
    if (i == n - 1) {
        dst[n - 1] = src[n - 1] > src[n - 2] && q == 1;
        return;
    }
    for (; i < n; ++i) {
        int r = s[i] != s[i - 1];
        while (i < n - 1 && !(s[i] >= s[i + 1])) ++i, ++r;
        if (i == n - 1) {
            dst[i] = r >= std::min(i, q);
            return;
        }
        if (s[i] == s[i + 1]) continue;
        const int p = i++;
        while (i < n - 1 && !(s[i + 1] >= s[i])) ++i;
        if (r >= std::min(p, q) && i - p >= (p < n - q ? q : n - 1 - p)) dst[p] = 1;
    }
}

}  // namespace

float combs(const float* x, int len, int low, int high, int* period) {
    float total = 0;
    for (int i = 0; i < len; ++i) total += x[i];
    return bestComb<float, float>(x, len, low, high, period, 0.0f, [](float s, int n) { return s * reciprocal[n]; }) /
           total;
}
std::int16_t combs(const std::int32_t* x, int len, int low, int high, int* period) {
    std::int64_t total = 0;
    for (int i = 0; i < len; ++i) total += x[i];
    int c = 0;
    for (; total > 0x7FFFFFFF; total >>= 1) ++c;
    const std::int64_t sum = bestComb<std::int32_t, std::int64_t>(
        x, len, low, high, period, std::int64_t{0}, [](std::int64_t s, int n) { return (reciprocalQ30[n] * s) >> 30; });
    return static_cast<std::int16_t>(std::min<std::int64_t>((sum >> c) * 32768 / total, 32767));
}

float leastSquaresPeriod(const float* x, int len, int low, int high, int* period) {
    float energy = 0, best = 0;
    for (int i = 0; i < len; ++i) energy += x[i] * x[i];
    *period = 0;
    for (int p = low; p <= high; ++p) {
        float a = 0, b = 0;
        for (int j = 0; j < p; ++j) {
            float s = 0, q = 0;
            int n = 0;
            for (int i = j; i < len; i += p, ++n) s += x[i], q += x[i] * x[i];
            s *= root[n];
            a += s * s;
            b += q * reciprocal[n];
        }
        const float num = a - b, den = energy - b;
        if (num > 0 && den > 0 && num / den > best) {
            best = num / den;
            *period = p;
        }
    }
    return best;
}
std::int16_t leastSquaresPeriod(const std::int16_t* x, int len, int low, int high, int* period) {
    std::int64_t energy = 0, best = 0;
    for (int i = 0; i < len; ++i) energy += x[i] * x[i];
    int c = 0;
    for (; energy > 0x7FFFFFFF; energy >>= 1) ++c;
    *period = 0;
    for (int p = low; p <= high; ++p) {
        std::int64_t a = 0, b = 0;
        for (int j = 0; j < p; ++j) {
            std::int32_t s = 0, q = 0;
            int n = 0;
            for (int i = j; i < len; i += p, ++n) s += x[i], q += (x[i] * x[i]) >> c;
            const std::int64_t v = s * rootQ30[n];
            a += (v >> ((c >> 1) + 30)) * (v >> (c - (c >> 1) + 30));
            b += (q * reciprocalQ30[n]) >> 30;
        }
        const std::int64_t num = a - b, den = energy - b;
        if (num > 0 && den > 0 && num * 32768 / den > best) {
            best = num * 32768 / den;
            *period = p;
        }
    }
    return static_cast<std::int16_t>(std::min<std::int64_t>(best, 32767));
}

void peaks(const float* src, std::uint8_t* dst, int len, int search, int average) {
    if (average == 0) {
        return markPeaks<float, float>(src, dst, len, search, 0, [](float*) {});
    }
    markPeaks<float, double>(src, dst, len, search, average, [=](double* mean) {
        for (int i = 0; i < len; ++i) {
            const int from = std::max(i - average, 0), to = std::min(i + average, len - 1);
            double sum = 0;
            for (int k = from; k <= to; ++k) sum += static_cast<double>(src[k]);
            mean[i] = sum / (to - from + 1);
        }
    });
}
void peaks(const std::int32_t* src, std::uint8_t* dst, int len, int search, int average) {
    markPeaks<std::int32_t, std::int32_t>(src, dst, len, search, average, [=](std::int32_t* mean) {
        std::int64_t sum = 0;
        for (int k = 0; k < std::min(average, len); ++k) sum += src[k];
        for (int i = 0; i < len; ++i) {
            if (i + average < len) sum += src[i + average];
            if (i - average > 0) sum -= src[i - average - 1];
            mean[i] = static_cast<std::int32_t>(sum / (std::min(i + average, len - 1) - std::max(i - average, 0) + 1));
        }
    });
}

bool markCandidates(const float* src, float* dst, int len) {
    const float inf = INFINITY;
    bool zero = src[0] == 0;
    dst[0] = zero ? inf : 1.0f / src[0];
    for (int i = 1; i < len; ++i) {
        const float d = src[i] - src[i - 1];
        zero |= d == 0;
        dst[i] = d == 0 ? inf : 1.0f / d;
    }
    return zero;
}
bool markCandidates(const std::int16_t* src, std::int16_t* dst, int len, float scale) {
    bool zero = false;
    for (int i = 0; i < len; ++i) {
        const int d = src[i] - (i > 0 ? src[i - 1] : 0);
        zero |= d == 0;
        const float y = d == 0 ? 0.0f : scale / static_cast<float>(d);
        dst[i] = static_cast<std::int16_t>(std::lrint(std::min(std::max(y, -32768.0f), 32767.0f)));
    }
    return zero;
}

float correlation(const std::int16_t* a, const std::int16_t* b, int len) {
    std::int64_t energy = 0;
    for (int i = 0; i < len; ++i) energy += a[i] * a[i];
    return correlation(a, b, len, static_cast<float>(energy));
}
float correlation(const std::int16_t* a, const std::int16_t* b, int len, float energy) {
    std::int64_t other = 0, product = 0;
    for (int i = 0; i < len; ++i) other += b[i] * b[i], product += a[i] * b[i];
    if (energy * static_cast<double>(other) == 0) return 0;
    return static_cast<float>(static_cast<double>(product) /
                              (std::sqrt(static_cast<double>(energy)) * std::sqrt(static_cast<double>(other))));
}

void decimatedCorrelations(const std::int16_t* a, const std::int16_t* b, int maxLen, int minLen, float* dst, int dec) {
    const std::ptrdiff_t distance = maxLen - minLen, count = (minLen - 1) / dec + 1;
    float e1 = 0, e2 = 0;
    for (std::ptrdiff_t i = 0; i <= distance / dec; ++i) {
        const std::int16_t* x = a + (distance - i * dec);
        if (i == 0) {
            for (std::ptrdiff_t t = 0; t < count; ++t) {
                e1 += static_cast<float>(x[t * dec] * x[t * dec]);
                e2 += static_cast<float>(b[t * dec] * b[t * dec]);
            }
        } else {
            e1 += static_cast<float>(x[0] * x[0]);
            e2 += static_cast<float>(b[(count + i - 1) * dec] * b[(count + i - 1) * dec]);
        }
        float s = 0;
        for (std::ptrdiff_t t = 0; t < count + i; ++t) s += static_cast<float>(x[t * dec] * b[t * dec]);
        dst[i] = e1 * e2 == 0 ? 0
                              : static_cast<float>(static_cast<double>(s) / (std::sqrt(static_cast<double>(e1)) *
                                                                             std::sqrt(static_cast<double>(e2))));
    }
}

void interpolatedCorrelation(const std::int16_t* c, const std::int16_t* ab, int len, float* frac, float* coeff) {
    double aa = 0, bb = 0, mixed = 0, cc = 0, ac = 0, bc = 0;
    for (int i = 0; i < len; ++i) {
        const int x = ab[i], y = ab[i + 1], z = c[i];
        aa += x * x, bb += y * y, mixed += x * y, cc += z * z, ac += x * z, bc += y * z;
    }
    const double f = (bc * aa - ac * mixed) / ((bb - mixed) * ac + (aa - mixed) * bc), g = 1 - f;
    *frac = static_cast<float>(f);
    *coeff = static_cast<float>((g * ac + f * bc) / std::sqrt(cc * (aa * g * g + 2 * f * g * mixed + f * f * bb)));
}

}  // namespace plain
