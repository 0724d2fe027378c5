// What is known of each type of element.
#include "element.h"

#include <cmath>
#include <cstdio>
#include <cstring>
#include <limits>
#include <map>

namespace fuzz {
namespace {

template <class T>
T loaded(const std::byte* at) {
    T value;
    std::memcpy(&value, at, sizeof value);
    return value;
}

template <class T>
void stored(std::byte* at, T value) {
    std::memcpy(at, &value, sizeof value);
}

bool halfIsNan(std::uint16_t half) { return (half & 0x7FFF) > 0x7C00; }

double halfValue(std::uint16_t half) {
    const int exponent = half >> 10 & 31;
    const double mantissa = half & 1023;
    double value;
    if (exponent == 31) {
        value = mantissa != 0 ? std::numeric_limits<double>::quiet_NaN() : std::numeric_limits<double>::infinity();
    } else {
        value = exponent == 0 ? std::ldexp(mantissa, -24) : std::ldexp(1024 + mantissa, exponent - 25);
    }
    return half & 0x8000 ? -value : value;
}

// Truncates; halves are stored as bits by the styles of data, so this is enough for contents within a range.
std::uint16_t halfOf(double value) {
    const std::uint16_t sign = std::signbit(value) ? 0x8000 : 0;
    if (std::isnan(value)) return 0x7E00;
    const double size = std::fabs(value);
    if (size > 65504) return static_cast<std::uint16_t>(sign | (std::isinf(value) ? 0x7C00 : 0x7BFF));
    if (size < std::ldexp(1.0, -14)) return static_cast<std::uint16_t>(sign | static_cast<int>(std::ldexp(size, 24)));
    const int exponent = std::ilogb(size);
    return static_cast<std::uint16_t>(sign | (exponent + 15) << 10 |
                                      (static_cast<int>(std::ldexp(size, 10 - exponent)) & 1023));
}

std::uint64_t bitsOf(const std::byte* at, std::size_t bytes) {
    std::uint64_t bits = 0;
    std::memcpy(&bits, at, bytes);
    return bits;
}

}  // namespace

bool elementOf(const std::string& type, Element& element) {
    static const std::map<std::string, Element> known = {
        {"Vorn8u", {Kind::natural, 1, 1}},     {"Vorn8s", {Kind::integer, 1, 1}},
        {"Vorn16u", {Kind::natural, 2, 1}},    {"Vorn16s", {Kind::integer, 2, 1}},
        {"Vorn32u", {Kind::natural, 4, 1}},    {"Vorn32s", {Kind::integer, 4, 1}},
        {"Vorn64s", {Kind::integer, 8, 1}},    {"Vorn16f", {Kind::half, 2, 1}},
        {"Vorn32f", {Kind::single, 4, 1}},     {"Vorn64f", {Kind::real, 8, 1}},
        {"Vorn8sc", {Kind::integer, 1, 2}},    {"Vorn16sc", {Kind::integer, 2, 2}},
        {"Vorn32sc", {Kind::integer, 4, 2}},   {"Vorn64sc", {Kind::integer, 8, 2}},
        {"Vorn32fc", {Kind::single, 4, 2}},    {"Vorn64fc", {Kind::real, 8, 2}},
        {"int", {Kind::integer, 4, 1}},        {"VornRoundMode", {Kind::integer, 4, 1}},
        {"VornStatus", {Kind::integer, 4, 1}},
    };
    const auto found = known.find(type);
    if (found == known.end()) return false;
    element = found->second;
    return true;
}

double partAt(const Element& element, const std::byte* at) {
    switch (element.kind) {
        case Kind::half:
            return halfValue(loaded<std::uint16_t>(at));
        case Kind::single:
            return loaded<float>(at);
        case Kind::real:
            return loaded<double>(at);
        case Kind::natural:
            return static_cast<double>(bitsOf(at, element.part));
        case Kind::integer:
            break;
    }
    const int unused = 64 - 8 * element.part;
    return static_cast<double>(static_cast<std::int64_t>(bitsOf(at, element.part) << unused) >> unused);
}

void setPart(const Element& element, std::byte* at, double value) {
    switch (element.kind) {
        case Kind::half:
            return stored(at, halfOf(value));
        case Kind::single:
            return stored(at, static_cast<float>(value));
        case Kind::real:
            return stored(at, value);
        case Kind::natural:
        case Kind::integer:
            break;
    }
    std::int64_t whole = 0;
    if (value >= 9223372036854775807.0) {
        whole = std::numeric_limits<std::int64_t>::max();
    } else if (value <= -9223372036854775808.0) {
        whole = std::numeric_limits<std::int64_t>::min();
    } else if (value == value) {
        whole = static_cast<std::int64_t>(value);
    }
    std::memcpy(at, &whole, element.part);
}

bool sameParts(const Element& element, const std::byte* left, const std::byte* right) {
    if (std::memcmp(left, right, element.part) == 0) return true;
    if (element.kind == Kind::half) {
        return halfIsNan(loaded<std::uint16_t>(left)) && halfIsNan(loaded<std::uint16_t>(right));
    }
    return element.isFloat() && std::isnan(partAt(element, left)) && std::isnan(partAt(element, right));
}

double lowest(const Element& element) {
    switch (element.kind) {
        case Kind::natural:
            return 0;
        case Kind::integer:
            return -std::ldexp(1.0, 8 * element.part - 1);
        default:
            return -highest(element);
    }
}

double highest(const Element& element) {
    switch (element.kind) {
        case Kind::half:
            return 65504;
        case Kind::single:
            return std::numeric_limits<float>::max();
        case Kind::real:
            return std::numeric_limits<double>::max();
        case Kind::natural:
            return std::ldexp(1.0, 8 * element.part) - 1;
        case Kind::integer:
            break;
    }
    return std::ldexp(1.0, 8 * element.part - 1) - 1;
}

std::string textOf(const Element& element, const std::byte* at) {
    std::string text;
    for (unsigned i = 0; i < element.parts; ++i, at += element.part) {
        char buffer[64];
        if (element.isFloat()) {
            std::snprintf(buffer, sizeof buffer, "%.*g", element.kind == Kind::real ? 17 : 9, partAt(element, at));
        } else if (element.part == 8) {
            std::snprintf(buffer, sizeof buffer, "%lld", static_cast<long long>(loaded<std::int64_t>(at)));
        } else {
            std::snprintf(buffer, sizeof buffer, "%.0f", partAt(element, at));
        }
        text += (i > 0 ? "," : "") + std::string(buffer);
    }
    return element.parts > 1 ? "(" + text + ")" : text;
}

}  // namespace fuzz
