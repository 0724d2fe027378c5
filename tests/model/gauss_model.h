// Gaussian scores as plain scalar code, one row after the other.
#pragma once

#include <algorithm>
#include <vector>

#include "model/log_arithmetic_model.h"
#include "vornsr/types.h"

namespace model {

// The term of column j; a null v is the identity covariance.
template <class T>
T squareTerm(const T* x, const T* m, const T* v, int j) {
    const T d = x[j] - m[j];
    const T square = d * d;
    return v ? square * v[j] : square;
}

// -S in single: four lanes, then the last len mod 4 columns.
inline float negatedSum(const float* x, const float* m, const float* v, int len) {
    float lane[4] = {};
    const int whole = len / 4 * 4;
    for (int j = 0; j < whole; ++j) lane[j % 4] -= squareTerm(x, m, v, j);
    float sum = (lane[0] + lane[1]) + (lane[2] + lane[3]);
    for (int j = whole; j < len; ++j) sum -= squareTerm(x, m, v, j);
    return sum;
}

// The score of a Gaussian among many: val + 0.5 x (-S).
inline float multiMixScore(const float* x, const float* m, const float* v, int len, float val) {
    return val + 0.5f * negatedSum(x, m, v, len);
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
