// Speakers as codebooks of their cepstra, the file of them, and the decision for the nearest one.
//
// F. K. Soong, A. E. Rosenberg, L. R. Rabiner, B. H. Juang, "A vector quantization approach to speaker recognition",
// 1985.
#pragma once

#include <filesystem>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "codebook.h"
#include "recordings.h"

namespace digits {

// A frame is compared by its cepstra 1 to 12, whose means stay in: they tell a voice, and its room, from another.
inline constexpr int kVoiceFeatures = kCepstra;

inline constexpr int kCodewords = 128;           // of a speaker, where nothing else is asked for
inline constexpr std::size_t kLongestName = 31;  // of a speaker, in bytes
inline constexpr int kLeastCodewords = 2, kMostCodewords = 1024;

// The frames of each speaker's recordings, as rows of kRowStep features.
using VoiceFrames = std::map<std::string, std::vector<Vorn32f>>;

VoiceFrames voiceFrames(const std::vector<Labelled>& recordings);

struct Speaker {
    std::string name;
    Codebook codebook;
};

using Speakers = std::vector<Speaker>;

// One codebook a speaker, whose words are all compared. Each speaker needs as many frames as there are codewords.
Speakers trainSpeakers(const VoiceFrames& frames, int codewords, const std::function<void()>& step);

void saveSpeakers(const Speakers& speakers, const std::filesystem::path& path);

// Throws InputError when the file is not a whole and undamaged model of this version and of this front end.
Speakers loadSpeakers(const std::filesystem::path& path);

// The speaker of that name, if the model has one.
std::optional<int> indexOf(const Speakers& speakers, const std::string& name);

// How far the frames of a recording are from each speaker's codewords: mean squared distances.
struct Verdict {
    std::vector<double> distortion;
    int best = 0;

    explicit Verdict(std::vector<double> distortions);
    int bestBut(int speaker) const;
    // How many times as far the first of two speakers is as the second.
    double ratio(int far, int near) const;
};

Verdict judge(const Speakers& speakers, const Stretch& frames);

}  // namespace digits
