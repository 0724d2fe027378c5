// Prediction and reflection coefficients: the step-down and the step-up recursion (Makhoul 1975; Rabiner and Schafer
// 1978, section 8.3.3).
#pragma once

#include <cstddef>

#include "vornsr/types.h"

namespace vorn::conversion {

// Both take two rows of scratch, each of this many elements.
constexpr std::ptrdiff_t stepRow(std::ptrdiff_t n) { return (n + 4) / 4 * 4; }
inline constexpr int stepOnStack = 2 * stepRow(15);  // up to order 15

// For m from n - 1 down to 0: dst[m] = k = 0 - w[m], and unless m is 0, w[i] becomes (w[m-1-i] k + w[i]) d for all i
// below m, with d = 1 / (1 - k k); w is src at first. A k of 1, -1 or not-a-number ends it before dst[m] is written.
// Returns the index of the last coefficient that was written. dst may be src.
std::ptrdiff_t stepDown(const Vorn32f* src, Vorn32f* dst, std::ptrdiff_t n, Vorn32f* scratch);

// For i from 0 to n - 1: w[j] becomes w[j] - w[i-1-j] k[i] for all j below i, and w[i] = 0 - k[i]; dst is w in the end.
// It may be src.
void stepUp(const Vorn32f* src, Vorn32f* dst, std::ptrdiff_t n, Vorn32f* scratch);

}  // namespace vorn::conversion
