// Streaming deltas and accelerations.
#include "features/delta/members.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <climits>
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
using test::deltas::Member;

constexpr int whole = vornDeltaFirst | vornDeltaLast;

std::size_t count(int rows, int columns) { return static_cast<std::size_t>(rows) * static_cast<std::size_t>(columns); }

// What a member is run on.
template <class T>
struct Case {
    const Member<T>* member;
    std::vector<T> frames, factors;
    int width, step, height, scale;

    int columns() const { return member->parts() * width; }
    std::vector<T> expected() const {
        std::vector<T> rows(count(height, step), T(77));
        model::deltas(member->rules, frames.data(), factors.data(), width, rows.data(), step, height, scale);
        return rows;
    }
};

// Ordinary values: factors near 1, whole or as fractions of 2^scale; frames whose differences reach the ends of 16
// bits.
template <class T>
Case<T> ordinary(const Member<T>& member, Random& random, int width, int extra, int height) {
    Case<T> c = {&member, {}, {}, width, member.parts() * width + extra, height, 0};
    const std::size_t factors = count(3, width);
    if constexpr (std::is_same_v<T, float>) {
        c.frames = random.floats(count(height, width), -50.0, 50.0);
        c.factors = random.floats(factors, -2.0, 2.0);
    } else {
        c.scale = static_cast<int>(random.integer(-2, 17));
        c.frames = random.integers<T>(count(height, width));
        c.factors = random.integers<T>(factors, static_cast<T>(-(1 << std::min(c.scale + 2, 15))),
                                       static_cast<T>((1 << std::min(c.scale + 2, 15)) - 1));
    }
    if (!member.rules.mul) {
        for (int part = 1; part < 3; ++part)
            std::fill_n(c.factors.begin() + part * width, width, c.factors[count(part, width)]);
    }
    return c;
}
template <class T>
Case<T> hard(const Member<T>& member, Random& random, int width, int height) {
    Case<T> c = ordinary(member, random, width, 0, height);
    std::vector<T> values;
    if constexpr (std::is_same_v<T, float>) {
        values = test::hardFloats<T>();
    } else {
        values = test::hardIntegers<T>();
    }
    c.frames = random.pick(values, c.frames.size());
    c.factors = random.pick(values, c.factors.size());
    if (!member.rules.mul) {
        for (int part = 1; part < 3; ++part)
            std::fill_n(c.factors.begin() + part * width, width, c.factors[count(part, width)]);
    }
    return c;
}

// The utterance in blocks of the given heights. Each call is handed only the rows that the header names, in a buffer of
// its own; what no call has completed yet must still hold the pattern.
template <class T>
std::vector<T> inBlocks(const Case<T>& c, const std::vector<int>& heights, bool lastAlone = false) {
    const Member<T>& member = *c.member;
    const auto expected = c.expected();
    std::vector<T> rows(count(c.height, c.step), T(77));
    const Guarded<T> factors(c.factors);
    int row = 0;
    const auto call = [&](int height, int mode) {
        const int first = row == 0 ? 0 : row - member.lookback();
        const std::size_t from = count(first, c.step), len = count(row + height - first - 1, c.step) + c.columns();
        const Guarded<T> src(
            std::vector<T>(c.frames.begin() + static_cast<std::ptrdiff_t>(count(row, c.width)),
                           c.frames.begin() + static_cast<std::ptrdiff_t>(count(row + height, c.width))));
        const Guarded<T> dst(std::vector<T>(rows.begin() + static_cast<std::ptrdiff_t>(from),
                                            rows.begin() + static_cast<std::ptrdiff_t>(from + len)));
        EXPECT_EQ(member.call(src, factors, c.width, dst, c.step, height, mode | 0x7FFFFFF4, c.scale), vornStsNoErr)
            << member.name;
        EXPECT_TRUE(src.surroundingsUntouched() && dst.surroundingsUntouched()) << member.name;
        std::copy(dst.begin(), dst.end(), rows.begin() + static_cast<std::ptrdiff_t>(from));
        row += height;
    };
    const auto check = [&](bool ended) {
        for (int t = 0; t < c.height; ++t) {
            for (int part = 0; part < member.parts(); ++part) {
                const std::size_t at = count(t, c.step) + count(part, c.width);
                const bool complete = t < (ended ? c.height : row - part * member.lag());
                const std::vector<T> pattern(static_cast<std::size_t>(c.width), T(77));
                EXPECT_TRUE(sameBits(rows.data() + at, complete ? expected.data() + at : pattern.data(),
                                     static_cast<std::size_t>(c.width)))
                    << member.name << ", width " << c.width << ", rows " << row << ", row " << t << ", part " << part;
            }
        }
    };
    for (std::size_t block = 0; block < heights.size(); ++block) {
        int mode = block == 0 ? vornDeltaFirst : 0;
        if (block + 1 == heights.size() && !lastAlone) mode |= vornDeltaLast;
        call(heights[block], mode);
        check(mode & vornDeltaLast);
    }
    if (lastAlone) {
        call(0, vornDeltaLast);
        check(true);
    }
    return rows;
}

