// What holds for every member of the elementary functions.
#include <gtest/gtest.h>

#include "support/members.h"
#include "vornsr.h"

namespace {

const test::Member members[] = {
    MEMBER(vornsLn_32f),
    MEMBER(vornsLn_32f_I),
    MEMBER(vornsLn_64f),
    MEMBER(vornsLn_64f_I),
    MEMBER(vornsLn_64f32f),
    MEMBER(vornsLn_32s_Sfs, 0),
    MEMBER(vornsLn_32s_Sfs, -9),
    MEMBER(vornsLn_32s_ISfs, 0),
    MEMBER(vornsSqrt_32f),
    MEMBER(vornsSqrt_32f_I),
    MEMBER(vornsSqrt_64f),
    MEMBER(vornsSqrt_64f_I),
    MEMBER(vornsSqrt_32fc),
    MEMBER(vornsSqrt_32fc_I),
    MEMBER(vornsSqrt_64fc),
    MEMBER(vornsSqrt_64fc_I),
    MEMBER(vornsSqrt_8u_Sfs, -3),
    MEMBER(vornsSqrt_8u_ISfs, -3),
    MEMBER(vornsSqrt_16u_Sfs, -3),
    MEMBER(vornsSqrt_16u_Sfs, -6),
    MEMBER(vornsSqrt_16u_ISfs, -3),
    MEMBER(vornsSqrt_16s_Sfs, -3),
    MEMBER(vornsSqrt_16s_Sfs, -6),
    MEMBER(vornsSqrt_16s_ISfs, -3),
    MEMBER(vornsSqrt_16sc_Sfs, -3),
    MEMBER(vornsSqrt_16sc_ISfs, -3),
    MEMBER(vornsSqrt_64s_Sfs, 2),
    MEMBER(vornsSqrt_64s_ISfs, 2),
    MEMBER(vornsSqrt_32s16s_Sfs, 2),
    MEMBER(vornsSqrt_64s16s_Sfs, 17),
    MEMBER(vornsMagnitude_32fc),
    MEMBER(vornsMagnitude_64fc),
    MEMBER(vornsMagnitude_16sc32f),
    MEMBER(vornsMagnitude_16sc_Sfs, 1),
    MEMBER(vornsMagnitude_32sc_Sfs, 1),
    MEMBER(vornsMagnitude_32f),
    MEMBER(vornsMagnitude_64f),
    MEMBER(vornsMagnitude_16s32f),
    MEMBER(vornsMagnitude_16s_Sfs, 1),
};

TEST(ElementaryMembers, CheckPointersThenLength) {
    for (const test::Member& member : members) test::expectPointersThenLength(member);
}

TEST(ElementaryMembers, NoAlignmentChangesAResult) {
    for (const test::Member& member : members) test::expectNoAlignmentChangesAResult(member);
}

}  // namespace
