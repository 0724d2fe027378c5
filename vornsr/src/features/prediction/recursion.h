// From autocorrelations to prediction coefficients and to reflection coefficients.
#pragma once

#include "vornsr/types.h"

namespace vorn::prediction {

// The error filter 1 + a(1) z^-1 + ... of r(0..order), Durbin's recursion; *pErr is the energy of its error. a may
// overlap r. On vornStsDurbinErr a holds the coefficients of the last round that was completed.
VornStatus durbin(const Vorn32f* r, Vorn32f* a, int order, Vorn32f* pErr);

}  // namespace vorn::prediction
