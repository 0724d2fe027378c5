// Magnitudes of complex vectors.
#include <cmath>
#include <limits>
#include <vector>

#include "elementary/root_model.h"
#include "support/expect.h"
#include "support/guarded.h"
#include "support/values.h"
#include "support/vectors.h"
#include "vornsr.h"

namespace {

using model::rootOf;
using test::complexData, test::data, test::lengths;
constexpr float inf = std::numeric_limits<float>::infinity();

// Squares and sum in single, each rounded; a correctly rounded root.
float magnitude(Vorn32fc z) {
    const float re2 = z.re * z.re, im2 = z.im * z.im;
    return std::sqrt(re2 + im2);
}

// Through double: the root of the sum of squares times 2^-sf, to nearest even, saturated; 0 stays 0 at every scale.
Vorn32s magnitude(Vorn32sc z, int sf) {
    const double re = z.re, im = z.im, re2 = re * re, im2 = im * im;
    const double root = std::sqrt(re2 + im2);
    if (root == 0.0) return 0;
    const double scaled = std::ldexp(root, -sf);
    return scaled >= 2147483647.0 ? 2147483647 : static_cast<Vorn32s>(std::nearbyint(scaled));
}

void expectMagnitudes(const std::vector<Vorn32fc>& z) {
    test::Guarded<Vorn32fc> src(z);
    test::Guarded<float> dst(z.size());
    std::vector<float> expected(z.size());
    for (std::size_t i = 0; i < z.size(); ++i) expected[i] = magnitude(z[i]);
    EXPECT_EQ(vornsMagnitude_32fc(src, dst, static_cast<int>(z.size())), vornStsNoErr);
    EXPECT_TRUE(test::sameBits(dst.data(), expected.data(), z.size())) << z.size();
    EXPECT_TRUE(dst.surroundingsUntouched());
}

TEST(Magnitude32fc, EqualsTheModel) {
    test::Random random(1);
    const std::vector<float> hard = test::hardFloats<float>();
    const auto anyHard = [&] {
        return hard[static_cast<std::size_t>(random.integer(0, static_cast<int>(hard.size()) - 1))];
    };
    for (std::size_t len = 1; len <= 70; ++len) {
        std::vector<Vorn32fc> z(len);
        for (Vorn32fc& x : z)
            x = {static_cast<float>(random.uniform(-100, 100)), static_cast<float>(random.uniform(-100, 100))};
        expectMagnitudes(z);
        for (Vorn32fc& x : z) x = {anyHard(), anyHard()};
        expectMagnitudes(z);
        for (Vorn32fc& x : z) x = {random.anyBits<float>(), random.anyBits<float>()};
        expectMagnitudes(z);
    }
}

TEST(Magnitude32fc, EveryAlignment) {
    test::Random random(2);
    std::vector<Vorn32fc> z(37);
    for (Vorn32fc& x : z) x = {static_cast<float>(random.uniform(-1, 1)), static_cast<float>(random.uniform(-1, 1))};
    for (std::size_t srcOffset = 0; srcOffset < 64; srcOffset += 4) {
        for (std::size_t dstOffset = 0; dstOffset < 64; dstOffset += 4) {
            test::Offset<Vorn32fc> src(z.size(), srcOffset);
            test::Offset<float> dst(z.size(), dstOffset);
            src.assign(z);
            EXPECT_EQ(vornsMagnitude_32fc(src, dst, 37), vornStsNoErr);
            for (std::size_t i = 0; i < z.size(); ++i) ASSERT_EQ(dst[i], magnitude(z[i]));
            EXPECT_TRUE(dst.surroundingsUntouched());
        }
    }
}

TEST(Magnitude32fc, ZeroOverflowAndUnderflow) {
    const Vorn32fc z[] = {{0, 0}, {-0.0f, 0}, {3, -4}, {1e-30f, 1e-30f}, {1e30f, 0}, {inf, 1}, {-inf, 0}};
    const float expected[] = {0, 0, 5, 0, inf, inf, inf};
    float dst[7];
    EXPECT_EQ(vornsMagnitude_32fc(z, dst, 7), vornStsNoErr);
    EXPECT_TRUE(test::sameBits(dst, expected, 7));
}

void expectMagnitudes(const std::vector<Vorn32sc>& z, int sf) {
    test::Guarded<Vorn32sc> src(z);
    test::Guarded<Vorn32s> dst(z.size());
    std::vector<Vorn32s> expected(z.size());
    for (std::size_t i = 0; i < z.size(); ++i) expected[i] = magnitude(z[i], sf);
    EXPECT_EQ(vornsMagnitude_32sc_Sfs(src, dst, static_cast<int>(z.size()), sf), vornStsNoErr);
    EXPECT_TRUE(test::sameBits(dst.data(), expected.data(), z.size())) << z.size() << " sf " << sf;
    EXPECT_TRUE(dst.surroundingsUntouched());
}

TEST(Magnitude32sc, EqualsTheModel) {
    test::Random random(3);
    const std::vector<Vorn32s> hard = test::hardIntegers<Vorn32s>();
    const auto anyHard = [&] {
        return hard[static_cast<std::size_t>(random.integer(0, static_cast<int>(hard.size()) - 1))];
    };
    for (std::size_t len = 1; len <= 70; ++len) {
        std::vector<Vorn32sc> z(len);
        for (int sf : {0, 1, -1, 5, -5, 16, 31, 32, 33, -31, -40}) {
            for (Vorn32sc& x : z) x = {random.anyBits<Vorn32s>(), random.anyBits<Vorn32s>()};
            expectMagnitudes(z, sf);
            for (Vorn32sc& x : z) x = {anyHard(), anyHard()};
            expectMagnitudes(z, sf);
            for (Vorn32sc& x : z)
                x = {static_cast<Vorn32s>(random.integer(-9, 9)), static_cast<Vorn32s>(random.integer(-9, 9))};
            expectMagnitudes(z, sf);
        }
    }
    std::vector<Vorn32sc> z(50);
    for (Vorn32sc& x : z) x = {anyHard(), anyHard()};
    for (int sf = -1100; sf <= 1100; ++sf) expectMagnitudes(z, sf);
    for (int sf : {std::numeric_limits<int>::min(), std::numeric_limits<int>::max()}) {
        test::Guarded<Vorn32sc> src({{0, 0}, {1, 0}, {-5, 7}});
        test::Guarded<Vorn32s> dst(3);
        EXPECT_EQ(vornsMagnitude_32sc_Sfs(src, dst, 3, sf), vornStsNoErr);
        EXPECT_EQ(dst[0], 0);
        EXPECT_EQ(dst[1], sf < 0 ? 2147483647 : 0);
        EXPECT_EQ(dst[2], sf < 0 ? 2147483647 : 0);
    }
}

TEST(Magnitude32sc, LiteralValues) {
    const Vorn32sc z[] = {{3, 4}, {-2147483647 - 1, 0}, {2147483647, 0}, {0, 0}, {1, 1}};
    Vorn32s dst[5];
    EXPECT_EQ(vornsMagnitude_32sc_Sfs(z, dst, 5, 0), vornStsNoErr);
    EXPECT_TRUE(test::sameBits(dst, (const Vorn32s[]){5, 2147483647, 2147483647, 0, 1}, 5));
    EXPECT_EQ(vornsMagnitude_32sc_Sfs(z, dst, 5, 1), vornStsNoErr);  // 2.5 to even, 1073741823.5 to even
    EXPECT_TRUE(test::sameBits(dst, (const Vorn32s[]){2, 1073741824, 1073741824, 0, 1}, 5));
}

TEST(Magnitudes, OtherForms) {
    test::Random random(13);
    for (std::size_t len : lengths()) {
        const int n = static_cast<int>(len);
        test::Guarded<Vorn16sc> z(complexData<Vorn16sc>(random, len));
        test::Guarded<Vorn64fc> zd(complexData<Vorn64fc>(random, len));
        test::Guarded<Vorn16s> re(len), im(len), out(len), out2(len);
        test::Guarded<Vorn32f> fre(data<float>(random, len)), fim(data<float>(random, len)), f(len), f2(len);
        test::Guarded<Vorn64f> dre(len), dim(len), d(len), d2(len);
        for (std::size_t i = 0; i < len; ++i) {
            re[i] = z[i].re, im[i] = z[i].im;
            dre[i] = zd[i].re, dim[i] = zd[i].im;
        }
        EXPECT_EQ(vornsMagnitude_64fc(zd, d, n), vornStsNoErr);
        EXPECT_EQ(vornsMagnitude_64f(dre, dim, d2, n), vornStsNoErr);
        EXPECT_EQ(vornsMagnitude_32f(fre, fim, f, n), vornStsNoErr);
        for (std::size_t i = 0; i < len; ++i) {
            const double x2 = zd[i].re * zd[i].re, y2 = zd[i].im * zd[i].im;
            ASSERT_EQ(d[i], std::sqrt(x2 + y2));
            ASSERT_EQ(d2[i], d[i]);
            const float fx2 = fre[i] * fre[i], fy2 = fim[i] * fim[i];
            ASSERT_EQ(f[i], std::sqrt(fx2 + fy2));
        }
        EXPECT_EQ(vornsMagnitude_16sc32f(z, f, n), vornStsNoErr);
        EXPECT_EQ(vornsMagnitude_16s32f(re, im, f2, n), vornStsNoErr);
        for (std::size_t i = 0; i < len; ++i) {
            const std::int64_t sum = std::int64_t{re[i]} * re[i] + std::int64_t{im[i]} * im[i];
            ASSERT_EQ(f[i], std::sqrt(static_cast<float>(sum)));
            ASSERT_EQ(f2[i], f[i]);
        }
        for (int sf : {0, 1, 7, 15, 16, 17, 40, -1, -14, -15, -40}) {
            EXPECT_EQ(vornsMagnitude_16sc_Sfs(z, out, n, sf), vornStsNoErr);
            EXPECT_EQ(vornsMagnitude_16s_Sfs(re, im, out2, n, sf), vornStsNoErr);
            for (std::size_t i = 0; i < len; ++i) {
                const std::int64_t sum = std::int64_t{re[i]} * re[i] + std::int64_t{im[i]} * im[i];
                ASSERT_EQ(out[i], rootOf<Vorn16s>(sum, sf)) << re[i] << " " << im[i] << " sf " << sf;
                ASSERT_EQ(out2[i], out[i]);
            }
        }
    }
    const Vorn16s re[] = {32767, 32767, -32768}, im[] = {0, 32767, -32768};
    Vorn16s y[3];
    EXPECT_EQ(vornsMagnitude_16s_Sfs(re, im, y, 3, 16), vornStsNoErr);
    EXPECT_TRUE(test::sameBits(y, (const Vorn16s[]){0, 1, 1}, 3));
}

}  // namespace
