// Scores of a large model in part: only those Gaussians that are on the shortlists of a frame's codewords.
#pragma once

#include <filesystem>
#include <optional>
#include <vector>

#include "codebook.h"
#include "decode.h"

namespace digits {

inline constexpr int kCodewords = 256;
inline constexpr int kCodewordsOfFrame = 4;  // whose shortlists are taken together

// The codewords of each frame of a recording, kCodewordsOfFrame of them, frame after frame.
std::vector<Vorn32s> codewordsOf(const Codebook& codebook, const Analysis& analysis);

// For each codeword the Gaussians that score best on its frames, as one bit each. All Gaussians of the models are
// numbered through, word by word and state by state.
class Shortlists {
public:
    // Lists of the given length, at most all Gaussians of the models, which must outlive this object.
    Shortlists(const Models& models, const Codebook& codebook, int length);

    int length() const { return length_; }

    struct Result {
        Decision decision;
        long long computed = 0;  // Gaussians that were scored, over all frames and states,
        long long all = 0;       // and how many there are
    };
    Result decide(const Analysis& analysis, const std::vector<Vorn32s>& codewords) const;

private:
    const Models& models_;
    int length_;
    int step_;  // bytes of a list
    std::vector<Vorn8u> bits_;
    std::vector<const Vorn8u*> rows_;
    Vorn32f floor_;  // the score of a state without any Gaussian on the lists
};

// A large model with its codebook, and shortlists of several lengths.
class Selection {
public:
    // The codebook is made from the recordings of the directory.
    Selection(const FrontEnd& frontEnd, const std::filesystem::path& directory, Models models);
    Selection(const Selection&) = delete;  // the lists look at the models
    Selection& operator=(const Selection&) = delete;

    int unusable() const { return unusable_; }
    int gaussians() const;
    const Models& models() const { return models_; }
    const Codebook& codebook() const { return *codebook_; }
    const std::vector<Shortlists>& lists() const { return lists_; }  // the longest first

private:
    Models models_;
    int unusable_ = 0;
    std::optional<Codebook> codebook_;
    std::vector<Shortlists> lists_;
};

}  // namespace digits
