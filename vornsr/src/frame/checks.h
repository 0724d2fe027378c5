// The vocabulary of argument checks. An exported function is a list of these, in the order of its family, and one call.
#pragma once

#include <cstddef>
#include <cstdint>

#include "vornsr/types.h"

// Returns the status of a failed check from the function it stands in.
#define VORN_CHECK(check)                                     \
    do {                                                      \
        if (const VornStatus failed = (check)) return failed; \
    } while (0)

namespace vorn {

constexpr VornStatus require(bool holds, VornStatus otherwise) { return holds ? vornStsNoErr : otherwise; }

template <class... Pointer>
constexpr VornStatus notNull(const Pointer*... pointer) {
    return require((... && (pointer != nullptr)), vornStsNullPtrErr);
}

// Every count is at least one.
template <class... Count>
constexpr VornStatus positive(Count... count) {
    return require((... && (count > 0)), vornStsSizeErr);
}

template <class... Count>
constexpr VornStatus atLeast(int least, Count... count) {
    return require((... && (count >= least)), vornStsSizeErr);
}

// A row of len elements fits into its stride.
constexpr VornStatus strideHolds(int step, std::int64_t len) { return require(step >= len, vornStsStrideErr); }

}  // namespace vorn
