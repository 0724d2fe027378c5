// The types of elements and of numbers, as the headers name them.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

namespace fuzz {

enum class Kind : std::uint8_t {
    integer,
    natural,
    half,
    single,
    real
};  // signed, unsigned, and floats of 2, 4, 8 bytes

struct Element {
    Kind kind = Kind::natural;
    std::uint8_t part = 1;   // bytes of a component
    std::uint8_t parts = 1;  // 2 for complex numbers

    std::size_t bytes() const { return static_cast<std::size_t>(part) * parts; }
    bool isFloat() const { return kind == Kind::half || kind == Kind::single || kind == Kind::real; }
};

// False for a type that is none of the numbers', such as that of a context.
bool elementOf(const std::string& type, Element& element);

// Components as doubles (64-bit integers are rounded).
double partAt(const Element& element, const std::byte* at);
void setPart(const Element& element, std::byte* at, double value);

// Are two components equal bit for bit, or both not a number?
bool sameParts(const Element& element, const std::byte* left, const std::byte* right);

// The least and the largest finite component.
double lowest(const Element& element);
double highest(const Element& element);

std::string textOf(const Element& element, const std::byte* at);  // of one element, all its components

}  // namespace fuzz
