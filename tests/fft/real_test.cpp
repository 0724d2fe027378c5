// Transforms of real values: bit for bit against the staged model, and within a bound of the definition.
#include <gtest/gtest.h>

#include <algorithm>
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
struct Real;

enum Layout { Perm, Pack, Ccs };

template <>
struct Real<Vorn32f> {
    static constexpr const test::FloatForm& form = test::real32f;
    static constexpr decltype(vornsFFTFwd_RToCCS_32f)* forward[] = {vornsFFTFwd_RToPerm_32f, vornsFFTFwd_RToPack_32f,
                                                                    vornsFFTFwd_RToCCS_32f};
    static constexpr decltype(vornsFFTFwd_RToCCS_32f_I)* forwardInPlace[] = {
        vornsFFTFwd_RToPerm_32f_I, vornsFFTFwd_RToPack_32f_I, vornsFFTFwd_RToCCS_32f_I};
    static constexpr decltype(vornsFFTInv_CCSToR_32f)* inverse[] = {vornsFFTInv_PermToR_32f, vornsFFTInv_PackToR_32f,
                                                                    vornsFFTInv_CCSToR_32f};
    static constexpr decltype(vornsFFTInv_CCSToR_32f_I)* inverseInPlace[] = {
        vornsFFTInv_PermToR_32f_I, vornsFFTInv_PackToR_32f_I, vornsFFTInv_CCSToR_32f_I};
    static constexpr double unit = 0x1p-24;
    static constexpr int longOrder = 18;
};

template <>
struct Real<Vorn64f> {
    static constexpr const test::FloatForm& form = test::real64f;
    static constexpr decltype(vornsFFTFwd_RToCCS_64f)* forward[] = {vornsFFTFwd_RToPerm_64f, vornsFFTFwd_RToPack_64f,
                                                                    vornsFFTFwd_RToCCS_64f};
    static constexpr decltype(vornsFFTFwd_RToCCS_64f_I)* forwardInPlace[] = {
        vornsFFTFwd_RToPerm_64f_I, vornsFFTFwd_RToPack_64f_I, vornsFFTFwd_RToCCS_64f_I};
    static constexpr decltype(vornsFFTInv_CCSToR_64f)* inverse[] = {vornsFFTInv_PermToR_64f, vornsFFTInv_PackToR_64f,
                                                                    vornsFFTInv_CCSToR_64f};
    static constexpr decltype(vornsFFTInv_CCSToR_64f_I)* inverseInPlace[] = {
        vornsFFTInv_PermToR_64f_I, vornsFFTInv_PackToR_64f_I, vornsFFTInv_CCSToR_64f_I};
    static constexpr double unit = 0x1p-53;
    static constexpr int longOrder = 16;
};

template <class T>
class RealFft : public ::testing::Test {
protected:
    using R = Real<T>;
    static std::vector<T> noise(test::Random& random, int order) {
        std::vector<T> x(std::size_t{1} << order);
        for (T& value : x) value = static_cast<T>(random.uniform(-1, 1));
        return x;
    }
    static std::size_t ccsLength(int order) { return order == 0 ? 2 : (std::size_t{1} << order) + 2; }
    static std::vector<T> ccs(const std::vector<T>& x, int order, int flag = 8) {
        const test::Context<VornsFFTSpec> context(R::form, order, flag);
        std::vector<T> dst(ccsLength(order));
        EXPECT_EQ(R::forward[Ccs](x.data(), dst.data(), context, nullptr), vornStsNoErr);
        return dst;
    }
    static std::vector<std::complex<T>> pairs(const std::vector<T>& spectrum) {
        std::vector<std::complex<T>> result;
        for (std::size_t k = 0; k + 1 < spectrum.size(); k += 2) result.emplace_back(spectrum[k], spectrum[k + 1]);
        return result;
    }
    static std::vector<model::Wide> exact(const std::vector<T>& x) {
        std::vector<model::Wide> spectrum(x.begin(), x.end());
        model::fourier(spectrum);
        spectrum.resize(x.size() / 2 + 1);
        return spectrum;
    }
};

using Precisions = ::testing::Types<Vorn32f, Vorn64f>;
TYPED_TEST_SUITE(RealFft, Precisions);

template <class T>
T factorOf(int order, int flag) {
    const double length = std::ldexp(1.0, order);
    return flag == 4 ? static_cast<T>(1 / std::sqrt(length)) : static_cast<T>(1 / length);
}

