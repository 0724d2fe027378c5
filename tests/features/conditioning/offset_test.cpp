// Offset compensation.
#include "model/offset.h"

#include <gtest/gtest.h>

#include <limits>
#include <vector>

#include "support/expect.h"
#include "support/guarded.h"
#include "support/values.h"
#include "vornsr.h"

namespace {

using test::Guarded;
using test::Random;
using test::sameBits;

VornStatus compensate(const float* src, float* dst, int len, float* srcLast, float dstLast, float val) {
    return vornsCompensateOffset_32f(src, dst, len, srcLast, dstLast, val);
}
VornStatus compensate(const Vorn16s* src, Vorn16s* dst, int len, Vorn16s* srcLast, Vorn16s dstLast, float val) {
    return vornsCompensateOffset_16s(src, dst, len, srcLast, dstLast, val);
}

template <class T>
void compare(const std::vector<T>& x, T srcLast, T dstLast, float val) {
    const int len = static_cast<int>(x.size());
    std::vector<T> expected(x.size());
    T expectedLast = srcLast;
    model::compensateOffset(x, expected, expectedLast, dstLast, val);

    Guarded<T> src(x), dst(x.size()), last{srcLast};
    ASSERT_EQ(compensate(src, dst, len, last, dstLast, val), vornStsNoErr);
    EXPECT_TRUE(sameBits(dst.data(), expected.data(), x.size())) << "val " << val;
    EXPECT_TRUE(test::same(last[0], expectedLast));
    EXPECT_TRUE(dst.surroundingsUntouched());

    Guarded<T> inPlace(x);
    last[0] = srcLast;
    ASSERT_EQ(compensate(inPlace, inPlace, len, last, dstLast, val), vornStsNoErr);
    EXPECT_TRUE(sameBits(inPlace.data(), expected.data(), x.size())) << "in place, val " << val;
    EXPECT_TRUE(test::same(last[0], expectedLast));
}

template <class T>
std::vector<T> signal(Random& random, std::size_t len, double amplitude) {
    std::vector<T> x(len);
    for (T& sample : x) sample = static_cast<T>(random.uniform(-amplitude, amplitude));
    return x;
}

const float factors[] = {0.999f, 0.98f,    0.5f,       0.0f,        -0.0f, -0.7f, 1.0f,
                         -1.0f,  0.00024f, 1.0000001f, -1.0000001f, 1.5f,  -3.0f, 1e30f};

TEST(CompensateOffset, EqualsTheModelBitForBit) {
    Random random(1);
    for (float val : factors) {
        for (std::size_t len = 1; len <= 70; ++len) {
            compare<Vorn32f>(signal<Vorn32f>(random, len, 3000.0), 12.5f, -7.25f, val);
            compare<Vorn16s>(signal<Vorn16s>(random, len, 3000.0), 12, -7, val);
            compare<Vorn16s>(signal<Vorn16s>(random, len, 32767.9), -32768, 32767, val);
        }
        compare<Vorn32f>(signal<Vorn32f>(random, 1000, 30000.0), 0.0f, 0.0f, val);
        compare<Vorn16s>(signal<Vorn16s>(random, 1000, 32767.9), 0, 0, val);
    }
}

TEST(CompensateOffset, HardValues) {
    Random random(2);
    const auto hardSingles = test::hardFloats<float>();
    const auto hardShorts = test::hardIntegers<Vorn16s>();
    const auto pick = [&](const auto& from) {
        return from[static_cast<std::size_t>(random.integer(0, static_cast<int>(from.size()) - 1))];
    };
    for (int turn = 0; turn < 3000; ++turn) {
        std::vector<float> x(5);
        std::vector<Vorn16s> s(9);
        for (float& sample : x) sample = pick(hardSingles);
        for (Vorn16s& sample : s) sample = pick(hardShorts);
        compare<Vorn32f>(x, pick(hardSingles), pick(hardSingles), pick(hardSingles));
        compare<Vorn16s>(s, pick(hardShorts), pick(hardShorts), pick(hardSingles));
    }
}

TEST(CompensateOffset, TwoBlocksEqualOne_32f) {
    Random random(3);
    const auto x = signal<Vorn32f>(random, 200, 1000.0);
    std::vector<float> whole(200), blocks(200);
    float last = 3.0f;
    ASSERT_EQ(vornsCompensateOffset_32f(x.data(), whole.data(), 200, &last, 5.0f, 0.97f), vornStsNoErr);
    float carried = 3.0f;
    ASSERT_EQ(vornsCompensateOffset_32f(x.data(), blocks.data(), 80, &carried, 5.0f, 0.97f), vornStsNoErr);
    EXPECT_EQ(carried, x[79]);
    ASSERT_EQ(vornsCompensateOffset_32f(x.data() + 80, blocks.data() + 80, 120, &carried, blocks[79], 0.97f),
              vornStsNoErr);
    EXPECT_EQ(carried, last);
    // The first sample of a block is formed in another order than the rest, so behind the border last bits may differ.
    for (int n = 0; n < 80; ++n) EXPECT_EQ(blocks[n], whole[n]);
    for (int n = 80; n < 200; ++n) EXPECT_NEAR(blocks[n], whole[n], 1e-3);

    // With an exact factor on whole numbers there is nothing to round, and the blocks are the whole.
    const float steps[] = {0, 7, 1, 8, 2, 9, 3, 10, 4, 11};
    float once[10], twice[10];
    last = carried = 0.0f;
    ASSERT_EQ(vornsCompensateOffset_32f(steps, once, 10, &last, 0.0f, 0.5f), vornStsNoErr);
    ASSERT_EQ(vornsCompensateOffset_32f(steps, twice, 4, &carried, 0.0f, 0.5f), vornStsNoErr);
    ASSERT_EQ(vornsCompensateOffset_32f(steps + 4, twice + 4, 6, &carried, twice[3], 0.5f), vornStsNoErr);
    EXPECT_TRUE(sameBits(twice, once, 10));
}

TEST(CompensateOffset, OneSampleIsTruncated_16s) {
    Vorn16s dst = 99, last = 3;
    const Vorn16s src = 10;
    ASSERT_EQ(vornsCompensateOffset_16s(&src, &dst, 1, &last, 5, 0.98f), vornStsNoErr);  // 10 + 4.9 - 3 = 11.9
    EXPECT_EQ(dst, 11);
    EXPECT_EQ(last, 10);
    last = 30;
    ASSERT_EQ(vornsCompensateOffset_16s(&src, &dst, 1, &last, 5, 0.98f), vornStsNoErr);  // -15.1
    EXPECT_EQ(dst, -15);
}

TEST(CompensateOffset, TheTwoPathsOfTheFixedForm) {
    const Vorn16s src[] = {0, 1, 1};
    Vorn16s dst[3], last = 0;
    // Q12: -1 x 0.5 shifts to -1, not to 0.
    ASSERT_EQ(vornsCompensateOffset_16s(src, dst, 3, &last, -2, 0.5f), vornStsNoErr);
    EXPECT_EQ(dst[0], -1);
    EXPECT_EQ(dst[1], 0);  // -1 + 1
    EXPECT_EQ(dst[2], 0);
    // In single, rounded: 1 + (-1) x 1.5 = -0.5 gives -1.
    last = 0;
    ASSERT_EQ(vornsCompensateOffset_16s(src, dst, 2, &last, -1, 1.5f), vornStsNoErr);  // y(0) = -1.5, truncated
    EXPECT_EQ(dst[0], -1);
    EXPECT_EQ(dst[1], -1);
}

TEST(CompensateOffset, TheDifferenceSaturatesByItself) {
    const Vorn16s src[] = {-32768, 32767};
    Vorn16s dst[2], last = -32768;
    ASSERT_EQ(vornsCompensateOffset_16s(src, dst, 2, &last, -100, 1.0f), vornStsNoErr);
    EXPECT_EQ(dst[0], -100);
    EXPECT_EQ(dst[1], 32667) << "32767 - 100, not 65535 - 100 saturated";
}

TEST(CompensateOffset, InPlaceFormsEqualTheModel) {
    Random random(4);
    const auto hard = test::hardIntegers<Vorn16s>();
    for (float val : factors) {
        for (std::size_t len = 1; len <= 40; ++len) {
            const auto x = signal<Vorn32f>(random, len, 3000.0);
            Guarded<float> single(x), last{5.0f};
            std::vector<float> expected(len);
            float expectedLast = 5.0f;
            model::compensateOffset(x, expected, expectedLast, -2.5f, val);
            ASSERT_EQ(vornsCompensateOffset_32f_I(single, static_cast<int>(len), last, -2.5f, val), vornStsNoErr);
            EXPECT_TRUE(sameBits(single.data(), expected.data(), len)) << val;
            EXPECT_EQ(last[0], expectedLast);

            auto s = signal<Vorn16s>(random, len, len % 2 ? 32767.9 : 300.0);
            if (len % 3 == 0) s[len / 2] = hard[len % hard.size()];
            Guarded<Vorn16s> fixed(s), fixedLast{-77};
            std::vector<Vorn16s> fixedExpected(len);
            Vorn16s fixedExpectedLast = -77;
            model::compensateOffsetInPlace(s, fixedExpected, fixedExpectedLast, 99, val);
            ASSERT_EQ(vornsCompensateOffset_16s_I(fixed, static_cast<int>(len), fixedLast, 99, val), vornStsNoErr);
            EXPECT_TRUE(sameBits(fixed.data(), fixedExpected.data(), len)) << val;
            EXPECT_EQ(fixedLast[0], fixedExpectedLast);
        }
    }
}

TEST(CompensateOffset, Q15FormsEqualTheModel) {
    Random random(5);
    for (Vorn16s val : {0, 1, 2, 16384, 32000, 32440, 32767}) {
        for (std::size_t len = 1; len <= 60; ++len) {
            const auto x = signal<Vorn16s>(random, len, len % 2 ? 32767.9 : 300.0);
            const auto dstLast = static_cast<Vorn16s>(random.integer(-32768, 32767));
            const auto srcLast = static_cast<Vorn16s>(random.integer(-32768, 32767));
            std::vector<Vorn16s> expected(len);
            Vorn16s expectedLast = srcLast;
            model::compensateOffsetQ15(x, expected, expectedLast, dstLast, val);
            Guarded<Vorn16s> src(x), dst(len), inPlace(x), last{srcLast};
            ASSERT_EQ(vornsCompensateOffsetQ15_16s(src, dst, static_cast<int>(len), last, dstLast, val), vornStsNoErr);
            EXPECT_TRUE(sameBits(dst.data(), expected.data(), len)) << val;
            EXPECT_EQ(last[0], expectedLast);
            last[0] = srcLast;
            ASSERT_EQ(vornsCompensateOffsetQ15_16s_I(inPlace, static_cast<int>(len), last, dstLast, val), vornStsNoErr);
            EXPECT_TRUE(sameBits(inPlace.data(), expected.data(), len)) << val;
            EXPECT_EQ(last[0], expectedLast);
        }
    }
    // Toward zero: -1 x 0.5 gives 0, where the Q12 path gives -1.
    const Vorn16s src[] = {0};
    Vorn16s dst = 9, last = 0;
    ASSERT_EQ(vornsCompensateOffsetQ15_16s(src, &dst, 1, &last, -1, 16384), vornStsNoErr);
    EXPECT_EQ(dst, 0);
    std::vector<Vorn16s> longest(65535), out(65535);
    EXPECT_EQ(vornsCompensateOffsetQ15_16s(longest.data(), out.data(), 65535, &last, 0, 100), vornStsNoErr);
}

// Of both shapes: the forms in place take no src.
template <class T>
struct Arguments {
    std::vector<T> data = std::vector<T>(4, T(1));
    Guarded<T> out = Guarded<T>(4), carried = Guarded<T>(1);
    const T* src = data.data();
    T* dst = out.data();
    T* last = carried.data();
    int len = 4;
    Vorn16s q15 = 16384;
    bool untouched() { return out.untouched() && carried.untouched(); }
};

enum class Shape { Apart, InPlace };

template <class T, bool q15 = false>
void expectOrder(Shape shape, VornStatus (*call)(Arguments<T>&)) {
    using A = Arguments<T>;
    std::vector<test::Rule<A>> rules;
    if (shape == Shape::Apart) rules.push_back({"src", vornStsNullPtrErr, [](A& a) { a.src = nullptr; }});
    rules.insert(rules.end(), {{"dst", vornStsNullPtrErr, [](A& a) { a.dst = nullptr; }},
                               {"pSrcLast", vornStsNullPtrErr, [](A& a) { a.last = nullptr; }},
                               {"len 0", vornStsSizeErr, [](A& a) { a.len = 0; }},
                               {"len -1", vornStsSizeErr, [](A& a) { a.len = -1; }}});
    if (q15) {
        rules.push_back({"len 65536", vornStsSizeErr, [](A& a) { a.len = 65536; }});
        rules.push_back({"val -1", vornStsBadArgErr, [](A& a) { a.q15 = -1; }});
    }
    test::expectCheckOrder<A>([] { return A(); }, call, [](A& a) { return a.untouched(); }, rules);
}

TEST(CompensateOffset, ChecksInOrder) {
    using Singles = Arguments<Vorn32f>;
    using Shorts = Arguments<Vorn16s>;
    expectOrder<Vorn32f>(Shape::Apart,
                         [](Singles& a) { return vornsCompensateOffset_32f(a.src, a.dst, a.len, a.last, 0, 0.5f); });
    expectOrder<Vorn32f>(Shape::InPlace,
                         [](Singles& a) { return vornsCompensateOffset_32f_I(a.dst, a.len, a.last, 0, 0.5f); });
    expectOrder<Vorn16s>(Shape::Apart,
                         [](Shorts& a) { return vornsCompensateOffset_16s(a.src, a.dst, a.len, a.last, 0, 0.5f); });
    expectOrder<Vorn16s>(Shape::InPlace,
                         [](Shorts& a) { return vornsCompensateOffset_16s_I(a.dst, a.len, a.last, 0, 0.5f); });
    expectOrder<Vorn16s, true>(
        Shape::Apart, [](Shorts& a) { return vornsCompensateOffsetQ15_16s(a.src, a.dst, a.len, a.last, 0, a.q15); });
    expectOrder<Vorn16s, true>(
        Shape::InPlace, [](Shorts& a) { return vornsCompensateOffsetQ15_16s_I(a.dst, a.len, a.last, 0, a.q15); });
}

}  // namespace
