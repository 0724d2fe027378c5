// Fixed-point transforms: bit for bit the float model with the stated conversions around it.
#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <climits>
#include <cmath>
#include <functional>
#include <memory>

#include "forms.h"
#include "support/allocation.h"
#include "support/expect.h"
#include "support/guarded.h"
#include "support/values.h"

namespace {

// The factor 2^-scale, made in single precision one step at a time: it may become 0 or infinite.
float scaleFactorOf(int scale) {
    float factor = 1.0f;
    for (int i = 0; i < std::abs(scale); ++i) factor *= scale > 0 ? 0.5f : 2.0f;
    return factor;
}

// Singles to 32-bit integers, rounded to nearest even. Bit patterns above that of the largest single below 2^31
// saturate.
Vorn32s toInteger(Vorn32f x, int scale) {
    if (scale != 0) x *= scaleFactorOf(scale);
    if (std::bit_cast<std::int32_t>(x) > 0x4EFFFFFF) return INT_MAX;
    if (!(x >= -2147483648.0f)) return INT_MIN;
    return static_cast<Vorn32s>(std::nearbyint(x));
}

std::vector<Vorn32s> integersOf(const std::vector<Vorn32f>& x, int scale) {
    std::vector<Vorn32s> result;
    for (Vorn32f value : x) result.push_back(toInteger(value, scale));
    return result;
}

// The Perm spectrum by the float transform (itself tested against its model), put into integers, then into CCS.
std::vector<Vorn32s> expectedCcs(const std::vector<Vorn16s>& x, int order, int flag, int scale) {
    const std::size_t n = x.size();
    std::vector<Vorn32f> values(x.begin(), x.end()), spectrum(n + 2);
    const test::Context<VornsFFTSpec> context(test::real32f, order, flag);
    EXPECT_EQ(vornsFFTFwd_RToCCS_32f(values.data(), spectrum.data(), context, nullptr), vornStsNoErr);
    if (n > 1) spectrum[1] = spectrum[n];
    spectrum.resize(n);
    std::vector<Vorn32s> result = integersOf(spectrum, scale);
    result.resize(n == 1 ? 2 : n + 2);
    if (n > 1) result[n] = result[1], result[n + 1] = 0;
    result[1] = 0;
    return result;
}

TEST(FixedFft, MixedWidthForwardIsTheFloatTransformConverted) {
    test::Random random(1);
    for (int order = 0; order <= 11; ++order) {
        for (int flag : {1, 2, 4, 8}) {
            for (int scale : {0, 1, 3, 15, 30, 40, 160, -1, -4, -12, -30, -140}) {
                std::vector<Vorn16s> x = random.integers<Vorn16s>(std::size_t{1} << order);
                if (scale % 2 != 0) x.assign(x.size(), scale < 0 ? -32768 : 32767);
                const std::vector<Vorn32s> expected = expectedCcs(x, order, flag, scale);
                const test::Context<VornsFFTFixedSpec> context(test::real16s32s, order, flag);
                test::Guarded<Vorn16s> src(x);
                test::Guarded<Vorn32s> dst(expected.size());
                test::Guarded<Vorn8u> buffer(static_cast<std::size_t>(context.bufSize()));
                ASSERT_EQ(vornsFFTFwd_RToCCS_16s32s_Sfs(src, dst, context, scale, buffer), vornStsNoErr);
                ASSERT_TRUE(test::sameBits(dst.values(), expected)) << order << " " << flag << " " << scale;
                ASSERT_TRUE(dst.surroundingsUntouched() && buffer.surroundingsUntouched());
                dst.fillPattern();
                ASSERT_EQ(vornsFFTFwd_RToCCS_16s32s_Sfs(src, dst, context, scale, nullptr), vornStsNoErr);
                ASSERT_TRUE(test::sameBits(dst.values(), expected));
            }
        }
    }
}

TEST(FixedFft, WorkBufferAtAnyAddress) {
    test::Random random(2);
    for (int order : {0, 3, 4, 9}) {
        const test::Context<VornsFFTFixedSpec> context(test::real16s32s, order, 8);
        const auto x = random.integers<Vorn16s>(std::size_t{1} << order);
        const std::vector<Vorn32s> expected = expectedCcs(x, order, 8, 2);
        for (std::size_t shift = 0; shift < 17; ++shift) {
            test::Offset<Vorn8u> buffer(static_cast<std::size_t>(context.bufSize()), shift);
            test::Offset<Vorn16s> src(x.size(), 2 * shift);
            test::Offset<Vorn32s> dst(expected.size(), 4 * shift);
            src.assign(x);
            ASSERT_EQ(vornsFFTFwd_RToCCS_16s32s_Sfs(src, dst, context, 2, buffer), vornStsNoErr);
            ASSERT_TRUE(test::sameBits(dst.values(), expected)) << order << " " << shift;
            ASSERT_TRUE(buffer.surroundingsUntouched() && dst.surroundingsUntouched());
        }
    }
}

// A spectrum of nothing but the first bin, in numbers: 32767 x 2^16 is short of the top by 2^16.
TEST(FixedFft, SaturatesBeforeItReorders) {
    const test::Context<VornsFFTFixedSpec> context(test::real16s32s, 16, 8);
    std::vector<Vorn16s> x(65536);
    std::vector<Vorn32s> y(65538);
    for (std::size_t i = 0; i < x.size(); ++i) x[i] = i % 2 ? -32768 : 32767;
    ASSERT_EQ(vornsFFTFwd_RToCCS_16s32s_Sfs(x.data(), y.data(), context, -1, nullptr), vornStsNoErr);
    EXPECT_EQ(y[0], -65536);       // the sum is -32768
    EXPECT_EQ(y[65536], INT_MAX);  // the alternating sum, 2147450880, does not fit when doubled
    EXPECT_EQ(y[1], 0);
    EXPECT_EQ(y[65537], 0);
}

TEST(FixedFft, LargeScaleFactorsGiveZeros) {
    const test::Context<VornsFFTFixedSpec> context(test::real16s32s, 5, 8);
    std::vector<Vorn16s> x(32, 32767);
    std::vector<Vorn32s> y(34, 1);
    for (int scale : {31, 100, 1000}) {
        ASSERT_EQ(vornsFFTFwd_RToCCS_16s32s_Sfs(x.data(), y.data(), context, scale, nullptr), vornStsNoErr);
        EXPECT_EQ(y, std::vector<Vorn32s>(34)) << scale;
    }
}

TEST(FixedFft, ChecksInOrder) {
    const test::Context<VornsFFTFixedSpec> good(test::real16s32s, 6, 8);
    alignas(16) std::int32_t released[64] = {};
    auto* wrong = reinterpret_cast<VornsFFTFixedSpec*>(released);
    struct Arguments {
        const VornsFFTFixedSpec* context;
        std::shared_ptr<test::Guarded<Vorn16s>> in =
            std::make_shared<test::Guarded<Vorn16s>>(std::vector<Vorn16s>(64, 1));
        std::shared_ptr<test::Guarded<Vorn32s>> out = std::make_shared<test::Guarded<Vorn32s>>(66);
        const Vorn16s* src = in->data();
        Vorn32s* dst = out->data();
    };
    test::expectCheckOrder<Arguments>(
        [&] { return Arguments{good}; },
        [](Arguments& a) { return vornsFFTFwd_RToCCS_16s32s_Sfs(a.src, a.dst, a.context, 0, nullptr); },
        [](Arguments& a) { return a.out->untouched(); },
        {{"ctx", vornStsNullPtrErr, [](Arguments& a) { a.context = nullptr; }},
         {"tag", vornStsContextMatchErr, [&](Arguments& a) { a.context = wrong; }},
         {"src", vornStsNullPtrErr, [](Arguments& a) { a.src = nullptr; }},
         {"dst", vornStsNullPtrErr, [](Arguments& a) { a.dst = nullptr; }}});
}

TEST(FixedFft, NullBufferIsOneAllocation) {
    if (!test::FailAllocation::available()) GTEST_SKIP() << "malloc belongs to the sanitizer";
    for (int order : {0, 3, 4, 10}) {
        const test::Context<VornsFFTFixedSpec> context(test::real16s32s, order, 8);
        const std::vector<Vorn16s> x(std::size_t{1} << order, 1);
        test::Guarded<Vorn32s> dst((std::size_t{1} << order) + 2);
        {
            test::FailAllocation fail(1);
            EXPECT_EQ(vornsFFTFwd_RToCCS_16s32s_Sfs(x.data(), dst, context, 0, nullptr), vornStsMemAllocErr);
            EXPECT_TRUE(dst.untouched());
        }
        test::FailAllocation count(0);
        EXPECT_EQ(vornsFFTFwd_RToCCS_16s32s_Sfs(x.data(), dst, context, 0, nullptr), vornStsNoErr);
        EXPECT_EQ(count.calls(), 1);
        EXPECT_EQ(count.outstanding(), 0);
    }
}

// ---- Doubles inside, 32-bit integers outside
// -------------------------------------------------------------------------

// min(x, 2147483647.0), then rounded to nearest even; not-a-numbers do not occur.
Vorn32s toInteger(Vorn64f x, int scale) {
    if (scale != 0) x *= static_cast<double>(scaleFactorOf(scale));
    x = x < 2147483647.0 ? x : 2147483647.0;
    return x < -2147483648.0 ? INT_MIN : static_cast<Vorn32s>(std::nearbyint(x));
}
template <class T>
Vorn16s toShort(T x, int scale) {
    if (scale != 0) x *= static_cast<T>(scaleFactorOf(scale));
    return x >= 32767 ? Vorn16s(32767) : x <= -32768 ? Vorn16s(-32768) : static_cast<Vorn16s>(std::nearbyint(x));
}

const int scales[] = {0, 1, 5, 31, 40, -1, -3, -29};

struct ComplexFixedCase {
    bool inverse;
    decltype(vornsFFTFwd_CToC_32sc_Sfs)* pairs;
    decltype(vornsFFTFwd_CToC_32sc_ISfs)* pairsInPlace;
    decltype(vornsFFTFwd_CToC_32s_Sfs)* split;
    decltype(vornsFFTFwd_CToC_32s_ISfs)* splitInPlace;
};
const ComplexFixedCase complexCases[] = {
    {false, vornsFFTFwd_CToC_32sc_Sfs, vornsFFTFwd_CToC_32sc_ISfs, vornsFFTFwd_CToC_32s_Sfs, vornsFFTFwd_CToC_32s_ISfs},
    {true, vornsFFTInv_CToC_32sc_Sfs, vornsFFTInv_CToC_32sc_ISfs, vornsFFTInv_CToC_32s_Sfs, vornsFFTInv_CToC_32s_ISfs},
};

TEST(FixedFft, ComplexIsTheDoubleModelConverted) {
    test::Random random(21);
    for (int order = 0; order <= 9; ++order) {
        const std::size_t n = std::size_t{1} << order;
        for (int flag : {1, 2, 4, 8}) {
            const double factor = flag == 4 ? 1 / std::sqrt(static_cast<double>(n)) : 1 / static_cast<double>(n);
            const test::Context<VornsFFTFixedSpec> pairForm(test::complex32sc, order, flag);
            const test::Context<VornsFFTFixedSpec> splitForm(test::complex32s, order, flag);
            for (const ComplexFixedCase& call : complexCases) {
                for (int scale : scales) {
                    const auto re = random.integers<Vorn32s>(n), im = random.integers<Vorn32s>(n);
                    std::vector<double> wideRe(re.begin(), re.end()), wideIm(im.begin(), im.end());
                    model::StagedTransform<double>(order, order)
                        .run(wideRe, wideIm, call.inverse, flag == 4 || flag == (call.inverse ? 2 : 1), factor);
                    std::vector<Vorn32s> expectedRe, expectedIm;
                    test::Guarded<Vorn32sc> src(n), dst(n);
                    std::vector<Vorn32sc> expected;
                    for (std::size_t i = 0; i < n; ++i) {
                        expectedRe.push_back(toInteger(wideRe[i], scale));
                        expectedIm.push_back(toInteger(wideIm[i], scale));
                        expected.push_back({expectedRe[i], expectedIm[i]});
                        src[i] = {re[i], im[i]};
                    }
                    test::Guarded<Vorn8u> buffer(static_cast<std::size_t>(pairForm.bufSize()));
                    ASSERT_EQ(call.pairs(src, dst, pairForm, scale, buffer), vornStsNoErr);
                    ASSERT_TRUE(test::sameBits(dst.values(), expected)) << order << " " << flag << " " << scale;
                    ASSERT_TRUE(dst.surroundingsUntouched() && buffer.surroundingsUntouched());
                    ASSERT_EQ(call.pairsInPlace(src, pairForm, scale, nullptr), vornStsNoErr);
                    ASSERT_TRUE(test::sameBits(src.values(), expected));

                    test::Guarded<Vorn32s> srcRe(re), srcIm(im), dstRe(n), dstIm(n);
                    test::Guarded<Vorn8u> area(static_cast<std::size_t>(splitForm.bufSize()));
                    ASSERT_EQ(call.split(srcRe, srcIm, dstRe, dstIm, splitForm, scale, area), vornStsNoErr);
                    ASSERT_TRUE(test::sameBits(dstRe.values(), expectedRe) &&
                                test::sameBits(dstIm.values(), expectedIm));
                    ASSERT_TRUE(dstRe.surroundingsUntouched() && dstIm.surroundingsUntouched() &&
                                area.surroundingsUntouched());
                    ASSERT_EQ(call.splitInPlace(srcRe, srcIm, splitForm, scale, nullptr), vornStsNoErr);
                    ASSERT_TRUE(test::sameBits(srcRe.values(), expectedRe) &&
                                test::sameBits(srcIm.values(), expectedIm));
                }
            }
        }
    }
}

enum Layout { Perm, Pack, Ccs };

template <class T>
std::vector<T> inLayout(Layout layout, std::vector<T> perm) {
    const std::size_t n = perm.size();
    if (layout == Pack && n > 2) std::rotate(perm.begin() + 1, perm.begin() + 2, perm.end());
    if (layout == Ccs) {
        perm.resize(n == 1 ? 2 : n + 2);
        if (n > 1) perm[n] = perm[1];
        perm[1] = 0;
    }
    return perm;
}

const struct {
    decltype(vornsFFTFwd_RToCCS_32s_Sfs)* call;
    decltype(vornsFFTFwd_RToCCS_32s_ISfs)* inPlace;
    decltype(vornsFFTFwd_RToCCS_64f)* inner;
} forwardCases[] = {{vornsFFTFwd_RToPerm_32s_Sfs, vornsFFTFwd_RToPerm_32s_ISfs, vornsFFTFwd_RToPerm_64f},
                    {vornsFFTFwd_RToPack_32s_Sfs, vornsFFTFwd_RToPack_32s_ISfs, vornsFFTFwd_RToPack_64f},
                    {vornsFFTFwd_RToCCS_32s_Sfs, vornsFFTFwd_RToCCS_32s_ISfs, vornsFFTFwd_RToCCS_64f}},
  inverseCases[] = {{vornsFFTInv_PermToR_32s_Sfs, vornsFFTInv_PermToR_32s_ISfs, vornsFFTInv_PermToR_64f},
                    {vornsFFTInv_PackToR_32s_Sfs, vornsFFTInv_PackToR_32s_ISfs, vornsFFTInv_PackToR_64f},
                    {vornsFFTInv_CCSToR_32s_Sfs, vornsFFTInv_CCSToR_32s_ISfs, vornsFFTInv_CCSToR_64f}};

// The inner transforms are the double ones, themselves tested against their model.
TEST(FixedFft, RealIsTheDoubleTransformConverted) {
    test::Random random(22);
    for (int order = 0; order <= 9; ++order) {
        const std::size_t n = std::size_t{1} << order;
        for (int flag : {1, 2, 4, 8}) {
            const test::Context<VornsFFTFixedSpec> context(test::real32s, order, flag);
            const test::Context<VornsFFTSpec> inner(test::real64f, order, flag);
            for (Layout layout : {Perm, Pack, Ccs}) {
                for (int scale : scales) {
                    const auto x = random.integers<Vorn32s>(n);
                    std::vector<double> wide(x.begin(), x.end());
                    ASSERT_EQ(vornsFFTFwd_RToPerm_64f_I(wide.data(), inner, nullptr), vornStsNoErr);
                    std::vector<Vorn32s> expected;
                    for (double value : wide) expected.push_back(toInteger(value, scale));
                    expected = inLayout(layout, expected);
                    test::Guarded<Vorn32s> src(x), dst(expected.size()), both(expected.size());
                    test::Guarded<Vorn8u> buffer(static_cast<std::size_t>(context.bufSize()));
                    ASSERT_EQ(forwardCases[layout].call(src, dst, context, scale, buffer), vornStsNoErr);
                    ASSERT_TRUE(test::sameBits(dst.values(), expected)) << order << " " << flag << " " << scale;
                    ASSERT_TRUE(dst.surroundingsUntouched() && buffer.surroundingsUntouched());
                    std::copy(x.begin(), x.end(), both.data());
                    ASSERT_EQ(forwardCases[layout].inPlace(both, context, scale, nullptr), vornStsNoErr);
                    ASSERT_TRUE(test::sameBits(both.values(), expected));

                    auto spectrum = inLayout(layout, x);
                    if (layout == Ccs) spectrum[1] = spectrum.back() = 123456789;  // not read
                    std::vector<double> from(spectrum.begin(), spectrum.end()), real(n);
                    ASSERT_EQ(inverseCases[layout].inner(from.data(), real.data(), inner, nullptr), vornStsNoErr);
                    expected.clear();
                    for (double value : real) expected.push_back(toInteger(value, scale));
                    test::Guarded<Vorn32s> packed(spectrum), out(n);
                    ASSERT_EQ(inverseCases[layout].call(packed, out, context, scale, buffer), vornStsNoErr);
                    ASSERT_TRUE(test::sameBits(out.values(), expected)) << order << " " << flag << " " << scale;
                    ASSERT_TRUE(out.surroundingsUntouched() && buffer.surroundingsUntouched());
                    ASSERT_EQ(inverseCases[layout].inPlace(packed, context, scale, nullptr), vornStsNoErr);
                    ASSERT_TRUE(test::sameBits(packed.data(), expected.data(), n));
                }
            }
        }
    }
}

// A 32-bit spectrum goes through singles, whose 24 bits round it.
TEST(FixedFft, MixedWidthInverseIsTheFloatTransformConverted) {
    test::Random random(23);
    for (int order = 0; order <= 10; ++order) {
        const std::size_t n = std::size_t{1} << order;
        for (int flag : {1, 2, 4, 8}) {
            const test::Context<VornsFFTFixedSpec> context(test::real16s32s, order, flag);
            const test::Context<VornsFFTSpec> inner(test::real32f, order, flag);
            for (int scale : {0, 4, 16, 24, 40, -2, -20}) {
                const auto x = random.integers<Vorn32s>(n == 1 ? 2 : n + 2);
                std::vector<float> wide(x.begin(), x.end()), real(n);
                ASSERT_EQ(vornsFFTInv_CCSToR_32f(wide.data(), real.data(), inner, nullptr), vornStsNoErr);
                std::vector<Vorn16s> expected;
                for (float value : real) expected.push_back(toShort(value, scale));
                test::Guarded<Vorn32s> src(x);
                test::Guarded<Vorn16s> dst(n);
                test::Guarded<Vorn8u> buffer(static_cast<std::size_t>(context.bufSize()));
                ASSERT_EQ(vornsFFTInv_CCSToR_32s16s_Sfs(src, dst, context, scale, buffer), vornStsNoErr);
                ASSERT_TRUE(test::sameBits(dst.values(), expected)) << order << " " << flag << " " << scale;
                ASSERT_TRUE(dst.surroundingsUntouched() && buffer.surroundingsUntouched());
            }
        }
    }
}

TEST(FixedFft, EveryFormChecksInOrderAndMayRunOutOfMemory) {
    struct A {
        const VornsFFTFixedSpec* context;
        std::shared_ptr<test::Guarded<Vorn32s>> in =
            std::make_shared<test::Guarded<Vorn32s>>(std::vector<Vorn32s>(66, 1));
        std::shared_ptr<test::Guarded<Vorn32s>> out = std::make_shared<test::Guarded<Vorn32s>>(66);
        Vorn32s *src = in->data(), *src2 = src + 16, *dst = out->data(), *dst2 = dst + 16;
    };
    using Call = std::function<VornStatus(A&)>;
    alignas(16) std::int32_t released[64] = {};
    // What a form takes: a source apart from the destination or not, and each in one array or in two.
    struct Shape {
        bool source, split;
    };
    const auto expectChecks = [&](const test::FixedForm& form, Shape shape, const Call& call) {
        const test::Context<VornsFFTFixedSpec> good(form, 4, 8);
        std::vector<test::Rule<A>> rules = {
            {"ctx", vornStsNullPtrErr, [](A& a) { a.context = nullptr; }},
            {"tag", vornStsContextMatchErr, [&](A& a) { a.context = reinterpret_cast<VornsFFTFixedSpec*>(released); }},
            {"dst", vornStsNullPtrErr, [](A& a) { a.dst = nullptr; }}};
        if (shape.source) rules.push_back({"src", vornStsNullPtrErr, [](A& a) { a.src = nullptr; }});
        if (shape.split) rules.push_back({"dstIm", vornStsNullPtrErr, [](A& a) { a.dst2 = nullptr; }});
        if (shape.source && shape.split) rules.push_back({"srcIm", vornStsNullPtrErr, [](A& a) { a.src2 = nullptr; }});
        test::expectCheckOrder<A>([&] { return A{good}; }, call, [](A& a) { return a.out->untouched(); }, rules);
        if (!test::FailAllocation::available()) return;
        A a{good};
        {
            test::FailAllocation fail(1);
            EXPECT_EQ(call(a), vornStsMemAllocErr);
            EXPECT_EQ(fail.outstanding(), 0);
        }
        EXPECT_TRUE(a.out->untouched());
        test::FailAllocation count(0);
        EXPECT_EQ(call(a), vornStsNoErr);
        EXPECT_EQ(count.calls(), 1);
        EXPECT_EQ(count.outstanding(), 0);
    };
    constexpr Shape apart{true, false}, apartSplit{true, true}, inPlace{false, false}, inPlaceSplit{false, true};
    const auto pairs = [](Vorn32s* x) { return reinterpret_cast<Vorn32sc*>(x); };
    for (const ComplexFixedCase& c : complexCases) {
        expectChecks(test::complex32sc, apart,
                     [&](A& a) { return c.pairs(pairs(a.src), pairs(a.dst), a.context, 0, nullptr); });
        expectChecks(test::complex32s, apartSplit,
                     [&](A& a) { return c.split(a.src, a.src2, a.dst, a.dst2, a.context, 0, nullptr); });
        expectChecks(test::complex32sc, inPlace,
                     [&](A& a) { return c.pairsInPlace(pairs(a.dst), a.context, 0, nullptr); });
        expectChecks(test::complex32s, inPlaceSplit,
                     [&](A& a) { return c.splitInPlace(a.dst, a.dst2, a.context, 0, nullptr); });
    }
    for (Layout layout : {Perm, Pack, Ccs}) {
        for (const auto& c : {forwardCases[layout], inverseCases[layout]}) {
            expectChecks(test::real32s, apart, [&](A& a) { return c.call(a.src, a.dst, a.context, 0, nullptr); });
            expectChecks(test::real32s, inPlace, [&](A& a) { return c.inPlace(a.dst, a.context, 0, nullptr); });
        }
    }
    expectChecks(test::real16s32s, apart, [&](A& a) {
        return vornsFFTInv_CCSToR_32s16s_Sfs(a.src, reinterpret_cast<Vorn16s*>(a.dst), a.context, 0, nullptr);
    });
}

// With a large scale factor the two zeros of CCS are zeros as ever.
TEST(FixedFft, ZerosOfCcsStayZero) {
    const test::Context<VornsFFTFixedSpec> context(test::real32s, 6, 8);
    std::vector<Vorn32s> x(64, INT_MAX), y(66, 1);
    for (int scale : {0, 30, 100, -30}) {
        ASSERT_EQ(vornsFFTFwd_RToCCS_32s_Sfs(x.data(), y.data(), context, scale, nullptr), vornStsNoErr);
        EXPECT_EQ(y[1], 0);
        EXPECT_EQ(y[65], 0);
    }
}

}  // namespace
