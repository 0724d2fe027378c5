// The frame that every function stands in: version record, floating-point core, scale factors, row pointers.
#include <gtest/gtest.h>
#include <xmmintrin.h>

#include <cmath>
#include <cstdint>
#include <limits>

#include "frame/align.h"
#include "frame/rounding.h"
#include "frame/scale.h"
#include "vornsr.h"

namespace {

TEST(Version, Record) {
    const VornLibraryVersion* version = vornsrGetLibVersion();
    EXPECT_EQ(version->major, 5);
    EXPECT_EQ(version->minor, 1);
    EXPECT_EQ(version->majorBuild, 133);
    EXPECT_EQ(version->build, 245);
    EXPECT_EQ(std::string(version->targetCpu, 8), std::string("m7\0\0\0\0\0\0", 8));
    EXPECT_STREQ(version->name, "libvornsrm7.so.5.1");
    EXPECT_STREQ(version->version, "5.1.1");
    EXPECT_STREQ(version->buildDate, "Jun 17 2006");
    EXPECT_EQ(sizeof *version, 48u);
    EXPECT_EQ(version, vornsrGetLibVersion());
}

TEST(Core, SpecialValues) {
    EXPECT_TRUE(std::isnan(vornConstantOfNAN_32f));
    EXPECT_TRUE(std::isnan(vornConstantOfNAN_64f));
    EXPECT_EQ(vornConstantOfINF_32f, std::numeric_limits<float>::infinity());
    EXPECT_EQ(vornConstantOfINF_64f, std::numeric_limits<double>::infinity());
    EXPECT_EQ(vornConstantOfINF_NEG_32f, -std::numeric_limits<float>::infinity());
    EXPECT_EQ(vornConstantOfINF_NEG_64f, -std::numeric_limits<double>::infinity());
}

TEST(Core, RoundingControl) {
    const unsigned before = _mm_getcsr();
    _mm_setcsr((before & ~0x6000u) | 0x2000u);
    const unsigned changed = _mm_getcsr();
    EXPECT_EQ(static_cast<unsigned>(vorn_set_rc_ssx(0x6000)), changed) << "the former value whole";
    EXPECT_EQ(_mm_getcsr(), changed | 0x6000u);
    EXPECT_EQ(static_cast<unsigned>(vorn_set_rc_ssx(0)), changed | 0x6000u);
    EXPECT_EQ(_mm_getcsr() & 0x6000u, 0u);
    vorn_set_cw_ssx(static_cast<int>(changed));
    EXPECT_EQ(_mm_getcsr(), changed);
    _mm_setcsr(before);
}

TEST(Core, RoundingGuardGivesTheCallersModeBack) {
    const unsigned before = _mm_getcsr();
    for (unsigned mode : {0x0000u, 0x2000u, 0x4000u, 0x6000u}) {
        _mm_setcsr((before & ~0x6000u) | mode);
        const unsigned caller = _mm_getcsr();
        {
            vorn::RoundingGuard guard(vorn::Rounding::TowardZero);
            EXPECT_EQ(_mm_getcsr() & 0x6000u, 0x6000u);
            _mm_setcsr(_mm_getcsr() | 1u);  // an invalid operation
        }
        EXPECT_EQ(_mm_getcsr(), caller);
    }
    _mm_setcsr(before);
}

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

TEST(Rows, AlignmentOfRowPointers) {
    alignas(16) float data[12];
    const float* rows[] = {data, data + 4, data + 8, data + 1};
    EXPECT_EQ(vorn::RowMatrAlErr(rows, 3), 0);
    EXPECT_EQ(vorn::RowMatrAlErr(rows, 4), 1);
    const float* const* none = nullptr;
    EXPECT_EQ(vorn::RowMatrAlErr(none, 0), 0) << "reads nothing";
    EXPECT_EQ(vorn::RowMatrAlErr(none, -3), 0);
}

}  // namespace
