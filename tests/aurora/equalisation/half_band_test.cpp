// The split of a signal into two bands.
#include "model/half_band.h"

#include <gtest/gtest.h>

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

std::size_t samplesOf(int len, int tapsLen) { return static_cast<std::size_t>(2 * (len / 2) + tapsLen - 2); }

// Against the model, with no sample more than is read; the last argument is the scale factor.
void expectModel(const std::vector<Vorn32f>& samples, const std::vector<Vorn32f>& prototype, int len, int = 0) {
    const auto outputs = static_cast<std::size_t>(len / 2);
    const Guarded<Vorn32f> src(samples), taps(prototype), low(outputs), high(outputs);
    std::vector<Vorn32f> expectedLow(outputs + 1), expectedHigh(outputs + 1);
    const int tapsLen = static_cast<int>(prototype.size());
    ASSERT_EQ(vornsLowHighFilter_Aurora_32f(src, low, high, len, taps, tapsLen), vornStsNoErr);
    model::half_band::split(samples.data(), expectedLow.data(), expectedHigh.data(), len, prototype.data(), tapsLen);
    EXPECT_TRUE(sameBits(low.data(), expectedLow.data(), outputs)) << "low, len " << len << ", taps " << tapsLen;
    EXPECT_TRUE(sameBits(high.data(), expectedHigh.data(), outputs)) << "high, len " << len << ", taps " << tapsLen;
    EXPECT_TRUE(low.surroundingsUntouched() && high.surroundingsUntouched());
}
void expectModel(const std::vector<Vorn16s>& samples, const std::vector<Vorn16s>& prototype, int len, int scaleFactor) {
    const auto outputs = static_cast<std::size_t>(len / 2);
    const Guarded<Vorn16s> src(samples), taps(prototype), low(outputs), high(outputs);
    std::vector<Vorn16s> expectedLow(outputs + 1), expectedHigh(outputs + 1);
    const int tapsLen = static_cast<int>(prototype.size());
    ASSERT_EQ(vornsLowHighFilter_Aurora_16s_Sfs(src, low, high, len, taps, tapsLen, scaleFactor), vornStsNoErr);
    model::half_band::split(samples.data(), expectedLow.data(), expectedHigh.data(), len, prototype.data(), tapsLen,
                            scaleFactor);
    EXPECT_TRUE(sameBits(low.data(), expectedLow.data(), outputs))
        << "low, len " << len << ", taps " << tapsLen << ", scale " << scaleFactor;
    EXPECT_TRUE(sameBits(high.data(), expectedHigh.data(), outputs))
        << "high, len " << len << ", taps " << tapsLen << ", scale " << scaleFactor;
    EXPECT_TRUE(low.surroundingsUntouched() && high.surroundingsUntouched());
}

// Taps whose products leave 32 bits, and taps of a filter, whose magnitudes add up to `sum`.
std::vector<Vorn16s> tapsOfSum(Random& random, std::size_t count, int sum) {
    std::vector<double> parts(count);
    double total = 0;
    for (double& part : parts) total += part = random.uniform(0.01, 1);
    std::vector<Vorn16s> taps(count);
    int left = sum;
    for (std::size_t i = 0; i + 1 < count; ++i) {
        const int part = static_cast<int>(parts[i] / total * sum);
        taps[i] = static_cast<Vorn16s>(random.next() % 2 != 0 ? part : -part);
        left -= part;
    }
    taps[count - 1] = static_cast<Vorn16s>(std::min(left, 32767));
    return taps;
}

struct Sizes {
    int len, tapsLen;
};
// Every short pair, and lengths around those of vectors, blocks and chunks.
std::vector<Sizes> sizes() {
    std::vector<Sizes> all;
    for (int len = 2; len <= 70; ++len) all.push_back({len, 1 + len * 7 % 23});
    for (int tapsLen = 1; tapsLen <= 70; ++tapsLen) all.push_back({2 + tapsLen * 11 % 67, tapsLen});
    for (int len : {2, 3, 4, 5, 8, 31, 33, 64}) {
        for (int tapsLen : {1, 2, 3, 4, 5, 6, 7, 8}) all.push_back({len, tapsLen});
    }
    for (int len : {127, 130, 160, 200, 254, 256, 258, 510, 511, 512, 514, 516, 1023, 1024, 1030, 1537})
        all.push_back({len, 118});
    for (int tapsLen : {100, 127, 128, 129, 130, 254, 255, 256, 257, 258, 259, 510, 511, 512, 513, 514, 515, 516, 1025})
        all.push_back({2 * (tapsLen % 21) + 2, tapsLen});
    for (int tapsLen : {257, 513, 1030}) all.push_back({530, tapsLen});
    return all;
}

