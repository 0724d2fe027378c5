#include "compression.h"

#include <algorithm>
#include <cmath>
#include <stdexcept>
#include <utility>

#include "checked.h"
#include "decode.h"
#include "stopwatch.h"

namespace digits {
namespace {

constexpr int kLeastPairBits = 1, kMostPairBits = 7, kMostLoudnessBits = 7;
constexpr int kThinning = 4;  // codebooks of pairs need no more than every fourth frame

int firstOf(int stream) { return 2 * stream; }
int widthOf(int stream) { return stream < kPairs ? 2 : 1; }

int framesOf(const std::vector<Vorn32f>& cepstra) { return static_cast<int>(cepstra.size()) / kStatic; }

std::vector<Vorn32f> thinned(const std::vector<Vorn32f>& cepstra) {
    if (framesOf(cepstra) < kThinning << kMostLoudnessBits) return cepstra;
    std::vector<Vorn32f> rows;
    for (auto at = cepstra.begin(); at < cepstra.end();
         at += std::min<std::ptrdiff_t>(kThinning * kStatic, cepstra.end() - at)) {
        rows.insert(rows.end(), at, at + kStatic);
    }
    return rows;
}

// Signal and noise of the columns of some frames.
class Ratio {
public:
    Ratio(const std::vector<Vorn32f>& before, const std::vector<Vorn32f>& after) {
        const int frames = framesOf(before);
        for (int c = 0; c < kStatic; ++c) {
            double sum = 0.0, squares = 0.0, errors = 0.0;
            for (int t = 0; t < frames; ++t) {
                const auto at = static_cast<std::size_t>(t) * kStatic + c;
                const double value = before[at], error = value - after[at];
                sum += value;
                squares += value * value;
                errors += error * error;
            }
            signal_.push_back(squares - sum * sum / frames);
            noise_.push_back(errors);
        }
    }

    double decibels(int first, int width) const {
        double signal = 0.0, noise = 0.0;
        for (int c = first; c < first + width; ++c) signal += signal_[c], noise += noise_[c];
        return 10.0 * std::log10(std::max(signal, kLeast) / std::max(noise, kLeast));
    }

private:
    static constexpr double kLeast = 1e-9;
    std::vector<double> signal_, noise_;
};

// The words' recordings, with features of the cepstra that are given.
TrainingSet trainingSet(const std::vector<Labelled>& recordings, const std::vector<std::vector<Vorn32f>>& cepstra) {
    TrainingSet set;
    for (std::size_t i = 0; i < recordings.size(); ++i) {
        set[recordings[i].word].push_back({recordings[i].analysis.frames, {}, {}, FrontEnd::features(cepstra[i])});
    }
    return set;
}

class Compressor {
public:
    Compressor(const FrontEnd& frontEnd, const std::vector<Labelled>& training, const std::vector<Spoken>& recordings,
               const Speakers& speakers, const std::function<void()>& step)
        : training_(training), recordings_(recordings), speakers_(speakers), step_(step) {
        for (const Labelled& each : training) {
            trainingCepstra_.push_back(frontEnd.cepstra(each.analysis));
            all_.insert(all_.end(), trainingCepstra_.back().begin(), trainingCepstra_.back().end());
        }
        for (const Spoken& each : recordings) testCepstra_.push_back(frontEnd.cepstra(*each.analysis));
        clean_ = train(trainingSet(training, trainingCepstra_), kGaussians, [] {});
        thin_ = thinned(all_);
        step_();
    }

    // As it is without compression.
    CompressionTrial plain() const {
        CompressionTrial trial;
        recognise(testCepstra_, clean_, trial.clean, &trial.speakers);
        trial.quantised = trial.clean;
        trial.bits = kStatic * 32;
        for (const auto& cepstra : testCepstra_)
            trial.bytes += static_cast<long long>(cepstra.size() * sizeof(Vorn32f));
        return trial;
    }

    CompressionTrial quantised(int pairBits, Compression& result) const {
        SplitCodebooks books(thin_, pairBits);
        CompressionTrial trial;
        trial.pairBits = pairBits;
        trial.bits = books.bits();

        std::vector<std::vector<Vorn32f>> arrived;
        for (const auto& cepstra : testCepstra_) {
            Stopwatch watch;
            const std::vector<Vorn8u> packed = books.pack(cepstra);
            trial.packing += watch.lap();
            arrived.push_back(books.unpack(packed, framesOf(cepstra)));
            trial.unpacking += watch.lap();
            trial.bytes += static_cast<long long>(packed.size());
            if (arrived.back() != books.formed(books.indices(cepstra))) {
                throw std::logic_error("bits and bytes do not bring the same codewords");
            }
        }
        std::vector<std::vector<Vorn32f>> learnt;
        for (const auto& cepstra : trainingCepstra_) {
            learnt.push_back(books.unpack(books.pack(cepstra), framesOf(cepstra)));
        }
        const Models models = train(trainingSet(training_, learnt), kGaussians, [] {});
        recognise(arrived, clean_, trial.clean, &trial.speakers);
        recognise(arrived, models, trial.quantised, nullptr);

        const Ratio test(joined(testCepstra_), joined(arrived));
        trial.decibels = test.decibels(0, kStatic);
        if (pairBits == kTypicalPairBits) {
            const Ratio training(all_, joined(learnt));
            for (int s = 0; s < kStreams; ++s) {
                const int first = firstOf(s), width = widthOf(s);
                result.streams.push_back({first, width, books.stream(s).size(), books.stream(s).bits(),
                                          training.decibels(first, width), test.decibels(first, width)});
            }
            compareTrees(books, result);
        }
        step_();
        return trial;
    }

private:
    static std::vector<Vorn32f> joined(const std::vector<std::vector<Vorn32f>>& parts) {
        std::vector<Vorn32f> whole;
        for (const auto& part : parts) whole.insert(whole.end(), part.begin(), part.end());
        return whole;
    }

