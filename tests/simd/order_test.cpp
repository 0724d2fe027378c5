// What only moves lanes: within registers, between them, and between pairs, groups and halves.
#include <bit>
#include <cstdint>

#include "simd/complex.h"
#include "simd/fold.h"
#include "simd/gather.h"
#include "simd/groups.h"
#include "simd/lanes.h"
#include "simd/pairs.h"
#include "support/guarded.h"

namespace {

using namespace vorn;
using test::Guarded;
using test::Lanes;
using test::lanesOf;
using test::Like;
using test::vectorOf;

// actual[i] = a[order(i)]
template <class V, class Order>
void expectOrder(const V& actual, const Lanes<V>& a, Order order, const char* what) {
    Lanes<V> expected;
    for (int i = 0; i < V::lanes; ++i) expected[i] = a[order(i)];
    test::expectLanes(lanesOf<V>(actual), expected, what);
}
template <class V>
Lanes<V> anyLanes(std::uint64_t seed = 23) {
    test::Random random(seed);
    Lanes<V> lanes;
    for (auto& x : lanes) x = random.anyBits<typename V::Element>();
    return lanes;
}
// Two or four vectors that hold 0, 1, 2 and so on.
template <class V, int n>
void count(V (&v)[n]) {
    for (int i = 0; i < n; ++i) v[i] = vectorOf<V>(test::ramp<V>(i * V::lanes));
}

template <class V>
class FloatOrder : public testing::Test {};
TYPED_TEST_SUITE(FloatOrder, test::Floats);

TYPED_TEST(FloatOrder, Neighbours) {
    using V = TypeParam;
    const Lanes<V> a = anyLanes<V>();
    const V x = vectorOf<V>(a);
    expectOrder(
        dupEven(x), a, [](int i) { return i & ~1; }, "dupEven");
    expectOrder(
        dupOdd(x), a, [](int i) { return i | 1; }, "dupOdd");
    expectOrder(
        swapPairs(x), a, [](int i) { return i ^ 1; }, "swapPairs");
    expectOrder(
        exchanged(x), a, [](int i) { return i ^ 1; }, "exchanged");
    expectOrder(
        reverse(x), a, [](int i) { return V::lanes - 1 - i; }, "reverse");
    expectOrder(
        inRegister(x), a, [](int i) { return i; }, "inRegister");
    const Guarded<typename V::Element> memory(std::vector<typename V::Element>(a.begin(), a.end()));
    expectOrder(
        loadDupEven<V>(memory), a, [](int i) { return i & ~1; }, "loadDupEven");
}

TYPED_TEST(FloatOrder, SignsOfNeighbours) {
    using V = TypeParam;
    using T = typename V::Element;
    test::forOperands<V>([](const Lanes<V>& a, const Lanes<V>&) {
        using Bits = std::conditional_t<sizeof(T) == 4, std::uint32_t, std::uint64_t>;
        constexpr Bits sign = Bits{1} << (8 * sizeof(T) - 1);
        Lanes<V> firsts = a, seconds = a;
        for (int i = 0; i < V::lanes; ++i) {
            T& x = i % 2 == 0 ? firsts[i] : seconds[i];
            x = std::bit_cast<T>(std::bit_cast<Bits>(a[i]) ^ sign);
        }
        test::expectLanes(lanesOf<V>(negateFirsts(vectorOf<V>(a))), firsts, "negateFirsts");
        test::expectLanes(lanesOf<V>(negateSeconds(vectorOf<V>(a))), seconds, "negateSeconds");
    });
}

TYPED_TEST(FloatOrder, InterleavesWithinGroups) {
    using V = TypeParam;
    constexpr int group = 16 / static_cast<int>(sizeof(typename V::Element));
    const Lanes<V> a = anyLanes<V>(1), b = anyLanes<V>(2);
    if constexpr (requires(V x) { interleaveLow(x, x); }) {
        Lanes<V> low, high;
        for (int i = 0; i < V::lanes; ++i) {
            const int from = i / group * group + i % group / 2;
            low[i] = (i % 2 == 0 ? a : b)[from], high[i] = (i % 2 == 0 ? a : b)[from + group / 2];
        }
        test::expectLanes(lanesOf<V>(interleaveLow(vectorOf<V>(a), vectorOf<V>(b))), low, "interleaveLow");
        test::expectLanes(lanesOf<V>(interleaveHigh(vectorOf<V>(a), vectorOf<V>(b))), high, "interleaveHigh");
    } else {
        EXPECT_EQ(sizeof(V), 64U);
        EXPECT_EQ(group, 4) << "the 64-byte registers of doubles have both";
    }
}

TYPED_TEST(FloatOrder, PairsOfNeighboursInMemory) {
    using V = TypeParam;
    using T = typename V::Element;
    test::Random random(29);
    std::vector<T> values(2 * V::lanes);
    for (T& x : values) x = random.anyBits<T>();
    const Guarded<T> src(values), dst(values.size()), groups(values.size());
    V first, second;
    loadPairs(src.data(), first, second);
    const Lanes<V> a = lanesOf<V>(first), b = lanesOf<V>(second);
    for (int i = 0; i < V::lanes; ++i) {
        EXPECT_TRUE(test::identical(a[i], values[2 * i])) << "first, lane " << i;
        EXPECT_TRUE(test::identical(b[i], values[2 * i + 1])) << "second, lane " << i;
    }
    storePairs(dst.data(), vectorOf<V>(a), vectorOf<V>(b));
    EXPECT_EQ(std::memcmp(dst.data(), values.data(), values.size() * sizeof(T)), 0) << "storePairs";
    storePairGroups(groups.data(), vectorOf<V>(a), vectorOf<V>(b));
    EXPECT_EQ(std::memcmp(groups.data(), values.data(), values.size() * sizeof(T)), 0) << "storePairGroups";
    EXPECT_TRUE(dst.surroundingsUntouched() && groups.surroundingsUntouched());
}

TYPED_TEST(FloatOrder, GroupsOf16Bytes) {
    using V = TypeParam;
    using T = typename V::Element;
    constexpr int group = 16 / static_cast<int>(sizeof(T)), groups = V::lanes / group;
    // Element i of vector n becomes element n of vector i, in each group.
    V turned[group];
    count(turned);
    transposeGroups(turned);
    for (int v = 0; v < group; ++v) {
        const Lanes<V> lanes = lanesOf<V>(turned[v]);
        for (int i = 0; i < V::lanes; ++i) {
            EXPECT_EQ(lanes[i], T(i % group * V::lanes + i / group * group + v)) << "vector " << v << ", lane " << i;
        }
    }
    const Lanes<V> a = anyLanes<V>();
    for (int step : {group, group + 1, 7 * group}) {
        std::vector<T> memory(static_cast<std::size_t>((groups - 1) * step + group), T(-1));
        for (int i = 0; i < V::lanes; ++i) memory[i / group * step + i % group] = a[i];
        const Guarded<T> src(memory);
        test::expectLanes(lanesOf<V>(loadGroups<V>(src, step)), a, "loadGroups");
    }
    const Guarded<T> one(std::vector<T>(a.begin(), a.begin() + group));
    expectOrder(
        repeatGroup<V>(one), a, [](int i) { return i % group; }, "repeatGroup");
    const auto store = [&]<int g>(std::integral_constant<int, g>) {
        if constexpr (g < groups) {
            const Guarded<T> dst(group);
            storeGroup<g>(dst.data(), vectorOf<V>(a));
            for (int i = 0; i < group; ++i) EXPECT_TRUE(test::identical(dst[i], a[g * group + i])) << "group " << g;
            EXPECT_TRUE(dst.surroundingsUntouched());
        }
    };
    store(std::integral_constant<int, 0>()), store(std::integral_constant<int, 1>());
    store(std::integral_constant<int, 2>()), store(std::integral_constant<int, 3>());
}

template <class V>
class SingleGroups : public testing::Test {};
TYPED_TEST_SUITE(SingleGroups, test::Singles);

TYPED_TEST(SingleGroups, PairsAreTransposed) {
    using V = TypeParam;
    V turned[2];
    count(turned);
    transposePairs(turned);
    for (int v = 0; v < 2; ++v) {
        const Lanes<V> lanes = lanesOf<V>(turned[v]);
        for (int i = 0; i < V::lanes; ++i) {
            EXPECT_EQ(lanes[i], static_cast<float>(i % 4 / 2 * V::lanes + i / 4 * 4 + 2 * v + i % 2))
                << "vector " << v << ", lane " << i;
        }
    }
}

TEST(FixedOrder, FirstAndSecondPair) {
    const auto a = test::ramp<f32x4>(), b = test::ramp<f32x4>(10);
    const Lanes<f32x4> expected = {0, 1, 12, 13};
    test::expectLanes(lanesOf<f32x4>(firstAndSecondPair(vectorOf<f32x4>(a), vectorOf<f32x4>(b))), expected,
                      "firstAndSecondPair");
}

#if defined(VORN_SIMD_AVX2) || defined(VORN_SIMD_AVX512)
// Part i of vector n becomes part n of vector i: halves of two vectors, quarters of four.
template <class V, int n, class Turn>
void checkTurned(Turn turn) {
    V turned[n];
    count(turned);
    turn(turned);
    constexpr int part = V::lanes / n;
    for (int v = 0; v < n; ++v) {
        const Lanes<V> lanes = lanesOf<V>(turned[v]);
        for (int i = 0; i < V::lanes; ++i) {
            EXPECT_EQ(lanes[i], static_cast<typename V::Element>(i / part * V::lanes + v * part + i % part))
                << "vector " << v << ", lane " << i;
        }
    }
}
TEST(WideOrder, PartsAreTurned) {
    checkTurned<f32x8, 2>([](auto& v) { turnParts(v); });
    checkTurned<f64x4, 2>([](auto& v) { turnParts(v); });
    checkTurned<f64x4, 2>([](auto& v) { exchangeGroups(v[0], v[1]); });
#if defined(VORN_SIMD_AVX512)
    checkTurned<f32x16, 2>([](auto& v) { turnParts(v); });
    checkTurned<f32x16, 4>([](auto& v) { turnParts(v); });
    checkTurned<f64x8, 2>([](auto& v) { turnParts(v); });
    checkTurned<f32x16, 4>([](auto& v) { turnGroups(v); });
    checkTurned<f64x8, 4>([](auto& v) { turnGroups(v); });
#endif
}

template <class V>
void checkHalves() {
    const Lanes<V> a = anyLanes<V>();
    const V x = vectorOf<V>(a);
    using Half = decltype(lowHalf(x));
    static_assert(2 * Half::lanes == V::lanes);
    test::expectLanes(lanesOf<Half>(lowHalf(x), highHalf(x)), a, "lowHalf, highHalf");
    if constexpr (requires { join(lowHalf(x), highHalf(x)); }) {
        Lanes<Half> low, high;
        std::memcpy(low.data(), a.data(), sizeof low);
        std::memcpy(high.data(), a.data() + Half::lanes, sizeof high);
        test::expectLanes(lanesOf<V>(join(vectorOf<Half>(low), vectorOf<Half>(high))), a, "join");
    }
}
TEST(WideOrder, Halves) {
    checkHalves<f32x8>();
    checkHalves<f64x4>();
    checkHalves<i32x8>();
    checkHalves<i16x16>();
    checkHalves<u8x32>();
#if defined(VORN_SIMD_AVX512)
    checkHalves<f32x16>();
    checkHalves<f64x8>();
    checkHalves<i32x16>();
    checkHalves<i16x32>();
    checkHalves<u8x64>();
#endif
}

// Each lane takes the entry of a table of four.
template <class V, class Index>
void checkLookup() {
    using T = typename V::Element;
    test::Random random(31);
    for (int round = 0; round < 200; ++round) {
        std::vector<T> four(4);
        for (T& x : four) x = random.anyBits<T>();
        const Guarded<T> table(four);
        Lanes<Index> index;
        for (auto& i : index) i = static_cast<typename Index::Element>(random.next() % 4);
        Lanes<V> expected;
        for (int i = 0; i < V::lanes; ++i) expected[i] = four[static_cast<std::size_t>(index[i])];
        test::expectLanes(lanesOf<V>(lookup<V>(table.data(), vectorOf<Index>(index))), expected, "lookup");
    }
}
TEST(WideOrder, LookUps) {
    checkLookup<f32x4, i32x4>();
    checkLookup<f64x2, i64x2>();
    checkLookup<f32x8, i32x8>();
    checkLookup<f64x4, i64x4>();
#if defined(VORN_SIMD_AVX512)
    checkLookup<f32x16, i32x16>();
    checkLookup<f64x8, i64x8>();
#endif
}
#endif

template <class V>
class Gathers : public testing::Test {};
TYPED_TEST_SUITE(Gathers, test::Doubles);

TYPED_TEST(Gathers, ReadOnlyTheEntriesThatAreNamed) {
    using V = TypeParam;
    using I = Like<std::int64_t, V>;
    test::Random random(37);
    std::vector<double> entries(100);
    for (double& x : entries) x = random.anyBits<double>();
    const Guarded<double> table(entries);
    for (int round = 0; round < 200; ++round) {
        Lanes<I> index;
        for (auto& i : index) i = random.integer(0, 99);
        index[0] = 0, index[V::lanes - 1] = 99;
        Lanes<V> expected;
        for (int i = 0; i < V::lanes; ++i) expected[i] = entries[static_cast<std::size_t>(index[i])];
        test::expectLanes(lanesOf<V>(gather<V>(table.data(), vectorOf<I>(index))), expected, "gather");
    }
    // Negative indices name what stands before.
    Lanes<I> back;
    back.fill(-3);
    Lanes<V> expected;
    expected.fill(entries[47]);
    test::expectLanes(lanesOf<V>(gather<V>(table + 50, vectorOf<I>(back))), expected, "gather");
}

template <class V>
class IntegerOrder : public testing::Test {};
#if defined(VORN_SIMD_AVX512)
using Reversed = testing::Types<i64x2, i32x4, i64x4, i32x8, i64x8, i32x16>;
#elif defined(VORN_SIMD_AVX2)
using Reversed = testing::Types<i64x2, i32x4, i64x4, i32x8>;
#else
using Reversed = testing::Types<i64x2, i32x4>;
#endif
TYPED_TEST_SUITE(IntegerOrder, Reversed);

TYPED_TEST(IntegerOrder, Reversed) {
    using V = TypeParam;
    using T = typename V::Element;
    const Lanes<V> a = anyLanes<V>();
    const V x = vectorOf<V>(a);
    expectOrder(
        reverse(x), a, [](int i) { return V::lanes - 1 - i; }, "reverse");
    if constexpr (sizeof(T) == 8) {
        expectOrder(
            reversePairs(x), a, [](int i) { return (V::lanes - 1 - i) ^ 1; }, "reversePairs");
    } else {
        test::Random random(41);
        std::vector<T> values(2 * V::lanes);
        for (T& y : values) y = random.anyBits<T>();
        const Guarded<T> src(values);
        V first, second;
        loadPairs(src.data(), first, second);
        const Lanes<V> f = lanesOf<V>(first), s = lanesOf<V>(second);
        for (int i = 0; i < V::lanes; ++i) {
            EXPECT_EQ(f[i], values[2 * i]);
            EXPECT_EQ(s[i], values[2 * i + 1]);
        }
    }
}

template <class V>
class ShortOrder : public testing::Test {};
TYPED_TEST_SUITE(ShortOrder, test::Integers16);

TYPED_TEST(ShortOrder, NeighboursExchanged) {
    using V = TypeParam;
    const Lanes<V> a = anyLanes<V>();
    expectOrder(
        swapPairs(vectorOf<V>(a)), a, [](int i) { return i ^ 1; }, "swapPairs");
}

TEST(PairsOfFloats, AreAtMost32BytesWide) {
    EXPECT_EQ(sizeof(f32Pairs), sizeof(f32xN) < 32 ? sizeof(f32xN) : 32);
    EXPECT_EQ(sizeof(f64Pairs), sizeof(f64xN) < 32 ? sizeof(f64xN) : 32);
}

TEST(FixedOrder, SingleLanes) {
    const auto f = anyLanes<f32x4>();
    const auto d = anyLanes<f64x2>();
    const auto l = anyLanes<i64x2>();
    const auto i = anyLanes<i32x4>();
    const auto x = vectorOf<f32x4>(f);
    const auto y = vectorOf<f64x2>(d);
    EXPECT_TRUE(test::identical(firstLane(x), f[0]));
    EXPECT_TRUE(test::identical(firstLane(y), d[0]));
    EXPECT_EQ(firstLane(vectorOf<i64x2>(l)), l[0]);
    EXPECT_EQ(firstLane(vectorOf<i32x4>(i)), i[0]);
    test::expectLanes(lanesOf<f32x4>(withFirst(x, 2.5F)), Lanes<f32x4>{2.5F, f[1], f[2], f[3]}, "withFirst");
    test::expectLanes(lanesOf<f64x2>(withFirst(y, 2.5)), Lanes<f64x2>{2.5, d[1]}, "withFirst");
    expectOrder(
        splatSecond(x), f, [](int) { return 1; }, "splatSecond");
    expectOrder(
        upperToLower(x), f, [](int k) { return k | 2; }, "upperToLower");
    expectOrder(
        upperToLower(y), d, [](int) { return 1; }, "upperToLower");
}

}  // namespace
