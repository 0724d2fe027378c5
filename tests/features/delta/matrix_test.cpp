// Deltas of all rows of a matrix, in place.
#include <gtest/gtest.h>

#include <climits>
#include <cstddef>
#include <type_traits>
#include <vector>

#include "features/delta/members.h"
#include "model/delta.h"
#include "support/expect.h"
#include "support/guarded.h"
#include "support/rounding_mode.h"
#include "support/values.h"
#include "vornsr.h"

namespace {

using test::Guarded;
using test::Offset;
using test::Random;
using test::sameBits;

std::size_t at(int row, int step, int column) {
    return static_cast<std::size_t>(row) * static_cast<std::size_t>(step) + static_cast<std::size_t>(column);
}

// The four members as one call: f is one factor or width of them behind width others, which nobody may read.
template <class T>
struct Call {
    bool mul = false;
    T* data = nullptr;
    const T* f = nullptr;
    int height = 0, step = 0, width = 0, offset = 0, winSize = 0, scale = 0;

    VornStatus run() const {
        if constexpr (std::is_same_v<T, Vorn32f>) {
            return mul ? vornsEvalDeltaMul_32f_D2(data, height, step, f, width, offset, winSize)
                       : vornsEvalDelta_32f_D2(data, height, step, width, offset, winSize, f[0]);
        } else {
            return mul ? vornsEvalDeltaMul_16s_D2Sfs(data, height, step, f, width, offset, winSize, scale)
                       : vornsEvalDelta_16s_D2Sfs(data, height, step, width, offset, winSize, f[0], scale);
        }
    }
};

// Values of the whole matrix and of the factors.
template <class T>
struct Values {
    std::vector<T> matrix, factors;
};

template <class T>
Values<T> ordinary(Random& random, std::size_t len, int width) {
    const auto factors = static_cast<std::size_t>(2 * width);
    if constexpr (std::is_same_v<T, Vorn32f>) {
        return {random.floats(len, -50.0, 50.0), random.floats(factors, -2.0, 2.0)};
    } else {
        return {random.integers<T>(len), random.integers<T>(factors)};
    }
}
template <class T>
Values<T> hard(Random& random, std::size_t len, int width) {
    std::vector<T> values;
    if constexpr (std::is_same_v<T, Vorn32f>) {
        values = test::hardFloats<T>();
    } else {
        values = test::hardIntegers<T>();
    }
    return {random.pick(values, len), random.pick(values, static_cast<std::size_t>(2 * width))};
}

// The deltas of a matrix that ends at a guard page with its last delta; the factors of the frames stand before one.
template <class T>
void expectModel(Call<T> call, const Values<T>& values) {
    const std::size_t len = at(call.height - 1, call.step, call.offset + 2 * call.width);
    std::vector<T> expected(values.matrix.begin(), values.matrix.begin() + static_cast<std::ptrdiff_t>(len));
    const auto& before = values.matrix;
    for (int r = 0; r < call.height; ++r) {
        for (int c = 0; c < call.width; ++c) {
            const auto row = [&](int i) { return before[at(i, call.step, call.offset + c)]; };
            const T factor = call.mul ? values.factors[static_cast<std::size_t>(call.width + c)] : values.factors[0];
            expected[at(r, call.step, call.offset + call.width + c)] =
                model::evalDelta(row, r, call.height, call.winSize, factor, call.scale);
        }
    }
    const Guarded<T> data(std::vector<T>(before.begin(), before.begin() + static_cast<std::ptrdiff_t>(len)));
    const Guarded<T> factors(values.factors);
    call.data = data;
    call.f = factors;
    ASSERT_EQ(call.run(), vornStsNoErr);
    EXPECT_TRUE(sameBits(data.data(), expected.data(), len))
        << "mul " << call.mul << ", width " << call.width << ", offset " << call.offset << ", height " << call.height
        << ", window " << call.winSize << ", scale " << call.scale;
    EXPECT_TRUE(data.surroundingsUntouched());
}

template <class T>
class EvalDelta : public testing::Test {};
using Elements = testing::Types<Vorn32f, Vorn16s>;
TYPED_TEST_SUITE(EvalDelta, Elements);

TYPED_TEST(EvalDelta, EqualsTheModelBitForBit) {
    Random random(1);
    for (bool mul : {false, true}) {
        for (int width = 1; width <= 140; width += width < 70 ? 1 : 23) {
            for (int winSize = 1; winSize <= 5; ++winSize) {
                for (int beyond : {0, 1, 2, 7}) {
                    Call<TypeParam> call{mul};
                    call.height = 2 * winSize + beyond;
                    call.width = width;
                    call.offset = width % 3;
                    call.step = call.offset + 2 * width + width % 4;
                    call.winSize = winSize;
                    call.scale = static_cast<int>(random.integer(-3, 18));
                    expectModel(call, ordinary<TypeParam>(random, at(call.height, call.step, 0), width));
                }
            }
        }
    }
}

TYPED_TEST(EvalDelta, HardValuesFollowTheArithmetic) {
    Random random(2);
    for (bool mul : {false, true}) {
        for (int width : {1, 5, 13, 40}) {
            for (int turn = 0; turn < 40; ++turn) {
                Call<TypeParam> call{mul};
                call.height = 9;
                call.width = width;
                call.step = 2 * width;
                call.winSize = 1 + turn % 4;
                call.scale = turn % 20 - 3;
                expectModel(call, hard<TypeParam>(random, at(call.height, call.step, 0), width));
            }
        }
    }
}

// Weights above 2^10, above 2^11 and above 2^15.
TYPED_TEST(EvalDelta, LargeWindows) {
    Random random(3);
    for (int width : {3, 9}) {
        for (int winSize : {255, 1023, 1024, 1025, 1026, 2047, 2048, 2049, 3100}) {
            Call<TypeParam> call{width == 9};
            call.height = 2 * winSize + 1;
            call.width = width;
            call.step = 2 * width;
            call.winSize = winSize;
            call.scale = 3;
            // All rows are too many for the model: the first, the middle and the last ones.
            auto values = ordinary<TypeParam>(random, at(call.height, call.step, 0), width);
            const auto before = values.matrix;
            call.data = values.matrix.data();
            call.f = values.factors.data();
            ASSERT_EQ(call.run(), vornStsNoErr);
            for (int r : {0, 1, winSize - 1, winSize, winSize + 1, 2 * winSize}) {
                for (int c = 0; c < width; ++c) {
                    const auto row = [&](int i) { return before[at(i, call.step, c)]; };
                    const TypeParam factor = values.factors[static_cast<std::size_t>(call.mul ? width + c : 0)];
                    const TypeParam expected = model::evalDelta(row, r, call.height, winSize, factor, call.scale);
                    EXPECT_TRUE(test::same(values.matrix[at(r, call.step, width + c)], expected))
                        << winSize << " " << r << " " << c;
                }
            }
        }
    }
}

TYPED_TEST(EvalDelta, AlignmentChangesNothing) {
    Random random(4);
    for (bool mul : {false, true}) {
        for (int width : {5, 8, 40}) {
            Call<TypeParam> call{mul};
            call.height = 8;
            call.width = width;
            call.step = 2 * width + width % 8;
            call.winSize = 2;
            call.scale = 5;
            const auto values = ordinary<TypeParam>(random, at(call.height, call.step, 0), width);
            auto expected = values.matrix;
            call.data = expected.data();
            call.f = values.factors.data();
            ASSERT_EQ(call.run(), vornStsNoErr);
            for (std::size_t a = 0; a < 32; a += sizeof(TypeParam)) {
                Offset<TypeParam> data(values.matrix.size(), a), factors(values.factors.size(), (3 * a) % 32);
                data.assign(values.matrix);
                factors.assign(values.factors);
                call.data = data;
                call.f = factors;
                ASSERT_EQ(call.run(), vornStsNoErr);
                EXPECT_TRUE(sameBits(data.values(), expected)) << a;
                EXPECT_TRUE(data.surroundingsUntouched());
            }
        }
    }
}

TEST(EvalDeltaSingles, FollowTheCallersRounding) {
    Random random(5);
    for (unsigned mode : {test::RoundingMode::down, test::RoundingMode::up, test::RoundingMode::towardZero}) {
        for (int width : {3, 13, 40}) {
            Call<Vorn32f> call{width == 13};
            call.height = 12;
            call.width = width;
            call.step = 2 * width;
            call.winSize = 3;
            const auto values = ordinary<Vorn32f>(random, at(call.height, call.step, 0), width);
            const test::RoundingMode in(mode);
            expectModel(call, values);
        }
    }
}

// Times 2^-scale, the count modulo 32, whatever the scale.
TEST(EvalDeltaShorts, AnyScale) {
    Random random(6);
    for (int scale :
         {0, 1, 15, 16, 31, 32, 33, 64, -1, -16, -31, -32, -33, INT_MAX, INT_MAX - 1, INT_MIN, INT_MIN + 1}) {
        for (int width : {1, 13, 40}) {
            for (bool mul : {false, true}) {
                Call<Vorn16s> call{mul};
                call.height = 8;
                call.width = width;
                call.step = 2 * width;
                call.winSize = 3;
                call.scale = scale;
                expectModel(call, ordinary<Vorn16s>(random, at(call.height, call.step, 0), width));
                expectModel(call, hard<Vorn16s>(random, at(call.height, call.step, 0), width));
            }
        }
    }
}

// ---- Literal values.

TEST(EvalDelta, LiteralRampWithWindow3) {
    // Row 2: 1 (3-0) + 2 (4-0) + 3 (5-0), where its left neighbours are all row 0.
    float x[] = {0, -1, 1, -1, 2, -1, 3, -1, 4, -1, 5, -1};
    ASSERT_EQ(vornsEvalDelta_32f_D2(x, 6, 2, 1, 0, 3, 0.5f), vornStsNoErr);
    const float expected[] = {0, 7, 1, 10, 2, 13, 3, 13, 4, 10, 5, 7};
    EXPECT_TRUE(sameBits(x, expected, 12));
}

TEST(EvalDelta, LiteralMiddleRowsAndOffset) {
    // Window 1 of 0 1 4 9 16, in column 1 of rows of 4.
    Vorn16s x[] = {7, 0, 7, 7, 7, 1, 7, 7, 7, 4, 7, 7, 7, 9, 7, 7, 7, 16, 7};
    ASSERT_EQ(vornsEvalDelta_16s_D2Sfs(x, 5, 4, 1, 1, 1, 3, -1), vornStsNoErr);
    const Vorn16s expected[] = {7, 0, 6, 7, 7, 1, 24, 7, 7, 4, 48, 7, 7, 9, 72, 7, 7, 16, 42};
    EXPECT_TRUE(sameBits(x, expected, 19));
}

TEST(EvalDeltaShorts, DifferencesWrap) {
    Vorn16s x[] = {-30000, 0, 30000, 0};
    ASSERT_EQ(vornsEvalDelta_16s_D2Sfs(x, 2, 2, 1, 0, 1, 1, 0), vornStsNoErr);
    EXPECT_EQ(x[1], -5536);
    EXPECT_EQ(x[3], -5536);
}

TEST(EvalDeltaShorts, Scale33IsScale1) {
    Vorn16s x[] = {0, 0, -7, 0}, y[] = {0, 0, -7, 0};
    ASSERT_EQ(vornsEvalDelta_16s_D2Sfs(x, 2, 2, 1, 0, 1, 1, 1), vornStsNoErr);
    ASSERT_EQ(vornsEvalDelta_16s_D2Sfs(y, 2, 2, 1, 0, 1, 1, 33), vornStsNoErr);
    EXPECT_EQ(x[1], -4);
    EXPECT_EQ(y[1], -4);
}

// ---- Properties.

// With one neighbour on each side the sum is the difference that the streaming forms take, the ends included.
TEST(EvalDelta, Window1IsTheStreamingFormInEveryRow) {
    Random random(7);
    const int height = 60, width = 39, step = 2 * width;
    const auto frames = random.floats(at(height, width, 0), -50.0, 50.0);
    std::vector<float> streamed(at(height, step, 0)), x(streamed.size());
    ASSERT_EQ(vornsDelta_Win1_32f_D2(frames.data(), width, streamed.data(), step, height, 0.3f, 3), vornStsNoErr);
    ASSERT_EQ(vornsCopyColumn_32f_D2(frames.data(), width, x.data(), step, height), vornStsNoErr);
    ASSERT_EQ(vornsEvalDelta_32f_D2(x.data(), height, step, width, 0, 1, 0.3f), vornStsNoErr);
    EXPECT_TRUE(sameBits(x, streamed));
}

// With two, a + 2 b: whole numbers, so that the streaming form's a + b + b rounds no more often. With repetition of the
// end frames the rows are the same to the ends; from window 3 on they are not.
TYPED_TEST(EvalDelta, Window2IsTheStreamingFormOfWholeNumbers) {
    Random random(8);
    const int height = 60, width = 13, step = 2 * width;
    const auto whole = random.integers<Vorn16s>(at(height, width, 0), -300, 300);
    const std::vector<TypeParam> frames(whole.begin(), whole.end()), factors(3 * width, TypeParam(3));
    std::vector<TypeParam> streamed(at(height, step, 0)), x(streamed.size());
    const auto member = test::deltas::membersOf<TypeParam>()[1];
    ASSERT_EQ(member.call(frames.data(), factors.data(), width, streamed.data(), step, height, 3, 0), vornStsNoErr);
    for (int r = 0; r < height; ++r) std::copy_n(&frames[at(r, width, 0)], width, &x[at(r, step, 0)]);
    Call<TypeParam> call{false, x.data(), factors.data(), height, step, width, 0, 2, 0};
    ASSERT_EQ(call.run(), vornStsNoErr);
    for (int r = 2; r < height - 2; ++r) {
        EXPECT_TRUE(sameBits(&x[at(r, step, 0)], &streamed[at(r, step, 0)], step)) << r;
    }
}

// Backwards in time every delta changes its sign: both ends follow one rule.
TYPED_TEST(EvalDelta, TimeReversed) {
    Random random(9);
    const int height = 40, width = 13, step = 2 * width;
    const auto frames = random.integers<Vorn16s>(at(height, step, 0), -50, 50);
    for (int winSize : {1, 2, 3, 7, 20}) {
        std::vector<TypeParam> forth(frames.begin(), frames.end()), back(forth.size());
        for (int r = 0; r < height; ++r) std::copy_n(&forth[at(r, step, 0)], step, &back[at(height - 1 - r, step, 0)]);
        const TypeParam one = 1;
        Call<TypeParam> call{false, forth.data(), &one, height, step, width, 0, winSize, 0};
        ASSERT_EQ(call.run(), vornStsNoErr);
        call.data = back.data();
        ASSERT_EQ(call.run(), vornStsNoErr);
        for (int r = 0; r < height; ++r) {
            for (int c = width; c < step; ++c)
                EXPECT_EQ(forth[at(r, step, c)], -back[at(height - 1 - r, step, c)]) << winSize << " " << r;
        }
    }
}

// A ramp of slope 1: the interior is twice the sum of squares up to the window.
TYPED_TEST(EvalDelta, RampsGiveSumsOfSquares) {
    for (int winSize : {1, 2, 5, 20}) {
        const int height = 50, step = 2;
        std::vector<TypeParam> x(at(height, step, 0));
        for (int r = 0; r < height; ++r) x[at(r, step, 0)] = static_cast<TypeParam>(r);
        const TypeParam one = 1;
        Call<TypeParam> call{false, x.data(), &one, height, step, 1, 0, winSize, 0};
        ASSERT_EQ(call.run(), vornStsNoErr);
        for (int r = winSize; r < height - winSize; ++r)
            EXPECT_EQ(x[at(r, step, 1)], winSize * (winSize + 1) * (2 * winSize + 1) / 3) << winSize;
    }
}

// ---- Checks.

template <class T>
struct Arguments {
    Guarded<T> out = Guarded<T>(400);
    std::vector<T> factors = std::vector<T>(64, T(1));
    Call<T> call{false, out.data(), factors.data(), 10, 12, 4, 3, 2, 0};
};

TYPED_TEST(EvalDelta, ChecksInOrder) {
    using A = Arguments<TypeParam>;
    for (bool mul : {false, true}) {
        std::vector<test::Rule<A>> rules = {{"srcDst", vornStsNullPtrErr, [](A& a) { a.call.data = nullptr; }},
                                            {"height 0", vornStsSizeErr, [](A& a) { a.call.height = 0; }},
                                            {"width 0", vornStsSizeErr, [](A& a) { a.call.width = 0; }},
                                            {"winSize 0", vornStsSizeErr, [](A& a) { a.call.winSize = 0; }},
                                            {"offset -1", vornStsSizeErr, [](A& a) { a.call.offset = -1; }},
                                            {"short height", vornStsSizeErr, [](A& a) { a.call.winSize = 6; }},
                                            {"short step", vornStsStrideErr, [](A& a) { a.call.step = 10; }}};
        if (mul) rules.insert(rules.begin(), {"pVal", vornStsNullPtrErr, [](A& a) { a.call.f = nullptr; }});
        test::expectCheckOrder<A>(
            [=] {
                A a;
                a.call.mul = mul;
                return a;
            },
            [](A& a) { return a.call.run(); }, [](A& a) { return a.out.untouched(); }, rules);
        A a;
        a.call.mul = mul;
        a.call.step = 11;
        EXPECT_EQ(a.call.run(), vornStsNoErr) << "the row just fits";
        A large;
        large.call.mul = mul;
        large.call.winSize = INT_MAX;  // twice this is more than an int can say
        EXPECT_EQ(large.call.run(), vornStsSizeErr);
        large.call.winSize = 1 << 30;
        large.call.height = INT_MAX;
        EXPECT_EQ(large.call.run(), vornStsSizeErr);
        large = A();
        large.call.mul = mul;
        large.call.width = 1 << 30;
        EXPECT_EQ(large.call.run(), vornStsStrideErr);
        large.call.width = 4;
        large.call.offset = INT_MAX;
        large.call.step = INT_MAX;
        EXPECT_EQ(large.call.run(), vornStsStrideErr);
        EXPECT_TRUE(large.out.untouched());
    }
}

}  // namespace
