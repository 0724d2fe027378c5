// Products of a matrix with a vector, from either side.
#include "model/matrix_products.h"

#include <gtest/gtest.h>
#include <sys/mman.h>

#include <algorithm>
#include <climits>
#include <cmath>
#include <string>
#include <type_traits>
#include <vector>

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
using test::RoundingMode;
using test::sameBits;

struct Size {
    int height, width;
};

// A member in both layouts behind one face, and its model. Float members take no scale factor.
template <class T_, class R_>
struct Product {
    using T = T_;
    using R = R_;
    const char* name;
    bool fromLeft;
    VornStatus (*block)(const T* src, int step, const T* vec, Size size, R* dst, int sf);
    VornStatus (*list)(const T* const* src, const T* vec, Size size, R* dst, int sf);

    int vecLength(Size size) const { return fromLeft ? size.height : size.width; }
    int results(Size size) const { return fromLeft ? size.width : size.height; }
    std::vector<R> model(const T* src, std::ptrdiff_t step, const T* vec, Size size, int sf) const {
        std::vector<R> expected(results(size));
        if (fromLeft) {
            model::vecMatMul(vec, src, step, size.height, expected.data(), size.width, sf);
        } else {
            model::matVecMul(src, step, vec, size.width, expected.data(), size.height, sf);
        }
        return expected;
    }
};

#define FROM_RIGHT(T, R, function, scale)                                                            \
    Product<T, R> {                                                                                  \
#function, false,                                                                                  \
            [](const T* src, int step, const T* vec, Size s, R* dst, [[maybe_unused]] int sf) {            \
                return function##_D2##scale(src, step, vec, s.width, dst, s.height ARGUMENT##scale);       \
            },                                                                                             \
            [](const T* const* src, const T* vec, Size s, R* dst, [[maybe_unused]] int sf) {               \
                return function##_D2L##scale(src, vec, s.width, dst, s.height ARGUMENT##scale);            \
            } \
    }
#define FROM_LEFT(T, R, function, scale)                                                             \
    Product<T, R> {                                                                                  \
#function, true,                                                                                   \
            [](const T* src, int step, const T* vec, Size s, R* dst, [[maybe_unused]] int sf) {            \
                return function##_D2##scale(vec, src, step, s.height, dst, s.width ARGUMENT##scale);       \
            },                                                                                             \
            [](const T* const* src, const T* vec, Size s, R* dst, [[maybe_unused]] int sf) {               \
                return function##_D2L##scale(vec, src, s.height, dst, s.width ARGUMENT##scale);            \
            } \
    }
#define ARGUMENT
#define ARGUMENTSfs , sf

const Product<Vorn32f, Vorn32f> floats[] = {FROM_RIGHT(Vorn32f, Vorn32f, vornsMatVecMul_32f, ),
                                            FROM_LEFT(Vorn32f, Vorn32f, vornsVecMatMul_32f, )};
const Product<Vorn16s, Vorn16s> shorts[] = {FROM_RIGHT(Vorn16s, Vorn16s, vornsMatVecMul_16s, Sfs),
                                            FROM_LEFT(Vorn16s, Vorn16s, vornsVecMatMul_16s, Sfs)};
const Product<Vorn16s, Vorn32s> shortsToInts[] = {FROM_RIGHT(Vorn16s, Vorn32s, vornsMatVecMul_16s32s, Sfs),
                                                  FROM_LEFT(Vorn16s, Vorn32s, vornsVecMatMul_16s32s, Sfs)};
const Product<Vorn32s, Vorn32s> ints[] = {FROM_RIGHT(Vorn32s, Vorn32s, vornsMatVecMul_32s, Sfs),
                                          FROM_LEFT(Vorn32s, Vorn32s, vornsVecMatMul_32s, Sfs)};

template <class Use>
void forAll(const Use& use) {
    for (const auto& product : floats) use(product);
    for (const auto& product : shorts) use(product);
    for (const auto& product : shortsToInts) use(product);
    for (const auto& product : ints) use(product);
}

