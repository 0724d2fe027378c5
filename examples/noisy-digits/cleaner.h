// Takes the noise out of a recording, by each of the methods that the front ends stand on.
#pragma once

#include <span>
#include <vector>

#include "vornsr.h"

namespace digits {

enum class Method {
    kTwoStage,      // two Wiener filters in a row, designed every 10 ms
    kFixed,         // the same in 16 and 32 bits
    kWiener,        // gains of the tracked noise, by the Wiener rule
    kEphraimMalah,  // and by the rule of Ephraim and Malah
};

inline constexpr Method kMethods[] = {Method::kTwoStage, Method::kFixed, Method::kWiener, Method::kEphraimMalah};

const char* nameOf(Method method);

// As long as the recording, and not delayed.
std::vector<Vorn16s> cleaned(std::span<const Vorn16s> samples, Method method);

}  // namespace digits
