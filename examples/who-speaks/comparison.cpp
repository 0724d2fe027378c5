#include "comparison.h"

#include <algorithm>
#include <utility>

#include "stopwatch.h"

namespace digits {
namespace {

constexpr int kSearches = 5;

using Words = std::vector<std::vector<Vorn32s>>;  // of a recording's frames in the codebooks, one after another

double squares(const Nearest<Vorn32f>& nearest) { return sumOfSquares(nearest.distance); }

double squares(const Nearest<Vorn32s>& nearest) {
    double sum = 0.0;
    for (const Vorn32s distance : nearest.distance) sum += static_cast<double>(distance) * distance;
    return sum / (1 << 2 * kStepsExponent);
}

// What a codebook of each kind searches.
Stretch rowsFor(const Codebook&, const Analysis& analysis) { return {analysis.features.data(), analysis.frames}; }
std::vector<Vorn16s> rowsFor(const Codebook16&, const Analysis& analysis) { return inSteps(analysis.features); }

// Recognises all recordings by codebooks, one for each speaker. `found` receives the words.
template <typename Book>
SearchTrial search(const std::vector<std::string>& names, const std::vector<Book>& books,
                   const std::vector<Heard>& recordings, Words& found) {
    SearchTrial trial;
    long long ownFrames = 0;
    for (const Heard& heard : recordings) {
        Stopwatch watch;
        const auto rows = rowsFor(books[0], *heard.analysis);
        std::vector<double> distortions;
        for (const Book& book : books) {
            auto nearest = book.nearest(rows);
            distortions.push_back(squares(nearest) / heard.analysis->frames);
            found.push_back(std::move(nearest.word));
        }
        const Verdict verdict(std::move(distortions));
        trial.seconds += watch.lap();
        trial.searches += static_cast<long long>(books.size()) * heard.analysis->frames;
        const auto own = std::find(names.begin(), names.end(), heard.speaker) - names.begin();
        if (own == std::ssize(names)) continue;
        ++trial.known;
        trial.right += verdict.best == own;
        trial.distortion += verdict.distortion[own] * heard.analysis->frames;
        ownFrames += heard.analysis->frames;
    }
    if (ownFrames > 0) trial.distortion /= static_cast<double>(ownFrames);
    return trial;
}

long long differences(const Words& some, const Words& others) {
    long long count = 0;
    for (std::size_t i = 0; i < some.size(); ++i) {
        for (std::size_t t = 0; t < some[i].size(); ++t) count += some[i][t] != others[i][t];
    }
    return count;
}

class Comparer {
public:
    Comparer(const VoiceFrames& training, const std::vector<Heard>& recordings, const std::function<void()>& step)
        : training_(training), recordings_(recordings), step_(step) {
        for (const auto& [name, rows] : training) names_.push_back(name);
    }

    // The trees, and beside them the same words without the tree.
    std::vector<SearchTrial> searches(int codewords) const {
        const std::vector<Codebook> byRadius = grown(codewords, Search::kTreeByRadius);
        const std::vector<Codebook> byCount = grown(codewords, Search::kTreeByCount);
        std::vector<Codebook16> trees16;
        for (const auto& [name, rows] : training_) {
            trees16.push_back(Codebook16::grown(inSteps(rows), kVoiceFeatures, kRowStep, codewords));
        }
        std::vector<Codebook> scan, scanByCount;
        std::vector<Codebook16> scan16, scanOfTrees16;
        for (std::size_t i = 0; i < names_.size(); ++i) {
            scan.push_back(Codebook::of(byRadius[i].words(), kVoiceFeatures));
            scanByCount.push_back(Codebook::of(byCount[i].words(), kVoiceFeatures));
            scan16.push_back(Codebook16::of(inSteps(byRadius[i].words()), kVoiceFeatures));
            scanOfTrees16.push_back(Codebook16::of(trees16[i].words(), kVoiceFeatures));
        }
        Words ofScan, ofScanByCount, ofScanOfTrees16;
        search(names_, scanByCount, recordings_, ofScanByCount);
        search(names_, scanOfTrees16, recordings_, ofScanOfTrees16);
        std::vector<SearchTrial> trials;
        trials.push_back(search(names_, scan, recordings_, ofScan));
        const auto add = [&](const auto& books, const Words& nearest) {
            Words found;
            trials.push_back(search(names_, books, recordings_, found));
            trials.back().elsewhere = differences(found, nearest);
            step_();
        };
        step_();
        add(byRadius, ofScan);
        add(byCount, ofScanByCount);
        add(scan16, ofScan);
        add(trees16, ofScanOfTrees16);
        static constexpr const char* kNames[kSearches][2] = {{"all words", "vornsVQDist_32f"},
                                                             {"tree, widest first", "vornsVQDist_32f"},
                                                             {"tree, fullest first", "vornsVQDist_32f"},
                                                             {"all words, 16 bits", "vornsVQDist_16s32s_Sfs"},
                                                             {"tree, 16 bits", "vornsVQDist_16s32s_Sfs"}};
        for (int i = 0; i < kSearches; ++i) {
            trials[i].name = kNames[i][0];
            trials[i].function = kNames[i][1];
        }
        return trials;
    }

    SizeTrial size(int codewords) const {
        std::vector<Codebook> books;
        double sum = 0.0;
        long long frames = 0;
        for (const auto& [name, rows] : training_) {
            books.push_back(
                Codebook::of(Codebook::grown(rows, kVoiceFeatures, kRowStep, codewords).words(), kVoiceFeatures));
            const Stretch all{rows.data(), static_cast<int>(rows.size()) / kRowStep};
            sum += sumOfSquares(books.back().nearest(all).distance);
            frames += all.height;
        }
        Words found;
        const SearchTrial trial = search(names_, books, recordings_, found);
        step_();
        return {trial, codewords, sum / static_cast<double>(frames), trial.distortion};
    }

private:
    std::vector<Codebook> grown(int codewords, Search tree) const {
        std::vector<Codebook> books;
        for (const auto& [name, rows] : training_) {
            books.push_back(Codebook::grown(rows, kVoiceFeatures, kRowStep, codewords, tree));
        }
        return books;
    }

    const VoiceFrames& training_;
    const std::vector<Heard>& recordings_;
    const std::function<void()>& step_;
    std::vector<std::string> names_;
};

// 2, 4, 8 and so on, and at the end the number of codewords itself.
std::vector<int> sizesUpTo(int codewords) {
    std::vector<int> sizes;
    for (int size = 2; size < codewords; size *= 2) sizes.push_back(size);
    sizes.push_back(codewords);
    return sizes;
}

}  // namespace

int comparisonSteps(int codewords) { return kSearches + static_cast<int>(sizesUpTo(codewords).size()); }

Comparison compare(const VoiceFrames& training, const std::vector<Heard>& recordings, int codewords,
                   const std::function<void()>& step) {
    const Comparer comparer(training, recordings, step);
    Comparison comparison;
    comparison.searches = comparer.searches(codewords);
    for (const int size : sizesUpTo(codewords)) comparison.sizes.push_back(comparer.size(size));
    return comparison;
}

}  // namespace digits
