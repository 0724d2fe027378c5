// Gaussian scores of one vector against the scalar model, in every arithmetic.
#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <limits>

#include "model/gauss_one_vector.h"
#include "scoring/gauss/one_vector/kernels.h"
#include "support/allocation.h"
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

constexpr Vorn32s most = std::numeric_limits<Vorn32s>::max(), least = std::numeric_limits<Vorn32s>::min();

// ---- The members under one signature: x, m, v (unused by the identity covariance), len, result, val, scale factor.

template <class T, class R>
struct Member {
    const char* name;
    bool usesVar;
    std::function<VornStatus(const T*, const T*, const T*, int, R*, R, int)> call;
    std::function<R(const T*, const T*, const T*, int, R, int)> model;
    VornStatus zeroVarianceStatus = vornStsNoErr;
};

// The parameters that a lambda below takes; T and R come from the member.
#define VECTORS(T, R) const T *x, const T *m, const T *v, int n, R *r, R val, int sf
#define VALUES(T, R) const T *x, const T *m, const T *v, int n, R val, int sf

std::vector<Member<float, float>> floatMembers() {
    return {
        {"32f", true,
         [](VECTORS(float, float)) { return static_cast<void>(sf), vornsLogGaussSingle_32f(x, m, v, n, r, val); },
         [](VALUES(float, float)) { return static_cast<void>(sf), model::floatScore(x, m, v, n, val); }},
        {"IdVar_32f", false,
         [](VECTORS(float, float)) {
             return static_cast<void>(v), static_cast<void>(sf), vornsLogGaussSingle_IdVar_32f(x, m, n, r, val);
         },
         [](VALUES(float, float)) {
             return static_cast<void>(v), static_cast<void>(sf), model::floatScore(x, m, nullptr, n, val);
         }},
        {"DirectVar_32f", true,
         [](VECTORS(float, float)) {
             return static_cast<void>(sf), vornsLogGaussSingle_DirectVar_32f(x, m, v, n, r, val);
         },
         [](VALUES(float, float)) {
             return static_cast<void>(sf), model::floatScore(x, m, model::invert(v, n).inverse.data(), n, val);
         },
         vornStsDivByZero},
    };
}

std::vector<Member<double, double>> doubleMembers() {
    return {
        {"64f", true,
         [](VECTORS(double, double)) { return static_cast<void>(sf), vornsLogGaussSingle_64f(x, m, v, n, r, val); },
         [](VALUES(double, double)) { return static_cast<void>(sf), model::doubleScore(x, m, v, n, val); }},
        {"IdVar_64f", false,
         [](VECTORS(double, double)) {
             return static_cast<void>(v), static_cast<void>(sf), vornsLogGaussSingle_IdVar_64f(x, m, n, r, val);
         },
         [](VALUES(double, double)) {
             static_cast<void>(v), static_cast<void>(sf);
             const double* none = nullptr;
             return n > 54 ? val - model::pairedSum(0.0, x, m, none, 0, n) * 0.5
                           : model::doubleScore(x, m, none, n, val);
         }},
        {"DirectVar_64f", true,
         [](VECTORS(double, double)) {
             return static_cast<void>(sf), vornsLogGaussSingle_DirectVar_64f(x, m, v, n, r, val);
         },
         [](VALUES(double, double)) { return static_cast<void>(sf), model::directDouble(x, m, v, n, val); }},
    };
}

// Singles in, doubles out.
struct WidenedMember {
    const char* name;
    bool usesVar;
    std::function<VornStatus(const float*, const float*, const float*, int, double*, double)> call;
    std::function<double(const float*, const float*, const float*, int, double)> model;
};

double directWidened(const float* x, const float* m, const float* v, int n, double val) {
    double sum = 0;
    for (int j = 0; j < n; ++j) {
        const double d = static_cast<double>(x[j]) - static_cast<double>(m[j]);
        sum += d * d / static_cast<double>(v[j]);
    }
    return val - sum * 0.5;
}

std::vector<WidenedMember> widenedMembers() {
    return {
        {"32f64f", true, vornsLogGaussSingle_32f64f,
         [](auto* x, auto* m, auto* v, int n, double val) { return model::doubleScore(x, m, v, n, val); }},
        {"IdVar_32f64f", false,
         [](auto* x, auto* m, auto*, int n, double* r, double val) {
             return vornsLogGaussSingle_IdVar_32f64f(x, m, n, r, val);
         },
         [](const float* x, const float* m, const float*, int n, double val) {
             return model::doubleScore<float>(x, m, nullptr, n, val);
         }},
        {"DirectVar_32f64f", true, vornsLogGaussSingle_DirectVar_32f64f, directWidened},
    };
}

// 16-bit members differ in the type of the result, so their signature names both.
template <class R>
struct FixedMember {
    const char* name;
    bool usesVar, variances;
    std::function<VornStatus(const Vorn16s*, const Vorn16s*, const Vorn16s*, int, R*, R, int)> call;
    std::function<R(const Vorn16s*, const Vorn16s*, const Vorn16s*, int, R, int)> model;
};

