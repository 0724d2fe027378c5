// Peaks of a signal or of its moving average.
#include <gtest/gtest.h>

#include <climits>
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

using Flags = std::vector<Vorn8u>;

VornStatus find(const Vorn32f* src, Vorn8u* dst, int len, int q, int m) {
    return vornsFindPeaks_32f8u(src, dst, len, q, m);
}
VornStatus find(const Vorn32s* src, Vorn8u* dst, int len, int q, int m) {
    return vornsFindPeaks_32s8u(src, dst, len, q, m);
}

template <class T>
Flags peaks(const std::vector<T>& x, int q, int m) {
    const Guarded<T> src(x);
    Guarded<Vorn8u> dst(x.size());
    EXPECT_EQ(find(src, dst, static_cast<int>(x.size()), q, m), vornStsNoErr);
    EXPECT_TRUE(dst.surroundingsUntouched());
    return dst.values();
}
template <class T>
void expectPeaks(const std::vector<T>& x, int q, int m) {
    EXPECT_TRUE(test::sameBits(peaks(x, q, m), model::peaks(x, q, m)))
        << "len " << x.size() << ", search " << q << ", average " << m;
}
std::vector<Vorn32s> integers(const std::vector<float>& x) { return std::vector<Vorn32s>(x.begin(), x.end()); }

// Every signal of up to seven values out of three, and a few more steps.
TEST(FindPeaks, EveryShortSignal) {
    for (int len = 1; len <= 7; ++len) {
        int signals = 1;
        for (int i = 0; i < len; ++i) signals *= 3;
        for (int number = 0; number < signals; ++number) {
            std::vector<float> x;
            for (int i = 0, rest = number; i < len; ++i, rest /= 3) x.push_back(static_cast<float>(rest % 3));
            for (int q : {1, 2, 3, 5}) {
                for (int m : {0, 1, 2}) {
                    const auto expected = model::peaks(x, q, m);
                    Flags single(len), fixed(len);
                    const auto ints = integers(x);
                    vornsFindPeaks_32f8u(x.data(), single.data(), len, q, m);
                    ASSERT_EQ(single, expected) << number << " of " << len << ", search " << q << ", average " << m;
                    vornsFindPeaks_32s8u(ints.data(), fixed.data(), len, q, m);
                    ASSERT_EQ(fixed, model::peaks(ints, q, m)) << number << " of " << len << ", " << q << ", " << m;
                }
            }
        }
    }
}

// Slopes of random lengths, flats among them.
std::vector<float> slopes(Random& random, std::size_t len, int longest) {
    std::vector<float> x;
    float value = 0;
    while (x.size() < len) {
        const auto step = static_cast<float>(random.integer(-1, 1) * random.integer(1, 5));
        for (auto n = random.integer(1, longest); n > 0 && x.size() < len; --n) x.push_back(value += step);
    }
    return x;
}

TEST(FindPeaks, EqualsTheModel) {
    Random random(1);
    for (std::size_t len = 1; len <= 140; len += len < 12 ? 1 : 13) {
        for (int q : {1, 2, 4, 127}) {
            for (int m : {0, 1, 3, 20, 127}) {
                expectPeaks(random.floats(len, -1, 1), q, m);
                expectPeaks(slopes(random, len, 9), q, m);
                expectPeaks(integers(slopes(random, len, 9)), q, m);
                expectPeaks(random.integers<Vorn32s>(len), q, m);
            }
        }
    }
    for (std::size_t len : {63, 64, 65, 66, 255, 256, 257, 258, 513, 1100}) {
        for (int q : {1, 3, 30, 64, 65, 127}) {
            for (int m : {0, 1, 5, 64, 126, 127}) {
                expectPeaks(slopes(random, len, 150), q, m);
                expectPeaks(integers(slopes(random, len, 150)), q, m);
                expectPeaks(random.floats(len, -1, 1), q, m);
                expectPeaks(random.integers<Vorn32s>(len), q, m);
            }
        }
    }
    expectPeaks(random.floats(65535, -1, 1), 2, 3);
    expectPeaks(random.integers<Vorn32s>(65535), 1, 2);
    expectPeaks(slopes(random, 65535, 300), 127, 0);
}

// Means that differ in their last place: each is a sum of its own from the first sample to the last.
TEST(FindPeaks, MeansAreSumsInOrder) {
    Random random(2);
    for (int turn = 0; turn < 20; ++turn) {
        auto x = random.pick<float>({1e17f, -1e17f, 1.0f, 3.0f, -7.0f, 0.1f}, 300);
        for (int m : {1, 2, 7, 31}) {
            for (int q : {1, 2}) expectPeaks(x, q, m);
        }
    }
    for (unsigned mode : {RoundingMode::down, RoundingMode::up, RoundingMode::towardZero}) {
        const RoundingMode guard(mode);
        expectPeaks(random.pick<float>({1e17f, -1e17f, 1.0f, 3.0f, -7.0f, 0.1f}, 300), 1, 3);
        expectPeaks(random.integers<Vorn32s>(300, -3, 3), 1, 3);  // truncated, in every mode
        expectPeaks(random.pick<Vorn32s>({INT_MAX, INT_MIN, INT_MAX - 1, INT_MIN + 1}, 300), 1, 40);
    }
    // Extremes of integers, and means just below and above an integer.
    for (int m : {1, 2, 50, 127}) {
        expectPeaks(random.pick<Vorn32s>({INT_MAX, INT_MIN, INT_MAX - 1, INT_MIN + 1}, 400), 1, m);
        expectPeaks(random.integers<Vorn32s>(400, -2, 2), 1, m);
        expectPeaks(random.integers<Vorn32s>(400, INT_MAX - 2, INT_MAX), 1, m);
    }
}

