// Scalar curves and small tools.
#include "model/curves.h"

#include <algorithm>
#include <bit>
#include <climits>
#include <cmath>
#include <functional>
#include <limits>
#include <numbers>
#include <numeric>
#include <vector>

#include "support/allocation.h"
#include "support/expect.h"
#include "support/guarded.h"
#include "support/members.h"
#include "support/precise.h"
#include "support/rounding_mode.h"
#include "support/values.h"
#include "support/vectors.h"
#include "vornsr.h"

namespace {

using test::Guarded;
using test::Offset;
using test::Random;
using test::RoundingMode;
using test::same;
using test::sameBits;

constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr float infinityF = std::numeric_limits<float>::infinity();
constexpr float nanF = std::numeric_limits<float>::quiet_NaN();
constexpr unsigned modes[] = {RoundingMode::nearest, RoundingMode::down, RoundingMode::up, RoundingMode::towardZero};

// ---- What holds for all members that a row can say.

TEST(Curves, ChecksAndAlignments) {
    const test::Member members[] = {
        MEMBER(vornsSinC_32f),         MEMBER(vornsSinC_32f64f),   MEMBER(vornsSinC_64f),
        MEMBER(vornsSinC_32f_I),       MEMBER(vornsSinC_64f_I),    MEMBER(vornsExpNegSqr_32f),
        MEMBER(vornsExpNegSqr_32f64f), MEMBER(vornsExpNegSqr_64f), MEMBER(vornsExpNegSqr_32f_I),
        MEMBER(vornsExpNegSqr_64f_I),  MEMBER(vornsUnitCurve_32f), MEMBER(vornsUnitCurve_32f_I),
        MEMBER(vornsEntropy_32f),
    };
    for (const test::Member& member : members) {
        test::expectPointersThenLength(member);
        test::expectNoAlignmentChangesAResult(member);
    }
}

// A function of vectors by its arguments in their order; null stands for any pointer in turn, and nothing is written.
struct Call {
    std::function<VornStatus(bool good1, bool good2, bool good3, int len, bool goodValue)> run;
    int pointers;
    bool hasValue;
};

// Breaks each rule alone and each pair at once.
void expectOrder(const char* name, const Call& call) {
    SCOPED_TRACE(name);
    for (int pointer = 0; pointer <= call.pointers; ++pointer) {
        for (int len : {5, 0, -1, INT_MIN}) {
            for (bool goodValue : {true, false}) {
                if (!goodValue && !call.hasValue) continue;
                const VornStatus expected = pointer > 0  ? vornStsNullPtrErr
                                            : len < 1    ? vornStsSizeErr
                                            : !goodValue ? vornStsBadArgErr
                                                         : vornStsNoErr;
                const VornStatus status = call.run(pointer != 1, pointer != 2, pointer != 3, len, goodValue);
                if (expected == vornStsNoErr) {
                    EXPECT_GE(status, vornStsNoErr) << "the unbroken call must pass";
                } else {
                    EXPECT_EQ(status, expected) << pointer << ' ' << len << ' ' << goodValue;
                }
            }
        }
    }
}

template <class T>
T* orNull(bool good, Guarded<T>& buffer) {
    return good ? buffer.data() : nullptr;
}

// What an error must leave alone.
template <class T>
void expectKept(VornStatus status, const Guarded<T>& dst) {
    EXPECT_TRUE(status >= vornStsNoErr || dst.untouched());
}

TEST(Curves, OrderOfChecks) {
    Guarded<float> a{1, 2, 3, 4, 5}, b{5, 4, 3, 2, 1};
    Guarded<double> wideA{1, 2, 3, 4, 5}, wideB{5, 4, 3, 2, 1};
    Guarded<Vorn16s> shortA{1, 2, 3, 4, 5}, shortB{5, 4, 3, 2, 1};
    Guarded<Vorn32s> intA{1, 2, 3, 4, 5};
    using B = bool;
    // In place: the operands are kept, bit for bit.
    const auto inPlace = [](auto values, auto call, B good, int len) {
        Guarded srcDst(values);
        const VornStatus status = call(good ? srcDst.data() : nullptr, len);
        EXPECT_TRUE(status >= vornStsNoErr || sameBits(srcDst.values(), values));
        return status;
    };
    for (float badVal : {0.0f, -0.0f, -1.0f, nanF, -infinityF}) {
        expectOrder("RecSqrt_32f",
                    {[&](B p, B, B, int len, B value) {
                         return inPlace(
                             std::vector<float>{1, 2, 3, 4, 5},
                             [&](float* x, int n) { return vornsRecSqrt_32f(x, n, value ? 2.0f : badVal); }, p, len);
                     },
                     1, true});
    }
    for (int badVal : {0, -1, INT_MIN}) {
        for (bool aligned : {true, false}) {
            expectOrder("RecSqrt_32s_Sfs", {[&](B p, B, B, int len, B value) {
                                                Offset<Vorn32s> x(5, aligned ? 0 : 4);
                                                const std::vector<Vorn32s> values = {1, 2, 3, 4, 5};
                                                x.assign(values);
                                                const VornStatus status = vornsRecSqrt_32s_Sfs(
                                                    p ? x.data() : nullptr, len, value ? 2 : badVal, -3);
                                                EXPECT_TRUE(status >= vornStsNoErr || x.values() == values);
                                                return status;
                                            },
                                            1, true});
        }
        expectOrder("RecSqrt_32s16s_Sfs", {[&](B p, B q, B, int len, B value) {
                                               Guarded<Vorn16s> dst(5);
                                               const VornStatus status = vornsRecSqrt_32s16s_Sfs(
                                                   orNull(p, intA), orNull(q, dst), len, value ? 2 : badVal, -3);
                                               expectKept(status, dst);
                                               return status;
                                           },
                                           2, true});
    }
    for (int srcQ : {5, -1, 15}) {
        expectOrder("UnitCurve_16s_Sfs", {[&](B p, B q, B, int len, B) {
                                              Guarded<Vorn16s> dst(5);
                                              const VornStatus status = vornsUnitCurve_16s_Sfs(orNull(p, shortA), srcQ,
                                                                                               orNull(q, dst), len, 0);
                                              expectKept(status, dst);
                                              return status;
                                          },
                                          2, false});
        expectOrder("UnitCurve_16s_ISfs",
                    {[&](B p, B, B, int len, B) {
                         return inPlace(
                             std::vector<Vorn16s>{1, 2, 3, 4, 5},
                             [&](Vorn16s* x, int n) { return vornsUnitCurve_16s_ISfs(x, srcQ, n, 0); }, p, len);
                     },
                     1, false});
    }
    expectOrder("Entropy_16s32s_Sfs", {[&](B p, B q, B, int len, B) {
                                           Guarded<Vorn32s> dst(1);
                                           const VornStatus status =
                                               vornsEntropy_16s32s_Sfs(orNull(p, shortA), 3, len, orNull(q, dst), 0);
                                           expectKept(status, dst);
                                           return status;
                                       },
                                       2, false});
    expectOrder("ScaleLM_32f", {[&](B p, B q, B, int len, B) {
                                    Guarded<float> dst(5);
                                    const VornStatus status =
                                        vornsScaleLM_32f(orNull(p, a), orNull(q, dst), len, 2, 3, 4);
                                    expectKept(status, dst);
                                    return status;
                                },
                                2, false});
    expectOrder("ScaleLM_16s32s", {[&](B p, B q, B, int len, B) {
                                       Guarded<Vorn32s> dst(5);
                                       const VornStatus status =
                                           vornsScaleLM_16s32s(orNull(p, shortA), orNull(q, dst), len, 2, 3, 4);
                                       expectKept(status, dst);
                                       return status;
                                   },
                                   2, false});
    const auto sums = [&](const char* name, auto function, auto& x, auto& y) {
        using T = std::remove_reference_t<decltype(x[0])>;
        for (int weight2 : {2, -1}) {  // the second one cancels the first
            expectOrder(name, {[&](B p, B q, B r, int len, B) {
                                   Guarded<T> dst(5);
                                   const VornStatus status = function(orNull(p, x), orNull(q, y), orNull(r, dst), len,
                                                                      T(1), static_cast<T>(weight2));
                                   expectKept(status, dst);
                                   return status;
                               },
                               3, false});
        }
    };
    sums("WeightedSum_32f", vornsWeightedSum_32f, a, b);
    sums("WeightedSum_64f", vornsWeightedSum_64f, wideA, wideB);
    sums("WeightedSum_16s", vornsWeightedSum_16s, shortA, shortB);
    sums("WeightedSumHalf_32f", vornsWeightedSumHalf_32f, a, b);
    sums("WeightedSumHalf_64f", vornsWeightedSumHalf_64f, wideA, wideB);
    sums("WeightedSumHalf_16s", vornsWeightedSumHalf_16s, shortA, shortB);
    const auto nth = [&](const char* name, auto function, auto& x) {
        using T = std::remove_reference_t<decltype(x[0])>;
        for (int bad : {-1, 5, INT_MAX, INT_MIN}) {
            expectOrder(name, {[&](B p, B q, B, int len, B value) {
                                   Guarded<T> dst(1);
                                   const VornStatus status =
                                       function(orNull(p, x), len, value ? 2 : bad, orNull(q, dst));
                                   expectKept(status, dst);
                                   return status;
                               },
                               2, true});
        }
    };
    nth("NthMaxElement_32s", vornsNthMaxElement_32s, intA);
    nth("NthMaxElement_32f", vornsNthMaxElement_32f, a);
    nth("NthMaxElement_64f", vornsNthMaxElement_64f, wideA);
}

// ---- sinc and exp(-x^2): each element by itself, within a bound, odd and even as they are.

VornStatus sinC(const float* x, float* y, int n) { return vornsSinC_32f(x, y, n); }
VornStatus sinC(const float* x, double* y, int n) { return vornsSinC_32f64f(x, y, n); }
VornStatus sinC(const double* x, double* y, int n) { return vornsSinC_64f(x, y, n); }
VornStatus expNegSqr(const float* x, float* y, int n) { return vornsExpNegSqr_32f(x, y, n); }
VornStatus expNegSqr(const float* x, double* y, int n) { return vornsExpNegSqr_32f64f(x, y, n); }
VornStatus expNegSqr(const double* x, double* y, int n) { return vornsExpNegSqr_64f(x, y, n); }
VornStatus sinCInPlace(float* x, int n) { return vornsSinC_32f_I(x, n); }
VornStatus sinCInPlace(double* x, int n) { return vornsSinC_64f_I(x, n); }
VornStatus expNegSqrInPlace(float* x, int n) { return vornsExpNegSqr_32f_I(x, n); }
VornStatus expNegSqrInPlace(double* x, int n) { return vornsExpNegSqr_64f_I(x, n); }

struct SinC {
    template <class S, class R>
    static void of(const S* x, R* y, std::size_t n) {
        ASSERT_EQ(sinC(x, y, static_cast<int>(n)), vornStsNoErr);
    }
    template <class T>
    static void inPlace(T* x, std::size_t n) {
        ASSERT_EQ(sinCInPlace(x, static_cast<int>(n)), vornStsNoErr);
    }
};
struct ExpNegSqr {
    template <class S, class R>
    static void of(const S* x, R* y, std::size_t n) {
        ASSERT_EQ(expNegSqr(x, y, static_cast<int>(n)), vornStsNoErr);
    }
    template <class T>
    static void inPlace(T* x, std::size_t n) {
        ASSERT_EQ(expNegSqrInPlace(x, static_cast<int>(n)), vornStsNoErr);
    }
};

// Ordinary arguments, arguments of any size, and those at which the curves change their ways.
template <class T>
std::vector<T> curveArguments(std::uint64_t seed, std::size_t count) {
    Random random(seed);
    std::vector<T> x = test::hardFloats<T>();
    const double borders[] = {0.5, 10.19, 26.607, 26.615, 27.2973, 27.31, 0x1p20, 0x1p-27, 0x1p-30, 0x1p-538};
    for (double border : borders) {
        for (double sign : {-1.0, 1.0}) {
            auto below = static_cast<T>(sign * border), above = below;
            for (int i = 0; i < 4; ++i) {
                x.push_back(below);
                x.push_back(above);
                below = std::nextafter(below, static_cast<T>(-infinity));
                above = std::nextafter(above, static_cast<T>(infinity));
            }
        }
    }
    for (int k = 1; k < 40; ++k) {
        x.push_back(static_cast<T>(k * (std::numbers::pi / 2)));
        x.push_back(static_cast<T>(-k * 16001.0 * (std::numbers::pi / 2)));
    }
    while (x.size() < count) {
        x.push_back(static_cast<T>(random.uniform(-30.0, 30.0)));
        x.push_back(static_cast<T>(random.uniform(-2.0, 2.0)));
        x.push_back(static_cast<T>(std::ldexp(random.uniform(-2.0, 2.0), static_cast<int>(random.integer(-30, 30)))));
        x.push_back(random.anyBits<T>());
    }
    return x;
}

// Alone, among any neighbours, at any length, in place and out of it: the same bits.
template <class Curve, class S, class R>
void expectElementByElement() {
    const std::vector<S> all = curveArguments<S>(5, 1200);
    std::vector<R> alone(all.size());
    for (std::size_t i = 0; i < all.size(); ++i) Curve::of(&all[i], &alone[i], 1);
    Random random(6);
    for (std::size_t len : test::lengths()) {
        if (len > all.size()) break;
        const auto at = static_cast<std::size_t>(random.integer(0, static_cast<std::int64_t>(all.size() - len)));
        const auto from = all.begin() + static_cast<std::ptrdiff_t>(at);
        const Guarded<S> src(std::vector<S>(from, from + static_cast<std::ptrdiff_t>(len)));
        Guarded<R> dst(len);
        Curve::of(src.data(), dst.data(), len);
        EXPECT_TRUE(sameBits(dst.data(), &alone[at], len)) << len;
        EXPECT_TRUE(dst.surroundingsUntouched());
        if constexpr (std::is_same_v<S, R>) {
            Curve::inPlace(src.data(), len);
            EXPECT_TRUE(sameBits(src.data(), &alone[at], len)) << len << " in place";
        }
    }
    std::vector<R> whole(all.size()), mirrored(all.size());
    Curve::of(all.data(), whole.data(), all.size());
    EXPECT_TRUE(sameBits(whole, alone));
    std::vector<S> negative(all);
    for (S& x : negative) x = -x;
    Curve::of(negative.data(), mirrored.data(), all.size());
    EXPECT_TRUE(sameBits(mirrored, whole)) << "both curves are even";
    for (unsigned mode : modes) {
        std::vector<R> rounded(all.size());
        {
            const RoundingMode changed(mode);
            Curve::of(all.data(), rounded.data(), all.size());
            EXPECT_EQ(RoundingMode::current(), mode);
        }
        EXPECT_TRUE(sameBits(rounded, whole)) << "mode " << mode;
    }
}

TEST(SinC, EachElementByItself) {
    expectElementByElement<SinC, float, float>();
    expectElementByElement<SinC, float, double>();
    expectElementByElement<SinC, double, double>();
}
TEST(ExpNegSqr, EachElementByItself) {
    expectElementByElement<ExpNegSqr, float, float>();
    expectElementByElement<ExpNegSqr, float, double>();
    expectElementByElement<ExpNegSqr, double, double>();
}

template <class T>
test::Worst worstSinC(const std::vector<T>& arguments) {
    std::vector<double> result(arguments.size());
    SinC::of(arguments.data(), result.data(), arguments.size());
    test::Worst worst;
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        const auto x = static_cast<double>(arguments[i]);
        if (!std::isfinite(x)) {
            EXPECT_TRUE(std::isnan(result[i])) << x;
        } else if (x == 0.0) {
            EXPECT_EQ(result[i], 1.0);
        } else {
            const test::Precise exact(x);
            worst.meet((sin(exact) / exact).distance(result[i]), x);
        }
    }
    return worst;
}

