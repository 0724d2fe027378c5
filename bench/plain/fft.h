// The plain loops beside packed spectra.
#pragma once

#include "vornsr/types.h"

namespace plain {

void multiplyPack(const Vorn32f* a, const Vorn32f* b, Vorn32f* dst, int len);
void multiplyPack(const Vorn16s* a, const Vorn16s* b, Vorn16s* dst, int len, int scaleFactor);

}  // namespace plain
