// A codebook of the library with an owner, in singles and in 16 bits.
#pragma once

#include <memory>
#include <vector>

#include "frames.h"

namespace digits {

// How the library finds the nearest word: by its hints.
enum class Search {
    kScan = 1,          // all words, or those in the cell of a grid
    kTreeByRadius = 2,  // a tree whose widest cluster was split next
    kTreeByCount = 3,   // a tree whose fullest cluster was split next
};

// Which word is nearest to each of some frames, and how far it is.
template <typename Distance>
struct Nearest {
    std::vector<Vorn32s> word;
    std::vector<Distance> distance;
};

class Codebook {
public:
    // So many words, or fewer if the vectors do not differ enough, from rows that begin `step` elements apart: the
    // library's splitting and k-means, and its tree. There must be as many rows as words.
    //
    // Y. Linde, A. Buzo, R. M. Gray, "An algorithm for vector quantizer design", 1980.
    static Codebook grown(const std::vector<Vorn32f>& rows, int width, int step, int words,
                          Search tree = Search::kTreeByRadius);

    // Words that are known, width elements each, one behind the other. All of them are compared.
    static Codebook of(const std::vector<Vorn32f>& words, int width);

    int size() const;
    int width() const { return width_; }
    int bits() const;  // that the number of a word takes
    std::vector<Vorn32f> words() const;
    const VornCdbkState* get() const { return state_.get(); }

    Nearest<Vorn32f> nearest(const Stretch& frames) const;

private:
    Codebook(const std::vector<Vorn32f>& rows, int width, int step, int words, Search search);

    int width_;
    std::unique_ptr<VornCdbkState, VornStatus (*)(VornCdbkState*)> state_{nullptr, vornsCdbkFree_32f};
};

// Steps of a feature in 16 bits: 1/128 of its unit, up to 256 to either side.
inline constexpr int kStepsExponent = 7;
std::vector<Vorn16s> inSteps(const std::vector<Vorn32f>& values);

class Codebook16 {
public:
    static Codebook16 grown(const std::vector<Vorn16s>& rows, int width, int step, int words);
    static Codebook16 of(const std::vector<Vorn16s>& words, int width);

    std::vector<Vorn16s> words() const;

    // Rows are kRowStep elements apart. Distances are whole steps.
    Nearest<Vorn32s> nearest(const std::vector<Vorn16s>& rows) const;

private:
    Codebook16(const std::vector<Vorn16s>& rows, int width, int step, int words, Search search);

    int width_;
    std::unique_ptr<VornCdbkState, VornStatus (*)(VornCdbkState*)> state_{nullptr, vornsCdbkFree_16s};
};

// The sum of the squares of distances.
double sumOfSquares(const std::vector<Vorn32f>& distances);

}  // namespace digits
