// Log-domain arithmetic against the scalar model: log-add, log-sum, log-subtract, in float and in fixed point.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <tuple>
#include <type_traits>

#include "elementary/elementary.h"
#include "elementary/lanes.h"
#include "model/log_arithmetic.h"
#include "scoring/log_arithmetic/kernels.h"
#include "support/expect.h"
#include "support/guarded.h"
#include "support/rounding_mode.h"
#include "support/values.h"
#include "vornsr.h"

namespace {

using test::Guarded;
using test::Offset;
using test::Random;
using test::sameBits;

constexpr float infinity = std::numeric_limits<float>::infinity();
constexpr Vorn32s most = 2147483647, least = -2147483647 - 1;

// ---- One name for all element types.

VornStatus logAdd(const double* src, double* srcDst, int len) { return vornsLogAdd_64f(src, srcDst, len, 0); }
VornStatus logAdd(const float* src, float* srcDst, int len) { return vornsLogAdd_32f(src, srcDst, len); }
VornStatus logAdd(const Vorn32s* src, Vorn32s* srcDst, int len, int sf) {
    return vornsLogAdd_32s_Sfs(src, srcDst, len, sf);
}
VornStatus logAdd(const Vorn16s* src, Vorn16s* srcDst, int len, int sf) {
    return vornsLogAdd_16s_Sfs(src, srcDst, len, sf);
}
VornStatus logSum(const double* src, double* dst, int len) { return vornsLogSum_64f(src, dst, len); }
VornStatus logSum(const float* src, float* dst, int len) { return vornsLogSum_32f(src, dst, len); }
VornStatus logSum(const Vorn32s* src, Vorn32s* dst, int len, int sf) { return vornsLogSum_32s_Sfs(src, dst, len, sf); }
VornStatus logSum(const Vorn16s* src, Vorn16s* dst, int len, int sf) { return vornsLogSum_16s_Sfs(src, dst, len, sf); }
VornStatus logSub(const double* src, double* srcDst, int len) { return vornsLogSub_64f(src, srcDst, len); }
VornStatus logSub(const float* src, float* srcDst, int len) { return vornsLogSub_32f(src, srcDst, len); }
VornStatus logSub(const Vorn32s* src, Vorn32s* srcDst, int len, int sf) {
    return vornsLogSub_32s_Sfs(src, srcDst, len, sf);
}
VornStatus logSub(const Vorn16s* src, Vorn16s* srcDst, int len, int sf) {
    return vornsLogSub_16s_Sfs(src, srcDst, len, sf);
}

template <class T>
std::vector<T> reals(Random& random, std::size_t n, double low, double high) {
    std::vector<T> values(n);
    for (T& x : values) x = static_cast<T>(random.uniform(low, high));
    return values;
}

std::vector<int> testLengths() {
    std::vector<int> lengths;
    for (int len = 1; len <= 70; ++len) lengths.push_back(len);
    for (int len : {100, 127, 128, 129, 133, 134, 135, 255, 256, 257, 384, 1000}) lengths.push_back(len);
    return lengths;
}

// Differences on the splits, on the limit and beside them, in the element type.
template <class T>
std::vector<T> borderDifferences() {
    const bool single = std::is_same_v<T, float>;
    std::vector<T> values;
    for (T border : {T(0), T(single ? -2.55 : -3.5), T(single ? -6.8 : -9.0),
                     T(single ? -15.319587707519531 : -23.0258509299405)}) {
        for (T x : {border, std::nextafter(border, T(-100)), std::nextafter(border, T(100))}) values.push_back(x);
    }
    return values;
}

template <class T>
class LogFloat : public ::testing::Test {};
using Floats = ::testing::Types<float, double>;
TYPED_TEST_SUITE(LogFloat, Floats);

template <class T>
class LogFixed : public ::testing::Test {};
using Fixed = ::testing::Types<Vorn32s, Vorn16s>;
TYPED_TEST_SUITE(LogFixed, Fixed);

// ---- Tables.

TEST(LogAddConstants, AreHandedOutUpperIntervalFirst) {
    const double *p1, *p2, *p3;
    vorn::GetLogAddConst(&p1, &p2, &p3);
    EXPECT_TRUE(sameBits(p1, model::p1, 22));
    EXPECT_TRUE(sameBits(p2, model::p2, 22));
    EXPECT_TRUE(sameBits(p3, model::p3, 22));
    vorn::GetLogAddConst_F(&p1, &p2, &p3);
    EXPECT_TRUE(sameBits(p1, model::p1single, 11));
    EXPECT_TRUE(sameBits(p2, model::p2single, 11));
    EXPECT_TRUE(sameBits(p3, model::p3single, 11));
}

// The tables themselves, evaluated in long double: 3.2e-15 and 4.6e-9. Evaluated in the element type as the kernels do
// it, with m = 0: 5.4e-14 (the two chains of the double form cancel in part) and 1.53e-7, at the last two arguments.
TEST(LogAddConstants, FollowTheLogarithm) {
    const auto polynomial = [](const double* p, int terms, long double t) {
        long double f = p[0];
        for (int k = 1; k < terms; ++k) f = f * t + p[k];
        return f;
    };
    Guarded<double> zero{0.0}, d{0.0};
    Guarded<float> zeroSingle{0.0f}, single{0.0f};
    for (double x = 0.0; x >= -23.02; x -= 0.000977) {
        const long double exact = std::log1p(std::exp(static_cast<long double>(x)));
        const long double table = x > -3.5   ? polynomial(model::p1, 22, x)
                                  : x > -9.0 ? polynomial(model::p2, 22, x + 3.5L)
                                             : polynomial(model::p3, 22, x + 9.0L);
        EXPECT_LT(std::fabs(table - exact), 4e-15L) << x;
        d[0] = x;
        ASSERT_EQ(logAdd(zero, d, 1), vornStsNoErr);
        EXPECT_LT(std::fabs(d[0] - exact), 6e-14L) << x;
    }
    for (float x = 0.0f; x >= -15.3f; x -= 0.000977f) {
        const long double exact = std::log1p(std::exp(static_cast<long double>(x)));
        const long double table = x > -2.55f  ? polynomial(model::p1single, 11, x)
                                  : x > -6.8f ? polynomial(model::p2single, 11, x + 2.55L)
                                              : polynomial(model::p3single, 11, x + 6.8L);
        EXPECT_LT(std::fabs(table - exact), 5e-9L) << x;
        single[0] = x;
        ASSERT_EQ(logAdd(zeroSingle, single, 1), vornStsNoErr);
        EXPECT_LT(std::fabs(single[0] - exact), 1.6e-7L) << x;
    }
    const auto error = [](auto& m, auto& worst) {
        const long double exact = std::log1p(std::exp(static_cast<long double>(worst[0])));
        EXPECT_EQ(logAdd(m, worst, 1), vornStsNoErr);
        return std::fabs(worst[0] - exact);
    };
    d[0] = -23.023668819787336;
    EXPECT_NEAR(error(zero, d), 5.3e-14, 0.1e-14);
    single[0] = -6.78581476f;
    EXPECT_NEAR(error(zeroSingle, single), 1.52e-7, 0.01e-7);
}

// ---- Log-add.

TYPED_TEST(LogFloat, AddEveryLength) {
    Random random(11);
    for (int len : testLengths()) {
        for (double spread : {1.0, 8.0, 40.0}) {
            const auto a = reals<TypeParam>(random, len, -500 - spread, -500),
                       b = reals<TypeParam>(random, len, -500 - spread, -500);
            Guarded<TypeParam> src(a), srcDst(b);
            std::vector<TypeParam> expected = b;
            model::logAddVector(a.data(), expected.data(), len);
            ASSERT_EQ(logAdd(src, srcDst, len), vornStsNoErr);
            EXPECT_TRUE(sameBits(srcDst.values(), expected)) << "len " << len << " spread " << spread;
            EXPECT_TRUE(sameBits(src.values(), a));
            EXPECT_TRUE(srcDst.surroundingsUntouched());
        }
    }
}

TYPED_TEST(LogFloat, AddDifferencesOnTheBordersAtEveryPosition) {
    const auto differences = borderDifferences<TypeParam>();
    for (int len = 1; len <= 40; ++len) {
        for (std::size_t shift = 0; shift < differences.size(); ++shift) {
            std::vector<TypeParam> a(len, TypeParam(0)), b(len);
            for (int i = 0; i < len; ++i) {
                b[i] = differences[(shift + static_cast<std::size_t>(i) * 5) % differences.size()];
                if (i % 3 == 1) std::swap(a[i], b[i]);
            }
            Guarded<TypeParam> src(a), srcDst(b);
            std::vector<TypeParam> expected = b;
            model::logAddVector(a.data(), expected.data(), len);
            ASSERT_EQ(logAdd(src, srcDst, len), vornStsNoErr);
            EXPECT_TRUE(sameBits(srcDst.values(), expected)) << "len " << len << " shift " << shift;
        }
    }
}

TYPED_TEST(LogFloat, AddHardValuesInAllPairs) {
    auto hard = test::hardFloats<TypeParam>();
    for (double x : {-4500000.0, -4500000.5, -4499999.5, -5e6, -6e6, -1e10, -9e9, -9.5e9, -8.5e9, -2e10, -3e10}) {
        hard.push_back(static_cast<TypeParam>(x));
    }
    std::vector<TypeParam> a, b;
    for (TypeParam x : hard) {
        for (TypeParam y : hard) a.push_back(x), b.push_back(y);
    }
    Random random(3);
    for (int i = 0; i < 5003; ++i) a.push_back(random.anyBits<TypeParam>()), b.push_back(random.anyBits<TypeParam>());
    const int len = static_cast<int>(a.size());
    Guarded<TypeParam> src(a), srcDst(b);
    std::vector<TypeParam> expected = b;
    model::logAddVector(a.data(), expected.data(), len);
    ASSERT_EQ(logAdd(src, srcDst, len), vornStsNoErr);
    EXPECT_TRUE(sameBits(srcDst.values(), expected));
}

TYPED_TEST(LogFloat, AddAtEveryAlignmentAndInPlace) {
    Random random(5);
    constexpr int len = 37;
    for (std::size_t from = 0; from < 64; from += sizeof(TypeParam)) {
        for (std::size_t to = 0; to < 64; to += sizeof(TypeParam)) {
            const auto a = reals<TypeParam>(random, len, -20, 0), b = reals<TypeParam>(random, len, -20, 0);
            Offset<TypeParam> src(len, from), srcDst(len, to);
            src.assign(a), srcDst.assign(b);
            std::vector<TypeParam> expected = b;
            model::logAddVector(a.data(), expected.data(), len);
            ASSERT_EQ(logAdd(src.data(), srcDst.data(), len), vornStsNoErr);
            EXPECT_TRUE(sameBits(srcDst.values(), expected)) << from << " " << to;
            EXPECT_TRUE(srcDst.surroundingsUntouched());
        }
    }
    const auto a = reals<TypeParam>(random, len, -20, 0);
    Guarded<TypeParam> both(a);
    std::vector<TypeParam> expected = a;
    model::logAddVector(a.data(), expected.data(), len);
    ASSERT_EQ(logAdd(both.data(), both.data(), len), vornStsNoErr);
    EXPECT_TRUE(sameBits(both.values(), expected));
}

TEST(LogAdd, EqualTermsAddTheConstantOfThePolynomial) {
    Guarded<float> src{-10.0f}, srcDst{-10.0f};
    ASSERT_EQ(vornsLogAdd_32f(src, srcDst, 1), vornStsNoErr);
    EXPECT_EQ(srcDst[0], -10.0f + 0.6931471824645996f);
}

TEST(LogAdd, FloorWorksOnlyWhereATermIsDropped) {
    Guarded<float> src{-5000000.0f, -5000000.0f}, srcDst{-5000000.0f, -6000000.0f};
    ASSERT_EQ(vornsLogAdd_32f(src, srcDst, 2), vornStsNoErr);
    EXPECT_EQ(srcDst[0], -5000000.0f + 0.6931471824645996f);
    EXPECT_EQ(srcDst[1], -4500000.0f);

    Guarded<double> wide{-2.0e10, -9.5e9}, wideDst{-3.0e10, -8.5e9};
    ASSERT_EQ(vornsLogAdd_64f(wide, wideDst, 2, 1), vornStsNoErr);
    EXPECT_EQ(wideDst[0], -1.0e10);
    EXPECT_EQ(wideDst[1], -8.5e9);
}

TEST(LogAdd, Infinities) {
    Guarded<float> src{infinity, -infinity, infinity, -infinity, -infinity};
    Guarded<float> srcDst{1.0f, 1.0f, infinity, -infinity, -5000000.0f};
    ASSERT_EQ(vornsLogAdd_32f(src, srcDst, 5), vornStsNoErr);
    EXPECT_EQ(srcDst[0], infinity);
    EXPECT_EQ(srcDst[1], 1.0f);
    EXPECT_TRUE(std::isnan(srcDst[2]));
    EXPECT_TRUE(std::isnan(srcDst[3]));
    EXPECT_EQ(srcDst[4], -4500000.0f);
}

// ---- What is not a number never becomes a score.

// The constant of the upper polynomial: what two equal terms add.
template <class T>
constexpr T logarithmOf2 = std::is_same_v<T, float> ? T(0.6931471824645996) : T(0.6931471805599475);

TYPED_TEST(LogFloat, AddOfANotANumberIsNone) {
    using T = TypeParam;
    const T nan = std::numeric_limits<T>::quiet_NaN();
    for (int len = 1; len <= 40; ++len) {
        for (std::size_t place = 0; place < static_cast<std::size_t>(len); ++place) {
            for (const T partner : {T(5), T(infinity), T(-infinity), T(-1e12)}) {
                for (const bool inSrc : {true, false}) {
                    Guarded<T> src(std::vector<T>(len, T(5))), srcDst(std::vector<T>(len, T(5)));
                    src[place] = inSrc ? nan : partner, srcDst[place] = inSrc ? partner : nan;
                    ASSERT_EQ(logAdd(src, srcDst, len), vornStsNoErr);
                    for (std::size_t i = 0; i < static_cast<std::size_t>(len); ++i) {
                        if (i == place) {
                            EXPECT_TRUE(std::isnan(srcDst[i])) << "len " << len << " place " << i << " src " << inSrc;
                        } else {
                            EXPECT_EQ(srcDst[i], T(5) + logarithmOf2<T>) << "len " << len << " beside " << place;
                        }
                    }
                }
            }
        }
    }
}

TYPED_TEST(LogFloat, SumOfANotANumberIsNone) {
    using T = TypeParam;
    for (int len = 1; len <= 40; ++len) {
        for (std::size_t place = 0; place < static_cast<std::size_t>(len); ++place) {
            for (const T others : {T(5), T(-1e12)}) {
                for (const T sign : {T(1), T(-1)}) {
                    Guarded<T> src(std::vector<T>(len, others)), dst(1);
                    // The others may be near or far from one another.
                    if (len > 1) src[(place + 1) % static_cast<std::size_t>(len)] = T(40);
                    src[place] = std::copysign(std::numeric_limits<T>::quiet_NaN(), sign);
                    ASSERT_EQ(logSum(src, dst, len), vornStsNoErr);
                    EXPECT_TRUE(std::isnan(dst[0])) << "len " << len << " place " << place << " others " << others;
                    ASSERT_EQ(logSum(src.data(), src.data(), len), vornStsNoErr);
                    EXPECT_TRUE(std::isnan(src[0])) << "in place, len " << len << " place " << place;
                }
            }
        }
    }
}

TYPED_TEST(LogFloat, DifferenceOfANotANumberIsNone) {
    using T = TypeParam;
    const T nan = std::numeric_limits<T>::quiet_NaN();
    for (int len = 1; len <= 40; ++len) {
        for (std::size_t place = 0; place < static_cast<std::size_t>(len); ++place) {
            for (const T partner : {T(5), T(infinity), T(-infinity), T(-1e12)}) {
                for (const bool inSrc : {true, false}) {
                    Guarded<T> src(std::vector<T>(len, T(5))), srcDst(std::vector<T>(len, T(-1e12)));
                    src[place] = inSrc ? nan : partner, srcDst[place] = inSrc ? partner : nan;
                    ASSERT_EQ(logSub(src, srcDst, len), vornStsNoErr);
                    for (std::size_t i = 0; i < static_cast<std::size_t>(len); ++i) {
                        if (i == place) {
                            EXPECT_TRUE(std::isnan(srcDst[i])) << "len " << len << " place " << i << " src " << inSrc;
                        } else {
                            EXPECT_EQ(srcDst[i], T(5)) << "len " << len << " beside " << place;
                        }
                    }
                }
            }
        }
    }
}

// In an infinite unit zeros are none, and all other integers infinities. The conversion at the end stores the smallest
// integer; 16 bits keep its low half in sums.
TEST(LogFixed, NotANumberIsStoredAsTheConversionSays) {
    for (int sf : {-1024, least}) {
        for (int len = 2; len <= 40; ++len) {
            for (std::size_t place = 0; place < static_cast<std::size_t>(len); ++place) {
                Guarded<Vorn32s> wide(std::vector<Vorn32s>(len, 5)), wideDst(std::vector<Vorn32s>(len, 5)), wideSum(1);
                Guarded<Vorn16s> small(std::vector<Vorn16s>(len, 5)), smallDst(std::vector<Vorn16s>(len, -5)),
                    smallSum(1);
                wide[place] = 0, small[place] = 0;
                ASSERT_EQ(vornsLogSum_32s_Sfs(wide, wideSum, len, sf), vornStsNoErr);
                EXPECT_EQ(wideSum[0], least) << "len " << len << " place " << place;
                ASSERT_EQ(vornsLogSum_16s_Sfs(small, smallSum, len, sf), vornStsNoErr);
                EXPECT_EQ(smallSum[0], 0) << "len " << len << " place " << place;
                ASSERT_EQ(vornsLogAdd_32s_Sfs(wide, wideDst, len, sf), vornStsNoErr);
                EXPECT_EQ(wideDst[place], least) << "len " << len << " place " << place;
                ASSERT_EQ(vornsLogAdd_16s_Sfs(small, smallDst, len, sf), vornStsNoErr);
                EXPECT_EQ(smallDst[place], -32768) << "len " << len << " place " << place;
            }
        }
    }
}

TEST(ScalarLogAdd, OfANotANumberIsNone) {
    for (const float x : {5.0f, -1e12f, infinity, -infinity, std::nanf("")}) {
        EXPECT_TRUE(std::isnan(vorn::logAddConstantLast(x, std::nanf("")))) << x;
        EXPECT_TRUE(std::isnan(vorn::logAddConstantLast(std::nanf(""), x))) << x;
        EXPECT_TRUE(std::isnan(vorn::logAddConstantFirst(x, std::nan("")))) << x;
        EXPECT_TRUE(std::isnan(vorn::logAddConstantFirst(std::nan(""), x))) << x;
    }
}

TEST(LogAdd, HintSelectsNothingAndAnUnknownOneDoesNothing) {
    for (int hint : {std::numeric_limits<int>::min(), -1, 0, 1, 2, 3, 4, std::numeric_limits<int>::max()}) {
        Guarded<double> src{1.0, 2.0, 3.0}, srcDst{3.0, 2.0, 1.0};
        std::vector<double> expected = srcDst.values();
        if (hint >= 0 && hint <= 2) model::logAddVector(src.data(), expected.data(), 3);
        EXPECT_EQ(vornsLogAdd_64f(src, srcDst, 3, hint), vornStsNoErr);
        EXPECT_TRUE(sameBits(srcDst.values(), expected)) << hint;
    }
    // The size and the pointers are tested before the hint.
    double x = 0;
    EXPECT_EQ(vornsLogAdd_64f(&x, &x, 0, 7), vornStsSizeErr);
    EXPECT_EQ(vornsLogAdd_64f(nullptr, &x, 1, 7), vornStsNullPtrErr);
}

TYPED_TEST(LogFloat, KernelsUnderTheirNames) {
    using T = TypeParam;
    Random random(8);
    const auto a = reals<T>(random, 21, -9, 0), b = reals<T>(random, 21, -9, 0);
    std::vector<T> added = b, expected = b;
    model::logAddVector(a.data(), expected.data(), 21);
    T sum;
    if constexpr (std::is_same_v<T, float>) {
        vornsLogAddVec_32f_M7_sp(a.data(), added.data(), 21);
        vornsLogSum_32f_M7(a.data(), &sum, 21);
    } else {
        vornsLogAddVec_64f_M7(a.data(), added.data(), 21);
        vornsLogSum_64f_M7(a.data(), &sum, 21);
    }
    EXPECT_TRUE(sameBits(added, expected));
    const T expectedSum = model::logSum(a.data(), 21);
    EXPECT_TRUE(sameBits(&sum, &expectedSum, 1));
}

// ---- Log-add in fixed point.

const int scaleFactors[] = {0,
                            1,
                            4,
                            7,
                            12,
                            16,
                            24,
                            31,
                            -1,
                            -4,
                            -20,
                            40,
                            126,
                            127,
                            149,
                            150,
                            151,
                            1000,
                            -127,
                            -128,
                            -129,
                            -1023,
                            -1024,
                            1074,
                            1075,
                            std::numeric_limits<int>::max(),
                            std::numeric_limits<int>::min()};

template <class T>
std::vector<T> fixedValues(Random& random, int len, int shift) {
    std::vector<T> values(len);
    for (T& x : values) x = static_cast<T>(static_cast<T>(random.next()) >> shift);
    return values;
}

TYPED_TEST(LogFixed, AddEveryLengthAndScale) {
    Random random(21);
    const auto check = [&](int len, int sf, int shift) {
        const auto a = fixedValues<TypeParam>(random, len, shift), b = fixedValues<TypeParam>(random, len, shift);
        Guarded<TypeParam> src(a), srcDst(b);
        std::vector<TypeParam> expected = b;
        model::logAddFixed(a.data(), expected.data(), len, sf);
        ASSERT_EQ(logAdd(src, srcDst, len, sf), vornStsNoErr);
        EXPECT_TRUE(sameBits(srcDst.values(), expected)) << "len " << len << " sf " << sf << " shift " << shift;
        EXPECT_TRUE(sameBits(src.values(), a));
        EXPECT_TRUE(srcDst.surroundingsUntouched());
    };
    for (int len : testLengths()) {
        check(len, 4, 8 * sizeof(TypeParam) - 9);
        check(len, 7, 0);
    }
    for (int sf : scaleFactors) {
        for (int shift : {0, 3, 8, 12}) check(200, sf, shift);
    }
}

TYPED_TEST(LogFixed, AddHardIntegers) {
    const auto hard = test::hardIntegers<TypeParam>();
    for (int sf : {0, 3, -2, 20, -30}) {
        for (TypeParam x : hard) {
            std::vector<TypeParam> a(hard.size(), x), expected = hard;
            Guarded<TypeParam> src(a), srcDst(hard);
            model::logAddFixed(a.data(), expected.data(), static_cast<int>(hard.size()), sf);
            ASSERT_EQ(logAdd(src, srcDst, static_cast<int>(hard.size()), sf), vornStsNoErr);
            EXPECT_TRUE(sameBits(srcDst.values(), expected)) << "sf " << sf << " x " << x;
        }
    }
}

TEST(LogAddFixed, TruncatesAndSaturates) {
    {
        Guarded<Vorn16s> src{100, 32767, -32768, -100}, srcDst{100, 32767, -32768, -100};
        ASSERT_EQ(vornsLogAdd_16s_Sfs(src, srcDst, 4, 0), vornStsNoErr);
        EXPECT_EQ(srcDst[0], 100);  // 100.69 truncated
        EXPECT_EQ(srcDst[1], 32767);
        EXPECT_EQ(srcDst[2], -32767);  // -32767.31 truncated toward zero
        EXPECT_EQ(srcDst[3], -99);     // -99.31
    }
    {
        Guarded<Vorn32s> src{2147483647, 2147483647, -2147483647 - 1}, srcDst{2147483647, 5, -2147483647 - 1};
        ASSERT_EQ(vornsLogAdd_32s_Sfs(src, srcDst, 3, 0), vornStsNoErr);
        EXPECT_EQ(srcDst[0], 2147483647);
        EXPECT_EQ(srcDst[1], 2147483647);
        EXPECT_EQ(srcDst[2], -2147483647 - 1);  // the single 2^31 takes no ln 2
    }
    {
        // The floor of a dropped term, -4500000, is far below what 16 bits hold with this scale.
        Guarded<Vorn16s> src{-32768}, srcDst{-32000};
        ASSERT_EQ(vornsLogAdd_16s_Sfs(src, srcDst, 1, -9), vornStsNoErr);
        EXPECT_EQ(srcDst[0], -8789);  // -4500000 / 512 = -8789.06
    }
}

// ---- Log-sum.

TYPED_TEST(LogFloat, SumEveryLength) {
    Random random(31);
    for (int len : testLengths()) {
        for (double spread : {0.5, 6.0, 60.0}) {
            const auto values = reals<TypeParam>(random, len, -700 - spread, -700);
            Guarded<TypeParam> src(values), dst(1);
            ASSERT_EQ(logSum(src, dst, len), vornStsNoErr);
            const TypeParam expected = model::logSum(values.data(), len);
            EXPECT_TRUE(sameBits(dst.data(), &expected, 1)) << "len " << len << " spread " << spread;
            EXPECT_TRUE(sameBits(src.values(), values));
            EXPECT_TRUE(dst.surroundingsUntouched());
            ASSERT_EQ(logSum(src.data(), src.data(), len), vornStsNoErr) << "in place";
            EXPECT_TRUE(sameBits(src.data(), &expected, 1)) << "in place, len " << len;
        }
    }
}

TYPED_TEST(LogFloat, SumAtEveryAlignment) {
    Random random(32);
    for (std::size_t from = 0; from < 64; from += sizeof(TypeParam)) {
        for (int len : {5, 8, 23}) {
            const auto values = reals<TypeParam>(random, len, -9, 0);
            Offset<TypeParam> src(len, from), dst(1, from);
            src.assign(values);
            ASSERT_EQ(logSum(src.data(), dst.data(), len), vornStsNoErr);
            const TypeParam expected = model::logSum(values.data(), len);
            EXPECT_TRUE(sameBits(dst.data(), &expected, 1)) << from << " len " << len;
            EXPECT_TRUE(dst.surroundingsUntouched());
        }
    }
}

TYPED_TEST(LogFloat, SumDifferencesOnTheBorders) {
    const auto differences = borderDifferences<TypeParam>();
    for (int len : {2, 3, 7, 8, 9, 11, 12}) {
        for (std::size_t k = 0; k < differences.size(); ++k) {
            for (int place = 0; place < len; ++place) {
                // All but one are far below, so that the one difference meets the leader untouched.
                std::vector<TypeParam> values(len, TypeParam(-1000));
                values[0] = TypeParam(0);
                if (place > 0) values[place] = differences[k];
                Guarded<TypeParam> src(values), dst(1);
                ASSERT_EQ(logSum(src, dst, len), vornStsNoErr);
                const TypeParam expected = model::logSum(values.data(), len);
                EXPECT_TRUE(sameBits(dst.data(), &expected, 1)) << "len " << len << " k " << k << " place " << place;
            }
        }
    }
}

TYPED_TEST(LogFloat, SumHardValues) {
    Random random(33);
    const auto hard = test::hardFloats<TypeParam>();
    for (int len = 1; len <= 40; ++len) {
        for (int trial = 0; trial < 40; ++trial) {
            std::vector<TypeParam> values(len);
            for (TypeParam& x : values) {
                x = trial % 2 == 0
                        ? hard[static_cast<std::size_t>(random.integer(0, static_cast<std::int64_t>(hard.size()) - 1))]
                        : static_cast<TypeParam>(random.uniform(-9.6e9, 0));
            }
            Guarded<TypeParam> src(values), dst(1);
            ASSERT_EQ(logSum(src, dst, len), vornStsNoErr);
            const TypeParam expected = model::logSum(values.data(), len);
            EXPECT_TRUE(sameBits(dst.data(), &expected, 1)) << "len " << len << " trial " << trial;
        }
    }
}

// Sums follow the caller's rounding mode, step by step, and leave it as it is.
TYPED_TEST(LogFloat, CallersRoundingMode) {
    using test::RoundingMode;
    Random random(34);
    for (unsigned mode : {RoundingMode::down, RoundingMode::up, RoundingMode::towardZero}) {
        for (int len : {1, 2, 5, 8, 13, 40, 67}) {
            const auto a = reals<TypeParam>(random, len, -30, 0), b = reals<TypeParam>(random, len, -30, 0);
            Guarded<TypeParam> src(a), srcDst(b), dst(1);
            std::vector<TypeParam> expected = b;
            const RoundingMode rounding(mode);
            ASSERT_EQ(logAdd(src, srcDst, len), vornStsNoErr);
            ASSERT_EQ(logSum(src, dst, len), vornStsNoErr);
            EXPECT_EQ(RoundingMode::current(), mode);
            model::logAddVector(a.data(), expected.data(), len);
            const TypeParam sum = model::logSum(a.data(), len);
            EXPECT_TRUE(sameBits(srcDst.values(), expected)) << "len " << len << " mode " << mode;
            EXPECT_TRUE(sameBits(dst.data(), &sum, 1)) << "len " << len << " mode " << mode;
        }
    }
}

TEST(LogSum, OneElementIsCopied) {
    Guarded<float> single{-5e7f}, singleSum(1);
    ASSERT_EQ(vornsLogSum_32f(single, singleSum, 1), vornStsNoErr);
    EXPECT_EQ(singleSum[0], -5e7f);
    Guarded<double> wide{-5e10}, wideSum(1);
    ASSERT_EQ(vornsLogSum_64f(wide, wideSum, 1), vornStsNoErr);
    EXPECT_EQ(wideSum[0], -5e10);
    Guarded<Vorn32s> fixed{123456789}, fixedSum(1);
    ASSERT_EQ(vornsLogSum_32s_Sfs(fixed, fixedSum, 1, 5), vornStsNoErr);
    EXPECT_EQ(fixedSum[0], 123456789) << "no scaling";
    Guarded<Vorn16s> small{-12345}, smallSum(1);
    ASSERT_EQ(vornsLogSum_16s_Sfs(small, smallSum, 1, -5), vornStsNoErr);
    EXPECT_EQ(smallSum[0], -12345);
}

TEST(LogSum, FixedSumTruncates) {
    Guarded<Vorn16s> src{100, 100}, dst(1);
    ASSERT_EQ(vornsLogSum_16s_Sfs(src, dst, 2, 0), vornStsNoErr);
    EXPECT_EQ(dst[0], 100);  // 100.693
    Guarded<Vorn32s> wide{-100, -100}, wideDst(1);
    ASSERT_EQ(vornsLogSum_32s_Sfs(wide, wideDst, 2, 0), vornStsNoErr);
    EXPECT_EQ(wideDst[0], -99);  // -99.307
}

TEST(LogSum, FixedSumSaturates) {
    Guarded<Vorn32s> dst(1);
    Guarded<Vorn32s> shortSum{most, most}, longSum{most, most, most, most, most, most, most};
    ASSERT_EQ(vornsLogSum_32s_Sfs(shortSum, dst, 2, 0), vornStsNoErr);
    EXPECT_EQ(dst[0], most);
    // In the long path the sum is the single 2147483648.0, which is not above the limit and converts to the smallest.
    ASSERT_EQ(vornsLogSum_32s_Sfs(longSum, dst, 7, 0), vornStsNoErr);
    EXPECT_EQ(dst[0], least);
    // Above it: with so small a unit the added logarithm counts.
    ASSERT_EQ(vornsLogSum_32s_Sfs(longSum, dst, 7, 31), vornStsNoErr);
    EXPECT_EQ(dst[0], most);
    // The floor of a dropped term stands above everything that this scale can say.
    Guarded<Vorn32s> low{least, least + 20000000};
    ASSERT_EQ(vornsLogSum_32s_Sfs(low, dst, 2, 0), vornStsNoErr);
    EXPECT_EQ(dst[0], -4500000);
    Guarded<Vorn16s> small{32767, 32767}, smallDst(1);
    ASSERT_EQ(vornsLogSum_16s_Sfs(small, smallDst, 2, 0), vornStsNoErr);
    EXPECT_EQ(smallDst[0], 32767);
    Guarded<Vorn16s> smallest{-32768, -31000};
    ASSERT_EQ(vornsLogSum_16s_Sfs(smallest, smallDst, 2, -7), vornStsNoErr);
    EXPECT_EQ(smallDst[0], -31000);
    ASSERT_EQ(vornsLogSum_16s_Sfs(smallest, smallDst, 2, -8), vornStsNoErr);
    EXPECT_EQ(smallDst[0], -17578);  // -4500000 / 256 = -17578.1
}

TYPED_TEST(LogFixed, SumEveryLengthAndScale) {
    Random random(41);
    const auto check = [&](int len, int sf, int shift) {
        const auto values = fixedValues<TypeParam>(random, len, shift);
        Guarded<TypeParam> src(values), dst(1);
        ASSERT_EQ(logSum(src, dst, len, sf), vornStsNoErr);
        EXPECT_EQ(dst[0], model::logSumFixed(values.data(), len, sf))
            << "len " << len << " sf " << sf << " shift " << shift;
        EXPECT_TRUE(sameBits(src.values(), values));
        EXPECT_TRUE(dst.surroundingsUntouched());
        ASSERT_EQ(logSum(src.data(), src.data(), len, sf), vornStsNoErr) << "in place";
        EXPECT_EQ(src[0], dst[0]) << "in place";
    };
    for (int len : testLengths()) {
        check(len, 4, 8 * sizeof(TypeParam) - 9);
        check(len, 10, 4);
        check(len, 0, 0);
    }
    for (int sf : scaleFactors) {
        for (int len : {2, 6, 7, 8, 130, 200, 300}) {
            for (int shift : {0, 8, 12}) check(len, sf, shift);
        }
    }
}

// ---- Log-subtract.

// Half-ulps of exp, log and the two sums; a small difference d loses the bits of 1 - exp(d).
double subtractBound(double a, double d, double logarithm) {
    return 0x1p-52 * (2.0 / std::min(-d, 1.0) + 2.0 * std::fabs(logarithm) + std::fabs(a) + 1.0);
}
long double exactRest(double d) { return -std::expm1(static_cast<long double>(d)); }

TEST(LogSub, DoubleWithinItsBound) {
    Random random(51);
    for (int len : testLengths()) {
        std::vector<double> a(len), b(len);
        for (int i = 0; i < len; ++i) {
            a[i] = random.uniform(-100, 100);
            b[i] = a[i] - std::exp(random.uniform(-20, 3.1));
        }
        Guarded<double> src(a), srcDst(b);
        ASSERT_EQ(vornsLogSub_64f(src, srcDst, len), vornStsNoErr);
        for (int i = 0; i < len; ++i) {
            const double d = b[i] - a[i];
            const long double logarithm = std::log(exactRest(d));
            EXPECT_NEAR(srcDst[i], static_cast<double>(a[i] + logarithm),
                        subtractBound(a[i], d, static_cast<double>(logarithm)))
                << d;
        }
        EXPECT_TRUE(srcDst.surroundingsUntouched());
    }
}

TEST(LogSub, FloatWithinItsBound) {
    Random random(52);
    for (int len : testLengths()) {
        std::vector<float> a(len), b(len);
        for (int i = 0; i < len; ++i) {
            a[i] = static_cast<float>(random.uniform(-100, 100));
            b[i] = std::min(std::nextafter(a[i], -infinity),
                            static_cast<float>(a[i] - std::exp(random.uniform(-11, 2.7))));
        }
        Guarded<float> src(a), srcDst(b);
        ASSERT_EQ(vornsLogSub_32f(src, srcDst, len), vornStsNoErr);
        for (int i = 0; i < len; ++i) {
            const float d = b[i] - a[i];
            const double exact = static_cast<double>(a[i] + std::log(exactRest(d)));
            // Half an ulp of the single result beside what the double steps lose.
            EXPECT_NEAR(srcDst[i], exact, std::fabs(exact) * 0x1p-24 + subtractBound(a[i], d, exact - a[i]) + 0x1p-149)
                << d;
        }
    }
}

TYPED_TEST(LogFixed, SubtractTruncatesTheUnscaledLogarithm) {
    Random random(53);
    const auto exponential = [](double x) { return static_cast<double>(std::exp(static_cast<long double>(x))); };
    const auto logarithm = [](double x) { return static_cast<double>(std::log(static_cast<long double>(x))); };
    for (int len : testLengths()) {
        for (int sf : {0, 3, 8, -2, 31, 200, -200}) {
            std::vector<TypeParam> a(len), b(len);
            for (int i = 0; i < len; ++i) {
                a[i] = static_cast<TypeParam>(random.integer(-30000, 30000));
                b[i] = static_cast<TypeParam>(a[i] - random.integer(1, i % 2 == 0 ? 20 : 2000));
            }
            Guarded<TypeParam> src(a), srcDst(b);
            ASSERT_EQ(logSub(src, srcDst, len, sf), vornStsNoErr);
            for (int i = 0; i < len; ++i) {
                EXPECT_EQ(srcDst[i], model::logSubInteger(a[i], b[i], sf, exponential, logarithm))
                    << a[i] << " " << b[i] << " sf " << sf;
            }
            EXPECT_TRUE(srcDst.surroundingsUntouched());
        }
    }
}

// One element by the scalar functions.
double subtracted(double a, double d, double minExp, double leastRest, double small, double zero) {
    if (d >= minExp) {
        const double rest = 1.0 - vorn::exp64(d);
        return rest > leastRest ? a + vorn::log64(rest) : zero;
    }
    return a >= small ? a : zero;
}
double subtracted(double a, double b) { return subtracted(a, b - a, -23.0258509299405, 2.45e-308, -9.0e9, -1.0e10); }
double subtractedFloat(double a, double d) {
    return subtracted(a, d, -15.3195879547406, 1.0057e-37, -4500000.0, -4500000.0);
}
float subtracted(float a, float b) { return static_cast<float>(subtractedFloat(a, b - a)); }

template <class T>
void expectScalarBits(const std::vector<T>& a, const std::vector<T>& b) {
    std::vector<T> expected(b), srcDst(b);
    for (std::size_t i = 0; i < a.size(); ++i) {
        expected[i] =
            std::isnan(a[i]) || std::isnan(b[i]) ? std::numeric_limits<T>::quiet_NaN() : subtracted(a[i], b[i]);
    }
    ASSERT_EQ(logSub(a.data(), srcDst.data(), static_cast<int>(a.size())), vornStsNoErr);
    EXPECT_TRUE(sameBits(srcDst, expected));
}

// Each lane has the bits of the scalar exponential and logarithm: with a minuend of 0 the result is the logarithm.
TYPED_TEST(LogFloat, SubtractHasTheBitsOfTheScalarFunctions) {
    using T = TypeParam;
    Random random(54);
    constexpr std::size_t block = 4096;
    std::vector<T> a(block), b(block);
    for (int round = 0; round < 400; ++round) {
        for (std::size_t i = 0; i < block; ++i) {
            const double d = round % 2 == 0 ? random.uniform(-24, -1e-9) : -std::exp(random.uniform(-44, 3.2));
            a[i] = static_cast<T>(round % 4 < 2 ? 0.0 : random.uniform(-100, 100));
            b[i] = std::min(static_cast<T>(a[i] + d), std::nextafter(a[i], T(-infinity)));
        }
        expectScalarBits(a, b);
    }
}

TYPED_TEST(LogFloat, SubtractHardElementsAtEveryPosition) {
    using T = TypeParam;
    const T inf = std::numeric_limits<T>::infinity(), nan = std::numeric_limits<T>::quiet_NaN();
    std::vector<T> subtrahends = borderDifferences<T>();
    for (double d : {-0x1p-6, -4.1588830833596715, -1e-40, -1e-310, -700.0, -710.0, -1e30})
        subtrahends.push_back(static_cast<T>(d));
    subtrahends.insert(subtrahends.end(), {-inf, nan, std::numeric_limits<T>::lowest()});
    std::erase_if(subtrahends, [](T x) { return x >= T(0); });
    for (std::size_t len = 1; len <= 70; ++len) {
        for (T minuend : {T(0), T(-1e7), T(-1e10), inf, nan}) {
            std::vector<T> a(len), b(len);
            for (std::size_t i = 0; i < len; ++i) {
                a[i] = i % 4 == len % 4 ? minuend : T(0);
                b[i] = a[i] + subtrahends[(len + i * 7) % subtrahends.size()];
                if (b[i] >= a[i]) b[i] = nan;
            }
            expectScalarBits(a, b);
        }
    }
}

TYPED_TEST(LogFixed, SubtractHasTheBitsOfTheScalarFunctions) {
    using T = TypeParam;
    Random random(55);
    for (int len : testLengths()) {
        for (int sf : {0, 3, 8, -2, 31, -31, 200, -200}) {
            std::vector<T> a(len), b(len), expected(len);
            const int spread = std::is_same_v<T, Vorn32s> ? std::numeric_limits<int>::max() : 20000;
            for (int i = 0; i < len; ++i) {
                a[i] = static_cast<T>(i % 3 == 0 ? random.integer(-spread, spread) : random.integer(-10000, 10000));
                const std::int64_t difference = random.integer(1, i % 2 == 0 ? 30 : 8000);
                b[i] = static_cast<T>(a[i] - difference);  // wraps
                if constexpr (std::is_same_v<T, Vorn16s>) {
                    if (b[i] >= a[i]) b[i] = -32768, a[i] = 32767;
                }
                const float d = (static_cast<float>(b[i]) - static_cast<float>(a[i])) *
                                std::ldexp(1.0f, -sf);  // infinity and 0 at the ends
                const double r = std::clamp(subtractedFloat(a[i], d), -2147483648.0, 2147483647.0);
                expected[i] = static_cast<T>(static_cast<std::int32_t>(r));
            }
            Guarded<T> src(a), srcDst(b);
            ASSERT_EQ(logSub(src, srcDst, len, sf), vornStsNoErr);
            EXPECT_TRUE(sameBits(srcDst.values(), expected)) << "len " << len << " sf " << sf;
            EXPECT_TRUE(srcDst.surroundingsUntouched());
        }
    }
}

TEST(ElementaryLanes, HaveTheBitsOfTheScalarFunctions) {
    Random random(56);
    const auto check = [](auto lanes, auto scalar, double x, double y) {
        double argument[2] = {x, y}, result[2];
        store(result, lanes(vorn::load<vorn::f64x2>(argument)));
        const double expected[2] = {scalar(x), scalar(y)};
        ASSERT_TRUE(sameBits(result, expected, 2)) << x << " " << y;
    };
    for (int i = 0; i < 1000000; ++i) {
        const double x = random.uniform(-24, 0), y = i % 2 == 0 ? random.uniform(-700, 700) : -std::exp(x);
        check([](vorn::f64x2 v) { return vorn::expOfModerate(v); }, vorn::exp64, x, y);
        const double z = random.uniform(0x1p-60, 1), w = i % 2 == 0 ? std::exp(y) : 1.0 - std::exp(x);
        check([](vorn::f64x2 v) { return vorn::logOfNormal(v); }, vorn::log64, z, w > 0 ? w : 1.0);
        if (HasFatalFailure()) return;
    }
}

TEST(LogSub, FarBranchAndFloors) {
    {
        Guarded<double> src{5.0, -9.0e9, std::nextafter(-9.0e9, -1e11), 0.0}, srcDst{-100.0, -1e10, -1e11, -1e-320};
        ASSERT_EQ(vornsLogSub_64f(src, srcDst, 4), vornStsNoErr);
        EXPECT_EQ(srcDst[0], 5.0);
        EXPECT_EQ(srcDst[1], -9.0e9);
        EXPECT_EQ(srcDst[2], -1.0e10);
        EXPECT_EQ(srcDst[3], -1.0e10) << "1 - exp(d) is zero";
    }
    {
        Guarded<float> src{5.0f, -5000000.0f, 0.0f, -4500000.0f}, srcDst{-100.0f, -6000000.0f, -1e-40f, -4500020.0f};
        ASSERT_EQ(vornsLogSub_32f(src, srcDst, 4), vornStsNoErr);
        EXPECT_EQ(srcDst[0], 5.0f);
        EXPECT_EQ(srcDst[1], -4500000.0f);
        EXPECT_EQ(srcDst[2], -4500000.0f);
        EXPECT_EQ(srcDst[3], -4500000.0f);
    }
    {
        Guarded<Vorn32s> src{100, -6000000, 2147483647, 1000}, srcDst{0, -7000000, 0, 999};
        ASSERT_EQ(vornsLogSub_32s_Sfs(src, srcDst, 4, 0), vornStsNoErr);
        EXPECT_EQ(srcDst[0], 100);
        EXPECT_EQ(srcDst[1], -4500000) << "the floor is an integer value";
        EXPECT_EQ(srcDst[2], 2147483647);
        EXPECT_EQ(srcDst[3], 999);  // 1000 + ln(1 - 1/e) = 999.54
    }
    {
        // Equal as singles: the difference is zero and the floor stands.
        Guarded<Vorn32s> src{2147483647}, srcDst{2147483646};
        ASSERT_EQ(vornsLogSub_32s_Sfs(src, srcDst, 1, 0), vornStsNoErr);
        EXPECT_EQ(srcDst[0], -4500000);
    }
}

TEST(LogSub, SixteenBitsWrap) {
    // A scale that makes every difference zero leaves the floor -4500000, of which 16 bits keep the low half.
    Guarded<Vorn16s> src{100}, srcDst{0};
    ASSERT_EQ(vornsLogSub_16s_Sfs(src, srcDst, 1, 200), vornStsNoErr);
    EXPECT_EQ(srcDst[0], 21984);  // -4500000 + 69 x 65536
    // Below the smallest value it wraps to the positive end.
    Guarded<Vorn16s> low{-32767}, lowDst{-32768};
    ASSERT_EQ(vornsLogSub_16s_Sfs(low, lowDst, 1, 5), vornStsNoErr);
    EXPECT_EQ(lowDst[0], 32766);  // -32767 - 3.48 = -32770.48, truncated -32770
}

TEST(LogSub, AnElementNotBelowItsMinuendIsARangeError) {
    for (int len : {1, 2, 3, 4, 5, 7, 8, 15, 16, 17, 31, 32, 33, 64, 65}) {
        for (int bad = 0; bad < len; ++bad) {
            for (int excess : {0, 1}) {
                const auto check = [&]<class T>(T, auto call) {
                    std::vector<T> a(len, T(10)), b(len, T(5));
                    b[bad] = static_cast<T>(a[bad] + T(excess));
                    Guarded<T> src(a), srcDst(b);
                    EXPECT_EQ(call(src.data(), srcDst.data()), vornStsRangeErr) << len << " " << bad;
                    EXPECT_TRUE(sameBits(srcDst.values(), b));
                };
                check(0.0, [&](const double* s, double* d) { return vornsLogSub_64f(s, d, len); });
                check(0.0f, [&](const float* s, float* d) { return vornsLogSub_32f(s, d, len); });
                check(Vorn32s{}, [&](const Vorn32s* s, Vorn32s* d) { return vornsLogSub_32s_Sfs(s, d, len, 0); });
                check(Vorn16s{}, [&](const Vorn16s* s, Vorn16s* d) { return vornsLogSub_16s_Sfs(s, d, len, 0); });
            }
        }
    }
}

TEST(LogSub, DifferencesInTheElementType) {
    // 32 bits wrap: least - most is 1, and most - least is -1.
    Guarded<Vorn32s> src{most}, srcDst{least};
    EXPECT_EQ(vornsLogSub_32s_Sfs(src, srcDst, 1, 0), vornStsRangeErr);
    EXPECT_EQ(vornsLogSub_32s_Sfs(srcDst, src, 1, 0), vornStsNoErr);
    EXPECT_EQ(src[0], -4500000) << "exp of a difference above zero leaves nothing";
    // 16 bits do not.
    Guarded<Vorn16s> small{32767}, smallDst{-32768};
    EXPECT_EQ(vornsLogSub_16s_Sfs(small, smallDst, 1, 0), vornStsNoErr);
    EXPECT_EQ(smallDst[0], 32767);
    // A difference of infinities is no error; it takes the far branch.
    Guarded<float> single{infinity, infinity, -infinity}, singleDst{infinity, 0.0f, -infinity};
    EXPECT_EQ(vornsLogSub_32f(single, singleDst, 3), vornStsNoErr);
    EXPECT_EQ(singleDst[0], infinity);
    EXPECT_EQ(singleDst[1], infinity);
    EXPECT_EQ(singleDst[2], -4500000.0f);
}

// ---- The scalar log-adds.

TEST(ScalarLogAdd, ConstantLastIsRoundedOnce) {
    Random random(61);
    for (int i = 0; i < 20000; ++i) {
        const float a = static_cast<float>(random.uniform(-30, 0)), s = static_cast<float>(random.uniform(-30, 0));
        const float high = std::max(a, s);
        const float narrow = std::min(a, s) - high;
        const double d = narrow;
        float expected;
        if (d < -15.3195879547406) {
            expected = high;
        } else {
            const double* p = d > -2.55 ? model::p1single : d > -6.8 ? model::p2single : model::p3single;
            const double t = d > -2.55 ? d : d > -6.8 ? d + 2.55 : d + 6.8;
            double chain = p[0];
            for (int k = 1; k < 10; ++k) chain = chain * t + p[k];
            expected = static_cast<float>((high + chain * t) + p[10]);
        }
        EXPECT_EQ(vorn::logAddConstantLast(s, a), expected);
    }
    EXPECT_EQ(vorn::logAddConstantLast(-5000000.0f, -6000000.0f), -4500000.0f);
    EXPECT_EQ(vorn::logAddConstantLast(-6000000.0f, -5000000.0f), -4500000.0f);
}

// ---- Checks.

template <class T>
struct Arguments {
    Guarded<T> src{std::vector<T>{T(5), T(6), T(7)}};
    Guarded<T> dst{std::vector<T>{T(1), T(2), T(3)}};
    const T* srcPointer = src;
    T* dstPointer = dst;
    int len = 3;
};

template <class T>
void expectOrder(const char* name, std::function<VornStatus(Arguments<T>&)> call, bool range) {
    SCOPED_TRACE(name);
    using A = Arguments<T>;
    std::vector<test::Rule<A>> rules = {
        {"len 0", vornStsSizeErr, [](A& a) { a.len = 0; }},
        {"len negative", vornStsSizeErr, [](A& a) { a.len = std::numeric_limits<int>::min(); }},
        {"src null", vornStsNullPtrErr, [](A& a) { a.srcPointer = nullptr; }},
        {"dst null", vornStsNullPtrErr, [](A& a) { a.dstPointer = nullptr; }},
    };
    if (range) rules.push_back({"subtrahend at its minuend", vornStsRangeErr, [](A& a) { a.src[2] = a.dst[2]; }});
    test::expectCheckOrder<A>([] { return A(); }, call,
                              [](A& a) { return a.dst[0] == T(1) && a.dst[1] == T(2) && a.dst[2] == T(3); }, rules);
}

TEST(LogChecks, Order) {
    expectOrder<double>(
        "LogAdd_64f", [](auto& a) { return vornsLogAdd_64f(a.srcPointer, a.dstPointer, a.len, 0); }, false);
    expectOrder<float>(
        "LogAdd_32f", [](auto& a) { return vornsLogAdd_32f(a.srcPointer, a.dstPointer, a.len); }, false);
    expectOrder<Vorn32s>(
        "LogAdd_32s", [](auto& a) { return vornsLogAdd_32s_Sfs(a.srcPointer, a.dstPointer, a.len, 0); }, false);
    expectOrder<Vorn16s>(
        "LogAdd_16s", [](auto& a) { return vornsLogAdd_16s_Sfs(a.srcPointer, a.dstPointer, a.len, 0); }, false);
    expectOrder<double>(
        "LogSum_64f", [](auto& a) { return vornsLogSum_64f(a.srcPointer, a.dstPointer, a.len); }, false);
    expectOrder<float>(
        "LogSum_32f", [](auto& a) { return vornsLogSum_32f(a.srcPointer, a.dstPointer, a.len); }, false);
    expectOrder<Vorn32s>(
        "LogSum_32s", [](auto& a) { return vornsLogSum_32s_Sfs(a.srcPointer, a.dstPointer, a.len, 0); }, false);
    expectOrder<Vorn16s>(
        "LogSum_16s", [](auto& a) { return vornsLogSum_16s_Sfs(a.srcPointer, a.dstPointer, a.len, 0); }, false);
    expectOrder<double>(
        "LogSub_64f", [](auto& a) { return vornsLogSub_64f(a.srcPointer, a.dstPointer, a.len); }, true);
    expectOrder<float>(
        "LogSub_32f", [](auto& a) { return vornsLogSub_32f(a.srcPointer, a.dstPointer, a.len); }, true);
    expectOrder<Vorn32s>(
        "LogSub_32s", [](auto& a) { return vornsLogSub_32s_Sfs(a.srcPointer, a.dstPointer, a.len, 0); }, true);
    expectOrder<Vorn16s>(
        "LogSub_16s", [](auto& a) { return vornsLogSub_16s_Sfs(a.srcPointer, a.dstPointer, a.len, 0); }, true);
}

}  // namespace