std::vector<FixedMember<float>> scaledFixed() {
    return {
        {"Scaled_16s32f", true, false, vornsLogGaussSingle_Scaled_16s32f, model::scaledScore},
        {"LowScaled_16s32f", true, false, vornsLogGaussSingle_LowScaled_16s32f, model::lowScaled},
        {"IdVarScaled_16s32f", false, false,
         [](auto* x, auto* m, auto*, int n, float* r, float val, int sf) {
             return vornsLogGaussSingle_IdVarScaled_16s32f(x, m, n, r, val, sf);
         },
         [](auto* x, auto* m, auto*, int n, float val, int sf) { return model::identityScaled(x, m, n, val, sf); }},
        {"IdVarLowScaled_16s32f", false, false,
         [](auto* x, auto* m, auto*, int n, float* r, float val, int sf) {
             return vornsLogGaussSingle_IdVarLowScaled_16s32f(x, m, n, r, val, sf);
         },
         [](auto* x, auto* m, auto*, int n, float val, int sf) { return model::identityLowScaled(x, m, n, val, sf); }},
        {"DirectVarScaled_16s32f", true, true, vornsLogGaussSingle_DirectVarScaled_16s32f, model::directScaled},
    };
}

std::vector<FixedMember<Vorn32s>> integerFixed() {
    return {
        {"16s32s_Sfs", true, false, vornsLogGaussSingle_16s32s_Sfs, model::integerScore},
        {"Low_16s32s_Sfs", true, false, vornsLogGaussSingle_Low_16s32s_Sfs, model::lowInteger},
        {"IdVar_16s32s_Sfs", false, false,
         [](auto* x, auto* m, auto*, int n, Vorn32s* r, Vorn32s val, int sf) {
             return vornsLogGaussSingle_IdVar_16s32s_Sfs(x, m, n, r, val, sf);
         },
         [](auto* x, auto* m, auto*, int n, Vorn32s val, int sf) {
             return model::integerScore(x, m, nullptr, n, val, sf);
         }},
        {"IdVarLow_16s32s_Sfs", false, false,
         [](auto* x, auto* m, auto*, int n, Vorn32s* r, Vorn32s val, int sf) {
             return vornsLogGaussSingle_IdVarLow_16s32s_Sfs(x, m, n, r, val, sf);
         },
         [](auto* x, auto* m, auto*, int n, Vorn32s val, int sf) {
             return model::lowInteger(x, m, nullptr, n, val, sf);
         }},
        {"DirectVar_16s32s_Sfs", true, true, vornsLogGaussSingle_DirectVar_16s32s_Sfs, model::directInteger},
    };
}

std::vector<int> testLengths() {
    std::vector<int> lengths;
    for (int len = 1; len <= 70; ++len) lengths.push_back(len);
    for (int len : {100, 112, 127, 255}) lengths.push_back(len);
    return lengths;
}

template <class T>
std::vector<T> reals(Random& random, int n, double low, double high) {
    std::vector<T> values(n);
    for (T& x : values) x = static_cast<T>(random.uniform(low, high));
    return values;
}

// ---- Floats.

template <class T, class Members>
void expectEveryLength(const Members& members) {
    Random random(71);
    for (const auto& member : members) {
        for (int len : testLengths()) {
            const auto x = reals<T>(random, len, -20, 20), m = reals<T>(random, len, -20, 20),
                       v = reals<T>(random, len, 0.01, 3);
            const T val = static_cast<T>(random.uniform(-100, 100));
            Guarded<T> src(x), mean(m), var(v), result(1);
            ASSERT_EQ(member.call(src, mean, var, len, result, val, 0), vornStsNoErr);
            const T expected = member.model(src, mean, var, len, val, 0);
            EXPECT_TRUE(sameBits(result.data(), &expected, 1)) << member.name << " len " << len;
            EXPECT_TRUE(result.surroundingsUntouched());
        }
    }
}

TEST(GaussOneVector, FloatEveryLength) { expectEveryLength<float>(floatMembers()); }
TEST(GaussOneVector, DoubleEveryLength) { expectEveryLength<double>(doubleMembers()); }

template <class T, class Members>
void expectHardValues(const Members& members) {
    Random random(72);
    const auto hard = test::hardFloats<T>();
    const auto any = [&] {
        return hard[static_cast<std::size_t>(random.integer(0, static_cast<std::int64_t>(hard.size()) - 1))];
    };
    for (const auto& member : members) {
        for (int trial = 0; trial < 400; ++trial) {
            const int len = static_cast<int>(random.integer(1, 40));
            std::vector<T> x(len), m(len), v(len);
            for (int j = 0; j < len; ++j) x[j] = any(), m[j] = any(), v[j] = any();
            Guarded<T> src(x), mean(m), var(v), result(1);
            const T val = any();
            bool zero = false;
            for (T variance : v) zero |= variance == 0;
            EXPECT_EQ(member.call(src, mean, var, len, result, val, 0),
                      zero ? member.zeroVarianceStatus : vornStsNoErr);
            const T expected = member.model(src, mean, var, len, val, 0);
            EXPECT_TRUE(sameBits(result.data(), &expected, 1)) << member.name << " len " << len << " trial " << trial;
        }
    }
}

TEST(GaussOneVector, FloatHardValues) { expectHardValues<float>(floatMembers()); }
TEST(GaussOneVector, DoubleHardValues) { expectHardValues<double>(doubleMembers()); }

