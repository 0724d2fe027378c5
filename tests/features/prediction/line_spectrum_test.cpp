// Line spectral frequencies.
#include "model/line_spectrum.h"

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

void compareSearch(const std::vector<float>& a, int nGrid, int nDiv) {
    const std::size_t order = a.size();
    const auto expected = model::linesOfPrediction(a, nGrid, nDiv);
    const VornStatus status = expected.size() == order ? vornStsNoErr : vornStsNoRootErr;
    const Guarded<float> src(a), dst(order);
    const Guarded<int> count(1);
    const auto before = dst.values();
    ASSERT_EQ(vornsLPToLSP_32f(src, dst, static_cast<int>(order), count, nGrid, nDiv), status);
    ASSERT_EQ(count[0], static_cast<int>(expected.size())) << "order " << order << " grid " << nGrid;
    ASSERT_TRUE(sameBits(dst.data(), expected.data(), expected.size()))
        << "order " << order << " grid " << nGrid << " nDiv " << nDiv;
    ASSERT_TRUE(sameBits(dst.data() + expected.size(), before.data() + expected.size(), order - expected.size()));
    ASSERT_TRUE(dst.surroundingsUntouched());
    ASSERT_EQ(vornsLPToLSP_32f(src, src, static_cast<int>(order), count, nGrid, nDiv), status);
    ASSERT_TRUE(sameBits(src.data(), expected.data(), expected.size())) << "in place";
}

std::vector<float> lineFilter(Random& random, std::size_t order, double jitter) {
    return test::withLineSign(test::filterOfLines(test::spreadLines(random, order, jitter)));
}

TEST(LineSpectrum, SearchEqualsTheModelBitForBit) {
    Random random(1);
    for (std::size_t order = 1; order <= 26; ++order) {
        for (int nGrid : {1,  2,  3,  4,  5,  6,  7,  8,  12,  13,  30,  59,  60,  61,  62,
                          63, 64, 65, 66, 67, 68, 69, 70, 127, 128, 129, 133, 500, 1023}) {
            if (static_cast<int>(order) > nGrid) continue;
            for (int nDiv : {1, 2, 3, 4, 7}) {
                compareSearch(lineFilter(random, order, 0.4), nGrid, nDiv);
                compareSearch(test::stableFilter(random, order, 0.8), nGrid, nDiv);
            }
            compareSearch(random.floats(order, -2, 2), nGrid, 4);
        }
    }
    for (std::size_t order : {64, 127, 254, 255, 300}) compareSearch(lineFilter(random, order, 0.3), 1500, 4);
}

TEST(LineSpectrum, SearchOfHardValues) {
    Random random(2);
    const auto hard = test::hardFloats<float>();
    for (int turn = 0; turn < 4000; ++turn) {
        const auto order = static_cast<std::size_t>(random.integer(1, 13));
        auto a = random.floats(order, -1, 1);
        a[static_cast<std::size_t>(random.integer(0, static_cast<int>(order) - 1))] = random.pick(hard, 1)[0];
        if (turn % 3 == 0) a = random.pick(hard, order);
        // Values so small that products of two of them are zero.
        if (turn % 3 == 1) {
            for (float& x : a) x = x * 1e-25f;
        }
        compareSearch(a, static_cast<int>(random.integer(static_cast<int>(order), 140)),
                      static_cast<int>(random.integer(1, 9)));
    }
}

TEST(LineSpectrum, NotANumberGivesAsManyOfThem) {
    for (std::size_t order = 1; order <= 12; ++order) {
        for (std::size_t at = 0; at < order; ++at) {
            std::vector<float> a(order, 0.1f), dst(order, 7.0f);
            a[at] = std::numeric_limits<float>::quiet_NaN();
            for (int nGrid : {12, 60, 200}) {
                int roots = -1;
                // However many divisions are asked for.
                EXPECT_EQ(vornsLPToLSP_32f(a.data(), dst.data(), static_cast<int>(order), &roots, nGrid, INT_MAX),
                          vornStsNoErr);
                EXPECT_EQ(roots, static_cast<int>(order));
                for (float x : dst) EXPECT_TRUE(std::isnan(x));
            }
        }
    }
}

