// Gaussian scores folded in the logarithmic domain. The scores of a run of rows go to a buffer, and the run is folded
// whole; where the runs end is part of the result.
#pragma once

#include <cstddef>
#include <cstring>

#include "scoring/log_arithmetic_kernels.h"
#include "vornsr/types.h"

namespace vorn {

inline constexpr std::ptrdiff_t gaussiansOfRun = 100;

inline void logSumOf(const Vorn32f* src, Vorn32f* dst, std::ptrdiff_t len) {
    vornsLogSum_32f_M7(src, dst, static_cast<int>(len));
}

// The log-sum over the scores of all Gaussians. score(first, count, scores) turns the vals of count Gaussians into
// their scores. The value of the runs so far stands in front of the scores of the next.
template <class T, class Score>
T logSumOfRuns(const T* val, std::ptrdiff_t height, const Score& score) {
    T buffer[1 + gaussiansOfRun];
    T sum = 0;
    for (std::ptrdiff_t first = 0; first < height; first += gaussiansOfRun) {
        const std::ptrdiff_t count = height - first < gaussiansOfRun ? height - first : gaussiansOfRun;
        std::memcpy(buffer + 1, val + first, static_cast<std::size_t>(count) * sizeof(T));
        score(first, count, buffer + 1);
        if (first == 0) {
            logSumOf(buffer + 1, &sum, count);
        } else {
            buffer[0] = sum;
            logSumOf(buffer, &sum, count + 1);
        }
    }
    return sum;
}

}  // namespace vorn
