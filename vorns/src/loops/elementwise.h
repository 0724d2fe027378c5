// The one loop of element-wise work: whole registers, whatever the length and the addresses.
#pragma once

#include <cstdint>
#include <type_traits>

#include "loops/cache.h"
#include "simd/simd.h"

namespace vorn {

// Elements from p to the next multiple of bytes; -1 when no element of the array starts there.
template <class T>
VORN_INLINE std::int64_t elementsToBoundary(const T* p, std::int64_t bytes) {
    const std::int64_t gap = -reinterpret_cast<std::intptr_t>(p) & (bytes - 1);
    return gap % static_cast<std::int64_t>(sizeof(T)) == 0 ? gap / static_cast<std::int64_t>(sizeof(T)) : -1;
}

// What a kernel hands to the loop:
//   step              elements of one register's work
//   at(i)             the results of the elements from i to i + step - 1, as a value
//   put(i, r)         stores them
//   putPastCache(i, r)  the same past the cache; only where the result stands on a register's boundary
//   part(n)           the whole work on a vector of n < step elements
//   fetch(i)          if it has one: asks for the operands of the elements some way after i
//   result()          where element 0 of the result goes
//   unrolled          the work is light: four registers a turn pay
//   period            if it has one: a step may begin at multiples of so many elements, and at the last register's
//
// The last register ends at the last element, so it overlaps the one before it, and so does the second register, which
// brings the result to a boundary. All their operands are read before anything is written over them: the result may be
// one of the operands.

// The registers before the boundary; the next element, or -1 where the result never stands on one.
template <class Kernel>
VORN_INLINE std::int64_t stepsToBoundary(const Kernel& kernel) {
    const std::int64_t start = elementsToBoundary(kernel.result(), sizeof(Wide<std::int64_t>));
    if (start <= 0) return start;
    if constexpr (requires { Kernel::period; }) {
        if (start % Kernel::period != 0) return -1;
    }
    const auto first = kernel.at(0), second = kernel.at(start);
    kernel.put(0, first);
    kernel.put(start, second);
    return start + Kernel::step;
}

template <class Kernel>
VORN_INLINE void stepsInCache(std::int64_t len, const Kernel& kernel) {
    constexpr std::int64_t step = Kernel::step;
    const std::int64_t end = len - step;
    const auto last = kernel.at(end);
    std::int64_t i = 0;
    if (end >= 8 * step) {
        const std::int64_t start = stepsToBoundary(kernel);
        if (start > 0) i = start;
    }
    for (; Kernel::unrolled && i + 4 * step <= end; i += 4 * step) {
        const auto a = kernel.at(i), b = kernel.at(i + step), c = kernel.at(i + 2 * step), d = kernel.at(i + 3 * step);
        kernel.put(i, a);
        kernel.put(i + step, b);
        kernel.put(i + 2 * step, c);
        kernel.put(i + 3 * step, d);
    }
    for (; i < end; i += step) kernel.put(i, kernel.at(i));
    kernel.put(end, last);
}

// Registers of the result between two boundaries, past the cache. What brings their operands takes longer than the loop
// itself, which therefore needs no unrolling.
template <class Kernel>
VORN_INLINE void stepsPastCache(std::int64_t begin, std::int64_t end, const Kernel& kernel) {
    for (std::int64_t i = begin; i < end; i += Kernel::step) {
        if constexpr (requires { kernel.fetch(i); }) kernel.fetch(i);
        kernel.putPastCache(i, kernel.at(i));
    }
    storeFence();
}

// So few elements that nobody need ask whether they bypass the cache.
template <class T>
VORN_INLINE bool isSmall(std::int64_t len) {
    return len * static_cast<std::int64_t>(sizeof(T)) < leastBypassBytes;
}

// A result of so many bytes that bypasses the cache, and can: somewhere in it, after a multiple of period elements, a
// boundary is reached.
template <int period, class T>
VORN_INLINE bool goesPastCache(const T* result, std::int64_t len) {
    const std::int64_t start = elementsToBoundary(result, sizeof(Wide<std::int64_t>));
    return start >= 0 && start % period == 0 && bypassesCache(len * static_cast<std::int64_t>(sizeof(T)));
}

template <class Kernel>
VORN_INLINE void forEachStep(std::int64_t len, const Kernel& kernel) {
    using Result = std::remove_reference_t<decltype(*kernel.result())>;
    if (len < Kernel::step) return kernel.part(len);
    if (!isSmall<Result>(len) && goesPastCache<1>(kernel.result(), len)) {
        const std::int64_t end = len - Kernel::step;
        const auto last = kernel.at(end);
        stepsPastCache(stepsToBoundary(kernel), end, kernel);
        return kernel.put(end, last);
    }
    stepsInCache(len, kernel);
}

// A result that is not small, where the work on a small one is a function of its own: that one, inCache(i, n), is given
// small pieces; where the result goes past the cache, it is given the ends, and pastCache(i, n) what lies between two
// boundaries.
template <int period, class T, class InCache, class PastCache>
VORN_INLINE void inPieces(const T* result, std::int64_t len, const InCache& inCache, const PastCache& pastCache) {
    constexpr std::int64_t size = sizeof(T), mostBytesAStep = 2 * sizeof(Wide<std::int64_t>);
    if (goesPastCache<period>(result, len)) {
        const std::int64_t first = elementsToBoundary(result, sizeof(Wide<std::int64_t>));
        const std::int64_t rest = (len - first) % (mostBytesAStep / size);
        if (first > 0) inCache(0, first);
        pastCache(first, len - first - rest);
        if (rest > 0) inCache(len - rest, rest);
    } else {
        constexpr std::int64_t piece = leastBypassBytes / 2 / size;
        for (std::int64_t i = 0; i < len; i += piece) inCache(i, len - i < piece ? len - i : piece);
    }
}

}  // namespace vorn