// Divisions beyond what singles can tell apart change nothing, and take no time.
TEST(LineSpectrum, DivisionsWithoutEnd) {
    Random random(3);
    for (unsigned mode : {test::RoundingMode::nearest, test::RoundingMode::down, test::RoundingMode::up,
                          test::RoundingMode::towardZero}) {
        for (int turn = 0; turn < 40; ++turn) {
            const auto order = static_cast<std::size_t>(random.integer(1, 12));
            // Zeros have a root of exactly 0, towards which the shortest step, which the upward mode never rounds to 0,
            // may go on for as long as is asked.
            const bool zeros = turn % 4 == 0 && mode != test::RoundingMode::up;
            const auto a = zeros ? std::vector<float>(order, 0.0f) : lineFilter(random, order, 0.4);
            for (int nGrid : {12, 60}) {
                const test::RoundingMode set(mode);
                compareSearch(a, nGrid, 500);
                std::vector<float> few(order, 7.0f), many(order, 7.0f);
                int fewRoots = -1, manyRoots = -1;
                vornsLPToLSP_32f(a.data(), few.data(), static_cast<int>(order), &fewRoots, nGrid, 500);
                vornsLPToLSP_32f(a.data(), many.data(), static_cast<int>(order), &manyRoots, nGrid, INT_MAX);
                EXPECT_EQ(fewRoots, manyRoots);
                EXPECT_TRUE(sameBits(few, many));
            }
        }
    }
}

TEST(LineSpectrum, DirectedModesAreTheCallers) {
    Random random(4);
    for (unsigned mode : {test::RoundingMode::down, test::RoundingMode::up, test::RoundingMode::towardZero}) {
        for (std::size_t order = 1; order <= 22; ++order) {
            const auto a = lineFilter(random, order, 0.4);
            const auto x = test::spreadLines(random, order, 0.4);
            const test::RoundingMode set(mode);
            for (int nGrid : {30, 66, 128}) compareSearch(a, nGrid, 4);
            const auto expected = model::predictionOfLines(x);
            std::vector<float> dst(order);
            ASSERT_EQ(vornsLSPToLP_32f(x.data(), dst.data(), static_cast<int>(order)), vornStsNoErr);
            EXPECT_TRUE(sameBits(dst, expected)) << order;
        }
    }
}

TEST(LineSpectrum, AnyAlignment) {
    Random random(5);
    const auto a = lineFilter(random, 11, 0.3);
    const auto x = model::linesOfPrediction(a, 60, 4), back = model::predictionOfLines(x);
    for (std::size_t at = 0; at < 64; at += 4) {
        test::Offset<float> src(11, at), dst(11, 60 - at);
        int roots;
        src.assign(a);
        ASSERT_EQ(vornsLPToLSP_32f(src, dst, 11, &roots, 60, 4), vornStsNoErr);
        EXPECT_TRUE(sameBits(dst.data(), x.data(), 11));
        src.assign(x);
        ASSERT_EQ(vornsLSPToLP_32f(src, dst, 11), vornStsNoErr);
        EXPECT_TRUE(sameBits(dst.data(), back.data(), 11));
        EXPECT_TRUE(dst.surroundingsUntouched());
    }
}

// Order 1: the one root is at a, with the sign of the predictor. By a line through two values of 2x - 2a.
TEST(LineSpectrum, OrderOne) {
    for (float a : {0.0f, 0.25f, -0.25f, 0.7f, -0.9f, 0.99f}) {
        float root = 7;
        int roots = -1;
        ASSERT_EQ(vornsLPToLSP_32f(&a, &root, 1, &roots, 60, 4), vornStsNoErr);
        EXPECT_EQ(roots, 1);
        EXPECT_NEAR(root, a, 2e-7);
        float back;
        ASSERT_EQ(vornsLSPToLP_32f(&a, &back, 1), vornStsNoErr);
        EXPECT_EQ(back, a);
    }
}