    void compareTrees(SplitCodebooks& books, Compression& result) const {
        std::vector<std::vector<Vorn8u>> byGrid;
        for (const auto& cepstra : testCepstra_) byGrid.push_back(books.indices(cepstra));
        books.useTrees();
        for (std::size_t i = 0; i < testCepstra_.size(); ++i) {
            Stopwatch watch;
            books.pack(testCepstra_[i]);
            result.packingByTrees += watch.lap();
            const std::vector<Vorn8u> byTree = books.indices(testCepstra_[i]);
            for (std::size_t k = 0; k < byTree.size(); ++k) result.otherWords += byTree[k] != byGrid[i][k];
            result.words += static_cast<long long>(byTree.size());
        }
    }

    void recognise(const std::vector<std::vector<Vorn32f>>& cepstra, const Models& models, Measured& words,
                   Measured* voices) const {
        for (std::size_t i = 0; i < recordings_.size(); ++i) {
            Analysis analysis{recordings_[i].analysis->frames, {}, {}, FrontEnd::features(cepstra[i])};
            if (recordings_[i].word) {
                ++words.known;
                words.right += decide(models, analysis).best == *recordings_[i].word;
            }
            if (voices != nullptr && recordings_[i].speaker) {
                ++voices->known;
                voices->right +=
                    judge(speakers_, {analysis.features.data(), analysis.frames}).best == *recordings_[i].speaker;
            }
        }
    }

    const std::vector<Labelled>& training_;
    const std::vector<Spoken>& recordings_;
    const Speakers& speakers_;
    const std::function<void()>& step_;
    std::vector<std::vector<Vorn32f>> trainingCepstra_, testCepstra_;
    std::vector<Vorn32f> all_, thin_;
    Models clean_;
};

}  // namespace

int loudnessBits(int pairBits) { return std::min(pairBits + 1, kMostLoudnessBits); }

SplitCodebooks::SplitCodebooks(const std::vector<Vorn32f>& cepstra, int pairBits) {
    std::vector<Codebook> books;
    for (int s = 0; s < kStreams; ++s) {
        const int width = widthOf(s), words = 1 << (s < kPairs ? pairBits : loudnessBits(pairBits));
        std::vector<Vorn32f> rows;
        for (std::size_t at = firstOf(s); at < cepstra.size(); at += kStatic) {
            rows.insert(rows.end(), cepstra.begin() + static_cast<std::ptrdiff_t>(at),
                        cepstra.begin() + static_cast<std::ptrdiff_t>(at) + width);
        }
        trees_.push_back(Codebook::grown(rows, width, width, words));
        books.push_back(Codebook::of(trees_.back().words(), width));
    }
    keep(std::move(books));
}

void SplitCodebooks::keep(std::vector<Codebook> books) {
    books_ = std::move(books);
    states_.clear();
    for (const Codebook& book : books_) states_.push_back(book.get());
}

void SplitCodebooks::useTrees() { keep(std::move(trees_)); }

int SplitCodebooks::bits() const {
    int bits = 0;
    for (const Codebook& book : books_) bits += book.bits();
    return bits;
}

std::vector<Vorn8u> SplitCodebooks::pack(const std::vector<Vorn32f>& cepstra) const {
    const int frames = framesOf(cepstra);
    std::vector<Vorn8u> packed((static_cast<std::size_t>(frames) * bits() + 7) / 8);
    DIGITS_CALL(vornsSplitVQ_32f1u, cepstra.data(), kStatic, packed.data(), bits(), frames, states_.data(), kStreams);
    return packed;
}

std::vector<Vorn32f> SplitCodebooks::unpack(const std::vector<Vorn8u>& packed, int frames) const {
    std::vector<Vorn32f> cepstra(static_cast<std::size_t>(frames) * kStatic);
    DIGITS_CALL(vornsFormVectorVQ_1u32f, packed.data(), bits(), cepstra.data(), kStatic, frames, states_.data(),
                kStreams);
    return cepstra;
}

std::vector<Vorn8u> SplitCodebooks::indices(const std::vector<Vorn32f>& cepstra) const {
    const int frames = framesOf(cepstra);
    std::vector<Vorn8u> indices(static_cast<std::size_t>(frames) * kStreams);
    DIGITS_CALL(vornsSplitVQ_32f8u, cepstra.data(), kStatic, indices.data(), kStreams, frames, states_.data(),
                kStreams);
    return indices;
}

std::vector<Vorn32f> SplitCodebooks::formed(const std::vector<Vorn8u>& indices) const {
    const int frames = static_cast<int>(indices.size()) / kStreams;
    std::vector<Vorn32f> cepstra(static_cast<std::size_t>(frames) * kStatic);
    DIGITS_CALL(vornsFormVectorVQ_8u32f, indices.data(), kStreams, cepstra.data(), kStatic, frames, states_.data(),
                kStreams);
    return cepstra;
}

int compressionSteps() { return 1 + kMostPairBits - kLeastPairBits + 1; }

Compression compress(const FrontEnd& frontEnd, const std::vector<Labelled>& training,
                     const std::vector<Spoken>& recordings, const Speakers& speakers,
                     const std::function<void()>& step) {
    const Compressor compressor(frontEnd, training, recordings, speakers, step);
    Compression result;
    result.trials.push_back(compressor.plain());
    for (int bits = kLeastPairBits; bits <= kMostPairBits; ++bits) {
        result.trials.push_back(compressor.quantised(bits, result));
    }
    return result;
}

}  // namespace digits
