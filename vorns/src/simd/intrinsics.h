// The intrinsics of this build. The baseline reads those of SSE3 and no more: <immintrin.h> declares what every processor
// has, which took half a second in each file.
#pragma once

// GCC 12 takes the deliberately undefined operands of some 512-bit intrinsics for a fault of ours (its bug 105593).
#pragma GCC diagnostic push
#ifndef __clang__
#pragma GCC diagnostic ignored "-Wuninitialized"
#pragma GCC diagnostic ignored "-Wmaybe-uninitialized"
#endif
#if defined(__AVX2__)
#include <immintrin.h>
#else
#include <pmmintrin.h>
#endif
#pragma GCC diagnostic pop