// The closed forms of the orders below 4, in Perm layout.
template <class T>
std::vector<T> shortPerm(const std::vector<T>& x, bool normalised, T factor) {
    const auto f = [&](T sum) { return normalised ? sum * factor : sum; };
    if (x.size() == 1) return {f(x[0])};
    if (x.size() == 2) return {f(x[0] + x[1]), f(x[0] - x[1])};
    if (x.size() == 4) {
        const T a = f(x[0] + x[2]), b = f(x[1] + x[3]);
        return {a + b, a - b, f(x[0] - x[2]), f(x[3] - x[1])};
    }
    const T r = static_cast<T>(0.7071067811865476);
    const T a = f(x[0] + x[4]), b = f(x[0] - x[4]), c = f(x[2] + x[6]), d = f(x[2] - x[6]);
    const T e = f(x[1] + x[5]), g = f(x[1] - x[5]), h = f(x[3] + x[7]), i = f(x[3] - x[7]);
    const T p = (g - i) * r, q = (g + i) * r;
    return {(a + c) + (e + h), (a + c) - (e + h), b + p, -d - q, a - c, h - e, b - p, d - q};
}

template <class T>
std::vector<T> permOf(const std::vector<T>& x, int order, int flag) {
    const bool normalised = flag == 1 || flag == 4;
    const T factor = factorOf<T>(order, flag);
    return order < 4 ? shortPerm(x, normalised, factor) : model::realToPerm(x, order, normalised, factor);
}

template <class T>
std::vector<T> ccsOfPerm(std::vector<T> perm) {
    const std::size_t n = perm.size();
    perm.resize(n == 1 ? 2 : n + 2, T(0));
    if (n > 1) perm[n] = perm[1];
    perm[1] = T(0);
    return perm;
}

template <class T>
std::vector<T> inLayout(Layout layout, std::vector<T> perm) {
    if (layout == Ccs) return ccsOfPerm(perm);
    if (layout == Pack && perm.size() > 2) std::rotate(perm.begin() + 1, perm.begin() + 2, perm.end());
    return perm;
}

// Back from Perm in the orders below 4.
template <class T>
std::vector<T> shortReal(const std::vector<T>& a, bool normalised, T factor) {
    const auto f = [&](T sum) { return normalised ? sum * factor : sum; };
    if (a.size() == 1) return {f(a[0])};
    const T sum = f(a[0] + a[1]), dif = f(a[0] - a[1]);
    if (a.size() == 2) return {sum, dif};
    if (a.size() == 4) {
        const T re = f(2 * a[2]), im = f(2 * a[3]);
        return {sum + re, dif - im, sum - re, dif + im};
    }
    const T twoRoots = 2 * static_cast<T>(0.7071067811865476);
    const T re2 = f(2 * a[4]), im2 = f(2 * a[5]), reSum = f(a[2] + a[6]), reDif = f(a[2] - a[6]);
    const T imSum = f(a[3] + a[7]), imDif = f(a[7] - a[3]);
    const T p = (reDif - imSum) * twoRoots, q = (reDif + imSum) * twoRoots;
    return {(sum + re2) + 2 * reSum, (dif - im2) + p, (sum - re2) + 2 * imDif, (dif + im2) - q,
            (sum + re2) - 2 * reSum, (dif - im2) - p, (sum - re2) - 2 * imDif, (dif + im2) + q};
}

template <class T>
std::vector<T> realOf(const std::vector<T>& perm, int order, int flag) {
    const bool normalised = flag == 2 || flag == 4;
    const T factor = factorOf<T>(order, flag);
    return order < 4 ? shortReal(perm, normalised, factor) : model::permToReal(perm, order, normalised, factor);
}

TYPED_TEST(RealFft, ForwardIsTheStagedTransform) {
    using T = TypeParam;
    using R = Real<T>;
    test::Random random(1);
    for (int order = 0; order <= 13; ++order) {
        for (int flag : {1, 2, 4, 8}) {
            const std::vector<T> x = this->noise(random, order);
            const auto perm = permOf(x, order, flag);
            const test::Context<VornsFFTSpec> context(R::form, order, flag);
            for (Layout layout : {Perm, Pack, Ccs}) {
                const auto expected = inLayout(layout, perm);
                test::Guarded<T> src(x), dst(expected.size()), both(expected.size());
                test::Guarded<Vorn8u> buffer(static_cast<std::size_t>(context.bufSize()));
                ASSERT_EQ(R::forward[layout](src, dst, context, buffer), vornStsNoErr);
                ASSERT_TRUE(test::sameBits(dst.values(), expected)) << order << " " << flag << " " << layout;
                ASSERT_TRUE(test::sameBits(src.values(), x));
                ASSERT_TRUE(dst.surroundingsUntouched() && buffer.surroundingsUntouched());
                std::copy(x.begin(), x.end(), both.data());
                ASSERT_EQ(R::forwardInPlace[layout](both, context, nullptr), vornStsNoErr);
                ASSERT_TRUE(test::sameBits(both.values(), expected)) << "in place " << order << " " << flag;
            }
        }
    }
}

