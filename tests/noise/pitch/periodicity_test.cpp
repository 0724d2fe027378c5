// The two measures of periodicity.
#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <limits>
#include <vector>

#include "model/pitch.h"
#include "support/expect.h"
#include "support/guarded.h"
#include "support/rounding_mode.h"
#include "support/values.h"
#include "vornsr.h"

namespace {

using test::Guarded;
using test::Random;
using test::RoundingMode;

constexpr unsigned modes[] = {RoundingMode::nearest, RoundingMode::down, RoundingMode::up, RoundingMode::towardZero};
constexpr float inf = std::numeric_limits<float>::infinity(), nan = std::numeric_limits<float>::quiet_NaN();

template <class T, class Measure>
using Function = VornStatus (*)(const T*, int, Measure*, int*, int, int);

template <class T, class Measure>
struct Result {
    VornStatus status;
    Measure periodicity;
    int period;
};
template <class T, class Measure>
Result<T, Measure> run(Function<T, Measure> function, const std::vector<T>& x, int minPeriod, int maxPeriod,
                       unsigned mode = RoundingMode::nearest) {
    const Guarded<T> src(x);
    Guarded<Measure> periodicity(1);
    Guarded<int> period(1);
    VornStatus status;
    {
        const RoundingMode guard(mode);
        status = function(src, static_cast<int>(x.size()), periodicity, period, maxPeriod, minPeriod);
    }
    EXPECT_TRUE(periodicity.surroundingsUntouched() && period.surroundingsUntouched());
    return {status, periodicity[0], period[0]};
}
template <class T, class Measure, class Model>
void expectModel(Function<T, Measure> function, Model model, const std::vector<T>& x, int minPeriod, int maxPeriod,
                 unsigned mode = RoundingMode::nearest) {
    const auto result = run(function, x, minPeriod, maxPeriod, mode);
    model::Periodicity<Measure> expected;
    {
        const RoundingMode guard(mode);
        expected = model(x, minPeriod, maxPeriod);
    }
    ASSERT_EQ(result.status, vornStsNoErr);
    EXPECT_TRUE(test::same(result.periodicity, expected.periodicity) && result.period == expected.period)
        << "len " << x.size() << ", periods " << minPeriod << " to " << maxPeriod << ", mode " << mode << ": got "
        << test::show(result.periodicity) << " at " << result.period << ", expected "
        << test::show(expected.periodicity) << " at " << expected.period;
}

const auto combs_32f = [](const std::vector<float>& x, int low, int high) { return model::periodicity(x, low, high); };
const auto combs_32s = [](const std::vector<Vorn32s>& x, int low, int high) {
    return model::periodicity(x, low, high);
};
const auto squares_32f = [](const std::vector<float>& x, int low, int high) {
    return model::leastSquaresPeriod(x, low, high);
};
const auto squares_16s = [](const std::vector<Vorn16s>& x, int low, int high) {
    return model::leastSquaresPeriod(x, low, high);
};

void expectCombs(const std::vector<float>& x, int low, int high, unsigned mode = RoundingMode::nearest) {
    expectModel(vornsPeriodicity_32f, combs_32f, x, low, high, mode);
}
void expectCombs(const std::vector<Vorn32s>& x, int low, int high) {
    expectModel(vornsPeriodicity_32s16s, combs_32s, x, low, high);
}
void expectSquares(const std::vector<float>& x, int low, int high, unsigned mode = RoundingMode::nearest) {
    expectModel(vornsPeriodicityLSPE_32f, squares_32f, x, low, high, mode);
}
void expectSquares(const std::vector<Vorn16s>& x, int low, int high) {
    expectModel(vornsPeriodicityLSPE_16s, squares_16s, x, low, high);
}

std::vector<Vorn32s> sized(Random& random, std::size_t len, int bits) {
    return random.integers<Vorn32s>(len, 0, static_cast<Vorn32s>((std::int64_t{1} << bits) - 1));
}

TEST(Periodicity, EqualsTheModelAtShortLengths) {
    Random random(1);
    for (int len = 3; len <= 70; len += len < 20 ? 1 : 5) {
        for (int low : {1, 2, 3, 7, len / 2, len - 2}) {
            for (int high : {low + 1, len / 2, len - 1}) {
                if (low < 1 || high <= low || high >= len) continue;
                const auto n = static_cast<std::size_t>(len);
                expectCombs(random.floats(n, 0, 1), low, high);
                expectCombs(random.pick<float>({0.0f, 1.0f, 2.0f, -0.0f}, n), low, high);
                expectCombs(sized(random, n, 31), low, high);
                expectCombs(sized(random, n, 3), low, high);
                expectCombs(random.pick<Vorn32s>({0, 1, INT_MAX}, n), low, high);
            }
        }
    }
}

TEST(Periodicity, EqualsTheModelAtLongLengths) {
    Random random(2);
    for (int len : {127, 240, 257, 1000, 2049, 4095, 4096}) {
        const auto n = static_cast<std::size_t>(len);
        for (int low : {1, 20, 100}) {
            for (int high : {low + 1, 130, 160}) {
                if (high <= low || high >= len) continue;
                expectCombs(random.floats(n, 0, 1), low, high);
                for (int bits : {1, 4, 16, 27, 28, 29, 30, 31}) expectCombs(sized(random, n, bits), low, high);
            }
        }
    }
    for (unsigned mode : modes) {
        expectCombs(random.floats(500, 0, 1), 20, 160, mode);
        expectCombs(random.floats(301, 0, 1e-44), 5, 300, mode);
    }
    expectCombs(random.floats(4096, 0, 1), 1000, 4095);
    expectCombs(sized(random, 4096, 31), 2000, 4095);
    expectCombs(std::vector<Vorn32s>(4096, INT_MAX), 1, 100);  // the largest total
}

// Samples that grow make a better comb of nearly every phase, and ties between neighbours must keep the first.
TEST(Periodicity, EqualsTheModelWhereManyCombsWin) {
    Random random(3);
    for (int len : {64, 100, 333}) {
        std::vector<float> rising, steps;
        std::vector<Vorn32s> risingInts, large;
        for (int i = 0; i < len; ++i) {
            rising.push_back(static_cast<float>(i));
            steps.push_back(static_cast<float>(i / 7));
            risingInts.push_back(i);
            large.push_back(INT_MAX - len + i);
        }
        for (int low : {1, 10, 30}) {
            expectCombs(rising, low, 50);
            expectCombs(steps, low, 50);
            expectCombs(risingInts, low, 50);
            expectCombs(large, low, 50);
        }
    }
}

TEST(Periodicity, HardValues) {
    Random random(4);
    std::vector<float> hard;
    for (float x : test::hardFloats<float>()) {
        if (!(x < 0)) hard.push_back(x);
    }
    std::vector<float> finite;
    for (float x : hard) {
        if (std::isfinite(x) && x < 1e30f) finite.push_back(x);
    }
    for (int turn = 0; turn < 50; ++turn) {
        expectCombs(random.pick(hard, 60), 3, 40);
        expectCombs(random.pick(finite, 60), 3, 40);
        expectCombs(random.pick(std::vector<float>{3e38f, 0.0f, 0.0f, 0.0f, 0.0f, 0.0f, 0.0f, 0.0f}, 60), 3, 40);
    }
    for (float odd : {inf, nan}) {
        std::vector<float> x(50, 1.0f);
        x[17] = odd;
        const auto result = run(vornsPeriodicity_32f, x, 5, 20);
        EXPECT_EQ(result.status, vornStsNoErr);
        EXPECT_EQ(result.periodicity, 0.0f);
        EXPECT_EQ(result.period, 0);
    }
    // Pulses that no comb of six teeth reaches: nothing wins.
    std::vector<float> late(4096, 0.0f);
    late[4000] = 1.0f;
    const auto none = run(vornsPeriodicity_32f, late, 1, 100);
    EXPECT_EQ(none.status, vornStsNoErr);
    EXPECT_EQ(none.periodicity, 0.0f);
    EXPECT_EQ(none.period, 0);
}

TEST(Periodicity, Silence) {
    const auto single = run(vornsPeriodicity_32f, std::vector<float>(200, 0.0f), 20, 100);
    EXPECT_EQ(single.status, vornStsNoErr);
    EXPECT_TRUE(test::same(single.periodicity, 0.0f));
    EXPECT_EQ(single.period, 0);
    const auto fixed = run(vornsPeriodicity_32s16s, std::vector<Vorn32s>(200, 0), 20, 100);
    EXPECT_EQ(fixed.status, vornStsNoErr);
    EXPECT_EQ(fixed.periodicity, 0);
    EXPECT_EQ(fixed.period, 0);
}

// Pulses, ten of them, 15 apart: six lie on one comb. With longer periods allowed a comb of five wins, whose divisor
// is the nearest single to 1/5 where that of six is short of 1/6; and of integers the comb of four, whose divisor alone
// is exact.
TEST(Periodicity, Literal) {
    std::vector<float> pulses(150, 0.0f);
    std::vector<Vorn32s> fixed(150, 0);
    for (int i = 4; i < 150; i += 15) pulses[i] = 2.0f, fixed[i] = 1 << 20;
    const auto single = run(vornsPeriodicity_32f, pulses, 10, 25);
    EXPECT_EQ(single.period, 15);
    EXPECT_EQ(single.periodicity, 0.6f);
    const auto integer = run(vornsPeriodicity_32s16s, fixed, 10, 25);
    EXPECT_EQ(integer.period, 15);
    EXPECT_EQ(integer.periodicity, 19660);  // 0.6 x 32768, truncated
    const auto five = run(vornsPeriodicity_32f, pulses, 10, 50);
    EXPECT_EQ(five.period, 30);
    EXPECT_EQ(five.periodicity, 0.5f);
    const auto four = run(vornsPeriodicity_32s16s, fixed, 10, 50);
    EXPECT_EQ(four.period, 45);
    EXPECT_EQ(four.periodicity, 13107);  // 0.4 x 32768, truncated
    // A single pulse in a frame of one period and a bit: the comb of one tooth has all of it.
    std::vector<Vorn32s> one(21, 0);
    one[15] = 7;
    const auto whole = run(vornsPeriodicity_32s16s, one, 19, 20);
    EXPECT_EQ(whole.period, 19);
    EXPECT_EQ(whole.periodicity, 32767);
}

// Equal samples have equal means but for what the short decimals of the divisors lose: 3 x 0.333333 is below 1, so the
// first winner is a comb of one or two samples, if there is one.
TEST(Periodicity, EqualSamples) {
    const auto few = run(vornsPeriodicity_32f, std::vector<float>(100, 1.0f), 60, 80);
    EXPECT_EQ(few.period, 60);
    EXPECT_EQ(few.periodicity, 2.0f / 100);
    const auto six = run(vornsPeriodicity_32f, std::vector<float>(1000, 1.0f), 20, 80);
    EXPECT_EQ(six.period, 20);
    EXPECT_EQ(six.periodicity, 6.0f / 1000);
}

TEST(LeastSquares, EqualsTheModel) {
    Random random(5);
    for (int len : {8, 9, 12, 15, 16, 17, 31, 47, 64, 65, 95, 96}) {
        for (int low : {6, 7, 8, 13}) {
            for (int high : {low + 1, low + 7, low + 8, low + 9, len - 1}) {
                if (high <= low || high >= len || len > 16 * low) continue;
                const auto n = static_cast<std::size_t>(len);
                expectSquares(random.floats(n, -1, 1), low, high);
                expectSquares(random.pick<float>({-1.0f, 0.0f, 1.0f, -0.0f}, n), low, high);
                expectSquares(random.integers<Vorn16s>(n), low, high);
                expectSquares(random.integers<Vorn16s>(n, -9, 9), low, high);
                expectSquares(random.pick<Vorn16s>({-32768, 32767}, n), low, high);
            }
        }
    }
    for (int len : {160, 321, 1000, 1024}) {
        for (int low : {20, 64, 65, 200}) {
            for (int high : {low + 1, 147, len - 1}) {
                if (high <= low || high >= len || len > 16 * low) continue;
                const auto n = static_cast<std::size_t>(len);
                expectSquares(random.floats(n, -1, 1), low, high);
                for (Vorn16s size : {1, 2000, 8000, 32767}) {
                    expectSquares(random.integers<Vorn16s>(n, static_cast<Vorn16s>(-size), size), low, high);
                }
            }
        }
    }
    for (unsigned mode : modes) {
        expectSquares(random.floats(240, -1, 1), 20, 160, mode);
        expectSquares(random.floats(100, -1e-22, 1e-22), 7, 60, mode);
    }
}

std::vector<double> voice(double period, std::size_t len, double phase) {
    std::vector<double> x(len);
    for (std::size_t i = 0; i < len; ++i) {
        for (int h = 1; h <= 4; ++h) x[i] += std::sin(2 * M_PI * h * (static_cast<double>(i) + phase) / period) / h;
    }
    return x;
}

TEST(LeastSquares, EqualsTheModelOnPeriodicSignals) {
    Random random(6);
    for (double period : {20.0, 33.3, 50.0, 77.7, 120.0}) {
        for (std::size_t len : {240, 319}) {
            std::vector<float> single;
            std::vector<Vorn16s> fixed;
            for (double v : voice(period, len, 3)) {
                const double noisy = v + random.uniform(-0.1, 0.1);
                single.push_back(static_cast<float>(noisy));
                fixed.push_back(static_cast<Vorn16s>(std::lrint(9000 * noisy)));
            }
            expectSquares(single, 20, 160);
            expectSquares(fixed, 20, 160);
        }
    }
}

TEST(LeastSquares, HardValues) {
    Random random(7);
    const auto hard = test::hardFloats<float>();
    std::vector<float> finite;
    for (float x : hard) {
        if (std::isfinite(x) && std::fabs(x) < 1e15f) finite.push_back(x);
    }
    for (int turn = 0; turn < 50; ++turn) {
        expectSquares(random.pick(hard, 90), 6, 60);
        expectSquares(random.pick(finite, 90), 6, 60);
    }
    const auto hardShorts = test::hardIntegers<Vorn16s>();
    for (int turn = 0; turn < 50; ++turn) expectSquares(random.pick(hardShorts, 90), 6, 60);
    for (Vorn16s all : {0, 1, -1, 32767, -32768}) expectSquares(std::vector<Vorn16s>(1024, all), 64, 200);
}

// What the measure is for: a periodic signal explains itself by its period and by nothing shorter, noise hardly at all.
TEST(LeastSquares, FindsThePeriod) {
    Random random(8);
    for (int period : {21, 40, 64, 99, 150}) {
        std::vector<float> single;
        std::vector<Vorn16s> fixed;
        for (double v : voice(period, 320, 1)) {
            single.push_back(static_cast<float>(v));
            fixed.push_back(static_cast<Vorn16s>(std::lrint(5000 * v)));
        }
        const auto found = run(vornsPeriodicityLSPE_32f, single, 20, 160);
        EXPECT_EQ(found.period % period, 0) << period;
        EXPECT_GT(found.periodicity, 0.9999f);
        EXPECT_LT(found.periodicity, 1.0001f);
        const auto integer = run(vornsPeriodicityLSPE_16s, fixed, 20, 160);
        EXPECT_EQ(integer.period % period, 0) << period;
        EXPECT_GT(integer.periodicity, 0.999 * 32768);
    }
    double sum = 0;
    for (int turn = 0; turn < 20; ++turn) {
        sum += run(vornsPeriodicityLSPE_32f, random.floats(320, -1, 1), 20, 40).periodicity;
    }
    EXPECT_LT(sum / 20, 0.3);
}

// Two whole periods of a signal, by hand: 6 samples 1 to 6 twice. A = 2 (1 + 4 + ... + 36) = E, B = E / 2.
TEST(LeastSquares, Literal) {
    const std::vector<float> twice = {1, 2, 3, 4, 5, 6, 1, 2, 3, 4, 5, 6};
    const auto single = run(vornsPeriodicityLSPE_32f, twice, 6, 7);
    EXPECT_EQ(single.period, 6);
    EXPECT_NEAR(single.periodicity, 1, 2e-6);  // 0.707107 is not the root of 1/2
    EXPECT_NE(single.periodicity, 1.0f);
    const std::vector<Vorn16s> opposite = {100, 200, 300, 400, 500, 600, -100, -200, -300, -400, -500, -600};
    const auto none = run(vornsPeriodicityLSPE_16s, opposite, 6, 7);
    EXPECT_EQ(none.status, vornStsNoErr);
    EXPECT_EQ(none.period, 0);  // A: 0 of 6, 395000 of 7; B is 1095000 there
    EXPECT_EQ(none.periodicity, 0);
    const std::vector<Vorn16s> zeros(50, 0);
    const auto silence = run(vornsPeriodicityLSPE_16s, zeros, 6, 40);
    EXPECT_EQ(silence.status, vornStsNoErr);
    EXPECT_EQ(silence.periodicity, 0);
    EXPECT_EQ(silence.period, 0);
}

TEST(LeastSquares, Limits) {
    EXPECT_EQ(run(vornsPeriodicityLSPE_32f, std::vector<float>(60, 1.0f), 5, 20).status, vornStsRangeErr);
    EXPECT_EQ(run(vornsPeriodicityLSPE_32f, std::vector<float>(96, 1.0f), 6, 20).status, vornStsNoErr);
    EXPECT_EQ(run(vornsPeriodicityLSPE_32f, std::vector<float>(97, 1.0f), 6, 20).status, vornStsLengthLimitErr);
    EXPECT_EQ(run(vornsPeriodicityLSPE_16s, std::vector<Vorn16s>(60, 1), 5, 20).status, vornStsRangeErr);
    EXPECT_EQ(run(vornsPeriodicityLSPE_16s, std::vector<Vorn16s>(97, 1), 6, 20).status, vornStsLengthLimitErr);
    EXPECT_EQ(run(vornsPeriodicityLSPE_32f, std::vector<float>(1024, 1.0f), 64, 70).status, vornStsNoErr);
    EXPECT_EQ(run(vornsPeriodicityLSPE_32f, std::vector<float>(1025, 1.0f), 80, 90).status, vornStsLengthLimitErr);
    EXPECT_EQ(run(vornsPeriodicity_32f, std::vector<float>(4096, 1.0f), 1, 2).status, vornStsNoErr);
    EXPECT_EQ(run(vornsPeriodicity_32f, std::vector<float>(4097, 1.0f), 1, 2).status, vornStsLengthLimitErr);
}

template <class T, class Measure>
struct Arguments {
    Arguments(int len, int low, int high) : x(len, T(1)), src(x), minPeriod(low), maxPeriod(high), size(len) {}
    std::vector<T> x;
    Guarded<T> src;
    Guarded<Measure> measureOut = Guarded<Measure>(1);
    Guarded<int> periodOut = Guarded<int>(1);
    const T* data = src.data();
    Measure* periodicity = measureOut.data();
    int* period = periodOut.data();
    int minPeriod, maxPeriod, size;
};
template <class T, class Measure>
void expectOrder(Function<T, Measure> function, bool combs) {
    using A = Arguments<T, Measure>;
    std::vector<test::Rule<A>> rules = {
        {"src", vornStsNullPtrErr, [](A& a) { a.data = nullptr; }},
        {"periodicity", vornStsNullPtrErr, [](A& a) { a.periodicity = nullptr; }},
        {"period", vornStsNullPtrErr, [](A& a) { a.period = nullptr; }},
        {"minPeriod", vornStsRangeErr, [=](A& a) { a.minPeriod = combs ? 0 : 5; }},
        {"maxPeriod", vornStsRangeErr, [](A& a) { a.maxPeriod = a.minPeriod; }},
        {"both", vornStsRangeErr, [](A& a) { a.maxPeriod = INT_MIN, a.minPeriod = INT_MAX; }},
        {"len", vornStsLengthLimitErr, [](A& a) { a.size = a.maxPeriod; }},
        {"len, largest", vornStsLengthLimitErr, [](A& a) { a.size = INT_MAX; }},
        {"len, smallest", vornStsLengthLimitErr, [](A& a) { a.size = INT_MIN; }}};
    if (combs) {
        for (int at : {0, 13, 49, 50}) {
            rules.push_back({"negative", vornStsRangeErr, [=](A& a) { a.src[at] = -1; }});
        }
    } else {
        rules.push_back({"many periods", vornStsLengthLimitErr, [](A& a) { a.size = 16 * a.minPeriod + 1; }});
    }
    test::expectCheckOrder<A>(
        [] { return A(51, 6, 20); },
        [=](A& a) { return function(a.data, a.size, a.periodicity, a.period, a.maxPeriod, a.minPeriod); },
        [](A& a) { return a.measureOut.untouched() && a.periodOut.untouched(); }, rules);
}

TEST(Periodicity, ChecksInOrder) {
    expectOrder<float, float>(vornsPeriodicity_32f, true);
    expectOrder<Vorn32s, Vorn16s>(vornsPeriodicity_32s16s, true);
    expectOrder<float, float>(vornsPeriodicityLSPE_32f, false);
    expectOrder<Vorn16s, Vorn16s>(vornsPeriodicityLSPE_16s, false);
}

}  // namespace
