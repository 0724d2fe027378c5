// Stages that keep nothing between frames, for an hour: whatever went before, a frame gives what it gave alone. Of the
// two bands, whose blocks overlap, every cut into blocks gives what one call gives.
#include "endurance/frames.h"

namespace {

using test::Frames;

// From each frame of a minute, resultLen results.
template <class T, class Call>
void expectAnHour(const std::string& about, int resultLen, std::uint64_t digest, const Call& call) {
    if (const char* why = test::whyNoDay()) GTEST_SKIP() << why;
    std::vector<T> minute(static_cast<std::size_t>(Frames::count) * static_cast<std::size_t>(resultLen));
    test::expectEachMinuteTheSame(about, test::minutesOfAnHour, 0, minute, [&] {
        for (int f = 0; f < Frames::count; ++f) call(f, &minute[static_cast<std::size_t>(f * resultLen)]);
    });
    test::Digest all;
    all.add(minute);
    EXPECT_EQ(all.value(), digest) << about << std::hex << " 0x" << all.value();
}

TEST(Waveform, AnHour) {
    const std::vector<Vorn16s>& sound = test::frames().samples;
    const std::vector<Vorn32f> singles(sound.begin(), sound.end());
    std::vector<Vorn32f> taps(17);
    std::vector<Vorn16s> taps16s(17);
    for (int i = 0; i < 17; ++i) {
        taps16s[static_cast<std::size_t>(i)] = static_cast<Vorn16s>(900 - 100 * std::abs(i - 8));
        taps[static_cast<std::size_t>(i)] = static_cast<Vorn32f>(taps16s[static_cast<std::size_t>(i)]) * 0x1p-13f;
    }
    expectAnHour<Vorn32f>("pulses 32f", Frames::length, 0x3d3a589a7695e8fd, [&](int f, Vorn32f* dst) {
        vornsWaveProcessing_Aurora_32f(&singles[static_cast<std::size_t>(f * Frames::step)], dst);
    });
    expectAnHour<Vorn16s>("pulses 16s", Frames::length, 0x3c244b991b3f3b89, [&](int f, Vorn16s* dst) {
        vornsWaveProcessing_Aurora_16s(&sound[static_cast<std::size_t>(f * Frames::step)], dst);
    });
    expectAnHour<Vorn32f>("filter 32f", 80, 0xaf5e8d5f212e67d5, [&](int f, Vorn32f* dst) {
        vornsResidualFilter_Aurora_32f(&singles[static_cast<std::size_t>(f * Frames::step)], dst, taps.data());
    });
    expectAnHour<Vorn16s>("filter 16s", 80, 0x5a998873a528c0ef, [&](int f, Vorn16s* dst) {
        vornsResidualFilter_Aurora_16s_Sfs(&sound[static_cast<std::size_t>(f * Frames::step)], dst, taps16s.data(), 13);
    });
}

TEST(SmoothedPower, AnHour) {
    const test::FrameRows<Vorn32f>& spectra = test::frames().spectra;
    const auto spectra16s = spectra.as<Vorn16s>(0x1p6, -32768.0);
    const auto spectra32s = spectra.as<Vorn32s>(0x1p14, -0x1p31);
    expectAnHour<Vorn32f>("32f", Frames::smoothedBins, 0x4d3cc30d6a43a387,
                          [&](int f, Vorn32f* dst) { vornsSmoothedPowerSpectrumAurora_32f(spectra.row(f), dst, 256); });
    expectAnHour<Vorn16s>("16s", Frames::smoothedBins, 0x671a9c5546a518cb, [&](int f, Vorn16s* dst) {
        vornsSmoothedPowerSpectrumAurora_16s(spectra16s.row(f), dst, 256);
    });
    expectAnHour<Vorn32s>("32s", Frames::smoothedBins, 0x349118ae44058763, [&](int f, Vorn32s* dst) {
        vornsSmoothedPowerSpectrumAurora_32s_Sfs(spectra32s.row(f), dst, 256, 12);
    });
    expectAnHour<Vorn64s>("32s64s", Frames::smoothedBins, 0xd88330f5596b106c, [&](int f, Vorn64s* dst) {
        vornsSmoothedPowerSpectrumAurora_32s64s_Sfs(spectra32s.row(f), dst, 256, 0);
    });
}

// Blocks of uneven lengths, in fours so that the signs of the high band keep their turn.
template <class T, class Call>
void expectTwoBands(std::uint64_t digest, const Call& call) {
    if (const char* why = test::whyNoDay()) GTEST_SKIP() << why;
    constexpr int tapsLen = 15;
    const std::vector<Vorn16s> minute = test::minuteOfSound();
    std::vector<T> src(minute.begin(), minute.end());
    src.insert(src.end(), minute.begin(), minute.begin() + tapsLen);
    std::vector<T> low(test::minuteLen / 2), high(test::minuteLen / 2), cut(test::minuteLen), whole;
    call(src.data(), low.data(), high.data(), test::minuteLen, tapsLen);
    whole = low;
    whole.insert(whole.end(), high.begin(), high.end());
    constexpr int lengths[] = {4, 160, 12, 1000, 80, 4000};
    std::size_t block = 0;
    test::expectEachMinuteTheSame("bands", test::minutesOfAnHour, 0, cut, [&] {
        for (int at = 0; at < test::minuteLen;) {
            const int len = std::min(lengths[block++ % std::size(lengths)], test::minuteLen - at);
            const auto half = static_cast<std::size_t>(at / 2);
            call(&src[static_cast<std::size_t>(at)], &cut[half], &cut[test::minuteLen / 2 + half], len, tapsLen);
            at += len;
        }
    });
    EXPECT_EQ(cut, whole);
    test::Digest all;
    all.add(cut);
    EXPECT_EQ(all.value(), digest) << std::hex << "0x" << all.value();
}

TEST(TwoBands, AnHour) {
    const std::vector<Vorn16s> taps16s = {-40, 0, 130, 0, -480, 0, 2490, 4096, 2490, 0, -480, 0, 130, 0, -40};
    const std::vector<Vorn32f> taps(taps16s.begin(), taps16s.end());
    expectTwoBands<Vorn32f>(0x2be99e5dd04320e1,
                            [&](const Vorn32f* src, Vorn32f* low, Vorn32f* high, int len, int tapsLen) {
                                vornsLowHighFilter_Aurora_32f(src, low, high, len, taps.data(), tapsLen);
                            });
    expectTwoBands<Vorn16s>(0x2e74f2d58bac6863,
                            [&](const Vorn16s* src, Vorn16s* low, Vorn16s* high, int len, int tapsLen) {
                                vornsLowHighFilter_Aurora_16s_Sfs(src, low, high, len, taps16s.data(), tapsLen, 13);
                            });
}

}  // namespace
