// Velocities and accelerations of cepstra over nine frames.
#include "model/aurora_deltas.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <climits>
#include <cmath>
#include <cstddef>
#include <vector>

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

constexpr int first = vornDeltaFirst, last = vornDeltaLast, whole = first | last;

std::size_t count(int rows, int columns) { return static_cast<std::size_t>(rows) * static_cast<std::size_t>(columns); }

// val is null for the members without factors.
VornStatus call(const Vorn32f* src, const Vorn32f* val, Vorn32f* dst, int dstWidth, int height, int mode, int = 0) {
    return val != nullptr ? vornsDeltaDeltaMul_Aurora_32f_D2(src, val, dst, dstWidth, height, mode)
                          : vornsDeltaDelta_Aurora_32f_D2(src, dst, dstWidth, height, mode);
}
VornStatus call(const Vorn16s* src, const Vorn16s* val, Vorn16s* dst, int dstWidth, int height, int mode,
                int scaleFactor) {
    return val != nullptr ? vornsDeltaDeltaMul_Aurora_16s_D2Sfs(src, val, dst, dstWidth, height, mode, scaleFactor)
                          : vornsDeltaDelta_Aurora_16s_D2Sfs(src, dst, dstWidth, height, mode, scaleFactor);
}

template <class T>
std::vector<T> ordinary(Random& random, std::size_t n, int most) {
    if constexpr (std::is_same_v<T, Vorn32f>) {
        return random.floats(n, -most, most);
    } else {
        return random.integers<T>(n, static_cast<T>(-most), static_cast<T>(most));
    }
}
template <class T>
std::vector<T> hardValues() {
    if constexpr (std::is_same_v<T, Vorn32f>) {
        return test::hardFloats<T>();
    } else {
        return test::hardIntegers<T>();
    }
}

// One call against the model, with the rows that the header names and no element more. Before the call dst holds
// `before`, and what is not written keeps it.
template <class T>
void expectModel(const std::vector<T>& frames, const std::vector<T>* factors, const std::vector<T>& before,
                 int dstWidth, int height, int mode, int scaleFactor) {
    const int rows = height + (mode & first ? 0 : 8);
    const std::size_t len = count(rows - 1, dstWidth) + 39;
    std::vector<T> expected(before.begin(), before.begin() + static_cast<std::ptrdiff_t>(len));
    const Guarded<T> src(frames), dst(expected);
    const Guarded<T> val(factors != nullptr ? *factors : std::vector<T>());
    model::aurora_deltas::call(frames.data(), factors != nullptr ? factors->data() : nullptr, expected.data(), dstWidth,
                               height, mode, scaleFactor);
    ASSERT_EQ(
        call(src.data(), factors != nullptr ? val.data() : nullptr, dst.data(), dstWidth, height, mode, scaleFactor),
        vornStsNoErr);
    EXPECT_TRUE(sameBits(dst.values(), expected))
        << (factors != nullptr ? "Mul, " : "") << "height " << height << ", mode " << mode << ", width " << dstWidth
        << ", scale " << scaleFactor;
    EXPECT_TRUE(dst.surroundingsUntouched());
}

// With and without factors. Values and factors up to these magnitudes.
template <class T>
void expectModels(Random& random, int dstWidth, int height, int mode, int scaleFactor, int most, int mostFactor) {
    const auto frames = ordinary<T>(random, count(height, 14), most);
    const auto factors = ordinary<T>(random, 39, mostFactor);
    const auto before = ordinary<T>(random, count(height + 8, dstWidth), most);
    expectModel<T>(frames, nullptr, before, dstWidth, height, mode, scaleFactor);
    expectModel<T>(frames, &factors, before, dstWidth, height, mode, scaleFactor);
}

template <class T>
class AuroraDeltas : public testing::Test {};
using Elements = testing::Types<Vorn32f, Vorn16s>;
TYPED_TEST_SUITE(AuroraDeltas, Elements);

TYPED_TEST(AuroraDeltas, CallsEqualTheModel) {
    Random random(1);
    for (int height = 0; height <= 70; ++height) {
        for (int mode : {0, first, last, whole, 0x7FFFFFF4, INT_MIN | whole}) {
            if ((height == 0 && !(mode & last)) || (height < 8 && (mode & first))) continue;
            const int dstWidth = 39 + height % 5 * (height % 3);
            expectModels<TypeParam>(random, dstWidth, height, mode, 0, 30000, 2);
            expectModels<TypeParam>(random, dstWidth, height, mode, height % 5, 30000, 300);
        }
    }
}

