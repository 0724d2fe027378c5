// Cepstra as a stream of bits: each frame is cut into pieces, and of each piece the number of its nearest codeword is
// sent. What that costs the recognition of digits, and of speakers.
//
// K. K. Paliwal, B. S. Atal, "Efficient vector quantization of LPC parameters at 24 bits/frame", 1993.
#pragma once

#include <functional>
#include <vector>

#include "comparison.h"
#include "train.h"

namespace digits {

inline constexpr int kPairs = kCepstra / 2;  // c1 and c2, c3 and c4, ..., c11 and c12; c0 goes by itself
inline constexpr int kStreams = kPairs + 1;
inline constexpr int kFramesPerSecond = kSampleRate / kFrameStep;
inline constexpr std::size_t kLeastFramesOfSplit = 128;  // as many as the largest codebook has words
inline constexpr int kTypicalPairBits = 6;               // the size that the table of the streams shows

// How many bits of c0 go with so many of each pair.
int loudnessBits(int pairBits);

// One codebook for each piece of a frame's cepstra.
class SplitCodebooks {
public:
    // From rows of kStatic cepstra.
    SplitCodebooks(const std::vector<Vorn32f>& cepstra, int pairBits);

    // The same words found by the trees that they were grown with, and not in the cells of grids.
    void useTrees();

    int bits() const;  // a frame
    const Codebook& stream(int s) const { return books_[s]; }

    // Frames follow one another without a gap; the last byte is filled up with zeros.
    std::vector<Vorn8u> pack(const std::vector<Vorn32f>& cepstra) const;
    std::vector<Vorn32f> unpack(const std::vector<Vorn8u>& packed, int frames) const;

    // The number of each codeword in a byte of its own, and the way back.
    std::vector<Vorn8u> indices(const std::vector<Vorn32f>& cepstra) const;
    std::vector<Vorn32f> formed(const std::vector<Vorn8u>& indices) const;

private:
    void keep(std::vector<Codebook> books);

    std::vector<Codebook> trees_, books_;
    std::vector<const VornCdbkState*> states_;
};

struct StreamTrial {
    int first = 0, width = 0;  // the columns of the cepstra: 0 to 11 are c1 to c12, and 12 is c0
    int words = 0, bits = 0;
    double training = 0.0, test = 0.0;  // ratio of the variance of the elements to the error: decibels
};

struct CompressionTrial {
    int pairBits = 0;  // 0: nothing is quantised
    int bits = 0;      // a frame
    long long bytes = 0;
    double decibels = 0.0;                  // of all streams together, on the recordings to be recognised
    Measured clean, quantised;              // digits, by models of features as they are and of quantised ones
    Measured speakers;                      // by codebooks of features as they are
    double packing = 0.0, unpacking = 0.0;  // seconds

    int bitsPerSecond() const { return bits * kFramesPerSecond; }
};

struct Compression {
    std::vector<CompressionTrial> trials;  // the first one without quantisation
    std::vector<StreamTrial> streams;
    double packingByTrees = 0.0;  // seconds, at kTypicalPairBits
    long long otherWords = 0;     // that the trees found there, of all
    long long words = 0;
};

// A recording whose word may be known.
struct Spoken {
    const Analysis* analysis;
    std::optional<int> word;
    std::optional<int> speaker;  // index
};

// The codebooks and the models of digits are of the training recordings, of which each word has kLeastRecordings.
Compression compress(const FrontEnd& frontEnd, const std::vector<Labelled>& training,
                     const std::vector<Spoken>& recordings, const Speakers& speakers,
                     const std::function<void()>& step);
int compressionSteps();

}  // namespace digits
