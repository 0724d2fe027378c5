// The page about a run over recordings.
#include "report.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <optional>
#include <string>

#include "comparisons.h"
#include "figures.h"
#include "input_error.h"
#include "page.h"
#include "prediction_figure.h"
#include "recordings.h"
#include "svg.h"
#include "wav.h"

namespace digits {
namespace {

namespace fs = std::filesystem;

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
           verdict + ".</p></div>" + player(outcome.path) + "</div>\n" + roadFigure(specimen) + scoreFigure(specimen) +
           wordsFigure(specimen) + "</section>\n";
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

    std::string html = tiles(run, counts);
    if (counts.known > 0) {
        html += "<section><div class='split'><div><h2>Which word was taken for which</h2>" +
                confusionFigure(counts, "spoken") + "</div><div>" + speakersTable(run) + hardestTable(order) +
                "</div></div></section>\n";
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
    writePage(path, "Spoken digits",
              "Whole-word recognition of the ten digits with Gaussian mixtures, made with vornsr " +
                  escaped(vornsrGetLibVersion()->version) + ".",
              html,
              "Scores are natural logarithms of likelihoods. Colours of the cepstra, deltas and accelerations end at "
              "the size that 98 % of the values stay within.");
}

}  // namespace digits
