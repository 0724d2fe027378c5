// Prediction filters to convert, made in long double from what is known of them.
#pragma once

#include <algorithm>
#include <cmath>
#include <functional>
#include <vector>

#include "support/values.h"

namespace test {

// Stable: reflection coefficients below `limit` in magnitude, as single numbers.
inline std::vector<float> reflections(Random& random, std::size_t n, double limit) {
    return random.floats(n, -limit, limit);
}

// The error filter of reflection coefficients, k(i) = -a(i) of the filter of order i.
inline std::vector<long double> filterOfReflections(const std::vector<float>& k) {
    std::vector<long double> a;
    for (float now : k) {
        std::vector<long double> next = a;
        for (std::size_t j = 0; j < a.size(); ++j) next[j] = a[j] - a[a.size() - 1 - j] * now;
        next.push_back(-static_cast<long double>(now));
        a = next;
    }
    return a;
}

inline std::vector<float> rounded(const std::vector<long double>& x) {
    std::vector<float> y;
    for (long double value : x) y.push_back(static_cast<float>(value));
    return y;
}

inline std::vector<float> stableFilter(Random& random, std::size_t n, double limit) {
    return rounded(filterOfReflections(reflections(random, n, limit)));
}

// Lines at even distances in frequency, each moved by up to `jitter` of a distance: cosines from near 1 down to near
// -1.
inline std::vector<float> spreadLines(Random& random, std::size_t order, double jitter) {
    const double pi = 3.14159265358979323846;
    std::vector<float> x;
    for (std::size_t i = 1; i <= order; ++i) {
        const double place = static_cast<double>(i) + random.uniform(-jitter, jitter);
        x.push_back(static_cast<float>(std::cos(pi * place / static_cast<double>(order + 1))));
    }
    return x;
}

// The error filter whose lines these are: half the sum of the polynomials that they and the trivial roots give, whole
// polynomials in z^-1, multiplied out.
inline std::vector<long double> filterOfLines(const std::vector<float>& x) {
    const auto times = [](const std::vector<long double>& a, const std::vector<long double>& b) {
        std::vector<long double> product(a.size() + b.size() - 1);
        for (std::size_t i = 0; i < a.size(); ++i) {
            for (std::size_t j = 0; j < b.size(); ++j) product[i + j] += a[i] * b[j];
        }
        return product;
    };
    const bool even = x.size() % 2 == 0;
    std::vector<long double> p = {1}, q = even ? std::vector<long double>{1, -1} : std::vector<long double>{1, 0, -1};
    if (even) p = {1, 1};
    for (std::size_t i = 0; i < x.size(); ++i) {
        std::vector<long double>& factorOf = i % 2 == 0 ? p : q;
        factorOf = times(factorOf, {1, -2 * static_cast<long double>(x[i]), 1});
    }
    std::vector<long double> a;
    for (std::size_t i = 1; i <= x.size(); ++i) a.push_back((p[i] + q[i]) / 2);
    return a;
}

// What line spectra take and give: the error filter for an even order, the predictor for an odd one.
inline std::vector<float> withLineSign(std::vector<long double> a) {
    if (a.size() % 2 != 0) {
        for (long double& value : a) value = -value;
    }
    return rounded(a);
}

template <class T>
double largestDistance(const T& a, const T& b) {
    double largest = 0;
    for (std::size_t i = 0; i < a.size(); ++i) {
        largest = std::max(largest, std::fabs(static_cast<double>(a[i]) - static_cast<double>(b[i])));
    }
    return largest;
}

// Argument orders that all conversions of n coefficients share: pointers, then the number.
template <class T>
struct Conversion {
    std::vector<T> x = std::vector<T>(8, T(0));
    std::vector<T> y = std::vector<T>(8, T(77));
    const T* src = x.data();
    T* dst = y.data();
    int n = 8;
    bool untouched() const { return y == std::vector<T>(8, T(77)); }
};

}  // namespace test
