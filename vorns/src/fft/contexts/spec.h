// The records behind a transform context, and the sizes that are reported for them.
#pragma once

#include <algorithm>
#include <cstdint>

#include "fft/contexts/plan.h"
#include "frame/align.h"
#include "vornsr/fft.h"

namespace vorn::fft {

inline constexpr int maxLevels = 3;

// The context of a float form. One public type stands for both widths; the tag tells which it is.
template <class T>
struct FloatSpec {
    std::int32_t idCtx;
    std::int32_t order;
    std::int32_t normFwd;
    std::int32_t normInv;
    T normFactor;
    std::int32_t hint;
    std::int32_t workBufSize;
    std::int32_t allocated;
    std::int32_t* bitRevTab;
    T* twdTab;
    T* twdTabL2a;
    T* twdTabL2b;
    T* realRecTab;
    T* ccsRecTab;
    T* blkTwdTab[maxLevels];
};

// The context of a fixed-point form: a header, and directly behind it the inner float context.
struct FixedSpec {
    std::int32_t idCtx;
    std::int32_t order;
    std::int32_t hint;
    std::int32_t workBufSize;
    std::int32_t allocated;
    VornsFFTSpec* inner;
};

enum Tag : std::int32_t {
    releasedTag = 0,
    tagC32fc = 4,
    tagC32f = 5,
    tagR32f = 6,
    tagC64fc = 7,
    tagC64f = 8,
    tagR64f = 9,
    tagC32sc = 0x4C4D5364,
    tagC32s = 0x4C4D5365,
    tagR32s = 0x4C4D5366,
    tagR16s32s = 0x4C4D5367,
};

template <class T>
inline FloatSpec<T>* recordOf(VornsFFTSpec* ctx) {
    return reinterpret_cast<FloatSpec<T>*>(ctx);
}
template <class T>
inline const FloatSpec<T>* recordOf(const VornsFFTSpec* ctx) {
    return reinterpret_cast<const FloatSpec<T>*>(ctx);
}
inline FixedSpec* recordOf(VornsFFTFixedSpec* ctx) { return reinterpret_cast<FixedSpec*>(ctx); }
inline const FixedSpec* recordOf(const VornsFFTFixedSpec* ctx) { return reinterpret_cast<const FixedSpec*>(ctx); }

// A context of any form begins with its tag.
template <class Context>
inline std::int32_t tagOf(const Context* ctx) {
    return *reinterpret_cast<const std::int32_t*>(ctx);
}

constexpr std::int64_t roundedUp16(std::int64_t bytes) { return (bytes + 15) / 16 * 16; }
constexpr std::int64_t roundedDown16(std::int64_t bytes) { return bytes / 16 * 16; }

// Sizes are reported in 32 bits, whatever their true value.
constexpr int reported(std::int64_t bytes) { return static_cast<int>(static_cast<std::uint32_t>(bytes)); }

// What a complex transform keeps, in bytes.
struct ComplexSizes {
    std::int64_t twiddles;
    std::int64_t work;
    std::int64_t bitReversal;
};

template <class T>
constexpr ComplexSizes complexSizes(int order) {
    constexpr std::int64_t element = 2 * sizeof(T);
    const std::int64_t length = std::int64_t{1} << order;
    const std::int64_t bitReversal = roundedDown16(length / 4 * 4 + 19);
    if (order < Precision<T>::longOrder) {
        return {roundedDown16(element * length + 23), roundedDown16(element * length + 15), bitReversal};
    }
    const Blocking blocking = blockingOf<T>(order);
    const ComplexSizes inner = complexSizes<T>(order - blocking.block);
    return {inner.twiddles + element * length, std::max(inner.work, element << blocking.buffer), bitReversal};
}

// One recombination table of a real transform, in bytes; order is that of the real length.
template <class T>
constexpr std::int64_t recombinationSize(int order) {
    return roundedDown16(static_cast<std::int64_t>(2 * sizeof(T)) * ((std::int64_t{1} << order) / 4) + 15);
}

// The quarter-wave table, in bytes.
template <class T>
constexpr std::int64_t sineSize(int order) {
    constexpr std::int64_t allowance = sizeof(T) == 4 ? 19 : 23;
    return roundedDown16(static_cast<std::int64_t>(sizeof(T)) * ((std::int64_t{1} << order) / 4) + allowance);
}

// The three reported sizes.
struct Sizes {
    std::int64_t spec;
    std::int64_t initBuf;
    std::int64_t workBuf;
};

// Room for the record and for its alignment.
template <class T>
constexpr std::int64_t recordRoom(int order) {
    if constexpr (sizeof(T) == 4) return 144;
    return order < firstTableOrder ? 152 : 160;
}

template <class T>
constexpr Sizes floatSizes(int order, bool real) {
    const std::int64_t record = recordRoom<T>(order);
    if (order < firstTableOrder) return {record, 0, 0};
    const ComplexSizes complex = complexSizes<T>(real ? order - 1 : order);
    const std::int64_t recombination = real ? 2 * recombinationSize<T>(order) : 0;
    return {complex.twiddles + complex.bitReversal + recombination + record, sineSize<T>(order) + 16,
            complex.work + 16};
}

// The size of the work area that the record holds; GetBufSize adds the allowance for its alignment.
template <class T>
constexpr int workBufSize(int order, bool real) {
    return order < firstTableOrder ? 0 : reported(complexSizes<T>(real ? order - 1 : order).work);
}
constexpr int bufSizeFor(int workBufSize) { return workBufSize < 1 ? 0 : reported(std::int64_t{workBufSize} + 16); }

// The order of checks that all operations on a context share.
template <class Context>
inline VornStatus matches(const Context* ctx, std::int32_t tag) {
    return tagOf(ctx) == tag ? vornStsNoErr : vornStsContextMatchErr;
}
constexpr VornStatus orderInRange(int order) {
    return order >= 0 && order <= maxOrder ? vornStsNoErr : vornStsFftOrderErr;
}

}  // namespace vorn::fft
