// Correlation coefficients of 16-bit signals.
#include <gtest/gtest.h>

#include <algorithm>
#include <climits>
#include <cmath>
#include <limits>
#include <vector>

#include "model/correlation_coefficient.h"
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
using Signal = std::vector<Vorn16s>;

constexpr unsigned modes[] = {RoundingMode::nearest, RoundingMode::down, RoundingMode::up, RoundingMode::towardZero};
constexpr float inf = std::numeric_limits<float>::infinity(), nan = std::numeric_limits<float>::quiet_NaN();

void expectCorrelation(const Signal& a, const Signal& b, unsigned mode = RoundingMode::nearest) {
    const Guarded<Vorn16s> src1(a), src2(b);
    const int len = static_cast<int>(a.size());
    Guarded<float> dst(1);
    float expected;
    {
        const RoundingMode guard(mode);
        EXPECT_EQ(vornsCrossCorrCoeff_16s32f(src1, src2, len, dst), vornStsNoErr);
        expected = model::correlation(a, b);
    }
    EXPECT_TRUE(test::sameBits(dst.data(), &expected, 1)) << len << ", mode " << mode;
    for (float energy : {1.0f, 1e9f, 3e38f, 1e-38f, 1e-45f, -4.0f, inf, -inf, nan}) {
        {
            const RoundingMode guard(mode);
            EXPECT_EQ(vornsCrossCorrCoeffPartial_16s32f(src1, src2, len, dst, energy), vornStsNoErr);
            expected = model::correlation(a, b, energy);
        }
        EXPECT_TRUE(test::sameBits(dst.data(), &expected, 1)) << len << ", energy " << energy << ", mode " << mode;
    }
}

TEST(CrossCorrCoeff, EqualsTheModel) {
    Random random(1);
    const auto hard = test::hardIntegers<Vorn16s>();
    for (std::size_t len = 1; len <= 140; ++len) {
        expectCorrelation(random.integers<Vorn16s>(len), random.integers<Vorn16s>(len));
        expectCorrelation(random.pick(hard, len), random.pick(hard, len));
        expectCorrelation(random.pick<Vorn16s>({0, 1}, len), random.pick<Vorn16s>({0, 1, -1}, len));
    }
    for (std::size_t len : {4095, 4096, 4097, 8193, 100000}) {
        expectCorrelation(random.integers<Vorn16s>(len), random.integers<Vorn16s>(len));
        expectCorrelation(Signal(len, -32768), Signal(len, -32768));
    }
    for (unsigned mode : modes) {
        expectCorrelation(random.integers<Vorn16s>(777), random.integers<Vorn16s>(777), mode);
        expectCorrelation(random.integers<Vorn16s>(33, -3, 3), random.integers<Vorn16s>(33, -3, 3), mode);
    }
}

TEST(CrossCorrCoeff, AnyAlignment) {
    Random random(2);
    const Signal a = random.integers<Vorn16s>(333), b = random.integers<Vorn16s>(333);
    for (std::size_t shift1 : {0, 2, 16, 30}) {
        for (std::size_t shift2 : {0, 4, 14}) {
            Offset<Vorn16s> src1(333, shift1), src2(333, shift2);
            src1.assign(a);
            src2.assign(b);
            float result = -9;
            ASSERT_EQ(vornsCrossCorrCoeff_16s32f(src1, src2, 333, &result), vornStsNoErr);
            EXPECT_EQ(result, model::correlation(a, b));
        }
    }
}