// Longer than what is done at once, with the end in every place.
TYPED_TEST(AuroraDeltas, LongCallsEqualTheModel) {
    Random random(2);
    for (int height :
         {149, 150, 151, 152, 153, 154, 155, 156, 157, 158, 159, 160, 161, 310, 312, 314, 315, 316, 320, 700}) {
        expectModels<TypeParam>(random, 39, height, whole, 1, 1000, 20);
        expectModels<TypeParam>(random, 41, height, height % 2 == 0 ? 0 : last, 1, 1000, 20);
    }
    for (int height : {24, 25, 31, 32, 33, 40, 41}) expectModels<TypeParam>(random, 5000, height, whole, 1, 1000, 20);
}

TYPED_TEST(AuroraDeltas, HardValuesFollowTheArithmetic) {
    Random random(3);
    const auto values = hardValues<TypeParam>();
    for (int i = 0; i < 120; ++i) {
        const int height = 8 + i % 20, mode = i % 4, scaleFactor = i % 7;
        const auto factors = random.pick(values, 39), before = random.pick(values, count(height + 8, 39));
        auto frames = random.pick(values, count(height, 14));
        // One hard value among ordinary ones shows which results look at it.
        if (i % 2 == 0) {
            frames = ordinary<TypeParam>(random, frames.size(), 100);
            for (int column = 0; column < 14; ++column)
                frames[count(static_cast<int>(random.integer(0, height - 1)), 14) + static_cast<std::size_t>(column)] =
                    random.pick(values, 1)[0];
        }
        expectModel<TypeParam>(frames, nullptr, before, 39, height, mode, scaleFactor);
        expectModel<TypeParam>(frames, &factors, before, 39, height, mode, scaleFactor);
    }
}

TYPED_TEST(AuroraDeltas, RoundInTheCallersMode) {
    Random random(4);
    for (unsigned mode : {test::RoundingMode::nearest, test::RoundingMode::down, test::RoundingMode::up,
                          test::RoundingMode::towardZero}) {
        for (int i = 0; i < 6; ++i) {
            const auto frames = ordinary<TypeParam>(random, count(12, 14), i == 0 ? 0 : 30000);
            const auto factors = ordinary<TypeParam>(random, 39, 300);
            const auto before = ordinary<TypeParam>(random, count(20, 39), 30000);
            const test::RoundingMode scope(mode);
            expectModel<TypeParam>(frames, nullptr, before, 39, 12, i % 4, 0);
            expectModel<TypeParam>(frames, &factors, before, 39, 12, i % 4, 3);
        }
    }
}

TYPED_TEST(AuroraDeltas, AnyAlignmentGivesTheSameBits) {
    Random random(5);
    const int height = 20, dstWidth = 40;
    const auto frames = ordinary<TypeParam>(random, count(height, 14), 3000);
    const auto factors = ordinary<TypeParam>(random, 39, 20);
    std::vector<TypeParam> expected(count(height, dstWidth), TypeParam(7));
    ASSERT_EQ(call(frames.data(), factors.data(), expected.data(), dstWidth, height, whole, 2), vornStsNoErr);
    for (std::size_t a = 0; a < 64; a += sizeof(TypeParam)) {
        Offset<TypeParam> src(frames.size(), a), val(39, (3 * a) % 64), dst(expected.size(), (5 * a) % 64);
        src.assign(frames);
        val.assign(factors);
        dst.assign(std::vector<TypeParam>(expected.size(), TypeParam(7)));
        ASSERT_EQ(call(src.data(), val.data(), dst.data(), dstWidth, height, whole, 2), vornStsNoErr);
        EXPECT_TRUE(sameBits(dst.values(), expected)) << a;
        EXPECT_TRUE(dst.surroundingsUntouched());
    }
}

