// Schur's recursion: reflection coefficients of autocorrelations.
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

void expectTheModel(const Singles& r, int order) {
    const auto expected = model::schur(r, order);
    Guarded<float> src(r), dst(static_cast<std::size_t>(order)), error(1);
    ASSERT_EQ(vornsSchur_32f(src, dst, order, error), vornStsNoErr);
    EXPECT_TRUE(sameBits(dst.data(), expected.found.data(), expected.found.size())) << "order " << order;
    EXPECT_TRUE(test::same(error[0], expected.error)) << "order " << order;
    EXPECT_TRUE(dst.surroundingsUntouched());
}

std::vector<Singles> inputs(Random& random, int order) {
    const auto count = static_cast<std::size_t>(order) + 1;
    return {test::autocorrelation(test::vowel(random, count + 200), order), random.floats(count, -1, 1),
            random.pick(test::hardFloats<float>(), count)};
}

TEST(Schur, EqualsTheModel) {
    Random random(1);
    for (int order = 1; order <= 70; ++order) {
        for (const Singles& r : inputs(random, order)) expectTheModel(r, order);
    }
    for (int order : {127, 128, 200, 1022, 1023, 1024, 1025}) {
        expectTheModel(test::autocorrelation(random.floats(static_cast<std::size_t>(order) + 1500, -1, 1), order),
                       order);
    }
}

TEST(Schur, AnyAlignmentGivesTheSame) {
    Random random(2);
    for (int order : {1, 3, 10, 12, 16, 20, 40}) {
        const Singles r = test::autocorrelation(test::vowel(random, 400), order);
        const auto expected = model::schur(r, order);
        for (std::size_t shift = 0; shift < 64; shift += 4) {
            Offset<float> src(r.size(), shift), dst(static_cast<std::size_t>(order), 60 - shift), error(1, shift);
            src.assign(r);
            ASSERT_EQ(vornsSchur_32f(src, dst, order, error), vornStsNoErr);
            EXPECT_TRUE(sameBits(dst.data(), expected.found.data(), expected.found.size()));
            EXPECT_TRUE(test::same(error[0], expected.error));
            EXPECT_TRUE(dst.surroundingsUntouched());
        }
    }
}

TEST(Schur, MayWorkInPlace) {
    Random random(3);
    for (int order : {1, 2, 9, 16, 33, 1024}) {
        Singles r = test::autocorrelation(random.floats(2000, -1, 1), order);
        std::vector<Vorn16s> fixed = random.integers<Vorn16s>(static_cast<std::size_t>(order) + 1);
        const auto expected = model::schur(r, order).found;
        const auto expectedFixed = model::shortsOf(model::schur(model::singlesOf(fixed), order).found, -9);
        float error;
        ASSERT_EQ(vornsSchur_32f(r.data(), r.data(), order, &error), vornStsNoErr);
        EXPECT_TRUE(sameBits(r.data(), expected.data(), expected.size()));
        ASSERT_EQ(vornsSchur_16s_Sfs(fixed.data(), fixed.data(), order, &error, -9), vornStsNoErr);
        EXPECT_TRUE(sameBits(fixed.data(), expectedFixed.data(), expectedFixed.size()));
    }
}

TEST(Schur, FollowsTheRoundingMode) {
    Random random(4);
    for (unsigned mode : {test::RoundingMode::down, test::RoundingMode::up, test::RoundingMode::towardZero}) {
        for (int order : {1, 2, 5, 12, 30}) {
            for (const Singles& r : inputs(random, order)) {
                const test::RoundingMode changed(mode);
                expectTheModel(r, order);
            }
        }
    }
}

