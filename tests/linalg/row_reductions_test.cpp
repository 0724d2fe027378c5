// Sums of columns and rows; rows subtracted, columns normalised.
#include "model/row_reductions.h"

#include <gtest/gtest.h>
#include <sys/mman.h>

#include <climits>
#include <cmath>
#include <cstddef>
#include <memory>
#include <string>
#include <type_traits>
#include <vector>

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

// A matrix in both layouts: one block, of which nothing behind the last row's columns is there, and a list of rows that
// stand each by itself or, where there are many, in a block as well.
template <class T>
class Matrix {
public:
    Matrix(const std::vector<T>& values, int height, int width, int step)
        : height_(height), width_(width), step_(step), block_(static_cast<std::size_t>(height - 1) * step + width) {
        for (int i = 0; i < height; ++i) {
            const T* row = &values[static_cast<std::size_t>(i) * width];
            std::copy_n(row, width, block_.data() + static_cast<std::size_t>(i) * step);
            if (height <= apart) rows_.emplace_back(std::vector<T>(row, row + width));
        }
        // The rows of a list stand in no order.
        if (height > apart) {
            copy_ = std::make_unique<Guarded<T>>(static_cast<std::size_t>(height) * width);
            for (int i = 0; i < height; ++i) {
                std::copy_n(&values[static_cast<std::size_t>(i) * width], width, copiedRow(i));
            }
        }
        for (int i = 0; i < height; ++i) pointers_.push_back(height <= apart ? rows_[i].data() : copiedRow(i));
        list_ = std::make_unique<Guarded<T*>>(pointers_);
    }
    T* block() const { return block_.data(); }
    T* const* list() const { return list_->data(); }
    const T* const* constList() const { return list_->data(); }
    int height() const { return height_; }
    int width() const { return width_; }
    int step() const { return step_; }
    // The values of one layout, and whether what lies between and around them is as it was.
    std::vector<T> ofBlock() const {
        std::vector<T> values;
        for (int i = 0; i < height_; ++i) {
            const T* row = block() + static_cast<std::size_t>(i) * step_;
            values.insert(values.end(), row, row + width_);
        }
        return values;
    }
    std::vector<T> ofList() const {
        std::vector<T> values;
        for (const T* row : pointers_) values.insert(values.end(), row, row + width_);
        return values;
    }
    bool surroundingsUntouched() const {
        for (const Guarded<T>& row : rows_) {
            if (!row.surroundingsUntouched()) return false;
        }
        for (int i = 0; i + 1 < height_; ++i) {
            const auto* gap =
                reinterpret_cast<const unsigned char*>(block() + static_cast<std::size_t>(i) * step_ + width_);
            for (std::size_t k = 0; k < (step_ - width_) * sizeof(T); ++k) {
                if (gap[k] != 0xA5) return false;
            }
        }
        return block_.surroundingsUntouched() && (copy_ == nullptr || copy_->surroundingsUntouched());
    }

private:
    static constexpr int apart = 9;
    T* copiedRow(int i) const { return copy_->data() + static_cast<std::size_t>(height_ - 1 - i) * width_; }
    int height_, width_, step_;
    Guarded<T> block_;
    std::vector<Guarded<T>> rows_;
    std::unique_ptr<Guarded<T>> copy_;
    std::vector<T*> pointers_;
    std::unique_ptr<Guarded<T*>> list_;
};

template <class T>
std::vector<T> ordinary(Random& random, std::size_t n) {
    if constexpr (std::is_integral_v<T>) {
        return random.integers<T>(n);
    } else {
        std::vector<T> values(n);
        for (T& x : values) x = static_cast<T>(random.uniform(-100.0, 300.0));
        return values;
    }
}
template <class T>
std::vector<T> hard(Random& random, std::size_t n) {
    if constexpr (std::is_integral_v<T>) {
        return random.pick(test::hardIntegers<T>(), n);
    } else {
        return random.pick(test::hardFloats<T>(), n);
    }
}

// ---- Sums.

// The members behind one face. count: how many results; a result of AddAllRowSum begins as `before`.
template <class SourceType, class ResultType, VornStatus (*block)(const SourceType*, int, int, ResultType*, int),
          VornStatus (*list)(const SourceType* const*, int, ResultType*, int)>
struct Columns {
    using Source = SourceType;
    using Result = ResultType;
    static constexpr bool addsToResult = false;
    static int count(int, int width) { return width; }
    static VornStatus ofBlock(const Source* src, int step, int height, Result* dst, int width) {
        return block(src, step, height, dst, width);
    }
    static VornStatus ofList(const Source* const* src, int height, Result* dst, int width) {
        return list(src, height, dst, width);
    }
    static void model(const Source* const* src, int height, Result* dst, int width) {
        model::sumColumn(src, height, dst, width);
    }
};
template <class SourceType, class ResultType, VornStatus (*block)(const SourceType*, int, int, ResultType*, int),
          VornStatus (*list)(const SourceType* const*, int, ResultType*, int)>
