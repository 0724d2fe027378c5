// Energy normalisation and mean removal.
#include "model/energy.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
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

constexpr float inf = std::numeric_limits<float>::infinity();

TEST(NormEnergy, SinglesEqualTheModel) {
    Random random(2);
    const auto hard = test::hardFloats<float>();
    for (int height = 1; height <= 40; ++height) {
        for (int step : {1, 3, 39}) {
            for (int turn = 0; turn < 4; ++turn) {
                const std::size_t len = static_cast<std::size_t>(height - 1) * step + 1;
                const auto x = turn == 3 ? random.pick(hard, len) : random.floats(len, -20.0, 20.0);
                const float minDb = turn == 2 ? -10.0f : 50.0f, val = turn == 1 ? 0.1f : 1.0f, maxE = 12.5f;
                float m = -3.4028235e38f;
                for (int i = 0; i < height; ++i)
                    m = x[static_cast<std::size_t>(i) * step] > m ? x[static_cast<std::size_t>(i) * step] : m;
                Guarded<float> own(x), given(x);
                ASSERT_EQ(vornsNormEnergy_32f(own, step, height, minDb, val), vornStsNoErr);
                ASSERT_EQ(vornsNormEnergy_RT_32f(given, step, height, minDb, maxE, val), vornStsNoErr);
                auto expectedOwn = x, expectedGiven = x;
                for (std::size_t i = 0; i < len; i += static_cast<std::size_t>(step)) {
                    expectedOwn[i] = model::normalisedEnergy(x[i], m, minDb, 1.0f, val);
                    expectedGiven[i] = model::normalisedEnergy(x[i], maxE, minDb, 1.0f, val);
                }
                EXPECT_TRUE(sameBits(own.data(), expectedOwn.data(), len)) << height << " " << step;
                EXPECT_TRUE(sameBits(given.data(), expectedGiven.data(), len)) << height << " " << step;
            }
        }
    }
}

TEST(NormEnergy, ShortsEqualTheModel) {
    Random random(3);
    for (int height = 1; height <= 40; ++height) {
        for (int step : {1, 2, 13}) {
            for (float val : {1.0f, 0.01f, -3.0f, 1e6f, inf}) {
                const std::size_t len = static_cast<std::size_t>(height - 1) * step + 1;
                const auto x = random.integers<Vorn16s>(len);
                const Vorn16s minDb = 30000, top = 20000, maxE = 32000;
                float m = -32768.0f;
                for (std::size_t i = 0; i < len; i += static_cast<std::size_t>(step))
                    m = std::max(m, static_cast<float>(x[i]));
                Guarded<Vorn16s> own(x), given(x);
                ASSERT_EQ(vornsNormEnergy_16s(own, step, height, minDb, top, val), vornStsNoErr);
                ASSERT_EQ(vornsNormEnergy_RT_16s(given, step, height, minDb, maxE, top, val), vornStsNoErr);
                auto expectedOwn = x, expectedGiven = x;
                for (std::size_t i = 0; i < len; i += static_cast<std::size_t>(step)) {
                    expectedOwn[i] = model::truncatedShort(model::normalisedEnergy(x[i], m, minDb, top, val));
                    expectedGiven[i] = model::truncatedShort(model::normalisedEnergy(x[i], maxE, minDb, top, val));
                }
                EXPECT_TRUE(sameBits(own.data(), expectedOwn.data(), len)) << val;
                EXPECT_TRUE(sameBits(given.data(), expectedGiven.data(), len)) << val;
            }
        }
    }
}