TEST(GaussOneVector, WidenedEveryLengthAndHardValues) {
    Random random(73);
    const auto hard = test::hardFloats<float>();
    for (const auto& member : widenedMembers()) {
        for (int len : testLengths()) {
            for (bool ordinary : {true, false}) {
                auto x = reals<float>(random, len, -20, 20), m = reals<float>(random, len, -20, 20),
                     v = reals<float>(random, len, 0.01, 3);
                if (!ordinary) {
                    for (float* p : {&x[len / 2], &m[len / 3], &v[len - 1]}) {
                        *p = hard[static_cast<std::size_t>(
                            random.integer(1, static_cast<std::int64_t>(hard.size()) / 2 - 1))];
                    }
                }
                const double val = random.uniform(-100, 100);
                Guarded<float> src(x), mean(m), var(v);
                Guarded<double> result(1);
                ASSERT_EQ(member.call(src, mean, var, len, result, val), vornStsNoErr);
                const double expected = member.model(src, mean, var, len, val);
                EXPECT_TRUE(sameBits(result.data(), &expected, 1)) << member.name << " len " << len;
                EXPECT_TRUE(result.surroundingsUntouched());
            }
        }
    }
}

// Addresses that are no multiple of the element's size included: the double forms look at them.
TEST(GaussOneVector, EveryAlignment) {
    Random random(74);
    for (int len : {7, 9, 17, 39, 54, 55, 60}) {
        for (std::size_t a = 0; a < 16; a += 4) {
            for (std::size_t b = 0; b < 16; b += 4) {
                for (std::size_t c = 0; c < 16; c += 4) {
                    Offset<float> x(len, a), m(len, b), v(len, c);
                    x.assign(reals<float>(random, len, -9, 9)), m.assign(reals<float>(random, len, -9, 9));
                    v.assign(reals<float>(random, len, 0.1, 3));
                    for (const auto& member : floatMembers()) {
                        float result;
                        ASSERT_EQ(member.call(x, m, v, len, &result, 1.5f, 0), vornStsNoErr);
                        const float expected = member.model(x, m, v, len, 1.5f, 0);
                        EXPECT_TRUE(sameBits(&result, &expected, 1)) << member.name << " " << a << " " << b << " " << c;
                    }
                    for (const auto& member : widenedMembers()) {
                        double result;
                        ASSERT_EQ(member.call(x, m, v, len, &result, 1.5), vornStsNoErr);
                        const double expected = member.model(x, m, v, len, 1.5);
                        EXPECT_TRUE(sameBits(&result, &expected, 1)) << member.name << " " << a << " " << b << " " << c;
                    }
                }
            }
        }
        for (std::size_t a : {0, 8}) {
            for (std::size_t b = 0; b < 16; b += 4) {
                for (std::size_t c = 0; c < 16; c += 4) {
                    Offset<double> x(len, a), m(len, b), v(len, c);
                    x.assign(reals<double>(random, len, -9, 9)), m.assign(reals<double>(random, len, -9, 9));
                    v.assign(reals<double>(random, len, 0.1, 3));
                    for (const auto& member : doubleMembers()) {
                        // Dividing reads its arrays as doubles: on their own addresses only.
                        if (std::string(member.name) == "DirectVar_64f" && (b % 8 != 0 || c % 8 != 0)) continue;
                        double result;
                        ASSERT_EQ(member.call(x, m, v, len, &result, 1.5, 0), vornStsNoErr);
                        const double expected = member.model(x, m, v, len, 1.5, 0);
                        EXPECT_TRUE(sameBits(&result, &expected, 1)) << member.name << " " << a << " " << b << " " << c;
                    }
                }
            }
        }
    }
}

TEST(GaussOneVector, SmallExample) {
    Guarded<float> src{3.0f}, mean{1.0f}, var{2.0f}, result(1);
    ASSERT_EQ(vornsLogGaussSingle_32f(src, mean, var, 1, result, 10.0f), vornStsNoErr);
    EXPECT_EQ(result[0], 6.0f);
}

TEST(GaussOneVector, AtTheMeanTheScoreIsVal) {
    Random random(75);
    for (int len : {1, 5, 8, 16, 39, 60}) {
        const auto x = reals<float>(random, len, -20, 20), v = reals<float>(random, len, 0.1, 3);
        const std::vector<double> wide(x.begin(), x.end()), wideVar(v.begin(), v.end());
        const auto fixed = random.integers<Vorn16s>(len), fixedVar = random.integers<Vorn16s>(len, 1, 32767);
        for (const auto& member : floatMembers()) {
            float result;
            ASSERT_EQ(member.call(x.data(), x.data(), v.data(), len, &result, -12.75f, 0), vornStsNoErr);
            EXPECT_EQ(result, -12.75f) << member.name;
        }
        for (const auto& member : doubleMembers()) {
            double result;
            ASSERT_EQ(member.call(wide.data(), wide.data(), wideVar.data(), len, &result, -12.75, 0), vornStsNoErr);
            EXPECT_EQ(result, -12.75) << member.name;
        }
        for (const auto& member : widenedMembers()) {
            double result;
            ASSERT_EQ(member.call(x.data(), x.data(), v.data(), len, &result, -12.75), vornStsNoErr);
            EXPECT_EQ(result, -12.75) << member.name;
        }
        for (int sf : {-3, 0, 5, 20}) {
            for (const auto& member : scaledFixed()) {
                float result;
                ASSERT_EQ(member.call(fixed.data(), fixed.data(), fixedVar.data(), len, &result, -12.75f, sf),
                          vornStsNoErr);
                EXPECT_EQ(result, -12.75f) << member.name;
            }
            for (const auto& member : integerFixed()) {
                Vorn32s result;
                ASSERT_EQ(member.call(fixed.data(), fixed.data(), fixedVar.data(), len, &result, -1275, sf),
                          vornStsNoErr);
                EXPECT_EQ(result, -1275) << member.name;
            }
        }
    }
}