template <class T>
void expectModel(const Case<T>& c) {
    const auto expected = c.expected();
    const Guarded<T> src(c.frames), factors(c.factors);
    const std::size_t len = count(c.height - 1, c.step) + static_cast<std::size_t>(c.columns());
    const Guarded<T> dst(std::vector<T>(len, T(77)));
    ASSERT_EQ(c.member->call(src, factors, c.width, dst, c.step, c.height, whole, c.scale), vornStsNoErr);
    EXPECT_TRUE(sameBits(dst.data(), expected.data(), len)) << c.member->name << ", width " << c.width << ", height "
                                                            << c.height << ", step " << c.step << ", scale " << c.scale;
    EXPECT_TRUE(dst.surroundingsUntouched()) << c.member->name;
}

template <class T>
class Streaming : public testing::Test {
protected:
    const std::vector<Member<T>> members = test::deltas::membersOf<T>();
};
using Elements = testing::Types<Vorn32f, Vorn16s>;
TYPED_TEST_SUITE(Streaming, Elements);

TYPED_TEST(Streaming, WholeUtterancesEqualTheModelBitForBit) {
    Random random(1);
    for (const auto& member : this->members) {
        for (int width = 1; width <= 140; width += width < 70 ? 1 : 23) {
            for (int beyond : {0, 1, 2, 7, 30}) {
                expectModel(ordinary(member, random, width, width % 4 * 3, member.lookback() + beyond));
            }
        }
    }
}

TYPED_TEST(Streaming, LongCallsEqualTheModel) {
    Random random(4);
    for (const auto& member : this->members) {
        for (int width : {1, 2, 13, 39, 64, 1500}) {
            expectModel(ordinary(member, random, width, 0, width > 1000 ? 20 : 700));
        }
    }
}

TYPED_TEST(Streaming, HardValuesFollowTheArithmetic) {
    Random random(5);
    for (const auto& member : this->members) {
        for (int width : {1, 4, 7, 13, 16, 21, 40, 70}) {
            for (int turn = 0; turn < 20; ++turn) expectModel(hard(member, random, width, 9));
        }
    }
}

TYPED_TEST(Streaming, AnyCutGivesTheSameRows) {
    Random random(2);
    for (const auto& member : this->members) {
        for (int width : {1, 2, 3, 5, 8, 13, 17, 33, 39, 70, 97}) {
            for (int turn = 0; turn < 3; ++turn) {
                const auto c = ordinary(member, random, width, turn, member.lookback() + 25);
                std::vector<int> heights{member.lookback() + static_cast<int>(random.integer(0, 3))};
                for (int row = heights[0]; row < c.height; row += heights.back()) {
                    const auto most = turn == 0 ? 1 : std::min<std::int64_t>(9, c.height - row);
                    heights.push_back(static_cast<int>(random.integer(1, most)));
                }
                inBlocks(c, heights, turn == 1);
            }
        }
    }
}

