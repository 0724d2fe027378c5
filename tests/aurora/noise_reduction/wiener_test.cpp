// The gain of the Wiener filter.
#include <algorithm>
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

VornStatus design(const float* in, const float* noise, const float* den, float* dst, int len) {
    return vornsWienerFilterDesign_Aurora_32f(in, noise, den, dst, len);
}
VornStatus design(const Vorn16s* in, const Vorn16s* noise, const Vorn16s* den, Vorn16s* dst, int len) {
    return vornsWienerFilterDesign_Aurora_16s(in, noise, den, dst, len);
}
template <class T>
T gainOf(T in, T noise, T den) {
    T gain;
    EXPECT_EQ(design(&in, &noise, &den, &gain, 1), vornStsNoErr);
    return gain;
}

template <class T>
void expectModel(const std::vector<T>& a, const std::vector<T>& b, const std::vector<T>& c, bool inPlace = false) {
    std::vector<T> expected(a.size());
    for (std::size_t i = 0; i < a.size(); ++i) expected[i] = model::wienerGain(a[i], b[i], c[i]);
    const int len = static_cast<int>(a.size());
    const Guarded<T> in(a), noise(b), den(c), dst(a.size());
    ASSERT_EQ(design(in.data(), noise.data(), den.data(), dst.data(), len), vornStsNoErr);
    for (std::size_t i = 0; i < a.size(); ++i) {
        ASSERT_TRUE(test::same(dst[i], expected[i])) << a[i] << ", " << b[i] << ", " << c[i] << ": " << dst[i]
                                                     << " instead of " << expected[i] << ", " << i << " of " << len;
    }
    EXPECT_TRUE(dst.surroundingsUntouched());
    for (const Guarded<T>* over : {&in, &noise, &den}) {
        if (!inPlace) break;
        Guarded<T> x(a), y(b), z(c);
        Guarded<T>& result = over == &in ? x : over == &noise ? y : z;
        ASSERT_EQ(design(x.data(), y.data(), z.data(), result.data(), len), vornStsNoErr);
        EXPECT_TRUE(sameBits(result.data(), expected.data(), a.size())) << "over an operand, " << len;
    }
}

template <class T>
void expectModelAtAllLengths() {
    Random random(1);
    for (std::size_t len = 1; len <= 150; ++len) {
        for (int turn = 0; turn < 8; ++turn) {
            expectModel(valuesOf(random, len, turn, T()), valuesOf(random, len, turn / 2, T()),
                        valuesOf(random, len, turn, T()), turn < 2);
        }
    }
}
TEST(WienerGain, EqualsTheModel) {
    expectModelAtAllLengths<float>();
    expectModelAtAllLengths<Vorn16s>();
}

// All triples of hard values meet.
template <class T>
void expectModelOfTriples(const std::vector<T>& hard) {
    for (T noise : hard) {
        std::vector<T> a, b, c;
        for (T x : hard) {
            for (T y : hard) a.push_back(x), b.push_back(noise), c.push_back(y);
        }
        expectModel(a, b, c);
    }
}
TEST(WienerGain, EqualsTheModelOnTriplesOfHardValues) {
    expectModelOfTriples(test::hardFloats<float>());
    expectModelOfTriples(test::hardIntegers<Vorn16s>());
}

// Every noise, and every spectrum and denoised one with the noises whose inverses differ most.
TEST(WienerGain, ShortsEqualTheModelOnEveryValue) {
    Random random(2);
    constexpr std::size_t all = 65536;
    Shorts every(all);
    for (std::size_t i = 0; i < all; ++i) every[i] = static_cast<Vorn16s>(static_cast<int>(i) - 32768);
    for (int turn = 0; turn < 3; ++turn) {
        expectModel(random.integers<Vorn16s>(all), every, random.integers<Vorn16s>(all));
        for (Vorn16s noise : {1, -1, 2, -3, 127, 5461, 5462, 8192, 8193, 16384, -16384, 16385}) {
            const Shorts same(all, noise);
            expectModel(every, same, random.integers<Vorn16s>(all, -100, 100));
            expectModel(random.integers<Vorn16s>(all, -100, 100), same, every);
        }
    }
}