// Side by side and apart: whole vectors and what is left behind them, with values around both limits of 16 bits.
TEST(NormEnergy, LongRowsEqualTheModel) {
    Random random(8);
    const auto hardSingles = test::hardFloats<float>();
    const auto hardShorts = test::hardIntegers<Vorn16s>();
    for (int height : {63, 64, 65, 96, 127, 500}) {
        for (int step : {1, 2}) {
            const std::size_t len = static_cast<std::size_t>(height - 1) * step + 1;
            for (float val : {0.1f, 1.0f, -1.0f, 3e38f, inf, -inf, std::numeric_limits<float>::quiet_NaN()}) {
                auto x = random.floats(len, -20.0, 20.0);
                for (std::size_t i = 0; i < len; i += 7)
                    x[i] = hardSingles[static_cast<std::size_t>(random.integer(0, 1000)) % hardSingles.size()];
                const auto s = height % 2 ? random.integers<Vorn16s>(len) : random.pick(hardShorts, len);
                Guarded<float> single(x), singleOwn(x);
                Guarded<Vorn16s> fixed(s), fixedOwn(s);
                ASSERT_EQ(vornsNormEnergy_RT_32f(single, step, height, 20, 3, val), vornStsNoErr);
                ASSERT_EQ(vornsNormEnergy_32f(singleOwn, step, height, 20, val), vornStsNoErr);
                ASSERT_EQ(vornsNormEnergy_RT_16s(fixed, step, height, 30000, 32767, 32767, val), vornStsNoErr);
                ASSERT_EQ(vornsNormEnergy_16s(fixedOwn, step, height, 30000, -32768, val), vornStsNoErr);
                float m = -3.4028235e38f, m16 = -32768.0f;
                for (std::size_t i = 0; i < len; i += static_cast<std::size_t>(step)) {
                    m = x[i] > m ? x[i] : m;
                    m16 = std::max(m16, static_cast<float>(s[i]));
                }
                for (std::size_t i = 0; i < len; ++i) {
                    const bool counts = i % static_cast<std::size_t>(step) == 0;
                    const float y = counts ? model::normalisedEnergy(x[i], 3, 20, 1.0f, val) : x[i];
                    const float yOwn = counts ? model::normalisedEnergy(x[i], m, 20, 1.0f, val) : x[i];
                    EXPECT_TRUE(test::same(single[i], y)) << x[i] << " x " << val;
                    EXPECT_TRUE(test::same(singleOwn[i], yOwn)) << x[i] << " x " << val;
                    const float z = model::normalisedEnergy(s[i], 32767, 30000, 32767, val);
                    const float zOwn = model::normalisedEnergy(s[i], m16, 30000, -32768, val);
                    EXPECT_EQ(fixed[i], counts ? model::truncatedShort(z) : s[i]) << s[i] << " x " << val;
                    EXPECT_EQ(fixedOwn[i], counts ? model::truncatedShort(zOwn) : s[i]) << s[i] << " x " << val;
                }
            }
        }
    }
}

TEST(NormEnergy, Literal) {
    float equal[] = {7, 7, 7};
    ASSERT_EQ(vornsNormEnergy_32f(equal, 1, 3, 50.0f, 0.1f), vornStsNoErr);
    for (float x : equal) EXPECT_EQ(x, 1.0f);
    float low[] = {100, -100};
    ASSERT_EQ(vornsNormEnergy_32f(low, 1, 2, 50.0f, 0.1f), vornStsNoErr);
    EXPECT_EQ(low[0], 1.0f);
    EXPECT_NEAR(low[1], 1.0f - 50.0f * 0.230259f * 0.1f, 1e-5f);
    Vorn16s fixed[] = {100, 90, -32768};
    ASSERT_EQ(vornsNormEnergy_16s(fixed, 1, 3, 100, 1000, 2.5f), vornStsNoErr);
    EXPECT_EQ(fixed[0], 1000);
    EXPECT_EQ(fixed[1], 975);
    EXPECT_EQ(fixed[2], 942);  // 1000 - 23.0259 x 2.5 = 942.4, truncated
}

template <class T>
void expectEnergyOrder(VornStatus (*call)(T*, int, int)) {
    struct Arguments {
        Guarded<T> out = Guarded<T>(4);
        T* srcDst = out.data();
        int step = 1, height = 4;
    };
    using A = Arguments;
    test::expectCheckOrder<A>([] { return A(); }, [call](A& a) { return call(a.srcDst, a.step, a.height); },
                              [](A& a) { return a.out.untouched(); },
                              {{"srcDst", vornStsNullPtrErr, [](A& a) { a.srcDst = nullptr; }},
                               {"step 0", vornStsSizeErr, [](A& a) { a.step = 0; }},
                               {"height 0", vornStsSizeErr, [](A& a) { a.height = 0; }}});
}

TEST(NormEnergy, ChecksInOrder) {
    expectEnergyOrder<float>([](float* x, int step, int height) { return vornsNormEnergy_32f(x, step, height, 1, 1); });
    expectEnergyOrder<float>(
        [](float* x, int step, int height) { return vornsNormEnergy_RT_32f(x, step, height, 1, 1, 1); });
    expectEnergyOrder<Vorn16s>(
        [](Vorn16s* x, int step, int height) { return vornsNormEnergy_16s(x, step, height, 1, 1, 1); });
    expectEnergyOrder<Vorn16s>(
        [](Vorn16s* x, int step, int height) { return vornsNormEnergy_RT_16s(x, step, height, 1, 1, 1, 1); });
}

