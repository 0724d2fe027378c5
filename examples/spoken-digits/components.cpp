// Mean frames as rows.
#include "components.h"

#include <utility>

#include "checked.h"

namespace digits {
MeanFrame meanFrame(const Analysis& analysis) {
    MeanFrame mean;
    const int middle = analysis.frames / 2;
    const int begins[kHalves + 1] = {0, middle, analysis.frames};
    for (int half = 0; half < kHalves; ++half) {
        const int height = begins[half + 1] - begins[half];
        Vorn32f* const element = mean.data() + half * kCepstra;
        DIGITS_CALL(vornsSumColumn_32f_D2, analysis.row(begins[half]), kRowStep, height, element, kCepstra);
        DIGITS_CALL(vornsMulC_32f_I, 1.0f / static_cast<Vorn32f>(height), element, kCepstra);
    }
    return mean;
}

std::optional<Plane> principalPlane(const std::vector<MeanFrame>& recordings) {
    std::vector<Vorn32f> rows;
    for (const MeanFrame& recording : recordings) rows.insert(rows.end(), recording.begin(), recording.end());
    return principalPlane(std::move(rows), kMeanFrame);
}

}  // namespace digits
