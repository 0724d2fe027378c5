// K-means in the steps of the library: distances, the least of them, sums around the codeword, and the update.
#include "codebook.h"

#include <limits>

#include "checked.h"

namespace digits {
namespace {

constexpr Vorn32f kSplitDistance = 0.2f;   // of a codeword to its halves, in deviations of all frames
constexpr Vorn32f kLeastVariance = 1e-4f;  // for a feature that never changes
constexpr int kSweeps = 2;

}  // namespace

Codebook::Codebook(const Frames& frames, int codewords) {
    Moments all(frames);
    mean_ = std::move(all.mean);
    spread_ = std::move(all.variance);
    const std::vector<Vorn32f> least(kFeatures, kLeastVariance);
    DIGITS_CALL(vornsMaxEvery_32f_I, least.data(), spread_.data(), kFeatures);
    variance_ = spread_;
    while (size() < codewords) {
        split();
        for (int i = 0; i < kSweeps; ++i) sweep(frames);
    }
}

void Codebook::split() {
    const int before = size();
    const auto elements = mean_.size();
    mean_.resize(2 * elements, 0.0f);
    variance_.resize(2 * elements, 0.0f);
    weight_.assign(2 * elements, 0.0f);
    for (int k = 0; k < before; ++k) {
        const std::ptrdiff_t at = static_cast<std::ptrdiff_t>(k) * kRowStep;
        const std::ptrdiff_t other = at + static_cast<std::ptrdiff_t>(elements);
        DIGITS_CALL(vornsGaussianSplit_32f, mean_.data() + at, spread_.data(), mean_.data() + other,
                    variance_.data() + other, kFeatures, kSplitDistance);
    }
    for (std::size_t at = 0; at < weight_.size(); at += kRowStep) {
        DIGITS_CALL(vornsDivCRev_32f, spread_.data(), 1.0f, weight_.data() + at, kFeatures);
    }
}

void Codebook::sweep(const Frames& frames) {
    std::vector<Vorn32f> count(static_cast<std::size_t>(size()), 0.0f), distance(mean_.size(), 0.0f);
    std::vector<Vorn32f> square(mean_.size(), 0.0f);
    for (const Stretch& stretch : frames) {
        for (int t = 0; t < stretch.height; ++t) {
            Vorn32s k = 0;
            nearest(stretch.row(t), 1, &k);
            const std::ptrdiff_t at = static_cast<std::ptrdiff_t>(k) * kRowStep;
            DIGITS_CALL(vornsMeanVarAcc_32f, stretch.row(t), mean(k), distance.data() + at, square.data() + at,
                        kFeatures, 1.0f);
            count[k] += 1.0f;
        }
    }
    const std::vector<Vorn32f> floor(kFeatures, kLeastVariance);
    for (int k = 0; k < size(); ++k) {
        const std::ptrdiff_t at = static_cast<std::ptrdiff_t>(k) * kRowStep;
        if (DIGITS_WARNS(vornStsZeroOcc, vornsUpdateMean_32f, distance.data() + at, mean_.data() + at, kFeatures,
                         count[k])) {
            continue;
        }
        DIGITS_WARNS(vornStsBelowFloor, vornsUpdateVar_32f, distance.data() + at, square.data() + at, floor.data(),
                     variance_.data() + at, kFeatures, count[k], count[k]);
    }
}

void Codebook::nearest(const Vorn32f* frame, int count, Vorn32s* numbers) const {
    std::vector<Vorn32f> distance(static_cast<std::size_t>(size()));
    DIGITS_CALL(vornsMahDistMultiMix_32f_D2, mean_.data(), weight_.data(), kRowStep, frame, kFeatures, distance.data(),
                size());
    for (int i = 0; i < count; ++i) {
        Vorn32f least = 0.0f;
        int at = 0;
        DIGITS_CALL(vornsMinIndx_32f, distance.data(), size(), &least, &at);
        numbers[i] = at;
        distance[at] = std::numeric_limits<Vorn32f>::max();
    }
}

}  // namespace digits
