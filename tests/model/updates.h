// Parameter updates, element by element. Each operation's result stands in a variable that the compiler cannot see
// through, since the caller's rounding mode counts.
#pragma once

#include <cmath>
#include <cstdint>
#include <initializer_list>
#include <limits>
#include <vector>

#include "vornsr/types.h"

namespace model::updates {

template <class T>
T opaque(T x) {
    volatile T value = x;
    return value;
}
template <class T>
T plus(T a, T b) {
    return opaque(opaque(a) + opaque(b));
}
template <class T>
T minus(T a, T b) {
    return opaque(opaque(a) - opaque(b));
}
template <class T>
T times(T a, T b) {
    return opaque(opaque(a) * opaque(b));
}
template <class T>
T over(T a, T b) {
    return opaque(opaque(a) / opaque(b));
}

// What an occupation is worth: all are tested for their sign before any is tested for being none.
template <class T>
VornStatus statusOf(std::initializer_list<T> occupations) {
    const double smallest = sizeof(T) == 4 ? 1.1754943508222875e-38 : 2.2250738585072014e-308;
    for (T occ : occupations) {
        if (!(occ >= 0)) return vornStsNegOccErr;
    }
    for (T occ : occupations) {
        if (!(std::fabs(static_cast<double>(occ)) > smallest)) return vornStsZeroOcc;
    }
    return vornStsNoErr;
}

// A sum over the data divided by an occupation: in single by way of the reciprocal.
inline float average(float sum, float occ) { return times(sum, over(1.0f, occ)); }
inline double average(double sum, double occ) { return over(sum, occ); }

template <class T>
VornStatus mean(const std::vector<T>& src, std::vector<T>& srcDstMean, T occ) {
    const VornStatus status = statusOf({occ});
    if (status != vornStsNoErr) return status;
    for (std::size_t i = 0; i < src.size(); ++i) srcDstMean[i] = plus(srcDstMean[i], average(src[i], occ));
    return vornStsNoErr;
}

template <class T>
VornStatus variance(const std::vector<T>& meanAcc, const std::vector<T>& varAcc, const std::vector<T>& floor,
                    std::vector<T>& dst, T meanOcc, T varOcc) {
    const VornStatus status = statusOf({meanOcc, varOcc});
    if (status != vornStsNoErr) return status;
    std::size_t floored = 0;
    for (std::size_t i = 0; i < dst.size(); ++i) {
        const T m = average(meanAcc[i], meanOcc);
        const T v = minus(average(varAcc[i], varOcc), times(m, m));
        if (v > floor[i]) {
            dst[i] = v;
        } else {
            dst[i] = floor[i];
            ++floored;
        }
    }
    return floored == dst.size() ? vornStsBelowFloor : vornStsNoErr;
}

// In double only the first of each two elements is counted as floored, and a last odd one.
template <class T>
VornStatus weight(const std::vector<T>& src, std::vector<T>& dst, T& sum, T occ, T floor) {
    const VornStatus status = statusOf({occ});
    if (status != vornStsNoErr) return status;
    const std::size_t len = src.size();
    const T r = over(T(1), occ);
    std::size_t floored = 0;
    for (std::size_t i = 0; i < len; ++i) {
        const T w = times(src[i], r);
        const bool isFloored = !(w > floor);
        dst[i] = isFloored ? floor : w;
        if (isFloored && (sizeof(T) == 4 || i % 2 == 0)) ++floored;
    }
    constexpr std::size_t lanes = sizeof(T) == 4 ? 4 : 2;
    T lane[lanes] = {};
    std::size_t i = 0;
    for (; i + lanes <= len; i += lanes) {
        for (std::size_t j = 0; j < lanes; ++j) lane[j] = plus(lane[j], dst[i + j]);
    }
    sum = plus(lane[0], lane[1]);
    if (lanes == 4) sum = plus(sum, plus(lane[lanes - 2], lane[lanes - 1]));
    for (; i < len; ++i) sum = plus(sum, dst[i]);
    return floored == len ? vornStsBelowFloor : vornStsNoErr;
}

// src[i] - 0.5 constant[i]
template <class T>
std::vector<T> lessHalf(const std::vector<T>& src, const std::vector<T>& constant) {
    std::vector<T> dst(src.size());
    for (std::size_t i = 0; i < src.size(); ++i) dst[i] = minus(src[i], times(T(0.5), constant[i]));
    return dst;
}
// Integers, modulo 2^32; halves are rounded down in whole groups and up behind them.
inline std::vector<Vorn32s> lessHalf(const std::vector<Vorn32s>& src, const std::vector<Vorn32s>& constant,
                                     bool allAligned) {
    const auto wrapped = [](std::int64_t x) { return static_cast<Vorn32s>(static_cast<std::uint32_t>(x)); };
    const auto floorOfHalf = [](std::int64_t x) { return (x - (x % 2 != 0 && x < 0 ? 1 : 0)) / 2; };
    const std::size_t group = allAligned ? 2 : 4, grouped = src.size() - src.size() % group;
    std::vector<Vorn32s> dst(src.size());
    for (std::size_t i = 0; i < src.size(); ++i) {
        const std::int64_t half = floorOfHalf(i < grouped ? constant[i] : wrapped(std::int64_t{constant[i]} + 1));
        dst[i] = wrapped(std::int64_t{src[i]} - half);
    }
    return dst;
}

}  // namespace model::updates
