// Reductions and element-wise functions against plain models: integers exactly, roots correctly rounded, sums in double
// within the bound of their length.
#include <algorithm>
#include <bit>
#include <cfenv>
#include <cmath>
#include <cstdint>
#include <limits>
#include <vector>

#include "support/expect.h"
#include "support/guarded.h"
#include "support/precise.h"
#include "support/values.h"
#include "vornsr.h"

extern "C" void vornsReciprocal_32f_M7(const Vorn32f* src, Vorn32f* dst, std::int64_t len, VornStatus* status);

namespace {

__extension__ using int128 = __int128;
constexpr int intMin = std::numeric_limits<int>::min(), intMax = std::numeric_limits<int>::max();

std::vector<std::size_t> lengths() {
    std::vector<std::size_t> all;
    for (std::size_t len = 1; len <= 70; ++len) all.push_back(len);
    for (std::size_t len : {127, 128, 129, 257, 1000, 4095, 4096, 4097, 9000}) all.push_back(len);
    return all;
}

// Any integers in two of three vectors, the borders of the type in the third; floats of mixed sizes.
template <class T>
std::vector<T> data(test::Random& random, std::size_t len) {
    std::vector<T> x(len);
    const bool hard = random.integer(0, 2) == 0;
    if constexpr (std::is_integral_v<T>) {
        const std::vector<T> values = test::hardIntegers<T>();
        for (T& value : x) {
            value =
                hard ? values[static_cast<std::size_t>(random.integer(0, static_cast<std::int64_t>(values.size()) - 1))]
                     : random.anyBits<T>();
        }
    } else {
        for (T& value : x)
            value = static_cast<T>(std::ldexp(random.uniform(-1.0, 1.0), static_cast<int>(random.integer(-9, 9))));
    }
    return x;
}
template <class Complex>
std::vector<Complex> complexData(test::Random& random, std::size_t len) {
    const auto parts = data<decltype(Complex::re)>(random, 2 * len);
    std::vector<Complex> z(len);
    for (std::size_t i = 0; i < len; ++i) z[i] = {parts[2 * i], parts[2 * i + 1]};
    return z;
}

template <class Result>
Result saturated(int128 x) {
    using L = std::numeric_limits<Result>;
    return static_cast<Result>(std::clamp<int128>(x, L::min(), L::max()));
}

// x 2^-sf to nearest, ties to even, saturated.
template <class Result>
Result scaled(int128 x, int sf) {
    if (sf <= 0) return saturated<Result>(x * (int128{1} << -sf));
    const int128 floor = x >> sf, rest = x - (floor << sf), half = int128{1} << (sf - 1);
    return saturated<Result>(floor + (rest > half || (rest == half && (floor & 1) != 0)));
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

// Few different values, so that there are ties; zeros of both signs; not-a-numbers behind the first element.
template <class T>
std::vector<T> tiedData(test::Random& random, std::size_t len) {
    std::vector<T> x = data<T>(random, len);
    const auto kind = random.integer(0, 3);
    for (std::size_t i = 0; i < len; ++i) {
        if (kind == 0) x[i] = static_cast<T>(random.integer(0, 3));
        if constexpr (std::is_floating_point_v<T>) {
            if (kind == 1) x[i] = random.integer(0, 1) == 0 ? T(0) : -T(0);
            if (kind == 2 && random.integer(0, 4) == 0) x[i] = std::numeric_limits<T>::quiet_NaN();
        }
    }
    return x;
}
template <class T, class Better>
std::size_t scan(const test::Guarded<T>& x, Better better) {
    std::size_t best = 0;
    for (std::size_t i = 1; i < x.size(); ++i) {
        if (better(x[i], x[best])) best = i;
    }
    return best;
}
constexpr auto larger = [](auto a, auto b) { return a > b; };
constexpr auto smaller = [](auto a, auto b) { return a < b; };

template <class T, class Better, class Call, class CallIndex>
void expectExtreme(Better better, Call call, CallIndex callIndex) {
    test::Random random(7);
    for (std::size_t len : lengths()) {
        test::Guarded<T> x(tiedData<T>(random, len));
        const std::size_t at = scan(x, better);
        T value, indexed, unindexed;
        int index = -1;
        EXPECT_EQ(call(x, static_cast<int>(len), &value), vornStsNoErr);
        EXPECT_EQ(callIndex(x, static_cast<int>(len), &indexed, &index), vornStsNoErr);
        EXPECT_EQ(callIndex(x, static_cast<int>(len), &unindexed, nullptr), vornStsNoErr);
        EXPECT_TRUE(test::same(value, x[at])) << len;
        EXPECT_TRUE(test::same(indexed, x[at])) << len;
        EXPECT_TRUE(test::same(unindexed, x[at])) << len;
        EXPECT_EQ(index, static_cast<int>(at)) << len;
    }
}
template <class T, class Call>
void expectMinMax(Call call) {
    test::Random random(8);
    for (std::size_t len : lengths()) {
        test::Guarded<T> x(tiedData<T>(random, len));
        T low, high;
        EXPECT_EQ(call(x, static_cast<int>(len), &low, &high), vornStsNoErr);
        EXPECT_TRUE(test::same(low, x[scan(x, smaller)])) << len;
        EXPECT_TRUE(test::same(high, x[scan(x, larger)])) << len;
    }
}
template <class T, class Better, class Call>
void expectEvery(Better better, Call call) {
    test::Random random(9);
    for (std::size_t len : lengths()) {
        test::Guarded<T> x(tiedData<T>(random, len)), y(tiedData<T>(random, len));
        std::vector<T> expected = y.values();
        for (std::size_t i = 0; i < len; ++i) {
            if (better(x[i], y[i])) expected[i] = x[i];
        }
        EXPECT_EQ(call(x, y, static_cast<int>(len)), vornStsNoErr);
        EXPECT_TRUE(test::sameBits(y.data(), expected.data(), len));
        EXPECT_TRUE(y.surroundingsUntouched());
    }
}

TEST(Extrema, EqualAPlainScan) {
    expectExtreme<Vorn16s>(larger, vornsMax_16s, vornsMaxIndx_16s);
    expectExtreme<Vorn32f>(larger, vornsMax_32f, vornsMaxIndx_32f);
    expectExtreme<Vorn64f>(larger, vornsMax_64f, vornsMaxIndx_64f);
    expectExtreme<Vorn16s>(smaller, vornsMin_16s, vornsMinIndx_16s);
    expectExtreme<Vorn32f>(smaller, vornsMin_32f, vornsMinIndx_32f);
    expectExtreme<Vorn64f>(smaller, vornsMin_64f, vornsMinIndx_64f);
    expectMinMax<Vorn8u>(vornsMinMax_8u);
    expectMinMax<Vorn16u>(vornsMinMax_16u);
    expectMinMax<Vorn16s>(vornsMinMax_16s);
    expectMinMax<Vorn32u>(vornsMinMax_32u);
    expectMinMax<Vorn32s>(vornsMinMax_32s);
    expectMinMax<Vorn32f>(vornsMinMax_32f);
    expectMinMax<Vorn64f>(vornsMinMax_64f);
    expectEvery<Vorn16s>(larger, vornsMaxEvery_16s_I);
    expectEvery<Vorn32s>(larger, vornsMaxEvery_32s_I);
    expectEvery<Vorn32f>(larger, vornsMaxEvery_32f_I);
    expectEvery<Vorn16s>(smaller, vornsMinEvery_16s_I);
    expectEvery<Vorn32s>(smaller, vornsMinEvery_32s_I);
    expectEvery<Vorn32f>(smaller, vornsMinEvery_32f_I);
}

// In place and not. negative: the status where any element is below zero.
template <class T, class Call, class CallInPlace, class Model>
void expectMap(Call call, CallInPlace callInPlace, Model model, VornStatus negative) {
    test::Random random(10);
    for (std::size_t len : lengths()) {
        std::vector<T> x = data<T>(random, len), expected(len);
        if constexpr (std::is_floating_point_v<T>) {
            for (T& value : x) {
                if (len % 3 == 0) value = random.anyBits<T>();
                if (len % 3 == 1) value = std::fabs(value);
            }
            if (len % 6 == 1) x[len / 2] = T(-2);  // the only one
        }
        for (std::size_t i = 0; i < len; ++i) expected[i] = model(x[i]);
        const VornStatus status =
            std::any_of(x.begin(), x.end(), [](T value) { return value < 0; }) ? negative : vornStsNoErr;
        test::Guarded<T> src(x), dst(len);
        EXPECT_EQ(call(src, dst, static_cast<int>(len)), status) << len;
        EXPECT_TRUE(test::sameBits(dst.data(), expected.data(), len));
        EXPECT_TRUE(dst.surroundingsUntouched());
        EXPECT_EQ(callInPlace(src, static_cast<int>(len)), status) << len;
        EXPECT_TRUE(test::sameBits(src.data(), expected.data(), len));
    }
}

TEST(Absolute, EqualsTheModel) {
    expectMap<Vorn16s>(
        vornsAbs_16s, vornsAbs_16s_I,
        [](Vorn16s x) { return x == -32768 ? Vorn16s{32767} : static_cast<Vorn16s>(std::abs(x)); }, vornStsNoErr);
    expectMap<Vorn32s>(
        vornsAbs_32s, vornsAbs_32s_I, [](Vorn32s x) { return x == intMin ? intMax : std::abs(x); }, vornStsNoErr);
    expectMap<Vorn32f>(
        vornsAbs_32f, vornsAbs_32f_I, [](Vorn32f x) { return std::fabs(x); }, vornStsNoErr);
    expectMap<Vorn64f>(
        vornsAbs_64f, vornsAbs_64f_I, [](Vorn64f x) { return std::fabs(x); }, vornStsNoErr);
}

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

// The root of x 2^(-2 sf) to nearest, ties to even, in integers: 4 x against (2 r + 1)^2.
template <class Result>
Result rootOf(std::int64_t x, int sf) {
    if (x <= 0) return 0;
    const auto compare = [&](int128 twice) {  // the sign of sqrt(x) 2^(1-sf) - twice
        if (sf > 0) {
            const int128 t = twice << sf;
            return t > (int128{1} << 60) ? -1 : (4 * int128{x} > t * t) - (4 * int128{x} < t * t);
        }
        const int shift = 2 - 2 * sf;
        if (shift > 62) return 1;
        const int128 scaledX = int128{x} << shift;
        return (scaledX > twice * twice) - (scaledX < twice * twice);
    };
    const auto limit = static_cast<std::int64_t>(std::numeric_limits<Result>::max());
    std::int64_t low = 0, high = std::min<std::int64_t>(limit, (std::int64_t{1} << 33));
    while (low < high) {  // the largest r with sqrt >= r - 1/2
        const std::int64_t middle = low + (high - low + 1) / 2;
        const int sign = compare(2 * int128{middle} - 1);
        if (sign > 0 || (sign == 0 && middle % 2 == 0)) {
            low = middle;
        } else {
            high = middle - 1;
        }
    }
    return static_cast<Result>(low);
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

TEST(Ln, DoublesAndIntegers) {
    test::Random random(14);
    std::vector<double> x;
    for (int i = 0; i < 20000; ++i) x.push_back(std::fabs(random.anyBits<double>()));
    for (int i = 0; i < 20000; ++i) x.push_back(random.uniform(0.5, 2.0));
    for (double center : {1.0, 2.0 / 3.0, 4.0 / 3.0}) {
        for (int i = -500; i <= 500; ++i) x.push_back(center * (1.0 + i * 0x1p-52));
    }
    const int n = static_cast<int>(x.size());
    std::vector<double> y(x.size());
    std::vector<float> narrow(x.size());
    vornsLn_64f(x.data(), y.data(), n);
    vornsLn_64f32f(x.data(), narrow.data(), n);
    test::Worst worst, worstNarrow;
    for (std::size_t i = 0; i < x.size(); ++i) {
        if (!std::isfinite(x[i]) || x[i] == 0.0) continue;
        const test::Precise exact = log(test::Precise(x[i]));
        worst.meet(exact.distance(y[i]), x[i]);
        if (std::fabs(y[i]) > 1e-37) worstNarrow.meet(exact.distance(narrow[i]), x[i]);
        EXPECT_EQ(narrow[i], static_cast<float>(y[i]));
    }
    EXPECT_LE(worst.distance, 0.95) << worst.text();
    EXPECT_LE(worstNarrow.distance, 0.501) << worstNarrow.text();
    RecordProperty("worst", worst.text());
    std::vector<double> inPlace = x;
    vornsLn_64f_I(inPlace.data(), n);
    EXPECT_TRUE(test::sameBits(inPlace, y));
    const double bad[] = {1.0, -2.0, 0.0, std::numeric_limits<double>::infinity()};
    EXPECT_EQ(vornsLn_64f(bad, y.data(), 4), vornStsLnNegArg);
    EXPECT_EQ(std::bit_cast<std::uint64_t>(y[1]), 0xFFF8000000000000u);
    EXPECT_EQ(y[2], -std::numeric_limits<double>::infinity());
    EXPECT_EQ(vornsLn_64f32f(bad, narrow.data(), 4), vornStsLnNegArg);
    EXPECT_EQ(std::bit_cast<std::uint32_t>(narrow[1]), 0xFFC00000u);

    for (std::size_t len : {1, 5, 16, 33, 300}) {
        std::vector<Vorn32s> integers = data<Vorn32s>(random, len);
        for (int sf : {0, 1, 4, 5, 31, 32, 33, -1, -10, -26, -27, -127, -128, intMin}) {
            std::vector<Vorn32s> result(len);
            const VornStatus status = vornsLn_32s_Sfs(integers.data(), result.data(), static_cast<int>(len), sf);
            VornStatus expectedStatus = vornStsNoErr;
            for (std::size_t i = 0; i < len; ++i) {
                const Vorn32s value = integers[i];
                if (value < 1) {
                    ASSERT_EQ(result[i], intMin);
                    if (expectedStatus == vornStsNoErr)
                        expectedStatus = value == 0 ? vornStsLnZeroArg : vornStsLnNegArg;
                } else if (sf >= 0) {
                    ASSERT_EQ(result[i],
                              static_cast<int>(std::lround(std::log(static_cast<double>(value)))) >> (sf & 31))
                        << value;
                } else {
                    float single, ln;
                    single = static_cast<float>(value);
                    vornsLn_32f(&single, &ln, 1);
                    const double scaledLn = std::ldexp(static_cast<double>(ln), -std::max(sf, -1000));
                    ASSERT_EQ(result[i], scaledLn >= 2147483648.0 ? intMax : static_cast<int>(std::nearbyint(scaledLn)))
                        << value << " " << sf;
                }
            }
            EXPECT_EQ(status, expectedStatus);
            std::vector<Vorn32s> again = integers;
            EXPECT_EQ(vornsLn_32s_ISfs(again.data(), static_cast<int>(len), sf), expectedStatus);
            EXPECT_EQ(again, result);
        }
    }
    // The borders of the table.
    const Vorn32s border[] = {1, 2, 4, 5, 12, 13, 799902177, 799902178, 0};
    Vorn32s result[9];
    EXPECT_EQ(vornsLn_32s_Sfs(border, result, 9, 0), vornStsLnZeroArg);
    EXPECT_TRUE(test::sameBits(result, (const Vorn32s[]){0, 1, 1, 2, 2, 3, 20, 21, intMin}, 9));
    EXPECT_EQ(vornsLn_32s_Sfs(border + 1, result, 1, 1), vornStsNoErr);
    EXPECT_EQ(result[0], 0);
}

TEST(Reciprocal, DividesAndReplaces) {
    test::Random random(15);
    for (std::size_t len : lengths()) {
        test::Guarded<float> x(data<float>(random, len)), y(len);
        for (float& value : x) value = value == 0.0f ? 1.0f : value;
        VornStatus status = vornStsNoErr;
        vornsReciprocal_32f_M7(x, y, static_cast<std::int64_t>(len), &status);
        EXPECT_EQ(status, vornStsNoErr);
        for (std::size_t i = 0; i < len; ++i) ASSERT_EQ(y[i], 1.0f / x[i]);
        // A zero or an infinity anywhere: the status, and an infinity with the sign of its source.
        const float inf = std::numeric_limits<float>::infinity();
        const std::size_t at = len / 2;
        for (float bad : {0.0f, -0.0f, inf, -inf}) {
            x[at] = bad;
            status = vornStsNoErr;
            vornsReciprocal_32f_M7(x, y, static_cast<std::int64_t>(len), &status);
            EXPECT_EQ(status, vornStsDivByZero);
            EXPECT_EQ(y[at], std::signbit(bad) ? -inf : inf);
            EXPECT_TRUE(at == 0 || y[0] == 1.0f / x[0]);
        }
        EXPECT_TRUE(y.surroundingsUntouched());
    }
}

// Values as one would write them down.
TEST(Reductions, LiteralValues) {
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
    std::vector<float> tied(100, 3.0f);
    tied[0] = 1.0f;
    float value = 0;
    int index = -1;
    EXPECT_EQ(vornsMaxIndx_32f(tied.data(), 100, &value, &index), vornStsNoErr);
    EXPECT_EQ(value, 3.0f);
    EXPECT_EQ(index, 1);
    EXPECT_EQ(vornsMaxIndx_32f(tied.data(), 100, &value, nullptr), vornStsNoErr);
    EXPECT_EQ(value, 3.0f);
    const Vorn16s lowest[] = {-32768, -32767, 5, 0};
    Vorn16s absolute[4];
    EXPECT_EQ(vornsAbs_16s(lowest, absolute, 4), vornStsNoErr);
    EXPECT_TRUE(test::sameBits(absolute, (const Vorn16s[]){32767, 32767, 5, 0}, 4));
    const Vorn32s lowest32[] = {intMin, intMin + 1, -1};
    Vorn32s absolute32[3];
    EXPECT_EQ(vornsAbs_32s(lowest32, absolute32, 3), vornStsNoErr);
    EXPECT_TRUE(test::sameBits(absolute32, (const Vorn32s[]){intMax, intMax, 1}, 3));
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
