// Pitch marks to candidates of the fundamental frequency.
#include <gtest/gtest.h>
#include <xmmintrin.h>

#include <climits>
#include <cmath>
#include <limits>
#include <vector>

#include "frame/scale.h"
#include "model/pitch.h"
#include "support/allocation.h"
#include "support/expect.h"
#include "support/guarded.h"
#include "support/rounding_mode.h"
#include "support/values.h"
#include "vornsr.h"

extern "C" {
void vornsPitchmarkToF0_32f_M7(const Vorn32f* src, Vorn32f* dst, std::int64_t len, VornStatus* status);
void vornsPitchmarkToF0_32f_M7_Al(const Vorn32f* src, Vorn32f* dst, std::int64_t len, VornStatus* status);
void vornsPitchmarkToF0_16s_M7(const Vorn16s* src, Vorn16s* dst, std::int64_t len, Vorn32f scale, VornStatus* status);
void vornsPitchmarkToF0_16s_M7_Al(const Vorn16s* src, Vorn16s* dst, std::int64_t len, Vorn32f scale,
                                  VornStatus* status);
}

namespace {

using test::Guarded;
using test::Offset;
using test::Random;
using test::RoundingMode;

constexpr float inf = std::numeric_limits<float>::infinity();
constexpr unsigned modes[] = {RoundingMode::nearest, RoundingMode::down, RoundingMode::up, RoundingMode::towardZero};

void expectCandidates(const std::vector<float>& marks, unsigned mode = RoundingMode::nearest) {
    const Guarded<float> src(marks);
    Guarded<float> dst(marks.size());
    VornStatus status;
    std::pair<std::vector<float>, bool> expected;
    {
        const RoundingMode guard(mode);
        status = vornsPitchmarkToF0Cand_32f(src, dst, static_cast<int>(marks.size()));
        expected = model::candidates(marks);
    }
    EXPECT_EQ(status, expected.second ? vornStsDivByZero : vornStsNoErr) << marks.size();
    EXPECT_TRUE(test::sameBits(dst, expected.first)) << marks.size() << ", mode " << mode;
    EXPECT_TRUE(dst.surroundingsUntouched());
}
// The result does not depend on the caller's mode.
void expectCandidates(const std::vector<Vorn16s>& marks, int scaleFactor, unsigned mode = RoundingMode::nearest) {
    const Guarded<Vorn16s> src(marks);
    Guarded<Vorn16s> dst(marks.size());
    const auto expected = model::candidates(marks, vorn::GetScale_32s32f(scaleFactor));
    VornStatus status;
    {
        const RoundingMode guard(mode);
        status = vornsPitchmarkToF0Cand_16s_Sfs(src, dst, static_cast<int>(marks.size()), scaleFactor);
        EXPECT_EQ(RoundingMode::current(), mode);
    }
    EXPECT_EQ(status, expected.second ? vornStsDivByZero : vornStsNoErr) << marks.size();
    EXPECT_TRUE(test::sameBits(dst, expected.first)) << marks.size() << ", scale factor " << scaleFactor;
    EXPECT_TRUE(dst.surroundingsUntouched());
}

std::vector<Vorn16s> rising(Random& random, std::size_t len) {
    std::vector<Vorn16s> marks;
    std::int64_t at = 0;
    for (std::size_t i = 0; i < len; ++i) marks.push_back(static_cast<Vorn16s>(at += random.integer(20, 160)));
    return marks;
}

TEST(PitchmarkToF0Cand, EqualsTheModel) {
    Random random(1);
    for (std::size_t len = 1; len <= 140; ++len) {
        const auto marks = rising(random, len);
        expectCandidates(std::vector<float>(marks.begin(), marks.end()));
        expectCandidates(random.floats(len, -1000, 1000));
        expectCandidates(random.pick<float>({1.0f, 2.0f, 5.0f, 0.0f, -0.0f}, len));
        for (int scaleFactor : {0, -13, -20}) {
            expectCandidates(marks, scaleFactor);
            expectCandidates(random.integers<Vorn16s>(len), scaleFactor);
            expectCandidates(random.pick<Vorn16s>({1, 2, 5, 0, -32768, 32767}, len), scaleFactor);
        }
    }
    for (std::size_t len : {1000, 4099}) {
        expectCandidates(random.floats(len, -1000, 1000));
        expectCandidates(random.integers<Vorn16s>(len), -12);
    }
    const auto hard = test::hardFloats<float>();
    for (unsigned mode : modes) {
        expectCandidates(random.floats(200, -1000, 1000), mode);
        for (int turn = 0; turn < 10; ++turn) expectCandidates(random.pick(hard, 61), mode);
        for (int scaleFactor : {-10, -16, -20, -29, -31}) {
            expectCandidates(random.integers<Vorn16s>(300), scaleFactor, mode);
        }
    }
}

// A zero difference anywhere, and there alone.
TEST(PitchmarkToF0Cand, ZeroAtEachPlace) {
    for (std::size_t len : {1, 2, 4, 5, 15, 16, 17, 33, 64, 71}) {
        for (std::size_t at = 0; at < len; ++at) {
            std::vector<float> marks;
            std::vector<Vorn16s> fixed;
            Vorn16s next = 0;
            for (std::size_t i = 0; i < len; ++i) {
                if (i != at) ++next;
                marks.push_back(next);
                fixed.push_back(next);
            }
            expectCandidates(marks);
            expectCandidates(fixed, -7);
            Guarded<Vorn16s> dst(len);
            EXPECT_EQ(vornsPitchmarkToF0Cand_16s_Sfs(fixed.data(), dst, static_cast<int>(len), -7), vornStsDivByZero);
            EXPECT_EQ(dst[at], 0);
        }
    }
}

TEST(PitchmarkToF0Cand, ScaleFactors) {
    Random random(2);
    const auto marks = random.integers<Vorn16s>(50, -300, 300);
    for (int scaleFactor : {0, 1, -1, 15, -15, -16, -31, -32, 126, 127, 149, 150, -127, -128, INT_MAX, INT_MIN}) {
        expectCandidates(marks, scaleFactor);
    }
    const std::vector<Vorn16s> two = {3, 1};
    Guarded<Vorn16s> dst(2);
    ASSERT_EQ(vornsPitchmarkToF0Cand_16s_Sfs(two.data(), dst, 2, INT_MIN), vornStsNoErr);
    EXPECT_EQ(dst[0], 32767);
    EXPECT_EQ(dst[1], -32768);
    ASSERT_EQ(vornsPitchmarkToF0Cand_16s_Sfs(two.data(), dst, 2, INT_MAX), vornStsNoErr);
    EXPECT_EQ(dst[0], 0);
    EXPECT_EQ(dst[1], 0);
}

TEST(PitchmarkToF0Cand, Literal) {
    const float same[] = {10, 10};
    float dst[2];
    EXPECT_EQ(vornsPitchmarkToF0Cand_32f(same, dst, 2), 6);
    EXPECT_EQ(dst[0], 0.1f);
    EXPECT_EQ(dst[1], inf);
    const float zeros[] = {-0.0f, -0.0f};
    EXPECT_EQ(vornsPitchmarkToF0Cand_32f(zeros, dst, 2), 6);
    EXPECT_EQ(dst[0], inf);
    EXPECT_EQ(dst[1], inf);
    const float odd[] = {inf, std::nanf("")};
    EXPECT_EQ(vornsPitchmarkToF0Cand_32f(odd, dst, 2), vornStsNoErr);
    EXPECT_EQ(dst[0], 0.0f);
    EXPECT_TRUE(std::isnan(dst[1]));
    // 2^13 over 80, 100 and 64, and a tie: 102.4, 81.92, 128; 5/2 goes to the even number.
    const Vorn16s marks[] = {80, 180, 244};
    Vorn16s fixed[3];
    EXPECT_EQ(vornsPitchmarkToF0Cand_16s_Sfs(marks, fixed, 3, -13), vornStsNoErr);
    EXPECT_EQ(fixed[0], 102);
    EXPECT_EQ(fixed[1], 82);
    EXPECT_EQ(fixed[2], 128);
    const Vorn16s ties[] = {8, 12, -20};  // 4/8, 4/4, 4/-32
    EXPECT_EQ(vornsPitchmarkToF0Cand_16s_Sfs(ties, fixed, 3, -2), vornStsNoErr);
    EXPECT_EQ(fixed[0], 0);
    EXPECT_EQ(fixed[1], 1);
    EXPECT_EQ(fixed[2], 0);
    // Differences beyond 16 bits.
    const Vorn16s far[] = {32767, -32768, 32767};
    EXPECT_EQ(vornsPitchmarkToF0Cand_16s_Sfs(far, fixed, 3, -20), vornStsNoErr);
    EXPECT_EQ(fixed[0], 32);
    EXPECT_EQ(fixed[1], -16);
    EXPECT_EQ(fixed[2], 16);
}

// Invalid, denormal: cleared by the warning, even if they were set before; the rest of the register stays.
TEST(PitchmarkToF0Cand, FlagsAfterTheWarning) {
    constexpr unsigned invalid = 1, denormal = 2;
    const unsigned before = _mm_getcsr();
    for (unsigned mode : modes) {
        const RoundingMode guard(mode);
        for (bool zero : {false, true}) {
            const std::vector<float> marks = {1, zero ? 1.0f : 2.0f, 4};
            const std::vector<Vorn16s> fixed(marks.begin(), marks.end());
            float dst[3];
            Vorn16s fixedDst[3];
            for (bool single : {false, true}) {
                _mm_setcsr(_mm_getcsr() | invalid | denormal);
                const auto status = single ? vornsPitchmarkToF0Cand_32f(marks.data(), dst, 3)
                                           : vornsPitchmarkToF0Cand_16s_Sfs(fixed.data(), fixedDst, 3, -3);
                EXPECT_EQ(status, zero ? vornStsDivByZero : vornStsNoErr) << "stale flags count for nothing";
                if (zero) {
                    EXPECT_EQ(_mm_getcsr() & (invalid | denormal), 0u);
                }
                EXPECT_EQ(RoundingMode::current(), mode);
            }
        }
    }
    _mm_setcsr(before);
}

// Every alignment gives the same bits; the kernels under their own names are the same.
TEST(PitchmarkToF0Cand, AlignmentsAndKernels) {
    Random random(3);
    const std::size_t len = 77;
    const auto marks = random.floats(len, 0, 1000);
    const auto fixed = random.integers<Vorn16s>(len);
    const auto expected = model::candidates(marks).first;
    const auto expectedFixed = model::candidates(fixed, 1024.0f).first;
    for (std::size_t shift : {0, 2, 4, 8, 16, 34}) {
        for (auto* kernel : {vornsPitchmarkToF0_32f_M7, vornsPitchmarkToF0_32f_M7_Al}) {
            Offset<float> src(len, shift * 2), dst(len, shift * 6);
            src.assign(marks);
            VornStatus status = vornStsNoErr;
            kernel(src, dst, static_cast<std::int64_t>(len), &status);
            EXPECT_EQ(status, vornStsNoErr);
            EXPECT_TRUE(test::sameBits(dst.data(), expected.data(), len));
            EXPECT_TRUE(dst.surroundingsUntouched());
        }
        for (auto* kernel : {vornsPitchmarkToF0_16s_M7, vornsPitchmarkToF0_16s_M7_Al}) {
            Offset<Vorn16s> src(len, shift), dst(len, shift * 3);
            src.assign(fixed);
            VornStatus status = vornStsNoErr;
            kernel(src, dst, static_cast<std::int64_t>(len), 1024.0f, &status);
            EXPECT_TRUE(test::sameBits(dst.data(), expectedFixed.data(), len));
            EXPECT_TRUE(dst.surroundingsUntouched());
        }
    }
}

TEST(PitchmarkToF0Cand, AllocatesNothing) {
    if (!test::FailAllocation::available()) GTEST_SKIP() << "the sanitizer's allocator stands in the place of ours";
    const std::vector<Vorn16s> marks(5000, 7);
    std::vector<Vorn16s> dst(5000);
    const test::FailAllocation fail(1);
    EXPECT_EQ(vornsPitchmarkToF0Cand_16s_Sfs(marks.data(), dst.data(), 5000, 0), vornStsDivByZero);
    EXPECT_EQ(fail.calls(), 0);
}

template <class T, class Call>
void expectOrder(Call call) {
    struct Arguments {
        Guarded<T> data = Guarded<T>(std::vector<T>(9, T(1)));
        Guarded<T> out = Guarded<T>(9);
        const T* src = data.data();
        T* dst = out.data();
        int len = 9;
    };
    using A = Arguments;
    test::expectCheckOrder<A>([] { return A(); }, [=](A& a) { return call(a.src, a.dst, a.len); },
                              [](A& a) { return a.out.untouched(); },
                              {{"src", vornStsNullPtrErr, [](A& a) { a.src = nullptr; }},
                               {"dst", vornStsNullPtrErr, [](A& a) { a.dst = nullptr; }},
                               {"len 0", vornStsSizeErr, [](A& a) { a.len = 0; }},
                               {"len", vornStsSizeErr, [](A& a) { a.len = INT_MIN; }}});
}
TEST(PitchmarkToF0Cand, ChecksInOrder) {
    expectOrder<float>(vornsPitchmarkToF0Cand_32f);
    expectOrder<Vorn16s>(
        [](const Vorn16s* src, Vorn16s* dst, int len) { return vornsPitchmarkToF0Cand_16s_Sfs(src, dst, len, 0); });
}

}  // namespace
