// Frames and autocorrelations for the tests of linear prediction.
#pragma once

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <vector>

#include "support/values.h"
#include "vornsr/types.h"

namespace test {

// Noise through two resonances, like a vowel: 1.6 and 0.9 radians a sample wide apart from the unit circle.
inline std::vector<float> vowel(Random& random, std::size_t len, double loudness = 3000) {
    std::vector<double> y(len + 2), z(len + 2);
    std::vector<float> frame(len);
    for (std::size_t n = 0; n < len; ++n) {
        y[n + 2] = random.uniform(-1, 1) + 1.8 * std::cos(0.4) * y[n + 1] - 0.81 * y[n];
        z[n + 2] = y[n + 2] + 1.7 * std::cos(1.1) * z[n + 1] - 0.7225 * z[n];
        frame[n] = static_cast<float>(loudness / 10 * z[n + 2]);
    }
    return frame;
}

// r(0..order) of a frame, positive definite but for its rounding.
inline std::vector<float> autocorrelation(const std::vector<float>& x, int order) {
    std::vector<float> r(static_cast<std::size_t>(order) + 1);
    for (std::size_t k = 0; k < r.size(); ++k) {
        double sum = 0;
        for (std::size_t n = 0; n + k < x.size(); ++n) sum += static_cast<double>(x[n]) * x[n + k];
        r[k] = static_cast<float>(sum);
    }
    return r;
}

inline std::vector<Vorn16s> shorts(const std::vector<float>& x) {
    std::vector<Vorn16s> result;
    for (float element : x) result.push_back(static_cast<Vorn16s>(std::clamp(element, -32768.0f, 32767.0f)));
    return result;
}

// Solves the normal equations of the rows by elimination with pivots.
inline std::vector<long double> solved(std::vector<std::vector<long double>> rows, std::vector<long double> right) {
    const std::size_t n = right.size();
    for (std::size_t c = 0; c < n; ++c) {
        std::size_t pivot = c;
        for (std::size_t i = c + 1; i < n; ++i) {
            if (std::fabs(rows[i][c]) > std::fabs(rows[pivot][c])) pivot = i;
        }
        std::swap(rows[c], rows[pivot]);
        std::swap(right[c], right[pivot]);
        for (std::size_t i = c + 1; i < n; ++i) {
            const long double factor = rows[i][c] / rows[c][c];
            for (std::size_t j = c; j < n; ++j) rows[i][j] -= factor * rows[c][j];
            right[i] -= factor * right[c];
        }
    }
    for (std::size_t c = n; c-- > 0;) {
        for (std::size_t j = c + 1; j < n; ++j) right[c] -= rows[c][j] * right[j];
        right[c] /= rows[c][c];
    }
    return right;
}

}  // namespace test
