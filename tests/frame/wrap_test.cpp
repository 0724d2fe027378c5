// Arithmetic that wraps, shifts of any count, saturation.
#include "frame/wrap.h"

#include <gtest/gtest.h>

#include <climits>
#include <cstdint>

#include "vornsr/types.h"

namespace {

TEST(Wrap, ThirtyTwoBits) {
    EXPECT_EQ(vorn::wrapAdd(2, 3), 5);
    EXPECT_EQ(vorn::wrapAdd(INT_MAX, 1), INT_MIN);
    EXPECT_EQ(vorn::wrapAdd(INT_MIN, INT_MIN), 0);
    EXPECT_EQ(vorn::wrapSub(INT_MIN, 1), INT_MAX);
    EXPECT_EQ(vorn::wrapSub(0, INT_MIN), INT_MIN);
    EXPECT_EQ(vorn::wrapMul(-3, 5), -15);
    EXPECT_EQ(vorn::wrapMul(65536, 65536), 0);
    EXPECT_EQ(vorn::wrapMul(INT_MIN, -1), INT_MIN);
    EXPECT_EQ(vorn::wrapMul(46341, 46341), -2147479015);
}

TEST(Wrap, SixtyFourBits) {
    EXPECT_EQ(vorn::wrapAdd(std::int64_t{INT_MAX}, std::int64_t{1}), std::int64_t{2147483648}) << "not in 32 bits";
    EXPECT_EQ(vorn::wrapAdd(INT64_MAX, std::int64_t{1}), INT64_MIN);
    EXPECT_EQ(vorn::wrapSub(INT64_MIN, std::int64_t{1}), INT64_MAX);
    EXPECT_EQ(vorn::wrapSub(std::int64_t{0}, INT64_MIN), INT64_MIN);
}

TEST(Shift, CountsAreTakenModulo64) {
    for (int turn : {-128, -64, 0, 64, 128}) {
        EXPECT_EQ(vorn::shiftLeft64(-3, turn), -3);
        EXPECT_EQ(vorn::shiftLeft64(-3, turn + 1), -6);
        EXPECT_EQ(vorn::shiftLeft64(3, turn + 62), -(std::int64_t{1} << 62)) << "the top bit is lost";
        EXPECT_EQ(vorn::shiftLeft64(3, turn + 63), INT64_MIN);
        EXPECT_EQ(vorn::shiftRight64(-3, turn), -3);
        EXPECT_EQ(vorn::shiftRight64(-3, turn + 1), -2) << "the sign fills";
        EXPECT_EQ(vorn::shiftRight64(INT64_MIN, turn + 63), -1);
        EXPECT_EQ(vorn::shiftRight64(INT64_MAX, turn + 62), 1);
    }
    EXPECT_EQ(vorn::shiftLeft64(1, INT_MAX), INT64_MIN);
    EXPECT_EQ(vorn::shiftLeft64(7, INT_MIN), 7);
    EXPECT_EQ(vorn::shiftRight64(-1, INT_MAX), -1);
}

TEST(Saturate, ToTheRangeOfTheResult) {
    EXPECT_EQ(vorn::saturate<Vorn16s>(32767), 32767);
    EXPECT_EQ(vorn::saturate<Vorn16s>(32768), 32767);
    EXPECT_EQ(vorn::saturate<Vorn16s>(-32768), -32768);
    EXPECT_EQ(vorn::saturate<Vorn16s>(-32769), -32768);
    EXPECT_EQ(vorn::saturate<Vorn16s>(INT64_MAX), 32767);
    EXPECT_EQ(vorn::saturate<Vorn32s>(std::int64_t{2147483648}), INT_MAX);
    EXPECT_EQ(vorn::saturate<Vorn32s>(std::int64_t{-2147483649}), INT_MIN);
    EXPECT_EQ(vorn::saturate<Vorn32s>(std::int64_t{-5}), -5);
    EXPECT_EQ(vorn::saturate<Vorn8u>(-1), 0);
    EXPECT_EQ(vorn::saturate<Vorn8u>(256), 255);
    EXPECT_EQ(vorn::saturate<Vorn8u>(255), 255);
}

}  // namespace
