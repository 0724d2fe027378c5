// When a block is too large for the cache to be worth filling with it.
#pragma once

#include <cstdint>

namespace vorn {

// Below this many bytes a block never bypasses the cache, and nobody asks for the cache's size.
inline constexpr std::int64_t leastBypassBytes = 512 << 10;

// The part of the last-level cache that is one core's, in bytes; 0 when it cannot be found out.
std::int64_t cachePerCore();

// A result of so many bytes would push everything else out of the cache: write it past the cache.
inline bool bypassesCache(std::int64_t bytes) {
    if (bytes < leastBypassBytes) return false;
    const std::int64_t share = cachePerCore();
    return share > 0 && bytes >= share;
}

}  // namespace vorn
