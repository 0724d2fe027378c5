// Dot products: integers exactly, floats in the stated order.
#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>
#include <type_traits>
#include <vector>

#include "reductions/scaled.h"
#include "support/expect.h"
#include "support/guarded.h"
#include "support/vectors.h"
#include "vornsr.h"

namespace {

using exact::int128, exact::scaled;
using test::complexData, test::data, test::lengths;
constexpr int intMin = std::numeric_limits<int>::min(), intMax = std::numeric_limits<int>::max();

struct Exact {
    int128 re = 0, im = 0;
};
template <class A, class B>
Exact product(A a, B b) {
    if constexpr (std::is_integral_v<A> && std::is_integral_v<B>) {
        return {int128{a} * b, 0};
    } else if constexpr (std::is_integral_v<A>) {
        return {int128{a} * b.re, int128{a} * b.im};
    } else {
        return {int128{a.re} * b.re - int128{a.im} * b.im, int128{a.re} * b.im + int128{a.im} * b.re};
    }
}
template <class A, class B>
Exact exactDot(const test::Guarded<A>& a, const test::Guarded<B>& b) {
    Exact sum;
    for (std::size_t i = 0; i < a.size(); ++i) {
        const Exact one = product(a[i], b[i]);
        sum.re += one.re;
        sum.im += one.im;
    }
    return sum;
}
float toFloat(int128 x) { return static_cast<float>(static_cast<std::int64_t>(x)); }

TEST(DotProducts, SixteenBitsAreExact) {
    test::Random random(3);
    for (std::size_t len : lengths()) {
        const int n = static_cast<int>(len);
        test::Guarded<Vorn16s> a(data<Vorn16s>(random, len)), b(data<Vorn16s>(random, len));
        test::Guarded<Vorn16sc> x(complexData<Vorn16sc>(random, len)), y(complexData<Vorn16sc>(random, len));
        if (len % 5 == 0) {  // every product at its largest
            std::fill(a.begin(), a.end(), Vorn16s{-32768});
            std::fill(b.begin(), b.end(), Vorn16s{-32768});
            std::fill(x.begin(), x.end(), Vorn16sc{-32768, -32768});
            std::fill(y.begin(), y.end(), Vorn16sc{-32768, len % 2 == 0 ? Vorn16s{-32768} : Vorn16s{32767}});
        }
        const Exact ab = exactDot(a, b), xy = exactDot(x, y), ay = exactDot(a, y);
        Vorn64s d;
        Vorn64sc z;
        Vorn32f f;
        Vorn32fc zf;
        EXPECT_EQ(vornsDotProd_16s64s(a, b, n, &d), vornStsNoErr);
        EXPECT_EQ(d, static_cast<Vorn64s>(ab.re)) << len;
        EXPECT_EQ(vornsDotProd_16sc64sc(x, y, n, &z), vornStsNoErr);
        EXPECT_EQ(z.re, static_cast<Vorn64s>(xy.re)) << len;
        EXPECT_EQ(z.im, static_cast<Vorn64s>(xy.im)) << len;
        EXPECT_EQ(vornsDotProd_16s16sc64sc(a, y, n, &z), vornStsNoErr);
        EXPECT_EQ(z.re, static_cast<Vorn64s>(ay.re)) << len;
        EXPECT_EQ(z.im, static_cast<Vorn64s>(ay.im)) << len;
        EXPECT_EQ(vornsDotProd_16s32f(a, b, n, &f), vornStsNoErr);
        EXPECT_EQ(f, toFloat(ab.re)) << len;
        EXPECT_EQ(vornsDotProd_16sc32fc(x, y, n, &zf), vornStsNoErr);
        EXPECT_TRUE(test::same(zf, Vorn32fc{toFloat(xy.re), toFloat(xy.im)})) << len;
        EXPECT_EQ(vornsDotProd_16s16sc32fc(a, y, n, &zf), vornStsNoErr);
        EXPECT_TRUE(test::same(zf, Vorn32fc{toFloat(ay.re), toFloat(ay.im)})) << len;
        for (int sf : {0, 1, 3, 15, 31, 40, -1, -15, -16, -31, -40, intMin, intMax}) {
            const int for16 = std::clamp(sf, -15, 31), for32 = std::clamp(sf, -31, 31);
            Vorn16s s;
            Vorn32s w;
            Vorn16sc zs;
            Vorn32sc zw;
            EXPECT_EQ(vornsDotProd_16s_Sfs(a, b, n, &s, sf), vornStsNoErr);
            EXPECT_EQ(s, scaled<Vorn16s>(ab.re, for16)) << len << " " << sf;
            EXPECT_EQ(vornsDotProd_16s32s_Sfs(a, b, n, &w, sf), vornStsNoErr);
            EXPECT_EQ(w, scaled<Vorn32s>(ab.re, for32)) << len << " " << sf;
            EXPECT_EQ(vornsDotProd_16sc_Sfs(x, y, n, &zs, sf), vornStsNoErr);
            EXPECT_EQ(zs.re, scaled<Vorn16s>(xy.re, for16)) << len << " " << sf;
            EXPECT_EQ(zs.im, scaled<Vorn16s>(xy.im, for16)) << len << " " << sf;
            EXPECT_EQ(vornsDotProd_16s16sc_Sfs(a, y, n, &zs, sf), vornStsNoErr);
            EXPECT_EQ(zs.re, scaled<Vorn16s>(ay.re, for16)) << len << " " << sf;
            EXPECT_EQ(zs.im, scaled<Vorn16s>(ay.im, for16)) << len << " " << sf;
            EXPECT_EQ(vornsDotProd_16sc32sc_Sfs(x, y, n, &zw, sf), vornStsNoErr);
            EXPECT_EQ(zw.re, scaled<Vorn32s>(xy.re, for32)) << len << " " << sf;
            EXPECT_EQ(zw.im, scaled<Vorn32s>(xy.im, for32)) << len << " " << sf;
            EXPECT_EQ(vornsDotProd_16s16sc32sc_Sfs(a, y, n, &zw, sf), vornStsNoErr);
            EXPECT_EQ(zw.re, scaled<Vorn32s>(ay.re, for32)) << len << " " << sf;
            EXPECT_EQ(zw.im, scaled<Vorn32s>(ay.im, for32)) << len << " " << sf;
        }
    }
    // Longer than what lanes of 32 bits hold of products.
    constexpr int many = 1100000;
    const std::vector<Vorn16s> low(many, -32768);
    const std::vector<Vorn16sc> lowPairs(many, Vorn16sc{-32768, -32768});
    Vorn64s d;
    Vorn64sc z;
    vornsDotProd_16s64s(low.data(), low.data(), many, &d);
    EXPECT_EQ(d, std::int64_t{many} << 30);
    vornsDotProd_16sc64sc(lowPairs.data(), lowPairs.data(), many, &z);
    EXPECT_EQ(z.re, 0);
    EXPECT_EQ(z.im, std::int64_t{many} << 31);
    vornsDotProd_16s16sc64sc(low.data(), lowPairs.data(), many, &z);
    EXPECT_EQ(z.re, std::int64_t{many} << 30);
    EXPECT_EQ(z.im, std::int64_t{many} << 30);
}

TEST(DotProducts, ThirtyTwoBitsThroughDouble) {
    test::Random random(4);
    for (std::size_t len : lengths()) {
        const int n = static_cast<int>(len);
        // Small enough for exact sums in double: the route's only rounding is then the last one.
        test::Guarded<Vorn32s> a(random.integers<Vorn32s>(len, -300000, 300000)),
            b(random.integers<Vorn32s>(len, -300000, 300000));
        test::Guarded<Vorn16s> c(data<Vorn16s>(random, len));
        test::Guarded<Vorn32sc> x(len), y(len);
        for (std::size_t i = 0; i < len; ++i) {
            x[i] = {a[i], b[len - 1 - i]};
            y[i] = {b[i], a[len - 1 - i]};
        }
        const Exact ab = exactDot(a, b), cb = exactDot(c, b), xy = exactDot(x, y), ay = exactDot(a, y);
        for (int sf : {0, 1, 7, 20, 40, 93, 94, 200, -1, -31, -32, intMin, intMax}) {
            const int used = std::clamp(sf, -31, 93);
            Vorn32s w;
            Vorn32sc z;
            EXPECT_EQ(vornsDotProd_32s_Sfs(a, b, n, &w, sf), vornStsNoErr);
            EXPECT_EQ(w, scaled<Vorn32s>(ab.re, used)) << len << " " << sf;
            EXPECT_EQ(vornsDotProd_16s32s32s_Sfs(c, b, n, &w, sf), vornStsNoErr);
            EXPECT_EQ(w, scaled<Vorn32s>(cb.re, used)) << len << " " << sf;
            EXPECT_EQ(vornsDotProd_32sc_Sfs(x, y, n, &z, sf), vornStsNoErr);
            EXPECT_EQ(z.re, scaled<Vorn32s>(xy.re, used)) << len << " " << sf;
            EXPECT_EQ(z.im, scaled<Vorn32s>(xy.im, used)) << len << " " << sf;
            EXPECT_EQ(vornsDotProd_32s32sc_Sfs(a, y, n, &z, sf), vornStsNoErr);
            EXPECT_EQ(z.re, scaled<Vorn32s>(ay.re, used)) << len << " " << sf;
            EXPECT_EQ(z.im, scaled<Vorn32s>(ay.im, used)) << len << " " << sf;
        }
    }
}

TEST(DotProducts, SinglesInTheStatedOrder) {
    test::Random random(5);
    for (std::size_t len : lengths()) {
        test::Guarded<float> a(data<float>(random, len)), b(data<float>(random, len));
        float lane[16] = {};
        std::size_t i = 0;
        for (; len >= 16 && i + 16 <= len; i += 16) {
            for (std::size_t j = 0; j < 16; ++j) {
                const float product = a[i + j] * b[i + j];
                lane[j] += product;
            }
        }
        for (; i < len; ++i) {  // the rest begins at an even index: pairs, then a last one in the first lane
            const float product = a[i] * b[i];
            lane[i % 2] += product;
        }
        float quarter[4];
        for (int j = 0; j < 4; ++j) quarter[j] = (lane[j] + lane[4 + j]) + (lane[8 + j] + lane[12 + j]);
        const float expected = len < 16 ? lane[0] + lane[1] : (quarter[0] + quarter[1]) + (quarter[2] + quarter[3]);
        float dp;
        EXPECT_EQ(vornsDotProd_32f(a, b, static_cast<int>(len), &dp), vornStsNoErr);
        EXPECT_TRUE(test::same(dp, expected)) << len;
    }
}

// The other float forms: sixteen lanes, folded in halves.
template <class Sum, class A, class B>
void expectLaneDot(const test::Guarded<A>& a, const test::Guarded<B>& b, Sum re, Sum im) {
    Sum lane[2][16] = {};
    for (std::size_t i = 0; i < a.size(); ++i) {
        Sum p, q = 0;
        if constexpr (std::is_floating_point_v<A> && std::is_floating_point_v<B>) {
            p = static_cast<Sum>(a[i]) * static_cast<Sum>(b[i]);
        } else if constexpr (std::is_floating_point_v<A>) {
            p = static_cast<Sum>(a[i]) * static_cast<Sum>(b[i].re);
            q = static_cast<Sum>(a[i]) * static_cast<Sum>(b[i].im);
        } else {
            const Sum rr = static_cast<Sum>(a[i].re) * static_cast<Sum>(b[i].re);
            const Sum ii = static_cast<Sum>(a[i].im) * static_cast<Sum>(b[i].im);
            const Sum ri = static_cast<Sum>(a[i].re) * static_cast<Sum>(b[i].im);
            const Sum ir = static_cast<Sum>(a[i].im) * static_cast<Sum>(b[i].re);
            p = rr - ii;
            q = ri + ir;
        }
        lane[0][i % 16] += p;
        lane[1][i % 16] += q;
    }
    for (int half = 8; half > 0; half /= 2) {
        for (int j = 0; j < half; ++j) {
            lane[0][j] += lane[0][j + half];
            lane[1][j] += lane[1][j + half];
        }
    }
    EXPECT_TRUE(test::same(re, lane[0][0])) << a.size() << " " << test::show(re) << " " << test::show(lane[0][0]);
    EXPECT_TRUE(test::same(im, lane[1][0])) << a.size() << " " << test::show(im) << " " << test::show(lane[1][0]);
}

TEST(DotProducts, OtherFloatForms) {
    test::Random random(6);
    for (std::size_t len : lengths()) {
        const int n = static_cast<int>(len);
        test::Guarded<float> a(data<float>(random, len)), b(data<float>(random, len));
        test::Guarded<double> c(data<double>(random, len)), d(data<double>(random, len));
        test::Guarded<Vorn32fc> x(complexData<Vorn32fc>(random, len)), y(complexData<Vorn32fc>(random, len));
        test::Guarded<Vorn64fc> v(complexData<Vorn64fc>(random, len)), w(complexData<Vorn64fc>(random, len));
        Vorn64f r;
        Vorn32fc z;
        Vorn64fc zz;
        EXPECT_EQ(vornsDotProd_64f(c, d, n, &r), vornStsNoErr);
        expectLaneDot<double>(c, d, r, 0.0);
        EXPECT_EQ(vornsDotProd_32f64f(a, b, n, &r), vornStsNoErr);
        expectLaneDot<double>(a, b, r, 0.0);
        EXPECT_EQ(vornsDotProd_32fc(x, y, n, &z), vornStsNoErr);
        expectLaneDot<float>(x, y, z.re, z.im);
        EXPECT_EQ(vornsDotProd_32f32fc(a, y, n, &z), vornStsNoErr);
        expectLaneDot<float>(a, y, z.re, z.im);
        EXPECT_EQ(vornsDotProd_64fc(v, w, n, &zz), vornStsNoErr);
        expectLaneDot<double>(v, w, zz.re, zz.im);
        EXPECT_EQ(vornsDotProd_64f64fc(c, w, n, &zz), vornStsNoErr);
        expectLaneDot<double>(c, w, zz.re, zz.im);
        EXPECT_EQ(vornsDotProd_32fc64fc(x, y, n, &zz), vornStsNoErr);
        expectLaneDot<double>(x, y, zz.re, zz.im);
        EXPECT_EQ(vornsDotProd_32f32fc64fc(a, y, n, &zz), vornStsNoErr);
        expectLaneDot<double>(a, y, zz.re, zz.im);
    }
}

// Values as one would write them down.
TEST(DotProducts, LiteralValues) {
    const Vorn16s power[] = {4096, 1, 1, 1}, ones[] = {4096, 1, 1, 1};
    float single = 0;
    EXPECT_EQ(vornsDotProd_16s32f(power, ones, 4, &single), vornStsNoErr);
    EXPECT_EQ(single, 16777220.0f);  // 2^24 + 3 rounded once; adding the ones in single would lose all of them
    const Vorn16s one[] = {1}, minusOne[] = {-1}, zero[] = {0};
    for (int sf : {-15, -16, -1000}) {
        Vorn16s dp = 5;
        EXPECT_EQ(vornsDotProd_16s_Sfs(one, one, 1, &dp, sf), vornStsNoErr);
        EXPECT_EQ(dp, 32767);
        EXPECT_EQ(vornsDotProd_16s_Sfs(one, minusOne, 1, &dp, sf), vornStsNoErr);
        EXPECT_EQ(dp, -32768);
        EXPECT_EQ(vornsDotProd_16s_Sfs(one, zero, 1, &dp, sf), vornStsNoErr);
        EXPECT_EQ(dp, 0);
    }
}

}  // namespace
