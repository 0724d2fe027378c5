// Accumulators and variances element by element.
#include <gtest/gtest.h>

#include <algorithm>
#include <climits>
#include <cmath>
#include <cstdint>
#include <limits>
#include <vector>

#include "model/accumulators.h"
#include "support/expect.h"
#include "support/guarded.h"
#include "support/rounding_mode.h"
#include "support/values.h"
#include "vornsr.h"

namespace {

using test::Guarded;
using test::Offset;
using test::Random;
using test::RoundingMode;
using test::sameBits;

const unsigned modes[] = {RoundingMode::nearest, RoundingMode::down, RoundingMode::up, RoundingMode::towardZero};

// ---- vornsMeanVarAcc.

VornStatus meanVarAcc(const float* src, const float* mean, float* meanAcc, float* varAcc, int len, float val) {
    return vornsMeanVarAcc_32f(src, mean, meanAcc, varAcc, len, val);
}
VornStatus meanVarAcc(const double* src, const double* mean, double* meanAcc, double* varAcc, int len, double val) {
    return vornsMeanVarAcc_64f(src, mean, meanAcc, varAcc, len, val);
}

template <class T>
class MeanVarAcc : public testing::Test {
protected:
    static std::vector<T> ordinary(Random& random, std::size_t n) {
        std::vector<T> values(n);
        for (T& x : values) x = static_cast<T>(random.uniform(-10.0, 30.0));
        return values;
    }
    static void compare(const std::vector<T>& src, const std::vector<T>& mean, const std::vector<T>& first,
                        const std::vector<T>& second, T val) {
        const int len = static_cast<int>(src.size());
        Guarded<T> x(src), m(mean), meanAcc(first), varAcc(second);
        std::vector<T> expectedMean = first, expectedVar = second;
        model::meanVarAcc(src.data(), mean.data(), expectedMean.data(), expectedVar.data(), len, val);
        ASSERT_EQ(meanVarAcc(x, m, meanAcc, varAcc, len, val), vornStsNoErr);
        EXPECT_TRUE(sameBits(meanAcc.data(), expectedMean.data(), src.size())) << len;
        EXPECT_TRUE(sameBits(varAcc.data(), expectedVar.data(), src.size())) << len;
        EXPECT_TRUE(meanAcc.surroundingsUntouched() && varAcc.surroundingsUntouched());
        EXPECT_TRUE(sameBits(x.values(), src) && sameBits(m.values(), mean)) << "sources are left alone";
    }
};
using Floats = testing::Types<float, double>;
TYPED_TEST_SUITE(MeanVarAcc, Floats);

TYPED_TEST(MeanVarAcc, EqualsTheModelBitForBit) {
    Random random(1);
    std::vector<int> lengths;
    for (int len = 1; len <= 140; ++len) lengths.push_back(len);
    for (int len : {255, 256, 1000, 4099}) lengths.push_back(len);
    for (int len : lengths) {
        for (int turn = 0; turn < 3; ++turn) {
            this->compare(this->ordinary(random, len), this->ordinary(random, len), this->ordinary(random, len),
                          this->ordinary(random, len), static_cast<TypeParam>(random.uniform(0.0, 2.0)));
        }
    }
}

TYPED_TEST(MeanVarAcc, HardValuesPassThrough) {
    Random random(2);
    const auto values = test::hardFloats<TypeParam>();
    for (int turn = 0; turn < 400; ++turn) {
        const auto len = static_cast<std::size_t>(random.integer(1, 40));
        this->compare(random.pick(values, len), random.pick(values, len), random.pick(values, len),
                      random.pick(values, len), random.pick(values, 1)[0]);
    }
}

TYPED_TEST(MeanVarAcc, AlignmentChangesNothing) {
    using T = TypeParam;
    Random random(3);
    for (std::size_t len : {1, 5, 17, 39, 200}) {
        const auto src = this->ordinary(random, len), mean = this->ordinary(random, len);
        const auto first = this->ordinary(random, len), second = this->ordinary(random, len);
        std::vector<T> expectedMean = first, expectedVar = second;
        model::meanVarAcc(src.data(), mean.data(), expectedMean.data(), expectedVar.data(), static_cast<int>(len),
                          T(0.3));
        for (int moved = 0; moved < 4; ++moved) {
            for (std::size_t bytes = 0; bytes < 64; bytes += sizeof(T)) {
                const auto offset = [&](int which) { return which == moved ? bytes : 0; };
                Offset<T> x(len, offset(0)), m(len, offset(1)), meanAcc(len, offset(2)), varAcc(len, offset(3));
                x.assign(src), m.assign(mean), meanAcc.assign(first), varAcc.assign(second);
                ASSERT_EQ(meanVarAcc(x, m, meanAcc, varAcc, static_cast<int>(len), T(0.3)), vornStsNoErr);
                EXPECT_TRUE(sameBits(meanAcc.values(), expectedMean)) << len << " " << moved << " " << bytes;
                EXPECT_TRUE(sameBits(varAcc.values(), expectedVar)) << len << " " << moved << " " << bytes;
                EXPECT_TRUE(meanAcc.surroundingsUntouched() && varAcc.surroundingsUntouched());
            }
        }
    }
}

// Observations of small integers around an integer mean, with occupations of one half: everything is exact, and the
// accumulators hold the sums of the definition.
TYPED_TEST(MeanVarAcc, ManyFramesGiveTheWeightedSums) {
    using T = TypeParam;
    Random random(4);
    const int len = 39;
    std::vector<T> mean(len), meanAcc(len), varAcc(len), x(len);
    std::vector<std::int64_t> sums(len), squares(len);
    for (T& m : mean) m = static_cast<T>(random.integer(-5, 5));
    for (int frame = 0; frame < 300; ++frame) {
        for (int i = 0; i < len; ++i) {
            const auto deviation = random.integer(-20, 20);
            x[i] = mean[i] + static_cast<T>(deviation);
            sums[i] += deviation;
            squares[i] += deviation * deviation;
        }
        ASSERT_EQ(meanVarAcc(x.data(), mean.data(), meanAcc.data(), varAcc.data(), len, T(0.5)), vornStsNoErr);
    }
    for (int i = 0; i < len; ++i) {
        EXPECT_EQ(static_cast<double>(meanAcc[i]), 0.5 * static_cast<double>(sums[i]));
        EXPECT_EQ(static_cast<double>(varAcc[i]), 0.5 * static_cast<double>(squares[i]));
    }
}

// d val is rounded before d meets it: 3 x 16777214 = 50331642 becomes 50331640, and that times 3, 150994920, becomes
// 150994912. Nine times val would give 150994928.
TEST(MeanVarAccOrder, TheProductWithValComesFirst) {
    const float src = 4, mean = 1, val = 16777214.0f;
    float meanAcc = 0, varAcc = 0;
    ASSERT_EQ(vornsMeanVarAcc_32f(&src, &mean, &meanAcc, &varAcc, 1, val), vornStsNoErr);
    EXPECT_EQ(meanAcc, 50331640.0f);
    EXPECT_EQ(varAcc, 150994912.0f);
}

TYPED_TEST(MeanVarAcc, FollowsTheCallersRoundingModeAndKeepsIt) {
    using T = TypeParam;
    Random random(5);
    const auto src = this->ordinary(random, 21), mean = this->ordinary(random, 21);
    const auto first = this->ordinary(random, 21), second = this->ordinary(random, 21);
    auto* volatile model = model::meanVarAcc<T>;
    for (unsigned mode : modes) {
        std::vector<T> expectedMean = first, expectedVar = second, meanAcc = first, varAcc = second;
        unsigned after;
        {
            const RoundingMode caller(mode);
            model(src.data(), mean.data(), expectedMean.data(), expectedVar.data(), 21, T(0.7));
            meanVarAcc(src.data(), mean.data(), meanAcc.data(), varAcc.data(), 21, T(0.7));
            after = RoundingMode::current();
        }
        EXPECT_EQ(after, mode);
        EXPECT_TRUE(sameBits(meanAcc, expectedMean)) << mode;
        EXPECT_TRUE(sameBits(varAcc, expectedVar)) << mode;
    }
}

template <class T>
struct AccArguments {
    std::vector<T> data = std::vector<T>(3, T(1));
    Guarded<T> outMean = Guarded<T>(3), outVar = Guarded<T>(3);
    const T *src = data.data(), *mean = data.data();
    T *meanAcc = outMean.data(), *varAcc = outVar.data();
    int len = 3;
};
TYPED_TEST(MeanVarAcc, ChecksInOrder) {
    using A = AccArguments<TypeParam>;
    using Rule = test::Rule<A>;
    test::expectCheckOrder<A>([] { return A(); },
                              [](A& a) { return meanVarAcc(a.src, a.mean, a.meanAcc, a.varAcc, a.len, TypeParam(1)); },
                              [](A& a) { return a.outMean.untouched() && a.outVar.untouched(); },
                              {Rule{"src", vornStsNullPtrErr, [](A& a) { a.src = nullptr; }},
                               Rule{"srcMean", vornStsNullPtrErr, [](A& a) { a.mean = nullptr; }},
                               Rule{"dstMeanAcc", vornStsNullPtrErr, [](A& a) { a.meanAcc = nullptr; }},
                               Rule{"dstVarAcc", vornStsNullPtrErr, [](A& a) { a.varAcc = nullptr; }},
                               Rule{"len 0", vornStsSizeErr, [](A& a) { a.len = 0; }},
                               Rule{"len -1", vornStsSizeErr, [](A& a) { a.len = -1; }}});
}

// ---- vornsNewVar in singles.

using SingleModel = float (*)(float mean, float sumSq, float val1, float val2);

struct Mixed {
    static constexpr SingleModel model = model::newVarMixed;
    static VornStatus call(const float* mean, const float* sumSq, float* dst, int len, float val1, float val2) {
        return vornsNewVar_32f(mean, sumSq, dst, len, val1, val2);
    }
};
struct MixedInPlace : Mixed {
    static VornStatus call(const float* mean, const float* sumSq, float* dst, int len, float val1, float val2) {
        if (mean == nullptr || sumSq == nullptr || dst == nullptr || len < 1) {
            return vornsNewVar_32f(mean, sumSq, dst, len, val1, val2);
        }
        std::copy_n(sumSq, len, dst);
        return vornsNewVar_32f(mean, dst, dst, len, val1, val2);
    }
};
struct InPlace {
    static constexpr SingleModel model = model::newVarSingle;
    static VornStatus call(const float* mean, const float* sumSq, float* dst, int len, float val1, float val2) {
        std::copy_n(sumSq, len, dst);
        return vornsNewVar_32f_I(mean, dst, len, val1, val2);
    }
};
extern "C" {
void vornsNewVar_32f_M7(const Vorn32f* srcMean, const Vorn32f* srcSumSq, Vorn32f* dstVar, std::int64_t len,
                        Vorn32f val1, Vorn32f val2);
void vornsNewVar_32f_M7_Al(const Vorn32f* srcMean, const Vorn32f* srcSumSq, Vorn32f* dstVar, std::int64_t len,
                           Vorn32f val1, Vorn32f val2);
}
// The kernel that nothing in the library calls.
struct Kernel {
    static constexpr SingleModel model = model::newVarSingle;
    static VornStatus call(const float* mean, const float* sumSq, float* dst, int len, float val1, float val2) {
        (len % 2 == 0 ? vornsNewVar_32f_M7 : vornsNewVar_32f_M7_Al)(mean, sumSq, dst, len, val1, val2);
        return vornStsNoErr;
    }
};

template <class Member>
class NewVar : public testing::Test {
protected:
    static void compare(const std::vector<float>& mean, const std::vector<float>& sumSq, float val1, float val2) {
        const int len = static_cast<int>(mean.size());
        Guarded<float> m(mean), s(sumSq), dst(mean.size());
        std::vector<float> expected(mean.size());
        for (int i = 0; i < len; ++i) expected[i] = Member::model(mean[i], sumSq[i], val1, val2);
        ASSERT_EQ(Member::call(m, s, dst, len, val1, val2), vornStsNoErr);
        EXPECT_TRUE(sameBits(dst.data(), expected.data(), mean.size())) << len;
        EXPECT_TRUE(dst.surroundingsUntouched());
    }
};
using SingleMembers = testing::Types<Mixed, MixedInPlace, InPlace, Kernel>;
TYPED_TEST_SUITE(NewVar, SingleMembers);

TYPED_TEST(NewVar, EqualsTheModelBitForBit) {
    Random random(11);
    for (int len = 1; len <= 140; ++len) {
        for (int turn = 0; turn < 3; ++turn) {
            const auto count = static_cast<float>(random.uniform(2, 1e6));
            this->compare(random.floats(len, -10, 30), random.floats(len, 0, 1e7), count, 1 / (count - 1));
        }
    }
    this->compare(random.floats(200000, -10, 30), random.floats(200000, 0, 1e7), 1000, 1.0f / 999);
}

TYPED_TEST(NewVar, HardValuesPassThrough) {
    Random random(12);
    const auto values = test::hardFloats<float>();
    for (int turn = 0; turn < 600; ++turn) {
        const auto len = static_cast<std::size_t>(random.integer(1, 40));
        this->compare(random.pick(values, len), random.pick(values, len), random.pick(values, 1)[0],
                      random.pick(values, 1)[0]);
    }
}

TYPED_TEST(NewVar, AlignmentChangesNothing) {
    Random random(13);
    for (std::size_t len : {1, 5, 17, 39, 200}) {
        const auto mean = random.floats(len, -10, 30), sumSq = random.floats(len, 0, 1e5);
        std::vector<float> expected(len);
        for (std::size_t i = 0; i < len; ++i) expected[i] = TypeParam::model(mean[i], sumSq[i], 100, 0.01f);
        for (int moved = 0; moved < 3; ++moved) {
            for (std::size_t bytes = 0; bytes < 64; bytes += 4) {
                const auto offset = [&](int which) { return which == moved ? bytes : 0; };
                Offset<float> m(len, offset(0)), s(len, offset(1)), dst(len, offset(2));
                m.assign(mean), s.assign(sumSq);
                ASSERT_EQ(TypeParam::call(m, s, dst, static_cast<int>(len), 100, 0.01f), vornStsNoErr);
                EXPECT_TRUE(sameBits(dst.values(), expected)) << len << " " << moved << " " << bytes;
                EXPECT_TRUE(dst.surroundingsUntouched());
            }
        }
    }
}

TYPED_TEST(NewVar, FollowsTheCallersRoundingModeAndKeepsIt) {
    Random random(14);
    const auto mean = random.floats(21, -10, 30), sumSq = random.floats(21, 0, 1e5);
    const volatile SingleModel model = TypeParam::model;
    for (unsigned mode : modes) {
        std::vector<float> expected(21), dst(21);
        unsigned after;
        {
            const RoundingMode caller(mode);
            for (int i = 0; i < 21; ++i) expected[i] = model(mean[i], sumSq[i], 101, 0.01f);
            TypeParam::call(mean.data(), sumSq.data(), dst.data(), 21, 101, 0.01f);
            after = RoundingMode::current();
        }
        EXPECT_EQ(after, mode);
        EXPECT_TRUE(sameBits(dst, expected)) << mode;
    }
}

TEST(NewVarRounding, TheInPlaceFormRoundsOtherwise) {
    const float mean = 1, sumSq = 16777218;  // less 1: 16777217, which no single holds
    float var = 0, inPlace = sumSq;
    ASSERT_EQ(vornsNewVar_32f(&mean, &sumSq, &var, 1, 1, 3), vornStsNoErr);
    ASSERT_EQ(vornsNewVar_32f_I(&mean, &inPlace, 1, 1, 3), vornStsNoErr);
    EXPECT_EQ(var, 50331652.0f);      // 3 x 16777217 = 50331651
    EXPECT_EQ(inPlace, 50331648.0f);  // 3 x 16777216
}

TEST(NewVarRounding, TheMeanIsSquaredInSingle) {
    const float mean = 4097, sumSq = 16785408;  // 4097 squared is 16785409
    float var = 7;
    ASSERT_EQ(vornsNewVar_32f(&mean, &sumSq, &var, 1, 1, 1), vornStsNoErr);
    EXPECT_EQ(var, 0.0f);
}

// The error of the variance is that of the squared mean, and one rounding at the end, each of half a unit. Extended
// precision holds the formula to 2^-63.
TEST(NewVarRounding, AVarianceThatCancelsStaysWithinItsBound) {
    constexpr double bound = 6.1e-8;
    Random random(15);
    double worst = 0;
    for (int turn = 0; turn < 100000; ++turn) {
        const auto mean = static_cast<float>(random.uniform(50, 200));
        const auto count = static_cast<float>(random.integer(2, 100000));
        const double deviation = random.uniform(0, 1);
        const auto sumSq = static_cast<float>((static_cast<double>(mean) * mean + deviation) * count);
        float var = 0;
        ASSERT_EQ(vornsNewVar_32f(&mean, &sumSq, &var, 1, count, 1), vornStsNoErr);
        const long double square = static_cast<long double>(mean) * mean * count, exact = sumSq - square;
        worst = std::max(worst, static_cast<double>(std::fabs(var - exact) / (square + std::fabs(var))));
    }
    EXPECT_LE(worst, bound);
    EXPECT_GE(worst, bound / 2) << "the bound is no larger than it need be";
}

// Integers are made of not-a-numbers by their sign. Where val2 is one it is that of val2, whatever val1 makes.
TEST(NewVarRounding, TheSignOfTheLastFactorDecides) {
    constexpr float inf = std::numeric_limits<float>::infinity(), nan = std::numeric_limits<float>::quiet_NaN();
    for (const float val1 : {1.0f, inf, -inf, nan, -nan}) {
        for (const bool negative : {false, true}) {
            alignas(64) Vorn32s mean[16] = {}, var[16];
            std::fill_n(var, 16, 5);
            ASSERT_EQ(vornsNewVar_32s_ISfs(mean, var, 16, 0, val1, negative ? -nan : nan), vornStsNoErr);
            for (const Vorn32s element : var) EXPECT_EQ(element, negative ? INT_MIN : INT_MAX) << val1;
        }
    }
}

struct NewVarArguments {
    std::vector<float> data = std::vector<float>(3, 1.0f);
    Guarded<float> out = Guarded<float>(3);
    const float *mean = data.data(), *sumSq = data.data();
    float* dst = out.data();
    int len = 3;
};
using SingleRule = test::Rule<NewVarArguments>;
const SingleRule noMean{"srcMean", vornStsNullPtrErr, [](NewVarArguments& a) { a.mean = nullptr; }};
const SingleRule noSumSq{"srcSumSq", vornStsNullPtrErr, [](NewVarArguments& a) { a.sumSq = nullptr; }};
const SingleRule noDst{"dst", vornStsNullPtrErr, [](NewVarArguments& a) { a.dst = nullptr; }};
const SingleRule noLen{"len 0", vornStsSizeErr, [](NewVarArguments& a) { a.len = 0; }};
const SingleRule negativeLen{"len INT_MIN", vornStsSizeErr, [](NewVarArguments& a) { a.len = INT_MIN; }};

TEST(NewVarChecks, ChecksInOrder) {
    const auto untouched = [](NewVarArguments& a) { return a.out.untouched(); };
    test::expectCheckOrder<NewVarArguments>(
        [] { return NewVarArguments(); },
        [](NewVarArguments& a) { return vornsNewVar_32f(a.mean, a.sumSq, a.dst, a.len, 1, 1); }, untouched,
        {noMean, noSumSq, noDst, noLen, negativeLen});
    test::expectCheckOrder<NewVarArguments>(
        [] { return NewVarArguments(); },
        [](NewVarArguments& a) { return vornsNewVar_32f_I(a.mean, a.dst, a.len, 1, 1); }, untouched,
        {noMean, noDst, noLen, negativeLen});
}

// ---- vornsNewVar in integers.

using IntegerModel = Vorn32s (*)(Vorn32s mean, Vorn32s sumSq, float val1, float val2, int scaleFactor);
IntegerModel integerModel(bool aligned) { return aligned ? model::newVarRounded : model::newVarTruncated; }

struct Integers {
    static VornStatus call(const Vorn32s* mean, const Vorn32s* sumSq, Vorn32s* dst, int len, int sf, float val1,
                           float val2) {
        return vornsNewVar_32s_Sfs(mean, sumSq, dst, len, sf, val1, val2);
    }
};
struct IntegersInPlace {
    static VornStatus call(const Vorn32s* mean, Vorn32s* sumSq, Vorn32s* dst, int len, int sf, float val1, float val2) {
        const VornStatus status = vornsNewVar_32s_ISfs(mean, sumSq, len, sf, val1, val2);
        std::copy_n(sumSq, len, dst);
        return status;
    }
};

template <class Member>
class NewVarOfIntegers : public testing::Test {
protected:
    // Offsets in bytes from a 64-byte address.
    static void compare(const std::vector<Vorn32s>& mean, const std::vector<Vorn32s>& sumSq, int scaleFactor,
                        float val1, float val2, std::size_t meanAt, std::size_t sumSqAt, std::size_t dstAt) {
        const std::size_t len = mean.size();
        const auto model = integerModel(meanAt % 16 == 0 && sumSqAt % 16 == 0);
        std::vector<Vorn32s> expected(len);
        for (std::size_t i = 0; i < len; ++i) expected[i] = model(mean[i], sumSq[i], val1, val2, scaleFactor);
        Offset<Vorn32s> m(len, meanAt), s(len, sumSqAt), dst(len, dstAt);
        m.assign(mean), s.assign(sumSq);
        ASSERT_EQ(Member::call(m, s, dst, static_cast<int>(len), scaleFactor, val1, val2), vornStsNoErr);
        EXPECT_TRUE(sameBits(dst.values(), expected))
            << len << ", scale factor " << scaleFactor << ", at " << meanAt << ", " << sumSqAt << ", " << dstAt;
        EXPECT_TRUE(dst.surroundingsUntouched() && s.surroundingsUntouched());
    }
};
using IntegerMembers = testing::Types<Integers, IntegersInPlace>;
TYPED_TEST_SUITE(NewVarOfIntegers, IntegerMembers);

const std::pair<std::size_t, std::size_t> addresses[] = {{0, 0}, {16, 48}, {4, 0}, {0, 4}, {8, 8}, {12, 16}};

TYPED_TEST(NewVarOfIntegers, EqualTheModelBitForBit) {
    Random random(21);
    for (int len = 1; len <= 70; ++len) {
        for (const auto& [meanAt, sumSqAt] : addresses) {
            for (int turn = 0; turn < 3; ++turn) {
                const auto count = static_cast<float>(random.uniform(2, 1e4));
                this->compare(random.integers<Vorn32s>(len, -400, 400), random.integers<Vorn32s>(len), turn * 4 - 4,
                              count, 1 / (count - 1), meanAt, sumSqAt, len % 4 * 4);
            }
        }
    }
}

TYPED_TEST(NewVarOfIntegers, EqualTheModelOnLongVectors) {
    Random random(22);
    for (std::size_t len : {2047, 2048, 2049, 5000}) {
        for (std::size_t at : {0, 4}) {
            this->compare(random.integers<Vorn32s>(len, -400, 400), random.integers<Vorn32s>(len), 3, 100, 1.0f / 99,
                          at, 0, 0);
        }
    }
}

// No not-a-number among the constants: its sign, which would show in the rounded result, is not promised.
TYPED_TEST(NewVarOfIntegers, EveryScaleFactorAndHardValues) {
    Random random(23);
    const auto values = test::hardIntegers<Vorn32s>();
    const float infinity = std::numeric_limits<float>::infinity();
    const float constants[] = {0, 1, -1, 0.5f, 1e-30f, 1e30f, 3.4e38f, 1e-45f, infinity, -infinity};
    for (int scaleFactor : {INT_MIN, INT_MIN + 1, -100000, -129, -128, -127, -64, -32, -31, -3,  -1,     0,      1,
                            2,       31,          32,      33,   64,   126,  127, 128, 149, 150, 100000, INT_MAX}) {
        for (float val1 : constants) {
            for (float val2 : constants) {
                const auto len = static_cast<std::size_t>(random.integer(1, 20));
                const auto mean = random.pick(values, len), sumSq = random.pick(values, len);
                for (std::size_t at : {0, 4}) this->compare(mean, sumSq, scaleFactor, val1, val2, at, 0, 0);
            }
        }
    }
}

TYPED_TEST(NewVarOfIntegers, TheRoundedResultIsThatOfNearestWhateverTheMode) {
    const Vorn32s mean[4] = {0, 0, 0, 0}, sumSq[4] = {5, 7, -5, 6};
    for (unsigned mode : modes) {
        Offset<Vorn32s> m(4, 0), s(4, 0), dst(4, 0), unaligned(4, 4);
        m.assign({mean, mean + 4});
        s.assign({sumSq, sumSq + 4});
        unaligned.assign({mean, mean + 4});
        Vorn32s truncated[4];
        unsigned after;
        {
            const RoundingMode caller(mode);
            Offset<Vorn32s> copy(4, 0);
            copy.assign({sumSq, sumSq + 4});
            TypeParam::call(m, s, dst, 4, 1, 1, 1);
            TypeParam::call(unaligned, copy, truncated, 4, 1, 1, 1);
            after = RoundingMode::current();
        }
        EXPECT_EQ(after, mode);
        EXPECT_EQ(dst.values(), (std::vector<Vorn32s>{2, 4, -2, 3})) << mode;
        EXPECT_EQ(std::vector<Vorn32s>(truncated, truncated + 4), (std::vector<Vorn32s>{2, 3, -2, 3})) << mode;
    }
}

// What comes before the conversion is in the caller's mode.
TYPED_TEST(NewVarOfIntegers, TheArithmeticFollowsTheCallersMode) {
    Random random(24);
    const std::size_t len = 2100;
    const auto mean = random.integers<Vorn32s>(len, -40000, 40000), sumSq = random.integers<Vorn32s>(len);
    std::vector<Vorn32s> nearest;
    for (unsigned mode : modes) {
        for (std::size_t at : {0, 4}) {
            const volatile IntegerModel model = integerModel(at == 0);
            Offset<Vorn32s> m(len, at), s(len, 0);
            m.assign(mean), s.assign(sumSq);
            std::vector<Vorn32s> expected(len), dst(len);
            {
                const RoundingMode caller(mode);
                for (std::size_t i = 0; i < len; ++i) expected[i] = model(mean[i], sumSq[i], 1.1f, 0.3f, 2);
                TypeParam::call(m, s, dst.data(), static_cast<int>(len), 2, 1.1f, 0.3f);
            }
            EXPECT_TRUE(sameBits(dst, expected)) << mode << " at " << at;
            if (at == 0 && mode == RoundingMode::nearest) nearest = dst;
            if (at == 0) {
                EXPECT_EQ(dst == nearest, mode == RoundingMode::nearest) << "the mode shows";
            }
        }
    }
}

TEST(NewVarOfIntegersLiterals, TheAddressChoosesBetweenSaturationAndTheSmallestInteger) {
    alignas(16) Vorn32s mean[5] = {0, 0, 1, 0, 0}, sumSq[5] = {2147483647, 1000, 0, 2147483647, -2147483647};
    alignas(16) Vorn32s dst[4];
    ASSERT_EQ(vornsNewVar_32s_Sfs(mean, sumSq, dst, 4, -1, 1, 1), vornStsNoErr);
    EXPECT_EQ(dst[0], 2147483647);
    EXPECT_EQ(dst[1], 2000);
    EXPECT_EQ(dst[2], -2);
    ASSERT_EQ(vornsNewVar_32s_Sfs(mean + 1, sumSq + 1, dst, 4, -1, 1, 1), vornStsNoErr);
    EXPECT_EQ(dst[0], 2000);
    EXPECT_EQ(dst[1], -2);
    EXPECT_EQ(dst[2], -2147483647 - 1) << "too large: no 32-bit integer";
    EXPECT_EQ(dst[3], -2147483647 - 1);
}

TEST(NewVarOverlap, TheResultMayStandInThePlaceOfTheMeans) {
    Random random(31);
    for (std::size_t len : {1, 3, 21, 39, 5000}) {
        auto mean = random.floats(len, -10, 30);
        const auto sumSq = random.floats(len, 0, 1e5);
        std::vector<float> expected(len);
        for (std::size_t i = 0; i < len; ++i) expected[i] = model::newVarMixed(mean[i], sumSq[i], 100, 0.01f);
        ASSERT_EQ(vornsNewVar_32f(mean.data(), sumSq.data(), mean.data(), static_cast<int>(len), 100, 0.01f),
                  vornStsNoErr);
        EXPECT_TRUE(sameBits(mean, expected)) << len;
        for (std::size_t at : {0, 4}) {
            for (unsigned mode : {RoundingMode::nearest, RoundingMode::up}) {
                Offset<Vorn32s> m(len, at), s(len, 0);
                const auto means = random.integers<Vorn32s>(len, -400, 400), sums = random.integers<Vorn32s>(len);
                m.assign(means), s.assign(sums);
                const volatile IntegerModel model = integerModel(at == 0);
                std::vector<Vorn32s> integers(len);
                {
                    const RoundingMode caller(mode);
                    for (std::size_t i = 0; i < len; ++i) integers[i] = model(means[i], sums[i], 9.9f, 0.3f, 1);
                    vornsNewVar_32s_Sfs(m, s, m, static_cast<int>(len), 1, 9.9f, 0.3f);
                }
                EXPECT_TRUE(sameBits(m.values(), integers)) << len << " at " << at << ", mode " << mode;
            }
        }
    }
}

struct IntegerArguments {
    std::vector<Vorn32s> data = std::vector<Vorn32s>(3, 1);
    Guarded<Vorn32s> out = Guarded<Vorn32s>(3);
    const Vorn32s *mean = data.data(), *sumSq = data.data();
    Vorn32s* dst = out.data();
    int len = 3;
};
TEST(NewVarChecks, IntegersInOrder) {
    using A = IntegerArguments;
    using Rule = test::Rule<A>;
    const Rule noMeans{"srcMean", vornStsNullPtrErr, [](A& a) { a.mean = nullptr; }};
    const Rule noSums{"srcSumSq", vornStsNullPtrErr, [](A& a) { a.sumSq = nullptr; }};
    const Rule noResult{"dst", vornStsNullPtrErr, [](A& a) { a.dst = nullptr; }};
    const Rule zero{"len 0", vornStsSizeErr, [](A& a) { a.len = 0; }};
    const auto untouched = [](A& a) { return a.out.untouched(); };
    test::expectCheckOrder<A>([] { return A(); },
                              [](A& a) { return vornsNewVar_32s_Sfs(a.mean, a.sumSq, a.dst, a.len, 0, 1, 1); },
                              untouched, {noMeans, noSums, noResult, zero});
    test::expectCheckOrder<A>([] { return A(); },
                              [](A& a) { return vornsNewVar_32s_ISfs(a.mean, a.dst, a.len, 0, 1, 1); }, untouched,
                              {noMeans, noResult, zero});
}

}  // namespace
