// Conversions between hertz and mel, and the copy with zeros behind it.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>
#include <vector>

#include "elementary/elementary.h"
#include "support/expect.h"
#include "support/guarded.h"
#include "support/precise.h"
#include "support/rounding_mode.h"
#include "support/values.h"
#include "vornsr.h"

namespace {

using test::Guarded;
using test::Precise;
using test::Random;
using test::sameBits;

using Convert = VornStatus (*)(const Vorn32f*, Vorn32f*, int, Vorn32f, Vorn32f);

// One value after the other, by the library's own exponential and logarithm, which have tests of their own; opaque to a
// compiler that would move what depends on the rounding mode.
float linearToMel(float x, float melMul, float melDiv) {
    const volatile double perDiv = 1.0 / (double)melDiv;
    const volatile double scaled = (double)x * perDiv;
    const volatile double argument = scaled + 1.0;
    const volatile double logarithm = vorn::log64(argument);
    const volatile double product = (double)melMul * logarithm;
    const volatile float result = (float)product;
    return result;
}
float melToLinear(float x, float melMul, float melDiv) {
    const volatile double perMul = 1.0 / (double)melMul;
    const volatile double scaled = (double)x * perMul;
    const volatile double exponential = vorn::exp64(scaled);
    const volatile double ratio = exponential - 1.0;
    const volatile double product = (double)melDiv * ratio;
    const volatile float result = (float)product;
    return result;
}

struct Conversion {
    Convert convert;
    float (*model)(float, float, float);
};
const Conversion conversions[] = {{vornsLinearToMel_32f, linearToMel}, {vornsMelToLinear_32f, melToLinear}};

struct Scale {
    float melMul, melDiv;
};
const float inf = std::numeric_limits<float>::infinity(), nan = std::numeric_limits<float>::quiet_NaN();
const Scale scales[] = {{1127, 700}, {2595, 700}, {1000, 1000}, {1, 1},      {1e-40f, 700}, {1127, 1e-40f},
                        {3e38f, 1},  {1, 3e38f},  {inf, 700},   {1127, inf}, {inf, inf},    {1e-45f, 1e-45f}};

void expectModel(const Conversion& c, const std::vector<float>& values, Scale scale) {
    const Guarded<float> src(values);
    Guarded<float> dst(values.size());
    ASSERT_EQ(c.convert(src, dst, static_cast<int>(values.size()), scale.melMul, scale.melDiv), vornStsNoErr);
    for (std::size_t i = 0; i < values.size(); ++i) {
        const float expected = c.model(values[i], scale.melMul, scale.melDiv);
        EXPECT_TRUE(test::same(dst[i], expected)) << test::show(values[i]) << ": " << test::show(dst[i]) << ", not "
                                                  << test::show(expected) << " at " << scale.melMul;
    }
    EXPECT_TRUE(dst.surroundingsUntouched());
}

TEST(ScaleConversion, EqualsTheModelAtEveryLength) {
    Random random(1);
    for (const Conversion& c : conversions) {
        for (std::size_t len = 1; len <= 70; ++len) expectModel(c, random.floats(len, 0, 4000), {1127, 700});
    }
}

TEST(ScaleConversion, EqualsTheModelAtHardValues) {
    Random random(2);
    for (const Conversion& c : conversions) {
        for (const Scale& scale : scales) {
            expectModel(c, test::hardFloats<float>(), scale);
            expectModel(c, random.pick(test::hardFloats<float>(), 100), scale);
            std::vector<float> any;
            for (int i = 0; i < 300; ++i) any.push_back(random.anyBits<float>());
            expectModel(c, any, scale);
            // Around the end of the logarithm, and around the ends of the exponential.
            std::vector<float> ends;
            for (float base : {-scale.melDiv, 88.0f * scale.melMul, 708.0f * scale.melMul, -708.0f * scale.melMul,
                               -745.0f * scale.melMul, 709.78f * scale.melMul}) {
                ends.insert(ends.end(), {base, std::nextafter(base, inf), std::nextafter(base, -inf)});
            }
            expectModel(c, ends, scale);
        }
    }
}

TEST(ScaleConversion, EqualsTheModelInEveryRoundingMode) {
    Random random(3);
    auto values = random.floats(100, 0, 8000);
    const auto hard = random.pick(test::hardFloats<float>(), 100);
    values.insert(values.end(), hard.begin(), hard.end());
    for (unsigned mode : {test::RoundingMode::down, test::RoundingMode::up, test::RoundingMode::towardZero}) {
        for (const Conversion& c : conversions) {
            std::vector<float> dst(values.size()), expected;
            {
                const test::RoundingMode guard(mode);
                c.convert(values.data(), dst.data(), static_cast<int>(values.size()), 1127, 700);
                for (float x : values) expected.push_back(c.model(x, 1127, 700));
            }
            EXPECT_TRUE(sameBits(dst, expected)) << mode;
        }
    }
}

TEST(ScaleConversion, AnyAddressAndInPlace) {
    Random random(4);
    const auto values = random.floats(67, 0, 8000);
    for (const Conversion& c : conversions) {
        std::vector<float> expected(67);
        ASSERT_EQ(c.convert(values.data(), expected.data(), 67, 1127, 700), vornStsNoErr);
        for (std::size_t shift = 0; shift < 64; shift += 4) {
            test::Offset<float> src(67, shift), dst(67, 60 - shift);
            src.assign(values);
            ASSERT_EQ(c.convert(src, dst, 67, 1127, 700), vornStsNoErr);
            EXPECT_TRUE(sameBits(dst.data(), expected.data(), 67));
            ASSERT_EQ(c.convert(src, src, 67, 1127, 700), vornStsNoErr);
            EXPECT_TRUE(sameBits(src.data(), expected.data(), 67));
            EXPECT_TRUE(src.surroundingsUntouched() && dst.surroundingsUntouched());
        }
    }
}

float one(Convert convert, float x, float melMul, float melDiv) {
    float result = -77;
    EXPECT_EQ(convert(&x, &result, 1, melMul, melDiv), vornStsNoErr);
    return result;
}

TEST(ScaleConversion, KnownValues) {
    EXPECT_EQ(one(vornsLinearToMel_32f, 0.0f, 1127, 700), 0.0f);
    EXPECT_EQ(one(vornsMelToLinear_32f, 0.0f, 1127, 700), 0.0f);
    EXPECT_NEAR(one(vornsLinearToMel_32f, 1000.0f, 1127, 700), 999.989, 0.01);
    EXPECT_NEAR(one(vornsLinearToMel_32f, 700.0f, 1.0f / std::log(2.0f), 700), 1.0, 1e-6);
    EXPECT_EQ(one(vornsLinearToMel_32f, -700.0f, 1127, 700), -inf);
    EXPECT_TRUE(std::isnan(one(vornsLinearToMel_32f, -701.0f, 1127, 700)));
    EXPECT_EQ(one(vornsLinearToMel_32f, inf, 1127, 700), inf);
    EXPECT_EQ(one(vornsMelToLinear_32f, -inf, 1127, 700), -700.0f);
    EXPECT_EQ(one(vornsMelToLinear_32f, inf, 1127, 700), inf);
    EXPECT_EQ(one(vornsMelToLinear_32f, 1e6f, 1127, 700), inf);
    for (Convert convert : {vornsLinearToMel_32f, vornsMelToLinear_32f}) {
        EXPECT_TRUE(std::isnan(one(convert, nan, 1127, 700)));
    }
}

// The bound of the header: 0.501 ulp and 3.4e-16 melMul, 0.501 ulp and 1.2e-16 melDiv.
TEST(ScaleConversion, AccuracyAgainstMultiplePrecision) {
    Random random(5);
    test::Worst toMel, toLinear;
    for (const Scale& scale : {Scale{1127, 700}, {2595, 700}, {1000, 1000}, {1.7f, 0.3f}, {1e-3f, 1e5f}}) {
        std::vector<float> hertz, mel;
        for (int i = 0; i < 2000; ++i) {
            hertz.push_back(scale.melDiv * static_cast<float>(std::exp(random.uniform(-25, 10))));
            mel.push_back(scale.melMul *
                          static_cast<float>(i % 2 ? random.uniform(0, 40) : std::exp(random.uniform(-25, 3))));
        }
        std::vector<float> dst(hertz.size());
        const auto len = static_cast<int>(hertz.size());
        // What a result is too far away beyond the absolute part of the bound, in ulp.
        const auto excess = [](const Precise& exact, float result, double absolute) {
            const double ulps = exact.distance(result);
            const double off = std::abs((exact - Precise(static_cast<double>(result))).toDouble());
            return off <= absolute ? 0.0 : ulps * (off - absolute) / off;
        };
        ASSERT_EQ(vornsLinearToMel_32f(hertz.data(), dst.data(), len, scale.melMul, scale.melDiv), vornStsNoErr);
        for (std::size_t i = 0; i < hertz.size(); ++i) {
            const Precise exact = Precise(scale.melMul) * log(Precise(hertz[i]) / Precise(scale.melDiv) + Precise(1.0));
            toMel.meet(excess(exact, dst[i], 3.4e-16 * scale.melMul), hertz[i]);
        }
        ASSERT_EQ(vornsMelToLinear_32f(mel.data(), dst.data(), len, scale.melMul, scale.melDiv), vornStsNoErr);
        for (std::size_t i = 0; i < mel.size(); ++i) {
            const Precise exact = Precise(scale.melDiv) * (exp(Precise(mel[i]) / Precise(scale.melMul)) - Precise(1.0));
            toLinear.meet(excess(exact, dst[i], 1.2e-16 * scale.melDiv), mel[i]);
        }
    }
    RecordProperty("LinearToMel", toMel.text());
    RecordProperty("MelToLinear", toLinear.text());
    EXPECT_LT(toMel.distance, 0.501) << toMel.text();
    EXPECT_LT(toLinear.distance, 0.501) << toLinear.text();
}

// Back where it came from: the error of the mel value, half a unit in its last place, counts melDiv + f times over
// melMul.
TEST(ScaleConversion, ThereAndBack) {
    Random random(6);
    const auto hertz = random.floats(1000, 0, 24000);
    std::vector<float> mel(1000), back(1000);
    ASSERT_EQ(vornsLinearToMel_32f(hertz.data(), mel.data(), 1000, 1127, 700), vornStsNoErr);
    ASSERT_EQ(vornsMelToLinear_32f(mel.data(), back.data(), 1000, 1127, 700), vornStsNoErr);
    for (std::size_t i = 0; i < 1000; ++i) {
        const double ofMel = 0.51 * mel[i] * 0x1p-23, ofBack = 0.51 * hertz[i] * 0x1p-23;
        EXPECT_NEAR(back[i], hertz[i], ofMel * (700 + hertz[i]) / 1127 + ofBack);
    }
    EXPECT_TRUE(std::is_sorted(mel.begin(), mel.end()) == std::is_sorted(hertz.begin(), hertz.end()));
}

struct ScaleArguments {
    std::vector<float> values = std::vector<float>(5, 1.0f);
    Guarded<float> out = Guarded<float>(5);
    const float* src = values.data();
    float* dst = out.data();
    int len = 5;
    float melMul = 1127, melDiv = 700;
};

TEST(ScaleConversion, ChecksInOrder) {
    using A = ScaleArguments;
    for (const Conversion& c : conversions) {
        test::expectCheckOrder<A>([] { return A(); },
                                  [&](A& a) { return c.convert(a.src, a.dst, a.len, a.melMul, a.melDiv); },
                                  [](A& a) { return a.out.untouched(); },
                                  {{"src", vornStsNullPtrErr, [](A& a) { a.src = nullptr; }},
                                   {"dst", vornStsNullPtrErr, [](A& a) { a.dst = nullptr; }},
                                   {"len 0", vornStsSizeErr, [](A& a) { a.len = 0; }},
                                   {"len -1", vornStsSizeErr, [](A& a) { a.len = -1; }},
                                   {"melMul 0", vornStsSizeErr, [](A& a) { a.melMul = 0; }},
                                   {"melMul nan", vornStsSizeErr, [](A& a) { a.melMul = nan; }},
                                   {"melDiv 0", vornStsSizeErr, [](A& a) { a.melDiv = -0.0f; }},
                                   {"melDiv -1", vornStsSizeErr, [](A& a) { a.melDiv = -1; }},
                                   {"melDiv nan", vornStsSizeErr, [](A& a) { a.melDiv = nan; }}});
    }
}

template <class T>
void expectPadding(VornStatus (*copy)(const T*, int, T*, int)) {
    Random random(7);
    for (int srcLen : {1, 2, 3, 7, 8, 15, 16, 31, 64, 100, 400, 5000}) {
        for (int more : {0, 1, 2, 5, 16, 33, 112, 3000}) {
            std::vector<T> values;
            for (int i = 0; i < srcLen; ++i) values.push_back(random.anyBits<T>());
            const Guarded<T> src(values);
            Guarded<T> dst(static_cast<std::size_t>(srcLen + more));
            ASSERT_EQ(copy(src, srcLen, dst, srcLen + more), vornStsNoErr);
            EXPECT_EQ(std::memcmp(dst.data(), values.data(), static_cast<std::size_t>(srcLen) * sizeof(T)), 0)
                << "also the bits of not-a-numbers";
            for (int i = srcLen; i < srcLen + more; ++i) EXPECT_TRUE(test::same(dst[i], T(0)));
            EXPECT_TRUE(dst.surroundingsUntouched());
        }
    }
    // In place, and from further on in the same buffer.
    std::vector<T> frame = {1, 2, 3, 4, 5, 6, 7, 8};
    ASSERT_EQ(copy(frame.data(), 5, frame.data(), 8), vornStsNoErr);
    EXPECT_EQ(frame, (std::vector<T>{1, 2, 3, 4, 5, 0, 0, 0}));
    ASSERT_EQ(copy(frame.data() + 2, 3, frame.data(), 6), vornStsNoErr);
    EXPECT_EQ(frame, (std::vector<T>{3, 4, 5, 0, 0, 0, 0, 0}));

    struct Arguments {
        std::vector<T> values = std::vector<T>(8);
        Guarded<T> out = Guarded<T>(8);
        const T* src = values.data();
        T* dst = out.data();
        int srcLen = 5, dstLen = 8;
    };
    using A = Arguments;
    test::expectCheckOrder<A>([] { return A(); }, [=](A& a) { return copy(a.src, a.srcLen, a.dst, a.dstLen); },
                              [](A& a) { return a.out.untouched(); },
                              {{"src", vornStsNullPtrErr, [](A& a) { a.src = nullptr; }},
                               {"dst", vornStsNullPtrErr, [](A& a) { a.dst = nullptr; }},
                               {"srcLen 0", vornStsSizeErr, [](A& a) { a.srcLen = 0; }},
                               {"dstLen 0", vornStsSizeErr, [](A& a) { a.dstLen = 0; }},
                               {"dstLen below srcLen", vornStsSizeErr, [](A& a) { a.dstLen = a.srcLen - 1; }}});
}

TEST(CopyWithPadding, Singles) { expectPadding<Vorn32f>(vornsCopyWithPadding_32f); }
TEST(CopyWithPadding, Shorts) { expectPadding<Vorn16s>(vornsCopyWithPadding_16s); }

}  // namespace
