// What the tests of noise reduction share.
#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <vector>

#include "support/expect.h"
#include "support/guarded.h"
#include "support/rounding_mode.h"
#include "support/values.h"
#include "vornsr.h"

namespace noise_reduction_test {

using Floats = std::vector<float>;
using Shorts = std::vector<Vorn16s>;
using Longs = std::vector<Vorn32s>;

constexpr float inf = std::numeric_limits<float>::infinity(), noNumber = std::numeric_limits<float>::quiet_NaN();
constexpr unsigned modes[] = {test::RoundingMode::nearest, test::RoundingMode::down, test::RoundingMode::up,
                              test::RoundingMode::towardZero};

// Scale factors around all limits.
constexpr int scaleFactors[] = {
    0,   1,   2,   3,   7,   8,   9,   14,   15,   16,   23,   24,    28,        31,        32,           33,  34,
    35,  36,  47,  62,  63,  64,  65,  71,   127,  128,  149,  150,   151,       1000,      -1,           -2,  -3,
    -7,  -8,  -9,  -14, -15, -16, -17, -27,  -28,  -29,  -30,  -31,   -32,       -33,       -34,          -35, -40,
    -60, -62, -63, -64, -65, -92, -93, -126, -127, -128, -129, -1000, INT32_MAX, INT32_MIN, INT32_MIN + 1};

// Any bits, hard ones, ordinary ones: what kind the turn says.
inline Floats floatsOf(test::Random& random, std::size_t n, int turn) {
    static const auto hard = test::hardFloats<float>();
    switch (turn % 4) {
        case 0:
            return random.floats(n, 0.0, 1000.0);
        case 1:
            return random.floats(n, -3.0, 3.0);
        case 2:
            return random.pick(hard, n);
        default: {
            Floats x(n);
            for (float& v : x) v = random.anyBits<float>();
            return x;
        }
    }
}
template <class T>
std::vector<T> integersOf(test::Random& random, std::size_t n, int turn) {
    static const auto hard = test::hardIntegers<T>();
    switch (turn % 4) {
        case 0:
            return random.integers<T>(n);
        case 1:
            return random.integers<T>(n, -40, 300);
        case 2:
            return random.pick(hard, n);
        default:
            return random.pick<T>({std::numeric_limits<T>::min(), std::numeric_limits<T>::max(), -1, 0}, n);
    }
}
inline Floats valuesOf(test::Random& random, std::size_t n, int turn, float) { return floatsOf(random, n, turn); }
template <class T>
std::vector<T> valuesOf(test::Random& random, std::size_t n, int turn, T) {
    return integersOf<T>(random, n, turn);
}

}  // namespace noise_reduction_test
