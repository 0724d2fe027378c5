// Loads and stores of the vocabulary: whole registers, their first lanes, the ends of vectors, short blocks. Every
// buffer stands against an unmapped page, and what lies on its other side is watched.
#include <cstdint>
#include <cstring>
#include <utility>
#include <vector>

#include "simd/block.h"
#include "simd/lanes.h"
#include "simd/part.h"
#include "simd/short_block.h"
#include "support/guarded.h"

namespace {

using namespace vorn;
using test::Guarded;
using test::Lanes;
using test::lanesOf;
using test::vectorOf;

template <class T>
std::vector<T> anyElements(std::size_t n, std::uint64_t seed = 3) {
    test::Random random(seed);
    std::vector<T> values(n);
    for (T& x : values) x = random.anyBits<T>();
    return values;
}
template <class T>
void expectElements(const T* actual, const T* expected, std::size_t n, const char* what) {
    EXPECT_EQ(n == 0 ? 0 : std::memcmp(actual, expected, n * sizeof(T)), 0) << what << " of " << n;
}
// The first n of the elements, then zeros.
template <class V>
Lanes<V> firstOf(const std::vector<typename V::Element>& values, std::ptrdiff_t n) {
    Lanes<V> lanes{};
    for (std::ptrdiff_t i = 0; i < n && i < V::lanes; ++i) lanes[i] = values[i];
    return lanes;
}

// Floats and integers, unsigned bytes too.
template <class List, class More>
struct Joined;
template <class... A, class... B>
struct Joined<testing::Types<A...>, testing::Types<B...>> {
    using type = testing::Types<A..., B...>;
};
using FloatsAndIntegers = Joined<test::Floats, test::Integers>::type;

template <class V>
class Memory : public testing::Test {};
using All = Joined<FloatsAndIntegers, test::Bytes>::type;
TYPED_TEST_SUITE(Memory, All);

TYPED_TEST(Memory, WholeRegistersAtAnyAddress) {
    using V = TypeParam;
    using T = typename V::Element;
    for (std::size_t offset = 0; offset < V::lanes; ++offset) {
        const std::vector<T> values = anyElements<T>(V::lanes + offset, offset + 1);
        const Guarded<T> src(values);
        expectElements(lanesOf<V>(load<V>(src + offset)).data(), values.data() + offset, V::lanes, "load");
        const Guarded<T> dst(V::lanes + offset);
        const std::vector<T> before = dst.values();
        store(dst + offset, vectorOf<V>(firstOf<V>(values, V::lanes)));
        expectElements(dst + offset, values.data(), V::lanes, "store");
        expectElements(dst.data(), before.data(), offset, "what stands before a store");
        EXPECT_TRUE(dst.surroundingsUntouched());
    }
}

TYPED_TEST(Memory, FirstLanesAndNoMore) {
    using V = TypeParam;
    using T = typename V::Element;
    for (std::size_t n = 0; n <= V::lanes; ++n) {
        const std::vector<T> values = anyElements<T>(V::lanes, n + 1);
        const Guarded<T> src(std::vector<T>(values.begin(), values.begin() + static_cast<std::ptrdiff_t>(n)));
        const auto count = static_cast<std::ptrdiff_t>(n);
        test::expectLanes(lanesOf<V>(loadFirst<V>(src, count)), firstOf<V>(values, count), "loadFirst");
        const Guarded<T> dst(n);
        storeFirst(dst, vectorOf<V>(firstOf<V>(values, V::lanes)), count);
        expectElements(dst.data(), values.data(), n, "storeFirst");
        EXPECT_TRUE(dst.surroundingsUntouched());
    }
}

TYPED_TEST(Memory, TheSameElementInEveryLane) {
    using V = TypeParam;
    using T = typename V::Element;
    for (T x : test::hardValues<T>()) {
        Lanes<V> lanes;
        lanes.fill(x);
        test::expectLanes(lanesOf<V>(splat<V>(x)), lanes, "splat");
    }
}

template <class V>
class Streams : public testing::Test {};
TYPED_TEST_SUITE(Streams, FloatsAndIntegers);

TYPED_TEST(Streams, StoreWholeRegisters) {
    using V = TypeParam;
    using T = typename V::Element;
    const std::vector<T> values = anyElements<T>(3 * V::lanes);
    const Guarded<T> dst(values.size());  // begins and ends on a page
    ASSERT_EQ(reinterpret_cast<std::uintptr_t>(dst.data()) % sizeof(V), 0U);
    for (int i = 0; i < 3; ++i) {
        Lanes<V> lanes;
        std::memcpy(lanes.data(), values.data() + i * V::lanes, sizeof lanes);
        storeStream(dst + i * V::lanes, vectorOf<V>(lanes));
    }
    storeFence();
    expectElements(dst.data(), values.data(), values.size(), "storeStream");
    EXPECT_TRUE(dst.surroundingsUntouched());
}

// A number of elements that the compiler knows, in the fixed types.
template <class V, int n>
void checkKnownFirst() {
    using T = typename V::Element;
    const std::vector<T> values = anyElements<T>(n);
    const Guarded<T> src(values);
    test::expectLanes(lanesOf<V>(loadFirst<V, n>(src)), firstOf<V>(values, n), "loadFirst<n>");
}
TEST(MemoryFixed, AKnownNumberOfFirstLanes) {
    checkKnownFirst<f32x4, 1>();
    checkKnownFirst<f32x4, 2>();
    checkKnownFirst<i32x4, 1>();
    checkKnownFirst<i32x4, 2>();
    checkKnownFirst<i16x8, 1>();
    checkKnownFirst<i16x8, 2>();
    checkKnownFirst<i16x8, 4>();
    checkKnownFirst<i8x16, 2>();
    checkKnownFirst<i8x16, 4>();
    checkKnownFirst<i64x2, 1>();
}

TEST(MemoryFixed, TheStringStoreFillsAnyCount) {
    for (std::size_t n = 0; n < 70; ++n) {
        const Guarded<std::uint64_t> dst(n);
        fillString(dst, 0x0123456789ABCDEF, static_cast<std::ptrdiff_t>(n));
        const std::vector<std::uint64_t> expected(n, 0x0123456789ABCDEF);
        expectElements(dst.data(), expected.data(), n, "fillString");
        EXPECT_TRUE(dst.surroundingsUntouched());
    }
}

template <class V>
class Integers64Memory : public testing::Test {};
TYPED_TEST_SUITE(Integers64Memory, test::Integers64);

TYPED_TEST(Integers64Memory, ValuesInTurnAndWidened) {
    using V = TypeParam;
    Lanes<V> turns;
    for (int i = 0; i < V::lanes; ++i) turns[i] = i % 2 == 0 ? -5 : std::int64_t{1} << 40;
    test::expectLanes(lanesOf<V>(splatPair<V>(-5, std::int64_t{1} << 40)), turns, "splatPair");
    const std::vector<std::int32_t> hard = test::hardIntegers<std::int32_t>();
    for (std::size_t first = 0; first + V::lanes <= hard.size(); ++first) {
        const auto from = hard.begin() + static_cast<std::ptrdiff_t>(first);
        const Guarded<std::int32_t> src(std::vector<std::int32_t>(from, from + V::lanes));
        Lanes<V> expected;
        for (int i = 0; i < V::lanes; ++i) expected[i] = src[i];
        test::expectLanes(lanesOf<V>(loadInto64<V>(src)), expected, "loadInto64");
    }
}

// One narrower element a lane, its value kept, from exactly as much memory as that takes.
template <class V, class Narrow>
void checkWidened() {
    const std::vector<Narrow> hard = [] {
        std::vector<Narrow> values = test::hardValues<Narrow>();
        test::Random random(11);
        for (int i = 0; i < 200; ++i) values.push_back(random.anyBits<Narrow>());
        return values;
    }();
    using T = typename V::Element;
    for (std::size_t first = 0; first + 2 * V::lanes <= hard.size(); first += 3) {
        const auto from = hard.begin() + static_cast<std::ptrdiff_t>(first);
        const Guarded<Narrow> one(std::vector<Narrow>(from, from + V::lanes));
        const Guarded<Narrow> two(std::vector<Narrow>(from, from + 2 * V::lanes));
        std::array<T, V::lanes> expected;
        std::array<T, 2 * V::lanes> expectedTwo;
        for (int i = 0; i < V::lanes; ++i) expected[i] = static_cast<T>(one[i]);
        for (int i = 0; i < 2 * V::lanes; ++i) expectedTwo[i] = static_cast<T>(two[i]);
        // A signalling not-a-number comes out quiet.
        constexpr auto any = test::Payload::any;
        test::expectLanes<any>(lanesOf<V>(loadWidened<V>(one.data())), expected, "loadWidened");
        const Two<V> both = loadWidenedTwo<V>(two.data());
        test::expectLanes<any>(lanesOf<V>(both.low, both.high), expectedTwo, "loadWidenedTwo");
    }
}
template <class V>
class WidenedTo16 : public testing::Test {};
TYPED_TEST_SUITE(WidenedTo16, test::Integers16);
TYPED_TEST(WidenedTo16, KeepsValues) { checkWidened<TypeParam, std::int8_t>(); }
template <class V>
class WidenedTo32 : public testing::Test {};
TYPED_TEST_SUITE(WidenedTo32, test::Integers32);
TYPED_TEST(WidenedTo32, KeepsValues) {
    checkWidened<TypeParam, std::int8_t>();
    checkWidened<TypeParam, std::uint8_t>();
    checkWidened<TypeParam, std::int16_t>();
    checkWidened<TypeParam, std::uint16_t>();
}
template <class V>
class WidenedToDouble : public testing::Test {};
TYPED_TEST_SUITE(WidenedToDouble, test::Doubles);
TYPED_TEST(WidenedToDouble, KeepsValues) {
    checkWidened<TypeParam, std::int16_t>();
    checkWidened<TypeParam, std::int32_t>();
    checkWidened<TypeParam, float>();
}

TYPED_TEST(WidenedToDouble, StoresSinglesRoundedInTheCurrentMode) {
    using V = TypeParam;
    test::inEachRoundingMode([] {
        test::forOperands<V>([](const Lanes<V>& a, const Lanes<V>&) {
            float dst[V::lanes + 1];
            dst[V::lanes] = 77;
            storeNarrowed(dst, vectorOf<V>(a));
            for (int i = 0; i < V::lanes; ++i) {
                test::expectLane<test::Payload::any>(dst[i], static_cast<float>(a[i]), i, "storeNarrowed");
            }
            EXPECT_EQ(dst[V::lanes], 77);
        });
    });
    const Guarded<float> dst(V::lanes);
    storeNarrowed(dst, vectorOf<V>(test::ramp<V>()));
    for (int i = 0; i < V::lanes; ++i) EXPECT_EQ(dst[i], static_cast<float>(i));
    EXPECT_TRUE(dst.surroundingsUntouched());
}

// ---- part.h and block.h: the wide types of the build.

template <class V>
class Ends : public testing::Test {};
using Wides = testing::Types<f32xN, f64xN, i64xN, i32xN, i16xN, i8xN, u8xN>;
TYPED_TEST_SUITE(Ends, Wides);

TYPED_TEST(Ends, PartsOfARegister) {
    using V = TypeParam;
    using T = typename V::Element;
    constexpr int wide = i8xN::lanes;
    EXPECT_EQ(hasMaskedLanes<T>, wide == 64 || (wide == 32 && sizeof(T) >= 4));
    for (std::size_t n = 0; n <= V::lanes; ++n) {
        const auto count = static_cast<std::int64_t>(n);
        const std::vector<T> values = anyElements<T>(V::lanes, n + 1);
        const Guarded<T> src(std::vector<T>(values.begin(), values.begin() + count));
        test::expectLanes(lanesOf<V>(loadPart<V>(src, count)), firstOf<V>(values, count), "loadPart");
        const Guarded<T> dst(n);
        storePart<V>(dst, vectorOf<V>(firstOf<V>(values, V::lanes)), count);
        expectElements(dst.data(), values.data(), n, "storePart");
        EXPECT_TRUE(dst.surroundingsUntouched());

        Lanes<V> rest = firstOf<V>(values, count);
        for (std::size_t i = n; i < V::lanes; ++i) rest[i] = T(5);
        test::expectLanes(lanesOf<V>(withRest(vectorOf<V>(firstOf<V>(values, count)), count, T(5))), rest, "withRest");
    }
}

TYPED_TEST(Ends, UpToWhateverNumberIsLeft) {
    using V = TypeParam;
    using T = typename V::Element;
    for (std::int64_t n = -2 * V::lanes; n <= 3 * V::lanes; ++n) {
        const std::int64_t held = n < 0 ? 0 : n < V::lanes ? n : V::lanes;
        const std::vector<T> values = anyElements<T>(V::lanes, static_cast<std::uint64_t>(n + 1000));
        const Guarded<T> src(std::vector<T>(values.begin(), values.begin() + held));
        test::expectLanes(lanesOf<V>(loadUpTo<V>(src, n)), firstOf<V>(values, held), "loadUpTo");
        const Guarded<T> dst(static_cast<std::size_t>(held));
        storeUpTo<V>(dst, vectorOf<V>(firstOf<V>(values, V::lanes)), n);
        expectElements(dst.data(), values.data(), dst.size(), "storeUpTo");
        EXPECT_TRUE(dst.surroundingsUntouched());
    }
}

template <class T>
class Blocks : public testing::Test {};
using BlockElements = testing::Types<float, double, std::int64_t, std::int32_t, std::int16_t, std::int8_t, std::uint8_t,
                                     std::uint16_t, std::uint32_t>;
TYPED_TEST_SUITE(Blocks, BlockElements);

template <class T, int count>
void checkBlocks() {
    for (int n = 0; n <= count; ++n) {
        const std::vector<T> values = anyElements<T>(count, static_cast<std::uint64_t>(n) + 1);
        const Guarded<T> src(std::vector<T>(values.begin(), values.begin() + n));
        Block<T, count> block;
        std::memset(block, 0x5A, sizeof block);
        fillBlock<count>(src.data(), n, block);
        for (int i = 0; i < count; ++i) {
            EXPECT_TRUE(test::identical(block[i], i < n ? values[i] : T(0))) << "element " << i << " of " << n;
        }
        const Guarded<T> dst(static_cast<std::size_t>(n));
        emptyBlock<count>(block, dst.data(), n);
        expectElements(dst.data(), values.data(), dst.size(), "emptyBlock");
        EXPECT_TRUE(dst.surroundingsUntouched());
    }
}
TYPED_TEST(Blocks, FillAndEmpty) {
    checkBlocks<TypeParam, 4>();
    checkBlocks<TypeParam, 16>();
    checkBlocks<TypeParam, 24>();
    checkBlocks<TypeParam, 64>();
}

TYPED_TEST(Blocks, WorkOnWholeBlocksReachesAnyLength) {
    using T = TypeParam;
    for (std::size_t n = 0; n < 70; ++n) {
        const std::vector<T> values = anyElements<T>(n, n + 1);
        const Guarded<T> src(values), dst(n);
        const auto reversed = [](const T* from, T* to) {  // needs all eight before it writes the first
            T eight[8];
            std::memcpy(eight, from, sizeof eight);
            for (int i = 0; i < 8; ++i) to[i] = eight[7 - i];
        };
        forBlocks<8>(src.data(), dst.data(), static_cast<std::ptrdiff_t>(n), reversed);
        for (std::size_t i = 0; i < n; ++i) {
            const std::size_t from = i / 8 * 8 + (7 - i % 8);
            EXPECT_TRUE(test::identical(dst[i], from < n ? values[from] : T(0))) << "element " << i << " of " << n;
        }
        EXPECT_TRUE(dst.surroundingsUntouched());
        forBlocks<8>(src.data(), src.data(), static_cast<std::ptrdiff_t>(n), reversed);
        expectElements(src.data(), dst.data(), n, "forBlocks in place");
    }
}

#if !defined(VORN_SIMD_AVX512)
TEST(Parts, BytesFromNoneToAll) {
    for (std::size_t n = 0; n <= sizeof(i8xN); ++n) {
        const auto count = static_cast<std::int64_t>(n);
        const std::vector<std::int8_t> values = anyElements<std::int8_t>(i8xN::lanes, n + 1);
        const Guarded<std::int8_t> src(std::vector<std::int8_t>(values.begin(), values.begin() + count));
        test::expectLanes(lanesOf<i8xN>(loadBytes(src, count)), firstOf<i8xN>(values, count), "loadBytes");
        const Guarded<std::int8_t> dst(n);
        storeBytes(dst, vectorOf<i8xN>(firstOf<i8xN>(values, i8xN::lanes)), count);
        expectElements(dst.data(), values.data(), n, "storeBytes");
        EXPECT_TRUE(dst.surroundingsUntouched());
    }
}
#endif

// ---- short_block.h

TEST(ShortBlocks, Words) {
    const Guarded<Vorn8u> src(anyElements<Vorn8u>(9)), dst(9);
    putWord(dst + 1, wordAt<std::uint64_t>(src + 1));
    expectElements(dst + 1, src + 1, 8, "a word");
    EXPECT_TRUE(dst.surroundingsUntouched());
}

// move(src, dst, len) for each length, apart and onto itself at every small distance.
template <class Move>
void checkMove(std::size_t least, std::size_t most, Move move) {
    for (std::size_t len = least; len <= most; ++len) {
        const std::vector<Vorn8u> values = anyElements<Vorn8u>(len, len);
        const Guarded<Vorn8u> src(values), dst(len);
        move(src.data(), dst.data(), static_cast<std::int64_t>(len));
        expectElements(dst.data(), values.data(), len, "a move");
        EXPECT_TRUE(dst.surroundingsUntouched());
        for (std::size_t distance : {1, 3, 8, 17, 40}) {
            const std::vector<Vorn8u> both = anyElements<Vorn8u>(len + distance, len);
            const Guarded<Vorn8u> up(both), down(both);
            move(up.data(), up + distance, static_cast<std::int64_t>(len));
            expectElements(up + distance, both.data(), len, "a move up");
            move(down + distance, down.data(), static_cast<std::int64_t>(len));
            expectElements(down.data(), both.data() + distance, len, "a move down");
        }
        if (testing::Test::HasFailure()) return;
    }
}
TEST(ShortBlocks, Moves) {
    EXPECT_EQ(shortBytes, i8xN::lanes > 16 ? 256 : 128);
    checkMove(1, 32, [](const Vorn8u* src, Vorn8u* dst, std::int64_t len) { moveFew(src, dst, len); });
    checkMove(1, shortBytes, [](const Vorn8u* src, Vorn8u* dst, std::int64_t len) { moveShort(src, dst, len); });
    checkMove(8, 16,
              [](const Vorn8u* src, Vorn8u* dst, std::int64_t len) { moveEnds<std::uint64_t, 1>(src, dst, len); });
    checkMove(32, 64, [](const Vorn8u* src, Vorn8u* dst, std::int64_t len) { moveEnds<i8x16, 2>(src, dst, len); });
}

TEST(ShortBlocks, Fills) {
    const std::vector<Vorn8u> any = anyElements<Vorn8u>(16);
    for (std::size_t period : {1, 2, 4, 8, 16}) {
        std::vector<Vorn8u> pattern(16);
        for (std::size_t i = 0; i < 16; ++i) pattern[i] = any[i % period];
        std::int64_t even, odd;
        std::memcpy(&even, pattern.data(), 8);
        std::memcpy(&odd, pattern.data() + 8, 8);
        for (std::size_t len = period; len <= static_cast<std::size_t>(shortBytes); len += period) {
            const Guarded<Vorn8u> dst(len);
            fillShort(even, odd, dst, static_cast<std::int64_t>(len));
            for (std::size_t i = 0; i < len; ++i) EXPECT_EQ(dst[i], pattern[i % 16]) << "byte " << i << " of " << len;
            EXPECT_TRUE(dst.surroundingsUntouched());
        }
    }
    for (std::size_t len : {4, 6, 8}) {
        const Guarded<Vorn8u> dst(len);
        fillEnds<std::uint32_t, 1>(0x31313131U, dst, static_cast<std::int64_t>(len));
        for (Vorn8u x : dst) EXPECT_EQ(x, 0x31);
        EXPECT_TRUE(dst.surroundingsUntouched());
    }
}

}  // namespace
