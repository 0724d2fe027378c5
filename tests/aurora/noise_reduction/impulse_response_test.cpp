// The impulse response made causal, and the filter.
#include <cmath>
#include <cstdint>

#include "aurora/noise_reduction/common.h"
#include "model/noise_reduction.h"

namespace {

using namespace noise_reduction_test;
using test::Guarded;
using test::Offset;
using test::Random;
using test::sameBits;

VornStatus spread(const float* src, float* dst) { return vornsTabsCalculation_Aurora_32f(src, dst); }
VornStatus spread(const Vorn16s* src, Vorn16s* dst) { return vornsTabsCalculation_Aurora_16s(src, dst); }
VornStatus filter(const float* src, float* dst, const float* taps, int) {
    return vornsResidualFilter_Aurora_32f(src, dst, taps);
}
VornStatus filter(const Vorn16s* src, Vorn16s* dst, const Vorn16s* taps, int sf) {
    return vornsResidualFilter_Aurora_16s_Sfs(src, dst, taps, sf);
}
Floats expectedOf(const Floats& src, const Floats& taps, int) { return model::residual(src, taps); }
Shorts expectedOf(const Shorts& src, const Shorts& taps, int sf) { return model::residual(src, taps, sf); }

template <class T>
void expectSpread(const std::vector<T>& x) {
    const auto expected = model::spreadTaps(x);
    for (std::size_t bytes = 0; bytes < 64; bytes += sizeof(T)) {
        Offset<T> src(10, bytes), dst(17, 64 - bytes);
        src.assign(x);
        ASSERT_EQ(spread(src.data(), dst.data()), vornStsNoErr);
        EXPECT_TRUE(std::memcmp(dst.data(), expected.data(), 17 * sizeof(T)) == 0) << "moved bit for bit";
        EXPECT_TRUE(dst.surroundingsUntouched());
    }
    const Guarded<T> src(x), dst(17), both(17);
    ASSERT_EQ(spread(src.data(), dst.data()), vornStsNoErr);
    EXPECT_TRUE(std::memcmp(dst.data(), expected.data(), 17 * sizeof(T)) == 0);
    EXPECT_TRUE(dst.surroundingsUntouched());
    std::copy(x.begin(), x.end(), both.begin());
    ASSERT_EQ(spread(both.data(), both.data()), vornStsNoErr);
    EXPECT_TRUE(std::memcmp(both.data(), expected.data(), 17 * sizeof(T)) == 0) << "in place";
}
TEST(TabsCalculation, MovesTheValues) {
    const Guarded<float> places = {0, 1, 2, 3, 4, 5, 6, 7, 8, 9}, taps(17);
    ASSERT_EQ(vornsTabsCalculation_Aurora_32f(places, taps), vornStsNoErr);
    EXPECT_EQ(taps.values(), (Floats{8, 7, 6, 5, 4, 3, 2, 1, 0, 2, 3, 4, 5, 6, 7, 8, 9}));
    const Guarded<Vorn16s> places16 = {0, 1, 2, 3, 4, 5, 6, 7, 8, 9}, taps16(17);
    ASSERT_EQ(vornsTabsCalculation_Aurora_16s(places16, taps16), vornStsNoErr);
    EXPECT_EQ(taps16.values(), (Shorts{8, 7, 6, 5, 4, 3, 2, 1, 0, 2, 3, 4, 5, 6, 7, 8, 9}));
    Random random(1);
    for (int turn = 0; turn < 8; ++turn) {
        expectSpread(floatsOf(random, 10, turn));
        expectSpread(integersOf<Vorn16s>(random, 10, turn));
    }
    // Also a not-a-number that arithmetic would change.
    Floats payload(10, std::bit_cast<float>(0x7F812345u));
    expectSpread(payload);
}

template <class T>
void expectModel(const std::vector<T>& x, const std::vector<T>& t, int sf) {
    const auto expected = expectedOf(x, t, sf);
    const Guarded<T> src(x), taps(t), dst(80);
    ASSERT_EQ(filter(src.data(), dst.data(), taps.data(), sf), vornStsNoErr);
    EXPECT_TRUE(sameBits(dst.data(), expected.data(), 80)) << "factor " << sf;
    EXPECT_TRUE(dst.surroundingsUntouched());
    ASSERT_EQ(filter(src.data(), src.data(), taps.data(), sf), vornStsNoErr);
    EXPECT_TRUE(sameBits(src.data(), expected.data(), 80)) << "in place, factor " << sf;
    for (std::size_t i = 80; i < 96; ++i) EXPECT_TRUE(test::same(src[i], x[i]));
}

TEST(ResidualFilter, SinglesEqualTheModel) {
    Random random(2);
    for (int turn = 0; turn < 100; ++turn) {
        expectModel(floatsOf(random, 96, turn), floatsOf(random, 17, turn / 4), 0);
    }
    const Floats minusZeros(96, -0.0f), ones(17, 1.0f);
    Floats y(80);
    ASSERT_EQ(vornsResidualFilter_Aurora_32f(minusZeros.data(), y.data(), ones.data()), vornStsNoErr);
    EXPECT_TRUE(sameBits(y, Floats(80, -0.0f))) << "a sum of its products and nothing else";
}

TEST(ResidualFilter, ShortsEqualTheModel) {
    Random random(3);
    const auto taps = [&](int kind) {
        switch (kind) {
            case 0:
                return random.integers<Vorn16s>(17, -3000, 3000);  // their magnitudes add up to less than 2^16
            case 1:
                return random.integers<Vorn16s>(17);
            case 2:
                return random.pick<Vorn16s>({-32768, 32767, 255, 256, -256, -255, -1, 0}, 17);
            case 3:  // just below 2^16
            {
                Shorts edge(17, 3855);
                for (std::size_t i = 0; i < 17; i += 2) edge[i] = -3855;
                return edge;
            }
            default:  // and on it
            {
                Shorts edge(17, 3855);
                edge[static_cast<std::size_t>(random.integer(0, 16))] += 1;
                return edge;
            }
        }
    };
    for (int sf : scaleFactors) {
        for (int turn = 0; turn < 20; ++turn) {
            expectModel(turn % 5 == 4 ? Shorts(96, turn % 2 ? 32767 : -32768) : integersOf<Vorn16s>(random, 96, turn),
                        taps(turn / 4), sf);
        }
        expectModel(Shorts(96, -32768), Shorts(17, -32768), sf);
        expectModel(Shorts(96, -32768), Shorts(17, 32767), sf);
        expectModel(random.integers<Vorn16s>(96, -3, 3), random.integers<Vorn16s>(17, -3, 3), sf);
        // Two neighbours whose products do not fit 32 bits together, in every place.
        for (std::size_t place = 0; place < 16; ++place) {
            Shorts pair(17, 0);
            pair[place] = pair[place + 1] = -32768;
            expectModel(Shorts(96, -32768), pair, sf);
        }
    }
}

TEST(ResidualFilter, LiteralShorts) {
    const Shorts least(96, -32768), taps(17, -32768);
    struct Case {
        int scaleFactor;
        Vorn16s y;
    };
    // The sum is 17 x 2^30.
    for (const Case& c :
         {Case{0, 32767},    Case{15, 32767}, Case{19, 32767},  Case{20, 17408},   Case{30, 17},
          Case{31, 8},       Case{34, 1},     Case{35, 0},      Case{63, 0},       Case{64, 32767},
          Case{84, 17408},   Case{-1, 32767}, Case{-28, 32767}, Case{-29, -32768}, Case{-30, 32767},
          Case{-33, -32768}, Case{-34, 0},    Case{-63, 0},     Case{-64, 32767},  Case{INT32_MIN, 32767},
          Case{INT32_MAX, 0}}) {
        Shorts y(80);
        ASSERT_EQ(vornsResidualFilter_Aurora_16s_Sfs(least.data(), y.data(), taps.data(), c.scaleFactor), vornStsNoErr);
        EXPECT_EQ(y, Shorts(80, c.y)) << c.scaleFactor;
    }
    // Rounded down, not to zero and not to nearest.
    Shorts minusOne(96, -1), one(17, 0), y(80);
    one[16] = 1;
    ASSERT_EQ(vornsResidualFilter_Aurora_16s_Sfs(minusOne.data(), y.data(), one.data(), 5), vornStsNoErr);
    EXPECT_EQ(y, Shorts(80, -1));
}

// One tap moves the frame, without a bit lost.
TEST(ResidualFilter, OneTapMovesTheFrame) {
    Random random(4);
    const auto x = random.floats(96, -1, 1);
    const auto x16 = random.integers<Vorn16s>(96);
    for (std::size_t place = 0; place < 17; ++place) {
        Floats tap(17, 0.0f), y(80);
        Shorts tap16(17, 0), y16(80);
        tap[place] = 1.0f, tap16[place] = 16384;
        ASSERT_EQ(vornsResidualFilter_Aurora_32f(x.data(), y.data(), tap.data()), vornStsNoErr);
        ASSERT_EQ(vornsResidualFilter_Aurora_16s_Sfs(x16.data(), y16.data(), tap16.data(), 14), vornStsNoErr);
        for (std::size_t n = 0; n < 80; ++n) {
            EXPECT_EQ(y[n], x[n + place]);
            EXPECT_EQ(y16[n], x16[n + place]);
        }
    }
}

// A sine comes out with the level and the phase that the taps' transform says.
TEST(ResidualFilter, AnswersASineWithItsTransform) {
    Random random(5);
    const auto taps = random.floats(17, -1, 1);
    for (double w : {0.1, 0.7, 2.0, 3.0}) {
        Floats x(96), y(80);
        for (std::size_t n = 0; n < 96; ++n) x[n] = static_cast<float>(std::sin(w * static_cast<double>(n)));
        ASSERT_EQ(vornsResidualFilter_Aurora_32f(x.data(), y.data(), taps.data()), vornStsNoErr);
        double re = 0, im = 0;
        for (int i = 0; i < 17; ++i) re += taps[i] * std::cos(w * i), im += taps[i] * std::sin(w * i);
        for (int n = 0; n < 80; ++n) EXPECT_NEAR(y[n], re * std::sin(w * n) + im * std::cos(w * n), 1e-5);
    }
}

TEST(ResidualFilter, NoAlignmentMatters) {
    Random random(6);
    const auto x = random.floats(96, -1, 1), t = random.floats(17, -1, 1), y = model::residual(x, t);
    const auto x16 = random.integers<Vorn16s>(96), t16 = random.integers<Vorn16s>(17),
               y16 = model::residual(x16, t16, 17);
    for (std::size_t bytes = 0; bytes < 64; bytes += 2) {
        for (int moved = 0; moved < 3; ++moved) {
            const auto at = [&](int which) { return which == moved ? bytes : 0; };
            if (bytes % 4 == 0) {
                Offset<float> src(96, at(0)), taps(17, at(1)), dst(80, at(2));
                src.assign(x), taps.assign(t);
                ASSERT_EQ(vornsResidualFilter_Aurora_32f(src, dst, taps), vornStsNoErr);
                EXPECT_TRUE(sameBits(dst.data(), y.data(), 80)) << moved << " at " << bytes;
            }
            Offset<Vorn16s> src(96, at(0)), taps(17, at(1)), dst(80, at(2));
            src.assign(x16), taps.assign(t16);
            ASSERT_EQ(vornsResidualFilter_Aurora_16s_Sfs(src, dst, taps, 17), vornStsNoErr);
            EXPECT_TRUE(sameBits(dst.data(), y16.data(), 80)) << moved << " at " << bytes;
        }
    }
}

// Singles follow the caller's mode.
TEST(ResidualFilter, RoundingModes) {
    Random random(7);
    for (unsigned mode : modes) {
        const test::RoundingMode inMode(mode);
        for (int turn = 0; turn < 10; ++turn) {
            expectModel(random.floats(96, -1, 1), random.floats(17, -1, 1), 0);
            expectModel(random.integers<Vorn16s>(96), random.integers<Vorn16s>(17), 18);
        }
        EXPECT_EQ(test::RoundingMode::current(), mode);
    }
}

template <class T>
void expectChecks() {
    struct Arguments {
        Guarded<T> read = Guarded<T>(std::vector<T>(96)), out = Guarded<T>(80);
        const T *src = read.data(), *taps = read.data();
        T* dst = out.data();
    };
    using A = Arguments;
    const auto good = [] { return A(); };
    const auto untouched = [](A& a) { return a.out.untouched(); };
    test::expectCheckOrder<A>(good, [](A& a) { return filter(a.src, a.dst, a.taps, 0); }, untouched,
                              {{"src", vornStsNullPtrErr, [](A& a) { a.src = nullptr; }},
                               {"dst", vornStsNullPtrErr, [](A& a) { a.dst = nullptr; }},
                               {"taps", vornStsNullPtrErr, [](A& a) { a.taps = nullptr; }}});
    test::expectCheckOrder<A>(good, [](A& a) { return spread(a.src, a.dst); }, untouched,
                              {{"src", vornStsNullPtrErr, [](A& a) { a.src = nullptr; }},
                               {"dst", vornStsNullPtrErr, [](A& a) { a.dst = nullptr; }}});
}
TEST(ResidualFilter, Checks) {
    expectChecks<float>();
    expectChecks<Vorn16s>();
}

}  // namespace
