// Plain loops for shortlists, sign tables and mixtures of selected Gaussians.
#pragma once

#include "vornsr/types.h"

namespace plain {

// numRows x count bit numbers, row after row, and width x count row numbers, column after column.
void fillRows(const Vorn32s* indices, int width, int count, Vorn8u* const* rows, int numRows, int start);
void fillColumns(const Vorn32s* indices, int count, Vorn8u* const* rows, int numRows, int start, int width);

// Byte by byte, every index tested.
bool signTable(const Vorn32s* indices, int count, const Vorn8u* const* rows, int numRows, int start, Vorn8u* sign,
               int frames, int width);
// As far as the first hit of each frame.
bool firstSigns(const Vorn32s* indices, const Vorn32s* counts, const Vorn8u* const* rows, int numRows, int start,
                Vorn8u* sign, int frames, int width);

// One frame after the other, log-adds by the C library. A null var is the identity covariance.
void selectedMixture(const Vorn32f* src, const Vorn32f* mean, const Vorn32f* var, int len, const Vorn32f* val,
                     const Vorn8u* sign, int width, Vorn32f* result, int frames, Vorn32f floor);
void selectedMixture(const Vorn16s* src, const Vorn16s* mean, const Vorn16s* var, int len, const Vorn32f* val,
                     const Vorn8u* sign, int width, Vorn32f* result, int frames, Vorn32f floor, Vorn32f scale);

}  // namespace plain
