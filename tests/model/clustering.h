// Clustering of Gaussians, element by element. Each operation's result stands in a variable that the compiler cannot
// see through, since the caller's rounding mode counts.
#pragma once

#include <cmath>
#include <limits>
#include <vector>

#include "elementary/elementary.h"
#include "model/reductions.h"
#include "model/updates.h"
#include "vornsr/types.h"

namespace model::clustering {

using updates::minus, updates::over, updates::plus, updates::times;

template <class T>
struct Statistics {
    std::vector<T> sum, sqr;
};

template <class T>
Statistics<T> accumulate(const std::vector<T>& mean, const std::vector<T>& var, T occ, bool direct, bool allAligned) {
    Statistics<T> result{mean, mean};
    const bool grouped = mean.size() >= 8 && allAligned && !direct;
    for (std::size_t i = 0; i < mean.size(); ++i) {
        const T m = mean[i], v = var[i];
        result.sum[i] = times(m, occ);
        if (direct) {
            result.sqr[i] = times(plus(times(m, m), v), occ);
        } else if (!grouped) {
            result.sqr[i] = times(plus(over(T(1), v), times(m, m)), occ);
        } else {
            const T part = sizeof(T) == 4 ? times(over(T(1), v), occ) : over(occ, v);
            result.sqr[i] = plus(part, times(times(occ, m), m));
        }
    }
    return result;
}

// dst keeps its value where the status is an error.
template <class T>
VornStatus likelihood(const std::vector<T>& sum, const std::vector<T>& sqr, double& dst, T occ) {
    const auto n = static_cast<double>(sum.size()), frames = static_cast<double>(occ);
    if (std::isnan(frames) || frames < 0) return vornStsNegOccErr;
    dst = -10000000000.0;
    if (frames == 0) return vornStsZeroOcc;
    const double c = vorn::log64(frames);
    double a = c - 1.0;
    a = a - 1.8378770664093456;
    a = a + c;
    const double b = n * a;
    double logarithms = 0;
    VornStatus remembered = vornStsNoErr;
    for (std::size_t i = 0; i < sum.size(); ++i) {
        const auto s = static_cast<double>(sum[i]), q = static_cast<double>(sqr[i]);
        const double t = minus(times(q, frames), times(s, s));
        if (t < 0) {
            dst = std::numeric_limits<double>::quiet_NaN();
            return vornStsLnNegArg;
        }
        if (t > 0) {
            logarithms = logarithms + vorn::log64(t);
        } else {
            remembered = vornStsLnZeroArg;
        }
    }
    dst = remembered != vornStsNoErr ? -std::numeric_limits<double>::infinity() : (frames * 0.5) * (b - logarithms);
    return remembered;
}

template <class T>
struct Gaussians {
    std::vector<T> mean1, var1, mean2, var2;
    T wgt1, wgt2;
};

// Mean and variance of element i in the precision N, divided by the weight as it is given.
template <class N, class T>
N pooledMean(const Gaussians<T>& g, std::size_t i, T weight) {
    return over(plus(times(N(g.wgt1), N(g.mean1[i])), times(N(g.wgt2), N(g.mean2[i]))), N(weight));
}
template <class N, class T>
N pooledVar(const Gaussians<T>& g, std::size_t i, T weight) {
    const N m1 = g.mean1[i], m2 = g.mean2[i], mean = pooledMean<N>(g, i, weight);
    const N first = times(plus(times(m1, m1), N(g.var1[i])), N(g.wgt1));
    const N second = times(plus(times(m2, m2), N(g.var2[i])), N(g.wgt2));
    return minus(over(plus(first, second), N(weight)), times(mean, mean));
}

// The vectors hold what has been stored before the end.
template <class T>
struct Merged {
    VornStatus status = vornStsNoErr;
    std::vector<T> mean, var;
    T gconst = 0;
};

inline Merged<float> merge(const Gaussians<float>& g) {
    Merged<float> result;
    const float weight = plus(g.wgt1, g.wgt2);
    double negative = 0;
    for (std::size_t i = 0; i < g.mean1.size(); ++i) {
        const float var = pooledVar<float>(g, i, weight);
        result.mean.push_back(pooledMean<float>(g, i, weight));
        result.var.push_back(var);
        if (var < 0) {
            result.gconst = std::numeric_limits<float>::quiet_NaN();
            result.status = vornStsLnNegArg;
            return result;
        }
        if (!(var > 0)) {
            result.gconst = std::numeric_limits<float>::infinity();
            result.status = vornStsLnZeroArg;
            return result;
        }
        negative = negative - vorn::log64(static_cast<double>(var));
    }
    result.gconst = static_cast<float>(static_cast<double>(g.mean1.size()) * 1.8378770664093 + negative);
    return result;
}

// The sum of logarithms of a long vector with its status, and what stands in its place.
inline VornStatus sumOfLogarithms(const std::vector<double>& x, double& sum) {
    const LnSum found = sumLn<double>(x);
    sum = found.code == 0   ? found.sum
          : found.code == 2 ? std::numeric_limits<double>::infinity()
                            : std::numeric_limits<double>::quiet_NaN();
    return found.code == 2 ? vornStsLnZeroArg : found.code == 4 ? vornStsLnNegArg : vornStsNoErr;
}

inline Merged<double> merge(const Gaussians<double>& g) {
    Merged<double> result;
    const double weight = plus(g.wgt1, g.wgt2);
    for (std::size_t i = 0; i < g.mean1.size(); ++i) {
        result.mean.push_back(pooledMean<double>(g, i, weight));
        result.var.push_back(pooledVar<double>(g, i, weight));
    }
    double sum;
    result.status = sumOfLogarithms(result.var, sum);
    result.gconst =
        result.status != vornStsNoErr ? sum : static_cast<double>(g.mean1.size()) * 1.8378770664093 + (0.0 - sum);
    return result;
}

template <class T>
VornStatus distance(const Gaussians<T>& g, T gconst1, T gconst2, T& dst) {
    const std::size_t len = g.mean1.size(), shortest = sizeof(T) == 4 ? 12 : 10;
    const T weight = plus(g.wgt1, g.wgt2);
    const T constants = plus(times(g.wgt1, gconst1), times(g.wgt2, gconst2));
    std::vector<double> var(len);
    for (std::size_t i = 0; i < len; ++i) var[i] = pooledVar<double>(g, i, weight);
    double sum = 0;
    if (len > shortest) {
        const VornStatus status = sumOfLogarithms(var, sum);
        if (status != vornStsNoErr) {
            dst = static_cast<T>(sum);
            return status;
        }
    } else {
        for (double v : var) {
            if (v < 0) {
                dst = std::numeric_limits<T>::quiet_NaN();
                return vornStsLnNegArg;
            }
            if (!(v > 0)) {
                dst = std::numeric_limits<T>::infinity();
                return vornStsLnZeroArg;
            }
            sum = sum + vorn::log64(v);
        }
    }
    const double merged = static_cast<double>(len) * 1.8378770664093 - sum;
    dst = static_cast<T>(static_cast<double>(constants) - static_cast<double>(weight) * merged);
    return vornStsNoErr;
}

// up moves up, down is the copy that moves down; the shift is formed in the precision N and rounded to T.
template <class N, class T>
void split(std::vector<T>& up, const std::vector<T>& var, std::vector<T>& down, T val) {
    for (std::size_t i = 0; i < up.size(); ++i) {
        volatile N root = std::sqrt(updates::opaque(N(var[i])));
        const T shift = updates::opaque(static_cast<T>(times(N(val), N(root))));
        const T mean = up[i];
        down[i] = minus(mean, shift);
        up[i] = plus(mean, shift);
    }
}

}  // namespace model::clustering
