// The spectrum envelope of a prediction filter.
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

struct Envelope {
    std::vector<float> y;
    VornStatus status = vornStsNoErr;
};

// By the library's own transform of zero and the coefficients; what follows it is written out.
Envelope envelope(const std::vector<float>& a, int order, float val) {
    const std::size_t n = std::size_t{1} << order;
    std::vector<float> x(2 * n), z(2 * n + 2);
    std::copy(a.begin(), a.end(), x.begin() + 1);
    VornsFFTSpec* context;
    EXPECT_EQ(vornsFFTInitAlloc_R_32f(&context, order + 1, 8, 2), vornStsNoErr);
    EXPECT_EQ(vornsFFTFwd_RToCCS_32f(x.data(), z.data(), context, nullptr), vornStsNoErr);
    vornsFFTFree_R_32f(context);
    z[0] = z[0] - val;
    Envelope result;
    for (std::size_t i = 0; i < n; ++i) {
        const float re = z[2 * i] * z[2 * i], im = z[2 * i + 1] * z[2 * i + 1], sum = re + im;
        const float magnitude = std::sqrt(sum);
        if (magnitude == 0) result.status = vornStsDivByZero;
        result.y.push_back(1.0f / magnitude);
    }
    return result;
}

void compare(const std::vector<float>& a, int order, float val) {
    const Envelope expected = envelope(a, order, val);
    const Guarded<float> src(a), dst(expected.y.size());
    ASSERT_EQ(vornsLPToSpectrum_32f(src, static_cast<int>(a.size()), dst, order, val), expected.status);
    ASSERT_TRUE(sameBits(dst.data(), expected.y.data(), expected.y.size())) << order;
    ASSERT_TRUE(dst.surroundingsUntouched());
}

TEST(PredictionSpectrum, EqualsTheTransformBitForBit) {
    Random random(1);
    for (int order = 0; order <= 12; ++order) {
        const int most = (2 << order) - 1;
        for (int len : {1, 2, 3, 4, 5, 10, 12, 16, 22, most - 1, most}) {
            if (len < 1 || len > most) continue;
            for (float val : {-1.0f, 0.0f, 1.0f, 0.3f}) compare(random.floats(len, -2, 2), order, val);
        }
    }
}

TEST(PredictionSpectrum, HardValues) {
    Random random(2);
    const auto hard = test::hardFloats<float>();
    for (int turn = 0; turn < 600; ++turn) {
        const int order = static_cast<int>(random.integer(0, 7));
        const auto len = static_cast<std::size_t>(random.integer(1, (2 << order) - 1));
        auto a = random.floats(len, -1, 1);
        if (turn % 2) a = random.pick(hard, len);
        compare(a, order, turn % 3 ? -1.0f : random.pick(hard, 1)[0]);
    }
}

TEST(PredictionSpectrum, AnyAlignment) {
    Random random(3);
    const auto a = random.floats(10, -1, 1);
    const auto expected = envelope(a, 6, -1.0f).y;
    for (std::size_t at = 0; at < 64; at += 4) {
        test::Offset<float> src(10, at), dst(64, 60 - at);
        src.assign(a);
        ASSERT_EQ(vornsLPToSpectrum_32f(src, 10, dst, 6, -1.0f), vornStsNoErr);
        EXPECT_TRUE(sameBits(dst.data(), expected.data(), 64));
        EXPECT_TRUE(dst.surroundingsUntouched());
    }
}

TEST(PredictionSpectrum, DirectedModesAreTheCallers) {
    Random random(4);
    for (unsigned mode : {test::RoundingMode::down, test::RoundingMode::up, test::RoundingMode::towardZero}) {
        for (int order = 0; order <= 7; ++order) {
            const auto a = random.floats(static_cast<std::size_t>(std::min(10, (2 << order) - 1)), -1, 1);
            const test::RoundingMode set(mode);
            compare(a, order, -1.0f);
        }
    }
}

// The definition: one over the magnitude of the sum of a(k) e^(-jwk), less val in bin 0 and nowhere else.
TEST(PredictionSpectrum, IsOneOverTheFilter) {
    Random random(5);
    const long double pi = 3.14159265358979323846264338327950288L;
    double worst = 0;
    for (int turn = 0; turn < 20; ++turn) {
        for (int order = 0; order <= 9; ++order) {
            const std::size_t n = std::size_t{1} << order;
            const auto a = random.floats(std::min<std::size_t>(12, 2 * n - 1), -1, 1);
            const float val = -1.0f;
            std::vector<float> dst(n);
            ASSERT_EQ(vornsLPToSpectrum_32f(a.data(), static_cast<int>(a.size()), dst.data(), order, val),
                      vornStsNoErr);
            for (std::size_t i = 0; i < n; ++i) {
                long double re = i == 0 ? -static_cast<long double>(val) : 0, im = 0;
                for (std::size_t k = 1; k <= a.size(); ++k) {
                    const long double w = pi * static_cast<long double>(i * k) / static_cast<long double>(n);
                    re += a[k - 1] * std::cos(w);
                    im -= a[k - 1] * std::sin(w);
                }
                const long double magnitude = std::sqrt(re * re + im * im);
                // Relative to what rounding can do to a magnitude in a transform of numbers up to 1.
                const double error = static_cast<double>(std::fabs(1 / static_cast<long double>(dst[i]) - magnitude));
                worst = std::max(worst, error);
            }
        }
    }
    EXPECT_LT(worst, 2e-6);
    EXPECT_GT(worst, 0.0);
}

