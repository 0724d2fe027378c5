// Reciprocal roots with a ceiling: the exported functions and the kernel that keeps its name.
#include <cstddef>
#include <cstdint>

#include "frame/align.h"
#include "frame/checks.h"
#include "frame/kernel.h"
#include "frame/scale.h"
#include "simd/block.h"
#include "vornsr/linalg.h"
#include "vornsr/signal.h"

namespace vorn {
namespace {

// Which elements keep their root. Two routes compare differently on purpose.
struct AboveVal {
    static VORN_INLINE auto keeps(f32xN x, f32xN val) { return val < x; }
};
struct AtLeastVal {
    static VORN_INLINE auto keeps(f32xN x, f32xN val) { return val <= x; }
};

// What becomes of a block of results: singles as they are, or times the scale, limited and truncated.
struct StoredSingles {
    static constexpr int vectors = 1;
    VORN_INLINE void operator()(Vorn32f* dst, const f32xN* r) const { store(dst, r[0]); }
    // Over the integers that they come from.
    VORN_INLINE void operator()(Vorn32s* dst, const f32xN* r) const { store(dst, bitsOf(r[0])); }
};
// Exactly 2^31 is what the upper limit leaves, and the processor makes -2^31 of it.
struct Truncated32s {
    static constexpr int vectors = 1;
    float scale;
    VORN_INLINE i32xN integer(f32xN r, float lowest, float highest) const {
        return truncToInt(minOf(maxOf(r * splat<f32xN>(scale), splat<f32xN>(lowest)), splat<f32xN>(highest)));
    }
    VORN_INLINE void operator()(Vorn32s* dst, const f32xN* r) const {
        store(dst, integer(r[0], -2147483648.0f, 2147483648.0f));
    }
};
struct Truncated16s : Truncated32s {
    static constexpr int vectors = 2;
    VORN_INLINE void operator()(Vorn16s* dst, const f32xN* r) const {
        store(dst, narrowSat(integer(r[0], -32768.0f, 32767.0f), integer(r[1], -32768.0f, 32767.0f)));
    }
};

VORN_INLINE f32xN singlesOf(const Vorn32f* src) { return load<f32xN>(src); }
VORN_INLINE f32xN singlesOf(const Vorn32s* src) { return toFloat(load<i32xN>(src)); }

// vornStsZeroRange where every element was set to val. No rest behind the elements keeps its root: val is above zero.
template <class Test, class Source, class Result, class Stored>
VornStatus rootsBelowCeiling(const Source* src, Result* dst, std::ptrdiff_t len, float val, const Stored& stored) {
    constexpr int vectors = Stored::vectors;
    const f32xN ceiling = splat<f32xN>(val), one = splat<f32xN>(1.0f);
    auto anyKept = ceiling < ceiling;
    forBlocks<vectors * f32xN::lanes>(
        src, dst, len, [&](const Source* from, Result* to) __attribute__((always_inline)) {
            f32xN r[vectors];
            for (int k = 0; k < vectors; ++k) {
                const f32xN x = singlesOf(from + k * f32xN::lanes);
                const auto kept = Test::keeps(x, ceiling);
                anyKept = anyKept | kept;
                r[k] = select(kept, one / sqrtOf(x), ceiling);
            }
            stored(to, r);
        });
    return any(anyKept) ? vornStsNoErr : vornStsZeroRange;
}

}  // namespace
}  // namespace vorn

using namespace vorn;

// Overwrites the integers with the singles that the 32f form makes of them. The status is that of the whole function.
VORN_KERNEL VornStatus vornsRecSqrt_32s_Sfs_M7_Al(Vorn32s* srcDst, std::int64_t len, Vorn32s val) {
    return rootsBelowCeiling<AboveVal>(srcDst, srcDst, len, static_cast<float>(val), StoredSingles{});
}

VornStatus vornsRecSqrt_32f(Vorn32f* srcDst, int len, Vorn32f val) {
    VORN_CHECK(notNull(srcDst));
    VORN_CHECK(positive(len));
    VORN_CHECK(require(val > 0.0f, vornStsBadArgErr));
    return rootsBelowCeiling<AboveVal>(srcDst, srcDst, len, val, StoredSingles{});
}

// The address chooses the rounding, and what becomes of an element equal to val.
VornStatus vornsRecSqrt_32s_Sfs(Vorn32s* srcDst, int len, Vorn32s val, int scaleFactor) {
    VORN_CHECK(notNull(srcDst));
    VORN_CHECK(positive(len));
    VORN_CHECK(require(val > 0, vornStsBadArgErr));
    if (isAligned(srcDst, 16)) {
        const VornStatus status = vornsRecSqrt_32s_Sfs_M7_Al(srcDst, len, val);
        vornsConvert_32f32s_Sfs(reinterpret_cast<const Vorn32f*>(srcDst), srcDst, len, vornRndNear, scaleFactor);
        return status;
    }
    return rootsBelowCeiling<AtLeastVal>(srcDst, srcDst, len, static_cast<float>(val),
                                         Truncated32s{GetScale_32s32f(scaleFactor)});
}

VornStatus vornsRecSqrt_32s16s_Sfs(const Vorn32s* src, Vorn16s* dst, int len, Vorn32s val, int scaleFactor) {
    VORN_CHECK(notNull(src, dst));
    VORN_CHECK(positive(len));
    VORN_CHECK(require(val > 0, vornStsBadArgErr));
    return rootsBelowCeiling<AtLeastVal>(src, dst, len, static_cast<float>(val),
                                         Truncated16s{{GetScale_32s32f(scaleFactor)}});
}