// The imaginary parts of the first and the last bin of CCS count as 0, whatever stands there.
TYPED_TEST(RealFft, InverseIsTheStagedTransform) {
    using T = TypeParam;
    using R = Real<T>;
    test::Random random(11);
    for (int order = 0; order <= 13; ++order) {
        for (int flag : {1, 2, 4, 8}) {
            const std::vector<T> perm = this->noise(random, order);
            const auto expected = realOf(perm, order, flag);
            const test::Context<VornsFFTSpec> context(R::form, order, flag);
            for (Layout layout : {Perm, Pack, Ccs}) {
                auto spectrum = inLayout(layout, perm);
                if (layout == Ccs) spectrum[1] = spectrum.back() = std::numeric_limits<T>::quiet_NaN();
                test::Guarded<T> src(spectrum), dst(expected.size()), both(spectrum);
                test::Guarded<Vorn8u> buffer(static_cast<std::size_t>(context.bufSize()));
                ASSERT_EQ(R::inverse[layout](src, dst, context, buffer), vornStsNoErr);
                ASSERT_TRUE(test::sameBits(dst.values(), expected)) << order << " " << flag << " " << layout;
                ASSERT_TRUE(test::sameBits(src.values(), spectrum));
                ASSERT_TRUE(dst.surroundingsUntouched() && buffer.surroundingsUntouched());
                ASSERT_EQ(R::inverseInPlace[layout](both, context, nullptr), vornStsNoErr);
                ASSERT_TRUE(test::sameBits(both.data(), expected.data(), expected.size())) << "in place " << order;
            }
        }
    }
}

TYPED_TEST(RealFft, LongTransformsAreTheStagedOnes) {
    using T = TypeParam;
    using R = Real<T>;
    test::Random random(2);
    for (int order : {R::longOrder - 1, R::longOrder, R::longOrder + 1}) {
        const std::vector<T> x = this->noise(random, order);
        const auto expected = ccsOfPerm(permOf(x, order, 4));
        const test::Context<VornsFFTSpec> context(R::form, order, 4);
        std::vector<T> dst(expected.size());
        ASSERT_EQ(R::forward[Ccs](x.data(), dst.data(), context, nullptr), vornStsNoErr);
        ASSERT_TRUE(test::sameBits(dst, expected)) << order;
        std::copy(x.begin(), x.end(), dst.begin());
        ASSERT_EQ(R::forwardInPlace[Ccs](dst.data(), context, nullptr), vornStsNoErr);
        ASSERT_TRUE(test::sameBits(dst, expected)) << order;
        std::vector<T> back(x.size());
        ASSERT_EQ(R::inverse[Perm](x.data(), back.data(), context, nullptr), vornStsNoErr);
        ASSERT_TRUE(test::sameBits(back, realOf(x, order, 4))) << order;
    }
}

TYPED_TEST(RealFft, EveryLayoutReturnsHome) {
    using T = TypeParam;
    using R = Real<T>;
    test::Random random(12);
    for (int order = 0; order <= 18; ++order) {
        for (int flag : {1, 2, 4}) {
            const std::vector<T> x = this->noise(random, order);
            const std::vector<model::Wide> exact(x.begin(), x.end());
            const test::Context<VornsFFTSpec> context(R::form, order, flag);
            for (Layout layout : {Perm, Pack, Ccs}) {
                std::vector<T> data = x;
                data.resize(x.size() + 2);
                ASSERT_EQ(R::forwardInPlace[layout](data.data(), context, nullptr), vornStsNoErr);
                ASSERT_EQ(R::inverseInPlace[layout](data.data(), context, nullptr), vornStsNoErr);
                data.resize(x.size());
                EXPECT_LE(static_cast<double>(model::relativeError(data, exact)) / R::unit,
                          1.1 * std::sqrt(order) + 2)  // the root of N rounds too
                    << order << " " << flag;
            }
        }
    }
}