TEST(SinC, DoublesAreWithinTheirBound) {
    std::vector<double> x = curveArguments<double>(7, 60000);
    Random random(8);
    // Where a last place of the sine weighs most: sines just below a power of two, quotients just below one.
    for (int i = 0; i < 40000; ++i) x.push_back(random.uniform(0.52, 0.7854));
    for (int i = 0; i < 20000; ++i)
        x.push_back(std::round(random.uniform(1, 667000)) * (std::numbers::pi / 2) + random.uniform(-0.8, 0.8));
    for (int i = 0; i < 2000; ++i) x.push_back(std::round(random.uniform(1, 667000)) * (std::numbers::pi / 2));
    const test::Worst worst = worstSinC(x);
    EXPECT_LE(worst.distance, 1.75) << worst.text();
    RecordProperty("worst", worst.text());
    const test::Worst fromSingles = worstSinC(curveArguments<float>(9, 40000));
    EXPECT_LE(fromSingles.distance, 1.75) << fromSingles.text();
    RecordProperty("worst from singles", fromSingles.text());
}

// The single is the quotient of a single within 0.501 units of the sine and x. (Every single: the exhaustive sweep.)
TEST(SinC, SinglesDivideARoundedSine) {
    const std::vector<float> x = curveArguments<float>(10, 40000);
    std::vector<float> result(x.size());
    SinC::of(x.data(), result.data(), x.size());
    for (std::size_t i = 0; i < x.size(); ++i) {
        if (!std::isfinite(x[i]) || x[i] == 0) {
            EXPECT_TRUE(same(result[i], x[i] == 0 ? 1.0f : nanF)) << x[i];
            continue;
        }
        const test::Precise exact = sin(test::Precise(static_cast<double>(x[i])));
        const float sine = exact.toFloat();
        bool found = false;
        for (float candidate : {sine, std::nextafter(sine, -2.0f), std::nextafter(sine, 2.0f)}) {
            found = found || (exact.distance(candidate) <= 0.501 && same(result[i], candidate / x[i]));
        }
        EXPECT_TRUE(found) << test::show(x[i]) << ' ' << test::show(result[i]);
    }
}

