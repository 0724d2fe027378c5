// Numbers that a call is given: within a range, with a liking for its borders, or outside of it.
#pragma once

#include <cmath>
#include <cstddef>
#include <vector>

#include "decisions.h"
#include "element.h"
#include "table.h"

namespace fuzz {

// What a piece of a range comes to in one call, in numbers of the type: both ends included.
struct Bounds {
    double low, high;
    double by = 0;  // 0: every number between
    bool notNumber = false, nonzero = false;

    bool contains(double value) const {
        if (notNumber) return value != value;
        if (nonzero) return value != 0;
        return low <= value && value <= high && (by == 0 || std::fmod(value - low, by) == 0);
    }
};

Bounds boundsOf(const Piece& piece, const Element& element, const Scope& scope, double i = 0);
// Those pieces of the range that are not empty.
std::vector<Bounds> boundsOf(const Range& range, const Element& element, const Scope& scope, double i = 0);
// An end that is not a number: nothing can be said to be outside.
bool unclear(const Range& range, const Scope& scope);

// How large sizes may become.
inline constexpr int sizeClasses = 8;

// A number of the argument; earlier ones of the same call are now and then taken again.
double chooseNumber(const Argument& argument, const Bounds& bounds, int sizeClass, const std::vector<double>& earlier,
                    Decisions& decisions);

// A float of no range in particular.
double chooseFloat(const Element& element, Decisions& decisions);

// A number of the type in none of the bounds; false if there is none.
bool chooseOutside(const Element& element, const std::vector<Bounds>& bounds, Decisions& decisions, double& value);

}  // namespace fuzz
