// Functions of several vectors of one length: who has how many, and at which lengths they are measured.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "support/bench.h"
#include "support/vectors.h"

namespace bench::elements {

// The vectors of a call, each on a 64-byte address: x is read, z is written, one of each behind the other.
template <class T>
struct Vectors {
    int n;
    const T* x[4];
    T* z[4];
};

template <class T>
struct Caller {
    const char* name;
    std::function<void(const Vectors<T>&)> call;
};

// Reads and writes so many vectors; what is read and written counts as written.
template <class T>
void compare(const std::string& name, int read, int written, const std::vector<Caller<T>>& callers) {
    constexpr struct {
        const char* name;
        std::size_t elements, bytes;
    } sizes[] = {{"7", 7, 0},       {"13", 13, 0},           {"39", 39, 0},
                 {"1024", 1024, 0}, {"LLC", 0, inLastLevel}, {"memory", 0, bench::vectors::most / 2}};
    for (const auto& size : sizes) {
        const std::size_t len =
            size.elements != 0 ? size.elements : size.bytes / (sizeof(T) * static_cast<std::size_t>(read + written));
        const std::size_t apart = (len * sizeof(T) + 63) / 64 * 64;
        Vectors<T> vectors = {static_cast<int>(len), {}, {}};
        for (std::size_t k = 0; k < static_cast<std::size_t>(read); ++k) {
            vectors.x[k] = reinterpret_cast<const T*>(bench::vectors::sources() + k * apart);
        }
        for (std::size_t k = 0; k < static_cast<std::size_t>(written); ++k) {
            vectors.z[k] = reinterpret_cast<T*>(bench::vectors::results() + k * apart);
        }
        for (const Caller<T>& caller : callers) {
            bench::add(name, size.name, caller.name, static_cast<std::int64_t>(len), [=] {
                caller.call(vectors);
                bench::keep(vectors.z[0]);
            });
        }
    }
}

}  // namespace bench::elements

// In the calls x and z are the vectors, n is their length.
#define CALL(name, ...)                                       \
    {                                                         \
        name, [](const auto& vectors) {                       \
            [[maybe_unused]] const auto& [n, x, z] = vectors; \
            __VA_ARGS__;                                      \
        }                                                     \
    }
#define OURS(...) CALL(bench::ours, __VA_ARGS__)
#define BESIDE(...) CALL("plain", __VA_ARGS__)
