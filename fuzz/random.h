// Pseudo-random numbers that every machine draws alike.
#pragma once

#include <cstdint>

namespace fuzz {

// SplitMix64 (Steele, Lea and Flood, Fast splittable pseudorandom number generators, OOPSLA 2014).
inline std::uint64_t nextRandom(std::uint64_t& state) {
    std::uint64_t z = state += 0x9E3779B97F4A7C15u;
    z = (z ^ z >> 30) * 0xBF58476D1CE4E5B9u;
    z = (z ^ z >> 27) * 0x94D049BB133111EBu;
    return z ^ z >> 31;
}

}  // namespace fuzz
