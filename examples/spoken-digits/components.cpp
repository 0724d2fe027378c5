// Principal components by singular values: the directions are the right-hand vectors, the places the left-hand ones.
#include "components.h"

#include "checked.h"

namespace digits {
namespace {

constexpr Vorn32f kLeastScale = 1e-10f;  // for an element that does not vary
constexpr int kIterations = 30;

}  // namespace

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
    const int height = static_cast<int>(recordings.size());
    if (height < 3) return std::nullopt;
    std::vector<Vorn32f> rows;
    for (const MeanFrame& recording : recordings) rows.insert(rows.end(), recording.begin(), recording.end());

    std::vector<Vorn32f> mean(kMeanFrame), scale(kMeanFrame);
    DIGITS_CALL(vornsMeanVarColumn_32f_D2, rows.data(), height, kMeanFrame, mean.data(), scale.data(), kMeanFrame);
    const VornStatus status = vornsRecSqrt_32f(scale.data(), kMeanFrame, kLeastScale);
    if (status == vornStsZeroRange) return std::nullopt;
    checked(status, "vornsRecSqrt_32f");
    DIGITS_CALL(vornsNormalizeColumn_32f_D2, rows.data(), kMeanFrame, height, mean.data(), scale.data(), kMeanFrame);

    std::vector<Vorn64f> u(rows.size()), w(kMeanFrame), v(kMeanFrame * kMeanFrame);
    DIGITS_CALL(vornsConvert_32f64f, rows.data(), u.data(), static_cast<int>(rows.size()));
    DIGITS_CALL(vornsSVDSort_64f_D2_I, u.data(), height, w.data(), v.data(), kMeanFrame, kMeanFrame, kIterations);

    Plane plane;
    double variance = 0.0;
    for (const double value : w) variance += value * value;
    for (int i = 0; i < 2; ++i) plane.shares[i] = w[i] * w[i] / variance;
    for (int row = 0; row < height; ++row) {
        const Vorn64f* const at = u.data() + static_cast<std::ptrdiff_t>(row) * kMeanFrame;
        plane.places.push_back({at[0] * w[0], at[1] * w[1]});
    }
    return plane;
}

}  // namespace digits
