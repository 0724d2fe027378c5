// Deltas of a whole utterance and of a matrix, each result from its formula: no blocks, no state.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace model {

struct DeltaRules {
    int window;         // 1 or 2
    bool acceleration;  // a third part of the output row
    bool mul;           // factors of the columns, the frames scaled as well
    bool wraps;         // of 16 bits: differences wrap
};

// The number of 32 or 16 bits that stands in the low bits of an exact one.
inline std::int64_t wrapped(std::int64_t x, int bits) {
    const std::int64_t range = std::int64_t{1} << bits, rest = ((x % range) + range) % range;
    return rest < range / 2 ? rest : rest - range;
}

// From 32 bits to a stored result.
inline std::int16_t shiftedAndSaturated(std::int64_t x, int scale) {
    const std::int64_t count = ((scale < 0 ? -std::int64_t{scale} : std::int64_t{scale}) % 32);
    for (std::int64_t i = 0; i < count; ++i) {
        if (scale < 0) {
            x = wrapped(2 * x, 32);
        } else {
            x = (x - (x % 2 != 0 && x < 0 ? 1 : 0)) / 2;  // towards minus infinity
        }
    }
    return (std::int16_t)std::clamp<std::int64_t>(x, -32768, 32767);
}

inline float scaledFrame(float x, float val, int) { return x * val; }
inline std::int16_t scaledFrame(std::int16_t x, std::int16_t val, int scale) {
    return shiftedAndSaturated(wrapped(std::int64_t{x} * val, 32), scale);
}

// The operator of window 1 or 2 on one column of rows 0 to T-1, with the end rows repeated beyond them.
inline std::vector<float> differences(const std::vector<float>& x, const DeltaRules& rules, float val, int) {
    const int T = (int)x.size();
    const auto at = [&](int t) { return x[(std::size_t)std::clamp(t, 0, T - 1)]; };
    std::vector<float> result(x.size());
    for (int t = 0; t < T; ++t) {
        const float a = at(t + 1) - at(t - 1);
        if (rules.window == 1) {
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
inline std::vector<std::int16_t> differences(const std::vector<std::int16_t>& x, const DeltaRules& rules,
                                             std::int16_t val, int scale) {
    const int T = (int)x.size();
    const auto at = [&](int t) { return std::int64_t{x[(std::size_t)std::clamp(t, 0, T - 1)]}; };
    std::vector<std::int16_t> result(x.size());
    for (int t = 0; t < T; ++t) {
        std::int64_t a = at(t + 1) - at(t - 1), b = rules.window == 2 ? at(t + 2) - at(t - 2) : 0;
        if (rules.wraps) a = wrapped(a, 16), b = wrapped(b, 16);
        result[(std::size_t)t] = shiftedAndSaturated(wrapped((a + 2 * b) * val, 32), scale);
    }
    return result;
}

// Rows of frame, delta and (with acceleration) acceleration, step elements apart; only these columns of dst are
// written. factors: those of the frames, of the deltas, of the accelerations, width of them each.
template <class T>
void deltas(const DeltaRules& rules, const T* src, const T* factors, int width, T* dst, int step, int height,
            int scale) {
    for (int c = 0; c < width; ++c) {
        std::vector<T> x((std::size_t)height);
        for (int t = 0; t < height; ++t) {
            x[(std::size_t)t] = src[(std::ptrdiff_t)t * width + c];
            if (rules.mul) x[(std::size_t)t] = scaledFrame(x[(std::size_t)t], factors[c], scale);
        }
        const auto delta = differences(x, rules, factors[width + c], scale);
        for (int t = 0; t < height; ++t) {
            T* row = dst + (std::ptrdiff_t)t * step;
            row[c] = x[(std::size_t)t];
            row[width + c] = delta[(std::size_t)t];
        }
        if (!rules.acceleration) continue;
        const auto second = differences(delta, rules, factors[2 * width + c], scale);
        for (int t = 0; t < height; ++t) dst[(std::ptrdiff_t)t * step + 2 * width + c] = second[(std::size_t)t];
    }
}

// One delta of the form in place: the sum over k of k (right - left), where the first and the last row stand for one
// side near the ends. row(r) is the frame's value in row r.
template <class Row>
float evalDelta(Row row, int r, int height, int W, float val, int) {
    float sum = 0;
    for (int k = 1; k <= W; ++k) {
        const float right = r >= height - W ? row(height - 1) : row(r + k);
        const float left = r < W ? row(0) : row(r - k);
        const float difference = right - left;
        const float term = (float)k * difference;
        sum = k == 1 ? term : sum + term;
    }
    return sum * val;
}
template <class Row>
std::int16_t evalDelta(Row row, int r, int height, int W, std::int16_t val, int scale) {
    std::int64_t sum = 0;
    for (int k = 1; k <= W; ++k) {
        const std::int64_t right = r >= height - W ? row(height - 1) : row(r + k);
        const std::int64_t left = r < W ? row(0) : row(r - k);
        sum = wrapped(sum + k * wrapped(right - left, 16), 32);
    }
    return shiftedAndSaturated(wrapped(sum * val, 32), scale);
}

}  // namespace model
