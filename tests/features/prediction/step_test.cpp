// Prediction and reflection coefficients.
#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <limits>
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

void compareDown(const std::vector<float>& a) {
    const std::size_t n = a.size();
    const auto expected = model::reflectionsOfPrediction(a);
    const VornStatus status = expected.first == 0 ? vornStsNoErr : vornStsUnstableErr;
    const Guarded<float> src(a), dst(n);
    const std::vector<float> before = dst.values();
    ASSERT_EQ(vornsLPToReflection_32f(src, dst, static_cast<int>(n)), status);
    ASSERT_TRUE(sameBits(dst.data() + expected.first, expected.k.data() + expected.first, n - expected.first)) << n;
    ASSERT_TRUE(sameBits(dst.data(), before.data(), expected.first)) << "below the stop nothing is written";
    ASSERT_TRUE(dst.surroundingsUntouched());
    ASSERT_EQ(vornsLPToReflection_32f(src, src, static_cast<int>(n)), status);
    ASSERT_TRUE(sameBits(src.data() + expected.first, expected.k.data() + expected.first, n - expected.first)) << n;
    ASSERT_TRUE(sameBits(src.data(), a.data(), expected.first)) << "in place";
}

void compareUp(const std::vector<float>& k) {
    const std::size_t n = k.size();
    const auto expected = model::predictionOfReflections(k);
    const Guarded<float> src(k), dst(n);
    ASSERT_EQ(vornsReflectionToLP_32f(src, dst, static_cast<int>(n)), vornStsNoErr);
    ASSERT_TRUE(sameBits(dst.data(), expected.data(), n)) << n;
    ASSERT_TRUE(dst.surroundingsUntouched());
    ASSERT_EQ(vornsReflectionToLP_32f(src, src, static_cast<int>(n)), vornStsNoErr);
    ASSERT_TRUE(sameBits(src.data(), expected.data(), n)) << "in place " << n;
}

TEST(PredictionReflection, EqualsTheModelBitForBit) {
    Random random(1);
    for (std::size_t n = 1; n <= 70; ++n) {
        compareDown(test::stableFilter(random, n, 0.6));
        compareDown(random.floats(n, -2, 2));
        compareUp(test::reflections(random, n, 0.9));
        compareUp(random.floats(n, -3, 3));
    }
    for (std::size_t n : {127, 128, 129, 300, 1001}) {
        compareDown(random.floats(n, -0.02, 0.02));
        compareUp(random.floats(n, -0.1, 0.1));
    }
}

TEST(PredictionReflection, HardValues) {
    Random random(2);
    const auto hard = test::hardFloats<float>();
    for (int turn = 0; turn < 4000; ++turn) {
        const auto n = static_cast<std::size_t>(random.integer(1, 26));
        auto x = random.floats(n, -1, 1);
        x[static_cast<std::size_t>(random.integer(0, static_cast<int>(n) - 1))] = random.pick(hard, 1)[0];
        if (turn % 3 == 0) x = random.pick(hard, n);
        compareDown(x);
        compareUp(x);
    }
}

TEST(PredictionReflection, AnyAlignment) {
    Random random(3);
    const auto a = test::stableFilter(random, 23, 0.5), k = test::reflections(random, 23, 0.5);
    const auto down = model::reflectionsOfPrediction(a).k, up = model::predictionOfReflections(k);
    for (std::size_t at = 0; at < 64; at += 4) {
        for (std::size_t to : {std::size_t{0}, std::size_t{4}, std::size_t{28}, 60 - at}) {
            test::Offset<float> src(23, at), dst(23, to);
            src.assign(a);
            ASSERT_EQ(vornsLPToReflection_32f(src, dst, 23), vornStsNoErr);
            EXPECT_TRUE(sameBits(dst.data(), down.data(), 23));
            src.assign(k);
            ASSERT_EQ(vornsReflectionToLP_32f(src, dst, 23), vornStsNoErr);
            EXPECT_TRUE(sameBits(dst.data(), up.data(), 23));
            EXPECT_TRUE(dst.surroundingsUntouched());
        }
    }
}