// An utterance in blocks of any heights, each with the eight rows before it, is what one call gives.
TYPED_TEST(AuroraDeltas, AnyCutIntoBlocksGivesTheSameBits) {
    Random random(6);
    const int dstWidth = 41;
    for (const auto& heights : std::vector<std::vector<int>>{
             {8, 1, 1, 1, 0}, {8, 0}, {9, 3, 20, 5}, {8, 8, 8, 8, 8}, {200, 1, 180}, {30, 2, 1, 7, 160, 0}, {17, 0}}) {
        int height = 0;
        for (int h : heights) height += h;
        for (bool mul : {false, true}) {
            const auto frames = ordinary<TypeParam>(random, count(height, 14), 3000);
            const auto factors = ordinary<TypeParam>(random, 39, 20);
            const TypeParam* val = mul ? factors.data() : nullptr;
            std::vector<TypeParam> expected(count(height, dstWidth), TypeParam(7)), rows = expected;
            ASSERT_EQ(call(frames.data(), val, expected.data(), dstWidth, height, whole, 1), vornStsNoErr);
            int row = 0;
            for (std::size_t i = 0; i < heights.size(); ++i) {
                const int mode = (i == 0 ? first : 0) | (i + 1 == heights.size() ? last : 0);
                ASSERT_EQ(call(frames.data() + count(row, 14), val, rows.data() + count(i == 0 ? 0 : row - 8, dstWidth),
                               dstWidth, heights[i], mode, 1),
                          vornStsNoErr);
                row += heights[i];
            }
            EXPECT_TRUE(sameBits(rows, expected)) << heights.size() << " blocks of " << height;
        }
    }
}

TEST(AuroraDeltasShorts, ScaleFactorsOfAnySize) {
    Random random(7);
    for (int scaleFactor :
         {0,   1,   2,   3,   5,   7,   8,       9,           10,          11,      12,          13,
          14,  15,  16,  17,  20,  27,  28,      29,          30,          31,      32,          33,
          34,  62,  63,  64,  65,  -1,  -2,      -3,          -4,          -16,     -17,         -18,
          -30, -31, -32, -33, -34, -64, INT_MAX, INT_MAX - 1, INT_MAX - 2, INT_MIN, INT_MIN + 1, INT_MIN + 2}) {
        for (int most : {3, 2000, 32767}) expectModels<Vorn16s>(random, 39, 12, whole, scaleFactor, most, most);
        const auto values = test::hardIntegers<Vorn16s>();
        const auto factors = random.pick(values, 39);
        expectModel<Vorn16s>(random.pick(values, count(12, 14)), &factors, random.pick(values, count(20, 39)), 39, 12,
                             0, scaleFactor);
    }
}

// Velocities whose products with their factors need up to 36 bits.
TEST(AuroraDeltasShorts, LargestProductsAreExact) {
    for (Vorn16s factor : {Vorn16s{-32768}, Vorn16s{32767}, Vorn16s{1}, Vorn16s{-1}}) {
        for (Vorn16s before : {Vorn16s{-32768}, Vorn16s{32767}}) {
            for (Vorn16s behind : {Vorn16s{-32768}, Vorn16s{32767}}) {
                std::vector<Vorn16s> frames(count(16, 14)), rows(count(24, 39), 5);
                for (int row = 0; row < 16; ++row) std::fill_n(&frames[count(row, 14)], 14, row < 8 ? before : behind);
                std::vector<Vorn16s> factors(39, factor);
                std::fill_n(factors.begin(), 13, Vorn16s{1});
                for (int scaleFactor = 0; scaleFactor < 32; ++scaleFactor)
                    expectModel<Vorn16s>(frames, &factors, rows, 39, 16, whole, scaleFactor);
                // The features are stored as they come but scaled; here the rows before the block have all their bits.
                for (int row = 0; row < 8; ++row) std::fill_n(&rows[count(row, 39)], 13, before);
                for (int scaleFactor = 0; scaleFactor < 32; ++scaleFactor)
                    expectModel<Vorn16s>({}, &factors, rows, 39, 0, last, scaleFactor);
            }
        }
    }
}

// ---- Edges with numbers of their own.

