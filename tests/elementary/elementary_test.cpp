// The double-precision elementary functions against values of 200 bits, with the bounds that their header states.
#include "elementary/elementary.h"

#include <bit>
#include <cmath>
#include <limits>
#include <numbers>
#include <vector>

#include "support/expect.h"
#include "support/precise.h"
#include "support/values.h"

namespace {

constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double nan = std::numeric_limits<double>::quiet_NaN();

template <class Function, class Reference>
test::Worst worstOf(Function function, Reference reference, const std::vector<double>& arguments) {
    test::Worst worst;
    for (double x : arguments) worst.meet(reference(test::Precise(x)).distance(function(x)), x);
    return worst;
}

// x and its neighbours, some doubles to each side.
void addNeighbours(std::vector<double>& arguments, double x, int count = 3) {
    double below = x, above = x;
    arguments.push_back(x);
    for (int i = 0; i < count; ++i) {
        arguments.push_back(below = std::nextafter(below, -infinity));
        arguments.push_back(above = std::nextafter(above, infinity));
    }
}

TEST(Exp64, IsWithinItsBound) {
    test::Random random(1);
    std::vector<double> arguments;
    for (int i = 0; i < 40000; ++i) arguments.push_back(random.uniform(-1.0, 1.0));
    for (int i = 0; i < 40000; ++i) arguments.push_back(random.uniform(-745.2, 709.8));
    for (int i = 0; i < 20000; ++i)
        arguments.push_back(random.uniform(-745.2, -707.0));  // results around the denormals
    for (int exponent = -60; exponent < 10; ++exponent) {
        for (int i = 0; i < 100; ++i) arguments.push_back(std::ldexp(random.uniform(-2.0, 2.0), exponent));
    }
    // The borders of the reduction, where what is left is largest.
    for (int k = -137000; k < 131000; k += 97) addNeighbours(arguments, (k + 0.5) * (std::numbers::ln2 / 128), 1);
    const test::Worst worst = worstOf(
        vorn::exp64, [](const test::Precise& x) { return exp(x); }, arguments);
    EXPECT_LE(worst.distance, 0.511) << worst.text();
    RecordProperty("worst", worst.text());
}

TEST(Exp64, SpecialCases) {
    EXPECT_EQ(vorn::exp64(0.0), 1.0);
    EXPECT_EQ(vorn::exp64(-0.0), 1.0);
    EXPECT_EQ(vorn::exp64(0x1p-60), 1.0);
    EXPECT_EQ(vorn::exp64(std::numeric_limits<double>::denorm_min()), 1.0);
    EXPECT_EQ(vorn::exp64(1.0), 0x1.5bf0a8b145769p+1);
    EXPECT_EQ(vorn::exp64(709.782712893384), 0x1.fffffffffff2ap+1023);
    EXPECT_EQ(vorn::exp64(709.7827128933841), infinity);
    EXPECT_EQ(vorn::exp64(-0x1.74910d52d3051p9), 0x1p-1074);
    EXPECT_EQ(vorn::exp64(-0x1.74910d52d3052p9), 0.0);
    EXPECT_EQ(vorn::exp64(1e300), infinity);
    EXPECT_EQ(vorn::exp64(-1e300), 0.0);
    EXPECT_EQ(vorn::exp64(infinity), infinity);
    EXPECT_TRUE(test::same(vorn::exp64(-infinity), 0.0));
    EXPECT_TRUE(std::isnan(vorn::exp64(nan)));
}

TEST(Log64, IsWithinItsBound) {
    test::Random random(2);
    std::vector<double> arguments;
    for (int i = 0; i < 40000; ++i) arguments.push_back(random.uniform(0.5, 2.0));
    for (int i = 0; i < 40000; ++i) arguments.push_back(random.uniform(0.98, 1.02));
    for (int i = 0; i < 40000; ++i) arguments.push_back(std::abs(random.anyBits<double>()));
    // Dense near 1: every double next to it, then ever farther ones.
    addNeighbours(arguments, 1.0, 2000);
    for (int exponent = -52; exponent < -1; ++exponent) {
        for (int i = 0; i < 300; ++i) arguments.push_back(1.0 + std::ldexp(random.uniform(-2.0, 2.0), exponent));
    }
    // The borders of the two series and of the steps.
    for (double border : {1.0 - 0x1p-6, 1.0 + 0x1p-6}) addNeighbours(arguments, border, 200);
    for (int step = 0; step < 128; ++step) {
        for (int exponent : {-1074 + 52, -2, -1, 0, 1, 900}) {
            addNeighbours(arguments, std::ldexp(1.0 + step / 128.0, exponent));
        }
    }
    for (int i = 1; i < 3000; ++i) arguments.push_back(i * std::numeric_limits<double>::denorm_min());
    test::Worst worst;
    for (double x : arguments) {
        if (std::isfinite(x) && x > 0.0) worst.meet(log(test::Precise(x)).distance(vorn::log64(x)), x);
    }
    EXPECT_LE(worst.distance, 0.502) << worst.text();
    RecordProperty("worst", worst.text());
}

TEST(Log64, SpecialCases) {
    EXPECT_TRUE(test::same(vorn::log64(1.0), 0.0));
    EXPECT_EQ(vorn::log64(0.0), -infinity);
    EXPECT_EQ(vorn::log64(-0.0), -infinity);
    EXPECT_EQ(vorn::log64(infinity), infinity);
    EXPECT_EQ(vorn::log64(0x1p-1074), -0x1.74385446d71c3p+9);
    EXPECT_EQ(vorn::log64(std::numeric_limits<double>::max()), 0x1.62e42fefa39efp+9);
    for (double x : {-1.0, -0x1p-1074, -1e300, -infinity}) {
        EXPECT_EQ(std::bit_cast<std::uint64_t>(vorn::log64(x)), 0xFFF8000000000000u) << x;
    }
    EXPECT_TRUE(std::isnan(vorn::log64(nan)));
    EXPECT_TRUE(std::isnan(vorn::log64(-nan)));
}

// Angles that are hard on a reduction: all sizes, and the neighbours of multiples of pi/2.
std::vector<double> angles() {
    test::Random random(3);
    std::vector<double> arguments;
    for (int i = 0; i < 40000; ++i) arguments.push_back(random.uniform(-0.8, 0.8));
    for (int i = 0; i < 30000; ++i) arguments.push_back(random.uniform(-4000.0, 4000.0));
    for (int i = 0; i < 10000; ++i) arguments.push_back(random.uniform(-0x1p21, 0x1p21));
    for (int exponent = -1074; exponent < 1023; ++exponent) {
        for (int i = 0; i < 5; ++i) arguments.push_back(std::ldexp(random.uniform(-2.0, 2.0), exponent));
    }
    for (int k = 1; k < 3000; ++k) {
        addNeighbours(arguments, k * (std::numbers::pi / 2), 2);
        addNeighbours(arguments, -k * (std::numbers::pi / 4), 1);
    }
    for (int i = 0; i < 5000; ++i)
        addNeighbours(arguments, std::round(random.uniform(0.0, 667000.0)) * (std::numbers::pi / 2), 1);
    for (double border : {0x1p20, 0.18, 0x1p-27, 0x1p-30}) addNeighbours(arguments, border, 20);
    // The double nearest to a multiple of pi/2, relative to itself (Muller et al., Handbook of Floating-Point
    // Arithmetic, 2010, table 11.1).
    addNeighbours(arguments, 6381956970095103.0 * 0x1p797);
    for (int len : {12, 13, 20, 24, 26, 39}) {  // a cosine table
        for (int i = 0; i < len; ++i) {
            for (int j = 1; j <= len; ++j) arguments.push_back(i * std::numbers::pi * (j - 0.5) / len);
        }
    }
    return arguments;
}

TEST(Sin64, IsWithinItsBound) {
    const test::Worst worst = worstOf(
        vorn::sin64, [](const test::Precise& x) { return sin(x); }, angles());
    EXPECT_LE(worst.distance, 0.521) << worst.text();
    RecordProperty("worst", worst.text());
}

TEST(Cos64, IsWithinItsBound) {
    const test::Worst worst = worstOf(
        vorn::cos64, [](const test::Precise& x) { return cos(x); }, angles());
    EXPECT_LE(worst.distance, 0.521) << worst.text();
    RecordProperty("worst", worst.text());
}

TEST(SinAndCos64, SpecialCases) {
    for (double x : {0.0, -0.0, 0x1p-1074, -0x1p-1074, 0x1p-30, -0x1p-1022}) {
        EXPECT_TRUE(test::same(vorn::sin64(x), x)) << x;
        EXPECT_EQ(vorn::cos64(x), 1.0) << x;
    }
    for (double x : {infinity, -infinity, nan}) {
        EXPECT_TRUE(std::isnan(vorn::sin64(x))) << x;
        EXPECT_TRUE(std::isnan(vorn::cos64(x))) << x;
    }
    EXPECT_EQ(vorn::sin64(std::numbers::pi), 0x1.1a62633145c07p-53);
    EXPECT_EQ(vorn::cos64(std::numbers::pi), -1.0);
    EXPECT_EQ(vorn::cos64(std::numbers::pi / 2), 0x1.1a62633145c07p-54);
    // Odd and even, bit for bit.
    test::Random random(4);
    for (int i = 0; i < 20000; ++i) {
        const double x = std::ldexp(random.uniform(1.0, 2.0), static_cast<int>(random.integer(-10, 40)));
        ASSERT_EQ(vorn::sin64(-x), -vorn::sin64(x)) << x;
        ASSERT_EQ(vorn::cos64(-x), vorn::cos64(x)) << x;
    }
}

}  // namespace
