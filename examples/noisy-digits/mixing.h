// Puts a recording into a stretch of noise.
#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <vector>

#include "front_end.h"
#include "noise.h"

namespace digits {

// What goes before a word and follows it. The recordings are cut close to the word, and whoever estimates a noise needs
// some of it alone.
inline constexpr std::size_t kMargin = 3200;  // samples: 400 ms

// How much louder the word is than the noise that it stands in.
using Snr = std::optional<int>;  // decibels; none: no noise but the floor

inline constexpr int kLevels[] = {20, 15, 10, 5, 0, -5};  // decibels
inline constexpr int kLowestOfMean = 0;                   // the means are over the levels down to this one

struct Mixed {
    std::vector<Vorn16s> samples;
    std::size_t begin, end;  // where the word stands
};

// The word at the same level in every mixture, the noise by so many decibels of mean power below it, both taken over
// the word's length; and a floor of white noise 50 dB below the word, which keeps digital silence out of the clean
// condition. The random numbers are the same for each level, so that a noise only grows louder.
Mixed mixed(std::span<const Vorn16s> recording, Noise noise, Snr snr, const NoiseMaker& maker, const Random& random);

}  // namespace digits