// Order 2 of zeros: P and Q are 2x - 1 and 2x + 1. Order 2 in general: 2x + a1 - 1 + a2 and 2x + a1 + 1 - a2.
TEST(LineSpectrum, OrderTwo) {
    float roots[2];
    int count = -1;
    const float zeros[] = {0, 0};
    ASSERT_EQ(vornsLPToLSP_32f(zeros, roots, 2, &count, 60, 4), vornStsNoErr);
    EXPECT_EQ(count, 2);
    EXPECT_NEAR(roots[0], 0.5, 1e-7);
    EXPECT_NEAR(roots[1], -0.5, 1e-7);
    const float a[] = {-0.5f, 0.25f};
    ASSERT_EQ(vornsLPToLSP_32f(a, roots, 2, &count, 60, 4), vornStsNoErr);
    EXPECT_NEAR(roots[0], 0.625, 1e-7);
    EXPECT_NEAR(roots[1], -0.125, 1e-7);
    float back[2];
    const float lines[] = {0.625f, -0.125f};
    ASSERT_EQ(vornsLSPToLP_32f(lines, back, 2), vornStsNoErr);
    EXPECT_EQ(back[0], -0.5f);
    EXPECT_EQ(back[1], 0.25f);
}

// Order 3, predictor b: q1 = b3 - b1; p1 = -b1 - b3, p2 = -2 b2. Q is 2x + q1; P is p2/2 - 1 + (p1 + 2x) x.
TEST(LineSpectrum, OrderThree) {
    // b = (0.5, -0.25, 0.125): Q = 2x - 0.375; P = 2x^2 - 0.625 x - 0.75.
    const float b[] = {0.5f, -0.25f, 0.125f};
    float roots[3];
    int count = -1;
    ASSERT_EQ(vornsLPToLSP_32f(b, roots, 3, &count, 60, 8), vornStsNoErr);
    EXPECT_EQ(count, 3);
    const double middle = 0.625 / 4, half = std::sqrt(middle * middle + 0.375);
    EXPECT_NEAR(roots[0], middle + half, 2e-7);
    EXPECT_NEAR(roots[1], 0.1875, 2e-7);
    EXPECT_NEAR(roots[2], middle - half, 2e-7);
    // Back, from lines of few digits: (0.75, 0.25, -0.5). P: p1 = -1.5 + 1 = -0.5, p2 = -1.5 x 1 + 2 = 0.5; q1 = -0.5.
    const float lines[] = {0.75f, 0.25f, -0.5f};
    float back[3];
    ASSERT_EQ(vornsLSPToLP_32f(lines, back, 3), vornStsNoErr);
    EXPECT_EQ(back[0], 0.5f);
    EXPECT_EQ(back[1], -0.25f);
    EXPECT_EQ(back[2], 0.0f);
}

// A grid of two steps by hand: x is (1 + 1) - 1 = 1, then 0, then -1, and with fewer than four steps there are only
// bisections.
TEST(LineSpectrum, ACoarseGridByHand) {
    // P = 2x - 1 changes its sign from 1 to 0: mid 0.5 is a root, which does not keep the sign of the value at 0 and
    // becomes xa with the value 0; the secant gives 0 - (-1)(0.5 - 0)/(0 + 1).
    const float zeros[] = {0, 0};
    float roots[2] = {7, 7};
    int count = -1;
    ASSERT_EQ(vornsLPToLSP_32f(zeros, roots, 2, &count, 2, 1), vornStsNoErr);
    EXPECT_EQ(count, 2);
    EXPECT_EQ(roots[0], 0.5f);
    EXPECT_EQ(roots[1], -0.5f);
}

// 0 is a point of the grid of 4 steps, and an exact root of P and of Q one step further on.
TEST(LineSpectrum, AnExactRootOfTheGridCounts) {
    const float a[] = {0, 1};  // P = 2x, Q = 2x
    float roots[2] = {7, 7};
    int count = -1;
    ASSERT_EQ(vornsLPToLSP_32f(a, roots, 2, &count, 4, 2), vornStsNoErr);
    EXPECT_EQ(count, 2);
    EXPECT_EQ(roots[0], 0.0f);
    EXPECT_TRUE(std::isnan(roots[1])) << "the bracket of the other polynomial is the point itself, its secant 0/0";
}

