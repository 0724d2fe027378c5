// Deltas of a whole utterance, each result from its formula: no blocks, no state.
#pragma once

#include <algorithm>
#include <cstddef>
#include <vector>

namespace model {

// The operator of window 1 or 2 on one column of rows 0 to T-1, with the end rows repeated beyond them.
inline std::vector<float> differences(const std::vector<float>& x, int window, float val) {
    const int T = (int)x.size();
    const auto at = [&](int t) { return x[(std::size_t)std::clamp(t, 0, T - 1)]; };
    std::vector<float> result(x.size());
    for (int t = 0; t < T; ++t) {
        const float a = at(t + 1) - at(t - 1);
        if (window == 1) {
            result[(std::size_t)t] = a * val;
        } else {
            const float b = at(t + 2) - at(t - 2);
            const float once = a + b;
            const float twice = once + b;
            result[(std::size_t)t] = twice * val;
        }
    }
    return result;
}

// Rows of frame, delta and (with acceleration) acceleration, step elements apart; only these columns of dst are
// written.
inline void deltas(const float* src, int width, float* dst, int step, int T, int window, bool acceleration, float val1,
                   float val2) {
    for (int c = 0; c < width; ++c) {
        std::vector<float> x((std::size_t)T);
        for (int t = 0; t < T; ++t) x[(std::size_t)t] = src[(std::ptrdiff_t)t * width + c];
        const auto delta = differences(x, window, val1);
        const auto second = differences(delta, window, val2);
        for (int t = 0; t < T; ++t) {
            float* row = dst + (std::ptrdiff_t)t * step;
            row[c] = x[(std::size_t)t];
            row[width + c] = delta[(std::size_t)t];
            if (acceleration) row[2 * width + c] = second[(std::size_t)t];
        }
    }
}

}  // namespace model
