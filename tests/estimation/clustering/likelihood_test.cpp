// Statistics of states and the likelihood of a pool of them.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <vector>

#include "model/clustering.h"
#include "support/expect.h"
#include "support/guarded.h"
#include "support/precise.h"
#include "support/rounding_mode.h"
#include "support/values.h"
#include "support/vectors.h"
#include "vornsr.h"

namespace {

using test::Guarded;
using test::Offset;
using test::Precise;
using test::Random;
using test::RoundingMode;
using test::same;
using test::sameBits;

VornStatus accumulate(bool direct, const float* mean, const float* var, float* sum, float* sqr, int len, float occ) {
    return direct ? vornsDcsClustLAccumulate_DirectVar_32f(mean, var, sum, sqr, len, occ)
                  : vornsDcsClustLAccumulate_32f(mean, var, sum, sqr, len, occ);
}
VornStatus accumulate(bool direct, const double* mean, const double* var, double* sum, double* sqr, int len,
                      double occ) {
    return direct ? vornsDcsClustLAccumulate_DirectVar_64f(mean, var, sum, sqr, len, occ)
                  : vornsDcsClustLAccumulate_64f(mean, var, sum, sqr, len, occ);
}
VornStatus compute(const float* sum, const float* sqr, int len, double* dst, float occ) {
    return vornsDcsClustLCompute_32f64f(sum, sqr, len, dst, occ);
}
VornStatus compute(const double* sum, const double* sqr, int len, double* dst, double occ) {
    return vornsDcsClustLCompute_64f(sum, sqr, len, dst, occ);
}

template <class T>
class DcsClust : public testing::Test {
protected:
    static std::vector<T> values(Random& random, std::size_t len, double low, double high) {
        std::vector<T> x(len);
        for (T& value : x) value = static_cast<T>(random.uniform(low, high));
        return x;
    }
    static std::vector<T> numbers(Random& random, std::size_t len, int kind, double low = -10.0) {
        if (kind == 0) return values(random, len, low, 10.0);
        if (kind == 1) return random.pick(test::hardFloats<T>(), len);
        std::vector<T> x(len);
        for (T& value : x) value = random.anyBits<T>();
        return x;
    }
};
using Floats = testing::Types<float, double>;
TYPED_TEST_SUITE(DcsClust, Floats);

template <class T>
bool stands16(const T* p) {
    return reinterpret_cast<std::uintptr_t>(p) % 16 == 0;
}

constexpr unsigned modes[] = {RoundingMode::nearest, RoundingMode::down, RoundingMode::up, RoundingMode::towardZero};

TYPED_TEST(DcsClust, StatisticsBitForBit) {
    using T = TypeParam;
    Random random(1);
    for (std::size_t len : test::lengths()) {
        for (int kind : {0, 1, 2}) {
            for (bool direct : {false, true}) {
                const std::vector<T> mean = this->numbers(random, len, kind),
                                     var = this->numbers(random, len, kind, 0.01);
                const T occ = kind == 0 ? T(17.25) : this->numbers(random, 1, kind)[0];
                const RoundingMode changed(modes[len % 4]);
                // Each vector off its address in turn, then none.
                for (std::size_t off = 0; off <= 4; ++off) {
                    Offset<T> a(len, off == 0 ? sizeof(T) : 0), b(len, off == 1 ? sizeof(T) : 0),
                        c(len, off == 2 ? sizeof(T) : 0), d(len, off == 3 ? sizeof(T) : 0);
                    a.assign(mean), b.assign(var);
                    const auto expected = model::clustering::accumulate(mean, var, occ, direct, off == 4);
                    ASSERT_EQ(accumulate(direct, a, b, c, d, static_cast<int>(len), occ), vornStsNoErr);
                    EXPECT_TRUE(sameBits(c.values(), expected.sum)) << len << ' ' << kind << direct << off;
                    EXPECT_TRUE(sameBits(d.values(), expected.sqr)) << len << ' ' << kind << direct << off;
                    EXPECT_TRUE(c.surroundingsUntouched() && d.surroundingsUntouched());
                }
                const Guarded<T> a(mean), b(var);
                Guarded<T> c(len), d(len);
                const bool aligned =
                    stands16(a.data()) && stands16(b.data()) && stands16(c.data()) && stands16(d.data());
                const auto expected = model::clustering::accumulate(mean, var, occ, direct, aligned);
                ASSERT_EQ(accumulate(direct, a, b, c, d, static_cast<int>(len), occ), vornStsNoErr);
                EXPECT_TRUE(sameBits(c, expected.sum) && sameBits(d, expected.sqr)) << len << ' ' << kind << direct;
                EXPECT_TRUE(c.surroundingsUntouched() && d.surroundingsUntouched());
            }
        }
    }
}

// The groupings differ in the last place, and in nothing else: a zero variance gives infinity in both, and its
// neighbours keep their values.
TYPED_TEST(DcsClust, GroupingsAgreeWithinRounding) {
    using T = TypeParam;
    Random random(2);
    constexpr double u = sizeof(T) == 4 ? 0x1p-24 : 0x1p-53;
    constexpr std::size_t len = 39;
    const std::vector<T> mean = this->values(random, len, -5.0, 5.0);
    std::vector<T> var = this->values(random, len, 0.1, 9.0);
    var[17] = 0;
    const T occ = T(12.5);
    bool differ = false;
    std::vector<T> results[2];
    for (std::size_t off : {0, 1}) {
        Offset<T> a(len, off * sizeof(T)), b(len, 0), c(len, 0), d(len, 0);
        a.assign(mean), b.assign(var);
        ASSERT_EQ(accumulate(false, a, b, c, d, len, occ), vornStsNoErr);
        results[off] = d.values();
        for (std::size_t i = 0; i < len; ++i) {
            if (i == 17) {
                EXPECT_EQ(d[i], std::numeric_limits<T>::infinity());
                continue;
            }
            const long double m = mean[i], exact = (1 / static_cast<long double>(var[i]) + m * m) * occ;
            EXPECT_NEAR(d[i], static_cast<double>(exact), 3.1 * u * static_cast<double>(exact));
            EXPECT_EQ(c[i], mean[i] * occ);
        }
    }
    for (std::size_t i = 0; i < len; ++i) differ = differ || results[0][i] != results[1][i];
    EXPECT_TRUE(differ) << "the address chooses the grouping";
}

// ---- The likelihood

// Statistics of N frames with the given mean and variance.
template <class T>
struct Pool {
    std::vector<T> sum, sqr;
    T occ;
};
template <class T>
Pool<T> pool(Random& random, std::size_t len, double frames) {
    Pool<T> p{std::vector<T>(len), std::vector<T>(len), static_cast<T>(frames)};
    for (std::size_t i = 0; i < len; ++i) {
        const double m = random.uniform(-3.0, 3.0), v = std::exp(random.uniform(-3.0, 3.0));
        p.sum[i] = static_cast<T>(m * frames);
        p.sqr[i] = static_cast<T>((m * m + v) * frames);
    }
    return p;
}

TYPED_TEST(DcsClust, LikelihoodBitForBit) {
    using T = TypeParam;
    Random random(3);
    for (std::size_t len : test::lengths()) {
        for (double frames : {0.7, 1.0, 35.5, 1e6}) {
            const Pool<T> p = pool<T>(random, len, frames);
            double expected = 0;
            const VornStatus status = model::clustering::likelihood(p.sum, p.sqr, expected, p.occ);
            for (std::size_t off : {0, 1}) {
                const Guarded<T> sum(p.sum), sqr(p.sqr);
                Offset<T> other(len, off * sizeof(T));
                other.assign(p.sum);
                Guarded<double> dst(1);
                EXPECT_EQ(compute(sum, sqr, static_cast<int>(len), dst, p.occ), status) << len;
                EXPECT_TRUE(same(dst[0], expected)) << len << ' ' << frames << ' ' << dst[0] << ' ' << expected;
                EXPECT_TRUE(dst.surroundingsUntouched());
                EXPECT_EQ(compute(other, sqr, static_cast<int>(len), dst, p.occ), status) << len;
                EXPECT_TRUE(same(dst[0], expected)) << len << ' ' << frames;
            }
        }
    }
}

TYPED_TEST(DcsClust, LikelihoodOfAnyNumbers) {
    using T = TypeParam;
    using L = std::numeric_limits<T>;
    Random random(4);
    const T occupations[] = {T(1),     T(2),          T(1000), L::denorm_min(),    L::min(),
                             L::max(), L::infinity(), T(0.5),  T(1) + L::epsilon()};
    int seen[3] = {};
    for (std::size_t len = 1; len <= 70; ++len) {
        for (int turn = 0; turn < 36; ++turn) {
            Pool<T> p = pool<T>(random, len, 20.0);
            p.occ = occupations[turn % 9];
            // One to three elements of the pool are anything: denormals and infinities among them.
            for (int k = 0; k < 1 + turn % 3; ++k) {
                const auto at = static_cast<std::size_t>(random.integer(0, static_cast<std::int64_t>(len) - 1));
                p.sum[at] = this->numbers(random, 1, 1 + turn % 2)[0];
                p.sqr[at] = turn % 4 == 0 ? T(0) : std::fabs(this->numbers(random, 1, 1 + turn % 2)[0]);
                if (turn % 5 == 0) p.sum[at] = p.sqr[at] = 0;
            }
            double expected = 0;
            const VornStatus status = model::clustering::likelihood(p.sum, p.sqr, expected, p.occ);
            ++seen[status == vornStsNoErr ? 0 : status == vornStsLnZeroArg ? 1 : 2];
            const Guarded<T> sum(p.sum), sqr(p.sqr);
            double dst = 0;
            EXPECT_EQ(compute(sum, sqr, static_cast<int>(len), &dst, p.occ), status) << len << ' ' << turn;
            EXPECT_TRUE(same(dst, expected)) << len << ' ' << turn << ' ' << dst << ' ' << expected;
        }
    }
    for (int count : seen) EXPECT_GT(count, 100);
}

TYPED_TEST(DcsClust, EmptyAndNegativePools) {
    using T = TypeParam;
    using L = std::numeric_limits<T>;
    const T sum[] = {1, 2, 3}, sqr[] = {4, 5, 6};
    Guarded<double> dst(1);
    for (T occ : {T(-1), -L::denorm_min(), -L::infinity(), L::quiet_NaN(), -L::quiet_NaN()}) {
        EXPECT_EQ(compute(sum, sqr, 3, dst, occ), vornStsNegOccErr) << occ;
        EXPECT_TRUE(dst.untouched()) << occ;
    }
    for (T occ : {T(0), T(-0.0)}) {
        EXPECT_EQ(compute(sum, sqr, 3, dst, occ), vornStsZeroOcc);
        EXPECT_EQ(dst[0], -10000000000.0);
    }
    // A denormal occupation is an occupation here: 1 frame of 4 / 2^-k and so on.
    EXPECT_NE(compute(sum, sqr, 3, dst, L::denorm_min()), vornStsZeroOcc);
}

// With N = 1: Q - S^2 is 4 - 0, 0 and -1.
TYPED_TEST(DcsClust, ZerosAndNegativeVariances) {
    using T = TypeParam;
    const double inf = std::numeric_limits<double>::infinity();
    const T nan = std::numeric_limits<T>::quiet_NaN();
    for (int len : {2, 7, 16, 17, 40}) {
        for (int first = 0; first + 1 < len; first += len > 8 ? 5 : 1) {
            const auto size = static_cast<std::size_t>(len), at = static_cast<std::size_t>(first), last = size - 1;
            const auto likelihood = [&](T atFirst, T atLast, double& dst) {
                std::vector<T> sum(size, T(0)), sqr(size, T(4));
                sqr[at] = atFirst;
                sqr[last] = atLast;
                dst = 0;
                return compute(sum.data(), sqr.data(), len, &dst, T(1));
            };
            double dst;
            EXPECT_EQ(likelihood(T(0), T(-1), dst), vornStsLnNegArg) << "a zero, then a negative";
            EXPECT_TRUE(std::isnan(dst));
            EXPECT_EQ(likelihood(T(-1), T(0), dst), vornStsLnNegArg) << "a negative, then a zero";
            EXPECT_TRUE(std::isnan(dst));
            EXPECT_EQ(likelihood(T(0), T(0), dst), vornStsLnZeroArg);
            EXPECT_EQ(dst, -inf);
            EXPECT_EQ(likelihood(T(-0.0), T(4), dst), vornStsLnZeroArg);
            EXPECT_EQ(dst, -inf);
            EXPECT_EQ(likelihood(T(4), nan, dst), vornStsLnZeroArg) << "no number counts as zero";
            EXPECT_EQ(dst, -inf);
            EXPECT_EQ(likelihood(nan, T(-1), dst), vornStsLnNegArg);
            EXPECT_TRUE(std::isnan(dst));
            EXPECT_EQ(likelihood(std::numeric_limits<T>::infinity(), T(4), dst), vornStsNoErr);
            EXPECT_EQ(dst, -inf) << "an infinite variance";
        }
    }
}

// The formula in 200 bits, with division and all: -N/2 (len (1 + ln 2 pi) + sum of ln variance).
TYPED_TEST(DcsClust, LikelihoodIsWithinItsBound) {
    using T = TypeParam;
    Random random(5);
    const Precise lnTwoPi = log(Precise(2.0) * Precise(3.141592653589793) + Precise(2.0 * 1.2246467991473532e-16));
    double worst = 0;
    for (int turn = 0; turn < 120; ++turn) {
        const auto len = static_cast<std::size_t>(random.integer(1, 80));
        Pool<T> p = pool<T>(random, len, std::exp(random.uniform(-2.0, 12.0)));
        if (turn % 3 == 0) p.sum[0] *= T(1e-6);
        const double frames = p.occ;
        double dst = 0;
        ASSERT_EQ(compute(p.sum.data(), p.sqr.data(), static_cast<int>(len), &dst, p.occ), vornStsNoErr);
        Precise total(0.0);
        double largestLogarithm = 0, largestLoss = 1;
        for (std::size_t i = 0; i < len; ++i) {
            const Precise mean = Precise(p.sum[i]) / Precise(frames);
            const Precise var = Precise(p.sqr[i]) / Precise(frames) - mean * mean;
            total = total + Precise(1.0) + lnTwoPi + log(var);
            const double scaled = (var * Precise(frames) * Precise(frames)).toDouble();
            largestLogarithm = std::max(largestLogarithm, std::fabs(std::log(scaled)));
            largestLoss = std::max(largestLoss, p.sqr[i] * frames / scaled);
        }
        const Precise exact = Precise(-0.5) * Precise(frames) * total;
        const auto n = static_cast<double>(len);
        const double bound = 1.2e-16 * frames * n *
                             (largestLoss + (n / 2 + 2) * largestLogarithm + 3 * std::fabs(2 * std::log(frames)) + 9);
        const double error = std::fabs((exact - Precise(dst)).toDouble());
        EXPECT_LE(error, bound) << len << ' ' << frames;
        worst = std::max(worst, error / bound);
    }
    this->RecordProperty("worst", std::to_string(worst));
    EXPECT_GT(worst, 1e-3) << "a bound that nothing comes near says little";
}

// States that are pooled by what accumulate gives have the likelihood of all their frames together.
TYPED_TEST(DcsClust, StatesPoolToTheLikelihoodOfTheirFrames) {
    using T = TypeParam;
    Random random(6);
    constexpr int states = 5, len = 13;
    for (bool direct : {false, true}) {
        std::vector<double> sum(len), sqr(len);
        std::vector<long double> first(len), second(len);
        long double frames = 0;
        for (int state = 0; state < states; ++state) {
            const std::vector<T> mean = this->values(random, len, -3.0, 3.0), var = this->values(random, len, 0.5, 2.0);
            std::vector<T> given(var), dstSum(len), dstSqr(len);
            if (!direct) {
                for (T& v : given) v = 1 / v;
            }
            const T occ = static_cast<T>(10 + state);
            ASSERT_EQ(accumulate(direct, mean.data(), given.data(), dstSum.data(), dstSqr.data(), len, occ),
                      vornStsNoErr);
            frames += occ;
            for (std::size_t i = 0; i < len; ++i) {
                sum[i] += dstSum[i], sqr[i] += dstSqr[i];
                first[i] += static_cast<long double>(occ) * mean[i];
                second[i] += static_cast<long double>(occ) * (static_cast<long double>(mean[i]) * mean[i] + var[i]);
            }
        }
        const std::vector<T> pooledSum(sum.begin(), sum.end()), pooledSqr(sqr.begin(), sqr.end());
        double dst;
        ASSERT_EQ(compute(pooledSum.data(), pooledSqr.data(), len, &dst, static_cast<T>(frames)), vornStsNoErr);
        long double exact = 0;
        for (std::size_t i = 0; i < len; ++i) {
            const long double m = first[i] / frames, v = second[i] / frames - m * m;
            exact -= frames / 2 * (1.8378770664093454835606594728112L + 1 + std::log(v));
        }
        EXPECT_NEAR(dst, static_cast<double>(exact),
                    std::fabs(static_cast<double>(exact)) * (sizeof(T) == 4 ? 2e-6 : 4e-15));
    }
}

// In a directed mode the likelihood moves by no more than roundings do.
TYPED_TEST(DcsClust, LikelihoodInDirectedModes) {
    using T = TypeParam;
    Random random(7);
    const Pool<T> p = pool<T>(random, 39, 35.5);
    double nearest = 0;
    ASSERT_EQ(compute(p.sum.data(), p.sqr.data(), 39, &nearest, p.occ), vornStsNoErr);
    for (unsigned mode : modes) {
        double dst = 0;
        {
            const RoundingMode changed(mode);
            ASSERT_EQ(compute(p.sum.data(), p.sqr.data(), 39, &dst, p.occ), vornStsNoErr);
            EXPECT_EQ(RoundingMode::current(), mode);
        }
        EXPECT_NEAR(dst, nearest, std::fabs(nearest) * 1e-13) << mode;
    }
}

// ---- Checks

template <class T>
struct Arguments {
    std::vector<T> data = std::vector<T>(3, T(1));
    Guarded<T> out1 = Guarded<T>(3), out2 = Guarded<T>(3);
    Guarded<double> out = Guarded<double>(1);
    const T *mean = data.data(), *var = data.data();
    T *sum = out1.data(), *sqr = out2.data();
    double* dst = out.data();
    int len = 3;
    T occ = 2;
};

TYPED_TEST(DcsClust, ChecksInOrder) {
    using T = TypeParam;
    using A = Arguments<T>;
    using Rule = test::Rule<A>;
    const auto good = [] { return A(); };
    const auto untouched = [](A& a) { return a.out1.untouched() && a.out2.untouched() && a.out.untouched(); };
    const Rule mean = {"mean", vornStsNullPtrErr, [](A& a) { a.mean = nullptr; }};
    const Rule var = {"var", vornStsNullPtrErr, [](A& a) { a.var = nullptr; }};
    const Rule sum = {"sum", vornStsNullPtrErr, [](A& a) { a.sum = nullptr; }};
    const Rule sqr = {"sqr", vornStsNullPtrErr, [](A& a) { a.sqr = nullptr; }};
    const Rule dst = {"dst", vornStsNullPtrErr, [](A& a) { a.dst = nullptr; }};
    const Rule len0 = {"len 0", vornStsSizeErr, [](A& a) { a.len = 0; }};
    const Rule lenLow = {"len -1", vornStsSizeErr, [](A& a) { a.len = -1; }};
    const Rule occ = {"occ < 0", vornStsNegOccErr, [](A& a) { a.occ = -1; }};
    for (bool direct : {false, true}) {
        test::expectCheckOrder<A>(good,
                                  [=](A& a) { return accumulate(direct, a.mean, a.var, a.sum, a.sqr, a.len, a.occ); },
                                  untouched, {mean, var, sum, sqr, len0, lenLow});
    }
    test::expectCheckOrder<A>(good, [](A& a) { return compute(a.mean, a.var, a.len, a.dst, a.occ); }, untouched,
                              {mean, var, dst, len0, lenLow, occ});
}

}  // namespace
