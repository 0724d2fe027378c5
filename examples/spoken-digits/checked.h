// Every call of the library goes through here: anything but success becomes an exception that names the call.
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

}  // namespace digits

#define DIGITS_CALL(function, ...) ::digits::checked(function(__VA_ARGS__), #function)
