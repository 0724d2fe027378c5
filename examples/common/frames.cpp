// Sums that go on from one recording to the next.
#include "frames.h"

#include "checked.h"

namespace digits {

int heightOf(const Frames& frames) {
    int height = 0;
    for (const Stretch& stretch : frames) height += stretch.height;
    return height;
}

FeatureSums::FeatureSums(const Frames& frames)
    : sum(kRowStep, 0.0f), squares(kRowStep, 0.0f), height(static_cast<Vorn32f>(heightOf(frames))) {
    for (const Stretch& stretch : frames) {
        DIGITS_CALL(vornsSumMeanVar_32f_I, stretch.rows, kRowStep, stretch.height, sum.data(), squares.data(),
                    kFeatures);
    }
}

Moments::Moments(const Frames& frames) : mean(kRowStep, 0.0f), variance(kRowStep, 0.0f) {
    const FeatureSums sums(frames);
    DIGITS_CALL(vornsUpdateMean_32f, sums.sum.data(), mean.data(), kFeatures, sums.height);
    DIGITS_CALL(vornsNewVar_32f, mean.data(), sums.squares.data(), variance.data(), kFeatures, sums.height,
                1.0f / (sums.height - 1.0f));
}

}  // namespace digits
