// The path that a complex transform takes: direct, short or long.
#pragma once

#include <cstdint>

#include "fft/contexts/spec.h"
#include "fft/core/layouts.h"

namespace vorn::fft {

enum class Direction { Forward, Inverse };

// The transform of 2^order pairs; order is the complex one (one below that of a real context). work is the aligned work
// area of the context. src and dst are the same array or do not overlap.
template <class T>
void transformPairs(const FloatSpec<T>& spec, int order, Direction direction, const T* src, T* dst, T* work);

// The transform of split arrays; the inverse is the forward one with the two arrays exchanged.
template <class T>
void transformSplit(const FloatSpec<T>& spec, int order, Direction direction, const T* srcRe, const T* srcIm, T* dstRe,
                    T* dstIm, T* work);

}  // namespace vorn::fft
