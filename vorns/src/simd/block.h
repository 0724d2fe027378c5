// Small blocks on the stack that take up what of a vector does not fill whole registers.
#pragma once

#include <algorithm>
#include <cstddef>
#include <type_traits>

#include "simd/part.h"
#include "simd/simd.h"

namespace vorn {

// loadPart and storePart for any n: none of the lanes below 1, all of them from their number on.
template <class V>
VORN_INLINE V loadUpTo(const typename V::Element* p, std::ptrdiff_t n) {
    if constexpr (hasMaskedLanes<typename V::Element>) {
        return loadFirst<V>(p, std::clamp<std::ptrdiff_t>(n, 0, V::lanes));
    } else {
        if (n >= V::lanes) return load<V>(p);
        return n > 0 ? loadPart<V>(p, n) : splat<V>(0);
    }
}
template <class V>
VORN_INLINE void storeUpTo(typename V::Element* p, V x, std::ptrdiff_t n) {
    if constexpr (hasMaskedLanes<typename V::Element>) {
        storeFirst(p, x, std::clamp<std::ptrdiff_t>(n, 0, V::lanes));
    } else {
        if (n >= V::lanes) {
            store(p, x);
        } else if (n > 0) {
            storePart(p, x, n);
        }
    }
}

// A block of `count` elements, with room for whole registers.
template <class T>
using SignedLane = typename std::conditional_t<std::is_integral_v<T>, std::make_signed<T>, std::type_identity<T>>::type;
template <class T, int count>
using Block = T[(count + Wide<SignedLane<T>>::lanes - 1) / Wide<SignedLane<T>>::lanes * Wide<SignedLane<T>>::lanes];

// n elements and rests behind them into a block of `count`, and the first n elements out of one.
template <int count, class T>
VORN_INLINE void fillBlock(const T* src, std::ptrdiff_t n, T* block, T rest = T()) {
    using V = Wide<SignedLane<T>>;
    const auto* from = reinterpret_cast<const SignedLane<T>*>(src);
    auto* to = reinterpret_cast<SignedLane<T>*>(block);
    for (int k = 0; k < count; k += V::lanes) {
        V x = loadUpTo<V>(from + k, n - k);
        if (rest != T()) {
            x = withRest(x, std::clamp<std::ptrdiff_t>(n - k, 0, V::lanes), static_cast<SignedLane<T>>(rest));
        }
        store(to + k, x);
    }
}
template <int count, class T>
VORN_INLINE void emptyBlock(const T* block, T* dst, std::ptrdiff_t n) {
    using V = Wide<SignedLane<T>>;
    const auto* from = reinterpret_cast<const SignedLane<T>*>(block);
    auto* to = reinterpret_cast<SignedLane<T>*>(dst);
    for (int k = 0; k < count; k += V::lanes) storeUpTo(to + k, load<V>(from + k), n - k);
}

// The loop of work that knows its operands and results by their addresses: work(src, dst) makes `count` numbers of as
// many, `turn` times in each turn; what remains of len goes through blocks, in which `rest` stands behind the elements.
// dst may be src. Each element is met once, so work may keep account of what it meets. (Work that says apart what it
// reads and what it writes has the loop of loops/elementwise.h, whose last register overlaps the one before it.)
template <int count, int turn = 1, class Source, class Result, class Work>
VORN_INLINE void forBlocks(const Source* src, Result* dst, std::ptrdiff_t len, Work work, Source rest = Source()) {
    std::ptrdiff_t i = 0;
    for (; turn > 1 && i <= len - turn * count; i += turn * count) {
        for (int k = 0; k < turn; ++k) work(src + i + k * count, dst + i + k * count);
    }
    for (; i <= len - count; i += count) work(src + i, dst + i);
    if (i < len) {
        alignas(f32xN) Block<Source, count> from;
        alignas(f32xN) Block<Result, count> to;
        fillBlock<count>(src + i, len - i, from, rest);
        work(from, to);
        emptyBlock<count>(to, dst + i, len - i);
    }
}

}  // namespace vorn
