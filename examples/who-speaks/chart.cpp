#include "chart.h"

#include <algorithm>
#include <cmath>

#include "panels.h"
#include "svg.h"

namespace digits {
namespace {

constexpr double kTop = 34, kBottom = 270;
constexpr const char* kCurves[] = {"curve first", "curve second", "curve third"};
constexpr const char* kKeys[] = {"key first", "key second", "key third"};
constexpr const char* kPoints[] = {"bar first", "bar second", "bar third"};

}  // namespace

std::string draw(const Chart& chart) {
    Sheet sheet(kSheetWidth, chart.title);
    sheet.text(kPlotLeft, kTop - 16, chart.title, "title");
    std::vector<std::string> names;
    for (const Series& series : chart.series) names.push_back(series.name);
    drawKey(sheet, kPlotRight, kTop - 16, names, kKeys);

    const double room = 0.06 * (chart.most - chart.least) + 1e-6;
    const Axis across{std::log2(chart.at.front()) - 0.25, std::log2(chart.at.back()) + 0.25, kPlotLeft, kPlotRight};
    const Axis up{chart.least - room, chart.most + room, kBottom, kTop};
    for (const double tick : up.ticks(5)) {
        if (tick > chart.most || tick < chart.least) continue;
        sheet.line(kPlotLeft, up(tick), kPlotRight, up(tick), "grid");
        sheet.text(kPlotLeft - 8, up(tick) + 4, format("%g", tick) + chart.unit, "label", "end");
    }
    std::vector<double> x;
    for (std::size_t i = 0; i < chart.at.size(); ++i) {
        x.push_back(across(std::log2(chart.at[i])));
        sheet.line(x[i], kBottom, x[i], kBottom + 4, "tick");
        sheet.text(x[i], kBottom + 18, chart.marks[i], "label", "middle");
    }
    for (std::size_t k = chart.series.size(); k-- > 0;) {
        std::vector<double> y;
        for (const double value : chart.series[k].values) y.push_back(up(value));
        sheet.curve(x, y, kCurves[k]);
        for (std::size_t i = 0; i < x.size(); ++i) {
            sheet.box(x[i] - 3.5, y[i] - 3.5, 7, 7, kPoints[k],
                      format("%s at %s: %.2f%s", names[k].c_str(), chart.marks[i].c_str(), chart.series[k].values[i],
                             chart.unit));
        }
    }
    sheet.box(kPlotLeft, kTop, kPlotRight - kPlotLeft, kBottom - kTop, "frame");
    sheet.text(kPlotRight, kBottom + 36, chart.across, "label", "end");
    return sheet.finish(kBottom + 42);
}

}  // namespace digits
