// Sums of vectors: integers exactly, floats in the stated order.
#include <cmath>
#include <limits>
#include <vector>

#include "model/reductions.h"
#include "reductions/scaled.h"
#include "support/expect.h"
#include "support/guarded.h"
#include "support/values.h"
#include "support/vectors.h"
#include "vornsr.h"

namespace {

using exact::int128, exact::saturated, exact::scaled;
using test::complexData, test::data, test::lengths;
constexpr int intMin = std::numeric_limits<int>::min(), intMax = std::numeric_limits<int>::max();

float sum32f(const std::vector<float>& x, int hint) {
    test::Guarded<float> src(x), sum(1);
    EXPECT_EQ(vornsSum_32f(src, static_cast<int>(x.size()), sum, hint), vornStsNoErr);
    EXPECT_TRUE(sum.surroundingsUntouched());
    return sum[0];
}

void expectSums(const std::vector<float>& x) {
    EXPECT_TRUE(test::same(sum32f(x, 1), model::sumFast(x))) << x.size();
    for (int hint : {0, 2, -1, 7}) EXPECT_TRUE(test::same(sum32f(x, hint), model::sumAccurate(x))) << x.size();
}

TEST(Sum32f, EqualsTheModel) {
    test::Random random(1);
    const std::vector<float> hard = test::hardFloats<float>();
    for (int len = 1; len <= 70; ++len) {
        const auto n = static_cast<std::size_t>(len);
        expectSums(random.floats(n, -1000.0, 1000.0));
        std::vector<float> x(n);
        for (float& value : x)
            value =
                std::ldexp(static_cast<float>(random.uniform(-1.0, 1.0)), static_cast<int>(random.integer(-60, 60)));
        expectSums(x);
        for (float& value : x)
            value = hard[static_cast<std::size_t>(random.integer(0, static_cast<int>(hard.size()) - 1))];
        expectSums(x);
        expectSums(std::vector<float>(n, -0.0f));
        expectSums(std::vector<float>(n, std::numeric_limits<float>::denorm_min()));
    }
    for (int len : {127, 128, 129, 1000, 65537}) expectSums(random.floats(static_cast<std::size_t>(len), -1.0, 1.0));
}

TEST(Sum32f, EveryAlignment) {
    test::Random random(2);
    const std::vector<float> x = random.floats(45, -1.0, 1.0);
    for (std::size_t offset = 0; offset < 64; offset += 4) {
        test::Offset<float> src(x.size(), offset);
        src.assign(x);
        float fast = 0.0f, accurate = 0.0f;
        EXPECT_EQ(vornsSum_32f(src, 45, &fast, 1), vornStsNoErr);
        EXPECT_EQ(vornsSum_32f(src, 45, &accurate, 2), vornStsNoErr);
        EXPECT_EQ(fast, model::sumFast(x));
        EXPECT_EQ(accurate, model::sumAccurate(x));
    }
}

// 2^24 and 1 in one lane: single loses the ones, double does not.
TEST(Sum32f, HintsDifferOnMixedMagnitudes) {
    std::vector<float> x(80, 0.0f);
    x[0] = 16777216.0f;
    for (std::size_t i = 8; i < 80; i += 8) x[i] = 1.0f;
    EXPECT_EQ(sum32f(x, 1), 16777216.0f);
    EXPECT_EQ(sum32f(x, 2), 16777224.0f);  // 2^24 + 9, rounded once
    x[8] = 2.0f;
    EXPECT_EQ(sum32f(x, 2), 16777226.0f);
}

TEST(Sums, IntegersAreExactThenScaled) {
    test::Random random(1);
    for (std::size_t len : lengths()) {
        const int n = static_cast<int>(len);
        test::Guarded<Vorn16s> x16(data<Vorn16s>(random, len));
        test::Guarded<Vorn32s> x32(data<Vorn32s>(random, len));
        test::Guarded<Vorn16sc> z16(complexData<Vorn16sc>(random, len));
        int128 sum16 = 0, sum32 = 0, re = 0, im = 0;
        for (std::size_t i = 0; i < len; ++i) {
            sum16 += x16[i];
            sum32 += x32[i];
            re += z16[i].re;
            im += z16[i].im;
        }
        for (int sf : {0, 1, 2, 5, 16, 20, 31, -1, -3, -15, -31}) {
            Vorn16s s;
            Vorn32s w;
            Vorn16sc zs;
            Vorn32sc zw;
            EXPECT_EQ(vornsSum_16s_Sfs(x16, n, &s, sf), vornStsNoErr);
            EXPECT_EQ(s, saturated<Vorn16s>(scaled<Vorn32s>(sum16, sf))) << len << " " << sf;
            EXPECT_EQ(vornsSum_16s32s_Sfs(x16, n, &w, sf), vornStsNoErr);
            EXPECT_EQ(w, scaled<Vorn32s>(sum16, sf)) << len << " " << sf;
            EXPECT_EQ(vornsSum_16sc_Sfs(z16, n, &zs, sf), vornStsNoErr);
            EXPECT_EQ(zs.re, saturated<Vorn16s>(scaled<Vorn32s>(re, sf))) << len << " " << sf;
            EXPECT_EQ(zs.im, saturated<Vorn16s>(scaled<Vorn32s>(im, sf))) << len << " " << sf;
            EXPECT_EQ(vornsSum_16sc32sc_Sfs(z16, n, &zw, sf), vornStsNoErr);
            EXPECT_EQ(zw.re, scaled<Vorn32s>(re, sf)) << len << " " << sf;
            EXPECT_EQ(zw.im, scaled<Vorn32s>(im, sf)) << len << " " << sf;
            EXPECT_EQ(vornsSum_32s_Sfs(x32, n, &w, sf), vornStsNoErr);
            EXPECT_EQ(w, scaled<Vorn32s>(sum32, sf)) << len << " " << sf;
        }
    }
}

TEST(Sums, LongAndExtreme) {
    Vorn16s s;
    Vorn32s w;
    EXPECT_EQ(vornsSum_16s_Sfs(std::vector<Vorn16s>(40000, 32767).data(), 40000, &s, 0), vornStsNoErr);
    EXPECT_EQ(s, 32767);
    const std::vector<Vorn16s> low(1000000, -32768);
    vornsSum_16s32s_Sfs(low.data(), 1000000, &w, 8);
    EXPECT_EQ(w, -128000000);
    vornsSum_16s32s_Sfs(low.data(), 1000000, &w, 1023);
    EXPECT_EQ(w, 0);
    vornsSum_16s32s_Sfs(low.data(), 1000000, &w, intMax);
    EXPECT_EQ(w, 0);
    vornsSum_16s32s_Sfs(low.data(), 1000000, &w, intMin);
    EXPECT_EQ(w, intMin);
    const Vorn16s zero[] = {0, 5, -5};
    vornsSum_16s32s_Sfs(zero, 3, &w, -1024);  // zero times infinity
    EXPECT_EQ(w, 0);
    const std::vector<Vorn32s> wide(1000000, intMin);
    vornsSum_32s_Sfs(wide.data(), 1000000, &w, 30);
    EXPECT_EQ(w, -2000000);
    vornsSum_32s_Sfs(wide.data(), 1000000, &w, 1000);  // clamped to 63
    EXPECT_EQ(w, 0);
    vornsSum_32s_Sfs(wide.data(), 1000000, &w, 0);
    EXPECT_EQ(w, intMin);
}

TEST(Sums, ComplexSinglesAndDoubles) {
    test::Random random(2);
    for (std::size_t len : lengths()) {
        const int n = static_cast<int>(len);
        test::Guarded<Vorn32fc> z(complexData<Vorn32fc>(random, len));
        float first[4] = {}, second[4] = {};
        double lane[8] = {};
        std::size_t i = 0;
        const float* x = &z[0].re;
        for (; i + 8 <= 2 * len; i += 8) {
            for (std::size_t j = 0; j < 8; ++j) {
                (j < 4 ? first[j] : second[j - 4]) += x[i + j];
                lane[j] += static_cast<double>(x[i + j]);
            }
        }
        for (int j = 0; j < 4; ++j) first[j] += second[j];
        float fast[2] = {first[0] + first[2], first[1] + first[3]};
        double accurate[2] = {(lane[0] + lane[2]) + (lane[4] + lane[6]), (lane[1] + lane[3]) + (lane[5] + lane[7])};
        for (; i < 2 * len; ++i) {
            fast[i % 2] += x[i];
            accurate[i % 2] += static_cast<double>(x[i]);
        }
        Vorn32fc sum;
        EXPECT_EQ(vornsSum_32fc(z, n, &sum, 1), vornStsNoErr);
        EXPECT_TRUE(test::same(sum, Vorn32fc{fast[0], fast[1]})) << len;
        EXPECT_EQ(vornsSum_32fc(z, n, &sum, 2), vornStsNoErr);
        EXPECT_TRUE(test::same(sum, Vorn32fc{static_cast<float>(accurate[0]), static_cast<float>(accurate[1])})) << len;

        // Sixteen lanes that fold in halves; the rest in order.
        test::Guarded<double> d(data<double>(random, 2 * len));
        for (std::size_t components : {1, 2}) {
            const std::size_t count = components * len;
            double lanes[16] = {};
            std::size_t k = 0;
            for (; k + 16 <= count; ++k) {
                for (std::size_t j = 0; j < 16; ++j) lanes[j] += d[k + j];
                k += 15;
            }
            for (std::size_t half = 8; half >= components; half /= 2) {
                for (std::size_t j = 0; j < half; ++j) lanes[j] += lanes[j + half];
            }
            for (; k < count; ++k) lanes[k % components] += d[k];
            Vorn64fc total = {};
            if (components == 1) {
                EXPECT_EQ(vornsSum_64f(d, n, &total.re), vornStsNoErr);
            } else {
                EXPECT_EQ(vornsSum_64fc(reinterpret_cast<const Vorn64fc*>(d.data()), n, &total), vornStsNoErr);
                EXPECT_TRUE(test::same(total.im, lanes[1])) << len;
            }
            EXPECT_TRUE(test::same(total.re, lanes[0])) << len;
        }
    }
}

}  // namespace