// Both layouts against the model. The rows of the list are those of the block in another order; the block ends with the
// last element of its last row.
template <class T, class R>
void compare(const Product<T, R>& product, const std::vector<T>& data, const std::vector<T>& vec, Size size, int step,
             int sf = 0) {
    const std::string what = std::string(product.name) + " " + std::to_string(size.height) + " x " +
                             std::to_string(size.width) + ", step " + std::to_string(step) + ", sf " +
                             std::to_string(sf);
    const std::size_t length = static_cast<std::size_t>(size.height - 1) * step + size.width;
    Guarded<T> src(std::vector<T>(data.begin(), data.begin() + static_cast<std::ptrdiff_t>(length)));
    Guarded<T> vector(std::vector<T>(vec.begin(), vec.begin() + product.vecLength(size)));
    Guarded<R> dst(product.results(size));
    ASSERT_EQ(product.block(src, step, vector, size, dst, sf), vornStsNoErr) << what;
    ASSERT_TRUE(sameBits(dst.values(), product.model(src, step, vector, size, sf))) << what;
    ASSERT_TRUE(dst.surroundingsUntouched()) << what;

    Guarded<const T*> rows(size.height);
    std::vector<T> inOrder(static_cast<std::size_t>(size.height) * size.width);
    for (int i = 0; i < size.height; ++i) {
        rows[i] = src + static_cast<std::size_t>(size.height - 1 - i) * step;
        std::copy_n(rows[i], size.width, &inOrder[static_cast<std::size_t>(i) * size.width]);
    }
    dst.fillPattern();
    ASSERT_EQ(product.list(rows, vector, size, dst, sf), vornStsNoErr) << what;
    ASSERT_TRUE(sameBits(dst.values(), product.model(inOrder.data(), size.width, vector, size, sf)))
        << what << ", list";
    ASSERT_TRUE(dst.surroundingsUntouched()) << what;
}

// Ordinary values, and those at which arithmetic breaks.
template <class T>
std::vector<T> ordinary(Random& random, std::size_t n) {
    if constexpr (std::is_same_v<T, float>) {
        return random.floats(n, -10.0, 10.0);
    } else {
        return random.integers<T>(n);
    }
}
template <class T>
std::vector<T> hard(Random& random, std::size_t n) {
    if constexpr (std::is_same_v<T, float>) {
        auto values = random.pick(test::hardFloats<T>(), n);
        for (std::size_t i = 0; i < n; i += 3) values[i] = static_cast<float>(random.integer(-3, 3));
        return values;
    } else {
        return random.pick(test::hardIntegers<T>(), n);
    }
}
template <class T>
std::vector<T> some(Random& random, std::size_t n) {
    return random.integer(0, 1) != 0 ? ordinary<T>(random, n) : hard<T>(random, n);
}
// Scale factors that leave something of a sum of such values.
int usualScale(Random& random) { return static_cast<int>(random.integer(-3, 40)); }

TEST(MatrixProducts, EqualTheModelBitForBit) {
    Random random(1);
    forAll([&](const auto& product) {
        using T = typename std::remove_cvref_t<decltype(product)>::T;
        for (int width = 1; width <= 70; ++width) {
            for (int height : {1, 2, 3, 4, 5, 6, 7, 8, 9, 12, 13, 17}) {
                for (int step : {width, width + static_cast<int>(random.integer(1, 9))}) {
                    const auto data = some<T>(random, static_cast<std::size_t>(height) * step);
                    compare(product, data, some<T>(random, std::max(width, height)), {height, width}, step,
                            usualScale(random));
                }
            }
        }
    });
}

// Around what the kernels hold at once, in both directions.
TEST(MatrixProducts, EqualTheModelOverLargeMatrices) {
    Random random(2);
    const Size sizes[] = {{3, 127},  {5, 128},   {9, 255},  {8, 256},   {7, 257},   {3, 511},   {4, 513},
                          {5, 1023}, {6, 1024},  {9, 1025}, {33, 1087}, {8, 1088},  {19, 1089}, {5, 2047},
                          {4, 2049}, {11, 3333}, {3, 4095}, {9, 4096},  {5, 4097},  {2, 9000},  {63, 39},
                          {64, 40},  {65, 41},   {255, 5},  {256, 16},  {257, 33},  {258, 8},   {511, 3},
                          {512, 17}, {513, 64},  {514, 35}, {1000, 1},  {1025, 65}, {300, 1100}};
    forAll([&](const auto& product) {
        using T = typename std::remove_cvref_t<decltype(product)>::T;
        for (const Size& size : sizes) {
            const int step = size.width + 3;
            const auto data = ordinary<T>(random, static_cast<std::size_t>(size.height) * step);
            compare(product, data, ordinary<T>(random, std::max(size.width, size.height)), size, step,
                    usualScale(random));
        }
    });
}

