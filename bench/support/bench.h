// How a benchmark is written: one line for the library's function and one for each peer, under the same name and size.
// The report ends with the ratios: the peer's time over ours, so above 1 means that we are faster.
#pragma once

#include <benchmark/benchmark.h>

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace bench {

inline const char* const ours = "vornsr";

// Sum of all buffers of a call, in bytes.
inline constexpr std::size_t inL1 = std::size_t{16} << 10;
inline constexpr std::size_t inLastLevel = std::size_t{8} << 20;
inline constexpr std::size_t inMemory = std::size_t{1} << 30;

// size is free text such as "L1" or "39x1024"; items is the number of elements that a call handles.
void add(const std::string& function, const std::string& size, const std::string& peer, std::int64_t items,
         std::function<void()> call);

// A buffer on a 64-byte address, pages touched.
template <class T>
std::shared_ptr<T[]> buffer(std::size_t len) {
    T* block = static_cast<T*>(std::aligned_alloc(64, (len * sizeof(T) + 63) / 64 * 64));
    for (std::size_t i = 0; i < len; ++i) block[i] = T{};
    return std::shared_ptr<T[]>(block, std::free);
}

template <class T>
inline void keep(T* result) {
    benchmark::DoNotOptimize(result);
    benchmark::ClobberMemory();
}

// Families register themselves here; support/main.cpp runs them.
struct Family {
    explicit Family(void (*registerAll)());
};

}  // namespace bench
