// Conversions between the element types: one loop over blocks, and for each conversion what it does to a block.
#include "move/convert_kernels.h"

#include <algorithm>
#include <climits>

#include "frame/align.h"
#include "frame/rounding.h"
#include "frame/scale.h"
#include "simd/block.h"
#include "simd/half.h"
#include "simd/rounded_shift.h"
#include "simd/simd.h"

namespace vorn {
namespace {

// How a block leaves: through the cache or, in runs that would only push everything else out of it, past it.
struct Cached {
    template <class T, class V>
    VORN_INLINE void operator()(T* p, V a) const {
        store(p, a);
    }
};
struct Streamed {
    template <class T, class V>
    VORN_INLINE void operator()(T* p, V a) const {
        storeStream(p, a);
    }
};

// step(source, result, put) converts block elements and hands each vector of results to put; two blocks a turn.
template <int block, class Source, class Result, class Step>
VORN_INLINE void convertBlocks(const Source* src, Result* dst, std::ptrdiff_t len, Step step) {
    forBlocks<block, 2>(src, dst, len, [=](const Source* from, Result* to) { step(from, to, Cached{}); });
}

// The same, past the cache when source and destination together are larger than 2 MiB.
template <int block, class Source, class Result, class Step>
VORN_INLINE void convertBlocksStreaming(const Source* src, Result* dst, std::ptrdiff_t len, Step step) {
    constexpr std::ptrdiff_t limit = (std::ptrdiff_t{2} << 20) / static_cast<int>(sizeof(Source) + sizeof(Result));
    if (len <= limit || !isAligned(dst, sizeof(Result))) {
        convertBlocks<block>(src, dst, len, step);
        return;
    }
    std::ptrdiff_t i = alignedUp(dst, sizeof(f32xN)) - dst;
    convertBlocks<block>(src, dst, i, step);
    for (; i <= len - block; i += block) step(src + i, dst + i, Streamed{});
    storeFence();
    convertBlocks<block>(src + i, dst + i, len - i, step);
}

// Rounding of a float to a 32-bit integer.

struct Truncated {
    static VORN_INLINE i32xN toInt(f32xN x) { return truncToInt(x); }
    static VORN_INLINE i32xN toInt(f64xN low, f64xN high) { return truncToInt(low, high); }
};
// In the current mode, which the caller of the kernel has set to nearest.
struct Nearest {
    static VORN_INLINE i32xN toInt(f32xN x) { return roundToInt(x); }
    static VORN_INLINE i32xN toInt(f64xN low, f64xN high) { return roundToInt(low, high); }
};

// Destinations of singles: how a scaled value is limited before it is rounded, and how the integers are packed. Below
// its range a value needs no limit: the packing saturates, and -2147483648 is what the processor gives for it. A
// minimum or maximum with a not-a-number is its second operand, which decides what becomes of one.

template <int limit>
VORN_INLINE f32xN atMost(f32xN x) {
    return minOf(x, splat<f32xN>(static_cast<float>(limit)));
}

struct To8s {
    static constexpr int vectors = 4;
    template <class Round>
    static VORN_INLINE i32xN integer(f32xN x) {
        return Round::toInt(atMost<127>(x));
    }
    static VORN_INLINE void pack(Vorn8s* dst, const i32xN* x) { store(dst, narrowSat8(x[0], x[1], x[2], x[3])); }
};
struct To8u {
    static constexpr int vectors = 4;
    template <class Round>
    static VORN_INLINE i32xN integer(f32xN x) {
        return Round::toInt(atMost<255>(x));
    }
    static VORN_INLINE void pack(Vorn8u* dst, const i32xN* x) {
        store(reinterpret_cast<Vorn8s*>(dst), narrowSatU8(x[0], x[1], x[2], x[3]));
    }
};
struct To16s {
    static constexpr int vectors = 2;
    template <class Round>
    static VORN_INLINE i32xN integer(f32xN x) {
        return Round::toInt(atMost<32767>(x));
    }
    static VORN_INLINE void pack(Vorn16s* dst, const i32xN* x) { store(dst, narrowSat(x[0], x[1])); }
};
// The one form whose lower limit is a maximum in floats: it takes a not-a-number to 0.
struct To16u {
    static constexpr int vectors = 2;
    template <class Round>
    static VORN_INLINE i32xN integer(f32xN x) {
        return Round::toInt(atMost<65535>(maxOf(x, splat<f32xN>(0.0f))));
    }
    static VORN_INLINE void pack(Vorn16u* dst, const i32xN* x) {
        store(reinterpret_cast<Vorn16s*>(dst), narrowU16(x[0], x[1]));
    }
};
// The one form that finds its large values by their bit patterns: a not-a-number goes by its sign.
struct To32s {
    static constexpr int vectors = 1;
    static constexpr Vorn32s largestBelow2To31 = 0x4EFFFFFF;
    template <class Round>
    static VORN_INLINE i32xN integer(f32xN x) {
        return select(bitsOf(x) > splat<i32xN>(largestBelow2To31), splat<i32xN>(INT_MAX), Round::toInt(x));
    }
    static VORN_INLINE void pack(Vorn32s* dst, const i32xN* x) { store(dst, x[0]); }
};

template <class To, class Round, class Result>
VORN_NOINLINE void convertScaled(const Vorn32f* src, Result* dst, std::ptrdiff_t len, Vorn32f factor) {
    const f32xN factors = splat<f32xN>(factor);
    convertBlocks<To::vectors * f32xN::lanes>(src, dst, len, [=](const Vorn32f* source, Result* result, auto) {
        i32xN integers[To::vectors];
        for (int v = 0; v < To::vectors; ++v) {
            integers[v] = To::template integer<Round>(load<f32xN>(source + v * f32xN::lanes) * factors);
        }
        To::pack(result, integers);
    });
}

struct DoubleTo32s {};

template <class To, class Round>
VORN_NOINLINE void convertScaled(const Vorn64f* src, Vorn32s* dst, std::ptrdiff_t len, Vorn32f factor) {
    const f64xN factors = splat<f64xN>(static_cast<double>(factor)), limit = splat<f64xN>(2147483647.0);
    convertBlocks<i32xN::lanes>(src, dst, len, [=](const Vorn64f* source, Vorn32s* result, auto) {
        const f64xN low = minOf(load<f64xN>(source) * factors, limit);
        const f64xN high = minOf(load<f64xN>(source + f64xN::lanes) * factors, limit);
        store(result, Round::toInt(low, high));
    });
}

// The factor is single in every form: infinite from -128 down and 0 from 150 up, for doubles too.
template <class To, class Source, class Result>
void convertToInteger(const Source* src, Result* dst, std::ptrdiff_t len, VornRoundMode mode, int scale) {
    const Vorn32f factor = GetScale_32s32f(scale);
    if (mode == vornRndZero) {
        RoundingGuard keepsMode;
        convertScaled<To, Truncated>(src, dst, len, factor);
    } else {
        RoundingGuard guard(Rounding::Nearest);
        convertScaled<To, Nearest>(src, dst, len, factor);
    }
}

// Halves.

constexpr int halfRebias = 127 - 15;       // single bias less half bias
constexpr Vorn32s halfSpecial = 31 << 23;  // exponent 31 of a half, at the place of a single's exponent
constexpr Vorn32s singleInfinity = 0x7F800000, bits65536 = 0x47800000;

// A half spread over 32 bits: its sign in the top bit, exponent and mantissa at the place of a single's, not rebased.
struct SpreadHalf {
    i32xN sign, magnitude;
    explicit VORN_INLINE SpreadHalf(const Vorn16f* p) {
        const i32xN half = loadWidened<i32xN>(reinterpret_cast<const Vorn16s*>(p));
        sign = half & splat<i32xN>(INT_MIN);
        magnitude = shiftLeft<13>(half) & splat<i32xN>(0x0FFFE000);
    }
    VORN_INLINE auto isSpecial() const { return magnitude > splat<i32xN>(halfSpecial - 1); }
    // The value, exact: the product renormalises subnormal halves.
    VORN_INLINE f32xN value() const {
        const i32xN finite = bitsOf(floatOf(magnitude) * splat<f32xN>(0x1p112f));
        const i32xN special = select(isSpecial(), splat<i32xN>(singleInfinity), splat<i32xN>(0));
        return floatOf(finite | special | sign);
    }
};

// Below scale -14: by the true value. Everything of exponent 31 but +infinity gives -32768: the minimum lets a
// not-a-number pass, and the processor makes -2147483648 of it.
struct HalfByValue {
    static constexpr int lowestScale = -40;  // from here on the smallest half saturates
    f32xN factor;
    explicit HalfByValue(int scale) : factor(splat<f32xN>(GetScale_32s32f(std::max(scale, lowestScale)))) {}
    template <class Round>
    VORN_INLINE i32xN integer(const Vorn16f* p) const {
        return Round::toInt(minOf(splat<f32xN>(32767.0f), SpreadHalf(p).value() * factor));
    }
};

// From scale -14 on: the exponent is rebased without regard to subnormal halves, so that exponent 0 counts as
// 2^(-15 - scale) x (1 + mantissa / 1024), not as its true value. Exponent 31 is rebased as for scale 0 and saturates
// by its sign, a not-a-number too. Above scale 16 every finite half gives 0, as it does at 17.
struct HalfByExponent {
    static constexpr int highestScale = 17;
    i32xN rebias;
    explicit HalfByExponent(int scale)
        : rebias(splat<i32xN>((halfRebias - std::min(scale, highestScale)) * (1 << 23))) {}
    template <class Round>
    VORN_INLINE i32xN integer(const Vorn16f* p) const {
        const SpreadHalf half(p);
        const i32xN bits = half.magnitude + select(half.isSpecial(), splat<i32xN>(halfRebias << 23), rebias);
        return Round::toInt(floatOf(bits | half.sign));
    }
};

template <class Round, class Rule>
VORN_NOINLINE void convertHalves(const Vorn16f* src, Vorn16s* dst, std::ptrdiff_t len, const Rule& rule) {
    convertBlocks<i16xN::lanes>(src, dst, len, [rule](const Vorn16f* source, Vorn16s* result, auto) {
        store(result,
              narrowSat(rule.template integer<Round>(source), rule.template integer<Round>(source + i32xN::lanes)));
    });
}

// A product x 2^-112 holds a half in bits 13 and up; what lies below is rounded or dropped.

struct HalfNearest {
    [[maybe_unused]] static constexpr HalfRounding rounding = HalfRounding::toNearest;
    static VORN_INLINE i32xN shorten(i32xN product) {
        const i32xN odd = shiftRightLogical<13>(product) & splat<i32xN>(1);
        return shiftRightLogical<13>(product + splat<i32xN>(0xFFF) + odd);
    }
    // A not-a-number is beyond 16 bits: the packing saturates it to 7FFF.
    static VORN_INLINE i32xN shortenNan(i32xN product, f32xN) { return shorten(product); }
};
struct HalfTruncated {
    [[maybe_unused]] static constexpr HalfRounding rounding = HalfRounding::towardZero;
    static VORN_INLINE i32xN shorten(i32xN product) { return shiftRightLogical<13>(product); }
    // A not-a-number keeps its top mantissa bits, quieted by the sum that it went through.
    static VORN_INLINE i32xN shortenNan(i32xN product, f32xN sum) {
        return shorten(select(unordered(sum, sum), bitsOf(sum) & splat<i32xN>(0x0FFFFFFF), product));
    }
};

// |x| x 2^-112 as bits, rounded in the current mode, without denormal arithmetic (which costs a trap into microcode for
// every block that holds quiet samples). From 2^-14 up the product is normal: the exponent goes down by 112. Below, it
// is a denormal, a count of 2^-149: adding 2^-14 to |x| rounds to just that unit and leaves the count in the mantissa.
// Of the two, the right one is the larger.
template <class Round>
VORN_INLINE i32xN halfMagnitude(f32xN x) {
    constexpr float leastNormal = 0x1p-14f;
    const f32xN magnitude = minOf(splat<f32xN>(65536.0f), absOf(x));
    const f32xN sum = magnitude + splat<f32xN>(leastNormal);
    const i32xN normal = bitsOf(magnitude) - splat<i32xN>(halfRebias << 23);
    const i32xN denormal = bitsOf(sum) - splat<i32xN>((halfRebias + 1) << 23);
    return Round::shortenNan(maxOf(normal, denormal), sum);
}

// By the processor's conversion, for |x| < 65536: it rounds once, so what is below 2^-14 is first rounded to the unit
// of the product, 2^-37, where to nearest that makes a difference.
template <class Round>
VORN_INLINE void storeOrdinary(Vorn16f* p, f32xN x) {
    if constexpr (Round::rounding == HalfRounding::toNearest) {
        const f32xN leastNormal = splat<f32xN>(0x1p-14f), magnitude = absOf(x);
        const f32xN rounded = (magnitude + leastNormal) - leastNormal;
        x = select(magnitude < leastNormal, rounded, magnitude) | (x & splat<f32xN>(-0.0f));
    }
    storeHalves<Round::rounding>(p, x);
}

template <class Round>
VORN_NOINLINE void convertSinglesToHalves(const Vorn32f* src, Vorn16f* dst, std::ptrdiff_t len) {
    convertBlocks<i16xN::lanes>(src, dst, len, [](const Vorn32f* source, Vorn16f* result, auto) {
        const f32xN low = load<f32xN>(source), high = load<f32xN>(source + f32xN::lanes);
        if constexpr (hasHalfConversions) {
            const i32xN larger = maxOf(bitsOf(absOf(low)), bitsOf(absOf(high)));
            if (!any(larger > splat<i32xN>(bits65536 - 1))) [[likely]] {
                storeOrdinary<Round>(result, low);
                storeOrdinary<Round>(result + f32xN::lanes, high);
                return;
            }
        }
        const i16xN sign = narrowSat(shiftRight<16>(bitsOf(low)), shiftRight<16>(bitsOf(high)));
        const i16xN magnitude = narrowSat(halfMagnitude<Round>(low), halfMagnitude<Round>(high));
        store(reinterpret_cast<Vorn16s*>(result), magnitude | (sign & splat<i16xN>(-32768)));
    });
}

template <class Round>
void convertIntegersToHalves(const Vorn16s* src, Vorn16f* dst, std::ptrdiff_t len) {
    convertBlocks<i16xN::lanes>(src, dst, len, [](const Vorn16s* source, Vorn16f* result, auto) {
        if constexpr (hasHalfConversions) {
            for (int k = 0; k < i16xN::lanes; k += f32xN::lanes) {
                storeHalves<Round::rounding>(result + k, toFloat(loadWidened<i32xN>(source + k)));
            }
            return;
        }
        // |x| is 0 or at least 1, so the product is exact.
        const auto magnitude = [](const Vorn16s* p) {
            return Round::shorten(bitsOf(absOf(toFloat(loadWidened<i32xN>(p))) * splat<f32xN>(0x1p-112f)));
        };
        const i16xN sign = load<i16xN>(source) & splat<i16xN>(-32768);
        store(reinterpret_cast<Vorn16s*>(result),
              narrowSat(magnitude(source), magnitude(source + i32xN::lanes)) | sign);
    });
}

// 32-bit to 16-bit integers with a scale factor.

struct ShiftedRightTo16 {
    int count;
    VORN_INLINE i16xN operator()(i32xN low, i32xN high) const {
        return narrowSat(roundedShiftRight(low, count), roundedShiftRight(high, count));
    }
};
// Saturated to 16 bits first: what lies beyond them saturates all the more when it is shifted.
struct ShiftedLeftTo16 {
    int count;
    VORN_INLINE i16xN operator()(i32xN low, i32xN high) const { return shiftLeftSat(narrowSat(low, high), count); }
};

template <class Shift>
void convertShifted(const Vorn32s* src, Vorn16s* dst, std::ptrdiff_t len, Shift shift) {
    convertBlocks<i16xN::lanes>(src, dst, len, [=](const Vorn32s* source, Vorn16s* result, auto put) {
        put(result, shift(load<i32xN>(source), load<i32xN>(source + i32xN::lanes)));
    });
}

}  // namespace

// Plain conversions.

void convert(const Vorn8s* src, Vorn16s* dst, std::ptrdiff_t len) {
    convertBlocks<2 * i16xN::lanes>(src, dst, len, [](const Vorn8s* source, Vorn16s* result, auto put) {
        const auto [low, high] = loadWidenedTwo<i16xN>(source);
        put(result, low);
        put(result + i16xN::lanes, high);
    });
}

void convert(const Vorn16s* src, Vorn32s* dst, std::ptrdiff_t len) {
    convertBlocksStreaming<2 * i32xN::lanes>(src, dst, len, [](const Vorn16s* source, Vorn32s* result, auto put) {
        const auto [low, high] = loadWidenedTwo<i32xN>(source);
        put(result, low);
        put(result + i32xN::lanes, high);
    });
}

namespace {

template <class Narrow>
VORN_INLINE void convertToSingle(const Narrow* src, Vorn32f* dst, std::ptrdiff_t len) {
    convertBlocks<2 * f32xN::lanes>(src, dst, len, [](const Narrow* source, Vorn32f* result, auto put) {
        const auto [low, high] = loadWidenedTwo<i32xN>(source);
        put(result, toFloat(low));
        put(result + f32xN::lanes, toFloat(high));
    });
}

}  // namespace

void convert(const Vorn8s* src, Vorn32f* dst, std::ptrdiff_t len) { convertToSingle(src, dst, len); }
void convert(const Vorn8u* src, Vorn32f* dst, std::ptrdiff_t len) { convertToSingle(src, dst, len); }
void convert(const Vorn16s* src, Vorn32f* dst, std::ptrdiff_t len) { convertToSingle(src, dst, len); }
void convert(const Vorn16u* src, Vorn32f* dst, std::ptrdiff_t len) { convertToSingle(src, dst, len); }

void convert(const Vorn32s* src, Vorn32f* dst, std::ptrdiff_t len) {
    convertBlocks<f32xN::lanes>(src, dst, len, [](const Vorn32s* source, Vorn32f* result, auto put) {
        put(result, toFloat(load<i32xN>(source)));
    });
}

void convert(const Vorn32s* src, Vorn64f* dst, std::ptrdiff_t len) {
    convertBlocks<f64xN::lanes>(src, dst, len, [](const Vorn32s* source, Vorn64f* result, auto put) {
        put(result, loadWidened<f64xN>(source));
    });
}

void convert(const Vorn32f* src, Vorn64f* dst, std::ptrdiff_t len) {
    convertBlocksStreaming<f64xN::lanes>(src, dst, len, [](const Vorn32f* source, Vorn64f* result, auto put) {
        put(result, loadWidened<f64xN>(source));
    });
}

void convert(const Vorn32s* src, Vorn16s* dst, std::ptrdiff_t len) {
    convertBlocksStreaming<i16xN::lanes>(src, dst, len, [](const Vorn32s* source, Vorn16s* result, auto put) {
        put(result, narrowSat(load<i32xN>(source), load<i32xN>(source + i32xN::lanes)));
    });
}

// The bounds are these two doubles, not the largest single. A not-a-number becomes the upper one.
void convert(const Vorn64f* src, Vorn32f* dst, std::ptrdiff_t len) {
    convertBlocks<2 * f64xN::lanes>(src, dst, len, [](const Vorn64f* source, Vorn32f* result, auto) {
        for (int i = 0; i < 2 * f64xN::lanes; i += f64xN::lanes) {
            const f64xN low = minOf(load<f64xN>(source + i), splat<f64xN>(3.402823466e+38));
            storeNarrowed(result + i, maxOf(low, splat<f64xN>(-3.402823466e+38)));
        }
    });
}

// Times a power of two that the clamp of the scale keeps normal.

void convert(const Vorn16s* src, Vorn32f* dst, std::ptrdiff_t len, int scale) {
    const f32xN factor = splat<f32xN>(GetScale_32s32f(std::clamp(scale, -112, 126)));
    convertBlocks<2 * f32xN::lanes>(src, dst, len, [=](const Vorn16s* source, Vorn32f* result, auto put) {
        const auto [low, high] = loadWidenedTwo<i32xN>(source);
        put(result, toFloat(low) * factor);
        put(result + f32xN::lanes, toFloat(high) * factor);
    });
}

void convert(const Vorn16s* src, Vorn64f* dst, std::ptrdiff_t len, int scale) {
    const f64xN factor = splat<f64xN>(GetScale_32s64f(std::clamp(scale, -1008, 1022)));
    convertBlocksStreaming<2 * f64xN::lanes>(src, dst, len, [=](const Vorn16s* source, Vorn64f* result, auto put) {
        const auto [low, high] = loadWidenedTwo<f64xN>(source);
        put(result, low * factor);
        put(result + f64xN::lanes, high * factor);
    });
}

void convert(const Vorn32s* src, Vorn32f* dst, std::ptrdiff_t len, int scale) {
    const f32xN factor = splat<f32xN>(GetScale_32s32f(std::clamp(scale, -96, 126)));
    convertBlocks<f32xN::lanes>(src, dst, len, [=](const Vorn32s* source, Vorn32f* result, auto put) {
        put(result, toFloat(load<i32xN>(source)) * factor);
    });
}

void convert(const Vorn32s* src, Vorn64f* dst, std::ptrdiff_t len, int scale) {
    const f64xN factor = splat<f64xN>(GetScale_32s64f(std::clamp(scale, -992, 1022)));
    convertBlocks<f64xN::lanes>(src, dst, len, [=](const Vorn32s* source, Vorn64f* result, auto put) {
        put(result, loadWidened<f64xN>(source) * factor);
    });
}

void convert(const Vorn32s* src, Vorn16s* dst, std::ptrdiff_t len, int scale) {
    scale = std::clamp(scale, -15, 31);
    if (scale == 0) {
        convert(src, dst, len);
    } else if (scale > 0) {
        convertShifted(src, dst, len, ShiftedRightTo16{scale});
    } else {
        convertShifted(src, dst, len, ShiftedLeftTo16{-scale});
    }
}

// Floats to integers.

void convert(const Vorn32f* src, Vorn8s* dst, std::ptrdiff_t len, VornRoundMode mode, int scale) {
    convertToInteger<To8s>(src, dst, len, mode, scale);
}
void convert(const Vorn32f* src, Vorn8u* dst, std::ptrdiff_t len, VornRoundMode mode, int scale) {
    convertToInteger<To8u>(src, dst, len, mode, scale);
}
void convert(const Vorn32f* src, Vorn16s* dst, std::ptrdiff_t len, VornRoundMode mode, int scale) {
    convertToInteger<To16s>(src, dst, len, mode, scale);
}
void convert(const Vorn32f* src, Vorn16u* dst, std::ptrdiff_t len, VornRoundMode mode, int scale) {
    convertToInteger<To16u>(src, dst, len, mode, scale);
}
void convert(const Vorn32f* src, Vorn32s* dst, std::ptrdiff_t len, VornRoundMode mode, int scale) {
    convertToInteger<To32s>(src, dst, len, mode, scale);
}
void convert(const Vorn64f* src, Vorn32s* dst, std::ptrdiff_t len, VornRoundMode mode, int scale) {
    convertToInteger<DoubleTo32s>(src, dst, len, mode, scale);
}

// Halves.

// The processor's conversion would make signalling not-a-numbers quiet.
void convertFromHalf(const Vorn16f* src, Vorn32f* dst, std::ptrdiff_t len) {
    convertBlocks<2 * f32xN::lanes>(src, dst, len, [](const Vorn16f* source, Vorn32f* result, auto put) {
        if constexpr (hasHalfConversions) {
            const i16xN special = splat<i16xN>(0x7C00);
            if (!any((load<i16xN>(reinterpret_cast<const Vorn16s*>(source)) & special) == special)) [[likely]] {
                put(result, widenHalves(source));
                put(result + f32xN::lanes, widenHalves(source + f32xN::lanes));
                return;
            }
        }
        put(result, SpreadHalf(source).value());
        put(result + f32xN::lanes, SpreadHalf(source + f32xN::lanes).value());
    });
}

namespace {

template <class Round>
void convertHalvesByScale(const Vorn16f* src, Vorn16s* dst, std::ptrdiff_t len, int scale) {
    if (scale < -14) {
        convertHalves<Round>(src, dst, len, HalfByValue(scale));
    } else {
        convertHalves<Round>(src, dst, len, HalfByExponent(scale));
    }
}

}  // namespace

void convertFromHalf(const Vorn16f* src, Vorn16s* dst, std::ptrdiff_t len, VornRoundMode mode, int scale) {
    if (mode == vornRndNear) {
        const CoreRoundingGuard guard(Rounding::Nearest);
        convertHalvesByScale<Nearest>(src, dst, len, scale);
    } else {
        const CoreRoundingGuard guard(Rounding::TowardZero);
        convertHalvesByScale<Truncated>(src, dst, len, scale);
    }
}

void convertToHalf(const Vorn16s* src, Vorn16f* dst, std::ptrdiff_t len, VornRoundMode mode) {
    if (mode == vornRndNear) {
        convertIntegersToHalves<HalfNearest>(src, dst, len);
    } else {
        convertIntegersToHalves<HalfTruncated>(src, dst, len);
    }
}

void convertToHalf(const Vorn32f* src, Vorn16f* dst, std::ptrdiff_t len, VornRoundMode mode) {
    if (mode == vornRndNear) {
        const CoreRoundingGuard guard(Rounding::Nearest);
        convertSinglesToHalves<HalfNearest>(src, dst, len);
    } else {
        const CoreRoundingGuard guard(Rounding::TowardZero);
        convertSinglesToHalves<HalfTruncated>(src, dst, len);
    }
}

}  // namespace vorn
