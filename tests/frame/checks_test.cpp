// The vocabulary of argument checks.
#include "frame/checks.h"

#include <gtest/gtest.h>

#include <climits>

namespace {

TEST(Checks, NotNull) {
    const int x = 0;
    const double y = 0;
    const int* const none = nullptr;
    EXPECT_EQ(vorn::notNull(&x), vornStsNoErr);
    EXPECT_EQ(vorn::notNull(none), vornStsNullPtrErr);
    EXPECT_EQ(vorn::notNull(&x, &y, &x), vornStsNoErr);
    EXPECT_EQ(vorn::notNull(none, &y, &x), vornStsNullPtrErr);
    EXPECT_EQ(vorn::notNull(&y, none, &x), vornStsNullPtrErr);
    EXPECT_EQ(vorn::notNull(&y, &x, none), vornStsNullPtrErr);
}

TEST(Checks, Positive) {
    EXPECT_EQ(vorn::positive(1), vornStsNoErr);
    EXPECT_EQ(vorn::positive(0), vornStsSizeErr);
    EXPECT_EQ(vorn::positive(INT_MIN), vornStsSizeErr);
    EXPECT_EQ(vorn::positive(INT_MAX, 1, 1), vornStsNoErr);
    EXPECT_EQ(vorn::positive(0, 1, 1), vornStsSizeErr);
    EXPECT_EQ(vorn::positive(1, 0, 1), vornStsSizeErr);
    EXPECT_EQ(vorn::positive(1, 1, -1), vornStsSizeErr);
}

TEST(Checks, AtLeast) {
    EXPECT_EQ(vorn::atLeast(2, 2), vornStsNoErr);
    EXPECT_EQ(vorn::atLeast(2, 1), vornStsSizeErr);
    EXPECT_EQ(vorn::atLeast(2, 2, 3), vornStsNoErr);
    EXPECT_EQ(vorn::atLeast(2, 1, 3), vornStsSizeErr);
    EXPECT_EQ(vorn::atLeast(2, 3, 1), vornStsSizeErr);
    EXPECT_EQ(vorn::atLeast(INT_MIN, INT_MIN), vornStsNoErr);
}

TEST(Checks, StrideHolds) {
    EXPECT_EQ(vorn::strideHolds(5, 5), vornStsNoErr);
    EXPECT_EQ(vorn::strideHolds(4, 5), vornStsStrideErr);
    EXPECT_EQ(vorn::strideHolds(-1, 0), vornStsStrideErr);
    EXPECT_EQ(vorn::strideHolds(INT_MAX, INT_MAX), vornStsNoErr);
    EXPECT_EQ(vorn::strideHolds(INT_MAX, std::int64_t{INT_MAX} + 1), vornStsStrideErr) << "more than an int can say";
    EXPECT_EQ(vorn::strideHolds(INT_MAX, std::int64_t{1} << 32), vornStsStrideErr);
}

VornStatus checked(bool first, bool second, int& reached) {
    VORN_CHECK((++reached, vorn::require(first, vornStsRangeErr)));
    VORN_CHECK((++reached, vorn::require(second, vornStsBadArgErr)));
    ++reached;
    return vornStsNoErr;
}

TEST(Checks, TheFirstThatFailsReturns) {
    int reached = 0;
    EXPECT_EQ(checked(true, true, reached), vornStsNoErr);
    EXPECT_EQ(reached, 3) << "each check is evaluated once";
    reached = 0;
    EXPECT_EQ(checked(true, false, reached), vornStsBadArgErr);
    EXPECT_EQ(reached, 2);
    reached = 0;
    EXPECT_EQ(checked(false, false, reached), vornStsRangeErr);
    EXPECT_EQ(reached, 1);
}

}  // namespace
