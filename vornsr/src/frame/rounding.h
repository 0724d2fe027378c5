// The one guard through which the library changes the calling thread's rounding mode.
#pragma once

#include <emmintrin.h>

namespace vorn {

enum class Rounding : unsigned { Nearest = 0x0000, Down = 0x2000, Up = 0x4000, TowardZero = 0x6000 };

// Sets the rounding mode for its scope. At the end the caller's control word comes back whole if the rounding bits or
// the invalid-operation flag have changed, so that an out-of-range element leaves no flag behind. The compiler may move
// arithmetic across the guard, and even the call of a function that it knows to have no other effect: call a
// VORN_NOINLINE kernel inside it, one that writes its results through a pointer.
class RoundingGuard {
public:
    // Leaves the caller's mode as it is.
    RoundingGuard() : saved_(_mm_getcsr()) {}
    explicit RoundingGuard(Rounding mode) : saved_(_mm_getcsr()) {
        const unsigned wanted = static_cast<unsigned>(mode);
        if ((saved_ & roundingBits) != wanted) _mm_setcsr((saved_ & ~roundingBits) | wanted);
        keepMemoryInOrder();
    }
    ~RoundingGuard() {
        keepMemoryInOrder();
        if (((_mm_getcsr() ^ saved_) & (roundingBits | invalidFlag)) != 0) _mm_setcsr(saved_);
    }
    RoundingGuard(const RoundingGuard&) = delete;
    RoundingGuard& operator=(const RoundingGuard&) = delete;

private:
    // Loads and stores stay on their side of the change.
    static void keepMemoryInOrder() { asm volatile("" ::: "memory"); }
    static constexpr unsigned roundingBits = 0x6000;
    static constexpr unsigned invalidFlag = 0x0001;
    unsigned saved_;
};

}  // namespace vorn

// A function of which its callers assume nothing.
#if defined(__clang__)
#define VORN_NOINLINE __attribute__((noinline))
#else
#define VORN_NOINLINE __attribute__((noipa))
#endif
