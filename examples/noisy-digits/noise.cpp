#include "noise.h"

#include <algorithm>

#include "level.h"

namespace digits {
namespace {

constexpr int kTalkers = 6;
constexpr double kRumblePole = 0.95;  // a low pass at about 65 Hz
constexpr double kBodyPole = 0.8;     // and one at about 280 Hz
constexpr double kHiss = 0.03;        // of the rumble's amplitude
constexpr int kSettling = 1000;       // samples until the low passes have forgotten that they began at zero

std::vector<Vorn32f> white(std::size_t samples, Random& random) {
    std::vector<Vorn32f> wave(samples);
    for (Vorn32f& sample : wave) sample = static_cast<Vorn32f>(random.normal());
    return wave;
}

std::vector<Vorn32f> car(std::size_t samples, Random& random) {
    // Both low passes keep the variance near 1: the factors are the roots of 1 - pole^2, the second one for what the
    // first one leaves.
    constexpr double kRumbleGain = 0.3122498999199199, kBodyGain = 0.22;
    double rumble = 0.0, body = 0.0;
    std::vector<Vorn32f> wave(samples);
    const auto step = [&] {
        rumble = kRumblePole * rumble + kRumbleGain * random.normal();
        body = kBodyPole * body + kBodyGain * rumble;
        return body + kHiss * random.normal();
    };
    for (int i = 0; i < kSettling; ++i) step();
    for (Vorn32f& sample : wave) sample = static_cast<Vorn32f>(step());
    return wave;
}

}  // namespace

const char* nameOf(Noise noise) {
    static constexpr const char* kNames[] = {"white", "car", "babble"};
    return kNames[static_cast<int>(noise)];
}

NoiseMaker::NoiseMaker(std::span<const std::vector<Vorn16s>> voices) {
    for (const std::vector<Vorn16s>& voice : voices) voices_.push_back(scaledTo(1.0f, voice));
}

std::vector<Vorn32f> NoiseMaker::make(Noise noise, std::size_t samples, Random random) const {
    switch (noise) {
        case Noise::kWhite:
            return white(samples, random);
        case Noise::kCar:
            return car(samples, random);
        default:
            return babble(samples, random);
    }
}

// Each talker says one recording after another, and is somewhere in the first one when the noise begins.
std::vector<Vorn32f> NoiseMaker::babble(std::size_t samples, Random& random) const {
    std::vector<Vorn32f> wave(samples, 0.0f);
    for (int talker = 0; talker < kTalkers; ++talker) {
        const std::vector<Vorn32f>* voice =
            &voices_[static_cast<std::size_t>(random.below(static_cast<int>(voices_.size())))];
        auto at = static_cast<std::size_t>(random.below(static_cast<int>(voice->size())));
        for (std::size_t n = 0; n < samples;) {
            const std::size_t run = std::min(samples - n, voice->size() - at);
            for (std::size_t i = 0; i < run; ++i) wave[n + i] += (*voice)[at + i];
            n += run;
            voice = &voices_[static_cast<std::size_t>(random.below(static_cast<int>(voices_.size())))];
            at = 0;
        }
    }
    return wave;
}

}  // namespace digits