// ---- 16 bits.

std::vector<int> testScaleFactors() {
    std::vector<int> factors;
    for (int sf = -20; sf <= 40; ++sf) factors.push_back(sf);
    for (int sf : {-33, -64, -100, -127, -128, -129, -1000, 47,       62,    63,       64,
                   126, 127, 128,  149,  150,  1000, most,  most - 1, least, least + 1}) {
        factors.push_back(sf);
    }
    return factors;
}

// Data of several kinds: small, wide, and at the ends of the range, where differences saturate and sums wrap.
std::vector<Vorn16s> fixedData(Random& random, int len, int kind) {
    if (kind == 0) return random.integers<Vorn16s>(len, -100, 100);
    if (kind == 1) return random.integers<Vorn16s>(len);
    std::vector<Vorn16s> values(len);
    for (Vorn16s& x : values)
        x = static_cast<Vorn16s>(random.integer(0, 1) == 0 ? -32768 + random.integer(0, 2)
                                                           : 32767 - random.integer(0, 2));
    return values;
}

template <class R>
void expectFixed(const std::vector<FixedMember<R>>& members, const std::vector<R>& vals) {
    Random random(76);
    const auto factors = testScaleFactors();
    std::size_t turn = 0;
    for (const auto& member : members) {
        for (int len : testLengths()) {
            for (int kind = 0; kind < 3; ++kind) {
                const auto x = fixedData(random, len, kind), m = fixedData(random, len, kind);
                auto v = fixedData(random, len, kind);
                if (member.variances) {
                    for (Vorn16s& variance : v) variance = static_cast<Vorn16s>(variance == 0 ? 1 : variance);
                }
                Guarded<Vorn16s> src(x), mean(m), var(v);
                Guarded<R> result(1);
                // All factors at the lengths that make every remainder, a few at the others.
                const std::size_t count = len <= 24 ? factors.size() : 9;
                for (std::size_t k = 0; k < count; ++k, ++turn) {
                    const int sf = factors[turn % factors.size()];
                    const R val = vals[turn % vals.size()];
                    ASSERT_EQ(member.call(src, mean, var, len, result, val, sf), vornStsNoErr);
                    const R expected = member.model(x.data(), m.data(), v.data(), len, val, sf);
                    EXPECT_TRUE(sameBits(result.data(), &expected, 1))
                        << member.name << " len " << len << " kind " << kind << " sf " << sf << " val " << val;
                }
                EXPECT_TRUE(result.surroundingsUntouched());
            }
        }
    }
}

TEST(GaussOneVector, ScaledFormsEveryLengthAndScaleFactor) { expectFixed<float>(scaledFixed(), {0.0f, -37.5f, 1e6f}); }
TEST(GaussOneVector, IntegerFormsEveryLengthAndScaleFactor) {
    expectFixed<Vorn32s>(integerFixed(), {0, -3750, 123456789, most, least});
}

TEST(GaussOneVector, FixedFormsAtEveryAlignment) {
    Random random(77);
    for (int len : {9, 31, 47}) {
        for (std::size_t a = 0; a < 16; a += 2) {
            for (std::size_t b = 0; b < 16; b += 6) {
                Offset<Vorn16s> x(len, a), m(len, b), v(len, (a + b) % 16);
                x.assign(random.integers<Vorn16s>(len)), m.assign(random.integers<Vorn16s>(len));
                v.assign(random.integers<Vorn16s>(len, 1, 32767));
                for (const auto& member : scaledFixed()) {
                    float result;
                    ASSERT_EQ(member.call(x, m, v, len, &result, 2.5f, 7), vornStsNoErr);
                    const float expected = member.model(x, m, v, len, 2.5f, 7);
                    EXPECT_TRUE(sameBits(&result, &expected, 1)) << member.name << " " << a << " " << b;
                }
                for (const auto& member : integerFixed()) {
                    Vorn32s result;
                    ASSERT_EQ(member.call(x, m, v, len, &result, 25, 7), vornStsNoErr);
                    EXPECT_EQ(result, member.model(x, m, v, len, 25, 7)) << member.name << " " << a << " " << b;
                }
            }
        }
    }
}