TYPED_TEST(Streaming, LastAloneRightAfterAFirstCall) {
    Random random(7);
    for (const auto& member : this->members) {
        for (int width : {1, 13, 40}) {
            inBlocks(ordinary(member, random, width, 1, member.lookback()), {member.lookback()}, true);
        }
    }
}

TYPED_TEST(Streaming, BlocksOfSevenEqualOneCall) {
    Random random(3);
    std::vector<int> heights(14, 7);
    heights.push_back(2);
    for (const auto& member : this->members) {
        const auto c = ordinary(member, random, 13, 1, 100);
        const auto blocks = inBlocks(c, heights), once = inBlocks(c, {100});
        EXPECT_TRUE(sameBits(blocks.data(), once.data(), once.size())) << member.name;
    }
}

TYPED_TEST(Streaming, AlignmentChangesNothing) {
    Random random(6);
    for (const auto& member : this->members) {
        for (int width : {5, 8, 12, 40}) {
            const auto c = ordinary(member, random, width, width % 8, 12);
            const auto expected = c.expected();
            for (std::size_t a = 0; a < 32; a += sizeof(TypeParam)) {
                Offset<TypeParam> src(c.frames.size(), a), dst(expected.size(), (3 * a) % 32),
                    factors(c.factors.size(), (5 * a) % 32);
                src.assign(c.frames);
                factors.assign(c.factors);
                dst.assign(std::vector<TypeParam>(expected.size(), TypeParam(77)));
                ASSERT_EQ(member.call(src, factors, width, dst, c.step, 12, whole, c.scale), vornStsNoErr);
                EXPECT_TRUE(sameBits(dst.data(), expected.data(), expected.size())) << member.name << " " << a;
                EXPECT_TRUE(dst.surroundingsUntouched());
            }
        }
    }
}

TEST(StreamingSingles, FollowTheCallersRounding) {
    Random random(8);
    for (const auto& member : test::deltas::membersOf<Vorn32f>()) {
        for (unsigned mode : {test::RoundingMode::down, test::RoundingMode::up, test::RoundingMode::towardZero}) {
            for (int width : {3, 13, 40}) {
                const auto c = ordinary(member, random, width, 0, 20);
                const test::RoundingMode in(mode);
                expectModel(c);
            }
        }
    }
}

// Times 2^-scale, the count modulo 32, whatever the scale.
TEST(StreamingShorts, AnyScale) {
    Random random(9);
    for (const auto& member : test::deltas::membersOf<Vorn16s>()) {
        for (int scale :
             {0,  1,   2,   7,   15,  16,  17,  30,  31,  32,  33,      63,          64,      -1,         -2,
              -8, -15, -16, -17, -30, -31, -32, -33, -63, -64, INT_MAX, INT_MAX - 1, INT_MIN, INT_MIN + 1}) {
            for (int width : {3, 13, 33, 70}) {
                auto c = ordinary(member, random, width, 0, 12);
                c.scale = scale;
                expectModel(c);
                c = hard(member, random, width, 12);
                c.scale = scale;
                expectModel(c);
            }
        }
    }
}

TEST(StreamingShorts, Scale33IsScale1) {
    Random random(10);
    for (const auto& member : test::deltas::membersOf<Vorn16s>()) {
        auto c = ordinary(member, random, 13, 0, 20);
        c.scale = 1;
        const auto one = inBlocks(c, {20});
        c.scale = 33;
        const auto more = inBlocks(c, {20});
        EXPECT_TRUE(sameBits(more, one)) << member.name;
    }
}

// ---- Literal values.

TEST(Delta, Window1OfTwoFrames) {
    const float src[] = {3, 10};
    float dst[4];
    ASSERT_EQ(vornsDelta_Win1_32f_D2(src, 1, dst, 2, 2, 0.5f, 3), vornStsNoErr);
    const float expected[] = {3, 3.5f, 10, 3.5f};
    EXPECT_TRUE(sameBits(dst, expected, 4));
}

