// Plain loops of the Gaussian scores of one vector: the formula, in column order.
#pragma once

#include "vornsr/types.h"

namespace plain {

Vorn32f gaussScore(const Vorn32f* x, const Vorn32f* m, const Vorn32f* v, int len, Vorn32f val);
Vorn64f gaussScore(const Vorn64f* x, const Vorn64f* m, const Vorn64f* v, int len, Vorn64f val);
Vorn64f gaussScoreWidened(const Vorn32f* x, const Vorn32f* m, const Vorn32f* v, int len, Vorn64f val);
Vorn32f gaussScoreIdentity(const Vorn32f* x, const Vorn32f* m, int len, Vorn32f val);
Vorn64f gaussScoreIdentity(const Vorn64f* x, const Vorn64f* m, int len, Vorn64f val);
Vorn32f gaussScoreDivided(const Vorn32f* x, const Vorn32f* m, const Vorn32f* v, int len, Vorn32f val);
Vorn64f gaussScoreDivided(const Vorn64f* x, const Vorn64f* m, const Vorn64f* v, int len, Vorn64f val);

// 16 bits: sums in single; in 64-bit integers, whose sum of squares is exact; in 32-bit ones of the low-precision
// scheme.
Vorn32f gaussScore(const Vorn16s* x, const Vorn16s* m, const Vorn16s* v, int len, Vorn32f val, Vorn32f scale);
Vorn32f gaussScoreDivided(const Vorn16s* x, const Vorn16s* m, const Vorn16s* v, int len, Vorn32f val, Vorn32f scale);
Vorn32f gaussScoreIdentity(const Vorn16s* x, const Vorn16s* m, int len, Vorn32f val, Vorn32f scale);
Vorn32s gaussScoreLow(const Vorn16s* x, const Vorn16s* m, const Vorn16s* v, int len, Vorn32s val, int scaleFactor);
Vorn32s gaussScoreLowIdentity(const Vorn16s* x, const Vorn16s* m, int len, Vorn32s val, int scaleFactor);

// One block: S = d' A d.
Vorn32f gaussScoreBlock(const Vorn32f* x, const Vorn32f* m, const Vorn32f* const* rows, int len, Vorn32f val);
Vorn64f gaussScoreBlock(const Vorn64f* x, const Vorn64f* m, const Vorn64f* const* rows, int len, Vorn64f val);
Vorn32f gaussScoreBlock(const Vorn16s* x, const Vorn16s* m, const Vorn16s* const* rows, int len, Vorn32f val,
                        Vorn32f scale);

}  // namespace plain
