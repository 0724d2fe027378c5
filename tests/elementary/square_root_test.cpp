// Square roots: of integers and of floats correctly rounded, of complex numbers within a stated bound.
#include <algorithm>
#include <cmath>
#include <cstdint>
#include <initializer_list>
#include <limits>
#include <vector>

#include "elementary/root_model.h"
#include "support/expect.h"
#include "support/guarded.h"
#include "support/map.h"
#include "support/precise.h"
#include "support/vectors.h"
#include "vornsr.h"

namespace {

using model::rootOf;
using test::data, test::expectMap;
constexpr int intMin = std::numeric_limits<int>::min(), intMax = std::numeric_limits<int>::max();

TEST(Roots, FloatsAreCorrectlyRounded) {
    expectMap<Vorn32f>(
        vornsSqrt_32f, vornsSqrt_32f_I, [](Vorn32f x) { return std::sqrt(x); }, vornStsSqrtNegArg);
    expectMap<Vorn64f>(
        vornsSqrt_64f, vornsSqrt_64f_I, [](Vorn64f x) { return std::sqrt(x); }, vornStsSqrtNegArg);
    const float x[] = {4.0f, -0.0f, -1.0f, 9.0f};
    float y[4];
    EXPECT_EQ(vornsSqrt_32f(x, y, 2), vornStsNoErr);
    EXPECT_EQ(vornsSqrt_32f(x, y, 4), vornStsSqrtNegArg);
    EXPECT_EQ(y[3], 3.0f);
    EXPECT_TRUE(std::isnan(y[2]));
}

template <class Source, class Result, class Call>
void expectRoots(Call call, const std::vector<int>& scales) {
    test::Random random(11);
    for (int sf : scales) {
        for (std::size_t len : {1, 7, 64, 129, 300}) {
            std::vector<Source> x = data<Source>(random, len);
            if (len == 300) {
                for (std::size_t i = 0; i < len; ++i) {
                    const auto root = static_cast<std::int64_t>(random.integer(0, 30000));
                    x[i] = static_cast<Source>(std::min<std::int64_t>(
                        root * root / 4 + static_cast<std::int64_t>(i % 3) - 1, std::numeric_limits<Source>::max()));
                }
            }
            test::Guarded<Source> src(x);
            test::Guarded<Result> dst(len);
            const bool negative = std::any_of(x.begin(), x.end(), [](Source value) { return value < 0; });
            EXPECT_EQ(call(src, dst, static_cast<int>(len), sf), negative ? vornStsSqrtNegArg : vornStsNoErr);
            for (std::size_t i = 0; i < len; ++i) {
                ASSERT_EQ(dst[i], rootOf<Result>(static_cast<std::int64_t>(x[i]), sf))
                    << test::show(x[i]) << " sf " << sf;
            }
            EXPECT_TRUE(dst.surroundingsUntouched());
        }
    }
}

TEST(Roots, IntegersAreCorrectlyRounded) {
    const std::vector<int> scales = {0, 1, 2, 5, 8, 9, 15, 16, 17, 33, -1, -2, -7, -8, -14, -15, -20};
    expectRoots<Vorn8u, Vorn8u>(vornsSqrt_8u_Sfs, scales);
    expectRoots<Vorn16u, Vorn16u>(vornsSqrt_16u_Sfs, scales);
    expectRoots<Vorn16s, Vorn16s>(vornsSqrt_16s_Sfs, scales);
    expectRoots<Vorn32s, Vorn16s>(vornsSqrt_32s16s_Sfs, scales);
    expectRoots<Vorn64s, Vorn16s>(vornsSqrt_64s16s_Sfs, {0, 1, 5, 16, 33});
    expectRoots<Vorn64s, Vorn64s>(vornsSqrt_64s_Sfs, {0, 1, 2, 9, 20, 31, 32, 33});
    const auto inPlace = []<class T>(VornStatus (*call)(T*, int, int)) {
        return [call](const T* src, T* dst, int len, int sf) {
            std::copy_n(src, len, dst);
            return call(dst, len, sf);
        };
    };
    expectRoots<Vorn8u, Vorn8u>(inPlace(vornsSqrt_8u_ISfs), scales);
    expectRoots<Vorn16u, Vorn16u>(inPlace(vornsSqrt_16u_ISfs), scales);
    expectRoots<Vorn16s, Vorn16s>(inPlace(vornsSqrt_16s_ISfs), scales);
    expectRoots<Vorn64s, Vorn64s>(inPlace(vornsSqrt_64s_ISfs), {0, 1, 2, 9});
    // Squares and their neighbours at every size, and scales that saturate.
    Vorn64s root;
    for (std::int64_t r : {3037000499ll, 3037000498ll, 94906267ll, 94906266ll}) {
        for (std::int64_t offset : {-1, 0, 1}) {
            const Vorn64s x = r * r + offset;
            EXPECT_EQ(vornsSqrt_64s_Sfs(&x, &root, 1, 0), vornStsNoErr);
            EXPECT_EQ(root, r);
        }
    }
    const Vorn64s four[] = {4, 1, 0};
    Vorn64s roots[3];
    EXPECT_EQ(vornsSqrt_64s_Sfs(four, roots, 3, -61), vornStsNoErr);
    EXPECT_EQ(roots[0], 1ll << 62);
    EXPECT_EQ(roots[1], 1ll << 61);
    EXPECT_EQ(vornsSqrt_64s_Sfs(four, roots, 3, -62), vornStsNoErr);
    EXPECT_EQ(roots[0], std::numeric_limits<Vorn64s>::max());
    EXPECT_EQ(vornsSqrt_64s_Sfs(four, roots, 3, intMin), vornStsNoErr);
    EXPECT_EQ(roots[1], std::numeric_limits<Vorn64s>::max());
    EXPECT_EQ(roots[2], 0);
    for (int sf : {intMin, intMax}) {
        const Vorn16s x[] = {0, 1, 32767};
        Vorn16s y[3];
        EXPECT_EQ(vornsSqrt_16s_Sfs(x, y, 3, sf), vornStsNoErr);
        EXPECT_EQ(y[0], 0);
        EXPECT_EQ(y[1], sf < 0 ? 32767 : 0);
    }
}

// Complex numbers of every size and shape.
std::vector<Vorn64fc> complexNumbers(test::Random& random, std::size_t len) {
    std::vector<Vorn64fc> z(len);
    const auto power = [&](double x, std::int64_t low, std::int64_t high) {
        return std::ldexp(random.integer(0, 1) == 0 ? x : -x, static_cast<int>(random.integer(low, high)));
    };
    for (std::size_t i = 0; i < len; ++i) {
        const double x = random.uniform(1.0, 2.0), y = random.uniform(1.0, 2.0);
        switch (i % 8) {
            case 0:
                z[i] = {power(x, 0, 0), power(y, 0, 0)};
                break;
            case 1:
                z[i] = {power(x, 0, 0), power(y, -60, 60)};
                break;
            case 2:
                z[i] = {power(x, -1074, 1023), power(y, -1074, 1023)};
                break;
            case 3:
                z[i] = {power(x, 990, 1023), power(y, 990, 1023)};
                break;
            case 4:
                z[i] = {power(x, -1074, -1000), power(y, -1074, -1000)};
                break;
            case 5:  // the imaginary part far below, down to results that are denormal
                z[i] = {power(x, -700, 1023), power(y, -1074, -400)};
                break;
            case 6:  // the imaginary part far above
                z[i] = {power(x, -1074, -400), power(y, -700, 1023)};
                break;
            default: {  // squares
                const auto a = static_cast<double>(random.integer(-33554432, 33554432));
                const auto b = static_cast<double>(random.integer(1, 33554432));
                z[i] = {a * a - b * b, 2 * a * b};
            }
        }
    }
    return z;
}

// The parts of the principal root of z, without signs.
struct PreciseRoot {
    test::Precise re, im;
    explicit PreciseRoot(double x, double y) {
        using test::Precise;
        const Precise size = sqrt(Precise(x) * Precise(x) + Precise(y) * Precise(y)), two(2.0);
        const Precise larger = sqrt((size + Precise(std::fabs(x))) / two),
                      smaller = Precise(std::fabs(y)) / (two * larger);
        re = x < 0 ? smaller : larger;
        im = x < 0 ? larger : smaller;
    }
};

TEST(Roots, ComplexDoublesAreWithinOneUnit) {
    test::Random random(12);
    constexpr std::size_t len = 24003;
    const std::vector<Vorn64fc> z = complexNumbers(random, len);
    std::vector<Vorn64fc> root(len), inPlace = z;
    ASSERT_EQ(vornsSqrt_64fc(z.data(), root.data(), len), vornStsNoErr);
    EXPECT_EQ(vornsSqrt_64fc_I(inPlace.data(), len), vornStsNoErr);
    EXPECT_TRUE(test::sameBits(inPlace, root));
    test::Worst normal, denormal;
    for (std::size_t i = 0; i < len; ++i) {
        const PreciseRoot exact(z[i].re, z[i].im);
        const auto meet = [&](const test::Precise& part, double result) {
            (result < std::numeric_limits<double>::min() ? denormal : normal).meet(part.distance(result), z[i].re);
        };
        meet(exact.re, root[i].re);
        meet(exact.im, std::fabs(root[i].im));
        ASSERT_EQ(std::signbit(root[i].im), std::signbit(z[i].im));
        ASSERT_FALSE(std::signbit(root[i].re));
        if (i % 8 == 7) {  // a square
            ASSERT_EQ(root[i].re, std::floor(root[i].re));
        }
    }
    EXPECT_LE(normal.distance, 0.501) << normal.text();
    EXPECT_LE(denormal.distance, 0.751) << denormal.text();  // a scale of two is taken back at the end
    RecordProperty("worst", normal.text());
}

TEST(Roots, ComplexRootsArePrincipal) {
    test::Random random(12);
    constexpr std::size_t len = 3000;
    const std::vector<Vorn64fc> z = complexNumbers(random, len);
    std::vector<Vorn32fc> w(len), root(len);
    for (std::size_t i = 0; i < len; ++i) w[i] = {static_cast<float>(z[i].re), static_cast<float>(z[i].im)};
    ASSERT_EQ(vornsSqrt_32fc(w.data(), root.data(), len), vornStsNoErr);
    test::Worst worst;
    for (std::size_t i = 0; i < len; ++i) {
        const auto re = static_cast<double>(w[i].re), im = static_cast<double>(w[i].im);
        if (!std::isfinite(re) || !std::isfinite(im) || (re == 0 && im == 0)) continue;
        const PreciseRoot exact(re, im);
        worst.meet(exact.re.distance(root[i].re), re);
        worst.meet(exact.im.distance(std::fabs(root[i].im)), re);
    }
    EXPECT_LE(worst.distance, 0.501) << worst.text();
    EXPECT_EQ(vornsSqrt_32fc_I(w.data(), len), vornStsNoErr);
    EXPECT_TRUE(test::sameBits(w, root));
    const float inf = std::numeric_limits<float>::infinity();
    const Vorn32fc special[] = {{0, 0}, {-4, 0}, {-4, -0.0f}, {3, 4}, {-3, -4}, {inf, 1}, {-inf, 1}, {1, inf}};
    const Vorn32fc expected[] = {{0, 0}, {0, 2}, {0, -2}, {2, 1}, {1, -2}, {inf, 0}, {0, inf}, {inf, inf}};
    Vorn32fc result[8];
    EXPECT_EQ(vornsSqrt_32fc(special, result, 8), vornStsNoErr);
    EXPECT_TRUE(test::sameBits(result, expected, 8));
    const Vorn16sc z16[] = {{3, 4}, {-4, 0}, {-3, -4}, {-32768, 0}, {0, 0}};
    Vorn16sc r16[5];
    EXPECT_EQ(vornsSqrt_16sc_Sfs(z16, r16, 5, 0), vornStsNoErr);
    const Vorn16sc expected16[] = {{2, 1}, {0, 2}, {1, -2}, {0, 181}, {0, 0}};
    EXPECT_TRUE(test::sameBits(r16, expected16, 5));
    EXPECT_EQ(vornsSqrt_16sc_Sfs(z16, r16, 5, 1), vornStsNoErr);
    const Vorn16sc halved[] = {{1, 0}, {0, 1}, {0, -1}, {0, 91}, {0, 0}};
    EXPECT_TRUE(test::sameBits(r16, halved, 5));
    std::vector<Vorn16sc> many(150, Vorn16sc{-3, -4}), manyRoots(150);
    EXPECT_EQ(vornsSqrt_16sc_Sfs(many.data(), manyRoots.data(), 150, -14), vornStsNoErr);
    EXPECT_EQ(vornsSqrt_16sc_ISfs(many.data(), 150, -14), vornStsNoErr);
    for (std::size_t i = 0; i < many.size(); ++i) {
        EXPECT_EQ(many[i].re, 16384);
        EXPECT_EQ(many[i].im, -32768);
        EXPECT_EQ(manyRoots[i].im, -32768);
    }
}

// Scale factors around the borders beyond which no root is needed; the warning is tested on both sides.
TEST(Roots, BordersOfTheScaleFactor) {
    const Vorn16s x16[] = {1, 32767, 0, -1};
    Vorn16s y[4];
    const auto expect16 = [&](int sf, std::initializer_list<Vorn16s> expected) {
        EXPECT_EQ(vornsSqrt_16s_Sfs(x16, y, 4, sf), vornStsSqrtNegArg);
        EXPECT_TRUE(test::sameBits(y, std::vector<Vorn16s>(expected).data(), 4)) << sf;
    };
    expect16(-15, {32767, 32767, 0, 0});
    expect16(-14, {16384, 32767, 0, 0});
    expect16(8, {0, 1, 0, 0});  // 181.02 / 256 = 0.71
    expect16(9, {0, 0, 0, 0});
    const Vorn32s x32[] = {1, 2147483647, 0, -1};
    const Vorn64s x64[] = {1, 9223372036854775807, 0, -1};
    const auto expectWide = [&](int sf, std::initializer_list<Vorn16s> of32, std::initializer_list<Vorn16s> of64) {
        EXPECT_EQ(vornsSqrt_32s16s_Sfs(x32, y, 4, sf), vornStsSqrtNegArg);
        EXPECT_TRUE(test::sameBits(y, std::vector<Vorn16s>(of32).data(), 4)) << sf;
        EXPECT_EQ(vornsSqrt_64s16s_Sfs(x64, y, 4, sf), vornStsSqrtNegArg);
        EXPECT_TRUE(test::sameBits(y, std::vector<Vorn16s>(of64).data(), 4)) << sf;
    };
    expectWide(-15, {32767, 32767, 0, 0}, {32767, 32767, 0, 0});
    expectWide(-14, {16384, 32767, 0, 0}, {16384, 32767, 0, 0});
    expectWide(16, {0, 1, 0, 0}, {0, 32767, 0, 0});
    Vorn64s wide[4];
    const Vorn64s largest = 9223372036854775807;
    EXPECT_EQ(vornsSqrt_64s_Sfs(x64, wide, 4, -63), vornStsSqrtNegArg);
    EXPECT_TRUE(test::sameBits(wide, (const Vorn64s[]){largest, largest, 0, 0}, 4));
    EXPECT_EQ(vornsSqrt_64s_Sfs(x64, wide, 4, 31), vornStsSqrtNegArg);
    EXPECT_TRUE(test::sameBits(wide, (const Vorn64s[]){0, 1, 0, 0}, 4));
    EXPECT_EQ(vornsSqrt_64s_Sfs(x64, wide, 4, 33), vornStsSqrtNegArg);
    EXPECT_TRUE(test::sameBits(wide, (const Vorn64s[]){0, 0, 0, 0}, 4));
    const Vorn8u x8[] = {0, 1, 255};
    Vorn8u y8[3];
    EXPECT_EQ(vornsSqrt_8u_Sfs(x8, y8, 3, -8), vornStsNoErr);
    EXPECT_TRUE(test::sameBits(y8, (const Vorn8u[]){0, 255, 255}, 3));
    EXPECT_EQ(vornsSqrt_8u_Sfs(x8, y8, 3, -7), vornStsNoErr);
    EXPECT_TRUE(test::sameBits(y8, (const Vorn8u[]){0, 128, 255}, 3));
    EXPECT_EQ(vornsSqrt_8u_Sfs(x8, y8, 3, 4), vornStsNoErr);  // 15.97 / 16
    EXPECT_TRUE(test::sameBits(y8, (const Vorn8u[]){0, 0, 1}, 3));
    EXPECT_EQ(vornsSqrt_8u_Sfs(x8, y8, 3, 5), vornStsNoErr);  // 0.499
    EXPECT_TRUE(test::sameBits(y8, (const Vorn8u[]){0, 0, 0}, 3));
}

}  // namespace
