// Kernels of the block operations and of conjugation. They check nothing; lengths are in 64 bits.
#pragma once

#include <cstdint>

#include "vornsr/signal.h"

#pragma GCC visibility push(default)
extern "C" {

// len bytes to any other place, overlapping or not.
void ownsMove_8u_M7(const Vorn8u* src, Vorn8u* dst, std::int64_t len);

// len elements of 8, 16, 32, 64 and 128 bits, all with the bits of val.
void ownsSet_8u_M7(Vorn8u val, Vorn8u* dst, std::int64_t len);
void ownsSet_16u_M7(Vorn16u val, Vorn16u* dst, std::int64_t len);
void ownsSet_32s_M7(Vorn32s val, Vorn32s* dst, std::int64_t len);
void ownsSet_64s_M7(Vorn64s val, Vorn64s* dst, std::int64_t len);
void ownsSet_64sc_M7(Vorn64sc val, Vorn64sc* dst, std::int64_t len);

// A spectrum of a real signal of len points from its lower half: dst[k] = src[k] up to k = len/2, and above that
// dst[len - k] = conj(src[k]). dst may be src.
void ownsConjExtend_16sc_M7(const Vorn16sc* src, Vorn16sc* dst, std::int64_t len);
}
#pragma GCC visibility pop

namespace vorn {

// dst[n] = conj(src[n]); dst may be src.
void conjugate(const Vorn16sc* src, Vorn16sc* dst, std::int64_t len);
void conjugate(const Vorn32fc* src, Vorn32fc* dst, std::int64_t len);
void conjugate(const Vorn64fc* src, Vorn64fc* dst, std::int64_t len);

// dst[n] = conj(src[len - 1 - n]); no overlap.
void conjugateReversed(const Vorn16sc* src, Vorn16sc* dst, std::int64_t len);
void conjugateReversed(const Vorn32fc* src, Vorn32fc* dst, std::int64_t len);
void conjugateReversed(const Vorn64fc* src, Vorn64fc* dst, std::int64_t len);

}  // namespace vorn
