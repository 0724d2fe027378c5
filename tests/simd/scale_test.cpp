// What integers are scaled with: the shifts that round and that saturate; the order of integers without a sign; and the
// conversions of halves.
#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <limits>
#include <vector>

#include "simd/half.h"
#include "simd/lanes.h"
#include "simd/rounded_shift.h"
#include "simd/unsigned.h"
#include "support/guarded.h"

namespace {

using namespace vorn;
using test::Element;
using test::Guarded;
using test::hardIntegers;
using test::Lanes;
using test::lanesOf;
using test::saturated;
using test::vectorOf;
using test::wrapped;

// x / 2^count, rounded to nearest with ties to even.
__int128 nearestQuotient(__int128 x, int count) {
    const __int128 divisor = __int128{1} << count;
    const __int128 quotient = x >> count, remainder = x - quotient * divisor;
    return quotient + (2 * remainder > divisor || (2 * remainder == divisor && quotient % 2 != 0));
}
// The number whose half's floor is `half`, and whose lowest bit is bit 0 of `below`.
template <class T>
__int128 numberOf(T half, T below) {
    return 2 * __int128{half} + (below & 1);
}

// Around every tie between quotients of every size: near the ends of the type, and on both sides of 0. Of 16 bits,
// everything.
template <class T>
std::vector<T> dividends(int count) {
    std::vector<T> values;
    if constexpr (sizeof(T) == 2) {
        for (int x = -32768; x <= 32767; ++x) values.push_back(static_cast<T>(x));
    } else {
        values = hardIntegers<T>();
        const std::vector<T> quotients = values;
        const __int128 unit = __int128{1} << count;
        for (T quotient : quotients) {
            for (__int128 rest : {unit / 2 - 1, unit / 2, unit / 2 + 1, unit - 1}) {
                values.push_back(wrapped<T>(quotient * unit + rest));
            }
        }
        test::Random random(31);
        for (int n = 0; n < 200; ++n) values.push_back(random.anyBits<T>());
    }
    return values;
}

// operation(a, b, count) is model of each pair of lanes. Through pointers, so that this is compiled once a type.
template <class V>
void checkCount(const char* what, int count, const std::vector<Element<V>>& x, const std::vector<Element<V>>& y,
                V (*operation)(V, V, int), Element<V> (*model)(Element<V>, Element<V>, int)) {
    for (std::size_t first = 0; first < x.size() && !testing::Test::HasFailure(); first += V::lanes) {
        Lanes<V> a, b, expected;
        for (int i = 0; i < V::lanes; ++i) {
            const std::size_t at = (first + static_cast<std::size_t>(i)) % x.size();
            a[i] = x[at], b[i] = y[at];
            expected[i] = model(a[i], b[i], count);
        }
        const Lanes<V> actual = lanesOf<V>(operation(vectorOf<V>(a), vectorOf<V>(b), count));
        if (actual != expected) {
            test::expectLanes(actual, expected, what);
            ADD_FAILURE() << "by " << count << ", from element " << first;
        }
    }
}

template <class V>
class ScaledLanes : public testing::Test {
protected:
    using T = typename V::Element;