// One frame of ones among zeros: the results of the rows around it are the weights.
TEST(AuroraDeltasSingles, OneFrameAmongZerosShowsTheWeights) {
    const Vorn32f velocities[] = {1.0f, 0.75f, 0.5f, 0.25f, 0.0f, -0.25f, -0.5f, -0.75f, -1.0f};
    const Vorn32f accelerations[] = {1.0f,       0.25f,      -0.285714f, -0.607143f, -0.714286f,
                                     -0.607143f, -0.285714f, 0.25f,      1.0f};
    std::vector<Vorn32f> src(count(20, 14), 0.0f), dst(count(20, 39));
    std::fill_n(&src[count(9, 14)], 12, 1.0f);
    src[count(9, 14) + 12] = 0.0f;
    src[count(9, 14) + 13] = 2.5f;  // x 0.4 is 1
    ASSERT_EQ(vornsDeltaDelta_Aurora_32f_D2(src.data(), dst.data(), 39, 20, whole), vornStsNoErr);
    for (int row = 0; row < 20; ++row) {
        for (int c = 0; c < 13; ++c) {
            const Vorn32f* at = &dst[count(row, 39) + static_cast<std::size_t>(c)];
            const bool sees = row >= 5 && row <= 13;
            EXPECT_EQ(at[0], row == 9 ? 1.0f : 0.0f) << row << " " << c;
            EXPECT_EQ(at[13], sees ? velocities[row - 5] : 0.0f) << row << " " << c;
            EXPECT_EQ(at[26], sees ? accelerations[row - 5] : 0.0f) << row << " " << c;
        }
    }
}

// The row itself has the weight -0.0, which makes a not-a-number of an infinity, and a zero of every zero's sign.
TEST(AuroraDeltasSingles, TheRowItselfTakesPart) {
    std::vector<Vorn32f> src(count(9, 14), 1.0f), dst(count(9, 39));
    src[count(4, 14)] = INFINITY;
    ASSERT_EQ(vornsDeltaDelta_Aurora_32f_D2(src.data(), dst.data(), 39, 9, whole), vornStsNoErr);
    EXPECT_TRUE(std::isnan(dst[count(4, 39) + 13]));
    EXPECT_EQ(dst[count(4, 39) + 26], -INFINITY);
    EXPECT_EQ(dst[count(3, 39) + 13], INFINITY);
    EXPECT_EQ(dst[count(5, 39) + 13], -INFINITY);
    EXPECT_EQ(dst[count(4, 39) + 14], 0.0f);
}

TEST(AuroraDeltasSingles, TheLastFeatureJoinsTwoNumbers) {
    std::vector<Vorn32f> src(count(8, 14), 0.0f), dst(count(8, 39));
    src[12] = 230.0f;
    src[13] = 100.0f;
    ASSERT_EQ(vornsDeltaDelta_Aurora_32f_D2(src.data(), dst.data(), 39, 8, whole), vornStsNoErr);
    EXPECT_EQ(dst[12], 46.0f);  // 138 / 23 + 40
    std::vector<Vorn16s> src16(src.begin(), src.end()), dst16(count(8, 39));
    ASSERT_EQ(vornsDeltaDelta_Aurora_16s_D2Sfs(src16.data(), dst16.data(), 39, 8, whole, 0), vornStsNoErr);
    EXPECT_EQ(dst16[12], 46);
    src16[13] = -102;  // 6 - 40.8 is towards zero -34, and shifted downwards -9
    ASSERT_EQ(vornsDeltaDelta_Aurora_16s_D2Sfs(src16.data(), dst16.data(), 39, 8, whole, 0), vornStsNoErr);
    EXPECT_EQ(dst16[12], -34);
    ASSERT_EQ(vornsDeltaDelta_Aurora_16s_D2Sfs(src16.data(), dst16.data(), 39, 8, whole, 2), vornStsNoErr);
    EXPECT_EQ(dst16[12], -9);
}

// No new frame: the last four frames of the stream are finished, and the rows before them stay.
TYPED_TEST(AuroraDeltas, AnEndWithoutFramesFinishesFourRows) {
    const Guarded<TypeParam> nothing(0), dst(std::vector<TypeParam>(count(7, 39) + 39, TypeParam(3)));
    ASSERT_EQ(call(nothing.data(), nullptr, dst.data(), 39, 0, last, 0), vornStsNoErr);
    for (int row = 0; row < 8; ++row) {
        for (int c = 0; c < 39; ++c) {
            const double expected = row >= 4 && c >= 13 ? 0 : 3, tolerance = row >= 4 && c >= 26 ? 1e-6 : 0;
            EXPECT_NEAR(dst[count(row, 39) + static_cast<std::size_t>(c)], expected, tolerance) << row << " " << c;
        }
    }
}

