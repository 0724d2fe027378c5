// Numbers that depend on a seed alone: the same with every compiler and every run-time library.
#pragma once

#include <cstdint>

namespace digits {

// SplitMix64 (G. L. Steele, D. Lea, C. H. Flood, "Fast splittable pseudorandom number generators", 2014).
class Random {
public:
    explicit Random(std::uint64_t seed) : state_(seed) {}

    std::uint64_t next() {
        std::uint64_t z = state_ += 0x9e3779b97f4a7c15u;
        z = (z ^ z >> 30) * 0xbf58476d1ce4e5b9u;
        z = (z ^ z >> 27) * 0x94d049bb133111ebu;
        return z ^ z >> 31;
    }

    // From 0 to count - 1.
    int below(int count) { return static_cast<int>((next() >> 32) * static_cast<std::uint64_t>(count) >> 32); }

    // From 0 to 1, without 1.
    double uniform() { return static_cast<double>(next() >> 11) * 0x1p-53; }

    // Mean 0, variance 1: a sum of twelve, which is near enough to a normal distribution and needs no logarithm.
    double normal() {
        double sum = -6.0;
        for (int i = 0; i < 12; ++i) sum += uniform();
        return sum;
    }

    // Another generator, for the given part of the work: what one part draws does not move the others.
    Random split(std::uint64_t part) const { return Random(Random(state_ ^ (part + 1) * 0xd1342543de82ef95u).next()); }

private:
    std::uint64_t state_;
};

}  // namespace digits
