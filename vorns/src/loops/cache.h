// When a block is too large for the cache to be worth filling with it, and reading ahead of a loop.
#pragma once

#include <cstdint>

namespace vorn {

// Below this many bytes a block never bypasses the cache, and nobody asks for the cache's size.
inline constexpr std::int64_t leastBypassBytes = 512 << 10;

// From so many bytes on it always does: what is left in the cache when the last of them is written has no reader in
// time, and a virtual machine reports the cache of a whole computer as its own.
inline constexpr std::int64_t mostCachedBytes = 32 << 20;

// The part of the last-level cache that is one core's, in bytes; 0 when it cannot be found out.
std::int64_t cachePerCore();

// A result of so many bytes would push everything else out of the cache: write it past the cache.
inline bool bypassesCache(std::int64_t bytes) {
    if (bytes < leastBypassBytes) return false;
    if (bytes >= mostCachedBytes) return true;
    const std::int64_t share = cachePerCore();
    return share > 0 && bytes >= share;
}

// Asks for what a loop over long vectors reads at p soon, so many bytes on, in time for memory to bring it. p may lie
// outside any object. Always inlined: a call that does nothing else is dropped as one without an effect.
template <std::uintptr_t ahead = 2048, class T>
__attribute__((always_inline)) inline void fetchAhead(const T* p) {
    __builtin_prefetch(reinterpret_cast<const void*>(reinterpret_cast<std::uintptr_t>(p) + ahead));
}

}  // namespace vorn
