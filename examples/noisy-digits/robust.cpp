#include "robust.h"

#include <algorithm>

#include "checked.h"
#include "plain.h"
#include "train.h"

namespace digits {
namespace {

constexpr int kRobustFilters = 23;
constexpr Vorn32f kRobustLow = 64.0f;  // hertz
constexpr Vorn32f kMelMul = 1127.0f, kMelDiv = 700.0f;
constexpr int kRobustStatic = kCepstra + 2;
constexpr Vorn32f kPreEmphasis = 0.9f;
constexpr Vorn32f kOffsetPole = 1.0f - 1.0f / 1024.0f;
constexpr Vorn32f kLeastBand = 4.5399930e-5f;    // exp(-10)
constexpr Vorn32f kLeastEnergy = 1.9287498e-22f;  // exp(-50)

Vorn32f logarithm(Vorn32f x) {
    DIGITS_CALL(vornsLn_32f_I, &x, 1);
    return x;
}

}  // namespace

RobustFrontEnd::RobustFrontEnd(RobustSteps steps) : steps_(steps), reduction_(steps.reduction) {
    VornFBankState_32f* bank = nullptr;
    int order = 0;
    DIGITS_CALL(vornsMelFBankInitAlloc_32f, &bank, &order, kFftLength, static_cast<Vorn32f>(kSampleRate), kRobustLow,
                kHighFrequency, kRobustFilters, kMelMul, kMelDiv, vornFBankWeightFreq);
    bank_.reset(bank);

    const std::vector<Vorn32f> unliftered(kCepstra, 1.0f);
    VornDCTLifterState_32f* cosine = nullptr;
    DIGITS_CALL(vornsDCTLifterInitAlloc_MulC0_32f, &cosine, kRobustFilters, unliftered.data(), kCepstra);
    cosine_.reset(cosine);
    window_ = FrontEnd().window();
}

Reduced RobustFrontEnd::reduce(std::span<const Vorn16s> samples) const {
    const auto length = static_cast<int>(samples.size());
    std::vector<Vorn32f> wave(samples.size());
    DIGITS_CALL(vornsConvert_16s32f, samples.data(), wave.data(), length);
    Reduced reduced = reduction_.reduce(wave);
    Vorn32f last = reduced.wave[0];
    DIGITS_CALL(vornsCompensateOffset_32f_I, reduced.wave.data(), length, &last, 0.0f, kOffsetPole);
    return reduced;
}

std::vector<Vorn32f> RobustFrontEnd::cepstra(std::span<const Vorn32f> wave) const {
    const int frames = framesIn(wave.size());
    Transform transform = transform_;
    std::vector<Vorn32f> rows(static_cast<std::size_t>(frames) * kRobustStatic), frame(kFrameLength), padded(kFftLength);
    std::array<Vorn32f, kBins> powers{};
    std::array<Vorn32f, kRobustFilters> bands{};
    for (int t = 0; t < frames; ++t) {
        const Vorn32f* samples = wave.data() + t * kFrameStep;
        Vorn32f* row = rows.data() + t * kRobustStatic;
        if (steps_.waveform) {
            DIGITS_CALL(vornsWaveProcessing_Aurora_32f, samples, frame.data());
        } else {
            frame.assign(samples, samples + kFrameLength);
        }
        Vorn32f energy = 0.0f;
        DIGITS_CALL(vornsDotProd_32f, frame.data(), frame.data(), kFrameLength, &energy);

        std::fill(padded.begin(), padded.end(), 0.0f);
        for (int n = 0; n < kFrameLength; ++n) {
            padded[n] = window_[n] * (frame[n] - kPreEmphasis * frame[n > 0 ? n - 1 : 0]);
        }
        transform.forward(padded);
        powersOf(padded, powers.data());
        DIGITS_CALL(vornsEvalFBank_32f, powers.data(), bands.data(), bank_.get());
        for (Vorn32f& band : bands) band = std::max(band, kLeastBand);
        DIGITS_CALL(vornsLn_32f_I, bands.data(), kRobustFilters);
        DIGITS_CALL(vornsDCTLifter_32f, bands.data(), row, cosine_.get());
        row[kRobustStatic - 1] = logarithm(std::max(energy, kLeastEnergy));
    }
    return rows;
}

void RobustFrontEnd::learnReference(const std::vector<Mixed>& recordings) {
    std::array<double, kCepstra> sums{};
    int frames = 0;
    for (const Mixed& mixed : recordings) {
        const std::vector<Vorn32f> rows = cepstra(reduce(mixed.samples).wave);
        for (int t = frameAt(mixed.begin); t < frameAt(mixed.end); ++t, ++frames) {
            for (int i = 0; i < kCepstra; ++i) sums[i] += double(rows[t * kRobustStatic + i]);
        }
    }
    for (int i = 0; i < kCepstra; ++i) reference_[i] = static_cast<Vorn32f>(sums[i] / frames);
}

Utterance RobustFrontEnd::analyse(const Mixed& mixed) const {
    const Reduced reduced = reduce(mixed.samples);
    std::vector<Vorn32f> rows = cepstra(reduced.wave);
    Analysis analysis;
    analysis.frames = framesIn(mixed.samples.size());

    if (steps_.equalised) {
        Reference bias{};
        for (int t = 0; t < analysis.frames; ++t) {
            Vorn32f* row = rows.data() + t * kRobustStatic;
            DIGITS_CALL(vornsBlindEqualization_Aurora_32f, reference_.data(), row, bias.data(), kCepstra,
                        row[kRobustStatic - 1] );
        }
    }
    analysis.features.assign(static_cast<std::size_t>(analysis.frames) * kRowStep, 0.0f);
    DIGITS_CALL(vornsDeltaDelta_Aurora_32f_D2, rows.data(), analysis.features.data(), kRowStep, analysis.frames, 3);
    Utterance all = utteranceOf(std::move(analysis), mixed);
    if (!steps_.dropped) return all;

    // The block that lies in the middle of a frame is the one behind the frame's first.
    Utterance kept{{}, 0, 0};
    for (int t = 0; t < all.analysis.frames; ++t) {
        if (!reduced.speech[static_cast<std::size_t>(t) + 1]) continue;
        kept.analysis.features.insert(kept.analysis.features.end(), all.analysis.row(t), all.analysis.row(t + 1));
        ++kept.analysis.frames;
        kept.begin += t < all.begin;
        kept.end += t < all.end;
    }
    // A detector that leaves less than a word is not believed.
    return kept.end - kept.begin >= kStates ? kept : all;
}

}  // namespace digits
