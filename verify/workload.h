// The fixed workload of the reproducibility program: inputs that are the same everywhere, and a digest of the outputs.
#pragma once

#include <bit>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <functional>
#include <type_traits>
#include <vector>

#include "calls/signature.h"
#include "vornsr.h"

namespace verify {

using calls::Element, calls::Role;

// Elements of a type that the row of a function tells, on a 16-byte address: some double forms look at theirs.
class Array {
public:
    Array(Element element, std::size_t len) : element_(element), len_(len), bytes_(len * calls::sizeOf(element)) {}
    Element element() const { return element_; }
    std::size_t size() const { return len_; }
    std::size_t bytes() const { return bytes_.size(); }
    unsigned char* data() { return bytes_.data(); }
    const unsigned char* data() const { return bytes_.data(); }
    const unsigned char* at(std::size_t i) const { return data() + i * calls::sizeOf(element_); }
    void resize(std::size_t len) { len_ = len, bytes_.resize(len * calls::sizeOf(element_)); }

    // use(x) for each number x, which it may change: complex ones have two.
    template <class Use>
    void eachPart(const Use& use) {
        calls::withPart(element_, [&]<class T>() {
            for (std::size_t i = 0; i < bytes_.size(); i += sizeof(T)) {
                T x;
                std::memcpy(&x, &bytes_[i], sizeof x);
                use(x);
                std::memcpy(&bytes_[i], &x, sizeof x);
            }
        });
    }

private:
    Element element_;
    std::size_t len_;
    std::vector<unsigned char> bytes_;
};

// FNV-1a, 64 bits (Fowler, Noll, Vo). Not-a-numbers count as one value: which payload an operation passes on is not
// promised. Use bytes() for functions that move bit patterns.
class Digest {
public:
    void bytes(const void* data, std::size_t size) {
        const auto* p = static_cast<const unsigned char*>(data);
        for (std::size_t i = 0; i < size; ++i) value_ = (value_ ^ p[i]) * 0x100000001B3ull;
    }
    template <class T>
    void add(T x) {
        if constexpr (std::is_floating_point_v<T>) {
            if (std::isnan(x)) x = static_cast<T>(std::bit_cast<double>(std::uint64_t{0x7FF8000000000000}));
        }
        bytes(&x, sizeof x);
    }
    void add(Vorn32fc x) { add(x.re), add(x.im); }
    void add(Vorn64fc x) { add(x.re), add(x.im); }
    template <class T>
    void add(const std::vector<T>& values) {
        for (const T& x : values) add(x);
    }
    void add(Array values) {
        values.eachPart([&](auto x) { add(x); });
    }
    std::uint64_t value() const { return value_; }

private:
    std::uint64_t value_ = 0xCBF29CE484222325ull;
};

// SplitMix64 (Steele, Lea, Flood 2014).
class Source {
public:
    explicit Source(std::uint64_t seed) : state_(seed) {}
    std::uint64_t bits() {
        std::uint64_t z = state_ += 0x9E3779B97F4A7C15ull;
        z = (z ^ (z >> 30)) * 0xBF58476D1CE4E5B9ull;
        z = (z ^ (z >> 27)) * 0x94D049BB133111EBull;
        return z ^ (z >> 31);
    }
    double uniform(double low, double high) {
        return low + (high - low) * (static_cast<double>(bits() >> 11) * 0x1p-53);
    }

    // Ordinary values: floats in [low, high), integers over their whole range.
    template <class T>
    std::vector<T> values(std::size_t n, double low = -1000.0, double high = 1000.0) {
        std::vector<T> result(n);
        for (T& x : result) fill(x, low, high);
        return result;
    }
    Array values(Element element, std::size_t n, double low = -1000.0, double high = 1000.0) {
        Array result(element, n);
        result.eachPart([&](auto& x) { fill(x, low, high); });
        return result;
    }
    // Any bit pattern: denormals, infinities and not-a-numbers among the floats.
    template <class T>
    std::vector<T> patterns(std::size_t n) {
        std::vector<T> result(n);
        for (T& x : result) {
            unsigned char raw[sizeof(T)];
            for (unsigned char& byte : raw) byte = static_cast<unsigned char>(bits());
            std::memcpy(&x, raw, sizeof x);
        }
        return result;
    }

    Array patterns(Element element, std::size_t n) {
        Array result(element, n);
        for (std::size_t i = 0; i < result.bytes(); ++i) result.data()[i] = static_cast<unsigned char>(bits());
        return result;
    }

private:
    template <class T>
    void fill(T& x, double low, double high) {
        if constexpr (std::is_floating_point_v<T>) {
            x = static_cast<T>(uniform(low, high));
        } else if constexpr (std::is_integral_v<T>) {
            x = static_cast<T>(bits());
        } else {
            fill(x.re, low, high);
            fill(x.im, low, high);
        }
    }
    std::uint64_t state_;
};

// One exported function and what it is run on. The source starts from the function's name, so that an entry's digest
// does not depend on its neighbours.
struct Workload {
    const char* function;
    std::function<void(Source&, Digest&)> run;
};

// Lengths that reach every tail and every block of the kernels.
inline constexpr int lengths[] = {1, 2, 3, 4, 5, 7, 8, 9, 15, 16, 17, 31, 33, 63, 64, 65, 100, 129, 257, 1000, 4099};

}  // namespace verify
