// Absolute values: the largest number stands for that of the smallest integer.
#include <cmath>
#include <cstdlib>
#include <limits>

#include "support/expect.h"
#include "support/map.h"
#include "support/members.h"
#include "vornsr.h"

namespace {

using test::expectMap;
constexpr int intMin = std::numeric_limits<int>::min(), intMax = std::numeric_limits<int>::max();

TEST(Absolute, EqualsTheModel) {
    expectMap<Vorn16s>(
        vornsAbs_16s, vornsAbs_16s_I,
        [](Vorn16s x) { return x == -32768 ? Vorn16s{32767} : static_cast<Vorn16s>(std::abs(x)); }, vornStsNoErr);
    expectMap<Vorn32s>(
        vornsAbs_32s, vornsAbs_32s_I, [](Vorn32s x) { return x == intMin ? intMax : std::abs(x); }, vornStsNoErr);
    expectMap<Vorn32f>(
        vornsAbs_32f, vornsAbs_32f_I, [](Vorn32f x) { return std::fabs(x); }, vornStsNoErr);
    expectMap<Vorn64f>(
        vornsAbs_64f, vornsAbs_64f_I, [](Vorn64f x) { return std::fabs(x); }, vornStsNoErr);
}

TEST(Absolute, LiteralValues) {
    const Vorn16s lowest[] = {-32768, -32767, 5, 0};
    Vorn16s absolute[4];
    EXPECT_EQ(vornsAbs_16s(lowest, absolute, 4), vornStsNoErr);
    EXPECT_TRUE(test::sameBits(absolute, (const Vorn16s[]){32767, 32767, 5, 0}, 4));
    const Vorn32s lowest32[] = {intMin, intMin + 1, -1};
    Vorn32s absolute32[3];
    EXPECT_EQ(vornsAbs_32s(lowest32, absolute32, 3), vornStsNoErr);
    EXPECT_TRUE(test::sameBits(absolute32, (const Vorn32s[]){intMax, intMax, 1}, 3));
}

const test::Member members[] = {
    MEMBER(vornsAbs_16s), MEMBER(vornsAbs_16s_I), MEMBER(vornsAbs_32s), MEMBER(vornsAbs_32s_I),
    MEMBER(vornsAbs_32f), MEMBER(vornsAbs_32f_I), MEMBER(vornsAbs_64f), MEMBER(vornsAbs_64f_I),
};

TEST(Absolute, ChecksPointersThenLength) {
    for (const test::Member& member : members) test::expectPointersThenLength(member);
}

TEST(Absolute, NoAlignmentChangesAResult) {
    for (const test::Member& member : members) test::expectNoAlignmentChangesAResult(member);
}

}  // namespace
