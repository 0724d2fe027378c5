// Time warping by the library, and a plain trace of it for the picture: the library keeps one row and returns one
// number.
#include "warp.h"

#include <algorithm>
#include <limits>
#include <utility>

#include "checked.h"

namespace digits {
namespace {

constexpr Vorn32f kLeastScale = 1e-10f;  // for a feature that never changes

// The distances of one frame from all frames of a sequence.
std::vector<Vorn32f> distances(const Vorn32f* frame, const Sequence& sequence) {
    static const std::vector<Vorn32f> kUnit(kRowStep, 1.0f);
    std::vector<Vorn32f> result(static_cast<std::size_t>(sequence.height));
    DIGITS_CALL(vornsMahDist_32f_D2, sequence.rows.data(), kRowStep, frame, kUnit.data(), kWarpWidth, result.data(),
                sequence.height);
    DIGITS_CALL(vornsSqrt_32f_I, result.data(), sequence.height);
    return result;
}

// The band in one row: a parallelogram with sides of slope 2 and one half, widened on both sides.
WarpTrace::Range bandIn(int row, int height, int width) {
    const int wide = std::min(kWarpBand, width - 1);
    const int last = 3 * row < 2 * width - height ? 2 * row + wide : width + wide + ((row - height - 1) >> 1);
    const int first = 3 * row > 2 * (2 * height - width) - 2 ? width - wide + 2 * (row - height) + 1 : row / 2 - wide;
    if (row == 0) return {0, wide + 1};
    return {std::max(first, 0), std::min(last, width - 1) + 1};
}

}  // namespace

const Vorn32f kNoRoad = std::numeric_limits<Vorn32f>::max();

Spread::Spread(const Frames& frames) {
    Moments moments(frames);
    mean_ = std::move(moments.mean);
    scale_ = std::move(moments.variance);
    DIGITS_WARNS(vornStsZeroRange, vornsRecSqrt_32f, scale_.data(), kFeatures, kLeastScale);
}

Sequence Spread::operator()(const Analysis& recording) const {
    Sequence sequence{recording.features, recording.frames};
    DIGITS_CALL(vornsNormalizeColumn_32f_D2, sequence.rows.data(), kRowStep, sequence.height, mean_.data(),
                scale_.data(), kFeatures);
    return sequence;
}

Vorn32f warpedDistance(const Sequence& first, const Sequence& second) {
    Vorn32f cost = kNoRoad;
    DIGITS_CALL(vornsDTW_L2_32f_D2, first.rows.data(), first.height, second.rows.data(), second.height, kWarpWidth,
                kRowStep, &cost, kWarpBand, kWarpBeam);
    return cost < kNoRoad ? cost / static_cast<Vorn32f>(std::max(first.height, second.height)) : kNoRoad;
}

WarpTrace traceWarping(const Sequence& first, const Sequence& second) {
    WarpTrace trace;
    trace.firstIsLonger = first.height >= second.height;
    const Sequence& longer = trace.firstIsLonger ? first : second;
    const Sequence& shorter = trace.firstIsLonger ? second : first;
    trace.height = longer.height;
    trace.width = shorter.height;
    for (int row = 0; row < trace.height; ++row) {
        const std::vector<Vorn32f> line = distances(longer.row(row), shorter);
        trace.distance.insert(trace.distance.end(), line.begin(), line.end());
    }

    const auto cells = static_cast<std::size_t>(trace.height) * trace.width;
    std::vector<Vorn32f> total(cells, kNoRoad);
    std::vector<int> from(cells, 0);  // the column of the row before
    const auto cell = [&](int row, int column) { return static_cast<std::size_t>(row) * trace.width + column; };
    for (int row = 0; row < trace.height; ++row) {
        WarpTrace::Range open = bandIn(row, trace.height, trace.width);
        trace.band.push_back(open);
        if (row > 0) {
            const WarpTrace::Range before = trace.beam.back();
            open = {std::max(open.begin, before.begin), std::min(open.end, before.end + 2)};
            for (int column = open.begin; column < open.end; ++column) {
                Vorn32f least = kNoRoad;
                for (int back = column; back >= std::max(column - 2, 0); --back) {
                    if (!before.holds(back) || total[cell(row - 1, back)] >= least) continue;
                    least = total[cell(row - 1, back)];
                    from[cell(row, column)] = back;
                }
                if (least < kNoRoad) total[cell(row, column)] = least + trace.at(row, column);
            }
        } else {
            for (int column = open.begin; column < open.end; ++column) total[cell(0, column)] = trace.at(0, column);
        }
        const auto line = total.begin() + static_cast<std::ptrdiff_t>(cell(row, 0));
        if (open.begin >= open.end || *std::min_element(line + open.begin, line + open.end) >= kNoRoad) {
            trace.cost = kNoRoad;
            return trace;
        }
        if (row > 0) {
            const Vorn32f dearest = *std::min_element(line + open.begin, line + open.end) + kWarpBeam;
            while (open.end - open.begin > 1 && line[open.end - 1] > dearest) --open.end;
            while (open.end - open.begin > 1 && line[open.begin] > dearest) ++open.begin;
        }
        trace.beam.push_back(open);
    }

    const auto last = total.begin() + static_cast<std::ptrdiff_t>(cell(trace.height - 1, 0));
    const WarpTrace::Range open = trace.beam.back();
    int column = static_cast<int>(std::min_element(last + open.begin, last + open.end) - last);
    trace.cost = last[column] / static_cast<Vorn32f>(trace.height);
    trace.road.resize(static_cast<std::size_t>(trace.height));
    for (int row = trace.height - 1; row >= 0; --row) {
        trace.road[row] = column;
        column = from[cell(row, column)];
    }
    return trace;
}

}  // namespace digits
