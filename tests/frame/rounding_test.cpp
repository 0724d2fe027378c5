// The guard over the rounding mode.
#include "frame/rounding.h"

#include <gtest/gtest.h>
#include <xmmintrin.h>

#include "support/rounding_mode.h"

namespace {

using test::RoundingMode;
using vorn::Rounding;
using vorn::RoundingGuard;

constexpr unsigned invalid = 0x0001, inexact = 0x0020;
constexpr unsigned modes[] = {RoundingMode::nearest, RoundingMode::down, RoundingMode::up, RoundingMode::towardZero};

VORN_NOINLINE void third(float* result, float x) { *result = x / 3.0f; }

TEST(RoundingGuard, SetsItsModeAndGivesTheCallersBack) {
    for (unsigned caller : modes) {
        const RoundingMode outer(caller);
        const unsigned before = _mm_getcsr();
        for (Rounding mode : {Rounding::Nearest, Rounding::Down, Rounding::Up, Rounding::TowardZero}) {
            {
                const RoundingGuard guard(mode);
                EXPECT_EQ(RoundingMode::current(), static_cast<unsigned>(mode));
            }
            EXPECT_EQ(_mm_getcsr(), before) << static_cast<unsigned>(mode);
        }
    }
}

TEST(RoundingGuard, ArithmeticInsideFollowsIt) {
    float down, up, toward;
    {
        const RoundingGuard guard(Rounding::Down);
        third(&down, -1.0f);
    }
    {
        const RoundingGuard guard(Rounding::Up);
        third(&up, 1.0f);
    }
    {
        const RoundingGuard guard(Rounding::TowardZero);
        third(&toward, 1.0f);
    }
    EXPECT_EQ(down, -0x1.555556p-2f);
    EXPECT_EQ(up, 0x1.555556p-2f);
    EXPECT_EQ(toward, 0x1.555554p-2f);
}

TEST(RoundingGuard, AnInvalidOperationLeavesNoFlag) {
    for (unsigned caller : modes) {
        const RoundingMode outer(caller);
        _mm_setcsr(_mm_getcsr() & ~(invalid | inexact));
        const unsigned before = _mm_getcsr();
        {
            const RoundingGuard guard(Rounding::TowardZero);
            _mm_setcsr(_mm_getcsr() | invalid | inexact);
        }
        EXPECT_EQ(_mm_getcsr(), before) << caller;
        {
            const RoundingGuard guard;
            EXPECT_EQ(_mm_getcsr(), before) << "without a mode it leaves the caller's";
            _mm_setcsr(_mm_getcsr() | invalid);
        }
        EXPECT_EQ(_mm_getcsr(), before) << caller;
    }
}

TEST(RoundingGuard, GivesNothingBackWhereNothingOfItsHasChanged) {
    const RoundingMode outer(RoundingMode::towardZero);
    _mm_setcsr(_mm_getcsr() & ~(invalid | inexact));
    const unsigned before = _mm_getcsr();
    {
        const RoundingGuard guard(Rounding::TowardZero);
        _mm_setcsr(_mm_getcsr() | inexact);
    }
    EXPECT_EQ(_mm_getcsr(), before | inexact);
}

}  // namespace
