// Tables and pictures of rivals.
#include "comparisons.h"

#include <cmath>
#include <stdexcept>
#include <string>
#include <vector>

#include "selection_figure.h"
#include "svg.h"
#include "warp_figure.h"
#include "wav.h"

namespace digits {
namespace {

// A row of the table: what was right, and how fast.
std::string methodRow(const char* name, const char* function, const std::string& size, const Tally& counts,
                      long long frames, double seconds) {
    return format("<tr><td>%s</td><td><code>%s</code></td><td class='number'>", name, function) + size + "</td>" +
           (counts.known ? format("<td class='number'>%d of %d</td>", counts.right, counts.known)
                         : std::string("<td></td>")) +
           "<td class='number'>" + grouped(std::llround(double(frames) / seconds)) + "</td></tr>\n";
}

std::string mistakes(const TemplateRun& run) {
    std::string html;
    for (const TemplateRun::Outcome& outcome : run.outcomes) {
        if (!outcome.wrong()) continue;
        html += (html.empty() ? "" : "; ") + escaped(outcome.path.stem().string()) + " taken for " +
                (outcome.match.best ? wordOf(*outcome.match.best) : "none");
    }
    return html.empty() ? html : "<p class='note'>Mistakes by templates: " + html + ".</p>\n";
}

}  // namespace

std::string methodsSection(const Run& run, const Recogniser& recogniser, int shown) {
    if (!run.byTemplates) return {};
    const TemplateRun& other = *run.byTemplates;
    const Templates& templates = *recogniser.templates;
    std::string html =
        "<section><h2>Mixtures and templates</h2><p class='lead'>The same features, and two ways to a word: statistics "
        "of all training recordings, or the nearest of a few recordings that were kept whole, the most central one of "
        "each speaker and word.</p><table><tr><th>method</th><th>function</th><th class='number'>what is kept</th>"
        "<th class='number'>right</th><th class='number'>frames per second</th></tr>\n" +
        methodRow("mixtures", "vornsLogGaussMixture_32f_D2", format("%d Gaussians", run.gaussians), tally(run.outcomes),
                  run.frames, run.seconds.scoring) +
        methodRow("templates", "vornsDTW_L2_32f_D2",
                  format("%zu recordings, %lld frames", templates.all().size(), templates.frames()),
                  tally(other.outcomes), run.frames, other.seconds) +
        "</table>\n" + mistakes(other);

    const TemplateRun::Outcome& outcome = other.outcomes[shown];
    if (!outcome.match.best) return html + "</section>\n";
    const Analysis analysis = recogniser.frontEnd.analyse(readWav(outcome.path, kSampleRate));
    const Sequence recording = templates.sequence(analysis);
    std::vector<Warping> panels;
    const auto lay = [&](int word) {
        const Template& nearest = templates.all()[outcome.match.nearest[word]];
        const Vorn32f distance = outcome.match.distance[word];
        panels.push_back(
            {format("on %s (%s): %.2f a frame", nearest.path.stem().c_str(), wordOf(word), double(distance)),
             traceWarping(recording, nearest.sequence)});
        if (std::abs(panels.back().trace.cost - distance) > 1e-4f * distance) {
            throw std::logic_error("the picture of time warping does not show what the library computes");
        }
    };
    lay(*outcome.match.best);
    if (const auto second = outcome.match.bestBut(*outcome.match.best)) lay(*second);
    return html + "<h3>" + escaped(outcome.path.stem().string()) +
           " laid on the nearest template of the best word and of the next best</h3>" + warpFigure(panels) +
           format(
               "<p class='note'>Each cell compares one frame of the recording, from left to right, with one frame "
               "of the template, upward: dark where the two sound alike, bright where they differ. The white line "
               "is the cheapest road through them; it may begin and end up to %d frames off the corners. Where it is "
               "steep, the recording was spoken faster than the template, where it is flat, slower. If both say the "
               "same word, it finds a dark valley all the way; if not, it has to cross bright ridges, and what it "
               "crosses, summed up and shared out over the frames, is the distance above the picture. Nothing "
               "outside the two dashed lines is ever looked at: they are the band of slopes one half to two, widened "
               "by those %d frames. Between them, the beam drops the dimmed cells as well, because every road that "
               "reaches them costs more than the cheapest one of its row by over %g.</p></section>\n",
               kWarpBand, kWarpBand, double(kWarpBeam));
}

std::string selectionSection(const Run& run) {
    if (!run.selection || run.selection->trials[0].known == 0) return {};
    const SelectionTrial& whole = run.selection->trials[0];
    std::string html =
        "<section><h2>A large model in part</h2><p class='lead'>" +
        format(
            "A model of %d Gaussians, most of which are far from any one frame. A codebook of %d codewords tells "
            "roughly what a frame is like, each codeword has a shortlist of the Gaussians that score best near it, "
            "and only those on the lists of the frame's %d nearest codewords are scored.",
            whole.length, run.selection->codewords, kCodewordsOfFrame) +
        "</p><table><tr><th class='number'>on each list</th><th class='number'>scored</th><th class='number'>right</th>"
        "<th class='number'>closest margin</th><th class='number'>frames per second</th>"
        "<th class='number'>times the whole</th></tr>\n";
    for (const SelectionTrial& trial : run.selection->trials) {
        html += "<tr><td class='number'>" + (&trial == &whole ? "no lists" : std::to_string(trial.length)) +
                format(
                    "</td><td class='number'>%.1f %%</td><td class='number'>%d of %d</td><td class='number'>%s%.2f"
                    "</td><td class='number'>",
                    trial.share(), trial.right, trial.known, trial.closest < 0 ? "\u2212" : "",
                    std::abs(double(trial.closest))) +
                grouped(std::llround(double(run.frames) / trial.seconds)) +
                format("</td><td class='number'>%.2f</td></tr>\n", whole.seconds / trial.seconds);
    }
    return html + "</table>" + selectionFigure(*run.selection) +
           "<p class='note'>From right to left, ever fewer Gaussians are scored. Accuracy holds out long, since the "
           "few "
           "Gaussians that are near a frame make nearly all of its score, and falls where the lists begin to miss "
           "those. "
           "Long lists hardly pay: what is selected is scored one by one, which takes longer than the whole mixture at "
           "once; short ones do, until only the search of the codebook and the best roads are left. The functions: "
           "<code>vornsMahDistMultiMix_32f_D2</code>, <code>vornsFillShortlist_Row_1u</code>, "
           "<code>vornsBuildSignTable_8u1u</code>, <code>vornsLogGaussMixture_Select_32f_D2</code>; all but the "
           "filling "
           "of the lists is in the time, the front end is not.</p></section>\n";
}

}  // namespace digits