struct RowSums : Columns<SourceType, ResultType, block, list> {
    using Source = SourceType;
    using Result = ResultType;
    static int count(int height, int) { return height; }
    static VornStatus ofBlock(const Source* src, int step, int height, Result* dst, int width) {
        return block(src, width, step, dst, height);
    }
    static VornStatus ofList(const Source* const* src, int height, Result* dst, int width) {
        return list(src, width, dst, height);
    }
    static void model(const Source* const* src, int height, Result* dst, int width) {
        model::sumRow(src, height, dst, width);
    }
};
struct AddAllRowSum : Columns<Vorn32f, Vorn32f, vornsAddAllRowSum_32f_D2, vornsAddAllRowSum_32f_D2L> {
    static constexpr bool addsToResult = true;
    static void model(const Vorn32f* const* src, int height, Vorn32f* dst, int width) {
        model::addAllRowSum(src, height, dst, width);
    }
};
using Sums = testing::Types<Columns<Vorn32f, Vorn32f, vornsSumColumn_32f_D2, vornsSumColumn_32f_D2L>,
                            Columns<Vorn64f, Vorn64f, vornsSumColumn_64f_D2, vornsSumColumn_64f_D2L>,
                            Columns<Vorn16s, Vorn32f, vornsSumColumn_16s32f_D2, vornsSumColumn_16s32f_D2L>,
                            RowSums<Vorn32f, Vorn32f, vornsSumRow_32f_D2, vornsSumRow_32f_D2L>,
                            RowSums<Vorn64f, Vorn64f, vornsSumRow_64f_D2, vornsSumRow_64f_D2L>,
                            RowSums<Vorn16s, Vorn32f, vornsSumRow_16s32f_D2, vornsSumRow_16s32f_D2L>, AddAllRowSum>;

template <class Member>
class MatrixSums : public testing::Test {
protected:
    using Source = typename Member::Source;
    using Result = typename Member::Result;

    static void compare(const std::vector<Source>& values, int height, int width, int step,
                        unsigned mode = RoundingMode::nearest) {
        const Matrix<Source> src(values, height, width, step);
        const std::size_t count = static_cast<std::size_t>(Member::count(height, width));
        Guarded<Result> fromBlock(count), fromList(count);
        std::vector<Result> expected(count);
        if (Member::addsToResult) {
            for (std::size_t i = 0; i < count; ++i) {
                fromBlock[i] = fromList[i] = expected[i] = static_cast<Result>(static_cast<double>(i) * 1.25 - 7);
            }
        }
        // Not known to the compiler, which else moves its arithmetic out of the mode.
        auto* volatile model = Member::model;
        VornStatus ofBlock, ofList;
        unsigned after;
        {
            const RoundingMode caller(mode);
            model(src.constList(), height, expected.data(), width);
            ofBlock = Member::ofBlock(src.block(), step, height, fromBlock, width);
            ofList = Member::ofList(src.constList(), height, fromList, width);
            after = RoundingMode::current();
        }
        EXPECT_EQ(after, mode);
        ASSERT_EQ(ofBlock, vornStsNoErr);
        ASSERT_EQ(ofList, vornStsNoErr);
        EXPECT_TRUE(sameBits(fromBlock.data(), expected.data(), count)) << height << " x " << width << ", " << step;
        EXPECT_TRUE(sameBits(fromList.data(), expected.data(), count)) << height << " x " << width << ", list";
        EXPECT_TRUE(fromBlock.surroundingsUntouched() && fromList.surroundingsUntouched());
    }
};
TYPED_TEST_SUITE(MatrixSums, Sums);

TYPED_TEST(MatrixSums, EqualTheModelBitForBit) {
    Random random(1);
    for (int width = 1; width <= 70; ++width) {
        for (int height : {1, 2, 7, 8, 9, 17, 24}) {
            const auto values = ordinary<typename TypeParam::Source>(random, static_cast<std::size_t>(height) * width);
            this->compare(values, height, width, width + (height * width) % 5);
        }
    }
}

TYPED_TEST(MatrixSums, EqualTheModelForEveryHeight) {
    Random random(2);
    for (int height = 1; height <= 40; ++height) {
        for (int width : {1, 3, 13, 39, 80, 130}) {
            const auto values = ordinary<typename TypeParam::Source>(random, static_cast<std::size_t>(height) * width);
            this->compare(values, height, width, width);
        }
    }
}

// Around what a single holds exactly of sums of 16-bit integers, and far above.
TYPED_TEST(MatrixSums, EqualTheModelOfLargeMatrices) {
    using Source = typename TypeParam::Source;
    Random random(3);
    for (int width : {13, 39, 64, 81, 256, 511, 512, 513, 515, 1025, 2100, 5001}) {
        for (int height : {10, 530, 1100}) {
            if (height > 10 && width > 600) continue;  // for the time it takes
            auto values = ordinary<Source>(random, static_cast<std::size_t>(height) * width);
            this->compare(values, height, width, width);
            if constexpr (std::is_integral_v<Source>) {
                for (Source& x : values) x = static_cast<Source>(random.integer(0, 20) == 0 ? 32767 : -32768);
                this->compare(values, height, width, width + 1);
                for (Source& x : values) x = static_cast<Source>(random.integer(0, 20) == 0 ? -32767 : 32767);
                this->compare(values, height, width, width + 1);
            }
        }
    }
}

TYPED_TEST(MatrixSums, HardValuesPassThrough) {
    Random random(4);
    for (int width : {1, 2, 5, 9, 16, 23, 39, 80, 100}) {
        for (int height : {1, 2, 5, 12, 17}) {
            for (int turn = 0; turn < 10; ++turn) {
                const auto values = hard<typename TypeParam::Source>(random, static_cast<std::size_t>(height) * width);
                this->compare(values, height, width, width);
            }
        }
    }
}

