// Makes the word models from recordings whose words are known.
#pragma once

#include <array>
#include <functional>
#include <vector>

#include "mixture.h"
#include "model.h"

namespace digits {

using TrainingSet = std::array<std::vector<Analysis>, kWords>;

inline constexpr int kStates = 8;
inline constexpr int kGaussians = 6;  // of a state, where nothing else is asked for
inline constexpr int kMostGaussians = 64;
inline constexpr std::size_t kLeastRecordings = 2;  // a variance needs two frames in each state

// All frames of the recordings.
Frames framesOf(const TrainingSet& recordings);

// How often train() calls step() on its way.
int trainingSteps(int gaussians);

// Every word needs kLeastRecordings recordings, each with at least kStates frames.
Models train(const TrainingSet& recordings, int gaussians, const std::function<void()>& step);

}  // namespace digits
