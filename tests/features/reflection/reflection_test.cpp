// Features of reflection coefficients.
#include "model/reflection.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <climits>
#include <cmath>
#include <functional>
#include <limits>
#include <vector>

#include "support/allocation.h"
#include "support/expect.h"
#include "support/guarded.h"
#include "support/precise.h"
#include "support/rounding_mode.h"
#include "support/values.h"
#include "vornsr.h"

namespace {

using test::Guarded;
using test::Offset;
using test::Random;
using test::sameBits;

constexpr float inf = std::numeric_limits<float>::infinity(), nan = std::numeric_limits<float>::quiet_NaN();

// The members behind one face. Those of one operand do not look at b. in, out and val go to members that have them.
struct Settings {
    int in = 15, out = 0;
    float val = 0.9f;
};
template <class T>
struct Member {
    const char* name;
    bool pairs, limited;
    VornStatus (*call)(const T* a, const T* b, T* dst, int len, const Settings& s);
    // The values before they become integers.
    std::function<model::Features(const std::vector<T>& a, const std::vector<T>& b, const Settings& s)> expected;
};
using Floats = std::vector<float>;
using Shorts = std::vector<Vorn16s>;

// The logarithm is the library's own: the same bits.
model::Features logAreaRatios(const Floats& k, float val) {
    Floats y = model::limitedAreaRatios(k, val);
    if (!y.empty()) {
        EXPECT_EQ(vornsLn_32f_I(y.data(), static_cast<int>(y.size())), vornStsNoErr);
    }
    return {y, vornStsNoErr};
}

const std::vector<Member<float>> singleMembers = {
    {"AR_32f", false, false,
     [](auto* a, auto*, auto* dst, int len, const Settings&) { return vornsReflectionToAR_32f(a, dst, len); },
     [](auto& a, auto&, const Settings&) { return model::areaRatios(a); }},
    {"TrueAR_32f", false, false,
     [](auto* a, auto*, auto* dst, int len, const Settings&) { return vornsReflectionToTrueAR_32f(a, dst, len); },
     [](auto& a, auto&, const Settings&) { return model::trueAreaRatios(a); }},
    {"LAR_32f", false, true,
     [](auto* a, auto*, auto* dst, int len, const Settings& s) { return vornsReflectionToLAR_32f(a, dst, len, s.val); },
     [](auto& a, auto&, const Settings& s) { return logAreaRatios(a, s.val); }},
    {"Tilt_32f", true, false,
     [](auto* a, auto* b, auto* dst, int len, const Settings&) { return vornsReflectionToTilt_32f(a, b, dst, len); },
     [](auto& a, auto& b, const Settings&) { return model::tilts(a, b); }},
    {"AbsTilt_32f", true, false,
     [](auto* a, auto* b, auto* dst, int len, const Settings&) { return vornsReflectionToAbsTilt_32f(a, b, dst, len); },
     [](auto& a, auto& b, const Settings&) { return model::absTilts(a, b); }},
};

long long negated(int scale) { return -static_cast<long long>(scale); }
float factorOfScale(long long scale) {
    return model::singleOfScale(static_cast<int>(std::clamp<long long>(scale, -1000, 1000)));
}

const std::vector<Member<Vorn16s>> shortMembers = {
    {"AR_16s", false, false,
     [](auto* a, auto*, auto* dst, int len, const Settings& s) {
         return vornsReflectionToAR_16s_Sfs(a, s.in, dst, len, s.out);
     },
     [](auto& a, auto&, const Settings& s) {
         return model::areaRatios(model::scaledSingles(a, factorOfScale(negated(s.in))));
     }},
    {"TrueAR_16s", false, false,
     [](auto* a, auto*, auto* dst, int len, const Settings& s) {
         return vornsReflectionToTrueAR_16s_Sfs(a, s.in, dst, len, s.out);
     },
     [](auto& a, auto&, const Settings& s) {
         return model::trueAreaRatios(model::scaledSingles(a, factorOfScale(negated(s.in))));
     }},
    {"LAR_16s", false, true,
     [](auto* a, auto*, auto* dst, int len, const Settings& s) {
         return vornsReflectionToLAR_16s_Sfs(a, s.in, dst, len, s.out, s.val);
     },
     [](auto& a, auto&, const Settings& s) {
         return logAreaRatios(model::scaledSingles(a, factorOfScale(s.in)), s.val);
     }},
    {"Tilt_16s", true, false,
     [](auto* a, auto* b, auto* dst, int len, const Settings& s) {
         return vornsReflectionToTilt_16s_Sfs(a, b, dst, len, s.out);
     },
     [](auto& a, auto& b, const Settings&) {
         return model::tilts(model::scaledSingles(a, 1.0f), model::scaledSingles(b, 1.0f));
     }},
    {"AbsTilt_16s", true, false,
     [](auto* a, auto* b, auto* dst, int len, const Settings& s) {
         return vornsReflectionToAbsTilt_16s_Sfs(a, b, dst, len, s.out);
     },
     [](auto& a, auto& b, const Settings&) {
         return model::absTilts(model::scaledSingles(a, 1.0f), model::scaledSingles(b, 1.0f));
     }},
};

const std::vector<float>& resultOf(const Member<float>&, const model::Features& made, const Settings&) {
    return made.values;
}
Shorts resultOf(const Member<Vorn16s>& member, const model::Features& made, const Settings& s) {
    return model::shorts(made.values, member.limited ? vornRndZero : vornRndNear, s.out);
}

template <class T>
void expectModel(const Member<T>& member, const std::vector<T>& a, const std::vector<T>& b, const Settings& s) {
    const Guarded<T> src1(a), src2(b), dst(a.size());
    const VornStatus status = member.call(src1, src2, dst, static_cast<int>(a.size()), s);
    const model::Features made = member.expected(a, b, s);
    EXPECT_EQ(status, made.status) << member.name << " " << a.size();
    EXPECT_TRUE(sameBits(dst.values(), resultOf(member, made, s)))
        << member.name << " " << a.size() << " scales " << s.in << " " << s.out;
    EXPECT_TRUE(dst.surroundingsUntouched());
}

std::vector<std::size_t> lengths() {
    std::vector<std::size_t> list;
    for (std::size_t len = 1; len <= 70; ++len) list.push_back(len);
    for (std::size_t len : {100, 101, 255, 256, 257, 511, 512, 513, 1023, 1024, 1025, 2000}) list.push_back(len);
    return list;
}
std::vector<float> hardSingles() {
    auto values = test::hardFloats<float>();
    for (float x : {0.9f, 0.99f, 0.99999994f, 1.0000001f, 0.999f}) values.push_back(x), values.push_back(-x);
    return values;
}

TEST(ReflectionFeatures, SinglesEqualTheModelBitForBit) {
    Random random(1);
    const auto hard = hardSingles();
    for (const auto& member : singleMembers) {
        for (std::size_t len : lengths()) {
            expectModel(member, random.floats(len, -1.0, 1.0), random.floats(len, -1.0, 1.0), {});
            expectModel(member, random.pick(hard, len), random.pick(hard, len), {.val = 0.75f});
        }
    }
}

TEST(ReflectionFeatures, IntegersEqualTheModelBitForBit) {
    Random random(2);
    const auto hard = test::hardIntegers<Vorn16s>();
    for (const auto& member : shortMembers) {
        const int in = member.limited ? 15 : -15;
        for (std::size_t len : lengths()) {
            expectModel(member, random.integers<Vorn16s>(len), random.integers<Vorn16s>(len), {in, -12});
            expectModel(member, random.pick(hard, len), random.pick(hard, len), {in, -5, 0.999f});
        }
    }
}

TEST(ReflectionFeatures, EveryScale) {
    Random random(3);
    std::vector<int> scales;
    for (int scale = -20; scale <= 20; ++scale) scales.push_back(scale);
    for (int limit : {-150, -149, -128, -127, -126, 126, 127, 128, 149, 150}) {
        for (int d : {-1, 0, 1}) scales.push_back(limit + d);
    }
    for (int scale : {INT_MIN, INT_MIN + 1, INT_MAX - 1, INT_MAX}) scales.push_back(scale);
    const auto hard = test::hardIntegers<Vorn16s>();
    for (const auto& member : shortMembers) {
        for (int scale : scales) {
            expectModel(member, random.pick(hard, 37), random.pick(hard, 37), {scale, -10});
            expectModel(member, random.pick(hard, 37), random.pick(hard, 37), {-15, scale});
            expectModel(member, random.integers<Vorn16s>(37), random.integers<Vorn16s>(37), {scale, scale});
        }
    }
}

// Special elements at every place of a vector, the rest of it ordinary.
TEST(ReflectionFeatures, SpecialElementsAtEveryPlace) {
    for (const auto& member : singleMembers) {
        for (std::size_t len : {1, 3, 4, 5, 15, 16, 17, 33, 40}) {
            for (std::size_t place = 0; place < len; ++place) {
                for (float special : {-1.0f, 1.0f, 0.0f, -0.0f, inf, -inf, nan}) {
                    Floats a(len, 0.25f), b(len, 0.5f);
                    a[place] = special;
                    b[place] = -special;
                    expectModel(member, a, b, {});
                }
            }
        }
    }
}

template <class T>
void expectInPlaceAndAnyAlignment(const Member<T>& member, const std::vector<T>& a, const std::vector<T>& b) {
    const Settings s{-15, -8};
    const int len = static_cast<int>(a.size());
    Guarded<T> whole(a.size());
    const VornStatus status = member.call(a.data(), b.data(), whole, len, s);
    for (const std::vector<T>* from : {&a, &b}) {
        if (from == &b && !member.pairs) continue;
        Guarded<T> srcDst(*from);
        const VornStatus inPlace =
            from == &a ? member.call(srcDst, b.data(), srcDst, len, s) : member.call(a.data(), srcDst, srcDst, len, s);
        EXPECT_EQ(inPlace, status) << member.name;
        EXPECT_TRUE(sameBits(srcDst.values(), whole.values())) << member.name << " in place, " << len;
        EXPECT_TRUE(srcDst.surroundingsUntouched());
    }
    for (std::size_t x = 0; x < 64; x += 12) {
        for (std::size_t y = 0; y < 64; y += 20) {
            for (std::size_t z = 0; z < 64; z += 4) {
                Offset<T> src1(a.size(), x), src2(b.size(), y), dst(a.size(), z);
                src1.assign(a), src2.assign(b);
                EXPECT_EQ(member.call(src1, src2, dst, len, s), status) << member.name;
                EXPECT_TRUE(sameBits(dst.data(), whole.data(), a.size())) << member.name << " " << x << " " << z;
                EXPECT_TRUE(dst.surroundingsUntouched());
            }
        }
    }
}

TEST(ReflectionFeatures, InPlaceAndAtAnyAddress) {
    Random random(4);
    const auto hard = hardSingles();
    const auto hardShorts = test::hardIntegers<Vorn16s>();
    for (std::size_t len : {5, 40, 200, 700}) {
        for (const auto& member : singleMembers)
            expectInPlaceAndAnyAlignment(member, random.pick(hard, len), random.pick(hard, len));
        for (const auto& member : shortMembers)
            expectInPlaceAndAnyAlignment(member, random.pick(hardShorts, len), random.pick(hardShorts, len));
    }
}

// So long that the result may bypass the cache: each piece of it is what a short call makes of that piece.
TEST(ReflectionFeatures, LongVectorsAreTheirPieces) {
    const std::size_t len = (9u << 20) + 5, piece = 1000;  // above 32 MB
    Floats a(len), dst(len), expected(piece);
    for (std::size_t i = 0; i < len; ++i) a[i] = static_cast<float>(i % 4093) / 4093.0f - 0.5f;
    a[len / 2] = -1.0f;
    const float* b = a.data() + 1;
    for (const auto& member : singleMembers) {
        if (&member == &singleMembers[1]) continue;  // its elements depend on those before
        const VornStatus status = member.call(a.data(), b, dst.data(), static_cast<int>(len) - 1, {});
        if (&member == &singleMembers[0]) {
            EXPECT_EQ(status, vornStsDivByZero);
        }
        for (std::size_t i = 0; i < len - 1; i += piece * 97) {
            const std::size_t n = std::min(piece, len - 1 - i);
            member.call(a.data() + i, b + i, expected.data(), static_cast<int>(n), {});
            ASSERT_TRUE(sameBits(dst.data() + i, expected.data(), n)) << member.name << " from " << i;
        }
    }
}

// What is in the middle of an element's way keeps the caller's mode; integers are rounded by their own.
TEST(ReflectionFeatures, CallersRoundingModes) {
    Random random(6);
    const auto hard = hardSingles();
    const auto hardShorts = test::hardIntegers<Vorn16s>();
    for (unsigned mode : {test::RoundingMode::down, test::RoundingMode::up, test::RoundingMode::towardZero}) {
        for (std::size_t len : {1, 7, 40, 600}) {
            const Floats x = random.pick(hard, len), y = random.pick(hard, len);
            const Floats u = random.floats(len, -1.0, 1.0), v = random.floats(len, -1.0, 1.0);
            const Shorts p = random.pick(hardShorts, len), q = random.integers<Vorn16s>(len);
            const test::RoundingMode directed(mode);
            for (const auto& member : singleMembers) {
                expectModel(member, x, y, {});
                expectModel(member, u, v, {});
                EXPECT_EQ(test::RoundingMode::current(), mode);
            }
            for (const auto& member : shortMembers) {
                expectModel(member, p, q, {member.limited ? 15 : -15, -9});
                EXPECT_EQ(test::RoundingMode::current(), mode);
            }
        }
    }
}

Floats singles(const Member<float>& member, const Floats& a, const Floats& b, VornStatus expected,
               const Settings& s = {}) {
    Guarded<float> dst(a.size());
    EXPECT_EQ(member.call(a.data(), b.data(), dst, static_cast<int>(a.size()), s), expected) << member.name;
    return dst.values();
}
const Member<float>&AR = singleMembers[0], &TrueAR = singleMembers[1], &LAR = singleMembers[2],
      &Tilt = singleMembers[3], &AbsTilt = singleMembers[4];

TEST(ReflectionFeatures, LiteralAreaRatios) {
    EXPECT_EQ(singles(AR, {0.0f, 1.0f, 0.5f, -0.5f}, {}, vornStsNoErr), (Floats{1.0f, 0.0f, 0.5f / 1.5f, 3.0f}));
    EXPECT_EQ(singles(AR, {0.0f, -1.0f, 3.0f}, {}, vornStsDivByZero), (Floats{1.0f, inf, -0.5f}));
    const Floats infinite = singles(AR, {inf, -inf, nan}, {}, vornStsNoErr);
    for (float x : infinite) EXPECT_TRUE(std::isnan(x)) << "no warning, and no infinity";
    // The divisor is a zero whose sign is the mode's.
    const test::RoundingMode down(test::RoundingMode::down);
    EXPECT_EQ(singles(AR, {-1.0f}, {}, vornStsDivByZero), Floats{inf});
}

TEST(ReflectionFeatures, LiteralTrueAreaRatios) {
    EXPECT_EQ(singles(TrueAR, {0.0f, 1.0f, 0.5f}, {}, vornStsNoErr), (Floats{1.0f, 0.0f, 0.0f}));
    EXPECT_EQ(singles(TrueAR, {-1.0f, 0.5f}, {}, vornStsDivByZero), (Floats{inf, inf}));
    EXPECT_EQ(singles(TrueAR, {1.0f, -1.0f, 0.0f}, {}, vornStsDivByZero), (Floats{0.0f, -inf, -inf}))
        << "the product before was not above 0";
    EXPECT_EQ(singles(TrueAR, {-1.0f, 2.0f, 2.0f, -3.0f, 0.5f}, {}, vornStsDivByZero),
              (Floats{inf, -inf, inf, -inf, -inf}))
        << "a k outside turns the sign, one inside keeps an infinity below zero where it is";
    const Floats ended = singles(TrueAR, {0.5f, -1.0f, 1.0f, 0.25f, -1.0f}, {}, vornStsDivByZero);
    EXPECT_EQ(ended[0], 0.5f / 1.5f);
    EXPECT_EQ(ended[1], inf);
    for (int n : {2, 3, 4}) EXPECT_TRUE(std::isnan(ended[static_cast<std::size_t>(n)])) << n;
    // A not-a-number makes the product one, quietly; behind a -1 it counts as outside.
    const Floats quiet = singles(TrueAR, {0.5f, nan, 0.5f}, {}, vornStsNoErr);
    EXPECT_TRUE(std::isnan(quiet[1]) && std::isnan(quiet[2]));
    EXPECT_EQ(singles(TrueAR, {-1.0f, nan, nan}, {}, vornStsDivByZero), (Floats{inf, -inf, inf}));
    const Floats behind = singles(TrueAR, {nan, -1.0f, 2.0f}, {}, vornStsDivByZero);
    EXPECT_TRUE(std::isnan(behind[0]));
    EXPECT_EQ(behind[1], -inf) << "a not-a-number is not above 0";
    EXPECT_EQ(behind[2], inf);
}

TEST(ReflectionFeatures, LiteralLogAreaRatios) {
    const Floats limited = singles(LAR, {0.999f, 0.9f, -0.999f, -0.9f, inf, -inf, 0.0f}, {}, vornStsNoErr);
    EXPECT_EQ(limited[0], limited[1]);
    EXPECT_EQ(limited[2], limited[3]);
    EXPECT_EQ(limited[4], limited[1]);
    EXPECT_EQ(limited[5], limited[3]);
    EXPECT_EQ(limited[6], 0.0f);
    EXPECT_NEAR(limited[1], -2.9444390, 1e-6);  // ln(0.1 / 1.9)
    EXPECT_TRUE(std::isnan(singles(LAR, {nan}, {}, vornStsNoErr)[0]));
    const Floats widest = singles(LAR, {1.0f, -1.0f}, {}, vornStsNoErr, {.val = 0.99999994f});
    EXPECT_NEAR(widest[0], -17.3286795, 1e-5);  // ln 2^-25
    EXPECT_NEAR(widest[1], 17.3286795, 1e-5);
    Guarded<Vorn16s> dst(3);
    const Shorts k = {16384, -16384, 8192};  // 0.5, -0.5, 0.25 by 2^-15
    ASSERT_EQ(vornsReflectionToLAR_16s_Sfs(k.data(), 15, dst, 3, -10, 0.9f), vornStsNoErr);
    EXPECT_EQ(dst.values(), (Shorts{-1124, 1124, -523}));  // 1024 x -1.0986, 1.0986, -0.5108, truncated
}

TEST(ReflectionFeatures, LiteralTilts) {
    EXPECT_EQ(singles(Tilt, {1.0f, 3.0f, -3.0f}, {-1.0f, 1.0f, 1.0f}, vornStsDivByZero), (Floats{inf, 0.5f, -1.0f}));
    EXPECT_EQ(singles(Tilt, {0.0f, -0.0f, 1.0f}, {0.0f, -0.0f, 0.0f}, vornStsDivByZero), (Floats{inf, inf, 1.0f}));
    EXPECT_EQ(singles(AbsTilt, {1.0f, 3.0f, -3.0f}, {-1.0f, 1.0f, 1.0f}, vornStsNoErr), (Floats{0.0f, 0.5f, 0.5f}));
    EXPECT_EQ(singles(AbsTilt, {0.0f, 0.0f}, {-0.0f, 2.0f}, vornStsDivByZero), (Floats{inf, -1.0f}));
    const float most = std::numeric_limits<float>::max();
    EXPECT_EQ(singles(AbsTilt, {most}, {0.0f}, vornStsNoErr)[0], inf) << "2|a| overflows";
    Guarded<Vorn16s> dst(3);
    const Shorts a = {-32768, 100, 0}, b = {0, -300, 0};
    ASSERT_EQ(vornsReflectionToAbsTilt_16s_Sfs(a.data(), b.data(), dst, 3, -8), vornStsDivByZero);
    EXPECT_EQ(dst.values(), (Shorts{256, -128, 32767}));
    ASSERT_EQ(vornsReflectionToTilt_16s_Sfs(a.data(), b.data(), dst, 3, -8), vornStsDivByZero);
    EXPECT_EQ(dst.values(), (Shorts{-256, 256, 32767})) << "the magnitude of -32768 is 32768";
}

TEST(ReflectionFeatures, LiteralScales) {
    Guarded<Vorn16s> dst(3);
    const Shorts k = {1, -1, 0};
    ASSERT_EQ(vornsReflectionToAR_16s_Sfs(k.data(), -1, dst, 3, -10), vornStsNoErr);
    EXPECT_EQ(dst.values(), (Shorts{341, 3072, 1024})) << "k = 0.5, -0.5, 0: 2^scaleIn; ratios 1/3, 3, 1 times 1024";
    ASSERT_EQ(vornsReflectionToLAR_16s_Sfs(k.data(), 1, dst, 3, -10, 0.9f), vornStsNoErr);
    EXPECT_EQ(dst.values(), (Shorts{-1124, 1124, 0})) << "k = 0.5, -0.5, 0: 2^-scaleIn";
    ASSERT_EQ(vornsReflectionToTrueAR_16s_Sfs(k.data(), -1, dst, 3, -1), vornStsNoErr);
    EXPECT_EQ(dst.values(), (Shorts{1, 2, 2})) << "1/3, 1, 1 times 2, rounded";
    ASSERT_EQ(vornsReflectionToAR_16s_Sfs(k.data(), 0, dst, 3, 0), vornStsDivByZero);
    EXPECT_EQ(dst.values(), (Shorts{0, 32767, 1}));
    // The opposite of the smallest scale is the largest: a factor of 0, and every k is 0.
    ASSERT_EQ(vornsReflectionToAR_16s_Sfs(k.data(), INT_MIN, dst, 3, 0), vornStsNoErr);
    EXPECT_EQ(dst.values(), (Shorts{1, 1, 1}));
    // Ties of the store go to even: ratios of 1/2 and 3/2.
    const Shorts a = {3, 5}, b = {1, -1};
    ASSERT_EQ(vornsReflectionToTilt_16s_Sfs(a.data(), b.data(), dst, 2, 0), vornStsNoErr);
    EXPECT_EQ(dst[0], 0);
    EXPECT_EQ(dst[1], 1);
}

// A flag that was raised before the call says nothing about the call.
TEST(ReflectionFeatures, StaleFlagsAreNotHonoured) {
    const unsigned before = _mm_getcsr();
    _mm_setcsr(before | 0x3F);
    Floats a(20, 0.5f), b(20, 0.25f);
    a[3] = nan;
    for (const auto& member : singleMembers) {
        const Floats dst = singles(member, a, b, vornStsNoErr);
        EXPECT_TRUE(std::isnan(dst[3])) << member.name;
    }
    _mm_setcsr(before);
}

TEST(ReflectionFeatures, NothingIsAllocated) {
    if (!test::FailAllocation::available()) GTEST_SKIP() << "the sanitizer's allocator stands in the place of ours";
    Random random(7);
    const Shorts a = random.integers<Vorn16s>(5000), b = random.integers<Vorn16s>(5000);
    Shorts dst(5000);
    for (const auto& member : shortMembers) {
        const test::FailAllocation count(1);
        EXPECT_GE(member.call(a.data(), b.data(), dst.data(), 5000, {}), vornStsNoErr) << member.name;
        EXPECT_EQ(count.calls(), 0) << member.name;
    }
}

template <class T>
void expectChecksInOrder(const Member<T>& member) {
    struct Arguments {
        std::vector<T> data = std::vector<T>(8, T(0));
        Guarded<T> out = Guarded<T>(8);
        const T *src1 = data.data(), *src2 = data.data();
        T* dst = out.data();
        int len = 8;
        Settings settings;
    };
    using A = Arguments;
    std::vector<test::Rule<A>> rules = {{"src1", vornStsNullPtrErr, [](A& a) { a.src1 = nullptr; }},
                                        {"dst", vornStsNullPtrErr, [](A& a) { a.dst = nullptr; }}};
    if (member.pairs) rules.push_back({"src2", vornStsNullPtrErr, [](A& a) { a.src2 = nullptr; }});
    rules.push_back({"len 0", vornStsSizeErr, [](A& a) { a.len = 0; }});
    rules.push_back({"len -1", vornStsSizeErr, [](A& a) { a.len = -1; }});
    rules.push_back({"len INT_MIN", vornStsSizeErr, [](A& a) { a.len = INT_MIN; }});
    if (member.limited) {
        for (float val : {0.0f, -0.0f, -0.5f, 1.0f, 1.5f, inf, -inf, nan})
            rules.push_back({"val", vornStsRangeErr, [=](A& a) { a.settings.val = val; }});
    }
    test::expectCheckOrder<A>([] { return A(); },
                              [&](A& a) { return member.call(a.src1, a.src2, a.dst, a.len, a.settings); },
                              [](A& a) { return a.out.untouched(); }, rules);
}

TEST(ReflectionFeatures, ChecksInOrder) {
    for (const auto& member : singleMembers) expectChecksInOrder(member);
    for (const auto& member : shortMembers) expectChecksInOrder(member);
}

TEST(ReflectionFeatures, SmallestAndLargestLimits) {
    for (float val : {std::numeric_limits<float>::denorm_min(), 0.99999994f}) {
        for (float x : singles(LAR, {-1.0f, -0.5f, 0.0f, 0.5f, 1.0f}, {}, vornStsNoErr, {.val = val}))
            EXPECT_TRUE(std::isfinite(x)) << val;
    }
}

// Areas seen from the other side: the ratio of -k is the reciprocal of that of k. Three roundings on either way, and
// the one of the product: within 7 halves of a unit of 1.
TEST(ReflectionFeatures, OppositeCoefficientsHaveReciprocalRatios) {
    Random random(8);
    const Floats k = random.floats(10000, -0.9999, 0.9999);
    Floats opposite;
    for (float x : k) opposite.push_back(-x);
    const Floats y = singles(AR, k, {}, vornStsNoErr), z = singles(AR, opposite, {}, vornStsNoErr);
    for (std::size_t n = 0; n < k.size(); ++n)
        EXPECT_NEAR(static_cast<double>(y[n]) * z[n], 1.0, 6.01 * 0x1p-24) << k[n];
}

// ln((1 - k) / (1 + k)) = -2 artanh k. The ratio has three roundings, so its logarithm an absolute error of 3 x 2^-24;
// the logarithm adds 0.84 units in its own last place.
TEST(ReflectionFeatures, LogAreaRatiosAgainstExactOnes) {
    Random random(9);
    Floats k = random.floats(20000, -0.99, 0.99);
    for (float x : random.floats(5000, -1e-3, 1e-3)) k.push_back(x);
    for (float x : {0.99999994f, -0.99999994f, 1e-30f, 0x1p-24f, 0x1p-25f, -0x1p-25f}) k.push_back(x);
    const Floats y = singles(LAR, k, {}, vornStsNoErr, {.val = 0.99999994f});
    double worst = 0;
    for (std::size_t n = 0; n < k.size(); ++n) {
        const test::Precise x(k[n]), one(1.0);
        const test::Precise exact = log((one - x) / (one + x));
        const double error = std::fabs((exact - test::Precise(y[n])).toDouble());
        const double unit = std::ldexp(1.0, std::max(std::ilogb(y[n] == 0 ? 1e-38 : y[n]), -126) - 23);
        worst = std::max(worst, (error - 0.84 * unit) / 0x1p-24);
    }
    EXPECT_LE(worst, 3.01);
    EXPECT_GE(worst, 1.0) << "the bound would say little";
}

TEST(ReflectionFeatures, TrueRatiosAreTheProductOfRatios) {
    Random random(10);
    const Floats k = random.floats(200, -0.7, 0.7);
    const Floats product = singles(TrueAR, k, {}, vornStsNoErr);
    test::Precise exact(1.0);
    for (std::size_t n = 0; n < k.size(); ++n) {
        exact = exact * ((test::Precise(1.0) - test::Precise(k[n])) / (test::Precise(1.0) + test::Precise(k[n])));
        const double value = exact.toDouble();
        // Four roundings an element.
        EXPECT_NEAR(product[n] / value, 1.0, 4.01 * 0x1p-24 * static_cast<double>(n + 1)) << n;
    }
}

// The tilts are fractions of what there is: both stay within -1 to 1 where nothing cancels, and exchange their sign
// with their operands.
TEST(ReflectionFeatures, TiltsExchangeTheirSignWithTheirOperands) {
    Random random(11);
    const Floats a = random.floats(3000, 0.0, 1.0), b = random.floats(3000, 0.0, 1.0);
    const Floats ab = singles(Tilt, a, b, vornStsNoErr), ba = singles(Tilt, b, a, vornStsNoErr);
    const Floats absAb = singles(AbsTilt, a, b, vornStsNoErr);
    for (std::size_t n = 0; n < a.size(); ++n) {
        EXPECT_EQ(ab[n], -ba[n]);
        EXPECT_LE(std::fabs(ab[n]), 1.0f);
        EXPECT_NEAR(ab[n], absAb[n], 2.01 * 0x1p-24);
    }
}

}  // namespace