TEST(SinC, SpecialCases) {
    const float x[] = {0.0f,        -0.0f,        0x1p-149f, -0x1p-126f, 0x1p-20f,
                       3.14159274f, -3.14159274f, infinityF, -infinityF, nanF};
    float y[10];
    double wide[10];
    SinC::of(x, y, 10);
    SinC::of(x, wide, 10);
    for (int i = 0; i < 5; ++i) EXPECT_EQ(y[i], 1.0f) << i;
    for (int i = 0; i < 4; ++i) EXPECT_EQ(wide[i], 1.0) << i;
    EXPECT_EQ(wide[4], 1.0 - 0x1p-40 / 6) << "1 - x^2/6";
    // The single nearest to pi is 8.742278e-8 above it.
    EXPECT_FLOAT_EQ(y[5], -8.742278e-8f / 3.14159274f);
    EXPECT_EQ(y[5], y[6]);
    EXPECT_NE(y[5], 0.0f);
    for (int i = 7; i < 10; ++i) {
        EXPECT_TRUE(std::isnan(y[i])) << i;
        EXPECT_TRUE(std::isnan(wide[i])) << i;
    }
    const double pi[] = {std::numbers::pi, std::numbers::pi / 2};
    SinC::of(pi, wide, 2);
    EXPECT_EQ(wide[0], 0x1.1a62633145c07p-53 / std::numbers::pi);
    EXPECT_EQ(wide[1], 1.0 / (std::numbers::pi / 2));
}

TEST(ExpNegSqr, DoublesAreTheExponentialsOfTheSquare) {
    const std::vector<double> x = curveArguments<double>(11, 20000);
    std::vector<double> result(x.size());
    ExpNegSqr::of(x.data(), result.data(), x.size());
    test::Worst worst;
    for (std::size_t i = 0; i < x.size(); ++i) {
        volatile double square = x[i] * x[i];
        if (std::isnan(square)) {
            EXPECT_TRUE(std::isnan(result[i]));
        } else if (square > 800.0) {
            EXPECT_TRUE(same(result[i], 0.0)) << test::show(x[i]);
        } else {
            worst.meet(exp(test::Precise(-square)).distance(result[i]), x[i]);
        }
    }
    EXPECT_LE(worst.distance, 0.511) << worst.text();
    RecordProperty("worst", worst.text());
}

// The square of a single is exact in double: the bound is that of exp(-x^2) itself.
TEST(ExpNegSqr, OfSinglesInDouble) {
    const std::vector<float> x = curveArguments<float>(12, 20000);
    std::vector<double> result(x.size());
    ExpNegSqr::of(x.data(), result.data(), x.size());
    test::Worst worst;
    for (std::size_t i = 0; i < x.size(); ++i) {
        const auto wide = static_cast<double>(x[i]);
        if (std::isnan(wide)) {
            EXPECT_TRUE(std::isnan(result[i]));
        } else if (std::fabs(wide) > 28.0) {
            EXPECT_TRUE(same(result[i], 0.0)) << wide;
        } else {
            const test::Precise exact(wide);
            worst.meet(exp(test::Precise(0.0) - exact * exact).distance(result[i]), wide);
        }
    }
    EXPECT_LE(worst.distance, 0.511) << worst.text();
    RecordProperty("worst", worst.text());
}

// The square in single. (Every single: the exhaustive sweep.)
TEST(ExpNegSqr, SinglesRoundTheSquare) {
    const std::vector<float> x = curveArguments<float>(13, 20000);
    std::vector<float> result(x.size());
    ExpNegSqr::of(x.data(), result.data(), x.size());
    test::Worst worst;
    for (std::size_t i = 0; i < x.size(); ++i) {
        volatile float square = x[i] * x[i];
        if (std::isnan(square)) {
            EXPECT_TRUE(std::isnan(result[i]));
        } else if (square > 200.0f) {
            EXPECT_TRUE(same(result[i], 0.0f));
        } else {
            worst.meet(exp(test::Precise(-static_cast<double>(square))).distance(result[i]), static_cast<double>(x[i]));
        }
    }
    EXPECT_LE(worst.distance, 0.501) << worst.text();
    RecordProperty("worst", worst.text());
}

