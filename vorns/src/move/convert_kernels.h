// Conversions between the element types, without checks. The types of the buffers choose the kernel; the rules of each
// stand with the public functions. A destination must not overlap its source, save that between types of one size both
// may start at one address.
#pragma once

#include <cstddef>

#include "vornsr/types.h"

namespace vorn {

// Every value kept, save what the names of the types cannot hold: 32s to 32f rounds in the caller's mode, 32s to 16s
// saturates, 64f to 32f clamps and then rounds in the caller's mode.
void convert(const Vorn8s* src, Vorn16s* dst, std::ptrdiff_t len);
void convert(const Vorn16s* src, Vorn32s* dst, std::ptrdiff_t len);
void convert(const Vorn8s* src, Vorn32f* dst, std::ptrdiff_t len);
void convert(const Vorn8u* src, Vorn32f* dst, std::ptrdiff_t len);
void convert(const Vorn16s* src, Vorn32f* dst, std::ptrdiff_t len);
void convert(const Vorn16u* src, Vorn32f* dst, std::ptrdiff_t len);
void convert(const Vorn32s* src, Vorn32f* dst, std::ptrdiff_t len);
void convert(const Vorn32s* src, Vorn64f* dst, std::ptrdiff_t len);
void convert(const Vorn32f* src, Vorn64f* dst, std::ptrdiff_t len);
void convert(const Vorn32s* src, Vorn16s* dst, std::ptrdiff_t len);
void convert(const Vorn64f* src, Vorn32f* dst, std::ptrdiff_t len);

// Times 2^-scale.
void convert(const Vorn16s* src, Vorn32f* dst, std::ptrdiff_t len, int scale);
void convert(const Vorn16s* src, Vorn64f* dst, std::ptrdiff_t len, int scale);
void convert(const Vorn32s* src, Vorn32f* dst, std::ptrdiff_t len, int scale);
void convert(const Vorn32s* src, Vorn64f* dst, std::ptrdiff_t len, int scale);
void convert(const Vorn32s* src, Vorn16s* dst, std::ptrdiff_t len, int scale);

// Times 2^-scale, rounded and saturated; every mode but vornRndZero is vornRndNear. The caller's rounding mode does not
// matter and comes back.
void convert(const Vorn32f* src, Vorn8s* dst, std::ptrdiff_t len, VornRoundMode mode, int scale);
void convert(const Vorn32f* src, Vorn8u* dst, std::ptrdiff_t len, VornRoundMode mode, int scale);
void convert(const Vorn32f* src, Vorn16s* dst, std::ptrdiff_t len, VornRoundMode mode, int scale);
void convert(const Vorn32f* src, Vorn16u* dst, std::ptrdiff_t len, VornRoundMode mode, int scale);
void convert(const Vorn32f* src, Vorn32s* dst, std::ptrdiff_t len, VornRoundMode mode, int scale);
void convert(const Vorn64f* src, Vorn32s* dst, std::ptrdiff_t len, VornRoundMode mode, int scale);

// Halves; every mode but vornRndNear is vornRndZero.
void convertFromHalf(const Vorn16f* src, Vorn32f* dst, std::ptrdiff_t len);
void convertFromHalf(const Vorn16f* src, Vorn16s* dst, std::ptrdiff_t len, VornRoundMode mode, int scale);
void convertToHalf(const Vorn16s* src, Vorn16f* dst, std::ptrdiff_t len, VornRoundMode mode);
void convertToHalf(const Vorn32f* src, Vorn16f* dst, std::ptrdiff_t len, VornRoundMode mode);

}  // namespace vorn
