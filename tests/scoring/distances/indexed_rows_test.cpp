// The sum of indexed rows against the scalar model.
#include <gtest/gtest.h>

#include <climits>
#include <vector>

#include "model/distances.h"
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

std::size_t at(int n) { return static_cast<std::size_t>(n); }

struct Problem {
    int height, offset, step, rows, len;
    std::vector<float> src;  // ends with the last element of the last row that is read
    std::vector<Vorn32s> ind;
    std::vector<Vorn16u> addInd;
};
// Row numbers all over the matrix, the last row among them; some indices are below zero.
Problem problem(Random& random, int rows, int len, const std::vector<float>& values) {
    const int height = 1 + static_cast<int>(random.next() % 9), offset = static_cast<int>(random.next() % 5);
    const int step = offset + len + static_cast<int>(random.next() % 3);
    Problem p{height, offset, step, rows, len, {}, {}, {}};
    const std::size_t size = at(height - 1) * at(step) + at(offset) + at(len);
    p.src = values.empty() ? random.floats(size, -9, 9) : random.pick(values, size);
    for (int i = 0; i < rows; ++i) {
        const int number = i == rows / 2 ? height - 1 : static_cast<int>(random.next() % at(height));
        const int add =
            static_cast<int>(random.next() % 3 == 0 ? random.next() % 65536 : random.next() % at(number + 1));
        p.ind.push_back(number - add), p.addInd.push_back(static_cast<Vorn16u>(add));
    }
    return p;
}
std::vector<float> expected(const Problem& p, float weight) {
    std::vector<float> sums;
    for (int j = 0; j < p.len; ++j) {
        sums.push_back(
            model::sumOfRows(p.src.data(), p.offset, p.step, p.ind.data(), p.addInd.data(), p.rows, j, weight));
    }
    return sums;
}
VornStatus call(const Problem& p, const float* src, const Vorn32s* ind, const Vorn16u* addInd, float* dst,
                float weight) {
    return vornsAddNRows_32f_D2(src, p.height, p.offset, p.step, ind, addInd, p.rows, dst, p.len, weight);
}

TEST(AddNRows, EveryLengthAndNumberOfRows) {
    Random random(1);
    std::vector<int> lengths = {80, 95, 96, 97, 127, 128, 129, 200, 257, 300};
    for (int len = 1; len <= 70; ++len) lengths.push_back(len);
    unsigned turn = 0;
    for (int len : lengths) {
        for (int rows : {1, 2, 3, 4, 5, 6, 7, 8, 9, 15, 16, 19, 31}) {
            const Problem p =
                problem(random, rows, len, turn % 4 == 3 ? test::hardFloats<float>() : std::vector<float>());
            const auto weight = static_cast<float>(random.uniform(-5, 5));
            const Guarded<float> src(p.src);
            const Guarded<Vorn32s> ind(p.ind);
            const Guarded<Vorn16u> addInd(p.addInd);
            Guarded<float> dst(at(len));
            const RoundingMode rounding(turn++ % 4 * RoundingMode::down);
            ASSERT_EQ(call(p, src, ind, addInd, dst, weight), vornStsNoErr);
            EXPECT_TRUE(sameBits(dst.values(), expected(p, weight))) << "len " << len << " rows " << rows;
            EXPECT_TRUE(dst.surroundingsUntouched());
        }
    }
}

TEST(AddNRows, EveryAlignment) {
    Random random(2);
    for (int len : {4, 19, 150}) {
        const Problem p = problem(random, 11, len, {});
        const std::vector<float> sums = expected(p, 1.5f);
        for (std::size_t shift = 0; shift < 64; shift += 4) {
            Offset<float> src(p.src.size(), shift), dst(at(len), 3 * shift % 64);
            Offset<Vorn32s> ind(11, 5 * shift % 64);
            Offset<Vorn16u> addInd(11, 7 * shift / 2 % 64);
            src.assign(p.src), ind.assign(p.ind), addInd.assign(p.addInd);
            ASSERT_EQ(call(p, src, ind, addInd, dst, 1.5f), vornStsNoErr);
            EXPECT_TRUE(sameBits(dst.values(), sums)) << "shift " << shift;
            EXPECT_TRUE(dst.surroundingsUntouched());
        }
    }
}

// The weight comes first, then the rows in their order: 2^24 swallows single ones, but not those that met before.
TEST(AddNRows, AddsInOrder) {
    const Guarded<float> src{1, 16777216, 2};
    const auto sum = [&](std::initializer_list<Vorn32s> rows, float weight) {
        const std::vector<Vorn32s> ind(rows);
        const std::vector<Vorn16u> add(rows.size(), 0);
        float result;
        EXPECT_EQ(vornsAddNRows_32f_D2(src, 3, 0, 1, ind.data(), add.data(), static_cast<int>(rows.size()), &result, 1,
                                       weight),
                  vornStsNoErr);
        return result;
    };
    EXPECT_EQ(sum({0, 0, 1}, 0), 16777218.0f);
    EXPECT_EQ(sum({1, 0, 0}, 0), 16777216.0f);
    EXPECT_EQ(sum({0, 0}, 16777216.0f), 16777216.0f);
    EXPECT_EQ(sum({2, 2}, 16777216.0f), 16777220.0f);
    EXPECT_EQ(sum({0}, -1.0f), 0.0f);
}