TYPED_TEST(RealFft, AddressesChangeNothing) {
    using T = TypeParam;
    using R = Real<T>;
    test::Random random(3);
    for (int order : {0, 2, 4, 5, 6, 7, 8, 9, 10}) {
        const test::Context<VornsFFTSpec> context(R::form, order, 4);
        const std::vector<T> x = this->noise(random, order);
        const auto expected = ccsOfPerm(permOf(x, order, 4));
        for (std::size_t shift = 0; shift < 64; shift += sizeof(T)) {
            test::Offset<T> src(x.size(), shift), dst(expected.size(), 64 - shift), both(expected.size(), shift);
            test::Offset<Vorn8u> buffer(static_cast<std::size_t>(context.bufSize()), shift / sizeof(T));
            src.assign(x);
            both.assign(x);
            ASSERT_EQ(R::forward[Ccs](src, dst, context, buffer), vornStsNoErr);
            ASSERT_TRUE(test::sameBits(dst.values(), expected)) << order << " " << shift;
            ASSERT_EQ(R::forwardInPlace[Ccs](both, context, buffer), vornStsNoErr);
            ASSERT_TRUE(test::sameBits(both.values(), expected)) << order << " " << shift;
            ASSERT_TRUE(dst.surroundingsUntouched() && both.surroundingsUntouched() && buffer.surroundingsUntouched());
        }
    }
}

// A block of the reported sizes is a full context wherever it begins, after its initialisation buffer is gone.
TYPED_TEST(RealFft, ContextInCallerMemoryGivesTheSameBits) {
    using T = TypeParam;
    using R = Real<T>;
    test::Random random(9);
    for (int order = 0; order <= 12; ++order) {
        int specSize, initSize, work;
        R::form.getSize(order, 4, 0, &specSize, &initSize, &work);
        const std::vector<T> x = this->noise(random, order), expected = this->ccs(x, order, 4);
        for (std::size_t shift : {0, 1, 7, 15, 16, 48}) {
            test::Offset<Vorn8u> spec(static_cast<std::size_t>(specSize), shift);
            VornsFFTSpec* context = nullptr;
            {
                test::Offset<Vorn8u> init(static_cast<std::size_t>(initSize), shift);
                ASSERT_EQ(R::form.init(&context, order, 4, 0, spec, init), vornStsNoErr);
            }
            std::vector<T> dst(expected.size());
            ASSERT_EQ(R::forward[Ccs](x.data(), dst.data(), context, nullptr), vornStsNoErr);
            ASSERT_TRUE(test::sameBits(dst, expected)) << order << " " << shift;
            EXPECT_EQ(R::form.free(context), vornStsNoErr);
            EXPECT_EQ(R::forward[Ccs](x.data(), dst.data(), context, nullptr), vornStsContextMatchErr);
        }
    }
}

TYPED_TEST(RealFft, HardValuesToo) {
    using T = TypeParam;
    test::Random random(4);
    const std::vector<T> hard = test::hardFloats<T>();
    for (int order = 0; order <= 9; ++order) {
        for (int round = 0; round < 40; ++round) {
            std::vector<T> x = this->noise(random, order);
            for (T& value : x) {
                if (round < 2) value *= std::numeric_limits<T>::denorm_min() * 64;
                if (round == 2) value = random.integer(0, 1) ? T(0) : -T(0);
                if (round == 3) value *= std::numeric_limits<T>::max();
            }
            if (round > 3) {
                const auto at = random.integer(0, static_cast<std::int64_t>(x.size()) - 1);
                const auto which = random.integer(0, static_cast<std::int64_t>(hard.size()) - 1);
                x[static_cast<std::size_t>(at)] = hard[static_cast<std::size_t>(which)];
            }
            const auto expected = ccsOfPerm(permOf(x, order, 4));
            ASSERT_TRUE(test::sameBits(this->ccs(x, order, 4), expected)) << "order " << order << " round " << round;
        }
    }
}

// The bound that is promised: the rms of the error is at most 0.7 sqrt(order) units of rounding of that of the
// spectrum.
TYPED_TEST(RealFft, ErrorStaysBelowItsBound) {
    using T = TypeParam;
    test::Random random(5);
    double worst = 0;
    for (int order = 1; order <= 20; ++order) {
        const std::vector<T> x = this->noise(random, order);
        const long double error = model::relativeError(this->pairs(this->ccs(x, order)), this->exact(x));
        const double units = static_cast<double>(error) / Real<T>::unit;
        EXPECT_LE(units, 0.7 * std::sqrt(order)) << order;
        worst = std::max(worst, units / std::sqrt(order));
    }
    this->RecordProperty("worstUnitsPerRootOfOrder", std::to_string(worst));
}