TEST(PredictionSpectrum, Literals) {
    // Two points: 3 and -1; four: the numbers 0, 1, 2, 3 transform to 6, -2 + 2j, -2.
    const float one[] = {4}, three[] = {1, 2, 3};
    float dst[2];
    ASSERT_EQ(vornsLPToSpectrum_32f(one, 1, dst, 0, -1.0f), vornStsNoErr);
    EXPECT_EQ(dst[0], 0.2f);
    ASSERT_EQ(vornsLPToSpectrum_32f(three, 3, dst, 1, -2.0f), vornStsNoErr);
    EXPECT_EQ(dst[0], 0.125f);
    EXPECT_EQ(dst[1], 1.0f / std::sqrt(8.0f)) << "val belongs to bin 0 alone";
}

TEST(PredictionSpectrum, ZerosGiveInfinitiesAndAWarning) {
    const float inf = std::numeric_limits<float>::infinity();
    for (int order = 0; order <= 8; ++order) {
        const std::size_t n = std::size_t{1} << order;
        const std::vector<float> zeros(2 * n - 1, 0.0f);
        Guarded<float> dst(n);
        EXPECT_EQ(vornsLPToSpectrum_32f(zeros.data(), static_cast<int>(2 * n - 1), dst, order, 0.0f), vornStsDivByZero);
        EXPECT_EQ(dst.values(), std::vector<float>(n, inf));
        // All but bin 0.
        EXPECT_EQ(vornsLPToSpectrum_32f(zeros.data(), 1, dst, order, -4.0f),
                  order == 0 ? vornStsNoErr : vornStsDivByZero);
        std::vector<float> expected(n, inf);
        expected[0] = 0.25f;
        EXPECT_EQ(dst.values(), expected);
        const std::vector<Vorn16s> shorts(2 * n - 1, 0);
        Guarded<Vorn16s> fixed(n);
        EXPECT_EQ(vornsLPToSpectrum_16s_Sfs(shorts.data(), 1, fixed, order, 0, 0), vornStsDivByZero);
        EXPECT_EQ(fixed.values(), std::vector<Vorn16s>(n, 32767)) << "stored with the warning";
    }
    // Infinite magnitudes are no zeros: their quotient is, and there is no warning. Nor for what is not a number.
    float dst[8];
    const float large[] = {inf, 0.0f};
    EXPECT_EQ(vornsLPToSpectrum_32f(large, 2, dst, 0, 0.0f), vornStsSizeErr);
    EXPECT_EQ(vornsLPToSpectrum_32f(large, 1, dst, 0, 0.0f), vornStsNoErr);
    EXPECT_EQ(dst[0], 0.0f);
    EXPECT_EQ(vornsLPToSpectrum_32f(large, 1, dst, 0, inf), vornStsNoErr);
    EXPECT_TRUE(std::isnan(dst[0]));
    // From order 3 on as below it: squares beyond the range are infinite.
    const float huge[] = {0x1p+120f};
    EXPECT_EQ(vornsLPToSpectrum_32f(huge, 1, dst, 3, 0.0f), vornStsNoErr);
    for (float y : dst) EXPECT_EQ(y, 0.0f);
}

TEST(PredictionSpectrum, FixedFormEqualsTheModel) {
    Random random(6);
    const auto hard = test::hardIntegers<Vorn16s>();
    const auto compareFixed = [](const std::vector<Vorn16s>& a, int order, int val, int scale) {
        const Envelope singles = envelope(model::singlesOf(a, 0), order, static_cast<float>(val));
        const auto expected = model::shortsOf(singles.y, scale, model::nearestShort);
        const Guarded<Vorn16s> src(a), dst(expected.size());
        ASSERT_EQ(vornsLPToSpectrum_16s_Sfs(src, static_cast<int>(a.size()), dst, order, val, scale), singles.status);
        ASSERT_TRUE(sameBits(dst.data(), expected.data(), expected.size())) << order << " scale " << scale;
        ASSERT_TRUE(dst.surroundingsUntouched());
    };
    for (int order = 0; order <= 8; ++order) {
        for (int scale : {INT_MIN, -128, -127, -40, -30, -25, -20, -15, 0, 3, 127, 128, 150, INT_MAX}) {
            const auto most = static_cast<std::size_t>((2 << order) - 1);
            for (std::size_t len : {std::size_t{1}, std::min<std::size_t>(most, 10), most}) {
                for (int val : {0, -4096, 16777217, INT_MIN, INT_MAX}) {
                    compareFixed(random.integers<Vorn16s>(len), order, val, scale);
                    compareFixed(random.pick(hard, len), order, val, scale);
                }
            }
        }
    }
    for (unsigned mode : {test::RoundingMode::down, test::RoundingMode::up, test::RoundingMode::towardZero}) {
        const auto a = random.integers<Vorn16s>(10);
        const test::RoundingMode set(mode);
        compareFixed(a, 5, 16777217, -25);
    }
}