TEST(Delta, LiteralRamp) {
    const float src[] = {0, 1, 2, 3};
    float dst[8];
    ASSERT_EQ(vornsDelta_Win2_32f_D2(src, 1, dst, 2, 4, 0.5f, whole), vornStsNoErr);
    const float expected[] = {0, 2.5f, 1, 4, 2, 4, 3, 2.5f};
    EXPECT_TRUE(sameBits(dst, expected, 8));
}

TEST(Delta, LastAloneCompletesTheRamp) {
    const float src[] = {0, 1, 2, 3};
    float dst[8] = {};
    ASSERT_EQ(vornsDelta_Win2_32f_D2(src, 1, dst, 2, 4, 0.5f, vornDeltaFirst), vornStsNoErr);
    const float begun[] = {0, 2.5f, 1, 4, 2, 0, 3, 0};
    EXPECT_TRUE(sameBits(dst, begun, 8));
    EXPECT_EQ(vornsDelta_Win2_32f_D2(src, 1, dst, 2, 0, 0.5f, 0), vornStsSizeErr);
    EXPECT_TRUE(sameBits(dst, begun, 8));
    ASSERT_EQ(vornsDelta_Win2_32f_D2(src, 1, dst, 2, 0, 0.5f, vornDeltaLast), vornStsNoErr);
    const float ended[] = {0, 2.5f, 1, 4, 2, 4, 3, 2.5f};
    EXPECT_TRUE(sameBits(dst, ended, 8));
}

TEST(DeltaDelta, LiteralRamp) {
    // Deltas 5 8 10 10 8 5; behind both ends they repeat.
    const float src[] = {0, 1, 2, 3, 4, 5};
    float dst[18];
    ASSERT_EQ(vornsDeltaDelta_Win2_32f_D2(src, 1, dst, 3, 6, 1.0f, 1.0f, whole), vornStsNoErr);
    const float expected[] = {0, 5, 13, 1, 8, 15, 2, 10, 8, 3, 10, -8, 4, 8, -15, 5, 5, -13};
    EXPECT_TRUE(sameBits(dst, expected, 18));
}

TEST(DeltaDelta, LiteralRampOfWindow1) {
    // Deltas 1 2 2 1.
    const float src[] = {0, 1, 2, 3};
    float dst[12];
    ASSERT_EQ(vornsDeltaDelta_Win1_32f_D2(src, 1, dst, 3, 4, 1.0f, 10.0f, whole), vornStsNoErr);
    const float expected[] = {0, 1, 10, 1, 2, 10, 2, 2, -10, 3, 1, -10};
    EXPECT_TRUE(sameBits(dst, expected, 12));
}

TEST(DeltaMul, LiteralFactorsOfColumns) {
    // Columns scaled by 2 and by -1; their deltas by 3 and by 10.
    const float src[] = {1, 1, 2, 5, 4, 7}, f[] = {2, -1, 3, 10};
    float dst[12];
    ASSERT_EQ(vornsDeltaMul_Win1_32f_D2(src, f, 2, dst, 4, 3, whole), vornStsNoErr);
    const float expected[] = {2, -1, 6, -40, 4, -5, 18, -60, 8, -7, 12, -20};
    EXPECT_TRUE(sameBits(dst, expected, 12));
}

// The whole difference of 60000 counts, not what 16 bits hold of it.
TEST(DeltaShorts, WholeDifferencesDoNotWrap) {
    const Vorn16s src[] = {-30000, 30000};
    Vorn16s dst[4];
    ASSERT_EQ(vornsDelta_Win1_16s_D2Sfs(src, 1, dst, 2, 2, 1, whole, 0), vornStsNoErr);
    EXPECT_EQ(dst[1], 32767);
    ASSERT_EQ(vornsDelta_Win1_16s_D2Sfs(src, 1, dst, 2, 2, 1, whole, 1), vornStsNoErr);
    EXPECT_EQ(dst[1], 30000);
    EXPECT_EQ(dst[3], 30000);
}

