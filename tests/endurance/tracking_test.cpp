// A day of noise tracking: the noise of every frame is that of the same frame a minute before, and windows go on.
#include "endurance/frames.h"

namespace {

using test::Frames;

constexpr int hop = 80, fftLen = 256;

// A tracker of either form, and the noise that it updates.
template <class T, class Update>
void expectADay(const test::FrameRows<T>& powers, VornsMCRAState* state, const Update& update, std::uint64_t digest) {
    std::vector<T> noise(Frames::bins), minute(static_cast<std::size_t>(Frames::count) * Frames::bins);
    test::expectEachMinuteTheSame("noise", test::minutesOfADay, 2, minute, [&] {
        for (int f = 0; f < Frames::count; ++f) {
            update(powers.row(f), state, noise.data());
            std::copy(noise.begin(), noise.end(), &minute[static_cast<std::size_t>(f) * Frames::bins]);
        }
    });
    // The record tells minWindow and frameIdx, its fifth and sixth integers: the count starts again and again.
    Vorn32s record[7];
    std::memcpy(record, state, sizeof record);
    EXPECT_EQ(record[4], 100);
    EXPECT_GE(record[5], 0);
    EXPECT_LE(record[5], 100);
    // Means of powers: never beyond the loudest, and no more than a rounding below none.
    const T loudest = *std::max_element(powers.values.begin(), powers.values.end());
    EXPECT_LE(*std::max_element(minute.begin(), minute.end()), loudest);
    EXPECT_GE(*std::min_element(minute.begin(), minute.end()), T(0));
    EXPECT_GT(*std::max_element(minute.begin(), minute.end()), T(0));
    test::Digest all;
    all.add(minute);
    EXPECT_EQ(all.value(), digest) << std::hex << "0x" << all.value();
}

TEST(NoiseTracking, ADayOf32f) {
    if (const char* why = test::whyNoDay()) GTEST_SKIP() << why;
    int size = 0;
    ASSERT_EQ(vornsGetSizeMCRA_32f(fftLen, &size), vornStsNoErr);
    std::vector<Vorn8u> memory(static_cast<std::size_t>(size));
    auto* state = reinterpret_cast<VornsMCRAState*>(memory.data());
    ASSERT_EQ(vornsAltInitMCRA_32f(test::sampleRate, fftLen, hop, state), vornStsNoErr);
    expectADay(test::frames().powers, state, vornsUpdateNoisePSDMCRA_32f_I, 0xe3ccca4b6b0f6df0);
}

TEST(NoiseTracking, ADayOf32s) {
    if (const char* why = test::whyNoDay()) GTEST_SKIP() << why;
    int size = 0;
    ASSERT_EQ(vornsGetSizeMCRA_32s(fftLen, &size), vornStsNoErr);
    std::vector<Vorn8u> memory(static_cast<std::size_t>(size));
    auto* state = reinterpret_cast<VornsMCRAState*>(memory.data());
    ASSERT_EQ(vornsAltInitMCRA_32s(test::sampleRate, fftLen, hop, state), vornStsNoErr);
    expectADay(test::frames().powers.as<Vorn32s>(0x1p16, 0.0), state, vornsUpdateNoisePSDMCRA_32s_I,
               0xe84ca282bb2ef330);
}

}  // namespace