TYPED_TEST(RealFft, BigOrdersMatchTheDefinitionAtChosenBins) {
    using T = TypeParam;
    test::Random random(6);
    for (int order : {21, 22}) {
        const std::vector<T> x = this->noise(random, order);
        const std::vector<T> spectrum = this->ccs(x, order);
        const model::Circle circle(std::int64_t{1} << order);
        const auto half = std::int64_t{1} << (order - 1);
        for (std::int64_t k : {std::int64_t{0}, std::int64_t{1}, half / 2, half, random.integer(0, half)}) {
            const model::Wide expected = model::dftBin(x, k, circle);
            const auto at = static_cast<std::size_t>(2 * k);
            const double size = std::sqrt(std::ldexp(1.0 / 3, order));  // rms of a bin
            EXPECT_LE(static_cast<double>(std::abs(model::Wide(spectrum[at], spectrum[at + 1]) - expected)) / size,
                      5 * 0.7 * std::sqrt(order) * Real<T>::unit)
                << "order " << order << " bin " << k;
        }
    }
}

TYPED_TEST(RealFft, ImpulseIsFlatAndAShiftTurnsIt) {
    using T = TypeParam;
    for (int order = 0; order <= 12; ++order) {
        const std::size_t n = std::size_t{1} << order;
        const model::Circle circle(static_cast<std::int64_t>(n));
        for (std::size_t at : {std::size_t{0}, std::size_t{1}, n / 3, n - 1}) {
            if (at >= n) continue;
            std::vector<T> x(n);
            x[at] = T(1);
            const auto spectrum = this->pairs(this->ccs(x, order));
            for (std::size_t k = 0; k < spectrum.size(); ++k) {
                const model::Wide expected = circle(static_cast<std::int64_t>(k * at));
                ASSERT_LE(std::abs(model::Wide(spectrum[k]) - expected), 4.0L * (order + 1) * Real<T>::unit)
                    << order << " " << k;
            }
        }
    }
}

TYPED_TEST(RealFft, IsLinearAndKeepsTheEnergy) {
    using T = TypeParam;
    test::Random random(7);
    for (int order = 1; order <= 13; ++order) {
        const std::vector<T> x = this->noise(random, order), y = this->noise(random, order);
        std::vector<T> sum(x.size());
        for (std::size_t i = 0; i < x.size(); ++i) sum[i] = x[i] + 2 * y[i];
        const auto fx = this->pairs(this->ccs(x, order)), fy = this->pairs(this->ccs(y, order));
        const auto fs = this->pairs(this->ccs(sum, order));
        std::vector<model::Wide> expected;
        for (std::size_t k = 0; k < fx.size(); ++k) expected.push_back(model::Wide(fx[k]) + 2.0L * model::Wide(fy[k]));
        EXPECT_LE(model::relativeError(fs, expected), 2.5L * std::sqrt(order) * Real<T>::unit);

        long double energy = 0, spectral = 0;
        for (T value : x) energy += static_cast<long double>(value) * value;
        for (std::size_t k = 0; k < fx.size(); ++k) {
            spectral += (k == 0 || k + 1 == fx.size() ? 1 : 2) * std::norm(model::Wide(fx[k]));
        }
        EXPECT_NEAR(static_cast<double>(spectral / static_cast<long double>(x.size()) / energy), 1.0,
                    2 * std::sqrt(order) * Real<T>::unit);
    }
}