// The largest sums there are, of either sign: -32768 squared in every pair, and what is next to it.
TEST(MatrixProducts, SumsOfTheLargestShortsAreExact) {
    for (int width : {1, 8, 13, 32, 64, 255, 256, 257, 530}) {
        for (int height : {1, 2, 3, 4, 255, 256, 257, 520}) {
            const std::size_t size = static_cast<std::size_t>(width) * height;
            for (Vorn16s a : {Vorn16s{-32768}, Vorn16s{32767}}) {
                for (Vorn16s v : {Vorn16s{-32768}, Vorn16s{32767}, Vorn16s{255}, Vorn16s{-32513}}) {
                    const std::vector<Vorn16s> data(size, a), vec(std::max(width, height), v);
                    for (const auto& product : shortsToInts) compare(product, data, vec, {height, width}, width, 10);
                }
            }
        }
    }
}

TEST(MatrixProducts, EveryScaleFactor) {
    std::vector<int> factors = {INT_MIN, INT_MIN + 1, INT_MIN + 63, -65536,      -4096,
                                4096,    65536,       INT_MAX - 63, INT_MAX - 1, INT_MAX};
    for (int sf = -140; sf <= 140; ++sf) factors.push_back(sf);
    for (int sf = 950; sf <= 1100; ++sf) factors.push_back(sf), factors.push_back(-sf);
    Random random(3);
    const Size size = {6, 9};
    const auto check = [&](const auto& product) {
        using T = typename std::remove_cvref_t<decltype(product)>::T;
        for (int sf : factors) {
            auto data = some<T>(random, static_cast<std::size_t>(size.height) * size.width);
            auto vec = some<T>(random, size.width);
            // Sums of 0, 1, -1 and a few more: what a scale of 2^62 leaves of them.
            std::fill_n(data.begin(), 2 * size.width, T{0});
            data[static_cast<std::size_t>(size.width)] = 1;
            for (int i = 0; i < size.height; ++i)
                data[static_cast<std::size_t>(i) * size.width] = static_cast<T>(i - 2);
            if (sf % 2 == 0) {
                std::fill(vec.begin(), vec.end(), T{0});
                vec[0] = 1;
            }
            compare(product, data, vec, size, size.width, sf);
        }
    };
    for (const auto& product : shorts) check(product);
    for (const auto& product : shortsToInts) check(product);
    for (const auto& product : ints) check(product);
}

// Every row on its own pages, in no order, some of them twice.
TEST(MatrixProducts, RowsOfAListStandAnywhereAndRepeat) {
    Random random(4);
    forAll([&](const auto& product) {
        using T = typename std::remove_cvref_t<decltype(product)>::T;
        using R = typename std::remove_cvref_t<decltype(product)>::R;
        for (int width : {1, 2, 3, 5, 7, 8, 12, 13, 17, 31, 39, 65}) {
            std::vector<Guarded<T>> made;
            for (int i = 0; i < 5; ++i) made.emplace_back(ordinary<T>(random, width));
            const int order[] = {4, 0, 0, 3, 1, 4, 2, 2, 2, 0, 1};
            std::vector<const T*> rows;
            std::vector<T> block;
            for (int i : order) {
                rows.push_back(made[static_cast<std::size_t>(i)]);
                for (T x : made[static_cast<std::size_t>(i)]) block.push_back(x);
            }
            const Size size = {static_cast<int>(rows.size()), width};
            const Guarded<T> vec(ordinary<T>(random, product.vecLength(size)));
            Guarded<R> dst(product.results(size));
            ASSERT_EQ(product.list(rows.data(), vec, size, dst, 12), vornStsNoErr);
            EXPECT_TRUE(sameBits(dst.values(), product.model(block.data(), width, vec, size, 12)))
                << product.name << " " << width;
        }
    });
}

TEST(MatrixProducts, AlignmentChangesNothing) {
    Random random(5);
    forAll([&](const auto& product) {
        using T = typename std::remove_cvref_t<decltype(product)>::T;
        using R = typename std::remove_cvref_t<decltype(product)>::R;
        for (int step : {40, 41}) {
            for (const Size size : {Size{9, 39}, Size{5, 13}}) {
                const auto data = ordinary<T>(random, static_cast<std::size_t>(size.height) * step);
                const auto values = ordinary<T>(random, product.vecLength(size));
                const auto expected = product.model(data.data(), step, values.data(), size, 20);
                for (std::size_t a = 0; a < 64; a += sizeof(T)) {
                    Offset<T> src(data.size(), a), vec(values.size(), (3 * a + 8) % 64);
                    Offset<R> dst(expected.size(), a / sizeof(T) * sizeof(R) % 64);
                    src.assign(data);
                    vec.assign(values);
                    ASSERT_EQ(product.block(src, step, vec, size, dst, 20), vornStsNoErr);
                    EXPECT_TRUE(sameBits(dst.values(), expected)) << product.name << " " << a;
                    EXPECT_TRUE(dst.surroundingsUntouched());
                }
            }
        }
    });
}