TEST(LowHighFilter, SinglesEqualTheModelBitForBit) {
    Random random(1);
    for (const auto [len, tapsLen] : sizes()) {
        expectModel(random.floats(samplesOf(len, tapsLen), -1000, 1000),
                    random.floats(static_cast<std::size_t>(tapsLen), -1, 1), len);
    }
}

// Infinities and not-a-numbers reach the outputs whose window has them, and no other.
TEST(LowHighFilter, HardSinglesFollowTheArithmetic) {
    Random random(2);
    const auto values = test::hardFloats<Vorn32f>();
    for (int i = 0; i < 200; ++i) {
        const int len = static_cast<int>(random.integer(2, 80)), tapsLen = static_cast<int>(random.integer(1, 40));
        auto samples = random.floats(samplesOf(len, tapsLen), -1, 1);
        auto taps = random.floats(static_cast<std::size_t>(tapsLen), -1, 1);
        if (i % 3 == 0) {
            samples = random.pick(values, samples.size());
        } else if (i % 3 == 1) {
            samples[static_cast<std::size_t>(random.integer(0, static_cast<int>(samples.size()) - 1))] = INFINITY;
            for (int k = 0; k < tapsLen; k += 3) taps[static_cast<std::size_t>(k)] = -0.0f;
        } else {
            taps = random.pick(values, taps.size());
        }
        expectModel(samples, taps, len);
    }
}

TEST(LowHighFilter, SinglesRoundInTheCallersMode) {
    Random random(3);
    for (unsigned mode : {test::RoundingMode::nearest, test::RoundingMode::down, test::RoundingMode::up,
                          test::RoundingMode::towardZero}) {
        for (const auto [len, tapsLen] : {Sizes{64, 13}, {38, 118}, {16, 300}, {2, 1}, {10, 2}}) {
            const auto samples = random.floats(samplesOf(len, tapsLen), -1000, 1000);
            const auto taps = random.floats(static_cast<std::size_t>(tapsLen), -1, 1);
            const test::RoundingMode scope(mode);
            expectModel(samples, taps, len);
            expectModel(std::vector<Vorn32f>(samples.size(), 0.0f), taps, len);
        }
    }
}

const int scaleFactors[] = {0,   1,   2,   15,  16,   17,      30,      31,          32,         33,  40,
                            47,  48,  62,  63,  64,   65,      80,      127,         128,        -1,  -2,
                            -14, -15, -16, -17, -31,  -32,     -33,     -40,         -47,        -48, -62,
                            -63, -64, -65, -80, -128, INT_MAX, INT_MIN, INT_MIN + 1, INT_MAX - 1};

TEST(LowHighFilter, ShortsEqualTheModel) {
    Random random(4);
    int i = 0;
    for (const auto [len, tapsLen] : sizes()) {
        const auto count = static_cast<std::size_t>(tapsLen);
        const auto samples = random.integers<Vorn16s>(samplesOf(len, tapsLen));
        const int scaleFactor = static_cast<int>(random.integer(10, 18));
        expectModel(samples, tapsOfSum(random, count, 40000), len, scaleFactor);
        expectModel(samples, random.integers<Vorn16s>(count), len, scaleFactor);
        const int any = scaleFactors[static_cast<std::size_t>(++i) % std::size(scaleFactors)];
        expectModel(samples, tapsOfSum(random, count, 30000 + i % 3 * 20000), len, any);
        expectModel(samples, random.integers<Vorn16s>(count), len, any);
    }
}

