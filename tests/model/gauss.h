// Gaussian scores as plain scalar code, one row after the other.
#pragma once

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <vector>

#include "model/log_arithmetic.h"
#include "vornsr/types.h"

namespace model {

// A feature vector, a mean and inverse variances; without v the covariance is the identity.
template <class T>
struct Row {
    const T *x, *m, *v;
    int len;
};

template <class T>
T squareTerm(const Row<T>& row, int j) {
    const T d = row.x[j] - row.m[j];
    const T square = d * d;
    return row.v ? square * row.v[j] : square;
}

// -S in single: four lanes, then the last len mod 4 columns.
inline float negatedSum(const Row<float>& row) {
    float lane[4] = {};
    const int whole = row.len / 4 * 4;
    for (int j = 0; j < whole; ++j) lane[j % 4] -= squareTerm(row, j);
    float sum = (lane[0] + lane[1]) + (lane[2] + lane[3]);
    for (int j = whole; j < row.len; ++j) sum -= squareTerm(row, j);
    return sum;
}

// -S in double: two lanes, then a last odd column.
inline double negatedSum(const Row<double>& row) {
    double lane[2] = {};
    const int whole = row.len / 2 * 2;
    for (int j = 0; j < whole; ++j) lane[j % 2] -= squareTerm(row, j);
    double sum = lane[0] + lane[1];
    if (whole < row.len) sum -= squareTerm(row, whole);
    return sum;
}

inline double negatedSumInOrder(const Row<double>& row) {
    double sum = 0;
    for (int j = 0; j < row.len; ++j) sum -= squareTerm(row, j);
    return sum;
}

inline int saturated16(int x) { return std::min(32767, std::max(-32768, x)); }
inline std::int32_t wrapped(std::int64_t x) { return static_cast<std::int32_t>(static_cast<std::uint32_t>(x)); }

inline int saturatedDifference(const Row<Vorn16s>& row, int j) { return saturated16(row.x[j] - row.m[j]); }

// The squares of columns j and j + 1 in 32 bits; two squares of -32768 wrap.
inline std::int32_t pairOfSquares(const Row<Vorn16s>& row, int j) {
    const std::int64_t a = saturatedDifference(row, j), b = saturatedDifference(row, j + 1);
    return wrapped(a * a + b * b);
}

// The lanes of -S in single over the groups of eight columns of 16-bit data.
inline void groupsOfEight(const Row<Vorn16s>& row, float (&lane)[4]) {
    for (int j = 0; j + 8 <= row.len; j += 8) {
        if (row.v) {
            for (int k = 0; k < 8; ++k) {
                const float d = static_cast<float>(saturatedDifference(row, j + k));
                const float square = d * d;
                lane[k % 4] -= square * static_cast<float>(row.v[j + k]);
            }
        } else {
            for (int k = 0; k < 4; ++k) lane[k] -= static_cast<float>(pairOfSquares(row, j + 2 * k));
        }
    }
}

// -S of 16-bit data in single; the columns behind the groups do not saturate.
inline float negatedSum(const Row<Vorn16s>& row) {
    float lane[4] = {};
    groupsOfEight(row, lane);
    for (int j = row.len / 8 * 8; j < row.len; ++j) {
        const float d = static_cast<float>(row.x[j]) - static_cast<float>(row.m[j]);
        const float square = d * d;
        lane[0] -= row.v ? square * static_cast<float>(row.v[j]) : square;
    }
    return (lane[0] + lane[2]) + (lane[1] + lane[3]);
}

// -S with the identity covariance at low precision: passes of four, two and one behind the groups.
inline float negatedSumInPasses(const Row<Vorn16s>& row) {
    float lane[4] = {};
    groupsOfEight(row, lane);
    int j = row.len / 8 * 8;
    if (row.len - j >= 4) {
        lane[0] -= static_cast<float>(pairOfSquares(row, j));
        lane[1] -= static_cast<float>(pairOfSquares(row, j + 2));
        j += 4;
    }
    if (row.len - j >= 2) {
        lane[0] -= static_cast<float>(pairOfSquares(row, j));
        j += 2;
    }
    if (row.len - j >= 1) {
        const int d = saturatedDifference(row, j);
        lane[0] -= static_cast<float>(d * d);
    }
    return (lane[0] + lane[2]) + (lane[1] + lane[3]);
}

// Shifts of 32-bit lanes: left beyond the width gives 0, right the sign.
inline std::int32_t left32(std::int32_t x, long count) {
    return count > 31 ? 0 : static_cast<std::int32_t>(static_cast<std::uint32_t>(x) << count);
}
inline std::int32_t right32(std::int32_t x, long count) { return x >> std::min(count, 31L); }

inline std::int32_t shiftedParts(std::int32_t high, std::int32_t low, long sf) {
    if (sf < 0) return wrapped(std::int64_t{left32(high, 15 - sf)} + left32(low, -sf));
    if (sf <= 15) return wrapped(std::int64_t{left32(high, 15 - sf)} + right32(low, sf));
    return wrapped(std::int64_t{right32(high, sf - 15)} + right32(low, 15));
}

// -S / 2 x 2^-sf at low precision. A row of a pair is shifted once, at the end; a last odd row after each pass.
inline std::int32_t lowTotal(const Row<Vorn16s>& row, int sf, bool odd) {
    std::int32_t high[4] = {}, low[4] = {}, total = 0;
    const auto subtract = [&](int j, int lane) {
        const int d = saturatedDifference(row, j), square = d * d, v = row.v ? row.v[j] : 1;
        high[lane] = wrapped(high[lane] - std::int64_t{square >> 16} * v);
        low[lane] = wrapped(low[lane] - std::int64_t{(square & 0xFFFF) >> 1} * v);
    };
    const auto shift = [&] {
        for (int k = 0; k < 4; ++k) {
            total = wrapped(std::int64_t{total} + shiftedParts(high[k], low[k], sf));
            high[k] = low[k] = 0;
        }
    };
    int j = 0;
    for (int pass : {8, 4, 2, 1}) {
        for (; row.len - j >= pass; j += pass) {
            for (int k = 0; k < pass; ++k) subtract(j + k, k / 2);
            if (odd) shift();
        }
    }
    if (!odd) shift();
    return total;
}

// x x 2^-k by a power of two that is not below one.
inline float scaledDown(float x, long k) { return k > 0 ? x / scaleSingle(-k) : x * scaleSingle(k); }

inline std::int32_t clampedAndRounded(float x) {
    return toInt(std::nearbyint(std::min(2147483648.0f, std::max(-2147483648.0f, x))));
}

// The log-add of single values that is done one by one in double.
inline float scalarLogAdd(float s, float a) {
    const bool sFirst = !(s < a);
    const float m = sFirst ? s : a;
    const float difference = sFirst ? a - s : s - a;
    const double d = difference;
    if (d < -15.3195879547406) return std::max(m, -4500000.0f);
    const double* p = d > -2.55 ? p1single : d > -6.8 ? p2single : p3single;
    const double t = d > -2.55 ? d : d > -6.8 ? d + 2.55 : d + 6.8;
    double chain = p[0];
    for (int k = 1; k < 10; ++k) chain = chain * t + p[k];
    return static_cast<float>((m + chain * t) + p[10]);
}

// Log-adds scores to srcDst in runs.
template <class T>
std::vector<T> logAddInRuns(const std::vector<T>& scores, std::vector<T> srcDst, std::size_t run) {
    for (std::size_t first = 0; first < scores.size(); first += run) {
        logAddVector(&scores[first], &srcDst[first], static_cast<int>(std::min(run, scores.size() - first)));
    }
    return srcDst;
}

// The log-sum of scores in runs of at most 100, the value so far in front of the next run.
template <class T>
T logSumOfRuns(const std::vector<T>& scores) {
    std::vector<T> run;
    T sum = 0;
    for (std::size_t g = 0; g < scores.size(); ++g) {
        run.push_back(scores[g]);
        if (g % 100 == 99 || g + 1 == scores.size()) {
            sum = logSum(run.data(), static_cast<int>(run.size()));
            run.assign(1, sum);
        }
    }
    return sum;
}

}  // namespace model