// Rows so far apart that their distance is not an int: 2^31 elements and more.
TEST(MatrixProducts, OffsetsOfRowsExceedAnInt) {
    constexpr std::size_t step = 0x40000000, elements = 4 * step + 64;
    void* map = mmap(nullptr, elements * sizeof(Vorn16s), PROT_READ | PROT_WRITE,
                     MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
    if (map == MAP_FAILED) GTEST_SKIP() << "no 8 GiB of addresses here";
    auto* src = static_cast<Vorn16s*>(map);
    for (std::size_t i = 0; i < 5; ++i) src[i * step] = static_cast<Vorn16s>(i + 1), src[i * step + 1] = 10;
    const Vorn16s fives[] = {5, 5, 5, 5, 5};
    Vorn16s perRow[5] = {}, perColumn[2] = {};
    EXPECT_EQ(vornsMatVecMul_16s_D2Sfs(src, step, fives, 2, perRow, 5, 0), vornStsNoErr);
    EXPECT_EQ(vornsVecMatMul_16s_D2Sfs(fives, src, step, 5, perColumn, 2, 0), vornStsNoErr);
    munmap(map, elements * sizeof(Vorn16s));
    for (int i = 0; i < 5; ++i) EXPECT_EQ(perRow[i], 5 * (i + 11));
    EXPECT_EQ(perColumn[0], 75);
    EXPECT_EQ(perColumn[1], 250);
}

TEST(MatrixProducts, FloatsFollowTheCallersRoundingModeAndIntegersDoNot) {
    Random random(6);
    forAll([&](const auto& product) {
        using T = typename std::remove_cvref_t<decltype(product)>::T;
        using R = typename std::remove_cvref_t<decltype(product)>::R;
        const Size size = {21, 23};
        const auto data = ordinary<T>(random, static_cast<std::size_t>(size.height) * size.width);
        const auto vec = ordinary<T>(random, product.vecLength(size));
        const int sf = std::is_same_v<T, Vorn32s> ? 37 : 20;
        const auto nearest = product.model(data.data(), size.width, vec.data(), size, sf);
        for (unsigned mode : {RoundingMode::nearest, RoundingMode::down, RoundingMode::up, RoundingMode::towardZero}) {
            const auto* volatile opaque = &product;  // keeps the model's arithmetic inside the mode
            std::vector<R> expected, dst(nearest.size());
            VornStatus status;
            unsigned after;
            {
                const RoundingMode caller(mode);
                if constexpr (std::is_same_v<T, float>) {
                    expected = opaque->model(data.data(), size.width, vec.data(), size, sf);
                }
                status = opaque->block(data.data(), size.width, vec.data(), size, dst.data(), sf);
                after = RoundingMode::current();
            }
            EXPECT_EQ(status, vornStsNoErr);
            EXPECT_EQ(after, mode);
            if constexpr (std::is_same_v<T, float>) {
                EXPECT_TRUE(sameBits(dst, expected)) << product.name << " " << mode;
                EXPECT_EQ(dst == nearest, mode == RoundingMode::nearest) << "the mode shows in the results";
            } else {
                EXPECT_TRUE(sameBits(dst, nearest)) << product.name << " " << mode;
            }
        }
    });
}

// Products of small integers are the same numbers in every form, and x (A y) = (x A) y.
TEST(MatrixProducts, SmallIntegersAreExactInEveryForm) {
    Random random(7);
    for (int turn = 0; turn < 200; ++turn) {
        const Size size = {static_cast<int>(random.integer(1, 40)), static_cast<int>(random.integer(1, 40))};
        const auto a = random.integers<int>(static_cast<std::size_t>(size.height) * size.width, -20, 20);
        const auto x = random.integers<int>(size.height, -20, 20), y = random.integers<int>(size.width, -20, 20);
        std::vector<long> ay(size.height), xa(size.width);
        for (int i = 0; i < size.height; ++i) {
            for (int j = 0; j < size.width; ++j) {
                const long element = a[static_cast<std::size_t>(i) * size.width + j];
                ay[i] += element * y[j];
                xa[j] += element * x[i];
            }
        }
        long left = 0, right = 0;
        forAll([&](const auto& product) {
            using T = typename std::remove_cvref_t<decltype(product)>::T;
            using R = typename std::remove_cvref_t<decltype(product)>::R;
            const std::vector<T> matrix(a.begin(), a.end());
            const std::vector<T> vec =
                product.fromLeft ? std::vector<T>(x.begin(), x.end()) : std::vector<T>(y.begin(), y.end());
            std::vector<R> dst(product.results(size));
            ASSERT_EQ(product.block(matrix.data(), size.width, vec.data(), size, dst.data(), 0), vornStsNoErr);
            long both = 0;
            for (std::size_t k = 0; k < dst.size(); ++k) {
                EXPECT_EQ(dst[k], product.fromLeft ? xa[k] : ay[k]) << product.name;
                both += static_cast<long>(dst[k]) * (product.fromLeft ? y[k] : x[k]);
            }
            (product.fromLeft ? left : right) = both;
            EXPECT_TRUE(!product.fromLeft || left == right) << product.name;
        });
    }
}

// A vector of one 1 picks a column, or a row.
TEST(MatrixProducts, UnitVectorsPickRowsAndColumns) {
    Random random(8);
    const Size size = {11, 19};
    forAll([&](const auto& product) {
        using T = typename std::remove_cvref_t<decltype(product)>::T;
        using R = typename std::remove_cvref_t<decltype(product)>::R;
        const auto data = ordinary<T>(random, static_cast<std::size_t>(size.height) * size.width);
        for (int k = 0; k < product.vecLength(size); ++k) {
            std::vector<T> vec(product.vecLength(size));
            vec[static_cast<std::size_t>(k)] = 1;
            std::vector<R> dst(product.results(size));
            ASSERT_EQ(product.block(data.data(), size.width, vec.data(), size, dst.data(), 0), vornStsNoErr);
            for (int n = 0; n < product.results(size); ++n) {
                EXPECT_EQ(dst[n], data[product.fromLeft ? k * size.width + n : n * size.width + k]) << product.name;
            }
        }
    });
}

TEST(MatrixProducts, SinglesKeepTheirBound) {
    constexpr double bound = 6e-8;  // times the number of products and the sum of their magnitudes
    Random random(9);
    for (const Size size : {Size{50, 3}, Size{40, 39}, Size{3, 50000}, Size{50000, 3}, Size{100000, 1}}) {
        for (const auto& product : floats) {
            const auto data = random.floats(static_cast<std::size_t>(size.height) * size.width, -0.1, 1.0);
            const auto vec = random.floats(product.vecLength(size), 0.5, 1.0);
            std::vector<float> dst(product.results(size));
            ASSERT_EQ(product.block(data.data(), size.width, vec.data(), size, dst.data(), 0), vornStsNoErr);
            for (int n = 0; n < product.results(size); ++n) {
                long double sum = 0, magnitudes = 0;
                for (int k = 0; k < product.vecLength(size); ++k) {
                    const auto at =
                        product.fromLeft ? std::size_t(k) * size.width + n : std::size_t(n) * size.width + k;
                    const long double term = static_cast<long double>(data[at]) * vec[k];
                    sum += term;
                    magnitudes += std::fabs(term);
                }
                EXPECT_LE(std::fabs(dst[n] - sum), bound * product.vecLength(size) * magnitudes) << product.name;
            }
        }
    }
}

// The order is the promise: these sums come out otherwise in any other.
TEST(MatrixProducts, LanesOfARow) {
    // 1e8 and -1e8 meet in lane 0; the ones of the other lanes stay, the column left over comes last.
    const float row[] = {1e8f, 1, 2, 4, -1e8f, 8, 16, 32, 64}, ones[] = {1, 1, 1, 1, 1, 1, 1, 1, 1};
    float dst;
    ASSERT_EQ(vornsMatVecMul_32f_D2(row, 9, ones, 9, &dst, 1), vornStsNoErr);
    EXPECT_EQ(dst, 127.0f);
    // Neighbouring lanes meet first: 1e8 + 1 is 1e8 and -1e8 + 3 is -1e8.
    const float neighbours[] = {1e8f, 1, -1e8f, 3, 0.5f};
    ASSERT_EQ(vornsMatVecMul_32f_D2(neighbours, 5, ones, 5, &dst, 1), vornStsNoErr);
    EXPECT_EQ(dst, 0.5f);
    // In a column the rows follow one another.
    ASSERT_EQ(vornsVecMatMul_32f_D2(ones, row, 1, 9, &dst, 1), vornStsNoErr);
    EXPECT_EQ(dst, 120.0f);
}

TEST(MatrixProducts, LanesOfARowInDouble) {
    // 2^60 and -2^60 meet in lane 0, two ones in lane 1; in order the first one would be lost.
    const Vorn32s row[] = {1 << 30, 1, -(1 << 30), 1, 5}, vec[] = {1 << 30, 1, 1 << 30, 1, 1};
    Vorn32s dst;
    ASSERT_EQ(vornsMatVecMul_32s_D2Sfs(row, 5, vec, 5, &dst, 1, 0), vornStsNoErr);
    EXPECT_EQ(dst, 7);
    ASSERT_EQ(vornsVecMatMul_32s_D2Sfs(vec, row, 1, 5, &dst, 1, 0), vornStsNoErr);
    EXPECT_EQ(dst, 6);
}

TEST(MatrixProducts, EmptyLanesAndZeros) {
    // Sums begin at +0, so a product of -0 alone gives +0.
    const float zero = -0.0f, one = 1.0f;
    float dst = 1;
    ASSERT_EQ(vornsMatVecMul_32f_D2(&zero, 1, &one, 1, &dst, 1), vornStsNoErr);
    EXPECT_TRUE(test::same(dst, 0.0f));
    dst = 1;
    ASSERT_EQ(vornsVecMatMul_32f_D2(&one, &zero, 1, 1, &dst, 1), vornStsNoErr);
    EXPECT_TRUE(test::same(dst, 0.0f));
}

// A matrix of one row times a vector, and a vector times a matrix of one column.
template <class T, class R>
R ofRow(VornStatus (*function)(const T*, int, const T*, int, R*, int, int),
        const std::type_identity_t<std::vector<T>>& row, const std::type_identity_t<std::vector<T>>& vec, int sf) {
    R dst = 99;
    EXPECT_EQ(function(row.data(), static_cast<int>(row.size()), vec.data(), static_cast<int>(vec.size()), &dst, 1, sf),
              vornStsNoErr);
    return dst;
}
template <class T, class R>
R ofColumn(VornStatus (*function)(const T*, const T*, int, int, R*, int, int),
           const std::type_identity_t<std::vector<T>>& vec, const std::type_identity_t<std::vector<T>>& column,
           int sf) {
    R dst = 99;
    EXPECT_EQ(function(vec.data(), column.data(), 1, static_cast<int>(vec.size()), &dst, 1, sf), vornStsNoErr);
    return dst;
}

TEST(MatrixProducts, TheTwoDirectionsRoundDifferently) {
    EXPECT_EQ(ofRow(vornsMatVecMul_16s_D2Sfs, {3, -1}, {1, 4}, 1), -1);
    EXPECT_EQ(ofColumn(vornsVecMatMul_16s_D2Sfs, {3, -1}, {1, 4}, 1), 0);
    EXPECT_EQ(ofRow(vornsMatVecMul_16s32s_D2Sfs, {3, -1}, {1, 4}, 1), -1);
    EXPECT_EQ(ofColumn(vornsVecMatMul_16s32s_D2Sfs, {3, -1}, {1, 4}, 1), 0);
    EXPECT_EQ(ofRow(vornsMatVecMul_16s_D2Sfs, {3}, {1}, 1), 1);
    EXPECT_EQ(ofColumn(vornsVecMatMul_16s_D2Sfs, {3}, {1}, 1), 2);
    EXPECT_EQ(ofRow(vornsMatVecMul_32s_D2Sfs, {3}, {1}, 1), 2);
    EXPECT_EQ(ofRow(vornsMatVecMul_32s_D2Sfs, {-5}, {1}, 1), -2);
}

TEST(MatrixProducts, Saturation) {
    EXPECT_EQ(ofRow(vornsMatVecMul_16s_D2Sfs, {32767}, {1}, 0), 32767);
    EXPECT_EQ(ofRow(vornsMatVecMul_16s_D2Sfs, {32767, 1}, {1, 1}, 0), 32767);
    EXPECT_EQ(ofRow(vornsMatVecMul_16s_D2Sfs, {32767, 1}, {2, 1}, 1), 32767);  // 65535 / 2
    EXPECT_EQ(ofRow(vornsMatVecMul_16s_D2Sfs, {32767, 2}, {2, 1}, 1), 32767);  // 65536 / 2
    EXPECT_EQ(ofRow(vornsMatVecMul_16s_D2Sfs, {32766, 1}, {2, 1}, 1), 32766);
    EXPECT_EQ(ofRow(vornsMatVecMul_16s_D2Sfs, {-32768, -1}, {1, 1}, 0), -32768);
    EXPECT_EQ(ofRow(vornsMatVecMul_16s_D2Sfs, {-32768, -32768}, {-32768, -32768}, 17), 16384);
    EXPECT_EQ(ofRow(vornsMatVecMul_16s32s_D2Sfs, {-32768, -32768}, {-32768, -32768}, 0), 2147483647);
    EXPECT_EQ(ofRow(vornsMatVecMul_16s32s_D2Sfs, {-32768, -32768}, {-32768, -32768}, 1), 1073741824);
    EXPECT_EQ(ofColumn(vornsVecMatMul_16s32s_D2Sfs, {-32768, -32768}, {-32768, -32768}, 1), 1073741824);
    EXPECT_EQ(ofColumn(vornsVecMatMul_16s_D2Sfs, {32767, 1}, {1, 1}, 0), 32767);
    EXPECT_EQ(ofColumn(vornsVecMatMul_16s_D2Sfs, {-32768, 1}, {1, -1}, 0), -32768);

    EXPECT_EQ(ofRow(vornsMatVecMul_32s_D2Sfs, {1000000000}, {3}, 0), -2147483647 - 1);
    EXPECT_EQ(ofColumn(vornsVecMatMul_32s_D2Sfs, {1000000000}, {3}, 0), 2147483647);
    EXPECT_EQ(ofRow(vornsMatVecMul_32s_D2Sfs, {-1000000000}, {3}, 0), -2147483647 - 1);
    EXPECT_EQ(ofColumn(vornsVecMatMul_32s_D2Sfs, {-1000000000}, {3}, 0), -2147483647 - 1);
    EXPECT_EQ(ofRow(vornsMatVecMul_32s_D2Sfs, {2147483647}, {1}, 0), 2147483647);
}

TEST(MatrixProducts, ShiftsCountModulo64) {
    for (int sf : {64, -64, 128, INT_MIN}) {
        EXPECT_EQ(ofRow(vornsMatVecMul_16s_D2Sfs, {-7}, {3}, sf), -21) << sf;
    }
    EXPECT_EQ(ofRow(vornsMatVecMul_16s_D2Sfs, {7}, {3}, 65), 10);
    EXPECT_EQ(ofRow(vornsMatVecMul_16s_D2Sfs, {-7}, {3}, 63), -1);
    EXPECT_EQ(ofRow(vornsMatVecMul_16s_D2Sfs, {-7}, {3}, INT_MAX), -1);      // modulo 64 that is 63
    EXPECT_EQ(ofRow(vornsMatVecMul_16s_D2Sfs, {7}, {3}, INT_MIN + 63), 42);  // modulo 64 that is 1
    // What leaves at the top is lost: 2 x 2^63 is 0, 3 x 2^62 is -2^62.
    EXPECT_EQ(ofRow(vornsMatVecMul_16s_D2Sfs, {2}, {1}, -63), 0);
    EXPECT_EQ(ofRow(vornsMatVecMul_16s_D2Sfs, {1}, {1}, -63), -32768);
    EXPECT_EQ(ofRow(vornsMatVecMul_16s32s_D2Sfs, {3}, {1}, -62), -2147483647 - 1);
}

TEST(MatrixProducts, InfiniteAndZeroFactors) {
    for (int sf : {-1024, -2000, INT_MIN}) {
        EXPECT_EQ(ofRow(vornsMatVecMul_32s_D2Sfs, {0}, {5}, sf), -2147483647 - 1) << sf;
        EXPECT_EQ(ofRow(vornsMatVecMul_32s_D2Sfs, {1}, {5}, sf), -2147483647 - 1) << sf;
        EXPECT_EQ(ofColumn(vornsVecMatMul_32s_D2Sfs, {0}, {5}, sf), 0) << sf;
        EXPECT_EQ(ofColumn(vornsVecMatMul_32s_D2Sfs, {1}, {5}, sf), 2147483647) << sf;
        EXPECT_EQ(ofColumn(vornsVecMatMul_32s_D2Sfs, {-1}, {5}, sf), -2147483647 - 1) << sf;
        EXPECT_EQ(ofColumn(vornsVecMatMul_16s_D2Sfs, {0}, {5}, sf), 0) << sf;
        EXPECT_EQ(ofColumn(vornsVecMatMul_16s_D2Sfs, {1}, {5}, sf), 32767) << sf;
        EXPECT_EQ(ofColumn(vornsVecMatMul_16s_D2Sfs, {-1}, {5}, sf), -32768) << sf;
        EXPECT_EQ(ofColumn(vornsVecMatMul_16s32s_D2Sfs, {0}, {5}, sf), 0) << sf;
    }
    for (int sf : {1075, 3000, INT_MAX}) {
        EXPECT_EQ(ofRow(vornsMatVecMul_32s_D2Sfs, {-2147483647}, {2147483647}, sf), 0) << sf;
        EXPECT_EQ(ofColumn(vornsVecMatMul_32s_D2Sfs, {-2147483647}, {2147483647}, sf), 0) << sf;
        EXPECT_EQ(ofColumn(vornsVecMatMul_16s_D2Sfs, {-32768}, {-32768}, sf), 0) << sf;
    }
}

// Where sums of 16-bit products leave the 53 bits of a double, each addition rounds, row by row.
TEST(MatrixProducts, SumsOfVeryManyShortsRoundInOrder) {
    // `large` times 2^30, then a thousand ones, then the first again, in halves and negative.
    const auto expectSum = [](std::size_t large, int sum) {
        constexpr std::size_t few = 1000;
        std::vector<Vorn16s> column(3 * large + few, -32768), vec(3 * large + few, 16384);
        std::fill_n(vec.begin(), large, Vorn16s{-32768});
        std::fill_n(column.begin() + static_cast<std::ptrdiff_t>(large), few, Vorn16s{1});
        std::fill_n(vec.begin() + static_cast<std::ptrdiff_t>(large), few, Vorn16s{1});
        EXPECT_EQ(ofColumn(vornsVecMatMul_16s_D2Sfs, vec, column, 0), sum) << large;
        EXPECT_EQ(ofColumn(vornsVecMatMul_16s32s_D2Sfs, vec, column, 0), sum) << large;
    };
    constexpr std::size_t limit = std::size_t{1} << 23;  // 2^23 times 2^30 is 2^53
    expectSum(4, 1000);
    expectSum(limit / 4, 1000);
    expectSum(limit, 0);  // 2^53 + 1 rounds to even
}

TEST(MatrixProducts, NothingIsAllocated) {
    if (!test::FailAllocation::available()) GTEST_SKIP() << "the sanitizer's allocator cannot be watched";
    Random random(11);
    const Size size = {300, 1500};
    forAll([&](const auto& product) {
        using T = typename std::remove_cvref_t<decltype(product)>::T;
        using R = typename std::remove_cvref_t<decltype(product)>::R;
        const auto data = ordinary<T>(random, static_cast<std::size_t>(size.height) * size.width);
        const auto vec = ordinary<T>(random, product.vecLength(size));
        std::vector<R> dst(product.results(size));
        const test::FailAllocation counted(0);
        EXPECT_EQ(product.block(data.data(), size.width, vec.data(), size, dst.data(), 0), vornStsNoErr);
        EXPECT_EQ(counted.calls(), 0) << product.name;
    });
}

template <class T, class R>
struct Arguments {
    std::vector<T> data = std::vector<T>(12, 1);
    std::vector<const T*> pointers = {data.data(), data.data() + 3, data.data() + 6, data.data() + 9};
    Guarded<R> out = Guarded<R>(4);
    const T* src = data.data();
    const T* const* rows = pointers.data();
    const T* vec = data.data();
    R* dst = out.data();
    int step = 3;
    Size size = {4, 3};
    bool untouched() { return out.untouched(); }
};

TEST(MatrixProducts, ChecksInOrder) {
    forAll([](const auto& product) {
        using T = typename std::remove_cvref_t<decltype(product)>::T;
        using R = typename std::remove_cvref_t<decltype(product)>::R;
        using A = Arguments<T, R>;
        using Rule = test::Rule<A>;
        SCOPED_TRACE(product.name);
        const Rule noSrc{"src", vornStsNullPtrErr, [](A& a) { a.src = nullptr, a.rows = nullptr; }};
        const Rule noVec{"srcVec", vornStsNullPtrErr, [](A& a) { a.vec = nullptr; }};
        const Rule noDst{"dst", vornStsNullPtrErr, [](A& a) { a.dst = nullptr; }};
        const Rule noWidth{"width 0", vornStsSizeErr, [](A& a) { a.size.width = 0; }};
        const Rule noHeight{"height 0", vornStsSizeErr, [](A& a) { a.size.height = 0; }};
        const Rule negative{"height -1", vornStsSizeErr, [](A& a) { a.size.height = -1; }};
        const Rule noStep{"step -1", vornStsStrideErr, [](A& a) { a.step = -1; }};
        const Rule shortStep{"step below width", vornStsStrideErr, [](A& a) { a.step = 2; }};
        test::expectCheckOrder<A>(
            [] { return A(); }, [&](A& a) { return product.block(a.src, a.step, a.vec, a.size, a.dst, 0); },
            [](A& a) { return a.untouched(); }, {noSrc, noVec, noDst, noWidth, noHeight, negative, noStep, shortStep});
        test::expectCheckOrder<A>(
            [] { return A(); }, [&](A& a) { return product.list(a.rows, a.vec, a.size, a.dst, 0); },
            [](A& a) { return a.untouched(); }, {noSrc, noVec, noDst, noWidth, noHeight, negative});
    });
}

}  // namespace
