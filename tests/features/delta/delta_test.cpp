// Streaming deltas and accelerations.
#include "model/delta.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

#include "support/expect.h"
#include "support/guarded.h"
#include "support/values.h"
#include "vornsr.h"

namespace {

using test::Guarded;
using test::Offset;
using test::Random;
using test::sameBits;

constexpr int whole = vornDeltaFirst | vornDeltaLast;

// The streaming members behind one face.
struct Delta2 {
    static constexpr int window = 2, lookback = 4, lag = 2;
    static constexpr bool acceleration = false;
    static VornStatus call(const float* src, int width, float* dst, int step, int height, float val1, float, int mode) {
        return vornsDelta_Win2_32f_D2(src, width, dst, step, height, val1, mode);
    }
};
struct DeltaDelta2 {
    static constexpr int window = 2, lookback = 6, lag = 2;
    static constexpr bool acceleration = true;
    static VornStatus call(const float* src, int width, float* dst, int step, int height, float val1, float val2,
                           int mode) {
        return vornsDeltaDelta_Win2_32f_D2(src, width, dst, step, height, val1, val2, mode);
    }
};

template <class Member>
class Streaming : public testing::Test {
protected:
    static constexpr int parts = Member::acceleration ? 3 : 2;

    static std::vector<float> expected(const std::vector<float>& src, int width, int step, int T, float val1,
                                       float val2) {
        std::vector<float> rows(static_cast<std::size_t>(T) * step, 77.0f);
        model::deltas(src.data(), width, rows.data(), step, T, Member::window, Member::acceleration, val1, val2);
        return rows;
    }