TEST(LineSpectrum, TooFewRootsAreCounted) {
    Random random(6);
    // Two pairs of lines within one step of the grid: its ends have the same sign.
    const std::vector<float> close = {0.41f, 0.40f, 0.39f, 0.38f};
    const auto a = test::withLineSign(test::filterOfLines(close));
    std::vector<float> dst(4, 77.0f);
    int count = -1;
    EXPECT_EQ(vornsLPToLSP_32f(a.data(), dst.data(), 4, &count, 4, 4), vornStsNoRootErr);
    EXPECT_LT(count, 4);
    EXPECT_GE(count, 0);
    for (int i = count; i < 4; ++i) EXPECT_EQ(dst[i], 77.0f);
    EXPECT_EQ(vornsLPToLSP_32f(a.data(), dst.data(), 4, &count, 1000, 4), vornStsNoErr);
    EXPECT_LT(test::largestDistance(dst, close), 1e-3);

    // An unstable filter, two tones with growing amplitude, has lines off the circle at any grid.
    const float unstable[] = {-3.0f, 4.0f, -3.0f, 1.5f};
    EXPECT_EQ(vornsLPToLSP_32f(unstable, dst.data(), 4, &count, 500, 4), vornStsNoRootErr);
    EXPECT_LT(count, 4);
}

// Lines descend, and P and Q come in turn: the values of either polynomial have alternating signs at the lines of the
// other. All against lines from which the filter was made.
TEST(LineSpectrum, FindsTheLinesOfTheFilter) {
    Random random(7);
    // The errors of both ways grow with the order, as the coefficients in between do.
    struct Errors {
        std::size_t order;
        double coarse, fine, back;
    };
    for (const Errors& limit : {Errors{1, 1e-7, 1e-7, 1e-7},
                                {2, 1e-7, 1e-7, 2e-7},
                                {5, 1e-6, 1e-6, 1e-6},
                                {10, 1e-5, 1e-6, 1e-5},
                                {12, 1e-5, 1e-6, 5e-5},
                                {16, 1e-5, 1e-6, 5e-4},
                                {20, 1e-5, 1e-6, 5e-3}}) {
        const std::size_t order = limit.order;
        Errors worst = {order, 0, 0, 0};
        for (int turn = 0; turn < 300; ++turn) {
            const auto x = test::spreadLines(random, order, 0.3);
            const auto a = test::withLineSign(test::filterOfLines(x));
            std::vector<float> found(order), back(order);
            int count = -1;
            // The secant leaves less than the square of a bracket; at 16 divisions only rounding is left.
            for (int nDiv : {4, 16}) {
                ASSERT_EQ(vornsLPToLSP_32f(a.data(), found.data(), static_cast<int>(order), &count, 128, nDiv),
                          vornStsNoErr);
                for (std::size_t i = 1; i < order; ++i) EXPECT_GT(found[i - 1], found[i]);
                double& largest = nDiv == 4 ? worst.coarse : worst.fine;
                largest = std::max(largest, test::largestDistance(found, x));
            }
            ASSERT_EQ(vornsLSPToLP_32f(x.data(), back.data(), static_cast<int>(order)), vornStsNoErr);
            worst.back = std::max(worst.back, test::largestDistance(back, a));
            ASSERT_EQ(vornsLSPToLP_32f(found.data(), back.data(), static_cast<int>(order)), vornStsNoErr);
            worst.back = std::max(worst.back, test::largestDistance(back, a));
        }
        EXPECT_LT(worst.coarse, limit.coarse) << order;
        EXPECT_LT(worst.fine, limit.fine) << order;
        EXPECT_LT(worst.back, limit.back) << order;
    }
}

