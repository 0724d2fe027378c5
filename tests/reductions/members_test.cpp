// What holds for every member of the reductions.
#include <gtest/gtest.h>

#include "support/members.h"
#include "vornsr.h"

namespace {

const test::Member members[] = {
    MEMBER(vornsSum_32f, 1),
    MEMBER(vornsSum_32f, 2),
    MEMBER(vornsSum_64f),
    MEMBER(vornsSum_32fc, 1),
    MEMBER(vornsSum_32fc, 2),
    MEMBER(vornsSum_64fc),
    MEMBER(vornsSum_16s_Sfs, 3),
    MEMBER(vornsSum_16s32s_Sfs, 3),
    MEMBER(vornsSum_16sc_Sfs, 3),
    MEMBER(vornsSum_16sc32sc_Sfs, 3),
    MEMBER(vornsSum_32s_Sfs, 3),
    MEMBER(vornsDotProd_32f),
    MEMBER(vornsDotProd_32fc),
    MEMBER(vornsDotProd_32f32fc),
    MEMBER(vornsDotProd_64f),
    MEMBER(vornsDotProd_64fc),
    MEMBER(vornsDotProd_64f64fc),
    MEMBER(vornsDotProd_32f64f),
    MEMBER(vornsDotProd_32fc64fc),
    MEMBER(vornsDotProd_32f32fc64fc),
    MEMBER(vornsDotProd_16s32f),
    MEMBER(vornsDotProd_16sc32fc),
    MEMBER(vornsDotProd_16s16sc32fc),
    MEMBER(vornsDotProd_16s64s),
    MEMBER(vornsDotProd_16sc64sc),
    MEMBER(vornsDotProd_16s16sc64sc),
    MEMBER(vornsDotProd_16s_Sfs, 17),
    MEMBER(vornsDotProd_16sc_Sfs, 17),
    MEMBER(vornsDotProd_16s16sc_Sfs, 17),
    MEMBER(vornsDotProd_16s32s_Sfs, 4),
    MEMBER(vornsDotProd_16sc32sc_Sfs, 4),
    MEMBER(vornsDotProd_16s16sc32sc_Sfs, 4),
    MEMBER(vornsDotProd_32s_Sfs, 35),
    MEMBER(vornsDotProd_32sc_Sfs, 35),
    MEMBER(vornsDotProd_32s32sc_Sfs, 35),
    MEMBER(vornsDotProd_16s32s32s_Sfs, 20),
    MEMBER(vornsMax_16s),
    MEMBER(vornsMax_32f),
    MEMBER(vornsMax_64f),
    MEMBER(vornsMin_16s),
    MEMBER(vornsMin_32f),
    MEMBER(vornsMin_64f),
    MEMBER(vornsMinMax_8u),
    MEMBER(vornsMinMax_16u),
    MEMBER(vornsMinMax_16s),
    MEMBER(vornsMinMax_32u),
    MEMBER(vornsMinMax_32s),
    MEMBER(vornsMinMax_32f),
    MEMBER(vornsMinMax_64f),
    MEMBER(vornsMaxIndx_16s),
    MEMBER(vornsMaxIndx_32f),
    MEMBER(vornsMaxIndx_64f),
    MEMBER(vornsMinIndx_16s),
    MEMBER(vornsMinIndx_32f),
    MEMBER(vornsMinIndx_64f),
    MEMBER(vornsMaxEvery_16s_I),
    MEMBER(vornsMaxEvery_32s_I),
    MEMBER(vornsMaxEvery_32f_I),
    MEMBER(vornsMinEvery_16s_I),
    MEMBER(vornsMinEvery_32s_I),
    MEMBER(vornsMinEvery_32f_I),
    MEMBER(vornsSumLn_32f),
    MEMBER(vornsSumLn_64f),
    MEMBER(vornsSumLn_32f64f),
    MEMBER(vornsSumLn_16s32f),
};

TEST(ReductionMembers, CheckPointersThenLength) {
    for (const test::Member& member : members) test::expectPointersThenLength(member);
}

TEST(ReductionMembers, NoAlignmentChangesAResult) {
    for (const test::Member& member : members) test::expectNoAlignmentChangesAResult(member);
}

}  // namespace
