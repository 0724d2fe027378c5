// Powers of two of a scale factor.
#include "frame/scale.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace {

TEST(Scale, Single) {
    EXPECT_EQ(vorn::GetScale_32s32f(0), 1.0f);
    EXPECT_EQ(vorn::GetScale_32s32f(1), 0.5f);
    EXPECT_EQ(vorn::GetScale_32s32f(-1), 2.0f);
    EXPECT_EQ(vorn::GetScale_32s32f(-127), 0x1p127f);
    EXPECT_EQ(vorn::GetScale_32s32f(-128), std::numeric_limits<float>::infinity());
    EXPECT_EQ(vorn::GetScale_32s32f(126), 0x1p-126f);
    EXPECT_EQ(vorn::GetScale_32s32f(127), 0x1p-127f);
    EXPECT_EQ(vorn::GetScale_32s32f(149), std::numeric_limits<float>::denorm_min());
    EXPECT_EQ(vorn::GetScale_32s32f(150), 0.0f);
    EXPECT_EQ(vorn::GetScale_32s32f(std::numeric_limits<int>::max()), 0.0f);
    EXPECT_EQ(vorn::GetScale_32s32f(std::numeric_limits<int>::min()), std::numeric_limits<float>::infinity());
    for (int sf = -127; sf <= 149; ++sf) EXPECT_EQ(vorn::GetScale_32s32f(sf), std::ldexp(1.0f, -sf)) << sf;
}

TEST(Scale, Double) {
    EXPECT_EQ(vorn::GetScale_32s64f(0), 1.0);
    EXPECT_EQ(vorn::GetScale_32s64f(-1024), std::numeric_limits<double>::infinity());
    EXPECT_EQ(vorn::GetScale_32s64f(-1023), 0x1p1023);
    EXPECT_EQ(vorn::GetScale_32s64f(1074), std::numeric_limits<double>::denorm_min());
    EXPECT_EQ(vorn::GetScale_32s64f(1075), 0.0);
    EXPECT_EQ(vorn::GetScale_32s64f(std::numeric_limits<int>::max()), 0.0);
    EXPECT_EQ(vorn::GetScale_32s64f(std::numeric_limits<int>::min()), std::numeric_limits<double>::infinity());
    for (int sf = -1023; sf <= 1074; ++sf) EXPECT_EQ(vorn::GetScale_32s64f(sf), std::ldexp(1.0, -sf)) << sf;
}

// The other way round, and for exponents beyond an int.
TEST(Scale, PowersOfTwoAreHeldAtBothEnds) {
    EXPECT_EQ(vorn::powerOfTwo_32f(0), 1.0f);
    EXPECT_EQ(vorn::powerOfTwo_32f(1), 2.0f);
    EXPECT_EQ(vorn::powerOfTwo_32f(127), 0x1p127f);
    EXPECT_EQ(vorn::powerOfTwo_32f(128), std::numeric_limits<float>::infinity());
    EXPECT_EQ(vorn::powerOfTwo_32f(-126), 0x1p-126f);
    EXPECT_EQ(vorn::powerOfTwo_32f(-149), 0x1p-149f);
    EXPECT_EQ(vorn::powerOfTwo_32f(-150), 0.0f);
    EXPECT_EQ(vorn::powerOfTwo_32f(std::int64_t{1} << 32), std::numeric_limits<float>::infinity());
    EXPECT_EQ(vorn::powerOfTwo_32f(-(std::int64_t{1} << 32)), 0.0f);
    EXPECT_EQ(vorn::powerOfTwo_32f(std::numeric_limits<std::int64_t>::max()), std::numeric_limits<float>::infinity());
}

}  // namespace
