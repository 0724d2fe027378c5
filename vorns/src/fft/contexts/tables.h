// The tables of a context. Every one is derived from the quarter-wave table by index arithmetic and sign change.
#pragma once

#include <cstdint>

#include "fft/contexts/plan.h"
#include "fft/contexts/spec.h"

namespace vorn::fft {

// S[i] = sin(2 pi i / N) for i from 0 to N / 4, N = 2^order; rounded once from double.
template <class T>
struct QuarterWave {
    const T* s;
    int order;

    static void fill(T* s, int order);

    // cos and -sin of 2 pi index / 2^indexOrder, for indexOrder up to order.
    void factor(std::int64_t index, int indexOrder, T& cosine, T& negatedSine) const;
};

// Entry i is twice i with its order - 2 bits reversed; one more entry, 0, ends the table.
void fillBitReversal(std::int32_t* table, int order);

// The twiddles of a complex transform from order firstTableOrder on. twdTab has the size that complexSizes reports; the
// level pointers are set to the merge tables of a long transform, which lie behind the innermost table.
template <class T>
void fillTwiddles(const QuarterWave<T>& wave, int order, T* twdTab, T** blkTwdTab);

// The tables are read in whole vectors: they begin at the first 64-byte address of their block, whose size allows for
// it.
template <class T>
inline T* firstTwiddle(T* twdTab) {
    return alignedUp(twdTab, 64);
}

// Recombination tables of a real transform of length 2^wave.order: lanes A, then lanes B, for j from 1 to N / 4.
template <class T>
void fillRealRecombination(const QuarterWave<T>& wave, T* table);
template <class T>
void fillCcsRecombination(const QuarterWave<T>& wave, T* table);

// The lanes in which a recombination of a real transform of this order runs.
template <class T>
constexpr int recombinationLanes(int order) {
    return (std::int64_t{1} << order) / 4 >= Wide<T>::lanes ? Wide<T>::lanes : Precision<T>::Narrow::lanes;
}

}  // namespace vorn::fft
