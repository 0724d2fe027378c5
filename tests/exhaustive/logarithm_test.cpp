// vornsLn_32f over every single-precision number: the accuracy in one build, the same bits in all.
#include <array>
#include <bit>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <limits>
#include <string>
#include <vector>

#include "exhaustive/sweep.h"
#include "support/expect.h"
#include "support/precise.h"
#include "vornsr.h"

namespace {

// Everything the sweep learns about one slice of the bit patterns.
struct Findings {
    test::Worst worst;
    std::uint64_t digest = 0;
    std::uint64_t wrongReplacements = 0;
    std::uint32_t wrongAt = 0;
    std::uint64_t notNearest = 0;  // results that are not the correctly rounded ones
};

// ln in double is within 1 unit of 2^-53: next to nothing beside a unit of 2^-24.
void measure(float x, float result, Findings& findings) {
    const double exact = std::log(static_cast<double>(x));
    if (exact == 0.0) {
        findings.worst.meet(result == 0.0f ? 0.0 : 1e9, static_cast<double>(x));
        return;
    }
    const int exponent = static_cast<int>(std::bit_cast<std::uint64_t>(exact) >> 52 & 0x7FF) - 1023;
    const double unit = std::bit_cast<double>(static_cast<std::uint64_t>(exponent - 23 + 1023) << 52);
    findings.worst.meet(std::abs(static_cast<double>(result) - exact) / unit, static_cast<double>(x));
    if (result != static_cast<float>(exact)) ++findings.notNearest;
}

// What a zero, a negative number, an infinity or a not-a-number has to give.
bool isReplaced(std::uint32_t bits, std::uint32_t& replacement) {
    const bool negative = (bits & 0x80000000u) != 0;
    const std::uint32_t size = bits & 0x7FFFFFFFu;
    if (size >= 0x7F800000u) {
        replacement = bits;
    } else if (size == 0) {
        replacement = 0xFF800000u;
    } else if (negative) {
        replacement = 0xFFC00000u;
    } else {
        return false;
    }
    return true;
}

Findings sweepSlice(std::size_t slice, bool withAccuracy) {
    constexpr std::size_t block = 4096;
    static thread_local std::array<std::uint32_t, block> bits, result;
    Findings findings;
    for (std::uint64_t at = 0; at < test::sliceLength; at += block) {
        const auto first = static_cast<std::uint32_t>(slice * test::sliceLength + at);
        for (std::size_t i = 0; i < block; ++i) bits[i] = first + static_cast<std::uint32_t>(i);
        vornsLn_32f(reinterpret_cast<const float*>(bits.data()), reinterpret_cast<float*>(result.data()), block);
        for (std::size_t i = 0; i < block; i += 2) {
            const std::uint64_t pair = result[i] | (std::uint64_t{result[i + 1]} << 32);
            findings.digest = (findings.digest ^ pair) * 0x9E3779B97F4A7C15ull;
            findings.digest ^= findings.digest >> 29;
        }
        if (!withAccuracy) continue;
        for (std::size_t i = 0; i < block; ++i) {
            std::uint32_t replacement;
            if (!isReplaced(bits[i], replacement)) {
                measure(std::bit_cast<float>(bits[i]), std::bit_cast<float>(result[i]), findings);
            } else if (result[i] != replacement) {
                ++findings.wrongReplacements;
                findings.wrongAt = bits[i];
            }
        }
    }
    return findings;
}

Findings sweep(bool withAccuracy) {
    std::vector<Findings> found(test::slices);
    test::eachSlice([&](std::size_t slice) { found[slice] = sweepSlice(slice, withAccuracy); });
    Findings all;
    for (const Findings& one : found) {
        all.worst.meet(one.worst.distance, one.worst.argument);
        all.digest = (all.digest ^ one.digest) * 0x9E3779B97F4A7C15ull;
        all.wrongReplacements += one.wrongReplacements;
        if (one.wrongReplacements != 0) all.wrongAt = one.wrongAt;
        all.notNearest += one.notNearest;
    }
    return all;
}

// The digest of the results whose accuracy the baseline's run measures. A change of the kernel that changes bits
// changes it: take the new one from a run whose accuracy holds.
constexpr std::uint64_t digestOfAll = 0x36F2784D4B8529C6;

TEST(Ln32f, EverySingleNumber) {
    if (const char* why = test::whyNotSweep()) GTEST_SKIP() << why;
    const bool baseline = test::measuresAccuracy();
    const Findings all = sweep(baseline);
    EXPECT_EQ(all.digest, digestOfAll) << std::hex << all.digest;
    if (!baseline) return;
    EXPECT_EQ(all.wrongReplacements, 0u) << std::hex << all.wrongAt;
    // The worst argument once more, against 200 bits.
    const auto x = static_cast<float>(all.worst.argument);
    float result = 0.0f;
    ASSERT_EQ(vornsLn_32f(&x, &result, 1), vornStsNoErr);
    const double distance = log(test::Precise(all.worst.argument)).distance(result);
    EXPECT_LE(distance, 0.84) << all.worst.text();
    EXPECT_NEAR(distance, all.worst.distance, 1e-6) << all.worst.text();
    RecordProperty("worst", all.worst.text());
    RecordProperty("not correctly rounded", std::to_string(all.notNearest));
}

}  // namespace
