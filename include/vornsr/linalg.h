/* Linear algebra: singular values, matrix-vector products, row and column reductions, curves. */
#ifndef VORNSR_LINALG_H
#define VORNSR_LINALG_H

#include "types.h"

VORN_BEGIN_DECLS

/* ---- Singular values ------------------------------------------------------------------------------------------- */

/* ---- Matrix-vector products ------------------------------------------------------------------------------------ */

/* ---- Row and column reductions --------------------------------------------------------------------------------- */

/* ---- Curves and small tools ------------------------------------------------------------------------------------ */

VORN_END_DECLS

#endif