TEST(LineSpectrum, CoefficientsEqualTheModelBitForBit) {
    Random random(8);
    const auto compare = [](const std::vector<float>& x) {
        const std::size_t order = x.size();
        const auto expected = model::predictionOfLines(x);
        const Guarded<float> src(x), dst(order);
        ASSERT_EQ(vornsLSPToLP_32f(src, dst, static_cast<int>(order)), vornStsNoErr);
        ASSERT_TRUE(sameBits(dst.data(), expected.data(), order)) << order;
        ASSERT_TRUE(dst.surroundingsUntouched());
        ASSERT_EQ(vornsLSPToLP_32f(src, src, static_cast<int>(order)), vornStsNoErr);
        ASSERT_TRUE(sameBits(src.data(), expected.data(), order)) << "in place " << order;
    };
    for (std::size_t order = 1; order <= 70; ++order) {
        for (int turn = 0; turn < 5; ++turn) {
            auto x = random.floats(order, -1, 1);
            std::sort(x.rbegin(), x.rend());
            compare(x);
            compare(test::spreadLines(random, order, 0.4));
        }
    }
    for (std::size_t order : {128, 129, 301}) compare(test::spreadLines(random, order, 0.4));
    compare({0.0f});
    compare({-0.0f});
    compare({0.0f, -0.0f});
    compare({-0.0f, 0.0f, 0.0f});
    compare({1e-40f, 1e-45f, 0.0f, -1e-45f, -1e-40f});
    compare({0x1.fffffep-1f, 0x1.fffffep-1f, -0x1.fffffep-1f});
}

TEST(LineSpectrum, LinesMustDescendWithinTheLimits) {
    const float below = std::nextafter(1.0f, 0.0f), inf = std::numeric_limits<float>::infinity();
    const float nan = std::numeric_limits<float>::quiet_NaN();
    const auto status = [](std::vector<float> x) {
        std::vector<float> dst(x.size(), 77.0f);
        const VornStatus result = vornsLSPToLP_32f(x.data(), dst.data(), static_cast<int>(x.size()));
        EXPECT_TRUE(result == vornStsNoErr || dst == std::vector<float>(x.size(), 77.0f));
        return result;
    };
    EXPECT_EQ(status({1.0f, 0.0f}), vornStsLspOrderErr);
    EXPECT_EQ(status({below, 0.0f}), vornStsNoErr);
    EXPECT_EQ(status({inf, 0.0f}), vornStsLspOrderErr);
    EXPECT_EQ(status({0.5f, -1.0f}), vornStsLspOrderErr);
    EXPECT_EQ(status({0.5f, -below}), vornStsNoErr);
    EXPECT_EQ(status({1.0f}), vornStsLspOrderErr);
    EXPECT_EQ(status({-1.0f}), vornStsLspOrderErr);
    EXPECT_EQ(status({0.5f, 0.5f, 0.5f}), vornStsNoErr) << "equal neighbours pass";
    EXPECT_EQ(status({0.5f, std::nextafter(0.5f, 1.0f)}), vornStsLspOrderErr);
    EXPECT_EQ(status({0.5f, 0.25f, 0.3f, 0.1f}), vornStsLspOrderErr);
    EXPECT_EQ(status({0.5f, 0.25f, 0.1f, 0.3f}), vornStsLspOrderErr);
    // Comparisons with a not-a-number fail: only the last line is asked for what it is, not for what it is not.
    EXPECT_EQ(status({nan, 0.0f}), vornStsNoErr);
    EXPECT_EQ(status({0.5f, nan, 0.1f}), vornStsNoErr);
    EXPECT_EQ(status({0.5f, nan}), vornStsLspOrderErr);
}

