#include "figures.h"

#include <algorithm>
#include <cmath>

#include "panels.h"
#include "suppression.h"
#include "svg.h"

namespace digits {
namespace {

// In the order of the contenders.
constexpr const char* kCurves[] = {"curve thin", "curve second", "curve third", "curve first", "curve first dashed"};
constexpr const char* kKeys[] = {"key thin", "key second", "key third", "key first", "key first dashed"};

int framesOf(const Mixed& mixed) { return framesIn(mixed.samples.size()); }

// A curve with gaps where there is no value.
void drawPieces(Sheet& sheet, const std::vector<double>& x, const std::vector<double>& y,
                const std::vector<double>& values, const char* style) {
    for (std::size_t i = 0; i < values.size();) {
        std::size_t end = i;
        while (end < values.size() && values[end] > 0.0) ++end;
        if (end > i) {
            const auto from = static_cast<std::ptrdiff_t>(i), to = static_cast<std::ptrdiff_t>(end);
            sheet.curve({x.begin() + from, x.begin() + to}, {y.begin() + from, y.begin() + to}, style);
        }
        i = end + 1;
    }
}

void drawWave(Panels& panels, const Mixed& mixed, const std::vector<bool>& speech) {
    const double top =
        panels.begin(120, "Wave and detector", "shaded: taken for speech; upright lines: where the word is");
    double most = 0.01;
    for (const Vorn16s sample : mixed.samples) most = std::max(most, std::abs(sample / 32768.0));
    const Axis axis{-1.05 * most, 1.05 * most, panels.bottom(), top};
    for (std::size_t t = 0; t < speech.size();) {
        std::size_t end = t;
        while (end < speech.size() && speech[end]) ++end;
        if (end > t) {
            const double from = panels.time()(double(t) * kStepMs);
            const double to = std::min(panels.time()(double(end) * kStepMs), kPlotRight);
            panels.sheet().box(from, top, to - from, panels.bottom() - top, "odd",
                               format("speech: %.0f to %.0f ms", double(t) * kStepMs, double(end) * kStepMs));
        }
        t = end + 1;
    }
    std::vector<double> x, low, high;
    const auto columns = static_cast<std::size_t>(kPlotRight - kPlotLeft);
    for (std::size_t column = 0; column < columns; ++column) {
        const std::size_t begin = mixed.samples.size() * column / columns;
        const std::size_t end = std::max(begin + 1, mixed.samples.size() * (column + 1) / columns);
        const auto [least, greatest] = std::minmax_element(mixed.samples.begin() + static_cast<std::ptrdiff_t>(begin),
                                                           mixed.samples.begin() + static_cast<std::ptrdiff_t>(end));
        x.push_back(kPlotLeft + double(column));
        low.push_back(axis(*least / 32768.0) + 0.4);
        high.push_back(axis(*greatest / 32768.0) - 0.4);
    }
    panels.sheet().area(x, low, high, "wave");
    for (const std::size_t border : {mixed.begin, mixed.end}) {
        const double place = panels.time()(1000.0 * double(border) / kSampleRate);
        panels.sheet().line(place, top, place, panels.bottom(), "border");
    }
    panels.frame();
    panels.ticksLeft(axis, axis.ticks(4), "", "amplitude");
}

void drawGrid(Panels& panels, const Axis& axis, const std::string& unit) {
    const std::vector<double> ticks = axis.ticks(4);
    for (const double value : ticks) panels.sheet().line(kPlotLeft, axis(value), kPlotRight, axis(value), "grid");
    panels.ticksLeft(axis, ticks, "", unit);
}

}  // namespace

std::string accuracyFigure(const std::vector<Result>& results, Training training) {
    constexpr double kTop = 48, kBottom = 268, kGap = 26;
    const double width = (kPlotRight + 60 - kPlotLeft - 2 * kGap) / 3;
    Sheet sheet(kSheetWidth, format("Accuracy over the level, trained %s", nameOf(training)));
    std::vector<std::string> names;
    for (const Result& result : results) {
        if (result.training == training) names.push_back(result.name);
    }
    sheet.text(kPlotLeft, 14, format("Words right, trained %s", nameOf(training)), "title");
    drawKey(sheet, kPlotRight + 60, 14, names, kKeys);

    const Axis percent{0, 100, kBottom, kTop};
    for (std::size_t n = 0; n < std::size(kNoises); ++n) {
        const Noise noise = kNoises[n];
        const double left = kPlotLeft + double(n) * (width + kGap);
        const double step = width / (double(std::size(kLevels)) + 1);
        sheet.text(left, kTop - 8, nameOf(noise), "title");
        for (const double value : {0.0, 25.0, 50.0, 75.0, 100.0}) {
            sheet.line(left, percent(value), left + width, percent(value), "grid");
            if (n == 0) sheet.text(left - 8, percent(value) + 4, format("%.0f %%", value), "label", "end");
        }
        sheet.box(left, kTop, width, kBottom - kTop, "frame");
        std::vector<std::pair<double, Snr>> places{{left + 0.5 * step, std::nullopt}};
        for (const int level : kLevels) places.push_back({places.back().first + step, level});
        for (const auto& [x, level] : places) {
            sheet.text(x, kBottom + 18, level ? number(*level) : "clean", "label", "middle");
        }
        sheet.text(left + width, kBottom + 36, "SNR in dB", "label", "end");
        std::size_t style = 0;
        for (const Result& result : results) {
            if (result.training != training) continue;
            std::vector<double> x, y;
            for (const auto& [place, level] : places) {
                const auto counted = [&, wanted = level](const Condition& c) {
                    return c.snr == wanted && (!wanted || c.noise == noise);
                };
                if (std::none_of(result.conditions.begin(), result.conditions.end(), counted)) continue;
                x.push_back(place);
                y.push_back(percent(accuracy(result, counted)));
            }
            sheet.curve(x, y, kCurves[style++ % std::size(kCurves)]);
        }
    }
    return sheet.finish(kBottom + 42);
}

std::string spectrogramFigure(const Specimen& specimen, const Insight& insight) {
    Panels panels("Spectrograms: noisy, cleaned, clean", specimen.noisy.samples.size(), framesOf(specimen.noisy));
    const FrontEnd frontEnd;
    const auto draw = [&](const std::vector<Vorn16s>& samples, const char* title, const std::string& note) {
        drawSpectrogram(panels, frontEnd.analyse(samples), 118, title, note);
    };
    draw(specimen.noisy.samples, "Noisy", specimen.conditions);
    draw(insight.reduced, "Cleaned by two stages", "two Wiener filters, designed every 10 ms");
    draw(insight.suppressed, "Cleaned by tracking", "tracked noise, gains by the rule of Ephraim and Malah");
    draw(specimen.clean.samples, "Clean", "as recorded, with a floor 50 dB below the word");
    return panels.finish();
}

std::string floorFigure(const Specimen& specimen, const Insight& insight) {
    Panels panels("The noise and its estimates over time", specimen.noisy.samples.size(), framesOf(specimen.noisy));
    constexpr const char* kFloorKeys[] = {"key thin", "key first", "key second", "key third"};
    for (const Insight::Floor& floor : insight.floors) {
        const double top = panels.begin(120, format("%d Hz", floor.hertz));
        drawKey(panels.sheet(), kPlotRight, top - 8, {"noisy", "true noise", "learnt in pauses", "tracked"},
                kFloorKeys);
        double low = 1e9, high = -1e9;
        for (const auto* values : {&floor.noisy, &floor.noise, &floor.learnt, &floor.tracked}) {
            low = std::min(low, *std::min_element(values->begin(), values->end()));
            high = std::max(high, *std::max_element(values->begin(), values->end()));
        }
        const Axis axis{std::max(low, high - 60) - 2, high + 2, panels.bottom(), top};
        drawGrid(panels, axis, "dB");
        panels.frame();
        const auto draw = [&](const std::vector<double>& values, double step, double offset, const char* style) {
            std::vector<double> x, y;
            for (std::size_t i = 0; i < values.size(); ++i) {
                x.push_back(std::clamp(panels.time()(double(i) * step + offset), kPlotLeft, kPlotRight));
                y.push_back(axis(std::max(values[i], axis.from)));
            }
            panels.sheet().curve(x, y, style);
        };
        constexpr double kTrackedMs = 1000.0 * kSuppressionStep / kSampleRate;
        draw(floor.noisy, kStepMs, 0.5 * kStepMs, "curve thin");
        draw(floor.noise, kStepMs, 0.5 * kStepMs, "curve first");
        draw(floor.learnt, kStepMs, 0.5 * kStepMs, "curve second");
        draw(floor.tracked, kTrackedMs, 0.0, "curve third");
    }
    return panels.finish();
}

std::string decisionFigure(const Specimen& specimen, const Insight& insight) {
    Panels panels("Wave, detector and pitch", specimen.noisy.samples.size(), framesOf(specimen.noisy));
    drawWave(panels, specimen.noisy, insight.speech);

    const double top = panels.begin(130, "Pitch");
    constexpr const char* kPitchKeys[] = {"wide", "key second", "key first"};
    drawKey(panels.sheet(), kPlotRight, top - 8, {"clean", "noisy", "cleaned"}, kPitchKeys);
    const Axis axis{50, 410, panels.bottom(), top};
    drawGrid(panels, axis, "Hz");
    panels.frame();
    const auto draw = [&](const std::vector<double>& hertz, const char* style) {
        std::vector<double> x, y;
        for (std::size_t i = 0; i < hertz.size(); ++i) {
            x.push_back(panels.time()(double(i) * kStepMs + 20.0));
            y.push_back(axis(hertz[i]));
        }
        drawPieces(panels.sheet(), x, y, hertz, style);
    };
    draw(insight.pitch.clean, "curve wide");
    draw(insight.pitch.noisy, "curve second");
    draw(insight.pitch.reduced, "curve first");
    return panels.finish();
}

}  // namespace digits