// The first gain is largest beside its pole, at eta = -4096 in Q12: where it stands, and next to it.
TEST(WienerGain, ShortsEqualTheModelAroundThePole) {
    Shorts a, b, c;
    for (int noise : {1, -1, 2, -2, 3, 5, 17, 100, 4096, 16384, -16384}) {
        const int inverse = 16384 / noise;
        for (int den = -600; den <= 600; ++den) {
            // Around the difference that would give -4096.
            const auto near = static_cast<int>((-4096.0 * 16384.0 / inverse - den * 4014.0) / 82.0);
            for (int over = std::max(near - 5, 0); over <= std::min(near + 5, 32767 - std::max(noise, 0)); ++over) {
                for (int in : {over + noise, 32767, -32768}) {
                    a.push_back(static_cast<Vorn16s>(in));
                    b.push_back(static_cast<Vorn16s>(noise));
                    c.push_back(static_cast<Vorn16s>(den));
                }
            }
        }
    }
    EXPECT_GT(a.size(), 10000u);
    expectModel(a, b, c);
    std::size_t poles = 0;  // where the first gain has no divisor
    for (std::size_t i = 0; i < a.size(); ++i) {
        const int over = std::max(a[i] - b[i], 0), inverse = 16384 / b[i];
        poles += ((std::int64_t{c[i]} * 4014 + over * 82) * inverse) >> 14 == -4096;
    }
    EXPECT_GT(poles, 100u);
}

TEST(WienerGain, LiteralShorts) {
    for (Vorn16s in : {0, 1, -1, 32767, -32768}) {
        for (Vorn16s den : {0, 1, -1, 32767, -32768}) {
            EXPECT_EQ(gainOf<Vorn16s>(in, 0, den), 1206) << "no noise";
        }
    }
    EXPECT_EQ(gainOf<Vorn16s>(0, 100, 0), 1206) << "no signal: 1301 << 7 over 138";
    EXPECT_EQ(gainOf<Vorn16s>(100, 10, 50), 14623);
    EXPECT_EQ(gainOf<Vorn16s>(32767, 1, 32767), 16383);
    EXPECT_EQ(gainOf<Vorn16s>(2007, 1, -42), 1206) << "eta is -4096: -42 x 4014 + 2006 x 82";
}

TEST(WienerGain, LiteralSingles) {
    const float floorGain = 0.07943282276391983f / (0.07943282276391983f + 1.0f);
    EXPECT_NEAR(floorGain, 0.073587, 1e-6);
    for (float zero : {0.0f, -0.0f}) {
        for (float in : {0.0f, 1.0f, -1.0f, 1e30f, inf, -inf, noNumber}) {
            for (float den : {0.0f, 1.0f, -1.0f, 1e30f, inf, noNumber}) EXPECT_EQ(gainOf(in, zero, den), floorGain);
        }
    }
    EXPECT_EQ(gainOf(0.0f, 1.0f, 0.0f), floorGain);
    EXPECT_EQ(gainOf(noNumber, 1.0f, 1.0f), floorGain);
    EXPECT_EQ(gainOf(1.0f, noNumber, 1.0f), floorGain);
    EXPECT_EQ(gainOf(1.0f, 1.0f, noNumber), floorGain);
    // in 4, noise 1, den 2: eta1 = 1.96 + 0.06 = 2.02, h1 = 2.02/3.02, eta2 = 2.6755, gain 0.72793
    EXPECT_NEAR(gainOf(4.0f, 1.0f, 2.0f), 0.72793f, 1e-5f);
    EXPECT_GT(gainOf(1e6f, 1.0f, 1e6f), 0.999f);
}

// The gain rises with the spectrum, and with the denoised spectrum of the frame before; from its floor to one.
TEST(WienerGain, RisesFromItsFloorToOne) {
    const float floorGain = gainOf(0.0f, 1.0f, 0.0f), nearly = 1.0f - 3e-7f;  // but for roundings
    for (float noise : {1e-6f, 0.3f, 1.0f, 777.0f, 1e10f}) {
        float before = 0.0f, beforeOfDen = 0.0f;
        for (float ratio = 1e-4f; ratio < 1e6f; ratio *= 1.05f) {
            const float gain = gainOf(ratio * noise, noise, noise);
            EXPECT_GE(gain, nearly * before) << noise << " times " << ratio;
            EXPECT_GE(gain, floorGain);
            EXPECT_LE(gain, 1.0f);
            before = gain;
            const float ofDen = gainOf(2 * noise, noise, ratio * noise);
            EXPECT_GE(ofDen, nearly * beforeOfDen) << noise << " times " << ratio;
            beforeOfDen = ofDen;
        }
        EXPECT_GT(before, 0.999f);
        EXPECT_NEAR(beforeOfDen, 2.0f / 3.0f, 1e-3f) << "the first gain has come to one";
    }
}