TEST(DeltaShorts, DifferencesOfTheMulFormsWrap) {
    const Vorn16s src[] = {-30000, 30000}, f[] = {1, 1};
    Vorn16s dst[4];
    ASSERT_EQ(vornsDeltaMul_Win1_16s_D2Sfs(src, f, 1, dst, 2, 2, whole, 0), vornStsNoErr);
    EXPECT_EQ(dst[0], -30000);
    EXPECT_EQ(dst[1], -5536);
}

// a = b = 60000: whole they make 180000, wrapped -5536 each they make -16608.
TEST(DeltaShorts, Window2WrapsWithAccelerationsAlone) {
    const Vorn16s src[] = {-30000, 30000, 30000, 30000, 30000, 30000};
    Vorn16s dst[18];
    ASSERT_EQ(vornsDelta_Win2_16s_D2Sfs(src, 1, dst, 2, 6, 1, whole, 3), vornStsNoErr);
    EXPECT_EQ(dst[1], 22500);
    ASSERT_EQ(vornsDeltaDelta_Win2_16s_D2Sfs(src, 1, dst, 3, 6, 1, 1, whole, 3), vornStsNoErr);
    EXPECT_EQ(dst[1], -2076);
}

// (60000 + 2 60000) 32767 = 5898060000 leaves 1603092704 in 32 bits.
TEST(DeltaShorts, ProductsWrapIn32Bits) {
    const Vorn16s src[] = {-30000, 30000, 30000, 30000};
    Vorn16s dst[8];
    ASSERT_EQ(vornsDelta_Win2_16s_D2Sfs(src, 1, dst, 2, 4, 32767, whole, 16), vornStsNoErr);
    EXPECT_EQ(dst[1], 24461);
}

// Shifts lose what is below, towards minus infinity; a shift left loses what leaves the 32 bits, before saturation.
TEST(DeltaShorts, ShiftsDoNotRound) {
    const Vorn16s src[] = {0, -3};
    Vorn16s dst[4];
    ASSERT_EQ(vornsDelta_Win1_16s_D2Sfs(src, 1, dst, 2, 2, 1, whole, 1), vornStsNoErr);
    EXPECT_EQ(dst[1], -2);
    ASSERT_EQ(vornsDelta_Win1_16s_D2Sfs(src, 1, dst, 2, 2, 1, whole, -30), vornStsNoErr);
    EXPECT_EQ(dst[1], 32767) << "-3 2^30 wraps to 2^30";
    ASSERT_EQ(vornsDelta_Win1_16s_D2Sfs(src, 1, dst, 2, 2, 4, whole, -30), vornStsNoErr);
    EXPECT_EQ(dst[1], 0);
}

// The acceleration reads the delta as it stands in dst.
TEST(DeltaShorts, AccelerationsReadSaturatedDeltas) {
    const Vorn16s src[] = {-30000, 30000, -30000, 30000};
    Vorn16s dst[12];
    ASSERT_EQ(vornsDeltaDelta_Win1_16s_D2Sfs(src, 1, dst, 3, 4, 1, 1, whole, 0), vornStsNoErr);
    const Vorn16s deltas[] = {32767, 0, 0, 32767}, accelerations[] = {-32767, -32767, 32767, 32767};
    for (int t = 0; t < 4; ++t) {
        EXPECT_EQ(dst[3 * t + 1], deltas[t]) << t;
        EXPECT_EQ(dst[3 * t + 2], accelerations[t]) << t;
    }
}

// ---- Properties that hold whatever the code or its model think.

// A ramp rises by 2 in window 1 and by 2 + 2 4 = 10 in window 2, and nothing accelerates.
TYPED_TEST(Streaming, RampsHaveConstantDeltas) {
    for (const auto& member : this->members) {
        for (int width : {1, 13, 40}) {
            const int height = 30, step = member.parts() * width, lag = member.lag();
            std::vector<TypeParam> src(count(height, width)), dst(count(height, step));
            for (int t = 0; t < height; ++t)
                for (int c = 0; c < width; ++c) src[count(t, width) + c] = static_cast<TypeParam>(t * (c + 1));
            const std::vector<TypeParam> ones(count(3, width), TypeParam(1));
            ASSERT_EQ(member.call(src.data(), ones.data(), width, dst.data(), step, height, whole, 0), vornStsNoErr);
            for (int t = 2 * lag; t < height - 2 * lag; ++t) {
                for (int c = 0; c < width; ++c) {
                    EXPECT_EQ(dst[count(t, step) + width + c], (lag == 1 ? 2 : 10) * (c + 1)) << member.name;
                    if (!member.rules.acceleration) continue;
                    EXPECT_EQ(dst[count(t, step) + 2 * width + c], 0) << member.name;
                }
            }
        }
    }
}