TEST(ExpNegSqr, SpecialCases) {
    const double x[] = {0.0, -0.0, 0x1p-538, 0x1p-1074, 1.0, -1.0, 27.0, 28.0, 1e200, infinity, -infinity, NAN};
    double y[12];
    ExpNegSqr::of(x, y, 12);
    for (int i = 0; i < 4; ++i) EXPECT_EQ(y[i], 1.0);
    EXPECT_EQ(y[4], 0x1.78b56362cef38p-2);
    EXPECT_EQ(y[5], y[4]);
    EXPECT_EQ(y[6], exp(test::Precise(-729.0)).toDouble()) << "a denormal number";
    for (int i = 7; i < 11; ++i) EXPECT_TRUE(same(y[i], 0.0)) << i;
    EXPECT_TRUE(std::isnan(y[11]));
    const float single[] = {0.0f, 1.0f, -1.0f, 10.0f, 10.19f, 10.2f, 1e30f, infinityF, -infinityF, nanF};
    float z[10];
    ExpNegSqr::of(single, z, 10);
    EXPECT_EQ(z[0], 1.0f);
    EXPECT_EQ(z[1], 0.36787945f);
    EXPECT_EQ(z[2], z[1]);
    EXPECT_EQ(z[3], 3.783506e-44f) << "a denormal number";
    EXPECT_EQ(z[4], 0x1p-149f) << "the square is 103.836";
    for (int i = 5; i < 9; ++i) EXPECT_TRUE(same(z[i], 0.0f)) << i;
    EXPECT_TRUE(std::isnan(z[9]));
}

// ---- Reciprocal roots.

std::vector<float> singles(Random& random, std::size_t len) {
    std::vector<float> x(len);
    const auto hard = test::hardFloats<float>();
    for (float& value : x) {
        switch (random.integer(0, 2)) {
            case 0:
                value = random.anyBits<float>();
                break;
            case 1:
                value = random.pick(hard, 1)[0];
                break;
            default:
                value = static_cast<float>(random.uniform(-1.0, 4.0));
        }
    }
    return x;
}
std::vector<Vorn32s> integers(Random& random, std::size_t len) {
    std::vector<Vorn32s> x(len);
    const auto hard = test::hardIntegers<Vorn32s>();
    for (Vorn32s& value : x) {
        value = random.integer(0, 1) == 0 ? random.pick(hard, 1)[0]
                                          : static_cast<Vorn32s>(random.anyBits<Vorn32s>() >> random.integer(0, 30));
    }
    return x;
}

TEST(RecSqrt, SinglesEqualTheModel) {
    Random random(20);
    for (unsigned mode : modes) {
        for (float val : {1.0f, 0x1p-149f, 0.3f, 2.5f, 3.4e38f, infinityF, 1e-30f}) {
            for (std::size_t len : test::lengths()) {
                if (len > 300) break;
                std::vector<float> x = singles(random, len);
                if (len % 5 == 0) x.assign(len, val);
                Guarded<float> srcDst(x);
                std::vector<float> expected(len);
                VornStatus status;
                {
                    const RoundingMode changed(mode);
                    for (std::size_t i = 0; i < len; ++i) expected[i] = model::recSqrt(x[i], val);
                    status = vornsRecSqrt_32f(srcDst, static_cast<int>(len), val);
                }
                const bool allSet = std::none_of(x.begin(), x.end(), [=](float e) { return val < e; });
                EXPECT_EQ(status, allSet ? vornStsZeroRange : vornStsNoErr) << len << ' ' << val;
                EXPECT_TRUE(sameBits(srcDst.data(), expected.data(), len)) << len << ' ' << val;
                EXPECT_TRUE(srcDst.surroundingsUntouched());
            }
        }
    }
}

TEST(RecSqrt, SpecialCases) {
    float x[] = {4.0f, 1.0f, 0.25f, nanF, infinityF, -1.0f, 0.0f, 1.0000002f};
    EXPECT_EQ(vornsRecSqrt_32f(x, 8, 1.0f), vornStsNoErr);
    const float expected[] = {0.5f, 1.0f, 1.0f, 1.0f, 0.0f, 1.0f, 1.0f, 0x1.fffffcp-1f};
    EXPECT_TRUE(sameBits(x, expected, 8));
    float equal[] = {2.0f, 2.0f};
    EXPECT_EQ(vornsRecSqrt_32f(equal, 2, 2.0f), vornStsZeroRange);
    EXPECT_EQ(equal[0], 2.0f);
    float oneKept[] = {2.0f, 2.0f, 16.0f};
    EXPECT_EQ(vornsRecSqrt_32f(oneKept, 3, 2.0f), vornStsNoErr);
    EXPECT_EQ(oneKept[1], 2.0f);
    EXPECT_EQ(oneKept[2], 0.25f);
}

constexpr int scaleFactors[] = {0, -1, -10, -20, -31, -32, -40, -127, -128, -129, INT_MIN, 1, 2, 31, 149, 150, INT_MAX};

TEST(RecSqrt, TheAddressChoosesTheRounding) {
    Random random(21);
    for (unsigned mode : modes) {
        for (int scaleFactor : scaleFactors) {
            for (Vorn32s val : {1, 2, 9, 100000, 16777217, INT_MAX}) {
                for (std::size_t len : {1, 2, 3, 4, 5, 8, 15, 16, 17, 33, 70}) {
                    std::vector<Vorn32s> x = integers(random, len);
                    x[len / 2] = val;
                    if (len % 5 == 0) x.assign(len, len == 5 ? val : -3);
                    const auto kept = [&](auto keeps) { return std::any_of(x.begin(), x.end(), keeps); };
                    const auto ceiling = [=] { return model::curveSingle(val); };
                    for (std::size_t offset : {0, 4, 8, 12, 16}) {
                        Offset<Vorn32s> srcDst(len, offset);
                        srcDst.assign(x);
                        std::vector<Vorn32s> expected(len);
                        VornStatus status, expectedStatus;
                        const bool aligned = offset % 16 == 0;
                        {
                            const RoundingMode changed(mode);
                            for (std::size_t i = 0; i < len; ++i) {
                                expected[i] = aligned ? model::recSqrtRounded(x[i], val, scaleFactor)
                                                      : model::recSqrtTruncated<Vorn32s>(x[i], val, scaleFactor);
                            }
                            const bool any = aligned
                                                 ? kept([&](Vorn32s e) { return model::curveSingle(e) > ceiling(); })
                                                 : kept([&](Vorn32s e) { return model::curveSingle(e) >= ceiling(); });
                            expectedStatus = any ? vornStsNoErr : vornStsZeroRange;
                            status = vornsRecSqrt_32s_Sfs(srcDst, static_cast<int>(len), val, scaleFactor);
                        }
                        EXPECT_EQ(status, expectedStatus) << offset << ' ' << val << ' ' << len;
                        EXPECT_EQ(srcDst.values(), expected)
                            << "offset " << offset << " val " << val << " factor " << scaleFactor << " mode " << mode;
                        EXPECT_TRUE(srcDst.surroundingsUntouched());
                    }
                    const Guarded<Vorn32s> src(x);
                    Guarded<Vorn16s> dst(len);
                    std::vector<Vorn16s> expected(len);
                    const RoundingMode changed(mode);
                    for (std::size_t i = 0; i < len; ++i) {
                        expected[i] = model::recSqrtTruncated<Vorn16s>(x[i], val, scaleFactor);
                    }
                    const bool any = kept([&](Vorn32s e) { return model::curveSingle(e) >= ceiling(); });
                    EXPECT_EQ(vornsRecSqrt_32s16s_Sfs(src, dst, static_cast<int>(len), val, scaleFactor),
                              any ? vornStsNoErr : vornStsZeroRange);
                    EXPECT_TRUE(sameBits(dst.data(), expected.data(), len)) << val << ' ' << scaleFactor;
                    EXPECT_TRUE(dst.surroundingsUntouched());
                }
            }
        }
    }
}