TEST(CrossCorrCoeff, Literal) {
    const Signal a = {3, 0, 4}, b = {6, 0, 8}, opposite = {-3, 0, -4}, across = {4, 5, -3}, zeros = {0, 0, 0};
    float result = -9;
    const auto of = [&](const Signal& x, const Signal& y) {
        EXPECT_EQ(vornsCrossCorrCoeff_16s32f(x.data(), y.data(), 3, &result), vornStsNoErr);
        return result;
    };
    EXPECT_EQ(of(a, b), 1.0f);
    EXPECT_EQ(of(a, opposite), -1.0f);
    EXPECT_EQ(of(a, across), 0.0f);
    EXPECT_EQ(of(a, zeros), 0.0f);
    EXPECT_EQ(of(zeros, a), 0.0f);
    EXPECT_EQ(of(zeros, zeros), 0.0f);
    // The caller's energy takes the place of the first signal's: 50 / (sqrt(100) x 10).
    EXPECT_EQ(vornsCrossCorrCoeffPartial_16s32f(a.data(), b.data(), 3, &result, 100.0f), vornStsNoErr);
    EXPECT_EQ(result, 0.5f);
    result = -9;
    EXPECT_EQ(vornsCrossCorrCoeffPartial_16s32f(a.data(), b.data(), 3, &result, 0.0f), vornStsRangeErr);
    EXPECT_EQ(vornsCrossCorrCoeffPartial_16s32f(a.data(), b.data(), 3, &result, -0.0f), vornStsRangeErr);
    EXPECT_EQ(result, -9.0f);
    // The threshold is the smallest normal single itself: the energy of src2 is 1 here.
    const Signal one = {1, 0, 0};
    const float smallest = std::numeric_limits<float>::min();
    EXPECT_EQ(vornsCrossCorrCoeffPartial_16s32f(a.data(), one.data(), 3, &result, smallest), vornStsNoErr);
    EXPECT_EQ(result, 0.0f);
    EXPECT_EQ(vornsCrossCorrCoeffPartial_16s32f(a.data(), one.data(), 3, &result, std::nextafter(smallest, 1.0f)),
              vornStsNoErr);
    EXPECT_GT(result, 1e19f);
    EXPECT_EQ(vornsCrossCorrCoeffPartial_16s32f(a.data(), one.data(), 3, &result, nan), vornStsNoErr);
    EXPECT_EQ(result, 0.0f);
    EXPECT_EQ(vornsCrossCorrCoeffPartial_16s32f(a.data(), one.data(), 3, &result, -1.0f), vornStsNoErr);
    EXPECT_TRUE(std::isnan(result));
    EXPECT_EQ(vornsCrossCorrCoeffPartial_16s32f(a.data(), one.data(), 3, &result, inf), vornStsNoErr);
    EXPECT_EQ(result, 0.0f);
}

