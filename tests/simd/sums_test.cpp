// Lanes joined, exact sums, and tiles of four rows.
#include <bit>
#include <cstdint>

#include "simd/exact_sum.h"
#include "simd/fold.h"
#include "simd/lanes.h"
#include "simd/tile.h"
#include "support/guarded.h"

namespace {

using namespace vorn;
using test::Lanes;
using test::lanesOf;
using test::Like;
using test::Payload;
using test::vectorOf;
using test::wrapped;

// ---- The lanes of a register, joined.

TEST(FixedSums, HaveTheirOrder) {
    test::forOperands<f32x4>([](const Lanes<f32x4>& a, const Lanes<f32x4>& b) {
        const auto x = vectorOf<f32x4>(a), y = vectorOf<f32x4>(b);
        const auto neighbours = [](const Lanes<f32x4>& r) { return (r[0] + r[1]) + (r[2] + r[3]); };
        test::expectLane<Payload::any>(sumNeighbours(x), neighbours(a), 0, "sumNeighbours");
        test::expectLane<Payload::any>(sumHalves(x), (a[0] + a[2]) + (a[1] + a[3]), 0, "sumHalves");
        const Lanes<f32x4> c = {1e30F, -1e30F, 3, 1e-3F}, d = {1, 0x1p-24F, 0x1p-24F, -1};
        const Lanes<f32x4> rows = {neighbours(a), neighbours(b), neighbours(c), neighbours(d)};
        const f32x4 four = sumNeighbours(x, y, vectorOf<f32x4>(c), vectorOf<f32x4>(d));
        test::expectLanes<Payload::any>(lanesOf<f32x4>(four), rows, "sumNeighbours of four");
    });
    test::forOperands<f64x2>([](const Lanes<f64x2>& a, const Lanes<f64x2>&) {
        test::expectLane<Payload::any>(sumLanes(vectorOf<f64x2>(a)), a[0] + a[1], 0, "sumLanes");
    });
    test::forOperands<i32x4>([](const Lanes<i32x4>& a, const Lanes<i32x4>& b) {
        const auto x = vectorOf<i32x4>(a), y = vectorOf<i32x4>(b);
        EXPECT_EQ(sumLanes(x), wrapped<std::int32_t>(std::int64_t{a[0]} + a[1] + a[2] + a[3])) << "sumLanes";
        const auto sum = [](std::int64_t p, std::int64_t q) { return wrapped<std::int32_t>(p + q); };
        const Lanes<i32x4> pairs = {sum(a[0], a[1]), sum(a[2], a[3]), sum(b[0], b[1]), sum(b[2], b[3])};
        test::expectLanes(lanesOf<i32x4>(sumNeighbours(x, y)), pairs, "sumNeighbours");
    });
}

// Lane j with lane j + half, down to one.
template <class T, class Join>
T foldedInHalves(std::vector<T> lanes, Join join) {
    for (std::size_t half = lanes.size() / 2; half > 0; half /= 2) {
        for (std::size_t j = 0; j < half; ++j) lanes[j] = join(lanes[j], lanes[j + half]);
    }
    return lanes[0];
}
template <class V>
class Folds : public testing::Test {};
#if defined(VORN_SIMD_AVX512)
using Folded = testing::Types<f32x4, f64x2, i32x4, i16x8, u8x16, f32x8, f64x4, i32x8, i16x16, u8x32, f32x16, f64x8,
                              i32x16, i16x32, u8x64>;
#elif defined(VORN_SIMD_AVX2)
using Folded = testing::Types<f32x4, f64x2, i32x4, i16x8, u8x16, f32x8, f64x4, i32x8, i16x16, u8x32>;
#else
using Folded = testing::Types<f32x4, f64x2, i32x4, i16x8, u8x16>;
#endif
TYPED_TEST_SUITE(Folds, Folded);

TYPED_TEST(Folds, JoinHalvesOfTheLanes) {
    using V = TypeParam;
    using T = typename V::Element;
    test::forOperands<V>([](const Lanes<V>& a, const Lanes<V>&) {
        const std::vector<T> lanes(a.begin(), a.end());
        const V x = vectorOf<V>(a);
        test::expectLane<Payload::kept>(folded(x, [](auto p, auto q) { return minOf(p, q); }),
                                        foldedInHalves(lanes, [](T p, T q) { return p < q ? p : q; }), 0, "folded");
        if constexpr (std::is_floating_point_v<T>) {
            test::expectLane<Payload::any>(sumOfLanes(x), foldedInHalves(lanes, [](T p, T q) { return p + q; }), 0,
                                           "sumOfLanes");
        } else if constexpr (std::is_signed_v<T>) {
            __int128 sum = 0;
            for (T p : a) sum += p;
            EXPECT_EQ(sumOfLanes(x), wrapped<T>(sum)) << "sumOfLanes";
        }
        if constexpr (std::is_same_v<V, i32xN>) {
            std::int64_t sum = 0;
            for (T p : a) sum += p;
            EXPECT_EQ(wideSumOfLanes(x), sum) << "wideSumOfLanes";
        }
        // Down to the first eight bytes: the lanes of two halves.
        const auto two = foldedTo<8>(x, [](auto p, auto q) { return maxOf(p, q); });
        const auto first = lanesOf(two);
        for (std::size_t j = 0; j < 8 / sizeof(T); ++j) {
            std::vector<T> column;
            for (std::size_t i = j; i < lanes.size(); i += 8 / sizeof(T)) column.push_back(lanes[i]);
            test::expectLane<Payload::kept>(first[j], foldedInHalves(column, [](T p, T q) { return p > q ? p : q; }),
                                            static_cast<int>(j), "foldedTo");
        }
    });
}

TEST(FixedSums, BytesMoveDown) {
    const auto a = test::ramp<i8x16>(1);
    const auto check = [&]<int bytes>(std::integral_constant<int, bytes>) {
        Lanes<i8x16> expected{};
        for (int i = 0; i + bytes < 16; ++i) expected[i] = a[i + bytes];
        test::expectLanes(lanesOf<i8x16>(shiftedDown<bytes>(vectorOf<i8x16>(a))), expected, "shiftedDown");
    };
    check(std::integral_constant<int, 1>()), check(std::integral_constant<int, 2>());
    check(std::integral_constant<int, 4>()), check(std::integral_constant<int, 8>());
}

// ---- Exact sums of products.

TEST(ExactSums, ProductsWrapAndTheirSumIsExact) {
    ProductSum sum;
    std::int64_t expected = 0;
    EXPECT_EQ(sum.total(), 0);
    test::forOperands<i32x4>([&](const Lanes<i32x4>& a, const Lanes<i32x4>& b) {
        sum.add(vectorOf<i32x4>(a), vectorOf<i32x4>(b));
        for (int i = 0; i < 4; ++i) expected += wrapped<std::int32_t>(__int128{a[i]} * b[i]);
        EXPECT_EQ(sum.total(), expected);
    });
}

TEST(ExactSums, ShortProductsShareARegister) {
    ShortProductSum sum;
    std::int64_t expected = 0;
    EXPECT_EQ(sum.total(), 0);
    test::forOperands<i16x8>([&](const Lanes<i16x8>& value, const Lanes<i16x8>& any) {
        Lanes<i16x8> weight = any;
        for (auto& w : weight) w = std::max<std::int16_t>(w, -32767), w = std::min<std::int16_t>(w, 32766);
        sum.add(vectorOf<i16x8>(value), vectorOf<i16x8>(weight));
        for (int i = 0; i < 8; ++i) expected += value[i] * weight[i];
        EXPECT_EQ(sum.total(), expected);
        EXPECT_TRUE(sum.fit());
    });
}

TEST(ExactSums, WeightsThatDoNotFitAreTold) {
    for (std::int32_t odd : {0, 1, -32767, 32766, -32768, 32767, -32769, 32768, 100000, -2147483647 - 1, 2147483647}) {
        for (int place = 0; place < 8; ++place) {
            std::vector<std::int32_t> wide = {1, -2, 3, -4, 5, -6, 7, -8};
            wide[static_cast<std::size_t>(place)] = odd;
            const test::Guarded<std::int32_t> memory(wide);
            const i16x8 weights = ShortProductSum::weights(memory);
            Lanes<i16x8> expected;
            for (int i = 0; i < 8; ++i) expected[i] = test::saturated<std::int16_t>(wide[static_cast<std::size_t>(i)]);
            test::expectLanes(lanesOf<i16x8>(weights), expected, "weights");
            ShortProductSum sum;
            sum.add(vectorOf<i16x8>(test::ramp<i16x8>()), weights);
            EXPECT_EQ(sum.fit(), odd >= -32767 && odd <= 32766) << odd;
        }
    }
}

TEST(ExactSums, OfTwoLanes) {
    const Lanes<i64x2> a = {std::int64_t{1} << 40, -7};
    EXPECT_EQ(sumOfLanes(vectorOf<i64x2>(a).v), (std::int64_t{1} << 40) - 7);
}

// ---- Tiles.

TEST(Tiles, EightSingles) {
    test::forOperands<i16x8>([](const Lanes<i16x8>& a, const Lanes<i16x8>& b) {
        const auto x = vectorOf<i16x8>(a), y = vectorOf<i16x8>(b);
        Lanes<f32x8of8> values, upper, square, difference, product;
        for (int i = 0; i < 8; ++i) {
            const auto p = static_cast<float>(a[i]), q = static_cast<float>(b[i]);
            values[i] = p, upper[i] = p / upperUnit, square[i] = p * p, difference[i] = p - q, product[i] = p * q;
        }
        test::expectLanes(lanesOf<f32x8of8>(toFloats(x)), values, "toFloats");
        test::expectLanes(lanesOf<f32x8of8>(upperFloats(x)), upper, "upperFloats");
        test::expectLanes(lanesOf<f32x8of8>(squares(x)), square, "squares");
        test::expectLanes(lanesOf<f32x8of8>(toFloats(x) - toFloats(y)), difference, "-");
        test::expectLanes(lanesOf<f32x8of8>(toFloats(x) * toFloats(y)), product, "*");
        test::expectLanes(lanesOf<f32x4>(lowHalf(toFloats(x)), highHalf(toFloats(x))), values, "lowHalf, highHalf");
    });
}

TEST(Tiles, FourDoubles) {
    using V = f64x4;
    constexpr Payload any = Payload::any;
    test::checkPairs<V, any>(
        "+", [](V a, V b) { return a + b; }, [](double a, double b) { return a + b; });
    test::checkPairs<V, any>(
        "-", [](V a, V b) { return a - b; }, [](double a, double b) { return a - b; });
    test::checkPairs<V, any>(
        "*", [](V a, V b) { return a * b; }, [](double a, double b) { return a * b; });
    test::checkPairs<V, any>(
        "/", [](V a, V b) { return a / b; }, [](double a, double b) { return a / b; });
    test::checkPairs<V>(
        "maxOf", [](V a, V b) { return maxOf(a, b); }, [](double a, double b) { return a > b ? a : b; });
    test::forOperands<V>([](const Lanes<V>& a, const Lanes<V>&) {
        const test::Guarded<double> src(std::vector<double>(a.begin(), a.end())), dst(4);
        test::expectLanes(lanesOf<V>(load<V>(src)), a, "load");
        store(dst.data(), vectorOf<V>(a));
        EXPECT_EQ(std::memcmp(dst.data(), a.data(), sizeof a), 0) << "store";
        EXPECT_TRUE(dst.surroundingsUntouched());
        test::expectLanes(lanesOf<V>(splat<V>(a[1])), Lanes<V>{a[1], a[1], a[1], a[1]}, "splat");
        test::expectLanes(lanesOf<V>(firstOnly(a[1])), Lanes<V>{a[1], 0, 0, 0}, "firstOnly");
        EXPECT_TRUE(test::identical(firstLane(vectorOf<V>(a)), a[0])) << "firstLane";
        test::expectLanes<any>(lanesOf<f64x2>(foldHalves(vectorOf<V>(a))), Lanes<f64x2>{a[0] + a[2], a[1] + a[3]},
                               "foldHalves");
        test::expectLanes(lanesOf<f64x2>(lowHalf(vectorOf<V>(a))), Lanes<f64x2>{a[0], a[1]}, "lowHalf");
        test::expectLanes(lanesOf<f64x2>(highHalf(vectorOf<V>(a))), Lanes<f64x2>{a[2], a[3]}, "highHalf");
    });
    test::forOperands<f32x4>([](const Lanes<f32x4>& a, const Lanes<f32x4>&) {
        test::expectLanes<any>(lanesOf<V>(widened(vectorOf<f32x4>(a))), Lanes<V>{a[0], a[1], a[2], a[3]}, "widened");
    });
    test::expectLanes(lanesOf<f32x4>(vorn::lanesOf(1, 2, 3, 4)), Lanes<f32x4>{1, 2, 3, 4}, "lanesOf");
    int value = 5;
    EXPECT_EQ(keepApart(&value), &value);
}

// Row r of the tile is block b of vector r; columns and sums tell what it holds.
template <int block, class V>
void checkSingleRows() {
    Lanes<V> rows[4];
    test::Random random(43);
    for (auto& row : rows) {
        for (float& x : row) x = static_cast<float>(random.uniform(-100, 100));
    }
    const f32x4x4 tile =
        rowsOf<block>(vectorOf<V>(rows[0]), vectorOf<V>(rows[1]), vectorOf<V>(rows[2]), vectorOf<V>(rows[3]));
    f32x4 columns[4], zero[4];
    columnsOf(tile, columns);
    columnsOf(tile - tile, zero);
    Lanes<f32x4> sums;
    for (int r = 0; r < 4; ++r) {
        const float* row = rows[r].data() + 4 * block;
        sums[r] = (row[0] + row[1]) + (row[2] + row[3]);
        for (int c = 0; c < 4; ++c) {
            EXPECT_EQ(lanesOf(columns[c])[r], row[c]) << "row " << r << ", column " << c;
            EXPECT_EQ(lanesOf(zero[c])[r], 0.0F) << "row " << r << ", column " << c;
        }
    }
    test::expectLanes(lanesOf<f32x4>(sumNeighbours(tile)), sums, "sumNeighbours");
    // Differences and sums keep their rows.
    const f32x4x4 other =
        rowsOf<block>(vectorOf<V>(rows[3]), vectorOf<V>(rows[2]), vectorOf<V>(rows[1]), vectorOf<V>(rows[0]));
    f32x4 added[4];
    columnsOf(tile - other, columns);
    columnsOf(tile + other, added);
    for (int r = 0; r < 4; ++r) {
        for (int c = 0; c < 4; ++c) {
            EXPECT_EQ(lanesOf(columns[c])[r], rows[r][4 * block + c] - rows[3 - r][4 * block + c]);
            EXPECT_EQ(lanesOf(added[c])[r], rows[r][4 * block + c] + rows[3 - r][4 * block + c]);
        }
    }
}
template <int block, class V>
void checkDoubleRows() {
    Lanes<V> rows[4];
    test::Random random(47);
    for (auto& row : rows) {
        for (double& x : row) x = random.uniform(-100, 100);
    }
    const f64x2x4 tile =
        rowsOf<block>(vectorOf<V>(rows[0]), vectorOf<V>(rows[1]), vectorOf<V>(rows[2]), vectorOf<V>(rows[3]));
    const f64x2x4 other =
        rowsOf<block>(vectorOf<V>(rows[3]), vectorOf<V>(rows[2]), vectorOf<V>(rows[1]), vectorOf<V>(rows[0]));
    f64x4 columns[2], differences[2], added[2];
    columnsOf(tile, columns);
    columnsOf(tile - other, differences);
    columnsOf(tile + other, added);
    for (int r = 0; r < 4; ++r) {
        const double* row = rows[r].data() + 2 * block;
        EXPECT_EQ(lanesOf(sumLanes(tile))[r], row[0] + row[1]);
        for (int c = 0; c < 2; ++c) {
            EXPECT_EQ(lanesOf(columns[c])[r], row[c]) << "row " << r << ", column " << c;
            EXPECT_EQ(lanesOf(differences[c])[r], row[c] - rows[3 - r][2 * block + c]);
            EXPECT_EQ(lanesOf(added[c])[r], row[c] + rows[3 - r][2 * block + c]);
        }
    }
}
TEST(Tiles, RowsColumnsAndTheirSums) {
    checkSingleRows<0, f32x4>();
    checkSingleRows<0, f32x8of8>();
    checkSingleRows<1, f32x8of8>();
    checkDoubleRows<0, f64x2>();
#if defined(VORN_WIDE_TILES)
    checkDoubleRows<0, f64x4>();
    checkDoubleRows<1, f64x4>();
#endif
}

template <class V>
class TileIntegers : public testing::Test {};
#if defined(VORN_WIDE_TILES)
using TileShorts = testing::Types<i16x8, i16x16>;
#else
using TileShorts = testing::Types<i16x8>;
#endif
TYPED_TEST_SUITE(TileIntegers, TileShorts);

// Within each block of 16 bytes.
template <int n, class V>
void checkDrop() {
    constexpr int block = 16 / static_cast<int>(sizeof(typename V::Element));
    const auto a = test::ramp<V>(100);
    Lanes<V> expected{};
    for (int i = 0; i < V::lanes; ++i) {
        if (i % block + n < block) expected[i] = a[i + n];
    }
    test::expectLanes(lanesOf<V>(dropFirst<n>(vectorOf<V>(a))), expected, "dropFirst");
}
TYPED_TEST(TileIntegers, MoveWithinBlocks) {
    using V = TypeParam;
    using I = Like<std::int32_t, V>;
    checkDrop<1, V>();
    checkDrop<2, V>();
    checkDrop<4, V>();
    checkDrop<7, V>();
    const auto a = test::ramp<I>(1), b = test::ramp<I>(-40);
    const auto x = vectorOf<I>(a), y = vectorOf<I>(b);
    Lanes<I> first, last, exchanged, even;
    for (int i = 0; i < I::lanes; ++i) {
        const int block = i / 4 * 4;
        const auto& from = i % 4 < 2 ? a : b;
        first[i] = from[block + i % 2], last[i] = from[block + 2 + i % 2];
        exchanged[i] = a[i ^ 1], even[i] = i % 2 == 0 ? b[i] : 0;
    }
    test::expectLanes(lanesOf<I>(firstTwoOf(x, y)), first, "firstTwoOf");
    test::expectLanes(lanesOf<I>(lastTwoOf(x, y)), last, "lastTwoOf");
    test::expectLanes(lanesOf<I>(neighboursExchanged(x)), exchanged, "neighboursExchanged");
    test::expectLanes(lanesOf<I>(evenLanes(y)), even, "evenLanes");
    const auto row = test::ramp<i16x8>(7);
    Lanes<V> repeated;
    for (int i = 0; i < V::lanes; ++i) repeated[i] = row[i % 8];
    test::expectLanes(lanesOf<V>(inEachBlock<V>(vectorOf<i16x8>(row))), repeated, "inEachBlock");
}

TEST(Tiles, ShortRows) {
    checkDrop<1, i32x4>();
    checkDrop<3, i32x4>();
    Lanes<i16x8> rows[4];
    for (int r = 0; r < 4; ++r) rows[r] = test::ramp<i16x8>(100 * r);
    const auto tile = fourShortRows(vectorOf<i16x8>(rows[0]), vectorOf<i16x8>(rows[1]), vectorOf<i16x8>(rows[2]),
                                    vectorOf<i16x8>(rows[3]));
    int visited = 0;
    forParts<FourShortRows::count>([&](auto p) {
        const auto part = lanesOf(tile.part[p]);
        for (std::size_t i = 0; i < part.size(); ++i) {
            EXPECT_EQ(part[i], rows[i < 8 ? p : p + 2][i % 8]) << "part " << p << ", lane " << i;
        }
        EXPECT_EQ(p, visited++);
    });
    EXPECT_EQ(visited * FourShortRows::Vector::lanes, 32);
#if defined(VORN_WIDE_TILES)
    const auto both = sideBySide(vectorOf<i16x8>(rows[1]), vectorOf<i16x8>(rows[3]));
    test::expectLanes(lanesOf<i16x16>(both), lanesOf<i16x8>(vectorOf<i16x8>(rows[1]), vectorOf<i16x8>(rows[3])),
                      "sideBySide");
#endif
}

}  // namespace