// Worked by hand: 1/sqrt(4) 2^10 = 512, 1/sqrt(3) 2^10 = 591.2, 1/sqrt(7) 2^10 = 387.04 and 1/sqrt(8) 2^10 = 362.04;
// at 2^2 they are 2, 2.31, 1.51 and 1.41.
TEST(RecSqrt, IntegersByHand) {
    for (std::size_t offset : {0, 4}) {
        Offset<Vorn32s> x(4, offset);
        x.assign({4, 3, 7, 8});
        EXPECT_EQ(vornsRecSqrt_32s_Sfs(x, 4, 1, -2), vornStsNoErr);
        EXPECT_EQ(x.values(), (offset == 0 ? std::vector<Vorn32s>{2, 2, 2, 1} : std::vector<Vorn32s>{2, 2, 1, 1}));
        x.assign({4, 4, 4, 4});  // equal to val
        EXPECT_EQ(vornsRecSqrt_32s_Sfs(x, 4, 4, 0), offset == 0 ? vornStsZeroRange : vornStsNoErr);
        EXPECT_EQ(x[0], offset == 0 ? 4 : 0);
        x.assign({1, 1, 0, 0});  // the limit
        vornsRecSqrt_32s_Sfs(x, 4, 1, -31);
        EXPECT_EQ(x[3], offset == 0 ? INT_MAX : INT_MIN);
    }
    const Vorn32s src[] = {4, 3, 7, 8, 1};
    Vorn16s dst[5];
    EXPECT_EQ(vornsRecSqrt_32s16s_Sfs(src, dst, 5, 1, -10), vornStsNoErr);
    EXPECT_EQ(std::vector<Vorn16s>(dst, dst + 5), (std::vector<Vorn16s>{512, 591, 387, 362, 1024}));
    vornsRecSqrt_32s16s_Sfs(src, dst, 5, 1, -15);
    EXPECT_EQ(dst[4], 32767);
}

// ---- The unit curve.

TEST(UnitCurve, SinglesEqualTheModel) {
    Random random(30);
    for (unsigned mode : modes) {
        for (std::size_t len : test::lengths()) {
            if (len > 1000) break;
            const Guarded<float> src(singles(random, len));
            Guarded<float> dst(len);
            std::vector<float> expected(len);
            const RoundingMode changed(mode);
            for (std::size_t i = 0; i < len; ++i) expected[i] = model::unitCurve(src[i]);
            EXPECT_EQ(vornsUnitCurve_32f(src, dst, static_cast<int>(len)), vornStsNoErr);
            EXPECT_TRUE(sameBits(dst.data(), expected.data(), len)) << len;
            EXPECT_EQ(vornsUnitCurve_32f_I(src, static_cast<int>(len)), vornStsNoErr);
            EXPECT_TRUE(sameBits(src.data(), expected.data(), len)) << len;
        }
    }
}

TEST(UnitCurve, SpecialCasesAndSymmetry) {
    const float x[] = {-1.0f, -0.0f, 0.0f, 0.5f, 1.0f, 1.5f, 2.0f, 3.0f, infinityF, -infinityF, nanF, 0x1.fffffep-1f};
    const float expected[] = {0, 0, 0, 0.25f, 1, 1.75f, 2, 2, 2, 0, 2, 0x1.fffffcp-1f};
    float y[12];
    ASSERT_EQ(vornsUnitCurve_32f(x, y, 12), vornStsNoErr);
    EXPECT_TRUE(sameBits(y, expected, 12));
    // Half a turn about (1, 1), and never falling but by roundings.
    for (int i = 0; i <= 4096; ++i) {
        const float pair[] = {static_cast<float>(i) / 2048.0f, 2.0f - static_cast<float>(i) / 2048.0f};
        float value[2];
        ASSERT_EQ(vornsUnitCurve_32f(pair, value, 2), vornStsNoErr);
        EXPECT_NEAR(value[0] + value[1], 2.0f, 5e-7f) << pair[0];
        EXPECT_GE(value[0], 0.0f);
        EXPECT_LE(value[0], 2.0f);
    }
}

TEST(UnitCurve, FixedPointEqualsTheModel) {
    std::vector<Vorn16s> all(65536);
    std::iota(all.begin(), all.end(), Vorn16s{-32768});
    const Guarded<Vorn16s> src(all);
    for (int srcQ : {-1, 0, 1, 5, 12, 13, 14, 15, INT_MIN, INT_MAX}) {
        const int bits = srcQ >= 0 && srcQ < 15 ? 2 * srcQ : 0;  // of the value, before the shift
        for (int scaleFactor : {0,   -1,  -15, -16, -bits, -bits - 1, -bits + 1, -30,  -31,     -32,     -33,
                                -60, -61, 3,   17,  31,    32,        33,        1000, INT_MAX, INT_MIN, INT_MIN + 1}) {
            Guarded<Vorn16s> dst(all.size());
            std::vector<Vorn16s> expected(all.size());
            for (std::size_t i = 0; i < all.size(); ++i) expected[i] = model::unitCurve(all[i], srcQ, scaleFactor);
            EXPECT_EQ(vornsUnitCurve_16s_Sfs(src, srcQ, dst, 65536, scaleFactor), vornStsNoErr);
            ASSERT_TRUE(sameBits(dst.data(), expected.data(), all.size())) << srcQ << ' ' << scaleFactor;
        }
    }
    Random random(31);
    for (std::size_t len : test::lengths()) {
        const std::vector<Vorn16s> x = random.integers<Vorn16s>(len, -100, 4000);
        std::vector<Vorn16s> expected(len);
        for (std::size_t offset : {0, 2, 14, 30}) {
            Offset<Vorn16s> srcDst(len, offset);
            for (int scaleFactor : {-9, -26}) {
                for (std::size_t i = 0; i < len; ++i) expected[i] = model::unitCurve(x[i], 11, scaleFactor);
                srcDst.assign(x);
                EXPECT_EQ(vornsUnitCurve_16s_ISfs(srcDst, 11, static_cast<int>(len), scaleFactor), vornStsNoErr);
                EXPECT_EQ(srcDst.values(), expected) << len;
                EXPECT_TRUE(srcDst.surroundingsUntouched());
                Guarded<Vorn16s> in(x), out(len);
                EXPECT_EQ(vornsUnitCurve_16s_Sfs(in, 11, out, static_cast<int>(len), scaleFactor), vornStsNoErr);
                EXPECT_TRUE(sameBits(out.data(), expected.data(), len)) << len;
                EXPECT_TRUE(out.surroundingsUntouched());
            }
        }
    }
}

// Q14 in, Q14 out, by hand: v has 28 fraction bits, so that the factor -14 leaves 14 of them.
TEST(UnitCurve, FixedPointByHand) {
    const Vorn16s x[] = {-5, 0, 8192, 16384, 24576, 32767};
    Vorn16s y[6];
    ASSERT_EQ(vornsUnitCurve_16s_Sfs(x, 14, y, 6, -14), vornStsNoErr);
    EXPECT_EQ(std::vector<Vorn16s>(y, y + 6), (std::vector<Vorn16s>{0, 0, 4096, 16384, 28672, 32767}));
    ASSERT_EQ(vornsUnitCurve_16s_Sfs(x, 15, y, 6, 0), vornStsNoErr);
    EXPECT_EQ(std::vector<Vorn16s>(y, y + 6), std::vector<Vorn16s>(6));
    // v = 2^29 shifted left by 2 is -2^31, whose low 16 bits are 0; by 3 it is 0; right by 32 counts as 0.
    const Vorn16s above[] = {5};
    ASSERT_EQ(vornsUnitCurve_16s_Sfs(above, 1, y, 1, -2 - 28), vornStsNoErr);  // v = 8
    EXPECT_EQ(y[0], 0);
    ASSERT_EQ(vornsUnitCurve_16s_Sfs(above, 1, y, 1, 30), vornStsNoErr);
    EXPECT_EQ(y[0], 8);
    ASSERT_EQ(vornsUnitCurve_16s_Sfs(above, 1, y, 1, -34), vornStsNoErr);  // left by 32 counts as 0
    EXPECT_EQ(y[0], 8);
    const Vorn16s odd[] = {3};  // at Q1: 8 - 1 = 7, which 2^29 shifts to -2^29
    ASSERT_EQ(vornsUnitCurve_16s_Sfs(odd, 1, y, 1, -2 - 12), vornStsNoErr);
    EXPECT_EQ(y[0], 28672);
    ASSERT_EQ(vornsUnitCurve_16s_Sfs(odd, 1, y, 1, -2 - 13), vornStsNoErr);
    EXPECT_EQ(y[0], 32767);
    ASSERT_EQ(vornsUnitCurve_16s_Sfs(odd, 1, y, 1, -2 - 29), vornStsNoErr);
    EXPECT_EQ(y[0], 0) << "negative: the low 16 bits";
}

