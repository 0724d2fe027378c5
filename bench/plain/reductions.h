// Plain loops of the reductions and elementary functions: what a compiler makes of the formula.
#pragma once

#include "vornsr/types.h"

namespace plain {

void ln(const Vorn32f* src, Vorn32f* dst, int len);
float sumLn(const Vorn32f* src, int len);
float sum(const Vorn32f* src, int len);
float sumInDouble(const Vorn32f* src, int len);
void magnitude(const Vorn32fc* src, Vorn32f* dst, int len);
void magnitude(const Vorn32sc* src, Vorn32s* dst, int len, int scaleFactor);

}  // namespace plain
