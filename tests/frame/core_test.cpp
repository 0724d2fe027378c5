// The version record and the floating-point core.
#include <gtest/gtest.h>
#include <xmmintrin.h>

#include <cmath>
#include <limits>
#include <string>

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

}  // namespace
