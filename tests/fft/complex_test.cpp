// Complex transforms, as pairs and split: bit for bit against the staged model, and within a bound of the definition.
#include <gtest/gtest.h>

#include <cmath>
#include <memory>

#include "forms.h"
#include "support/allocation.h"
#include "support/expect.h"
#include "support/guarded.h"
#include "support/values.h"

namespace {

// What differs between the precisions.
template <class T>
struct Float;

template <>
struct Float<Vorn32f> {
    using Pair = Vorn32fc;
    static constexpr const test::FloatForm& pairForm = test::complex32fc;
    static constexpr const test::FloatForm& splitForm = test::complex32f;
    static constexpr auto* forward = vornsFFTFwd_CToC_32fc;
    static constexpr auto* inverse = vornsFFTInv_CToC_32fc;
    static constexpr auto* forwardInPlace = vornsFFTFwd_CToC_32fc_I;
    static constexpr auto* inverseInPlace = vornsFFTInv_CToC_32fc_I;
    static constexpr auto* forwardSplit = vornsFFTFwd_CToC_32f;
    static constexpr auto* inverseSplit = vornsFFTInv_CToC_32f;
    static constexpr auto* forwardSplitInPlace = vornsFFTFwd_CToC_32f_I;
    static constexpr auto* inverseSplitInPlace = vornsFFTInv_CToC_32f_I;
    static constexpr double unit = 0x1p-24;
    static constexpr int longOrder = 17;
};

template <>
struct Float<Vorn64f> {
    using Pair = Vorn64fc;
    static constexpr const test::FloatForm& pairForm = test::complex64fc;
    static constexpr const test::FloatForm& splitForm = test::complex64f;
    static constexpr auto* forward = vornsFFTFwd_CToC_64fc;
    static constexpr auto* inverse = vornsFFTInv_CToC_64fc;
    static constexpr auto* forwardInPlace = vornsFFTFwd_CToC_64fc_I;
    static constexpr auto* inverseInPlace = vornsFFTInv_CToC_64fc_I;
    static constexpr auto* forwardSplit = vornsFFTFwd_CToC_64f;
    static constexpr auto* inverseSplit = vornsFFTInv_CToC_64f;
    static constexpr auto* forwardSplitInPlace = vornsFFTFwd_CToC_64f_I;
    static constexpr auto* inverseSplitInPlace = vornsFFTInv_CToC_64f_I;
    static constexpr double unit = 0x1p-53;
    static constexpr int longOrder = 15;
};

template <class T>
struct Signal {
    std::vector<T> re, im;

