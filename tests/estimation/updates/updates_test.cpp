// Means, variances and weights from sums over the data.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <vector>

#include "model/updates.h"
#include "support/expect.h"
#include "support/guarded.h"
#include "support/rounding_mode.h"
#include "support/values.h"
#include "support/vectors.h"
#include "vornsr.h"

namespace {

using test::Guarded;
using test::Offset;
using test::Random;
using test::RoundingMode;
using test::same;
using test::sameBits;

VornStatus mean(const float* src, float* mean, int len, float occ) { return vornsUpdateMean_32f(src, mean, len, occ); }
VornStatus mean(const double* src, double* mean, int len, double occ) {
    return vornsUpdateMean_64f(src, mean, len, occ);
}
VornStatus variance(const float* mean, const float* var, const float* floor, float* dst, int len, float meanOcc,
                    float varOcc) {
    return vornsUpdateVar_32f(mean, var, floor, dst, len, meanOcc, varOcc);
}
VornStatus variance(const double* mean, const double* var, const double* floor, double* dst, int len, double meanOcc,
                    double varOcc) {
    return vornsUpdateVar_64f(mean, var, floor, dst, len, meanOcc, varOcc);
}
VornStatus weight(const float* src, float* dst, int len, float* sum, float occ, float floor) {
    return vornsUpdateWeight_32f(src, dst, len, sum, occ, floor);
}
VornStatus weight(const double* src, double* dst, int len, double* sum, double occ, double floor) {
    return vornsUpdateWeight_64f(src, dst, len, sum, occ, floor);
}

template <class T>
class Updates : public testing::Test {
protected:
    using L = std::numeric_limits<T>;
    static std::vector<T> values(Random& random, std::size_t len, double low, double high) {
        std::vector<T> x(len);
        for (T& value : x) value = static_cast<T>(random.uniform(low, high));
        return x;
    }
    // Ordinary sums, any numbers, any bits.
    static std::vector<T> sums(Random& random, std::size_t len, int kind) {
        if (kind == 0) return values(random, len, -100.0, 100.0);
        if (kind == 1) return random.pick(test::hardFloats<T>(), len);
        std::vector<T> x(len);
        for (T& value : x) value = random.anyBits<T>();
        return x;
    }
    static T occupation(Random& random, int kind) {
        return static_cast<T>(kind == 0
                                  ? random.uniform(0.5, 50.0)
                                  : std::ldexp(random.uniform(1.0, 2.0), static_cast<int>(random.integer(-126, 127))));
    }
};
using Floats = testing::Types<float, double>;
TYPED_TEST_SUITE(Updates, Floats);

constexpr unsigned modes[] = {RoundingMode::nearest, RoundingMode::down, RoundingMode::up, RoundingMode::towardZero};

TYPED_TEST(Updates, MeansAreAddedToBitForBit) {
    using T = TypeParam;
    Random random(1);
    for (std::size_t len : test::lengths()) {
        for (int kind : {0, 1, 2}) {
            const std::vector<T> sums = this->sums(random, len, kind), old = this->sums(random, len, kind);
            const T occ = this->occupation(random, kind);
            const RoundingMode changed(modes[len % 4]);
            std::vector<T> expected = old;
            ASSERT_EQ(model::updates::mean(sums, expected, occ), vornStsNoErr);
            const Guarded<T> src(sums);
            Guarded<T> dst(old);
            EXPECT_EQ(mean(src, dst, static_cast<int>(len), occ), vornStsNoErr);
            EXPECT_TRUE(sameBits(dst, expected)) << len << ' ' << kind;
            EXPECT_TRUE(dst.surroundingsUntouched());
            for (std::size_t offset : {std::size_t{0}, sizeof(T)}) {
                Offset<T> a(len, offset), d(len, 3 * sizeof(T));
                a.assign(sums), d.assign(old);
                EXPECT_EQ(mean(a, d, static_cast<int>(len), occ), vornStsNoErr);
                EXPECT_TRUE(sameBits(d.values(), expected)) << len << ' ' << kind << " at " << offset;
            }
        }
    }
}

TYPED_TEST(Updates, VariancesBitForBit) {
    using T = TypeParam;
    Random random(2);
    int warnings = 0;
    for (std::size_t len : test::lengths()) {
        for (int kind : {0, 1, 2}) {
            const std::vector<T> meanAcc = this->sums(random, len, kind);
            std::vector<T> varAcc = kind == 0 ? this->values(random, len, 0.0, 400.0) : this->sums(random, len, kind);
            const std::vector<T> floor =
                kind == 0 ? this->values(random, len, 0.0, 20.0) : this->sums(random, len, kind);
            const T meanOcc = this->occupation(random, kind), varOcc = this->occupation(random, kind);
            // One variance above its floor, at any place, or none.
            if (kind == 0 && len % 3 != 0) {
                std::fill(varAcc.begin(), varAcc.end(), T(0));
                if (len % 3 == 1) varAcc[len * 7 / 9] = T(1e10);
            }
            const RoundingMode changed(modes[len % 4]);
            std::vector<T> expected(len);
            const VornStatus status = model::updates::variance(meanAcc, varAcc, floor, expected, meanOcc, varOcc);
            warnings += status == vornStsBelowFloor;
            const Guarded<T> a(meanAcc), b(varAcc), c(floor);
            Guarded<T> dst(len);
            EXPECT_EQ(variance(a, b, c, dst, static_cast<int>(len), meanOcc, varOcc), status) << len << ' ' << kind;
            EXPECT_TRUE(sameBits(dst, expected)) << len << ' ' << kind;
            EXPECT_TRUE(dst.surroundingsUntouched());
            // Over each of the operands, on an address of its own.
            for (int operand : {0, 1, 2}) {
                Offset<T> of[] = {Offset<T>(len, 0), Offset<T>(len, operand == 1 ? sizeof(T) : 0), Offset<T>(len, 0)};
                of[0].assign(meanAcc), of[1].assign(varAcc), of[2].assign(floor);
                EXPECT_EQ(variance(of[0], of[1], of[2], of[operand], static_cast<int>(len), meanOcc, varOcc), status);
                EXPECT_TRUE(sameBits(of[operand].values(), expected)) << len << ' ' << kind << " over " << operand;
                EXPECT_TRUE(of[operand].surroundingsUntouched());
            }
        }
    }
    EXPECT_GT(warnings, 20);
}

TYPED_TEST(Updates, WeightsAndTheirSumBitForBit) {
    using T = TypeParam;
    Random random(3);
    for (std::size_t len : test::lengths()) {
        for (int kind : {0, 1, 2}) {
            for (int above : {0, 1, 2}) {  // none above the floor, one, some
                std::vector<T> sums = this->sums(random, len, kind);
                const T occ = this->occupation(random, kind);
                T floor = kind == 0 ? T(0.5) : sums[len / 2];
                if (above < 2 && kind == 0) {
                    std::fill(sums.begin(), sums.end(), T(0.1));
                    if (above == 1) sums[len * 5 / 7] = T(1e6);
                }
                const RoundingMode changed(modes[len % 4]);
                std::vector<T> expected(len);
                T expectedSum;
                const VornStatus status = model::updates::weight(sums, expected, expectedSum, occ, floor);
                const Guarded<T> src(sums);
                Guarded<T> dst(len), sum(1);
                EXPECT_EQ(weight(src, dst, static_cast<int>(len), sum, occ, floor), status) << len << ' ' << kind;
                EXPECT_TRUE(sameBits(dst, expected)) << len << ' ' << kind;
                EXPECT_TRUE(same(sum[0], expectedSum)) << len << ' ' << kind << ": " << sum[0] << ' ' << expectedSum;
                EXPECT_TRUE(dst.surroundingsUntouched() && sum.surroundingsUntouched());
                Offset<T> srcDst(len, kind * sizeof(T));
                srcDst.assign(sums);
                EXPECT_EQ(weight(srcDst, srcDst, static_cast<int>(len), sum, occ, floor), status);
                EXPECT_TRUE(sameBits(srcDst.values(), expected)) << len << ' ' << kind << " in place";
                EXPECT_TRUE(same(sum[0], expectedSum));
            }
        }
    }
}

// ---- Occupations

TYPED_TEST(Updates, OccupationsThatGiveNothing) {
    using T = TypeParam;
    using L = std::numeric_limits<T>;
    const T nan = L::quiet_NaN(), inf = L::infinity(), least = L::min();
    const struct {
        T occ;
        VornStatus status;
    } cases[] = {
        {nan, vornStsNegOccErr},
        {-nan, vornStsNegOccErr},
        {T(-1), vornStsNegOccErr},
        {-inf, vornStsNegOccErr},
        {-L::denorm_min(), vornStsNegOccErr},
        {T(0), vornStsZeroOcc},
        {T(-0.0), vornStsZeroOcc},
        {L::denorm_min(), vornStsZeroOcc},
        {least / 2, vornStsZeroOcc},
        {least, vornStsZeroOcc},
        {std::nextafter(least, T(1)), vornStsNoErr},
        {T(1), vornStsNoErr},
        {inf, vornStsNoErr},
    };
    const Guarded<T> src{1, 2, 3, 4, 5};
    for (const auto& first : cases) {
        Guarded<T> dst(5), sum(1);
        EXPECT_EQ(mean(src, dst, 5, first.occ), first.status) << first.occ;
        EXPECT_TRUE(dst.untouched() || first.status == vornStsNoErr) << first.occ;
        dst.fillPattern();
        EXPECT_EQ(weight(src, dst, 5, sum, first.occ, T(-1)), first.status) << first.occ;
        EXPECT_EQ(dst.untouched(), first.status != vornStsNoErr) << first.occ;
        EXPECT_EQ(sum.untouched(), first.status != vornStsNoErr) << first.occ;
        // A negative occupation of either kind comes before one that is zero.
        for (const auto& second : cases) {
            const VornStatus status =
                first.status == vornStsNegOccErr || second.status == vornStsNegOccErr ? vornStsNegOccErr
                : first.status == vornStsZeroOcc || second.status == vornStsZeroOcc   ? vornStsZeroOcc
                                                                                      : vornStsNoErr;
            dst.fillPattern();
            const VornStatus got = variance(src, src, src, dst, 5, first.occ, second.occ);
            EXPECT_EQ(got == vornStsBelowFloor ? vornStsNoErr : got, status) << first.occ << ' ' << second.occ;
            EXPECT_EQ(dst.untouched(), status != vornStsNoErr) << first.occ << ' ' << second.occ;
        }
    }
}

// ---- Floors

TYPED_TEST(Updates, AVarianceAtItsFloorCountsAsFloored) {
    using T = TypeParam;
    const T nan = std::numeric_limits<T>::quiet_NaN();
    T dst[3];
    // v = 8/2 - (6/3)^2 = 0, and 14/2 - 4 = 3.
    const T meanAcc[] = {6, 6, 6}, varAcc[] = {14, 14, 14}, floor[] = {3, 3, 3};
    EXPECT_EQ(variance(meanAcc, varAcc, floor, dst, 3, T(3), T(2)), vornStsBelowFloor);
    EXPECT_TRUE(sameBits(dst, floor, 3));
    const T below[] = {8, 16, 8}, result[] = {3, 4, 3};
    EXPECT_EQ(variance(meanAcc, below, floor, dst, 3, T(3), T(2)), vornStsNoErr) << "one above the floor";
    EXPECT_TRUE(sameBits(dst, result, 3));
    const T none[] = {nan, nan, nan};
    EXPECT_EQ(variance(meanAcc, none, floor, dst, 3, T(3), T(2)), vornStsBelowFloor) << "no number lands on the floor";
    EXPECT_TRUE(sameBits(dst, floor, 3));
    EXPECT_EQ(variance(meanAcc, varAcc, none, dst, 3, T(3), T(2)), vornStsBelowFloor) << "a floor that is no number";
    EXPECT_TRUE(sameBits(dst, none, 3));
}

TEST(Updates, WeightsBelowTheFloor) {
    const std::vector<float> src(7, 1.0f);
    std::vector<float> dst(7);
    float sum;
    EXPECT_EQ(weight(src.data(), dst.data(), 7, &sum, 100.0f, 0.125f), vornStsBelowFloor);
    EXPECT_EQ(dst, std::vector<float>(7, 0.125f));
    EXPECT_EQ(sum, 7 * 0.125f);
    const std::vector<double> wide(7, 1.0);
    std::vector<double> wideDst(7);
    double wideSum;
    EXPECT_EQ(weight(wide.data(), wideDst.data(), 4, &wideSum, 100.0, 0.125), vornStsNoErr) << "in double, on purpose";
    EXPECT_EQ(wideSum, 4 * 0.125);
    for (int len = 1; len <= 7; ++len) {
        EXPECT_EQ(weight(wide.data(), wideDst.data(), len, &wideSum, 100.0, 0.125),
                  len == 1 ? vornStsBelowFloor : vornStsNoErr);
        EXPECT_EQ(wideSum, len * 0.125);
    }
    const float none[] = {NAN, NAN};
    EXPECT_EQ(weight(none, dst.data(), 2, &sum, 1.0f, 0.25f), vornStsBelowFloor) << "no number lands on the floor";
    EXPECT_EQ(sum, 0.5f);
    EXPECT_EQ(weight(none, dst.data(), 2, &sum, 1.0f, NAN), vornStsBelowFloor);
    EXPECT_TRUE(std::isnan(sum));
}

// ---- Beside the model

// Sums of weighted observations give back the moments of the observations.
TYPED_TEST(Updates, MomentsOfTheObservations) {
    using T = TypeParam;
    Random random(4);
    constexpr int len = 39, frames = 200;
    constexpr double u = sizeof(T) == 4 ? 0x1p-24 : 0x1p-53;
    std::vector<T> meanAcc(len), varAcc(len), floor(len), newMean(len), newVar(len);
    std::vector<long double> first(len), second(len);
    long double occ = 0;
    std::vector<double> gamma(frames);
    for (double& g : gamma) g = random.uniform(0.1, 1.0), occ += g;
    for (int t = 0; t < frames; ++t) {
        for (std::size_t i = 0; i < len; ++i) {
            const double x = random.uniform(-3.0, 5.0);
            first[i] += gamma[static_cast<std::size_t>(t)] * static_cast<long double>(x);
            second[i] += gamma[static_cast<std::size_t>(t)] * static_cast<long double>(x) * x;
        }
    }
    for (std::size_t i = 0; i < len; ++i) {
        meanAcc[i] = static_cast<T>(first[i]);
        varAcc[i] = static_cast<T>(second[i]);
        floor[i] = i % 13 == 0 ? T(50) : T(0.01);
    }
    const auto count = static_cast<T>(occ);
    ASSERT_EQ(mean(meanAcc.data(), newMean.data(), len, count), vornStsNoErr);
    ASSERT_EQ(variance(meanAcc.data(), varAcc.data(), floor.data(), newVar.data(), len, count, count), vornStsNoErr);
    for (std::size_t i = 0; i < len; ++i) {
        const long double m = first[i] / occ, square = second[i] / occ;
        EXPECT_NEAR(newMean[i], static_cast<double>(m), 5 * u * static_cast<double>(std::fabs(m)));
        const auto v = static_cast<double>(i % 13 == 0 ? 50 : square - m * m);
        EXPECT_NEAR(newVar[i], v, 20 * u * static_cast<double>(square));
    }
    // A second pass on top of the first doubles the mean.
    const std::vector<T> once = newMean;
    ASSERT_EQ(mean(meanAcc.data(), newMean.data(), len, count), vornStsNoErr);
    for (std::size_t i = 0; i < len; ++i) EXPECT_EQ(newMean[i], 2 * once[i]);
}

TYPED_TEST(Updates, WeightsOfAMixtureSumToOne) {
    using T = TypeParam;
    Random random(5);
    for (int len : {1, 3, 16, 39, 1000}) {
        const std::vector<T> occupations = this->values(random, static_cast<std::size_t>(len), 0.0, 10.0);
        std::vector<T> weights(occupations.size());
        long double total = 0;
        for (T x : occupations) total += x;
        T sum;
        ASSERT_GE(weight(occupations.data(), weights.data(), len, &sum, static_cast<T>(total), T(0)), vornStsNoErr);
        EXPECT_NEAR(sum, 1.0, len * (sizeof(T) == 4 ? 0x1p-23 : 0x1p-52));
    }
}

// ---- Checks

template <class T>
struct Arguments {
    std::vector<T> data = std::vector<T>(3, T(1));
    Guarded<T> out = Guarded<T>(3), total = Guarded<T>(1);
    const T *src = data.data(), *varAcc = data.data(), *floor = data.data();
    T *dst = out.data(), *sum = total.data();
    int len = 3;
    T occ = 2, varOcc = 2;
};

TYPED_TEST(Updates, ChecksInOrder) {
    using T = TypeParam;
    using A = Arguments<T>;
    using Rule = test::Rule<A>;
    const auto good = [] { return A(); };
    const auto untouched = [](A& a) { return a.out.untouched() && a.total.untouched(); };
    const Rule src = {"src", vornStsNullPtrErr, [](A& a) { a.src = nullptr; }};
    const Rule varAcc = {"varAcc", vornStsNullPtrErr, [](A& a) { a.varAcc = nullptr; }};
    const Rule floor = {"floor", vornStsNullPtrErr, [](A& a) { a.floor = nullptr; }};
    const Rule dst = {"dst", vornStsNullPtrErr, [](A& a) { a.dst = nullptr; }};
    const Rule sum = {"sum", vornStsNullPtrErr, [](A& a) { a.sum = nullptr; }};
    const Rule len0 = {"len 0", vornStsSizeErr, [](A& a) { a.len = 0; }};
    const Rule lenLow = {"len -5", vornStsSizeErr, [](A& a) { a.len = -5; }};
    const Rule negative = {"occ < 0", vornStsNegOccErr, [](A& a) { a.occ = -1; }};
    const Rule negativeVar = {"varOcc < 0", vornStsNegOccErr, [](A& a) { a.varOcc = -1; }};
    const Rule zero = {"occ = 0", vornStsZeroOcc, [](A& a) { a.occ = 0; }};
    const Rule zeroVar = {"varOcc = 0", vornStsZeroOcc, [](A& a) { a.varOcc = 0; }};
    // A rule that is broken last stands: where both change one occupation, the earlier rule is meant.
    test::expectCheckOrder<A>(good, [](A& a) { return mean(a.src, a.dst, a.len, a.occ); }, untouched,
                              {src, dst, len0, lenLow, negative, zero});
    test::expectCheckOrder<A>(good,
                              [](A& a) { return variance(a.src, a.varAcc, a.floor, a.dst, a.len, a.occ, a.varOcc); },
                              untouched, {src, varAcc, floor, dst, len0, lenLow, negative, negativeVar, zero, zeroVar});
    test::expectCheckOrder<A>(good, [](A& a) { return weight(a.src, a.dst, a.len, a.sum, a.occ, T(0.1)); }, untouched,
                              {src, dst, sum, len0, lenLow, negative, zero});
}

}  // namespace
