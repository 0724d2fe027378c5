// The two matrix layouts, and tests of addresses.
#include "frame/rows.h"

#include <gtest/gtest.h>

#include <cstdint>

#include "frame/align.h"

namespace {

TEST(Rows, OfABlockAreAStrideApart) {
    int block[12];
    const vorn::RowBlock<int> rows = vorn::Rows(block, 5);
    EXPECT_EQ(rows[0], block);
    EXPECT_EQ(rows[2], block + 10);
    EXPECT_EQ(rows.from(1)[0], block + 5);
    EXPECT_EQ(rows.from(1)[1], block + 10);
}

TEST(Rows, OfAListAreWhereItSays) {
    int data[12];
    int* const list[] = {data + 7, data, data + 7};
    const vorn::RowList<int> rows = vorn::Rows(list);
    EXPECT_EQ(rows[0], data + 7);
    EXPECT_EQ(rows[1], data);
    EXPECT_EQ(rows.from(1)[0], data);
    EXPECT_EQ(rows.from(1)[1], data + 7);
}

// Rows and stride each fit an int; their product does not. No row is touched.
TEST(Rows, LieBeyondTheRangeOfAnInt) {
    char* const base = reinterpret_cast<char*>(std::uintptr_t{1} << 20);
    const vorn::RowBlock<char> rows = vorn::Rows(base, 1 << 30);
    EXPECT_EQ(reinterpret_cast<std::uintptr_t>(rows[6]) - (std::uintptr_t{1} << 20), std::uintptr_t{6} << 30);
    EXPECT_EQ(rows.from(6)[0], rows[6]);
}

TEST(Rows, AlignmentOfRowPointers) {
    alignas(16) float data[12];
    const float* rows[] = {data, data + 4, data + 8, data + 1};
    EXPECT_EQ(vorn::RowMatrAlErr(rows, 3), 0);
    EXPECT_EQ(vorn::RowMatrAlErr(rows, 4), 1);
    const float* const* none = nullptr;
    EXPECT_EQ(vorn::RowMatrAlErr(none, 0), 0) << "reads nothing";
    EXPECT_EQ(vorn::RowMatrAlErr(none, -3), 0);
}

TEST(Align, MultiplesOfAPowerOfTwo) {
    alignas(64) char data[128];
    for (int at = 0; at < 64; ++at) {
        EXPECT_EQ(vorn::isAligned(data + at, 16), at % 16 == 0) << at;
        EXPECT_EQ(vorn::isAligned(data + at, 1), true);
        EXPECT_EQ(vorn::alignedUp(data + at, 32), data + (at == 0 ? 0 : at <= 32 ? 32 : 64)) << at;
    }
    EXPECT_TRUE(vorn::isAligned(static_cast<char*>(nullptr), 64));
}

}  // namespace
