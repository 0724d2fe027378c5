// Test data: a small generator with a fixed sequence, and the values at which numeric code breaks.
#pragma once

#include <bit>
#include <cstdint>
#include <limits>
#include <type_traits>
#include <vector>

namespace test {

// SplitMix64 (Steele, Lea, Flood 2014).
class Random {
public:
    explicit Random(std::uint64_t seed = 1) : state_(seed) {}

    std::uint64_t next() {
        std::uint64_t z = state_ += 0x9E3779B97F4A7C15ull;
        z = (z ^ (z >> 30)) * 0xBF58476D1CE4E5B9ull;
        z = (z ^ (z >> 27)) * 0x94D049BB133111EBull;
        return z ^ (z >> 31);
    }
    // Uniform in [low, high).
    double uniform(double low, double high) {
        return low + (high - low) * (static_cast<double>(next() >> 11) * 0x1p-53);
    }
    // Uniform in [low, high].
    std::int64_t integer(std::int64_t low, std::int64_t high) {
        const auto span = static_cast<std::uint64_t>(high) - static_cast<std::uint64_t>(low) + 1;
        return static_cast<std::int64_t>(static_cast<std::uint64_t>(low) + (span == 0 ? next() : next() % span));
    }
    // Any bit pattern of the type: denormals, infinities and not-a-numbers among them.
    template <class T>
    T anyBits() {
        if constexpr (std::is_same_v<T, float>) {
            return std::bit_cast<float>(static_cast<std::uint32_t>(next()));
        } else if constexpr (std::is_same_v<T, double>) {
            return std::bit_cast<double>(next());
        } else {
            return static_cast<T>(next());
        }
    }

    // n of the given values.
    template <class T>
    std::vector<T> pick(const std::vector<T>& from, std::size_t n) {
        std::vector<T> values(n);
        for (T& x : values) x = from[static_cast<std::size_t>(integer(0, static_cast<std::int64_t>(from.size()) - 1))];
        return values;
    }

    std::vector<float> floats(std::size_t n, double low, double high) {
        std::vector<float> values(n);
        for (float& x : values) x = static_cast<float>(uniform(low, high));
        return values;
    }
    std::vector<double> doubles(std::size_t n, double low, double high) {
        std::vector<double> values(n);
        for (double& x : values) x = uniform(low, high);
        return values;
    }
    template <class T>
    std::vector<T> integers(std::size_t n, T low = std::numeric_limits<T>::min(),
                            T high = std::numeric_limits<T>::max()) {
        std::vector<T> values(n);
        for (T& x : values) x = static_cast<T>(integer(low, high));
        return values;
    }

private:
    std::uint64_t state_;
};

// Zeros, ones, halves, borders of normal and denormal numbers and of the integers, infinities, not-a-numbers; both
// signs.
template <class T>
std::vector<T> hardFloats() {
    using L = std::numeric_limits<T>;
    std::vector<T> values = {T(0),
                             T(1),
                             T(0.5),
                             T(1.5),
                             T(2.5),
                             T(3),
                             L::min(),
                             L::denorm_min(),
                             L::max(),
                             L::infinity(),
                             L::quiet_NaN(),
                             L::epsilon(),
                             T(127),
                             T(127.5),
                             T(128),
                             T(255),
                             T(255.5),
                             T(256),
                             T(32767),
                             T(32767.5),
                             T(32768),
                             T(65535),
                             T(65535.5),
                             T(65536),
                             T(8388607.5),
                             T(8388608),
                             T(16777215),
                             T(16777216),
                             T(2147483520.0),
                             T(2147483647.0),
                             T(2147483648.0),
                             T(4294967296.0),
                             T(9.2e18),
                             T(1e30),
                             L::min() * T(0.75),
                             T(0.49999997)};
    const std::size_t n = values.size();
    for (std::size_t i = 0; i < n; ++i) values.push_back(-values[i]);
    return values;
}

// The borders of an integer type and the values around zero and the powers of two.
template <class T>
std::vector<T> hardIntegers() {
    std::vector<T> values = {0,
                             1,
                             2,
                             3,
                             5,
                             std::numeric_limits<T>::max(),
                             static_cast<T>(std::numeric_limits<T>::max() - 1),
                             std::numeric_limits<T>::min(),
                             static_cast<T>(std::numeric_limits<T>::min() + 1)};
    for (unsigned bit = 2; bit + 1 < 8 * sizeof(T); ++bit) {
        const auto power = static_cast<T>(T(1) << bit);
        for (T x : {power, static_cast<T>(power - 1), static_cast<T>(power + 1)}) {
            values.push_back(x);
            if constexpr (std::is_signed_v<T>) values.push_back(static_cast<T>(-x));
        }
    }
    return values;
}

}  // namespace test