TEST(FindPeaks, HardValues) {
    Random random(3);
    const auto hard = test::hardFloats<float>();
    const std::vector<float> few = {
        0.0f, -0.0f, 1.0f, 2.0f, std::numeric_limits<float>::infinity(), std::numeric_limits<float>::quiet_NaN()};
    for (int turn = 0; turn < 300; ++turn) {
        for (int q : {1, 2}) {
            expectPeaks(random.pick(hard, 70), q, 0);
            expectPeaks(random.pick(few, 70), q, 0);
        }
        expectPeaks(random.pick(hard, 70), 1, 2);
    }
}

TEST(FindPeaks, Literal) {
    EXPECT_EQ(peaks<float>({5}, 1, 0), Flags({1}));
    EXPECT_EQ(peaks<Vorn32s>({5}, 127, 127), Flags({1}));
    for (int q : {1, 4, 127}) EXPECT_EQ(peaks<float>({5, 4, 3, 2, 1}, q, 0), Flags({1, 0, 0, 0, 0}));
    EXPECT_EQ(peaks<float>({1, 2, 3, 4, 5}, 3, 0), Flags({0, 0, 0, 0, 1}));
    EXPECT_EQ(peaks<Vorn32s>({1, 2, 3, 4, 5}, 3, 0), Flags({0, 0, 0, 0, 1}));
    EXPECT_EQ(peaks<Vorn32s>({1, 2, 3, 2, 1}, 1, 4), Flags(5, 0));
    EXPECT_EQ(peaks<Vorn32s>({1, 2, 3, 2, 1}, 1, 100), Flags(5, 0));
    EXPECT_EQ(peaks<float>({0, 1, 2, 2, 1, 0}, 1, 0), Flags(6, 0));  // a plateau
    EXPECT_EQ(peaks<float>({0, 1, 2, 3, 2, 1, 0}, 3, 0), Flags({0, 0, 0, 1, 0, 0, 0}));
    EXPECT_EQ(peaks<float>({0, 1, 2, 3, 2, 1, 0}, 4, 0), Flags({0, 0, 0, 1, 0, 0, 0}));  // both ends are near
    EXPECT_EQ(peaks<float>({9, 9, 0, 1, 2, 1, 0, 9}, 3, 0), Flags(8, 0));
    EXPECT_EQ(peaks<float>({9, 9, 0, 1, 2, 1, 0, 9}, 2, 0), Flags({0, 0, 0, 0, 1, 0, 0, 0}));
    EXPECT_EQ(peaks<float>({5, 4, 3, 4}, 2, 0), Flags({1, 0, 0, 0}));  // one step up is too few
    EXPECT_EQ(peaks<float>({5, 4, 3, 4}, 1, 0), Flags({1, 0, 0, 1}));
    EXPECT_EQ(peaks<float>({5, 4, 3, 4}, 3, 0), Flags({0, 0, 0, 0}));
    // The last step is the signal's own: the mean falls up to it, then rises.
    EXPECT_EQ(peaks<float>({8, 1, 0, 4}, 1, 1), Flags({1, 0, 0, 1}));
    EXPECT_EQ(peaks<float>({9, 3, 0, 3, 2}, 1, 1), Flags({1, 0, 0, 0, 0}));
}

template <class T>
void expectOrder() {
    struct Arguments {
        Guarded<T> data = Guarded<T>(std::vector<T>(9, T(1)));
        Guarded<Vorn8u> out = Guarded<Vorn8u>(9);
        const T* src = data.data();
        Vorn8u* dst = out.data();
        int len = 9, q = 1, m = 0;
    };
    using A = Arguments;
    test::expectCheckOrder<A>([] { return A(); }, [](A& a) { return find(a.src, a.dst, a.len, a.q, a.m); },
                              [](A& a) { return a.out.untouched(); },
                              {{"src", vornStsNullPtrErr, [](A& a) { a.src = nullptr; }},
                               {"dst", vornStsNullPtrErr, [](A& a) { a.dst = nullptr; }},
                               {"len 0", vornStsLengthLimitErr, [](A& a) { a.len = 0; }},
                               {"len 65536", vornStsLengthLimitErr, [](A& a) { a.len = 65536; }},
                               {"search 0", vornStsSizeErr, [](A& a) { a.q = 0; }},
                               {"search 128", vornStsSizeErr, [](A& a) { a.q = 128; }},
                               {"average -1", vornStsSizeErr, [](A& a) { a.m = -1; }},
                               {"average 128", vornStsSizeErr, [](A& a) { a.m = 128; }}});
}
TEST(FindPeaks, ChecksInOrder) {
    expectOrder<Vorn32f>();
    expectOrder<Vorn32s>();
}

}  // namespace