TEST(ZeroMean, EqualsTheModel) {
    Random random(4);
    for (std::size_t len = 1; len <= 150; ++len) {
        for (int turn = 0; turn < 4; ++turn) {
            const auto x = turn == 0   ? random.integers<Vorn16s>(len)
                           : turn == 1 ? random.integers<Vorn16s>(len, -5, 6)
                           : turn == 2 ? random.integers<Vorn16s>(len, 32000, 32767)
                                       : random.pick<Vorn16s>({-32768, 32767}, len);
            const auto expected = model::zeroMean(x);
            Guarded<Vorn16s> srcDst(x);
            ASSERT_EQ(vornsZeroMean_16s(srcDst, static_cast<int>(len)), vornStsNoErr);
            EXPECT_TRUE(sameBits(srcDst.data(), expected.data(), len)) << len;
            EXPECT_TRUE(srcDst.surroundingsUntouched());
            Offset<Vorn16s> odd(len, 2 * (len % 16));
            odd.assign(x);
            ASSERT_EQ(vornsZeroMean_16s(odd, static_cast<int>(len)), vornStsNoErr);
            EXPECT_TRUE(sameBits(odd.data(), expected.data(), len)) << len;
        }
    }
    for (Vorn16s value : {32767, -32768}) {
        for (std::size_t len : {65535, 65536, 65537, 65539, 70000}) {  // around the lengths whose sums wrap
            const std::vector<Vorn16s> loud(len, value);
            auto srcDst = loud;
            ASSERT_EQ(vornsZeroMean_16s(srcDst.data(), static_cast<int>(len)), vornStsNoErr);
            const auto expected = model::zeroMean(loud);
            EXPECT_TRUE(sameBits(srcDst.data(), expected.data(), len)) << len << " x " << value;
        }
    }
}

TEST(ZeroMean, Literal) {
    Vorn16s x[] = {1, 2};
    ASSERT_EQ(vornsZeroMean_16s(x, 2), vornStsNoErr);
    EXPECT_EQ(x[0], -1);
    EXPECT_EQ(x[1], 1);
    Vorn16s far[] = {-32768, 32767, 32767, 32767};  // m2 = 32766, d = -98302 and 32768
    ASSERT_EQ(vornsZeroMean_16s(far, 4), vornStsNoErr);
    EXPECT_EQ(far[0], -32767) << "limited";
    EXPECT_EQ(far[1], 16384);
}

TEST(ZeroMean, ChecksSizeBeforeNull) {
    struct Arguments {
        Guarded<Vorn16s> out = Guarded<Vorn16s>(4);
        Vorn16s* srcDst = out.data();
        int len = 4;
    };
    using A = Arguments;
    test::expectCheckOrder<A>([] { return A(); }, [](A& a) { return vornsZeroMean_16s(a.srcDst, a.len); },
                              [](A& a) { return a.out.untouched(); },
                              {{"len 0", vornStsSizeErr, [](A& a) { a.len = 0; }},
                               {"len -1", vornStsSizeErr, [](A& a) { a.len = -1; }},
                               {"srcDst", vornStsNullPtrErr, [](A& a) { a.srcDst = nullptr; }}});
}

// x in the caller's mode: the neighbour of the nearest single that lies on the mode's side.
float directed(double x, bool up) {
    const float nearest = static_cast<float>(x);
    if (up) return nearest < x ? std::nextafter(nearest, inf) : nearest;
    return nearest > x ? std::nextafter(nearest, -inf) : nearest;
}

// The floor lies minDb 0.230259 below: the product is rounded as it stands, not as the mirror image of its negative.
TEST(NormEnergy, TheFloorIsRoundedInTheCallersMode) {
    for (const bool up : {false, true}) {
        for (const float minDb : {3.0f, 50.0f, 0.7f}) {
            const float floor = directed(double{minDb} * 0.230259f, up);  // below a maximum of 0
            const float expected = directed(1.0 - floor, up);
            float energy = -1000.0f;
            {
                const test::RoundingMode mode(up ? test::RoundingMode::up : test::RoundingMode::down);
                EXPECT_EQ(vornsNormEnergy_RT_32f(&energy, 1, 1, minDb, 0.0f, 1.0f), vornStsNoErr);
            }
            EXPECT_EQ(energy, expected) << minDb << (up ? " up" : " down");
        }
    }
}

}  // namespace