TEST(GaussOneVector, TheGroupsSaturateAndTheTailDoesNot) {
    // A group of eight with d = 32767 (saturated from 32768) in one element; then the same element in the tail.
    std::vector<Vorn16s> x(8, 0), m(8, 0), v(8, 1);
    x[0] = 32767, m[0] = -1;
    float result;
    ASSERT_EQ(vornsLogGaussSingle_Scaled_16s32f(x.data(), m.data(), v.data(), 8, &result, 0.0f, -1), vornStsNoErr);
    EXPECT_EQ(result, -32767.0f * 32767.0f);
    ASSERT_EQ(vornsLogGaussSingle_Scaled_16s32f(x.data(), m.data(), v.data(), 7, &result, 0.0f, -1), vornStsNoErr);
    EXPECT_EQ(result, -32768.0f * 32768.0f);
    // Both in one call.
    x.push_back(32767), m.push_back(-1), v.push_back(1);
    ASSERT_EQ(vornsLogGaussSingle_Scaled_16s32f(x.data(), m.data(), v.data(), 9, &result, 0.0f, -1), vornStsNoErr);
    EXPECT_EQ(result, -(32767.0f * 32767.0f + 32768.0f * 32768.0f));
    // The exact integer sum of the identity covariance saturates in the tail too.
    ASSERT_EQ(vornsLogGaussSingle_IdVarScaled_16s32f(x.data(), m.data(), 7, &result, 0.0f, -1), vornStsNoErr);
    EXPECT_EQ(result, -32767.0f * 32767.0f);
}

TEST(GaussOneVector, LowPrecisionLosesTheLowestBit) {
    const Vorn16s two = 2, three = 3, zero = 0, four = 4, one = 1;
    Vorn32s result;
    ASSERT_EQ(vornsLogGaussSingle_Low_16s32s_Sfs(&two, &zero, &four, 1, &result, 0, 0), vornStsNoErr);
    EXPECT_EQ(result, -8);
    ASSERT_EQ(vornsLogGaussSingle_Low_16s32s_Sfs(&three, &zero, &one, 1, &result, 0, 0), vornStsNoErr);
    EXPECT_EQ(result, -4);
    ASSERT_EQ(vornsLogGaussSingle_IdVarLow_16s32s_Sfs(&three, &zero, 1, &result, 0, 0), vornStsNoErr);
    EXPECT_EQ(result, -4);
}

TEST(GaussOneVector, LowPrecisionLastElement) {
    // 32767 - (-32768) = 65535: saturated with variances, -1 modulo 2^16 without, exact with a negative scale factor.
    const Vorn16s x = 32767, m = -32768, v = 1;
    Vorn32s result;
    ASSERT_EQ(vornsLogGaussSingle_Low_16s32s_Sfs(&x, &m, &v, 1, &result, 0, 0), vornStsNoErr);
    EXPECT_EQ(result, -((16383 << 15) + 0));  // 32767^2 = 16383 x 65536 + 1
    ASSERT_EQ(vornsLogGaussSingle_IdVarLow_16s32s_Sfs(&x, &m, 1, &result, 0, 0), vornStsNoErr);
    EXPECT_EQ(result, 0);
    ASSERT_EQ(vornsLogGaussSingle_IdVarLow_16s32s_Sfs(&x, &m, 1, &result, 0, -1), vornStsNoErr);
    EXPECT_EQ(result, 131072);  // -(65535^2 >> 1) x 2 wraps in 32 bits
}

TEST(GaussOneVector, OverflowOfTheRoundedFormGivesTheSmallest) {
    const Vorn16s x = 0, v = 1;
    Vorn32s result;
    ASSERT_EQ(vornsLogGaussSingle_16s32s_Sfs(&x, &x, &v, 1, &result, most, 0), vornStsNoErr);
    EXPECT_EQ(result, least) << "the largest integer is 2147483648 as a single";
    const Vorn16s one = 1;
    ASSERT_EQ(vornsLogGaussSingle_16s32s_Sfs(&one, &x, &v, 1, &result, 1, 0), vornStsNoErr);
    EXPECT_EQ(result, 0) << "0.5 to even";
    ASSERT_EQ(vornsLogGaussSingle_16s32s_Sfs(&one, &x, &v, 1, &result, 2, 0), vornStsNoErr);
    EXPECT_EQ(result, 2) << "1.5 to even";
}

TEST(GaussOneVector, TwoLargestSquaresWrapInThePairSums) {
    const std::vector<Vorn16s> x(2, -32768), m(2, 0);
    float result;
    ASSERT_EQ(vornsLogGaussSingle_IdVarLowScaled_16s32f(x.data(), m.data(), 2, &result, 0.0f, -1), vornStsNoErr);
    EXPECT_EQ(result, 2147483648.0f);
    ASSERT_EQ(vornsLogGaussSingle_IdVarScaled_16s32f(x.data(), m.data(), 2, &result, 0.0f, -1), vornStsNoErr);
    EXPECT_EQ(result, -2147483648.0f);
}

TEST(GaussOneVector, ExactSquaresOfALongVector) {
    // Above 65536 steps of the widest vectors, all squares at their largest.
    const int len = 65536 * 32 + 100;
    const std::vector<Vorn16s> x(static_cast<std::size_t>(len), -32768), m(static_cast<std::size_t>(len), 0);
    float result;
    ASSERT_EQ(vornsLogGaussSingle_IdVarScaled_16s32f(x.data(), m.data(), len, &result, 0.0f, -1), vornStsNoErr);
    EXPECT_EQ(result, -static_cast<float>(static_cast<double>(len) * 0x1p30));
}

