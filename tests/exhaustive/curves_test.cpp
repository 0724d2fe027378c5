// vornsSinC_32f and vornsExpNegSqr_32f over every single-precision number: the accuracy in one build, the same bits in
// all.
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

constexpr std::size_t block = 4096;

struct Findings {
    test::Worst rounding;  // of the value in double, rounded to single
    test::Worst result;    // of the result
    std::uint64_t digest = 0;
    std::uint64_t wrong = 0;
    std::uint32_t wrongAt = 0;
    std::uint64_t notNearest = 0;  // values that are not the correctly rounded ones
};

// The weight of the last place of a single at this value.
double unitOf(double value) {
    const int exponent = static_cast<int>(std::bit_cast<std::uint64_t>(value) >> 52 & 0x7FF) - 1023;
    return std::bit_cast<double>(static_cast<std::uint64_t>(std::max(exponent - 23, -149) + 1023) << 52);
}

// The single that comes next behind the nearest one.
float secondNearest(double exact) {
    const auto nearest = static_cast<float>(exact);
    return std::nextafter(nearest, exact > static_cast<double>(nearest) ? 2.0f : -2.0f);
}

// A sine in double is within 1 unit of 2^-53: next to nothing beside a unit of 2^-24. The single that was divided is
// the nearest one or, where this is nearly a tie, the one behind it.
bool isQuotient(float x, float result, double sine, Findings& findings) {
    for (float rounded : {static_cast<float>(sine), secondNearest(sine)}) {
        if (std::bit_cast<std::uint32_t>(rounded / x) != std::bit_cast<std::uint32_t>(result)) continue;
        findings.rounding.meet(std::fabs(static_cast<double>(rounded) - sine) / unitOf(sine), static_cast<double>(x));
        if (rounded != static_cast<float>(sine)) ++findings.notNearest;
        return true;
    }
    return false;
}

struct SinC {
    // Beyond, the sine is sin64, element by element, which has a test of its own against 200 bits: here some will do.
    static constexpr float someFrom = 0x1p20f;
    static constexpr std::uint64_t digest = 0x77333991EA3E26C0;
    static constexpr double roundingBound = 0.501, resultBound = 1.501;
    static VornStatus call(const float* x, float* y) { return vornsSinC_32f(x, y, block); }
    static test::Precise exact(double x) { return sin(test::Precise(x)) / test::Precise(x); }
    static bool holds(float x, float result, Findings& findings) {
        if (!std::isfinite(x)) return std::isnan(result);
        if (x < 0x1p-13f) return result == 1.0f;  // x^2/6 is less than a tenth of a last place
        const double sine = std::sin(static_cast<double>(x)), quotient = sine / static_cast<double>(x);
        if (!isQuotient(x, result, sine, findings)) return false;
        findings.result.meet(std::fabs(static_cast<double>(result) - quotient) / unitOf(quotient),
                             static_cast<double>(x));
        return true;
    }
};

struct ExpNegSqr {
    static constexpr float someFrom = 16.0f;  // all of them give 0
    static constexpr std::uint64_t digest = 0x95E649421EC42D4C;
    static constexpr double roundingBound = 0.501, resultBound = 0.501;
    static VornStatus call(const float* x, float* y) { return vornsExpNegSqr_32f(x, y, block); }
    static test::Precise exact(double x) {
        return exp(test::Precise(static_cast<double>(-(static_cast<float>(x) * static_cast<float>(x)))));
    }
    static bool holds(float x, float result, Findings& findings) {
        const float exponent = -(x * x);
        if (std::isnan(exponent)) return std::isnan(result);
        if (exponent < -104.0f) return std::bit_cast<std::uint32_t>(result) == 0;
        if (exponent > -0x1p-26f) return result == 1.0f;
        const double value = std::exp(static_cast<double>(exponent));
        findings.rounding.meet(std::fabs(static_cast<double>(result) - value) / unitOf(value), static_cast<double>(x));
        findings.result = findings.rounding;
        if (result != static_cast<float>(value)) ++findings.notNearest;
        return true;
    }
};