// Backwards in time deltas change their sign and accelerations do not: whole numbers, so that nothing rounds.
TYPED_TEST(Streaming, TimeReversed) {
    Random random(11);
    for (const auto& member : this->members) {
        const int width = 13, height = 40, step = member.parts() * width;
        auto frames = random.integers<Vorn16s>(count(height, width), -500, 500);
        std::vector<TypeParam> forth(frames.begin(), frames.end()), back(forth.size());
        for (int t = 0; t < height; ++t)
            std::copy_n(&forth[count(t, width)], width, &back[count(height - 1 - t, width)]);
        const std::vector<TypeParam> ones(count(3, width), TypeParam(1));
        std::vector<TypeParam> a(count(height, step)), b(a.size());
        ASSERT_EQ(member.call(forth.data(), ones.data(), width, a.data(), step, height, whole, 0), vornStsNoErr);
        ASSERT_EQ(member.call(back.data(), ones.data(), width, b.data(), step, height, whole, 0), vornStsNoErr);
        for (int t = 0; t < height; ++t) {
            for (int c = 0; c < step; ++c) {
                const TypeParam x = a[count(t, step) + c], y = b[count(height - 1 - t, step) + c];
                EXPECT_EQ(x, c / width == 1 ? -y : y) << member.name << " " << t << " " << c;
            }
        }
    }
}

// 16-bit members give what singles give where both are exact.
TEST(StreamingShorts, EqualSinglesWhereBothAreExact) {
    Random random(12);
    const auto shorts = test::deltas::membersOf<Vorn16s>();
    const auto singles = test::deltas::membersOf<Vorn32f>();
    for (std::size_t m = 0; m < shorts.size(); ++m) {
        const int width = 39, height = 50, step = 3 * width;
        const auto frames = random.integers<Vorn16s>(count(height, width), -20, 20);
        const std::vector<Vorn16s> f = [&] {
            std::vector<Vorn16s> values(count(3, width), 3);
            if (!shorts[m].rules.mul) return values;
            for (Vorn16s& x : values) x = static_cast<Vorn16s>(random.integer(-4, 4));
            return values;
        }();
        const std::vector<Vorn32f> framesOf(frames.begin(), frames.end()), factorsOf(f.begin(), f.end());
        std::vector<Vorn16s> a(count(height, step), 0);
        std::vector<Vorn32f> b(a.size(), 0);
        ASSERT_EQ(shorts[m].call(frames.data(), f.data(), width, a.data(), step, height, whole, 0), vornStsNoErr);
        ASSERT_EQ(singles[m].call(framesOf.data(), factorsOf.data(), width, b.data(), step, height, whole, 0),
                  vornStsNoErr);
        for (std::size_t i = 0; i < a.size(); ++i) ASSERT_EQ(a[i], b[i]) << shorts[m].name << " " << i;
    }
}

// ---- The header's example.

