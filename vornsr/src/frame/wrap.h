// Two's complement arithmetic that wraps, and shifts that are defined for every count.
#pragma once

#include <cstdint>
#include <limits>

namespace vorn {

constexpr std::int32_t wrapAdd(std::int32_t a, std::int32_t b) {
    return static_cast<std::int32_t>(static_cast<std::uint32_t>(a) + static_cast<std::uint32_t>(b));
}
constexpr std::int32_t wrapSub(std::int32_t a, std::int32_t b) {
    return static_cast<std::int32_t>(static_cast<std::uint32_t>(a) - static_cast<std::uint32_t>(b));
}
constexpr std::int32_t wrapMul(std::int32_t a, std::int32_t b) {
    return static_cast<std::int32_t>(static_cast<std::uint32_t>(a) * static_cast<std::uint32_t>(b));
}
constexpr std::int64_t wrapAdd(std::int64_t a, std::int64_t b) {
    return static_cast<std::int64_t>(static_cast<std::uint64_t>(a) + static_cast<std::uint64_t>(b));
}
constexpr std::int64_t wrapSub(std::int64_t a, std::int64_t b) {
    return static_cast<std::int64_t>(static_cast<std::uint64_t>(a) - static_cast<std::uint64_t>(b));
}

// 64-bit scalar shifts: the count is taken modulo 64.
constexpr std::int64_t shiftLeft64(std::int64_t x, int count) {
    return static_cast<std::int64_t>(static_cast<std::uint64_t>(x) << (static_cast<unsigned>(count) & 63u));
}
constexpr std::int64_t shiftRight64(std::int64_t x, int count) { return x >> (static_cast<unsigned>(count) & 63u); }

// Clamps to the range of an integer result type.
template <class Result, class Wide>
constexpr Result saturate(Wide x) {
    constexpr Wide lowest = std::numeric_limits<Result>::min();
    constexpr Wide highest = std::numeric_limits<Result>::max();
    return static_cast<Result>(x < lowest ? lowest : x > highest ? highest : x);
}

}  // namespace vorn
