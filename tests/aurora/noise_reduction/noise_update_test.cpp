// The update of a noise spectrum.
#include <cmath>
#include <cstdint>
#include <type_traits>

#include "aurora/noise_reduction/common.h"
#include "model/noise_reduction.h"
#include "support/members.h"
#include "support/precise.h"

namespace {

using namespace noise_reduction_test;
using test::Guarded;
using test::Random;
using test::sameBits;

VornStatus update(const float* in, const float* noise, float* dst, int len, int) {
    return vornsNoiseSpectrumUpdate_Aurora_32f(in, noise, dst, len);
}
VornStatus update(const Vorn16s* in, const Vorn16s* noise, Vorn16s* dst, int len, int sf) {
    return vornsNoiseSpectrumUpdate_Aurora_16s_Sfs(in, noise, dst, len, sf);
}
VornStatus update(const Vorn32s* in, const Vorn32s* noise, Vorn32s* dst, int len, int sf) {
    return vornsNoiseSpectrumUpdate_Aurora_32s_Sfs(in, noise, dst, len, sf);
}
template <class T>
T expectedOf(T a, T b, int sf) {
    if constexpr (std::is_same_v<T, float>) {
        return model::updatedNoise(a, b);
    } else {
        return model::updatedNoise(a, b, sf);
    }
}
template <class T>
T updated(T a, T b, int sf = 0) {
    T y;
    EXPECT_EQ(update(&a, &b, &y, 1, sf), vornStsNoErr);
    return y;
}

template <class T>
void expectModel(const std::vector<T>& a, const std::vector<T>& b, int sf, bool inPlace = true) {
    std::vector<T> expected(a.size());
    for (std::size_t i = 0; i < a.size(); ++i) expected[i] = expectedOf(a[i], b[i], sf);
    const int len = static_cast<int>(a.size());
    const Guarded<T> in(a), noise(b), dst(a.size());
    ASSERT_EQ(update(in.data(), noise.data(), dst.data(), len, sf), vornStsNoErr);
    EXPECT_TRUE(sameBits(dst.data(), expected.data(), a.size())) << "factor " << sf;
    EXPECT_TRUE(dst.surroundingsUntouched());
    if (!inPlace) return;
    ASSERT_EQ(update(in.data(), noise.data(), noise.data(), len, sf), vornStsNoErr);
    EXPECT_TRUE(sameBits(noise.data(), expected.data(), a.size())) << "over the noise, factor " << sf;
    const Guarded<T> again(b);
    ASSERT_EQ(update(in.data(), again.data(), in.data(), len, sf), vornStsNoErr);
    EXPECT_TRUE(sameBits(in.data(), expected.data(), a.size())) << "over the spectrum, factor " << sf;
}

template <class T>
void expectModelAtAllLengths() {
    Random random(1);
    for (std::size_t len = 1; len <= 150; ++len) {
        for (int turn = 0; turn < 8; ++turn) {
            const auto a = valuesOf(random, len, turn, T());
            auto b = valuesOf(random, len, turn / 2, T());
            if (turn % 2 == 1) {  // where sums are zero
                for (std::size_t i = 0; i < len; i += 3) {
                    if constexpr (std::is_same_v<T, float>) {
                        b[i] = i % 2 ? -a[i] : -0.1f * a[i];
                    } else {
                        b[i] = model::wrapTo<T>(i % 2 ? -model::Big{a[i]} : -model::Big{a[i]} / 10);
                    }
                }
            }
            expectModel(a, b, turn == 7 ? -1 : 0);
        }
    }
}
TEST(NoiseUpdate, EqualsTheModel) {
    expectModelAtAllLengths<float>();
    expectModelAtAllLengths<Vorn16s>();
    expectModelAtAllLengths<Vorn32s>();
}

TEST(NoiseUpdate, EqualsTheModelAtEveryScaleFactor) {
    Random random(2);
    for (int sf : scaleFactors) {
        for (int turn = 0; turn < 4; ++turn) {
            expectModel(integersOf<Vorn16s>(random, 200, turn), integersOf<Vorn16s>(random, 200, turn + 2), sf, false);
            expectModel(integersOf<Vorn32s>(random, 200, turn), integersOf<Vorn32s>(random, 200, turn + 2), sf, false);
        }
    }
}

// All pairs of hard values meet.
template <class T>
void expectModelOfPairs(const std::vector<T>& hard, std::initializer_list<int> factors) {
    std::vector<T> a, b;
    for (T x : hard) {
        for (T y : hard) a.push_back(x), b.push_back(y);
    }
    for (int sf : factors) expectModel(a, b, sf, false);
}
TEST(NoiseUpdate, EqualsTheModelOnPairsOfHardValues) {
    expectModelOfPairs(test::hardFloats<float>(), {0});
    expectModelOfPairs(test::hardIntegers<Vorn16s>(), {0, -1, -128});
    expectModelOfPairs(test::hardIntegers<Vorn32s>(), {0, -1, -128, 150});
}

TEST(NoiseUpdate, LiteralSingles) {
    EXPECT_EQ(updated(0.0f, 10.0f), std::nextafter(9.0f, 0.0f)) << "10 times the single 0.9, truncated";
    EXPECT_EQ(updated(0.0f, -10.0f), -std::nextafter(9.0f, 0.0f));
    EXPECT_NEAR(updated(100.0f, 100.0f), 99.545456f, 1e-4f) << "100 (0.9 + 0.05 (1 + 1/1.1))";
    EXPECT_NEAR(updated(1e6f, 1.0f), 1.00001f, 1e-5f) << "a loud frame leaves the noise";
    EXPECT_TRUE(std::isnan(updated(noNumber, 1.0f)));
    EXPECT_TRUE(std::isnan(updated(1.0f, noNumber)));
    EXPECT_TRUE(std::isnan(updated(inf, -inf))) << "not a zero sum";
    // Nothing and nothing, with either sign, in every place of a vector.
    for (float zero : {0.0f, -0.0f}) {
        for (std::size_t len = 1; len <= 70; ++len) {
            const Guarded<float> in(Floats(len, zero)), noise(Floats(len, -zero)), dst(len);
            ASSERT_EQ(vornsNoiseSpectrumUpdate_Aurora_32f(in, noise, dst, static_cast<int>(len)), vornStsNoErr);
            EXPECT_TRUE(sameBits(dst.data(), Floats(len, 0.0f).data(), len));
        }
    }
    EXPECT_TRUE(test::same(updated(5.0f, -5.0f), 0.0f)) << "a + b is zero";
    const float tenth = 0.99999994f;  // 10 times the single 0.1 is above one: truncated, it is one
    EXPECT_TRUE(test::same(updated(10.0f, -1.0f), 0.0f)) << "b + 0.1 a is zero";
    EXPECT_FALSE(test::same(updated(10.0f, -tenth), 0.0f));
}

TEST(NoiseUpdate, LiteralIntegers) {
    EXPECT_EQ(updated<Vorn16s>(0, 1), 0) << "0.9, truncated";
    EXPECT_EQ(updated<Vorn16s>(0, 10), 9);
    EXPECT_EQ(updated<Vorn16s>(0, -7), -6) << "-6.3, truncated";
    EXPECT_EQ(updated<Vorn16s>(9, 0), 0) << "v = 0.9 has no whole part";
    EXPECT_EQ(updated<Vorn16s>(1000, 1000), 995) << "995.45";
    EXPECT_EQ(updated<Vorn16s>(1000, 1000, 1), 497);
    EXPECT_EQ(updated<Vorn16s>(1000, 1000, -3), 7963);
    EXPECT_EQ(updated<Vorn16s>(1000, 1000, -6), 32767);
    EXPECT_EQ(updated<Vorn16s>(-1000, -1000, -6), -32768);
    EXPECT_EQ(updated<Vorn16s>(1000, -1000), 0) << "a + b is zero";
    EXPECT_EQ(updated<Vorn16s>(1000, 1000, 150), 0) << "times zero";
    EXPECT_EQ(updated<Vorn16s>(1000, 1000, -128), 32767) << "times infinity";
    EXPECT_EQ(updated<Vorn16s>(100, 0, -128), 0) << "no number";

    EXPECT_EQ(updated<Vorn32s>(0, 1), 0);
    EXPECT_EQ(updated<Vorn32s>(1000, 1000), 995);
    EXPECT_EQ(updated<Vorn32s>(0, 1 << 30, -2), INT32_MIN) << "above the top";
    EXPECT_EQ(updated<Vorn32s>(0, -(1 << 30), -2), INT32_MIN) << "below the bottom";
    EXPECT_EQ(updated<Vorn32s>(INT32_MIN, INT32_MIN), 0) << "their sum wraps to zero";
    EXPECT_NEAR(updated<Vorn32s>(INT32_MIN, INT32_MIN + 1), -2147483648.0 * 0.99545454, 300.0) << "theirs does not";
    EXPECT_EQ(updated<Vorn32s>(100, 0, -128), 0) << "no number";
    EXPECT_EQ(updated<Vorn32s>(100, 1, -128), INT32_MIN) << "times infinity";
    // Their singles add up to zero, they do not: an infinite share.
    EXPECT_EQ(updated<Vorn32s>(16777217, -16777216), INT32_MIN);
}

// Of positive values, against the exact formula with the singles of its constants. The bound follows from the steps:
// the product is below 0.14 and off by 7.5 units of its own, the sum with 0.9 and the last product are off by one each.
TEST(NoiseUpdate, SinglesAreNearTheExactFormula) {
    Random random(3);
    double worst = 0;
    for (int i = 0; i < 400000; ++i) {
        const auto a = static_cast<float>(std::pow(10.0, random.uniform(-18, 18)));
        const auto b =
            static_cast<float>(i % 2 ? a * std::exp(random.uniform(-4, 4)) : std::pow(10.0, random.uniform(-18, 18)));
        const long double p = 0.1f * static_cast<long double>(a), n = b;
        const long double exact = n * ((n / (n + p) + 1) * (p / (a + n)) + 0.9f);
        const float y = updated(a, b);
        int exponent;
        std::frexp(static_cast<double>(exact), &exponent);
        const double ulps = std::abs(static_cast<double>((y - exact) / std::ldexp(1.0L, exponent - 24)));
        ASSERT_LE(ulps, 4.5) << a << " " << b;
        worst = std::max(worst, ulps);
    }
    EXPECT_GT(worst, 1.5) << "truncation shows";
    RecordProperty("worst", std::to_string(worst));
}

// The estimate falls by a tenth at most, below itself where the spectrum is, and rises by 4 % at most, at a = 6 b.
TEST(NoiseUpdate, MovesTowardsTheSpectrum) {
    Random random(4);
    for (int i = 0; i < 20000; ++i) {
        const float a = static_cast<float>(random.uniform(0, 1000)), b = static_cast<float>(random.uniform(1, 1000));
        const float y = updated(a, b);
        EXPECT_GE(y, 0.8999f * b);
        EXPECT_LE(y, a <= b ? 0.996f * b : 1.0394f * b) << a << " " << b;
        if (a > 1.2f * b) {
            EXPECT_GT(y, b);
        }
    }
    EXPECT_NEAR(updated(5.95f, 1.0f), 1.03929f, 1e-5f);
}

// Thousands of frames, each from the estimate before it: the same bits as the model's to the end.
template <class T, class Spectrum>
void expectTrackEqualsTheModel(T start, Spectrum spectrum) {
    constexpr std::size_t bins = 65;
    std::vector<T> noise(bins, start), expected = noise, in(bins);
    for (int frame = 0; frame < 10000; ++frame) {
        for (std::size_t k = 0; k < bins; ++k) in[k] = spectrum(frame, k);
        ASSERT_EQ(update(in.data(), noise.data(), noise.data(), bins, 0), vornStsNoErr);
        for (std::size_t k = 0; k < bins; ++k) expected[k] = expectedOf(in[k], expected[k], 0);
        ASSERT_TRUE(sameBits(noise.data(), expected.data(), bins)) << "frame " << frame;
    }
}
TEST(NoiseUpdate, LongTracksEqualTheModel) {
    Random random(5);
    const auto power = [&](int, std::size_t) {
        const double x = random.uniform(-1, 1), y = random.uniform(-1, 1);
        return static_cast<float>(1e6 * (x * x + y * y));
    };
    expectTrackEqualsTheModel<float>(0.0f, power);           // from silence
    expectTrackEqualsTheModel<float>(1e6f, power);           // from the level
    expectTrackEqualsTheModel<float>(3.4028235e38f, power);  // from full scale
    expectTrackEqualsTheModel<float>(1e6f, [](int frame, std::size_t) { return frame < 5000 ? 0.0f : 1e6f; });  // to 0
    expectTrackEqualsTheModel<float>(
        1e6f, [&](int frame, std::size_t k) { return frame == 100 && k % 3 == 0 ? noNumber : power(frame, k); });
    const auto level = [&](int, std::size_t) { return static_cast<Vorn16s>(random.integer(0, 3000)); };
    expectTrackEqualsTheModel<Vorn16s>(0, level);
    expectTrackEqualsTheModel<Vorn16s>(32767, level);
    expectTrackEqualsTheModel<Vorn16s>(-32768, level);
    const auto wide = [&](int, std::size_t) { return static_cast<Vorn32s>(random.integer(0, 1 << 30)); };
    expectTrackEqualsTheModel<Vorn32s>(0, wide);
    expectTrackEqualsTheModel<Vorn32s>(INT32_MAX, wide);
}

// No form follows the caller's mode, and each gives it back.
TEST(NoiseUpdate, RoundingModesDoNotMatter) {
    Random random(6);
    const auto a = random.floats(100, 0, 1000), b = random.floats(100, 0, 1000);
    const auto a16 = random.integers<Vorn16s>(100), b16 = random.integers<Vorn16s>(100);
    const auto a32 = random.integers<Vorn32s>(100), b32 = random.integers<Vorn32s>(100);
    for (unsigned mode : modes) {
        const test::RoundingMode inMode(mode);
        expectModel(a, b, 0);
        expectModel(a16, b16, 1);
        expectModel(a32, b32, 1);
        EXPECT_EQ(test::RoundingMode::current(), mode);
    }
}

// A result that goes past the cache, against pieces that do not.
TEST(NoiseUpdate, LongSpectra) {
    constexpr std::size_t len = (33 << 20) / 4, piece = 1 << 16;
    Floats a(len), b(len), y(len), part(piece);
    for (std::size_t i = 0; i < len; ++i) {
        a[i] = static_cast<float>(i % 1021);
        b[i] = static_cast<float>(i % 509);
    }
    ASSERT_EQ(vornsNoiseSpectrumUpdate_Aurora_32f(a.data(), b.data(), y.data(), static_cast<int>(len)), vornStsNoErr);
    for (std::size_t i = 0; i < len; i += piece) {
        ASSERT_EQ(vornsNoiseSpectrumUpdate_Aurora_32f(&a[i], &b[i], part.data(), piece), vornStsNoErr);
        ASSERT_TRUE(sameBits(&y[i], part.data(), piece)) << i;
    }
}

TEST(NoiseUpdate, ChecksAndAlignments) {
    for (const test::Member& member : {test::Member(MEMBER(vornsNoiseSpectrumUpdate_Aurora_32f)),
                                       test::Member(MEMBER(vornsNoiseSpectrumUpdate_Aurora_16s_Sfs, 1)),
                                       test::Member(MEMBER(vornsNoiseSpectrumUpdate_Aurora_32s_Sfs, 1))}) {
        test::expectPointersThenLength(member);
        test::expectNoAlignmentChangesAResult(member);
    }
}

}  // namespace
