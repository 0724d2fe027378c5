// Coding of a high band.
#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <limits>
#include <vector>

#include "model/equalisation.h"
#include "support/expect.h"
#include "support/guarded.h"
#include "support/rounding_mode.h"
#include "support/values.h"
#include "vornsr.h"

namespace {

using test::Guarded;
using test::Random;
using test::RoundingMode;
using test::sameBits;

constexpr std::size_t bands = 3, lowBins = 65, highBins = 129, codes = 3;

template <class T>
struct Input {
    std::vector<T> bands, low, high;
};

void compare(const Input<float>& in) {
    const auto expected = model::codedHighBand(in.bands, in.low, in.high);
    Guarded<float> b(in.bands), low(in.low), high(in.high), dst(codes);
    ASSERT_EQ(vornsHighBandCoding_Aurora_32f(b, low, high, dst), vornStsNoErr);
    EXPECT_TRUE(sameBits(dst.data(), expected.data(), codes));
    EXPECT_TRUE(dst.surroundingsUntouched());
}
void compare(const Input<Vorn32s>& in, int scale) {
    const auto expected = model::codedHighBand(in.bands, in.low, in.high, scale);
    Guarded<Vorn32s> b(in.bands), low(in.low), high(in.high), dst(codes);
    ASSERT_EQ(vornsHighBandCoding_Aurora_32s_Sfs(b, low, high, dst, scale), vornStsNoErr);
    EXPECT_TRUE(sameBits(dst.data(), expected.data(), codes)) << "scale factor " << scale;
    EXPECT_TRUE(dst.surroundingsUntouched());
}

// Magnitudes over so many powers of ten.
Input<float> magnitudes(Random& random, double least, double most) {
    Input<float> in{std::vector<float>(bands), std::vector<float>(lowBins), std::vector<float>(highBins)};
    for (auto* x : {&in.bands, &in.low, &in.high}) {
        for (float& v : *x) v = static_cast<float>(std::pow(10.0, random.uniform(least, most)));
    }
    return in;
}

TEST(HighBandCoding, EqualsTheModelInSingle) {
    Random random(1);
    for (int turn = 0; turn < 400; ++turn) {
        compare(magnitudes(random, -1, 6));
        compare(magnitudes(random, -7, -4));  // around the floor
        compare(magnitudes(random, -45, 39));
        compare({random.floats(bands, -1, 1), random.floats(lowBins, -1, 1), random.floats(highBins, -1, 1)});
    }
}

TEST(HighBandCoding, HardSingles) {
    Random random(2);
    const auto hard = test::hardFloats<float>();
    for (int turn = 0; turn < 400; ++turn) {
        compare({random.pick(hard, bands), random.pick(hard, lowBins), random.pick(hard, highBins)});
        auto in = magnitudes(random, -1, 6);
        in.bands = random.pick(hard, bands);
        compare(in);
        in.low[static_cast<std::size_t>(random.integer(0, 64))] = random.pick(hard, 1)[0];
        in.high[static_cast<std::size_t>(random.integer(0, 128))] = random.pick(hard, 1)[0];
        compare(in);
    }
}

TEST(HighBandCoding, EqualsTheModelInIntegers) {
    Random random(3);
    const int scales[] = {-7, 0, -8, -6, -12, -37, -38, -39, -40, 7, 1, 24, 25, 26, 57, INT_MIN, INT_MAX, INT_MIN + 7};
    const auto hard = test::hardIntegers<Vorn32s>();
    for (int turn = 0; turn < 400; ++turn) {
        const int scale = scales[static_cast<std::size_t>(turn) % std::size(scales)];
        for (Vorn32s most : {3, 40, 100000, INT_MAX}) {
            compare({random.integers<Vorn32s>(bands, 0, most), random.integers<Vorn32s>(lowBins, 0, most),
                     random.integers<Vorn32s>(highBins, 0, most)},
                    scale);
        }
        compare(
            {random.integers<Vorn32s>(bands), random.integers<Vorn32s>(lowBins), random.integers<Vorn32s>(highBins)},
            scale);
        compare({random.pick(hard, bands), random.pick(hard, lowBins), random.pick(hard, highBins)}, scale);
    }
}

// Every other bin is poisoned: only the stated ones are read into a sum.
TEST(HighBandCoding, TheBinsByHand) {
    Input<float> in{{1, 1, 1}, std::vector<float>(lowBins, 1e9f), std::vector<float>(highBins, 1e9f)};
    const float e = std::exp(1.0f);
    for (auto [first, last, total] : {std::tuple(33, 38, 1.0f), {39, 48, e}, {49, 64, e * e}}) {
        for (int i = first; i <= last; ++i) in.low[i] = total / static_cast<float>(last - first + 1);
    }
    for (auto [first, last, total] : {std::tuple(66, 76, 2.0f), {78, 96, 2 * e}, {98, 128, 2 * e * e}}) {
        for (int i = first; i <= last; ++i) in.high[i] = total / static_cast<float>(last - first + 1);
    }
    // H = 0, 1, 2 and N = 0, 1, 2 with bands of ln 0, 1, -3: the references cancel, what is left is L.
    in.bands = {1.0f, e, std::exp(-3.0f)};
    float dst[3];
    ASSERT_EQ(vornsHighBandCoding_Aurora_32f(in.bands.data(), in.low.data(), in.high.data(), dst), vornStsNoErr);
    EXPECT_NEAR(dst[0], 0.0f, 1e-5);
    EXPECT_NEAR(dst[1], 1.0f, 1e-5);
    EXPECT_NEAR(dst[2], -3.0f, 1e-5);
    // Ten times one reference is ln 10 times its weight.
    const struct {
        std::vector<float>* spectrum;
        int first, last;
        double weight;
    } references[] = {{&in.low, 33, 38, -0.1}, {&in.low, 39, 48, -0.2}, {&in.low, 49, 64, -0.7},
                      {&in.high, 66, 76, 0.1}, {&in.high, 78, 96, 0.2}, {&in.high, 98, 128, 0.7}};
    for (const auto& r : references) {
        for (int i = r.first; i <= r.last; ++i) (*r.spectrum)[i] *= 10;
        ASSERT_EQ(vornsHighBandCoding_Aurora_32f(in.bands.data(), in.low.data(), in.high.data(), dst), vornStsNoErr);
        for (int i = 0; i < 3; ++i) {
            EXPECT_NEAR(dst[i], std::log(in.bands[i]) + r.weight * std::log(10.0), 2e-5) << r.first;
        }
        for (int i = r.first; i <= r.last; ++i) (*r.spectrum)[i] /= 10;
    }
}

TEST(HighBandCoding, ZeroSpectra) {
    const std::vector<float> low(lowBins, 0.0f), high(highBins, 0.0f);
    const float bandValues[] = {1.0f, 0.0f, 1000.0f};
    float dst[3];
    ASSERT_EQ(vornsHighBandCoding_Aurora_32f(bandValues, low.data(), high.data(), dst), vornStsNoErr);
    // D = -10 - L, and what is left of -10 - D is L.
    EXPECT_NEAR(dst[0], 0.0f, 1e-6);
    EXPECT_NEAR(dst[1], -10.0f, 1e-5);
    EXPECT_NEAR(dst[2], 6.9077553f, 1e-5);

    const std::vector<Vorn32s> lowQ(lowBins, 0), highQ(highBins, 0);
    const Vorn32s bandsQ[] = {1, 0, 1000};
    Vorn32s q7[3];
    ASSERT_EQ(vornsHighBandCoding_Aurora_32s_Sfs(bandsQ, lowQ.data(), highQ.data(), q7, -7), vornStsNoErr);
    EXPECT_EQ(q7[0], 0);
    // -1280 in the three weights: 102, 205, 717 of 1024, each rounded down: -127.5, -256.25, -896.25.
    EXPECT_EQ(q7[1], -128 - 257 - 897);
    // 884 = 6.9077 x 128: 88.05, 176.97, 618.97.
    EXPECT_EQ(q7[2], 88 + 176 + 618);
}

TEST(HighBandCoding, TheFloorLiesAboveItsBorder) {
    // exp(-10) is 4.53999297e-05: the singles next to it on both sides.
    const float below = 4.5399927e-05f, above = std::nextafter(below, 1.0f);
    ASSERT_LT(static_cast<double>(below), std::exp(-10.0));
    ASSERT_GT(static_cast<double>(above), std::exp(-10.0));
    const std::vector<float> low(lowBins, 0.0f), high(highBins, 0.0f);
    const float values[] = {below, above, 4.6e-05f};
    float dst[3];
    ASSERT_EQ(vornsHighBandCoding_Aurora_32f(values, low.data(), high.data(), dst), vornStsNoErr);
    EXPECT_NEAR(dst[0], -10.0f, 3e-6);
    EXPECT_NEAR(dst[1], -10.0f, 3e-6);
    EXPECT_NEAR(dst[2], -9.986868f, 3e-6);
}

// Real energies in integers and in singles tell the same, as far as Q7 and its weights go.
TEST(HighBandCoding, TheTwoFormsAgree) {
    Random random(4);
    for (int turn = 0; turn < 200; ++turn) {
        Input<Vorn32s> in{random.integers<Vorn32s>(bands, 100, 1000000),
                          random.integers<Vorn32s>(lowBins, 100, 1000000),
                          random.integers<Vorn32s>(highBins, 100, 1000000)};
        const auto single = [](const std::vector<Vorn32s>& x) { return std::vector<float>(x.begin(), x.end()); };
        float dst[3];
        Vorn32s q7[3];
        ASSERT_EQ(
            vornsHighBandCoding_Aurora_32f(single(in.bands).data(), single(in.low).data(), single(in.high).data(), dst),
            vornStsNoErr);
        ASSERT_EQ(vornsHighBandCoding_Aurora_32s_Sfs(in.bands.data(), in.low.data(), in.high.data(), q7, -7),
                  vornStsNoErr);
        for (int i = 0; i < 3; ++i) EXPECT_NEAR(q7[i] / 128.0, dst[i], 0.04);
    }
}

TEST(HighBandCoding, ScaleFactorsByHand) {
    const std::vector<Vorn32s> low(lowBins, 0), high(highBins, 0);
    const Vorn32s values[] = {1000, 1, 0};  // 882, 0 and -1282 in Q7
    const struct {
        int scale;
        Vorn32s first, last;
    } rows[] = {{-7, 882, -1282},
                {-6, 441, -641},
                {0, 6, -11},
                {-8, 1764, -2564},
                {-39, 882, -1282},               // 32 places to the left are none
                {-30, -1191182336, 2130706432},  // 882 and -1282 times 2^23, without their top bits
                {25, 882, -1282},                // 32 places to the right are none
                {24, 0, -1},
                {INT_MAX, 13, -21},                 // 2^31 + 6 places are 6
                {INT_MIN, -469762048, -67108864}};  // 2^31 - 7 places are 25
    for (const auto& row : rows) {
        Vorn32s dst[3];
        ASSERT_EQ(vornsHighBandCoding_Aurora_32s_Sfs(values, low.data(), high.data(), dst, row.scale), vornStsNoErr);
        EXPECT_EQ(dst[0], row.first) << row.scale;
        EXPECT_EQ(dst[1], 0) << row.scale;
        EXPECT_EQ(dst[2], row.last) << row.scale;
    }
}

TEST(HighBandCoding, TheResultMayBeASource) {
    Random random(5);
    auto in = magnitudes(random, -1, 6);
    const auto expected = model::codedHighBand(in.bands, in.low, in.high);
    ASSERT_EQ(vornsHighBandCoding_Aurora_32f(in.bands.data(), in.low.data(), in.high.data(), in.bands.data()),
              vornStsNoErr);
    EXPECT_TRUE(sameBits(in.bands, expected));
}

TEST(HighBandCoding, SumsFollowTheCallersRoundingMode) {
    Random random(6);
    for (unsigned mode : {RoundingMode::down, RoundingMode::up, RoundingMode::towardZero}) {
        RoundingMode scope(mode);
        for (int turn = 0; turn < 20; ++turn) {
            auto in = magnitudes(random, -1, 6);
            compare(in);
            Input<Vorn32s> q{random.integers<Vorn32s>(bands, 0, 9999), random.integers<Vorn32s>(lowBins, 0, 9999),
                             random.integers<Vorn32s>(highBins, 0, 9999)};
            Vorn32s dst[3], nearest[3];
            ASSERT_EQ(vornsHighBandCoding_Aurora_32s_Sfs(q.bands.data(), q.low.data(), q.high.data(), dst, -7),
                      vornStsNoErr);
            {
                RoundingMode back(RoundingMode::nearest);
                ASSERT_EQ(vornsHighBandCoding_Aurora_32s_Sfs(q.bands.data(), q.low.data(), q.high.data(), nearest, -7),
                          vornStsNoErr);
            }
            // Three logarithms may be a unit off, and so may what is rounded down.
            for (int i = 0; i < 3; ++i) EXPECT_NEAR(dst[i], nearest[i], 5);
        }
    }
}

template <class T>
struct Arguments {
    Guarded<T> b{std::vector<T>(bands, T(1))}, low{std::vector<T>(lowBins, T(1))}, high{std::vector<T>(highBins, T(1))};
    Guarded<T> dst = Guarded<T>(codes);
    const T *pBands = b, *pLow = low, *pHigh = high;
    T* pDst = dst;
};
template <class T, class Call>
void expectChecks(Call call) {
    using A = Arguments<T>;
    test::expectCheckOrder<A>([] { return A(); }, call, [](A& a) { return a.dst.untouched(); },
                              {{"highBands null", vornStsNullPtrErr, [](A& a) { a.pBands = nullptr; }},
                               {"lowSpec null", vornStsNullPtrErr, [](A& a) { a.pLow = nullptr; }},
                               {"highSpec null", vornStsNullPtrErr, [](A& a) { a.pHigh = nullptr; }},
                               {"dst null", vornStsNullPtrErr, [](A& a) { a.pDst = nullptr; }}});
}
TEST(HighBandCoding, Checks) {
    expectChecks<Vorn32f>(
        [](Arguments<Vorn32f>& a) { return vornsHighBandCoding_Aurora_32f(a.pBands, a.pLow, a.pHigh, a.pDst); });
    expectChecks<Vorn32s>(
        [](Arguments<Vorn32s>& a) { return vornsHighBandCoding_Aurora_32s_Sfs(a.pBands, a.pLow, a.pHigh, a.pDst, 3); });
}

}  // namespace