// ---- Entropy.

float entropy(const std::vector<float>& x, VornStatus expected = vornStsNoErr) {
    const Guarded<float> src(x);
    Guarded<float> dst(1);
    EXPECT_EQ(vornsEntropy_32f(src, static_cast<int>(x.size()), dst), expected);
    EXPECT_TRUE(dst.surroundingsUntouched());
    return dst[0];
}

TEST(Entropy, SinglesEqualTheModel) {
    Random random(40);
    for (unsigned mode : modes) {
        for (std::size_t len : test::lengths()) {
            std::vector<float> x(len);
            for (float& value : x) {
                value =
                    static_cast<float>(std::ldexp(random.uniform(0.5, 1.0), static_cast<int>(random.integer(-12, 2))));
                if (random.integer(0, 7) == 0) value = random.integer(0, 1) == 0 ? 0.0f : -0.0f;
                if (len % 3 == 0 && random.integer(0, 5) == 0) value = std::fabs(random.anyBits<float>());
                if (std::isnan(value)) value = 0x1p-149f;
            }
            if (len > 64 && len % 7 == 0) x[len - 2] = -0x1p-149f;
            if (len > 64 && len % 7 == 1) x[len / 2] = nanF;
            const bool bad = std::any_of(x.begin(), x.end(), [](float value) { return !(value >= 0); });
            const RoundingMode changed(mode);
            const float expected = model::entropy(x);
            EXPECT_TRUE(same(entropy(x, bad ? vornStsLnNegArg : vornStsNoErr), expected)) << len << ' ' << expected;
        }
    }
}

TEST(Entropy, SpecialCases) {
    EXPECT_EQ(entropy({0.5f, 0.5f}), -1.0f);
    EXPECT_EQ(entropy({1.0f}), 0.0f);
    EXPECT_EQ(entropy({0.0f, -0.0f, 0.0f}), 0.0f);
    EXPECT_EQ(entropy({2.0f}), 2.0f);
    EXPECT_EQ(entropy({0.0f, 1.0f, infinityF}), infinityF);
    EXPECT_TRUE(std::isnan(entropy({0.5f, -1.0f, 0.5f}, vornStsLnNegArg)));
    EXPECT_TRUE(std::isnan(entropy({nanF}, vornStsLnNegArg)));
    EXPECT_TRUE(std::isnan(entropy({-infinityF, 1.0f}, vornStsLnNegArg)));
    for (int n : {1, 2, 3, 10, 64, 100, 1000, 4096}) {
        EXPECT_NEAR(entropy(std::vector<float>(static_cast<std::size_t>(n), 1.0f / static_cast<float>(n))),
                    -std::log2(n), 2e-5 * (1 + std::log2(n)))
            << n;
    }
}

TEST(Entropy, FixedPointEqualsTheModel) {
    Random random(41);
    for (int srcScale : {0, 1, 15, 16, 30, -3, 126, 127, 134, 149, 150, -112, -113, -127, -128, INT_MAX, INT_MIN}) {
        for (int dstScale : {0, -10, -20, -31, 5, 149, 150, -127, -128, INT_MIN, INT_MAX}) {
            for (std::size_t len : {1, 2, 3, 7, 8, 16, 17, 33, 63, 64, 65, 70, 129, 400}) {
                std::vector<Vorn16s> x = random.integers<Vorn16s>(len, 0, 32767);
                if (len % 2 == 0) x = random.pick<Vorn16s>({0, 0, 1, 2, 3, 32767}, len);
                if (len == 17) x.assign(len, 0);
                if (len == 33 || len == 65) x[len - 1] = -1;
                const Guarded<Vorn16s> src(x);
                Guarded<Vorn32s> dst(1);
                std::int32_t expected = 0;
                const bool good = model::entropy(x, srcScale, dstScale, expected);
                EXPECT_EQ(vornsEntropy_16s32s_Sfs(src, srcScale, static_cast<int>(len), dst, dstScale),
                          good ? vornStsNoErr : vornStsLnNegArg);
                if (good) {
                    EXPECT_EQ(dst[0], expected) << srcScale << ' ' << dstScale << ' ' << len;
                } else {
                    EXPECT_TRUE(dst.untouched());
                }
            }
        }
    }
    // Two halves in Q15, by hand: -1.
    const Vorn16s halves[] = {16384, 16384};
    Vorn32s result;
    ASSERT_EQ(vornsEntropy_16s32s_Sfs(halves, 15, 2, &result, 0), vornStsNoErr);
    EXPECT_EQ(result, -1);
    ASSERT_EQ(vornsEntropy_16s32s_Sfs(halves, 15, 2, &result, -8), vornStsNoErr);
    EXPECT_EQ(result, -256);
    ASSERT_EQ(vornsEntropy_16s32s_Sfs(halves, 15, 2, &result, -40), vornStsNoErr);
    EXPECT_EQ(result, INT_MIN);
    ASSERT_EQ(vornsEntropy_16s32s_Sfs(halves, 0, 2, &result, -40), vornStsNoErr);
    EXPECT_EQ(result, INT_MAX);
    ASSERT_EQ(vornsEntropy_16s32s_Sfs(halves, 150, 2, &result, 0), vornStsNoErr);
    EXPECT_EQ(result, INT_MIN) << "0 ln 0 is not a number";
}

// ---- Language-model scores.

TEST(ScaleLM, EqualsTheModel) {
    Random random(50);
    const auto hard = test::hardFloats<float>();
    const auto hardShorts = test::hardIntegers<Vorn16s>();
    for (unsigned mode : modes) {
        for (std::size_t len : test::lengths()) {
            const float floor = random.pick(hard, 1)[0], mul = random.pick(hard, 1)[0], add = random.pick(hard, 1)[0];
            const std::vector<float> x = singles(random, len);
            for (std::size_t offset : {0, 4, 20}) {
                Offset<float> src(len, offset), dst(len, offset);
                src.assign(x);
                std::vector<float> expected(len);
                const RoundingMode changed(mode);
                for (std::size_t i = 0; i < len; ++i) expected[i] = model::scaleLM(x[i], floor, mul, add);
                EXPECT_EQ(vornsScaleLM_32f(src, dst, static_cast<int>(len), floor, mul, add), vornStsNoErr);
                EXPECT_TRUE(sameBits(dst.data(), expected.data(), len)) << floor << ' ' << mul << ' ' << add;
                EXPECT_TRUE(dst.surroundingsUntouched());
                EXPECT_EQ(vornsScaleLM_32f(src, src, static_cast<int>(len), floor, mul, add), vornStsNoErr);
                EXPECT_TRUE(sameBits(src.data(), expected.data(), len));
            }
            const Vorn16s least = random.pick(hardShorts, 1)[0], factor = random.pick(hardShorts, 1)[0];
            const Vorn32s offsetOfAll = random.pick(test::hardIntegers<Vorn32s>(), 1)[0];
            const Guarded<Vorn16s> shorts(len % 2 != 0 ? random.pick(hardShorts, len) : random.integers<Vorn16s>(len));
            Guarded<Vorn32s> sums(len);
            std::vector<Vorn32s> expectedSums(len);
            for (std::size_t i = 0; i < len; ++i)
                expectedSums[i] = model::scaleLM(shorts[i], least, factor, offsetOfAll);
            EXPECT_EQ(vornsScaleLM_16s32s(shorts, sums, static_cast<int>(len), least, factor, offsetOfAll),
                      vornStsNoErr);
            EXPECT_TRUE(sameBits(sums.data(), expectedSums.data(), len))
                << least << ' ' << factor << ' ' << offsetOfAll;
            EXPECT_TRUE(sums.surroundingsUntouched());
        }
    }
}

