// Shortlists are filled from scores of the codewords, and become tables of one bit a Gaussian for the frames of a
// recording.
//
// E. Bocchieri, "Vector quantization for the efficient computation of continuous density likelihoods", 1993.
#include "selection.h"

#include <algorithm>
#include <bit>
#include <numeric>
#include <utility>

#include "checked.h"
#include "input_error.h"
#include "recordings.h"

namespace digits {
namespace {

constexpr int kParts[] = {2, 4, 8, 16, 32, 64, 128};  // of the model that the lists hold
constexpr int kSlack = 32;  // bytes behind each list: the library then reads the lists by words

// The score of each Gaussian of the models on the frames of a codeword, on average: that of their mean, less what their
// spread takes away.
std::vector<Vorn32f> expectedScores(const Models& models, const Codebook& codebook, int codeword) {
    std::vector<Vorn32f> scores;
    for (const WordModel& word : models.words) {
        for (const State& state : word.states) {
            std::vector<Vorn32f> score = state.constant;
            DIGITS_CALL(vornsLogGaussMultiMix_32f_D2, state.mean.data(), state.inverseVariance.data(), kRowStep,
                        codebook.mean(codeword), kFeatures, score.data(), state.gaussians());
            for (int g = 0; g < state.gaussians(); ++g) {
                Vorn32f spread = 0.0f;
                DIGITS_CALL(vornsDotProd_32f, codebook.variance(codeword),
                            state.inverseVariance.data() + static_cast<std::ptrdiff_t>(g) * kRowStep, kFeatures,
                            &spread);
                scores.push_back(score[g] - 0.5f * spread);
            }
        }
    }
    return scores;
}

}  // namespace

std::vector<Vorn32s> codewordsOf(const Codebook& codebook, const Analysis& analysis) {
    std::vector<Vorn32s> codewords(static_cast<std::size_t>(analysis.frames) * kCodewordsOfFrame);
    for (int t = 0; t < analysis.frames; ++t) {
        codebook.nearest(analysis.row(t), kCodewordsOfFrame, codewords.data() + t * kCodewordsOfFrame);
    }
    return codewords;
}

Shortlists::Shortlists(const Models& models, const Codebook& codebook, int length)
    : models_(models), length_(length), floor_(0.0f) {
    const int gaussians = kWords * models.states() * models.gaussians();
    step_ = (gaussians + 7) / 8 + kSlack;
    bits_.assign(static_cast<std::size_t>(codebook.size()) * step_, 0);
    std::vector<Vorn8u*> rows;
    std::vector<Vorn32s> listed;
    for (int k = 0; k < codebook.size(); ++k) {
        rows.push_back(bits_.data() + static_cast<std::ptrdiff_t>(k) * step_);
        const std::vector<Vorn32f> scores = expectedScores(models, codebook, k);
        std::vector<Vorn32s> order(scores.size());
        std::iota(order.begin(), order.end(), 0);
        std::stable_sort(order.begin(), order.end(), [&](int a, int b) { return scores[a] > scores[b]; });
        listed.insert(listed.end(), order.begin(), order.begin() + length);
        // What is not on the list scores less than its last one.
        floor_ += scores[order[length - 1]] / static_cast<Vorn32f>(codebook.size());
    }
    rows_.assign(rows.begin(), rows.end());
    DIGITS_CALL(vornsFillShortlist_Row_1u, listed.data(), gaussians, length, rows.data(), codebook.size(), step_, 0);
}

Shortlists::Result Shortlists::decide(const Analysis& analysis, const std::vector<Vorn32s>& codewords) const {
    const int states = models_.states(), gaussians = models_.gaussians();
    // A road is in state s between these frames: it starts in the first state and ends in the last.
    const int height = analysis.frames - states + 1;
    std::vector<Vorn8u> sign(static_cast<std::size_t>((gaussians + 7) / 8) * height);
    std::vector<Vorn32f> scores(static_cast<std::size_t>(states) * height);
    Result result;
    result.decision = decideBy(models_, analysis.frames, [&](int w) {
        for (int s = 0; s < states; ++s) {
            const State& state = models_.words[w].states[s];
            DIGITS_CALL(vornsBuildSignTable_8u1u, codewords.data() + s * kCodewordsOfFrame, kCodewordsOfFrame,
                        rows_.data(), static_cast<int>(rows_.size()), step_, (w * states + s) * gaussians, sign.data(),
                        height, gaussians);
            DIGITS_CALL(vornsLogGaussMixture_Select_32f_D2, analysis.row(s), state.mean.data(),
                        state.inverseVariance.data(), kRowStep, kFeatures, state.constant.data(), sign.data(),
                        gaussians, scores.data() + static_cast<std::ptrdiff_t>(s) * height, height, floor_);
            for (const Vorn8u byte : sign) result.computed += std::popcount(byte);
            result.all += static_cast<long long>(gaussians) * height;
        }
        return [&](int t, int s) { return scores[static_cast<std::size_t>(s) * height + (t - s)]; };
    });
    return result;
}

Selection::Selection(const FrontEnd& frontEnd, const std::filesystem::path& directory, Models models)
    : models_(std::move(models)) {
    const LabelledSet set = readLabelled(frontEnd, directory, kMinFrames, "codebook");
    unusable_ = set.unusable;
    Frames frames;
    for (const Labelled& recording : set.recordings) {
        frames.push_back({recording.analysis.features.data(), recording.analysis.frames});
    }
    if (frames.empty()) throw InputError(directory, "has no usable recording to make a codebook of");
    codebook_.emplace(frames, kCodewords);
    for (const int part : kParts) lists_.emplace_back(models_, *codebook_, std::max(gaussians() / part, 1));
}

int Selection::gaussians() const { return kWords * models_.states() * models_.gaussians(); }

}  // namespace digits
