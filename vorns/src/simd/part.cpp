// Parts of a register, put together from overlapping words: through memory the load of a whole register would have to
// wait for the stores of its pieces.
#include "simd/part.h"

#if !defined(VORN_SIMD_AVX512)

#include "simd/short_block.h"

namespace vorn {
namespace {

// Up to 8 bytes. Where the two words overlap they say the same.
VORN_INLINE std::uint64_t wordOf(const Vorn8u* p, std::int64_t count) {
    if (count >= 4) {
        const std::uint64_t low = wordAt<std::uint32_t>(p), high = wordAt<std::uint32_t>(p + count - 4);
        return low | high << (8 * (count - 4));
    }
    if (count >= 2) {
        const std::uint32_t low = wordAt<std::uint16_t>(p), high = wordAt<std::uint16_t>(p + count - 2);
        return low | high << (8 * (count - 2));
    }
    return count > 0 ? *p : 0;
}

// Up to 16 bytes.
VORN_INLINE i8x16 partOf16(const Vorn8u* p, std::int64_t count) {
    std::uint64_t low, high = 0;
    if (count > 8) {
        low = wordAt<std::uint64_t>(p);
        high = wordAt<std::uint64_t>(p + count - 8) >> (8 * (16 - count));
    } else {
        low = wordOf(p, count);
    }
    return std::bit_cast<i8x16>(splatPair<i64x2>(static_cast<std::int64_t>(low), static_cast<std::int64_t>(high)));
}

}  // namespace

i8xN loadBytes(const void* from, std::int64_t count) {
    const auto* p = static_cast<const Vorn8u*>(from);
#if defined(VORN_SIMD_AVX2)
    const bool above = count > 16;
    const auto end = std::bit_cast<f32x4>(partOf16(above ? p + 16 : p, above ? count - 16 : count));
    return std::bit_cast<i8xN>(above ? join(wordAt<f32x4>(p), end) : join(end, splat<f32x4>(0)));
#else
    return partOf16(p, count);
#endif
}

void storeBytes(void* to, i8xN x, std::int64_t count) {
    alignas(sizeof x) Vorn8u room[sizeof x];
    putWord(room, x);
    if (count > 0) moveFew(room, static_cast<Vorn8u*>(to), count);
#if defined(VORN_SIMD_AVX2)
    clearUpperHalves();
#endif
}

}  // namespace vorn

#endif
