// The one loop of element-wise work: whole registers, whatever the length and the addresses.
#pragma once

#include <cstdint>

#include "cache.h"
#include "simd.h"

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
//   result()          where element 0 of the result goes
//   unrolled          the work is light: four registers a turn pay
//
// The last register ends at the last element, so it overlaps the one before it, and so does the second register, which
// brings the result to a boundary. All their operands are read before anything is written over them: the result may be
// one of the operands.
template <class Kernel>
VORN_INLINE void forEachStep(std::int64_t len, const Kernel& kernel) {
    constexpr std::int64_t step = Kernel::step;
    constexpr std::int64_t registerBytes = sizeof(Wide<std::int64_t>);
    if (len < step) return kernel.part(len);

    const std::int64_t end = len - step;
    const auto last = kernel.at(end);
    std::int64_t i = 0;
    if (end >= 8 * step) {
        const std::int64_t start = elementsToBoundary(kernel.result(), registerBytes);
        if (start > 0) {
            const auto first = kernel.at(0), second = kernel.at(start);
            kernel.put(0, first);
            kernel.put(start, second);
            i = start + step;
        }
        if (start >= 0 && bypassesCache(len * static_cast<std::int64_t>(sizeof *kernel.result()))) {
            for (; i < end; i += step) kernel.putPastCache(i, kernel.at(i));
            storeFence();
        }
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

}  // namespace vorn
