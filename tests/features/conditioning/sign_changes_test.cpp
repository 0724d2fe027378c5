// Rates of sign changes.
#include "model/sign_changes.h"

#include <gtest/gtest.h>

#include <limits>
#include <vector>

#include "support/expect.h"
#include "support/guarded.h"
#include "support/values.h"
#include "vornsr.h"

namespace {

using test::Guarded;
using test::Offset;
using test::Random;

constexpr float inf = std::numeric_limits<float>::infinity();

void expectRates(const std::vector<float>& x, std::size_t shift) {
    const int len = static_cast<int>(x.size());
    Offset<float> src(x.size(), shift);
    src.assign(x);
    Guarded<float> single(1);
    Guarded<int> integer(1);
    ASSERT_EQ(vornsSignChangeRate_32f(src, len, single), vornStsNoErr);
    EXPECT_EQ(single[0], model::signChanges(x)) << len;
    ASSERT_EQ(vornsSignChangeRateXor_32f(src, len, integer), vornStsNoErr);
    EXPECT_EQ(integer[0], model::signBits(x)) << len;
    ASSERT_EQ(vornsSignChangeRate_Count0_32f(src, len, single), vornStsNoErr);
    EXPECT_EQ(single[0], static_cast<float>(model::signSteps(x)) * 0.5f) << len;
}

void expectRates(const std::vector<Vorn16s>& x, std::size_t shift) {
    const int len = static_cast<int>(x.size());
    Offset<Vorn16s> src(x.size(), shift);
    src.assign(x);
    Guarded<Vorn32s> count(1);
    ASSERT_EQ(vornsSignChangeRate_16s(src, len, count), vornStsNoErr);
    EXPECT_EQ(count[0], model::signChanges(x)) << len;
    ASSERT_EQ(vornsSignChangeRate_Count0_16s(src, len, count), vornStsNoErr);
    EXPECT_EQ(count[0], model::signSteps(x) >> 1) << len;
}

TEST(SignChangeRate, EqualsTheModel) {
    Random random(1);
    const auto hardSingles = test::hardFloats<float>();
    const auto hardShorts = test::hardIntegers<Vorn16s>();
    for (std::size_t len = 1; len <= 150; ++len) {
        for (std::size_t shift : {0, 4, 12}) {
            expectRates(random.floats(len, -1.0, 1.0), shift);
            expectRates(random.pick(hardSingles, len), shift);
            expectRates(random.pick<float>({-1.0f, -0.0f, 0.0f, 1.0f}, len), shift);
            expectRates(random.integers<Vorn16s>(len), shift + 2);
            expectRates(random.pick(hardShorts, len), shift);
            expectRates(random.pick<Vorn16s>({-1, 0, 1}, len), shift);
        }
    }
    expectRates(random.integers<Vorn16s>(200001), 2);
    std::vector<Vorn16s> alternating(300000);
    for (std::size_t n = 0; n < alternating.size(); ++n) alternating[n] = n % 2 ? 32767 : -32768;
    expectRates(alternating, 0);
}

TEST(SignChangeRate, ReadsNothingOutside) {
    for (std::size_t len = 1; len <= 70; ++len) {
        const int n = static_cast<int>(len);
        const Guarded<float> single(std::vector<float>(len, 1.0f));
        const Guarded<Vorn16s> fixed(std::vector<Vorn16s>(len, 1));
        for (auto* rate : {vornsSignChangeRate_32f, vornsSignChangeRate_Count0_32f}) {
            float result = -1;
            EXPECT_EQ(rate(single, n, &result), vornStsNoErr);
            EXPECT_EQ(result, 0.0f);
        }
        int bits = -1;
        EXPECT_EQ(vornsSignChangeRateXor_32f(single, n, &bits), vornStsNoErr);
        EXPECT_EQ(bits, 0);
        for (auto* rate : {vornsSignChangeRate_16s, vornsSignChangeRate_Count0_16s}) {
            Vorn32s result = -1;
            EXPECT_EQ(rate(fixed, n, &result), vornStsNoErr);
            EXPECT_EQ(result, 0);
        }
    }
}

TEST(SignChangeRate, Literal) {
    const Vorn16s fixed[] = {1, 0, -1};
    const float single[] = {1, 0, -1};
    Vorn32s count = -1;
    float rate = -1;
    int bits = -1;
    ASSERT_EQ(vornsSignChangeRate_16s(fixed, 3, &count), vornStsNoErr);
    EXPECT_EQ(count, 0);
    ASSERT_EQ(vornsSignChangeRate_Count0_16s(fixed, 3, &count), vornStsNoErr);
    EXPECT_EQ(count, 1);
    ASSERT_EQ(vornsSignChangeRate_Count0_16s(fixed, 2, &count), vornStsNoErr);
    EXPECT_EQ(count, 0) << "a half is dropped";
    ASSERT_EQ(vornsSignChangeRate_Count0_32f(single, 3, &rate), vornStsNoErr);
    EXPECT_EQ(rate, 1.0f);
    ASSERT_EQ(vornsSignChangeRate_Count0_32f(single, 2, &rate), vornStsNoErr);
    EXPECT_EQ(rate, 0.5f);
    const float zeros[] = {0.0f, -0.0f};
    ASSERT_EQ(vornsSignChangeRateXor_32f(zeros, 2, &bits), vornStsNoErr);
    EXPECT_EQ(bits, 1);
    const float tiny[] = {1e-30f, -1e-30f};  // the product underflows
    ASSERT_EQ(vornsSignChangeRate_32f(tiny, 2, &rate), vornStsNoErr);
    EXPECT_EQ(rate, 0.0f);
    const float undefined[] = {inf, 0.0f};
    ASSERT_EQ(vornsSignChangeRate_32f(undefined, 2, &rate), vornStsNoErr);
    EXPECT_EQ(rate, 1.0f);
}

TEST(SignChangeRate, OneSampleHasNone) {
    const Vorn16s fixed = -1;
    const float single = -1;
    Vorn32s count = 9;
    float rate = 9;
    int bits = 9;
    ASSERT_EQ(vornsSignChangeRate_16s(&fixed, 1, &count), vornStsNoErr);
    EXPECT_EQ(count, 0);
    ASSERT_EQ(vornsSignChangeRate_32f(&single, 1, &rate), vornStsNoErr);
    EXPECT_EQ(rate, 0.0f);
    ASSERT_EQ(vornsSignChangeRateXor_32f(&single, 1, &bits), vornStsNoErr);
    EXPECT_EQ(bits, 0);
    count = 9;
    ASSERT_EQ(vornsSignChangeRate_Count0_16s(&fixed, 1, &count), vornStsNoErr);
    EXPECT_EQ(count, 0);
    rate = 9;
    ASSERT_EQ(vornsSignChangeRate_Count0_32f(&single, 1, &rate), vornStsNoErr);
    EXPECT_EQ(rate, 0.0f);
}

template <class T, class Result>
void expectRateOrder(VornStatus (*rate)(const T*, int, Result*)) {
    struct Arguments {
        std::vector<T> data = std::vector<T>(4, T(1));
        Guarded<Result> out = Guarded<Result>(1);
        const T* src = data.data();
        Result* res = out.data();
        int len = 4;
    };
    using A = Arguments;
    test::expectCheckOrder<A>([] { return A(); }, [rate](A& a) { return rate(a.src, a.len, a.res); },
                              [](A& a) { return a.out.untouched(); },
                              {{"src", vornStsNullPtrErr, [](A& a) { a.src = nullptr; }},
                               {"pRes", vornStsNullPtrErr, [](A& a) { a.res = nullptr; }},
                               {"len 0", vornStsSizeErr, [](A& a) { a.len = 0; }},
                               {"len -1", vornStsSizeErr, [](A& a) { a.len = -1; }}});
}

TEST(SignChangeRate, ChecksInOrder) {
    expectRateOrder(vornsSignChangeRate_16s);
    expectRateOrder(vornsSignChangeRate_32f);
    expectRateOrder(vornsSignChangeRateXor_32f);
    expectRateOrder(vornsSignChangeRate_Count0_16s);
    expectRateOrder(vornsSignChangeRate_Count0_32f);
}

}  // namespace
