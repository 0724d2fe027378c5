// The page: HTML with its style sheet and its pictures inside, readable in light and in dark, on screen and on paper.
#include "report.h"

#include <algorithm>
#include <cmath>
#include <fstream>
#include <iterator>
#include <map>
#include <optional>
#include <string>

#include "comparisons.h"
#include "figures.h"
#include "input_error.h"
#include "picture.h"
#include "prediction_figure.h"
#include "recordings.h"
#include "svg.h"
#include "wav.h"

namespace digits {
namespace {

namespace fs = std::filesystem;

constexpr const char* kStyle = R"(
:root { color-scheme: light dark; --page: #f6f7f9; --card: #ffffff; --ink: #1c2430; --soft: #5c6777; --rule: #dde2e9;
  --cell: #f1f3f6; --good: #1f7a4d; --bad: #c23b3b; --first: #1f5fd0; --second: #c2670a; --third: #0e8a74; --bar: #a9b4c2;
  --wave: #35507a; --odd: #d5e0f5; --even: #eef2f9; }
@media (prefers-color-scheme: dark) { :root { --page: #12161c; --card: #1a2029; --ink: #e6eaf0; --soft: #9aa6b6;
  --rule: #2d3643; --cell: #222a35; --good: #2f9e68; --bad: #d65a5a; --first: #6ea2ff; --second: #f2a14a; --third: #3fc7ac;
  --bar: #566273; --wave: #8fb0e6; --odd: #2b3f63; --even: #212b3b; } }
* { box-sizing: border-box; }
body { margin: 0; background: var(--page); color: var(--ink); font: 16px/1.55 system-ui, "Segoe UI", Roboto, "Helvetica Neue", "DejaVu Sans", sans-serif; }
main { max-width: 1080px; margin: 0 auto; padding: 40px 24px 64px; }
h1 { font-size: 2rem; line-height: 1.2; margin: 0 0 .3rem; letter-spacing: -.01em; }
h2 { font-size: 1.3rem; margin: 0 0 .2rem; }
h3 { font-size: 1rem; margin: 0 0 .6rem; }
p { margin: .2rem 0 1rem; max-width: 74ch; } .lead { color: var(--soft); font-size: 1.06rem; }
section { background: var(--card); border: 1px solid var(--rule); border-radius: 12px; padding: 24px 26px; margin-top: 22px; }
.tiles { display: grid; grid-template-columns: repeat(auto-fit, minmax(190px, 1fr)); gap: 14px; margin-top: 24px; }
.tile { background: var(--card); border: 1px solid var(--rule); border-radius: 12px; padding: 16px 18px; }
.tile b { display: block; font-size: 1.75rem; line-height: 1.25; font-weight: 650; font-variant-numeric: tabular-nums; }
.tile span { color: var(--soft); font-size: .9rem; }
.split { display: grid; grid-template-columns: minmax(0, 3fr) minmax(0, 2fr); gap: 34px; align-items: start; }
@media (max-width: 820px) { .split { grid-template-columns: 1fr; } }
table { border-collapse: collapse; width: 100%; font-size: .92rem; font-variant-numeric: tabular-nums; margin-bottom: 1.4rem; }
th { text-align: left; font-weight: 600; color: var(--soft); } th, td { padding: 5px 8px 5px 0; border-bottom: 1px solid var(--rule); }
.number { text-align: right; padding-right: 0; padding-left: 8px; }
.note { color: var(--soft); font-size: .87rem; }
.wrong { color: var(--bad); font-weight: 600; }
code { font: .86em ui-monospace, "DejaVu Sans Mono", monospace; }
ol.road { list-style: none; padding: 0; margin: 1rem 0 0; display: grid; grid-template-columns: repeat(auto-fill, minmax(232px, 1fr)); gap: 10px; counter-reset: step; }
ol.road li { border: 1px solid var(--rule); border-radius: 9px; padding: 10px 12px; background: var(--cell); counter-increment: step; }
ol.road li::before { content: counter(step); float: right; color: var(--soft); font-size: .85rem; }
ol.road b { display: block; } ol.road code { color: var(--soft); overflow-wrap: anywhere; }
ol.road span { display: block; font-size: .87rem; }
.head > div { flex: 1 1 420px; } .head { display: flex; flex-wrap: wrap; gap: 12px 24px; justify-content: space-between; align-items: center; }
audio { height: 38px; }
svg { display: block; width: 100%; height: auto; margin-top: 14px; overflow: visible; }
svg text { fill: var(--ink); font-size: 12px; } svg .title { font-size: 13.5px; font-weight: 600; }
svg .label { fill: var(--soft); } svg .strong { fill: var(--ink); font-weight: 600; }
svg .cells { image-rendering: pixelated; }
svg .frame { fill: none; stroke: var(--rule); } svg .void { fill: var(--cell); } svg .tick { stroke: var(--soft); stroke-width: 1; }
svg .grid { stroke: var(--rule); } svg .zero { stroke: var(--soft); stroke-dasharray: 4 3; }
svg .border { stroke: #8a94a3; stroke-width: 1; opacity: .55; }
svg .wave { fill: var(--wave); } svg .odd { fill: var(--odd); } svg .even { fill: var(--even); }
svg .curve { fill: none; stroke-width: 2; stroke-linejoin: round; } svg .key { stroke-width: 3; }
svg .curve.first, svg .key.first { stroke: var(--first); } svg .curve.second, svg .key.second { stroke: var(--second); }
svg .curve.third, svg .key.third { stroke: var(--third); }
svg .curve.thin, svg .key.thin { stroke: var(--soft); stroke-width: 1.2; } svg .key.second.dashed { stroke-dasharray: 3 3; }
svg .spectral-line { stroke: var(--second); stroke-width: 1.4; stroke-dasharray: 3 4; opacity: .85; } svg .gap { fill: #8e97a4; }
svg .track { fill: none; stroke-linejoin: round; } svg .track.under { stroke: #10151c; stroke-width: 3.6; opacity: .65; }
svg .track.odd-line { stroke: #ffffff; stroke-width: 1.7; } svg .track.even-line { stroke: #6fd3ff; stroke-width: 1.7; }
svg .dot { fill: var(--first); } svg .edge { fill: none; stroke: #c9d2de; stroke-width: 1.2; stroke-dasharray: 5 3; } svg .road { fill: none; stroke-linejoin: round; }
svg .road.under { stroke: #10151c; stroke-width: 4; opacity: .6; } svg .road.over { stroke: #ffffff; stroke-width: 2; }
svg .bar { fill: var(--bar); } svg .bar.first { fill: var(--first); } svg .bar.second { fill: var(--second); } svg .bar.third { fill: var(--third); }
svg text.digit { font-size: 12px; opacity: .75; } svg text.mean { font-size: 17px; font-weight: 700; opacity: 1; paint-order: stroke; stroke: var(--card); stroke-width: 4px; }
svg .d0 { fill: #d1495b; } svg .d1 { fill: #c2701c; } svg .d2 { fill: #9a8200; } svg .d3 { fill: #5b8f22; } svg .d4 { fill: #138f5c; }
svg .d5 { fill: #128c99; } svg .d6 { fill: #2f7fd0; } svg .d7 { fill: #6a6ae0; } svg .d8 { fill: #a352cc; } svg .d9 { fill: #c94797; }
svg .cell { rx: 5px; } svg .count { font-size: 14px; font-weight: 600; } svg .bright { fill: #ffffff; }
footer { color: var(--soft); font-size: .87rem; margin-top: 26px; }
@media print { body { background: none; } section, .tile { break-inside: avoid; } }
)";

struct Step {
    const char *name, *what, *functions;
};

constexpr Step kRoad[] = {
    {"Offset", "a high pass takes the constant offset away", "vornsCompensateOffset_16s"},
    {"Frames", "25 ms every 10 ms, under a Hamming window", "vornsConvert_16s32f"},
    {"Spectrum", "256 points, magnitudes of 129 bins", "vornsFFTFwd_RToCCS_32f, vornsMagnitude_32fc"},
    {"Filter bank", "24 mel-spaced triangles, then the logarithm", "vornsEvalFBank_32f, vornsLn_32f_I"},
    {"Cepstrum", "12 coefficients and c0, whose mean is taken away", "vornsDCTLifter_32f, vornsMeanVarColumn_32f_D2"},
    {"Movement", "deltas and accelerations: 39 features a frame", "vornsDeltaDelta_Win2_32f_D2"},
    {"Mixtures", "the score of a frame in each state of each word", "vornsLogGaussMixture_32f_D2"},
    {"Best road", "Viterbi through each word; the best word wins", "in the example itself"},
};

std::string fileBytes(const fs::path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

std::string tile(const std::string& value, const std::string& meaning) {
    return "<div class='tile'><b>" + value + "</b><span>" + meaning + "</span></div>\n";
}

std::string tiles(const Run& run, const Tally& counts) {
    std::string html = "<div class='tiles'>\n";
    if (counts.known > 0) {
        const auto [low, high] = confidence(counts.right, counts.known);
        html += tile(format("%.2f %%", counts.accuracy()),
                     format("%d of %d recordings right (95 %% confidence: %.1f to %.1f %%)", counts.right, counts.known,
                            low, std::min(high, 100.0)));
    }
    html += tile(format("%zu", run.outcomes.size()),
                 format("recordings: %.0f s of speech, %lld frames%s", run.seconds.audio, run.frames,
                        run.unusable ? format("; %d more were unusable", run.unusable).c_str() : ""));
    html += tile(grouped(std::llround(double(run.frames) / run.seconds.work())),
                 "frames per second, from samples to words, on one processor core");
    html += tile(format("%.5f", run.seconds.work() / run.seconds.audio),
                 format("real-time factor: %.0f times faster than speech", run.seconds.audio / run.seconds.work()));
    return html + "</div>\n";
}

std::string speakersTable(const Run& run) {
    struct Line {
        int known = 0, right = 0;
        Vorn32f leastMargin = 3e38f;
    };
    std::map<std::string, Line> speakers;
    for (const Outcome& outcome : run.outcomes) {
        const std::string name = speaker(outcome.path);
        if (!outcome.spoken || name.empty()) continue;
        Line& line = speakers[name];
        ++line.known;
        line.right += !outcome.wrong();
        if (!outcome.wrong()) line.leastMargin = std::min(line.leastMargin, outcome.lead());
    }
    if (speakers.empty()) return {};
    std::string html =
        "<h3>Speakers</h3><table><tr><th>speaker</th><th class='number'>right</th><th class='number'>closest "
        "margin</th></tr>\n";
    for (const auto& [name, line] : speakers) {
        html += "<tr><td>" + escaped(name) + format("</td><td class='number'>%d of %d</td>", line.right, line.known) +
                (line.right ? format("<td class='number'>%.2f</td></tr>\n", double(line.leastMargin))
                            : std::string("<td></td></tr>\n"));
    }
    return html + "</table>\n";
}

std::vector<const Outcome*> fromHardest(const Run& run) {
    std::vector<const Outcome*> order;
    for (const Outcome& outcome : run.outcomes) order.push_back(&outcome);
    std::stable_sort(order.begin(), order.end(),
                     [](const Outcome* a, const Outcome* b) { return a->margin() < b->margin(); });
    return order;
}

std::string hardestTable(const std::vector<const Outcome*>& order) {
    std::string html = std::string("<h3>") + (order.front()->wrong() ? "Mistakes and closest calls" : "Closest calls") +
                       "</h3><table><tr><th>recording</th><th>recognised</th><th>against</th>"
                       "<th class='number'>margin</th></tr>\n";
    for (std::size_t i = 0; i < std::min<std::size_t>(order.size(), 7); ++i) {
        const Outcome& outcome = *order[i];
        html += "<tr><td>" + escaped(outcome.path.stem().string()) +
                format("</td><td%s>%s</td><td>%s</td><td class='number'>%s%.2f</td></tr>\n",
                       outcome.wrong() ? " class='wrong'" : "", wordOf(outcome.decision.best), wordOf(outcome.rival()),
                       outcome.wrong() ? "\u2212" : "", double(outcome.lead()));
    }
    return html +
           "</table><p class='note'>The margin is the lead of the spoken word over the best of the others, in "
           "log-likelihood a frame. It is negative for a mistake.</p>\n";
}

Specimen specimenOf(const Outcome& outcome, const FrontEnd& frontEnd) {
    Specimen specimen{&outcome, readWav(outcome.path, kSampleRate), {}};
    specimen.analysis = frontEnd.analyse(specimen.samples);
    return specimen;
}

std::string specimenSection(const char* title, const Specimen& specimen) {
    const Outcome& outcome = *specimen.outcome;
    const Decision& decision = outcome.decision;
    const std::string verdict =
        outcome.wrong()
            ? format("recognised as <b>%s</b>, but spoken was <b class='wrong'>%s</b>, %.2f a frame behind",
                     wordOf(decision.best), wordOf(*outcome.spoken), double(outcome.lead()))
            : format("recognised as <b>%s</b>%s; the next best word is %s, %.2f a frame behind", wordOf(decision.best),
                     outcome.spoken ? ", rightly" : "", wordOf(outcome.rival()), double(outcome.lead()));
    return "<section><div class='head'><div><h2>" + std::string(title) + "</h2><p class='lead'><code>" +
           escaped(outcome.path.filename().string()) +
           format("</code>: %.0f ms, %d frames, ", 1000.0 * double(specimen.samples.size()) / kSampleRate,
                  outcome.frames) +
           verdict + ".</p></div>" + "<audio controls src='data:audio/wav;base64," + base64(fileBytes(outcome.path)) +
           "'></audio></div>\n" + roadFigure(specimen) + scoreFigure(specimen) + wordsFigure(specimen) + "</section>\n";
}

std::string roadSection(const Models& models) {
    std::string html =
        "<section><h2>The road of a frame</h2><p class='lead'>" +
        format("Each word is a chain of %d states, each state a mixture of %d Gaussians over %d features.",
               models.states(), models.gaussians(), kFeatures) +
        "</p><ol class='road'>\n";
    for (const Step& step : kRoad) {
        html += format("<li><b>%s</b><span>%s</span><code>%s</code></li>\n", step.name, step.what, step.functions);
    }
    return html + "</ol></section>\n";
}

std::string arithmeticSection(const Run& run) {
    if (run.trials.empty()) return {};
    std::string html =
        "<section><h2>Arithmetics of the scores</h2><p class='lead'>The same features and models, rounded to 16 bits "
        "once, and the same decisions after that.</p><table><tr><th>arithmetic</th><th>function</th>"
        "<th class='number'>right</th><th class='number'>closest margin</th><th class='number'>frames per second</th>"
        "<th class='number'>times float</th></tr>\n";
    for (const Trial& trial : run.trials) {
        html +=
            format("<tr><td>%s</td><td><code>%s</code></td>", nameOf(trial.arithmetic), functionOf(trial.arithmetic)) +
            (trial.known ? format("<td class='number'>%d of %d</td><td class='number'>%s%.2f</td>", trial.right,
                                  trial.known, trial.closest < 0 ? "\u2212" : "", std::abs(double(trial.closest)))
                         : std::string("<td></td><td></td>")) +
            "<td class='number'>" + grouped(std::llround(double(run.frames) / trial.seconds)) +
            format("</td><td class='number'>%.2f</td></tr>\n", run.trials[0].seconds / trial.seconds);
    }
    return html +
           "</table><p class='note'>Frames per second from features to words: rounding of the features, mixture "
           "scores and best roads, without the front end.</p></section>\n";
}

std::string planeSection(const Run& run) {
    std::vector<MeanFrame> recordings;
    for (const Outcome& outcome : run.outcomes) recordings.push_back(outcome.mean);
    const std::optional<Plane> plane = principalPlane(recordings);
    if (!plane) return {};
    return "<section><h2>Where the digits lie</h2><p class='lead'>Each recording as one point: the mean frames of its "
           "two halves, brought to mean 0 and deviation 1, in the plane where they vary most. Words stand at the mean "
           "of their recordings.</p>" +
           planeFigure(run, *plane) +
           "<p class='note'>Principal components from singular values: <code>vornsSumColumn_32f_D2</code>, "
           "<code>vornsMeanVarColumn_32f_D2</code>, <code>vornsRecSqrt_32f</code>, "
           "<code>vornsNormalizeColumn_32f_D2</code>, <code>vornsSVDSort_64f_D2_I</code>.</p></section>\n";
}

const Outcome& chosen(const Run& run, const fs::path& show) {
    for (const Outcome& outcome : run.outcomes) {
        if (outcome.path == show || outcome.path.filename() == show || outcome.path.stem() == show) return outcome;
    }
    throw InputError(show, "is not among the recognised recordings, so the report cannot show it");
}

}  // namespace

void writeReport(const fs::path& path, const Run& run, const Recogniser& recogniser, const fs::path& show) {
    const FrontEnd& frontEnd = recogniser.frontEnd;
    const Tally counts = tally(run.outcomes);
    const std::vector<const Outcome*> order = fromHardest(run);
    const Outcome& first = show.empty() ? *order[order.size() / 2] : chosen(run, show);

    std::string html =
        "<!DOCTYPE html>\n<html lang='en'><head><meta charset='utf-8'>\n"
        "<meta name='viewport' content='width=device-width, initial-scale=1'>\n<title>Spoken digits</title>\n<style>" +
        std::string(kStyle) + "</style></head><body><main>\n<header><h1>Spoken digits</h1><p class='lead'>" +
        "Whole-word recognition of the ten digits with Gaussian mixtures, made with vornsr " +
        escaped(vornsrGetLibVersion()->version) + ".</p></header>\n";
    html += tiles(run, counts);
    if (counts.known > 0) {
        html += "<section><div class='split'><div><h2>Which word was taken for which</h2>" + confusionFigure(counts) +
                "</div><div>" + speakersTable(run) + hardestTable(order) + "</div></div></section>\n";
    }
    html += roadSection(*recogniser.models);
    html += planeSection(run);
    html += arithmeticSection(run);
    html += methodsSection(run, recogniser, static_cast<int>(&first - run.outcomes.data()));
    html += selectionSection(run);
    const Specimen shown = specimenOf(first, frontEnd);
    html += specimenSection(show.empty() ? "A typical decision" : "The chosen recording", shown);
    html += predictionSection(shown, frontEnd);
    if (order.front() != &first) {
        html += specimenSection(order.front()->wrong() ? "The worst mistake" : "The closest call",
                                specimenOf(*order.front(), frontEnd));
    }
    html +=
        "<footer>Scores are natural logarithms of likelihoods. Colours of the cepstra, deltas and accelerations end at "
        "the size that 98 % of the values stay within.</footer>\n</main></body></html>\n";

    std::ofstream file(path, std::ios::binary);
    if (!file.write(html.data(), static_cast<std::streamsize>(html.size())).flush()) {
        throw InputError(path, "cannot be written");
    }
}

}  // namespace digits
