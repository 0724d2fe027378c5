// Durbin's recursion on autocorrelations.
#include <gtest/gtest.h>

#include <algorithm>
#include <climits>
#include <cmath>
#include <limits>
#include <vector>

#include "features/prediction/signals.h"
#include "model/linear_prediction.h"
#include "support/allocation.h"
#include "support/expect.h"
#include "support/guarded.h"
#include "support/rounding_mode.h"
#include "support/values.h"
#include "vornsr.h"

namespace {

using model::Singles;
using test::Guarded;
using test::Offset;
using test::Random;
using test::sameBits;

constexpr float inf = std::numeric_limits<float>::infinity();
constexpr float nan = std::numeric_limits<float>::quiet_NaN();

// The stored coefficients stand at the start of dst, and nothing was written behind them.
void expectOutcome(const model::Prediction& expected, const Singles& r, int order) {
    Guarded<float> src(r), dst(static_cast<std::size_t>(order)), error(1);
    const auto before = dst.values();
    ASSERT_EQ(vornsDurbin_32f(src, dst, order, error), expected.status) << "order " << order;
    const std::size_t stored = expected.found.size();
    EXPECT_TRUE(sameBits(dst.data(), expected.found.data(), stored)) << "order " << order;
    EXPECT_TRUE(sameBits(dst.data() + stored, before.data() + stored, before.size() - stored)) << "order " << order;
    if (expected.status == vornStsNoErr) {
        EXPECT_TRUE(test::same(error[0], expected.error)) << "order " << order;
    } else {
        EXPECT_TRUE(error.untouched()) << "order " << order;
    }
    EXPECT_TRUE(dst.surroundingsUntouched());
    EXPECT_TRUE(error.surroundingsUntouched());
}
void expectTheModel(const Singles& r, int order) { expectOutcome(model::durbin(r, order), r, order); }

// Autocorrelations that are well conditioned, that are those of resonances, and that no signal has.
std::vector<Singles> autocorrelations(Random& random, int order) {
    const auto count = static_cast<std::size_t>(order) + 1;
    std::vector<Singles> all = {test::autocorrelation(random.floats(count + 100, -1, 1), order),
                                test::autocorrelation(test::vowel(random, count + 200), order),
                                random.floats(count, -1, 1), random.pick(test::hardFloats<float>(), count)};
    all[2][0] = 4;
    if (order % 2 == 1) all[3][0] = 1e30f;
    Singles failing = all[0];
    failing[static_cast<std::size_t>(random.integer(0, order))] *= -7;
    all.push_back(failing);
    return all;
}

TEST(Durbin, EqualsTheModel) {
    Random random(1);
    int failed = 0, partly = 0;
    for (int order = 1; order <= 90; order += order < 70 ? 1 : 10) {
        for (const Singles& r : autocorrelations(random, order)) {
            expectTheModel(r, order);
            const auto expected = model::durbin(r, order);
            failed += expected.status != vornStsNoErr;
            partly += expected.status != vornStsNoErr && !expected.found.empty();
        }
    }
    EXPECT_GT(failed, 60);
    EXPECT_GT(partly, 40);
    for (int order : {128, 200, 257, 1000}) {
        expectTheModel(test::autocorrelation(random.floats(static_cast<std::size_t>(order) + 1500, -1, 1), order),
                       order);
    }
}

TEST(Durbin, AnyAlignmentGivesTheSame) {
    Random random(2);
    for (int order : {1, 3, 10, 12, 13, 16, 20, 40, 64}) {
        const Singles r = test::autocorrelation(test::vowel(random, 400), order);
        const auto expected = model::durbin(r, order);
        for (std::size_t shift = 0; shift < 64; shift += 4) {
            Offset<float> src(r.size(), shift), dst(static_cast<std::size_t>(order), 60 - shift), error(1, shift);
            src.assign(r);
            ASSERT_EQ(vornsDurbin_32f(src, dst, order, error), vornStsNoErr);
            EXPECT_TRUE(sameBits(dst.data(), expected.found.data(), expected.found.size()));
            EXPECT_TRUE(test::same(error[0], expected.error));
            EXPECT_TRUE(dst.surroundingsUntouched());
        }
    }
}

TEST(Durbin, FollowsTheRoundingMode) {
    Random random(3);
    for (unsigned mode : {test::RoundingMode::down, test::RoundingMode::up, test::RoundingMode::towardZero}) {
        for (int order : {1, 2, 5, 12, 13, 30, 70}) {
            for (const Singles& r : autocorrelations(random, order)) {
                const test::RoundingMode changed(mode);
                expectTheModel(r, order);
            }
        }
    }
}

TEST(Durbin, Literal) {
    const float r[] = {1, 0.5f};
    float a[1], error = 0;
    ASSERT_EQ(vornsDurbin_32f(r, a, 1, &error), vornStsNoErr);
    EXPECT_EQ(a[0], -0.5f);
    EXPECT_EQ(error, 0.75f);
    const float white[] = {4, 0, 0, 0};
    float zero[3] = {7, 7, 7};
    ASSERT_EQ(vornsDurbin_32f(white, zero, 3, &error), vornStsNoErr);
    EXPECT_EQ(error, 4.0f);
    for (float x : zero) EXPECT_TRUE(test::same(x, 0.0f)) << "0 minus 0 has no sign";
}

TEST(Durbin, FailsWhereTheEnergyIsNotAboveZero) {
    struct Case {
        const char* what;
        Singles r, stored;
    };
    const std::vector<Case> cases = {
        {"silence", {0, 0, 0}, {}},
        {"a negative energy", {-1, 0.5f, 0.25f}, {}},
        {"an energy of minus zero", {-0.0f, 0.5f, 0.25f}, {}},
        {"no number", {nan, 0.5f, 0.25f}, {}},
        {"minus infinity", {-inf, 0.5f, 0.25f}, {}},
        {"a constant: k is 1", {1, 1, 1}, {}},
        {"the highest frequency: k is -1", {1, -1, 1}, {}},
        {"larger than the energy", {1, 2, 1}, {}},
        {"no number at lag 1", {1, nan, 0}, {}},
        {"infinity at lag 1", {1, inf, 0}, {}},
        {"loud beyond singles", {inf, inf, inf}, {}},
        {"a tone of a quarter of the rate, two rounds of which leave nothing", {1, 0, -1, 0}, {0}},
        {"a tone of a sixth of the rate", {1, 0.5f, -0.5f, -1}, {-0.5f}},
        {"no number at lag 2", {1, 0.5f, nan}, {-0.5f}},
        {"infinity at lag 2", {1, 0.5f, -inf}, {-0.5f}},
        {"not of any signal", {1, 0.5f, 1}, {-0.5f}},
        {"energy that underflows", {1e-45f, 0.8e-45f}, {}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        expectOutcome({vornStsDurbinErr, c.stored, 0}, c.r, static_cast<int>(c.r.size()) - 1);
    }
    // An infinite energy alone is above zero.
    expectOutcome({vornStsNoErr, {0, 0}, inf}, {inf, 1, 2}, 2);
}

// A tone under a smooth window is known but for the rounding of its autocorrelation.
TEST(Durbin, FailsOnAToneUnderAWindow) {
    int failed = 0;
    for (double frequency : {0.05, 0.1, 0.3, 0.7, 1.5}) {
        Singles x(400);
        for (std::size_t n = 0; n < x.size(); ++n) {
            const double window = 0.5 - 0.5 * std::cos(2 * 3.141592653589793 * static_cast<double>(n) / 399);
            x[n] = static_cast<float>(10000 * window * window * std::sin(frequency * static_cast<double>(n)));
        }
        const Singles r = test::autocorrelation(x, 40);
        const auto expected = model::durbin(r, 40);
        failed += expected.status == vornStsDurbinErr && expected.found.size() >= 2;
        expectOutcome(expected, r, 40);
    }
    EXPECT_GE(failed, 3);
}

// What is left of each normal equation, and how far the energy is from that of the exact solution, in long double.
TEST(Durbin, SolvesTheNormalEquations) {
    Random random(4);
    double worst = 0;
    for (int turn = 0; turn < 400; ++turn) {
        const int order = 1 + turn % 32;
        Singles x = turn % 3 == 0 ? random.floats(300, -1, 1) : test::vowel(random, 400);
        if (turn % 3 == 2) {  // a tone in noise, which is hard to tell from what it predicts
            x = random.floats(400, -100, 100);
            const double frequency = random.uniform(0.01, 3.1);
            for (int n = 0; n < 400; ++n) x[n] += static_cast<float>(10000 * std::sin(frequency * n));
        }
        const Singles r = test::autocorrelation(x, order);
        std::vector<std::vector<long double>> rows(order, std::vector<long double>(order));
        std::vector<long double> right(order);
        for (int i = 0; i < order; ++i) {
            right[i] = -static_cast<long double>(r[i + 1]);
            for (int j = 0; j < order; ++j) rows[i][j] = r[std::abs(i - j)];
        }
        const auto exact = test::solved(rows, right);
        Singles a(order);
        float error;
        ASSERT_EQ(vornsDurbin_32f(r.data(), a.data(), order, &error), vornStsNoErr);
        long double magnitudes = 1, energy = r[0], furthest = 0;
        for (int i = 0; i < order; ++i) {
            magnitudes += std::fabs(a[i]);
            energy += exact[i] * r[i + 1];
            long double rest = -right[i];
            for (int j = 0; j < order; ++j) rest += rows[i][j] * a[j];
            furthest = std::max(furthest, std::fabs(rest));
        }
        const long double unit = order * r[0] * magnitudes;
        worst = std::max(worst, static_cast<double>(furthest / unit));
        EXPECT_LT(std::fabs(error - energy), 6e-8L * unit) << "order " << order;
    }
    EXPECT_LT(worst, 6e-8);
}

// x(n) = 1.5 x(n-1) - 0.7 x(n-2) + noise: r(1) = 1.5 / 1.7 r(0), r(2) = 1.5 r(1) - 0.7 r(0), and so on.
TEST(Durbin, FindsTheProcessBehindItsAutocorrelation) {
    std::vector<double> r = {1, 1.5 / 1.7};
    for (int k = 2; k <= 10; ++k) r.push_back(1.5 * r[k - 1] - 0.7 * r[k - 2]);
    const Singles src(r.begin(), r.end());
    Singles a(10);
    float error;
    ASSERT_EQ(vornsDurbin_32f(src.data(), a.data(), 10, &error), vornStsNoErr);
    EXPECT_NEAR(a[0], -1.5, 1e-5);
    EXPECT_NEAR(a[1], 0.7, 1e-5);
    for (int i = 2; i < 10; ++i) EXPECT_NEAR(a[i], 0, 1e-5);
    EXPECT_NEAR(error, 1 - 1.5 * r[1] + 0.7 * r[2], 1e-6);
}

TEST(Durbin, EveryOrderPredictsBetter) {
    Random random(5);
    const Singles r = test::autocorrelation(test::vowel(random, 400), 80);
    Singles a(80);
    float before = r[0];
    for (int order = 1; order <= 80; ++order) {
        float error = -1;
        ASSERT_EQ(vornsDurbin_32f(r.data(), a.data(), order, &error), vornStsNoErr);
        EXPECT_LE(error, before);
        EXPECT_GT(error, 0);
        EXPECT_LT(std::fabs(a[order - 1]), 1);
        before = error;
    }
    EXPECT_LT(before, 0.1f * r[0]);
}

// ---- 16 bits.

void expectTheModelFixed(const std::vector<Vorn16s>& r, int order, int scale) {
    const auto expected = model::durbin(model::singlesOf(r), order);
    Guarded<Vorn16s> src(r), dst(static_cast<std::size_t>(order));
    Guarded<float> error(1);
    ASSERT_EQ(vornsDurbin_16s_Sfs(src, dst, order, error, scale), expected.status);
    if (expected.status != vornStsNoErr) {
        EXPECT_TRUE(dst.untouched());
        EXPECT_TRUE(error.untouched());
    } else {
        EXPECT_TRUE(sameBits(dst.values(), model::shortsOf(expected.found, scale))) << order << ", scale " << scale;
        EXPECT_TRUE(test::same(error[0], expected.error));
    }
    EXPECT_TRUE(dst.surroundingsUntouched());
}

const int scales[] = {INT_MIN, INT_MIN + 1, -151, -150, -149, -129, -128, -127, -126, -32, -31,         -30,
                      -17,     -16,         -15,  -12,  -1,   0,    1,    2,    15,   16,  17,          30,
                      31,      32,          126,  127,  128,  129,  148,  149,  150,  151, INT_MAX - 1, INT_MAX};

TEST(DurbinFixed, EqualsTheModel) {
    Random random(6);
    for (int order = 1; order <= 70; ++order) {
        auto r = test::autocorrelation(test::vowel(random, 300), order);
        const float factor = 32000 / r[0];
        for (float& x : r) x = std::nearbyint(x * factor);
        for (int scale : {-13, -12, 0}) expectTheModelFixed(test::shorts(r), order, scale);
        expectTheModelFixed(random.integers<Vorn16s>(static_cast<std::size_t>(order) + 1), order, -10);
    }
    const auto r = test::shorts({32000, -20000, 5000, 3000, -1000, 7, 0, 800});
    for (int scale : scales) expectTheModelFixed(r, 7, scale);
    for (unsigned mode : {test::RoundingMode::down, test::RoundingMode::up, test::RoundingMode::towardZero}) {
        const test::RoundingMode changed(mode);
        for (int scale : {-15, -12, -3}) expectTheModelFixed(r, 7, scale);
    }
}

TEST(DurbinFixed, Literal) {
    const Vorn16s r[] = {1000, 500};
    Vorn16s a[1];
    float error;
    ASSERT_EQ(vornsDurbin_16s_Sfs(r, a, 1, &error, -12), vornStsNoErr);
    EXPECT_EQ(a[0], -2048);
    EXPECT_EQ(error, 750.0f);
    ASSERT_EQ(vornsDurbin_16s_Sfs(r, a, 1, &error, 0), vornStsNoErr);
    EXPECT_EQ(a[0], 0) << "one half goes to even";
    ASSERT_EQ(vornsDurbin_16s_Sfs(r, a, 1, &error, -17), vornStsNoErr);
    EXPECT_EQ(a[0], -32768) << "saturated";
    Vorn16s untouched[] = {77, 78, 79};
    const Vorn16s tone[] = {1000, 500, -500, -1000};
    error = 5;
    ASSERT_EQ(vornsDurbin_16s_Sfs(tone, untouched, 3, &error, -12), vornStsDurbinErr);
    EXPECT_EQ(untouched[0], 77) << "the first round was completed, but nothing is stored";
    EXPECT_EQ(error, 5.0f);
}

TEST(Durbin, MayWorkInPlace) {
    Random random(8);
    for (int order : {1, 3, 12, 13, 63, 64, 100}) {
        for (const Singles& r : autocorrelations(random, order)) {
            const auto expected = model::durbin(r, order);
            Singles left = r, right(r.size() + 1);
            std::copy(expected.found.begin(), expected.found.end(), left.begin());
            std::copy(r.begin(), r.end(), right.begin() + 1);  // dst begins an element before src
            Singles srcDst = r;
            float error;
            ASSERT_EQ(vornsDurbin_32f(srcDst.data(), srcDst.data(), order, &error), expected.status);
            EXPECT_TRUE(sameBits(srcDst, left)) << order;
            ASSERT_EQ(vornsDurbin_32f(right.data() + 1, right.data(), order, &error), expected.status);
            EXPECT_TRUE(sameBits(right.data(), expected.found.data(), expected.found.size())) << order;
        }
    }
}

TEST(DurbinFixed, MayWorkInPlace) {
    Random random(7);
    for (int order : {3, 12, 63, 64, 100}) {
        auto r = random.integers<Vorn16s>(static_cast<std::size_t>(order) + 1, -200, 200);
        r[0] = 30000;
        const auto expected = model::shortsOf(model::durbin(model::singlesOf(r), order).found, -14);
        float error;
        ASSERT_EQ(vornsDurbin_16s_Sfs(r.data(), r.data(), order, &error, -14), vornStsNoErr);
        EXPECT_TRUE(sameBits(r.data(), expected.data(), expected.size()));
    }
}

// ---- Both.

template <class T>
using Recursion = VornStatus (*)(const T* src, T* dst, int order, float* pErr);

template <class T>
void expectCheckOrder(Recursion<T> call) {
    struct Arguments {
        Guarded<T> in = Guarded<T>({4, 2, 1}), out = Guarded<T>(2);
        Guarded<float> error = Guarded<float>(1);
        const T* src = in.data();
        T* dst = out.data();
        int order = 2;
        float* pErr = error.data();
    };
    using A = Arguments;
    test::expectCheckOrder<A>([] { return A(); }, [call](A& a) { return call(a.src, a.dst, a.order, a.pErr); },
                              [](A& a) { return a.out.untouched() && a.error.untouched(); },
                              {{"src", vornStsNullPtrErr, [](A& a) { a.src = nullptr; }},
                               {"dst", vornStsNullPtrErr, [](A& a) { a.dst = nullptr; }},
                               {"order 0", vornStsSizeErr, [](A& a) { a.order = 0; }},
                               {"order -1", vornStsSizeErr, [](A& a) { a.order = -1; }},
                               {"least order", vornStsSizeErr, [](A& a) { a.order = INT_MIN; }},
                               {"pErr", vornStsNullPtrErr, [](A& a) { a.pErr = nullptr; }}});
}

TEST(Durbin, ChecksInOrder) {
    expectCheckOrder<float>(vornsDurbin_32f);
    expectCheckOrder<Vorn16s>([](const Vorn16s* src, Vorn16s* dst, int order, float* pErr) {
        return vornsDurbin_16s_Sfs(src, dst, order, pErr, -12);
    });
}

// Calls with every allocation failing in turn. Returns how many there are.
template <class T>
int expectFailedAllocations(Recursion<T> call, int order) {
    std::vector<T> r(static_cast<std::size_t>(order) + 1);
    r[0] = 1000;
    r[1] = 100;
    for (int n = 1;; ++n) {
        Guarded<T> src(r), dst(static_cast<std::size_t>(order));
        Guarded<float> error(1);
        int calls, outstanding;
        VornStatus status;
        {
            const test::FailAllocation failing(n);
            status = call(src, dst, order, error);
            calls = failing.calls();
            outstanding = failing.outstanding();
        }
        EXPECT_EQ(outstanding, 0);
        if (calls < n) {
            EXPECT_EQ(status, vornStsNoErr);
            return calls;
        }
        EXPECT_EQ(status, vornStsMemAllocErr) << "order " << order;
        EXPECT_TRUE(dst.untouched() && error.untouched()) << "order " << order;
    }
}

TEST(Durbin, AllocatesFromOrder64) {
    if (!test::FailAllocation::available()) GTEST_SKIP() << "the sanitizer's allocator cannot fail on demand";
    const Recursion<Vorn16s> fixed = [](const Vorn16s* src, Vorn16s* dst, int order, float* pErr) {
        return vornsDurbin_16s_Sfs(src, dst, order, pErr, -12);
    };
    for (int order : {1, 12, 13, 62, 63}) {
        EXPECT_EQ(expectFailedAllocations<float>(vornsDurbin_32f, order), 0) << order;
        EXPECT_EQ(expectFailedAllocations<Vorn16s>(fixed, order), 0) << order;
    }
    for (int order : {64, 65, 300}) {
        EXPECT_GE(expectFailedAllocations<float>(vornsDurbin_32f, order), 1) << order;
        EXPECT_GE(expectFailedAllocations<Vorn16s>(fixed, order), 1) << order;
    }
}

// More scratch than an int can count in elements.
TEST(Durbin, RefusesWhatNoScratchHolds) {
    Guarded<float> src{4, 2}, dst(1), error(1);
    Guarded<Vorn16s> src16{4, 2}, dst16(1);
    for (int order : {INT_MAX, INT_MAX - 1, INT_MAX / 2 + 1}) {
        EXPECT_EQ(vornsDurbin_32f(src, dst, order, error), vornStsMemAllocErr);
        EXPECT_EQ(vornsDurbin_16s_Sfs(src16, dst16, order, error, 0), vornStsMemAllocErr);
    }
    EXPECT_TRUE(dst.untouched() && dst16.untouched() && error.untouched());
}

}  // namespace
