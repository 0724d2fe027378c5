// Principal components from singular values.
#include "plane.h"

#include "checked.h"

namespace digits {
namespace {

constexpr Vorn32f kLeastScale = 1e-10f;  // for an element that does not vary
constexpr int kIterations = 30;

}  // namespace

std::array<double, 2> Plane::place(const Vorn32f* row) const {
    std::array<double, 2> place{};
    for (std::size_t i = 0; i < mean.size(); ++i) {
        const double value = (row[i] - mean[i]) * scale[i];
        for (int axis = 0; axis < 2; ++axis) place[axis] += value * directions[axis][i];
    }
    return place;
}

std::optional<Plane> principalPlane(std::vector<Vorn32f> rows, int width) {
    const int height = static_cast<int>(rows.size()) / width;
    if (height < 3) return std::nullopt;
    const auto elements = static_cast<std::size_t>(width);
    Plane plane;
    plane.mean.resize(elements);
    plane.scale.resize(elements);
    DIGITS_CALL(vornsMeanVarColumn_32f_D2, rows.data(), height, width, plane.mean.data(), plane.scale.data(), width);
    if (DIGITS_WARNS(vornStsZeroRange, vornsRecSqrt_32f, plane.scale.data(), width, kLeastScale)) return std::nullopt;
    DIGITS_CALL(vornsNormalizeColumn_32f_D2, rows.data(), width, height, plane.mean.data(), plane.scale.data(), width);

    std::vector<Vorn64f> u(rows.size()), w(elements), v(elements * elements);
    DIGITS_CALL(vornsConvert_32f64f, rows.data(), u.data(), static_cast<int>(rows.size()));
    DIGITS_CALL(vornsSVDSort_64f_D2_I, u.data(), height, w.data(), v.data(), width, width, kIterations);

    double variance = 0.0;
    for (const double value : w) variance += value * value;
    for (int axis = 0; axis < 2; ++axis) {
        plane.shares[axis] = w[axis] * w[axis] / variance;
        for (int i = 0; i < width; ++i)
            plane.directions[axis].push_back(v[static_cast<std::size_t>(i) * elements + axis]);
    }
    for (int row = 0; row < height; ++row) {
        const Vorn64f* const at = u.data() + static_cast<std::ptrdiff_t>(row) * width;
        plane.places.push_back({at[0] * w[0], at[1] * w[1]});
    }
    return plane;
}

}  // namespace digits
