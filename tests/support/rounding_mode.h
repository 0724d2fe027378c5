// The calling thread's rounding mode, changed for a scope.
#pragma once

#include <xmmintrin.h>

namespace test {

class RoundingMode {
public:
    static constexpr unsigned nearest = 0x0000, down = 0x2000, up = 0x4000, towardZero = 0x6000;

    explicit RoundingMode(unsigned mode) : before_(_mm_getcsr()) {
        _mm_setcsr((before_ & ~bits) | mode);
        keepMemoryInOrder();
    }
    ~RoundingMode() {
        keepMemoryInOrder();
        _mm_setcsr(before_);
    }
    RoundingMode(const RoundingMode&) = delete;
    RoundingMode& operator=(const RoundingMode&) = delete;

    static unsigned current() { return _mm_getcsr() & bits; }

private:
    // What a model reads and writes stays on its side of the change, and with it the arithmetic in between.
    static void keepMemoryInOrder() { asm volatile("" ::: "memory"); }
    static constexpr unsigned bits = 0x6000;
    unsigned before_;
};

}  // namespace test
