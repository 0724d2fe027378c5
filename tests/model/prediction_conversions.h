// Representations of a prediction filter, coefficient by coefficient; and how their fixed-point forms come and go.
// Intermediate singles stand in variables of their own.
#pragma once

#include <cmath>
#include <cstdint>
#include <vector>

#include "model/convert.h"
#include "model/integers.h"

namespace model {

// Counted from 1, as in the books: c(i) = -(a(i) + the sum over j from 1 to i-1 of (i-j) a(j) c(i-j), divided by i).
inline std::vector<float> cepstrumOfPrediction(const std::vector<float>& a) {
    std::vector<float> c(a.size());
    for (std::size_t i = 1; i <= a.size(); ++i) {
        float sum = 0;
        for (std::size_t j = 1; j < i; ++j) {
            const float weighted = static_cast<float>(i - j) * a[j - 1];
            const float product = weighted * c[i - j - 1];
            sum = sum + product;
        }
        const float mean = sum / static_cast<float>(i);
        const float whole = mean + a[i - 1];
        c[i - 1] = 0.0f - whole;
    }
    return c;
}

// The other way the same equation is solved for a(i); the cepstrum is what its index multiplies first.
inline std::vector<float> predictionOfCepstrum(const std::vector<float>& c) {
    std::vector<float> a(c.size());
    for (std::size_t i = 1; i <= c.size(); ++i) {
        float sum = 0;
        for (std::size_t j = 1; j < i; ++j) {
            const float weighted = static_cast<float>(i - j) * c[i - j - 1];
            const float product = weighted * a[j - 1];
            sum = sum + product;
        }
        const float mean = sum / static_cast<float>(i);
        const float whole = mean + c[i - 1];
        a[i - 1] = 0.0f - whole;
    }
    return a;
}

// The coefficients from `first` on; first is 0 for a filter that never reaches magnitude one.
struct Reflections {
    std::vector<float> k;
    std::size_t first;
};
inline Reflections reflectionsOfPrediction(const std::vector<float>& a) {
    std::vector<float> w = a, k(a.size());
    for (std::size_t m = a.size(); m-- > 0;) {
        const float now = 0.0f - w[m];
        const float square = now * now;
        const float rest = 1.0f - square;
        const float d = 1.0f / rest;
        if (now == 1.0f || now == -1.0f || std::isnan(now)) return {k, m + 1};
        k[m] = now;
        std::vector<float> t(m);
        for (std::size_t i = 0; i < m; ++i) {
            const float product = w[m - 1 - i] * now;
            const float sum = product + w[i];
            t[i] = sum * d;
        }
        w = t;
    }
    return {k, 0};
}

inline std::vector<float> predictionOfReflections(const std::vector<float>& k) {
    std::vector<float> w;
    for (float now : k) {
        std::vector<float> t = w;
        for (std::size_t j = 0; j < w.size(); ++j) {
            const float product = w[w.size() - 1 - j] * now;
            t[j] = w[j] - product;
        }
        t.push_back(0.0f - now);
        w = t;
    }
    return w;
}

// The fixed-point forms: on the way in times a power of two, on the way out one of three rules.

inline int negatedScale(int scale) {
    return scale == std::numeric_limits<int>::min() ? std::numeric_limits<int>::max() : -scale;
}

inline std::vector<float> singlesOf(const std::vector<std::int16_t>& x, int scale) {
    std::vector<float> y;
    for (std::int16_t value : x) y.push_back(static_cast<float>(value) * singleOfScale(scale));
    return y;
}

inline std::int16_t wrappedShort(float y, int scale) {
    const float product = y * singleOfScale(scale);
    const float sum = product + (y >= 0 ? 0.5f : -0.5f);
    if (std::isnan(sum) || sum >= 2147483648.0f || sum < -2147483648.0f) return 0;
    return wrapTo<std::int16_t>(static_cast<Big>(std::trunc(sum)));
}
inline std::int16_t nearestShort(float y, int scale) { return to16s(y, 1, singleOfScale(scale)); }
inline std::int16_t packedShort(float y, int scale) {
    const float product = y * singleOfScale(scale);
    if (!(product < 2147483648.0f)) return -32768;
    if (product < -32768.0f) return -32768;
    return saturateWhole<std::int16_t>(nearestWhole(product));
}

template <class Store>
std::vector<std::int16_t> shortsOf(const std::vector<float>& y, int scale, Store store) {
    std::vector<std::int16_t> x;
    for (float value : y) x.push_back(store(value, scale));
    return x;
}

}  // namespace model
