// Which numbers are liked.
#include "numbers.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <limits>

namespace fuzz {
namespace {

constexpr double infinity = std::numeric_limits<double>::infinity();

// Around the widths of vectors and of what is done at once.
constexpr int likedSizes[] = {1,  2,  3,  4,   5,   7,   8,   9,   15,  16,  17,  31,  32,  33,  63,   64,   65,
                              66, 96, 97, 100, 127, 128, 129, 255, 256, 257, 300, 511, 512, 513, 1023, 1024, 1025};
constexpr int largestSize[sizeClasses] = {3, 9, 17, 33, 65, 129, 300, 1025};
constexpr int largestExponent = 12;
constexpr double longestExplicit = 70000;  // limits up to here are tried themselves

double nextTo(const Element& element, double value, double towards) {
    return element.kind == Kind::single ? std::nextafterf(static_cast<float>(value), static_cast<float>(towards))
                                        : std::nextafter(value, towards);
}

double inType(const Element& element, double value) {
    return element.kind == Kind::single ? static_cast<double>(static_cast<float>(value)) : value;
}

double chooseSize(const Argument& argument, const Bounds& bounds, int sizeClass, const std::vector<double>& earlier,
                  Decisions& decisions) {
    const int largest = argument.exponent ? std::min(largestSize[sizeClass], largestExponent) : largestSize[sizeClass];
    const double low = bounds.low, high = bounds.high, reach = std::min(high, low + largest);
    const auto upTo = [&](double most) {
        return low + decisions.below(static_cast<unsigned>(std::min(most, reach - low)) + 1);
    };
    switch (decisions.below(12)) {
        case 0:
            return low;
        case 1:
            return upTo(1);
        case 2:
        case 3: {
            if (earlier.empty()) return upTo(9);
            const double again = earlier[decisions.below(static_cast<unsigned>(earlier.size()))];
            return again <= std::max(reach, low) && bounds.contains(again) ? again : low;
        }
        case 4:
        case 5:
            return upTo(9);
        case 6:
            return upTo(largest);
        case 7:
            if (high <= longestExplicit && (argument.bounded || high <= 512) && !argument.exponent)
                return std::max(low, high - decisions.below(4));
            [[fallthrough]];
        default: {
            const int* end = std::upper_bound(std::begin(likedSizes), std::end(likedSizes), largest);
            const double size = likedSizes[decisions.below(static_cast<unsigned>(end - likedSizes))];
            return std::min(size < low ? low + size : size, high);
        }
    }
}

double chooseInteger(const Bounds& bounds, Decisions& decisions) {
    const double low = bounds.low, high = bounds.high;
    const auto within = [&](double value) { return std::clamp(value, low, high); };
    if (high - low <= 16) return low + decisions.below(static_cast<unsigned>(high - low) + 1);
    switch (decisions.below(8)) {
        case 0:
            return within(0);
        case 1:
            return within(static_cast<double>(decisions.below(17)) - 8);
        case 2:
            return low;
        case 3:
            return high;
        case 4:
            return high - low < 65536 ? low + decisions.below(static_cast<unsigned>(high - low) + 1)
                                      : within(decisions.below(256));
        case 5: {
            const double power = std::ldexp(1.0, static_cast<int>(decisions.below(32))) + decisions.below(3) - 1;
            return within(decisions.below(2) ? -power : power);
        }
        case 6:
            return within(static_cast<double>(decisions.below(61)) - 20);
        default: {
            const unsigned bits = decisions.below(65536) << 16 | decisions.below(65536);
            return within(static_cast<double>(static_cast<int>(bits)));
        }
    }
}

double chooseBoundedFloat(const Element& element, const Bounds& bounds, Decisions& decisions) {
    const double low = bounds.low, high = bounds.high;
    const double end = std::isfinite(low) ? low : std::isfinite(high) ? high : std::clamp(0.0, low, high);
    const double inwards = end == low ? 1 : -1;
    const auto within = [&](double value) { return std::clamp(inType(element, value), low, high); };
    switch (decisions.below(8)) {
        case 0:
            return end;
        case 1:
            return within(nextTo(element, end, inwards * infinity));
        case 2:
            return std::isfinite(high) ? high : within(highest(element));
        case 3:
        case 4:
            if (std::isfinite(low) && std::isfinite(high))
                return within(low + (high - low) * (decisions.below(1000) / 999.0));
            [[fallthrough]];
        case 5:
            return within(end + inwards * static_cast<double>(decisions.below(64)));
        case 6:
            return within(end + inwards * std::ldexp(1.0, static_cast<int>(decisions.below(64)) - 32));
        default:
            return within(decisions.rarely(4) ? inwards * infinity : 1000.0 * inwards * (1 + decisions.below(48)));
    }
}

}  // namespace

double chooseFloat(const Element& element, Decisions& decisions) {
    const auto sign = [&] { return decisions.below(2) ? -1.0 : 1.0; };
    switch (decisions.below(16)) {
        case 0:
            return 0;
        case 1:
            return sign();
        case 2:
            return sign() * decisions.below(256);
        case 3:
            return inType(element, sign() * std::ldexp(1.0, static_cast<int>(decisions.below(64)) - 32));
        case 4:
            return inType(element, sign() * std::ldexp(1.0 + decisions.below(65536) / 65536.0,
                                                       static_cast<int>(decisions.below(255)) - 127));
        case 5:
            return sign() * nextTo(element, 0, 1) * (1 + decisions.below(1000));
        case 6:
            return sign() * 0.0;
        case 7:
            return sign() * infinity;
        case 8:
            return std::numeric_limits<double>::quiet_NaN();
        case 9:
            return sign() * highest(element);
        default:
            return inType(element, sign() * (decisions.below(65536) / 8191.0));
    }
}

Bounds boundsOf(const Piece& piece, const Element& element, const Scope& scope, double i) {
    Bounds bounds{};
    bounds.notNumber = piece.notNumber;
    bounds.nonzero = piece.nonzero;
    if (piece.by.present()) bounds.by = piece.by.value(scope, i);
    if (element.isFloat()) {
        bounds.low = -infinity;
        bounds.high = infinity;
        if (piece.low.present()) {
            bounds.low = inType(element, piece.low.value(scope, i));
            if (piece.lowOpen) bounds.low = nextTo(element, bounds.low, infinity);
        }
        if (piece.high.present()) {
            bounds.high = inType(element, piece.high.value(scope, i));
            if (piece.highOpen) bounds.high = nextTo(element, bounds.high, -infinity);
        }
    } else {
        bounds.low = lowest(element);
        bounds.high = highest(element);
        if (piece.low.present()) {
            const double low = piece.low.value(scope, i);
            bounds.low = std::max(bounds.low, piece.lowOpen ? std::floor(low) + 1 : std::ceil(low));
        }
        if (piece.high.present()) {
            const double high = piece.high.value(scope, i);
            bounds.high = std::min(bounds.high, piece.highOpen ? std::ceil(high) - 1 : std::floor(high));
        }
    }
    return bounds;
}

std::vector<Bounds> boundsOf(const Range& range, const Element& element, const Scope& scope, double i) {
    std::vector<Bounds> all;
    for (const Piece& piece : range.pieces) {
        const Bounds bounds = boundsOf(piece, element, scope, i);
        if (bounds.low <= bounds.high) all.push_back(bounds);
    }
    return all;
}

bool unclear(const Range& range, const Scope& scope) {
    return std::any_of(range.pieces.begin(), range.pieces.end(), [&](const Piece& piece) {
        return (piece.low.present() && std::isnan(piece.low.value(scope))) ||
               (piece.high.present() && std::isnan(piece.high.value(scope)));
    });
}

double chooseNumber(const Argument& argument, const Bounds& bounds, int sizeClass, const std::vector<double>& earlier,
                    Decisions& decisions) {
    if (bounds.notNumber) return std::numeric_limits<double>::quiet_NaN();
    if (bounds.nonzero) {
        const double value =
            argument.element.isFloat() ? chooseFloat(argument.element, decisions) : chooseInteger(bounds, decisions);
        return value == 0 ? 1 : value;
    }
    if (argument.element.isFloat()) {
        Bounds small = bounds;
        if (argument.size && std::isfinite(small.low)) {
            small.high = std::min(small.high, inType(argument.element, std::max(2 * small.low, small.low + 64)));
        }
        return chooseBoundedFloat(argument.element, small, decisions);
    }
    const double value =
        argument.size ? chooseSize(argument, bounds, sizeClass, earlier, decisions) : chooseInteger(bounds, decisions);
    return bounds.by == 0 ? value : bounds.low + std::floor((value - bounds.low) / bounds.by) * bounds.by;
}

bool chooseOutside(const Element& element, const std::vector<Bounds>& bounds, Decisions& decisions, double& value) {
    std::vector<double> candidates = {0, -1, lowest(element), highest(element)};
    for (const Bounds& one : bounds) {
        if (one.notNumber || one.nonzero) continue;
        const double step = decisions.below(16) + 1.0;
        if (element.isFloat()) {
            candidates.insert(candidates.end(),
                              {nextTo(element, one.low, -infinity), nextTo(element, one.high, infinity),
                               inType(element, one.low - step), inType(element, one.high + step)});
        } else {
            candidates.insert(candidates.end(), {one.low - 1, one.high + 1, one.low - step, one.high + step});
        }
    }
    if (element.isFloat()) {
        candidates.insert(candidates.end(), {std::numeric_limits<double>::quiet_NaN(), infinity, -infinity});
    }
    const std::size_t first = decisions.below(static_cast<unsigned>(candidates.size()));
    for (std::size_t i = 0; i < candidates.size(); ++i) {
        value = candidates[(first + i) % candidates.size()];
        if (!element.isFloat() && (value < lowest(element) || value > highest(element))) continue;
        if (std::none_of(bounds.begin(), bounds.end(), [&](const Bounds& one) { return one.contains(value); }))
            return true;
    }
    return false;
}

}  // namespace fuzz