TEST(LineSpectrum, FixedSearchEqualsTheModel) {
    Random random(9);
    const auto hard = test::hardIntegers<Vorn16s>();
    const auto compare = [](const std::vector<Vorn16s>& a, int scaleIn, int nGrid, int nDiv, int scaleOut) {
        const std::size_t order = a.size();
        const auto lines = model::linesOfPrediction(model::singlesOf(a, scaleIn), nGrid, nDiv);
        const auto expected = model::shortsOf(lines, scaleOut, model::wrappedShort);
        const Guarded<Vorn16s> src(a), dst(order);
        const auto before = dst.values();
        const Guarded<int> count(1);
        ASSERT_EQ(vornsLPToLSP_16s_Sfs(src, scaleIn, dst, static_cast<int>(order), count, nGrid, nDiv, scaleOut),
                  lines.size() == order ? vornStsNoErr : vornStsNoRootErr);
        ASSERT_EQ(count[0], static_cast<int>(lines.size()));
        ASSERT_TRUE(sameBits(dst.data(), expected.data(), lines.size())) << scaleIn << " " << scaleOut;
        ASSERT_TRUE(sameBits(dst.data() + lines.size(), before.data() + lines.size(), order - lines.size()));
        ASSERT_TRUE(dst.surroundingsUntouched());
    };
    for (int scaleOut : {INT_MIN, -200, -128, -127, -40, -31, -17, -16, -15, -14, 0, 1, 200, INT_MAX}) {
        for (std::size_t order = 1; order <= 16; ++order) {
            std::vector<Vorn16s> a;
            for (float value : lineFilter(random, order, 0.4)) a.push_back(model::nearestShort(value, -11));
            compare(a, 11, 60, 4, scaleOut);
            compare(random.integers<Vorn16s>(order), static_cast<int>(random.integer(-3, 20)), 66, 3, scaleOut);
            compare(random.pick(hard, order), 14, 20, 4, scaleOut);
        }
    }
    for (int scaleIn : {INT_MIN, -200, -128, -127, -1, 0, 1, 127, 128, 149, 150, INT_MAX}) {
        compare({3000, -2000, 1000, -500}, scaleIn, 60, 4, -15);
        compare({0, 0, 0}, scaleIn, 60, 4, -15);
    }
    for (unsigned mode : {test::RoundingMode::down, test::RoundingMode::up, test::RoundingMode::towardZero}) {
        for (std::size_t order = 1; order <= 16; ++order) {
            const auto a = random.integers<Vorn16s>(order, Vorn16s{-3000}, Vorn16s{3000});
            const test::RoundingMode set(mode);
            compare(a, 12, 66, 4, -15);
        }
    }
    for (std::size_t order : {63, 64, 65, 70}) {
        std::vector<Vorn16s> a(order, 0);
        a[0] = 100;
        compare(a, 12, 500, 4, -15);
    }
}

TEST(LineSpectrum, FixedCoefficientsEqualTheModel) {
    Random random(10);
    const auto compare = [](const std::vector<Vorn16s>& x, int scaleIn, int scaleOut) {
        const std::size_t order = x.size();
        const auto a = model::predictionOfLines(model::singlesOf(x, scaleIn));
        const auto expected = model::shortsOf(a, scaleOut, model::nearestShort);
        const Guarded<Vorn16s> src(x), dst(order);
        ASSERT_EQ(vornsLSPToLP_16s_Sfs(src, scaleIn, dst, static_cast<int>(order), scaleOut), vornStsNoErr);
        ASSERT_TRUE(sameBits(dst.data(), expected.data(), order)) << order << " " << scaleIn << " " << scaleOut;
        ASSERT_TRUE(dst.surroundingsUntouched());
        ASSERT_EQ(vornsLSPToLP_16s_Sfs(src, scaleIn, src, static_cast<int>(order), scaleOut), vornStsNoErr);
        ASSERT_TRUE(sameBits(src.data(), expected.data(), order)) << "in place";
    };
    for (std::size_t order = 1; order <= 70; ++order) {
        for (int scaleOut : {INT_MIN, -128, -16, -12, -8, 0, 3, 128, INT_MAX}) {
            auto x = random.integers<Vorn16s>(order, Vorn16s{-32767}, Vorn16s{32767});
            std::sort(x.rbegin(), x.rend());
            for (int scaleIn : {15, 16, 40, 127, 128, 150, INT_MAX}) compare(x, scaleIn, scaleOut);
        }
    }
    // The limits belong to the range, and nothing else is asked of the singles.
    compare({16384, -16384}, 14, -10);
    compare({1, 0, -1}, 0, -10);
}

