// Draws what the recogniser sees and how it decides.
#include "figures.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numeric>
#include <optional>
#include <utility>

#include "panels.h"
#include "svg.h"

namespace digits {
namespace {

// Panels of a recording, with lines where the best word passes from state to state.
Panels panelsOf(const Specimen& specimen, const std::string& title) {
    Panels panels(title, specimen.samples.size(), specimen.analysis.frames);
    const Path& path = specimen.outcome->decision.paths[specimen.outcome->decision.best];
    for (int t = 1; t < specimen.analysis.frames; ++t) {
        if (path.states[t] != path.states[t - 1]) panels.mark(t);
    }
    return panels;
}

void drawWave(Panels& panels, const Specimen& specimen) {
    const double top = panels.begin(92, "Wave", "thin upright lines: where the best word's states change");
    const auto& samples = specimen.samples;
    double most = 0.01;
    for (const Vorn16s sample : samples) most = std::max(most, std::abs(sample / 32768.0));
    const Axis axis{-1.05 * most, 1.05 * most, panels.bottom(), top};
    std::vector<double> x, low, high;
    const int columns = static_cast<int>(kPlotRight - kPlotLeft);
    for (int column = 0; column < columns; ++column) {
        const std::size_t begin = samples.size() * static_cast<std::size_t>(column) / columns;
        const std::size_t end = std::max(begin + 1, samples.size() * static_cast<std::size_t>(column + 1) / columns);
        const auto [least, greatest] = std::minmax_element(samples.begin() + static_cast<std::ptrdiff_t>(begin),
                                                           samples.begin() + static_cast<std::ptrdiff_t>(end));
        x.push_back(kPlotLeft + column);
        low.push_back(axis(*least / 32768.0) + 0.4);
        high.push_back(axis(*greatest / 32768.0) - 0.4);
    }
    panels.sheet().line(kPlotLeft, axis(0), kPlotRight, axis(0), "grid");
    panels.sheet().area(x, low, high, "wave");
    panels.frame();
    panels.ticksLeft(axis, axis.ticks(4), "", "amplitude");
}

void drawEnergies(Panels& panels, const Analysis& analysis) {
    const double top = panels.begin(116, "Filter bank",
                                    format("logarithms of %d mel filters from %.0f to %.0f Hz", kFilters,
                                           double(kLowFrequency), double(kHighFrequency)));
    const Axis axis{0.5, kFilters + 0.5, panels.bottom(), top};
    const double decibelsPerNeper = 20.0 / std::log(10.0);
    const double most = *std::max_element(analysis.energies.begin(), analysis.energies.end()) * decibelsPerNeper;
    panels.matrix(
        kFilters,
        [&](int row, int t) {
            return analysis.energies[static_cast<std::size_t>(t) * kFilters + row] * decibelsPerNeper;
        },
        kHeat, most - 60, most, "\u221260 dB", "0 dB");
    panels.ticksLeft(axis, {1, 8, 16, 24}, "", "filter");
}

// One block of thirteen features: coefficient zero at the bottom, then 1 to 12.
void drawBlock(Panels& panels, const Analysis& analysis, int block, double height, const char* title,
               const char* note) {
    const double top = panels.begin(height, title, note);
    const Axis axis{-0.5, kStatic - 0.5, panels.bottom(), top};
    const auto value = [&](int row, int t) {
        return double(analysis.row(t)[block * kStatic + (row == 0 ? kCepstra : row - 1)]);
    };
    std::vector<double> sizes;
    for (int t = 0; t < analysis.frames; ++t) {
        for (int row = 0; row < kStatic; ++row) sizes.push_back(std::abs(value(row, t)));
    }
    const double most = usualSize(std::move(sizes));
    panels.matrix(kStatic, value, kBalance, -most, most, number(-most), format("+%.3g", most));
    panels.ticksLeft(axis, {0, 4, 8, 12}, "c", "");
}

std::vector<int> ranking(const Decision& decision) {
    std::vector<int> order(kWords);
    std::iota(order.begin(), order.end(), 0);
    std::stable_sort(order.begin(), order.end(),
                     [&](int a, int b) { return decision.paths[a].score > decision.paths[b].score; });
    return order;
}

// The three words that have colours of their own: the best three, but a spoken word that lost is always among them.
std::array<int, 3> colouredWords(const Outcome& outcome) {
    const std::vector<int> order = ranking(outcome.decision);
    std::array<int, 3> words{order[0], order[1], order[2]};
    if (outcome.wrong() && *outcome.spoken != words[1]) words[2] = *outcome.spoken;
    return words;
}

constexpr const char* kCurves[] = {"curve first", "curve second", "curve third"};
constexpr const char* kKeys[] = {"key first", "key second", "key third"};
constexpr const char* kBars[] = {"bar first", "bar second", "bar third"};

void drawStates(Panels& panels, const Path& path, const char* word) {
    const double top = panels.begin(24, format("States of \u201c%s\u201d", word),
                                    "which state of the best word each frame belongs to");
    const int frames = static_cast<int>(path.states.size());
    for (int t = 0; t < frames;) {
        int end = t;
        while (end < frames && path.states[end] == path.states[t]) ++end;
        const double x = panels.time()(frameStart(t)), width = panels.time()(frameStart(end)) - x;
        panels.sheet().box(x, top, width, 24, path.states[t] % 2 ? "odd" : "even",
                           format("state %d: %d frames", path.states[t] + 1, end - t));
        panels.sheet().text(x + width / 2, top + 16, format("%d", path.states[t] + 1), "label", "middle");
        t = end;
    }
}

void drawGrid(Panels& panels, const Axis& axis, const std::string& unit) {
    const std::vector<double> ticks = axis.ticks(4);
    for (const double value : ticks) panels.sheet().line(kPlotLeft, axis(value), kPlotRight, axis(value), "grid");
    panels.ticksLeft(axis, ticks, "", unit);
}

}  // namespace

std::string roadFigure(const Specimen& specimen) {
    Panels panels = panelsOf(specimen, "Wave, spectrogram, filter bank, cepstra, deltas and accelerations");
    drawWave(panels, specimen);
    drawSpectrogram(panels, specimen.analysis, 150, "Spectrogram", "magnitude, 25 ms Hamming window every 10 ms");
    drawEnergies(panels, specimen.analysis);
    drawBlock(panels, specimen.analysis, 0, 104, "Cepstra", "c0 (loudness) and the shape of the spectrum, c1 to c12");
    drawBlock(panels, specimen.analysis, 1, 78, "Deltas", "how the cepstra change, over five frames");
    drawBlock(panels, specimen.analysis, 2, 78, "Accelerations", "how the deltas change");
    return panels.finish();
}

std::string scoreFigure(const Specimen& specimen) {
    const Decision& decision = specimen.outcome->decision;
    const std::array<int, 3> order = colouredWords(*specimen.outcome);
    const int frames = specimen.analysis.frames;
    Panels panels = panelsOf(specimen, "Score of each frame for the best words");
    drawStates(panels, decision.paths[order[0]], wordOf(order[0]));

    std::vector<double> x;
    for (int t = 0; t < frames; ++t) x.push_back(panels.time()(frameMiddle(t)));

    double low = 0, high = -1e30;
    for (int i = 0; i < 3; ++i) {
        for (const Vorn32f gain : decision.paths[order[i]].gains) {
            low = std::min(low, double(gain));
            high = std::max(high, double(gain));
        }
    }
    double top = panels.begin(170, "Score of each frame");
    drawKey(panels.sheet(), kPlotRight, top - 8, {wordOf(order[0]), wordOf(order[1]), wordOf(order[2])}, kKeys);
    const Axis score{low - 3, high + 3, panels.bottom(), top};
    drawGrid(panels, score, "log-lik.");
    panels.frame();
    for (int i = 3; i-- > 0;) {
        std::vector<double> y;
        for (const Vorn32f gain : decision.paths[order[i]].gains) y.push_back(score(gain));
        panels.sheet().curve(x, y, kCurves[i]);
    }

    std::vector<double> leads[2];
    low = high = 0;
    for (int i = 0; i < 2; ++i) {
        double lead = 0;
        for (int t = 0; t < frames; ++t) {
            lead += double(decision.paths[order[0]].gains[t]) - double(decision.paths[order[i + 1]].gains[t]);
            leads[i].push_back(lead);
            low = std::min(low, lead);
            high = std::max(high, lead);
        }
    }
    const double room = 0.06 * (high - low) + 1e-6;
    top = panels.begin(130, format("Lead of \u201c%s\u201d, summed up to each frame", wordOf(order[0])));
    drawKey(panels.sheet(), kPlotRight, top - 8,
            {format("over %s", wordOf(order[1])), format("over %s", wordOf(order[2]))}, kKeys + 1);
    const Axis sum{low - room, high + room, panels.bottom(), top};
    drawGrid(panels, sum, "log-lik.");
    panels.frame();
    panels.sheet().line(kPlotLeft, sum(0), kPlotRight, sum(0), "zero");
    for (int i = 2; i-- > 0;) {
        std::vector<double> y;
        for (const double lead : leads[i]) y.push_back(sum(lead));
        panels.sheet().curve(x, y, kCurves[i + 1]);
    }
    return panels.finish();
}

std::string wordsFigure(const Specimen& specimen) {
    const Decision& decision = specimen.outcome->decision;
    const std::vector<int> order = ranking(decision);
    const std::array<int, 3> coloured = colouredWords(*specimen.outcome);
    const auto behind = [&](int word) { return double(decision.leadOver(word)); };
    Sheet sheet(kSheetWidth, "How far each word stays behind the best one");
    sheet.text(kPlotLeft, 16, "All ten words", "title");
    sheet.text(kPlotRight, 16, "how far behind the best, in log-likelihood a frame: shorter is closer", "label", "end");
    const Axis axis{0, behind(order.back()), kPlotLeft, kPlotRight - 40};
    double y = 26;
    for (const int word : order) {
        const double end = axis(behind(word));
        const auto colour = std::find(coloured.begin(), coloured.end(), word) - coloured.begin();
        const char* style = colour < 3 ? kBars[colour] : "bar";
        sheet.text(kPlotLeft - 8, y + 13, wordOf(word), word == order[0] ? "label strong" : "label", "end");
        sheet.box(kPlotLeft, y + 2, std::max(end - kPlotLeft, 2.0), 14, style);
        sheet.text(std::max(end, kPlotLeft + 2) + 6, y + 13, format("%.2f", behind(word)), "label");
        y += 20;
    }
    return sheet.finish(y + 4);
}

std::string planeFigure(const Run& run, const Plane& plane) {
    constexpr double kTop = 26, kBottom = 560, kMargin = 0.06;
    Sheet sheet(kSheetWidth, "Principal components of the mean frames");
    std::array<double, 2> low = plane.places[0], high = low;
    for (const auto& place : plane.places) {
        for (int i = 0; i < 2; ++i) low[i] = std::min(low[i], place[i]), high[i] = std::max(high[i], place[i]);
    }
    for (int i = 0; i < 2; ++i) {
        const double room = std::max(kMargin * (high[i] - low[i]), 1e-3);
        low[i] -= room, high[i] += room;
    }
    const Axis x{low[0], high[0], kPlotLeft, kPlotRight}, y{low[1], high[1], kBottom, kTop};
    for (const double tick : x.ticks(8)) {
        sheet.line(x(tick), kTop, x(tick), kBottom, "grid");
        sheet.text(x(tick), kBottom + 18, number(tick), "label", "middle");
    }
    for (const double tick : y.ticks(6)) {
        sheet.line(kPlotLeft, y(tick), kPlotRight, y(tick), "grid");
        sheet.text(kPlotLeft - 8, y(tick) + 4, number(tick), "label", "end");
    }
    sheet.box(kPlotLeft, kTop, kPlotRight - kPlotLeft, kBottom - kTop, "frame");
    sheet.text(kPlotLeft, 16, format("second component: %.0f %% of the variance", 100.0 * plane.shares[1]), "label");
    sheet.text(kPlotRight, kBottom + 36, format("first component: %.0f %% of the variance", 100.0 * plane.shares[0]),
               "label", "end");

    std::array<std::array<double, 2>, kWords> sum{};
    std::array<int, kWords> count{};
    for (std::size_t i = 0; i < plane.places.size(); ++i) {
        const auto& [across, up] = plane.places[i];
        const std::optional<int>& spoken = run.outcomes[i].spoken;
        if (!spoken) {
            sheet.text(x(across), y(up) + 4, "\u00b7", "label", "middle");
            continue;
        }
        sheet.text(x(across), y(up) + 4, format("%d", *spoken), format("digit d%d", *spoken).c_str(), "middle");
        sum[*spoken][0] += across, sum[*spoken][1] += up;
        ++count[*spoken];
    }
    for (int word = 0; word < kWords; ++word) {
        if (count[word] == 0) continue;
        sheet.text(x(sum[word][0] / count[word]), y(sum[word][1] / count[word]) + 5, wordOf(word),
                   format("digit mean d%d", word).c_str(), "middle");
    }
    return sheet.finish(kBottom + 42);
}

}  // namespace digits