// Sums at the ends of 32 bits and of 16: all samples and taps extreme.
TEST(LowHighFilter, ExtremeShortsAreExact) {
    Random random(5);
    const std::vector<Vorn16s> extremes = {-32768, 32767};
    for (const int tapsLen : {1, 2, 3, 4, 5, 6, 8, 9, 118, 512, 520}) {
        for (const int scaleFactor : {0, 14, 15, 16, 17, 24, 32, 33, -1, -3}) {
            const int len = 44;
            const std::size_t samples = samplesOf(len, tapsLen), count = static_cast<std::size_t>(tapsLen);
            for (Vorn16s sample : extremes) {
                expectModel(std::vector<Vorn16s>(samples, sample), std::vector<Vorn16s>(count, -32768), len,
                            scaleFactor);
                expectModel(std::vector<Vorn16s>(samples, sample), random.pick(extremes, count), len, scaleFactor);
            }
            expectModel(random.pick(extremes, samples), random.pick(extremes, count), len, scaleFactor);
            expectModel(random.pick(test::hardIntegers<Vorn16s>(), samples),
                        random.pick(test::hardIntegers<Vorn16s>(), count), len, scaleFactor);
        }
    }
    // Magnitudes of taps that add up to 65535 and to one more, at every place of the pair.
    for (int sum : {65534, 65535, 65536}) {
        for (int first = 0; first < 8; ++first) {
            for (int second = 0; second < 8; ++second) {
                if (first == second) continue;
                std::vector<Vorn16s> taps(8);
                taps[static_cast<std::size_t>(first)] = -32768;
                taps[static_cast<std::size_t>(second)] = static_cast<Vorn16s>(32768 - sum);
                for (Vorn16s sample : extremes) expectModel(std::vector<Vorn16s>(26, sample), taps, 20, 16);
                expectModel(random.pick(extremes, 26), taps, 20, 15);
            }
        }
    }
}

TEST(LowHighFilter, ScaleFactorsOfAnySize) {
    Random random(6);
    for (int scaleFactor : scaleFactors) {
        expectModel(random.integers<Vorn16s>(60), tapsOfSum(random, 12, 60000), 50, scaleFactor);
        expectModel(random.integers<Vorn16s>(60), random.integers<Vorn16s>(12), 50, scaleFactor);
        expectModel(random.integers<Vorn16s>(60, -3, 3), random.integers<Vorn16s>(12, -3, 3), 50, scaleFactor);
    }
}

TEST(LowHighFilter, AnyAlignmentGivesTheSameBits) {
    Random random(7);
    const int len = 90, tapsLen = 37;
    const auto singles = random.floats(samplesOf(len, tapsLen), -1, 1), singleTaps = random.floats(tapsLen, -1, 1);
    const auto shorts = random.integers<Vorn16s>(samplesOf(len, tapsLen));
    const auto shortTaps = tapsOfSum(random, tapsLen, 65000);
    std::vector<Vorn32f> low(len / 2), high(len / 2);
    std::vector<Vorn16s> low16(len / 2), high16(len / 2);
    vornsLowHighFilter_Aurora_32f(singles.data(), low.data(), high.data(), len, singleTaps.data(), tapsLen);
    vornsLowHighFilter_Aurora_16s_Sfs(shorts.data(), low16.data(), high16.data(), len, shortTaps.data(), tapsLen, 15);
    for (std::size_t a = 0; a < 64; a += 4) {
        Offset<Vorn32f> src(singles.size(), a), taps(tapsLen, (5 * a) % 64), l(len / 2, (7 * a) % 64),
            h(len / 2, (3 * a) % 64);
        src.assign(singles);
        taps.assign(singleTaps);
        vornsLowHighFilter_Aurora_32f(src, l, h, len, taps, tapsLen);
        EXPECT_TRUE(sameBits(l.values(), low) && sameBits(h.values(), high)) << a;
        EXPECT_TRUE(l.surroundingsUntouched() && h.surroundingsUntouched());
        Offset<Vorn16s> src16(shorts.size(), a / 2), taps16(tapsLen, (5 * a / 2) % 64 & ~1u),
            l16(len / 2, (7 * a / 2) % 64 & ~1u), h16(len / 2, (3 * a / 2) % 64 & ~1u);
        src16.assign(shorts);
        taps16.assign(shortTaps);
        vornsLowHighFilter_Aurora_16s_Sfs(src16, l16, h16, len, taps16, tapsLen, 15);
        EXPECT_TRUE(sameBits(l16.values(), low16) && sameBits(h16.values(), high16)) << a;
        EXPECT_TRUE(l16.surroundingsUntouched() && h16.surroundingsUntouched());
    }
}

