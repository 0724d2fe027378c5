// Suppression gains.
#include <gtest/gtest.h>

#include <algorithm>
#include <climits>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <limits>
#include <type_traits>
#include <vector>

#include "model/suppression.h"
#include "support/allocation.h"
#include "support/expect.h"
#include "support/guarded.h"
#include "support/precise.h"
#include "support/rounding_mode.h"
#include "support/values.h"
#include "vornsr.h"

namespace {

using test::Guarded;
using test::Random;
using test::sameBits;

VornStatus wiener(const Vorn32f* src, Vorn32f* dst, int len) { return vornsFilterUpdateWiener_32f(src, dst, len); }
VornStatus wiener(const Vorn32s* src, Vorn32s* dst, int len) { return vornsFilterUpdateWiener_32s(src, dst, len); }
VornStatus ephraimMalah(const Vorn32f* w, const Vorn32f* snr, Vorn32f* dst, int len) {
    return vornsFilterUpdateEMNS_32f(w, snr, dst, len);
}
VornStatus ephraimMalah(const Vorn32s* w, const Vorn32s* snr, Vorn32s* dst, int len) {
    return vornsFilterUpdateEMNS_32s(w, snr, dst, len);
}

template <class T>
class Suppression : public ::testing::Test {};
using Elements = ::testing::Types<Vorn32f, Vorn32s>;
TYPED_TEST_SUITE(Suppression, Elements);

// ---- The rule of Wiener.

template <class T>
void compareWiener(const std::vector<T>& ratios) {
    std::vector<T> expected;
    bool negative = false;
    for (T x : ratios) {
        expected.push_back(model::wienerGain(x));
        negative = negative || x < 0;
    }
    const VornStatus status = negative ? vornStsBadArgErr : vornStsNoErr;
    const int len = static_cast<int>(ratios.size());
    Guarded<T> src(ratios), dst(ratios.size());
    ASSERT_EQ(wiener(src.data(), dst.data(), len), status) << "length " << len;
    ASSERT_TRUE(sameBits(dst.data(), expected.data(), expected.size()));
    ASSERT_TRUE(dst.surroundingsUntouched());
    ASSERT_TRUE(sameBits(src.data(), ratios.data(), ratios.size()));
    ASSERT_EQ(wiener(src.data(), src.data(), len), status);
    ASSERT_TRUE(sameBits(src.data(), expected.data(), expected.size())) << "in place";
}

template <class T>
T ratio(Random& random) {
    const double power = std::exp2(random.uniform(-16.0, 12.0));
    return static_cast<T>(std::is_integral_v<T> ? power * 32768 : power);
}

TYPED_TEST(Suppression, WienerEqualsTheModel) {
    using T = TypeParam;
    Random random(1);
    std::vector<int> lengths = {100, 127, 128, 129, 257, 1000, 4097, 65535};
    for (int len = 1; len <= 70; ++len) lengths.push_back(len);
    for (int len : lengths) {
        std::vector<T> ratios(static_cast<std::size_t>(len));
        for (T& x : ratios) x = ratio<T>(random);
        compareWiener(ratios);
        // One negative ratio, at every place of a short vector.
        for (int at = 0; at < std::min(len, 70); ++at) {
            auto one = ratios;
            one[static_cast<std::size_t>(at)] = static_cast<T>(-one[static_cast<std::size_t>(at)] - T(1));
            if (len <= 40 || at % 16 == 0) compareWiener(one);
        }
    }
}

TYPED_TEST(Suppression, WienerOfHardValues) {
    using T = TypeParam;
    Random random(2);
    std::vector<T> hard;
    if constexpr (std::is_integral_v<T>) {
        hard = test::hardIntegers<T>();
    } else {
        hard = test::hardFloats<T>();
    }
    for (T x : hard) compareWiener(std::vector<T>{x});
    for (int turn = 0; turn < 300; ++turn) {
        compareWiener(random.pick(hard, 37));
        std::vector<T> any(21);
        for (T& x : any) x = random.anyBits<T>();
        compareWiener(any);
    }
}

TEST(Wiener, OfSingles) {
    const float src[] = {0.0f, 1.0f, 3.0f, -2.0f, -0.0f, 1e30f};
    float dst[6];
    EXPECT_EQ(wiener(src, dst, 3), vornStsNoErr);
    EXPECT_EQ(dst[0], 0.0f);
    EXPECT_EQ(dst[1], 0.5f);
    EXPECT_EQ(dst[2], 0.75f);
    EXPECT_EQ(wiener(src, dst, 6), vornStsBadArgErr) << "complete all the same";
    EXPECT_EQ(dst[2], 0.75f);
    EXPECT_EQ(dst[3], 0.0f);
    EXPECT_FALSE(std::signbit(dst[3]));
    EXPECT_TRUE(std::signbit(dst[4])) << "a negative zero is not negative";
    EXPECT_EQ(dst[5], 1.0f);
    const float least = -std::numeric_limits<float>::denorm_min(), infinite = std::numeric_limits<float>::infinity();
    const float others[] = {infinite, std::nanf("")};
    EXPECT_EQ(wiener(&least, dst, 1), vornStsBadArgErr);
    EXPECT_EQ(dst[0], 0.0f);
    EXPECT_EQ(wiener(others, dst, 2), vornStsNoErr);
    EXPECT_TRUE(std::isnan(dst[0]));
    EXPECT_TRUE(std::isnan(dst[1]));
    const float both[] = {std::nanf(""), -1.0f, std::nanf("")};
    EXPECT_EQ(wiener(both, dst, 3), vornStsBadArgErr) << "a not-a-number hides no negative one";
    EXPECT_EQ(dst[1], 0.0f);
    for (std::size_t at = 0; at < 200; ++at) {
        std::vector<float> ratios(200, std::nanf("")), gains(200);
        ratios[at] = -1.0f;
        ASSERT_EQ(wiener(ratios.data(), gains.data(), 200), vornStsBadArgErr) << at;
        ASSERT_EQ(gains[at], 0.0f) << at;
    }
}

TEST(Wiener, OfIntegersMovesInSteps) {
    const auto gain = [](int x) {
        Vorn32s src = x, dst = 77;
        EXPECT_EQ(wiener(&src, &dst, 1), x < 0 ? vornStsBadArgErr : vornStsNoErr) << x;
        return dst;
    };
    EXPECT_EQ(gain(-1), 0);
    EXPECT_EQ(gain(INT_MIN), 0);
    EXPECT_EQ(gain(2047), 0);
    EXPECT_EQ(gain(2048), 126322567) << "2^31/17";
    EXPECT_EQ(gain(32768), 1073741824);
    EXPECT_EQ(gain((1 << 17) - 1), 1712550250) << "2^31 x 63/79";
    EXPECT_EQ(gain(1 << 17), 1717986918) << "2^31 x 4/5";
    EXPECT_EQ(gain((1 << 18) - 1), 1717986918);
    EXPECT_EQ(gain((1 << 21) - 1), 2112278998) << "2^31 x 60/61";
    EXPECT_EQ(gain(1 << 21), 2114445438) << "2^31 x 64/65";
    EXPECT_EQ(gain((1 << 24) - 1), 2142700833) << "2^31 x 448/449";
    EXPECT_EQ(gain(1 << 24), 2143297520) << "2^31 x 512/513";
    EXPECT_EQ(gain((1 << 25) - 1), 2143297520);
    EXPECT_EQ(gain(1 << 25), INT_MAX);
    EXPECT_EQ(gain(INT_MAX), INT_MAX);
    // Never falls, never above x/(1 + x), and below it by no more than a step.
    Vorn32s before = 0;
    int steps = 0;
    for (int x = 0; x < (1 << 25) + 5000; x += 512) {
        const Vorn32s now = gain(x);
        ASSERT_GE(now, before) << x;
        steps += now > before;
        before = now;
        if (x >= 1 << 25) continue;
        const double q = x / 32768.0;
        const double apart = q < 4 ? 1.0 / 16 : q < 64 ? 4 : q < 512 ? 64 : 512;
        ASSERT_LE(now * 0x1p-31, q / (1 + q)) << x;
        ASSERT_GE(now * 0x1p-31, q / (1 + q) - apart / ((1 + q) * std::max(1.0, 1 + q - apart)) - 1e-9) << x;
    }
    EXPECT_EQ(steps, 87);
}

// ---- The rule of Ephraim and Malah.

template <class T>
void compareGains(const std::vector<T>& w, const std::vector<T>& snr) {
    std::vector<T> expected;
    for (std::size_t i = 0; i < w.size(); ++i) expected.push_back(model::ephraimMalahGain(w[i], snr[i]));
    const int len = static_cast<int>(w.size());
    Guarded<T> first(w), second(snr), dst(w.size());
    ASSERT_EQ(ephraimMalah(first.data(), second.data(), dst.data(), len), vornStsNoErr) << "length " << len;
    for (std::size_t i = 0; i < w.size(); ++i) {
        ASSERT_TRUE(test::same(dst[i], expected[i]))
            << test::show(w[i]) << " and " << test::show(snr[i]) << ": " << test::show(dst[i]) << ", expected "
            << test::show(expected[i]) << ", element " << i << " of " << len;
    }
    ASSERT_TRUE(dst.surroundingsUntouched());
    ASSERT_TRUE(sameBits(first.data(), w.data(), w.size()));
    ASSERT_TRUE(sameBits(second.data(), snr.data(), w.size()));
    ASSERT_EQ(ephraimMalah(first.data(), second.data(), first.data(), len), vornStsNoErr);
    ASSERT_TRUE(sameBits(first.data(), expected.data(), w.size())) << "over the gains";
    first.assign(w);
    ASSERT_EQ(ephraimMalah(first.data(), second.data(), second.data(), len), vornStsNoErr);
    ASSERT_TRUE(sameBits(second.data(), expected.data(), w.size())) << "over the ratios";
}

// W down to the last bit, gamma over its whole range, and some zeros.
template <class T>
void draw(Random& random, std::vector<T>& w, std::vector<T>& snr) {
    for (T& x : w) {
        const double share = random.integer(0, 9) == 0 ? 0.0 : std::exp2(random.uniform(-30.0, 0.0));
        x = static_cast<T>(std::is_integral_v<T> ? share * 2147483647.0 : share);
    }
    for (T& x : snr) {
        const double power = std::exp2(random.uniform(-14.9999, 15.0));
        x = static_cast<T>(std::is_integral_v<T> ? std::max(1.0, power * 32768.0) : power);
    }
}

TYPED_TEST(Suppression, GainsEqualTheModel) {
    using T = TypeParam;
    Random random(3);
    std::vector<int> lengths = {100, 127, 128, 129, 257, 1000, 4097, 65535};
    for (int len = 1; len <= 70; ++len) lengths.insert(lengths.end(), {len, len, len});
    for (int len : lengths) {
        std::vector<T> w(static_cast<std::size_t>(len)), snr(w.size());
        draw(random, w, snr);
        compareGains(w, snr);
    }
}

// Both sides of every border of the table and every end of the arguments.
TEST(EphraimMalah, BordersEqualTheModel_32f) {
    std::vector<float> w, snr;
    const auto add = [&](float share, float power) { w.push_back(share), snr.push_back(power); };
    for (int bit = 0; bit <= 28; ++bit) {
        for (double at : {std::ldexp(1.0, bit - 22), std::ldexp(1.5, bit - 22), std::ldexp(129.0 / 128, bit - 22)}) {
            if (at > 100) continue;
            for (float share : {1.0f, 0.5f, 0.3f, 1e-3f, 1e-6f, 3e-7f}) {
                const auto exact = static_cast<float>(at / static_cast<double>(share));
                for (float power : {std::nextafter(exact, 0.0f), exact, std::nextafter(exact, 1e9f)}) {
                    if (power >= 3.05176e-05f && power <= 32768.0f) add(share, power);
                }
            }
        }
    }
    for (float share :
         {0.0f, -0.0f, std::numeric_limits<float>::denorm_min(), 1e-38f, 1e-20f, 1.0f, std::nextafter(1.0f, 0.0f)}) {
        for (float power : {3.05176e-05f, 3.0999999e-05f, 3.1e-05f, 99.99999f, 100.0f, 100.00001f, 32768.0f, 1.0f}) {
            add(share, power);
        }
    }
    ASSERT_GT(w.size(), 400u);
    compareGains(w, snr);
}

TEST(EphraimMalah, BordersEqualTheModel_32s) {
    std::vector<Vorn32s> w, snr;
    const auto add = [&](std::int64_t share, std::int64_t power) {
        if (share < 0 || share > INT_MAX || power < 1 || power > 0x40000000) return;
        w.push_back(static_cast<Vorn32s>(share)), snr.push_back(static_cast<Vorn32s>(power));
    };
    // X from 127 on, at the last value below each power of two, at it, and above.
    for (std::int64_t x = 1; x < std::int64_t{1} << 29; x = x < 140 ? x + 1 : 2 * x - (x % 2 == 0 ? 1 : x / 2)) {
        for (std::int64_t power : {1, 2, 3, 1000, 32768, 100000, 3276799, 3276800}) {
            const std::int64_t share = ((x << 24) + power - 1) / power;
            for (std::int64_t off : {-2, -1, 0, 1, 5}) add(share + off, power);
        }
    }
    for (int bit = 0; bit <= 28; ++bit) {
        for (std::int64_t power : {5, 999, 32768, 3276800}) {
            const std::int64_t share = ((std::int64_t{1} << (bit + 24)) + power - 1) / power;
            for (std::int64_t off : {-1, 0, 1}) add(share + off, power);
        }
    }
    for (std::int64_t share : {0, 1, 2, INT_MAX - 1, INT_MAX}) {
        for (std::int64_t power : {1, 2, 3276799, 3276800, 3276801, 0x3FFFFFFF, 0x40000000}) add(share, power);
    }
    ASSERT_GT(w.size(), 3000u);
    compareGains(w, snr);
}

TEST(EphraimMalah, TheTableOfSmallArguments) {
    const auto& d = model::tabulatedGains();
    EXPECT_EQ(d[0], 2147483647);
    EXPECT_EQ(d[1], 1815);
    EXPECT_EQ(d[2], 1283);
    EXPECT_EQ(d[3], 1048);
    EXPECT_EQ(d[36], 303);
    EXPECT_EQ(d[64], 227);
    EXPECT_EQ(d[128], 160);
    ASSERT_EQ(d.size(), 129u);
    for (int x = 0; x <= 128; ++x) {
        if (x > 0) {
            const double exact = model::ephraimMalah(std::ldexp(x, -22)).toDouble();
            ASSERT_LT(std::fabs(static_cast<double>(d[static_cast<std::size_t>(x)]) - exact), 0.49995) << x;
        }
        // (6 x W) >> 24 = x with W of 24 bits and more, so that the product with the gain stays in range.
        const Vorn32s power = 1 << 21, w = 8 * x;
        Vorn32s dst = 99;
        ASSERT_EQ(vornsFilterUpdateEMNS_32s(&w, &power, &dst, 1), vornStsNoErr);
        EXPECT_EQ(dst, 8 * x * d[static_cast<std::size_t>(x)]) << x;
    }
}

TEST(EphraimMalah, NumbersByHand) {
    const float zeros[] = {0, 0, 0, 0}, ratios[] = {3.1e-05f, 1.0f, 100.0f, 32768.0f};
    float dst[4] = {9, 9, 9, 9};
    ASSERT_EQ(vornsFilterUpdateEMNS_32f(zeros, ratios, dst, 4), vornStsNoErr);
    for (float x : dst) EXPECT_EQ(x, 0.0f);
    // v = 2^-15: the start of the first octave is not used yet, D[128] is.
    const float one = 1.0f, half = 0.5f;
    const float atBorder = 0x1p-14f, above = 129 * 0x1p-21f;
    ASSERT_EQ(vornsFilterUpdateEMNS_32f(&half, &atBorder, dst, 1), vornStsNoErr);
    EXPECT_EQ(dst[0], 80.0f);
    ASSERT_EQ(vornsFilterUpdateEMNS_32f(&half, &above, dst, 1), vornStsNoErr);
    // d = 1, i = 0: (1576642499 >> 13) - 72453962 = -72261501; >> 5 = -2258172; 667240473 / 2^22.
    EXPECT_EQ(dst[0], 667240473.0f / 8388608.0f);
    // The limits of gamma: 3.1e-05 is X = 130, d = 2, so -72069040 x 2 >> 5 = -4504315.
    const float least = 3.06e-05f;
    ASSERT_EQ(vornsFilterUpdateEMNS_32f(&one, &least, dst, 1), vornStsNoErr);
    EXPECT_EQ(dst[0], 664994330.0f / 4194304.0f);
    const float thousand = 1000.0f, hundred = 100.0f;
    float limited = 0;
    ASSERT_EQ(vornsFilterUpdateEMNS_32f(&one, &thousand, dst, 1), vornStsNoErr);
    ASSERT_EQ(vornsFilterUpdateEMNS_32f(&one, &hundred, &limited, 1), vornStsNoErr);
    EXPECT_EQ(dst[0], limited);
    // v = 1, X = 2^22, i = 15: P0 alone.
    const float unity = 1.0f;
    ASSERT_EQ(vornsFilterUpdateEMNS_32f(&one, &unity, dst, 1), vornStsNoErr);
    EXPECT_EQ(dst[0], 5361107.0f / 4194304.0f);
    const Vorn32s halfQ31 = 1 << 30, twoQ15 = 2 << 15;
    Vorn32s fixed = 0;
    ASSERT_EQ(vornsFilterUpdateEMNS_32s(&halfQ31, &twoQ15, &fixed, 1), vornStsNoErr);
    EXPECT_EQ(fixed, (5361107 << 8)) << "2^30 x 5361107 >> 22";
    const Vorn32s fullQ31 = INT_MAX, fourQ15 = 4 << 15;
    ASSERT_EQ(vornsFilterUpdateEMNS_32s(&fullQ31, &fourQ15, &fixed, 1), vornStsNoErr);
    EXPECT_EQ(fixed, INT_MAX) << "a gain above 1 saturates";
}

// The fixed form is the same gain, in Q31, as far as that goes.
TEST(EphraimMalah, BothFormsSayTheSame) {
    Random random(8);
    for (int turn = 0; turn < 20000; ++turn) {
        const double share = std::exp2(random.uniform(-8.0, 0.0)), power = std::exp2(random.uniform(-4.0, 9.0));
        const auto w = static_cast<Vorn32s>(share * 2147483647.0), snr = static_cast<Vorn32s>(power * 32768);
        const auto wSingle = static_cast<float>(w * 0x1p-31), snrSingle = static_cast<float>(snr * 0x1p-15);
        Vorn32s fixed = 0;
        float single = 0;
        ASSERT_EQ(vornsFilterUpdateEMNS_32s(&w, &snr, &fixed, 1), vornStsNoErr);
        ASSERT_EQ(vornsFilterUpdateEMNS_32f(&wSingle, &snrSingle, &single, 1), vornStsNoErr);
        if (single > 0.999f) {
            ASSERT_GE(fixed, 2143000000);
        } else {
            ASSERT_NEAR(fixed * 0x1p-31, static_cast<double>(single), 1e-3 * static_cast<double>(single))
                << w << ", " << snr;
        }
    }
}

// The largest error of the table beside Bessel functions, relative, octave by octave of v. VORNSR_SHOW_QUALITY=1 prints
// them.
TEST(EphraimMalah, IsTheStatedDistanceFromItsFormula) {
    const bool show = std::getenv("VORNSR_SHOW_QUALITY") != nullptr;
    const auto errorAt = [](float v) {
        // Half of v in W while gamma allows it, so that its lower limit is not met.
        const float w = v < 50 ? 0.5f : 1.0f, snr = v / w;
        float gain = 0;
        EXPECT_EQ(vornsFilterUpdateEMNS_32f(&w, &snr, &gain, 1), vornStsNoErr);
        const double exact = model::ephraimMalah(static_cast<double>(v)).toDouble();
        return static_cast<double>(gain / w) / exact - 1;
    };
    for (int exponent = -15; exponent <= 6; ++exponent) {
        double least = 0, most = 0;
        for (int step = 0; step < 128; ++step) {
            const auto v = static_cast<float>(std::ldexp(1 + (step + 0.98) / 128, exponent));
            if (v > 100) break;
            const double error = errorAt(v);
            least = std::min(least, error), most = std::max(most, error);
        }
        EXPECT_LE(std::max(-least, most), 0.007) << "from 2^" << exponent;
        if (show) std::printf("2^%d: %+.5f to %+.5f\n", exponent, least, most);
    }
    EXPECT_LE(std::fabs(errorAt(100.0f)), 0.0005);
}

TYPED_TEST(Suppression, InEveryRoundingMode) {
    using T = TypeParam;
    using test::RoundingMode;
    Random random(5);
    for (unsigned mode : {RoundingMode::down, RoundingMode::up, RoundingMode::towardZero}) {
        for (int turn = 0; turn < 20; ++turn) {
            std::vector<T> w(501), snr(501), ratios(501);
            draw(random, w, snr);
            for (T& x : ratios) x = ratio<T>(random);
            std::vector<T> gains(501), wieners(501), gainsExpected(501), wienersExpected(501);
            {
                const RoundingMode directed(mode);
                for (std::size_t i = 0; i < 501; ++i) {
                    gainsExpected[i] = model::ephraimMalahGain(w[i], snr[i]);
                    wienersExpected[i] = model::wienerGain(ratios[i]);
                }
                ASSERT_EQ(ephraimMalah(w.data(), snr.data(), gains.data(), 501), vornStsNoErr);
                ASSERT_EQ(wiener(ratios.data(), wieners.data(), 501), vornStsNoErr);
            }
            ASSERT_TRUE(sameBits(gains, gainsExpected)) << mode;
            ASSERT_TRUE(sameBits(wieners, wienersExpected)) << mode;
        }
    }
}

TYPED_TEST(Suppression, NoAlignmentChangesAResult) {
    using T = TypeParam;
    Random random(6);
    std::vector<T> w(163), snr(163);
    draw(random, w, snr);
    std::vector<T> gains(163), wieners(163);
    ASSERT_EQ(ephraimMalah(w.data(), snr.data(), gains.data(), 163), vornStsNoErr);
    ASSERT_EQ(wiener(snr.data(), wieners.data(), 163), vornStsNoErr);
    for (std::size_t at = 0; at < 64; at += sizeof(T)) {
        for (std::size_t to : {std::size_t{0}, std::size_t{4}, std::size_t{60}}) {
            test::Offset<T> first(163, at), second(163, (at + 4) % 64), dst(163, to);
            first.assign(w), second.assign(snr);
            ASSERT_EQ(ephraimMalah(first.data(), second.data(), dst.data(), 163), vornStsNoErr);
            ASSERT_TRUE(sameBits(dst.data(), gains.data(), 163));
            ASSERT_EQ(wiener(second.data(), dst.data(), 163), vornStsNoErr);
            ASSERT_TRUE(sameBits(dst.data(), wieners.data(), 163));
            ASSERT_TRUE(dst.surroundingsUntouched());
        }
    }
}

TYPED_TEST(Suppression, NoMemoryIsTaken) {
    using T = TypeParam;
    if (!test::FailAllocation::available()) GTEST_SKIP() << "the sanitizer has its own allocator";
    std::vector<T> w(1000, T(0)), snr(1000, T(1)), dst(1000, T(77));
    const test::FailAllocation none(1);
    EXPECT_EQ(wiener(snr.data(), dst.data(), 1000), vornStsNoErr);
    EXPECT_NE(dst[999], T(77));
    EXPECT_EQ(ephraimMalah(w.data(), snr.data(), dst.data(), 1000), vornStsNoErr);
    EXPECT_EQ(dst[999], T(0));
    EXPECT_EQ(none.calls(), 0);
}

// ---- Checks.

template <class T>
struct Arguments {
    std::vector<T> w, snr;
    Guarded<T> out = Guarded<T>(40);
    const T *first, *second;
    T* dst = out.data();
    int len = 40;
    Arguments() : w(40, T(1)), snr(40, T(2)), first(w.data()), second(snr.data()) {}
    Arguments(const Arguments&) = delete;
    Arguments(Arguments&&) = default;
};

TYPED_TEST(Suppression, ChecksInOrder) {
    using T = TypeParam;
    using A = Arguments<T>;
    std::vector<test::Rule<A>> rules = {{"second", vornStsNullPtrErr, [](A& a) { a.second = nullptr; }},
                                        {"dst", vornStsNullPtrErr, [](A& a) { a.dst = nullptr; }},
                                        {"len 0", vornStsLengthLimitErr, [](A& a) { a.len = 0; }},
                                        {"len -1", vornStsLengthLimitErr, [](A& a) { a.len = -1; }},
                                        {"len 65536", vornStsLengthLimitErr, [](A& a) { a.len = 65536; }},
                                        {"len huge", vornStsLengthLimitErr, [](A& a) { a.len = INT_MAX; }}};
    const auto fresh = [] { return A(); };
    const auto clean = [](A& a) { return a.out.untouched(); };
    test::expectCheckOrder<A>(
        fresh, [](A& a) { return wiener(a.second, a.dst, a.len); }, clean, rules);
    rules.insert(rules.begin(), {"first", vornStsNullPtrErr, [](A& a) { a.first = nullptr; }});
    rules.push_back({"W below 0", vornStsRangeErr, [](A& a) { a.w[39] = T(-1); }});
    rules.push_back({"gamma 0", vornStsRangeErr, [](A& a) { a.snr[0] = T(0); }});
    test::expectCheckOrder<A>(
        fresh, [](A& a) { return ephraimMalah(a.first, a.second, a.dst, a.len); }, clean, rules);
    std::vector<T> most(65535, T(1)), out(65535);
    EXPECT_EQ(ephraimMalah(most.data(), most.data(), out.data(), 65535), vornStsNoErr);
}

// Each value that is refused, at every place of vectors of every length.
template <class T>
void expectRefused(T w, T snr) {
    for (std::size_t len = 1; len <= 40; ++len) {
        for (std::size_t at = 0; at < len; ++at) {
            Guarded<T> first(std::vector<T>(len, T(1))), second(std::vector<T>(len, T(2))), dst(len);
            first[at] = w, second[at] = snr;
            ASSERT_EQ(ephraimMalah(first.data(), second.data(), dst.data(), static_cast<int>(len)), vornStsRangeErr)
                << test::show(w) << ", " << test::show(snr) << " at " << at << " of " << len;
            ASSERT_TRUE(dst.untouched());
        }
    }
}
template <class T>
void expectAllowed(T w, T snr) {
    T dst = T(-77);
    EXPECT_EQ(ephraimMalah(&w, &snr, &dst, 1), vornStsNoErr) << test::show(w) << ", " << test::show(snr);
    EXPECT_NE(dst, T(-77));
}

TEST(EphraimMalah, ValuesThatAreRefused) {
    const float nan = std::nanf(""), infinite = std::numeric_limits<float>::infinity();
    for (float w : {-std::numeric_limits<float>::denorm_min(), -1.0f, std::nextafter(1.0f, 2.0f), infinite, nan}) {
        expectRefused(w, 2.0f);
    }
    for (float snr : {std::nextafter(3.05176e-05f, 0.0f), 0.0f, -1.0f, std::nextafter(32768.0f, 1e9f), 100000.0f,
                      infinite, -infinite, nan}) {
        expectRefused(1.0f, snr);
    }
    for (Vorn32s w : {-1, INT_MIN}) expectRefused(w, Vorn32s{2});
    for (Vorn32s snr : {0, -1, INT_MIN, 0x40000001, INT_MAX}) expectRefused(Vorn32s{1}, snr);
    expectAllowed(0.0f, 3.05176e-05f);
    expectAllowed(-0.0f, 32768.0f);
    expectAllowed(1.0f, 1000.0f);
    expectAllowed(Vorn32s{0}, Vorn32s{1});
    expectAllowed(Vorn32s{INT_MAX}, Vorn32s{0x40000000});
}

}  // namespace