TEST(PredictionReflection, DirectedModesAreTheCallers) {
    Random random(4);
    for (unsigned mode : {test::RoundingMode::down, test::RoundingMode::up, test::RoundingMode::towardZero}) {
        for (std::size_t n = 1; n <= 30; ++n) {
            const auto a = test::stableFilter(random, n, 0.5), k = test::reflections(random, n, 0.9);
            const test::RoundingMode set(mode);
            compareDown(a);
            compareUp(k);
        }
    }
}

TEST(PredictionReflection, Literals) {
    // k2 = -a2 = -0.5; a1 of order 1 = (a1 k2 + a1) / (1 - 1/4) = (-0.5 + 1) / 0.75, the quotient as a reciprocal.
    const float a[] = {1.0f, 0.5f};
    float k[2], back[2];
    ASSERT_EQ(vornsLPToReflection_32f(a, k, 2), vornStsNoErr);
    EXPECT_EQ(k[1], -0.5f);
    EXPECT_EQ(k[0], -(0.5f * (1.0f / 0.75f)));
    const float reflections[] = {0.5f, -0.25f, 0.125f};
    // Order 1: -0.5. Order 2: -0.5 - 0.125 = -0.625 from -0.5 - (-0.5)(-0.25), and 0.25. Order 3: -0.625 - 0.25 x
    // 0.125, 0.25 + 0.625 x 0.125, -0.125.
    float up[3];
    ASSERT_EQ(vornsReflectionToLP_32f(reflections, up, 3), vornStsNoErr);
    EXPECT_EQ(up[0], -0.65625f);
    EXPECT_EQ(up[1], 0.328125f);
    EXPECT_EQ(up[2], -0.125f);
    ASSERT_EQ(vornsReflectionToLP_32f(k, back, 2), vornStsNoErr);
    EXPECT_NEAR(back[0], 1.0, 1e-7);
    EXPECT_EQ(back[1], 0.5f);
}

TEST(PredictionReflection, OnlyMagnitudeOneStops) {
    const float nan = std::numeric_limits<float>::quiet_NaN();
    for (std::size_t n = 1; n <= 20; ++n) {
        // Zeros above it are reflection coefficients of 0 and leave the rest as it is: they are written before the
        // stop.
        for (std::size_t above = 0; above <= 3; ++above) {
            for (float last : {1.0f, -1.0f, nan}) {
                if (above > 0 && std::isnan(last)) continue;  // which 0 multiplies, and spreads
                std::vector<float> a(n + above, 0.0f), k(n + above, 77.0f), expected(n, 77.0f);
                a[n - 1] = last;
                expected.resize(n + above, 0.0f);
                EXPECT_EQ(vornsLPToReflection_32f(a.data(), k.data(), static_cast<int>(n + above)), vornStsUnstableErr);
                EXPECT_EQ(k, expected);
            }
        }
        for (float last : {1.5f, -1.5f, std::nextafter(1.0f, 2.0f), std::nextafter(1.0f, 0.0f), 1e30f}) {
            std::vector<float> a(n, 0.0f), k(n, 77.0f);
            a[n - 1] = last;
            EXPECT_EQ(vornsLPToReflection_32f(a.data(), k.data(), static_cast<int>(n)), vornStsNoErr) << last;
            EXPECT_EQ(k[n - 1], -last);
        }
    }
}

// A tone without a window: the prediction of order 2 has its roots on the circle.
TEST(PredictionReflection, AToneIsUnstable) {
    const float a[] = {-2.0f * 0.5f, 1.0f};
    float k[] = {77, 77};
    EXPECT_EQ(vornsLPToReflection_32f(a, k, 2), vornStsUnstableErr);
    EXPECT_EQ(k[0], 77);
    EXPECT_EQ(k[1], 77);
}