TEST(LineSpectrum, FixedLinesMustDescendWithinTheLimits) {
    const auto status = [](std::vector<Vorn16s> x, int scaleIn) {
        std::vector<Vorn16s> dst(x.size(), 77);
        const VornStatus result = vornsLSPToLP_16s_Sfs(x.data(), scaleIn, dst.data(), static_cast<int>(x.size()), -12);
        EXPECT_TRUE(result == vornStsNoErr || dst == std::vector<Vorn16s>(x.size(), 77));
        return result;
    };
    EXPECT_EQ(status({16384, 0}, 14), vornStsNoErr);
    EXPECT_EQ(status({16385, 0}, 14), vornStsLspOrderErr);
    EXPECT_EQ(status({0, -16384}, 14), vornStsNoErr);
    EXPECT_EQ(status({0, -16385}, 14), vornStsLspOrderErr);
    EXPECT_EQ(status({5, 5, -5}, 14), vornStsNoErr);
    EXPECT_EQ(status({5, 6, -5}, 14), vornStsLspOrderErr);
    EXPECT_EQ(status({5, -5, -4}, 14), vornStsLspOrderErr);
    EXPECT_EQ(status({32767, -32768}, 15), vornStsNoErr);
    EXPECT_EQ(status({32767, -32768}, INT_MAX), vornStsNoErr) << "the limit is infinite";
    EXPECT_EQ(status({0, 0}, INT_MIN), vornStsNoErr) << "the limit is 0";
    EXPECT_EQ(status({1, 0}, INT_MIN), vornStsLspOrderErr);
    EXPECT_EQ(status({1, 0}, -1), vornStsLspOrderErr) << "the limit is a half";
    EXPECT_EQ(status({1, -1}, 0), vornStsNoErr);
}

struct Search {
    std::vector<float> a = std::vector<float>(4, 0.0f), x = std::vector<float>(4, 77.0f);
    std::vector<Vorn16s> fixedA = std::vector<Vorn16s>(4, 0), fixedX = std::vector<Vorn16s>(4, 77);
    int found = 77, order = 4, nGrid = 60, nDiv = 4;
    bool noSrc = false, noDst = false, noRoots = false;
    bool untouched() const {
        return x == std::vector<float>(4, 77.0f) && fixedX == std::vector<Vorn16s>(4, 77) && found == 77;
    }
    VornStatus singles() {
        return vornsLPToLSP_32f(noSrc ? nullptr : a.data(), noDst ? nullptr : x.data(), order,
                                noRoots ? nullptr : &found, nGrid, nDiv);
    }
    VornStatus shorts() {
        return vornsLPToLSP_16s_Sfs(noSrc ? nullptr : fixedA.data(), 12, noDst ? nullptr : fixedX.data(), order,
                                    noRoots ? nullptr : &found, nGrid, nDiv, -12);
    }
};

TEST(LineSpectrum, SearchChecksInOrder) {
    for (auto call : {&Search::singles, &Search::shorts}) {
        test::expectCheckOrder<Search>([] { return Search(); }, [=](Search& s) { return (s.*call)(); },
                                       [](Search& s) { return s.untouched(); },
                                       {{"src", vornStsNullPtrErr, [](Search& s) { s.noSrc = true; }},
                                        {"dst", vornStsNullPtrErr, [](Search& s) { s.noDst = true; }},
                                        {"pNRoots", vornStsNullPtrErr, [](Search& s) { s.noRoots = true; }},
                                        {"nGrid 0", vornStsSizeErr, [](Search& s) { s.nGrid = 0; }},
                                        {"nGrid 3", vornStsSizeErr, [](Search& s) { s.nGrid = 3; }},
                                        {"nDiv 0", vornStsSizeErr, [](Search& s) { s.nDiv = 0; }},
                                        {"nDiv -1", vornStsSizeErr, [](Search& s) { s.nDiv = -1; }},
                                        {"order 0", vornStsSizeErr, [](Search& s) { s.order = 0; }},
                                        {"order 61", vornStsSizeErr, [](Search& s) { s.order = 61; }},
                                        {"order INT_MIN", vornStsSizeErr, [](Search& s) { s.order = INT_MIN; }}});
    }
    Search least;
    least.nGrid = 4;
    EXPECT_NE(least.singles(), vornStsSizeErr) << "as many steps as lines";
}

