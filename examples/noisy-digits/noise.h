// Noises that stand for places where people speak.
#pragma once

#include <cstddef>
#include <span>
#include <vector>

#include "random.h"
#include "vornsr.h"

namespace digits {

enum class Noise {
    kWhite,   // all frequencies alike
    kCar,     // rumble that falls by 6 to 12 dB an octave, and a hiss of tyres and wind 30 dB below it
    kBabble,  // six voices at a time
};

inline constexpr Noise kNoises[] = {Noise::kWhite, Noise::kCar, Noise::kBabble};

const char* nameOf(Noise noise);

class NoiseMaker {
public:
    // The recordings that babble is made of.
    explicit NoiseMaker(std::span<const std::vector<Vorn16s>> voices);

    // So many samples, at whatever loudness.
    std::vector<Vorn32f> make(Noise noise, std::size_t samples, Random random) const;

    bool canBabble() const { return !voices_.empty(); }

private:
    std::vector<Vorn32f> babble(std::size_t samples, Random& random) const;

    std::vector<std::vector<Vorn32f>> voices_;  // of mean square 1
};

}  // namespace digits
