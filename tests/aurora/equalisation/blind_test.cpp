// Blind equalisation.
#include <gtest/gtest.h>

#include <algorithm>
#include <climits>
#include <cmath>
#include <limits>
#include <utility>
#include <vector>

#include "model/equalisation.h"
#include "support/expect.h"
#include "support/guarded.h"
#include "support/rounding_mode.h"
#include "support/values.h"
#include "vornsr.h"

namespace {

using test::Guarded;
using test::Offset;
using test::Random;
using test::RoundingMode;
using test::sameBits;

VornStatus equalise(const float* ref, float* x, float* bias, int len, float energy) {
    return vornsBlindEqualization_Aurora_32f(ref, x, bias, len, energy);
}
VornStatus equalise(const Vorn16s* ref, Vorn16s* x, Vorn16s* bias, int len, int energy) {
    return vornsBlindEqualization_Aurora_16s(ref, x, bias, len, energy);
}

template <class T, class Energy>
void compare(const std::vector<T>& ref, const std::vector<T>& x, const std::vector<T>& bias, Energy energy) {
    auto expected = x, expectedBias = bias;
    model::equaliseBlindly(ref, expected, expectedBias, energy);
    Guarded<T> r(ref), srcDst(x), b(bias);
    ASSERT_EQ(equalise(r, srcDst, b, static_cast<int>(x.size()), energy), vornStsNoErr);
    EXPECT_TRUE(sameBits(srcDst.data(), expected.data(), x.size())) << "values, energy " << energy;
    EXPECT_TRUE(sameBits(b.data(), expectedBias.data(), x.size())) << "bias, energy " << energy;
    EXPECT_TRUE(sameBits(r.data(), ref.data(), x.size()));
    EXPECT_TRUE(srcDst.surroundingsUntouched() && b.surroundingsUntouched());
}

const float energies[] = {3.296875f, 3.296876f, 3.8f, 4.0f, 4.296874f, 4.296875f, 5.0f, 100.0f, 0.0f, -1e30f};
const int fixedEnergies[] = {INT_MIN, -1, 210, 211, 212, 243, 274, 275, 276, 1000, INT_MAX, INT_MIN + 200};

TEST(BlindEqualisation, EqualsTheModelAtEveryLength) {
    Random random(1);
    for (std::size_t len = 1; len <= 140; ++len) {
        const float energy = energies[len % std::size(energies)];
        compare(random.floats(len, -50, 50), random.floats(len, -50, 50), random.floats(len, -50, 50), energy);
        compare(random.floats(len, -50, 50), random.floats(len, -50, 50), random.floats(len, -50, 50), 3.7f);
        const int fixed = fixedEnergies[len % std::size(fixedEnergies)];
        compare(random.integers<Vorn16s>(len), random.integers<Vorn16s>(len), random.integers<Vorn16s>(len), fixed);
        compare(random.integers<Vorn16s>(len), random.integers<Vorn16s>(len), random.integers<Vorn16s>(len), 250);
    }
}

TEST(BlindEqualisation, EqualsTheModelAtEveryEnergy) {
    Random random(2);
    for (float energy : energies) {
        compare(random.floats(100, -9, 9), random.floats(100, -9, 9), random.floats(100, -9, 9), energy);
    }
    for (int energy : fixedEnergies) {
        compare(random.integers<Vorn16s>(100), random.integers<Vorn16s>(100), random.integers<Vorn16s>(100), energy);
    }
    for (int energy = 205; energy < 280; ++energy) {
        compare(random.integers<Vorn16s>(100), random.integers<Vorn16s>(100), random.integers<Vorn16s>(100), energy);
    }
}

TEST(BlindEqualisation, HardValues) {
    Random random(3);
    const auto singles = test::hardFloats<float>();
    const auto shorts = test::hardIntegers<Vorn16s>();
    for (int turn = 0; turn < 300; ++turn) {
        const float energy = turn % 2 == 0 ? random.pick(singles, 1)[0] : 3.9f;
        compare(random.pick(singles, 50), random.pick(singles, 50), random.pick(singles, 50), energy);
        const int fixed = static_cast<int>(random.integer(205, 285));
        compare(random.pick(shorts, 50), random.pick(shorts, 50), random.pick(shorts, 50), fixed);
    }
}

template <class T, class Energy>
void expectNoAddressMatters(const std::vector<T>& ref, const std::vector<T>& x, const std::vector<T>& bias,
                            Energy energy) {
    const int len = static_cast<int>(x.size());
    auto expected = x, expectedBias = bias;
    ASSERT_EQ(equalise(ref.data(), expected.data(), expectedBias.data(), len, energy), vornStsNoErr);
    for (std::size_t of = 0; of < 3; ++of) {
        for (std::size_t bytes = 0; bytes < 64; bytes += sizeof(T)) {
            Offset<T> r(ref.size(), of == 0 ? bytes : 0), v(x.size(), of == 1 ? bytes : 0),
                b(bias.size(), of == 2 ? bytes : 0);
            r.assign(ref), v.assign(x), b.assign(bias);
            ASSERT_EQ(equalise(r, v, b, len, energy), vornStsNoErr);
            EXPECT_EQ(v.values(), expected) << bytes;
            EXPECT_EQ(b.values(), expectedBias) << bytes;
            EXPECT_TRUE(v.surroundingsUntouched() && b.surroundingsUntouched());
        }
    }
}
TEST(BlindEqualisation, NoAddressMatters) {
    Random random(4);
    for (std::size_t len : {12u, 13u, 300u}) {
        expectNoAddressMatters(random.floats(len, -9, 9), random.floats(len, -9, 9), random.floats(len, -9, 9), 4.0f);
        expectNoAddressMatters(random.integers<Vorn16s>(len), random.integers<Vorn16s>(len),
                               random.integers<Vorn16s>(len), 270);
    }
}

TEST(BlindEqualisation, TheReferenceMayBeTheBias) {
    Random random(5);
    for (std::size_t len : {1u, 5u, 12u, 33u, 100u}) {
        const auto x = random.floats(len, -9, 9), bias = random.floats(len, -9, 9);
        auto expected = x, expectedBias = bias;
        model::equaliseBlindly(bias, expected, expectedBias, 3.9f);
        auto y = x, b = bias;
        ASSERT_EQ(equalise(b.data(), y.data(), b.data(), static_cast<int>(len), 3.9f), vornStsNoErr);
        EXPECT_TRUE(sameBits(y, expected) && sameBits(b, expectedBias));
        const auto s = random.integers<Vorn16s>(len), sb = random.integers<Vorn16s>(len);
        auto expectedShorts = s, expectedShortBias = sb;
        model::equaliseBlindly(sb, expectedShorts, expectedShortBias, 260);
        auto ys = s, bs = sb;
        ASSERT_EQ(equalise(bs.data(), ys.data(), bs.data(), static_cast<int>(len), 260), vornStsNoErr);
        EXPECT_TRUE(sameBits(ys, expectedShorts) && sameBits(bs, expectedShortBias));
    }
}

TEST(BlindEqualisation, SilenceLeavesTheBias) {
    for (float energy :
         {3.296875f, 0.0f, -5.0f, std::numeric_limits<float>::quiet_NaN(), -std::numeric_limits<float>::infinity()}) {
        float ref[] = {1, 2, 3}, x[] = {10, 20, 30}, bias[] = {0.5f, -1.25f, 2};
        ASSERT_EQ(equalise(ref, x, bias, 3, energy), vornStsNoErr);
        EXPECT_EQ(x[0], 9.5f);
        EXPECT_EQ(x[1], 21.25f);
        EXPECT_EQ(x[2], 28.0f);
        EXPECT_EQ(bias[0], 0.5f);
        EXPECT_EQ(bias[1], -1.25f);
        EXPECT_EQ(bias[2], 2.0f);
    }
    for (int energy : {211, 0, INT_MIN}) {
        Vorn16s ref[] = {1, 2}, x[] = {100, -32768}, bias[] = {-50, 1};
        ASSERT_EQ(equalise(ref, x, bias, 2, energy), vornStsNoErr);
        EXPECT_EQ(x[0], 150);
        EXPECT_EQ(x[1], -32768);
        EXPECT_EQ(bias[0], -50);
        EXPECT_EQ(bias[1], 1);
    }
}

TEST(BlindEqualisation, TheStepByHand) {
    // 9/1024 of the distance from the reference in a loud frame, whatever the loudness; half of it half way.
    for (auto [energy, step] : {std::pair(4.296875f, 0.0087890625f),
                                {1e30f, 0.0087890625f},
                                {3.796875f, 0.00439453125f},
                                {std::numeric_limits<float>::infinity(), 0.0087890625f}}) {
        float ref[] = {1}, x[] = {1027}, bias[] = {2};
        ASSERT_EQ(equalise(ref, x, bias, 1, energy), vornStsNoErr);
        EXPECT_EQ(x[0], 1025.0f);
        EXPECT_EQ(bias[0], 2.0f + 1024.0f * step);
    }
    // 576/65536 of it, rounded down: 1000 x 576 / 65536 = 8.79, and -8.79 gives -9.
    for (int energy : {275, 276, INT_MAX}) {
        Vorn16s ref[] = {0, 0}, x[] = {1001, -999}, bias[] = {1, 1};
        ASSERT_EQ(equalise(ref, x, bias, 2, energy), vornStsNoErr);
        EXPECT_EQ(x[0], 1000);
        EXPECT_EQ(x[1], -1000);
        EXPECT_EQ(bias[0], 9);
        EXPECT_EQ(bias[1], -8);
    }
}

TEST(BlindEqualisation, TheBiasMovesByTheDifferenceThatWasNotSaturated) {
    // c - ref = 65535 + 32768 = 98303, times 576 / 65536 = 863.99.
    Vorn16s ref[] = {-32768, 32767}, x[] = {32767, -32768}, bias[] = {-32768, 32767};
    ASSERT_EQ(equalise(ref, x, bias, 2, 300), vornStsNoErr);
    EXPECT_EQ(x[0], 32767);
    EXPECT_EQ(bias[0], -32768 + 863);
    EXPECT_EQ(x[1], -32768);
    EXPECT_EQ(bias[1], 32767 - 864);  // -98302 x 576 / 65536 = -863.98
    // And saturates by itself.
    Vorn16s low[] = {-32768}, y[] = {32767}, full[] = {32767};
    ASSERT_EQ(equalise(low, y, full, 1, 300), vornStsNoErr);
    EXPECT_EQ(y[0], 0);
    EXPECT_EQ(full[0], 32767);
}

// Frame after frame the mean of what is left goes to the reference, at the rate of the step.
TEST(BlindEqualisation, AConstantOffsetIsLearned) {
    std::vector<float> ref = {5, -3}, bias = {0, 0};
    for (int frame = 0; frame < 2000; ++frame) {
        std::vector<float> x = {12, 4};
        ASSERT_EQ(equalise(ref.data(), x.data(), bias.data(), 2, 10.0f), vornStsNoErr);
        const double left = std::pow(1.0 - 9.0 / 1024.0, frame);  // of the offset of 7
        EXPECT_NEAR(x[0], 5 + 7 * left, 1e-3) << frame;
        EXPECT_NEAR(x[1], -3 + 7 * left, 1e-3) << frame;
    }
}

TEST(BlindEqualisation, FollowsTheCallersRoundingMode) {
    Random random(6);
    for (unsigned mode : {RoundingMode::down, RoundingMode::up, RoundingMode::towardZero}) {
        RoundingMode scope(mode);
        for (float energy : {3.5f, 3.296875f, 9.0f}) {
            compare(random.floats(37, -50, 50), random.floats(37, -50, 50), random.floats(37, -50, 50), energy);
        }
        compare(random.integers<Vorn16s>(37), random.integers<Vorn16s>(37), random.integers<Vorn16s>(37), 263);
    }
}

template <class T>
struct Arguments {
    Guarded<T> ref = Guarded<T>(12), x = Guarded<T>(12), bias = Guarded<T>(12);
    const T* pRef = ref;
    T *pX = x, *pBias = bias;
    int len = 12;
};
template <class T, class Energy>
void expectChecks(Energy energy) {
    using A = Arguments<T>;
    test::expectCheckOrder<A>([] { return A(); }, [&](A& a) { return equalise(a.pRef, a.pX, a.pBias, a.len, energy); },
                              [](A& a) { return a.x.untouched() && a.bias.untouched(); },
                              {{"ref null", vornStsNullPtrErr, [](A& a) { a.pRef = nullptr; }},
                               {"srcDst null", vornStsNullPtrErr, [](A& a) { a.pX = nullptr; }},
                               {"bias null", vornStsNullPtrErr, [](A& a) { a.pBias = nullptr; }},
                               {"len 0", vornStsSizeErr, [](A& a) { a.len = 0; }},
                               {"len negative", vornStsSizeErr, [](A& a) { a.len = -5; }}});
}
// A stream of frames: what the bias has become after each of them goes into the next.
template <class T, class Frame>
void followStream(const std::vector<T>& ref, const Frame& frame) {
    constexpr int frames = 10000;
    const int len = static_cast<int>(ref.size());
    std::vector<T> expectedBias(ref.size());
    Guarded<T> bias(expectedBias), x(ref.size());
    for (int f = 0; f < frames; ++f) {
        auto [expected, energy] = frame(f);
        std::copy(expected.begin(), expected.end(), x.begin());
        model::equaliseBlindly(ref, expected, expectedBias, energy);
        ASSERT_EQ(equalise(ref.data(), x, bias, len, energy), vornStsNoErr);
        ASSERT_TRUE(sameBits(x.data(), expected.data(), ref.size())) << "frame " << f;
        ASSERT_TRUE(sameBits(bias.data(), expectedBias.data(), ref.size())) << "frame " << f;
    }
}
TEST(BlindEqualisation, TenThousandFramesEqualTheModel) {
    Random random(21);
    const auto floats = [&](double low, double high) {
        std::vector<float> x(12);
        for (float& v : x) v = static_cast<float>(random.uniform(low, high));
        return x;
    };
    const auto shorts = [&](std::int64_t low, std::int64_t high) {
        std::vector<Vorn16s> x(12);
        for (Vorn16s& v : x) v = static_cast<Vorn16s>(random.integer(low, high));
        return x;
    };
    const std::vector<float> ref = floats(-20, 20);
    const std::vector<Vorn16s> shortRef = shorts(-2000, 2000);
    using Single = std::pair<std::vector<float>, float>;
    using Short = std::pair<std::vector<Vorn16s>, int>;
    constexpr float nan = std::numeric_limits<float>::quiet_NaN();
    // Speech and pauses; from silence; from the ends of the range; with frames that are no numbers.
    followStream(ref, [&](int f) { return Single(floats(-30, 30), f % 300 < 150 ? 2.0f : 3.0f + 0.02f * (f % 100)); });
    followStream(
        ref, [&](int f) { return f < 5000 ? Single(std::vector<float>(12), 0.0f) : Single(floats(-30, 30), 4.5f); });
    followStream(ref, [&](int f) { return Single(f < 20 ? floats(3e38, 3.4e38) : floats(-30, 30), 4.5f); });
    followStream(ref, [&](int f) {
        Single frame(floats(-30, 30), f == 100 ? nan : 4.0f);
        if (f == 5000) frame.first[3] = nan;
        return frame;
    });
    followStream(shortRef, [&](int f) {
        return Short(shorts(-3000, 3000), f % 300 < 150 ? 100 : static_cast<int>(random.integer(200, 300)));
    });
    followStream(shortRef, [&](int f) {
        return f < 5000 ? Short(std::vector<Vorn16s>(12), 0) : Short(shorts(-3000, 3000), 275);
    });
    followStream(shortRef, [&](int f) {
        return Short(std::vector<Vorn16s>(12, static_cast<Vorn16s>(f / 40 % 2 ? 32767 : -32768)), 275);
    });
}

TEST(BlindEqualisation, Checks) {
    expectChecks<Vorn32f>(4.0f);
    expectChecks<Vorn16s>(250);
}

}  // namespace