// Against the filters of long double, and there and back.
TEST(PredictionReflection, TurnsBackIntoItself) {
    Random random(5);
    double down = 0, up = 0, round = 0;
    for (int turn = 0; turn < 200; ++turn) {
        for (std::size_t n : {1, 2, 3, 4, 5, 8, 10, 12, 15, 16, 17, 22}) {
            const auto k = test::reflections(random, n, 0.5);
            const auto a = test::rounded(test::filterOfReflections(k));
            std::vector<float> there(n), back(n);
            ASSERT_EQ(vornsReflectionToLP_32f(k.data(), there.data(), static_cast<int>(n)), vornStsNoErr);
            up = std::max(up, test::largestDistance(there, a));
            ASSERT_EQ(vornsLPToReflection_32f(there.data(), back.data(), static_cast<int>(n)), vornStsNoErr);
            round = std::max(round, test::largestDistance(back, k));
            ASSERT_EQ(vornsLPToReflection_32f(a.data(), back.data(), static_cast<int>(n)), vornStsNoErr);
            down = std::max(down, test::largestDistance(back, k));
        }
    }
    EXPECT_LT(up, 2e-6);
    EXPECT_LT(down, 1e-4);
    EXPECT_LT(round, 1e-4);
    EXPECT_GT(round, 0.0) << "singles were at work";
}

// Every coefficient of 16 bits, and two of them for the halves.
TEST(PredictionReflection, FixedFormsEqualTheModel) {
    Random random(6);
    const auto hard = test::hardIntegers<Vorn16s>();
    const auto compare = [&](const std::vector<Vorn16s>& x, int scale) {
        const std::size_t n = x.size();
        const auto singles = model::singlesOf(x, model::negatedScale(scale));
        const auto down = model::reflectionsOfPrediction(singles);
        const auto expectedDown = model::shortsOf(down.k, scale, model::wrappedShort);
        const auto expectedUp = model::shortsOf(model::predictionOfReflections(singles), scale, model::packedShort);
        const Guarded<Vorn16s> src(x), dst(n);
        const auto before = dst.values();
        ASSERT_EQ(vornsLPToReflection_16s_Sfs(src, dst, static_cast<int>(n), scale), vornStsNoErr);
        ASSERT_TRUE(sameBits(dst.data() + down.first, expectedDown.data() + down.first, n - down.first)) << scale;
        ASSERT_TRUE(sameBits(dst.data(), before.data(), down.first)) << "elements below the stop stay as they were";
        ASSERT_EQ(vornsReflectionToLP_16s_Sfs(src, dst, static_cast<int>(n), scale), vornStsNoErr);
        ASSERT_TRUE(sameBits(dst.data(), expectedUp.data(), n)) << scale;
        ASSERT_TRUE(dst.surroundingsUntouched());
        ASSERT_EQ(vornsReflectionToLP_16s_Sfs(src, src, static_cast<int>(n), scale), vornStsNoErr);
        ASSERT_TRUE(sameBits(src.data(), expectedUp.data(), n)) << "in place " << scale;
    };
    for (int scale : {INT_MIN, INT_MIN + 1, -1000, -150, -149, -128, -127, -40, -16, -15, -14, -13, -12, -8,     -2,
                      -1,      0,           1,     2,    8,    15,   16,   40,  112, 113, 127, 128, 150, INT_MAX}) {
        for (std::size_t n = 1; n <= 20; ++n) {
            compare(random.integers<Vorn16s>(n), scale);
            compare(random.pick(hard, n), scale);
            compare(random.integers<Vorn16s>(n, Vorn16s{-9}, Vorn16s{9}), scale);
        }
    }
    for (unsigned mode : {test::RoundingMode::down, test::RoundingMode::up, test::RoundingMode::towardZero}) {
        for (std::size_t n = 1; n <= 20; ++n) {
            const auto x = random.integers<Vorn16s>(n, Vorn16s{-9000}, Vorn16s{9000});
            const test::RoundingMode set(mode);
            for (int scale : {-15, -14, -3, 0, 1}) compare(x, scale);
        }
    }
    for (std::size_t n : {63, 64, 65, 130}) compare(random.integers<Vorn16s>(n, Vorn16s{-300}, Vorn16s{300}), -12);
}

