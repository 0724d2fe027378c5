// Plain models of sums and sums of logarithms, in the order of additions and multiplications that is promised.
#pragma once

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <vector>

#include "elementary/elementary.h"
#include "vornsr/types.h"

namespace model {

// Hint 1: lane j takes elements j, j + 4 of each eight in two sums; lanes fold as (0 + 1) + (2 + 3); the rest in order.
inline float sumFast(const std::vector<float>& x) {
    float first[4] = {}, second[4] = {};
    std::size_t i = 0;
    for (; i + 8 <= x.size(); i += 8) {
        for (std::size_t j = 0; j < 4; ++j) {
            first[j] += x[i + j];
            second[j] += x[i + 4 + j];
        }
    }
    for (int j = 0; j < 4; ++j) first[j] += second[j];
    float sum = (first[0] + first[1]) + (first[2] + first[3]);
    for (; i < x.size(); ++i) sum += x[i];
    return sum;
}

// Other hints: eight lanes in double, element j of each eight in lane j; ((0 + 2) + (4 + 6)) + ((1 + 3) + (5 + 7)).
inline float sumAccurate(const std::vector<float>& x) {
    double lane[8] = {};
    std::size_t i = 0;
    for (; i + 8 <= x.size(); i += 8) {
        for (std::size_t j = 0; j < 8; ++j) lane[j] += static_cast<double>(x[i + j]);
    }
    double sum = ((lane[0] + lane[2]) + (lane[4] + lane[6])) + ((lane[1] + lane[3]) + (lane[5] + lane[7]));
    for (; i < x.size(); ++i) sum += static_cast<double>(x[i]);
    return static_cast<float>(sum);
}

// Code 0, 2 (zero), 4 (negative), 8 (infinity or not a number), and the sum of the logarithms in double.
struct LnSum {
    int code = 0;
    double sum = 0.0;
};

// Runs of 512; mantissas in [1, 2). In each eight, elements j and j + 4 are multiplied in the precision of the
// elements, then onto lane j in double; (0 x 2) x (1 x 3); what remains of the run is multiplied onto that in order.
template <class Number, class Element>
LnSum sumLn(const std::vector<Element>& x) {
    LnSum result;
    for (std::size_t run = 0; run < x.size(); run += 512) {
        const std::size_t n = std::min<std::size_t>(512, x.size() - run);
        std::vector<Number> mantissa(n);
        long exponents = 0;
        for (std::size_t i = 0; i < n; ++i) {
            const auto value = static_cast<Number>(x[run + i]);
            if (std::isnan(value) || std::isinf(value)) return {8, 0.0};
            if (value == 0) return {2, 0.0};
            if (value < 0) return {4, 0.0};
            int exponent;
            mantissa[i] = 2 * std::frexp(value, &exponent);
            exponents += exponent - 1;
        }
        double lane[4] = {1.0, 1.0, 1.0, 1.0};
        std::size_t i = 0;
        for (; i + 8 <= n; i += 8) {
            for (std::size_t j = 0; j < 4; ++j) {
                const Number pair = mantissa[i + j] * mantissa[i + j + 4];
                lane[j] *= static_cast<double>(pair);
            }
        }
        double product = (lane[0] * lane[2]) * (lane[1] * lane[3]);
        for (; i < n; ++i) product *= static_cast<double>(mantissa[i]);
        const double ofRun = vorn::log64(product) + static_cast<double>(exponents) * 0x1.62e42fefa39efp-1;
        result.sum += ofRun;
    }
    return result;
}

}  // namespace model
