// The page about an evaluation.
#include "report.h"

#include <algorithm>

#include "figures.h"
#include "page.h"
#include "picture.h"
#include "svg.h"
#include "wave_file.h"

namespace digits {
namespace {

// What this page's curves need beside the styles of all pages.
constexpr const char* kStyle =
    "<style>svg .dashed { stroke-dasharray: 5 4; stroke-opacity: .75; } svg .wide { stroke: var(--bar); "
    "stroke-width: 6; stroke-linecap: round; stroke-opacity: .6; } .listen td { vertical-align: middle; }</style>\n";

struct Step {
    const char *name, *what, *functions;
};

constexpr Step kRoad[] = {
    {"Spectrum", "25 ms under a Hann window every 10 ms; 65 smoothed bins",
     "vornsFFTFwd_RToPerm_32f_I, vornsSmoothedPowerSpectrumAurora_32f"},
    {"First stage", "the noise is learnt in pauses; a Wiener filter, designed along the mel scale",
     "vornsWienerFilterDesign_Aurora_32f, vornsEvalFBank_32f, vornsTabsCalculation_Aurora_32f, "
     "vornsResidualFilter_Aurora_32f"},
    {"Second stage", "the rest of the noise is followed all the time; filtered less where there is speech",
     "vornsNoiseSpectrumUpdate_Aurora_32f"},
    {"Waveform", "the loud stretch behind each pitch pulse is raised", "vornsWaveProcessing_Aurora_32f"},
    {"Cepstrum", "23 mel bands, their logarithms, 12 cepstra, c0 and energy", "vornsDCTLifter_32f, vornsLn_32f_I"},
    {"Equalisation", "the cepstra are led to those of clean words", "vornsBlindEqualization_Aurora_32f"},
    {"Movement", "deltas and accelerations over nine frames", "vornsDeltaDelta_Aurora_32f_D2"},
    {"Frames dropped", "where the detector hears nobody", "vornsVADDecision_Aurora_32f, vornsVADFlush_Aurora_32f"},
};

const Result* find(const std::vector<Result>& results, const std::string& name, Training training) {
    for (const Result& result : results) {
        if (result.name == name && result.training == training) return &result;
    }
    return nullptr;
}

std::string tiles(const Experiment& experiment, const Findings& findings) {
    std::string html = "<div class='tiles'>\n";
    for (const Training training : experiment.trainings) {
        const Result* plain = find(findings.results, "plain", training);
        const Result* robust = find(findings.results, "two-stage", training);
        const double before = meanAccuracy(*plain), after = meanAccuracy(*robust);
        html += tile(format("%.1f %%", after),
                     format("words right between 20 and 0 dB by the robust front end, trained %s; by the plain one: "
                            "%.1f %%",
                            nameOf(training), before));
        html += tile(format("%.0f %%", errorsSaved(before, after)),
                     format("of the plain front end's errors are saved, trained %s", nameOf(training)));
    }
    html += tile(format("%d", findings.results.front().known), "recordings in each condition");
    return html + "</div>\n";
}

std::string accuracyTable(const std::vector<Result>& results, Training training) {
    const Result& plain = *find(results, "plain", training);
    std::string html = format(
        "<h3>Trained %s</h3><table class='accuracy %s'><tr><th>front end</th><th>noise</th>"
        "<th class='number'>clean</th>",
        nameOf(training), nameOf(training));
    for (const int level : kLevels) html += format("<th class='number'>%d dB</th>", level);
    html += "<th class='number'>mean</th><th class='number'>errors saved</th></tr>\n";
    for (const Result& result : results) {
        if (result.training != training) continue;
        for (const Noise noise : kNoises) {
            html += format("<tr><td>%s</td><td>%s</td>", noise == kNoises[0] ? result.name.c_str() : "", nameOf(noise));
            const auto cell = [&](const std::function<bool(const Condition&)>& counted) {
                const bool known = std::any_of(result.conditions.begin(), result.conditions.end(), counted);
                html += "<td class='number'>" +
                        (known ? format("%.2f", accuracy(result, counted)) : std::string("\u2013")) + "</td>";
            };
            cell([](const Condition& c) { return !c.snr; });
            for (const int level : kLevels) {
                cell([&](const Condition& c) { return c.snr == level && c.noise == noise; });
            }
            const double mine = meanAccuracy(result, noise), other = meanAccuracy(plain, noise);
            html += format("<td class='number'><b>%.2f</b></td><td class='number'>%s</td></tr>\n", mine,
                           &result == &plain ? "" : format("%.1f %%", errorsSaved(other, mine)).c_str());
        }
    }
    return html + "</table>\n";
}

std::string ablationTable(const std::vector<Result>& ablations) {
    std::string html =
        "<table class='ablation'><tr><th>steps</th><th class='number'>words right, %</th><th class='number'>errors, "
        "times those of all steps</th></tr>\n";
    const double all = 100.0 - meanAccuracy(ablations.front());
    for (const Result& result : ablations) {
        const double right = meanAccuracy(result);
        html += format("<tr><td>%s</td><td class='number'>%.2f</td><td class='number'>%s</td></tr>\n",
                       result.name.c_str(), right, all > 0 ? format("%.2f", (100.0 - right) / all).c_str() : "\u2013");
    }
    return html + "</table>\n";
}

std::string sidesTable(const std::vector<Side>& sides) {
    std::string html =
        "<table class='sides'><tr><th>in single</th><th>in integers</th><th class='number'>values</th><th "
        "class='number'>difference</th><th class='number'>greatest</th></tr>\n";
    for (const Side& side : sides) {
        html += format("<tr><td><code>%s</code></td><td><code>%s</code></td><td class='number'>%lld</td>",
                       side.inSingle.c_str(), side.inIntegers.c_str(), side.values);
        html += side.counts ? format("<td class='number'>%.3g %% differ</td><td></td></tr>\n", side.usual)
                            : format("<td class='number'>%.3g %%</td><td class='number'>%.3g %%</td></tr>\n",
                                     side.usual, side.most);
    }
    return html + "</table>\n";
}

std::string playerOf(const std::vector<Vorn16s>& samples) {
    return "<audio controls src='data:audio/wav;base64," + base64(wavOf(samples)) + "'></audio>";
}

std::string section(const char* id, const char* title, const std::string& lead, const std::string& body) {
    return format("<section id='%s'><h2>%s</h2><p>", id, title) + lead + "</p>" + body + "</section>\n";
}

std::string road() {
    std::string html = "<ol class='road'>";
    for (const Step& step : kRoad) {
        html += format("<li><b>%s</b><span>%s</span><code>%s</code></li>", step.name, step.what, step.functions);
    }
    return html + "</ol>";
}

}  // namespace

void writeReport(const std::filesystem::path& path, const Experiment& experiment, const Findings& findings,
                 const Specimen& specimen) {
    const Insight insight(specimen);
    std::string html = kStyle + tiles(experiment, findings);
    std::string figures, tables;
    for (const Training training : experiment.trainings) {
        figures += accuracyFigure(findings.results, training);
        tables += accuracyTable(findings.results, training);
    }
    html +=
        section("accuracy", "What is recognised",
                "Each word stands in a stretch of noise with 400 ms of it at both ends, at the given level below the "
                "word. The means are over 20 to 0 dB; errors saved are those of the plain front end that another one "
                "does not make.",
                figures + tables);
    html += section("road", "The road of a frame through the robust front end", "", road());
    html +=
        section("ablation", "What each step is worth",
                "The robust front end without one step at a time, trained clean; the mean of 20 to 0 dB in all noises.",
                ablationTable(findings.ablations));
    const std::string listen = "<table class='listen'><tr><td>noisy</td><td>" + playerOf(specimen.noisy.samples) +
                               "</td><td>two stages</td><td>" + playerOf(insight.reduced) +
                               "</td></tr><tr><td>clean</td><td>" + playerOf(specimen.clean.samples) +
                               "</td><td>tracking</td><td>" + playerOf(insight.suppressed) + "</td></tr></table>";
    html += section("spectrograms", "One recording, noisy and cleaned",
                    "<code>" + escaped(specimen.name) + "</code> in " + escaped(specimen.conditions) + ".",
                    listen + spectrogramFigure(specimen, insight));
    html += section("floor", "The noise floor over time",
                    "Power in decibels for a sample. The first stage learns the noise while nobody speaks; the tracker "
                    "follows the minima of the smoothed spectrum all the time.",
                    floorFigure(specimen, insight));
    html += section(
        "decisions", "Detector and pitch",
        "The pitch is that of the shortest period that explains a frame well, where one explains enough; the middle "
        "of five frames.",
        decisionFigure(specimen, insight));
    html +=
        section("sides", "Single precision and integers side by side",
                "Both forms were given the same numbers. Differences are in per cent of the root mean square of the "
                "values.",
                sidesTable(findings.sides));
    writePage(path, "Digits in noise",
              "Whole-word recognition of the ten digits in noise, made with vornsr " +
                  escaped(vornsrGetLibVersion()->version) + ".",
              html, "White noise, a car and babble are made by the program from its seed.");
}

}  // namespace digits
