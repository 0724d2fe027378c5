// Vectors to run element-wise functions and reductions on: their lengths, and numbers of every size.
#pragma once

#include <cmath>
#include <cstdint>
#include <type_traits>
#include <vector>

#include "support/values.h"

namespace test {

inline std::vector<std::size_t> lengths() {
    std::vector<std::size_t> all;
    for (std::size_t len = 1; len <= 70; ++len) all.push_back(len);
    for (std::size_t len : {127, 128, 129, 257, 1000, 4095, 4096, 4097, 9000}) all.push_back(len);
    return all;
}

// Any integers in two of three vectors, the borders of the type in the third; floats of mixed sizes.
template <class T>
std::vector<T> data(Random& random, std::size_t len) {
    std::vector<T> x(len);
    const bool hard = random.integer(0, 2) == 0;
    if constexpr (std::is_integral_v<T>) {
        const std::vector<T> values = hardIntegers<T>();
        for (T& value : x) {
            value =
                hard ? values[static_cast<std::size_t>(random.integer(0, static_cast<std::int64_t>(values.size()) - 1))]
                     : random.anyBits<T>();
        }
    } else {
        for (T& value : x)
            value = static_cast<T>(std::ldexp(random.uniform(-1.0, 1.0), static_cast<int>(random.integer(-9, 9))));
    }
    return x;
}
template <class Complex>
std::vector<Complex> complexData(Random& random, std::size_t len) {
    const auto parts = data<decltype(Complex::re)>(random, 2 * len);
    std::vector<Complex> z(len);
    for (std::size_t i = 0; i < len; ++i) z[i] = {parts[2 * i], parts[2 * i + 1]};
    return z;
}

}  // namespace test