// src1 reaches to its end, src2 to the largest index that is used and no further.
void expectDecimated(const Signal& a, const Signal& b, int maxLen, int minLen, int dec,
                     unsigned mode = RoundingMode::nearest) {
    const int lags = (maxLen - minLen) / dec, count = (minLen - 1) / dec + 1;
    const Signal reached(b.begin(), b.begin() + (count + lags - 1) * dec + 1);
    const Guarded<Vorn16s> src1(a), src2(reached);
    Guarded<float> dst(static_cast<std::size_t>(lags) + 1);
    std::vector<float> expected;
    {
        const RoundingMode guard(mode);
        EXPECT_EQ(vornsCrossCorrCoeffDecim_16s32f(src1, src2, maxLen, minLen, dst, dec), vornStsNoErr);
        expected = model::decimatedCorrelations(a, b, maxLen, minLen, dec);
    }
    EXPECT_TRUE(test::sameBits(dst, expected)) << maxLen << ", " << minLen << ", " << dec << ", mode " << mode;
    EXPECT_TRUE(dst.surroundingsUntouched());
}
TEST(CrossCorrCoeffDecim, EqualsTheModel) {
    Random random(3);
    const auto hard = test::hardIntegers<Vorn16s>();
    for (int maxLen = 1; maxLen <= 40; maxLen += maxLen < 12 ? 1 : 7) {
        const auto n = static_cast<std::size_t>(maxLen);
        for (int minLen = 1; minLen <= maxLen; ++minLen) {
            for (int dec : {1, 2, 3, 7, 50}) {
                expectDecimated(random.integers<Vorn16s>(n), random.integers<Vorn16s>(n), maxLen, minLen, dec);
            }
        }
        expectDecimated(random.pick(hard, n), random.pick(hard, n), maxLen, 1, 1);
        expectDecimated(random.pick<Vorn16s>({0, 0, 1, -1}, n), random.pick<Vorn16s>({0, 0, 0, 2}, n), maxLen, 1, 1);
    }
    for (int maxLen : {160, 400, 1700, 2100, 2600, 5000}) {
        const auto n = static_cast<std::size_t>(maxLen);
        for (int minLen : {1, 40, maxLen / 2, maxLen - 130, maxLen - 1}) {
            for (int dec : {1, 2, 5}) {
                if (minLen < 1 || (maxLen > 3000 && dec == 1 && minLen < maxLen / 2)) continue;
                expectDecimated(random.integers<Vorn16s>(n), random.integers<Vorn16s>(n), maxLen, minLen, dec);
            }
        }
    }
    for (unsigned mode : modes) {
        expectDecimated(random.integers<Vorn16s>(300), random.integers<Vorn16s>(300), 300, 100, 1, mode);
        expectDecimated(random.integers<Vorn16s>(300), random.integers<Vorn16s>(300), 300, 100, 3, mode);
        expectDecimated(random.pick<Vorn16s>({0, 5, -5}, 90), random.pick<Vorn16s>({0, 5, -5}, 90), 90, 9, 2, mode);
        expectDecimated(Signal(50, 0), random.integers<Vorn16s>(50), 50, 9, 2, mode);
    }
}
TEST(CrossCorrCoeffDecim, Literal) {
    // The end of src1 against the start of src2: overlaps of 1, 2, 3, 4 samples.
    const Signal a = {9, 1, 2, 3}, b = {3, 0, 0, 0};
    float dst[4];
    ASSERT_EQ(vornsCrossCorrCoeffDecim_16s32f(a.data(), b.data(), 4, 1, dst, 1), vornStsNoErr);
    EXPECT_EQ(dst[0], 1.0f);                                            // 3 with 3
    EXPECT_EQ(dst[1], static_cast<float>(6 / (std::sqrt(13.0) * 3)));   // 2 3 with 3 0
    EXPECT_EQ(dst[2], static_cast<float>(3 / (std::sqrt(14.0) * 3)));   // 1 2 3 with 3 0 0
    EXPECT_EQ(dst[3], static_cast<float>(27 / (std::sqrt(95.0) * 3)));  // all with all
    const Signal zeros(4, 0);
    ASSERT_EQ(vornsCrossCorrCoeffDecim_16s32f(a.data(), zeros.data(), 4, 2, dst, 2), vornStsNoErr);
    EXPECT_EQ(dst[0], 0.0f);
    EXPECT_EQ(dst[1], 0.0f);
}
// A signal that is its own delayed copy correlates fully at the delay, whatever the step.
TEST(CrossCorrCoeffDecim, FindsTheDelay) {
    Random random(4);
    for (int dec : {1, 2, 4}) {
        const Signal noise = random.integers<Vorn16s>(400, -1000, 1000);
        const Signal src2 = noise, src1 = [&] {
            Signal x(400, 0);
            std::copy(noise.begin(), noise.end() - 120, x.begin() + 120);
            return x;
        }();
        std::vector<float> dst(300 / dec + 1);
        ASSERT_EQ(vornsCrossCorrCoeffDecim_16s32f(src1.data(), src2.data(), 400, 100, dst.data(), dec), vornStsNoErr);
        const auto largest = std::max_element(dst.begin(), dst.end()) - dst.begin();
        EXPECT_EQ(300 - largest * dec, 120) << dec;
        EXPECT_NEAR(dst[static_cast<std::size_t>(largest)], 1, 1e-5);
    }
}

