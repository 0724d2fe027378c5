// Correct values to compare with: MPFR at 200 bits, and distances in units in the last place.
#pragma once

#include <mpfr.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>
#include <string>

namespace test {

// A number of 200 bits. Few operations: enough to say a formula once and to ask how far a result is from it.
class Precise {
public:
    Precise(double x = 0.0) : Precise(nullptr) { mpfr_set_d(value_, x, MPFR_RNDN); }
    Precise(const Precise& other) : Precise(nullptr) { mpfr_set(value_, other.value_, MPFR_RNDN); }
    Precise& operator=(const Precise& other) {
        mpfr_set(value_, other.value_, MPFR_RNDN);
        return *this;
    }
    ~Precise() { mpfr_clear(value_); }

    friend Precise operator+(const Precise& a, const Precise& b) { return binary(mpfr_add, a, b); }
    friend Precise operator-(const Precise& a, const Precise& b) { return binary(mpfr_sub, a, b); }
    friend Precise operator*(const Precise& a, const Precise& b) { return binary(mpfr_mul, a, b); }
    friend Precise operator/(const Precise& a, const Precise& b) { return binary(mpfr_div, a, b); }
    friend Precise exp(const Precise& x) { return unary(mpfr_exp, x); }
    friend Precise log(const Precise& x) { return unary(mpfr_log, x); }
    friend Precise sin(const Precise& x) { return unary(mpfr_sin, x); }
    friend Precise cos(const Precise& x) { return unary(mpfr_cos, x); }
    friend Precise sqrt(const Precise& x) { return unary(mpfr_sqrt, x); }

    // Rounded to nearest, denormals included.
    double toDouble() const { return mpfr_get_d(value_, MPFR_RNDN); }
    float toFloat() const { return mpfr_get_flt(value_, MPFR_RNDN); }

    // |result - this| in units in the last place of a T at this value; infinity when result is not a number, or is
    // infinite and this does not round to it.
    template <class T>
    double distance(T result) const {
        constexpr int digits = std::numeric_limits<T>::digits;
        const T nearest = digits == 24 ? static_cast<T>(toFloat()) : static_cast<T>(toDouble());
        if (result == nearest && std::isinf(nearest)) return 0.0;
        if (!std::isfinite(result)) return std::numeric_limits<double>::infinity();
        if (mpfr_zero_p(value_)) return result == T(0) ? 0.0 : std::numeric_limits<double>::infinity();
        const long lowest = std::numeric_limits<T>::min_exponent - digits;
        const long unit = std::max<long>(mpfr_get_exp(value_) - digits, lowest);
        Precise difference = *this - Precise(static_cast<double>(result));
        mpfr_abs(difference.value_, difference.value_, MPFR_RNDN);
        mpfr_mul_2si(difference.value_, difference.value_, -unit, MPFR_RNDN);
        return difference.toDouble();
    }

private:
    static constexpr mpfr_prec_t bits = 200;
    explicit Precise(std::nullptr_t) { mpfr_init2(value_, bits); }
    template <class Function>
    static Precise unary(Function function, const Precise& x) {
        Precise result(nullptr);
        function(result.value_, x.value_, MPFR_RNDN);
        return result;
    }
    template <class Function>
    static Precise binary(Function function, const Precise& a, const Precise& b) {
        Precise result(nullptr);
        function(result.value_, a.value_, b.value_, MPFR_RNDN);
        return result;
    }

    mpfr_t value_;
};

// The largest distance met, and where.
struct Worst {
    double distance = 0.0;
    double argument = 0.0;

    void meet(double newDistance, double at) {
        if (newDistance > distance) {
            distance = newDistance;
            argument = at;
        }
    }
    std::string text() const {
        char text[96];
        std::snprintf(text, sizeof text, "%.5f ulp at %a (%.17g)", distance, argument, argument);
        return text;
    }
};

}  // namespace test
