// Prediction coefficients and cepstrum.
#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <vector>

#include "filters.h"
#include "model/prediction_conversions.h"
#include "support/allocation.h"
#include "support/expect.h"
#include "support/guarded.h"
#include "support/rounding_mode.h"
#include "support/values.h"
#include "vornsr.h"

namespace {

using test::Guarded;
using test::Random;
using test::sameBits;

using Convert = VornStatus (*)(const Vorn32f*, Vorn32f*, int);
using Model = std::vector<float> (*)(const std::vector<float>&);
struct Direction {
    Convert convert;
    Model model;
};
const Direction directions[] = {{vornsLPToCepstrum_32f, model::cepstrumOfPrediction},
                                {vornsCepstrumToLP_32f, model::predictionOfCepstrum}};

void compare(const Direction& direction, const std::vector<float>& x) {
    const std::vector<float> expected = direction.model(x);
    const Guarded<float> src(x), dst(x.size());
    ASSERT_EQ(direction.convert(src, dst, static_cast<int>(x.size())), vornStsNoErr);
    ASSERT_TRUE(sameBits(dst.data(), expected.data(), x.size()));
    ASSERT_TRUE(dst.surroundingsUntouched());
}

TEST(PredictionCepstrum, EqualsTheModelBitForBit) {
    Random random(1);
    for (const Direction& direction : directions) {
        for (std::size_t n = 1; n <= 70; ++n) {
            compare(direction, test::stableFilter(random, n, 0.5));
            compare(direction, random.floats(n, -3, 3));
        }
        for (std::size_t n : {127, 128, 129, 300, 1001}) compare(direction, random.floats(n, -0.01, 0.01));
    }
}

TEST(PredictionCepstrum, HardValues) {
    Random random(2);
    const auto hard = test::hardFloats<float>();
    for (const Direction& direction : directions) {
        for (int turn = 0; turn < 3000; ++turn) {
            const auto n = static_cast<std::size_t>(random.integer(1, 24));
            auto x = random.floats(n, -1, 1);
            x[static_cast<std::size_t>(random.integer(0, static_cast<int>(n) - 1))] = random.pick(hard, 1)[0];
            compare(direction, turn % 2 ? x : random.pick(hard, n));
        }
    }
}

TEST(PredictionCepstrum, AnyAlignment) {
    Random random(3);
    const auto x = random.floats(23, -1, 1);
    for (const Direction& direction : directions) {
        const std::vector<float> expected = direction.model(x);
        for (std::size_t at = 0; at < 64; at += 4) {
            for (std::size_t to : {std::size_t{0}, std::size_t{4}, std::size_t{28}, 60 - at}) {
                test::Offset<float> src(23, at), dst(23, to);
                src.assign(x);
                ASSERT_EQ(direction.convert(src, dst, 23), vornStsNoErr);
                EXPECT_TRUE(sameBits(dst.data(), expected.data(), 23));
                EXPECT_TRUE(dst.surroundingsUntouched());
            }
        }
    }
}

TEST(PredictionCepstrum, DirectedModesAreTheCallers) {
    Random random(4);
    for (unsigned mode : {test::RoundingMode::down, test::RoundingMode::up, test::RoundingMode::towardZero}) {
        for (std::size_t n = 1; n <= 30; ++n) {
            const auto x = random.floats(n, -1, 1);
            for (const Direction& direction : directions) {
                const test::RoundingMode set(mode);
                compare(direction, x);
            }
        }
    }
}

TEST(PredictionCepstrum, Literals) {
    float dst[3];
    const float one[] = {0.75f};
    ASSERT_EQ(vornsLPToCepstrum_32f(one, dst, 1), vornStsNoErr);
    EXPECT_EQ(dst[0], -0.75f);
    ASSERT_EQ(vornsCepstrumToLP_32f(one, dst, 1), vornStsNoErr);
    EXPECT_EQ(dst[0], -0.75f);
    // c1 = -1, c2 = -((1 x 1)(-1)/2 + 2) = -1.5, c3 = -(((2 x 1)(-1.5) + (1 x 2)(-1))/3 + 5) = -(-5/3 + 5).
    const float three[] = {1, 2, 5};
    ASSERT_EQ(vornsLPToCepstrum_32f(three, dst, 3), vornStsNoErr);
    EXPECT_EQ(dst[0], -1.0f);
    EXPECT_EQ(dst[1], -1.5f);
    EXPECT_EQ(dst[2], -(-5.0f / 3.0f + 5.0f));
    // a1 = -1, a2 = -((1 x 1)(-1)/2 + 2) = -1.5, a3 = -(((2 x 2)(-1) + (1 x 1)(-1.5))/3 + 5) = -(-5.5/3 + 5).
    ASSERT_EQ(vornsCepstrumToLP_32f(three, dst, 3), vornStsNoErr);
    EXPECT_EQ(dst[0], -1.0f);
    EXPECT_EQ(dst[1], -1.5f);
    EXPECT_EQ(dst[2], -(-5.5f / 3.0f + 5.0f));
}

// The logarithm of 1 / |A|^2 over the unit circle is a series of cosines with twice the cepstrum for coefficients.
TEST(PredictionCepstrum, IsThatOfTheLogSpectrum) {
    Random random(5);
    const long double pi = 3.14159265358979323846264338327950288L;
    for (std::size_t n : {1, 2, 3, 4, 5, 10, 16, 21, 22, 30}) {
        const auto a = test::stableFilter(random, n, 0.3);
        std::vector<float> c(n), back(n);
        ASSERT_EQ(vornsLPToCepstrum_32f(a.data(), c.data(), static_cast<int>(n)), vornStsNoErr);
        constexpr int points = 4096;
        std::vector<long double> sums(n);
        for (int p = 0; p < points; ++p) {
            const long double w = 2 * pi * p / points;
            long double re = 1, im = 0;
            for (std::size_t j = 0; j < n; ++j) {
                re += a[j] * std::cos(w * (j + 1));
                im -= a[j] * std::sin(w * (j + 1));
            }
            const long double level = -std::log(re * re + im * im);
            for (std::size_t j = 0; j < n; ++j) sums[j] += level * std::cos(w * (j + 1)) / points;
        }
        EXPECT_LT(test::largestDistance(c, test::rounded(sums)), 2e-6) << n;
        ASSERT_EQ(vornsCepstrumToLP_32f(c.data(), back.data(), static_cast<int>(n)), vornStsNoErr);
        EXPECT_LT(test::largestDistance(back, a), 2e-6) << n;
    }
}

// Of the fixed-point forms, whose singles are those of the forms above.
using Fixed = VornStatus (*)(const Vorn16s*, Vorn16s*, int, int);
using Store = Vorn16s (*)(float, int);

void compareFixed(Fixed convert, Model model, Store store, const std::vector<Vorn16s>& x, int scale) {
    const auto expected = model::shortsOf(model(model::singlesOf(x, model::negatedScale(scale))), scale, store);
    const Guarded<Vorn16s> src(x), dst(x.size());
    ASSERT_EQ(convert(src, dst, static_cast<int>(x.size()), scale), vornStsNoErr);
    ASSERT_TRUE(sameBits(dst.data(), expected.data(), x.size())) << "scale " << scale;
    ASSERT_TRUE(dst.surroundingsUntouched());
    ASSERT_EQ(convert(src, src, static_cast<int>(x.size()), scale), vornStsNoErr);
    ASSERT_TRUE(sameBits(src.data(), expected.data(), x.size())) << "in place, scale " << scale;
}

const int scales[] = {INT_MIN, INT_MIN + 1, -1000, -151, -150, -149, -129, -128, -127, -126, -40, -20,    -16,
                      -15,     -14,         -13,   -12,  -8,   -4,   -2,   -1,   0,    1,    2,   3,      8,
                      12,      15,          16,    40,   111,  112,  113,  126,  127,  128,  150, INT_MAX};

TEST(PredictionCepstrum, FixedFormsEqualTheModel) {
    Random random(6);
    const auto hard = test::hardIntegers<Vorn16s>();
    for (int scale : scales) {
        for (std::size_t n = 1; n <= 24; ++n) {
            for (const auto& x : {random.integers<Vorn16s>(n), random.pick(hard, n),
                                  random.integers<Vorn16s>(n, Vorn16s{-20}, Vorn16s{20})}) {
                compareFixed(vornsLPToCepstrum_16s_Sfs, model::cepstrumOfPrediction, model::wrappedShort, x, scale);
                compareFixed(vornsCepstrumToLP_16s_Sfs, model::predictionOfCepstrum, model::nearestShort, x, scale);
            }
        }
    }
    for (std::size_t n : {63, 64, 65, 130}) {
        const auto x = random.integers<Vorn16s>(n, Vorn16s{-300}, Vorn16s{300});
        compareFixed(vornsLPToCepstrum_16s_Sfs, model::cepstrumOfPrediction, model::wrappedShort, x, -12);
        compareFixed(vornsCepstrumToLP_16s_Sfs, model::predictionOfCepstrum, model::nearestShort, x, -12);
    }
}

// With two coefficients a and 0 the second result is a^2 / 2: every half, every wrap and every saturation.
TEST(PredictionCepstrum, TheTwoRulesOfTheStore) {
    for (int a = -32768; a <= 32767; ++a) {
        const Vorn16s src[] = {static_cast<Vorn16s>(a), 0};
        Vorn16s wrapped[2], saturated[2];
        ASSERT_EQ(vornsLPToCepstrum_16s_Sfs(src, wrapped, 2, 0), vornStsNoErr);
        ASSERT_EQ(vornsCepstrumToLP_16s_Sfs(src, saturated, 2, 0), vornStsNoErr);
        const std::int64_t square = std::int64_t{a} * a;
        // The magnitude of -32768 wraps; conversions saturate it.
        ASSERT_EQ(wrapped[0], a == -32768 ? -32768 : -a);
        ASSERT_EQ(saturated[0], a == -32768 ? 32767 : -a);
        const std::int64_t nearest = square % 2 == 0 ? square / 2 : square / 2 + (square / 2) % 2;
        ASSERT_EQ(saturated[1], std::min<std::int64_t>(nearest, 32767)) << a;
        if (square < 1 << 23) {  // exact singles, and their halves
            ASSERT_EQ(wrapped[1], static_cast<Vorn16s>(static_cast<std::uint16_t>((square + 1) / 2))) << a;
        }
    }
    // Beyond 32 bits, and where a factor of zero meets an infinity, the wrapped form stores 0.
    const Vorn16s large[] = {32767, 0, 0};
    Vorn16s dst[3];
    ASSERT_EQ(vornsLPToCepstrum_16s_Sfs(large, dst, 3, 0), vornStsNoErr);
    EXPECT_EQ(dst[2], 0) << "-32767^3 / 3";
    ASSERT_EQ(vornsCepstrumToLP_16s_Sfs(large, dst, 3, 0), vornStsNoErr);
    EXPECT_EQ(dst[2], -32768);
    ASSERT_EQ(vornsLPToCepstrum_16s_Sfs(large, dst, 1, INT_MAX), vornStsNoErr);
    EXPECT_EQ(dst[0], 0) << "infinity times zero";
    ASSERT_EQ(vornsLPToCepstrum_16s_Sfs(large, dst, 1, INT_MIN), vornStsNoErr);
    EXPECT_EQ(dst[0], 0) << "zero times infinity";
}

// 0.5 is added in the caller's mode, conversions round to nearest in any.
TEST(PredictionCepstrum, FixedFormsInDirectedModes) {
    Random random(7);
    for (unsigned mode : {test::RoundingMode::down, test::RoundingMode::up, test::RoundingMode::towardZero}) {
        for (std::size_t n = 1; n <= 20; ++n) {
            const auto x = random.integers<Vorn16s>(n, Vorn16s{-3000}, Vorn16s{3000});
            const test::RoundingMode set(mode);
            for (int scale : {-13, -12, -3, 0, 5}) {
                compareFixed(vornsLPToCepstrum_16s_Sfs, model::cepstrumOfPrediction, model::wrappedShort, x, scale);
                compareFixed(vornsCepstrumToLP_16s_Sfs, model::predictionOfCepstrum, model::nearestShort, x, scale);
            }
            ASSERT_EQ(test::RoundingMode::current(), mode);
        }
    }
}

TEST(PredictionCepstrum, ChecksInOrder) {
    const auto expectOrder = [](auto call, auto example) {
        using A = decltype(example);
        test::expectCheckOrder<A>([] { return A(); }, call, [](A& a) { return a.untouched(); },
                                  {{"src", vornStsNullPtrErr, [](A& a) { a.src = nullptr; }},
                                   {"dst", vornStsNullPtrErr, [](A& a) { a.dst = nullptr; }},
                                   {"n 0", vornStsSizeErr, [](A& a) { a.n = 0; }},
                                   {"n -1", vornStsSizeErr, [](A& a) { a.n = -1; }},
                                   {"n INT_MIN", vornStsSizeErr, [](A& a) { a.n = INT_MIN; }}});
    };
    using Singles = test::Conversion<Vorn32f>;
    using Shorts = test::Conversion<Vorn16s>;
    expectOrder([](Singles& a) { return vornsLPToCepstrum_32f(a.src, a.dst, a.n); }, Singles());
    expectOrder([](Singles& a) { return vornsCepstrumToLP_32f(a.src, a.dst, a.n); }, Singles());
    expectOrder([](Shorts& a) { return vornsLPToCepstrum_16s_Sfs(a.src, a.dst, a.n, 0); }, Shorts());
    expectOrder([](Shorts& a) { return vornsCepstrumToLP_16s_Sfs(a.src, a.dst, a.n, 0); }, Shorts());
}

TEST(PredictionCepstrum, Memory) {
    if (!test::FailAllocation::available()) GTEST_SKIP() << "the sanitizer's allocator stands in the place of ours";
    std::vector<float> x(300, 0.001f), y(300);
    std::vector<Vorn16s> s(300, 5), d(300, 77);
    for (const Direction& direction : directions) {
        test::FailAllocation fail(1);
        EXPECT_EQ(direction.convert(x.data(), y.data(), 300), vornStsNoErr);
        EXPECT_EQ(fail.calls(), 0);
    }
    for (Fixed convert : {vornsLPToCepstrum_16s_Sfs, vornsCepstrumToLP_16s_Sfs}) {
        test::FailAllocation fail(1);
        EXPECT_EQ(convert(s.data(), d.data(), 65, -12), vornStsMemAllocErr);
        EXPECT_EQ(d, std::vector<Vorn16s>(300, 77));
        EXPECT_EQ(fail.outstanding(), 0);
    }
    for (Fixed convert : {vornsLPToCepstrum_16s_Sfs, vornsCepstrumToLP_16s_Sfs}) {
        test::FailAllocation fail(1);
        EXPECT_EQ(convert(s.data(), d.data(), 64, -12), vornStsNoErr);
        EXPECT_EQ(fail.calls(), 0);
        // More than an int can count of singles.
        EXPECT_EQ(convert(s.data(), d.data(), INT_MAX, -12), vornStsMemAllocErr);
    }
}

}  // namespace
