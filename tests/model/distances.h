// Distances and the sum of indexed rows as plain scalar code.
#pragma once

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <limits>
#include <vector>

#include "model/gauss.h"
#include "model/gauss_one_vector.h"
#include "vornsr.h"

namespace model {

// ---- Mahalanobis, one vector.

// Elements at any address as singles.
template <class T>
std::vector<float> singles(const T* p, int len) {
    std::vector<T> elements(static_cast<std::size_t>(len));
    std::memcpy(elements.data(), p, elements.size() * sizeof(T));
    return std::vector<float>(elements.begin(), elements.end());
}
template <class T>
std::uintptr_t addressOf(const T* p) {
    return reinterpret_cast<std::uintptr_t>(p);
}

inline float alignedDistance(const std::vector<float>& x, const std::vector<float>& m, const std::vector<float>& v) {
    return sumInTwoAccumulators(x.data(), m.data(), v.data(), static_cast<int>(x.size()), 1);
}

template <class T>
float singleDistance(const T* src, const T* mean, const T* var, int len) {
    const std::vector<float> x = singles(src, len), m = singles(mean, len), v = singles(var, len);
    if (addressOf(src) % 16 == 0 && addressOf(mean) % 16 == 0 && addressOf(var) % 16 == 0) {
        return alignedDistance(x, m, v);
    }
    const auto term = [&](int j) {
        const std::size_t i = static_cast<std::size_t>(j);
        const float d = x[i] - m[i];
        const float square = d * d;
        return square * v[i];
    };
    float sum = 0;
    const bool onElements = addressOf(mean) % sizeof(T) == 0 && addressOf(var) % sizeof(T) == 0;
    if (len < 11 || !onElements) {
        for (int j = 0; j < len; ++j) sum += term(j);
        return sum;
    }
    int j = 0;
    for (; (addressOf(mean) + static_cast<std::uintptr_t>(j) * sizeof(T)) % 16 != 0; ++j) sum += term(j);
    float a[4] = {sum, 0, 0, 0}, b[4] = {};
    while (len - j >= 8) {
        for (int k = 0; k < 4; ++k) a[k] += term(j++);
        for (int k = 0; k < 4; ++k) b[k] += term(j++);
    }
    for (int k = 0; k < 4; ++k) a[k] += b[k];
    sum = (a[0] + a[1]) + (a[2] + a[3]);
    for (; j < len; ++j) sum += term(j);
    return sum;
}

template <class T>
double doubleDistance(const T* x, const T* m, const T* v, int len) {
    double sum = 0;
    if (len <= 8 || addressOf(v) % sizeof(T) != 0) {
        for (int j = 0; j < len; ++j) sum += doubleTerm(x, m, v, j);
        return sum;
    }
    if (addressOf(v) % (2 * sizeof(T)) == 0) return pairedSum(0.0, x, m, v, 0, len);
    return pairedSum(0.0 + doubleTerm(x, m, v, 0), x, m, v, 1, len);
}

// The sum modulo 2^64.
inline std::int64_t integerDistance(const Vorn16s* x, const Vorn16s* m, const Vorn16s* v, int len) {
    std::uint64_t sum = 0;
    for (int j = 0; j < len; ++j) {
        const std::int64_t d = std::int64_t{x[j]} - m[j];
        sum += static_cast<std::uint64_t>(d * d * v[j]);
    }
    return static_cast<std::int64_t>(sum);
}
inline Vorn32s scaledDistance(const Vorn16s* x, const Vorn16s* m, const Vorn16s* v, int len, int scaleFactor) {
    const std::int64_t sum = integerDistance(x, m, v, len);
    if (scaleFactor > 0) {
        const std::int64_t shifted = scaleFactor > 63 ? (sum < 0 ? -1 : 0) : sum >> scaleFactor;
        return static_cast<Vorn32s>(std::clamp<std::int64_t>(shifted, INT32_MIN, INT32_MAX));
    }
    long double exact = static_cast<long double>(sum);
    for (std::int64_t k = 0; k < -std::int64_t{scaleFactor} && k < 64; ++k) exact *= 2;
    return static_cast<Vorn32s>(std::clamp<long double>(exact, INT32_MIN, INT32_MAX));
}

// ---- Mahalanobis, a row of many.

inline float rowDistance(const Row<float>& row) {
    float lane[4] = {};
    const int whole = row.len < 4 ? 0 : row.len / 4 * 4;
    for (int j = 0; j < whole; ++j) lane[j % 4] += squareTerm(row, j);
    float sum = (lane[0] + lane[1]) + (lane[2] + lane[3]);
    for (int j = whole; j < row.len; ++j) sum += squareTerm(row, j);
    return sum;
}
inline double rowDistance(const Row<double>& row) {
    double lane[2] = {};
    const int whole = row.len / 2 * 2;
    for (int j = 0; j < whole; ++j) lane[j % 2] += squareTerm(row, j);
    double sum = lane[0] + lane[1];
    if (whole < row.len) sum += squareTerm(row, whole);
    return sum;
}

// ---- Bhattacharyya.

struct Gaussians {
    const float *mean1, *var1, *mean2, *var2;
    int len;
};

// 0, 1 for a negative value, 2 for a zero: in groups of four columns, then column by column.
inline int fault(const Gaussians& g) {
    int j = 0;
    while (j < g.len) {
        const int columns = g.len - j >= 4 ? 4 : 1;
        bool negative = false, zero = false;
        for (const float* values : {g.mean1, g.var1, g.mean2, g.var2}) {
            for (int k = 0; k < columns; ++k) {
                if (values[j + k] < 0.0f) negative = true;
                if (values[j + k] == 0.0f) zero = true;
            }
        }
        if (negative) return 1;
        if (zero) return 2;
        j += columns;
    }
    return 0;
}

template <class T>
struct Result {
    VornStatus status;
    T value;
};

inline float sumOfLogarithms(const std::vector<float>& terms) {
    float sum;
    vornsSumLn_32f(terms.data(), static_cast<int>(terms.size()), &sum);
    return sum;
}
inline double sumOfLogarithms(const std::vector<double>& terms) {
    double sum;
    vornsSumLn_64f(terms.data(), static_cast<int>(terms.size()), &sum);
    return sum;
}

// ratio: of the variances, or their sum. Finish(L, K) is the distance.
template <class Finish>
Result<float> singleBhattacharyya(const Gaussians& g, bool ratio, const Finish& finish) {
    const int found = fault(g);
    if (found == 1) return {vornStsLnNegArg, std::numeric_limits<float>::quiet_NaN()};
    if (found == 2) return {vornStsLnZeroArg, std::numeric_limits<float>::infinity()};
    std::vector<float> terms;
    float lane[4] = {};
    for (int j = 0; j < g.len; ++j) {
        const float sum = g.var1[j] + g.var2[j], d = g.mean1[j] - g.mean2[j], square = d * d;
        lane[j < g.len / 4 * 4 ? j % 4 : 0] += square / sum;
        const float r = g.var2[j] / g.var1[j], inverse = 1.0f / r, twoAndRatio = 2.0f + r;
        terms.push_back(ratio ? twoAndRatio + inverse : sum);
    }
    const float k = (lane[0] + lane[1]) + (lane[2] + lane[3]);
    return {vornStsNoErr, static_cast<float>(finish(sumOfLogarithms(terms), k))};
}

template <class Finish>
Result<double> doubleBhattacharyya(const Gaussians& g, bool ratio, const Finish& finish) {
    const int found = fault(g);
    if (found == 1) return {vornStsLnNegArg, std::numeric_limits<double>::quiet_NaN()};
    if (found == 2) return {vornStsLnZeroArg, std::numeric_limits<double>::infinity()};
    const auto sum = [&](int j) { return static_cast<double>(g.var1[j]) + static_cast<double>(g.var2[j]); };
    const auto quotient = [&](int j) {
        const double d = static_cast<double>(g.mean1[j]) - static_cast<double>(g.mean2[j]);
        const double square = d * d;
        return square / sum(j);
    };
    const auto term = [&](int j) {
        const double both = sum(j), square = both * both;
        const double product = static_cast<double>(g.var1[j]) * static_cast<double>(g.var2[j]);
        return ratio ? square / product : both;
    };
    std::vector<double> products(static_cast<std::size_t>(std::max(g.len / 4, 1)), 1.0);
    double lane[4] = {};
    const int whole = g.len / 4 * 4;
    for (int j = 0; j < whole; j += 4) {
        for (int k = 0; k < 4; ++k) lane[k] += quotient(j + k);
        const double evens = term(j) * term(j + 2), odds = term(j + 1) * term(j + 3);
        products[static_cast<std::size_t>(j / 4)] = evens * odds;
    }
    double k = (lane[0] + lane[2]) + (lane[1] + lane[3]);
    for (int j = whole; j < g.len; ++j) {
        k += quotient(j);
        products.back() *= term(j);
    }
    return {vornStsNoErr, finish(sumOfLogarithms(products), k)};
}

inline Result<float> bhattacharyya32(const Gaussians& g) {
    return singleBhattacharyya(g, true, [&](float l, float k) {
        const float halfL = l * 0.5f, quarterK = k * 0.25f;
        const double lengths = static_cast<double>(g.len) * 1.386294 * 0.5;
        return (static_cast<double>(halfL) - lengths) * 0.5 + static_cast<double>(quarterK);
    });
}
inline Result<float> bhattacharyyaSums32(const Gaussians& g, float sumLog1, float sumLog2) {
    return singleBhattacharyya(g, false, [&](float l, float k) {
        const float both = sumLog1 + sumLog2, quarter = both * 0.25f, quarterK = k * 0.25f;
        const double lengths = static_cast<double>(g.len) * 0.693147;
        const double half = (static_cast<double>(l) - lengths) * 0.5, rest = half - static_cast<double>(quarter);
        return rest + static_cast<double>(quarterK);
    });
}
inline Result<double> bhattacharyya64(const Gaussians& g) {
    return doubleBhattacharyya(g, true, [&](double l, double k) {
        const double lengths = static_cast<double>(g.len) * 1.386294 * 0.5;
        return (l * 0.5 - lengths) * 0.5 + k * 0.25;
    });
}
inline Result<double> bhattacharyyaSums64(const Gaussians& g, float sumLog1, float sumLog2) {
    return doubleBhattacharyya(g, false, [&](double l, double k) {
        const float both = sumLog1 + sumLog2, quarter = both * 0.25f;
        const double half = (l - static_cast<double>(g.len) * 0.693147) * 0.5;
        const double rest = half - static_cast<double>(quarter);
        return rest + k * 0.25;
    });
}

// ---- Indexed rows.

inline float sumOfRows(const float* src, int offset, int step, const Vorn32s* ind, const Vorn16u* addInd, int rows,
                       int column, float weight) {
    float sum = weight;
    for (int i = 0; i < rows; ++i) {
        sum = sum + src[(std::int64_t{ind[i]} + addInd[i]) * step + offset + column];
    }
    return sum;
}

}  // namespace model