void expectInterpolated(const Signal& c, const Signal& ab, unsigned mode = RoundingMode::nearest) {
    const Guarded<Vorn16s> src1(c), src2(ab);
    const int len = static_cast<int>(c.size());
    Guarded<float> frac(1), coeff(1);
    VornStatus status;
    model::Interpolated expected;
    {
        const RoundingMode guard(mode);
        status = vornsCrossCorrCoeffInterpolation_16s32f(src1, src2, len, frac, coeff);
        expected = model::interpolated(c, ab);
    }
    EXPECT_EQ(status, expected.degenerate ? vornStsDivByZero : vornStsNoErr) << len;
    EXPECT_TRUE(test::sameBits(frac.data(), &expected.frac, 1)) << len << ", mode " << mode;
    if (expected.written) {
        EXPECT_TRUE(test::sameBits(coeff.data(), &expected.coeff, 1)) << len << ", mode " << mode;
    } else {
        EXPECT_TRUE(coeff.untouched());
    }
    EXPECT_TRUE(frac.surroundingsUntouched() && coeff.surroundingsUntouched());
}
TEST(CrossCorrCoeffInterpolation, EqualsTheModel) {
    Random random(5);
    const auto hard = test::hardIntegers<Vorn16s>();
    for (std::size_t len = 1; len <= 140; ++len) {
        expectInterpolated(random.integers<Vorn16s>(len), random.integers<Vorn16s>(len + 1));
        expectInterpolated(random.integers<Vorn16s>(len, -2, 2), random.integers<Vorn16s>(len + 1, -2, 2));
        expectInterpolated(random.pick(hard, len), random.pick(hard, len + 1));
    }
    for (std::size_t len : {4095, 4096, 4097, 8192, 20001}) {
        expectInterpolated(random.integers<Vorn16s>(len), random.integers<Vorn16s>(len + 1));
    }
    expectInterpolated(Signal(9000, -32768), Signal(9001, -32768));
    for (unsigned mode : modes) {
        expectInterpolated(random.integers<Vorn16s>(300), random.integers<Vorn16s>(301), mode);
    }
}
// A mixture of two neighbours is found again, with its coefficient.
TEST(CrossCorrCoeffInterpolation, FindsTheMixture) {
    Random random(6);
    for (double f : {0.0, 0.1, 0.25, 0.5, 0.75, 0.99}) {
        Signal src2, src1;
        for (int i = 0; i <= 2000; ++i)
            src2.push_back(static_cast<Vorn16s>(std::lrint(20000 * std::sin(0.05 * i) + 9000 * std::sin(1.1 * i))));
        for (int i = 0; i < 2000; ++i) {
            src1.push_back(static_cast<Vorn16s>(
                std::lrint((1 - f) * src2[static_cast<std::size_t>(i)] + f * src2[static_cast<std::size_t>(i) + 1])));
        }
        float frac = -9, coeff = -9;
        ASSERT_EQ(vornsCrossCorrCoeffInterpolation_16s32f(src1.data(), src2.data(), 2000, &frac, &coeff), vornStsNoErr);
        EXPECT_NEAR(frac, f, 1e-4);
        if (f > 0) {
            EXPECT_NEAR(coeff, 1, 1e-6);
        }
    }
}
TEST(CrossCorrCoeffInterpolation, Literal) {
    float frac = -9, coeff = -9;
    const Signal zeros(5, 0), c = {1, 2, 3, 4};
    EXPECT_EQ(vornsCrossCorrCoeffInterpolation_16s32f(c.data(), zeros.data(), 4, &frac, &coeff), 6);
    EXPECT_EQ(frac, 0.0f);
    EXPECT_EQ(coeff, 0.0f);
    // a = (1 0), b = (0 1), c = (3 1): G = 1 x 3 + 1 x 1, f = 1/4; V = 9/16 + 1/16, X = 10 V; (9/4 + 1/4) / 2.5.
    const Signal steps = {1, 0, 1}, mixed = {3, 1};
    EXPECT_EQ(vornsCrossCorrCoeffInterpolation_16s32f(mixed.data(), steps.data(), 2, &frac, &coeff), vornStsNoErr);
    EXPECT_EQ(frac, 0.25f);
    EXPECT_EQ(coeff, 1.0f);
    // c = (3 -1): G = 2, f = -1/2: outside, and coeff keeps what it held.
    const Signal outside = {3, -1};
    coeff = -7;
    EXPECT_EQ(vornsCrossCorrCoeffInterpolation_16s32f(outside.data(), steps.data(), 2, &frac, &coeff), vornStsNoErr);
    EXPECT_EQ(frac, -0.5f);
    EXPECT_EQ(coeff, -7.0f);
    // c = (0 2): f = 1, which is outside as well.
    const Signal next = {0, 2};
    EXPECT_EQ(vornsCrossCorrCoeffInterpolation_16s32f(next.data(), steps.data(), 2, &frac, &coeff), vornStsNoErr);
    EXPECT_EQ(frac, 1.0f);
    EXPECT_EQ(coeff, -7.0f);
    // c = (2 -2): G = 0, coeff is the product with a.
    const Signal level = {2, -2};
    EXPECT_EQ(vornsCrossCorrCoeffInterpolation_16s32f(level.data(), steps.data(), 2, &frac, &coeff), 6);
    EXPECT_EQ(frac, 0.0f);
    EXPECT_EQ(coeff, 2.0f);
}

