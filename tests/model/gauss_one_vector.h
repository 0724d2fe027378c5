// Gaussian scores of one vector as plain scalar code. A null v is the identity covariance.
#pragma once

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <limits>
#include <vector>

#include "model/gauss.h"
#include "vornsr/types.h"

namespace model {

inline Vorn16s clampedDifference(Vorn16s x, Vorn16s m) { return static_cast<Vorn16s>(saturated16(x - m)); }

// ---- Float sums.

// sign = -1 makes the sum of the negated terms.
inline float sumInTwoAccumulators(const float* x, const float* m, const float* v, int len, int sign) {
    float lane[2][4] = {};
    const auto join = [&](float& sum, int j) {
        const float d = x[j] - m[j];
        float term = d * d;
        if (v) term = term * v[j];
        sum = sign < 0 ? sum - term : sum + term;
    };
    int j = 0;
    while (len - j >= 16) {
        for (int k = 0; k < 16; ++k) join(lane[k / 8][k % 4], j + k);
        j += 16;
    }
    if (len - j >= 8) {
        for (int k = 0; k < 8; ++k) join(lane[0][k % 4], j + k);
        j += 8;
    }
    for (; j < len; ++j) join(lane[0][0], j);
    float both[4];
    for (int k = 0; k < 4; ++k) both[k] = lane[0][k] + lane[1][k];
    return (both[0] + both[1]) + (both[2] + both[3]);
}

inline float floatScore(const float* x, const float* m, const float* v, int len, float val) {
    return 0.5f * (sumInTwoAccumulators(x, m, v, len, -1) + 2.0f * val);
}

template <class T>
double doubleTerm(const T* x, const T* m, const T* v, int j) {
    T a, b, c = 0;
    std::memcpy(&a, x + j, sizeof a);
    std::memcpy(&b, m + j, sizeof b);
    if (v) std::memcpy(&c, v + j, sizeof c);
    const double d = static_cast<double>(a) - static_cast<double>(b);
    const double square = d * d;
    return v ? square * static_cast<double>(c) : square;
}

template <class T>
double pairedSum(double start, const T* x, const T* m, const T* v, int from, int len) {
    double a[2] = {start, 0}, b[2] = {};
    int j = from;
    while (len - j >= 8) {
        for (int k = 0; k < 8; ++k) {
            double* lane = k % 4 < 2 ? a : b;
            lane[k % 2] += doubleTerm(x, m, v, j + k);
        }
        j += 8;
    }
    double sum = (a[0] + b[0]) + (a[1] + b[1]);
    for (; j < len; ++j) sum += doubleTerm(x, m, v, j);
    return sum;
}

// address: that of the inverse variances, or of the mean where there are none.
template <class T>
double doubleScore(const T* x, const T* m, const T* v, int len, double val) {
    const auto address = reinterpret_cast<std::uintptr_t>(v ? v : m);
    double sum = 0;
    if (len <= 8 || address % sizeof(T) != 0) {
        for (int j = 0; j < len; ++j) sum += doubleTerm(x, m, v, j);
    } else if (address % (2 * sizeof(T)) != 0) {
        sum = pairedSum(0.0 + doubleTerm(x, m, v, 0), x, m, v, 1, len);
    } else {
        sum = pairedSum(0.0, x, m, v, 0, len);
    }
    return val - sum * 0.5;
}

// ---- 16 bits in single.

// V: Vorn16s, or singles.
template <class V>
float fixedSum(const Vorn16s* x, const Vorn16s* m, const V* v, int len) {
    float sum = 0;
    int j = 0;
    while (len - j >= 8) {
        float product[8];
        for (int k = 0; k < 8; ++k) {
            const int d = clampedDifference(x[j + k], m[j + k]);
            product[k] = static_cast<float>(d * d);
            if (v) product[k] = product[k] * static_cast<float>(v[j + k]);
        }
        float lane[4];
        for (int k = 0; k < 4; ++k) lane[k] = product[k] + product[k + 4];
        sum = sum + ((lane[0] + lane[2]) + (lane[1] + lane[3]));
        j += 8;
    }
    for (; j < len; ++j) {
        const float d = static_cast<float>(x[j] - m[j]);
        float term = d * d;
        if (v) term = term * static_cast<float>(v[j]);
        sum = sum + term;
    }
    return sum;
}

inline float scaledScore(const Vorn16s* x, const Vorn16s* m, const Vorn16s* v, int len, float val, int sf) {
    return val - fixedSum(x, m, v, len) * scaleSingle(sf + 1L);
}

inline std::int32_t integerScore(const Vorn16s* x, const Vorn16s* m, const Vorn16s* v, int len, std::int32_t val,
                                 int sf) {
    float t = fixedSum(x, m, v, len) * 0.5f;
    t = scaledDown(t, sf);
    float r = static_cast<float>(val) - t;
    r = std::min(r, 2147483648.0f);
    r = std::max(r, -2147483648.0f);
    return toInt(std::nearbyint(r));
}

inline float identityScaled(const Vorn16s* x, const Vorn16s* m, int len, float val, int sf) {
    std::int64_t sum = 0;
    for (int j = 0; j < len; ++j) {
        const std::int64_t d = clampedDifference(x[j], m[j]);
        sum += d * d;
    }
    return val - static_cast<float>(sum) * scaleSingle(sf + 1L);
}

// ---- Low precision.

struct Halves {
    std::int32_t high = 0, low = 0;
};

inline std::int32_t shifted(const Halves& h, int sf) { return shiftedParts(h.high, h.low, sf); }

inline void addTerm(Halves& sum, Vorn16s d, int v, int sign) {
    const std::int32_t square = std::int32_t{d} * d;
    const std::int32_t high = square >> 16, low = (square & 0xFFFF) >> 1;
    sum.high = wrapped(sum.high + std::int64_t{sign} * high * v);
    sum.low = wrapped(sum.low + std::int64_t{sign} * low * v);
}

inline std::int32_t lowScore(const Vorn16s* x, const Vorn16s* m, const Vorn16s* v, int len, int sf) {
    Halves lane[4];
    const int groups = len / 8 * 8;
    for (int j = 0; j < groups; ++j) addTerm(lane[j % 8 / 2], clampedDifference(x[j], m[j]), v ? v[j] : 1, -1);
    std::int64_t total = 0;
    for (const Halves& h : lane) total += shifted(h, sf);
    int j = groups;
    for (int size : {4, 2, 1}) {
        if (len - j < size) continue;
        for (int pair = 0; pair < (size + 1) / 2; ++pair) {
            Halves h;
            for (int k = 2 * pair; k < std::min(size, 2 * pair + 2); ++k) {
                int d = x[j + k] - m[j + k];
                if (size == 1 && !v && sf < 0) {
                    const std::int64_t half = (static_cast<std::int64_t>(d) * d) >> 1;
                    total -= sf < -31 ? 0 : half << -sf;
                    continue;
                }
                d = size == 1 && !v ? static_cast<Vorn16s>(static_cast<std::uint16_t>(d))
                                    : static_cast<Vorn16s>(saturated16(d));
                addTerm(h, static_cast<Vorn16s>(d), v ? v[j + k] : 1, 1);
            }
            total -= shifted(h, sf);
        }
        j += size;
    }
    return wrapped(total);
}

inline float lowInFloat(const Vorn16s* x, const Vorn16s* m, const Vorn16s* v, int len, float val, int sf) {
    return val - fixedSum(x, m, v, len) * scaleSingle(sf + 1L);
}

inline float lowScaled(const Vorn16s* x, const Vorn16s* m, const Vorn16s* v, int len, float val, int sf) {
    if (sf < 0) return lowInFloat(x, m, v, len, val, sf);
    return static_cast<float>(lowScore(x, m, v, len, sf)) + val;
}

inline std::int32_t lowInteger(const Vorn16s* x, const Vorn16s* m, const Vorn16s* v, int len, std::int32_t val,
                               int sf) {
    if (v && sf < 0) return toInt(lowInFloat(x, m, v, len, static_cast<float>(val), sf));
    return wrapped(std::int64_t{lowScore(x, m, v, len, sf)} + val);
}

inline float identityLowScaled(const Vorn16s* x, const Vorn16s* m, int len, float val, int sf) {
    float lane[4] = {};
    const auto pair = [&](int j) {
        const std::int64_t a = clampedDifference(x[j], m[j]), b = clampedDifference(x[j + 1], m[j + 1]);
        return static_cast<float>(wrapped(a * a + b * b));
    };
    int j = 0;
    for (; len - j >= 8; j += 8) {
        for (int k = 0; k < 4; ++k) lane[k] -= pair(j + 2 * k);
    }
    if (len - j >= 4) lane[0] -= pair(j), lane[1] -= pair(j + 2), j += 4;
    if (len - j >= 2) lane[0] -= pair(j), j += 2;
    if (len - j >= 1) {
        const std::int64_t d = x[j] - m[j];
        lane[0] -= static_cast<float>(d * d);
    }
    const float sum = (lane[0] + lane[2]) + (lane[1] + lane[3]);
    return val + scaledDown(sum, sf + 1L);
}

// ---- Variances in the place of their inverses. The status is the warning (6) or 0.

struct Division {
    std::vector<float> inverse;
    VornStatus status = 0;
};
template <class T>
Division invert(const T* v, int len) {
    Division result;
    for (int j = 0; j < len; ++j) {
        if (v[j] == 0) result.status = 6;
        result.inverse.push_back(1.0f / static_cast<float>(v[j]));
    }
    return result;
}

inline double directDouble(const double* x, const double* m, const double* v, int len, double val) {
    double lane[2] = {};
    for (int j = 0; j < len; ++j) {
        const double d = x[j] - m[j];
        lane[j == len - 1 && len % 2 == 1 ? 0 : j % 2] += d * d / v[j];
    }
    return val - 0.5 * (lane[0] + lane[1]);
}

inline float directScaled(const Vorn16s* x, const Vorn16s* m, const Vorn16s* v, int len, float val, int sf) {
    return val - (fixedSum(x, m, invert(v, len).inverse.data(), len) * 0.5f) * scaleSingle(sf);
}

// To nearest in every rounding mode, saturated; a not-a-number (it comes from 0 x infinity, sign set) the smallest.
inline std::int32_t directInteger(const Vorn16s* x, const Vorn16s* m, const Vorn16s* v, int len, std::int32_t val,
                                  int sf) {
    const std::vector<float> a(x, x + len), b(m, m + len);
    float sum = sumInTwoAccumulators(a.data(), b.data(), invert(v, len).inverse.data(), len, 1);
    sum = sum * scaleSingle(sf + 1L);
    std::int64_t term;
    if (std::isnan(sum) || sum <= -2147483648.0f) {
        term = std::numeric_limits<std::int32_t>::min();
    } else if (sum >= 2147483648.0f) {
        term = std::numeric_limits<std::int32_t>::max();
    } else {
        const double wide = sum, floor = std::floor(wide), part = wide - floor;
        term = static_cast<std::int64_t>(floor);
        if (part > 0.5 || (part == 0.5 && term % 2 != 0)) ++term;
    }
    const std::int64_t r = val - term;
    return static_cast<std::int32_t>(std::max<std::int64_t>(-2147483648LL, std::min<std::int64_t>(2147483647LL, r)));
}

// ---- Block-diagonal covariances: the rows of the blocks one after the other.

template <class T>
struct Blocks {
    std::vector<int> sizes;
    std::vector<std::vector<T>> rows;
    int total() const {
        int sum = 0;
        for (int size : sizes) sum += size;
        return sum;
    }
};

// The lanes of a row's product, W of them, made in the type P.
template <class P, int W, class T>
void rowProduct(const std::vector<T>& row, const T* d, P* lane) {
    const int size = static_cast<int>(row.size());
    for (int k = 0; k < W; ++k) lane[k] = 0;
    for (int j = 0; j < size; ++j) {
        int at = j % W;
        const int behind = j - size / W * W;  // place in what is left behind the whole groups
        if (behind >= 0) at = behind == (size % W) - 1 && size % 2 == 1 ? 0 : behind % 2;
        if (sizeof(T) == 2) {
            lane[at] += static_cast<P>(static_cast<std::int32_t>(row[j]) * static_cast<std::int32_t>(d[j]));
        } else {
            lane[at] += static_cast<P>(row[j]) * static_cast<P>(d[j]);
        }
    }
}

// The lanes of S in the type S.
template <class S, class P, int W, class T>
void quadraticForm(const Blocks<T>& matrix, const T* d, S* lanes) {
    for (int k = 0; k < W; ++k) lanes[k] = 0;
    std::size_t row = 0;
    for (int size : matrix.sizes) {
        for (int r = 0; r < size; ++r, ++row) {
            P product[W];
            rowProduct<P, W>(matrix.rows[row], d, product);
            for (int k = 0; k < W; ++k) {
                const S term = static_cast<S>(d[r]) * static_cast<S>(product[k]);
                lanes[k] = lanes[k] + term;
            }
        }
        d += size;
    }
}

template <class T>
std::vector<T> blockDifferences(const T* x, const T* m, int len) {
    std::vector<T> d(len);
    for (int j = 0; j < len; ++j) {
        if constexpr (sizeof(T) == 2) {
            d[j] = j < len / 4 * 4 ? clampedDifference(x[j], m[j])
                                   : static_cast<T>(static_cast<std::uint16_t>(x[j] - m[j]));
        } else {
            d[j] = x[j] - m[j];
        }
    }
    return d;
}

inline float blocks(const float* x, const float* m, const Blocks<float>& matrix, float val) {
    const auto d = blockDifferences(x, m, matrix.total());
    float s[4];
    quadraticForm<float, float, 4>(matrix, d.data(), s);
    const float sum = (s[0] + s[2]) + (s[1] + s[3]);
    return static_cast<float>(static_cast<double>(val) - static_cast<double>(sum) * 0.5);
}
inline double blocks(const double* x, const double* m, const Blocks<double>& matrix, double val) {
    const auto d = blockDifferences(x, m, matrix.total());
    double s[2];
    quadraticForm<double, double, 2>(matrix, d.data(), s);
    return val - (s[0] + s[1]) * 0.5;
}
inline double blocksWidened(const float* x, const float* m, const Blocks<float>& matrix, double val) {
    const auto d = blockDifferences(x, m, matrix.total());
    double s[4];
    quadraticForm<double, float, 4>(matrix, d.data(), s);
    return val - ((s[0] + s[2]) + (s[1] + s[3])) * 0.5;
}
inline float blocksScaled(const Vorn16s* x, const Vorn16s* m, const Blocks<Vorn16s>& matrix, float val, int sf) {
    const auto d = blockDifferences(x, m, matrix.total());
    float s[4];
    quadraticForm<float, float, 4>(matrix, d.data(), s);
    const float sum = (s[0] + s[2]) + (s[1] + s[3]);
    return val - (sum * 0.5f) * scaleSingle(sf);
}
inline std::int32_t blocksInteger(const Vorn16s* x, const Vorn16s* m, const Blocks<Vorn16s>& matrix, std::int32_t val,
                                  int sf) {
    const auto d = blockDifferences(x, m, matrix.total());
    float s[4];
    quadraticForm<float, float, 4>(matrix, d.data(), s);
    for (float& lane : s) lane = lane * scaleSingle(sf);
    const float r = static_cast<float>(val) - ((s[0] + s[2]) + (s[1] + s[3])) * 0.5f;
    if (r < -2147483648.0f) return std::numeric_limits<std::int32_t>::min();
    if (r > 2147483648.0f) return std::numeric_limits<std::int32_t>::max();
    return toInt(r);
}

}  // namespace model
