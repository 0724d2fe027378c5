// What can be wrong with a call.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace fuzz {

enum class Wrong : std::uint8_t {
    nothing,
    crash,
    hang,
    refused,    // arguments within the rules gave an error
    accepted,   // broken ones gave none
    outside,    // written outside of the elements
    between,    // written between the rows
    input,      // written to what is only read
    onError,    // written although the call was refused
    unwritten,  // not written although it should have been, or not all of it
    builds,     // other bits than another build gave
    alignment,  // other bits at another alignment
    inPlace,    // other bits in place
    leak,
    allocates,          // takes memory, and the table says that it takes none
    allocationIgnored,  // went on although an allocation failed
    noContext,          // success, and no context
    mode,               // the processor's modes are not as they were
};

const char* nameOf(Wrong wrong);

struct Finding {
    Wrong wrong = Wrong::nothing;
    int function = -1;  // that was called, which need not be the one that the case is about
    int argument = -1;
    std::string detail;

    // For the report.
    std::string where;                        // which run
    std::vector<std::byte> expected, actual;  // of the argument, if bytes differ
    std::size_t firstByte = 0;                // that differs

    explicit operator bool() const { return wrong != Wrong::nothing; }
    bool sameKind(const Finding& other) const { return wrong == other.wrong && function == other.function; }
};

}  // namespace fuzz
