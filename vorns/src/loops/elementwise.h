// The one loop of element-wise work: whole registers, whatever the length and the addresses.
#pragma once

#include <cstdint>

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
//
// The last register ends at the last element, so it overlaps the one before it, and so does the second register, which
// brings the result to a boundary. All their operands are read before anything is written over them: the result may be
// one of the operands.

// The registers before the boundary; the next element, or -1 where the result never stands on one.
template <class Kernel>
VORN_INLINE std::int64_t stepsToBoundary(const Kernel& kernel) {
    const std::int64_t start = elementsToBoundary(kernel.result(), sizeof(Wide<std::int64_t>));
    if (start <= 0) return start;
    const auto first = kernel.at(0), second = kernel.at(start);
    kernel.put(0, first);
    kernel.put(start, second);
    return start + Kernel::step;
}

template <bool fetching, class Kernel>
VORN_INLINE auto stepAt(const Kernel& kernel, std::int64_t i) {
    if constexpr (fetching && requires { kernel.fetch(i); }) kernel.fetch(i);
    return kernel.at(i);
}

template <bool fetching, class Kernel>
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
        const auto a = stepAt<fetching>(kernel, i), b = stepAt<fetching>(kernel, i + step),
                   c = stepAt<fetching>(kernel, i + 2 * step), d = stepAt<fetching>(kernel, i + 3 * step);
        kernel.put(i, a);
        kernel.put(i + step, b);
        kernel.put(i + 2 * step, c);
        kernel.put(i + 3 * step, d);
    }
    for (; i < end; i += step) kernel.put(i, stepAt<fetching>(kernel, i));
    kernel.put(end, last);
}

template <class Kernel>
VORN_INLINE void stepsPastCache(std::int64_t len, const Kernel& kernel) {
    const std::int64_t end = len - Kernel::step;
    const auto last = kernel.at(end);
    for (std::int64_t i = stepsToBoundary(kernel); i < end; i += Kernel::step) {
        kernel.putPastCache(i, stepAt<true>(kernel, i));
    }
    storeFence();
    kernel.put(end, last);
}

// A result so small that it never bypasses the cache, or any.
enum class Extent { small, any };
template <class T>
VORN_INLINE bool isSmall(std::int64_t len) {
    return len * static_cast<std::int64_t>(sizeof(T)) < leastBypassBytes;
}

template <Extent extent = Extent::any, class Kernel>
VORN_INLINE void forEachStep(std::int64_t len, const Kernel& kernel) {
    if (len < Kernel::step) return kernel.part(len);
    if constexpr (extent == Extent::any) {
        const auto* result = kernel.result();
        const bool reachesBoundary = elementsToBoundary(result, sizeof(Wide<std::int64_t>)) >= 0;
        if (reachesBoundary && bypassesCache(len * static_cast<std::int64_t>(sizeof *result))) {
            return stepsPastCache(len, kernel);
        }
    }
    stepsInCache<extent == Extent::any>(len, kernel);
}

}  // namespace vorn