TYPED_TEST(MatrixSums, FollowTheCallersRoundingModeAndKeepIt) {
    using Source = typename TypeParam::Source;
    Random random(5);
    for (unsigned mode : modes) {
        for (int width : {1, 3, 13, 39, 100, 600}) {
            for (int height : {1, 3, 11, 600}) {
                auto values = ordinary<Source>(random, static_cast<std::size_t>(height) * width);
                this->compare(values, height, width, width, mode);
                // Sums of zero, whose sign the mode decides: by opposites, and of zeros alone.
                for (std::size_t i = 0; i < values.size(); ++i) values[i] = static_cast<Source>(i % 2 == 0 ? 5 : -5);
                this->compare(values, height, width, width, mode);
                std::fill(values.begin(), values.end(), Source(0));
                this->compare(values, height, width, width, mode);
            }
        }
    }
}

TYPED_TEST(MatrixSums, NoAlignmentChangesABit) {
    using Source = typename TypeParam::Source;
    using Result = typename TypeParam::Result;
    Random random(6);
    const int height = 11;
    for (int width : {3, 8, 13, 21, 70, 100}) {
        for (int step : {width, 104, 105}) {
            const auto values = ordinary<Source>(random, static_cast<std::size_t>(height) * step);
            std::vector<const Source*> rows;
            for (int i = 0; i < height; ++i) rows.push_back(values.data() + static_cast<std::size_t>(i) * step);
            const std::size_t count = static_cast<std::size_t>(TypeParam::count(height, width));
            std::vector<Result> expected(count);
            TypeParam::model(rows.data(), height, expected.data(), width);
            for (std::size_t a = 0; a < 64; a += sizeof(Source)) {
                const std::size_t b = (3 * a / sizeof(Source) * sizeof(Result)) % 64;
                Offset<Source> src(values.size(), a);
                Offset<Result> dst(count, b);
                src.assign(values);
                dst.assign(std::vector<Result>(count));
                ASSERT_EQ(TypeParam::ofBlock(src, step, height, dst, width), vornStsNoErr);
                ASSERT_TRUE(sameBits(dst.data(), expected.data(), count)) << width << ", " << step << ", at " << a;
                EXPECT_TRUE(dst.surroundingsUntouched());
            }
        }
    }
}

TYPED_TEST(MatrixSums, RowsOfAListMayRepeat) {
    using Source = typename TypeParam::Source;
    using Result = typename TypeParam::Result;
    Random random(7);
    const auto values = ordinary<Source>(random, 60);
    std::vector<const Source*> rows;
    for (int i = 0; i < 20; ++i) rows.push_back(values.data() + i / 2);
    const std::size_t count = static_cast<std::size_t>(TypeParam::count(20, 41));
    std::vector<Result> expected(count), dst(count);
    TypeParam::model(rows.data(), 20, expected.data(), 41);
    ASSERT_EQ(TypeParam::ofList(rows.data(), 20, dst.data(), 41), vornStsNoErr);
    EXPECT_TRUE(sameBits(dst, expected));
}

TYPED_TEST(MatrixSums, CheckPointersThenSizesThenTheStep) {
    using Source = typename TypeParam::Source;
    using Result = typename TypeParam::Result;
    struct Arguments {
        std::vector<Source> values = std::vector<Source>(12, Source(1));
        std::vector<const Source*> rows = std::vector<const Source*>(4, values.data());
        Guarded<Result> out = Guarded<Result>(4);
        const Source* src = values.data();
        const Source* const* list = rows.data();
        Result* dst = out.data();
        int step = 3, height = 4, width = 3;
    };
    using Rule = test::Rule<Arguments>;
    const Rule noSrc{"src", vornStsNullPtrErr, [](Arguments& a) { a.src = nullptr, a.list = nullptr; }};
    const Rule noDst{"dst", vornStsNullPtrErr, [](Arguments& a) { a.dst = nullptr; }};
    const Rule noHeight{"height 0", vornStsSizeErr, [](Arguments& a) { a.height = 0; }};
    const Rule negativeHeight{"height -1", vornStsSizeErr, [](Arguments& a) { a.height = -1; }};
    const Rule noWidth{"width 0", vornStsSizeErr, [](Arguments& a) { a.width = 0; }};
    const Rule negativeWidth{"width least", vornStsSizeErr, [](Arguments& a) { a.width = INT_MIN; }};
    const Rule negativeStep{"step -5", vornStsStrideErr, [](Arguments& a) { a.step = -5; }};
    const Rule shortStep{"step 2", vornStsStrideErr, [](Arguments& a) { a.step = 2; }};
    const auto untouched = [](Arguments& a) { return a.out.untouched(); };
    test::expectCheckOrder<Arguments>(
        [] { return Arguments(); },
        [](Arguments& a) { return TypeParam::ofBlock(a.src, a.step, a.height, a.dst, a.width); }, untouched,
        {noSrc, noDst, noHeight, negativeHeight, noWidth, negativeWidth, negativeStep, shortStep});
    test::expectCheckOrder<Arguments>([] { return Arguments(); },
                                      [](Arguments& a) { return TypeParam::ofList(a.list, a.height, a.dst, a.width); },
                                      untouched, {noSrc, noDst, noHeight, negativeHeight, noWidth, negativeWidth});
}