TEST(Streaming, BlocksAsTheHeaderShowsThem) {
    Random random(13);
    const int width = 13, step = 26, frames = 40;
    const auto all = random.floats(count(frames, width), -50.0, 50.0);
    const Vorn32f val = 0.1f;
    std::vector<Vorn32f> once(count(frames, step)), rows(once.size());
    ASSERT_EQ(vornsDelta_Win2_32f_D2(all.data(), width, once.data(), step, frames, val, whole), vornStsNoErr);

    const int n = 4, height[n] = {4, 1, 30, 5};
    const Vorn32f* src[n] = {&all[0], &all[count(4, width)], &all[count(5, width)], &all[count(35, width)]};
    Vorn32f* out = rows.data();

    const int L = 4;
    Vorn32f* dst = out;
    for (int i = 0; i < n; ++i) {
        int mode = i == 0 ? vornDeltaFirst : 0;
        vornsDelta_Win2_32f_D2(src[i], width, dst, step, height[i], val, mode);
        dst += (i == 0 ? height[i] - L : height[i]) * step;
    }
    vornsDelta_Win2_32f_D2(src[0], width, dst, step, 0, val, vornDeltaLast);

    EXPECT_TRUE(sameBits(rows, once));
}

// ---- Checks.

template <class T>
struct Arguments {
    std::vector<T> data = std::vector<T>(64, T(1));
    Guarded<T> out = Guarded<T>(256);
    const T *src = data.data(), *factors = data.data();
    T* dst = out.data();
    int width = 3, step = 11, height = 8, mode = vornDeltaFirst;
    VornStatus call(const Member<T>& m) { return m.call(src, factors, width, dst, step, height, mode, 0); }
};

TYPED_TEST(Streaming, ChecksInOrder) {
    using A = Arguments<TypeParam>;
    for (const auto& member : this->members) {
        SCOPED_TRACE(member.name);
        std::vector<test::Rule<A>> rules = {
            {"src", vornStsNullPtrErr, [](A& a) { a.src = nullptr; }},
            {"dst", vornStsNullPtrErr, [](A& a) { a.dst = nullptr; }},
            {"height -1", vornStsSizeErr, [](A& a) { a.height = -1; }},
            {"height 0", vornStsSizeErr, [](A& a) { a.height = 0; }},
            {"width 0", vornStsSizeErr, [](A& a) { a.width = 0; }},
            {"short step", vornStsStrideErr, [=](A& a) { a.step = member.parts() * 3 - 1; }},
            {"short first call", vornStsSizeErr, [=](A& a) { a.height = member.lookback() - 1; }}};
        if (member.rules.mul) {
            rules.insert(rules.begin(), {"pVal", vornStsNullPtrErr, [](A& a) { a.factors = nullptr; }});
        }
        test::expectCheckOrder<A>([] { return A(); }, [&](A& a) { return a.call(member); },
                                  [](A& a) { return a.out.untouched(); }, rules);
        A a;
        a.height = -1;
        a.mode = vornDeltaLast;
        EXPECT_EQ(a.call(member), vornStsSizeErr);
        a.height = 0;
        a.mode = whole;
        EXPECT_EQ(a.call(member), vornStsSizeErr) << "a first call needs its rows, the last one or not";
        a.mode = 4;
        EXPECT_EQ(a.call(member), vornStsSizeErr) << "other bits mean nothing";
        a.mode = whole;
        a.step = 1;
        EXPECT_EQ(a.call(member), vornStsStrideErr);
        a = A();
        a.width = 1 << 30;  // two or three widths are more than an int can say
        a.step = INT_MAX;
        // The factors of such a width are out of reach, so they are not looked at before the checks.
        if (member.rules.mul) {
            EXPECT_EQ(a.call(member), vornStsStrideErr);
        }
        EXPECT_TRUE(a.out.untouched());
    }
}

TEST(Delta, WidthsBeyondAnInt) {
    float x = 0;
    EXPECT_EQ(vornsDelta_Win1_32f_D2(&x, 1 << 30, &x, INT_MAX, 8, 1, vornDeltaFirst), vornStsStrideErr);
    EXPECT_EQ(vornsDeltaDelta_Win2_32f_D2(&x, 1 << 30, &x, 1 << 30, 8, 1, 1, vornDeltaFirst), vornStsStrideErr);
    Vorn16s y = 0;
    EXPECT_EQ(vornsDeltaDelta_Win1_16s_D2Sfs(&y, INT_MAX, &y, INT_MAX, 8, 1, 1, vornDeltaFirst, 0), vornStsStrideErr);
}

}  // namespace
