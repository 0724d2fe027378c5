// The page about a run over recordings.
#include "report.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <string>
#include <vector>

#include "chart.h"
#include "codeword_figure.h"
#include "page.h"
#include "svg.h"

namespace digits {
namespace {

namespace fs = std::filesystem;

struct Step {
    const char *name, *what, *functions;
};

constexpr Step kRoad[] = {
    {"Cepstra", "the front end of spoken digits: twelve cepstra a frame, with their means", "vornsDCTLifter_32f"},
    {"Training", "frames of one speaker become codewords: splitting and k-means", "vornsCdbkInitAlloc_L2_32f"},
    {"Words", "taken out for the file, and put back from it", "vornsGetCodebook_32f, vornsCdbkInitAlloc_L2_32f"},
    {"Distances", "each frame to the nearest codeword, in each codebook", "vornsVQDist_32f"},
    {"Distortion", "the mean of their squares; the least one tells the speaker", "vornsDotProd_32f64f"},
    {"Compression", "pairs of cepstra to numbers of codewords, as bits", "vornsSplitVQ_32f1u"},
    {"Way back", "bits to codewords, then the features of a recogniser", "vornsFormVectorVQ_1u32f"},
};

std::string cell(const std::string& content) { return "<td class='number'>" + content + "</td>"; }

std::string right(const Measured& measured) {
    return cell(measured.known > 0 ? format("%d of %d", measured.right, measured.known) : std::string());
}

std::string head(std::initializer_list<const char*> names, int texts) {
    std::string html = "<table><tr>";
    for (const char* name : names) {
        html += (texts-- > 0 ? "<th>" : "<th class='number'>") + std::string(name) + "</th>";
    }
    return html + "</tr>\n";
}

std::string tiles(const Run& run, const Tally& counts) {
    std::string html = "<div class='tiles'>\n";
    if (counts.known > 0) {
        const auto [low, high] = confidence(counts.right, counts.known);
        html += tile(format("%.2f %%", counts.accuracy()),
                     format("%d of %d recordings right (95 %% confidence: %.1f to %.1f %%)", counts.right, counts.known,
                            low, std::min(high, 100.0)));
    }
    html += tile(format("%zu", run.speakers.size()), format("speakers, %d codewords together", run.codewords()));
    html += tile(grouped(std::llround(double(run.frames) / run.seconds.work())),
                 format("frames per second on one processor core: %.0f times faster than speech",
                        run.seconds.audio / run.seconds.work()));
    if (run.compression) {
        for (const CompressionTrial& trial : run.compression->trials) {
            if (trial.pairBits != kTypicalPairBits) continue;
            html += tile(grouped(trial.bitsPerSecond()),
                         format("bits a second for the cepstra, and %d of %d digits right from what arrives",
                                trial.clean.right, trial.clean.known));
        }
    }
    return html + "</div>\n";
}

std::string distortionSection(const Run& run) {
    std::string html =
        "<section><h2>Distortion</h2><p class='lead'>How far the frames of each speaker (row) are from the codewords "
        "of "
        "each speaker (column): mean squared distances.</p><table><tr><th></th>";
    for (const Speaker& speaker : run.speakers) html += "<th class='number'>" + escaped(speaker.name) + "</th>";
    html += "</tr>\n";
    const std::vector<std::vector<double>> matrix = distortions(run);
    for (std::size_t row = 0; row < matrix.size(); ++row) {
        html += "<tr><td>" + escaped(run.speakers[row].name) + "</td>";
        for (std::size_t column = 0; column < matrix.size(); ++column) {
            const std::string value = matrix[row].empty() ? std::string() : format("%.1f", matrix[row][column]);
            html += cell(row == column && !value.empty() ? "<b>" + value + "</b>" : value);
        }
        html += "</tr>\n";
    }
    return html + "</table></section>\n";
}

std::string closestTable(const Run& run) {
    std::vector<const Outcome*> order;
    for (const Outcome& outcome : run.outcomes) order.push_back(&outcome);
    std::stable_sort(order.begin(), order.end(),
                     [](const Outcome* a, const Outcome* b) { return a->margin() < b->margin(); });
    std::string html = std::string("<h3>") + (order.front()->wrong() ? "Mistakes and closest calls" : "Closest calls") +
                       "</h3>" + head({"recording", "recognised", "against", "margin"}, 3);
    for (std::size_t i = 0; i < std::min<std::size_t>(order.size(), 7); ++i) {
        const Outcome& outcome = *order[i];
        html += "<tr><td>" + escaped(outcome.path.stem().string()) + "</td><td" +
                (outcome.wrong() ? " class='wrong'>" : ">") + escaped(run.speakers[outcome.verdict.best].name) +
                "</td><td>" + escaped(run.speakers[outcome.rival()].name) + "</td>" +
                cell(format("%.3f", outcome.margin())) + "</tr>\n";
    }
    return html +
           "</table><p class='note'>The margin is how many times as far the recording is from the nearest other "
           "speaker's codewords as from those of the true one, in mean squared distance: below 1 for a mistake.</p>\n";
}

std::string roadSection() {
    std::string html =
        "<section><h2>The road of a frame</h2><p class='lead'>A speaker is a codebook: the sounds of one voice in one "
        "room, as a few points among which each of its frames has a near one.</p><ol class='road'>\n";
    for (const Step& step : kRoad) {
        html += format("<li><b>%s</b><span>%s</span><code>%s</code></li>\n", step.name, step.what, step.functions);
    }
    return html + "</ol></section>\n";
}

std::string codewordSection(const Run& run) {
    const std::optional<Plane> plane = planeOfFrames(run);
    if (!plane) return {};
    return "<section><h2>Codewords over frames</h2><p class='lead'>The frames of each speaker's recordings, and the "
           "speaker's codewords, in the plane where all frames vary most.</p>" +
           codewordFigure(run, *plane) +
           "<p class='note'>The brighter a cell, the more frames. Twelve dimensions are laid flat here, so frames that "
           "meet in the picture may be far apart. Principal components of the frames: "
           "<code>vornsMeanVarColumn_32f_D2</code>, <code>vornsRecSqrt_32f</code>, "
           "<code>vornsNormalizeColumn_32f_D2</code>, <code>vornsSVDSort_64f_D2_I</code>.</p></section>\n";
}

std::string sizeSection(const Comparison& comparison) {
    Chart chart{"Distortion over the size of the codebooks", "codewords of a speaker", "", {}, {}, {}, 0, 0};
    chart.series = {{"training frames", {}}, {"these frames", {}}};
    std::string table = head({"codewords", "distortion in training", "distortion here", "right"}, 0);
    for (const SizeTrial& trial : comparison.sizes) {
        chart.at.push_back(trial.codewords);
        chart.marks.push_back(std::to_string(trial.codewords));
        chart.series[0].values.push_back(trial.training);
        chart.series[1].values.push_back(trial.test);
        chart.most = std::max({chart.most, trial.training, trial.test});
        table += "<tr>" + cell(std::to_string(trial.codewords)) + cell(format("%.2f", trial.training)) +
                 cell(format("%.2f", trial.test)) + right(trial) + "</tr>\n";
    }
    return "<section><h2>How many codewords</h2><p class='lead'>Mean squared distance of frames from the codewords of "
           "their own speaker. Training frames come ever nearer; others follow, with a growing lag.</p>" +
           draw(chart) + table + "</table></section>\n";
}

std::string searchSection(const Comparison& comparison, long long frames) {
    std::string html =
        "<section><h2>Searches</h2><p class='lead'>All codewords compared, or one of them found by a tree, in float "
        "and in 16 bits.</p>" +
        head({"search", "function", "right", "distortion", "misses", "frames per second", "times all words"}, 2);
    for (const SearchTrial& trial : comparison.searches) {
        html += format("<tr><td>%s</td><td><code>%s</code></td>", trial.name, trial.function) + right(trial) +
                cell(format("%.2f", trial.distortion)) +
                cell(format("%.3f %%", 100.0 * double(trial.elsewhere) / double(std::max(trial.searches, 1LL)))) +
                cell(grouped(std::llround(double(frames) / trial.seconds))) +
                cell(format("%.2f", comparison.searches[0].seconds / trial.seconds)) + "</tr>\n";
    }
    return html +
           "</table><p class='note'>Distortion is that of the speaker's own frames. A miss is a frame that did not get "
           "the nearest of the words; in 16 bits, rounded words may change places. Frames per second are those that "
           "went through the codebooks of all speakers. All words are compared several at a time; a "
           "tree looks at fewer of them, one after another, and may end beside the nearest one.</p></section>\n";
}

std::string compressionSection(const Compression& compression) {
    Chart chart{"Recordings that are right", "bits a second", " %", {}, {}, {}, 100, 100};
    chart.series = {{"digits", {}}, {"digits by quantised models", {}}, {"speakers", {}}};
    std::string table = head({"bits a pair", "bits a frame", "bits a second", "bytes of all", "signal to noise",
                              "digits right", "by quantised models", "speakers right"},
                             0);
    bool counted = true;
    for (const CompressionTrial& trial : compression.trials) {
        const Measured* const all[] = {&trial.clean, &trial.quantised, &trial.speakers};
        if (trial.pairBits > 0) {
            chart.at.push_back(trial.bitsPerSecond());
            chart.marks.push_back(std::to_string(trial.bitsPerSecond()));
            for (int i = 0; i < 3; ++i) {
                counted = counted && all[i]->known > 0;
                chart.series[i].values.push_back(all[i]->accuracy());
                chart.least = std::min(chart.least, all[i]->accuracy());
            }
        }
        table += "<tr>" + cell(trial.pairBits > 0 ? std::to_string(trial.pairBits) : "float") +
                 cell(std::to_string(trial.bits)) + cell(std::to_string(trial.bitsPerSecond())) +
                 cell(std::to_string(trial.bytes)) +
                 cell(trial.pairBits > 0 ? format("%.2f dB", trial.decibels) : std::string()) + right(trial.clean) +
                 right(trial.quantised) + right(trial.speakers) + "</tr>\n";
    }
    std::string streams = head({"stream", "codewords", "bits", "in training", "here"}, 1);
    for (const StreamTrial& stream : compression.streams) {
        streams += "<tr><td>" + streamName(stream) + "</td>" + cell(std::to_string(stream.words)) +
                   cell(std::to_string(stream.bits)) + cell(format("%.2f dB", stream.training)) +
                   cell(format("%.2f dB", stream.test)) + "</tr>\n";
    }
    return "<section><h2>Compression</h2><p class='lead'>A telephone may leave recognition to a server and send "
           "cepstra instead of sound. Each frame is cut into six pairs and c0, and of each piece goes only the number "
           "of its nearest codeword. The server looks the codewords up, makes features of them, and recognises.</p>" +
           (counted ? draw(chart) : std::string()) + table +
           "</table><p class='note'>\u201cDigits right\u201d is by word models of features that were never quantised, "
           "\u201cby quantised models\u201d by those trained on features that were quantised as well, \u201cspeakers "
           "right\u201d by the codebooks above. The sound itself has 128000 bits a second.</p>" +
           format("<h3>Streams at %d bits a pair</h3>", kTypicalPairBits) + streams +
           "</table><p class='note'>Ratio of the variance of the elements to the mean squared error. Functions: "
           "<code>vornsSplitVQ_32f1u</code>, <code>vornsSplitVQ_32f8u</code>, <code>vornsFormVectorVQ_1u32f</code>, "
           "<code>vornsFormVectorVQ_8u32f</code>.</p></section>\n";
}

}  // namespace

void writeReport(const fs::path& path, const Run& run) {
    const Tally counts = tally(run);
    std::string html = tiles(run, counts);
    if (counts.known > 0) {
        html += "<section><div class='split'><div><h2>Who was taken for whom</h2>" +
                confusionFigure(counts, "speaker") + "</div><div>" + closestTable(run) + "</div></div></section>\n" +
                distortionSection(run);
    }
    html += roadSection() + codewordSection(run);
    if (run.comparison) {
        html += sizeSection(*run.comparison) + searchSection(*run.comparison, run.frames);
    }
    if (run.compression) html += compressionSection(*run.compression);
    writePage(path, "Who speaks",
              "Speakers recognised by codebooks of their cepstra, and cepstra sent in few bits, made with vornsr " +
                  escaped(vornsrGetLibVersion()->version) + ".",
              html,
              "Distortions are mean squared distances of cepstra 1 to 12 from their nearest codewords. Codebooks "
              "know the rooms and microphones of their recordings, too, and not the voices alone.");
}

}  // namespace digits