// ---- Edges with numbers of their own.

TEST(LowHighFilter, ByHand) {
    const Vorn32f src[] = {1, 10, 100, 1000, 10000, 100000};
    const Vorn32f taps[] = {2, 3, 4};
    Vorn32f low[3] = {-1, -1, -1}, high[3] = {-1, -1, -1};
    // Five samples give two outputs: 2 + 30 + 400 and 200 + 3000 + 40000; signs - + - and then + - +.
    EXPECT_EQ(vornsLowHighFilter_Aurora_32f(src, low, high, 5, taps, 3), vornStsNoErr);
    EXPECT_EQ(low[0], 432);
    EXPECT_EQ(low[1], 43200);
    EXPECT_EQ(low[2], -1);
    EXPECT_EQ(high[0], -372);
    EXPECT_EQ(high[1], 37200);
    EXPECT_EQ(high[2], -1);
    const Vorn16s src16[] = {1, 10, 100, 1000, 10000};
    const Vorn16s taps16[] = {2, 3, 4};
    Vorn16s low16[3] = {-1, -1, -1}, high16[3] = {-1, -1, -1};
    EXPECT_EQ(vornsLowHighFilter_Aurora_16s_Sfs(src16, low16, high16, 4, taps16, 3, 1), vornStsNoErr);
    EXPECT_EQ(low16[0], 216);
    EXPECT_EQ(low16[1], 21600);
    EXPECT_EQ(low16[2], -1);
    EXPECT_EQ(high16[0], -186);
    EXPECT_EQ(high16[1], 18600);
    EXPECT_EQ(high16[2], -1);
    // Downwards: -5 >> 1 is -3; to the left with saturation: 5 << 13 = 40960.
    const Vorn16s five[] = {5, 0}, one[] = {1};
    EXPECT_EQ(vornsLowHighFilter_Aurora_16s_Sfs(five, low16, high16, 2, one, 1, 1), vornStsNoErr);
    EXPECT_EQ(low16[0], 2);
    EXPECT_EQ(high16[0], -3);
    EXPECT_EQ(vornsLowHighFilter_Aurora_16s_Sfs(five, low16, high16, 2, one, 1, -13), vornStsNoErr);
    EXPECT_EQ(low16[0], 32767);
    EXPECT_EQ(high16[0], -32768);
    // 5 << 62 loses its bit 2, and is 2^62; 5 << 64 is 5.
    EXPECT_EQ(vornsLowHighFilter_Aurora_16s_Sfs(five, low16, high16, 2, one, 1, -62), vornStsNoErr);
    EXPECT_EQ(low16[0], 32767);
    EXPECT_EQ(vornsLowHighFilter_Aurora_16s_Sfs(five, low16, high16, 2, one, 1, -64), vornStsNoErr);
    EXPECT_EQ(low16[0], 5);
    EXPECT_EQ(high16[0], -5);
}

// One sample gives no output; nothing is read either.
TEST(LowHighFilter, OneSampleGivesNothing) {
    const Guarded<Vorn32f> nothing(0), tap({1.0f}), out(1);
    EXPECT_EQ(vornsLowHighFilter_Aurora_32f(nothing, out, out, 1, tap, 1), vornStsNoErr);
    EXPECT_TRUE(out.untouched());
    const Guarded<Vorn16s> nothing16(0), tap16({1}), out16(1);
    EXPECT_EQ(vornsLowHighFilter_Aurora_16s_Sfs(nothing16, out16, out16, 1, tap16, 1, 0), vornStsNoErr);
    EXPECT_EQ(vornsLowHighFilter_Aurora_16s_Sfs(nothing16, out16, out16, 1, tap16, 1, -1), vornStsNoErr);
    EXPECT_TRUE(out16.untouched());
}