// The least first block, and the least utterance.
TYPED_TEST(AuroraDeltas, EightFramesAreEnough) {
    std::vector<TypeParam> src(count(8, 14)), dst(count(8, 39), TypeParam(99));
    for (int row = 0; row < 8; ++row) std::fill_n(&src[count(row, 14)], 14, static_cast<TypeParam>(4 * row));
    ASSERT_EQ(call(src.data(), nullptr, dst.data(), 39, 8, first, 0), vornStsNoErr);
    for (int row = 0; row < 8; ++row) EXPECT_EQ(dst[count(row, 39) + 13] == TypeParam(99), row >= 4) << row;
    ASSERT_EQ(call(src.data(), nullptr, dst.data(), 39, 8, whole, 0), vornStsNoErr);
    // Row 0 reads 4 (0.25 + 0.5 2 + 0.75 3 + 4) of the rows behind it, row 7 as much of those before; row 3 reads
    // 0.25 (16 - 8) + 0.5 (20 - 4) + 0.75 24 + 28 and row 4 the same from the other end.
    EXPECT_EQ(dst[13], 30);
    EXPECT_EQ(dst[count(7, 39) + 13], 30);
    EXPECT_EQ(dst[count(3, 39) + 13], 56);
    EXPECT_EQ(dst[count(4, 39) + 13], 56);
}

TYPED_TEST(AuroraDeltas, ChecksInOrder) {
    using T = TypeParam;
    for (bool mul : {false, true}) {
        for (int mode : {0, first, last, whole}) {
            struct A {
                std::vector<T> frames = std::vector<T>(count(9, 14), T(1)), factors = std::vector<T>(39, T(1));
                Guarded<T> out = Guarded<T>(count(17, 39));
                const T *src = frames.data(), *val = factors.data();
                T* dst = out.data();
                int dstWidth = 39, height = 9;
            };
            std::vector<test::Rule<A>> rules = {{"src", vornStsNullPtrErr, [](A& a) { a.src = nullptr; }},
                                                {"dst", vornStsNullPtrErr, [](A& a) { a.dst = nullptr; }}};
            if (mul) rules.push_back({"val", vornStsNullPtrErr, [](A& a) { a.val = nullptr; }});
            rules.push_back({"height -1", vornStsSizeErr, [](A& a) { a.height = -1; }});
            if (!(mode & last)) rules.push_back({"height 0", vornStsSizeErr, [](A& a) { a.height = 0; }});
            rules.push_back({"dstWidth 38", vornStsStrideErr, [](A& a) { a.dstWidth = 38; }});
            rules.push_back({"dstWidth -1", vornStsStrideErr, [](A& a) { a.dstWidth = -1; }});
            if (mode & first) rules.push_back({"height 7", vornStsSizeErr, [](A& a) { a.height = 7; }});
            test::expectCheckOrder<A>(
                [] { return A(); },
                [=](A& a) {
                    if (!mul) return call(a.src, static_cast<const T*>(nullptr), a.dst, a.dstWidth, a.height, mode, 0);
                    if constexpr (std::is_same_v<T, Vorn32f>) {
                        return vornsDeltaDeltaMul_Aurora_32f_D2(a.src, a.val, a.dst, a.dstWidth, a.height, mode);
                    } else {
                        return vornsDeltaDeltaMul_Aurora_16s_D2Sfs(a.src, a.val, a.dst, a.dstWidth, a.height, mode, 0);
                    }
                },
                [](A& a) { return a.out.untouched(); }, rules);
        }
    }
}

// ---- Properties that hold whatever the code or its model think.

// What rises evenly has one velocity, 15 times its rise; what bends evenly has one acceleration, 33 times its bend;
// the one does not accelerate, and in the middle of the other velocity rises evenly.
TYPED_TEST(AuroraDeltas, RampsAndParabolas) {
    const int height = 40;
    const double tolerance = std::is_same_v<TypeParam, Vorn32f> ? 1e-2 : 1;
    std::vector<TypeParam> ramp(count(height, 14)), parabola(ramp.size()), rows(count(height, 39)), bent(rows.size());
    for (int t = 0; t < height; ++t) {
        std::fill_n(&ramp[count(t, 14)], 14, static_cast<TypeParam>(4 * t));
        std::fill_n(&parabola[count(t, 14)], 14, static_cast<TypeParam>(4 * (t - 20) * (t - 20)));
    }
    ASSERT_EQ(call(ramp.data(), nullptr, rows.data(), 39, height, whole, 0), vornStsNoErr);
    ASSERT_EQ(call(parabola.data(), nullptr, bent.data(), 39, height, whole, 0), vornStsNoErr);
    for (int t = 4; t < height - 4; ++t) {
        for (int c = 0; c < 12; ++c) {
            const std::size_t at = count(t, 39) + static_cast<std::size_t>(c);
            EXPECT_EQ(rows[at + 13], 60) << t << " " << c;
            EXPECT_NEAR(rows[at + 26], 0, 1e-4) << t << " " << c;
            EXPECT_EQ(bent[at + 13], 120 * (t - 20)) << t << " " << c;
            EXPECT_NEAR(bent[at + 26], 132, tolerance) << t << " " << c;
        }
    }
}