TEST(Schur, Literal) {
    const float r[] = {1, 0.5f};
    float k[3] = {}, error = 0;
    ASSERT_EQ(vornsSchur_32f(r, k, 1, &error), vornStsNoErr);
    EXPECT_EQ(k[0], -0.5f);
    EXPECT_EQ(error, 0.75f);
    // No test of stability: what is not of a signal goes on.
    const float unstable[] = {1, 2, 1};
    ASSERT_EQ(vornsSchur_32f(unstable, k, 2, &error), vornStsNoErr);
    EXPECT_EQ(k[0], -2.0f);  // g(2) = -2 x 2 + 1 = -3, h(2) = -2 x 2 + 1 = -3
    EXPECT_EQ(k[1], -1.0f);
    EXPECT_EQ(error, 0.0f);
    const float constant[] = {1, 1, 1, 1};
    ASSERT_EQ(vornsSchur_32f(constant, k, 3, &error), vornStsNoErr);
    EXPECT_EQ(k[0], -1.0f);
    EXPECT_TRUE(std::isnan(k[1])) << "nothing is left: 0 / 0";
    const float zeroEnergy[] = {0, 0.5f};
    ASSERT_EQ(vornsSchur_32f(zeroEnergy, k, 1, &error), vornStsNoErr);
    EXPECT_EQ(k[0], -inf);
    EXPECT_EQ(error, -inf);
    const float nothing[] = {0, 0, 0}, noNumber[] = {nan, 1, 0};
    for (const float* x : {nothing, noNumber}) {
        ASSERT_EQ(vornsSchur_32f(x, k, 2, &error), vornStsNoErr);
        EXPECT_TRUE(std::isnan(k[0]) && std::isnan(k[1]) && std::isnan(error));
    }
}

// Coefficient i is the last one of the error filter of order i. Both come from the same energies, so they agree to
// what the rounding of the autocorrelations leaves: in units of 2^-24 times the energy over the error.
TEST(Schur, GivesTheLastCoefficientOfEveryOrder) {
    Random random(5);
    double worst = 0;
    for (int turn = 0; turn < 60; ++turn) {
        const int order = 16;
        const Singles r = turn % 2 == 0 ? test::autocorrelation(test::vowel(random, 400), order)
                                        : test::autocorrelation(random.floats(100, -1, 1), order);
        Singles k(order), a(order);
        float error, filterError = 0;
        ASSERT_EQ(vornsSchur_32f(r.data(), k.data(), order, &error), vornStsNoErr);
        for (int i = 1; i <= order; ++i) {
            ASSERT_EQ(vornsDurbin_32f(r.data(), a.data(), i, &filterError), vornStsNoErr);
            worst = std::max(worst, std::fabs(a[i - 1] - k[i - 1]) * 0x1p24 * filterError / r[0]);
        }
        EXPECT_NEAR(error / r[0], filterError / r[0], 30 * 0x1p-24);
    }
    EXPECT_LT(worst, 30) << "worst " << worst;
}

// ---- 16 bits.

void expectTheModelFixed(const std::vector<Vorn16s>& r, int order, int scale) {
    const auto expected = model::schur(model::singlesOf(r), order);
    Guarded<Vorn16s> src(r), dst(static_cast<std::size_t>(order));
    Guarded<float> error(1);
    ASSERT_EQ(vornsSchur_16s_Sfs(src, dst, order, error, scale), vornStsNoErr);
    EXPECT_TRUE(sameBits(dst.values(), model::shortsOf(expected.found, scale))) << order << ", scale " << scale;
    EXPECT_TRUE(test::same(error[0], expected.error));
    EXPECT_TRUE(dst.surroundingsUntouched());
}

TEST(SchurFixed, EqualsTheModel) {
    Random random(6);
    for (int order = 1; order <= 70; ++order) {
        auto r = random.integers<Vorn16s>(static_cast<std::size_t>(order) + 1, -3000, 3000);
        for (int scale : {-15, -12, 0}) expectTheModelFixed(r, order, scale);
        r[0] = 32767;
        expectTheModelFixed(r, order, -15);
        expectTheModelFixed(random.pick(test::hardIntegers<Vorn16s>(), r.size()), order, -12);
    }
    for (int order : {1022, 1023, 1024}) {
        expectTheModelFixed(random.integers<Vorn16s>(static_cast<std::size_t>(order) + 1), order, -12);
    }
    const std::vector<Vorn16s> r = {32000, -20000, 5000, 3000, -1000, 7, 0, 800};
    for (int scale : {INT_MIN, INT_MIN + 1, -151, -150, -149, -129, -128, -127, -32, -31,         -30,
                      -17,     -16,         -15,  -1,   0,    1,    15,   16,   17,  30,          31,
                      32,      126,         127,  128,  129,  148,  149,  150,  151, INT_MAX - 1, INT_MAX}) {
        expectTheModelFixed(r, 7, scale);
    }
    for (unsigned mode : {test::RoundingMode::down, test::RoundingMode::up, test::RoundingMode::towardZero}) {
        const test::RoundingMode changed(mode);
        for (int scale : {-15, -12, -3}) expectTheModelFixed(r, 7, scale);
    }
}

