// Line spectral frequencies, as cosines: the roots of the two symmetric polynomials that a prediction filter and its
// mirror image give, and the way back (Itakura 1975; the search for roots of Chebyshev series, Kabal and Ramachandran
// 1986).
#pragma once

#include <cstddef>
#include <cstdint>

#include "frame/memory.h"
#include "vornsr/types.h"

namespace vorn::conversion {

// The degrees of the two polynomials in the cosine.
constexpr std::ptrdiff_t degreeOfP(std::ptrdiff_t order) { return (order + 1) / 2; }
constexpr std::ptrdiff_t degreeOfQ(std::ptrdiff_t order) { return order / 2; }

// The roots of P and Q in turn, from 1 down to -1, found where the active one changes its sign between the points of a
// grid of nGrid steps and refined by about nDiv bisections. polynomials is room for all coefficients. Returns how many
// roots were found. dst may be a.
constexpr std::int64_t lineScratch(std::int64_t order) { return order + 2; }
int linesFromCoefficients(const Vorn32f* a, Vorn32f* dst, std::ptrdiff_t order, std::ptrdiff_t nGrid, int nDiv,
                          Vorn32f* polynomials);

// The coefficients from the lines x; dst may be x.
constexpr std::int64_t coefficientScratch(std::int64_t order) { return degreeOfP(order) / 2 * 4 + 4; }
void coefficientsFromLines(const Vorn32f* x, Vorn32f* dst, std::ptrdiff_t order, Vorn32f* pairs);

// What needs no memory: up to order 254, and 58.
using LineScratch = ShortScratch<Vorn32f, 256>;
using CoefficientScratch = ShortScratch<Vorn32f, coefficientScratch(58)>;

}  // namespace vorn::conversion