TEST(LineSpectrum, CoefficientsCheckInOrder) {
    const auto expectOrder = [](auto call, auto example) {
        using A = decltype(example);
        test::expectCheckOrder<A>([] { return A(); }, call, [](A& a) { return a.untouched(); },
                                  {{"src", vornStsNullPtrErr, [](A& a) { a.src = nullptr; }},
                                   {"dst", vornStsNullPtrErr, [](A& a) { a.dst = nullptr; }},
                                   {"order 0", vornStsSizeErr, [](A& a) { a.n = 0; }},
                                   {"order -1", vornStsSizeErr, [](A& a) { a.n = -1; }},
                                   {"lines ascend", vornStsLspOrderErr, [](A& a) { a.x[3] = 1, a.x[2] = -1; }}});
    };
    using Singles = test::Conversion<Vorn32f>;
    using Shorts = test::Conversion<Vorn16s>;
    expectOrder([](Singles& a) { return vornsLSPToLP_32f(a.src, a.dst, a.n); }, Singles());
    expectOrder([](Shorts& a) { return vornsLSPToLP_16s_Sfs(a.src, 12, a.dst, a.n, -12); }, Shorts());
}

TEST(LineSpectrum, Memory) {
    if (!test::FailAllocation::available()) GTEST_SKIP() << "the sanitizer's allocator stands in the place of ours";
    Random random(11);
    const std::vector<float> a(255, 0.0f), filled(255, 77.0f);
    std::vector<Vorn16s> s(255), zeros(255, 0);
    for (int i = 0; i < 255; ++i) s[i] = static_cast<Vorn16s>(16000 - 100 * i);
    const std::vector<Vorn16s> filledShorts(255, 77);
    {
        std::vector<float> y = filled;
        int roots = 77;
        test::FailAllocation fail(1);
        EXPECT_EQ(vornsLPToLSP_32f(a.data(), y.data(), 10, &roots, 2000000, 4), vornStsNoErr) << "whatever the grid";
        // The lines next to 1 share a step of the grid.
        EXPECT_EQ(vornsLPToLSP_32f(a.data(), y.data(), 254, &roots, 2000, 4), vornStsNoRootErr);
        EXPECT_EQ(fail.calls(), 0);
    }
    {
        std::vector<float> y = filled;
        const auto lines = test::spreadLines(random, 58, 0.1);
        test::FailAllocation fail(1);
        EXPECT_EQ(vornsLSPToLP_32f(lines.data(), y.data(), 58), vornStsNoErr);
        EXPECT_EQ(fail.calls(), 0);
    }
    {
        std::vector<float> y = filled;
        const auto lines = test::spreadLines(random, 59, 0.1);
        test::FailAllocation fail(1);
        EXPECT_EQ(vornsLSPToLP_32f(lines.data(), y.data(), 59), vornStsMemAllocErr);
        EXPECT_EQ(y, filled);
    }
    {
        std::vector<float> y = filled;
        int roots = 77;
        test::FailAllocation fail(1);
        EXPECT_EQ(vornsLPToLSP_32f(a.data(), y.data(), 255, &roots, 2000, 4), vornStsMemAllocErr);
        EXPECT_EQ(y, filled);
        EXPECT_EQ(roots, 77);
        EXPECT_EQ(vornsLPToLSP_32f(a.data(), y.data(), INT_MAX, &roots, INT_MAX, 4), vornStsMemAllocErr);
    }
    for (bool search : {true, false}) {
        int calls = 0, roots = 77;
        std::vector<Vorn16s> y = filledShorts;
        const auto call = [&] {
            return search ? vornsLPToLSP_16s_Sfs(zeros.data(), 12, y.data(), 255, &roots, 2000, 4, -12)
                          : vornsLSPToLP_16s_Sfs(s.data(), 14, y.data(), 255, -12);
        };
        {
            test::FailAllocation count(0);
            EXPECT_EQ(call(), search ? vornStsNoRootErr : vornStsNoErr);
            calls = count.calls();
            EXPECT_EQ(count.outstanding(), 0);
        }
        EXPECT_EQ(calls, 2);
        for (int n = 1; n <= calls; ++n) {
            y = filledShorts;
            roots = 77;
            test::FailAllocation fail(n);
            EXPECT_EQ(call(), vornStsMemAllocErr);
            EXPECT_EQ(y, filledShorts);
            EXPECT_EQ(roots, search ? 0 : 77) << "cleared first";
            EXPECT_EQ(fail.outstanding(), 0);
        }
    }
}

}  // namespace