    // The utterance in blocks of the given heights; dst advances as the header says.
    static std::vector<float> run(const std::vector<float>& frames, int width, int step,
                                  const std::vector<int>& heights, float val1, float val2, bool lastAlone = false) {
        int T = 0;
        for (int height : heights) T += height;
        // The last row holds its columns only.
        Guarded<float> out(static_cast<std::size_t>(T - 1) * step + parts * width);
        for (float& x : out) x = 77.0f;
        float* dst = out;
        int row = 0;
        for (std::size_t block = 0; block < heights.size(); ++block) {
            int mode = block == 0 ? vornDeltaFirst : 0;
            if (block + 1 == heights.size() && !lastAlone) mode |= vornDeltaLast;
            Guarded<float> src(
                std::vector<float>(frames.begin() + static_cast<std::ptrdiff_t>(row) * width,
                                   frames.begin() + static_cast<std::ptrdiff_t>(row + heights[block]) * width));
            EXPECT_EQ(Member::call(src, width, dst, step, heights[block], val1, val2, mode | 0x70), vornStsNoErr);
            row += heights[block];
            dst = out + static_cast<std::ptrdiff_t>(row - Member::lookback) * step;
            if (mode & vornDeltaLast) break;
            // What is complete now is complete for good.
            const auto now = expected(frames, width, step, T, val1, val2);
            for (int t = 0; t < row; ++t) {
                const std::size_t at = static_cast<std::size_t>(t) * step;
                EXPECT_TRUE(sameBits(out.data() + at, now.data() + at, width)) << "frame " << t;
                if (t < row - Member::lag) {
                    EXPECT_TRUE(sameBits(out.data() + at + width, now.data() + at + width, width)) << "delta " << t;
                }
                if (Member::acceleration && t < row - 2 * Member::lag) {
                    EXPECT_TRUE(sameBits(out.data() + at + 2 * width, now.data() + at + 2 * width, width))
                        << "acceleration " << t;
                }
            }
        }
        if (lastAlone) {
            float unread = 0;
            EXPECT_EQ(Member::call(&unread, width, dst, step, 0, val1, val2, vornDeltaLast), vornStsNoErr);
        }
        EXPECT_TRUE(out.surroundingsUntouched());
        std::vector<float> result = out.values();
        result.resize(static_cast<std::size_t>(T) * step, 77.0f);
        return result;
    }
};

using Members = testing::Types<Delta2, DeltaDelta2>;
TYPED_TEST_SUITE(Streaming, Members);

TYPED_TEST(Streaming, WholeUtterancesEqualTheModelBitForBit) {
    Random random(1);
    for (int width = 1; width <= 70; ++width) {
        for (int T : {TypeParam::lookback, TypeParam::lookback + 1, TypeParam::lookback + 2, 11, 40}) {
            for (int extra : {0, 3, 8}) {
                const int step = this->parts * width + extra;
                const auto src = random.floats(static_cast<std::size_t>(T) * width, -50.0, 50.0);
                const auto got = this->run(src, width, step, {T}, 0.1f, 0.3f);
                const auto expected = this->expected(src, width, step, T, 0.1f, 0.3f);
                EXPECT_TRUE(sameBits(got.data(), expected.data(), got.size())) << width << " " << T << " " << step;
            }
        }
    }
}

TYPED_TEST(Streaming, AnyCutGivesTheSameRows) {
    Random random(2);
    for (int width : {1, 3, 4, 5, 13, 16, 17, 39}) {
        const int step = this->parts * width + 1;
        for (int T : {20, 100}) {
            const auto src = random.floats(static_cast<std::size_t>(T) * width, -50.0, 50.0);
            const auto expected = this->expected(src, width, step, T, 0.1f, -2.0f);
            for (int block : {1, 2, 3, 4, 5, 7, 16}) {
                std::vector<int> heights{TypeParam::lookback};
                for (int row = TypeParam::lookback; row < T; row += heights.back())
                    heights.push_back(std::min(block, T - row));
                for (bool lastAlone : {false, true}) {
                    const auto got = this->run(src, width, step, heights, 0.1f, -2.0f, lastAlone);
                    EXPECT_TRUE(sameBits(got.data(), expected.data(), got.size())) << width << " " << T << " " << block;
                }
            }
        }
    }
}

TYPED_TEST(Streaming, BlocksOfSevenEqualOneCall) {
    Random random(3);
    const int width = 13, step = 40, T = 100;
    const auto src = random.floats(static_cast<std::size_t>(T) * width, -50.0, 50.0);
    std::vector<int> heights(14, 7);
    heights.push_back(2);
    const auto blocks = this->run(src, width, step, heights, 0.1f, 0.1f);
    const auto once = this->run(src, width, step, {T}, 0.1f, 0.1f);
    EXPECT_TRUE(sameBits(blocks.data(), once.data(), once.size()));
}

TYPED_TEST(Streaming, LongCallsEqualTheModel) {
    Random random(4);
    for (int width : {1, 2, 13, 39, 64, 130, 1500}) {
        const int step = this->parts * width, T = width > 1000 ? 40 : 700;
        const auto src = random.floats(static_cast<std::size_t>(T) * width, -50.0, 50.0);
        const auto got = this->run(src, width, step, {T}, 0.5f, 0.25f);
        const auto expected = this->expected(src, width, step, T, 0.5f, 0.25f);
        EXPECT_TRUE(sameBits(got.data(), expected.data(), got.size())) << width;
    }
}

TYPED_TEST(Streaming, HardValuesFollowTheArithmetic) {
    Random random(5);
    const auto hard = test::hardFloats<float>();
    const auto pick = [&] {
        return hard[static_cast<std::size_t>(random.integer(0, static_cast<int>(hard.size()) - 1))];
    };
    for (int width : {1, 4, 7, 16, 21, 40}) {
        for (int turn = 0; turn < 30; ++turn) {
            const int T = 9, step = this->parts * width;
            std::vector<float> src(static_cast<std::size_t>(T) * width);
            for (float& x : src) x = pick();
            const float val1 = pick(), val2 = pick();
            const auto got = this->run(src, width, step, {T}, val1, val2);
            const auto expected = this->expected(src, width, step, T, val1, val2);
            EXPECT_TRUE(sameBits(got.data(), expected.data(), got.size())) << width;
        }
    }
}

TYPED_TEST(Streaming, AlignmentChangesNothing) {
    Random random(6);
    const int T = 12;
    for (int width : {5, 8, 12}) {
        for (int step : {36, 37}) {
            const auto frames = random.floats(static_cast<std::size_t>(T) * width, -50.0, 50.0);
            const auto expected = this->expected(frames, width, step, T, 0.1f, 0.2f);
            for (std::size_t a = 0; a < 32; a += 4) {
                Offset<float> src(frames.size(), a), dst(expected.size(), (3 * a) % 32);
                src.assign(frames);
                dst.assign(std::vector<float>(expected.size(), 77.0f));
                ASSERT_EQ(TypeParam::call(src, width, dst, step, T, 0.1f, 0.2f, whole), vornStsNoErr);
                EXPECT_TRUE(sameBits(dst.data(), expected.data(), expected.size())) << a;
                EXPECT_TRUE(dst.surroundingsUntouched());
            }
        }
    }
}

TYPED_TEST(Streaming, LastAloneRightAfterAFirstCall) {
    std::vector<float> src(TypeParam::lookback);
    for (int t = 0; t < TypeParam::lookback; ++t) src[t] = static_cast<float>(t * t);
    const auto got = this->run(src, 1, this->parts, {TypeParam::lookback}, 1.0f, 1.0f, true);
    const auto expected = this->expected(src, 1, this->parts, TypeParam::lookback, 1.0f, 1.0f);
    EXPECT_TRUE(sameBits(got.data(), expected.data(), got.size()));
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

template <class Member>
struct Arguments {
    std::vector<float> data = std::vector<float>(64, 1.0f);
    Guarded<float> out = Guarded<float>(256);
    const float* src = data.data();
    float* dst = out.data();
    int width = 3, step = 11, height = 8, mode = vornDeltaFirst;
    VornStatus call() { return Member::call(src, width, dst, step, height, 1.0f, 1.0f, mode); }
};

TYPED_TEST(Streaming, ChecksInOrder) {
    using A = Arguments<TypeParam>;
    test::expectCheckOrder<A>(
        [] { return A(); }, [](A& a) { return a.call(); }, [](A& a) { return a.out.untouched(); },
        {{"src", vornStsNullPtrErr, [](A& a) { a.src = nullptr; }},
         {"dst", vornStsNullPtrErr, [](A& a) { a.dst = nullptr; }},
         {"height -1", vornStsSizeErr, [](A& a) { a.height = -1; }},
         {"height 0", vornStsSizeErr, [](A& a) { a.height = 0; }},
         {"width 0", vornStsSizeErr, [](A& a) { a.width = 0; }},
         {"short step", vornStsStrideErr, [](A& a) { a.step = (TypeParam::acceleration ? 3 : 2) * 3 - 1; }},
         {"short first call", vornStsSizeErr, [](A& a) { a.height = TypeParam::lookback - 1; }}});
    A a;
    a.height = -1;
    a.mode = vornDeltaLast;
    EXPECT_EQ(a.call(), vornStsSizeErr);
    a.height = 0;
    a.mode = whole;
    EXPECT_EQ(a.call(), vornStsSizeErr) << "a first call needs its rows, the last one or not";
    a.step = 1;
    EXPECT_EQ(a.call(), vornStsStrideErr);
    a = A();
    a.width = 1 << 30;  // three widths are more than an int can say
    a.step = 1 << 30;
    EXPECT_EQ(a.call(), vornStsStrideErr);
    EXPECT_TRUE(a.out.untouched());
}

}  // namespace
