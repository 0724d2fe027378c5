// The one guard through which the library changes the calling thread's rounding mode.
#pragma once

#include <emmintrin.h>

#include "vornsr/frame.h"

namespace vorn {

enum class Rounding : unsigned { Nearest = 0x0000, Down = 0x2000, Up = 0x4000, TowardZero = 0x6000 };

inline constexpr unsigned roundingBits = 0x6000;
inline constexpr unsigned invalidFlag = 0x0001;

// How a guard reaches the control word: enter() sets the rounding mode and returns the word as it was, which comes back
// whole if one of the watched bits has changed.

struct ControlRegister {
    static constexpr unsigned watched = roundingBits | invalidFlag;  // an out-of-range element leaves no flag behind
    static unsigned enter(Rounding mode) {
        const unsigned former = _mm_getcsr(), wanted = static_cast<unsigned>(mode);
        if ((former & roundingBits) != wanted) _mm_setcsr((former & ~roundingBits) | wanted);
        return former;
    }
    static void put(unsigned word) { _mm_setcsr(word); }
};
// Through the two calls of the floating-point core, as the conversions of halves promise.
struct CoreCalls {
    static constexpr unsigned watched = roundingBits;
    static unsigned enter(Rounding mode) { return static_cast<unsigned>(vorn_set_rc_ssx(static_cast<int>(mode))); }
    static void put(unsigned word) { vorn_set_cw_ssx(static_cast<int>(word)); }
};

// Sets the rounding mode for its scope. The compiler may move arithmetic across the guard, and even the call of a
// function that it knows to have no other effect: call a VORN_NOINLINE kernel inside it, one that writes its results
// through a pointer.
template <class ControlWord>
class BasicRoundingGuard {
public:
    // Leaves the caller's mode as it is.
    BasicRoundingGuard() : saved_(_mm_getcsr()) {}
    explicit BasicRoundingGuard(Rounding mode) : saved_(ControlWord::enter(mode)) { keepMemoryInOrder(); }
    ~BasicRoundingGuard() {
        keepMemoryInOrder();
        if (((_mm_getcsr() ^ saved_) & ControlWord::watched) != 0) ControlWord::put(saved_);
    }
    BasicRoundingGuard(const BasicRoundingGuard&) = delete;
    BasicRoundingGuard& operator=(const BasicRoundingGuard&) = delete;

private:
    // Loads and stores stay on their side of the change.
    static void keepMemoryInOrder() { asm volatile("" ::: "memory"); }
    unsigned saved_;
};
using RoundingGuard = BasicRoundingGuard<ControlRegister>;
using CoreRoundingGuard = BasicRoundingGuard<CoreCalls>;

}  // namespace vorn

// A function of which its callers assume nothing.
#if defined(__clang__)
#define VORN_NOINLINE __attribute__((noinline))
#else
#define VORN_NOINLINE __attribute__((noipa))
#endif
