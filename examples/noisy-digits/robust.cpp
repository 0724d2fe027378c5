#include "robust.h"

#include <algorithm>
#include <utility>

#include "checked.h"
#include "plain.h"
#include "train.h"

namespace digits {
namespace {

constexpr Vorn32f kOffsetPole = 1.0f - 1.0f / 1024.0f;
constexpr Vorn16s kOffsetPoleQ15 = 32736;
constexpr int kCepstrumBits = 6;  // behind the point, in 16 bits
constexpr int kWholeStream = 3;   // deltas: the first block and the last one

std::size_t rowsOf(int frames) { return static_cast<std::size_t>(frames) * kRowStep; }

// Without the frames in which nobody speaks. The block in the middle of a frame is the one behind its first.
Utterance withoutPauses(Utterance all, const std::vector<bool>& speech) {
    Utterance kept{{}, 0, 0};
    for (int t = 0; t < all.analysis.frames; ++t) {
        if (!speech[static_cast<std::size_t>(t) + 1]) continue;
        kept.analysis.features.insert(kept.analysis.features.end(), all.analysis.row(t), all.analysis.row(t + 1));
        ++kept.analysis.frames;
        kept.begin += t < all.begin;
        kept.end += t < all.end;
    }
    // A detector that leaves less than a word is not believed.
    return kept.end - kept.begin >= kStates ? kept : all;
}

}  // namespace

RobustFrontEnd::RobustFrontEnd(RobustSteps steps) : steps_(steps), reduction_(steps.reduction) {}

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
    std::vector<Vorn32f> rows(static_cast<std::size_t>(frames) * kRobustStatic), processed(kFrameLength);
    for (int t = 0; t < frames; ++t) {
        const Vorn32f* frame = wave.data() + t * kFrameStep;
        if (steps_.waveform) DIGITS_CALL(vornsWaveProcessing_Aurora_32f, frame, processed.data());
        cepstrum_.of(steps_.waveform ? processed.data() : frame, transform, rows.data() + t * kRobustStatic);
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
    Reference bias{};
    for (int t = 0; steps_.equalised && t < analysis.frames; ++t) {
        Vorn32f* row = rows.data() + t * kRobustStatic;
        DIGITS_CALL(vornsBlindEqualization_Aurora_32f, reference_.data(), row, bias.data(), kCepstra,
                    row[kRobustStatic - 1]);
    }
    analysis.features.assign(rowsOf(analysis.frames), 0.0f);
    DIGITS_CALL(vornsDeltaDelta_Aurora_32f_D2, rows.data(), analysis.features.data(), kRowStep, analysis.frames,
                kWholeStream);
    Utterance all = utteranceOf(std::move(analysis), mixed);
    return steps_.dropped ? withoutPauses(std::move(all), reduced.speech) : all;
}

FixedFrontEnd::FixedFrontEnd(const Reference& reference) {
    DIGITS_CALL(vornsConvert_32f16s_Sfs, reference.data(), reference_.data(), kCepstra, vornRndNear, -kCepstrumBits);
}

FixedReduced FixedFrontEnd::reduce(std::span<const Vorn16s> samples) const {
    FixedReduced reduced = reduction_.reduce(samples);
    Vorn16s last = reduced.wave[0];
    DIGITS_CALL(vornsCompensateOffsetQ15_16s_I, reduced.wave.data(), static_cast<int>(reduced.wave.size()), &last, 0,
                kOffsetPoleQ15);
    return reduced;
}

Utterance FixedFrontEnd::analyse(const Mixed& mixed) const {
    const FixedReduced reduced = reduce(mixed.samples);
    Analysis analysis;
    analysis.frames = framesIn(mixed.samples.size());

    Transform transform = transform_;
    std::vector<Vorn16s> processed(kFrameLength), rows(static_cast<std::size_t>(analysis.frames) * kRobustStatic);
    std::vector<Vorn32f> frame(kFrameLength), exact(kRobustStatic);
    std::array<Vorn16s, kCepstra> bias{};
    for (int t = 0; t < analysis.frames; ++t) {
        Vorn16s* row = rows.data() + t * kRobustStatic;
        DIGITS_CALL(vornsWaveProcessing_Aurora_16s, reduced.wave.data() + t * kFrameStep, processed.data());
        DIGITS_CALL(vornsConvert_16s32f, processed.data(), frame.data(), kFrameLength);
        cepstrum_.of(frame.data(), transform, exact.data());
        DIGITS_CALL(vornsConvert_32f16s_Sfs, exact.data(), row, kRobustStatic, vornRndNear, -kCepstrumBits);
        DIGITS_CALL(vornsBlindEqualization_Aurora_16s, reference_.data(), row, bias.data(), kCepstra,
                    row[kRobustStatic - 1]);
    }
    std::vector<Vorn16s> features(rowsOf(analysis.frames));
    DIGITS_CALL(vornsDeltaDelta_Aurora_16s_D2Sfs, rows.data(), features.data(), kRowStep, analysis.frames, kWholeStream,
                0);
    analysis.features.resize(features.size());
    DIGITS_CALL(vornsConvert_16s32f_Sfs, features.data(), analysis.features.data(), static_cast<int>(features.size()),
                kCepstrumBits);
    return withoutPauses(utteranceOf(std::move(analysis), mixed), reduced.speech);
}

}  // namespace digits
