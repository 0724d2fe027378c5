// Natural logarithms of vectors.
#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <limits>
#include <vector>

#include "support/expect.h"
#include "support/guarded.h"
#include "support/precise.h"
#include "support/values.h"
#include "support/vectors.h"
#include "vornsr.h"

namespace {

using test::data;
constexpr int intMin = std::numeric_limits<int>::min(), intMax = std::numeric_limits<int>::max();
constexpr float inf = std::numeric_limits<float>::infinity();

std::uint32_t bitsOf(float x) { return std::bit_cast<std::uint32_t>(x); }

// One element on its own: what the function makes of a value, whatever its place in a vector.
float lnOfOne(float x) {
    float result = 0.0f;
    vornsLn_32f(&x, &result, 1);
    return result;
}

// The status of a vector: its first bad element decides. Zeros of either sign, negative numbers down to the largest.
VornStatus statusOf(const std::vector<float>& x) {
    for (float value : x) {
        if (std::isnan(value) || std::isinf(value)) continue;
        if (value == 0.0f) return vornStsLnZeroArg;
        if (value < 0.0f) return vornStsLnNegArg;
    }
    return vornStsNoErr;
}

void expectLn(const std::vector<float>& x) {
    std::vector<float> expected(x.size());
    for (std::size_t i = 0; i < x.size(); ++i) expected[i] = lnOfOne(x[i]);
    const int len = static_cast<int>(x.size());
    test::Guarded<float> src(x), dst(x.size());
    EXPECT_EQ(vornsLn_32f(src, dst, len), statusOf(x)) << "len " << len;
    EXPECT_EQ(std::memcmp(dst.data(), expected.data(), x.size() * sizeof(float)), 0) << "len " << len;
    EXPECT_TRUE(dst.surroundingsUntouched()) << "len " << len;
    EXPECT_EQ(vornsLn_32f_I(src, len), statusOf(x)) << "in place, len " << len;
    EXPECT_EQ(std::memcmp(src.data(), expected.data(), x.size() * sizeof(float)), 0) << "in place, len " << len;
}

TEST(Ln32f, IsWithinOneUnit) {
    test::Random random(1);
    std::vector<float> x;
    for (int i = 0; i < 60000; ++i) x.push_back(std::abs(random.anyBits<float>()));
    for (int i = 0; i < 20000; ++i) x.push_back(static_cast<float>(random.uniform(0.6, 1.5)));
    for (std::uint32_t i = 0; i < 2000; ++i) {
        x.push_back(std::bit_cast<float>(0x3F800000 + i));
        x.push_back(std::bit_cast<float>(0x3F800000 - i));
        x.push_back(std::bit_cast<float>(0x3F2AAAAB - 1000 + i));  // 2/3, where the exponent changes
        x.push_back(std::bit_cast<float>(1 + i));
    }
    std::vector<float> y(x.size());
    vornsLn_32f(x.data(), y.data(), static_cast<int>(x.size()));
    test::Worst worst;
    for (std::size_t i = 0; i < x.size(); ++i) {
        if (!std::isfinite(x[i]) || x[i] == 0.0f) continue;
        worst.meet(log(test::Precise(static_cast<double>(x[i]))).distance(y[i]), static_cast<double>(x[i]));
    }
    EXPECT_LE(worst.distance, 0.84) << worst.text();
}

TEST(Ln32f, ExactAndReplacementValues) {
    EXPECT_EQ(bitsOf(lnOfOne(1.0f)), 0u);
    EXPECT_EQ(bitsOf(lnOfOne(0.0f)), 0xFF800000u);
    EXPECT_EQ(bitsOf(lnOfOne(-0.0f)), 0xFF800000u);
    for (float x : {-1.0f, -0x1p-149f, -0x1.fffffep127f}) EXPECT_EQ(bitsOf(lnOfOne(x)), 0xFFC00000u) << x;
    // Infinities and not-a-numbers pass through unchanged, signalling ones and payloads too.
    for (std::uint32_t bits : {0x7F800000u, 0xFF800000u, 0x7FC00000u, 0xFFC12345u, 0x7F812345u, 0xFF800001u}) {
        test::Guarded<std::uint32_t> src(1), dst(1);
        src[0] = bits;
        EXPECT_EQ(vornsLn_32f(reinterpret_cast<float*>(src.data()), reinterpret_cast<float*>(dst.data()), 1),
                  vornStsNoErr);
        EXPECT_EQ(dst[0], bits);
    }
}

TEST(Ln32f, EveryLengthWithHardValues) {
    test::Random random(2);
    const std::vector<float> hard = test::hardFloats<float>();
    for (int len = 1; len <= 70; ++len) {
        std::vector<float> x = random.floats(static_cast<std::size_t>(len), 0.001, 50.0);
        expectLn(x);
        for (float& value : x)
            value = hard[static_cast<std::size_t>(random.integer(0, static_cast<int>(hard.size()) - 1))];
        expectLn(x);
        for (float& value : x) value = random.anyBits<float>();
        expectLn(x);
    }
    for (int len : {255, 256, 257, 511, 512, 513, 1000})
        expectLn(random.floats(static_cast<std::size_t>(len), 0.0, 1e6));
}

TEST(Ln32f, EveryAlignment) {
    test::Random random(3);
    const std::vector<float> x = random.floats(41, 0.0, 100.0);
    for (std::size_t srcOffset = 0; srcOffset < 64; srcOffset += 4) {
        for (std::size_t dstOffset = 0; dstOffset < 64; dstOffset += 4) {
            test::Offset<float> src(x.size(), srcOffset), dst(x.size(), dstOffset);
            src.assign(x);
            EXPECT_EQ(vornsLn_32f(src, dst, 41), vornStsNoErr);
            for (std::size_t i = 0; i < x.size(); ++i)
                ASSERT_EQ(dst[i], lnOfOne(x[i])) << srcOffset << " " << dstOffset;
            EXPECT_TRUE(dst.surroundingsUntouched());
        }
    }
}

TEST(Ln32f, TheFirstBadElementDecides) {
    for (int len : {1, 5, 16, 33, 300, 700}) {
        for (int zeroAt = 0; zeroAt < len; zeroAt += 7) {
            for (int negativeAt = 0; negativeAt < len; negativeAt += 11) {
                if (zeroAt == negativeAt) continue;
                std::vector<float> x(static_cast<std::size_t>(len), 2.0f);
                x[static_cast<std::size_t>(zeroAt)] = 0.0f;
                x[static_cast<std::size_t>(negativeAt)] = -3.0f;
                std::vector<float> y(x.size());
                EXPECT_EQ(vornsLn_32f(x.data(), y.data(), len),
                          zeroAt < negativeAt ? vornStsLnZeroArg : vornStsLnNegArg)
                    << len << " " << zeroAt << " " << negativeAt;
            }
        }
    }
    // Not-a-numbers and infinities in front are no bad elements.
    const float x[] = {-inf, std::numeric_limits<float>::quiet_NaN(), -5.0f, 0.0f};
    float y[4];
    EXPECT_EQ(vornsLn_32f(x, y, 4), vornStsLnNegArg);
}

TEST(Ln, DoublesAndIntegers) {
    test::Random random(14);
    std::vector<double> x;
    for (int i = 0; i < 20000; ++i) x.push_back(std::fabs(random.anyBits<double>()));
    for (int i = 0; i < 20000; ++i) x.push_back(random.uniform(0.5, 2.0));
    for (double center : {1.0, 2.0 / 3.0, 4.0 / 3.0}) {
        for (int i = -500; i <= 500; ++i) x.push_back(center * (1.0 + i * 0x1p-52));
    }
    const int n = static_cast<int>(x.size());
    std::vector<double> y(x.size());
    std::vector<float> narrow(x.size());
    vornsLn_64f(x.data(), y.data(), n);
    vornsLn_64f32f(x.data(), narrow.data(), n);
    test::Worst worst, worstNarrow;
    for (std::size_t i = 0; i < x.size(); ++i) {
        if (!std::isfinite(x[i]) || x[i] == 0.0) continue;
        const test::Precise exact = log(test::Precise(x[i]));
        worst.meet(exact.distance(y[i]), x[i]);
        if (std::fabs(y[i]) > 1e-37) worstNarrow.meet(exact.distance(narrow[i]), x[i]);
        EXPECT_EQ(narrow[i], static_cast<float>(y[i]));
    }
    EXPECT_LE(worst.distance, 0.95) << worst.text();
    EXPECT_LE(worstNarrow.distance, 0.501) << worstNarrow.text();
    RecordProperty("worst", worst.text());
    std::vector<double> inPlace = x;
    vornsLn_64f_I(inPlace.data(), n);
    EXPECT_TRUE(test::sameBits(inPlace, y));
    const double bad[] = {1.0, -2.0, 0.0, std::numeric_limits<double>::infinity()};
    EXPECT_EQ(vornsLn_64f(bad, y.data(), 4), vornStsLnNegArg);
    EXPECT_EQ(std::bit_cast<std::uint64_t>(y[1]), 0xFFF8000000000000u);
    EXPECT_EQ(y[2], -std::numeric_limits<double>::infinity());
    EXPECT_EQ(vornsLn_64f32f(bad, narrow.data(), 4), vornStsLnNegArg);
    EXPECT_EQ(std::bit_cast<std::uint32_t>(narrow[1]), 0xFFC00000u);

    for (std::size_t len : {1, 5, 16, 33, 300}) {
        std::vector<Vorn32s> integers = data<Vorn32s>(random, len);
        for (int sf : {0, 1, 4, 5, 31, 32, 33, -1, -10, -26, -27, -127, -128, intMin}) {
            std::vector<Vorn32s> result(len);
            const VornStatus status = vornsLn_32s_Sfs(integers.data(), result.data(), static_cast<int>(len), sf);
            VornStatus expectedStatus = vornStsNoErr;
            for (std::size_t i = 0; i < len; ++i) {
                const Vorn32s value = integers[i];
                if (value < 1) {
                    ASSERT_EQ(result[i], intMin);
                    if (expectedStatus == vornStsNoErr)
                        expectedStatus = value == 0 ? vornStsLnZeroArg : vornStsLnNegArg;
                } else if (sf >= 0) {
                    ASSERT_EQ(result[i],
                              static_cast<int>(std::lround(std::log(static_cast<double>(value)))) >> (sf & 31))
                        << value;
                } else {
                    float single, ln;
                    single = static_cast<float>(value);
                    vornsLn_32f(&single, &ln, 1);
                    const double scaledLn = std::ldexp(static_cast<double>(ln), -std::max(sf, -1000));
                    ASSERT_EQ(result[i], scaledLn >= 2147483648.0 ? intMax : static_cast<int>(std::nearbyint(scaledLn)))
                        << value << " " << sf;
                }
            }
            EXPECT_EQ(status, expectedStatus);
            std::vector<Vorn32s> again = integers;
            EXPECT_EQ(vornsLn_32s_ISfs(again.data(), static_cast<int>(len), sf), expectedStatus);
            EXPECT_EQ(again, result);
        }
    }
    // The borders of the table.
    const Vorn32s border[] = {1, 2, 4, 5, 12, 13, 799902177, 799902178, 0};
    Vorn32s result[9];
    EXPECT_EQ(vornsLn_32s_Sfs(border, result, 9, 0), vornStsLnZeroArg);
    EXPECT_TRUE(test::sameBits(result, (const Vorn32s[]){0, 1, 1, 2, 2, 3, 20, 21, intMin}, 9));
    EXPECT_EQ(vornsLn_32s_Sfs(border + 1, result, 1, 1), vornStsNoErr);
    EXPECT_EQ(result[0], 0);
}

}  // namespace