TEST(ScaleLM, SpecialCases) {
    const float x[] = {nanF, 1.0f, -20.0f, -infinityF};
    float y[4];
    ASSERT_EQ(vornsScaleLM_32f(x, y, 4, -10.0f, 2.0f, 0.5f), vornStsNoErr);
    const float expected[] = {-19.5f, 2.5f, -19.5f, -19.5f};
    EXPECT_TRUE(sameBits(y, expected, 4));
    const Vorn16s shorts[] = {-32768, 32767};
    Vorn32s sums[2];
    ASSERT_EQ(vornsScaleLM_16s32s(shorts, sums, 2, -32768, -32768, INT_MAX), vornStsNoErr);
    EXPECT_EQ(sums[0], INT_MIN + (1 << 30) - 1) << "2^30 + 2^31 - 1 wraps";
    EXPECT_EQ(sums[1], INT_MAX - 32768 * 32767);
}

// ---- Weighted sums.

template <class T>
using SumFunction = VornStatus (*)(const T*, const T*, T*, int, T, T);

template <class T>
std::vector<T> operands(Random& random, std::size_t len) {
    if constexpr (std::is_same_v<T, Vorn16s>) {
        return len % 2 == 0 ? random.pick(test::hardIntegers<Vorn16s>(), len) : random.integers<Vorn16s>(len);
    } else {
        return len % 2 == 0 ? random.pick(test::hardFloats<T>(), len) : test::data<T>(random, len);
    }
}

template <class T>
void expectSums(SumFunction<T> function, bool half) {
    Random random(60);
    std::vector<T> weights = {T(1), T(-1), T(0), T(2), T(3), T(-2), T(7)};
    if constexpr (std::is_same_v<T, Vorn16s>) {
        weights.insert(weights.end(), {32767, -32768, -32767, 1000});
    } else {
        weights.insert(weights.end(), {T(0.3), T(-0.3), T(-0.0), std::numeric_limits<T>::max(),
                                       std::numeric_limits<T>::min(), T(std::numeric_limits<T>::infinity()), T(NAN)});
    }
    for (std::size_t len : test::lengths()) {
        if (len > 300) break;
        for (int turn = 0; turn < 12; ++turn) {
            const T weight1 = random.pick(weights, 1)[0], weight2 = random.pick(weights, 1)[0];
            const std::vector<T> a = operands<T>(random, len), b = operands<T>(random, len);
            std::vector<T> expected(len);
            bool cancel = false;
            const RoundingMode changed(modes[turn % 4]);
            for (std::size_t i = 0; i < len; ++i) {
                cancel = model::weightedSum(a[i], b[i], weight1, weight2, half, expected[i]);
            }
            const VornStatus status = cancel ? vornStsDivByZero : vornStsNoErr;
            const std::size_t shift = static_cast<std::size_t>(turn % 3) * sizeof(T);
            Offset<T> src1(len, shift), src2(len, turn % 4 * sizeof(T)), dst(len, turn % 5 * sizeof(T));
            src1.assign(a);
            src2.assign(b);
            EXPECT_EQ(function(src1, src2, dst, static_cast<int>(len), weight1, weight2), status);
            EXPECT_TRUE(sameBits(dst.data(), expected.data(), len))
                << test::show(weight1) << ' ' << test::show(weight2) << ' ' << len;
            EXPECT_TRUE(dst.surroundingsUntouched());
            EXPECT_EQ(function(src1, src2, turn % 2 != 0 ? src1 : src2, static_cast<int>(len), weight1, weight2),
                      status);
            EXPECT_TRUE(sameBits(turn % 2 != 0 ? src1.data() : src2.data(), expected.data(), len)) << "in place";
            const Guarded<T> guarded1(a), guarded2(b);
            Guarded<T> result(len);
            EXPECT_EQ(function(guarded1, guarded2, result, static_cast<int>(len), weight1, weight2), status);
            EXPECT_TRUE(sameBits(result.data(), expected.data(), len));
        }
    }
}

TEST(WeightedSum, EqualsTheModel) {
    expectSums<float>(vornsWeightedSum_32f, false);
    expectSums<double>(vornsWeightedSum_64f, false);
    expectSums<Vorn16s>(vornsWeightedSum_16s, false);
    expectSums<float>(vornsWeightedSumHalf_32f, true);
    expectSums<double>(vornsWeightedSumHalf_64f, true);
    expectSums<Vorn16s>(vornsWeightedSumHalf_16s, true);
}

TEST(WeightedSum, WeightsThatCancel) {
    const float a[] = {3, 1, 2, nanF}, b[] = {1, 3, 2, 1};
    for (auto* function : {vornsWeightedSum_32f, vornsWeightedSumHalf_32f}) {
        float y[4];
        EXPECT_EQ(function(a, b, y, 4, 1.0f, -1.0f), vornStsDivByZero);
        EXPECT_EQ(y[0], infinityF);
        EXPECT_EQ(y[1], -infinityF);
        EXPECT_TRUE(std::isnan(y[2]));
        EXPECT_TRUE(std::isnan(y[3]));
        EXPECT_EQ(function(a, b, y, 4, 0.0f, 0.0f), vornStsDivByZero);
        EXPECT_TRUE(std::isnan(y[0]));
    }
    const Vorn16s s[] = {3, 1, 2}, t[] = {1, 3, 2};
    for (auto* function : {vornsWeightedSum_16s, vornsWeightedSumHalf_16s}) {
        Vorn16s y[3];
        EXPECT_EQ(function(s, t, y, 3, 5, -5), vornStsDivByZero);
        EXPECT_EQ(std::vector<Vorn16s>(y, y + 3), (std::vector<Vorn16s>{32767, -32768, 0}));
        EXPECT_EQ(function(s, t, y, 3, -5, 5), vornStsDivByZero);
        EXPECT_EQ(std::vector<Vorn16s>(y, y + 3), (std::vector<Vorn16s>{-32768, 32767, 0}));
        EXPECT_EQ(function(s, t, y, 3, 0, 0), vornStsDivByZero);
        EXPECT_EQ(std::vector<Vorn16s>(y, y + 3), std::vector<Vorn16s>(3));
    }
}

// Weights 3 and 1 over 4: 8 0.75 + 4 0.25 = 7; in the Half form 8 0.25 + 4 0.25 = 3.
TEST(WeightedSum, ByHand) {
    const float a[] = {8, -8}, b[] = {4, 4};
    float y[2];
    ASSERT_EQ(vornsWeightedSum_32f(a, b, y, 2, 3, 1), vornStsNoErr);
    EXPECT_EQ(y[0], 7.0f);
    EXPECT_EQ(y[1], -5.0f);
    ASSERT_EQ(vornsWeightedSumHalf_32f(a, b, y, 2, 3, 1), vornStsNoErr);
    EXPECT_EQ(y[0], 3.0f);
    EXPECT_EQ(y[1], -1.0f);
    const Vorn16s s[] = {7, -7, 32767, -32768}, t[] = {2, -2, -32768, 32767};
    Vorn16s z[4];
    ASSERT_EQ(vornsWeightedSum_16s(s, t, z, 4, 3, 1), vornStsNoErr);  // 5.75
    EXPECT_EQ(z[0], 5);
    EXPECT_EQ(z[1], -5);
    ASSERT_EQ(vornsWeightedSum_16s(s, t, z, 4, 3, -2), vornStsNoErr);  // 163837
    EXPECT_EQ(z[2], 32767);
    EXPECT_EQ(z[3], -32768);
    ASSERT_EQ(vornsWeightedSum_16s(s, t, z, 4, 32767, 32767), vornStsNoErr);  // their sum needs more than 16 bits
    EXPECT_EQ(z[0], 4);
}

