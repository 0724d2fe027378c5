// vornsSqrt_32f over every single-precision number: correctly rounded, and the warning where it belongs.
#include <array>
#include <atomic>
#include <bit>
#include <cmath>
#include <cstdint>

#include "exhaustive/sweep.h"
#include "support/expect.h"
#include "vornsr.h"

namespace {

constexpr std::size_t block = 4096;

// A root in double has so many more bits that rounding it once more gives the correctly rounded single (Figueroa,
// 1995).
bool isRight(float x, float root) {
    if (std::isnan(x) || x < 0.0f) return std::isnan(root);
    return std::bit_cast<std::uint32_t>(root) ==
           std::bit_cast<std::uint32_t>(static_cast<float>(std::sqrt(static_cast<double>(x))));
}

// Slices are blocks of one sign; below zero is what has the sign and is neither a zero nor a not-a-number.
bool holdsNegative(std::uint64_t first) {
    return first + block > 0x80000001u && first >= 0x80000000u && first <= 0xFF800000u;
}

TEST(Sqrt32f, EverySingleNumber) {
    if (const char* why = test::whyNotSweep()) GTEST_SKIP() << why;
    std::atomic<std::uint64_t> wrong{0}, wrongStatus{0};
    std::atomic<std::uint32_t> wrongAt{0};
    test::eachSlice([&](std::size_t slice) {
        std::array<float, block> x, root;
        for (std::uint64_t at = 0; at < test::sliceLength; at += block) {
            const std::uint64_t first = slice * test::sliceLength + at;
            for (std::size_t i = 0; i < block; ++i) x[i] = std::bit_cast<float>(static_cast<std::uint32_t>(first + i));
            const VornStatus status = vornsSqrt_32f(x.data(), root.data(), static_cast<int>(block));
            if (status != (holdsNegative(first) ? vornStsSqrtNegArg : vornStsNoErr)) ++wrongStatus;
            for (std::size_t i = 0; i < block; ++i) {
                if (!isRight(x[i], root[i])) ++wrong, wrongAt = static_cast<std::uint32_t>(first + i);
            }
        }
    });
    EXPECT_EQ(wrong, 0u) << std::hex << wrongAt;
    EXPECT_EQ(wrongStatus, 0u);
}

}  // namespace
