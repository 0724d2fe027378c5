// Sums, products, bits and shifts of the vocabulary, lane by lane.
#include <bit>
#include <cmath>
#include <cstdint>
#include <utility>

#include "simd/complex.h"
#include "simd/divide.h"
#include "simd/lanes.h"

namespace {

using namespace vorn;
using test::checkLanes;
using test::checkPairs;
using test::Lanes;
using test::lanesOf;
using test::Like;
using test::Payload;
using test::saturated;
using test::vectorOf;
using test::wrapped;

template <class T>
constexpr auto bitsOfLane(T x) {
    if constexpr (sizeof x == 4) {
        return std::bit_cast<std::uint32_t>(x);
    } else {
        return std::bit_cast<std::uint64_t>(x);
    }
}

template <class V>
class FloatArithmetic : public testing::Test {};
TYPED_TEST_SUITE(FloatArithmetic, test::Floats);

TYPED_TEST(FloatArithmetic, RoundsOnceInTheCurrentMode) {
    using V = TypeParam;
    using T = typename V::Element;
    test::inEachRoundingMode([] {
        constexpr Payload any = Payload::any;
        checkPairs<V, any>(
            "+", [](V a, V b) { return a + b; }, [](T a, T b) { return a + b; });
        checkPairs<V, any>(
            "-", [](V a, V b) { return a - b; }, [](T a, T b) { return a - b; });
        checkPairs<V, any>(
            "*", [](V a, V b) { return a * b; }, [](T a, T b) { return a * b; });
        checkPairs<V, any>(
            "/", [](V a, V b) { return a / b; }, [](T a, T b) { return a / b; });
        checkPairs<V, any>(
            "divided", [](V a, V b) { return divided(a, b); }, [](T a, T b) { return a / b; });
        checkLanes<V, any>(
            "sqrtOf", [](V a) { return sqrtOf(a); }, [](T a) { return std::sqrt(a); });
    });
}

TYPED_TEST(FloatArithmetic, SignsAlternateFromLaneToLane) {
    using V = TypeParam;
    test::forOperands<V>([](const Lanes<V>& a, const Lanes<V>& b) {
        Lanes<V> minusFirst, plusFirst;
        for (int i = 0; i < V::lanes; ++i) {
            minusFirst[i] = i % 2 == 0 ? a[i] - b[i] : a[i] + b[i];
            plusFirst[i] = i % 2 == 0 ? a[i] + b[i] : a[i] - b[i];
        }
        const V x = vectorOf<V>(a), y = vectorOf<V>(b);
        test::expectLanes<Payload::any>(lanesOf<V>(addSub(x, y)), minusFirst, "addSub");
        test::expectLanes<Payload::any>(lanesOf<V>(subAdd(x, y)), plusFirst, "subAdd");
    });
}

// The second operand stands where the lanes are equal (a zero with its sign) or either is not a number.
TYPED_TEST(FloatArithmetic, ExtremaAreTheProcessors) {
    using V = TypeParam;
    using T = typename V::Element;
    checkPairs<V>(
        "minOf", [](V a, V b) { return minOf(a, b); }, [](T a, T b) { return a < b ? a : b; });
    checkPairs<V>(
        "maxOf", [](V a, V b) { return maxOf(a, b); }, [](T a, T b) { return a > b ? a : b; });
    const T nan = std::numeric_limits<T>::quiet_NaN();
    Lanes<V> numbers, nans, minusZeros, zeros;
    numbers.fill(T(3)), nans.fill(nan), minusZeros.fill(T(-0.0)), zeros.fill(T(0));
    const auto first = [](V a) { return lanesOf<V>(a)[0]; };
    EXPECT_EQ(first(minOf(vectorOf<V>(nans), vectorOf<V>(numbers))), T(3));
    EXPECT_EQ(first(maxOf(vectorOf<V>(nans), vectorOf<V>(numbers))), T(3));
    EXPECT_TRUE(std::isnan(first(minOf(vectorOf<V>(numbers), vectorOf<V>(nans)))));
    EXPECT_TRUE(std::isnan(first(maxOf(vectorOf<V>(numbers), vectorOf<V>(nans)))));
    EXPECT_FALSE(std::signbit(first(minOf(vectorOf<V>(minusZeros), vectorOf<V>(zeros)))));
    EXPECT_TRUE(std::signbit(first(maxOf(vectorOf<V>(zeros), vectorOf<V>(minusZeros)))));
}

TYPED_TEST(FloatArithmetic, BitsAndSigns) {
    using V = TypeParam;
    using T = typename V::Element;
    constexpr auto sign = bitsOfLane(T(-0.0));
    checkPairs<V>(
        "&", [](V a, V b) { return a & b; }, [](T a, T b) { return std::bit_cast<T>(bitsOfLane(a) & bitsOfLane(b)); });
    checkPairs<V>(
        "|", [](V a, V b) { return a | b; }, [](T a, T b) { return std::bit_cast<T>(bitsOfLane(a) | bitsOfLane(b)); });
    checkPairs<V>(
        "^", [](V a, V b) { return a ^ b; }, [](T a, T b) { return std::bit_cast<T>(bitsOfLane(a) ^ bitsOfLane(b)); });
    checkLanes<V>(
        "absOf", [](V a) { return absOf(a); }, [](T a) { return std::bit_cast<T>(bitsOfLane(a) & ~sign); });
    checkLanes<V>(
        "-", [](V a) { return -a; }, [](T a) { return std::bit_cast<T>(bitsOfLane(a) ^ sign); });
}

template <class V>
class IntegerArithmetic : public testing::Test {};
TYPED_TEST_SUITE(IntegerArithmetic, test::Integers);

TYPED_TEST(IntegerArithmetic, WrapsAndCombinesBits) {
    using V = TypeParam;
    using T = typename V::Element;
    checkPairs<V>(
        "+", [](V a, V b) { return a + b; }, [](T a, T b) { return wrapped<T>(__int128{a} + b); });
    checkPairs<V>(
        "-", [](V a, V b) { return a - b; }, [](T a, T b) { return wrapped<T>(__int128{a} - b); });
    checkPairs<V>(
        "&", [](V a, V b) { return a & b; }, [](T a, T b) { return a & b; });
    checkPairs<V>(
        "|", [](V a, V b) { return a | b; }, [](T a, T b) { return a | b; });
    checkPairs<V>(
        "^", [](V a, V b) { return a ^ b; }, [](T a, T b) { return a ^ b; });
    checkPairs<V>(
        "andNot", [](V a, V b) { return andNot(a, b); }, [](T a, T b) { return ~a & b; });
}

template <class V>
class Arithmetic64 : public testing::Test {};
TYPED_TEST_SUITE(Arithmetic64, test::Integers64);

TYPED_TEST(Arithmetic64, SaturatesTo32Bits) {
    using V = TypeParam;
    checkLanes<V>(
        "saturateTo32", [](V a) { return saturateTo32(a); },
        [](std::int64_t a) { return std::int64_t{saturated<std::int32_t>(a)}; });
    for (std::int64_t border : {std::int64_t{0x7FFFFFFF}, -std::int64_t{0x80000000}}) {
        for (std::int64_t off : {-1, 0, 1}) {
            Lanes<V> near;
            near.fill(border + off);
            EXPECT_EQ(lanesOf<V>(saturateTo32(vectorOf<V>(near)))[0], saturated<std::int32_t>(border + off));
        }
    }
}

template <class V>
class Arithmetic32 : public testing::Test {};
TYPED_TEST_SUITE(Arithmetic32, test::Integers32);

TYPED_TEST(Arithmetic32, ExtremaAbsolutesAndWideProducts) {
    using V = TypeParam;
    using T = std::int32_t;
    checkPairs<V>(
        "minOf", [](V a, V b) { return minOf(a, b); }, [](T a, T b) { return a < b ? a : b; });
    checkPairs<V>(
        "maxOf", [](V a, V b) { return maxOf(a, b); }, [](T a, T b) { return a > b ? a : b; });
    checkLanes<V>(
        "absSat", [](V a) { return absSat(a); },
        [](T a) { return saturated<T>(a < 0 ? -std::int64_t{a} : std::int64_t{a}); });
    test::forOperands<V>([](const Lanes<V>& a, const Lanes<V>& b) {
        using W = Like<std::int64_t, V>;
        Lanes<W> products;
        for (int i = 0; i < W::lanes; ++i) products[i] = std::int64_t{a[2 * i]} * b[2 * i];
        test::expectLanes(lanesOf<W>(mulEven(vectorOf<V>(a), vectorOf<V>(b))), products, "mulEven");
    });
}

template <class V>
class Arithmetic16 : public testing::Test {};
TYPED_TEST_SUITE(Arithmetic16, test::Integers16);

TYPED_TEST(Arithmetic16, SaturationExtremaAndProducts) {
    using V = TypeParam;
    using T = std::int16_t;
    using U = std::uint16_t;
    const auto asSigned = [](std::int64_t x) { return wrapped<T>(x); };
    checkPairs<V>(
        "addSat", [](V a, V b) { return addSat(a, b); }, [](T a, T b) { return saturated<T>(a + b); });
    checkPairs<V>(
        "subSat", [](V a, V b) { return subSat(a, b); }, [](T a, T b) { return saturated<T>(a - b); });
    checkPairs<V>(
        "minOf", [](V a, V b) { return minOf(a, b); }, [](T a, T b) { return a < b ? a : b; });
    checkPairs<V>(
        "maxOf", [](V a, V b) { return maxOf(a, b); }, [](T a, T b) { return a > b ? a : b; });
    checkPairs<V>(
        "mulLow", [](V a, V b) { return mulLow(a, b); }, [](T a, T b) { return wrapped<T>(a * b); });
    checkPairs<V>(
        "mulHigh", [](V a, V b) { return mulHigh(a, b); },
        [](T a, T b) { return static_cast<T>((a * b - static_cast<U>(a * b)) / 65536); });
    checkPairs<V>(
        "addSatUnsigned", [](V a, V b) { return addSatUnsigned(a, b); },
        [&](T a, T b) { return asSigned(saturated<U>(static_cast<U>(a) + static_cast<U>(b))); });
    checkPairs<V>(
        "subSatUnsigned", [](V a, V b) { return subSatUnsigned(a, b); },
        [&](T a, T b) { return asSigned(saturated<U>(static_cast<U>(a) - static_cast<U>(b))); });
    checkPairs<V>(
        "mulHighUnsigned", [](V a, V b) { return mulHighUnsigned(a, b); },
        [&](T a, T b) { return asSigned(std::uint32_t{static_cast<U>(a)} * static_cast<U>(b) / 65536); });
}

TYPED_TEST(Arithmetic16, NeighbouringProductsAddIn32Bits) {
    using V = TypeParam;
    using W = Like<std::int32_t, V>;
    const auto check = [](const Lanes<V>& a, const Lanes<V>& b) {
        Lanes<W> sums;
        for (int i = 0; i < W::lanes; ++i) {
            const std::int64_t even = std::int64_t{a[2 * i]} * b[2 * i],
                               odd = std::int64_t{a[2 * i + 1]} * b[2 * i + 1];
            sums[i] = wrapped<std::int32_t>(even + odd);
        }
        test::expectLanes(lanesOf<W>(mulAddPairs(vectorOf<V>(a), vectorOf<V>(b))), sums, "mulAddPairs");
    };
    test::forOperands<V>(check);
    Lanes<V> least;
    least.fill(-32768);
    check(least, least);
}

TEST(Arithmetic16OneGroup, WholeProducts) {
    test::forOperands<i16x8>([](const Lanes<i16x8>& a, const Lanes<i16x8>& b) {
        Lanes<i32x4> low, high;
        for (int i = 0; i < 4; ++i) low[i] = a[i] * b[i], high[i] = a[i + 4] * b[i + 4];
        const auto x = vectorOf<i16x8>(a), y = vectorOf<i16x8>(b);
        test::expectLanes(lanesOf<i32x4>(productsLow(x, y)), low, "productsLow");
        test::expectLanes(lanesOf<i32x4>(productsHigh(x, y)), high, "productsHigh");
    });
}

template <class V>
class Arithmetic8 : public testing::Test {};
TYPED_TEST_SUITE(Arithmetic8, test::Integers8);

TYPED_TEST(Arithmetic8, UnsignedSaturation) {
    using V = TypeParam;
    using T = std::int8_t;
    using U = std::uint8_t;
    checkPairs<V>(
        "addSatUnsigned", [](V a, V b) { return addSatUnsigned(a, b); },
        [](T a, T b) { return wrapped<T>(saturated<U>(static_cast<U>(a) + static_cast<U>(b))); });
    checkPairs<V>(
        "subSatUnsigned", [](V a, V b) { return subSatUnsigned(a, b); },
        [](T a, T b) { return wrapped<T>(saturated<U>(static_cast<U>(a) - static_cast<U>(b))); });
}

template <class V>
class UnsignedBytes : public testing::Test {};
TYPED_TEST_SUITE(UnsignedBytes, test::Bytes);

TYPED_TEST(UnsignedBytes, ExtremaAndBits) {
    using V = TypeParam;
    using T = std::uint8_t;
    checkPairs<V>(
        "minOf", [](V a, V b) { return minOf(a, b); }, [](T a, T b) { return a < b ? a : b; });
    checkPairs<V>(
        "maxOf", [](V a, V b) { return maxOf(a, b); }, [](T a, T b) { return a > b ? a : b; });
    checkPairs<V>(
        "&", [](V a, V b) { return a & b; }, [](T a, T b) { return a & b; });
    checkPairs<V>(
        "|", [](V a, V b) { return a | b; }, [](T a, T b) { return a | b; });
}

// Shifts. From the width of a lane on nothing is left, or the sign.

template <class T>
T shiftedLeft(T x, int count) {
    using U = std::make_unsigned_t<T>;
    return count < static_cast<int>(8 * sizeof x) ? static_cast<T>(static_cast<U>(static_cast<U>(x) << count)) : T(0);
}
template <class T>
T shiftedRightLogical(T x, int count) {
    using U = std::make_unsigned_t<T>;
    return count < static_cast<int>(8 * sizeof x) ? static_cast<T>(static_cast<U>(x) >> count) : T(0);
}
template <class T>
T shiftedRight(T x, int count) {
    return count < static_cast<int>(8 * sizeof x) ? static_cast<T>(x >> count) : static_cast<T>(x < 0 ? -1 : 0);
}

// Of a few vectors, because there are many counts, and through pointers, so that this is compiled once a type.
template <class V, class T = typename V::Element>
void checkShift(const char* what, int count, V (*operation)(V, int), T (*model)(T, int)) {
    const std::vector<T> values = test::hardValues<T>();
    for (std::size_t first = 0; first < values.size() && !testing::Test::HasFailure(); first += V::lanes) {
        Lanes<V> a, expected;
        for (int i = 0; i < V::lanes; ++i) {
            a[i] = values[(first + static_cast<std::size_t>(i)) % values.size()];
            expected[i] = model(a[i], count);
        }
        test::expectLanes(lanesOf<V>(operation(vectorOf<V>(a), count)), expected, what);
        if (testing::Test::HasFailure()) ADD_FAILURE() << "by " << count;
    }
}

template <class V>
class Shifts : public testing::Test {};
#if defined(VORN_SIMD_AVX512)
using Shifted = testing::Types<i64x2, i32x4, i16x8, i64x4, i32x8, i16x16, i64x8, i32x16, i16x32>;
#elif defined(VORN_SIMD_AVX2)
using Shifted = testing::Types<i64x2, i32x4, i16x8, i64x4, i32x8, i16x16>;
#else
using Shifted = testing::Types<i64x2, i32x4, i16x8>;
#endif
TYPED_TEST_SUITE(Shifts, Shifted);

TYPED_TEST(Shifts, ByAnyCount) {
    using V = TypeParam;
    using T = typename V::Element;
    std::vector<int> counts = {100, 127, 128, 255, 256, 257, 65536, 0x7FFFFFFF};
    for (int count = 0; count <= 66; ++count) counts.push_back(count);
    for (int count : counts) {
        checkShift<V>(
            "shiftLeft", count, [](V a, int n) { return shiftLeft(a, n); }, shiftedLeft<T>);
        checkShift<V>(
            "shiftRightLogical", count, [](V a, int n) { return shiftRightLogical(a, n); }, shiftedRightLogical<T>);
        checkShift<V>(
            "shiftRight", count, [](V a, int n) { return shiftRight(a, n); }, shiftedRight<T>);
    }
}

template <class V, int count>
void checkStaticShifts() {
    using T = typename V::Element;
    checkShift<V>(
        "shiftLeft<>", count, [](V a, int) { return shiftLeft<count>(a); }, shiftedLeft<T>);
    checkShift<V>(
        "shiftRightLogical<>", count, [](V a, int) { return shiftRightLogical<count>(a); }, shiftedRightLogical<T>);
    if constexpr (sizeof(T) < 8) {
        checkShift<V>(
            "shiftRight<>", count, [](V a, int) { return shiftRight<count>(a); }, shiftedRight<T>);
    }
}
TYPED_TEST(Shifts, ByCountsThatTheCompilerKnows) {
    using V = TypeParam;
    [&]<int... count>(std::integer_sequence<int, count...>) { (checkStaticShifts<V, count>(), ...); }
    (std::make_integer_sequence<int, 8 * sizeof(typename V::Element) + 1>());
}

}  // namespace