// One pattern for all that are not numbers.
std::uint32_t bitsOf(float x) { return std::isnan(x) ? 0x7FC00000u : std::bit_cast<std::uint32_t>(x); }

// The curves are even: what holds for a number holds for its negative if the bits are the same, which one block in
// sixteen has to show.
template <class Curve>
Findings sweepSlice(std::size_t slice, bool withAccuracy) {
    static thread_local std::array<float, block> x, result, mirrored;
    Findings findings;
    const auto wrong = [&](std::size_t i) {
        ++findings.wrong;
        findings.wrongAt = std::bit_cast<std::uint32_t>(x[i]);
    };
    for (std::uint64_t at = 0; at < test::sliceLength; at += block) {
        const auto first = static_cast<std::uint32_t>(slice * test::sliceLength + at);
        const bool some = at % (16 * block) == 0;
        if (!some && std::bit_cast<float>(first) >= Curve::someFrom) continue;
        for (std::size_t i = 0; i < block; ++i) x[i] = std::bit_cast<float>(first + static_cast<std::uint32_t>(i));
        Curve::call(x.data(), result.data());
        for (std::size_t i = 0; i < block; i += 2) {
            const std::uint64_t pair = bitsOf(result[i]) | (std::uint64_t{bitsOf(result[i + 1])} << 32);
            findings.digest = (findings.digest ^ pair) * 0x9E3779B97F4A7C15ull;
            findings.digest ^= findings.digest >> 29;
        }
        for (std::size_t i = 0; i < block && withAccuracy; ++i) {
            if (!Curve::holds(x[i], result[i], findings)) wrong(i);
        }
        if (!some) continue;
        for (float& value : x) value = -value;
        Curve::call(x.data(), mirrored.data());
        for (std::size_t i = 0; i < block; ++i) {
            if (!test::same(result[i], mirrored[i])) wrong(i);
        }
    }
    return findings;
}

template <class Curve>
Findings sweep(bool withAccuracy) {
    std::vector<Findings> found(test::slices);
    test::eachSlice([&](std::size_t slice) {
        if (slice < test::slices / 2) found[slice] = sweepSlice<Curve>(slice, withAccuracy);
    });
    Findings all;
    for (const Findings& one : found) {
        all.rounding.meet(one.rounding.distance, one.rounding.argument);
        all.result.meet(one.result.distance, one.result.argument);
        all.digest = (all.digest ^ one.digest) * 0x9E3779B97F4A7C15ull;
        all.wrong += one.wrong;
        if (one.wrong != 0) all.wrongAt = one.wrongAt;
        all.notNearest += one.notNearest;
    }
    return all;
}

template <class Curve>
void expectEverySingle() {
    if (const char* why = test::whyNotSweep()) GTEST_SKIP() << why;
    const bool baseline = test::measuresAccuracy();
    const Findings all = sweep<Curve>(baseline);
    EXPECT_EQ(all.digest, Curve::digest) << std::hex << all.digest;
    EXPECT_EQ(all.wrong, 0u) << std::hex << all.wrongAt;
    if (!baseline) return;
    EXPECT_LE(all.rounding.distance, Curve::roundingBound) << all.rounding.text();
    // The worst argument once more, against 200 bits.
    std::array<float, block> x, result;
    x.fill(static_cast<float>(all.result.argument));
    Curve::call(x.data(), result.data());
    const double distance = Curve::exact(all.result.argument).distance(result[0]);
    EXPECT_LE(distance, Curve::resultBound) << all.result.text();
    EXPECT_NEAR(distance, all.result.distance, 1e-6) << all.result.text();
    ::testing::Test::RecordProperty("worst", all.result.text());
    ::testing::Test::RecordProperty("worst rounding", all.rounding.text());
    ::testing::Test::RecordProperty("not correctly rounded", std::to_string(all.notNearest));
}

// The digests of the results whose accuracy the baseline's run measures. A change of a kernel that changes bits changes
// them: take the new ones from a run whose accuracy holds.
TEST(SinC32f, EverySingleNumber) { expectEverySingle<SinC>(); }
TEST(ExpNegSqr32f, EverySingleNumber) { expectEverySingle<ExpNegSqr>(); }

}  // namespace