template <class Members, class T, class R>
void expectInMode(const Members& members, const std::vector<T>& x, const std::vector<T>& m, const std::vector<T>& v,
                  R val, unsigned mode) {
    const int len = static_cast<int>(x.size());
    for (const auto& member : members) {
        const test::RoundingMode rounding(mode);
        R result;
        EXPECT_EQ(member.call(x.data(), m.data(), v.data(), len, &result, val, 3), vornStsNoErr);
        EXPECT_EQ(test::RoundingMode::current(), mode) << member.name;
        const R expected = member.model(x.data(), m.data(), v.data(), len, val, 3);
        EXPECT_TRUE(sameBits(&result, &expected, 1)) << member.name << " mode " << mode << " len " << len;
    }
}
TEST(GaussOneVector, RoundingModes) {
    using test::RoundingMode;
    Random random(78);
    for (unsigned mode : {RoundingMode::nearest, RoundingMode::down, RoundingMode::up, RoundingMode::towardZero}) {
        for (int len : {3, 8, 13, 39, 60}) {
            const auto x = random.integers<Vorn16s>(len, -300, 300), m = random.integers<Vorn16s>(len, -300, 300),
                       v = random.integers<Vorn16s>(len, 1, 90);
            expectInMode(integerFixed(), x, m, v, 77, mode);
            expectInMode(scaledFixed(), x, m, v, 7.7f, mode);
            expectInMode(floatMembers(), reals<float>(random, len, -9, 9), reals<float>(random, len, -9, 9),
                         reals<float>(random, len, 0.1, 3), 1.7f, mode);
            expectInMode(doubleMembers(), reals<double>(random, len, -9, 9), reals<double>(random, len, -9, 9),
                         reals<double>(random, len, 0.1, 3), 1.7, mode);
        }
    }
}

// ---- Variances of zero, and scratch memory.

TEST(GaussOneVector, ZeroVariances) {
    const float infinity = std::numeric_limits<float>::infinity();
    for (int len : {1, 7, 8, 20, 40}) {
        for (int at : {0, len / 2, len - 1}) {
            std::vector<float> x(len, 3.0f), m(len, 1.0f), v(len, 2.0f);
            v[at] = 0.0f;
            float result = 0;
            EXPECT_EQ(vornsLogGaussSingle_DirectVar_32f(x.data(), m.data(), v.data(), len, &result, 10.0f),
                      vornStsDivByZero);
            EXPECT_EQ(result, -infinity);
            double wide = 123.0;
            EXPECT_EQ(vornsLogGaussSingle_DirectVar_32f64f(x.data(), m.data(), v.data(), len, &wide, 10.0),
                      vornStsDivByZero);
            EXPECT_EQ(wide, 123.0) << "left unwritten";
            const std::vector<double> wx(x.begin(), x.end()), wm(m.begin(), m.end()), wv(v.begin(), v.end());
            EXPECT_EQ(vornsLogGaussSingle_DirectVar_64f(wx.data(), wm.data(), wv.data(), len, &wide, 10.0),
                      vornStsNoErr);
            EXPECT_EQ(wide, -static_cast<double>(infinity));
            const std::vector<Vorn16s> fx(x.begin(), x.end()), fm(m.begin(), m.end()), fv(v.begin(), v.end());
            EXPECT_EQ(
                vornsLogGaussSingle_DirectVarScaled_16s32f(fx.data(), fm.data(), fv.data(), len, &result, 10.0f, 2),
                vornStsDivByZero);
            EXPECT_EQ(result, -infinity);
            Vorn32s integer;
            EXPECT_EQ(vornsLogGaussSingle_DirectVar_16s32s_Sfs(fx.data(), fm.data(), fv.data(), len, &integer, 10, 2),
                      vornStsDivByZero);
            EXPECT_EQ(integer, 10 - most);
            // At the mean the term is 0 x infinity, not a number: the smallest integer is subtracted.
            EXPECT_EQ(vornsLogGaussSingle_DirectVar_16s32s_Sfs(fx.data(), fx.data(), fv.data(), len, &integer, 10, 2),
                      vornStsDivByZero);
            EXPECT_EQ(integer, most);
        }
    }
}

TEST(GaussOneVector, ScratchNotObtained) {
    if (!test::FailAllocation::available()) GTEST_SKIP() << "the sanitizer's allocator stands in the place of ours";
    const std::vector<float> x(20, 1.0f);
    const std::vector<Vorn16s> y(20, 1);
    float single = 5.0f;
    Vorn32s integer = 5;
    const auto expectFailure = [&](const char* name, auto call) {
        {
            test::FailAllocation watch(0);
            EXPECT_EQ(call(), vornStsNoErr) << name;
            EXPECT_EQ(watch.calls(), 1) << name;
            EXPECT_EQ(watch.outstanding(), 0) << name;
        }
        single = 5.0f, integer = 5;
        test::FailAllocation watch(1);
        EXPECT_EQ(call(), vornStsMemAllocErr) << name;
        EXPECT_EQ(watch.outstanding(), 0) << name;
        EXPECT_EQ(single, 5.0f) << name;
        EXPECT_EQ(integer, 5) << name;
    };
    expectFailure("DirectVar_32f",
                  [&] { return vornsLogGaussSingle_DirectVar_32f(x.data(), x.data(), x.data(), 20, &single, 1.0f); });
    expectFailure("DirectVarScaled", [&] {
        return vornsLogGaussSingle_DirectVarScaled_16s32f(y.data(), y.data(), y.data(), 20, &single, 1.0f, 0);
    });
    expectFailure("DirectVar_16s32s", [&] {
        return vornsLogGaussSingle_DirectVar_16s32s_Sfs(y.data(), y.data(), y.data(), 20, &integer, 1, 0);
    });
    // Lengths whose scratch an int cannot count are exhausted memory, before anything is read.
    EXPECT_EQ(vornsLogGaussSingle_DirectVar_32f(x.data(), x.data(), x.data(), most, &single, 1.0f), vornStsMemAllocErr);
    EXPECT_EQ(vornsLogGaussSingle_DirectVarScaled_16s32f(y.data(), y.data(), y.data(), most / 2, &single, 1.0f, 0),
              vornStsMemAllocErr);
    EXPECT_EQ(vornsLogGaussSingle_DirectVar_16s32s_Sfs(y.data(), y.data(), y.data(), most / 5, &integer, 1, 0),
              vornStsMemAllocErr);
}