struct Arguments {
    Guarded<Vorn16s> data1 = Guarded<Vorn16s>(Signal(9, 1)), data2 = Guarded<Vorn16s>(Signal(10, 1));
    Guarded<float> out = Guarded<float>(8), second = Guarded<float>(1);
    const Vorn16s *src1 = data1.data(), *src2 = data2.data();
    float *dst = out.data(), *coeff = second.data();
    int len = 9, minLen = 2, dec = 1;
    float energy = 1;
};
using Rules = std::vector<test::Rule<Arguments>>;
void expectOrder(const std::function<VornStatus(Arguments&)>& call, const Rules& more) {
    using A = Arguments;
    Rules rules = {{"src1", vornStsNullPtrErr, [](A& a) { a.src1 = nullptr; }},
                   {"src2", vornStsNullPtrErr, [](A& a) { a.src2 = nullptr; }},
                   {"dst", vornStsNullPtrErr, [](A& a) { a.dst = nullptr; }}};
    rules.insert(rules.end(), more.begin(), more.end());
    test::expectCheckOrder<A>([] { return A(); }, call, [](A& a) { return a.out.untouched() && a.second.untouched(); },
                              rules);
}
TEST(CrossCorrCoeff, ChecksInOrder) {
    using A = Arguments;
    const test::Rule<A> length = {"len", vornStsSizeErr, [](A& a) { a.len = 0; }};
    const test::Rule<A> negative = {"len", vornStsSizeErr, [](A& a) { a.len = INT_MIN; }};
    expectOrder([](A& a) { return vornsCrossCorrCoeff_16s32f(a.src1, a.src2, a.len, a.dst); }, {length, negative});
    expectOrder([](A& a) { return vornsCrossCorrCoeffPartial_16s32f(a.src1, a.src2, a.len, a.dst, a.energy); },
                {length, negative, {"energy", vornStsRangeErr, [](A& a) { a.energy = 0; }}});
    expectOrder([](A& a) { return vornsCrossCorrCoeffInterpolation_16s32f(a.src1, a.src2, a.len, a.dst, a.coeff); },
                {{"coeff", vornStsNullPtrErr, [](A& a) { a.coeff = nullptr; }}, length, negative});
    expectOrder([](A& a) { return vornsCrossCorrCoeffDecim_16s32f(a.src1, a.src2, a.len, a.minLen, a.dst, a.dec); },
                {{"minLen", vornStsSizeErr, [](A& a) { a.minLen = 0; }},
                 {"dec", vornStsSizeErr, [](A& a) { a.dec = 0; }},
                 {"dec", vornStsSizeErr, [](A& a) { a.dec = INT_MIN; }},
                 {"maxLen", vornStsSizeErr, [](A& a) { a.len = 1; }}});
    // Steps beyond all samples.
    const Signal a = {5, 6, 7};
    float dst = -9;
    EXPECT_EQ(vornsCrossCorrCoeffDecim_16s32f(a.data(), a.data(), 3, 2, &dst, INT_MAX), vornStsNoErr);
    EXPECT_EQ(dst, 1.0f);  // 6 with 5
}

}  // namespace
