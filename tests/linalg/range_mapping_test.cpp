// Values mapped into a range.
#include "model/range_mapping.h"

#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <limits>
#include <type_traits>
#include <vector>

#include "support/expect.h"
#include "support/guarded.h"
#include "support/rounding_mode.h"
#include "support/values.h"
#include "vornsr.h"

// A kernel with a name of its own; no header declares it.
extern "C" void vornsNormalizeInRangeMM_16s8u_M7(const Vorn16s* src, Vorn8u* dst, std::int64_t len, std::int64_t min,
                                                 std::int64_t max, std::int64_t range, Vorn32f lower, Vorn32f upper);

namespace {

using test::Guarded;
using test::Offset;
using test::Random;
using test::RoundingMode;
using test::sameBits;

const unsigned modes[] = {RoundingMode::nearest, RoundingMode::down, RoundingMode::up, RoundingMode::towardZero};
constexpr float notANumber = std::numeric_limits<float>::quiet_NaN(), infinity = std::numeric_limits<float>::infinity();

// The members behind one face: the numbers by name.
template <class BoundType, class RangeType>
struct Numbers {
    BoundType min, max;
    RangeType range;
    float lower, upper;
};
template <class S, class R, class BoundType, class RangeType>
struct Form {
    using Source = S;
    using Result = R;
    using Bound = BoundType;
    using Range = RangeType;
    using Of = Numbers<Bound, Range>;
};

struct Singles : Form<Vorn32f, Vorn32f, Vorn32f, Vorn32f> {
    static VornStatus told(const Vorn32f* src, Vorn32f* dst, int len, const Of& n) {
        return vornsNormalizeInRangeMinMax_32f(src, dst, len, n.min, n.max, n.lower, n.upper, n.range);
    }
    static VornStatus found(const Vorn32f* src, Vorn32f* dst, int len, const Of& n) {
        return vornsNormalizeInRange_32f(src, dst, len, n.lower, n.upper, n.range);
    }
    static VornStatus toldInPlace(Vorn32f* srcDst, int len, const Of& n) {
        return vornsNormalizeInRangeMinMax_32f_I(srcDst, len, n.min, n.max, n.lower, n.upper, n.range);
    }
    static VornStatus foundInPlace(Vorn32f* srcDst, int len, const Of& n) {
        return vornsNormalizeInRange_32f_I(srcDst, len, n.lower, n.upper, n.range);
    }
};
struct SinglesToShorts : Form<Vorn32f, Vorn16s, Vorn32f, int> {
    static VornStatus told(const Vorn32f* src, Vorn16s* dst, int len, const Of& n) {
        return vornsNormalizeInRangeMinMax_32f16s(src, dst, len, n.range, n.min, n.max, n.lower, n.upper);
    }
    static VornStatus found(const Vorn32f* src, Vorn16s* dst, int len, const Of& n) {
        return vornsNormalizeInRange_32f16s(src, dst, len, n.range, n.lower, n.upper);
    }
};
struct SinglesToBytes : Form<Vorn32f, Vorn8u, Vorn32f, int> {
    static VornStatus told(const Vorn32f* src, Vorn8u* dst, int len, const Of& n) {
        return vornsNormalizeInRangeMinMax_32f8u(src, dst, len, n.range, n.min, n.max, n.lower, n.upper);
    }
    static VornStatus found(const Vorn32f* src, Vorn8u* dst, int len, const Of& n) {
        return vornsNormalizeInRange_32f8u(src, dst, len, n.range, n.lower, n.upper);
    }
};
struct Shorts : Form<Vorn16s, Vorn16s, int, int> {
    static VornStatus told(const Vorn16s* src, Vorn16s* dst, int len, const Of& n) {
        return vornsNormalizeInRangeMinMax_16s(src, dst, len, n.min, n.max, n.range, n.lower, n.upper);
    }
    static VornStatus found(const Vorn16s* src, Vorn16s* dst, int len, const Of& n) {
        return vornsNormalizeInRange_16s(src, dst, len, n.range, n.lower, n.upper);
    }
    static VornStatus toldInPlace(Vorn16s* srcDst, int len, const Of& n) {
        return vornsNormalizeInRangeMinMax_16s_I(srcDst, len, n.min, n.max, n.range, n.lower, n.upper);
    }
    static VornStatus foundInPlace(Vorn16s* srcDst, int len, const Of& n) {
        return vornsNormalizeInRange_16s_I(srcDst, len, n.range, n.lower, n.upper);
    }
};
struct ShortsToBytes : Form<Vorn16s, Vorn8u, int, int> {
    static VornStatus told(const Vorn16s* src, Vorn8u* dst, int len, const Of& n) {
        return vornsNormalizeInRangeMinMax_16s8u(src, dst, len, n.min, n.max, n.range, n.lower, n.upper);
    }
    static VornStatus found(const Vorn16s* src, Vorn8u* dst, int len, const Of& n) {
        return vornsNormalizeInRange_16s8u(src, dst, len, n.range, n.lower, n.upper);
    }
};
// The last two have no other way to a result than through dst.
template <class Member>
constexpr bool hasInPlace = std::is_same_v<typename Member::Source, typename Member::Result>;

template <class T>
std::vector<T> elements(Random& random, std::size_t n, bool hard) {
    if constexpr (std::is_integral_v<T>) {
        return hard ? random.pick(test::hardIntegers<T>(), n) : random.integers<T>(n);
    } else {
        return hard ? random.pick(test::hardFloats<T>(), n) : random.floats(n, -100.0, 300.0);
    }
}

template <class Member>
class RangeMapping : public testing::Test {
protected:
    using Source = typename Member::Source;
    using Result = typename Member::Result;
    using Bound = typename Member::Bound;
    using Range = typename Member::Range;
    using Of = typename Member::Of;

