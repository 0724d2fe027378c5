// Autocorrelation: the direct sums bit for bit, the transform route within its error, both sides of every threshold.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <memory>

#include "support/allocation.h"
#include "support/expect.h"
#include "support/guarded.h"
#include "support/values.h"
#include "vornsr.h"

namespace {

enum Norm { Plain, NormA, NormB };

Vorn32f times(Vorn32f a, Vorn32f f) { return a * f; }
Vorn64f times(Vorn64f a, Vorn64f f) { return a * f; }
template <class Pair, class T>
Pair times(Pair a, T f) {
    return {a.re * f, a.im * f};
}
template <class T>
T over(T a, T d) {
    return a / d;
}
template <class Pair, class T>
Pair over(Pair a, T d) {
    return {a.re / d, a.im / d};
}

template <class E>
struct Form;
template <>
struct Form<Vorn32f> {
    using Number = Vorn32f;
    static constexpr int threshold = 856;
    static constexpr decltype(vornsAutoCorr_32f)* call[] = {vornsAutoCorr_32f, vornsAutoCorr_NormA_32f,
                                                            vornsAutoCorr_NormB_32f};
    static void add(Vorn32f& sum, Vorn32f a, Vorn32f b) { sum += a * b; }
    static Vorn32f value(test::Random& random) { return static_cast<Vorn32f>(random.uniform(-1, 1)); }
    static double distance(Vorn32f a, Vorn32f b) { return std::abs(a - b); }
    static constexpr double unit = 0x1p-24;
};
template <>
struct Form<Vorn64f> {
    using Number = Vorn64f;
    static constexpr int threshold = 856;
    static constexpr decltype(vornsAutoCorr_64f)* call[] = {vornsAutoCorr_64f, vornsAutoCorr_NormA_64f,
                                                            vornsAutoCorr_NormB_64f};
    static void add(Vorn64f& sum, Vorn64f a, Vorn64f b) { sum += a * b; }
    static Vorn64f value(test::Random& random) { return random.uniform(-1, 1); }
    static double distance(Vorn64f a, Vorn64f b) { return std::abs(a - b); }
    static constexpr double unit = 0x1p-53;
};
template <class Pair, class T>
struct PairForm {
    using Number = T;
    static void add(Pair& sum, Pair a, Pair b) {
        sum.re += a.re * b.re + a.im * b.im;
        sum.im += a.re * b.im - a.im * b.re;
    }
    static Pair value(test::Random& random) {
        return {static_cast<T>(random.uniform(-1, 1)), static_cast<T>(random.uniform(-1, 1))};
    }
    static double distance(Pair a, Pair b) { return std::hypot(a.re - b.re, a.im - b.im); }
};
template <>
struct Form<Vorn32fc> : PairForm<Vorn32fc, Vorn32f> {
    static constexpr int threshold = 152;
    static constexpr decltype(vornsAutoCorr_32fc)* call[] = {vornsAutoCorr_32fc, vornsAutoCorr_NormA_32fc,
                                                             vornsAutoCorr_NormB_32fc};
    static constexpr double unit = 0x1p-24;
};
template <>
struct Form<Vorn64fc> : PairForm<Vorn64fc, Vorn64f> {
    static constexpr int threshold = 368;
    static constexpr decltype(vornsAutoCorr_64fc)* call[] = {vornsAutoCorr_64fc, vornsAutoCorr_NormA_64fc,
                                                             vornsAutoCorr_NormB_64fc};
    static constexpr double unit = 0x1p-53;
};

template <class E>
std::vector<E> modelled(const std::vector<E>& x, int dstLen, Norm norm) {
    using Number = typename Form<E>::Number;
    const int srcLen = static_cast<int>(x.size());
    std::vector<E> result(static_cast<std::size_t>(dstLen), E{});
    for (int k = 0; k < std::min(srcLen, dstLen); ++k) {
        for (int n = 0; n + k < srcLen; ++n) Form<E>::add(result[k], x[n], x[n + k]);
        if (norm == NormA) result[k] = times(result[k], Number(1) / static_cast<Number>(srcLen));
        if (norm == NormB) result[k] = over(result[k], static_cast<Number>(srcLen - k));
    }
    return result;
}

template <class E>
std::vector<E> samples(test::Random& random, int len) {
    std::vector<E> x;
    for (int i = 0; i < len; ++i) x.push_back(Form<E>::value(random));
    return x;
}

template <class E>
class AutoCorrelation : public ::testing::Test {};
using Elements = ::testing::Types<Vorn32f, Vorn64f, Vorn32fc, Vorn64fc>;
TYPED_TEST_SUITE(AutoCorrelation, Elements);

TYPED_TEST(AutoCorrelation, DirectSumsInTheOrderOfTheSamples) {
    using E = TypeParam;
    test::Random random(1);
    std::vector<std::pair<int, int>> sizes;
    for (int srcLen = 1; srcLen <= 40; ++srcLen) {
        for (int dstLen : {1, 2, 3, 4, 5, 6, 7, 8, 13, 16, 17, 33, 40, 45}) sizes.emplace_back(srcLen, dstLen);
    }
    for (int srcLen : {64, 65, 200, 400}) {
        for (int dstLen : {1, 5, 13, 31, 64, 65, 66, 100, 127, 128, 150}) sizes.emplace_back(srcLen, dstLen);
    }
    for (const auto& [srcLen, dstLen] : sizes) {
        const std::vector<E> x = samples<E>(random, srcLen);
        for (Norm norm : {Plain, NormA, NormB}) {
            test::Guarded<E> src(x), dst(static_cast<std::size_t>(dstLen));
            ASSERT_EQ(Form<E>::call[norm](src, srcLen, dst, dstLen), vornStsNoErr);
            ASSERT_TRUE(test::sameBits(dst.values(), modelled(x, dstLen, norm)))
                << srcLen << " " << dstLen << " " << norm;
            ASSERT_TRUE(dst.surroundingsUntouched());
        }
    }
}

// One lag below the threshold the sums are taken directly, at it by the transform: the same to rounding, and not the
// same bits.
TYPED_TEST(AutoCorrelation, BothRoutesAgree) {
    using E = TypeParam;
    test::Random random(2);
    const int threshold = Form<E>::threshold;
    for (int srcLen : {threshold, 1000, 2048, 2500}) {
        const std::vector<E> x = samples<E>(random, srcLen);
        for (Norm norm : {Plain, NormA, NormB}) {
            std::vector<E> below(static_cast<std::size_t>(threshold - 1)), at(static_cast<std::size_t>(threshold));
            ASSERT_EQ(Form<E>::call[norm](x.data(), srcLen, below.data(), threshold - 1), vornStsNoErr);
            EXPECT_TRUE(test::sameBits(below, modelled(x, threshold - 1, norm)));
            ASSERT_EQ(Form<E>::call[norm](x.data(), srcLen, at.data(), threshold), vornStsNoErr);
            const auto expected = modelled(x, threshold, norm);
            bool allSame = true;
            for (int k = 0; k < threshold; ++k) {
                const double size = norm == Plain ? srcLen : norm == NormA ? 1.0 : double(srcLen) / (srcLen - k);
                ASSERT_LE(Form<E>::distance(at[k], expected[k]), 30 * size * Form<E>::unit) << srcLen << " lag " << k;
                allSame = allSame && test::same(at[k], expected[k]);
            }
            EXPECT_FALSE(allSame);
        }
    }
}

TYPED_TEST(AutoCorrelation, LagsBeyondTheSamplesAreZero) {
    using E = TypeParam;
    test::Random random(3);
    const std::vector<E> one = samples<E>(random, 1), many = samples<E>(random, Form<E>::threshold);
    test::Guarded<E> dst(4), long_(static_cast<std::size_t>(Form<E>::threshold) + 70);
    ASSERT_EQ(Form<E>::call[Plain](one.data(), 1, dst, 4), vornStsNoErr);
    E square{};
    Form<E>::add(square, one[0], one[0]);
    EXPECT_TRUE(test::same(dst[0], square));
    for (int k = 1; k < 4; ++k) EXPECT_TRUE(test::same(dst[k], E{}));
    const int dstLen = static_cast<int>(long_.size());
    ASSERT_EQ(Form<E>::call[NormB](many.data(), Form<E>::threshold, long_, dstLen), vornStsNoErr);
    for (int k = Form<E>::threshold; k < dstLen; ++k) EXPECT_TRUE(test::same(long_[k], E{})) << k;
    EXPECT_TRUE(long_.surroundingsUntouched());
}

TYPED_TEST(AutoCorrelation, ChecksInOrder) {
    using E = TypeParam;
    struct A {
        std::shared_ptr<test::Guarded<E>> in = std::make_shared<test::Guarded<E>>(std::vector<E>(8));
        std::shared_ptr<test::Guarded<E>> out = std::make_shared<test::Guarded<E>>(8);
        E *src = in->data(), *dst = out->data();
        int srcLen = 8, dstLen = 8;
    };
    for (auto* call : Form<E>::call) {
        test::expectCheckOrder<A>([] { return A(); }, [&](A& a) { return call(a.src, a.srcLen, a.dst, a.dstLen); },
                                  [](A& a) { return a.out->untouched(); },
                                  {{"src", vornStsNullPtrErr, [](A& a) { a.src = nullptr; }},
                                   {"dst", vornStsNullPtrErr, [](A& a) { a.dst = nullptr; }},
                                   {"srcLen", vornStsSizeErr, [](A& a) { a.srcLen = 0; }},
                                   {"dstLen", vornStsSizeErr, [](A& a) { a.dstLen = -1; }}});
    }
}

TYPED_TEST(AutoCorrelation, EveryAllocationMayFail) {
    using E = TypeParam;
    if (!test::FailAllocation::available()) GTEST_SKIP() << "malloc belongs to the sanitizer";
    const int len = Form<E>::threshold;
    const std::vector<E> x(static_cast<std::size_t>(len));
    std::vector<E> dst(static_cast<std::size_t>(len));
    int calls;
    {
        test::FailAllocation count(0);
        ASSERT_EQ(Form<E>::call[NormB](x.data(), len, dst.data(), len), vornStsNoErr);
        calls = count.calls();
        EXPECT_EQ(count.outstanding(), 0);
    }
    EXPECT_GE(calls, 6);
    for (int n = 1; n <= calls; ++n) {
        test::FailAllocation fail(n);
        EXPECT_EQ(Form<E>::call[NormB](x.data(), len, dst.data(), len), vornStsMemAllocErr) << n;
        EXPECT_EQ(fail.outstanding(), 0) << n;
    }
    test::FailAllocation count(0);
    ASSERT_EQ(Form<E>::call[NormB](x.data(), len, dst.data(), len - 1), vornStsNoErr);
    EXPECT_EQ(count.calls(), 0) << "direct sums need no memory";
}

constexpr decltype(vornsAutoCorr_16s_Sfs)* fixedCalls[] = {vornsAutoCorr_16s_Sfs, vornsAutoCorr_NormA_16s_Sfs,
                                                           vornsAutoCorr_NormB_16s_Sfs};

std::vector<Vorn16s> modelledFixed(const std::vector<Vorn16s>& x, int dstLen, int scale, Norm norm) {
    const int srcLen = static_cast<int>(x.size());
    std::vector<Vorn16s> result(static_cast<std::size_t>(dstLen));
    float factor = 1;
    for (int i = 0; i < std::abs(scale); ++i) factor *= scale > 0 ? 0.5f : 2.0f;
    for (int k = 0; k < std::min(srcLen, dstLen); ++k) {
        float sum = 0;
        for (int n = 0; n + k < srcLen; n += 2) {
            std::int64_t pair = std::int64_t{x[n]} * x[n + k];
            if (n + 1 + k < srcLen) pair += std::int64_t{x[n + 1]} * x[n + 1 + k];
            sum += static_cast<float>(pair);
        }
        if (norm == NormA) sum *= 1.0f / static_cast<float>(srcLen);
        if (norm == NormB) sum /= static_cast<float>(srcLen - k);
        if (scale != 0) sum *= factor;
        result[k] = sum >= 32767 ? Vorn16s(32767) : sum <= -32768 ? Vorn16s(-32768) : Vorn16s(std::nearbyint(sum));
    }
    return result;
}

TEST(AutoCorrelationFixed, DirectSumsOfPairs) {
    test::Random random(4);
    for (int srcLen : {1, 2, 3, 4, 5, 6, 7, 8, 9, 15, 16, 31, 32, 33, 100, 401}) {
        for (int dstLen : {1, 2, 3, 5, 8, 13, 16, 33, 100, 410}) {
            for (int scale : {0, 4, 15, 24, 35, -1}) {
                auto x = random.integers<Vorn16s>(static_cast<std::size_t>(srcLen));
                if (scale == 35) x.assign(x.size(), -32768);
                for (Norm norm : {Plain, NormA, NormB}) {
                    test::Guarded<Vorn16s> src(x), dst(static_cast<std::size_t>(dstLen));
                    ASSERT_EQ(fixedCalls[norm](src, srcLen, dst, dstLen, scale), vornStsNoErr);
                    ASSERT_TRUE(test::sameBits(dst.values(), modelledFixed(x, dstLen, scale, norm)))
                        << srcLen << " " << dstLen << " " << scale << " " << norm;
                    ASSERT_TRUE(dst.surroundingsUntouched());
                }
            }
        }
    }
}

TEST(AutoCorrelationFixed, TransformRouteAndItsThreshold) {
    test::Random random(5);
    const int len = 1500;
    const auto x = random.integers<Vorn16s>(len);
    std::vector<Vorn16s> below(855), at(856);
    ASSERT_EQ(vornsAutoCorr_16s_Sfs(x.data(), len, below.data(), 855, 24), vornStsNoErr);
    EXPECT_TRUE(test::sameBits(below, modelledFixed(x, 855, 24, Plain)));
    ASSERT_EQ(vornsAutoCorr_16s_Sfs(x.data(), len, at.data(), 856, 24), vornStsNoErr);
    const auto expected = modelledFixed(x, 856, 24, Plain);
    for (int k = 0; k < 856; ++k) EXPECT_NEAR(at[k], expected[k], 1) << k;
}

TEST(AutoCorrelationFixed, ChecksInOrder) {
    struct Arguments {
        std::vector<Vorn16s> x = std::vector<Vorn16s>(9, 1);
        test::Guarded<Vorn16s> out = test::Guarded<Vorn16s>(5);
        const Vorn16s* src = x.data();
        Vorn16s* dst = out.data();
        int srcLen = 9, dstLen = 5;
    };
    using A = Arguments;
    for (auto* call : fixedCalls) {
        test::expectCheckOrder<A>([] { return A(); }, [=](A& a) { return call(a.src, a.srcLen, a.dst, a.dstLen, 0); },
                                  [](A& a) { return a.out.untouched(); },
                                  {{"src", vornStsNullPtrErr, [](A& a) { a.src = nullptr; }},
                                   {"dst", vornStsNullPtrErr, [](A& a) { a.dst = nullptr; }},
                                   {"srcLen", vornStsSizeErr, [](A& a) { a.srcLen = 0; }},
                                   {"dstLen", vornStsSizeErr, [](A& a) { a.dstLen = 0; }},
                                   {"dstLen -1", vornStsSizeErr, [](A& a) { a.dstLen = -1; }}});
    }
}

TEST(AutoCorrelationFixed, EveryAllocationMayFail) {
    if (!test::FailAllocation::available()) GTEST_SKIP() << "malloc belongs to the sanitizer";
    const std::vector<Vorn16s> x(900, 1);
    for (auto* call : fixedCalls) {
        for (int lags : {5, 900}) {
            test::Guarded<Vorn16s> dst(900);
            int calls;
            {
                test::FailAllocation count(0);
                ASSERT_EQ(call(x.data(), 900, dst, lags, 0), vornStsNoErr);
                calls = count.calls();
            }
            EXPECT_GE(calls, 1) << "or the loop below tests nothing";
            for (int n = 1; n <= calls; ++n) {
                test::FailAllocation fail(n);
                EXPECT_EQ(call(x.data(), 900, dst, lags, 0), vornStsMemAllocErr) << n;
                EXPECT_EQ(fail.outstanding(), 0);
            }
        }
    }
}

}  // namespace
