#include "mixing.h"

#include "checked.h"
#include "level.h"

namespace digits {
namespace {

constexpr Vorn32f kSpeechLevel = 1642.0f;  // 26 dB below the largest sample, so that next to nothing is clipped
constexpr int kFloor = 50;                 // decibels below the word

// 10^(-decibels / 20), for multiples of 5.
Vorn32f attenuation(int decibels) {
    constexpr double kFive = 0.5623413251903491;  // 10^(-5 / 20)
    double factor = 1.0;
    for (; decibels > 0; decibels -= 5) factor *= kFive;
    for (; decibels < 0; decibels += 5) factor /= kFive;
    return static_cast<Vorn32f>(factor);
}

// Adds the noise to the wave, so that its part under the word is `decibels` weaker than the word.
void add(std::vector<Vorn32f> noise, int decibels, std::size_t begin, std::size_t end, std::vector<Vorn32f>& wave) {
    const auto length = static_cast<int>(wave.size());
    const Vorn32f level = levelOf(std::span(noise).subspan(begin, end - begin));
    DIGITS_CALL(vornsMulC_32f_I, kSpeechLevel * attenuation(decibels) / level, noise.data(), length);
    DIGITS_CALL(vornsAdd_32f_I, noise.data(), wave.data(), length);
}

}  // namespace

Mixed mixed(std::span<const Vorn16s> recording, Noise noise, Snr snr, const NoiseMaker& maker, const Random& random) {
    const std::size_t begin = kMargin, end = begin + recording.size(), samples = end + kMargin;
    std::vector<Vorn32f> wave(samples, 0.0f);
    const std::vector<Vorn32f> word = scaledTo(kSpeechLevel, recording);
    std::copy(word.begin(), word.end(), wave.begin() + kMargin);
    add(maker.make(Noise::kWhite, samples, random.split(0)), kFloor, begin, end, wave);
    if (snr) add(maker.make(noise, samples, random.split(1)), *snr, begin, end, wave);

    Mixed result{std::vector<Vorn16s>(samples), begin, end};
    DIGITS_CALL(vornsConvert_32f16s_Sfs, wave.data(), result.samples.data(), static_cast<int>(samples), vornRndNear, 0);
    return result;
}

}  // namespace digits
