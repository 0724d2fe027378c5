// Block-diagonal covariances: the context and the scores of one vector.
#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <functional>
#include <limits>

#include "model/gauss_one_vector.h"
#include "scoring/gauss/one_vector/block_diagonal.h"
#include "support/allocation.h"
#include "support/expect.h"
#include "support/guarded.h"
#include "support/values.h"
#include "vornsr.h"

namespace {

using test::Guarded;
using test::Offset;
using test::Random;
using test::sameBits;

constexpr Vorn32s most = std::numeric_limits<Vorn32s>::max(), least = std::numeric_limits<Vorn32s>::min();

template <class T>
struct ContextOf;
template <>
struct ContextOf<float> {
    using type = VornBlockDMatrix_32f;
    static constexpr auto init = vornsBlockDMatrixInitAlloc_32f;
    static constexpr auto free = vornsBlockDMatrixFree_32f;
};
template <>
struct ContextOf<double> {
    using type = VornBlockDMatrix_64f;
    static constexpr auto init = vornsBlockDMatrixInitAlloc_64f;
    static constexpr auto free = vornsBlockDMatrixFree_64f;
};
template <>
struct ContextOf<Vorn16s> {
    using type = VornBlockDMatrix_16s;
    static constexpr auto init = vornsBlockDMatrixInitAlloc_16s;
    static constexpr auto free = vornsBlockDMatrixFree_16s;
};

template <class T>
std::vector<const T*> rowPointers(const model::Blocks<T>& matrix) {
    std::vector<const T*> pointers;
    for (const auto& row : matrix.rows) pointers.push_back(row.data());
    return pointers;
}

// A context made from a copy of the matrix that is gone when it is used.
template <class T>
class Context {
public:
    explicit Context(const model::Blocks<T>& matrix) {
        const model::Blocks<T> copy = matrix;
        const auto pointers = rowPointers(copy);
        status = ContextOf<T>::init(&context_, pointers.data(), copy.sizes.data(), static_cast<int>(copy.sizes.size()));
    }
    ~Context() {
        if (context_ != nullptr) ContextOf<T>::free(context_);
    }
    Context(const Context&) = delete;
    Context& operator=(const Context&) = delete;
    const typename ContextOf<T>::type* get() const { return context_; }
    VornStatus status;

private:
    typename ContextOf<T>::type* context_ = nullptr;
};

template <class T>
std::vector<T> values(Random& random, int n, double range) {
    std::vector<T> result(n);
    for (T& x : result) x = static_cast<T>(random.uniform(-range, range));
    return result;
}

template <class T>
model::Blocks<T> randomBlocks(Random& random, const std::vector<int>& sizes, double range) {
    model::Blocks<T> matrix;
    matrix.sizes = sizes;
    for (int size : sizes) {
        for (int r = 0; r < size; ++r) matrix.rows.push_back(values<T>(random, size, range));
    }
    return matrix;
}

// Blocks that add up to len: one whole, equal ones, and mixed ones.
std::vector<std::vector<int>> splits(Random& random, int len) {
    std::vector<std::vector<int>> result = {{len}};
    result.push_back(std::vector<int>(static_cast<std::size_t>(len), 1));
    std::vector<int> mixed;
    for (int left = len; left > 0;) {
        const int size = static_cast<int>(random.integer(1, std::min(left, 19)));
        mixed.push_back(size);
        left -= size;
    }
    result.push_back(mixed);
    return result;
}

std::vector<int> testLengths() {
    std::vector<int> lengths;
    for (int len = 1; len <= 40; ++len) lengths.push_back(len);
    for (int len : {64, 100, 111, 112, 113, 127, 255}) lengths.push_back(len);
    return lengths;
}

template <class T, class R, class Call, class Model>
void expectScores(double range, Call call, Model modelOf) {
    Random random(81);
    for (int len : testLengths()) {
        for (const auto& sizes : splits(random, len)) {
            const auto matrix = randomBlocks<T>(random, sizes, range);
            const Context<T> context(matrix);
            ASSERT_EQ(context.status, vornStsNoErr);
            Guarded<T> src(values<T>(random, len, range)), mean(values<T>(random, len, range));
            Guarded<R> result(1);
            ASSERT_EQ(call(src.data(), mean.data(), context.get(), len, result.data()), vornStsNoErr);
            const R expected = modelOf(src.data(), mean.data(), matrix);
            EXPECT_TRUE(sameBits(result.data(), &expected, 1)) << "len " << len << " blocks " << sizes.size();
            EXPECT_TRUE(result.surroundingsUntouched());
        }
    }
}

TEST(BlockDiagonalScore, Float) {
    expectScores<float, float>(
        9.0,
        [](auto* x, auto* m, auto* c, int len, float* r) {
            return vornsLogGaussSingle_BlockDVar_32f(x, m, c, len, r, -3.5f);
        },
        [](auto* x, auto* m, const auto& matrix) { return model::blocks(x, m, matrix, -3.5f); });
}
TEST(BlockDiagonalScore, Double) {
    expectScores<double, double>(
        9.0,
        [](auto* x, auto* m, auto* c, int len, double* r) {
            return vornsLogGaussSingle_BlockDVar_64f(x, m, c, len, r, -3.5);
        },
        [](auto* x, auto* m, const auto& matrix) { return model::blocks(x, m, matrix, -3.5); });
}
TEST(BlockDiagonalScore, Widened) {
    expectScores<float, double>(
        9.0,
        [](auto* x, auto* m, auto* c, int len, double* r) {
            return vornsLogGaussSingle_BlockDVar_32f64f(x, m, c, len, r, -3.5);
        },
        [](auto* x, auto* m, const auto& matrix) { return model::blocksWidened(x, m, matrix, -3.5); });
}
TEST(BlockDiagonalScore, SixteenBits) {
    for (double range : {50.0, 32767.9}) {
        for (int sf : {-20, -1, 0, 1, 7, 40, -200, 200}) {
            expectScores<Vorn16s, float>(
                range,
                [sf](auto* x, auto* m, auto* c, int len, float* r) {
                    return vornsLogGaussSingle_BlockDVarScaled_16s32f(x, m, c, len, r, -3.5f, sf);
                },
                [sf](auto* x, auto* m, const auto& matrix) { return model::blocksScaled(x, m, matrix, -3.5f, sf); });
            expectScores<Vorn16s, Vorn32s>(
                range,
                [sf](auto* x, auto* m, auto* c, int len, Vorn32s* r) {
                    return vornsLogGaussSingle_BlockDVar_16s32s_Sfs(x, m, c, len, r, 350, sf);
                },
                [sf](auto* x, auto* m, const auto& matrix) { return model::blocksInteger(x, m, matrix, 350, sf); });
        }
    }
}

TEST(BlockDiagonalScore, HardValues) {
    Random random(82);
    const auto hard = test::hardFloats<float>();
    for (int trial = 0; trial < 300; ++trial) {
        const int len = static_cast<int>(random.integer(1, 24));
        const auto sizes = splits(random, len)[2];
        auto matrix = randomBlocks<float>(random, sizes, 9.0);
        auto x = values<float>(random, len, 9.0);
        const auto m = values<float>(random, len, 9.0);
        const auto any = [&](std::size_t n) {
            return static_cast<std::size_t>(random.integer(0, static_cast<std::int64_t>(n) - 1));
        };
        auto& row = matrix.rows[any(matrix.rows.size())];
        row[any(row.size())] = hard[any(hard.size())];
        x[any(x.size())] = hard[any(hard.size())];
        const Context<float> context(matrix);
        float result;
        ASSERT_EQ(vornsLogGaussSingle_BlockDVar_32f(x.data(), m.data(), context.get(), len, &result, 1.0f),
                  vornStsNoErr);
        const float expected = model::blocks(x.data(), m.data(), matrix, 1.0f);
        EXPECT_TRUE(sameBits(&result, &expected, 1)) << trial;
        double wide;
        ASSERT_EQ(vornsLogGaussSingle_BlockDVar_32f64f(x.data(), m.data(), context.get(), len, &wide, 1.0),
                  vornStsNoErr);
        const double wideExpected = model::blocksWidened(x.data(), m.data(), matrix, 1.0);
        EXPECT_TRUE(sameBits(&wide, &wideExpected, 1)) << trial;
    }
}

TEST(BlockDiagonalScore, EveryAlignment) {
    Random random(83);
    const auto matrix = randomBlocks<Vorn16s>(random, {13, 8, 6}, 3000.0);
    const auto floats = randomBlocks<float>(random, {13, 8, 6}, 9.0);
    const Context<Vorn16s> context(matrix);
    const Context<float> floatContext(floats);
    for (std::size_t a = 0; a < 16; a += 2) {
        for (std::size_t b = 0; b < 16; b += 2) {
            Offset<Vorn16s> x(27, a), m(27, b);
            x.assign(random.integers<Vorn16s>(27)), m.assign(random.integers<Vorn16s>(27));
            Vorn32s result;
            ASSERT_EQ(vornsLogGaussSingle_BlockDVar_16s32s_Sfs(x, m, context.get(), 27, &result, 5, 9), vornStsNoErr);
            EXPECT_EQ(result, model::blocksInteger(x, m, matrix, 5, 9)) << a << " " << b;
            if (a % 4 != 0 || b % 4 != 0) continue;
            Offset<float> y(27, a), n(27, b);
            y.assign(values<float>(random, 27, 9.0)), n.assign(values<float>(random, 27, 9.0));
            float score;
            ASSERT_EQ(vornsLogGaussSingle_BlockDVar_32f(y, n, floatContext.get(), 27, &score, 5.0f), vornStsNoErr);
            EXPECT_EQ(score, model::blocks(y, n, floats, 5.0f)) << a << " " << b;
        }
    }
}

TEST(BlockDiagonalScore, OneElementIsTheDiagonalScore) {
    const Context<float> context({{1}, {{2.0f}}});
    const float x = 3.0f, m = 1.0f, v = 2.0f;
    float block, diagonal;
    ASSERT_EQ(vornsLogGaussSingle_BlockDVar_32f(&x, &m, context.get(), 1, &block, 10.0f), vornStsNoErr);
    ASSERT_EQ(vornsLogGaussSingle_32f(&x, &m, &v, 1, &diagonal, 10.0f), vornStsNoErr);
    EXPECT_EQ(block, 6.0f);
    EXPECT_EQ(diagonal, 6.0f);
}

TEST(BlockDiagonalScore, AtTheMeanTheScoreIsVal) {
    Random random(87);
    for (const auto& sizes : {std::vector<int>{1}, {7, 2}, {120}}) {
        const Context<float> single(randomBlocks<float>(random, sizes, 9.0));
        const Context<double> wide(randomBlocks<double>(random, sizes, 9.0));
        const Context<Vorn16s> fixed(randomBlocks<Vorn16s>(random, sizes, 9000.0));
        const int len = single.get()->totalSize;
        const auto x = values<float>(random, len, 9.0);
        const auto y = values<double>(random, len, 9.0);
        const auto z = values<Vorn16s>(random, len, 9000.0);
        float f = 0;
        double d = 0;
        Vorn32s i = 0;
        ASSERT_EQ(vornsLogGaussSingle_BlockDVar_32f(x.data(), x.data(), single.get(), len, &f, -12.75f), vornStsNoErr);
        EXPECT_EQ(f, -12.75f);
        ASSERT_EQ(vornsLogGaussSingle_BlockDVar_64f(y.data(), y.data(), wide.get(), len, &d, -12.75), vornStsNoErr);
        EXPECT_EQ(d, -12.75);
        ASSERT_EQ(vornsLogGaussSingle_BlockDVar_32f64f(x.data(), x.data(), single.get(), len, &d, 3.5), vornStsNoErr);
        EXPECT_EQ(d, 3.5);
        for (int sf : {-3, 0, 5, 20}) {
            ASSERT_EQ(vornsLogGaussSingle_BlockDVarScaled_16s32f(z.data(), z.data(), fixed.get(), len, &f, 8.25f, sf),
                      vornStsNoErr);
            EXPECT_EQ(f, 8.25f);
            ASSERT_EQ(vornsLogGaussSingle_BlockDVar_16s32s_Sfs(z.data(), z.data(), fixed.get(), len, &i, -1275, sf),
                      vornStsNoErr);
            EXPECT_EQ(i, -1275);
        }
    }
}

TEST(BlockDiagonalScore, SixteenBitDifferencesSaturateInGroupsAndWrapInTheRest) {
    // 32767 - (-1): 32767 in a group of four, -32768 among the last three.
    const Context<Vorn16s> context({{1, 1, 1, 1, 1}, {{1}, {0}, {0}, {0}, {1}}});
    std::vector<Vorn16s> x = {32767, 0, 0, 0, 0}, m = {-1, 0, 0, 0, 0};
    float result;
    ASSERT_EQ(vornsLogGaussSingle_BlockDVarScaled_16s32f(x.data(), m.data(), context.get(), 5, &result, 0.0f, -1),
              vornStsNoErr);
    EXPECT_EQ(result, -32767.0f * 32767.0f);
    std::swap(x[0], x[4]), std::swap(m[0], m[4]);
    ASSERT_EQ(vornsLogGaussSingle_BlockDVarScaled_16s32f(x.data(), m.data(), context.get(), 5, &result, 0.0f, -1),
              vornStsNoErr);
    EXPECT_EQ(result, -32768.0f * 32768.0f);
}

TEST(BlockDiagonalScore, IntegerForm) {
    const Context<Vorn16s> context({{1}, {{1}}});
    const Vorn16s zero = 0, three = 3;
    Vorn32s result;
    ASSERT_EQ(vornsLogGaussSingle_BlockDVar_16s32s_Sfs(&zero, &zero, context.get(), 1, &result, most, 0), vornStsNoErr);
    EXPECT_EQ(result, least) << "exactly 2147483648 as a single";
    ASSERT_EQ(vornsLogGaussSingle_BlockDVar_16s32s_Sfs(&three, &zero, context.get(), 1, &result, 10, 0), vornStsNoErr);
    EXPECT_EQ(result, 5);  // 10 - 4.5 truncated
    ASSERT_EQ(vornsLogGaussSingle_BlockDVar_16s32s_Sfs(&three, &zero, context.get(), 1, &result, 0, 0), vornStsNoErr);
    EXPECT_EQ(result, -4);
    ASSERT_EQ(vornsLogGaussSingle_BlockDVar_16s32s_Sfs(&three, &zero, context.get(), 1, &result, 0, -40), vornStsNoErr);
    EXPECT_EQ(result, least);
    const Context<Vorn16s> negative({{1}, {{-1}}});
    ASSERT_EQ(vornsLogGaussSingle_BlockDVar_16s32s_Sfs(&three, &zero, negative.get(), 1, &result, 0, -40),
              vornStsNoErr);
    EXPECT_EQ(result, most);
}

TEST(BlockDiagonalScore, AllocatesFrom112Elements) {
    if (!test::FailAllocation::available()) GTEST_SKIP() << "the sanitizer's allocator stands in the place of ours";
    Random random(84);
    for (int len : {1, 110, 111, 112, 113, 200}) {
        const std::vector<int> sizes(static_cast<std::size_t>(len), 1);
        const Context<float> single(randomBlocks<float>(random, sizes, 9.0));
        const Context<double> wide(randomBlocks<double>(random, sizes, 9.0));
        const Context<Vorn16s> fixed(randomBlocks<Vorn16s>(random, sizes, 9.0));
        const std::vector<float> x(len, 1.0f);
        const std::vector<double> y(len, 1.0);
        const std::vector<Vorn16s> z(len, 1);
        float f = 0;
        double d = 0;
        Vorn32s i = 0;
        const std::vector<std::function<VornStatus()>> calls = {
            [&] { return vornsLogGaussSingle_BlockDVar_32f(x.data(), x.data(), single.get(), len, &f, 1.0f); },
            [&] { return vornsLogGaussSingle_BlockDVar_64f(y.data(), y.data(), wide.get(), len, &d, 1.0); },
            [&] { return vornsLogGaussSingle_BlockDVar_32f64f(x.data(), x.data(), single.get(), len, &d, 1.0); },
            [&] {
                return vornsLogGaussSingle_BlockDVarScaled_16s32f(z.data(), z.data(), fixed.get(), len, &f, 1.0f, 0);
            },
            [&] { return vornsLogGaussSingle_BlockDVar_16s32s_Sfs(z.data(), z.data(), fixed.get(), len, &i, 1, 0); },
        };
        for (const auto& call : calls) {
            {
                test::FailAllocation watch(0);
                EXPECT_EQ(call(), vornStsNoErr);
                EXPECT_EQ(watch.calls(), len < 112 ? 0 : 1) << len;
                EXPECT_EQ(watch.outstanding(), 0);
            }
            f = 99.0f, d = 99.0, i = 99;
            test::FailAllocation watch(1);
            EXPECT_EQ(call(), len < 112 ? vornStsNoErr : vornStsMemAllocErr) << len;
            EXPECT_EQ(watch.outstanding(), 0);
            EXPECT_TRUE(len < 112 || (f == 99.0f && d == 99.0 && i == 99));
        }
    }
}

TEST(BlockDiagonalScore, AnotherLengthThanTheContextsIsASizeErrorAndAllocatesNothing) {
    Random random(85);
    const std::vector<int> sizes(150, 1);
    const Context<float> context(randomBlocks<float>(random, sizes, 9.0));
    const std::vector<float> x(200, 1.0f);
    for (int len : {149, 151, 1, 0, -1, least, most}) {
        float result = 99.0f;
        test::FailAllocation watch(0);
        EXPECT_EQ(vornsLogGaussSingle_BlockDVar_32f(x.data(), x.data(), context.get(), len, &result, 1.0f),
                  vornStsSizeErr);
        EXPECT_EQ(watch.calls(), 0);
        EXPECT_EQ(result, 99.0f);
    }
}

// ---- Checks of the scores.

template <class T, class R>
struct Arguments {
    Arguments() : context(model::Blocks<T>{{2, 1}, {{T(1), T(2)}, {T(3), T(4)}, {T(5)}}}) {}
    std::vector<T> data = std::vector<T>(3, T(2));
    Context<T> context;
    Guarded<R> result = Guarded<R>(std::size_t{1});
    const T *src = data.data(), *mean = data.data();
    const typename ContextOf<T>::type* matrix = context.get();
    R* to = result;
    int len = 3;
};

template <class T, class R, class Call>
void expectOrder(Call call) {
    using A = Arguments<T, R>;
    const std::vector<test::Rule<A>> rules = {
        {"src null", vornStsNullPtrErr, [](A& a) { a.src = nullptr; }},
        {"mean null", vornStsNullPtrErr, [](A& a) { a.mean = nullptr; }},
        {"context null", vornStsNullPtrErr, [](A& a) { a.matrix = nullptr; }},
        {"result null", vornStsNullPtrErr, [](A& a) { a.to = nullptr; }},
        {"len 0", vornStsSizeErr, [](A& a) { a.len = 0; }},
        {"len other than the context's", vornStsSizeErr, [](A& a) { a.len = 4; }},
    };
    test::expectCheckOrder<A>([] { return A(); }, call, [](A& a) { return a.result.untouched(); }, rules);
}

TEST(BlockDiagonalChecks, Order) {
    expectOrder<float, float>(
        [](auto& a) { return vornsLogGaussSingle_BlockDVar_32f(a.src, a.mean, a.matrix, a.len, a.to, 1.0f); });
    expectOrder<double, double>(
        [](auto& a) { return vornsLogGaussSingle_BlockDVar_64f(a.src, a.mean, a.matrix, a.len, a.to, 1.0); });
    expectOrder<float, double>(
        [](auto& a) { return vornsLogGaussSingle_BlockDVar_32f64f(a.src, a.mean, a.matrix, a.len, a.to, 1.0); });
    expectOrder<Vorn16s, float>([](auto& a) {
        return vornsLogGaussSingle_BlockDVarScaled_16s32f(a.src, a.mean, a.matrix, a.len, a.to, 1.0f, 0);
    });
    expectOrder<Vorn16s, Vorn32s>(
        [](auto& a) { return vornsLogGaussSingle_BlockDVar_16s32s_Sfs(a.src, a.mean, a.matrix, a.len, a.to, 1, 0); });
}

// ---- Contexts.

template <class T>
class BlockDiagonalContext : public ::testing::Test {};
using Elements = ::testing::Types<float, double, Vorn16s>;
TYPED_TEST_SUITE(BlockDiagonalContext, Elements);

TYPED_TEST(BlockDiagonalContext, HoldsACopyAt16ByteBoundaries) {
    Random random(86);
    const auto matrix = randomBlocks<TypeParam>(random, {3, 1, 9, 2}, 1000.0);
    const Context<TypeParam> context(matrix);
    ASSERT_EQ(context.status, vornStsNoErr);
    const auto& record = *context.get();
    EXPECT_EQ(sizeof record, 32u);
    EXPECT_EQ(record.numBlocks, 4);
    EXPECT_EQ(record.totalSize, 15);
    EXPECT_EQ(record.allocBase, static_cast<const void*>(&record));
    const auto address = [](const void* p) { return reinterpret_cast<std::uintptr_t>(p); };
    const auto onBoundary = [&](const void* p) { return address(p) % 16 == 0; };
    EXPECT_TRUE(onBoundary(&record));
    EXPECT_TRUE(onBoundary(record.blockSizes));
    EXPECT_TRUE(onBoundary(record.rows));
    EXPECT_LT(address(&record), address(record.blockSizes));
    EXPECT_LT(address(record.blockSizes), address(record.rows));
    std::size_t row = 0;
    for (std::size_t block = 0; block < 4; ++block) {
        EXPECT_EQ(record.blockSizes[block], matrix.sizes[block]);
        for (int r = 0; r < matrix.sizes[block]; ++r, ++row) {
            EXPECT_TRUE(onBoundary(record.rows[row]));
            EXPECT_LT(address(record.rows), address(record.rows[row]));
            const std::size_t padded =
                (static_cast<std::size_t>(matrix.sizes[block]) * sizeof(TypeParam) + 15) / 16 * 16;
            if (row + 1 < matrix.rows.size()) {
                EXPECT_EQ(address(record.rows[row + 1]) - address(record.rows[row]), padded);
            }
            EXPECT_TRUE(sameBits(record.rows[row], matrix.rows[row].data(), matrix.rows[row].size()));
        }
    }
}

TYPED_TEST(BlockDiagonalContext, IsFreedByEachOfTheThree) {
    const model::Blocks<TypeParam> matrix{{1}, {{TypeParam(1)}}};
    const auto pointers = rowPointers(matrix);
    const auto make = [&] {
        typename ContextOf<TypeParam>::type* context = nullptr;
        EXPECT_EQ(ContextOf<TypeParam>::init(&context, pointers.data(), matrix.sizes.data(), 1), vornStsNoErr);
        return context;
    };
    EXPECT_EQ(vornsBlockDMatrixFree_32f(reinterpret_cast<VornBlockDMatrix_32f*>(make())), vornStsNoErr);
    EXPECT_EQ(vornsBlockDMatrixFree_64f(reinterpret_cast<VornBlockDMatrix_64f*>(make())), vornStsNoErr);
    EXPECT_EQ(vornsBlockDMatrixFree_16s(reinterpret_cast<VornBlockDMatrix_16s*>(make())), vornStsNoErr);
    EXPECT_EQ(ContextOf<TypeParam>::free(nullptr), vornStsNullPtrErr);
    if (!test::FailAllocation::available()) return;
    test::FailAllocation watch(0);
    ContextOf<TypeParam>::free(make());
    EXPECT_EQ(watch.calls(), 1);
    EXPECT_EQ(watch.outstanding(), 0);
}

TYPED_TEST(BlockDiagonalContext, ReadsItsInputsToTheirEndsOnly) {
    Guarded<TypeParam> first{TypeParam(1), TypeParam(2), TypeParam(3)}, second(first.values()), third(first.values()),
        last{TypeParam(9)};
    Guarded<const TypeParam*> rows{first.data(), second.data(), third.data(), last.data()};
    Guarded<int> sizes{3, 1};
    Guarded<typename ContextOf<TypeParam>::type*> context(1);
    ASSERT_EQ(ContextOf<TypeParam>::init(context, rows, sizes, 2), vornStsNoErr);
    EXPECT_TRUE(context.surroundingsUntouched());
    EXPECT_EQ(context[0]->rows[3][0], TypeParam(9));
    EXPECT_EQ(ContextOf<TypeParam>::free(context[0]), vornStsNoErr);
}

// What a context is made from: two blocks, of one row and of two.
template <class T>
struct Making {
    model::Blocks<T> matrix{{1, 2}, {{T(1)}, {T(1), T(2)}, {T(3), T(4)}}};
    std::vector<const T*> pointers = rowPointers(matrix);
    const T* const* rows = pointers.data();
    const int* sizes = matrix.sizes.data();
    int numBlocks = 2;
    typename ContextOf<T>::type* made = nullptr;
    typename ContextOf<T>::type** to = &made;
    ~Making() {
        if (made != nullptr) ContextOf<T>::free(made);
    }
};

// More rows than an int can count the bytes of are exhausted memory, and no row is read; sizes come before memory.
TYPED_TEST(BlockDiagonalContext, ChecksInOrder) {
    using M = Making<TypeParam>;
    std::vector<test::Rule<M>> rules = {
        {"result null", vornStsNullPtrErr, [](M& m) { m.to = nullptr; }},
        {"rows null", vornStsNullPtrErr, [](M& m) { m.rows = nullptr; }},
        {"block sizes null", vornStsNullPtrErr, [](M& m) { m.sizes = nullptr; }},
        {"no blocks", vornStsSizeErr, [](M& m) { m.numBlocks = 0; }},
        {"less than no blocks", vornStsSizeErr, [](M& m) { m.numBlocks = least; }},
    };
    for (int bad : {0, -1, least}) {
        rules.push_back({"first block", vornStsSizeErr, [bad](M& m) { m.matrix.sizes[0] = bad; }});
        rules.push_back({"last block", vornStsSizeErr, [bad](M& m) { m.matrix.sizes[1] = bad; }});
    }
    for (int huge : {most, 50000, 46341}) {
        rules.push_back({"a huge block", vornStsMemAllocErr, [huge](M& m) { m.matrix.sizes[0] = huge; }});
    }
    test::expectCheckOrder<M>([] { return M(); },
                              [](M& m) { return ContextOf<TypeParam>::init(m.to, m.rows, m.sizes, m.numBlocks); },
                              [](M& m) { return m.made == nullptr; }, rules);
}

TYPED_TEST(BlockDiagonalContext, MemoryNotObtained) {
    if (!test::FailAllocation::available()) GTEST_SKIP() << "the sanitizer's allocator stands in the place of ours";
    Making<TypeParam> m;
    test::FailAllocation watch(1);
    EXPECT_EQ(ContextOf<TypeParam>::init(m.to, m.rows, m.sizes, m.numBlocks), vornStsMemAllocErr);
    EXPECT_EQ(m.made, nullptr);
    EXPECT_EQ(watch.outstanding(), 0);
}

}  // namespace
