// Makes the word models from recordings whose words are known.
#pragma once

#include <array>
#include <functional>
#include <vector>

#include "model.h"

namespace digits {

using TrainingSet = std::array<std::vector<Analysis>, kWords>;

inline constexpr int kStates = 8;
inline constexpr int kGaussians = 6;
inline constexpr std::size_t kLeastRecordings = 2;  // a variance needs two frames in each state
inline constexpr int kTrainingSteps = kWords * 12;

// Every word needs kLeastRecordings recordings, each with at least kStates frames. Calls step() kTrainingSteps times on
// its way.
Models train(const TrainingSet& recordings, const std::function<void()>& step);

}  // namespace digits
