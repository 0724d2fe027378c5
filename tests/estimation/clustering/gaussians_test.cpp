// Merging, distance and splitting of Gaussians.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>
#include <vector>

#include "model/clustering.h"
#include "support/allocation.h"
#include "support/expect.h"
#include "support/guarded.h"
#include "support/rounding_mode.h"
#include "support/values.h"
#include "support/vectors.h"
#include "vornsr.h"

namespace {

using model::clustering::Gaussians;
using test::Guarded;
using test::Offset;
using test::Random;
using test::RoundingMode;
using test::same;
using test::sameBits;

VornStatus merge(const float* m1, const float* v1, const float* m2, const float* v2, float* mean, float* var, int len,
                 float* gconst, float w1, float w2) {
    return vornsGaussianMerge_32f(m1, v1, m2, v2, mean, var, len, gconst, w1, w2);
}
VornStatus merge(const double* m1, const double* v1, const double* m2, const double* v2, double* mean, double* var,
                 int len, double* gconst, double w1, double w2) {
    return vornsGaussianMerge_64f(m1, v1, m2, v2, mean, var, len, gconst, w1, w2);
}
VornStatus distance(const float* m1, const float* v1, const float* m2, const float* v2, int len, float* dst, float w1,
                    float g1, float w2, float g2) {
    return vornsGaussianDist_32f(m1, v1, m2, v2, len, dst, w1, g1, w2, g2);
}
VornStatus distance(const double* m1, const double* v1, const double* m2, const double* v2, int len, double* dst,
                    double w1, double g1, double w2, double g2) {
    return vornsGaussianDist_64f(m1, v1, m2, v2, len, dst, w1, g1, w2, g2);
}
VornStatus split(float* up, const float* var, float* down, float* dstVar, int len, float val) {
    return vornsGaussianSplit_32f(up, var, down, dstVar, len, val);
}
VornStatus split(double* up, const double* var, double* down, double* dstVar, int len, double val) {
    return vornsGaussianSplit_64f(up, var, down, dstVar, len, val);
}

template <class T>
constexpr double u = sizeof(T) == 4 ? 0x1p-24 : 0x1p-53;

template <class T>
class Gaussian : public testing::Test {
protected:
    static std::vector<T> values(Random& random, std::size_t len, double low, double high) {
        std::vector<T> x(len);
        for (T& value : x) value = static_cast<T>(random.uniform(low, high));
        return x;
    }
    static Gaussians<T> pair(Random& random, std::size_t len) {
        return {values(random, len, -3.0, 3.0),           values(random, len, 0.2, 5.0),
                values(random, len, -3.0, 3.0),           values(random, len, 0.2, 5.0),
                static_cast<T>(random.uniform(0.1, 9.0)), static_cast<T>(random.uniform(0.1, 9.0))};
    }
    // Some elements are anything.
    static Gaussians<T> strangePair(Random& random, std::size_t len, int turn) {
        Gaussians<T> g = pair(random, len);
        const std::vector<T> hard = test::hardFloats<T>();
        for (int k = 0; k <= turn % 3; ++k) {
            const auto at = static_cast<std::size_t>(random.integer(0, static_cast<std::int64_t>(len) - 1));
            (turn % 2 == 0 ? g.mean1 : g.var2)[at] = turn % 5 == 0 ? random.anyBits<T>() : random.pick(hard, 1)[0];
            if (turn % 7 == 0) g.mean1[at] = g.mean2[at] = g.var1[at] = g.var2[at] = 0;
        }
        if (turn % 11 == 3) g.wgt1 = random.pick(hard, 1)[0];
        if (turn % 11 == 5) g.wgt2 = -g.wgt1;
        return g;
    }
};
using Floats = testing::Types<float, double>;
TYPED_TEST_SUITE(Gaussian, Floats);

constexpr unsigned modes[] = {RoundingMode::nearest, RoundingMode::down, RoundingMode::up, RoundingMode::towardZero};

// What was not stored keeps the pattern of the buffer.
template <class T>
void expectMerged(const Gaussians<T>& g, const std::string& what) {
    SCOPED_TRACE(what);
    const std::size_t len = g.mean1.size();
    const int n = static_cast<int>(len);
    const auto expected = model::clustering::merge(g);
    const Guarded<T> m1(g.mean1), v1(g.var1), m2(g.mean2), v2(g.var2), pattern(len);
    Guarded<T> mean(len), var(len), gconst(1);
    EXPECT_EQ(merge(m1, v1, m2, v2, mean, var, n, gconst, g.wgt1, g.wgt2), expected.status);
    const std::size_t stored = expected.mean.size();
    EXPECT_TRUE(sameBits(mean.data(), expected.mean.data(), stored));
    EXPECT_TRUE(sameBits(var.data(), expected.var.data(), stored));
    EXPECT_TRUE(sameBits(mean + stored, pattern + stored, len - stored)) << "written behind the end";
    EXPECT_TRUE(sameBits(var + stored, pattern + stored, len - stored)) << "written behind the end";
    EXPECT_TRUE(same(gconst[0], expected.gconst)) << gconst[0] << ' ' << expected.gconst;
    EXPECT_TRUE(mean.surroundingsUntouched() && var.surroundingsUntouched() && gconst.surroundingsUntouched());
    // Over the second Gaussian, and the mean over the first one.
    Offset<T> a(len, sizeof(T)), b(len, 0), c(len, 8);
    a.assign(g.mean1), b.assign(g.mean2), c.assign(g.var2);
    EXPECT_EQ(merge(a, v1, b, c, b, c, n, gconst, g.wgt1, g.wgt2), expected.status);
    EXPECT_TRUE(sameBits(b.data(), expected.mean.data(), stored) && sameBits(c.data(), expected.var.data(), stored));
    b.assign(g.mean2), c.assign(g.var2);
    EXPECT_EQ(merge(a, v1, b, c, a, c, n, gconst, g.wgt1, g.wgt2), expected.status);
    EXPECT_TRUE(sameBits(a.data(), expected.mean.data(), stored) && sameBits(c.data(), expected.var.data(), stored));
    EXPECT_TRUE(same(gconst[0], expected.gconst));
}

TYPED_TEST(Gaussian, MergedBitForBit) {
    Random random(1);
    for (std::size_t len : test::lengths()) {
        for (int turn = 0; turn < 3; ++turn) {
            expectMerged(this->pair(random, len), std::to_string(len) + " turn " + std::to_string(turn));
        }
    }
    for (std::size_t len = 1; len <= 70; ++len) {
        for (int k = 0; k < 12; ++k) {
            const int turn = static_cast<int>(len) * 12 + k;
            expectMerged(this->strangePair(random, len, turn),
                         std::to_string(len) + " strange " + std::to_string(turn));
        }
    }
}

TYPED_TEST(Gaussian, DistanceBitForBit) {
    using T = TypeParam;
    Random random(2);
    int seen[3] = {};
    const auto expectDistance = [&](const Gaussians<T>& g, std::size_t len, int turn) {
        const T g1 = static_cast<T>(random.uniform(-50.0, 100.0)), g2 = static_cast<T>(random.uniform(-50.0, 100.0));
        T expected = 0;
        const VornStatus status = model::clustering::distance(g, g1, g2, expected);
        ++seen[status == vornStsNoErr ? 0 : status == vornStsLnZeroArg ? 1 : 2];
        const Guarded<T> m1(g.mean1), v1(g.var1), m2(g.mean2), v2(g.var2);
        Guarded<T> dst(1);
        EXPECT_EQ(distance(m1, v1, m2, v2, static_cast<int>(len), dst, g.wgt1, g1, g.wgt2, g2), status)
            << len << ' ' << turn;
        EXPECT_TRUE(same(dst[0], expected)) << len << ' ' << turn << ": " << dst[0] << ' ' << expected;
        EXPECT_TRUE(dst.surroundingsUntouched());
        Offset<T> other(len, sizeof(T));
        other.assign(g.mean2);
        T again = 0;
        EXPECT_EQ(distance(m1, v1, other, v2, static_cast<int>(len), &again, g.wgt1, g1, g.wgt2, g2), status);
        EXPECT_TRUE(same(again, expected)) << len << ' ' << turn;
    };
    for (std::size_t len : test::lengths()) {
        for (int turn : {0, 1, 2}) expectDistance(this->pair(random, len), len, turn);
    }
    for (std::size_t len : {511, 512, 513, 514, 520, 1023, 1024, 1025, 1030}) {
        for (int turn = 0; turn < 4; ++turn) expectDistance(this->pair(random, len), len, turn);
        for (int turn = 0; turn < 12; ++turn) expectDistance(this->strangePair(random, len, turn), len, turn);
    }
    for (std::size_t len = 1; len <= 70; ++len) {
        for (int k = 0; k < 16; ++k) {
            const int turn = static_cast<int>(len) * 16 + k;
            expectDistance(this->strangePair(random, len, turn), len, turn);
        }
    }
    for (int count : seen) EXPECT_GT(count, 100);
}

// ---- Bad variances. With equal means of 0 and weights of 1 the pooled variance is the mean of the two.

TEST(GaussianMerge, SingleStopsInTheMiddle) {
    for (const double bad : {0.0, -1.0, static_cast<double>(NAN)}) {
        for (std::size_t at : {std::size_t{0}, std::size_t{3}, std::size_t{8}, std::size_t{17}, std::size_t{38}}) {
            const std::vector<float> zero(39, 0.0f), one(39, 1.0f);
            std::vector<float> var(39, 3.0f);
            var[at] = static_cast<float>(2 * bad - 1);
            Guarded<float> mean(39), dstVar(39), gconst(1), pattern(39);
            EXPECT_EQ(merge(zero.data(), one.data(), zero.data(), var.data(), mean, dstVar, 39, gconst, 1, 1),
                      bad < 0 ? vornStsLnNegArg : vornStsLnZeroArg);
            for (std::size_t i = 0; i <= at; ++i) {
                EXPECT_EQ(mean[i], 0.0f);
                EXPECT_TRUE(same(dstVar[i], i == at ? static_cast<float>(bad) : 2.0f)) << i;
            }
            EXPECT_TRUE(sameBits(mean + at + 1, pattern.data(), 38 - at));
            EXPECT_TRUE(sameBits(dstVar + at + 1, pattern.data(), 38 - at));
            EXPECT_TRUE(bad < 0 ? std::isnan(gconst[0]) : gconst[0] == INFINITY);
        }
    }
}

TEST(GaussianMerge, DoubleStoresEverything) {
    for (const double bad : {0.0, -1.0, static_cast<double>(NAN), static_cast<double>(INFINITY)}) {
        const std::vector<double> zero(39, 0.0), one(39, 1.0);
        std::vector<double> var(39, 3.0), mean(39), dstVar(39);
        var[3] = 2 * bad - 1;
        double gconst = 0;
        EXPECT_EQ(
            merge(zero.data(), one.data(), zero.data(), var.data(), mean.data(), dstVar.data(), 39, &gconst, 1, 1),
            bad < 0    ? vornStsLnNegArg
            : bad == 0 ? vornStsLnZeroArg
                       : vornStsNoErr);
        for (std::size_t i = 0; i < 39; ++i) EXPECT_TRUE(same(dstVar[i], i == 3 ? bad : 2.0)) << i;
        EXPECT_TRUE(bad == 0 ? gconst == INFINITY : std::isnan(gconst)) << bad << ' ' << gconst;
    }
}

// Up to 12 (in double 10) elements a logarithm each: no number counts as zero and an infinity is one. Above, the sum of
// logarithms decides.
TYPED_TEST(Gaussian, ShortAndLongDistancesOfStrangeVariances) {
    using T = TypeParam;
    const T inf = std::numeric_limits<T>::infinity(), nan = std::numeric_limits<T>::quiet_NaN();
    const int shortest = sizeof(T) == 4 ? 12 : 10;
    for (int len : {1, 2, 7, 8, shortest - 1, shortest, shortest + 1, shortest + 2, 39}) {
        const auto size = static_cast<std::size_t>(len);
        const auto status = [&](T atFirst, T atLast, T& dst) {
            std::vector<T> zero(size, T(0)), var(size, T(1));
            var.back() = atLast;
            var.front() = atFirst;
            return distance(zero.data(), var.data(), zero.data(), var.data(), len, &dst, T(1), T(2), T(1), T(2));
        };
        const bool isShort = len <= shortest;
        T dst = 0;
        EXPECT_EQ(status(nan, T(1), dst), isShort ? vornStsLnZeroArg : vornStsNoErr) << len;
        EXPECT_TRUE(isShort ? dst == inf : std::isnan(dst)) << len;
        EXPECT_EQ(status(inf, T(1), dst), vornStsNoErr) << len;
        EXPECT_TRUE(isShort ? dst == inf : std::isnan(dst)) << len;
        EXPECT_EQ(status(T(0), T(1), dst), vornStsLnZeroArg) << len;
        EXPECT_EQ(dst, inf);
        EXPECT_EQ(status(T(-1), T(1), dst), vornStsLnNegArg) << len;
        EXPECT_TRUE(std::isnan(dst));
        if (len == 1) continue;
        EXPECT_EQ(status(T(0), T(-1), dst), vornStsLnZeroArg) << "the first one decides";
        EXPECT_EQ(status(T(-1), T(0), dst), vornStsLnNegArg) << "the first one decides";
    }
}

// An infinite variance ends the sum: what comes behind, in another run of it too, is not looked at.
TYPED_TEST(Gaussian, AnInfiniteVarianceEndsALongSum) {
    using T = TypeParam;
    for (std::size_t at : {600, 1200}) {
        const std::vector<T> zero(1300, T(0));
        std::vector<T> var(1300, T(1));
        var[5] = std::numeric_limits<T>::infinity();
        var[at] = 0;
        T dst = 0;
        EXPECT_EQ(distance(zero.data(), var.data(), zero.data(), var.data(), 1300, &dst, T(1), T(2), T(1), T(2)),
                  vornStsNoErr);
        EXPECT_TRUE(std::isnan(dst));
    }
}

TYPED_TEST(Gaussian, WeightsThatCancel) {
    using T = TypeParam;
    const std::vector<T> one(20, T(1)), two(20, T(2));
    std::vector<T> mean(20), var(20);
    T dst;
    // (2 - 1) / 0 is infinite, and so is its square: their difference is no number.
    EXPECT_EQ(merge(one.data(), one.data(), two.data(), two.data(), mean.data(), var.data(), 20, &dst, T(-1), T(1)),
              sizeof(T) == 4 ? vornStsLnZeroArg : vornStsNoErr);
    EXPECT_EQ(mean[0], std::numeric_limits<T>::infinity());
    EXPECT_TRUE(std::isnan(var[0]));
    EXPECT_TRUE(sizeof(T) == 4 ? dst == std::numeric_limits<T>::infinity() : std::isnan(dst));
}

// ---- Beside the model

TYPED_TEST(Gaussian, MergedMomentsWithinTheirBounds) {
    using T = TypeParam;
    Random random(3);
    double worstMean = 0, worstVar = 0;
    for (int turn = 0; turn < 500; ++turn) {
        constexpr std::size_t len = 39;
        const Gaussians<T> g = this->pair(random, len);
        std::vector<T> mean(len), var(len);
        T gconst;
        ASSERT_EQ(merge(g.mean1.data(), g.var1.data(), g.mean2.data(), g.var2.data(), mean.data(), var.data(), len,
                        &gconst, g.wgt1, g.wgt2),
                  vornStsNoErr);
        long double constant = 0;
        for (std::size_t i = 0; i < len; ++i) {
            const long double w1 = g.wgt1, w2 = g.wgt2, m1 = g.mean1[i], m2 = g.mean2[i];
            const long double m = (w1 * m1 + w2 * m2) / (w1 + w2);
            const long double sqr = ((m1 * m1 + g.var1[i]) * w1 + (m2 * m2 + g.var2[i]) * w2) / (w1 + w2);
            const long double size = (w1 * std::fabs(m1) + w2 * std::fabs(m2)) / (w1 + w2);
            const auto inUnits = [](long double error, long double of) {
                return static_cast<double>(std::fabs(error) / (u<T> * of));
            };
            worstMean = std::max(worstMean, inUnits(mean[i] - m, size));
            worstVar = std::max(worstVar, inUnits(var[i] - (sqr - m * m), sqr));
            constant += 1.8378770664093L - std::log(static_cast<long double>(var[i]));
        }
        EXPECT_NEAR(gconst, static_cast<double>(constant), 40 * 6 * u<T>) << "of the variances that were stored";
        // What the update of a constant makes of these variances.
        T updated;
        const auto size = static_cast<int>(len);
        if constexpr (sizeof(T) == 4) {
            ASSERT_EQ(vornsUpdateGConst_32f(var.data(), size, &updated), vornStsNoErr);
        } else {
            ASSERT_EQ(vornsUpdateGConst_64f(var.data(), size, &updated), vornStsNoErr);
        }
        EXPECT_NEAR(gconst, updated, 40 * 8 * u<T>);
    }
    this->RecordProperty("worst mean", std::to_string(worstMean));
    this->RecordProperty("worst variance", std::to_string(worstVar));
    EXPECT_LE(worstMean, 4.1);
    EXPECT_LE(worstVar, 16.1);
    EXPECT_GT(worstMean, 0.5);
    EXPECT_GT(worstVar, 0.5);
}

TYPED_TEST(Gaussian, AGaussianAndItsCopy) {
    using T = TypeParam;
    Random random(4);
    for (std::size_t len : {1, 5, 10, 11, 12, 13, 39, 600}) {
        const std::vector<T> m = this->values(random, len, -1.0, 1.0), v = this->values(random, len, 0.5, 2.0);
        std::vector<T> mean(len), var(len);
        T gconst;
        const int n = static_cast<int>(len);
        ASSERT_EQ(merge(m.data(), v.data(), m.data(), v.data(), mean.data(), var.data(), n, &gconst, T(1), T(1)),
                  vornStsNoErr);
        for (std::size_t i = 0; i < len; ++i) {
            EXPECT_EQ(mean[i], m[i]) << "a doubling and a halving";
            EXPECT_NEAR(var[i], v[i], 3 * u<T>);
        }
        T dst;
        ASSERT_EQ(distance(m.data(), v.data(), m.data(), v.data(), n, &dst, T(1), gconst, T(1), gconst), vornStsNoErr);
        EXPECT_NEAR(dst, 0.0, 2 * u<T> * static_cast<double>(len) * 16) << len;
    }
}

// The distance is what the pool of two states has less of likelihood than the states: each has, but for terms that
// cancel, half its weight times its constant.
TYPED_TEST(Gaussian, TheDistanceIsTheLikelihoodThatAMergeGivesUp) {
    using T = TypeParam;
    Random random(5);
    for (int len : {3, 12, 13, 39}) {
        const auto size = static_cast<std::size_t>(len);
        const Gaussians<T> g = this->pair(random, size);
        const auto likelihood = [&](const std::vector<double>& sum, const std::vector<double>& sqr, double occ) {
            double l = 0;
            EXPECT_EQ(vornsDcsClustLCompute_64f(sum.data(), sqr.data(), len, &l, occ), vornStsNoErr);
            return l;
        };
        std::vector<double> sum[3], sqr[3];
        const double occ[3] = {g.wgt1, g.wgt2, static_cast<double>(g.wgt1) + g.wgt2};
        for (std::size_t i = 0; i < size; ++i) {
            const double m1 = g.mean1[i], m2 = g.mean2[i];
            sum[0].push_back(occ[0] * m1), sqr[0].push_back(occ[0] * (m1 * m1 + g.var1[i]));
            sum[1].push_back(occ[1] * m2), sqr[1].push_back(occ[1] * (m2 * m2 + g.var2[i]));
            sum[2].push_back(sum[0][i] + sum[1][i]), sqr[2].push_back(sqr[0][i] + sqr[1][i]);
        }
        double lost = 0;
        for (int k : {0, 1, 2}) lost += (k == 2 ? -1 : 1) * likelihood(sum[k], sqr[k], occ[k]);
        double gconst[2] = {};
        for (std::size_t i = 0; i < size; ++i) {
            gconst[0] += 1.8378770664093 - std::log(static_cast<double>(g.var1[i]));
            gconst[1] += 1.8378770664093 - std::log(static_cast<double>(g.var2[i]));
        }
        T dst;
        ASSERT_EQ(distance(g.mean1.data(), g.var1.data(), g.mean2.data(), g.var2.data(), len, &dst, g.wgt1,
                           static_cast<T>(gconst[0]), g.wgt2, static_cast<T>(gconst[1])),
                  vornStsNoErr);
        EXPECT_GT(dst, 0) << "a merge never gains";
        EXPECT_NEAR(dst, 2 * lost, (sizeof(T) == 4 ? 2e-5 : 1e-11) * 2 * len);
    }
}

// ---- Splitting

// A shift in double differs from one in single in single precision alone.
TYPED_TEST(Gaussian, SplitBitForBit) {
    using T = TypeParam;
    Random random(6);
    int differences = 0;
    for (std::size_t len : test::lengths()) {
        for (int kind : {0, 1}) {
            std::vector<T> old = this->values(random, len, -3.0, 3.0), var = this->values(random, len, 0.0, 5.0);
            if (kind == 1) old = random.pick(test::hardFloats<T>(), len), var = random.pick(test::hardFloats<T>(), len);
            const T val = static_cast<T>(random.uniform(-1.0, 1.0));
            const RoundingMode changed(modes[len % 4]);
            std::vector<T> up[2] = {old, old}, down[2] = {old, old};
            model::clustering::split<double>(up[0], var, down[0], val);
            model::clustering::split<T>(up[1], var, down[1], val);
            differences += !sameBits(up[0], up[1]);
            for (std::size_t off = 0; off <= 4; ++off) {
                Offset<T> a(len, off == 0 ? sizeof(T) : 0), b(len, off == 1 ? sizeof(T) : 0),
                    c(len, off == 2 ? sizeof(T) : 0), d(len, off == 3 ? sizeof(T) : 0);
                a.assign(old), b.assign(var);
                ASSERT_EQ(split(a, b, c, d, static_cast<int>(len), val), vornStsNoErr);
                EXPECT_TRUE(sameBits(a.values(), up[off == 4])) << len << ' ' << kind << ' ' << off;
                EXPECT_TRUE(sameBits(c.values(), down[off == 4])) << len << ' ' << kind << ' ' << off;
                EXPECT_TRUE(sameBits(d.values(), var)) << len << ' ' << kind << ' ' << off;
                EXPECT_TRUE(a.surroundingsUntouched() && c.surroundingsUntouched() && d.surroundingsUntouched());
            }
            Guarded<T> a(old), b(var), c(len), d(len);
            bool aligned = true;
            for (const T* p : {a.data(), b.data(), c.data(), d.data()}) {
                aligned = aligned && reinterpret_cast<std::uintptr_t>(p) % 16 == 0;
            }
            ASSERT_EQ(split(a, b, c, d, static_cast<int>(len), val), vornStsNoErr);
            EXPECT_TRUE(sameBits(a, up[aligned]) && sameBits(c, down[aligned]) && sameBits(d, var)) << len;
            EXPECT_TRUE(a.surroundingsUntouched() && c.surroundingsUntouched() && d.surroundingsUntouched());
        }
    }
    EXPECT_EQ(differences > 0, sizeof(T) == 4);
}

TYPED_TEST(Gaussian, SplitByNothingAndOfNegativeVariances) {
    using T = TypeParam;
    for (std::size_t off : {0, 1}) {
        const std::vector<T> old = {1, -2, 3, 4, 5}, var = {4, 9, 16, 0, 1};
        Offset<T> up(5, off * sizeof(T)), v(5, 0), down(5, 0), dstVar(5, 0);
        up.assign(old), v.assign(var);
        ASSERT_EQ(split(up, v, down, dstVar, 5, T(0)), vornStsNoErr);
        EXPECT_EQ(up.values(), old);
        EXPECT_EQ(down.values(), old);
        EXPECT_EQ(dstVar.values(), var);
        ASSERT_EQ(split(up, v, down, dstVar, 5, T(0.5)), vornStsNoErr);
        EXPECT_EQ(up.values(), (std::vector<T>{2, T(-0.5), 5, 4, T(5.5)})) << "the first one moves up";
        EXPECT_EQ(down.values(), (std::vector<T>{0, T(-3.5), 1, 4, T(4.5)}));
        v[1] = -4;
        ASSERT_EQ(split(up, v, down, dstVar, 5, T(0.5)), vornStsNoErr);
        EXPECT_TRUE(std::isnan(up[1]) && std::isnan(down[1]));
        EXPECT_EQ(dstVar[1], -4);
        EXPECT_EQ(up[0], 3);
    }
}

// The halves of a Gaussian pool to its mean, and to a variance that is larger by the square of the shift.
TYPED_TEST(Gaussian, SplitThenMerged) {
    using T = TypeParam;
    Random random(7);
    for (std::size_t len : {1, 4, 39, 130}) {
        for (std::size_t off : {0, 1}) {
            const std::vector<T> old = this->values(random, len, -3.0, 3.0), var = this->values(random, len, 0.1, 5.0);
            Offset<T> up(len, off * sizeof(T)), v(len, 0), down(len, 0), dstVar(len, 0);
            up.assign(old), v.assign(var);
            const T val = T(0.2);
            ASSERT_EQ(split(up, v, down, dstVar, static_cast<int>(len), val), vornStsNoErr);
            std::vector<T> mean(len), merged(len);
            T gconst;
            ASSERT_EQ(
                merge(up, v, down, dstVar, mean.data(), merged.data(), static_cast<int>(len), &gconst, T(0.5), T(0.5)),
                vornStsNoErr);
            for (std::size_t i = 0; i < len; ++i) {
                const double m = old[i], d = 0.2 * std::sqrt(static_cast<double>(var[i])), size = std::fabs(m) + d;
                EXPECT_NEAR(mean[i], m, 6 * u<T> * size);
                EXPECT_NEAR(merged[i], var[i] + d * d, 24 * u<T> * (size * size + var[i]));
            }
        }
    }
}

// ---- Memory and checks

TYPED_TEST(Gaussian, NothingIsAllocated) {
    using T = TypeParam;
    if (!test::FailAllocation::available()) GTEST_SKIP() << "the sanitizer's allocator stands in the place of ours";
    std::vector<T> one(1000, T(1)), mean(1000), var(1000);
    T dst;
    const test::FailAllocation fail(1);
    EXPECT_EQ(merge(one.data(), one.data(), one.data(), one.data(), mean.data(), var.data(), 1000, &dst, T(1), T(1)),
              vornStsNoErr);
    EXPECT_EQ(distance(one.data(), one.data(), one.data(), one.data(), 1000, &dst, T(1), T(1), T(1), T(1)),
              vornStsNoErr);
    EXPECT_EQ(fail.calls(), 0);
}

template <class T>
struct Arguments {
    std::vector<T> data = std::vector<T>(3, T(1));
    Guarded<T> first = Guarded<T>(3), second = Guarded<T>(3), third = Guarded<T>(3), one = Guarded<T>(1);
    const T *m1 = data.data(), *v1 = data.data(), *m2 = data.data(), *v2 = data.data();
    T *mean = first.data(), *var = second.data(), *up = third.data(), *dst = one.data();
    int len = 3;
};

TYPED_TEST(Gaussian, ChecksInOrder) {
    using T = TypeParam;
    using A = Arguments<T>;
    using Rule = test::Rule<A>;
    const auto good = [] { return A(); };
    const auto untouched = [](A& a) {
        return a.first.untouched() && a.second.untouched() && a.third.untouched() && a.one.untouched();
    };
    const Rule m1 = {"m1", vornStsNullPtrErr, [](A& a) { a.m1 = nullptr; }};
    const Rule v1 = {"v1", vornStsNullPtrErr, [](A& a) { a.v1 = nullptr; }};
    const Rule m2 = {"m2", vornStsNullPtrErr, [](A& a) { a.m2 = nullptr; }};
    const Rule v2 = {"v2", vornStsNullPtrErr, [](A& a) { a.v2 = nullptr; }};
    const Rule mean = {"mean", vornStsNullPtrErr, [](A& a) { a.mean = nullptr; }};
    const Rule var = {"var", vornStsNullPtrErr, [](A& a) { a.var = nullptr; }};
    const Rule up = {"up", vornStsNullPtrErr, [](A& a) { a.up = nullptr; }};
    const Rule dst = {"dst", vornStsNullPtrErr, [](A& a) { a.dst = nullptr; }};
    const Rule len0 = {"len 0", vornStsSizeErr, [](A& a) { a.len = 0; }};
    const Rule lenLow = {"len -1", vornStsSizeErr, [](A& a) { a.len = -1; }};
    test::expectCheckOrder<A>(
        good, [](A& a) { return merge(a.m1, a.v1, a.m2, a.v2, a.mean, a.var, a.len, a.dst, T(1), T(1)); }, untouched,
        {len0, lenLow, m1, v1, m2, v2, mean, var, dst});
    test::expectCheckOrder<A>(
        good, [](A& a) { return distance(a.m1, a.v1, a.m2, a.v2, a.len, a.dst, T(1), T(1), T(1), T(1)); }, untouched,
        {len0, lenLow, m1, v1, m2, v2, dst});
    const auto halves = [](A& a) { return split(a.up, a.v1, a.mean, a.var, a.len, T(1)); };
    if (sizeof(T) == 4) {
        test::expectCheckOrder<A>(good, halves, untouched, {len0, lenLow, up, v1, mean, var});
    } else {
        test::expectCheckOrder<A>(good, halves, untouched, {up, v1, mean, var, len0, lenLow});
    }
}

}  // namespace
