// Fixed-point transforms: bit for bit the float model with the stated conversions around it.
#include <gtest/gtest.h>

#include <bit>
#include <climits>
#include <cmath>
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

}  // namespace