// ---- The n-th largest.

template <class T>
T nth(const std::vector<T>& x, int n) {
    const Guarded<T> src(x);
    Guarded<T> dst(1);
    const int len = static_cast<int>(x.size());
    VornStatus status;
    if constexpr (std::is_same_v<T, Vorn32s>) {
        status = vornsNthMaxElement_32s(src, len, n, dst);
    } else if constexpr (std::is_same_v<T, float>) {
        status = vornsNthMaxElement_32f(src, len, n, dst);
    } else {
        status = vornsNthMaxElement_64f(src, len, n, dst);
    }
    EXPECT_EQ(status, vornStsNoErr);
    EXPECT_TRUE(std::memcmp(src.data(), x.data(), x.size() * sizeof(T)) == 0) << "src is unchanged";
    EXPECT_TRUE(dst.surroundingsUntouched());
    return dst[0];
}

template <class T>
void expectNth(std::uint64_t seed) {
    Random random(seed);
    for (std::size_t len : test::lengths()) {
        std::vector<T> hard;
        if constexpr (std::is_integral_v<T>) {
            hard = test::hardIntegers<T>();
        } else {
            for (T value : test::hardFloats<T>()) {
                if (!std::isnan(value)) hard.push_back(value);
            }
        }
        for (int kind = 0; kind < 4; ++kind) {
            std::vector<T> x = kind == 0 ? test::data<T>(random, len) : random.pick(hard, len);
            if (kind == 2) std::sort(x.begin(), x.end());
            if (kind == 3) x.assign(len, x[0]);
            const int last = static_cast<int>(len) - 1;
            for (int n : {0, last, last / 2, static_cast<int>(random.integer(0, last))}) {
                ASSERT_EQ(nth(x, n), model::nthMax(x, n)) << len << ' ' << n << ' ' << kind;
            }
        }
    }
}

TEST(NthMaxElement, EqualsSorting) {
    expectNth<Vorn32s>(70);
    expectNth<float>(71);
    expectNth<double>(72);
    // Every index of a few vectors, in descending order.
    Random random(73);
    const std::vector<float> x = random.floats(100, -1.0, 1.0);
    for (int n = 1; n < 100; ++n) EXPECT_LE(nth(x, n), nth(x, n - 1));
}

// Orders on which a poor choice of pivots takes a time that grows with the square of len: the whole must stay a matter
// of moments at a million elements.
TEST(NthMaxElement, NoOrderIsABadOne) {
    const std::size_t len = 1000000;
    std::vector<Vorn32s> x(len);
    const auto expectHalf = [&](const char* order) {
        std::vector<Vorn32s> sorted(x);
        std::nth_element(sorted.begin(), sorted.begin() + len / 2, sorted.end(), std::greater<Vorn32s>());
        EXPECT_EQ(nth(x, static_cast<int>(len / 2)), sorted[len / 2]) << order;
    };
    for (std::size_t i = 0; i < len; ++i) x[i] = static_cast<Vorn32s>(i);
    expectHalf("rising");
    std::reverse(x.begin(), x.end());
    expectHalf("falling");
    for (std::size_t i = 0; i < len; ++i) x[i] = static_cast<Vorn32s>(i < len / 2 ? i : len - i);
    expectHalf("a roof");
    for (std::size_t i = 0; i < len; ++i) x[i] = static_cast<Vorn32s>(i % 2);
    expectHalf("two values");
    for (std::size_t i = 0; i < len; ++i) x[i] = static_cast<Vorn32s>(i < len / 2 ? 2 * i : 2 * (i - len / 2) + 1);
    expectHalf("two rising runs");
    x.assign(len, 7);
    expectHalf("equal");
}

// The largest keys stand where the pivots are taken from (the nine places of a long run), round after round, so that
// each partition takes away a handful: the search has to give up its pivots.
template <class T>
void expectNthInSpiteOfPivots() {
    const int len = 3000;
    Random random(75);
    std::vector<T> x = std::is_integral_v<T> ? random.integers<T>(len, T(-1000), T(1000)) : std::vector<T>(len);
    if constexpr (!std::is_integral_v<T>) {
        for (T& value : x) value = static_cast<T>(random.uniform(-1.0, 1.0));
    }
    std::vector<std::size_t> alive(len);
    std::iota(alive.begin(), alive.end(), std::size_t{0});
    T next = T(1000000);
    for (int round = 0; round < 20; ++round) {
        const std::size_t half = alive.size() / 2, eighth = alive.size() / 8, last = alive.size() - 1;
        const std::size_t places[] = {
            last, last - eighth, last - 2 * eighth, half + eighth, half, half - eighth, 2 * eighth, eighth, 0};
        for (std::size_t place : places) x[alive[place]] = next -= 1;
        const T pivot = x[alive[half]];
        alive.erase(std::remove_if(alive.begin(), alive.end(), [&](std::size_t i) { return x[i] >= pivot; }),
                    alive.end());
    }
    for (int n : {len - 1, len - 2, len / 2, 500, 150}) EXPECT_EQ(nth(x, n), model::nthMax(x, n)) << n;
}

TEST(NthMaxElement, LargestWhereThePivotsAre) {
    expectNthInSpiteOfPivots<Vorn32s>();
    expectNthInSpiteOfPivots<float>();
    expectNthInSpiteOfPivots<double>();
}

TEST(NthMaxElement, NotANumberGivesAnElement) {
    Random random(74);
    for (std::size_t len : {1, 2, 3, 5, 64, 129, 1000}) {
        std::vector<double> x = random.pick(test::hardFloats<double>(), len);
        std::vector<float> y(len, nanF);
        for (int n = 0; n < static_cast<int>(len); n += 1 + static_cast<int>(len) / 7) {
            const double result = nth(x, n);
            EXPECT_TRUE(std::any_of(x.begin(), x.end(), [=](double value) { return same(value, result); }));
            EXPECT_TRUE(std::isnan(nth(y, n)));
        }
    }
}

TEST(NthMaxElement, ShortMemoryIsReported) {
    if (!test::FailAllocation::available()) GTEST_SKIP() << "the sanitizer's allocator does not fail";
    const Guarded<float> single{1, 2, 3};
    const Guarded<double> wide{1, 2, 3};
    const Guarded<Vorn32s> integer{1, 2, 3};
    const auto expectReport = [](auto function, const auto& src, auto dst) {
        {
            const test::FailAllocation first(1);
            EXPECT_EQ(function(src, 3, 1, dst), vornStsMemAllocErr);
            EXPECT_EQ(first.outstanding(), 0);
        }
        EXPECT_TRUE(dst.untouched());
        const test::FailAllocation none(0);
        EXPECT_EQ(function(src, 3, 1, dst), vornStsNoErr);
        EXPECT_EQ(none.calls(), 1);
        EXPECT_EQ(none.outstanding(), 0);
        EXPECT_EQ(dst[0], 2);
    };
    expectReport(vornsNthMaxElement_32f, single, Guarded<float>(1));
    expectReport(vornsNthMaxElement_64f, wide, Guarded<double>(1));
    expectReport(vornsNthMaxElement_32s, integer, Guarded<Vorn32s>(1));
}

}  // namespace