template <class T>
struct Arguments {
    std::vector<T> x = std::vector<T>(16, T(1)), y = std::vector<T>(16, T(77));
    const T* src = x.data();
    T* dst = y.data();
    int len = 15, order = 3;
    bool untouched() const { return y == std::vector<T>(16, T(77)); }
};

template <class T>
void expectOrder(VornStatus (*call)(Arguments<T>&)) {
    using A = Arguments<T>;
    test::expectCheckOrder<A>([] { return A(); }, call, [](A& a) { return a.untouched(); },
                              {{"src", vornStsNullPtrErr, [](A& a) { a.src = nullptr; }},
                               {"dst", vornStsNullPtrErr, [](A& a) { a.dst = nullptr; }},
                               {"len 0", vornStsSizeErr, [](A& a) { a.len = 0; }},
                               {"len -1", vornStsSizeErr, [](A& a) { a.len = -1; }},
                               {"order -1", vornStsSizeErr, [](A& a) { a.order = -1; }},
                               {"order INT_MIN", vornStsSizeErr, [](A& a) { a.order = INT_MIN; }}});
    for (int order : {30, 31, 32, 63, 64, 1000, INT_MAX}) {
        A a;
        const test::FailAllocation none(0);
        a.order = order;
        EXPECT_EQ(call(a), vornStsFftOrderErr) << order;
        a.len = INT_MAX;
        EXPECT_EQ(call(a), vornStsFftOrderErr) << order;
        a.len = 0;
        EXPECT_EQ(call(a), vornStsSizeErr) << order;
        a.dst = nullptr;
        EXPECT_EQ(call(a), vornStsNullPtrErr) << order;
        EXPECT_EQ(none.calls(), 0);
    }
    for (int order = 0; order <= 29; ++order) {
        A a;
        a.order = order;
        a.len = 2 << order > 0 ? 2 << order : INT_MAX;
        EXPECT_EQ(call(a), vornStsSizeErr) << "as many coefficients as points, order " << order;
        EXPECT_TRUE(a.untouched());
    }
}

TEST(PredictionSpectrum, ChecksInOrder) {
    expectOrder<Vorn32f>([](auto& a) { return vornsLPToSpectrum_32f(a.src, a.len, a.dst, a.order, 0.0f); });
    expectOrder<Vorn16s>([](auto& a) { return vornsLPToSpectrum_16s_Sfs(a.src, a.len, a.dst, a.order, 0, 0); });
}

// Each allocation failed once, those of the transform among them.
TEST(PredictionSpectrum, AllocationFailureLeavesNothingBehind) {
    if (!test::FailAllocation::available()) GTEST_SKIP() << "the sanitizer's allocator stands in the place of ours";
    const std::vector<float> a(10, 0.1f), filled(4096, 77.0f);
    const std::vector<Vorn16s> s(10, 100), filledShorts(4096, 77);
    int callsBefore = 0;
    for (int order : {3, 4, 6, 7, 12}) {
        for (bool single : {true, false}) {
            std::vector<float> y = filled;
            std::vector<Vorn16s> d = filledShorts;
            const auto call = [&] {
                return single ? vornsLPToSpectrum_32f(a.data(), 10, y.data(), order, -1.0f)
                              : vornsLPToSpectrum_16s_Sfs(s.data(), 10, d.data(), order, -4096, -20);
            };
            int calls;
            {
                test::FailAllocation count(0);
                EXPECT_EQ(call(), vornStsNoErr);
                calls = count.calls();
                EXPECT_EQ(count.outstanding(), 0);
            }
            EXPECT_GE(calls, order > 6 ? 2 : 1);
            EXPECT_TRUE(!single || order != 7 || calls == callsBefore + 1) << "scratch leaves the stack";
            callsBefore = calls;
            for (int n = 1; n <= calls; ++n) {
                y = filled, d = filledShorts;
                test::FailAllocation fail(n);
                EXPECT_EQ(call(), vornStsMemAllocErr) << order << ": " << n << " of " << calls;
                EXPECT_EQ(fail.outstanding(), 0);
                EXPECT_EQ(y, filled);
                EXPECT_EQ(d, filledShorts);
            }
        }
    }
}

}  // namespace