    // Bounds inside and at the ends of ordinary elements, and a range that is reached.
    static constexpr bool shorts = std::is_integral_v<Source>;
    static constexpr Bound someMin = static_cast<Bound>(shorts ? -20000 : -50), someMax = shorts ? 25000 : 250;
    static constexpr Range someRange = static_cast<Range>(sizeof(Result) == 1 ? 255 : 1000);
    static Of some() { return {someMin, someMax, someRange, 0.125f, 0.9f}; }

    static void expectSame(VornStatus status, const Guarded<Result>& dst, const std::vector<Result>& expected,
                           VornStatus expectedStatus, const Of& n) {
        EXPECT_EQ(status, expectedStatus);
        EXPECT_TRUE(sameBits(dst, expected)) << expected.size() << ": " << n.min << " to " << n.max << " onto "
                                             << n.range << ", " << n.lower << " to " << n.upper;
        EXPECT_TRUE(dst.surroundingsUntouched());
    }
    static void compare(const std::vector<Source>& values, const Of& n, unsigned mode = RoundingMode::nearest) {
        const int len = static_cast<int>(values.size());
        const Guarded<Source> src(values);
        Guarded<Result> told(values.size()), found(values.size());
        std::vector<Result> expectedTold(values.size()), expectedFound(values.size());
        auto* volatile map = model::mapInto<Source, Result>;
        double least, most;
        model::extremesOf(values.data(), len, least, most);
        // Integer results do not know the caller's mode.
        const unsigned modelMode = std::is_integral_v<Result> ? unsigned{RoundingMode::nearest} : mode;
        {
            const RoundingMode caller(modelMode);
            if (n.min != n.max) map(src, expectedTold.data(), len, n.min, n.max, n.range, n.lower, n.upper);
            if (least != most) map(src, expectedFound.data(), len, least, most, n.range, n.lower, n.upper);
        }
        VornStatus ofTold, ofFound;
        unsigned after;
        {
            const RoundingMode caller(mode);
            ofTold = Member::told(src, told, len, n);
            ofFound = Member::found(src, found, len, n);
            after = RoundingMode::current();
        }
        EXPECT_EQ(after, mode);
        const VornStatus toldStatus = n.min == n.max ? vornStsZeroRange : vornStsNoErr;
        const VornStatus foundStatus = least == most ? vornStsZeroRange : vornStsNoErr;
        expectSame(ofTold, told, expectedTold, toldStatus, n);
        expectSame(ofFound, found, expectedFound, foundStatus, n);
        EXPECT_TRUE(sameBits(src, values) && src.surroundingsUntouched());
        if constexpr (hasInPlace<Member>) {
            const Guarded<Result> toldIn(values), foundIn(values);
            {
                const RoundingMode caller(mode);
                ofTold = Member::toldInPlace(toldIn, len, n);
                ofFound = Member::foundInPlace(foundIn, len, n);
            }
            expectSame(ofTold, toldIn, expectedTold, toldStatus, n);
            expectSame(ofFound, foundIn, expectedFound, foundStatus, n);
        }
    }
};
using Members = testing::Types<Singles, SinglesToShorts, SinglesToBytes, Shorts, ShortsToBytes>;
TYPED_TEST_SUITE(RangeMapping, Members);

TYPED_TEST(RangeMapping, EqualsTheModelBitForBit) {
    Random random(1);
    for (int len = 1; len <= 200; ++len)
        this->compare(elements<typename TypeParam::Source>(random, len, false), this->some());
    for (int len : {255, 256, 257, 511, 512, 513, 1000, 1023, 1024, 1025, 4099}) {
        this->compare(elements<typename TypeParam::Source>(random, len, false), this->some());
    }
}

// More than the caches are to hold: results go past them.
TYPED_TEST(RangeMapping, EqualsTheModelOnLongVectors) {
    Random random(2);
    const int len = (33 << 20) / static_cast<int>(sizeof(typename TypeParam::Result)) + 77;
    std::vector<typename TypeParam::Source> values = elements<typename TypeParam::Source>(random, 5000, false);
    values.resize(static_cast<std::size_t>(len));
    for (std::size_t i = 5000; i < values.size(); ++i) values[i] = values[i % 4999];
    using Result = typename TypeParam::Result;
    std::vector<Result> dst(values.size()), expected(values.size());
    const auto n = this->some();
    model::mapInto(values.data(), expected.data(), 5000, n.min, n.max, n.range, n.lower, n.upper);
    for (std::size_t i = 5000; i < expected.size(); ++i) expected[i] = expected[i % 4999];
    ASSERT_EQ(TypeParam::told(values.data(), dst.data(), len, n), vornStsNoErr);
    EXPECT_TRUE(sameBits(dst, expected));
}

TYPED_TEST(RangeMapping, FractionsAndRanges) {
    using Range = typename TypeParam::Range;
    Random random(3);
    const float fractions[][2] = {{0, 1},      {0, 0.5f},       {0.25f, 1},         {0.999f, 1},
                                  {0, 1e-30f}, {-0.0f, 1e-45f}, {0.5f, 0.50000006f}};
    std::vector<Range> ranges = {Range(0),     Range(1),     Range(255),      Range(256),        Range(32767),
                                 Range(32768), Range(40000), Range(16777217), Range(2147483520), Range(2147483647)};
    if constexpr (!std::is_integral_v<Range>) {
        for (float range : {-0.0f, 0.1f, 1e-45f, 1e38f, infinity, notANumber}) ranges.push_back(range);
    }
    for (const auto& fraction : fractions) {
        for (Range range : ranges) {
            auto n = this->some();
            n.lower = fraction[0], n.upper = fraction[1], n.range = range;
            this->compare(elements<typename TypeParam::Source>(random, 70, false), n);
        }
    }
}

TYPED_TEST(RangeMapping, HardValues) {
    using Bound = typename TypeParam::Bound;
    Random random(4);
    std::vector<Bound> bounds;
    if constexpr (std::is_integral_v<Bound>) {
        bounds = {INT_MIN, INT_MIN + 1, -16777217, -32768, -1, 0, 1, 32767, 16777216, 16777217, INT_MAX - 1, INT_MAX};
    } else {
        bounds = {-infinity, -3.4e38f, -1e30f, -1, -1e-45f, -0.0f, 0, 1e-45f, 1e-38f, 2, 3.4e38f, infinity, notANumber};
    }
    for (Bound min : bounds) {
        for (Bound max : bounds) {
            if (min > max) continue;
            for (float lower : {0.0f, 0.1f}) {
                auto n = this->some();
                n.min = min, n.max = max, n.lower = lower;
                this->compare(elements<typename TypeParam::Source>(random, 75, true), n);
            }
        }
    }
}

TYPED_TEST(RangeMapping, FollowsTheCallersRoundingModeOrNone) {
    Random random(5);
    for (unsigned mode : modes) {
        for (int len : {1, 5, 40, 300}) {
            this->compare(elements<typename TypeParam::Source>(random, len, false), this->some(), mode);
        }
    }
}

TYPED_TEST(RangeMapping, NoAlignmentChangesABit) {
    using Source = typename TypeParam::Source;
    using Result = typename TypeParam::Result;
    Random random(6);
    for (int len : {5, 33, 70, 700}) {
        const auto values = elements<Source>(random, len, false);
        std::vector<Result> expected(len);
        const auto n = this->some();
        model::mapInto(values.data(), expected.data(), len, n.min, n.max, n.range, n.lower, n.upper);
        for (std::size_t a = 0; a < 64; a += sizeof(Source)) {
            Offset<Source> src(len, a);
            Offset<Result> dst(len, (7 * a / sizeof(Source) * sizeof(Result)) % 64);
            src.assign(values);
            ASSERT_EQ(TypeParam::told(src, dst, len, n), vornStsNoErr);
            ASSERT_TRUE(sameBits(dst.data(), expected.data(), len)) << len << " at " << a;
            EXPECT_TRUE(dst.surroundingsUntouched());
        }
    }
}

TYPED_TEST(RangeMapping, ChecksPointersThenTheLengthThenTheValues) {
    using Source = typename TypeParam::Source;
    using Result = typename TypeParam::Result;
    struct Arguments {
        std::vector<Source> values = {Source(1), Source(2), Source(3)};
        Guarded<Result> out = Guarded<Result>(3);
        const Source* src = values.data();
        Result* dst = out.data();
        int len = 3;
        typename TypeParam::Of n = {1, 3, 10, 0.1f, 0.9f};
    };
    using Rule = test::Rule<Arguments>;
    std::vector<Rule> rules = {
        {"dst", vornStsNullPtrErr, [](Arguments& a) { a.dst = nullptr; }},
        {"len 0", vornStsSizeErr, [](Arguments& a) { a.len = 0; }},
        {"len least", vornStsSizeErr, [](Arguments& a) { a.len = INT_MIN; }},
        {"lower below 0", vornStsBadArgErr, [](Arguments& a) { a.n.lower = -1e-45f; }},
        {"lower not a number", vornStsBadArgErr, [](Arguments& a) { a.n.lower = notANumber; }},
        {"lower = upper", vornStsBadArgErr, [](Arguments& a) { a.n.lower = a.n.upper = 0.5f; }},
        {"lower above upper", vornStsBadArgErr, [](Arguments& a) { a.n.lower = 0.6f, a.n.upper = 0.5f; }},
        {"upper above 1", vornStsBadArgErr, [](Arguments& a) { a.n.upper = 1.0000001f; }},
        {"upper not a number", vornStsBadArgErr, [](Arguments& a) { a.n.upper = notANumber; }},
        {"range below 0", vornStsBadArgErr, [](Arguments& a) { a.n.range = -1; }},
    };
    const Rule noSrc{"src", vornStsNullPtrErr, [](Arguments& a) { a.src = nullptr; }};
    const Rule bounds{"min above max", vornStsBadArgErr, [](Arguments& a) { a.n.min = 4; }};
    const auto expectOrder = [](VornStatus (*call)(Arguments&), const std::vector<Rule>& all) {
        test::expectCheckOrder<Arguments>([] { return Arguments(); }, call,
                                          [](Arguments& a) { return a.out.untouched(); }, all);
    };
    // In place dst alone is looked at. (The pattern of an untouched buffer serves as elements, too.)
    if constexpr (hasInPlace<TypeParam>) {
        expectOrder([](Arguments& a) { return TypeParam::foundInPlace(a.dst, a.len, a.n); }, rules);
        auto toldRules = rules;
        toldRules.push_back(bounds);
        expectOrder([](Arguments& a) { return TypeParam::toldInPlace(a.dst, a.len, a.n); }, toldRules);
    }
    rules.insert(rules.begin(), noSrc);
    expectOrder([](Arguments& a) { return TypeParam::found(a.src, a.dst, a.len, a.n); }, rules);
    rules.push_back(bounds);
    expectOrder([](Arguments& a) { return TypeParam::told(a.src, a.dst, a.len, a.n); }, rules);
}

// Greater elements have no smaller results, and both ends of the range are reached.
TYPED_TEST(RangeMapping, RisesFromZeroToTheRange) {
    using Source = typename TypeParam::Source;
    using Result = typename TypeParam::Result;
    const int len = 3001;
    std::vector<Source> values(len);
    for (int i = 0; i < len; ++i) values[i] = static_cast<Source>(10 * i - 12000);
    for (const auto& [lower, upper] : {std::pair{0.0f, 1.0f}, std::pair{0.1f, 0.9f}, std::pair{0.3f, 0.35f}}) {
        auto n = this->some();
        n.lower = lower, n.upper = upper;
        n.min = static_cast<typename TypeParam::Bound>(values.front());
        n.max = static_cast<typename TypeParam::Bound>(values.back());
        std::vector<Result> told(len), found(len);
        ASSERT_EQ(TypeParam::told(values.data(), told.data(), len, n), vornStsNoErr);
        ASSERT_EQ(TypeParam::found(values.data(), found.data(), len, n), vornStsNoErr);
        EXPECT_TRUE(sameBits(told, found));
        for (int i = 1; i < len; ++i) ASSERT_LE(told[i - 1], told[i]) << i;
        EXPECT_EQ(told.front(), Result(0));
        // hi, lo and the span are rounded at the size of the bounds: 2^-24 of 12000 to 18000 against the span.
        const double error = static_cast<double>(n.range) * 0x1p-24 * (1 + 18000 * 4 / (30000.0 * (upper - lower)));
        EXPECT_NEAR(static_cast<double>(told.back()), static_cast<double>(n.range), error);
        // A straight line in between.
        for (int i = 0; i < len; i += 100) {
            const double share = std::clamp((i / 3000.0 - lower) / (double{upper} - lower), 0.0, 1.0);
            EXPECT_NEAR(static_cast<double>(told[i]), share * n.range, error + (std::is_integral_v<Result> ? 0.5 : 0));
        }
    }
}

TEST(NormalizeInRangeMinMax, ClipsAndMapsLinearly) {
    const float src[] = {1, 9, 5, 0, 10, -7, 100, notANumber, infinity, -infinity};
    const float expected[] = {0, 1, 0.5f, 0, 1, 0, 1, 1, 1, 0};
    float dst[10];
    ASSERT_EQ(vornsNormalizeInRangeMinMax_32f(src, dst, 10, 0, 10, 0.1f, 0.9f, 1), vornStsNoErr);
    for (int i = 0; i < 10; ++i) EXPECT_NEAR(dst[i], expected[i], 2e-7f) << i;
    Vorn16s shorts[10];
    ASSERT_EQ(vornsNormalizeInRangeMinMax_32f16s(src, shorts, 10, 1000, 0, 10, 0.1f, 0.9f), vornStsNoErr);
    for (int i = 0; i < 10; ++i) EXPECT_EQ(shorts[i], 1000 * expected[i]) << i;
    Vorn8u bytes[10];
    ASSERT_EQ(vornsNormalizeInRangeMinMax_32f8u(src, bytes, 10, 100, 0, 10, 0.1f, 0.9f), vornStsNoErr);
    for (int i = 0; i < 10; ++i) EXPECT_EQ(bytes[i], 100 * expected[i]) << i;
}

TEST(NormalizeInRangeMinMax, RoundsTiesToEvenAndSaturates) {
    // Halves: 0.5, 1.5, 2.5, 3.5.
    const Vorn16s src[] = {1, 3, 5, 7, 16};
    Vorn16s shorts[5];
    Vorn8u bytes[5];
    ASSERT_EQ(vornsNormalizeInRangeMinMax_16s(src, shorts, 5, 0, 16, 8, 0, 1), vornStsNoErr);
    ASSERT_EQ(vornsNormalizeInRangeMinMax_16s8u(src, bytes, 5, 0, 16, 8, 0, 1), vornStsNoErr);
    const int expected[] = {0, 2, 2, 4, 8};
    for (int i = 0; i < 5; ++i) {
        EXPECT_EQ(shorts[i], expected[i]);
        EXPECT_EQ(bytes[i], expected[i]);
    }
    // A range above that of the type.
    ASSERT_EQ(vornsNormalizeInRangeMinMax_16s(src, shorts, 5, 0, 16, 1 << 20, 0, 1), vornStsNoErr);
    ASSERT_EQ(vornsNormalizeInRangeMinMax_16s8u(src, bytes, 5, 0, 16, 1 << 11, 0, 1), vornStsNoErr);
    for (int i = 0; i < 5; ++i) EXPECT_EQ(shorts[i], 32767);
    EXPECT_EQ(bytes[0], 128);
    for (int i = 1; i < 5; ++i) EXPECT_EQ(bytes[i], 255);
    // The end of a range that comes as 2^31: no 32-bit integer.
    ASSERT_EQ(vornsNormalizeInRangeMinMax_16s(src, shorts, 5, 0, 16, INT_MAX, 0, 1), vornStsNoErr);
    ASSERT_EQ(vornsNormalizeInRangeMinMax_16s8u(src, bytes, 5, 0, 16, INT_MAX, 0, 1), vornStsNoErr);
    EXPECT_EQ(shorts[3], 32767);
    EXPECT_EQ(shorts[4], -32768);
    EXPECT_EQ(bytes[3], 255);
    EXPECT_EQ(bytes[4], 0);
}

TEST(NormalizeInRangeMinMax, IntegerBoundsDoNotOverflow) {
    const Vorn16s src[] = {-32768, 0, 32767};
    Vorn16s dst[3];
    ASSERT_EQ(vornsNormalizeInRangeMinMax_16s(src, dst, 3, INT_MIN, INT_MAX, 1000, 0, 1), vornStsNoErr);
    for (Vorn16s x : dst) EXPECT_EQ(x, 500);
    // Unequal as integers, equal as singles: the span is 0, and zero times an infinite factor is no number.
    ASSERT_EQ(vornsNormalizeInRangeMinMax_16s(src, dst, 3, 16777216, 16777217, 1000, 0, 1), vornStsNoErr);
    for (Vorn16s x : dst) EXPECT_EQ(x, -32768);
    // Equal as integers.
    ASSERT_EQ(vornsNormalizeInRangeMinMax_16s(src, dst, 3, INT_MAX, INT_MAX, 1000, 0, 1), vornStsZeroRange);
    for (Vorn16s x : dst) EXPECT_EQ(x, 0);
}

TEST(NormalizeInRangeMinMax, NotANumber) {
    const float src[] = {0, 5, notANumber, 20};
    float dst[4];
    Vorn16s shorts[4];
    Vorn8u bytes[4];
    for (int which = 0; which < 3; ++which) {
        const float min = which == 0 ? notANumber : 0, max = which == 1 ? notANumber : 10;
        const float range = which == 2 ? notANumber : 1;
        ASSERT_EQ(vornsNormalizeInRangeMinMax_32f(src, dst, 4, min, max, 0, 1, range), vornStsNoErr);
        for (float x : dst) EXPECT_TRUE(std::isnan(x)) << which;
        if (which == 2) continue;
        ASSERT_EQ(vornsNormalizeInRangeMinMax_32f16s(src, shorts, 4, 100, min, max, 0, 1), vornStsNoErr);
        ASSERT_EQ(vornsNormalizeInRangeMinMax_32f8u(src, bytes, 4, 100, min, max, 0, 1), vornStsNoErr);
        for (Vorn16s x : shorts) EXPECT_EQ(x, -32768) << which;
        for (Vorn8u x : bytes) EXPECT_EQ(x, 0) << which;
    }
}

TEST(NormalizeInRange, AConstantVectorHasNoRange) {
    for (int len : {1, 3, 40, 200}) {
        const std::vector<float> src(len, -2.5f);
        Guarded<float> dst(len);
        ASSERT_EQ(vornsNormalizeInRange_32f(src.data(), dst, len, 0.1f, 0.9f, 5), vornStsZeroRange);
        EXPECT_TRUE(sameBits(dst, std::vector<float>(len, 0.0f)));
        const std::vector<Vorn16s> shorts(len, 77);
        Guarded<Vorn8u> bytes(len);
        ASSERT_EQ(vornsNormalizeInRange_16s8u(shorts.data(), bytes, len, 255, 0, 1), vornStsZeroRange);
        EXPECT_TRUE(sameBits(bytes, std::vector<Vorn8u>(len, 0)));
    }
    // Zeros of both signs are one value.
    const float zeros[] = {0.0f, -0.0f, 0.0f};
    float dst[3] = {1, 1, 1};
    ASSERT_EQ(vornsNormalizeInRange_32f(zeros, dst, 3, 0, 1, 5), vornStsZeroRange);
    const float expected[3] = {};
    EXPECT_TRUE(sameBits(dst, expected, 3));
}

TEST(NormalizeInRange, PassesOverNotANumbersWhereverTheyStand) {
    for (int at : {0, 1, 17, 38}) {
        std::vector<float> src(39);
        for (int i = 0; i < 39; ++i) src[i] = static_cast<float>(i % 11);
        src[at] = notANumber;
        if (at == 1) src[0] = notANumber;
        std::vector<float> dst(39);
        ASSERT_EQ(vornsNormalizeInRange_32f(src.data(), dst.data(), 39, 0, 1, 10), vornStsNoErr);
        for (int i = 0; i < 39; ++i) EXPECT_EQ(dst[i], std::isnan(src[i]) ? 10 : src[i]) << i << " of " << at;
    }
    const std::vector<float> none(5, notANumber);
    std::vector<float> dst(5);
    ASSERT_EQ(vornsNormalizeInRange_32f(none.data(), dst.data(), 5, 0, 1, 10), vornStsNoErr);
    for (float x : dst) EXPECT_TRUE(std::isnan(x));
    Vorn16s shorts[5];
    ASSERT_EQ(vornsNormalizeInRange_32f16s(none.data(), shorts, 5, 10, 0, 1), vornStsNoErr);
    for (Vorn16s x : shorts) EXPECT_EQ(x, -32768);
}

TEST(NormalizeInRangeMinMax, TheKernelByItsName) {
    Random random(7);
    const auto src = random.integers<Vorn16s>(333);
    std::vector<Vorn8u> expected(333), dst(333);
    ASSERT_EQ(vornsNormalizeInRangeMinMax_16s8u(src.data(), expected.data(), 333, -20000, 9999, 255, 0.2f, 0.7f),
              vornStsNoErr);
    vornsNormalizeInRangeMM_16s8u_M7(src.data(), dst.data(), 333, -20000, 9999, 255, 0.2f, 0.7f);
    EXPECT_TRUE(sameBits(dst, expected));
}

}  // namespace
