// Draws what the recogniser sees and how it decides.
#include "figures.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <functional>
#include <numeric>
#include <optional>

#include "picture.h"
#include "svg.h"

namespace digits {
namespace {

constexpr double kWidth = 960, kLeft = 84, kRight = 866;  // the sheet, and the plots on it
constexpr double kStepMs = 1000.0 * kFrameStep / kSampleRate;
constexpr double kFrameMs = 1000.0 * kFrameLength / kSampleRate;

// A frame is drawn as one step around its middle.
double frameStart(int frame) { return frame * kStepMs + 0.5 * (kFrameMs - kStepMs); }

// With a true minus sign.
std::string number(double value) { return format("%s%.3g", value < 0 ? "\u2212" : "", std::abs(value)); }

// How a matrix is painted: its colours, the value where they begin, and the look of its cells.
struct Paint {
    Colour (*colour)(double);
    double begin;
    const char* style;
};

constexpr Paint kHeat{heat, 0.0, "smooth"}, kBalance{balance, -1.0, "cells"};

// Panels under one another that share the time axis.
class Panels {
public:
    Panels(const Specimen& specimen, const std::string& title)
        : sheet_(kWidth, title),
          time_{0, 1000.0 * static_cast<double>(specimen.samples.size()) / kSampleRate, kLeft, kRight},
          frames_(specimen.analysis.frames) {
        const Path& path = specimen.outcome->decision.paths[specimen.outcome->decision.best];
        for (int t = 1; t < frames_; ++t) {
            if (path.states[t] != path.states[t - 1]) borders_.push_back(frameStart(t));
        }
    }

    Sheet& sheet() { return sheet_; }
    const Axis& time() const { return time_; }

    // Begins a panel of the given height under the last one and returns its top.
    double begin(double height, const std::string& title, const std::string& note = {}) {
        top_ = bottom_ + 30;
        bottom_ = top_ + height;
        sheet_.text(kLeft, top_ - 8, title, "title");
        if (!note.empty()) sheet_.text(kRight, top_ - 8, note, "label", "end");
        return top_;
    }

    double bottom() const { return bottom_; }

    void frame() {
        for (const double border : borders_) sheet_.line(time_(border), top_, time_(border), bottom_, "border");
        sheet_.box(kLeft, top_, kRight - kLeft, bottom_ - top_, "frame");
    }

    void ticksLeft(const Axis& axis, const std::vector<double>& values, const std::string& prefix,
                   const std::string& unit) {
        for (const double value : values) {
            sheet_.line(kLeft - 4, axis(value), kLeft, axis(value), "tick");
            sheet_.text(kLeft - 8, axis(value) + 4, prefix + number(value), "label", "end");
        }
        sheet_.text(8, top_ - 8, unit, "label");
    }

    // A matrix as a picture, row 0 at the bottom, with a bar that tells its colours.
    void matrix(int rows, const std::function<double(int row, int frame)>& value, const Paint& paint, double low,
                double high, const std::string& lowText, const std::string& highText) {
        const Axis colours{low, high, paint.begin, 1.0};
        const double x = time_(frameStart(0)), width = time_(frameStart(frames_)) - x, height = bottom_ - top_;
        sheet_.box(kLeft, top_, kRight - kLeft, height, "void");
        const auto pixel = [&](int px, int py) { return paint.colour(colours(value(rows - 1 - py, px))); };
        sheet_.picture(x, top_, width, height, pngAddress(frames_, rows, pixel), paint.style);
        frame();
        constexpr int kSteps = 64;
        const Axis bar{0, kSteps - 1, 1.0, paint.begin};
        const auto step = [&](int, int py) { return paint.colour(bar(py)); };
        sheet_.picture(kRight + 12, top_, 12, height, pngAddress(1, kSteps, step), "smooth");
        sheet_.text(kRight + 30, top_ + 10, highText, "label");
        sheet_.text(kRight + 30, bottom_, lowText, "label");
    }

