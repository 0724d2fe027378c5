// Means and variances of columns, plain and weighted, of floats and of 16-bit integers.
#include <gtest/gtest.h>

#include <algorithm>
#include <climits>
#include <cmath>
#include <cstddef>
#include <cstring>
#include <memory>
#include <string>
#include <vector>

#include "calls/column_shapes.h"
#include "model/column_statistics.h"
#include "support/allocation.h"
#include "support/expect.h"
#include "support/guarded.h"
#include "support/rounding_mode.h"
#include "support/values.h"
#include "vornsr.h"

namespace {

using calls::Element;
using calls::Role;
using test::Guarded;
using test::Offset;
using test::Random;
using test::RoundingMode;
using Bytes = std::vector<std::byte>;

const unsigned modes[] = {RoundingMode::nearest, RoundingMode::down, RoundingMode::up, RoundingMode::towardZero};

// ---- The members, and what a model is told.

struct Model {
    const void* const* rows;
    int height, width, scaleFactor;
    const void *weight, *mean;
    void *dst, *result;
    bool list;     // rows by their pointers
    bool rounded;  // by the way through singles, if the member has two
    template <class T>
    const T* const* x() const {
        return reinterpret_cast<const T* const*>(rows);
    }
    template <class T>
    const T* w() const {
        return static_cast<const T*>(weight);
    }
    template <class T>
    const T* m() const {
        return static_cast<const T*>(mean);
    }
    template <class T>
    T* first() const {
        return static_cast<T*>(dst);
    }
    template <class T>
    T* second() const {
        return static_cast<T*>(result);
    }
};

enum class Stride { first, middle, last };  // where it is checked, among pointers and sizes

struct Member {
    calls::Function block, list;
    int leastHeight;
    Stride stride;
    void (*model)(const Model&);