// Taps come before outputs.
template <class T, class Call>
void expectChecks(Call call) {
    struct A {
        std::vector<T> data = std::vector<T>(64, T(1));
        Guarded<T> out = Guarded<T>(64);
        const T *src = data.data(), *taps = data.data();
        T *low = out.data(), *high = out.data() + 32;
        int len = 10, tapsLen = 5;
    };
    test::expectCheckOrder<A>([] { return A(); }, call, [](A& a) { return a.out.untouched(); },
                              {{"src", vornStsNullPtrErr, [](A& a) { a.src = nullptr; }},
                               {"taps", vornStsNullPtrErr, [](A& a) { a.taps = nullptr; }},
                               {"tapsLen 0", vornStsSizeErr, [](A& a) { a.tapsLen = 0; }},
                               {"tapsLen below 0", vornStsSizeErr, [](A& a) { a.tapsLen = INT_MIN; }},
                               {"low", vornStsNullPtrErr, [](A& a) { a.low = nullptr; }},
                               {"high", vornStsNullPtrErr, [](A& a) { a.high = nullptr; }},
                               {"len 0", vornStsSizeErr, [](A& a) { a.len = 0; }},
                               {"len below 0", vornStsSizeErr, [](A& a) { a.len = -3; }}});
}
TEST(LowHighFilter, ChecksInOrder) {
    expectChecks<Vorn32f>(
        [](auto& a) { return vornsLowHighFilter_Aurora_32f(a.src, a.low, a.high, a.len, a.taps, a.tapsLen); });
    expectChecks<Vorn16s>(
        [](auto& a) { return vornsLowHighFilter_Aurora_16s_Sfs(a.src, a.low, a.high, a.len, a.taps, a.tapsLen, 3); });
}

// ---- Properties that hold whatever the code or its model think.

// The high band is the low band of the signal times 1, -1, 1, ..., in turn with its sign changed.
TEST(LowHighFilter, TheHighBandIsTheLowBandOfTheModulatedSignal) {
    Random random(8);
    const int len = 300, tapsLen = 118;
    const auto samples = random.integers<Vorn16s>(samplesOf(len, tapsLen), -32767, 32767);
    const auto taps = tapsOfSum(random, tapsLen, 60000);
    auto modulated = samples, negated = samples;
    for (std::size_t m = 0; m < samples.size(); ++m)
        (m % 2 == 0 ? negated : modulated)[m] = static_cast<Vorn16s>(-samples[m]);
    std::vector<Vorn16s> low(len / 2), high(len / 2), lowModulated(len / 2), lowNegated(len / 2), other(len / 2);
    for (int scaleFactor : {0, 14, 16, -2}) {
        const auto run = [&](const std::vector<Vorn16s>& src, std::vector<Vorn16s>& l, std::vector<Vorn16s>& h) {
            vornsLowHighFilter_Aurora_16s_Sfs(src.data(), l.data(), h.data(), len, taps.data(), tapsLen, scaleFactor);
        };
        run(samples, low, high);
        run(modulated, lowModulated, other);
        run(negated, lowNegated, other);
        for (std::size_t n = 0; n < high.size(); ++n) {
            EXPECT_EQ(high[n], n % 2 == 0 ? lowNegated[n] : lowModulated[n]) << n;
        }
    }
    std::vector<Vorn32f> singles(modulated.begin(), modulated.end()), singleTaps(taps.begin(), taps.end());
    std::vector<Vorn32f> lowSingles(len / 2), highSingles(len / 2), unused(len / 2);
    vornsLowHighFilter_Aurora_32f(singles.data(), lowSingles.data(), unused.data(), len, singleTaps.data(), tapsLen);
    singles.assign(samples.begin(), samples.end());
    vornsLowHighFilter_Aurora_32f(singles.data(), unused.data(), highSingles.data(), len, singleTaps.data(), tapsLen);
    for (std::size_t n = 0; n < highSingles.size(); ++n) {
        EXPECT_EQ(highSingles[n], n % 2 == 0 ? -lowSingles[n] : lowSingles[n]) << n;
    }
}

