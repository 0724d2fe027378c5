// The context's memory: what a block must hold, and where its parts stand. Record, words, weights and room for
// distances are one block, whether the caller's or ours; a tree or a grid is a second one.
#pragma once

#include <bit>
#include <climits>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <type_traits>

#include "frame/align.h"
#include "frame/checks.h"
#include "frame/memory.h"
#include "vq/codebook/state.h"

namespace vorn::vq {

inline constexpr int mostWords = 16383;
inline constexpr std::int64_t partAlignment = 32;

// How far apart words stand. Short ones stand close; others keep the step of their vectors, rounded up.
template <class T>
struct WordStep;
template <>
struct WordStep<Vorn32f> {
    static constexpr int multiple = 4;
    static constexpr bool standsClose(int width) { return width == 1 || width == 2 || width == 4 || width == 8; }
};
template <>
struct WordStep<Vorn16s> {
    static constexpr int multiple = 8;
    static constexpr bool standsClose(int width) { return width == 1 || width == 2 || width == 4; }
};

template <class T>
constexpr std::int64_t ownWordStep(int width, int step, int hint) {
    if (hint == wordsAsGiven && WordStep<T>::standsClose(width)) return width;
    return roundUp(step, WordStep<T>::multiple);
}

// In a caller's block both element types have one rule.
constexpr std::int64_t placedWordStep(int width, int step) {
    return width == 1 || width == 2 || width == 4 ? width : roundUp(step, 8);
}

// What the record, and what lies between the parts, take at most.
template <class T>
inline constexpr int placedOverhead = std::is_same_v<T, Vorn32f> ? 176 : 208;

template <class T>
constexpr std::int64_t placedBytes(int width, int step, int words) {
    const std::int64_t elements = width + words * placedWordStep(width, step);
    return elements * static_cast<std::int64_t>(sizeof(T)) + words * static_cast<std::int64_t>(sizeof(Vorn32f)) +
           placedOverhead<T>;
}

constexpr VornStatus givenWordsHold(int width, int step, int height, int nCluster) {
    VORN_CHECK(positive(width, step, height, nCluster));
    return require(width <= step && nCluster <= mostWords && nCluster == height, vornStsSizeErr);
}

constexpr VornStatus needsNoTree(int hint) {
    return require(hint != largestRadius && hint != mostMembers, vornStsCdbkFlagErr);
}

// How many halvings take the largest index to zero.
constexpr int bitsOfIndex(int words) { return std::bit_width(static_cast<unsigned>(words - 1)); }

// The parts behind a record, for so many words rowStep apart.
template <class T>
void placeParts(VornCdbkState& book, std::int64_t words) {
    T* first = reinterpret_cast<T*>(alignedUp(reinterpret_cast<char*>(&book + 1), partAlignment));
    T* weights = alignedUp(first + words * book.rowStep, partAlignment);
    book.words = first;
    book.weights = weights;
    book.scratch = reinterpret_cast<Vorn32f*>(alignedUp(weights + book.vecLen, partAlignment));
}

// Vectors as words, zeros between them.
template <class T>
void copyWords(VornCdbkState& book, const T* src, int step, int height) {
    const std::size_t bytes = sizeof(T) * static_cast<std::size_t>(book.vecLen);
    const std::size_t rest = sizeof(T) * static_cast<std::size_t>(book.rowStep - book.vecLen);
    T* word = static_cast<T*>(book.words);
    for (int i = 0; i < height; ++i) {
        std::memcpy(word, src + static_cast<std::ptrdiff_t>(step) * i, bytes);
        std::memset(word + book.vecLen, 0, rest);
        word += book.rowStep;
    }
}

// Memory of mixed content, in units so large that an int says how many.
struct alignas(partAlignment) Unit {
    char bytes[partAlignment];
};
class MixedBlock {
public:
    explicit MixedBlock(std::int64_t bytes) : units_((bytes + partAlignment - 1) / partAlignment) {}
    explicit operator bool() const { return static_cast<bool>(units_); }
    void* get() const { return units_.get(); }
    void* release() { return units_.release(); }

private:
    Scratch<Unit> units_;
};

// A block for a record and its parts.
template <class T>
std::int64_t ownBytes(std::int64_t words, std::int64_t rowStep, int width) {
    const auto element = static_cast<std::int64_t>(sizeof(T));
    return static_cast<std::int64_t>(sizeof(VornCdbkState)) + (words * rowStep + width) * element +
           words * static_cast<std::int64_t>(sizeof(Vorn32f)) + 3 * partAlignment;
}

}  // namespace vorn::vq
