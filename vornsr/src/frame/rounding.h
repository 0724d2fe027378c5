// The one guard through which the library changes the calling thread's rounding mode.
#pragma once

#include <emmintrin.h>

namespace vorn {

enum class Rounding : unsigned { Nearest = 0x0000, Down = 0x2000, Up = 0x4000, TowardZero = 0x6000 };

// Sets the rounding mode for its scope. At the end the caller's control word comes back whole if the rounding bits or
// the invalid-operation flag have changed, so that an out-of-range element leaves no flag behind. The compiler may move
// arithmetic across the guard: call a VORN_NOINLINE kernel inside it.
class RoundingGuard {
public:
    // Leaves the caller's mode as it is.
    RoundingGuard() : saved_(_mm_getcsr()) {}
    explicit RoundingGuard(Rounding mode) : saved_(_mm_getcsr()) {
        const unsigned wanted = static_cast<unsigned>(mode);
        if ((saved_ & roundingBits) != wanted) _mm_setcsr((saved_ & ~roundingBits) | wanted);
    }
    ~RoundingGuard() {
        if (((_mm_getcsr() ^ saved_) & (roundingBits | invalidFlag)) != 0) _mm_setcsr(saved_);
    }
    RoundingGuard(const RoundingGuard&) = delete;
    RoundingGuard& operator=(const RoundingGuard&) = delete;

private:
    static constexpr unsigned roundingBits = 0x6000;
    static constexpr unsigned invalidFlag = 0x0001;
    unsigned saved_;
};

}  // namespace vorn

#define VORN_NOINLINE __attribute__((noinline))