// ---- Kernels under their names.

// Each kernel under its own name and under that for aligned data, against the model.
TEST(GaussOneVectorKernels, UnderTheirNames) {
    Random random(79);
    constexpr int len = 61;
    const auto fixedX = random.integers<Vorn16s>(len), fixedM = random.integers<Vorn16s>(len),
               fixedV = random.integers<Vorn16s>(len);
    const auto floatX = reals<float>(random, len, -9, 9), floatM = reals<float>(random, len, -9, 9),
               floatV = reals<float>(random, len, 0.1, 3);
    const auto doubleX = reals<double>(random, len, -9, 9), doubleM = reals<double>(random, len, -9, 9),
               doubleV = reals<double>(random, len, 0.1, 3);
    const Vorn16s *x = fixedX.data(), *m = fixedM.data(), *v = fixedV.data(), *none = nullptr;
    const float *a = floatX.data(), *b = floatM.data(), *c = floatV.data();
    const double *p = doubleX.data(), *q = doubleM.data(), *w = doubleV.data(), *noDoubles = nullptr;
    const float val = 2.5f, scale = 0.125f;
    const double wideVal = 2.5;
    const auto expectBoth = [](auto* kernel, auto* aligned, auto expected, const auto& callOf) {
        for (auto* either : {kernel, aligned}) {
            Guarded<decltype(expected)> result(1);
            callOf(either, result.data());
            EXPECT_TRUE(sameBits(result.data(), &expected, 1));
            EXPECT_TRUE(result.surroundingsUntouched());
        }
    };
    expectBoth(vornsLGaussSingle_32f_M7, vornsLGaussSingle_32f_M7_Al, model::floatScore(a, b, c, len, val),
               [&](auto* kernel, float* r) { kernel(a, b, c, len, r, &val); });
    expectBoth(vornsLGaussSingle_IdVar_32f_M7, vornsLGaussSingle_IdVar_32f_M7_Al,
               model::floatScore(a, b, nullptr, len, val), [&](auto* kernel, float* r) { kernel(a, b, len, r, &val); });
    expectBoth(ownvornsLogGaussSingle_IdVar_64f_W7, ownvornsLogGaussSingle_IdVar_64f_W7Al,
               wideVal - model::pairedSum(0.0, p, q, noDoubles, 0, len) * 0.5,
               [&](auto* kernel, double* r) { kernel(p, q, len, r, &wideVal); });
    expectBoth(ownvornsLogGaussSingle_DirectVar_64f_W7, ownvornsLogGaussSingle_DirectVar_64f_W7Al,
               model::directDouble(p, q, w, len, wideVal),
               [&](auto* kernel, double* r) { kernel(p, q, w, len, r, &wideVal); });
    expectBoth(vornsLGaussSingle_16s32f_M7, vornsLGaussSingle_16s32f_M7_Al, val - model::fixedSum(x, m, v, len) * scale,
               [&](auto* kernel, float* r) { kernel(x, m, v, len, r, &val, &scale); });
    expectBoth(vornsLGaussSingle_IdVar_16s32f_M7, vornsLGaussSingle_IdVar_16s32f_M7_Al,
               model::identityScaled(x, m, len, val, 2),
               [&](auto* kernel, float* r) { kernel(x, m, len, r, &val, &scale); });
    expectBoth(vornsLGaussSingle_DirectVarScaled_16s32f_M7, vornsLGaussSingle_DirectVarScaled_16s32f_M7_Al,
               val - model::fixedSum(x, m, c, len) * 0.5f * scale,
               [&](auto* kernel, float* r) { kernel(x, m, c, len, r, &val, &scale); });
    expectBoth(vornsLGaussSingle_16s32s_Sfs_M7, vornsLGaussSingle_16s32s_Sfs_M7_Al,
               model::integerScore(x, m, v, len, 99, 20),
               [&](auto* kernel, Vorn32s* r) { kernel(x, m, v, len, r, 99, 20); });
    expectBoth(vornsLGaussSingle_IdVar_16s32s_Sfs_M7, vornsLGaussSingle_IdVar_16s32s_Sfs_M7_Al,
               model::integerScore(x, m, nullptr, len, 99, 9),
               [&](auto* kernel, Vorn32s* r) { kernel(x, m, len, r, 99, 9); });
    expectBoth(vornsLGaussSingleLow_16s32f_M7, vornsLGaussSingleLow_16s32f_M7_Al,
               model::lowScaled(x, m, v, len, val, 9),
               [&](auto* kernel, float* r) { kernel(x, m, v, len, r, &val, 9); });
    expectBoth(vornsLGaussSingleLow_16s32s_Sfs_M7, vornsLGaussSingleLow_16s32s_Sfs_M7_Al,
               model::lowInteger(x, m, v, len, 99, 9),
               [&](auto* kernel, Vorn32s* r) { kernel(x, m, v, len, r, 99, 9); });
    expectBoth(vornsLGaussSingleLow_IdVar_16s32s_Sfs_M7, vornsLGaussSingleLow_IdVar_16s32s_Sfs_M7_Al,
               model::lowInteger(x, m, none, len, 99, 9),
               [&](auto* kernel, Vorn32s* r) { kernel(x, m, len, r, 99, 9); });
    expectBoth(vornsLGaussSingle_IdVarLow_16s32f_M7, vornsLGaussSingle_IdVarLow_16s32f_M7_Al,
               model::identityLowScaled(x, m, len, val, 9),
               [&](auto* kernel, float* r) { kernel(x, m, len, r, &val, 9); });
}