TEST(SchurFixed, Literal) {
    const Vorn16s r[] = {1000, 500}, infinite[] = {0, -3}, nothing[] = {0, 0};
    Vorn16s k[1];
    float error;
    ASSERT_EQ(vornsSchur_16s_Sfs(r, k, 1, &error, -15), vornStsNoErr);
    EXPECT_EQ(k[0], -16384);
    EXPECT_EQ(error, 750.0f);
    ASSERT_EQ(vornsSchur_16s_Sfs(infinite, k, 1, &error, -15), vornStsNoErr);
    EXPECT_EQ(k[0], 32767) << "infinity";
    ASSERT_EQ(vornsSchur_16s_Sfs(nothing, k, 1, &error, -15), vornStsNoErr);
    EXPECT_EQ(k[0], 32767) << "not a number";
    EXPECT_TRUE(std::isnan(error));
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
                               {"least order", vornStsSizeErr, [](A& a) { a.order = INT_MIN; }},
                               {"pErr", vornStsNullPtrErr, [](A& a) { a.pErr = nullptr; }}});
}

TEST(Schur, ChecksInOrder) {
    expectCheckOrder<float>(vornsSchur_32f);
    expectCheckOrder<Vorn16s>([](const Vorn16s* src, Vorn16s* dst, int order, float* pErr) {
        return vornsSchur_16s_Sfs(src, dst, order, pErr, -12);
    });
}

template <class T>
void expectAllocations(Recursion<T> call) {
    for (int order : {1, 64, 1022, 1023, 1024, 1500}) {
        Guarded<T> src(std::vector<T>(static_cast<std::size_t>(order) + 1, T(3)));
        Guarded<T> dst(static_cast<std::size_t>(order));
        Guarded<float> error(1);
        int calls, outstanding;
        VornStatus status;
        {
            const test::FailAllocation failing(1);
            status = call(src, dst, order, error);
            calls = failing.calls();
            outstanding = failing.outstanding();
        }
        EXPECT_EQ(calls, order < 1024 ? 0 : 1) << order;
        EXPECT_EQ(outstanding, 0);
        EXPECT_EQ(status, order < 1024 ? vornStsNoErr : vornStsMemAllocErr) << order;
        EXPECT_EQ(dst.untouched() && error.untouched(), order >= 1024) << order;
        const test::FailAllocation counting(0);
        EXPECT_EQ(call(src, dst, order, error), vornStsNoErr);
        EXPECT_EQ(counting.outstanding(), 0);
    }
}

TEST(Schur, AllocatesFromOrder1024) {
    if (!test::FailAllocation::available()) GTEST_SKIP() << "the sanitizer's allocator cannot fail on demand";
    expectAllocations<float>(vornsSchur_32f);
    expectAllocations<Vorn16s>([](const Vorn16s* src, Vorn16s* dst, int order, float* pErr) {
        return vornsSchur_16s_Sfs(src, dst, order, pErr, -12);
    });
}

// More scratch than an int can count in elements.
TEST(Schur, RefusesWhatNoScratchHolds) {
    Guarded<float> src{4, 2}, dst(1), error(1);
    Guarded<Vorn16s> src16{4, 2}, dst16(1);
    for (int order : {INT_MAX, INT_MAX - 1, INT_MAX / 2 + 1}) {
        EXPECT_EQ(vornsSchur_32f(src, dst, order, error), vornStsMemAllocErr);
        EXPECT_EQ(vornsSchur_16s_Sfs(src16, dst16, order, error, 0), vornStsMemAllocErr);
    }
    EXPECT_TRUE(dst.untouched() && dst16.untouched() && error.untouched());
}

}  // namespace
