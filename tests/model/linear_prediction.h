// Linear prediction, one operation after the other.
#pragma once

#include <cstddef>
#include <vector>

#include "model/convert.h"
#include "vornsr/types.h"

namespace model {

using Singles = std::vector<float>;

struct Prediction {
    VornStatus status = vornStsNoErr;
    Singles found;    // the coefficients that are stored
    float error = 0;  // where the status is success
};

// With indices from 1, as formulas have them.
inline Prediction durbin(const Singles& r, int order) {
    Singles a(order + 1), t(order + 1);
    const auto outcome = [&](VornStatus status, int stored, float error) {
        return Prediction{status, Singles(a.begin() + 1, a.begin() + 1 + stored), error};
    };
    float energy = r[0];
    if (!(energy > 0)) return outcome(vornStsDurbinErr, 0, 0);
    for (int i = 1; i <= order; ++i) {
        float acc = r[i];
        for (int j = 1; j <= i - 1; ++j) {
            const float product = r[i - j] * a[j];
            acc = acc + product;
        }
        const float k = acc / energy;
        const float square = k * k;
        const float rest = 1.0f - square;
        energy = energy * rest;
        if (!(energy > 0)) return outcome(vornStsDurbinErr, i - 1, 0);
        t[i] = 0.0f - k;
        for (int j = 1; j <= i - 1; ++j) {
            const float product = a[i - j] * k;
            t[j] = a[j] - product;
        }
        for (int j = 1; j <= i; ++j) a[j] = t[j];
    }
    return outcome(vornStsNoErr, order, energy);
}

inline Prediction schur(const Singles& r, int order) {
    Singles g(order + 1), h(order + 1), k(order + 1);
    h[1] = r[0];
    for (int i = 1; i <= order - 1; ++i) {
        h[i + 1] = r[i];
        g[i] = r[i];
    }
    g[order] = r[order];
    for (int i = 1; i <= order; ++i) {
        const float opposite = 0.0f - g[i];
        k[i] = opposite / h[i];
        const Singles before = g;
        for (int j = order; j >= i + 1; --j) {
            const float toG = k[i] * h[j];
            g[j] = toG + before[j];
            const float toH = k[i] * before[j - 1];
            h[j] = toH + h[j - 1];
        }
    }
    const float product = g[order] * k[order];
    return {vornStsNoErr, Singles(k.begin() + 1, k.end()), product + h[order]};
}

// The sums of products of a frame, in the order of the samples.
inline float singleProducts(const Singles& x, int lag) {
    float sum = 0;
    for (int t = 0; t + lag < static_cast<int>(x.size()); ++t) {
        const float product = x[t] * x[t + lag];
        sum = sum + product;
    }
    return sum;
}
inline float doubleProducts(const Singles& x, int samples, int lag) {
    double sum = 0;
    for (int t = 0; t < samples; ++t) sum = sum + static_cast<double>(x[t]) * static_cast<double>(x[t + lag]);
    return static_cast<float>(sum);
}

// Below the fewest lags that are found another way.
inline Prediction autocorrelationMethod(const Singles& x, int order) {
    Singles r(order + 1);
    for (int k = 0; k <= order; ++k) r[k] = singleProducts(x, k);
    return durbin(r, order);
}

inline Singles covarianceMethod(const Singles& x, int order) {
    const int n = static_cast<int>(x.size()), p = order;
    Singles psi(p + 1), d(p + 1), y(p + 1), a(p + 1), w(p + 1);
    std::vector<Singles> matrix(p + 1, Singles(p + 1)), factor = matrix;
    Singles packed(1);  // L(2,1), L(3,1), L(3,2) ... from index 1
    for (int k = 1; k <= p; ++k) psi[k] = n - k < 1 ? 0.0f : singleProducts(x, k);
    for (int i = 1; i <= p; ++i) {
        for (int j = 1; j <= i; ++j) matrix[i][j] = n - i < 1 ? 0.0f : doubleProducts(x, n - i, i - j);
    }
    d[1] = matrix[1][1];
    for (int i = 2; i <= p; ++i) {
        for (int j = 1; j <= i - 1; ++j) {
            float sum = 0;
            for (int m = 1; m <= j - 1; ++m) {
                const float product = w[m] * packed[m];
                sum = sum + product;
            }
            const float rest = matrix[i][j] - sum;
            factor[i][j] = rest / d[j];
            packed.push_back(factor[i][j]);
            w[j] = factor[i][j] * d[j];
        }
        float sum = 0;
        for (int m = 1; m <= i - 1; ++m) {
            const float product = w[m] * factor[i][m];
            sum = sum + product;
        }
        d[i] = matrix[i][i] - sum;
    }
    y[1] = psi[1];
    for (int i = 2; i <= p; ++i) {
        float sum = 0;
        for (int m = 1; m <= i - 1; ++m) {
            const float product = factor[i][m] * y[m];
            sum = sum + product;
        }
        y[i] = psi[i] - sum;
    }
    a[p] = y[p] / d[p];
    for (int i = p - 1; i >= 1; --i) {
        float sum = 0;
        for (int m = p; m >= i + 1; --m) {
            const float product = factor[m][i] * a[m];
            sum = sum + product;
        }
        const float quotient = y[i] / d[i];
        a[i] = quotient - sum;
    }
    return Singles(a.begin() + 1, a.end());
}

// The 16-bit forms: singles in between, rounded to the nearest integer.
inline Singles singlesOf(const std::vector<Vorn16s>& x) { return Singles(x.begin(), x.end()); }
inline std::vector<Vorn16s> shortsOf(const Singles& y, int scale) {
    std::vector<Vorn16s> result;
    for (float element : y) result.push_back(to16s(element, vornRndNear, singleOfScale(scale)));
    return result;
}

inline Singles negated(Singles a) {
    for (float& x : a) x = 0.0f - x;
    return a;
}

}  // namespace model
