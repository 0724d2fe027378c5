// Two curves over one axis of shares, which grows by doubling.
#include "selection_figure.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <vector>

#include "svg.h"

namespace digits {
namespace {

constexpr double kWidth = 960, kLeft = 84, kRight = 866, kHeight = 150;

constexpr double kLeastShare = 0.01;  // per cent: what is less stands there

using Value = std::function<double(const SelectionTrial&)>;

void drawCurve(Sheet& sheet, const SelectionRun& run, const Axis& share, const Axis& up, const char* unit,
               const char* pattern, double most, const Value& value) {
    for (const double tick : up.ticks(4)) {
        if (tick > most) continue;
        sheet.line(kLeft, up(tick), kRight, up(tick), "grid");
        sheet.text(kLeft - 8, up(tick) + 4, format("%g", tick) + unit, "label", "end");
    }
    std::vector<double> x, y;
    for (const SelectionTrial& trial : run.trials) {
        x.push_back(share(std::log2(std::max(trial.share(), kLeastShare))));
        y.push_back(up(value(trial)));
    }
    sheet.curve(x, y, "curve first");
    for (std::size_t i = 0; i < x.size(); ++i) {
        const SelectionTrial& trial = run.trials[i];
        sheet.box(x[i] - 3.5, y[i] - 3.5, 7, 7, "dot",
                  i == 0 ? "no lists" : format("lists of %d Gaussians", trial.length));
        sheet.text(x[i], y[i] - 9, format(pattern, value(trial)), "label strong", "middle");
    }
    sheet.box(kLeft, up.placeTo, kRight - kLeft, up.placeFrom - up.placeTo, "frame");
}

}  // namespace

std::string selectionFigure(const SelectionRun& run) {
    double least = 100, slowest = 1, fastest = 1, fewest = 100;
    const double whole = run.trials[0].seconds;
    const auto speed = [&](const SelectionTrial& trial) { return whole / trial.seconds; };
    const auto accuracy = [](const SelectionTrial& trial) { return trial.accuracy(); };
    for (const SelectionTrial& trial : run.trials) {
        least = std::min(least, trial.accuracy());
        fewest = std::min(fewest, std::max(trial.share(), kLeastShare));
        slowest = std::min(slowest, speed(trial));
        fastest = std::max(fastest, speed(trial));
    }
    Sheet sheet(kWidth, "Accuracy and speed over the share of Gaussians that is scored");
    const Axis share{std::log2(fewest) - 0.4, std::log2(100.0) + 0.4, kLeft, kRight};
    double top = 40, bottom = top + kHeight;
    sheet.text(kLeft, top - 22, "Accuracy", "title");
    const double room = std::max(100 - least, 1.0);
    drawCurve(sheet, run, share, {least - 0.15 * room, 100 + 0.3 * room, bottom, top}, " %", "%.1f", 100, accuracy);
    top = bottom + 40, bottom = top + kHeight;
    sheet.text(kLeft, top - 12, "Speed, in times that of the whole model", "title");
    const double span = std::max(fastest - slowest, 0.5);
    drawCurve(sheet, run, share, {slowest - 0.15 * span, fastest + 0.3 * span, bottom, top}, "", "%.2f", 1e9, speed);
    for (double percent = 100; percent > fewest / 1.3; percent /= 2) {
        const double x = share(std::log2(percent));
        sheet.line(x, bottom, x, bottom + 4, "tick");
        sheet.text(x, bottom + 18, format("%.3g %%", percent), "label", "middle");
    }
    sheet.text(kRight, bottom + 36, "Gaussians that are scored", "label", "end");
    return sheet.finish(bottom + 42);
}

}  // namespace digits
