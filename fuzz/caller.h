// A built library, and how its functions are called without knowing them when this is compiled.
#pragma once

#include <ffi.h>

#include <memory>
#include <string>
#include <vector>

#include "table.h"

namespace fuzz {

// Prepared once a function.
class Callers {
public:
    explicit Callers(const Table& table);
    Callers(const Callers&) = delete;
    Callers& operator=(const Callers&) = delete;
    // The status, or nothing; pointers are returned at *pointer.
    int call(int function, void (*address)(), void** values, void** pointer);

private:
    struct Caller {
        ffi_cif interface;
        std::vector<ffi_type*> types;
    };
    std::vector<std::unique_ptr<Caller>> callers_;
};

class Library {
public:
    // Throws std::runtime_error if it cannot be opened.
    Library(const std::string& path, const Table& table);

    const std::string& path() const { return path_; }
    void (*address(int function) const)() { return addresses_[function]; }  // null if it has no such function

private:
    std::string path_;
    std::vector<void (*)()> addresses_;
};

}  // namespace fuzz