TYPED_TEST(RealFft, ChecksInOrder) {
    using T = TypeParam;
    using R = Real<T>;
    const test::Context<VornsFFTSpec> good(R::form, 6, 8);
    alignas(16) std::int32_t released[64] = {};
    auto* wrong = reinterpret_cast<VornsFFTSpec*>(released);
    struct Arguments {
        const VornsFFTSpec* context;
        std::shared_ptr<test::Guarded<T>> in = std::make_shared<test::Guarded<T>>(std::vector<T>(66, T(1)));
        std::shared_ptr<test::Guarded<T>> out = std::make_shared<test::Guarded<T>>(66);
        const T* src = in->data();
        T* dst = out->data();
    };
    for (const auto& direction : {R::forward, R::inverse}) {
        for (Layout layout : {Perm, Pack, Ccs}) {
            test::expectCheckOrder<Arguments>(
                [&] { return Arguments{good}; },
                [&](Arguments& a) { return direction[layout](a.src, a.dst, a.context, nullptr); },
                [](Arguments& a) { return a.out->untouched(); },
                {{"ctx", vornStsNullPtrErr, [](Arguments& a) { a.context = nullptr; }},
                 {"tag", vornStsContextMatchErr, [&](Arguments& a) { a.context = wrong; }},
                 {"src", vornStsNullPtrErr, [](Arguments& a) { a.src = nullptr; }},
                 {"dst", vornStsNullPtrErr, [](Arguments& a) { a.dst = nullptr; }}});
        }
    }
    for (const auto& direction : {R::forwardInPlace, R::inverseInPlace}) {
        for (Layout layout : {Perm, Pack, Ccs}) {
            test::expectCheckOrder<Arguments>(
                [&] { return Arguments{good}; },
                [&](Arguments& a) { return direction[layout](a.dst, a.context, nullptr); },
                [](Arguments& a) { return a.out->untouched(); },
                {{"ctx", vornStsNullPtrErr, [](Arguments& a) { a.context = nullptr; }},
                 {"tag", vornStsContextMatchErr, [&](Arguments& a) { a.context = wrong; }},
                 {"srcDst", vornStsNullPtrErr, [](Arguments& a) { a.dst = nullptr; }}});
        }
    }
}

TYPED_TEST(RealFft, NullBufferIsAllocatedForTheCall) {
    using T = TypeParam;
    using R = Real<T>;
    if (!test::FailAllocation::available()) GTEST_SKIP() << "malloc belongs to the sanitizer";
    for (int order : {0, 3, 4, 9, 18}) {
        const test::Context<VornsFFTSpec> context(R::form, order, 8);
        const std::vector<T> x(std::size_t{1} << order, T(1));
        test::Guarded<T> dst(this->ccsLength(order));
        {
            test::FailAllocation fail(1);
            EXPECT_EQ(R::forward[Ccs](x.data(), dst, context, nullptr), order < 4 ? vornStsNoErr : vornStsMemAllocErr);
            EXPECT_EQ(fail.calls(), order < 4 ? 0 : 1);
            EXPECT_EQ(fail.outstanding(), 0);
        }
        EXPECT_EQ(dst.untouched(), order >= 4) << order;
        for (const auto& direction : {R::forward, R::inverse}) {
            for (Layout layout : {Perm, Pack, Ccs}) {
                const std::vector<T> spectrum(x.size() + 2, T(1));
                dst.fillPattern();
                test::FailAllocation fail(1);
                EXPECT_EQ(direction[layout](spectrum.data(), dst, context, nullptr),
                          order < 4 ? vornStsNoErr : vornStsMemAllocErr);
                EXPECT_EQ(dst.untouched(), order >= 4) << order;
            }
        }
        std::vector<Vorn8u> buffer(static_cast<std::size_t>(context.bufSize()) + 1);
        test::FailAllocation count(0);
        EXPECT_EQ(R::forward[Ccs](x.data(), dst, context, buffer.data()), vornStsNoErr);
        EXPECT_EQ(count.calls(), 0) << "a given buffer is used";
    }
}

// Order 0 has two values in CCS and nothing behind them, order 1 four.
TEST(RealFftEdges, ShortestOrders) {
    for (int flag : {1, 2, 4, 8}) {
        const test::Context<VornsFFTSpec> one(test::real32f, 0, flag), two(test::real32f, 1, flag);
        test::Guarded<Vorn32f> x{3.0f}, y(2);
        EXPECT_EQ(vornsFFTFwd_RToCCS_32f(x, y, one, nullptr), vornStsNoErr);
        EXPECT_EQ(y.values(), (std::vector<Vorn32f>{3.0f, 0.0f}));
        EXPECT_TRUE(y.surroundingsUntouched());
        test::Guarded<Vorn32f> u{3.0f, 1.0f}, v(4);
        EXPECT_EQ(vornsFFTFwd_RToCCS_32f(u, v, two, nullptr), vornStsNoErr);
        const float factor = flag == 1 ? 0.5f : flag == 4 ? 0.70710678118f : 1.0f;
        EXPECT_EQ(v.values(), (std::vector<Vorn32f>{4.0f * factor, 0.0f, 2.0f * factor, 0.0f}));
    }
}

}  // namespace