// ---- Checks.

template <class T, class R>
struct Arguments {
    std::vector<T> data = std::vector<T>(4, T(2));
    Guarded<R> result = Guarded<R>(std::size_t{1});
    const T *src = data.data(), *mean = data.data(), *var = data.data();
    R* to = result;
    int len = 4;
};

template <class T, class R>
void expectOrder(const char* name, bool usesVar, std::function<VornStatus(Arguments<T, R>&)> call) {
    SCOPED_TRACE(name);
    using A = Arguments<T, R>;
    std::vector<test::Rule<A>> rules = {
        {"src null", vornStsNullPtrErr, [](A& a) { a.src = nullptr; }},
        {"mean null", vornStsNullPtrErr, [](A& a) { a.mean = nullptr; }},
        {"result null", vornStsNullPtrErr, [](A& a) { a.to = nullptr; }},
        {"len 0", vornStsSizeErr, [](A& a) { a.len = 0; }},
        {"len negative", vornStsSizeErr, [](A& a) { a.len = least; }},
    };
    if (usesVar) rules.insert(rules.begin(), {"var null", vornStsNullPtrErr, [](A& a) { a.var = nullptr; }});
    test::expectCheckOrder<A>([] { return A(); }, call, [](A& a) { return a.result.untouched(); }, rules);
}

TEST(GaussOneVectorChecks, Order) {
    for (const auto& member : floatMembers()) {
        expectOrder<float, float>(member.name, member.usesVar,
                                  [&](auto& a) { return member.call(a.src, a.mean, a.var, a.len, a.to, 1.0f, 0); });
    }
    for (const auto& member : doubleMembers()) {
        expectOrder<double, double>(member.name, member.usesVar,
                                    [&](auto& a) { return member.call(a.src, a.mean, a.var, a.len, a.to, 1.0, 0); });
    }
    for (const auto& member : widenedMembers()) {
        expectOrder<float, double>(member.name, member.usesVar,
                                   [&](auto& a) { return member.call(a.src, a.mean, a.var, a.len, a.to, 1.0); });
    }
    for (const auto& member : scaledFixed()) {
        expectOrder<Vorn16s, float>(member.name, member.usesVar,
                                    [&](auto& a) { return member.call(a.src, a.mean, a.var, a.len, a.to, 1.0f, 2); });
    }
    for (const auto& member : integerFixed()) {
        expectOrder<Vorn16s, Vorn32s>(member.name, member.usesVar,
                                      [&](auto& a) { return member.call(a.src, a.mean, a.var, a.len, a.to, 1, 2); });
    }
}

// Half of a sum is rounded as it stands, not as the mirror image of its negative: three times the smallest double has a
// half between once and twice that.
TEST(LogGaussSingle, HalfASumIsRoundedInTheCallersMode) {
    const double smallest = std::numeric_limits<double>::denorm_min(), src = 1, mean = 0, var = 3 * smallest;
    const double* rows[] = {&var};
    const int size = 1;
    VornBlockDMatrix_64f* matrix = nullptr;
    ASSERT_EQ(vornsBlockDMatrixInitAlloc_64f(&matrix, rows, &size, 1), vornStsNoErr);
    double down = 7, up = 7, blockDown = 7, blockUp = 7;
    {
        const test::RoundingMode mode(test::RoundingMode::down);
        vornsLogGaussSingle_64f(&src, &mean, &var, 1, &down, 0);
        vornsLogGaussSingle_BlockDVar_64f(&src, &mean, matrix, 1, &blockDown, 0);
    }
    {
        const test::RoundingMode mode(test::RoundingMode::up);
        vornsLogGaussSingle_64f(&src, &mean, &var, 1, &up, 0);
        vornsLogGaussSingle_BlockDVar_64f(&src, &mean, matrix, 1, &blockUp, 0);
    }
    EXPECT_EQ(down, -smallest);
    EXPECT_EQ(up, -2 * smallest);
    EXPECT_EQ(blockDown, -smallest);
    EXPECT_EQ(blockUp, -2 * smallest);
    EXPECT_EQ(vornsBlockDMatrixFree_64f(matrix), vornStsNoErr);
}

}  // namespace