// Rows so far apart that 32 bits cannot say how far; nothing but the rows is ever touched.
TYPED_TEST(MatrixSums, RowsMayStandFarApart) {
    using Source = typename TypeParam::Source;
    using Result = typename TypeParam::Result;
    const int step = 1 << 30, height = 3, width = 3;
    const std::size_t bytes = (std::size_t{2} * step + width) * sizeof(Source);
    void* room = mmap(nullptr, bytes, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
    ASSERT_NE(room, MAP_FAILED);
    auto* src = static_cast<Source*>(room);
    std::vector<const Source*> rows;
    for (int i = 0; i < height; ++i) {
        rows.push_back(src + static_cast<std::size_t>(i) * step);
        for (int j = 0; j < width; ++j) src[static_cast<std::size_t>(i) * step + j] = static_cast<Source>(10 * i + j);
    }
    std::vector<Result> expected(3), dst(3);
    TypeParam::model(rows.data(), height, expected.data(), width);
    EXPECT_EQ(TypeParam::ofBlock(src, step, height, dst.data(), width), vornStsNoErr);
    EXPECT_TRUE(sameBits(dst, expected));
    munmap(room, bytes);
}

// ---- Sums as integers.

const int scaleFactors[] = {INT_MIN, INT_MIN + 1, -100000, -151, -150, -149, -129, -128, -127,   -126,        -33,
                            -32,     -31,         -30,     -24,  -17,  -16,  -15,  -8,   -2,     -1,          0,
                            1,       2,           3,       8,    15,   16,   17,   24,   30,     31,          32,
                            33,      126,         127,     128,  148,  149,  150,  151,  100000, INT_MAX - 1, INT_MAX};

TEST(IntegerMatrixSums, AreTheSinglesConverted) {
    Random random(8);
    for (int scaleFactor : scaleFactors) {
        for (int height : {1, 3, 9, 40}) {
            for (int width : {1, 3, 13, 39, 100}) {
                auto values = random.integers<Vorn16s>(static_cast<std::size_t>(height) * width);
                values[0] = 0;
                const Matrix<Vorn16s> src(values, height, width, width + height % 3);
                std::vector<float> columns(width), rows(height);
                model::sumColumn(src.constList(), height, columns.data(), width);
                model::sumRow(src.constList(), height, rows.data(), width);
                std::vector<Vorn32s> expectedColumns(width), expectedRows(height);
                for (int j = 0; j < width; ++j) expectedColumns[j] = model::scaledRowSum(columns[j], scaleFactor);
                for (int i = 0; i < height; ++i) expectedRows[i] = model::scaledRowSum(rows[i], scaleFactor);
                Guarded<Vorn32s> ofColumns(width), ofColumnList(width), ofRows(height), ofRowList(height);
                for (unsigned mode : modes) {
                    if (mode != RoundingMode::nearest && height > 9) continue;  // rounding in the sums themselves
                    const RoundingMode caller(mode);
                    ASSERT_EQ(
                        vornsSumColumn_16s32s_D2Sfs(src.block(), src.step(), height, ofColumns, width, scaleFactor),
                        vornStsNoErr);
                    ASSERT_EQ(vornsSumColumn_16s32s_D2LSfs(src.constList(), height, ofColumnList, width, scaleFactor),
                              vornStsNoErr);
                    ASSERT_EQ(vornsSumRow_16s32s_D2Sfs(src.block(), width, src.step(), ofRows, height, scaleFactor),
                              vornStsNoErr);
                    ASSERT_EQ(vornsSumRow_16s32s_D2LSfs(src.constList(), width, ofRowList, height, scaleFactor),
                              vornStsNoErr);
                    EXPECT_EQ(RoundingMode::current(), mode);
                    EXPECT_TRUE(sameBits(ofColumns, expectedColumns)) << scaleFactor;
                    EXPECT_TRUE(sameBits(ofColumnList, expectedColumns)) << scaleFactor;
                    EXPECT_TRUE(sameBits(ofRows, expectedRows)) << scaleFactor;
                    EXPECT_TRUE(sameBits(ofRowList, expectedRows)) << scaleFactor;
                }
                EXPECT_TRUE(ofColumns.surroundingsUntouched() && ofColumnList.surroundingsUntouched() &&
                            ofRows.surroundingsUntouched() && ofRowList.surroundingsUntouched());
            }
        }
    }
}

TEST(IntegerMatrixSums, AreNotExactAbove24Bits) {
    // 512 rows of 32767 make 16776704, still below 2^24. Each of the next three lies halfway between two singles and
    // goes to the even one above: 16809472, 16842240, 16875008. The exact sum is 16875005.
    const std::vector<Vorn16s> column(515, 32767);
    Vorn32s sum = 0;
    ASSERT_EQ(vornsSumColumn_16s32s_D2Sfs(column.data(), 1, 515, &sum, 1, 0), vornStsNoErr);
    EXPECT_EQ(sum, 16875008);
    // As a row: four lanes of 128 elements, joined exactly, and the last three in order.
    ASSERT_EQ(vornsSumRow_16s32s_D2Sfs(column.data(), 515, 515, &sum, 1, 0), vornStsNoErr);
    EXPECT_EQ(sum, 16875008);
    // Rounded to nearest even at scale factor 1, and saturated.
    const Vorn16s three[] = {1, 2, 0, 5, 0, 0};
    Vorn32s rows[2];
    ASSERT_EQ(vornsSumRow_16s32s_D2Sfs(three, 3, 3, rows, 2, 1), vornStsNoErr);
    EXPECT_EQ(rows[0], 2);
    EXPECT_EQ(rows[1], 2);
    ASSERT_EQ(vornsSumRow_16s32s_D2Sfs(three, 3, 3, rows, 2, -31), vornStsNoErr);
    EXPECT_EQ(rows[0], 2147483647);
}

TEST(IntegerMatrixSums, CheckPointersThenSizesThenTheStep) {
    struct Arguments {
        std::vector<Vorn16s> values = std::vector<Vorn16s>(12, 1);
        std::vector<const Vorn16s*> rows = std::vector<const Vorn16s*>(4, values.data());
        Guarded<Vorn32s> out = Guarded<Vorn32s>(4);
        const Vorn16s* src = values.data();
        const Vorn16s* const* list = rows.data();
        Vorn32s* dst = out.data();
        int step = 3, height = 4, width = 3;
    };
    using Rule = test::Rule<Arguments>;
    const std::vector<Rule> rules = {
        {"src", vornStsNullPtrErr, [](Arguments& a) { a.src = nullptr, a.list = nullptr; }},
        {"dst", vornStsNullPtrErr, [](Arguments& a) { a.dst = nullptr; }},
        {"height 0", vornStsSizeErr, [](Arguments& a) { a.height = 0; }},
        {"width 0", vornStsSizeErr, [](Arguments& a) { a.width = 0; }},
        {"step -1", vornStsStrideErr, [](Arguments& a) { a.step = -1; }},
    };
    const std::vector<Rule> ofLists(rules.begin(), rules.end() - 1);
    const auto expectOrder = [](VornStatus (*call)(Arguments&), const std::vector<Rule>& all) {
        test::expectCheckOrder<Arguments>([] { return Arguments(); }, call,
                                          [](Arguments& a) { return a.out.untouched(); }, all);
    };
    expectOrder([](Arguments& a) { return vornsSumColumn_16s32s_D2Sfs(a.src, a.step, a.height, a.dst, a.width, 0); },
                rules);
    expectOrder([](Arguments& a) { return vornsSumRow_16s32s_D2Sfs(a.src, a.width, a.step, a.dst, a.height, 0); },
                rules);
    expectOrder([](Arguments& a) { return vornsSumColumn_16s32s_D2LSfs(a.list, a.height, a.dst, a.width, 0); },
                ofLists);
    expectOrder([](Arguments& a) { return vornsSumRow_16s32s_D2LSfs(a.list, a.width, a.dst, a.height, 0); }, ofLists);
}

// ---- What no model is asked for.

// On integers small enough for exact sums all orders agree: columns of a matrix, rows of the transposed one.
TEST(MatrixSumsProperties, ColumnsAreTheRowsOfTheTransposedMatrix) {
    Random random(9);
    for (int height : {1, 2, 7, 13, 64, 100}) {
        for (int width : {1, 3, 4, 13, 39, 80, 128}) {
            std::vector<Vorn16s> shorts(static_cast<std::size_t>(height) * width), shortsAcross(shorts.size());
            std::vector<float> singles(shorts.size()), singlesAcross(shorts.size());
            std::vector<double> doubles(shorts.size()), doublesAcross(shorts.size());
            std::vector<long> exact(width);
            for (int i = 0; i < height; ++i) {
                for (int j = 0; j < width; ++j) {
                    const auto x = static_cast<Vorn16s>(random.integer(-30000, 30000));
                    const std::size_t here = static_cast<std::size_t>(i) * width + j;
                    const std::size_t across = static_cast<std::size_t>(j) * height + i;
                    shorts[here] = shortsAcross[across] = x;
                    singles[here] = singlesAcross[across] = x;
                    doubles[here] = doublesAcross[across] = x;
                    exact[j] += x;
                }
            }
            std::vector<float> a(width), b(width), c(width), d(width), e(width, 1.0f);
            std::vector<double> f(width), g(width);
            std::vector<Vorn32s> h(width), k(width);
            vornsSumColumn_32f_D2(singles.data(), width, height, a.data(), width);
            vornsSumRow_32f_D2(singlesAcross.data(), height, height, b.data(), width);
            vornsSumColumn_16s32f_D2(shorts.data(), width, height, c.data(), width);
            vornsSumRow_16s32f_D2(shortsAcross.data(), height, height, d.data(), width);
            vornsAddAllRowSum_32f_D2(singles.data(), width, height, e.data(), width);
            vornsSumColumn_64f_D2(doubles.data(), width, height, f.data(), width);
            vornsSumRow_64f_D2(doublesAcross.data(), height, height, g.data(), width);
            vornsSumColumn_16s32s_D2Sfs(shorts.data(), width, height, h.data(), width, 0);
            vornsSumRow_16s32s_D2Sfs(shortsAcross.data(), height, height, k.data(), width, 0);
            for (int j = 0; j < width; ++j) {
                const auto sum = static_cast<double>(exact[j]);
                EXPECT_EQ(a[j], sum);
                EXPECT_EQ(b[j], sum);
                EXPECT_EQ(c[j], sum);
                EXPECT_EQ(d[j], sum);
                EXPECT_EQ(e[j], sum + 1);
                EXPECT_EQ(f[j], sum);
                EXPECT_EQ(g[j], sum);
                EXPECT_EQ(h[j], exact[j]);
                EXPECT_EQ(k[j], exact[j]);
            }
        }
    }
}

TEST(MatrixSumsProperties, TheOrderOfARowIsFourLanesThenTheRest) {
    const float row[] = {16777216, 1, 1, 1, 1, 1, 1, 1, 1};
    float sum = 0;
    ASSERT_EQ(vornsSumRow_32f_D2(row, 9, 9, &sum, 1), vornStsNoErr);
    // Lane 0 has 2^24 + 1, which is 2^24 (halfway, to even), each other lane 2; (2^24 + 2) + (2 + 2) + 1 = 2^24 + 7 is
    // halfway again.
    EXPECT_EQ(sum, 16777224.0f);
    // Down the columns one after the other: every 1 is lost.
    ASSERT_EQ(vornsSumColumn_32f_D2(row, 1, 9, &sum, 1), vornStsNoErr);
    EXPECT_EQ(sum, 16777216.0f);
    // The rows are added to what is there: 3 + 2^24 is halfway to 2^24 + 4, and each 1 behind it is lost again.
    sum = 3;
    ASSERT_EQ(vornsAddAllRowSum_32f_D2(row, 1, 9, &sum, 1), vornStsNoErr);
    EXPECT_EQ(sum, 16777220.0f);
}

// ---- Rows changed in place.

// The members behind one face: first is the subtracted row or the mean.
struct SubSingles {
    using T = Vorn32f;
    static VornStatus ofBlock(T* x, int step, int height, const T* first, const T*, int width, int) {
        return vornsSubRow_32f_D2(first, width, x, step, height);
    }
    static VornStatus ofList(T* const* x, int height, const T* first, const T*, int width, int) {
        return vornsSubRow_32f_D2L(first, x, width, height);
    }
    static void model(T* x, const T* first, const T*, int width, int) { model::subRow(first, x, width); }
};
struct SubShorts {
    using T = Vorn16s;
    static VornStatus ofBlock(T* x, int step, int height, const T* first, const T*, int width, int) {
        return vornsSubRow_16s_D2(first, width, x, step, height);
    }
    static VornStatus ofList(T* const* x, int height, const T* first, const T*, int width, int) {
        return vornsSubRow_16s_D2L(first, x, width, height);
    }
    static void model(T* x, const T* first, const T*, int width, int) { model::subRow(first, x, width); }
};
struct NormalizeSingles {
    using T = Vorn32f;
    static VornStatus ofBlock(T* x, int step, int height, const T* first, const T* scale, int width, int) {
        return vornsNormalizeColumn_32f_D2(x, step, height, first, scale, width);
    }
    static VornStatus ofList(T* const* x, int height, const T* first, const T* scale, int width, int) {
        return vornsNormalizeColumn_32f_D2L(x, height, first, scale, width);
    }
    static void model(T* x, const T* first, const T* scale, int width, int) {
        model::normalizeRow(x, first, scale, width);
    }
};
struct NormalizeShorts {
    using T = Vorn16s;
    static VornStatus ofBlock(T* x, int step, int height, const T* first, const T* scale, int width, int scaleFactor) {
        return vornsNormalizeColumn_16s_D2Sfs(x, step, height, first, scale, width, scaleFactor);
    }
    static VornStatus ofList(T* const* x, int height, const T* first, const T* scale, int width, int scaleFactor) {
        return vornsNormalizeColumn_16s_D2LSfs(x, height, first, scale, width, scaleFactor);
    }
    static void model(T* x, const T* first, const T* scale, int width, int scaleFactor) {
        for (int j = 0; j < width; ++j) x[j] = model::normalized(x[j], first[j], scale[j], scaleFactor);
    }
};

template <class Member>
class RowUpdates : public testing::Test {
protected:
    using T = typename Member::T;
    static void compare(const std::vector<T>& values, const std::vector<T>& first, const std::vector<T>& scale,
                        int height, int step, int scaleFactor, unsigned mode = RoundingMode::nearest) {
        const int width = static_cast<int>(first.size());
        const Matrix<T> x(values, height, width, step);
        const Guarded<T> firstRow(first), scales(scale);
        std::vector<T> expected = values;
        auto* volatile model = Member::model;
        VornStatus ofBlock, ofList;
        unsigned after;
        {
            const RoundingMode caller(mode);
            for (int i = 0; i < height; ++i) {
                model(&expected[static_cast<std::size_t>(i) * width], firstRow, scales, width, scaleFactor);
            }
            ofBlock = Member::ofBlock(x.block(), step, height, firstRow, scales, width, scaleFactor);
            ofList = Member::ofList(x.list(), height, firstRow, scales, width, scaleFactor);
            after = RoundingMode::current();
        }
        EXPECT_EQ(after, mode);
        ASSERT_EQ(ofBlock, vornStsNoErr);
        ASSERT_EQ(ofList, vornStsNoErr);
        EXPECT_TRUE(sameBits(x.ofBlock(), expected)) << height << " x " << width << ", " << step << ", " << scaleFactor;
        EXPECT_TRUE(sameBits(x.ofList(), expected)) << height << " x " << width << ", list, " << scaleFactor;
        EXPECT_TRUE(x.surroundingsUntouched() && firstRow.surroundingsUntouched() && scales.surroundingsUntouched());
        EXPECT_TRUE(sameBits(firstRow, first) && sameBits(scales, scale));
    }
};
using Updates = testing::Types<SubSingles, SubShorts, NormalizeSingles, NormalizeShorts>;
TYPED_TEST_SUITE(RowUpdates, Updates);

TYPED_TEST(RowUpdates, EqualTheModelBitForBit) {
    using T = typename TypeParam::T;
    Random random(11);
    for (int width = 1; width <= 70; ++width) {
        for (int height : {1, 2, 5, 11}) {
            this->compare(ordinary<T>(random, static_cast<std::size_t>(height) * width), ordinary<T>(random, width),
                          ordinary<T>(random, width), height, width + (height + width) % 4, (height * width) % 32);
        }
    }
    for (int width : {127, 128, 129, 131, 200, 255, 256, 257, 300, 512, 600, 1031}) {
        for (int height : {1, 5}) {
            this->compare(ordinary<T>(random, static_cast<std::size_t>(height) * width), ordinary<T>(random, width),
                          ordinary<T>(random, width), height, width + 1, 14);
        }
    }
}

TYPED_TEST(RowUpdates, HardValues) {
    using T = typename TypeParam::T;
    Random random(12);
    for (int width : {1, 3, 4, 7, 8, 13, 39, 70, 150}) {
        for (int scaleFactor : scaleFactors) {
            this->compare(hard<T>(random, std::size_t{6} * width), hard<T>(random, width), hard<T>(random, width), 6,
                          width, scaleFactor);
        }
    }
}

TYPED_TEST(RowUpdates, FollowTheCallersRoundingModeAndKeepIt) {
    using T = typename TypeParam::T;
    Random random(13);
    for (unsigned mode : modes) {
        for (int width : {1, 3, 13, 39, 100}) {
            this->compare(ordinary<T>(random, std::size_t{6} * width), ordinary<T>(random, width),
                          ordinary<T>(random, width), 6, width, 15, mode);
        }
    }
}

TYPED_TEST(RowUpdates, NoAlignmentChangesABit) {
    using T = typename TypeParam::T;
    Random random(14);
    for (int width : {3, 13, 21, 70, 140}) {
        for (int step : {width, 144}) {
            const int height = 5;
            const auto values = ordinary<T>(random, static_cast<std::size_t>(height) * step);
            const auto first = ordinary<T>(random, width), scale = ordinary<T>(random, width);
            std::vector<T> expected = values;
            for (int i = 0; i < height; ++i) {
                TypeParam::model(&expected[static_cast<std::size_t>(i) * step], first.data(), scale.data(), width, 13);
            }
            for (std::size_t a = 0; a < 64; a += sizeof(T)) {
                Offset<T> x(values.size(), a), firstRow(width, (3 * a) % 64), scales(width, (5 * a) % 64);
                x.assign(values), firstRow.assign(first), scales.assign(scale);
                ASSERT_EQ(TypeParam::ofBlock(x, step, height, firstRow, scales, width, 13), vornStsNoErr);
                ASSERT_TRUE(sameBits(x.values(), expected)) << width << ", " << step << ", at " << a;
                EXPECT_TRUE(x.surroundingsUntouched());
            }
        }
    }
}

// A row that stands in a list twice is changed twice, and rows that overlap are changed one after the other.
TYPED_TEST(RowUpdates, TakeTheRowsInTheirOrder) {
    using T = typename TypeParam::T;
    Random random(15);
    for (int width : {3, 13, 39, 70, 300}) {
        const auto values = ordinary<T>(random, static_cast<std::size_t>(width) + 20);
        const auto first = ordinary<T>(random, width), scale = ordinary<T>(random, width);
        std::vector<T> x = values, expected = values;
        const int at[] = {0, 0, 7, 2, 20, 7};
        std::vector<T*> rows;
        for (int offset : at) {
            rows.push_back(&x[offset]);
            TypeParam::model(&expected[offset], first.data(), scale.data(), width, 14);
        }
        ASSERT_EQ(TypeParam::ofList(rows.data(), 6, first.data(), scale.data(), width, 14), vornStsNoErr);
        EXPECT_TRUE(sameBits(x, expected)) << width;
    }
}

TYPED_TEST(RowUpdates, CheckPointersThenSizesThenTheStep) {
    using T = typename TypeParam::T;
    struct Arguments {
        Guarded<T> values = Guarded<T>(12);
        std::vector<T> constants = std::vector<T>(3, T(2));
        std::vector<T*> rows = std::vector<T*>(4, values.data());
        T* x = values.data();
        T* const* list = rows.data();
        const T *first = constants.data(), *scale = constants.data();
        int step = 3, height = 4, width = 3;
    };
    using Rule = test::Rule<Arguments>;
    std::vector<Rule> rules = {
        {"srcDst", vornStsNullPtrErr, [](Arguments& a) { a.x = nullptr, a.list = nullptr; }},
        {"srcRow or mean", vornStsNullPtrErr, [](Arguments& a) { a.first = nullptr; }},
        {"height 0", vornStsSizeErr, [](Arguments& a) { a.height = 0; }},
        {"width 0", vornStsSizeErr, [](Arguments& a) { a.width = 0; }},
        {"height -7", vornStsSizeErr, [](Arguments& a) { a.height = -7; }},
        {"width least", vornStsSizeErr, [](Arguments& a) { a.width = INT_MIN; }},
    };
    if (std::is_same_v<TypeParam, NormalizeSingles> || std::is_same_v<TypeParam, NormalizeShorts>) {
        rules.insert(rules.begin(), {"scale", vornStsNullPtrErr, [](Arguments& a) { a.scale = nullptr; }});
    }
    const auto untouched = [](Arguments& a) { return a.values.untouched(); };
    test::expectCheckOrder<Arguments>(
        [] { return Arguments(); },
        [](Arguments& a) { return TypeParam::ofList(a.list, a.height, a.first, a.scale, a.width, 3); }, untouched,
        rules);
    rules.push_back({"step -1", vornStsStrideErr, [](Arguments& a) { a.step = -1; }});
    rules.push_back({"step 2", vornStsStrideErr, [](Arguments& a) { a.step = 2; }});
    test::expectCheckOrder<Arguments>(
        [] { return Arguments(); },
        [](Arguments& a) { return TypeParam::ofBlock(a.x, a.step, a.height, a.first, a.scale, a.width, 3); }, untouched,
        rules);
}

TYPED_TEST(RowUpdates, RowsMayStandFarApart) {
    using T = typename TypeParam::T;
    const int step = 1 << 30;
    const std::size_t bytes = (std::size_t{2} * step + 3) * sizeof(T);
    void* room = mmap(nullptr, bytes, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
    ASSERT_NE(room, MAP_FAILED);
    auto* x = static_cast<T*>(room);
    const T first[] = {T(1), T(2), T(3)}, scale[] = {T(2), T(3), T(4)};
    T expected[3] = {T(10), T(20), T(30)};
    for (int i = 0; i < 3; ++i) std::copy_n(expected, 3, x + static_cast<std::size_t>(i) * step);
    TypeParam::model(expected, first, scale, 3, 0);
    EXPECT_EQ(TypeParam::ofBlock(x, step, 3, first, scale, 3, 0), vornStsNoErr);
    for (int i = 0; i < 3; ++i) EXPECT_TRUE(sameBits(x + static_cast<std::size_t>(i) * step, expected, 3)) << i;
    munmap(room, bytes);
}

TEST(SubRow, Saturates) {
    const Vorn16s row[] = {-32768, 32767, 1, -1};
    Vorn16s x[] = {32767, -32768, -32768, 32767};
    ASSERT_EQ(vornsSubRow_16s_D2(row, 4, x, 4, 1), vornStsNoErr);
    EXPECT_EQ(x[0], 32767);
    EXPECT_EQ(x[1], -32768);
    EXPECT_EQ(x[2], -32768);
    EXPECT_EQ(x[3], 32767);
}

TEST(NormalizeColumn, ShiftsBeforeItSaturates) {
    const auto normalized = [](Vorn16s x, Vorn16s mean, Vorn16s scale, int scaleFactor) {
        EXPECT_EQ(vornsNormalizeColumn_16s_D2Sfs(&x, 1, 1, &mean, &scale, 1, scaleFactor), vornStsNoErr);
        return x;
    };
    // The largest products there are: 65535 x -32768 = -2147450880, and 65535 x 32767.
    EXPECT_EQ(normalized(32767, -32768, -32768, 0), -32768);
    EXPECT_EQ(normalized(32767, -32768, -32768, 16), -32768);  // -2147450880 / 65536 = -32767.5, downwards
    EXPECT_EQ(normalized(32767, -32768, -32768, 17), -16384);
    EXPECT_EQ(normalized(-32768, 32767, -32768, 16), 32767);  // 32767.5
    EXPECT_EQ(normalized(32767, -32768, 32767, 16), 32766);   // 2147385345 / 65536 = 32766.5...
    EXPECT_EQ(normalized(32767, -32768, 32767, 31), 0);
    EXPECT_EQ(normalized(32767, -32768, -32768, 31), -1);
    EXPECT_EQ(normalized(32767, -32768, -32768, 32), -1);
    EXPECT_EQ(normalized(32767, -32768, -32768, INT_MAX), -1);
    EXPECT_EQ(normalized(-1, 0, 1, 1), -1);  // downwards, not to nearest even
    EXPECT_EQ(normalized(3, 0, 1, 1), 1);
    // To the left bits leave 32 and are lost: 32768 x 65536 = 2^31 is negative, 65536 x 65536 = 2^32 is nothing.
    EXPECT_EQ(normalized(16384, 0, 2, -16), -32768);
    EXPECT_EQ(normalized(16384, 0, 4, -16), 0);
    EXPECT_EQ(normalized(1, 0, 3, -31), -32768);
    EXPECT_EQ(normalized(1, 0, 3, -32), 0);
    EXPECT_EQ(normalized(1, 0, 3, INT_MIN), 0);
    EXPECT_EQ(normalized(1, 0, 3, -2), 12);
}

// Mean zero and deviation one, when mean and scale are those of the column. The bound: the mean as a single is off by
// 2^-24 of itself, the scale by 2^-24 of itself, and each operation rounds once.
TEST(NormalizeColumn, GivesMeanZeroAndDeviationOne) {
    Random random(16);
    for (int width : {3, 13, 39, 100}) {
        const int height = 2000;
        std::vector<float> x(static_cast<std::size_t>(height) * width), mean(width), scale(width);
        std::vector<double> bound(width);
        for (int j = 0; j < width; ++j) {
            const double centre = random.uniform(-50, 50), spread = random.uniform(0.5, 20);
            double sum = 0, squares = 0;
            for (int i = 0; i < height; ++i) {
                const auto value = static_cast<float>(centre + random.uniform(-spread, spread));
                x[static_cast<std::size_t>(i) * width + j] = value;
                sum += value;
                squares += double{value} * value;
            }
            const double m = sum / height, deviation = std::sqrt(squares / height - m * m);
            mean[j] = static_cast<float>(m);
            scale[j] = static_cast<float>(1 / deviation);
            bound[j] = 0x1p-24 * (std::fabs(m) / deviation + 8);
        }
        ASSERT_EQ(vornsNormalizeColumn_32f_D2(x.data(), width, height, mean.data(), scale.data(), width), vornStsNoErr);
        for (int j = 0; j < width; ++j) {
            double sum = 0, squares = 0;
            for (int i = 0; i < height; ++i) {
                const double y = x[static_cast<std::size_t>(i) * width + j];
                sum += y;
                squares += y * y;
            }
            EXPECT_LE(std::fabs(sum / height), bound[j]);
            EXPECT_LE(std::fabs(std::sqrt(squares / height) - 1), bound[j]);
        }
    }
}

// A row subtracted from itself leaves zeros, and from its doubles itself.
TEST(SubRow, UndoesASum) {
    Random random(17);
    const int width = 45, height = 6;
    const auto row = random.integers<Vorn16s>(width, -1000, 1000);
    std::vector<Vorn16s> x;
    for (int i = 0; i < height; ++i) {
        for (Vorn16s value : row) x.push_back(static_cast<Vorn16s>(value * (i + 1)));
    }
    ASSERT_EQ(vornsSubRow_16s_D2(row.data(), width, x.data(), width, height), vornStsNoErr);
    for (int i = 0; i < height; ++i) {
        for (int j = 0; j < width; ++j) EXPECT_EQ(x[static_cast<std::size_t>(i) * width + j], row[j] * i);
    }
}

}  // namespace
