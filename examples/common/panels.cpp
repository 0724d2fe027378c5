// Panels of a sheet, one under another.
#include "panels.h"

#include <algorithm>
#include <cmath>

namespace digits {

std::string number(double value) { return format("%s%.3g", value < 0 ? "\u2212" : "", std::abs(value)); }

double decibels(double magnitude) { return 20.0 * std::log10(std::max(magnitude, 1e-6)); }

Panels::Panels(const std::string& title, std::size_t samples, int frames)
    : sheet_(kSheetWidth, title),
      time_{0, 1000.0 * static_cast<double>(samples) / kSampleRate, kPlotLeft, kPlotRight},
      frames_(frames) {}

double Panels::begin(double height, const std::string& title, const std::string& note) {
    top_ = bottom_ + 30;
    bottom_ = top_ + height;
    sheet_.text(kPlotLeft, top_ - 8, title, "title");
    if (!note.empty()) sheet_.text(kPlotRight, top_ - 8, note, "label", "end");
    return top_;
}

void Panels::frame() {
    for (const double border : borders_) sheet_.line(time_(border), top_, time_(border), bottom_, "border");
    sheet_.box(kPlotLeft, top_, kPlotRight - kPlotLeft, bottom_ - top_, "frame");
}

void Panels::ticksLeft(const Axis& axis, const std::vector<double>& values, const std::string& prefix,
                       const std::string& unit) {
    for (const double value : values) {
        sheet_.line(kPlotLeft - 4, axis(value), kPlotLeft, axis(value), "tick");
        sheet_.text(kPlotLeft - 8, axis(value) + 4, prefix + number(value), "label", "end");
    }
    sheet_.text(8, top_ - 8, unit, "label");
}

void Panels::matrix(int rows, const std::function<double(int row, int frame)>& value, const Paint& paint, double low,
                    double high, const std::string& lowText, const std::string& highText) {
    const Axis colours{low, high, paint.begin, 1.0};
    const double x = time_(frameStart(0)), width = time_(frameStart(frames_)) - x, height = bottom_ - top_;
    sheet_.box(kPlotLeft, top_, kPlotRight - kPlotLeft, height, "void");
    const auto pixel = [&](int px, int py) { return paint.colour(colours(value(rows - 1 - py, px))); };
    sheet_.picture(x, top_, width, height, pngAddress(frames_, rows, pixel), paint.style);
    frame();
    constexpr int kSteps = 64;
    const Axis bar{0, kSteps - 1, 1.0, paint.begin};
    const auto step = [&](int, int py) { return paint.colour(bar(py)); };
    sheet_.picture(kPlotRight + 12, top_, 12, height, pngAddress(1, kSteps, step), "smooth");
    sheet_.text(kPlotRight + 30, top_ + 10, highText, "label");
    sheet_.text(kPlotRight + 30, bottom_, lowText, "label");
}

std::string Panels::finish() {
    for (const double ms : time_.ticks(8)) {
        sheet_.line(time_(ms), bottom_, time_(ms), bottom_ + 4, "tick");
        sheet_.text(time_(ms), bottom_ + 18, format("%.0f", ms), "label", "middle");
    }
    sheet_.text(kPlotRight + 24, bottom_ + 18, "ms", "label");
    return sheet_.finish(bottom_ + 26);
}

Axis drawSpectrogram(Panels& panels, const Analysis& analysis, double height, const std::string& title,
                     const std::string& note) {
    const double top = panels.begin(height, title, note);
    const Axis axis{0, kSampleRate / 2000.0, panels.bottom(), top};
    const double most = decibels(*std::max_element(analysis.magnitudes.begin(), analysis.magnitudes.end()));
    panels.matrix(
        kBins, [&](int row, int t) { return decibels(analysis.magnitudes[static_cast<std::size_t>(t) * kBins + row]); },
        kHeat, most - 65, most, "\u221265 dB", "0 dB");
    panels.ticksLeft(axis, {0, 1, 2, 3, 4}, "", "kHz");
    return axis;
}

void drawKey(Sheet& sheet, double right, double y, const std::vector<std::string>& names, const char* const* keys) {
    double x = right;
    for (std::size_t i = names.size(); i-- > 0;) {
        x -= 7.6 * static_cast<double>(names[i].size()) + 6;
        sheet.text(x, y, names[i], "label strong");
        x -= 22;
        sheet.line(x, y - 4, x + 16, y - 4, keys[i]);
        x -= 10;
    }
}

double usualSize(std::vector<double> sizes) {
    if (sizes.empty()) return 1.0;
    std::sort(sizes.begin(), sizes.end());
    return std::max(sizes[sizes.size() * 49 / 50], 1e-6);
}

}  // namespace digits
