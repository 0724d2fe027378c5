// Every call of the library goes through here: what is not expected becomes an exception that names the call.
#pragma once

#include <stdexcept>
#include <string>

#include "vornsr.h"

namespace digits {

inline void checked(VornStatus status, const char* function) {
    if (status != vornStsNoErr) {
        throw std::runtime_error(std::string(function) + " returned status " + std::to_string(status));
    }
}

// Lets one warning pass, and tells whether it came.
inline bool warned(VornStatus status, VornStatus warning, const char* function) {
    if (status == warning) return true;
    checked(status, function);
    return false;
}

}  // namespace digits

#define DIGITS_CALL(function, ...) ::digits::checked(function(__VA_ARGS__), #function)
#define DIGITS_WARNS(warning, function, ...) ::digits::warned(function(__VA_ARGS__), warning, #function)
