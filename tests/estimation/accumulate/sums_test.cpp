// Sums and sums of squares over rows, split over calls.
#include <gtest/gtest.h>
#include <sys/mman.h>

#include <climits>
#include <cmath>
#include <cstddef>
#include <vector>

#include "model/accumulators.h"
#include "support/expect.h"
#include "support/guarded.h"
#include "support/rounding_mode.h"
#include "support/values.h"
#include "vornsr.h"

namespace {

using test::Guarded;
using test::Offset;
using test::Random;
using test::RoundingMode;
using test::sameBits;

const int everyScaleFactor[] = {INT_MIN, -100000, -151, -129, -128, -127, -32, -31, -30, -8,  -1,     0,
                                1,       2,       8,    24,   31,   32,   33,  127, 149, 150, 100000, INT_MAX};

// The members behind one face. A plain form takes no notice of what stands in the sums.
template <class S, class R>
struct Form {
    using Source = S;
    using Sum = R;
};
struct Single : Form<float, float> {
    static constexpr bool continues = false;
    static VornStatus call(const float* src, int step, int height, float* sum, float* sumSq, int width, int) {
        return vornsSumMeanVar_32f(src, step, height, sum, sumSq, width);
    }
};
struct SingleContinued : Form<float, float> {
    static constexpr bool continues = true;
    static VornStatus call(const float* src, int step, int height, float* sum, float* sumSq, int width, int) {
        return vornsSumMeanVar_32f_I(src, step, height, sum, sumSq, width);
    }
};
struct Short : Form<Vorn16s, float> {
    static constexpr bool continues = false;
    static VornStatus call(const Vorn16s* src, int step, int height, float* sum, float* sumSq, int width, int) {
        return vornsSumMeanVar_16s32f(src, step, height, sum, sumSq, width);
    }
};
struct ShortContinued : Form<Vorn16s, float> {
    static constexpr bool continues = true;
    static VornStatus call(const Vorn16s* src, int step, int height, float* sum, float* sumSq, int width, int) {
        return vornsSumMeanVar_16s32f_I(src, step, height, sum, sumSq, width);
    }
};
struct Whole : Form<Vorn16s, Vorn32s> {
    static constexpr bool continues = false;
    static VornStatus call(const Vorn16s* src, int step, int height, Vorn32s* sum, Vorn32s* sumSq, int width, int sf) {
        return vornsSumMeanVar_16s32s_Sfs(src, step, height, sum, sumSq, width, sf);
    }
};
struct WholeContinued : Form<Vorn16s, Vorn32s> {
    static constexpr bool continues = true;
    static VornStatus call(const Vorn16s* src, int step, int height, Vorn32s* sum, Vorn32s* sumSq, int width, int sf) {
        return vornsSumMeanVar_16s32s_ISfs(src, step, height, sum, sumSq, width, sf);
    }
};

template <class T>
std::vector<T> ordinary(Random& random, std::size_t n) {
    if constexpr (std::is_integral_v<T>) {
        return random.integers<T>(n);
    } else {
        return random.floats(n, -100.0, 300.0);
    }
}
template <class T>
std::vector<T> hard(Random& random, std::size_t n) {
    if constexpr (std::is_integral_v<T>) {
        return random.pick(test::hardIntegers<T>(), n);
    } else {
        return random.pick(test::hardFloats<T>(), n);
    }
}

template <class Member>
void modelOf(const typename Member::Source* src, int step, int height, typename Member::Sum* sum,
             typename Member::Sum* sumSq, int width, int scaleFactor) {
    using Sum = typename Member::Sum;
    std::vector<const typename Member::Source*> rows;
    for (int i = 0; i < height; ++i) rows.push_back(src + static_cast<std::ptrdiff_t>(i) * step);
    std::vector<float> sums(width), squares(width);
    for (int j = 0; j < width && Member::continues; ++j) {
        sums[j] = static_cast<float>(sum[j]);
        squares[j] = static_cast<float>(sumSq[j]);
    }
    model::addRowPairs(rows.data(), height, sums.data(), squares.data(), width);
    for (int j = 0; j < width; ++j) {
        if constexpr (std::is_integral_v<Sum>) {
            sum[j] = model::to32s(sums[j], 1, model::singleOfScale(scaleFactor));
            sumSq[j] = model::to32s(squares[j], 1, model::singleOfScale(scaleFactor));
        } else {
            sum[j] = sums[j];
            sumSq[j] = squares[j];
        }
    }
}

template <class Member>
class RowPairs : public testing::Test {
protected:
    using Source = typename Member::Source;
    using Sum = typename Member::Sum;