    explicit Signal(std::size_t n) : re(n), im(n) {}
    Signal(test::Random& random, int order) : Signal(std::size_t{1} << order) {
        for (T& x : re) x = static_cast<T>(random.uniform(-1, 1));
        for (T& x : im) x = static_cast<T>(random.uniform(-1, 1));
    }
    std::vector<typename Float<T>::Pair> pairs() const {
        std::vector<typename Float<T>::Pair> result;
        for (std::size_t i = 0; i < re.size(); ++i) result.push_back({re[i], im[i]});
        return result;
    }
    std::vector<model::Wide> wide() const {
        std::vector<model::Wide> result;
        for (std::size_t i = 0; i < re.size(); ++i) result.emplace_back(re[i], im[i]);
        return result;
    }
};

template <class T>
Signal<T> staged(Signal<T> x, int order, bool inverse, int flag) {
    const double length = std::ldexp(1.0, order);
    const T factor = flag == 4 ? static_cast<T>(1 / std::sqrt(length)) : static_cast<T>(1 / length);
    const bool normalised = flag == 4 || flag == (inverse ? 2 : 1);
    model::StagedTransform<T>(order, order).run(x.re, x.im, inverse, normalised, factor);
    return x;
}

template <class T>
class ComplexFft : public ::testing::Test {
protected:
    using F = Float<T>;
    // All four calls of a direction on one signal against one expectation.
    static void expectTransforms(const Signal<T>& x, const Signal<T>& expected, int order, bool inverse, int flag,
                                 std::size_t shift) {
        const std::size_t n = x.re.size();
        const auto pairs = x.pairs(), expectedPairs = expected.pairs();
        {
            const test::Context<VornsFFTSpec> context(F::pairForm, order, flag);
            test::Offset<typename F::Pair> src(n, shift), dst(n, 2 * shift);
            test::Offset<Vorn8u> buffer(static_cast<std::size_t>(context.bufSize()), shift / sizeof(T));
            src.assign(pairs);
            ASSERT_EQ((inverse ? F::inverse : F::forward)(src, dst, context, buffer), vornStsNoErr);
            ASSERT_TRUE(test::sameBits(dst.values(), expectedPairs));
            ASSERT_TRUE(test::sameBits(src.values(), pairs));
            ASSERT_TRUE(dst.surroundingsUntouched() && buffer.surroundingsUntouched());
            ASSERT_EQ((inverse ? F::inverseInPlace : F::forwardInPlace)(src, context, nullptr), vornStsNoErr);
            ASSERT_TRUE(test::sameBits(src.values(), expectedPairs)) << "in place";
            ASSERT_TRUE(src.surroundingsUntouched());
        }
        const test::Context<VornsFFTSpec> context(F::splitForm, order, flag);
        const auto expectSplit = [&](auto& srcRe, auto& srcIm, auto& dstRe, auto& dstIm) {
            test::Offset<Vorn8u> buffer(static_cast<std::size_t>(context.bufSize()), shift / sizeof(T));
            ASSERT_EQ((inverse ? F::inverseSplit : F::forwardSplit)(srcRe, srcIm, dstRe, dstIm, context, buffer),
                      vornStsNoErr);
            ASSERT_TRUE(test::sameBits(dstRe.values(), expected.re) && test::sameBits(dstIm.values(), expected.im))
                << "split";
            ASSERT_TRUE(dstRe.surroundingsUntouched() && dstIm.surroundingsUntouched() &&
                        buffer.surroundingsUntouched());
            ASSERT_EQ((inverse ? F::inverseSplitInPlace : F::forwardSplitInPlace)(srcRe, srcIm, context, nullptr),
                      vornStsNoErr);
            ASSERT_TRUE(test::sameBits(srcRe.values(), expected.re) && test::sameBits(srcIm.values(), expected.im))
                << "split, in place";
        };
        test::Guarded<T> srcRe(x.re), srcIm(x.im), dstRe(n), dstIm(n);
        expectSplit(srcRe, srcIm, dstRe, dstIm);
        if (shift == 0 || testing::Test::HasFatalFailure()) return;
        test::Offset<T> shiftedRe(n, shift), shiftedIm(n, 2 * shift), shiftedDstRe(n, shift), shiftedDstIm(n, shift);
        shiftedRe.assign(x.re);
        shiftedIm.assign(x.im);
        expectSplit(shiftedRe, shiftedIm, shiftedDstRe, shiftedDstIm);
    }
};

using Precisions = ::testing::Types<Vorn32f, Vorn64f>;
TYPED_TEST_SUITE(ComplexFft, Precisions);

TYPED_TEST(ComplexFft, IsTheStagedTransform) {
    using T = TypeParam;
    test::Random random(1);
    for (int order = 0; order <= 12; ++order) {
        for (int flag : {1, 2, 4, 8}) {
            for (bool inverse : {false, true}) {
                SCOPED_TRACE(testing::Message() << "order " << order << " flag " << flag << " inverse " << inverse);
                const Signal<T> x(random, order);
                this->expectTransforms(x, staged(x, order, inverse, flag), order, inverse, flag, 0);
                if (this->HasFatalFailure()) return;
            }
        }
    }
}

TYPED_TEST(ComplexFft, AddressesChangeNothing) {
    using T = TypeParam;
    test::Random random(2);
    for (int order = 0; order <= 9; ++order) {
        for (bool inverse : {false, true}) {
            const Signal<T> x(random, order), expected = staged(x, order, inverse, 4);
            for (std::size_t shift = 0; shift < 64; shift += sizeof(T)) {
                this->expectTransforms(x, expected, order, inverse, 4, shift);
                if (this->HasFatalFailure()) return;
            }
        }
    }
}

// The last short orders and the first long ones: every block order up to the eighth. The arrays of the split form lie
// on whole cache lines, where some stages run otherwise, and off them.
TYPED_TEST(ComplexFft, LongTransformsAreTheStagedOnes) {
    using T = TypeParam;
    test::Random random(3);
    for (int order = 13; order <= 19; ++order) {
        SCOPED_TRACE(order);
        const bool inverse = order % 2 == 0;
        const Signal<T> x(random, order);
        this->expectTransforms(x, staged(x, order, inverse, 4), order, inverse, 4, 16);
        if (this->HasFatalFailure()) return;
    }
}

TYPED_TEST(ComplexFft, BigOrdersMatchTheDefinitionAtChosenBins) {
    using T = TypeParam;
    using F = Float<T>;
    test::Random random(4);
    for (int order : {20, 22}) {
        const Signal<T> x(random, order);
        const auto src = x.pairs();
        auto dst = src;
        const test::Context<VornsFFTSpec> context(F::pairForm, order, 8);
        ASSERT_EQ(F::forward(src.data(), dst.data(), context, nullptr), vornStsNoErr);
        const model::Circle circle(std::int64_t{1} << order);
        const auto wide = x.wide();
        for (std::int64_t k : {random.integer(1, (1 << order) - 1)}) {
            const model::Wide expected = model::dftBin(wide, k, circle);
            const auto got = dst[static_cast<std::size_t>(k)];
            const double size = std::sqrt(std::ldexp(2.0 / 3, order));  // rms of a bin
            EXPECT_LE(static_cast<double>(std::abs(model::Wide(got.re, got.im) - expected)) / size,
                      5 * 0.7 * std::sqrt(order) * F::unit)
                << "order " << order << " bin " << k;
        }
    }
}

// The bound that is promised, and the way back.
TYPED_TEST(ComplexFft, ErrorStaysBelowItsBoundAndReturnsHome) {
    using T = TypeParam;
    using F = Float<T>;
    test::Random random(5);
    double worst = 0;
    for (int order = 1; order <= 18; ++order) {
        const Signal<T> x(random, order);
        auto data = x.pairs();
        const test::Context<VornsFFTSpec> context(F::pairForm, order, 2);
        ASSERT_EQ(F::forwardInPlace(data.data(), context, nullptr), vornStsNoErr);
        std::vector<std::complex<T>> spectrum, home;
        for (const auto& z : data) spectrum.emplace_back(z.re, z.im);
        std::vector<model::Wide> exact = x.wide();
        model::fourier(exact);
        const double units = static_cast<double>(model::relativeError(spectrum, exact)) / F::unit;
        EXPECT_LE(units, 0.7 * std::sqrt(order)) << order;
        worst = std::max(worst, units / std::sqrt(order));
        ASSERT_EQ(F::inverseInPlace(data.data(), context, nullptr), vornStsNoErr);
        for (const auto& z : data) home.emplace_back(z.re, z.im);
        EXPECT_LE(static_cast<double>(model::relativeError(home, x.wide())) / F::unit, std::sqrt(order)) << order;
    }
    this->RecordProperty("worstUnitsPerRootOfOrder", std::to_string(worst));
}

TYPED_TEST(ComplexFft, HardValuesToo) {
    using T = TypeParam;
    test::Random random(6);
    const std::vector<T> hard = test::hardFloats<T>();
    for (int order = 0; order <= 8; ++order) {
        for (int round = 0; round < 30; ++round) {
            Signal<T> x(random, order);
            if (round == 0) {
                for (T& value : x.re) value = random.integer(0, 1) ? T(0) : -T(0);
                for (T& value : x.im) value = random.integer(0, 1) ? T(0) : -T(0);
            } else {
                const auto at = static_cast<std::size_t>(random.integer(0, (1 << order) - 1));
                x.re[at] = hard[static_cast<std::size_t>(random.integer(0, static_cast<int>(hard.size()) - 1))];
                x.im[at] = hard[static_cast<std::size_t>(random.integer(0, static_cast<int>(hard.size()) - 1))];
            }
            const bool inverse = round % 2 != 0;
            this->expectTransforms(x, staged(x, order, inverse, 1), order, inverse, 1, 0);
            if (this->HasFatalFailure()) return;
        }
    }
}

TYPED_TEST(ComplexFft, ChecksInOrder) {
    using T = TypeParam;
    using F = Float<T>;
    using Pair = typename F::Pair;
    const test::Context<VornsFFTSpec> pairs(F::pairForm, 5, 8), split(F::splitForm, 5, 8);
    struct Arguments {
        const VornsFFTSpec* context;
        std::shared_ptr<test::Guarded<T>> in = std::make_shared<test::Guarded<T>>(std::vector<T>(64, T(1)));
        std::shared_ptr<test::Guarded<T>> out = std::make_shared<test::Guarded<T>>(64);
        T *src = in->data(), *srcIm = src + 32, *dst = out->data(), *dstIm = dst + 32;
    };
    using A = Arguments;
    const auto untouched = [](A& a) { return a.out->untouched(); };
    for (auto* transform : {F::forward, F::inverse}) {
        test::expectCheckOrder<A>(
            [&] { return A{pairs}; },
            [&](A& a) {
                return transform(reinterpret_cast<Pair*>(a.src), reinterpret_cast<Pair*>(a.dst), a.context, nullptr);
            },
            untouched,
            {{"ctx", vornStsNullPtrErr, [](A& a) { a.context = nullptr; }},
             {"tag", vornStsContextMatchErr, [&](A& a) { a.context = split; }},  // though the tables would fit
             {"src", vornStsNullPtrErr, [](A& a) { a.src = nullptr; }},
             {"dst", vornStsNullPtrErr, [](A& a) { a.dst = nullptr; }}});
    }
    for (auto* transform : {F::forwardSplit, F::inverseSplit}) {
        test::expectCheckOrder<A>([&] { return A{split}; },
                                  [&](A& a) { return transform(a.src, a.srcIm, a.dst, a.dstIm, a.context, nullptr); },
                                  untouched,
                                  {{"ctx", vornStsNullPtrErr, [](A& a) { a.context = nullptr; }},
                                   {"tag", vornStsContextMatchErr, [&](A& a) { a.context = pairs; }},
                                   {"srcRe", vornStsNullPtrErr, [](A& a) { a.src = nullptr; }},
                                   {"srcIm", vornStsNullPtrErr, [](A& a) { a.srcIm = nullptr; }},
                                   {"dstRe", vornStsNullPtrErr, [](A& a) { a.dst = nullptr; }},
                                   {"dstIm", vornStsNullPtrErr, [](A& a) { a.dstIm = nullptr; }}});
    }
    for (auto* transform : {F::forwardInPlace, F::inverseInPlace}) {
        test::expectCheckOrder<A>([&] { return A{pairs}; },
                                  [&](A& a) { return transform(reinterpret_cast<Pair*>(a.dst), a.context, nullptr); },
                                  untouched,
                                  {{"ctx", vornStsNullPtrErr, [](A& a) { a.context = nullptr; }},
                                   {"tag", vornStsContextMatchErr, [&](A& a) { a.context = split; }},
                                   {"srcDst", vornStsNullPtrErr, [](A& a) { a.dst = nullptr; }}});
    }
    for (auto* transform : {F::forwardSplitInPlace, F::inverseSplitInPlace}) {
        test::expectCheckOrder<A>([&] { return A{split}; },
                                  [&](A& a) { return transform(a.dst, a.dstIm, a.context, nullptr); }, untouched,
                                  {{"ctx", vornStsNullPtrErr, [](A& a) { a.context = nullptr; }},
                                   {"tag", vornStsContextMatchErr, [&](A& a) { a.context = pairs; }},
                                   {"srcDstRe", vornStsNullPtrErr, [](A& a) { a.dst = nullptr; }},
                                   {"srcDstIm", vornStsNullPtrErr, [](A& a) { a.dstIm = nullptr; }}});
    }
}

TYPED_TEST(ComplexFft, NullBufferIsAllocatedForTheCall) {
    using T = TypeParam;
    using F = Float<T>;
    if (!test::FailAllocation::available()) GTEST_SKIP() << "malloc belongs to the sanitizer";
    for (int order : {0, 3, 4, 9, 17}) {
        const std::size_t n = std::size_t{1} << order;
        const test::Context<VornsFFTSpec> pairs(F::pairForm, order, 8), split(F::splitForm, order, 8);
        const std::vector<typename F::Pair> src(n, {T(1), T(0)});
        const std::vector<T> part(n, T(1));
        test::Guarded<typename F::Pair> dst(n);
        test::Guarded<T> re(n), im(n);
        const VornStatus expected = order < 4 ? vornStsNoErr : vornStsMemAllocErr;
        for (auto* transform : {F::forward, F::inverse}) {
            dst.fillPattern();
            test::FailAllocation fail(1);
            EXPECT_EQ(transform(src.data(), dst, pairs, nullptr), expected);
            EXPECT_EQ(fail.outstanding(), 0);
            EXPECT_EQ(dst.untouched(), order >= 4);
        }
        for (auto* transform : {F::forwardSplit, F::inverseSplit}) {
            re.fillPattern();
            test::FailAllocation fail(1);
            EXPECT_EQ(transform(part.data(), part.data(), re, im, split, nullptr), expected);
            EXPECT_EQ(re.untouched(), order >= 4);
        }
    }
}

// A single value is copied, whatever the direction; its factor is 1.
TYPED_TEST(ComplexFft, OrderZeroCopies) {
    using T = TypeParam;
    using F = Float<T>;
    for (int flag : {1, 2, 4, 8}) {
        const test::Context<VornsFFTSpec> context(F::pairForm, 0, flag);
        const typename F::Pair x{T(3), T(-5)};
        for (auto* transform : {F::forward, F::inverse}) {
            typename F::Pair y{};
            EXPECT_EQ(transform(&x, &y, context, nullptr), vornStsNoErr);
            EXPECT_TRUE(test::same(x, y));
        }
    }
}

}  // namespace