// Where the inverse of the noise is exact, the integers give the gain of the singles to their resolution. Never below
// 1206, and always below one.
TEST(WienerGain, ShortsAreNearTheSingles) {
    Random random(3);
    for (Vorn16s noise : {16, 64, 128, 256}) {
        for (int i = 0; i < 20000; ++i) {
            const auto in = static_cast<Vorn16s>(random.integer(0, 4000)),
                       den = static_cast<Vorn16s>(random.integer(0, 4000));
            const float single = gainOf(static_cast<float>(in), static_cast<float>(noise), static_cast<float>(den));
            const float fixed = static_cast<float>(gainOf(in, noise, den)) / 16384;
            ASSERT_NEAR(fixed, single, 1.0f / static_cast<float>(noise)) << in << " " << noise << " " << den;
        }
    }
    for (int i = 0; i < 200000; ++i) {
        const Vorn16s gain = gainOf(random.anyBits<Vorn16s>(), random.anyBits<Vorn16s>(), random.anyBits<Vorn16s>());
        ASSERT_GE(gain, 1206);
        ASSERT_LT(gain, 16384);
    }
}

// Singles follow the caller's mode; integers do not.
TEST(WienerGain, RoundingModes) {
    Random random(4);
    for (unsigned mode : modes) {
        const test::RoundingMode inMode(mode);
        expectModel(random.floats(300, 0.0, 10.0), random.floats(300, 0.0, 10.0), random.floats(300, 0.0, 10.0));
        expectModel(random.integers<Vorn16s>(3000, -3000, 3000), random.integers<Vorn16s>(3000, -300, 300),
                    random.integers<Vorn16s>(3000, -300, 300));
        EXPECT_EQ(test::RoundingMode::current(), mode);
    }
}

// A result that goes past the cache, against pieces that do not.
TEST(WienerGain, LongSpectra) {
    constexpr std::size_t len = (33 << 20) / 2, piece = 1 << 16;
    Shorts a(len), b(len), y(len), part(piece);
    for (std::size_t i = 0; i < len; ++i) {
        a[i] = static_cast<Vorn16s>(i * 7919);
        b[i] = static_cast<Vorn16s>(i % 509);
    }
    ASSERT_EQ(design(a.data(), b.data(), a.data(), y.data(), static_cast<int>(len)), vornStsNoErr);
    for (std::size_t i = 0; i < len; i += piece) {
        ASSERT_EQ(design(&a[i], &b[i], &a[i], part.data(), piece), vornStsNoErr);
        ASSERT_TRUE(sameBits(&y[i], part.data(), piece)) << i;
    }
}

template <class T>
void expectNoAlignmentMatters() {
    Random random(5);
    for (std::size_t len : {1, 17, 65, 300}) {
        const auto a = valuesOf(random, len, 0, T()), b = valuesOf(random, len, 0, T()),
                   c = valuesOf(random, len, 0, T());
        std::vector<T> expected(len);
        for (std::size_t i = 0; i < len; ++i) expected[i] = model::wienerGain(a[i], b[i], c[i]);
        for (int moved = 0; moved < 4; ++moved) {
            for (std::size_t bytes = 0; bytes < 64; bytes += sizeof(T)) {
                const auto at = [&](int which) { return which == moved ? bytes : 0; };
                Offset<T> in(len, at(0)), noise(len, at(1)), den(len, at(2)), dst(len, at(3));
                in.assign(a), noise.assign(b), den.assign(c);
                ASSERT_EQ(design(in.data(), noise.data(), den.data(), dst.data(), static_cast<int>(len)), vornStsNoErr);
                EXPECT_TRUE(sameBits(dst.data(), expected.data(), len)) << moved << " at " << bytes;
                EXPECT_TRUE(dst.surroundingsUntouched());
            }
        }
    }
}
TEST(WienerGain, NoAlignmentMatters) {
    expectNoAlignmentMatters<float>();
    expectNoAlignmentMatters<Vorn16s>();
}

template <class T>
void expectChecks() {
    struct Arguments {
        Guarded<T> read = Guarded<T>(std::vector<T>(5)), out = Guarded<T>(5);
        const T *in = read.data(), *noise = read.data(), *den = read.data();
        T* dst = out.data();
        int len = 5;
    };
    using A = Arguments;
    test::expectCheckOrder<A>([] { return A(); }, [](A& a) { return design(a.in, a.noise, a.den, a.dst, a.len); },
                              [](A& a) { return a.out.untouched(); },
                              {{"in", vornStsNullPtrErr, [](A& a) { a.in = nullptr; }},
                               {"noise", vornStsNullPtrErr, [](A& a) { a.noise = nullptr; }},
                               {"den", vornStsNullPtrErr, [](A& a) { a.den = nullptr; }},
                               {"dst", vornStsNullPtrErr, [](A& a) { a.dst = nullptr; }},
                               {"len 0", vornStsSizeErr, [](A& a) { a.len = 0; }},
                               {"least len", vornStsSizeErr, [](A& a) { a.len = INT32_MIN; }}});
}
TEST(WienerGain, ChecksInOrder) {
    expectChecks<float>();
    expectChecks<Vorn16s>();
}

}  // namespace
