// Plain loops of log-domain arithmetic over the C library's exponential and logarithm.
#pragma once

#include "vornsr/types.h"

namespace plain {

void logAdd(const Vorn32f* src, Vorn32f* srcDst, int len);
void logAdd(const Vorn64f* src, Vorn64f* srcDst, int len);
void logAdd(const Vorn32s* src, Vorn32s* srcDst, int len, float scale);
void logAdd(const Vorn16s* src, Vorn16s* srcDst, int len, float scale);
Vorn32f logSum(const Vorn32f* src, int len);
Vorn64f logSum(const Vorn64f* src, int len);
Vorn32s logSum(const Vorn32s* src, int len, float scale);
Vorn16s logSum(const Vorn16s* src, int len, float scale);
void logSub(const Vorn32f* src, Vorn32f* srcDst, int len);
void logSub(const Vorn64f* src, Vorn64f* srcDst, int len);
void logSub(const Vorn32s* src, Vorn32s* srcDst, int len, float scale);
void logSub(const Vorn16s* src, Vorn16s* srcDst, int len, float scale);

}  // namespace plain