// With k = x, y the first result is -x + x y: exact, and every border of the rule is met.
TEST(PredictionReflection, PacksWithSaturation) {
    const auto first = [](int x, int y, int scale) {
        const Vorn16s src[] = {static_cast<Vorn16s>(x), static_cast<Vorn16s>(y)};
        Vorn16s dst[2];
        EXPECT_EQ(vornsReflectionToLP_16s_Sfs(src, dst, 2, scale), vornStsNoErr);
        return dst[0];
    };
    for (int x = -32768; x <= 32767; x += 3) {
        for (int y : {0, 1, 2, -1, -2, 100}) {
            // At scale 0 the way in and out changes nothing: -x - (-x) y.
            EXPECT_EQ(first(x, y, 0), std::clamp(-x + x * y, -32768, 32767));
        }
    }
    EXPECT_EQ(first(32767, 32767, 0), 32767) << "just within 32 bits";
    // At scale -1 singles are half as large: x/2 (y/2 - 1), which comes out times 2: x (y - 2) / 2, ties to even.
    for (int x = -200; x <= 200; ++x) {
        EXPECT_EQ(first(x, 3, -1), std::nearbyint(x / 2.0));
    }
    // At scale 1 singles are twice as large: 2x (2y - 1), half of which comes out: x (2y - 1), beyond 32 bits from
    // 2^31.
    EXPECT_EQ(first(32767, 32767, 1), 32767) << "2^31 - 163837";
    EXPECT_EQ(first(32767, 32767, 2), -32768) << "beyond 32 bits, although positive";
    EXPECT_EQ(first(-32768, 32767, 2), -32768);
    EXPECT_EQ(first(-32768, -32768, 2), -32768) << "beyond 32 bits, although positive";
}

TEST(PredictionReflection, ChecksInOrder) {
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
    expectOrder([](Singles& a) { return vornsLPToReflection_32f(a.src, a.dst, a.n); }, Singles());
    expectOrder([](Singles& a) { return vornsReflectionToLP_32f(a.src, a.dst, a.n); }, Singles());
    expectOrder([](Shorts& a) { return vornsLPToReflection_16s_Sfs(a.src, a.dst, a.n, 0); }, Shorts());
    expectOrder([](Shorts& a) { return vornsReflectionToLP_16s_Sfs(a.src, a.dst, a.n, 0); }, Shorts());
}

TEST(PredictionReflection, MemoryFromOrder16On) {
    if (!test::FailAllocation::available()) GTEST_SKIP() << "the sanitizer's allocator stands in the place of ours";
    const std::vector<float> x(100, 0.01f), filled(100, 77);
    std::vector<float> unstable(100, 0.01f);
    unstable[15] = 1.0f;
    const std::vector<Vorn16s> s(100, 5), filledShorts(100, 77);
    for (auto convert : {vornsLPToReflection_32f, vornsReflectionToLP_32f}) {
        std::vector<float> y = filled;
        {
            test::FailAllocation fail(1);
            EXPECT_EQ(convert(x.data(), y.data(), 15), vornStsNoErr);
            EXPECT_EQ(fail.calls(), 0);
        }
        y = filled;
        test::FailAllocation fail(1);
        EXPECT_EQ(convert(x.data(), y.data(), 16), vornStsMemAllocErr);
        EXPECT_EQ(y, filled);
        EXPECT_EQ(convert(x.data(), y.data(), INT_MAX), vornStsMemAllocErr) << "two rows of it are beyond an int";
    }
    {
        std::vector<float> y = filled;
        test::FailAllocation count(0);
        EXPECT_EQ(vornsLPToReflection_32f(unstable.data(), y.data(), 16), vornStsUnstableErr);
        EXPECT_EQ(count.calls(), 1);
        EXPECT_EQ(count.outstanding(), 0) << "released although the filter is unstable";
    }
    for (auto convert : {vornsLPToReflection_16s_Sfs, vornsReflectionToLP_16s_Sfs}) {
        std::vector<Vorn16s> y = filledShorts;
        int calls;
        {
            test::FailAllocation count(0);
            EXPECT_EQ(convert(s.data(), y.data(), 100, -12), vornStsNoErr);
            calls = count.calls();
            EXPECT_EQ(count.outstanding(), 0);
        }
        EXPECT_EQ(calls, 2);
        for (int n = 1; n <= calls; ++n) {
            y = filledShorts;
            test::FailAllocation fail(n);
            EXPECT_EQ(convert(s.data(), y.data(), 100, -12), vornStsMemAllocErr);
            EXPECT_EQ(y, filledShorts);
            EXPECT_EQ(fail.outstanding(), 0);
        }
    }
}

}  // namespace
