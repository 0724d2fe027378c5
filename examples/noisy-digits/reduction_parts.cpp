#include "reduction_parts.h"

#include "cosine.h"

namespace digits {

bool EnergyDetector::speaks(const Vorn32f* block) {
    constexpr Vorn32f kEnergyGuard = 64.0f;
    constexpr Vorn32f kPerLogarithm = 23.083120f;  // 16 / ln 2: sixteen a doubling
    constexpr Vorn32f kUpdateBelow = 20.0f, kSpeechAbove = 15.0f, kLeastMean = 80.0f;
    constexpr int kSettled = 10, kSilentFrames = 4, kLongRun = 4, kHangOver = 15;

    Vorn32f squares = 0.0f;
    DIGITS_CALL(vornsDotProd_32f, block, block, kFrameStep, &squares);
    Vorn32f energy = (kEnergyGuard + squares) / kEnergyGuard;
    DIGITS_CALL(vornsLn_32f_I, &energy, 1);
    energy = 0.5f + kPerLogarithm * energy;

    ++frame_;
    const bool settling = frame_ < kSettled;
    if (settling || energy - mean_ < kUpdateBelow) {
        const Vorn32f share = settling ? 1.0f / static_cast<Vorn32f>(frame_) : energy < mean_ ? 0.03f : 0.01f;
        mean_ = std::max(mean_ + share * (energy - mean_), kLeastMean);
    }
    if (frame_ <= kSilentFrames) return false;
    if (energy - mean_ > kSpeechAbove) {
        ++run_;
        return true;
    }
    if (run_ > kLongRun) hangOver_ = kHangOver;
    run_ = 0;
    return hangOver_ > 0 && hangOver_-- > 0;
}

Vorn32f Aggression::next(Vorn32f speech, Vorn32f noise) {
    constexpr Vorn32f kDecibels = 2.8952965f;  // 20 / (3 ln 10), for the product of three ratios
    constexpr Vorn32f kLeastRatio = 1e-4f, kLeastSnr = -100.0f / 3.0f;
    constexpr Vorn32f kAudible = 100.0f;  // below, there is nothing to tell speech by

    ++frame_;
    speeches_ = {speeches_[1], speeches_[2], speech};
    noises_ = {noises_[1], noises_[2], noise};
    Vorn32f ratio = 1.0f;
    for (std::size_t i = 0; i < speeches_.size(); ++i) ratio *= speeches_[i] / noises_[i];
    Vorn32f snr = kLeastSnr;
    if (ratio > kLeastRatio) {
        DIGITS_CALL(vornsLn_32f_I, &ratio, 1);
        snr = kDecibels * ratio;
    }
    if (snr - low_ < 10.0f || frame_ < kFirstFrames) {
        const Vorn32f keep = frame_ < kFirstFrames ? 1.0f - 1.0f / static_cast<Vorn32f>(frame_)
                             : snr < low_          ? 0.95f
                                                   : 0.99f;
        low_ = keep * low_ + (1.0f - keep) * snr;
    }
    if (speech > kAudible) share_ = snr < low_ + 3.5f ? std::min(share_ + 0.15f, 0.8f) : std::max(share_ - 0.3f, 0.1f);
    return share_;
}

std::vector<Vorn32f> hannWindow() {
    std::vector<Vorn32f> window(kFrameLength);
    for (int n = 0; n < kFrameLength; ++n) {
        window[n] = static_cast<Vorn32f>(0.5 - 0.5 * cosineOfTurns((n + 0.5) / kFrameLength));
    }
    return window;
}

namespace {

// The middle of each band, as a part of the sampling rate: the mean of its bins under its weights.
std::array<double, kBands> middles(const VornFBankState_32f* bank) {
    std::array<double, kBands> sums{}, places{};
    for (int k = 0; k < kSmoothBins; ++k) {
        std::array<Vorn32f, kSmoothBins> one{};
        one[k] = 1.0f;
        std::array<Vorn32f, kBands> weights{};
        DIGITS_CALL(vornsEvalFBank_32f, one.data(), weights.data(), bank);
        for (int b = 0; b < kBands; ++b) {
            sums[b] += double(weights[b]);
            places[b] += double(weights[b]) * k;
        }
    }
    for (int b = 0; b < kBands; ++b) places[b] /= sums[b] * (2.0 * (kSmoothBins - 1));
    return places;
}

}  // namespace

std::vector<Vorn32f> responseOfBands(const VornFBankState_32f* bank) {
    const std::array<double, kBands> middle = middles(bank);
    std::vector<Vorn32f> rows;
    for (int n = 0; n < kResponse; ++n) {
        const double place = n == 0 ? 0.5 : n - 0.5;
        const double window = 0.5 + 0.5 * cosineOfTurns(place / kTaps);
        for (int b = 0; b < kBands; ++b) {
            const double width = (b + 1 < kBands ? middle[b + 1] : middle[b]) - (b > 0 ? middle[b - 1] : middle[b]);
            rows.push_back(static_cast<Vorn32f>(window * width * cosineOfTurns(place * middle[b])));
        }
    }
    return rows;
}

std::vector<bool> speechOf(const std::vector<int>& decisions) {
    std::vector<bool> speech;
    for (std::size_t t = kDecisionDelay; t < decisions.size(); ++t) speech.push_back(decisions[t] == vornVADSpeech);
    return speech;
}

}  // namespace digits
