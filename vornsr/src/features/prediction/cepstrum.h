// Prediction coefficients and cepstrum, from each other: two recursions that differ in which of their factors is
// weighted, the one that is given or the one that comes into being.
#pragma once

#include <cstddef>

#include "vornsr/types.h"

namespace vorn::conversion {

// Element i is 0 - (acc / (i + 1) + src[i]), acc being the sum over j from 0 to i - 1, in this order, of the products
// ((i - j) src[j]) dst[i - 1 - j], or ((i - j) src[i - 1 - j]) dst[j]: the index of the cepstrum is the weight, and
// multiplies first. Returns the index of the first result, 0.
std::ptrdiff_t toCepstrum(const Vorn32f* src, Vorn32f* dst, std::ptrdiff_t n);
std::ptrdiff_t fromCepstrum(const Vorn32f* src, Vorn32f* dst, std::ptrdiff_t n);

}  // namespace vorn::conversion
