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

// n elements and zeros into a block of `count`, and the first n elements out of one.
template <int count, class T>
VORN_INLINE void fillBlock(const T* src, std::ptrdiff_t n, T* block) {
    using V = Wide<SignedLane<T>>;
    const auto* from = reinterpret_cast<const SignedLane<T>*>(src);
    auto* to = reinterpret_cast<SignedLane<T>*>(block);
    for (int k = 0; k < count; k += V::lanes) store(to + k, loadUpTo<V>(from + k, n - k));
}
template <int count, class T>
VORN_INLINE void emptyBlock(const T* block, T* dst, std::ptrdiff_t n) {
    using V = Wide<SignedLane<T>>;
    const auto* from = reinterpret_cast<const SignedLane<T>*>(block);
    auto* to = reinterpret_cast<SignedLane<T>*>(dst);
    for (int k = 0; k < count; k += V::lanes) storeUpTo(to + k, load<V>(from + k), n - k);
}

// work(src, dst) makes `count` numbers of as many; what remains of len goes through blocks. dst may be src.
template <int count, class Source, class Result, class Work>
VORN_INLINE void forBlocks(const Source* src, Result* dst, std::ptrdiff_t len, Work work) {
    std::ptrdiff_t i = 0;
    for (; i + count <= len; i += count) work(src + i, dst + i);
    if (i < len) {
        Block<Source, count> from;
        Block<Result, count> to;
        fillBlock<count>(src + i, len - i, from);
        work(from, to);
        emptyBlock<count>(to, dst + i, len - i);
    }
}

}  // namespace vorn