    // Bit 0 of each is `bit`; the others are noise, of which nothing may come through.
    static std::vector<T> below(const std::vector<T>& x, int bit) {
        std::vector<T> values;
        for (T value : x) values.push_back(static_cast<T>((~value & ~T{1}) | T(bit)));
        return values;
    }
};
using Scaled = testing::Types<i16xN, i32xN, i64xN>;
TYPED_TEST_SUITE(ScaledLanes, Scaled);

TYPED_TEST(ScaledLanes, HaveAWidthAndAHighestValue) {
    using V = TypeParam;
    using T = typename V::Element;
    EXPECT_EQ(widthOf<V>, std::numeric_limits<std::make_unsigned_t<T>>::digits);
    Lanes<V> highest;
    highest.fill(std::numeric_limits<T>::max());
    test::expectLanes(lanesOf<V>(highestOf<V>()), highest, "highestOf");
}

TYPED_TEST(ScaledLanes, ShiftRightToNearest) {
    using V = TypeParam;
    using T = typename V::Element;
    for (int count = 1; count < static_cast<int>(8 * sizeof(T)); ++count) {
        const std::vector<T> x = dividends<T>(count);
        checkCount<V>(
            "roundedShiftRight", count, x, x, [](V a, V, int n) { return roundedShiftRight(a, n); },
            [](T a, T, int n) { return static_cast<T>(nearestQuotient(a, n)); });
        for (int bit : {0, 1}) {
            checkCount<V>(
                "roundedShiftRight of a half", count, x, TestFixture::below(x, bit),
                [](V a, V b, int n) { return roundedShiftRight(a, n, b); },
                [](T a, T b, int n) { return static_cast<T>(nearestQuotient(numberOf(a, b), n + 1)); });
        }
    }
}

// Lanes of 64 bits never hold a half that rounds beyond them.
TYPED_TEST(ScaledLanes, RoundHalves) {
    using V = TypeParam;
    using T = typename V::Element;
    std::vector<T> x = dividends<T>(1);
    if constexpr (sizeof(T) == 8) std::erase(x, std::numeric_limits<T>::max());
    for (int bit : {0, 1}) {
        checkCount<V>(
            "roundedHalf", 1, x, TestFixture::below(x, bit), [](V a, V b, int) { return roundedHalf(a, b); },
            [](T a, T b, int) { return saturated<T>(nearestQuotient(numberOf(a, b), 1)); });
        checkCount<V>(
            "addBit", 0, x, std::vector<T>(x.size(), T(bit)), [](V a, V b, int) { return addBit(a, b); },
            [](T a, T b, int) { return saturated<T>(__int128{a} + b); });
    }
}

// Lanes of 64 bits hold values of 32 bits, and saturate to those when they are stored.
TYPED_TEST(ScaledLanes, ShiftLeftSaturating) {
    using V = TypeParam;
    using T = typename V::Element;
    for (int count = 1; count < static_cast<int>(8 * sizeof(T)); ++count) {
        if constexpr (sizeof(T) == 8) {
            std::vector<T> x;
            for (std::int32_t value : dividends<std::int32_t>(count % 32)) x.push_back(value);
            checkCount<V>(
                "shiftLeftSat", count, x, x, [](V a, V, int n) { return saturateTo32(shiftLeftSat(a, n)); },
                [](T a, T, int n) { return T{saturated<std::int32_t>(a * (__int128{1} << n))}; });
        } else {
            const std::vector<T> x = dividends<T>(count);
            checkCount<V>(
                "shiftLeftSat", count, x, x, [](V a, V, int n) { return shiftLeftSat(a, n); },
                [](T a, T, int n) { return saturated<T>(a * (__int128{1} << n)); });
        }
    }
}

TEST(ScaledNumber, ShiftsRightToNearest) {
    for (int count = 1; count < 64; ++count) {
        for (std::int64_t x : dividends<std::int64_t>(count)) {
            ASSERT_EQ(roundedShiftRight(x, count), static_cast<std::int64_t>(nearestQuotient(x, count)))
                << x << " by " << count;
        }
    }
}

template <class Result>
void checkShiftLeftTo() {
    using L = std::numeric_limits<Result>;
    std::vector<std::int64_t> values = hardIntegers<std::int64_t>();
    for (std::int64_t x : hardIntegers<Result>()) values.push_back(x);
    for (int count = 0; count < static_cast<int>(8 * sizeof(Result)); ++count) {
        std::vector<std::int64_t> all = values;
        for (int off : {-1, 0, 1}) {
            // The borders of saturation; where the type is the widest, one beyond is no number.
            all.push_back(wrapped<std::int64_t>((__int128{L::max()} >> count) + off));
            all.push_back(wrapped<std::int64_t>((__int128{L::min()} >> count) + off));
        }
        for (std::int64_t x : all) {
            ASSERT_EQ(shiftLeftSatTo<Result>(x, count), saturated<Result>(x * (__int128{1} << count)))
                << x << " by " << count << " to " << sizeof(Result) << " bytes";
        }
    }
}
TEST(ScaledNumber, ShiftsLeftSaturating) {
    checkShiftLeftTo<std::uint8_t>();
    checkShiftLeftTo<std::int16_t>();
    checkShiftLeftTo<std::uint16_t>();
    checkShiftLeftTo<std::int32_t>();
    checkShiftLeftTo<std::int64_t>();
}

template <class V>
class UnsignedOrder : public testing::Test {};
using Unsigned = testing::Types<i16xN, i32xN>;
TYPED_TEST_SUITE(UnsignedOrder, Unsigned);

TYPED_TEST(UnsignedOrder, ExtremaOfLanesReadWithoutASign) {
    using V = TypeParam;
    if constexpr (hasUnsignedOrder) {
        using T = typename V::Element;
        using U = std::make_unsigned_t<T>;
        test::checkPairs<V>(
            "minOfUnsigned", [](V a, V b) { return minOfUnsigned(a, b); },
            [](T a, T b) { return static_cast<U>(a) < static_cast<U>(b) ? a : b; });
        test::checkPairs<V>(
            "maxOfUnsigned", [](V a, V b) { return maxOfUnsigned(a, b); },
            [](T a, T b) { return static_cast<U>(a) > static_cast<U>(b) ? a : b; });
    } else {
        EXPECT_EQ(sizeof(V), 16U);
    }
}

// Halves: a sign, five bits of exponent, ten of mantissa.

constexpr unsigned halfSign = 0x8000, halfInfinity = 0x7C00, highestHalf = 0x7BFF, quietHalf = 0x0200;

// Of a half without its sign, infinity and what is not a number excluded. Infinity's place holds 65536.
[[maybe_unused]] double valueOfHalf(unsigned magnitude) {
    const int exponent = static_cast<int>(magnitude >> 10), mantissa = static_cast<int>(magnitude & 0x3FF);
    return exponent == 0 ? std::ldexp(mantissa, -24) : std::ldexp(1024 + mantissa, exponent - 25);
}
[[maybe_unused]] std::uint32_t singleOfHalf(unsigned half) {
    const std::uint32_t sign = std::uint32_t{half & halfSign} << 16;
    const unsigned magnitude = half & ~halfSign;
    if (magnitude == halfInfinity) return sign | 0x7F800000;
    if (magnitude > halfInfinity) return sign | 0x7FC00000 | (magnitude & 0x3FF) << 13;
    return sign | std::bit_cast<std::uint32_t>(static_cast<float>(valueOfHalf(magnitude)));
}
template <HalfRounding rounding>
unsigned halfOfSingle(float x) {
    const auto bits = std::bit_cast<std::uint32_t>(x);
    const unsigned sign = bits >> 16 & halfSign;
    if (std::isnan(x)) return sign | halfInfinity | quietHalf | (bits >> 13 & 0x3FF);
    if (std::isinf(x)) return sign | halfInfinity;
    if (x == 0) return sign;
    // In units of the last place; the least is 2^-24. A quotient of 2048 carries into the exponent by itself.
    const double magnitude = std::fabs(static_cast<double>(x));
    const int unit = std::max(std::ilogb(magnitude) - 10, -24);
    const double units = std::ldexp(magnitude, -unit), whole = std::floor(units);
    auto half = static_cast<long long>(whole) + (unit + 24) * 1024LL;
    if (rounding == HalfRounding::toNearest) {
        half += units - whole > 0.5 || (units - whole == 0.5 && half % 2 != 0);
        if (half > highestHalf) half = halfInfinity;
    } else if (half > highestHalf) {
        half = highestHalf;
    }
    return sign | static_cast<unsigned>(half);
}

// Both signs of: each half, each middle between neighbours and the singles around them; what lies above the halves and
// below; what is not a number; and any bits.
[[maybe_unused]] std::vector<float> singlesAroundHalves() {
    std::vector<std::uint32_t> magnitudes;
    for (unsigned half = 0; half <= highestHalf; ++half) {
        const double value = valueOfHalf(half), middle = (value + valueOfHalf(half + 1)) / 2;
        for (double border : {value, middle}) {
            const auto bits = std::bit_cast<std::uint32_t>(static_cast<float>(border));
            for (std::uint32_t off : {0U, 1U, 2U}) {
                magnitudes.push_back(bits + off);
                if (bits >= off) magnitudes.push_back(bits - off);
            }
        }
    }
    for (float x : {65535.0f, 65536.0f, 1e6f, std::numeric_limits<float>::max(), std::numeric_limits<float>::infinity(),
                    std::numeric_limits<float>::min(), std::numeric_limits<float>::denorm_min()}) {
        const auto bits = std::bit_cast<std::uint32_t>(x);
        magnitudes.push_back(bits), magnitudes.push_back(bits - 1), magnitudes.push_back(bits + 1);
    }
    for (std::uint32_t quiet : {0U, 0x00400000U}) {
        for (int bit = 0; bit < 22; ++bit) magnitudes.push_back(0x7F800000 | quiet | std::uint32_t{1} << bit);
    }
    test::Random random(37);
    for (int n = 0; n < 100000; ++n) magnitudes.push_back(static_cast<std::uint32_t>(random.next() >> 33));
    while (magnitudes.size() % f32xN::lanes != 0) magnitudes.push_back(0);

    std::vector<float> singles;
    for (std::uint32_t sign : {0U, 0x80000000U}) {
        for (std::uint32_t magnitude : magnitudes) singles.push_back(std::bit_cast<float>(sign | magnitude));
    }
    return singles;
}

TEST(Halves, WidenExactly) {
    if constexpr (hasHalfConversions) {
        std::vector<Vorn16f> halves(65536);
        for (unsigned half = 0; half < 65536; ++half) halves[half] = static_cast<Vorn16f>(half);
        const Guarded<Vorn16f> src(halves);
        for (std::size_t first = 0; first < halves.size(); first += f32xN::lanes) {
            const Lanes<f32xN> actual = lanesOf<f32xN>(widenHalves(src.data() + first));
            for (int i = 0; i < f32xN::lanes; ++i) {
                const unsigned half = static_cast<unsigned>(first) + static_cast<unsigned>(i);
                ASSERT_EQ(std::bit_cast<std::uint32_t>(actual[i]), singleOfHalf(half)) << std::hex << half;
            }
        }
    } else {
        EXPECT_EQ(sizeof(f32xN), 16U);
    }
}

template <HalfRounding rounding>
void checkStoredHalves() {
    if constexpr (hasHalfConversions) {
        const std::vector<float> singles = singlesAroundHalves();
        std::vector<Vorn16f> expected;
        for (float x : singles) expected.push_back(static_cast<Vorn16f>(halfOfSingle<rounding>(x)));
        const Guarded<Vorn16f> dst(singles.size());
        test::inEachRoundingMode([&] {
            for (std::size_t i = 0; i < singles.size(); i += f32xN::lanes) {
                Lanes<f32xN> lanes;
                std::memcpy(lanes.data(), singles.data() + i, sizeof lanes);
                storeHalves<rounding>(dst.data() + i, vectorOf<f32xN>(lanes));
            }
            for (std::size_t i = 0; i < singles.size(); ++i) {
                ASSERT_EQ(dst[i], expected[i]) << std::hex << "of bits " << std::bit_cast<std::uint32_t>(singles[i]);
            }
        });
        EXPECT_TRUE(dst.surroundingsUntouched());
    } else {
        EXPECT_EQ(sizeof(f32xN), 16U);
    }
}
TEST(Halves, StoreToNearestInEachMode) { checkStoredHalves<HalfRounding::toNearest>(); }
TEST(Halves, StoreTowardZeroInEachMode) { checkStoredHalves<HalfRounding::towardZero>(); }

}  // namespace
