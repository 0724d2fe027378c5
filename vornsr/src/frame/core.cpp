// The floating-point core: special values, and the rounding control of the calling thread.
#include <emmintrin.h>

#include <bit>
#include <cstdint>

#include "vornsr/frame.h"

const Vorn32f vornConstantOfNAN_32f = std::bit_cast<Vorn32f>(std::uint32_t{0x7FC00000});
const Vorn64f vornConstantOfNAN_64f = std::bit_cast<Vorn64f>(std::uint64_t{0x7FF8000000000000});
const Vorn32f vornConstantOfINF_32f = std::bit_cast<Vorn32f>(std::uint32_t{0x7F800000});
const Vorn64f vornConstantOfINF_64f = std::bit_cast<Vorn64f>(std::uint64_t{0x7FF0000000000000});
const Vorn32f vornConstantOfINF_NEG_32f = std::bit_cast<Vorn32f>(std::uint32_t{0xFF800000});
const Vorn64f vornConstantOfINF_NEG_64f = std::bit_cast<Vorn64f>(std::uint64_t{0xFFF0000000000000});

int vorn_set_rc_ssx(int mode) {
    constexpr unsigned roundingBits = 0x6000;
    const unsigned former = _mm_getcsr();
    _mm_setcsr((former & ~roundingBits) | (static_cast<unsigned>(mode) & roundingBits));
    return static_cast<int>(former);
}

void vorn_set_cw_ssx(int word) { _mm_setcsr(static_cast<unsigned>(word)); }