// Backwards in time velocities change their sign and accelerations keep it: whole numbers, so that velocities are
// exact.
TEST(AuroraDeltasSingles, TimeReversed) {
    Random random(8);
    const int height = 30;
    const auto values = random.integers<Vorn16s>(count(height, 14), -500, 500);
    const std::vector<Vorn32f> forth(values.begin(), values.end());
    std::vector<Vorn32f> back(forth.size()), a(count(height, 39)), b(a.size());
    for (int t = 0; t < height; ++t) std::copy_n(&forth[count(t, 14)], 14, &back[count(height - 1 - t, 14)]);
    ASSERT_EQ(call(forth.data(), nullptr, a.data(), 39, height, whole), vornStsNoErr);
    ASSERT_EQ(call(back.data(), nullptr, b.data(), 39, height, whole), vornStsNoErr);
    for (int t = 0; t < height; ++t) {
        for (std::size_t c = 0; c < 39; ++c) {
            const Vorn32f x = a[count(t, 39) + c], y = b[count(height - 1 - t, 39) + c];
            if (c % 13 == 12) {
                EXPECT_NEAR(x, c == 25 ? -y : y, 1e-3) << t << " " << c;
            } else if (c < 26) {
                EXPECT_EQ(x, c < 13 ? y : -y) << t << " " << c;
            } else {
                EXPECT_NEAR(x, y, 1e-3) << t << " " << c;
            }
        }
    }
}

// With a scale factor of -2 nothing is shifted: velocities are whole sums of what stands in the eight rows, the last
// of which is repeated.
TEST(AuroraDeltasShorts, VelocitiesAreWholeSums) {
    Random random(10);
    auto rows = random.integers<Vorn16s>(count(8, 39), -1600, 1600);
    const auto before = rows;
    ASSERT_EQ(call(before.data(), nullptr, rows.data(), 39, 0, last, -2), vornStsNoErr);
    for (int t = 4; t < 8; ++t) {
        for (int c = 0; c < 13; ++c) {
            int sum = 0;
            for (int o = -4; o <= 4; ++o)
                sum += o * before[count(std::min(t + o, 7), 39) + static_cast<std::size_t>(c)];
            EXPECT_EQ(rows[count(t, 39) + 13 + static_cast<std::size_t>(c)], sum) << t << " " << c;
        }
    }
}

// 16-bit members give what singles give where both are exact: multiples of 4, small factors.
TEST(AuroraDeltasShorts, EqualSinglesWhereBothAreExact) {
    Random random(9);
    const int height = 40;
    auto frames = random.integers<Vorn16s>(count(height, 14), -50, 50);
    for (Vorn16s& x : frames) x = static_cast<Vorn16s>(4 * x);
    auto factors = random.integers<Vorn16s>(39, -3, 3);
    std::fill_n(factors.begin(), 13, Vorn16s{1});
    const std::vector<Vorn32f> framesOf(frames.begin(), frames.end()), factorsOf(factors.begin(), factors.end());
    for (bool mul : {false, true}) {
        std::vector<Vorn16s> a(count(height, 39));
        std::vector<Vorn32f> b(a.size());
        ASSERT_EQ(call(frames.data(), mul ? factors.data() : nullptr, a.data(), 39, height, whole, 0), vornStsNoErr);
        ASSERT_EQ(call(framesOf.data(), mul ? factorsOf.data() : nullptr, b.data(), 39, height, whole), vornStsNoErr);
        for (int t = 0; t < height; ++t) {
            for (std::size_t c = 0; c < 39; ++c) {
                if (c % 13 == 12) continue;
                const Vorn32f expected = b[count(t, 39) + c];
                EXPECT_EQ(a[count(t, 39) + c], c < 26 ? expected : std::trunc(expected)) << t << " " << c;
            }
        }
    }
}

}  // namespace
