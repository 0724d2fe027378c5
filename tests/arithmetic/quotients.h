// The model of complex quotients. How they are rounded is not promised, so they are compared within a bound.
#pragma once

#include <algorithm>
#include <cmath>
#include <limits>

#include "support/expect.h"

namespace members {

// a / b in a type whose range holds every square. By a divisor without an imaginary part each part is divided.
template <class C>
C divided(C a, C b) {
    using T = decltype(a.re);
    static_assert(std::numeric_limits<long double>::max_exponent > 4 * std::numeric_limits<T>::max_exponent);
    if (b.im == 0) return {a.re / b.re, a.im / b.re};
    const long double re = b.re, im = b.im, square = re * re + im * im;
    return {static_cast<T>((a.re * re + a.im * im) / square), static_cast<T>((a.im * re - a.re * im) / square)};
}

// Two units in the last place of the larger part, for numbers; the same infinity, or both not a number.
template <class C>
bool isQuotient(C actual, C expected) {
    using T = decltype(actual.re);
    using Limits = std::numeric_limits<T>;
    const T larger = std::min(std::max(std::fabs(expected.re), std::fabs(expected.im)), Limits::max());
    const T unit = larger - std::nextafter(larger, T(0));
    const auto isPart = [&](T found, T right) {
        if (test::same(found, right) || found == right) return true;
        if (std::isinf(found) || std::isinf(right)) {
            return std::nextafter(found, right) == right;  // the largest number for an infinity, or the reverse
        }
        return std::fabs(found - right) <= 2 * std::max(unit, Limits::denorm_min());
    };
    return isPart(actual.re, expected.re) && isPart(actual.im, expected.im);
}

template <class C>
::testing::AssertionResult areQuotients(const C* actual, const C* expected, std::size_t len) {
    for (std::size_t i = 0; i < len; ++i) {
        if (!isQuotient(actual[i], expected[i])) {
            return ::testing::AssertionFailure() << "element " << i << " of " << len << ": got "
                                                 << test::show(actual[i]) << ", expected " << test::show(expected[i]);
        }
    }
    return ::testing::AssertionSuccess();
}

}  // namespace members
