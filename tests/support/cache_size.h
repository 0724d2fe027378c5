// A last-level cache of another size for a scope: so large results show at small sizes what they do past the cache.
#pragma once

namespace test {

class CacheSize {
public:
    explicit CacheSize(long bytes);
    ~CacheSize();
    CacheSize(const CacheSize&) = delete;
    CacheSize& operator=(const CacheSize&) = delete;
};

}  // namespace test
