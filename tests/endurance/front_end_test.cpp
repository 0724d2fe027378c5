// A day of the noise-robust front-end: its detector, its equaliser, and what its noise reduction hands from frame to
// frame.
#include <cstdlib>

#include "endurance/frames.h"

namespace {

using test::Frames;

// ---- Detection

template <class T>
struct Detector;
template <>
struct Detector<Vorn32f> {
    static constexpr auto* init = vornsVADInit_Aurora_32f;
    static constexpr auto* flush = vornsVADFlush_Aurora_32f;
    static constexpr auto* decide = vornsVADDecision_Aurora_32f;
};
template <>
struct Detector<Vorn16s> {
    static constexpr auto* init = vornsVADInit_Aurora_16s;
    static constexpr auto* flush = vornsVADFlush_Aurora_16s;
    static constexpr auto* decide = vornsVADDecision_Aurora_16s;
};

// A record of 64 bytes, whose last four count the frames.
struct Record {
    unsigned char bytes[64];
    VornsVADState* state() { return reinterpret_cast<VornsVADState*>(bytes); }
    std::int32_t count() const {
        std::int32_t n;
        std::memcpy(&n, bytes + 60, sizeof n);
        return n;
    }
    void setCount(std::int32_t n) { std::memcpy(bytes + 60, &n, sizeof n); }
};

template <class T>
void decideMinute(Record& record, const test::FrameRows<T>& bands, const test::FrameRows<T>& spectra,
                  std::vector<unsigned char>& decisions) {
    for (int f = 0; f < Frames::count; ++f) {
        int result = 0;
        Detector<T>::decide(bands.row(f), spectra.row(f), 0, &result, record.state());
        decisions[static_cast<std::size_t>(f)] = static_cast<unsigned char>(result);
    }
}

// Behind the day the count is brought near its end, as 248 days at 100 frames a second would: it stays there, and
// nothing but the count tells.
template <class T>
void expectADayOfDecisions(const test::FrameRows<T>& bands, const test::FrameRows<T>& spectra, std::uint64_t digest) {
    if (const char* why = test::whyNoDay()) GTEST_SKIP() << why;
    Record record;
    ASSERT_EQ(Detector<T>::init(record.state()), vornStsNoErr);
    std::vector<unsigned char> decisions(Frames::count);
    test::expectEachMinuteTheSame("decisions", test::minutesOfADay, 5, decisions,
                                  [&] { decideMinute(record, bands, spectra, decisions); });
    EXPECT_EQ(record.count(), test::minutesOfADay * Frames::count);
    EXPECT_GT(std::count(decisions.begin(), decisions.end(), vornVADSpeech), 0);
    EXPECT_GT(std::count(decisions.begin(), decisions.end(), vornVADNonSpeech), 0);
    EXPECT_EQ(std::count(decisions.begin(), decisions.end(), vornVADUndecided), 0);

    Record old = record;
    old.setCount(0x7FFFFFFF - 1000);
    std::vector<unsigned char> later(Frames::count);
    decideMinute(old, bands, spectra, later);
    EXPECT_EQ(old.count(), 0x7FFFFFFF);
    EXPECT_EQ(later, decisions);
    decideMinute(record, bands, spectra, later);
    for (int i = 0; i < 14; ++i) {
        int one = 0, other = 0;
        Detector<T>::flush(&one, record.state());
        Detector<T>::flush(&other, old.state());
        EXPECT_EQ(one, other) << "flush " << i;
    }
    EXPECT_EQ(old.count(), 0x7FFFFFFF);
    old.setCount(record.count());
    EXPECT_EQ(std::memcmp(old.bytes, record.bytes, sizeof old.bytes), 0);
    test::Digest all;
    all.add(decisions);
    all.add(record.bytes, sizeof record.bytes);
    EXPECT_EQ(all.value(), digest) << std::hex << "0x" << all.value();
}

TEST(Detection, ADayOf32f) {
    expectADayOfDecisions<Vorn32f>(test::steadyFrames().energies.as<Vorn32f>(0x1p5, 0.0),
                                   test::steadyFrames().smoothed.as<Vorn32f>(0x1p5, 0.0), 0x604eba12d96f5afb);
}
TEST(Detection, ADayOf16s) {
    expectADayOfDecisions<Vorn16s>(test::steadyFrames().energies.as<Vorn16s>(0x1p5, 0.0),
                                   test::steadyFrames().smoothed.as<Vorn16s>(0x1p5, 0.0), 0xd3322569713fc965);
}

// The trackers follow what stands within a half of them, and fall: nothing takes them further up. Half a second of
// zeros leaves them so low that all which comes behind is speech, until the detector is begun anew.
template <class T>
void expectDeafBehindSilence(const test::FrameRows<T>& bands, const test::FrameRows<T>& spectra) {
    Record record;
    ASSERT_EQ(Detector<T>::init(record.state()), vornStsNoErr);
    std::vector<unsigned char> decisions(Frames::count);
    decideMinute(record, bands, spectra, decisions);
    EXPECT_GT(std::count(decisions.begin(), decisions.end(), vornVADNonSpeech), 0);
    const std::vector<T> none(64);
    int result = 0;
    for (int f = 0; f < 50; ++f) Detector<T>::decide(none.data(), none.data(), 0, &result, record.state());
    decideMinute(record, bands, spectra, decisions);  // which takes a run of frames to be heard again
    for (int minute = 1; minute < test::minutesOfAnHour; ++minute) {
        decideMinute(record, bands, spectra, decisions);
        EXPECT_EQ(std::count(decisions.begin(), decisions.end(), vornVADSpeech), Frames::count) << "minute " << minute;
    }
    ASSERT_EQ(Detector<T>::init(record.state()), vornStsNoErr);
    decideMinute(record, bands, spectra, decisions);
    EXPECT_GT(std::count(decisions.begin(), decisions.end(), vornVADNonSpeech), 0);
}

TEST(Detection, SilenceLeavesSpeechFor32f) {
    expectDeafBehindSilence<Vorn32f>(test::steadyFrames().energies.as<Vorn32f>(0x1p5, 0.0),
                                     test::steadyFrames().smoothed.as<Vorn32f>(0x1p5, 0.0));
}
TEST(Detection, SilenceLeavesSpeechFor16s) {
    expectDeafBehindSilence<Vorn16s>(test::steadyFrames().energies.as<Vorn16s>(0x1p5, 0.0),
                                     test::steadyFrames().smoothed.as<Vorn16s>(0x1p5, 0.0));
}

// ---- Equalisation

// The weight of a frame: none up to an energy of 211/64, all from 275/64 on.
double weightOf(double energy) { return std::clamp(energy - 211.0 / 64, 0.0, 1.0); }

// The bias is a mean of what the cepstra have above the reference, so it lies among them; and in a settled minute the
// frames, each with its weight, are as much above the reference as below it, but for what the steps of the bias round
// away: from lowest to highest a frame of full weight.
template <class T, class Call>
void expectADayOfEqualisation(const test::FrameRows<T>& cepstra, double unit, double lowest, double highest,
                              std::uint64_t digest, const Call& call) {
    if (const char* why = test::whyNoDay()) GTEST_SKIP() << why;
    std::vector<T> ref(Frames::cepstra), bias(Frames::cepstra), minute(cepstra.values.size());
    for (int i = 0; i < Frames::cepstra; ++i) ref[static_cast<std::size_t>(i)] = static_cast<T>((i % 5 - 2) * unit / 4);
    test::expectEachMinuteTheSame("cepstra", test::minutesOfADay, 5, minute, [&] {
        std::copy(cepstra.values.begin(), cepstra.values.end(), minute.begin());
        for (int f = 0; f < Frames::count; ++f) {
            call(ref.data(), &minute[static_cast<std::size_t>(f * Frames::cepstra)], bias.data(),
                 test::frames().logEnergy[static_cast<std::size_t>(f)]);
        }
    });
    double worst = 0;
    for (int i = 0; i < Frames::cepstra; ++i) {
        const auto at = static_cast<std::size_t>(i);
        double low = 0, high = 0, sum = 0, weights = 0;
        int moved = 0;
        for (int f = 0; f < Frames::count; ++f) {
            const double above = static_cast<double>(cepstra.row(f)[i]) - static_cast<double>(ref[at]);
            low = std::min(low, above), high = std::max(high, above);
            const double weight = weightOf(static_cast<double>(test::frames().logEnergy[static_cast<std::size_t>(f)]));
            sum += weight * (static_cast<double>(minute[static_cast<std::size_t>(f * Frames::cepstra + i)]) -
                             static_cast<double>(ref[at]));
            weights += weight;
            moved += weight > 0;
        }
        ASSERT_GT(weights, 1000.0);
        EXPECT_GE(static_cast<double>(bias[at]), low) << i;
        EXPECT_LE(static_cast<double>(bias[at]), high) << i;
        const double mean = sum / weights;
        EXPECT_GE(mean, lowest * moved / weights) << i;
        EXPECT_LE(mean, highest * moved / weights) << i;
        if (std::fabs(mean) > std::fabs(worst)) worst = mean;
    }
    ::testing::Test::RecordProperty("mean", std::to_string(worst));
    test::Digest all;
    all.add(minute);
    all.add(bias);
    EXPECT_EQ(all.value(), digest) << std::hex << "0x" << all.value();
}

// Singles: the sum that moves a bias below 16 rounds by 2^-21 at most, its product by less; over a step of 9/1024.
TEST(Equalisation, ADayOf32f) {
    const double rounding = 2 * 0x1p-21 / (9.0 / 1024);
    expectADayOfEqualisation<Vorn32f>(test::frames().cepstrum, 1.0, -rounding, rounding, 0x098e2b891b005870,
                                      [](const Vorn32f* ref, Vorn32f* x, Vorn32f* bias, float energy) {
                                          vornsBlindEqualization_Aurora_32f(ref, x, bias, Frames::cepstra, energy);
                                      });
}

// 16 bits, in Q6: the move of a bias is rounded down, by less than 1, which a step of 576/65536 makes 113.8 of the
// cepstrum: so far above the reference the mean may stay.
TEST(Equalisation, ADayOf16s) {
    expectADayOfEqualisation<Vorn16s>(
        test::frames().cepstrum.as<Vorn16s>(64.0, -32768.0), 64.0, -0.001, 65536.0 / 576, 0xae41153d130e695d,
        [](const Vorn16s* ref, Vorn16s* x, Vorn16s* bias, float energy) {
            vornsBlindEqualization_Aurora_16s(ref, x, bias, Frames::cepstra, static_cast<int>(energy * 64.0f));
        });
}

// ---- Noise reduction

// The estimate of the noise and the denoised spectrum go from frame to frame; the front-end keeps the estimate above a
// floor. The gain's floor is 0.0736, 1206 of 16384.
template <class T, class Step>
void expectADayOfNoise(const test::FrameRows<T>& spectra, T start, T leastGain, T mostGain, std::uint64_t digest,
                       const Step& step) {
    if (const char* why = test::whyNoDay()) GTEST_SKIP() << why;
    constexpr std::size_t bins = Frames::smoothedBins;
    std::vector<T> noise(bins, start), den(bins), gains(spectra.values.size());
    test::expectEachMinuteTheSame("gains", test::minutesOfADay, 5, gains, [&] {
        for (int f = 0; f < Frames::count; ++f) {
            step(spectra.row(f), noise.data(), den.data(), &gains[static_cast<std::size_t>(f) * bins]);
        }
    });
    EXPECT_GE(*std::min_element(gains.begin(), gains.end()), leastGain);
    EXPECT_LE(*std::max_element(gains.begin(), gains.end()), mostGain);
    EXPECT_GT(*std::min_element(noise.begin(), noise.end()), T(0));
    test::Digest all;
    all.add(gains);
    all.add(noise);
    EXPECT_EQ(all.value(), digest) << std::hex << "0x" << all.value();
}

TEST(NoiseReduction, ADayOf32f) {
    expectADayOfNoise<Vorn32f>(test::frames().smoothed, 0.01f, 0.0735f, 1.0f, 0x0e7a113288788de9,
                               [](const Vorn32f* in, Vorn32f* noise, Vorn32f* den, Vorn32f* gain) {
                                   vornsNoiseSpectrumUpdate_Aurora_32f(in, noise, noise, Frames::smoothedBins);
                                   for (int k = 0; k < Frames::smoothedBins; ++k)
                                       noise[k] = std::max(noise[k], 0x1p-14f);
                                   vornsWienerFilterDesign_Aurora_32f(in, noise, den, gain, Frames::smoothedBins);
                                   for (int k = 0; k < Frames::smoothedBins; ++k) den[k] = in[k] * gain[k] * gain[k];
                               });
}

TEST(NoiseReduction, ADayOf16s) {
    expectADayOfNoise<Vorn16s>(test::frames().smoothed.as<Vorn16s>(0x1p6, 0.0), 64, 1206, 16383, 0xe28fdba7e63fc6d2,
                               [](const Vorn16s* in, Vorn16s* noise, Vorn16s* den, Vorn16s* gain) {
                                   vornsNoiseSpectrumUpdate_Aurora_16s_Sfs(in, noise, noise, Frames::smoothedBins, 0);
                                   for (int k = 0; k < Frames::smoothedBins; ++k)
                                       noise[k] = std::max(noise[k], Vorn16s(16));
                                   vornsWienerFilterDesign_Aurora_16s(in, noise, den, gain, Frames::smoothedBins);
                                   for (int k = 0; k < Frames::smoothedBins; ++k) {
                                       den[k] = static_cast<Vorn16s>(((in[k] * gain[k] >> 14) * gain[k]) >> 14);
                                   }
                               });
}

// Integers of 32 bits have the estimate alone. What stands for the gain here is the estimate itself.
TEST(NoiseReduction, ADayOf32s) {
    expectADayOfNoise<Vorn32s>(test::frames().smoothed.as<Vorn32s>(0x1p14, 0.0), 16384, 16, 1 << 30, 0x5db4973fae28522b,
                               [](const Vorn32s* in, Vorn32s* noise, Vorn32s*, Vorn32s* estimate) {
                                   vornsNoiseSpectrumUpdate_Aurora_32s_Sfs(in, noise, noise, Frames::smoothedBins, 0);
                                   for (int k = 0; k < Frames::smoothedBins; ++k) {
                                       noise[k] = std::max(noise[k], 16);
                                       estimate[k] = noise[k];
                                   }
                               });
}

// Without a floor, silence takes an estimate to zero, by a tenth a frame, and it is a product of itself: it stays there
// for good, and with it the gain at its floor.
TEST(NoiseReduction, AnEstimateOfZeroStays) {
    constexpr int bins = Frames::smoothedBins;
    std::vector<Vorn32f> noise(bins, 1.0f), none(bins), gain(bins);
    std::vector<Vorn16s> noise16s(bins, 1000), none16s(bins);
    std::vector<Vorn32s> noise32s(bins, 1 << 30), none32s(bins);
    int frames = 0;
    while (noise[0] > 0.0f && ++frames < 2000) {
        vornsNoiseSpectrumUpdate_Aurora_32f(none.data(), noise.data(), noise.data(), bins);
    }
    ::testing::Test::RecordProperty("frames", frames);
    EXPECT_GT(frames, 800);  // 0.9^800 is 2.5e-37
    EXPECT_LT(frames, 1100);
    for (int f = 0; f < 300; ++f) {
        vornsNoiseSpectrumUpdate_Aurora_16s_Sfs(none16s.data(), noise16s.data(), noise16s.data(), bins, 0);
        vornsNoiseSpectrumUpdate_Aurora_32s_Sfs(none32s.data(), noise32s.data(), noise32s.data(), bins, 0);
    }
    const std::vector<Vorn32f> loud(bins, 100.0f);
    const std::vector<Vorn16s> loud16s(bins, 10000);
    const std::vector<Vorn32s> loud32s(bins, 1 << 20);
    for (int f = 0; f < 1000; ++f) {
        vornsNoiseSpectrumUpdate_Aurora_32f(loud.data(), noise.data(), noise.data(), bins);
        vornsNoiseSpectrumUpdate_Aurora_16s_Sfs(loud16s.data(), noise16s.data(), noise16s.data(), bins, 0);
        vornsNoiseSpectrumUpdate_Aurora_32s_Sfs(loud32s.data(), noise32s.data(), noise32s.data(), bins, 0);
    }
    for (int k = 0; k < bins; ++k) {
        const auto at = static_cast<std::size_t>(k);
        EXPECT_EQ(noise[at], 0.0f);
        EXPECT_EQ(noise16s[at], 0);
        EXPECT_EQ(noise32s[at], 0);
    }
    vornsWienerFilterDesign_Aurora_32f(loud.data(), noise.data(), none.data(), gain.data(), bins);
    EXPECT_NEAR(gain[0], 0.0736f, 0.0001f);
}

}  // namespace
