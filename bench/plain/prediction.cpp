#include "plain/prediction.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <vector>

namespace plain {

bool durbin(const float* r, float* a, int order, float* error) {
    std::vector<float> next(static_cast<std::size_t>(order));
    float energy = r[0];
    if (!(energy > 0)) return false;
    for (int i = 0; i < order; ++i) {
        float sum = r[i + 1];
        for (int j = 0; j < i; ++j) sum += r[i - j] * a[j];
        const float k = sum / energy;
        energy *= 1 - k * k;
        if (!(energy > 0)) return false;
        for (int j = 0; j < i; ++j) next[j] = a[j] - a[i - 1 - j] * k;
        next[i] = -k;
        std::copy_n(next.data(), i + 1, a);
    }
    *error = energy;
    return true;
}

void schur(const float* r, float* k, int order, float* error) {
    std::vector<float> g(r + 1, r + 1 + order), h(r, r + order);
    for (int i = 0; i < order; ++i) {
        k[i] = -g[i] / h[i];
        for (int j = order - 1; j > i; --j) {
            g[j] += k[i] * h[j];
            h[j] = h[j - 1] + k[i] * g[j - 1];
        }
    }
    *error = g[order - 1] * k[order - 1] + h[order - 1];
}

namespace {

template <class Sum>
Sum products(const float* x, int len, int lag) {
    Sum sum = 0;
    for (int t = 0; t < len; ++t) sum += static_cast<Sum>(x[t]) * static_cast<Sum>(x[t + lag]);
    return sum;
}

std::vector<float> singles(const std::int16_t* x, int len) { return std::vector<float>(x, x + len); }

void store(const std::vector<float>& y, std::int16_t* dst, int scale) {
    const float factor = std::ldexp(1.0f, -scale);
    for (std::size_t i = 0; i < y.size(); ++i) {
        dst[i] = static_cast<std::int16_t>(std::clamp(std::nearbyint(y[i] * factor), -32768.0f, 32767.0f));
    }
}

}  // namespace

bool predictFromAutocorrelation(const float* x, int len, float* a, int order) {
    std::vector<float> r(static_cast<std::size_t>(order) + 1);
    for (int k = 0; k <= order; ++k) r[k] = products<float>(x, std::max(len - k, 0), k);
    float error;
    return durbin(r.data(), a, order, &error);
}

void predictFromCovariance(const float* x, int len, float* a, int order) {
    const auto p = static_cast<std::size_t>(order);
    std::vector<float> right(p), matrix(p * p), d(p);
    for (int i = 0; i < order; ++i) {
        right[i] = products<float>(x, len - i - 1, i + 1);
        for (int j = 0; j <= i; ++j) matrix[i * p + j] = static_cast<float>(products<double>(x, len - i - 1, i - j));
    }
    for (std::size_t i = 0; i < p; ++i) {
        for (std::size_t j = 0; j <= i; ++j) {
            float sum = matrix[i * p + j];
            for (std::size_t m = 0; m < j; ++m) sum -= matrix[i * p + m] * matrix[j * p + m] * d[m];
            if (j < i) {
                matrix[i * p + j] = sum / d[j];
            } else {
                d[i] = sum;
            }
        }
    }
    for (std::size_t i = 0; i < p; ++i) {
        for (std::size_t m = 0; m < i; ++m) right[i] -= matrix[i * p + m] * right[m];
    }
    for (std::size_t i = p; i-- > 0;) {
        float sum = right[i] / d[i];
        for (std::size_t m = i + 1; m < p; ++m) sum -= matrix[m * p + i] * a[m];
        a[i] = sum;
    }
}

bool durbin(const std::int16_t* r, std::int16_t* a, int order, float* error, int scale) {
    std::vector<float> found(static_cast<std::size_t>(order));
    if (!durbin(singles(r, order + 1).data(), found.data(), order, error)) return false;
    store(found, a, scale);
    return true;
}

void schur(const std::int16_t* r, std::int16_t* k, int order, float* error, int scale) {
    std::vector<float> found(static_cast<std::size_t>(order));
    schur(singles(r, order + 1).data(), found.data(), order, error);
    store(found, k, scale);
}

bool predictFromAutocorrelation(const std::int16_t* x, int len, std::int16_t* a, int order, int scale) {
    std::vector<float> found(static_cast<std::size_t>(order));
    if (!predictFromAutocorrelation(singles(x, len).data(), len, found.data(), order)) return false;
    store(found, a, scale);
    return true;
}

void predictFromCovariance(const std::int16_t* x, int len, std::int16_t* a, int order, int scale) {
    std::vector<float> found(static_cast<std::size_t>(order));
    predictFromCovariance(singles(x, len).data(), len, found.data(), order);
    store(found, a, scale);
}

}  // namespace plain
