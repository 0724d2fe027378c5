// Conversions of the vocabulary: roundings in every mode, out of range, saturation, the same bits seen otherwise.
#include <bit>
#include <cmath>
#include <cstdint>

#include "simd/lanes.h"
#include "simd/pairs.h"

namespace {

using namespace vorn;
using test::Lanes;
using test::lanesOf;
using test::Like;
using test::Payload;
using test::saturated;
using test::vectorOf;

constexpr std::int32_t outOfRange = std::numeric_limits<std::int32_t>::min();

template <class T>
std::int32_t inRange(T whole) {
    return whole >= T(-2147483648.0) && whole < T(2147483648.0) ? static_cast<std::int32_t>(whole) : outOfRange;
}
template <class T>
std::int32_t rounded(T x) {
    return inRange(std::nearbyint(x));
}
template <class T>
std::int32_t truncated(T x) {
    return inRange(std::trunc(x));
}

template <class V>
class FromSingles : public testing::Test {};
TYPED_TEST_SUITE(FromSingles, test::Singles);

TYPED_TEST(FromSingles, ToIntegers) {
    using V = TypeParam;
    using I = Like<std::int32_t, V>;
    test::inEachRoundingMode([] {
        test::forOperands<V>([](const Lanes<V>& a, const Lanes<V>&) {
            const V x = vectorOf<V>(a);
            Lanes<I> nearby, whole;
            for (int i = 0; i < V::lanes; ++i) nearby[i] = rounded(a[i]), whole[i] = truncated(a[i]);
            test::expectLanes(lanesOf<I>(roundToInt(x)), nearby, "roundToInt");
            test::expectLanes(lanesOf<I>(truncToInt(x)), whole, "truncToInt");
        });
    });
    const float ties[] = {0.5F, 1.5F, 2.5F, -0.5F, -1.5F, -2.5F, 8388607.5F, 3e9F};
    const std::int32_t even[] = {0, 2, 2, 0, -2, -2, 8388608, outOfRange};
    for (int k = 0; k < 8; ++k) {
        Lanes<V> a;
        a.fill(ties[k]);
        EXPECT_EQ(lanesOf<I>(roundToInt(vectorOf<V>(a)))[V::lanes - 1], even[k]);
    }
}

TYPED_TEST(FromSingles, ToDoublesAndBack) {
    using V = TypeParam;
    using D = Like<double, V>;
    test::forOperands<V>([](const Lanes<V>& a, const Lanes<V>&) {
        std::array<double, V::lanes> expected;
        for (int i = 0; i < V::lanes; ++i) expected[i] = a[i];
        const V x = vectorOf<V>(a);
        test::expectLanes<Payload::any>(lanesOf<D>(widenLow(x), widenHigh(x)), expected, "widenLow, widenHigh");
    });
    test::inEachRoundingMode([] {
        test::forOperands<D>([](const Lanes<D>& low, const Lanes<D>& high) {
            Lanes<V> expected;
            for (int i = 0; i < D::lanes; ++i) {
                expected[i] = static_cast<float>(low[i]);
                expected[D::lanes + i] = static_cast<float>(high[i]);
            }
            test::expectLanes<Payload::any>(lanesOf<V>(narrow(vectorOf<D>(low), vectorOf<D>(high))), expected,
                                            "narrow");
        });
    });
}

template <class V>
class FromDoubles : public testing::Test {};
TYPED_TEST_SUITE(FromDoubles, test::Doubles);

TYPED_TEST(FromDoubles, ToIntegers) {
    using V = TypeParam;
    using I = Like<std::int32_t, V>;
    test::inEachRoundingMode([] {
        test::forOperands<V>([](const Lanes<V>& low, const Lanes<V>& high) {
            const V x = vectorOf<V>(low), y = vectorOf<V>(high);
            Lanes<I> nearby, whole;
            for (int i = 0; i < V::lanes; ++i) {
                nearby[i] = rounded(low[i]), nearby[V::lanes + i] = rounded(high[i]);
                whole[i] = truncated(low[i]), whole[V::lanes + i] = truncated(high[i]);
            }
            test::expectLanes(lanesOf<I>(roundToInt(x, y)), nearby, "roundToInt");
            test::expectLanes(lanesOf<I>(truncToInt(x, y)), whole, "truncToInt");
        });
    });
}

template <class V>
class From32 : public testing::Test {};
TYPED_TEST_SUITE(From32, test::Integers32);

TYPED_TEST(From32, ToFloats) {
    using V = TypeParam;
    using F = Like<float, V>;
    using D = Like<double, V>;
    test::inEachRoundingMode([] {
        test::forOperands<V>([](const Lanes<V>& a, const Lanes<V>&) {
            const V x = vectorOf<V>(a);
            Lanes<F> singles;
            std::array<double, V::lanes> doubles;
            for (int i = 0; i < V::lanes; ++i) singles[i] = static_cast<float>(a[i]), doubles[i] = a[i];
            test::expectLanes(lanesOf<F>(toFloat(x)), singles, "toFloat");
            test::expectLanes(lanesOf<D>(toDoubleLow(x), toDoubleHigh(x)), doubles, "toDoubleLow, toDoubleHigh");
        });
    });
}

TYPED_TEST(From32, ToNarrowerIntegers) {
    using V = TypeParam;
    using S = Like<std::int16_t, V>;
    using B = Like<std::int8_t, V>;
    test::forOperands<V>([](const Lanes<V>& a, const Lanes<V>& b) {
        const Lanes<V> all[4] = {a, b, test::ramp<V>(-200), test::ramp<V>(32760)};
        const V x = vectorOf<V>(all[0]), y = vectorOf<V>(all[1]), z = vectorOf<V>(all[2]), w = vectorOf<V>(all[3]);
        Lanes<S> shorts, unsignedShorts;
        Lanes<B> bytes, unsignedBytes;
        Lanes<V> low, high;
        for (int i = 0; i < S::lanes; ++i) {
            const std::int32_t value = all[i / V::lanes][i % V::lanes];
            shorts[i] = saturated<std::int16_t>(value);
            (i < V::lanes ? low : high)[i % V::lanes] = value & 0xFFFF;
            unsignedShorts[i] = static_cast<std::int16_t>(value & 0xFFFF);
        }
        for (int i = 0; i < B::lanes; ++i) {
            const std::int32_t value = all[i / V::lanes][i % V::lanes];
            bytes[i] = saturated<std::int8_t>(value);
            unsignedBytes[i] = static_cast<std::int8_t>(saturated<std::uint8_t>(value));
        }
        test::expectLanes(lanesOf<S>(narrowSat(x, y)), shorts, "narrowSat");
        test::expectLanes(std::bit_cast<Lanes<B>>(narrowSat8(x, y, z, w)), bytes, "narrowSat8");
        test::expectLanes(std::bit_cast<Lanes<B>>(narrowSatU8(x, y, z, w)), unsignedBytes, "narrowSatU8");
        test::expectLanes(lanesOf<S>(narrowU16(vectorOf<V>(low), vectorOf<V>(high))), unsignedShorts, "narrowU16");
    });
}

// Pairs of which one operand holds the firsts, the other the seconds.
TYPED_TEST(From32, PairsTo16Bits) {
    using V = TypeParam;
    using S = Like<std::int16_t, V>;
    test::forOperands<V>([](const Lanes<V>& a, const Lanes<V>& b) {
        const Lanes<V> c = test::ramp<V>(-32775), d = test::ramp<V>(32765);
        const Two<S> pairs =
            narrowSatPairs(Two<V>{vectorOf<V>(a), vectorOf<V>(b)}, Two<V>{vectorOf<V>(c), vectorOf<V>(d)});
        std::array<std::int16_t, 2 * S::lanes> expected;
        for (int i = 0; i < S::lanes; ++i) {
            expected[2 * i] = saturated<std::int16_t>((i < V::lanes ? a : b)[i % V::lanes]);
            expected[2 * i + 1] = saturated<std::int16_t>((i < V::lanes ? c : d)[i % V::lanes]);
        }
        test::expectLanes(lanesOf<S>(pairs.low, pairs.high), expected, "narrowSatPairs");
    });
}

template <class V>
class From16 : public testing::Test {};
TYPED_TEST_SUITE(From16, test::Integers16);

TYPED_TEST(From16, ToWiderIntegers) {
    using V = TypeParam;
    using I = Like<std::int32_t, V>;
    test::forOperands<V>([](const Lanes<V>& a, const Lanes<V>&) {
        std::array<std::int32_t, V::lanes> expected;
        for (int i = 0; i < V::lanes; ++i) expected[i] = a[i];
        const V x = vectorOf<V>(a);
        test::expectLanes(lanesOf<I>(widenLow(x), widenHigh(x)), expected, "widenLow, widenHigh");
    });
}

template <class V>
class SameBits : public testing::Test {};
TYPED_TEST_SUITE(SameBits, test::Floats);

TYPED_TEST(SameBits, SeenAsIntegersAndFloats) {
    using V = TypeParam;
    using I = Like<std::conditional_t<sizeof(typename V::Element) == 4, std::int32_t, std::int64_t>, V>;
    test::forOperands<V>([](const Lanes<V>& a, const Lanes<V>&) {
        const auto bits = std::bit_cast<Lanes<I>>(a);
        test::expectLanes(lanesOf<I>(bitsOf(vectorOf<V>(a))), bits, "bitsOf");
        test::expectLanes(lanesOf<V>(floatOf(vectorOf<I>(bits))), a, "floatOf");
        if constexpr (sizeof(typename V::Element) == 4) {
            using S = Like<std::int16_t, V>;
            const auto shorts = std::bit_cast<Lanes<S>>(a);
            test::expectLanes(lanesOf<S>(shortsOf(vectorOf<I>(bits))), shorts, "shortsOf");
            test::expectLanes(lanesOf<I>(intsOf(vectorOf<S>(shorts))), bits, "intsOf");
        }
    });
}

// ---- Halves: split and zip deal the elements out, join takes them back, inOrder gives them their places.

template <class V>
class Halves8 : public testing::Test {};
TYPED_TEST_SUITE(Halves8, test::Integers8);

TYPED_TEST(Halves8, UnsignedBytesAt16Bits) {
    using V = TypeParam;
    using S = Like<std::int16_t, V>;
    // Where the build puts each element.
    const auto places = [] {
        const Halves<S> dealt = splitUnsigned(vectorOf<V>(test::ramp<V>()));
        return lanesOf<S>(dealt.low, dealt.high);
    }();
    test::forOperands<V>([&](const Lanes<V>& a, const Lanes<V>&) {
        std::array<std::int16_t, V::lanes> values;
        for (int i = 0; i < V::lanes; ++i) values[i] = static_cast<std::uint8_t>(a[i]);
        const Halves<S> dealt = splitUnsigned(vectorOf<V>(a)), ordered = inOrder(dealt);
        test::expectLanes(lanesOf<S>(ordered.low, ordered.high), values, "splitUnsigned, inOrder");
        test::expectLanes(lanesOf<V>(joinSatUnsigned(dealt)), a, "splitUnsigned, joinSatUnsigned");
    });
    test::forOperands<S>([&](const Lanes<S>& a, const Lanes<S>& b) {
        const auto values = lanesOf<S>(vectorOf<S>(a), vectorOf<S>(b));
        Lanes<V> expected;
        for (int i = 0; i < V::lanes; ++i) {
            expected[places[i]] = static_cast<std::int8_t>(saturated<std::uint8_t>(values[i]));
        }
        test::expectLanes(lanesOf<V>(joinSatUnsigned(Halves<S>{vectorOf<S>(a), vectorOf<S>(b)})), expected,
                          "joinSatUnsigned");
    });
}

template <class V>
class Halves16 : public testing::Test {};
TYPED_TEST_SUITE(Halves16, test::Integers16);

TYPED_TEST(Halves16, TwoHalvesOf32Bits) {
    using V = TypeParam;
    using I = Like<std::int32_t, V>;
    test::forOperands<V>([](const Lanes<V>& lower, const Lanes<V>& upper) {
        std::array<std::int32_t, V::lanes> values;
        Lanes<V> narrowed;
        for (int i = 0; i < V::lanes; ++i) {
            values[i] = static_cast<std::int32_t>(static_cast<std::uint16_t>(lower[i]) |
                                                  std::uint32_t{static_cast<std::uint16_t>(upper[i])} << 16);
            narrowed[i] = saturated<std::int16_t>(values[i]);
        }
        const Halves<I> dealt = zip(vectorOf<V>(lower), vectorOf<V>(upper)), ordered = inOrder(dealt);
        test::expectLanes(lanesOf<I>(ordered.low, ordered.high), values, "zip, inOrder");
        test::expectLanes(lanesOf<V>(joinSat(dealt)), narrowed, "zip, joinSat");
    });
}

TYPED_TEST(From32, ZipTakesLanesInTurn) {
    using V = TypeParam;
    test::forOperands<V>([](const Lanes<V>& even, const Lanes<V>& odd) {
        std::array<std::int32_t, 2 * V::lanes> values;
        for (int i = 0; i < V::lanes; ++i) values[2 * i] = even[i], values[2 * i + 1] = odd[i];
        const Halves<V> ordered = inOrder(zip(vectorOf<V>(even), vectorOf<V>(odd)));
        test::expectLanes(lanesOf<V>(ordered.low, ordered.high), values, "zip, inOrder");
    });
}

}  // namespace