    bool has(Role role) const { return list.has(role); }
    Element source() const { return list.element(Role::rowList); }
    std::size_t bytes() const { return calls::sizeOf(source()); }
    bool isInteger() const { return source() == Element::s16; }
    // The 16-bit results have a way through singles, which allocates, and one through integers.
    bool hasTwoWays() const {
        return isInteger() && list.element(has(Role::result) ? Role::result : Role::dst) == Element::s16;
    }
};
#define PAIR(stem, block, list) \
    {VORN_NAMED(stem##block), calls::columnShapes}, { VORN_NAMED(stem##list), calls::columnShapes }

const Member members[] = {
    {PAIR(vornsMeanColumn_32f, _D2, _D2L), 1, Stride::first,
     [](const Model& a) { model::meanColumn(a.x<float>(), a.height, a.first<float>(), a.width); }},
    {PAIR(vornsVarColumn_32f, _D2, _D2L), 2, Stride::first,
     [](const Model& a) { model::varColumn(a.x<float>(), a.height, a.m<float>(), a.first<float>(), a.width); }},
    {PAIR(vornsMeanVarColumn_32f, _D2, _D2L), 2, Stride::last,
     [](const Model& a) {
         model::meanVarColumn(a.x<float>(), a.height, a.first<float>(), a.second<float>(), a.width);
     }},
    {PAIR(vornsWeightedMeanColumn_32f, _D2, _D2L), 1, Stride::middle,
     [](const Model& a) {
         model::weightedMeanColumn(a.x<float>(), a.w<float>(), a.height, a.first<float>(), a.width);
     }},
    {PAIR(vornsWeightedVarColumn_32f, _D2, _D2L), 1, Stride::middle,
     [](const Model& a) {
         model::weightedVarColumn(a.x<float>(), a.w<float>(), a.height, a.m<float>(), a.first<float>(), a.width);
     }},
    {PAIR(vornsWeightedMeanVarColumn_32f, _D2, _D2L), 1, Stride::middle,
     [](const Model& a) {
         model::weightedMeanVarColumn(a.x<float>(), a.w<float>(), a.height, a.first<float>(), a.second<float>(),
                                      a.width);
     }},
    {PAIR(vornsWeightedMeanColumn_64f, _D2, _D2L), 1, Stride::middle,
     [](const Model& a) {
         model::weightedMeanColumn(a.x<double>(), a.w<double>(), a.height, a.first<double>(), a.width);
     }},
    {PAIR(vornsWeightedVarColumn_64f, _D2, _D2L), 1, Stride::middle,
     [](const Model& a) {
         model::weightedVarColumn(a.x<double>(), a.w<double>(), a.height, a.m<double>(), a.first<double>(), a.width);
     }},
    {PAIR(vornsWeightedMeanVarColumn_64f, _D2, _D2L), 1, Stride::middle,
     [](const Model& a) {
         model::weightedMeanVarColumn(a.x<double>(), a.w<double>(), a.height, a.first<double>(), a.second<double>(),
                                      a.width);
     }},
    {PAIR(vornsMeanColumn_16s, _D2, _D2L), 1, Stride::first,
     [](const Model& a) { model::meanColumn(a.x<Vorn16s>(), a.height, a.first<Vorn16s>(), a.width, a.rounded); }},
    {PAIR(vornsVarColumn_16s, _D2Sfs, _D2LSfs), 2, Stride::first,
     [](const Model& a) {
         model::varColumn(a.x<Vorn16s>(), a.height, a.m<Vorn16s>(), a.first<Vorn16s>(), a.width, a.scaleFactor,
                          a.rounded);
     }},
    {PAIR(vornsMeanVarColumn_16s, _D2Sfs, _D2LSfs), 2, Stride::last,
     [](const Model& a) {
         model::meanVarColumn(a.x<Vorn16s>(), a.height, a.first<Vorn16s>(), a.second<Vorn16s>(), a.width, a.scaleFactor,
                              a.rounded);
     }},
    {PAIR(vornsMeanVarColumn_16s32s, _D2Sfs, _D2LSfs), 2, Stride::last,
     [](const Model& a) {
         model::meanVarColumn(a.x<Vorn16s>(), a.height, a.first<Vorn32s>(), a.second<Vorn32s>(), a.width, a.scaleFactor,
                              a.list);
     }},
    {PAIR(vornsMeanVarColumn_16s16s32s, _D2, _D2L), 2, Stride::last,
     [](const Model& a) {
         model::meanVarColumn(a.x<Vorn16s>(), a.height, a.first<Vorn16s>(), a.second<Vorn32s>(), a.width, a.list);
     }},
};

// ---- Problems: a matrix without gaps, the weights and the mean that are given.

enum class Data { ordinary, hard, lowest, extreme };

Bytes numbers(Random& random, Element element, std::size_t n, Data data, double low = -100.0, double high = 300.0) {
    if (element == Element::none) return {};
    Bytes bytes(n * calls::sizeOf(element));
    calls::withPart(element, [&]<class T>() {
        T* x = reinterpret_cast<T*>(bytes.data());
        if constexpr (std::is_floating_point_v<T>) {
            const auto values = test::hardFloats<T>();
            for (std::size_t i = 0; i < n; ++i) {
                x[i] = data == Data::hard ? random.pick(values, 1)[0] : static_cast<T>(random.uniform(low, high));
            }
        } else {
            const auto values = test::hardIntegers<T>();
            for (std::size_t i = 0; i < n; ++i) {
                x[i] = data == Data::hard      ? random.pick(values, 1)[0]
                       : data == Data::lowest  ? std::numeric_limits<T>::min()
                       : data == Data::extreme ? (random.integer(0, 20) == 0 ? std::numeric_limits<T>::min()
                                                                             : std::numeric_limits<T>::max())
                                               : random.anyBits<T>();
            }
        }
    });
    return bytes;
}

struct Problem {
    int height, width;
    Bytes source, weight, mean;
    Problem(const Member& member, Random& random, int height_, int width_, Data data = Data::ordinary)
        : height(height_),
          width(width_),
          source(numbers(random, member.source(), static_cast<std::size_t>(height) * width, data)),
          weight(numbers(random, member.list.element(Role::vals), height, data, 0.0, 0.1)),
          mean(numbers(random, member.list.element(Role::src1), width, data)) {}
};

bool isOn16(const void* p) { return reinterpret_cast<std::uintptr_t>(p) % 16 == 0; }

testing::AssertionResult sameElements(Element element, const void* actual, const void* expected, std::size_t n) {
    return calls::withPart(element, [&]<class T>() {
        return test::sameBits(static_cast<const T*>(actual), static_cast<const T*>(expected), n);
    });
}

// Calls a member and compares with its model, in the same rounding mode.
void expectModel(const Member& member, const Problem& problem, bool isList, const std::vector<const void*>& rows,
                 int step, int scaleFactor, unsigned mode) {
    const calls::Function& function = isList ? member.list : member.block;
    const std::size_t width = static_cast<std::size_t>(problem.width);
    const Guarded<std::byte> weight(problem.weight), mean(problem.mean);
    const Element dstElement = member.list.element(Role::dst), resultElement = member.list.element(Role::result);
    const bool two = member.has(Role::result);
    Guarded<std::byte> dst(width * calls::sizeOf(dstElement)), result(two ? width * calls::sizeOf(resultElement) : 0);
    Bytes expectedDst(dst.size()), expectedResult(result.size());
    const Guarded<const void*> list(rows);

    calls::Arguments arguments;
    arguments[Role::rows] = rows[0];
    arguments[Role::rowList] = list.data();
    arguments[Role::step] = step;
    arguments[Role::height] = problem.height;
    arguments[Role::len] = problem.width;
    arguments[Role::vals] = weight.data();
    arguments[Role::src1] = mean.data();
    arguments[Role::dst] = dst.data();
    arguments[Role::result] = result.data();
    arguments[Role::scaleFactor] = scaleFactor;
    const bool rounded = !isList || std::all_of(rows.begin(), rows.end(), isOn16);
    const Model told{rows.data(), problem.height,     problem.width,         scaleFactor, weight.data(),
                     mean.data(), expectedDst.data(), expectedResult.data(), isList,      rounded};
    auto* volatile model = member.model;  // not known to the compiler, which else moves its arithmetic out of the mode
    VornStatus status;
    unsigned after;
    {
        const RoundingMode caller(mode);
        model(told);
        status = function(arguments);
        after = RoundingMode::current();
    }
    const std::string what = std::string(function.name()) + ", " + std::to_string(problem.height) + " x " +
                             std::to_string(problem.width) + ", step " + std::to_string(step) + ", scale factor " +
                             std::to_string(scaleFactor) + ", mode " + std::to_string(mode);
    ASSERT_EQ(status, vornStsNoErr) << what;
    EXPECT_EQ(after, mode) << what;
    EXPECT_TRUE(sameElements(dstElement, dst.data(), expectedDst.data(), width)) << "first result, " << what;
    if (two) {
        EXPECT_TRUE(sameElements(resultElement, result.data(), expectedResult.data(), width))
            << "second result, " << what;
    }
    EXPECT_TRUE(dst.surroundingsUntouched() && result.surroundingsUntouched()) << what;
}

// The layouts. Nothing behind the last row's columns belongs to a block.
void compareBlock(const Member& member, const Problem& problem, int step, int scaleFactor = 0,
                  unsigned mode = RoundingMode::nearest) {
    const std::size_t size = member.bytes(), row = problem.width * size, stride = step * size;
    const Guarded<std::byte> block((problem.height - 1) * stride + row);
    std::vector<const void*> rows;
    for (int i = 0; i < problem.height; ++i) {
        std::memcpy(block + i * stride, &problem.source[i * row], row);
        rows.push_back(block + i * stride);
    }
    expectModel(member, problem, false, rows, step, scaleFactor, mode);
}
enum class List { apart, aligned, oneOff };  // each row by itself; all on 16 bytes; all but the last one
void compareList(const Member& member, const Problem& problem, List how, int scaleFactor = 0,
                 unsigned mode = RoundingMode::nearest) {
    const std::size_t size = member.bytes(), row = problem.width * size;
    std::vector<const void*> rows;
    std::vector<Guarded<std::byte>> guarded;
    const std::size_t stride = (row + 31) / 16 * 16;
    if (how != List::apart) guarded.emplace_back(problem.height * stride);
    for (int i = 0; i < problem.height; ++i) {
        std::byte* place;
        if (how == List::apart) {
            place = guarded.emplace_back(row);
        } else {
            // The rows stand in no order.
            place = guarded[0] + (problem.height - 1 - i) * stride;
            if (how == List::oneOff && i == problem.height - 1) place += size;
        }
        std::memcpy(place, &problem.source[i * row], row);
        rows.push_back(place);
    }
    expectModel(member, problem, true, rows, 0, scaleFactor, mode);
}
void compareAll(const Member& member, const Problem& problem, int step, int scaleFactor = 0,
                unsigned mode = RoundingMode::nearest) {
    compareBlock(member, problem, step, scaleFactor, mode);
    if (problem.height <= 9 && step % 3 == 0) compareList(member, problem, List::apart, scaleFactor, mode);
    compareList(member, problem, List::aligned, scaleFactor, mode);
    if (member.hasTwoWays()) compareList(member, problem, List::oneOff, scaleFactor, mode);
}

class ColumnStatistics : public testing::TestWithParam<Member> {};
std::string nameOf(const testing::TestParamInfo<Member>& test) { return test.param.block.name(); }
INSTANTIATE_TEST_SUITE_P(Members, ColumnStatistics, testing::ValuesIn(members), nameOf);

TEST_P(ColumnStatistics, EqualTheModelBitForBit) {
    const Member& member = GetParam();
    Random random(1);
    for (int width = 1; width <= 70; ++width) {
        for (int height : {member.leastHeight, width % 2 == 0 ? 8 : 3, width % 2 == 0 ? 9 : 17}) {
            compareAll(member, Problem(member, random, height, width), width + (height * width) % 6);
        }
    }
}

TEST_P(ColumnStatistics, EqualTheModelForEveryHeight) {
    const Member& member = GetParam();
    Random random(2);
    for (int height = member.leastHeight; height <= 40; ++height) {
        for (int width : {1, 3, 5, 13, 39, 80, 130}) {
            compareBlock(member, Problem(member, random, height, width), width + width % 3);
        }
    }
}

// Around the columns that are summed together, and the rows that are added at once.
TEST_P(ColumnStatistics, EqualTheModelOfWideMatrices) {
    const Member& member = GetParam();
    Random random(3);
    for (int width : {79, 81, 127, 128, 129, 255, 256, 257, 263, 264, 265, 266, 300, 520, 521, 1025}) {
        compareAll(member, Problem(member, random, 27, width), width);
    }
}

// Far more rows than one walk takes, of numbers that reach the ends of what sums hold.
TEST_P(ColumnStatistics, EqualTheModelOfHighMatrices) {
    const Member& member = GetParam();
    Random random(4);
    for (int width : {1, 6, 9, 39}) {
        for (int height : {515, 1100, 33000 / width}) {
            compareAll(member, Problem(member, random, height, width), width);
            if (!member.isInteger()) continue;
            compareAll(member, Problem(member, random, height, width, Data::lowest), width, 16);
            compareAll(member, Problem(member, random, height, width, Data::extreme), width, 16);
        }
    }
}

// More than a second-level cache holds.
TEST_P(ColumnStatistics, EqualTheModelOfLargeMatrices) {
    const Member& member = GetParam();
    Random random(5);
    for (int width : {39, 270}) {
        const int height = (9 << 17) / width / static_cast<int>(member.bytes());
        compareAll(member, Problem(member, random, height, width), width);
    }
}

// 32 bits hold no sum of so many rows.
TEST_P(ColumnStatistics, EqualTheModelFor65536RowsAndMore) {
    const Member& member = GetParam();
    Random random(6);
    for (Data data : {Data::ordinary, Data::lowest, Data::extreme}) {
        if (data != Data::ordinary && !member.isInteger()) continue;
        compareAll(member, Problem(member, random, 131073, 1, data), 1, 17);
        compareAll(member, Problem(member, random, 66001, 9, data), 9, 16);
    }
}

TEST_P(ColumnStatistics, HardValuesPassThrough) {
    const Member& member = GetParam();
    Random random(7);
    for (int width : {1, 2, 5, 9, 16, 23, 39, 80}) {
        for (int height : {2, 5, 12}) {
            for (int turn = 0; turn < 4; ++turn) {
                compareAll(member, Problem(member, random, height, width, Data::hard), width, turn - 2);
            }
        }
    }
}

TEST_P(ColumnStatistics, FollowTheCallersRoundingModeAndKeepIt) {
    const Member& member = GetParam();
    Random random(8);
    for (unsigned mode : modes) {
        for (int width : {1, 3, 13, 39, 100}) {
            for (int height : {2, 11, 300}) {
                Problem problem(member, random, height, width);
                compareAll(member, problem, width, 14, mode);
                // Opposites, and zeros alone: the mode decides the sign of their sums.
                for (bool opposites : {true, false}) {
                    calls::withPart(member.source(), [&]<class T>() {
                        T* x = reinterpret_cast<T*>(problem.source.data());
                        for (int i = 0; i < height; ++i) {
                            for (int j = 0; j < width; ++j) x[i * width + j] = T(opposites ? (i % 2 == 0 ? 5 : -5) : 0);
                        }
                    });
                    compareAll(member, problem, width, 0, mode);
                }
            }
        }
    }
}

TEST_P(ColumnStatistics, NoAlignmentOfABlockChangesABit) {
    const Member& member = GetParam();
    Random random(9);
    const int height = 11;
    const std::size_t size = member.bytes();
    for (int width : {3, 8, 13, 21, 70}) {
        for (int step : {width, 104, 105}) {
            const Problem problem(member, random, height, width);
            Bytes expected[2];
            for (std::size_t at = 0; at < 64; at += size) {
                Offset<std::byte> block((height - 1) * step * size + width * size, at);
                for (int i = 0; i < height; ++i) {
                    std::memcpy(block + i * step * size, &problem.source[i * width * size], width * size);
                }
                const auto bytesOf = [&](Role role) {
                    return member.has(role) ? calls::sizeOf(member.list.element(role)) : std::size_t{0};
                };
                const auto moved = [&](Role role, std::size_t by) { return by * bytesOf(role) % 64; };
                Offset<std::byte> weight(problem.weight.size(), moved(Role::vals, at / size * 3)),
                    mean(problem.mean.size(), moved(Role::src1, at / size * 5)),
                    dst(width * bytesOf(Role::dst), moved(Role::dst, at / size * 7)),
                    result(width * bytesOf(Role::result), moved(Role::result, at / size));
                weight.assign(problem.weight);
                mean.assign(problem.mean);
                calls::Arguments arguments;
                arguments[Role::rows] = block.data();
                arguments[Role::step] = step;
                arguments[Role::height] = height;
                arguments[Role::len] = width;
                arguments[Role::vals] = weight.data();
                arguments[Role::src1] = mean.data();
                arguments[Role::dst] = dst.data();
                arguments[Role::result] = result.data();
                arguments[Role::scaleFactor] = 12;
                ASSERT_EQ(member.block(arguments), vornStsNoErr);
                EXPECT_TRUE(dst.surroundingsUntouched() && result.surroundingsUntouched());
                if (at == 0) {
                    expected[0] = dst.values(), expected[1] = result.values();
                    continue;
                }
                EXPECT_EQ(dst.values(), expected[0]) << width << ", " << step << ", at " << at;
                EXPECT_EQ(result.values(), expected[1]) << width << ", " << step << ", at " << at;
            }
        }
    }
}

TEST_P(ColumnStatistics, RowsOfAListMayRepeatAndOverlap) {
    const Member& member = GetParam();
    Random random(10);
    const Bytes values = numbers(random, member.source(), 60, Data::ordinary);
    const Problem problem(member, random, 20, 41);
    std::vector<const void*> rows;
    for (int i = 0; i < 20; ++i) rows.push_back(values.data() + i / 2 * member.bytes());
    expectModel(member, problem, true, rows, 0, 3, RoundingMode::nearest);
}

// ---- Scale factors.

class ScaledColumnStatistics : public ColumnStatistics {};
INSTANTIATE_TEST_SUITE_P(Members, ScaledColumnStatistics, testing::ValuesIn([] {
                             std::vector<Member> scaled;
                             for (const Member& member : members) {
                                 if (member.has(Role::scaleFactor)) scaled.push_back(member);
                             }
                             return scaled;
                         }()),
                         nameOf);

TEST_P(ScaledColumnStatistics, EqualTheModelForEveryScaleFactor) {
    const Member& member = GetParam();
    std::vector<int> factors = {INT_MIN, INT_MIN + 1, INT_MAX - 1, INT_MAX};
    for (int around : {-1075, -1024, -150, -128, -64, 64, 128, 150, 1024, 1075}) {
        for (int factor = around - 2; factor <= around + 2; ++factor) factors.push_back(factor);
    }
    for (int factor = -34; factor <= 34; ++factor) factors.push_back(factor);
    Random random(11);
    const Problem any(member, random, 7, 13), hard(member, random, 7, 13, Data::hard);
    const Problem constant(member, random, 7, 13, Data::lowest);  // a variance of zero
    for (std::size_t i = 0; i < factors.size(); ++i) {
        compareAll(member, any, 13, factors[i], modes[i % 4]);
        compareAll(member, hard, 13, factors[i], modes[(i + 1) % 4]);
        compareAll(member, constant, 13, factors[i], modes[(i + 2) % 4]);
    }
}

TEST(ColumnStatisticsInDouble, AnInfiniteScaleSaturatesEveryVariance) {
    const Vorn16s src[] = {3, 7, 1, 7};
    Vorn32s mean[2], var[2];
    for (int factor : {-1024, -1025, INT_MIN}) {
        ASSERT_EQ(vornsMeanVarColumn_16s32s_D2Sfs(src, 2, 2, mean, var, 2, factor), vornStsNoErr);
        EXPECT_EQ(mean[0], 2);
        EXPECT_EQ(mean[1], 7);
        EXPECT_EQ(var[0], 2147483647);
        EXPECT_EQ(var[1], 2147483647) << "zero times infinity";
    }
    ASSERT_EQ(vornsMeanVarColumn_16s32s_D2Sfs(src, 2, 2, mean, var, 2, -1023), vornStsNoErr);
    EXPECT_EQ(var[0], 2147483647);
    EXPECT_EQ(var[1], 0);
}

// ---- Literal numbers.

TEST(MeanColumn, LiteralValues) {
    const float src[] = {1, 10, 2, 10, 6, 13};
    float mean[2];
    ASSERT_EQ(vornsMeanColumn_32f_D2(src, 3, 2, mean, 2), vornStsNoErr);
    EXPECT_EQ(mean[0], 9.0f * static_cast<float>(1.0 / 3.0));
    EXPECT_EQ(mean[1], 33.0f * static_cast<float>(1.0 / 3.0));
    ASSERT_EQ(vornsMeanColumn_32f_D2(src, 1, 2, mean, 2), vornStsNoErr);
    EXPECT_EQ(mean[0], 1.0f);
    EXPECT_EQ(mean[1], 10.0f);
}

// 2^24 + (1 + 1) is not (2^24 + 1) + 1.
TEST(MeanColumn, AddsRowsInPairs) {
    const float src[] = {16777216.0f, 0, 1, 1};
    float mean;
    ASSERT_EQ(vornsMeanColumn_32f_D2(src, 4, 1, &mean, 1), vornStsNoErr);
    EXPECT_EQ(mean, 16777218.0f / 4);
    const float odd[] = {16777216.0f, 1, 1};  // the first pair rounds to 2^24, the last row does so again
    ASSERT_EQ(vornsMeanColumn_32f_D2(odd, 3, 1, &mean, 1), vornStsNoErr);
    EXPECT_EQ(mean, 16777216.0f * static_cast<float>(1.0 / 3.0));
}

TEST(VarColumn, TakesTheCallersMeanAsItIs) {
    const float src[] = {1, 2, 3, 4};
    float mean = 2.5f, var;
    ASSERT_EQ(vornsVarColumn_32f_D2(src, 4, 1, &mean, &var, 1), vornStsNoErr);
    EXPECT_EQ(var, 5.0f * static_cast<float>(1.0 / 3.0));
    mean = 10.0f;
    ASSERT_EQ(vornsVarColumn_32f_D2(src, 4, 1, &mean, &var, 1), vornStsNoErr);
    EXPECT_EQ(var, (30.0f - 400.0f) * static_cast<float>(1.0 / 3.0)) << "a wrong mean: negative, and no error";
}

// (-2^25 + 1) + 1 rounds away both ones, and -2^25 + (1 + 1) would not.
TEST(VarColumn, BeginsWithTheTermOfTheMean) {
    const float src[] = {1, 1}, mean = 4096.0f;
    float var;
    ASSERT_EQ(vornsVarColumn_32f_D2(src, 2, 1, &mean, &var, 1), vornStsNoErr);
    EXPECT_EQ(var, -33554432.0f);
}

TEST(VarColumn, AMeanThatIsNotANumberMakesTheVarianceOne) {
    const float src[] = {1, 1, 2, 2}, mean[] = {NAN, 1.5f};
    float var[2];
    ASSERT_EQ(vornsVarColumn_32f_D2(src, 2, 2, mean, var, 2), vornStsNoErr);
    EXPECT_TRUE(std::isnan(var[0]));
    EXPECT_EQ(var[1], 0.5f);
    const double weight[] = {0.5, 0.5}, src64[] = {1, 1, 2, 2}, mean64[] = {NAN, 1.5};
    double var64[2];
    ASSERT_EQ(vornsWeightedVarColumn_64f_D2(src64, 2, weight, 2, mean64, var64, 2), vornStsNoErr);
    EXPECT_TRUE(std::isnan(var64[0]));
    EXPECT_EQ(var64[1], 0.25);
}

TEST(MeanVarColumn, LiteralValues) {
    const float src[] = {1, 10, 2, 10, 3, 10, 6, 10};
    float mean[2], var[2];
    ASSERT_EQ(vornsMeanVarColumn_32f_D2(src, 4, 2, mean, var, 2), vornStsNoErr);
    EXPECT_EQ(mean[0], 3.0f);
    EXPECT_EQ(mean[1], 10.0f);
    EXPECT_EQ(var[0], (50.0f - 36.0f) * static_cast<float>(1.0 / 3.0));
    EXPECT_EQ(var[1], 0.0f);
}

TEST(WeightedMeanVarColumn, WeightsAreNotNormalised) {
    const float src[] = {1, 2, 3, 4};
    const float weight[] = {2, 3};
    float mean[2], var[2];
    ASSERT_EQ(vornsWeightedMeanVarColumn_32f_D2(src, 2, weight, 2, mean, var, 2), vornStsNoErr);
    EXPECT_EQ(mean[0], 11.0f);
    EXPECT_EQ(mean[1], 16.0f);
    EXPECT_EQ(var[0], 29.0f - 121.0f);
    EXPECT_EQ(var[1], 56.0f - 256.0f);
}

TEST(WeightedMeanVarColumn, OneRowIsEnough) {
    const float src[] = {3};
    const float weight[] = {0.5f};
    float mean, var;
    ASSERT_EQ(vornsWeightedMeanVarColumn_32f_D2(src, 1, weight, 1, &mean, &var, 1), vornStsNoErr);
    EXPECT_EQ(mean, 1.5f);
    EXPECT_EQ(var, 4.5f - 2.25f);
}

// The same rows on 16 bytes, and one element off.
struct BothWays {
    Offset<Vorn16s> aligned = Offset<Vorn16s>(64, 0), off = Offset<Vorn16s>(64, 2);
    const Vorn16s *alignedRows[4], *offRows[4];
    explicit BothWays(const std::vector<Vorn16s>& column) {
        for (std::size_t i = 0; i < column.size(); ++i) {
            aligned[16 * i] = off[16 * i] = column[i];
            alignedRows[i] = aligned + 16 * i;
            offRows[i] = off + 16 * i;
        }
    }
};

TEST(MeanColumn, OfAListOf16BitRowsIsRoundedOrTruncatedByTheirAlignment) {
    for (const auto& [column, rounded, truncated] :
         {std::tuple{std::vector<Vorn16s>{1, 2}, 2, 1}, std::tuple{std::vector<Vorn16s>{2, 3}, 2, 2},
          std::tuple{std::vector<Vorn16s>{-1, -2}, -2, -1}, std::tuple{std::vector<Vorn16s>{5, 6, 6}, 6, 5},
          std::tuple{std::vector<Vorn16s>{-32768, -32768, -32767}, -32768, -32767}}) {
        BothWays rows(column);
        const int height = static_cast<int>(column.size());
        Vorn16s mean;
        ASSERT_EQ(vornsMeanColumn_16s_D2L(rows.alignedRows, height, &mean, 1), vornStsNoErr);
        EXPECT_EQ(mean, rounded);
        ASSERT_EQ(vornsMeanColumn_16s_D2L(rows.offRows, height, &mean, 1), vornStsNoErr);
        EXPECT_EQ(mean, truncated);
        ASSERT_EQ(vornsMeanColumn_16s_D2(rows.off, height, 16, &mean, 1), vornStsNoErr);
        EXPECT_EQ(mean, rounded) << "of a block always";
    }
}

TEST(VarColumn, OfAListOf16BitRowsIsRoundedOrTruncatedByTheirAlignment) {
    BothWays rows({1, 2, 4, 8});
    const Vorn16s mean = 4;  // (85 - 64) / 3 = 7
    Vorn16s var;
    for (const auto& [factor, rounded, truncated] :
         {std::tuple{0, 7, 7}, std::tuple{1, 4, 3}, std::tuple{2, 2, 1}, std::tuple{3, 1, 0}, std::tuple{-1, 14, 14},
          std::tuple{64, 0, 7}, std::tuple{65, 0, 3}, std::tuple{-12, 28672, 28672}, std::tuple{-13, 32767, 32767},
          std::tuple{-64, 32767, 7}, std::tuple{-65, 32767, 14}, std::tuple{-60, 32767, 32767},
          std::tuple{-61, 32767, -32768}, std::tuple{INT_MIN, 32767, 7}, std::tuple{INT_MAX, 0, 0}}) {
        ASSERT_EQ(vornsVarColumn_16s_D2LSfs(rows.alignedRows, 4, &mean, &var, 1, factor), vornStsNoErr);
        EXPECT_EQ(var, rounded) << factor;
        ASSERT_EQ(vornsVarColumn_16s_D2LSfs(rows.offRows, 4, &mean, &var, 1, factor), vornStsNoErr);
        EXPECT_EQ(var, truncated) << factor;
    }
}

TEST(MeanVarColumn, TheScaleFactorLeavesTheMeanAlone) {
    BothWays rows({100, 300});  // variance 20000
    Vorn16s mean, var;
    for (const Vorn16s* const* list : {rows.alignedRows, rows.offRows}) {
        ASSERT_EQ(vornsMeanVarColumn_16s_D2LSfs(list, 2, &mean, &var, 1, 3), vornStsNoErr);
        EXPECT_EQ(mean, 200);
        EXPECT_EQ(var, 2500);
    }
    Vorn32s mean32, var32;
    ASSERT_EQ(vornsMeanVarColumn_16s32s_D2LSfs(rows.offRows, 2, &mean32, &var32, 1, -4), vornStsNoErr);
    EXPECT_EQ(mean32, 200);
    EXPECT_EQ(var32, 320000);
    ASSERT_EQ(vornsMeanVarColumn_16s16s32s_D2L(rows.offRows, 2, &mean, &var32, 1), vornStsNoErr);
    EXPECT_EQ(mean, 200);
    EXPECT_EQ(var32, 20000);
}

// ---- Against exact arithmetic.

using model::Big;

// A mean of 1000 deviations: most digits of the variance cancel.
TEST(MeanVarColumn, SinglesKeepTheirBound) {
    constexpr double meanBound = 6e-8,
                     varBound = 1.8e-7;  // times h + 4 and the mean of |x|, or the sum of x^2 / (h - 1)
    Random random(12);
    for (int height : {2, 3, 10, 101, 1000, 20000}) {
        for (double center : {0.0, 1.0, 1000.0, -300000.0}) {
            // Multiples of 1/16, whose sums and squares are exact as integers of 1/16 and 1/256.
            std::vector<float> src(height);
            Big sum = 0, magnitudes = 0, squares = 0;
            for (float& x : src) {
                x = static_cast<float>(std::nearbyint(random.uniform(center - 5, center + 5) * 16) / 16);
                const Big whole = static_cast<Big>(x * 16.0);
                sum += whole;
                magnitudes += whole < 0 ? -whole : whole;
                squares += whole * whole;
            }
            const double h = height;
            const double exactMean = static_cast<double>(sum) / 16 / h;
            const double exactVar = static_cast<double>(squares * height - sum * sum) / 256 / h / (h - 1);
            const double meanError = meanBound * (h + 4) * static_cast<double>(magnitudes) / 16 / h;
            const double varError = varBound * (h + 4) * static_cast<double>(squares) / 256 / (h - 1);
            float mean, var;
            ASSERT_EQ(vornsMeanVarColumn_32f_D2(src.data(), height, 1, &mean, &var, 1), vornStsNoErr);
            EXPECT_NEAR(mean, exactMean, meanError) << height << ", " << center;
            EXPECT_NEAR(var, exactVar, varError) << height << ", " << center;
            ASSERT_EQ(vornsMeanColumn_32f_D2(src.data(), height, 1, &mean, 1), vornStsNoErr);
            EXPECT_NEAR(mean, exactMean, meanError) << height << ", " << center;
            const float givenMean = static_cast<float>(exactMean);
            ASSERT_EQ(vornsVarColumn_32f_D2(src.data(), height, 1, &givenMean, &var, 1), vornStsNoErr);
            EXPECT_NEAR(var, exactVar, varError) << height << ", " << center;
        }
    }
}

// Wider results of a block: the exact mean and variance, rounded, however far the variance cancels.
TEST(MeanVarColumn, WiderResultsAreTheExactOnesRounded) {
    Random random(13);
    for (int height : {2, 3, 17, 1000, 66000}) {
        for (int center : {0, 100, 32000, -32000}) {
            for (int spread : {1, 5, 700}) {
                std::vector<Vorn16s> src(height);
                Big sum = 0, squares = 0;
                for (Vorn16s& x : src) {
                    x = static_cast<Vorn16s>(center + random.integer(-spread, spread));
                    sum += x;
                    squares += x * x;
                }
                const int factor = -8;  // the variance in 1/256
                const double exactMean = static_cast<double>(sum) / height;
                const double exactVar = static_cast<double>((squares * height - sum * sum) * 256) / height /
                                        static_cast<double>(height - 1);
                Vorn32s mean, var;
                ASSERT_EQ(vornsMeanVarColumn_16s32s_D2Sfs(src.data(), height, 1, &mean, &var, 1, factor), vornStsNoErr);
                EXPECT_NEAR(mean, exactMean, 0.5 + 1e-9);
                EXPECT_NEAR(var, exactVar, 0.5 + 1e-3) << height << ", " << center << ", " << spread;
                Vorn16s shortMean;
                ASSERT_EQ(vornsMeanVarColumn_16s16s32s_D2(src.data(), height, 1, &shortMean, &var, 1), vornStsNoErr);
                EXPECT_EQ(shortMean, mean);
                EXPECT_NEAR(var, exactVar / 256, 0.5 + 1e-5);
            }
        }
    }
}

// Above 2^53 a double rounds what it adds: the rows in their order decide.
TEST(ColumnStatisticsInDouble, SumsAbove2To53RoundRowByRow) {
    const int height = (1 << 23) + 40001;
    std::vector<Vorn16s> src(static_cast<std::size_t>(height), -32768);
    Random random(14);
    for (std::size_t i = src.size() - 40000; i < src.size(); ++i) {
        if (i % 3 == 0) src[i] = static_cast<Vorn16s>(random.integer(-32768, -32700));
    }
    std::vector<const Vorn16s*> rows;
    for (const Vorn16s& x : src) rows.push_back(&x);
    for (unsigned mode : {RoundingMode::nearest, RoundingMode::up}) {
        Vorn32s mean[2], var[2], expectedMean[2], expectedVar[2];
        void (*volatile model)(const Vorn16s* const*, int, Vorn32s*, Vorn32s*, int, int, bool) = model::meanVarColumn;
        {
            const RoundingMode caller(mode);
            for (bool list : {false, true}) {
                model(rows.data(), height, &expectedMean[list], &expectedVar[list], 1, -20, list);
            }
            vornsMeanVarColumn_16s32s_D2Sfs(src.data(), height, 1, &mean[0], &var[0], 1, -20);
            vornsMeanVarColumn_16s32s_D2LSfs(rows.data(), height, &mean[1], &var[1], 1, -20);
        }
        for (int list : {0, 1}) {
            EXPECT_EQ(mean[list], expectedMean[list]) << mode;
            EXPECT_EQ(var[list], expectedVar[list]) << mode;
        }
        if (mode == RoundingMode::nearest) {
            // What exact sums would give, to see that the data tell the two apart.
            Big sum = 0, squares = 0;
            for (Vorn16s x : src) sum += x, squares += x * x;
            const double h = height, exactMean = static_cast<double>(sum) * (1.0 / h);
            const double exact = (static_cast<double>(squares) - exactMean * exactMean * h) * (1.0 / (h - 1) * 0x1p20);
            EXPECT_NE(std::nearbyint(exact), var[0]);
        }
    }
}

// ---- Errors.

struct Arguments {
    Bytes source, weight, mean;
    std::vector<const void*> rows;
    Guarded<std::byte> dst, result;
    calls::Arguments arguments;
    explicit Arguments(const Member& member, std::size_t offset = 0)
        : source(12 * member.bytes() + 16), weight(64), mean(64), dst(64), result(64) {
        auto* first = source.data();
        while (!isOn16(first)) ++first;
        for (int i = 0; i < 4; ++i) rows.push_back(first + offset);  // a row may repeat
        arguments[Role::rows] = first + offset;
        arguments[Role::rowList] = rows.data();
        arguments[Role::step] = 2;
        arguments[Role::height] = 4;
        arguments[Role::len] = 2;
        arguments[Role::vals] = weight.data();
        arguments[Role::src1] = mean.data();
        arguments[Role::dst] = dst.data();
        arguments[Role::result] = result.data();
        arguments[Role::scaleFactor] = 0;
    }
    bool untouched() const { return dst.untouched() && result.untouched(); }
};

TEST_P(ColumnStatistics, ChecksInOrder) {
    const Member& member = GetParam();
    using Rule = test::Rule<Arguments>;
    for (const calls::Function* function : {&member.block, &member.list}) {
        std::vector<Rule> pointers, sizes, stride;
        for (Role role : {Role::rows, Role::rowList, Role::vals, Role::src1, Role::dst, Role::result}) {
            if (!function->has(role)) continue;
            pointers.push_back({"a pointer", vornStsNullPtrErr, [=](Arguments& a) { a.arguments[role] = nullptr; }});
        }
        const auto bad = [](Role role, int n) {
            return Rule{"a size", vornStsSizeErr, [=](Arguments& a) { a.arguments[role] = n; }};
        };
        sizes = {bad(Role::len, 0), bad(Role::len, -1), bad(Role::height, 0), bad(Role::height, -1)};
        if (member.leastHeight > 1) sizes.push_back(bad(Role::height, 1));
        if (function->has(Role::step)) {
            // A width below 1 leaves no step too short for it but one that is lower still.
            stride.push_back({"step", vornStsStrideErr, [](Arguments& a) { a.arguments[Role::step] = -2; }});
        }
        std::vector<std::vector<Rule>> order = {stride, pointers, sizes};
        if (member.stride == Stride::middle) order = {pointers, stride, sizes};
        if (member.stride == Stride::last) order = {pointers, sizes, stride};
        std::vector<Rule> rules;
        for (const auto& some : order) rules.insert(rules.end(), some.begin(), some.end());
        test::expectCheckOrder<Arguments>([&] { return Arguments(member); },
                                          [&](Arguments& a) { return (*function)(a.arguments); },
                                          [](Arguments& a) { return a.untouched(); }, rules);
    }
    Arguments shortByOne(member);
    shortByOne.arguments[Role::step] = 1;
    EXPECT_EQ(member.block(shortByOne.arguments), vornStsStrideErr);
    EXPECT_TRUE(shortByOne.untouched());
    Arguments leastRows(member);
    leastRows.arguments[Role::height] = member.leastHeight;
    EXPECT_EQ(member.block(leastRows.arguments), vornStsNoErr);
}

TEST_P(ColumnStatistics, AFailedAllocationLeavesTheResults) {
    if (!test::FailAllocation::available()) GTEST_SKIP() << "the sanitizer's allocator stands in the place of ours";
    const Member& member = GetParam();
    const auto expectAllocations = [&](const calls::Function& function, std::size_t offset, int expected) {
        Arguments counted(member, offset);
        {
            const test::FailAllocation count(0);
            EXPECT_EQ(function(counted.arguments), vornStsNoErr);
            EXPECT_EQ(count.calls(), expected) << function.name();
            EXPECT_EQ(count.outstanding(), 0);
        }
        for (int n = 1; n <= expected; ++n) {
            Arguments failing(member, offset);
            const test::FailAllocation fail(n);
            EXPECT_EQ(function(failing.arguments), vornStsMemAllocErr) << function.name();
            EXPECT_EQ(fail.outstanding(), 0);
            EXPECT_TRUE(failing.untouched());
        }
    };
    const int one = member.hasTwoWays() ? 1 : 0;
    expectAllocations(member.block, 0, one);
    expectAllocations(member.block, member.bytes(), one);
    expectAllocations(member.list, 0, one);
    expectAllocations(member.list, member.bytes(), 0);
}

}  // namespace
