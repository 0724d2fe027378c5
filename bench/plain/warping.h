// Plain dynamic time warping: a row of costs after the other, inside a band and a beam, distances by their formula.
#pragma once

#include "vornsr/types.h"

namespace plain {

// Rows of one block each, width elements apart.
Vorn32f warp(const Vorn32f* src1, int height1, const Vorn32f* src2, int height2, int width, int delta, Vorn32f beam);
Vorn32f warp(const Vorn8u* src1, int height1, const Vorn8u* src2, int height2, int width, int delta, Vorn32f beam);
Vorn32f warp(const Vorn16s* src1, int height1, const Vorn16s* src2, int height2, int width, int delta, Vorn32f beam);

}  // namespace plain