    // The last row is as long as the width only.
    static void compare(const std::vector<Source>& data, int height, int step, int width, const std::vector<Sum>& first,
                        const std::vector<Sum>& second, int scaleFactor) {
        const std::size_t size = static_cast<std::size_t>(height - 1) * step + width;
        Guarded<Source> src(std::vector<Source>(data.begin(), data.begin() + static_cast<std::ptrdiff_t>(size)));
        Guarded<Sum> sum(first), sumSq(second);
        std::vector<Sum> expectedSum = first, expectedSumSq = second;
        modelOf<Member>(src, step, height, expectedSum.data(), expectedSumSq.data(), width, scaleFactor);
        ASSERT_EQ(Member::call(src, step, height, sum, sumSq, width, scaleFactor), vornStsNoErr);
        EXPECT_TRUE(sameBits(sum.data(), expectedSum.data(), width)) << height << " x " << width << ", " << step;
        EXPECT_TRUE(sameBits(sumSq.data(), expectedSumSq.data(), width)) << height << " x " << width << ", " << step;
        EXPECT_TRUE(sum.surroundingsUntouched() && sumSq.surroundingsUntouched());
    }
};

using Members = testing::Types<Single, SingleContinued, Short, ShortContinued, Whole, WholeContinued>;
TYPED_TEST_SUITE(RowPairs, Members);

TYPED_TEST(RowPairs, EqualTheModelBitForBit) {
    using Source = typename TypeParam::Source;
    using Sum = typename TypeParam::Sum;
    Random random(1);
    for (int width = 1; width <= 70; ++width) {
        for (int height : {1, 2, 3, 4, 7, 8, 9, 17, 26}) {
            for (int step : {width, width + 3, (width + 7) / 8 * 8}) {
                this->compare(ordinary<Source>(random, static_cast<std::size_t>(height) * step), height, step, width,
                              ordinary<Sum>(random, width), ordinary<Sum>(random, width), height % 3);
            }
        }
    }
    for (int width : {79, 127, 128, 129, 200, 513}) {
        for (int height : {1, 15, 40}) {
            this->compare(ordinary<Source>(random, static_cast<std::size_t>(height) * width), height, width, width,
                          ordinary<Sum>(random, width), ordinary<Sum>(random, width), 0);
        }
    }
}

TYPED_TEST(RowPairs, EqualTheModelOverManyRows) {
    using Source = typename TypeParam::Source;
    using Sum = typename TypeParam::Sum;
    Random random(2);
    for (int width : {1, 3, 13, 39, 129}) {
        for (int height : {1000, 4001}) {
            this->compare(ordinary<Source>(random, static_cast<std::size_t>(height) * width), height, width, width,
                          ordinary<Sum>(random, width), ordinary<Sum>(random, width), 7);
        }
    }
}

TYPED_TEST(RowPairs, HardValuesPassThrough) {
    using Source = typename TypeParam::Source;
    using Sum = typename TypeParam::Sum;
    Random random(3);
    for (int width : {1, 2, 5, 9, 16, 23, 39}) {
        for (int height : {1, 2, 5, 12}) {
            for (int turn = 0; turn < 10; ++turn) {
                this->compare(hard<Source>(random, static_cast<std::size_t>(height) * width), height, width, width,
                              hard<Sum>(random, width), hard<Sum>(random, width), turn * 8 - 31);
            }
        }
    }
}

TYPED_TEST(RowPairs, AlignmentChangesNothing) {
    using Source = typename TypeParam::Source;
    using Sum = typename TypeParam::Sum;
    Random random(4);
    const int height = 9;
    for (int width : {3, 13, 21, 70}) {
        for (int step : {72, 73}) {
            const auto data = ordinary<Source>(random, static_cast<std::size_t>(height) * step);
            const auto before = ordinary<Sum>(random, width);
            std::vector<Sum> sum = before, sumSq = before;
            modelOf<TypeParam>(data.data(), step, height, sum.data(), sumSq.data(), width, 1);
            for (std::size_t a = 0; a < 32; a += sizeof(Source)) {
                for (std::size_t b : {0, 4, 16}) {
                    Offset<Source> src(data.size(), a);
                    Offset<Sum> dstSum(width, b), dstSumSq(width, (a + b) / 4 * 4 % 32);
                    src.assign(data);
                    dstSum.assign(before);
                    dstSumSq.assign(before);
                    ASSERT_EQ(TypeParam::call(src, step, height, dstSum, dstSumSq, width, 1), vornStsNoErr);
                    EXPECT_TRUE(sameBits(dstSum.data(), sum.data(), width)) << a << " " << b;
                    EXPECT_TRUE(sameBits(dstSumSq.data(), sumSq.data(), width)) << a << " " << b;
                    EXPECT_TRUE(dstSum.surroundingsUntouched() && dstSumSq.surroundingsUntouched());
                }
            }
        }
    }
}

TYPED_TEST(RowPairs, SumsFollowTheCallersRoundingMode) {
    using Source = typename TypeParam::Source;
    using Sum = typename TypeParam::Sum;
    Random random(5);
    const int height = 201, width = 13;
    const auto data = ordinary<Source>(random, static_cast<std::size_t>(height) * width);
    const auto before = ordinary<Sum>(random, width);
    auto* volatile model = modelOf<TypeParam>;  // not known to the compiler
    std::vector<Sum> nearest;
    for (unsigned mode : {RoundingMode::nearest, RoundingMode::down, RoundingMode::up, RoundingMode::towardZero}) {
        std::vector<Sum> sum = before, sumSq = before, expectedSum = before, expectedSumSq = before;
        VornStatus status;
        unsigned after;
        {
            const RoundingMode caller(mode);
            model(data.data(), width, height, expectedSum.data(), expectedSumSq.data(), width, 10);
            status = TypeParam::call(data.data(), width, height, sum.data(), sumSq.data(), width, 10);
            after = RoundingMode::current();
        }
        EXPECT_EQ(status, vornStsNoErr);
        EXPECT_EQ(after, mode);
        EXPECT_TRUE(sameBits(sum, expectedSum)) << mode;
        EXPECT_TRUE(sameBits(sumSq, expectedSumSq)) << mode;
        if (mode == RoundingMode::nearest) nearest = sumSq;
        EXPECT_EQ(sumSq == nearest, mode == RoundingMode::nearest) << "the mode shows in the sums of squares";
    }
}

// Blocks of an even number of rows leave the pairs as they are.
TYPED_TEST(RowPairs, SplitOverCallsTheSumsAreThoseOfOneCall) {
    using Source = typename TypeParam::Source;
    using Sum = typename TypeParam::Sum;
    if constexpr (TypeParam::continues) {
        Random random(6);
        for (int width : {3, 39, 150}) {
            const int height = 999;
            const bool integers = std::is_integral_v<Sum>;  // these would be rounded after each call: keep them exact
            std::vector<Source> data(static_cast<std::size_t>(height) * width);
            for (Source& x : data) x = static_cast<Source>(random.uniform(-100.0, 100.0));
            std::vector<Sum> sum(width), sumSq(width), parts(width), partsSq(width);
            ASSERT_EQ(TypeParam::call(data.data(), width, height, sum.data(), sumSq.data(), width, 0), vornStsNoErr);
            for (int row = 0; row < height;) {
                int rows = static_cast<int>(random.integer(1, integers ? 40 : 20));
                if (!integers) rows *= 2;
                rows = std::min(rows, height - row);
                ASSERT_EQ(TypeParam::call(&data[static_cast<std::size_t>(row) * width], width, rows, parts.data(),
                                          partsSq.data(), width, 0),
                          vornStsNoErr);
                row += rows;
            }
            EXPECT_TRUE(sameBits(parts, sum)) << width;
            EXPECT_TRUE(sameBits(partsSq, sumSq)) << width;
        }
    }
}

// Small integers: every partial sum is one, so that any grouping gives the very sum.
TYPED_TEST(RowPairs, SumsOfSmallIntegersAreExact) {
    using Source = typename TypeParam::Source;
    using Sum = typename TypeParam::Sum;
    Random random(7);
    for (int width : {1, 7, 39, 200}) {
        const int height = 501;
        std::vector<Source> data(static_cast<std::size_t>(height) * width);
        std::vector<std::int64_t> sums(width), squares(width);
        std::vector<Sum> sum(width, Sum(5)), sumSq(width, Sum(9));
        for (int j = 0; j < width && TypeParam::continues; ++j) sums[j] = 5, squares[j] = 9;
        for (std::size_t i = 0; i < data.size(); ++i) {
            const auto x = random.integer(-150, 150);
            data[i] = static_cast<Source>(x);
            sums[i % width] += x;
            squares[i % width] += x * x;
        }
        ASSERT_EQ(TypeParam::call(data.data(), width, height, sum.data(), sumSq.data(), width, 0), vornStsNoErr);
        for (int j = 0; j < width; ++j) {
            EXPECT_EQ(static_cast<double>(sum[j]), static_cast<double>(sums[j]));
            EXPECT_EQ(static_cast<double>(sumSq[j]), static_cast<double>(squares[j]));
        }
    }
}

TYPED_TEST(RowPairs, OffsetsBeyondAnIntAreReached) {
    using Source = typename TypeParam::Source;
    using Sum = typename TypeParam::Sum;
    const int step = 1 << 30, height = 4, width = 3;
    const std::size_t bytes = (std::size_t{3} * step + width) * sizeof(Source);
    void* room = mmap(nullptr, bytes, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
    ASSERT_NE(room, MAP_FAILED);
    auto* src = static_cast<Source*>(room);
    for (int i = 0; i < height; ++i) src[static_cast<std::size_t>(i) * step + 1] = static_cast<Source>(i + 1);
    std::vector<Sum> sum(3), sumSq(3);
    EXPECT_EQ(TypeParam::call(src, step, height, sum.data(), sumSq.data(), width, 0), vornStsNoErr);
    EXPECT_EQ(sum, (std::vector<Sum>{0, 10, 0}));
    EXPECT_EQ(sumSq, (std::vector<Sum>{0, 30, 0}));
    munmap(room, bytes);
}

// Above 2^24 singles are the even integers: pairs show.
TEST(SumMeanVar, RowsAreTakenInPairs) {
    const float ones[] = {1, 1, 1};
    for (const auto& [height, expected] : {std::pair{1, 16777216.0f}, {2, 16777218.0f}, {3, 16777220.0f}}) {
        float sum = 16777216.0f, sumSq = 16777216.0f;
        ASSERT_EQ(vornsSumMeanVar_32f_I(ones, 1, height, &sum, &sumSq, 1), vornStsNoErr);
        EXPECT_EQ(sum, expected) << height;
        EXPECT_EQ(sumSq, expected) << height;
    }
    const Vorn16s shorts[] = {1, 1, 1};
    float sum = 16777216.0f, sumSq = 16777216.0f;
    ASSERT_EQ(vornsSumMeanVar_16s32f_I(shorts, 1, 3, &sum, &sumSq, 1), vornStsNoErr);
    EXPECT_EQ(sum, 16777220.0f);
    EXPECT_EQ(sumSq, 16777220.0f);
}

// 4097 squared is 16785409, which no single holds.
TEST(SumMeanVar, SquaresOfShortsRound) {
    const Vorn16s x[] = {4097, 1};
    float sum, sumSq;
    ASSERT_EQ(vornsSumMeanVar_16s32f(x, 1, 2, &sum, &sumSq, 1), vornStsNoErr);
    EXPECT_EQ(sum, 4098.0f);
    EXPECT_EQ(sumSq, 16785408.0f);  // 16785408 + 1, to even
}

TEST(SumMeanVar, OneRowIsEnough) {
    const float x[] = {3, -2};
    float sum[2], sumSq[2];
    ASSERT_EQ(vornsSumMeanVar_32f(x, 2, 1, sum, sumSq, 2), vornStsNoErr);
    EXPECT_EQ(sum[0], 3.0f);
    EXPECT_EQ(sum[1], -2.0f);
    EXPECT_EQ(sumSq[0], 9.0f);
    EXPECT_EQ(sumSq[1], 4.0f);
}

TEST(SumMeanVar, TheScaleFactorScalesTheRunningSumAtEveryCall) {
    const Vorn16s zeros[6] = {};
    Vorn32s sum[] = {8, -8, 5}, sumSq[] = {7, 1000000, -2147483647 - 1};
    ASSERT_EQ(vornsSumMeanVar_16s32s_ISfs(zeros, 3, 2, sum, sumSq, 3, 1), vornStsNoErr);
    EXPECT_EQ(sum[0], 4);
    EXPECT_EQ(sum[1], -4);
    EXPECT_EQ(sum[2], 2);    // 2.5, to even
    EXPECT_EQ(sumSq[0], 4);  // 3.5, to even
    EXPECT_EQ(sumSq[1], 500000);
    EXPECT_EQ(sumSq[2], -1073741824);
    ASSERT_EQ(vornsSumMeanVar_16s32s_ISfs(zeros, 3, 2, sum, sumSq, 3, 1), vornStsNoErr);
    EXPECT_EQ(sum[0], 2);
    EXPECT_EQ(sum[1], -2);
    EXPECT_EQ(sum[2], 1);
    EXPECT_EQ(sumSq[1], 250000);
}

TEST(SumMeanVar, IntegerSumsSaturateAndAreSinglesOnTheirWay) {
    const Vorn16s x[] = {-32768, -32768, -32768};
    Vorn32s sum = -2147483647 - 1, sumSq = 16777217;
    ASSERT_EQ(vornsSumMeanVar_16s32s_ISfs(x, 1, 3, &sum, &sumSq, 1, 0), vornStsNoErr);
    EXPECT_EQ(sum, -2147483647 - 1);
    EXPECT_EQ(sumSq, 2147483647);
    const Vorn16s none = 0;
    sum = 5, sumSq = 16777217;
    ASSERT_EQ(vornsSumMeanVar_16s32s_ISfs(&none, 1, 1, &sum, &sumSq, 1, 0), vornStsNoErr);
    EXPECT_EQ(sum, 5);
    EXPECT_EQ(sumSq, 16777216);
}

template <class Member>
class ScaledRowPairs : public RowPairs<Member> {};
using ScaledMembers = testing::Types<Whole, WholeContinued>;
TYPED_TEST_SUITE(ScaledRowPairs, ScaledMembers);

TYPED_TEST(ScaledRowPairs, EveryScaleFactor) {
    Random random(8);
    for (int scaleFactor : everyScaleFactor) {
        for (int width : {1, 5, 18}) {
            this->compare(ordinary<Vorn16s>(random, 12 * width), 12, width, width, hard<Vorn32s>(random, width),
                          hard<Vorn32s>(random, width), scaleFactor);
            this->compare(std::vector<Vorn16s>(width, 0), 1, width, width, std::vector<Vorn32s>(width, 0),
                          std::vector<Vorn32s>(width, 0), scaleFactor);
        }
    }
}

template <class Member>
struct Arguments {
    using Source = typename Member::Source;
    using Sum = typename Member::Sum;
    std::vector<Source> data = std::vector<Source>(12, Source(1));
    Guarded<Sum> outSum = Guarded<Sum>(3), outSumSq = Guarded<Sum>(3);
    const Source* src = data.data();
    int step = 3, height = 4, width = 3;
    Sum* sum = outSum.data();
    Sum* sumSq = outSumSq.data();
};

TYPED_TEST(RowPairs, ChecksInOrder) {
    using A = Arguments<TypeParam>;
    using Rule = test::Rule<A>;
    test::expectCheckOrder<A>([] { return A(); },
                              [](A& a) { return TypeParam::call(a.src, a.step, a.height, a.sum, a.sumSq, a.width, 0); },
                              [](A& a) { return a.outSum.untouched() && a.outSumSq.untouched(); },
                              {Rule{"step -1", vornStsStrideErr, [](A& a) { a.step = -1; }},
                               Rule{"src", vornStsNullPtrErr, [](A& a) { a.src = nullptr; }},
                               Rule{"dstSum", vornStsNullPtrErr, [](A& a) { a.sum = nullptr; }},
                               Rule{"dstSumSq", vornStsNullPtrErr, [](A& a) { a.sumSq = nullptr; }},
                               Rule{"height 0", vornStsSizeErr, [](A& a) { a.height = 0; }},
                               Rule{"height INT_MIN", vornStsSizeErr, [](A& a) { a.height = INT_MIN; }},
                               Rule{"width 0", vornStsSizeErr, [](A& a) { a.width = 0; }}});
    A a;
    a.step = 2;
    EXPECT_EQ(TypeParam::call(nullptr, a.step, 0, a.sum, a.sumSq, a.width, 0), vornStsStrideErr);
    EXPECT_TRUE(a.outSum.untouched() && a.outSumSq.untouched());
}

// The kernels under their own names: the integer one leaves singles.
extern "C" {
void vornsSumMeanVar_32f_D2_M7_Al_I(const Vorn32f* src, std::int64_t srcStep, std::int64_t height, Vorn32f* dstSum,
                                    Vorn32f* dstSumSq, std::int64_t width);
void vornsSumMeanVar_16s32s_D2_M7_Al_I(const Vorn16s* src, std::int64_t srcStep, std::int64_t height, Vorn32s* dstSum,
                                       Vorn32s* dstSumSq, std::int64_t width);
}
TEST(SumMeanVar, KernelsUnderTheirOwnNames) {
    const float x[] = {1, 2, 3};
    float sum = 10, sumSq = 20;
    vornsSumMeanVar_32f_D2_M7_Al_I(x, 1, 3, &sum, &sumSq, 1);
    EXPECT_EQ(sum, 16.0f);
    EXPECT_EQ(sumSq, 34.0f);
    const Vorn16s shorts[] = {1, 2, 3};
    Vorn32s sums[] = {10, 20};
    vornsSumMeanVar_16s32s_D2_M7_Al_I(shorts, 1, 3, &sums[0], &sums[1], 1);
    EXPECT_EQ(std::bit_cast<float>(sums[0]), 16.0f);
    EXPECT_EQ(std::bit_cast<float>(sums[1]), 34.0f);
}

}  // namespace