    // The time axis under the last panel.
    std::string finish() {
        for (const double ms : time_.ticks(8)) {
            sheet_.line(time_(ms), bottom_, time_(ms), bottom_ + 4, "tick");
            sheet_.text(time_(ms), bottom_ + 18, format("%.0f", ms), "label", "middle");
        }
        sheet_.text(kRight + 24, bottom_ + 18, "ms", "label");
        return sheet_.finish(bottom_ + 26);
    }

private:
    Sheet sheet_;
    Axis time_;
    int frames_;
    std::vector<double> borders_;
    double top_ = 0, bottom_ = -6;
};

double decibels(double magnitude) { return 20.0 * std::log10(std::max(magnitude, 1e-6)); }

void drawWave(Panels& panels, const Specimen& specimen) {
    const double top = panels.begin(92, "Wave", "thin upright lines: where the best word's states change");
    const auto& samples = specimen.samples;
    double most = 0.01;
    for (const Vorn16s sample : samples) most = std::max(most, std::abs(sample / 32768.0));
    const Axis axis{-1.05 * most, 1.05 * most, panels.bottom(), top};
    std::vector<double> x, low, high;
    const int columns = static_cast<int>(kRight - kLeft);
    for (int column = 0; column < columns; ++column) {
        const std::size_t begin = samples.size() * static_cast<std::size_t>(column) / columns;
        const std::size_t end = std::max(begin + 1, samples.size() * static_cast<std::size_t>(column + 1) / columns);
        const auto [least, greatest] = std::minmax_element(samples.begin() + static_cast<std::ptrdiff_t>(begin),
                                                           samples.begin() + static_cast<std::ptrdiff_t>(end));
        x.push_back(kLeft + column);
        low.push_back(axis(*least / 32768.0) + 0.4);
        high.push_back(axis(*greatest / 32768.0) - 0.4);
    }
    panels.sheet().line(kLeft, axis(0), kRight, axis(0), "grid");
    panels.sheet().area(x, low, high, "wave");
    panels.frame();
    panels.ticksLeft(axis, axis.ticks(4), "", "amplitude");
}

void drawSpectrogram(Panels& panels, const Analysis& analysis) {
    const double top = panels.begin(150, "Spectrogram", "magnitude, 25 ms Hamming window every 10 ms");
    const Axis axis{0, kSampleRate / 2000.0, panels.bottom(), top};
    const double most = decibels(*std::max_element(analysis.magnitudes.begin(), analysis.magnitudes.end()));
    panels.matrix(
        kBins, [&](int row, int t) { return decibels(analysis.magnitudes[static_cast<std::size_t>(t) * kBins + row]); },
        kHeat, most - 65, most, "\u221265 dB", "0 dB");
    panels.ticksLeft(axis, {0, 1, 2, 3, 4}, "", "kHz");
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
    std::sort(sizes.begin(), sizes.end());
    const double most = std::max(sizes[sizes.size() * 49 / 50], 1e-6);  // lets one in fifty go beyond the colours
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

void drawKey(Sheet& sheet, double right, double y, const std::vector<std::string>& names, const char* const* keys) {
    double x = right;
    for (std::size_t i = names.size(); i-- > 0;) {
        x -= 7.0 * static_cast<double>(names[i].size()) + 6;
        sheet.text(x, y, names[i], "label strong");
        x -= 22;
        sheet.line(x, y - 4, x + 16, y - 4, keys[i]);
        x -= 10;
    }
}

void drawGrid(Panels& panels, const Axis& axis, const std::string& unit) {
    const std::vector<double> ticks = axis.ticks(4);
    for (const double value : ticks) panels.sheet().line(kLeft, axis(value), kRight, axis(value), "grid");
    panels.ticksLeft(axis, ticks, "", unit);
}

}  // namespace

std::string roadFigure(const Specimen& specimen) {
    Panels panels(specimen, "Wave, spectrogram, filter bank, cepstra, deltas and accelerations");
    drawWave(panels, specimen);
    drawSpectrogram(panels, specimen.analysis);
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
    Panels panels(specimen, "Score of each frame for the best words");
    drawStates(panels, decision.paths[order[0]], wordOf(order[0]));

    std::vector<double> x;
    for (int t = 0; t < frames; ++t) x.push_back(panels.time()(frameStart(t) + 0.5 * kStepMs));

    double low = 0, high = -1e30;
    for (int i = 0; i < 3; ++i) {
        for (const Vorn32f gain : decision.paths[order[i]].gains) {
            low = std::min(low, double(gain));
            high = std::max(high, double(gain));
        }
    }
    double top = panels.begin(170, "Score of each frame");
    drawKey(panels.sheet(), kRight, top - 8, {wordOf(order[0]), wordOf(order[1]), wordOf(order[2])}, kKeys);
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
    drawKey(panels.sheet(), kRight, top - 8, {format("over %s", wordOf(order[1])), format("over %s", wordOf(order[2]))},
            kKeys + 1);
    const Axis sum{low - room, high + room, panels.bottom(), top};
    drawGrid(panels, sum, "log-lik.");
    panels.frame();
    panels.sheet().line(kLeft, sum(0), kRight, sum(0), "zero");
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
    Sheet sheet(kWidth, "How far each word stays behind the best one");
    sheet.text(kLeft, 16, "All ten words", "title");
    sheet.text(kRight, 16, "how far behind the best, in log-likelihood a frame: shorter is closer", "label", "end");
    const Axis axis{0, behind(order.back()), kLeft, kRight - 40};
    double y = 26;
    for (const int word : order) {
        const double end = axis(behind(word));
        const auto colour = std::find(coloured.begin(), coloured.end(), word) - coloured.begin();
        const char* style = colour < 3 ? kBars[colour] : "bar";
        sheet.text(kLeft - 8, y + 13, wordOf(word), word == order[0] ? "label strong" : "label", "end");
        sheet.box(kLeft, y + 2, std::max(end - kLeft, 2.0), 14, style);
        sheet.text(std::max(end, kLeft + 2) + 6, y + 13, format("%.2f", behind(word)), "label");
        y += 20;
    }
    return sheet.finish(y + 4);
}

std::string confusionFigure(const Tally& counts) {
    constexpr double kCell = 46, kX = 76, kY = 52;
    Sheet sheet(kX + kWords * kCell + 70, "Confusion matrix");
    sheet.text(kX + kWords * kCell / 2, 16, "recognised", "title", "middle");
    sheet.text(8, kY - 10, "spoken", "title");
    sheet.text(kX + kWords * kCell + 12, kY - 10, "right", "title");
    for (int word = 0; word < kWords; ++word) {
        const double middle = (word + 0.5) * kCell;
        sheet.text(kX + middle, kY - 10, wordOf(word), "label", "middle");
        sheet.text(kX - 10, kY + middle + 4, wordOf(word), "label", "end");
        const int spoken = counts.spoken(word);
        if (spoken > 0) {
            sheet.text(kX + kWords * kCell + 12, kY + middle + 4,
                       format("%.1f %%", 100.0 * counts.confusion[word][word] / spoken), "label");
        }
        for (int other = 0; other < kWords; ++other) {
            const int count = counts.confusion[word][other];
            const double x = kX + other * kCell, y = kY + word * kCell;
            const double share = spoken > 0 ? double(count) / spoken : 0.0;
            const char* hue = word == other ? "var(--good)" : "var(--bad)";
            // A single confusion must be seen too: colours begin well above nothing.
            const double strength = count == 0 ? 0.0 : word == other ? 15 + 80 * share : 35 + 60 * share;
            sheet.box(x + 1, y + 1, kCell - 2, kCell - 2, "cell",
                      format("%s taken for %s: %d of %d", wordOf(word), wordOf(other), count, spoken),
                      format("color-mix(in srgb, %s %.0f%%, var(--cell))", hue, strength));
            if (count > 0) {
                sheet.text(x + kCell / 2, y + kCell / 2 + 5, format("%d", count),
                           strength > 70 ? "count bright" : "count", "middle");
            }
        }
    }
    return sheet.finish(kY + kWords * kCell + 6);
}

std::string planeFigure(const Run& run, const Plane& plane) {
    constexpr double kTop = 26, kBottom = 560, kMargin = 0.06;
    Sheet sheet(kWidth, "Principal components of the mean frames");
    std::array<double, 2> low = plane.places[0], high = low;
    for (const auto& place : plane.places) {
        for (int i = 0; i < 2; ++i) low[i] = std::min(low[i], place[i]), high[i] = std::max(high[i], place[i]);
    }
    for (int i = 0; i < 2; ++i) {
        const double room = std::max(kMargin * (high[i] - low[i]), 1e-3);
        low[i] -= room, high[i] += room;
    }
    const Axis x{low[0], high[0], kLeft, kRight}, y{low[1], high[1], kBottom, kTop};
    for (const double tick : x.ticks(8)) {
        sheet.line(x(tick), kTop, x(tick), kBottom, "grid");
        sheet.text(x(tick), kBottom + 18, number(tick), "label", "middle");
    }
    for (const double tick : y.ticks(6)) {
        sheet.line(kLeft, y(tick), kRight, y(tick), "grid");
        sheet.text(kLeft - 8, y(tick) + 4, number(tick), "label", "end");
    }
    sheet.box(kLeft, kTop, kRight - kLeft, kBottom - kTop, "frame");
    sheet.text(kLeft, 16, format("second component: %.0f %% of the variance", 100.0 * plane.shares[1]), "label");
    sheet.text(kRight, kBottom + 36, format("first component: %.0f %% of the variance", 100.0 * plane.shares[0]),
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