// A tone goes to its band: with a windowed sinc of 118 taps (Hamming) at least 50 dB of it.
TEST(LowHighFilter, TonesGoToTheirBands) {
    const int len = 640, tapsLen = 118;
    const double pi = std::acos(-1.0);
    std::vector<double> prototype(tapsLen);
    for (int k = 0; k < tapsLen; ++k) {
        const double t = k - (tapsLen - 1) / 2.0;
        prototype[static_cast<std::size_t>(k)] =
            std::sin(pi * t / 2) / (pi * t) * (0.54 + 0.46 * std::cos(2 * pi * t / (tapsLen - 1)));
    }
    const auto energyOf = [](const auto& band) {
        double sum = 0;
        for (const auto x : band) sum += static_cast<double>(x) * static_cast<double>(x);
        return sum / static_cast<double>(band.size());
    };
    for (double frequency : {0.02, 0.1, 0.2, 0.3, 0.4, 0.48}) {
        std::vector<Vorn32f> src(samplesOf(len, tapsLen)), taps(prototype.begin(), prototype.end());
        std::vector<Vorn16s> src16(src.size()), taps16(taps.size());
        for (std::size_t m = 0; m < src.size(); ++m) {
            src[m] = static_cast<Vorn32f>(10000 * std::sin(2 * pi * frequency * static_cast<double>(m)));
            src16[m] = static_cast<Vorn16s>(std::lround(src[m]));
        }
        for (std::size_t k = 0; k < taps.size(); ++k)
            taps16[k] = static_cast<Vorn16s>(std::lround(32768 * prototype[k]));
        std::vector<Vorn32f> low(len / 2), high(len / 2);
        std::vector<Vorn16s> low16(len / 2), high16(len / 2);
        vornsLowHighFilter_Aurora_32f(src.data(), low.data(), high.data(), len, taps.data(), tapsLen);
        vornsLowHighFilter_Aurora_16s_Sfs(src16.data(), low16.data(), high16.data(), len, taps16.data(), tapsLen, 15);
        const bool below = frequency < 0.25;
        EXPECT_NEAR(energyOf(below ? low : high), 5e7, 2e6) << frequency;
        EXPECT_LT(energyOf(below ? high : low), 5e7 * 1e-5) << frequency;
        EXPECT_NEAR(energyOf(below ? low16 : high16), 5e7, 2e6) << frequency;
        EXPECT_LT(energyOf(below ? high16 : low16), 5e7 * 1e-5) << frequency;
    }
}

// Singles stay beside the sum in double by no more than rounding can do.
TEST(LowHighFilter, SinglesAreNearTheSumInDouble) {
    Random random(9);
    for (const auto [len, tapsLen] : {Sizes{40, 10}, {160, 118}, {20, 1000}}) {
        const auto samples = random.floats(samplesOf(len, tapsLen), -1000, 1000);
        const auto taps = random.floats(static_cast<std::size_t>(tapsLen), -1, 1);
        std::vector<Vorn32f> low(static_cast<std::size_t>(len / 2)), high(low.size());
        vornsLowHighFilter_Aurora_32f(samples.data(), low.data(), high.data(), len, taps.data(), tapsLen);
        for (std::size_t n = 0; n < low.size(); ++n) {
            double lowSum = 0, highSum = 0, magnitude = 0;
            double sign = n % 2 == 0 ? -1 : 1;
            for (std::size_t k = 0; k < taps.size(); ++k, sign = -sign) {
                const double product = double{samples[2 * n + k]} * taps[k];
                lowSum += product;
                highSum += sign * product;
                magnitude += std::fabs(product);
            }
            EXPECT_NEAR(low[n], lowSum, magnitude * (tapsLen / 2 + 2) * 0x1p-24);
            EXPECT_NEAR(high[n], highSum, magnitude * (tapsLen / 2 + 2) * 0x1p-24);
        }
    }
}

// Sums begin at 0, also those without a tap: 0 - 0 is -0 where the caller rounds down.
TEST(LowHighFilter, ASumWithoutTapsIsAZeroToSubtract) {
    const float src[] = {-8, 7, 0}, tap = 4;
    float low[2] = {}, high[2] = {};
    {
        const test::RoundingMode mode(test::RoundingMode::down);
        EXPECT_EQ(vornsLowHighFilter_Aurora_32f(src, low, high, 4, &tap, 1), vornStsNoErr);
    }
    EXPECT_EQ(low[0], -32);
    EXPECT_EQ(high[0], 32);
    EXPECT_EQ(high[1], 0);
    EXPECT_TRUE(std::signbit(high[1]));
}

}  // namespace
