// Recordings of other sampling rates than that of the front end.
#pragma once

#include <span>
#include <vector>

#include "vornsr.h"

namespace digits {

// Rates, in samples a second, that recordings may have.
inline constexpr int kRates[] = {8000, 11025, 16000, 22050, 32000, 44100, 48000};

// The recording with `to` samples a second instead of `from`; silence goes before it and follows it. One sample comes
// for every from / to, the first at the place of the first.
std::vector<Vorn16s> resampled(std::span<const Vorn16s> samples, int from, int to);

}  // namespace digits
