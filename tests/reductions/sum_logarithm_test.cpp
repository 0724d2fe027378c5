// Sums of logarithms: the stated order bit for bit, and how near they are to the true value.
#include <bit>
#include <cmath>
#include <cstdint>
#include <limits>
#include <string>
#include <type_traits>
#include <vector>

#include "model/reductions.h"
#include "support/expect.h"
#include "support/guarded.h"
#include "support/precise.h"
#include "support/values.h"
#include "vornsr.h"

namespace {

constexpr float inf = std::numeric_limits<float>::infinity();

std::uint32_t bitsOf(float x) { return std::bit_cast<std::uint32_t>(x); }

// What vornsSumLn_* stores and returns, from the model's code.
template <class Result>
void expectSumLn(const model::LnSum& expected, VornStatus status, Result sum, const std::string& context) {
    switch (expected.code) {
        case 0:
            EXPECT_EQ(status, vornStsNoErr) << context;
            EXPECT_TRUE(test::same(sum, static_cast<Result>(expected.sum)))
                << context << ": " << test::show(sum) << " instead of " << test::show(expected.sum);
            break;
        case 2:
            EXPECT_EQ(status, vornStsLnZeroArg) << context;
            EXPECT_EQ(sum, std::numeric_limits<Result>::infinity()) << context;
            break;
        case 4:
            EXPECT_EQ(status, vornStsLnNegArg) << context;
            EXPECT_TRUE(std::isnan(sum)) << context;
            break;
        default:
            EXPECT_EQ(status, vornStsNoErr) << context;
            EXPECT_TRUE(std::isnan(sum)) << context;
    }
}

// Every member on the same vector; Number is the type in which mantissas are multiplied.
template <class Number, class Source, class Result>
void expectMember(VornStatus (*sumLn)(const Source*, int, Result*), const std::vector<Source>& x) {
    test::Guarded<Source> src(x);
    test::Guarded<Result> sum(1);
    const VornStatus status = sumLn(src, static_cast<int>(x.size()), sum);
    expectSumLn(model::sumLn<Number>(x), status, sum[0], "len " + std::to_string(x.size()));
    EXPECT_TRUE(sum.surroundingsUntouched());
}
void expectSumLn(const std::vector<float>& x) {
    expectMember<float>(vornsSumLn_32f, x);
    expectMember<float>(vornsSumLn_32f64f, x);
}
void expectSumLn(const std::vector<double>& x) { expectMember<double>(vornsSumLn_64f, x); }
void expectSumLn(const std::vector<Vorn16s>& x) { expectMember<float>(vornsSumLn_16s32f, x); }

template <class T>
std::vector<T> valuesBetween(test::Random& random, std::size_t n, double low, double high) {
    std::vector<T> x(n);
    for (T& value : x) value = static_cast<T>(random.uniform(low, high));
    return x;
}
template <class T>
T anyOf(test::Random& random, const std::vector<T>& values) {
    return values[static_cast<std::size_t>(random.integer(0, static_cast<std::int64_t>(values.size()) - 1))];
}

template <class T>
class SumLn : public ::testing::Test {};
using SumLnSources = ::testing::Types<float, double, Vorn16s>;
TYPED_TEST_SUITE(SumLn, SumLnSources);

TYPED_TEST(SumLn, EqualsTheModel) {
    using T = TypeParam;
    test::Random random(4);
    std::vector<T> hard;
    if constexpr (std::is_integral_v<T>) {
        hard = test::hardIntegers<T>();
    } else {
        hard = test::hardFloats<T>();
    }
    for (std::size_t n = 1; n <= 70; ++n) {
        expectSumLn(valuesBetween<T>(random, n, 1.0, 32767.0));
        if constexpr (std::is_floating_point_v<T>) {
            expectSumLn(valuesBetween<T>(random, n, 0.001, 50.0));
            expectSumLn(valuesBetween<T>(random, n, 0.0, static_cast<double>(std::numeric_limits<T>::min())));
        }
        for (int round = 0; round < 20; ++round) {
            std::vector<T> x(n);
            for (T& value : x) {
                value = random.anyBits<T>();
                if (value < 0) value = static_cast<T>(-value);
            }
            expectSumLn(x);
            for (T& value : x) value = anyOf(random, hard);
            expectSumLn(x);
            // One hard element in good company.
            x = valuesBetween<T>(random, n, 1.0, 3.0);
            x[static_cast<std::size_t>(random.integer(0, static_cast<int>(n) - 1))] = anyOf(random, hard);
            expectSumLn(x);
        }
    }
    for (std::size_t n : {511, 512, 513, 519, 520, 1023, 1024, 1025, 4099}) {
        expectSumLn(valuesBetween<T>(random, n, 1.0, 30000.0));
        expectSumLn(std::vector<T>(n, std::numeric_limits<T>::max()));  // the largest products that a run can hold
        if constexpr (std::is_floating_point_v<T>) expectSumLn(std::vector<T>(n, std::numeric_limits<T>::denorm_min()));
        // Bad elements in a later run decide only if no earlier one is bad.
        std::vector<T> x = valuesBetween<T>(random, n, 1.0, 100.0);
        x[n - 1] = 0;
        expectSumLn(x);
        x[n / 2] = static_cast<T>(-1);
        expectSumLn(x);
    }
}

TEST(SumLn32f, IsCloseToTheSumOfLogarithms) {
    test::Random random(5);
    for (int len : {1, 8, 24, 100, 512, 3000}) {
        const std::vector<float> x = random.floats(static_cast<std::size_t>(len), 0.0, 1000.0);
        test::Precise expected(0.0);
        for (float value : x) expected = expected + log(test::Precise(static_cast<double>(value)));
        float sum = 0.0f;
        ASSERT_EQ(vornsSumLn_32f(x.data(), len, &sum), vornStsNoErr);
        // A pair of mantissas is multiplied in single: 2^-24 each; then one rounding to single.
        EXPECT_NEAR(static_cast<double>(sum), expected.toDouble(),
                    len / 2 * 0x1p-24 + std::abs(expected.toDouble()) * 0x1p-23)
            << len;
    }
}

TEST(SumLn64f, IsCloseToTheSumOfLogarithms) {
    test::Random random(6);
    for (int len : {1, 8, 24, 100, 512, 3000}) {
        const std::vector<double> x = random.doubles(static_cast<std::size_t>(len), 0.0, 1000.0);
        test::Precise expected(0.0);
        for (double value : x) expected = expected + log(test::Precise(value));
        double sum = 0.0;
        ASSERT_EQ(vornsSumLn_64f(x.data(), len, &sum), vornStsNoErr);
        // Every product of mantissas rounds once: 2^-53 each; then some roundings of the whole.
        EXPECT_NEAR(sum, expected.toDouble(), len * 0x1p-53 + std::abs(expected.toDouble()) * 0x1p-50) << len;
    }
}

// A hundred times ln 32767, and ln 2 + ln 3 + ln 5 = ln 30.
TEST(SumLn16s32f, LiteralValues) {
    float sum = 0.0f;
    EXPECT_EQ(vornsSumLn_16s32f(std::vector<Vorn16s>(100, 32767).data(), 100, &sum), vornStsNoErr);
    EXPECT_EQ(sum, 1039.71777f);
    const Vorn16s primes[] = {2, 3, 5, 1};
    EXPECT_EQ(vornsSumLn_16s32f(primes, 4, &sum), vornStsNoErr);
    EXPECT_EQ(sum, 3.4011974f);
    const Vorn16s zeroFirst[] = {7, 0, -3}, negativeFirst[] = {7, -3, 0};
    EXPECT_EQ(vornsSumLn_16s32f(zeroFirst, 3, &sum), vornStsLnZeroArg);
    EXPECT_EQ(bitsOf(sum), 0x7F800000u);
    EXPECT_EQ(vornsSumLn_16s32f(negativeFirst, 3, &sum), vornStsLnNegArg);
    EXPECT_EQ(bitsOf(sum), 0x7FC00000u);
}

// The double forms store the single constants.
TEST(SumLn64f, StatedConstants) {
    constexpr double infinity = std::numeric_limits<double>::infinity(), nan = std::numeric_limits<double>::quiet_NaN();
    double sum = 0.0;
    const double zero[] = {2.0, -0.0, -1.0}, negative[] = {2.0, -1.0, 0.0};
    EXPECT_EQ(vornsSumLn_64f(zero, 3, &sum), vornStsLnZeroArg);
    EXPECT_EQ(sum, infinity);
    EXPECT_EQ(vornsSumLn_64f(negative, 3, &sum), vornStsLnNegArg);
    EXPECT_EQ(std::bit_cast<std::uint64_t>(sum), 0x7FF8000000000000u);
    for (double bad : {infinity, -infinity, nan}) {
        const double x[] = {2.0, bad, 0.0, -1.0};
        sum = 0.0;
        EXPECT_EQ(vornsSumLn_64f(x, 4, &sum), vornStsNoErr);
        EXPECT_TRUE(std::isnan(sum));
    }
    const float single[] = {1.0f, 0.0f};
    EXPECT_EQ(vornsSumLn_32f64f(single, 2, &sum), vornStsLnZeroArg);
    EXPECT_EQ(sum, infinity);
}

TEST(SumLn32f, StatedConstants) {
    float sum = 0.0f;
    const float zero[] = {2.0f, 0.0f, -1.0f};
    EXPECT_EQ(vornsSumLn_32f(zero, 3, &sum), vornStsLnZeroArg);
    EXPECT_EQ(bitsOf(sum), 0x7F800000u);
    const float negative[] = {2.0f, -1.0f, 0.0f};
    EXPECT_EQ(vornsSumLn_32f(negative, 3, &sum), vornStsLnNegArg);
    EXPECT_EQ(bitsOf(sum), 0x7FC00000u);
    for (float bad : {inf, -inf, std::numeric_limits<float>::quiet_NaN()}) {
        const float x[] = {2.0f, bad, 0.0f, -1.0f};
        EXPECT_EQ(vornsSumLn_32f(x, 4, &sum), vornStsNoErr);
        EXPECT_TRUE(std::isnan(sum));
    }
}

}  // namespace
