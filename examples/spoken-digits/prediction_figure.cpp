// Three pictures: one frame's envelope over its spectrum, line spectral frequencies over the spectrogram, and log area
// ratios as colours.
#include "prediction_figure.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <functional>

#include "panels.h"
#include "prediction.h"
#include "svg.h"

namespace digits {
namespace {

constexpr double kHalfRate = kSampleRate / 2.0;  // hertz
constexpr double kDepth = 75;                    // decibels that the picture of one frame shows at most

using IsGap = std::function<bool(const PredictedFrame& frame)>;

bool lacksLines(const PredictedFrame& frame) { return !frame.lines; }
bool lacksAreas(const PredictedFrame& frame) { return !frame.logAreas; }

// The frames that a picture has nothing of: those without a filter, and those whose filter lacks what is shown.
struct Gaps {
    int frames, without = 0, lacking = 0;

    Gaps(const Prediction& prediction, const IsGap& isGap) : frames(static_cast<int>(prediction.size())) {
        for (const auto& frame : prediction) {
            without += !frame;
            lacking += frame && isGap(*frame);
        }
    }

    std::string told(const char* reason) const {
        return format("Gaps: %d of %d frames (%d without a filter, as in silence; %d %s).", without + lacking, frames,
                      without, lacking, reason);
    }
};

double hertz(int bin) { return bin * kHalfRate / kEnvelopeBins; }

// The peaks of an envelope, "500, 1500 and 2500 Hz".
std::string peaks(const std::vector<Vorn32f>& magnitudes) {
    std::vector<std::string> places;
    for (int i = 1; i + 1 < kEnvelopeBins; ++i) {
        if (magnitudes[i] > magnitudes[i - 1] && magnitudes[i] >= magnitudes[i + 1]) {
            places.push_back(format("%.0f", 10.0 * std::round(hertz(i) / 10.0)));
        }
    }
    std::string text;
    for (std::size_t i = 0; i < places.size(); ++i) {
        text += (i == 0 ? "" : i + 1 == places.size() ? " and " : ", ") + places[i];
    }
    return text.empty() ? "" : "Here the envelope has its peaks at " + text + " Hz. ";
}

std::string envelopeFigure(const Analysis& analysis, int frame, const std::vector<Vorn32f>& magnitudes,
                           const PredictedFrame& predicted) {
    constexpr double kTop = 26, kBottom = 306;
    Sheet sheet(kSheetWidth, "Spectrum of one frame and its envelope");
    const Axis x{0, kHalfRate, kPlotLeft, kPlotRight};
    const double zero = decibels(*std::max_element(analysis.magnitudes.begin(), analysis.magnitudes.end()));
    std::vector<double> level[2], place[2];
    for (int bin = 0; bin < kBins; ++bin) {
        place[0].push_back(x(bin * kHalfRate / (kBins - 1)));
        level[0].push_back(decibels(analysis.magnitudes[static_cast<std::size_t>(frame) * kBins + bin]) - zero);
    }
    for (int bin = 0; bin < kEnvelopeBins; ++bin) {
        place[1].push_back(x(hertz(bin)));
        level[1].push_back(decibels(magnitudes[bin]) - zero);
    }
    double most = -1e9, least = 1e9;
    for (const std::vector<double>& each : level) {
        most = std::max(most, *std::max_element(each.begin(), each.end()));
        least = std::min(least, *std::min_element(each.begin(), each.end()));
    }
    most = std::min(most, 60.0) + 4;
    const Axis y{std::max(least - 4, most - kDepth), most, kBottom, kTop};

    for (const double value : x.ticks(8)) {
        sheet.line(x(value), kTop, x(value), kBottom, "grid");
        sheet.text(x(value), kBottom + 18, format("%.0f", value), "label", "middle");
    }
    sheet.text(kPlotRight + 24, kBottom + 18, "Hz", "label");
    for (const double value : y.ticks(6)) {
        sheet.line(kPlotLeft, y(value), kPlotRight, y(value), "grid");
        sheet.text(kPlotLeft - 8, y(value) + 4, number(value), "label", "end");
    }
    sheet.text(8, kTop - 8, "dB", "label");
    sheet.text(kPlotLeft, kTop - 8, format("Frame at %.1f ms", frameMiddle(frame)), "title");
    static constexpr const char* kKeys[] = {"key thin", "key first", "key second dashed"};
    drawKey(sheet, kPlotRight, kTop - 8, {"magnitude spectrum", "envelope", "line spectral frequencies"}, kKeys);
    if (predicted.lines) {
        for (const Vorn32f cosine : *predicted.lines) {
            const double at = x(lineFrequency(cosine));
            sheet.line(at, kTop, at, kBottom, "spectral-line");
        }
    }
    for (int i = 0; i < 2; ++i) {
        for (double& value : level[i]) value = y(std::clamp(value, y.from, y.to));
        sheet.curve(place[i], level[i], i == 0 ? "curve thin" : "curve first");
    }
    sheet.box(kPlotLeft, kTop, kPlotRight - kPlotLeft, kBottom - kTop, "frame");
    return sheet.finish(kBottom + 26);
}

// A line through the middles of frames, broken where there is none.
void drawTrack(Panels& panels, const Axis& kilohertz, const Prediction& prediction, int line) {
    std::vector<double> x, y;
    const auto end = [&] {
        if (x.size() == 1) {  // a frame by itself: as wide as a frame is
            const double half = 0.5 * (panels.time()(kStepMs) - panels.time()(0));
            x = {x[0] - half, x[0] + half};
            y = {y[0], y[0]};
        }
        if (!x.empty()) {
            panels.sheet().curve(x, y, "track under");
            panels.sheet().curve(x, y, line % 2 == 0 ? "track odd-line" : "track even-line");
        }
        x.clear();
        y.clear();
    };
    for (int t = 0; t < panels.frames(); ++t) {
        if (prediction[t] && prediction[t]->lines) {
            x.push_back(panels.time()(frameMiddle(t)));
            y.push_back(kilohertz(lineFrequency((*prediction[t]->lines)[line]) / 1000.0));
        } else {
            end();
        }
    }
    end();
}

std::string linesFigure(const Specimen& specimen, const Prediction& prediction) {
    Panels panels("Line spectral frequencies over the spectrogram", specimen.samples.size(), specimen.analysis.frames);
    const Axis kilohertz = drawSpectrogram(panels, specimen.analysis, 300, "Line spectral frequencies",
                                           "over the spectrogram; the odd ones white, the even ones blue");
    for (int line = 0; line < kPredictionOrder; ++line) drawTrack(panels, kilohertz, prediction, line);
    return panels.finish();
}

std::string areasFigure(const Specimen& specimen, const Prediction& prediction) {
    Panels panels("Log area ratios", specimen.samples.size(), specimen.analysis.frames);
    const double top = panels.begin(170, "Log area ratios", "ratio 1 at the bottom; natural logarithms");
    const Axis axis{0.5, kPredictionOrder + 0.5, panels.bottom(), top};
    std::vector<double> sizes;
    for (const auto& frame : prediction) {
        if (!frame || !frame->logAreas) continue;
        for (const Vorn32f value : *frame->logAreas) sizes.push_back(std::abs(value));
    }
    const double most = usualSize(std::move(sizes));
    panels.matrix(
        kPredictionOrder,
        [&](int row, int t) {
            return prediction[t] && prediction[t]->logAreas ? double((*prediction[t]->logAreas)[row]) : 0.0;
        },
        kBalance, -most, most, number(-most), format("+%.3g", most));
    for (int t = 0; t < panels.frames(); ++t) {
        if (prediction[t] && prediction[t]->logAreas) continue;
        int end = t + 1;
        while (end < panels.frames() && !(prediction[end] && prediction[end]->logAreas)) ++end;
        const double left = panels.time()(frameStart(t)), right = panels.time()(frameStart(end));
        panels.sheet().box(left, top, right - left, panels.bottom() - top, "gap",
                           format("no values: %d of the frames", end - t));
        t = end;
    }
    std::vector<double> ratios;
    for (int ratio = 1; ratio <= kPredictionOrder; ++ratio) ratios.push_back(ratio);
    panels.ticksLeft(axis, ratios, "", "ratio");
    return panels.finish();
}

std::string envelopePart(const Specimen& specimen, const Prediction& prediction) {
    const std::optional<int> loudest = loudestFrame(prediction);
    if (!loudest) {
        return "<p class='note'>There is no envelope to show: no frame has a filter, as in silence.</p>\n";
    }
    const PredictedFrame& frame = *prediction[*loudest];
    const std::vector<Vorn32f> magnitudes = envelope(frame);
    return envelopeFigure(specimen.analysis, *loudest, magnitudes, frame) +
           format(
               "<p class='note'>%s, the 25 ms around %.1f ms. The thin line is its spectrum, one column of the "
               "spectrogram: %s The thick line is the envelope that ten numbers make of it: what the mouth and "
               "throat do to the sound of the voice, whatever its pitch. Its peaks are resonances, called formants, "
               "and where the first two of them lie tells one vowel from another. ",
               frame.voiced() ? "The loudest voiced frame" : "The loudest frame, since none is voiced",
               frameMiddle(*loudest),
               frame.voiced() ? "its teeth stand at multiples of the pitch."
                              : "without a pitch, its teeth are chance.") +
           peaks(magnitudes) +
           "The dashed lines are the same ten numbers once more, as frequencies: two that stand close together hold a "
           "peak between them. 0 dB is the largest magnitude of the recording. Functions: "
           "<code>vornsLinearPrediction_Auto_32f</code>, <code>vornsLPToSpectrum_32f</code>.</p>\n";
}

}  // namespace

std::string predictionSection(const Specimen& specimen, const FrontEnd& frontEnd) {
    const Prediction prediction = predict(frontEnd, specimen.samples);
    return "<section><h2>Linear prediction</h2><p class='lead'>The same frames of <code>" +
           escaped(specimen.outcome->path.filename().string()) +
           "</code>, seen in another way, which has no part in the decision: each sample is guessed from the ten "
           "before it, and the ten weights that guess best describe the frame. Below, three ways to look at them."
           "</p>\n" +
           envelopePart(specimen, prediction) + linesFigure(specimen, prediction) +
           "<p class='note'>The dashed lines of the picture above, for every frame. There are ten in each, they never "
           "cross, and white and blue take turns. Follow the bright bands: a white and a blue line run close together "
           "along each resonance, and glide with it as the mouth moves. In noise they spread out evenly. " +
           Gaps(prediction, lacksLines).told("in which the search found fewer than ten") +
           " Functions: <code>vornsLinearPrediction_Auto_32f</code>, <code>vornsLPToLSP_32f</code>.</p>\n" +
           areasFigure(specimen, prediction) +
           "<p class='note'>A tube of ten pieces, each of its own width, has the same resonances (Wakita, 1973). Each "
           "row is one place where two pieces meet, and tells by which factor the areas differ, as a logarithm: near "
           "white there is hardly a step, red and blue are steps one way and the other. The first row also "
           "follows the slope of the spectrum, and sets vowels (blue, most energy at low frequencies) apart from "
           "hissing sounds (red). Columns that look alike are the same sound. Grey: no values. " +
           Gaps(prediction, lacksAreas).told("whose filter is at the edge of stability") +
           " Functions: <code>vornsLPToReflection_32f</code>, <code>vornsReflectionToLAR_32f</code>.</p></section>\n";
}

}  // namespace digits
