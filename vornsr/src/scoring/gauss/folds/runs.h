// Gaussian scores folded in the logarithmic domain. The scores of a run of rows go to a buffer, and the run is folded
// whole. Where the runs of a log-sum end is part of its result.
#pragma once

#include <cstddef>

#include "scoring/gauss/ends.h"
#include "scoring/log_arithmetic/kernels.h"
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
// Log-adds the score of each row to srcDst.
template <std::ptrdiff_t rowsOfRun, class Scores, class Vectors, class Val, class T>
void logAddInRuns(const Scores& scores, const Vectors& vectors, std::ptrdiff_t height, Val val, T* srcDst) {
    alignas(32) T buffer[rowsOfRun];
    forRuns(height, rowsOfRun, [&](std::ptrdiff_t first, std::ptrdiff_t count) {
        scores(vectors.from(first), count, val.from(first), Store{buffer});
        logAddVector(buffer, srcDst + first, count);
    });
}

// A run of scores, with the value of the runs before it in front, that is log-summed while it is made.
template <class T>
class LogSumOfRun {
public:
    LogSumOfRun(T* elements, std::ptrdiff_t inFront, std::ptrdiff_t len)
        : elements_(elements), inFront_(inFront), len_(len) {}
    template <class Where>
    VORN_INLINE void put(Where at, Four<T> score) {
        storeAt(at, elements_ + inFront_, score);
        advance(sum_, elements_, inFront_ + at.row + (Where::areFour ? 4 : 1), len_);
    }
    T finished() { return finish(sum_, elements_, len_); }

private:
    T* elements_;
    std::ptrdiff_t inFront_, len_;
    LogSumSoFar<std::conditional_t<std::is_same_v<T, Vorn32f>, f32x4, f64x2>> sum_;
};
template <class T>
struct IntoRun {
    LogSumOfRun<T>* run;
    template <class Where>
    VORN_INLINE void put(Where at, Four<T> score) const {
        run->put(at, score);
    }
};

// The log-sum over the scores of all rows: the value of the runs so far stands in front of the scores of the next.
template <class Scores, class Vectors, class T>
T logSumInRuns(const Scores& scores, const Vectors& vectors, std::ptrdiff_t height, const T* val) {
    T elements[1 + gaussiansOfRun];
    T sum = 0;
    forRuns(height, gaussiansOfRun, [&](std::ptrdiff_t first, std::ptrdiff_t count) {
        const std::ptrdiff_t inFront = first > 0 ? 1 : 0;
        elements[0] = sum;
        LogSumOfRun<T> run(elements, inFront, inFront + count);
        scores(vectors.from(first), count, ValOfRow{val + first}, IntoRun<T>{&run});
        sum = run.finished();
    });
    return sum;
}

}  // namespace vorn
