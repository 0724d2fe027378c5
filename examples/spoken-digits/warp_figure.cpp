// Distances as colours, and over them the band, what the beam leaves of it, and the best road.
#include "warp_figure.h"

#include <algorithm>
#include <cmath>

#include "picture.h"
#include "svg.h"

namespace digits {
namespace {

constexpr double kWidth = 960, kLeft = 62, kTop = 28, kPanel = 370, kGap = 62, kHighest = 370;
constexpr double kStepMs = 1000.0 * kFrameStep / kSampleRate;

Colour dimmed(const Colour& colour, double share) {
    const auto mix = [&](std::uint8_t value) {
        return static_cast<std::uint8_t>(std::lround(value + share * (150.0 - value)));
    };
    return {mix(colour.red), mix(colour.green), mix(colour.blue)};
}

// A trace seen from the recording: x counts its frames and y those of the template.
class View {
public:
    explicit View(const WarpTrace& trace) : trace_(trace) {}

    int width() const { return trace_.firstIsLonger ? trace_.height : trace_.width; }
    int height() const { return trace_.firstIsLonger ? trace_.width : trace_.height; }

    Colour colour(int x, int y, double most) const {
        const int row = trace_.firstIsLonger ? x : y, column = trace_.firstIsLonger ? y : x;
        const Colour full = heat(trace_.at(row, column) / most);
        const auto open = static_cast<std::size_t>(row);
        if (!trace_.band[open].holds(column)) return dimmed(full, 0.85);
        return open < trace_.beam.size() && trace_.beam[open].holds(column) ? full : dimmed(full, 0.5);
    }

    // The middles of one cell in each row, as places on the sheet.
    template <typename Column>
    void draw(Sheet& sheet, const Axis& across, const Axis& up, Column column, const char* style) const {
        std::vector<double> x, y;
        for (int row = 0; row < trace_.height; ++row) {
            const double along = row + 0.5, beside = column(row) + 0.5;
            x.push_back(across(trace_.firstIsLonger ? along : beside));
            y.push_back(up(trace_.firstIsLonger ? beside : along));
        }
        sheet.curve(x, y, style);
    }

private:
    const WarpTrace& trace_;
};

void drawPanel(Sheet& sheet, const Warping& warping, double left, double scale, double most, double bottom) {
    const WarpTrace& trace = warping.trace;
    const View view(trace);
    const double right = left + scale * view.width(), top = bottom - scale * view.height();
    const Axis across{0, double(view.width()), left, right}, up{0, double(view.height()), bottom, top};
    sheet.text(left, top - 10, warping.title, "title");
    const auto pixel = [&](int px, int py) { return view.colour(px, view.height() - 1 - py, most); };
    sheet.picture(left, top, right - left, bottom - top, pngAddress(view.width(), view.height(), pixel), "cells");
    view.draw(
        sheet, across, up, [&](int row) { return trace.band[row].begin; }, "edge");
    view.draw(
        sheet, across, up, [&](int row) { return trace.band[row].end - 1; }, "edge");
    if (!trace.road.empty()) {
        view.draw(
            sheet, across, up, [&](int row) { return trace.road[row]; }, "road under");
        view.draw(
            sheet, across, up, [&](int row) { return trace.road[row]; }, "road over");
    }
    for (const double ms : Axis{0, kStepMs * view.width(), left, right}.ticks(5)) {
        sheet.line(across(ms / kStepMs), bottom, across(ms / kStepMs), bottom + 4, "tick");
        sheet.text(across(ms / kStepMs), bottom + 18, format("%.0f", ms), "label", "middle");
    }
    for (const double ms : Axis{0, kStepMs * view.height(), bottom, top}.ticks(5)) {
        sheet.line(left - 4, up(ms / kStepMs), left, up(ms / kStepMs), "tick");
        sheet.text(left - 8, up(ms / kStepMs) + 4, format("%.0f", ms), "label", "end");
    }
    sheet.text(left, bottom + 36, "ms of the recording; upward: ms of the template", "label");
}

}  // namespace

std::string warpFigure(const std::vector<Warping>& panels) {
    std::vector<Vorn32f> sizes;
    int longest = 1, tallest = 1;
    for (const Warping& panel : panels) {
        sizes.insert(sizes.end(), panel.trace.distance.begin(), panel.trace.distance.end());
        longest = std::max(longest, View(panel.trace).width());
        tallest = std::max(tallest, View(panel.trace).height());
    }
    std::sort(sizes.begin(), sizes.end());
    const double most = std::max(double(sizes[sizes.size() * 49 / 50]), 1e-6);  // lets one in fifty go beyond
    const double scale = std::min(kPanel / longest, kHighest / tallest);

    Sheet sheet(kWidth, "Time warping: distances between frames, band, beam and best road");
    const double bottom = kTop + scale * tallest;
    double left = kLeft;
    for (const Warping& panel : panels) {
        drawPanel(sheet, panel, left, scale, most, bottom);
        left += kPanel + kGap;
    }
    constexpr int kSteps = 64;
    const double bar = kWidth - 76, top = std::max(bottom - 160, kTop);
    const auto step = [&](int, int py) { return heat(1.0 - double(py) / (kSteps - 1)); };
    sheet.picture(bar, top, 12, bottom - top, pngAddress(1, kSteps, step), "smooth");
    sheet.text(bar + 18, top + 10, format("%.1f unlike", most), "label");
    sheet.text(bar + 18, bottom, "0 alike", "label");
    return sheet.finish(bottom + 44);
}

}  // namespace digits