struct Arguments {
    const float* src;
    int height, offset, step;
    const Vorn32s* ind;
    const Vorn16u* addInd;
    int rows;
    float* dst;
    int len;
};
VornStatus call(const Arguments& a) {
    return vornsAddNRows_32f_D2(a.src, a.height, a.offset, a.step, a.ind, a.addInd, a.rows, a.dst, a.len, 0.5f);
}

TEST(AddNRows, Checks) {
    const Guarded<float> src{1, 2, 3, 4, 5, 6, 7, 8};
    const Guarded<Vorn32s> ind{1, 0, 0}, bad{0, 0, 1};
    const Guarded<Vorn16u> addInd{0, 1, 1};
    Guarded<float> dst(3);
    test::expectCheckOrder<Arguments>(
        [&] {
            dst.fillPattern();
            return Arguments{src, 2, 1, 4, ind, addInd, 3, dst, 3};
        },
        [](Arguments& a) { return call(a); }, [&](Arguments&) { return dst.untouched(); },
        {{"src", vornStsNullPtrErr, [](Arguments& a) { a.src = nullptr; }},
         {"dst", vornStsNullPtrErr, [](Arguments& a) { a.dst = nullptr; }},
         {"addInd", vornStsNullPtrErr, [](Arguments& a) { a.addInd = nullptr; }},
         {"ind", vornStsNullPtrErr, [](Arguments& a) { a.ind = nullptr; }},
         {"rows", vornStsSizeErr, [](Arguments& a) { a.rows = 0; }},
         {"height", vornStsSizeErr, [](Arguments& a) { a.height = 0; }},
         {"len", vornStsSizeErr, [](Arguments& a) { a.len = 0; }},
         {"a negative offset", vornStsSizeErr, [](Arguments& a) { a.offset = -1; }},
         {"step", vornStsStrideErr, [](Arguments& a) { a.step = 3; }},
         {"a row number", vornStsSizeErr, [&](Arguments& a) {
              if (a.ind != nullptr) a.ind = bad;
          }}});
}

// step may be offset + len; the sum is formed in 64 bits.
TEST(AddNRows, StepHoldsOffsetAndLen) {
    const Guarded<float> src{1, 2, 3, 4};
    const Guarded<Vorn32s> ind{0};
    const Guarded<Vorn16u> addInd{0};
    Guarded<float> dst(2);
    Arguments a{src, 1, 2, 4, ind, addInd, 1, dst, 2};
    EXPECT_EQ(call(a), vornStsNoErr);
    EXPECT_EQ(dst[0], 3.5f);
    EXPECT_EQ(dst[1], 4.5f);
    dst.fillPattern();
    a.step = 3;
    EXPECT_EQ(call(a), vornStsStrideErr);
    a.dst = nullptr;
    EXPECT_EQ(call(a), vornStsNullPtrErr);
    a.dst = dst;
    for (int step : {INT_MAX, INT_MIN, 0}) {
        a.step = step, a.offset = INT_MAX - 1, a.len = 2;
        EXPECT_EQ(call(a), vornStsStrideErr);
        a.len = INT_MAX;
        EXPECT_EQ(call(a), vornStsStrideErr);
    }
    EXPECT_TRUE(dst.untouched());
}

// A row number out of range at any place leaves dst alone, also where the sum leaves the integers.
TEST(AddNRows, RowNumbersOutOfRange) {
    struct Number {
        Vorn32s ind;
        Vorn16u add;
    };
    for (const Number bad : {Number{7, 0},
                             {0, 7},
                             {6, 1},
                             {-1, 0},
                             {-8, 7},
                             {INT_MAX, 0},
                             {INT_MAX, 65535},
                             {INT_MAX - 65535, 65535},
                             {INT_MIN, 0},
                             {INT_MIN, 65535},
                             {-65536, 65535},
                             {0, 65535}}) {
        for (int place = 0; place < 21; ++place) {
            const Guarded<float> src(std::vector<float>(7, 1.0f));
            Guarded<Vorn32s> ind(std::vector<Vorn32s>(21, -65535));
            Guarded<Vorn16u> addInd(std::vector<Vorn16u>(21, 65535));
            Guarded<float> dst(1);
            ASSERT_EQ(call({src, 7, 0, 1, ind, addInd, 21, dst, 1}), vornStsNoErr);
            EXPECT_EQ(dst[0], 21.5f);
            dst.fillPattern();
            ind[at(place)] = bad.ind, addInd[at(place)] = bad.add;
            EXPECT_EQ(call({src, 7, 0, 1, ind, addInd, 21, dst, 1}), vornStsSizeErr)
                << bad.ind << " + " << bad.add << " at " << place;
            EXPECT_TRUE(dst.untouched());
        }
    }
}

// A tall matrix: row number x step needs more than 32 bits. Only its last row is there.
TEST(AddNRows, RowsBeyond32Bits) {
    const Guarded<float> row{1, 2, 3};
    const Guarded<Vorn32s> ind{100000};
    const Guarded<Vorn16u> addInd{65535};
    Guarded<float> dst(3);
    const int step = 1 << 20;
    const auto base = reinterpret_cast<std::uintptr_t>(row.data()) - std::uintptr_t{165535} * step * sizeof(float);
    ASSERT_EQ(call({reinterpret_cast<const float*>(base), 165536, 0, step, ind, addInd, 1, dst, 3}), vornStsNoErr);
    EXPECT_EQ(dst[2], 3.5f);
}

}  // namespace
