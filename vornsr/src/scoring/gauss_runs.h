// Gaussian scores folded in the logarithmic domain. The scores of a run of rows go to a buffer, and the run is folded
// whole. Where the runs of a log-sum end is part of its result.
#pragma once

#include <cstddef>

#include "scoring/gauss_ends.h"
#include "scoring/log_arithmetic_kernels.h"
#include "vornsr/types.h"

namespace vorn {

inline constexpr std::ptrdiff_t framesOfRun = 128;
inline constexpr std::ptrdiff_t gaussiansOfRun = 100;

template <class Run>
VORN_INLINE void forRuns(std::ptrdiff_t height, std::ptrdiff_t rowsOfRun, const Run& run) {
    for (std::ptrdiff_t first = 0; first < height; first += rowsOfRun) {
        run(first, height - first < rowsOfRun ? height - first : rowsOfRun);
    }
}

inline void logAddVector(const Vorn32f* src, Vorn32f* srcDst, std::ptrdiff_t len) {
    vornsLogAddVec_32f_M7_sp(src, srcDst, static_cast<int>(len));
}
inline void logAddVector(const Vorn64f* src, Vorn64f* srcDst, std::ptrdiff_t len) {
    vornsLogAddVec_64f_M7(src, srcDst, static_cast<int>(len));
}
inline Vorn32f logSumOf(const Vorn32f* src, std::ptrdiff_t len) {
    Vorn32f sum;
    vornsLogSum_32f_M7(src, &sum, static_cast<int>(len));
    return sum;
}
inline Vorn64f logSumOf(const Vorn64f* src, std::ptrdiff_t len) {
    Vorn64f sum;
    vornsLogSum_64f_M7(src, &sum, static_cast<int>(len));
    return sum;
}

// Log-adds the score of each row to srcDst.
template <std::ptrdiff_t rowsOfRun, class Scores, class Vectors, class Val, class T>
void logAddInRuns(const Scores& scores, const Vectors& vectors, std::ptrdiff_t height, Val val, T* srcDst) {
    alignas(32) T buffer[rowsOfRun];
    forRuns(height, rowsOfRun, [&](std::ptrdiff_t first, std::ptrdiff_t count) {
        scores(vectors.from(first), count, val.from(first), Store{buffer});
        logAddVector(buffer, srcDst + first, count);
    });
}

// The log-sum over the scores of all rows: the value of the runs so far stands in front of the scores of the next.
template <class Scores, class Vectors, class T>
T logSumInRuns(const Scores& scores, const Vectors& vectors, std::ptrdiff_t height, const T* val) {
    T buffer[1 + gaussiansOfRun];
    T sum = 0;
    forRuns(height, gaussiansOfRun, [&](std::ptrdiff_t first, std::ptrdiff_t count) {
        scores(vectors.from(first), count, ValOfRow{val + first}, Store{buffer + 1});
        if (first == 0) {
            sum = logSumOf(buffer + 1, count);
        } else {
            buffer[0] = sum;
            sum = logSumOf(buffer, count + 1);
        }
    });
    return sum;
}

}  // namespace vorn
