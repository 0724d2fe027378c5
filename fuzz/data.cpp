// The styles of data.
#include "data.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>

#include "random.h"

namespace fuzz {
namespace {

enum class Style {
    small,
    noise,
    alike,
    ramp,
    positive,
    speech,
    unit,
    wild,
    nearSaturation,
    denormal,
    zeros,
    infinities,
    notNumbers,
    exponents,
    mixture,
};

constexpr Style styleOf[styles] = {
    Style::small,    Style::noise, Style::alike,      Style::ramp,       Style::positive,  Style::speech,
    Style::unit,     Style::noise, Style::positive,   Style::small,      Style::noise,     Style::speech,
    Style::unit,     Style::wild,  Style::ramp,       Style::noise,      Style::alike,     Style::nearSaturation,
    Style::denormal, Style::zeros, Style::infinities, Style::notNumbers, Style::exponents, Style::mixture,
};

// In [-1, 1), about normal: the mean of four.
double bell(std::uint64_t bits) {
    const auto part = [&](int i) { return static_cast<double>(static_cast<std::int16_t>(bits >> 16 * i)); };
    return (part(0) + part(1) + part(2) + part(3)) / 131072;
}

// Bits of the type's finite numbers, every exponent alike.
double anyFinite(const Element& element, std::uint64_t bits) {
    if (element.kind == Kind::half) {
        const int exponent = static_cast<int>(bits >> 16) % 31;
        return std::ldexp((bits & 1 ? -1.0 : 1.0) * (1024 + (bits >> 1 & 1023)), exponent - 25);
    }
    if (element.kind == Kind::single) {
        std::uint32_t low = static_cast<std::uint32_t>(bits);
        if ((low & 0x7F800000) == 0x7F800000) low ^= 0x40000000;
        float value;
        std::memcpy(&value, &low, sizeof value);
        return value;
    }
    if ((bits & 0x7FF0000000000000) == 0x7FF0000000000000) bits ^= 0x4000000000000000;
    double value;
    std::memcpy(&value, &bits, sizeof value);
    return value;
}

double smallest(const Element& element) {
    return element.kind == Kind::half     ? std::ldexp(1.0, -24)
           : element.kind == Kind::single ? std::ldexp(1.0, -149)
                                          : std::ldexp(1.0, -1074);
}

double floatOf(const Element& element, Style style, std::uint64_t bits, double scale, std::size_t i) {
    const double sign = bits >> 63 ? -1.0 : 1.0;
    switch (style) {
        case Style::small:
            return static_cast<double>(bits % 17) - 8;
        case Style::noise:
            return scale * bell(bits);
        case Style::alike:
            return scale;
        case Style::ramp:
            return scale * static_cast<double>(i) / 16;
        case Style::positive:
            return scale * std::fabs(bell(bits));
        case Style::speech:
            return std::trunc(32768 * bell(bits));
        case Style::unit:
            return bell(bits);
        case Style::wild:
            return anyFinite(element, bits);
        case Style::nearSaturation:
            return sign * highest(element) * (1 - static_cast<double>(bits % 1024) / 1024);
        case Style::denormal:
            return sign * smallest(element) * static_cast<double>(bits % 1000);
        case Style::zeros:
            return bits % 3 == 0 ? bell(bits) : sign * 0.0;
        case Style::infinities:
            return bits % 7 == 0 ? sign * std::numeric_limits<double>::infinity() : bell(bits);
        case Style::notNumbers:
            return bits % 11 == 0 ? std::numeric_limits<double>::quiet_NaN() : bell(bits);
        case Style::exponents:
            return sign * std::ldexp(1.0, static_cast<int>(bits % 250) - 125);
        case Style::mixture:
            break;
    }
    return 0;
}

double integerOf(const Element& element, Style style, std::uint64_t bits, double scale, std::size_t i) {
    const double high = highest(element), low = lowest(element);
    switch (style) {
        case Style::small:
            return element.kind == Kind::natural ? static_cast<double>(bits % 17) : static_cast<double>(bits % 17) - 8;
        case Style::noise:
            return std::trunc(high * bell(bits));
        case Style::alike:
            return std::trunc(scale);
        case Style::ramp:
            return std::trunc(scale * static_cast<double>(i) / 16);
        case Style::positive:
            return std::trunc(high * std::fabs(bell(bits)));
        case Style::speech:
            return std::trunc(std::min(high, 32767.0) * bell(bits));
        case Style::unit:
            return static_cast<double>(bits % 5) - 2;
        case Style::nearSaturation:
        case Style::infinities:
            return bits >> 63 ? low + static_cast<double>(bits % 4) : high - static_cast<double>(bits % 4);
        case Style::denormal:
            return static_cast<double>(bits % 3) - 1;
        case Style::zeros:
            return bits % 3 == 0 ? static_cast<double>(bits >> 32 & 127) : 0;
        case Style::exponents: {
            const double power =
                std::ldexp(1.0, static_cast<int>(bits % (8 * element.part))) + static_cast<double>(bits >> 32 & 1) - 1;
            return bits >> 63 ? -power : power;
        }
        case Style::wild:
        case Style::notNumbers:
        case Style::mixture:
            break;
    }
    return 0;
}

}  // namespace

void fillData(const Element& element, std::byte* at, std::size_t count, unsigned style, std::uint64_t seed) {
    const Style chosen = styleOf[style % styles];
    std::uint64_t state = seed;
    if (!element.isFloat() && (chosen == Style::wild || chosen == Style::notNumbers)) {
        for (std::size_t i = 0; i < count; ++i, at += element.part) {
            const std::uint64_t bits = nextRandom(state);
            std::memcpy(at, &bits, element.part);
        }
        return;
    }
    const double scale = static_cast<double>(seed % 37) - 6 + static_cast<double>(seed % 16) / 16;
    for (std::size_t i = 0; i < count; ++i, at += element.part) {
        const std::uint64_t bits = nextRandom(state);
        const Style here = chosen == Style::mixture ? styleOf[(bits >> 40) % (styles - 1)] : chosen;
        if (element.isFloat()) {
            setPart(element, at, floatOf(element, here, bits, scale, i));
        } else {
            const double value = integerOf(element, here, bits, scale, i);
            setPart(element, at, std::clamp(value, lowest(element), highest(element)));
        }
    }
}

bool fillContent(const Element& element, std::byte* at, std::size_t count,
                 const std::function<std::vector<Bounds>(std::size_t)>& boundsAt, Order order, unsigned style,
                 std::uint64_t seed) {
    std::uint64_t state = seed;
    const Style chosen = styleOf[style % styles];
    double previous = 0;
    for (std::size_t i = 0; i < count; ++i, at += element.part) {
        const std::vector<Bounds> all = boundsAt(i);
        if (all.empty()) return false;
        const std::uint64_t bits = nextRandom(state);
        const double fraction = static_cast<double>(bits >> 11) / 9007199254740992.0;
        Bounds bounds = all[bits % all.size()];
        double value;
        if (bounds.notNumber || bounds.nonzero) {
            setPart(element, at,
                    bounds.notNumber ? std::numeric_limits<double>::quiet_NaN() : 1.0 + static_cast<double>(bits % 7));
            continue;
        }
        if (order != Order::none) {
            // Small steps, and no further than leaves room for the rest.
            const double step = order == Order::strict ? 1 : 0;
            const double rest = static_cast<double>(count - 1 - i);
            const bool falls = order == Order::falling;
            if (i > 0 && falls) bounds.high = std::min(bounds.high, previous);
            if (i > 0 && !falls) bounds.low = std::max(bounds.low, previous + step);
            bounds.low = std::max(bounds.low, lowest(element));
            bounds.high = std::min(bounds.high - (element.isFloat() ? 0 : rest * step), highest(element));
            if (!(bounds.low <= bounds.high)) return false;
            const double room = (bounds.high - bounds.low) / (rest + 1);
            const double most = std::min(room, 1.0 + static_cast<double>(seed % 8));
            const double way = chosen == Style::alike ? 0 : most * fraction;
            value = falls ? bounds.high - way : bounds.low + way;
            if (!element.isFloat()) value = std::round(value);
        } else {
            // What the style would give, if it is allowed; else something between the bounds.
            std::byte wanted[8];
            fillData(element, wanted, 1, style, bits);
            value = partAt(element, wanted);
            if (!bounds.contains(value)) {
                const double low = std::max(bounds.low, lowest(element)),
                             high = std::min(bounds.high, highest(element));
                const bool narrow = high - low <= 65536;
                value = bits % 13 == 0   ? low
                        : bits % 13 == 1 ? high
                                         : low + fraction * (narrow ? high - low : std::min(high - low, 16.0));
                if (!element.isFloat()) value = std::round(value);
            }
        }
        if (element.kind == Kind::single) value = static_cast<float>(value);
        value = std::clamp(value, bounds.low, bounds.high);
        setPart(element, at, value);
        previous = value;
    }
    return true;
}

}  // namespace fuzz
