// Logarithm and exponential in integer arithmetic, as the integer banks space their centres by them.
#pragma once

#include <cstdint>
#include <limits>

namespace vorn::integer_bank {

// ln 2 and its inverse in Q31.
inline constexpr std::int64_t ln2 = 1488522236;
inline constexpr std::int64_t perLn2 = 3098164009;

// ln x in Q22 of x in Q22, 0 < x < 2^62: the exponent, and the binary logarithm of the mantissa y (Q29, 1 to 2) bit by
// bit, one for each time that its square passes 2.
constexpr std::int64_t lnQ22(std::int64_t x) {
    int exponent = 0;
    while ((x >> exponent) > 1) ++exponent;
    std::int64_t y = exponent > 29 ? x >> (exponent - 29) : x << (29 - exponent);
    std::int64_t bits = 0;
    for (int i = 0; i < 31; ++i) {
        const std::int64_t square = y * y;
        const auto passed = static_cast<int>(square >> 59);
        y = square >> (29 + passed);
        bits = 2 * bits + passed;
    }
    return (exponent * ln2 + ((bits * ln2) >> 31) - 22 * ln2) >> 9;
}

// ln(1 + 2^-(i+1)) and ln(1 - 2^-(i+1)) in Q31, rounded to nearest.
inline constexpr std::int32_t lnOfOneAndPower[32] = {
    870729689, 479197128, 252937143, 130190384, 66081634, 33294987, 16712019, 8372267, 4190213, 2096129, 1048320,
    524224,    262128,    131068,    65535,     32768,    16384,    8192,     4096,    2048,    1024,    512,
    256,       128,       64,        32,        16,       8,        4,        2,       1,       0};
inline constexpr std::int32_t lnOfOneLessPower[32] = {
    -1488522236, -617792546, -286756482, -138595419, -68179810, -33819339, -16843095, -8405035,
    -4198405,    -2098177,   -1048832,   -524352,    -262160,   -131076,   -65537,    -32768,
    -16384,      -8192,      -4096,      -2048,      -1024,     -512,      -256,      -128,
    -64,         -32,        -16,        -8,         -4,        -2,        -1,        -1};

// exp t in Q31 of t in Q31, 0 <= t < ln 2: factors 1 + 2^-(i+1) and 1 - 2^-(i+1) as long as their logarithms take t
// towards zero (Volder 1959, of exponentials). The result is 1 to 2, so that a product fits 64 bits without a sign.
constexpr std::uint64_t expOfFraction(std::int32_t t) {
    constexpr std::uint64_t one = std::uint64_t{1} << 31;
    std::uint64_t value = one, power = one / 2;
    for (int i = 0; i < 32; ++i, power /= 2) {
        // Written without branches, which nobody could foretell; a factor of one changes nothing.
        const bool up = t > lnOfOneAndPower[i], down = t < lnOfOneLessPower[i];
        value = (value * (one + (up ? power : down ? 0 - power : 0))) >> 31;
        t -= up ? lnOfOneAndPower[i] : down ? lnOfOneLessPower[i] : 0;
    }
    return value;
}

// exp q in Q22 of q in Q22, 0 <= q < 2^27: not above 2^31 - 1, which is near 512.
constexpr std::int64_t expQ22(std::int64_t q) {
    const std::int64_t binary = q * perLn2;  // Q53
    const std::int64_t exponent = binary >> 53;
    const auto fraction = static_cast<std::int32_t>((binary >> 22) - (exponent << 31));
    const std::uint64_t mantissa = expOfFraction(static_cast<std::int32_t>((fraction * ln2) >> 31));
    constexpr std::int64_t highest = std::numeric_limits<std::int32_t>::max();
    if (exponent > 9) return highest;
    const auto value = static_cast<std::int64_t>(mantissa >> (9 - exponent));
    return value < highest ? value : highest;
}

}  // namespace vorn::integer_bank
