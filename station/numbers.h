#pragma once

#include <cmath>
#include <concepts>
#include <limits>
#include <stdexcept>
#include <utility>

/// Conversions of real numbers. Everything rounds half to even. Pure functions, any thread.
namespace corvenna {

/// The nearest whole number as a double, ties to the even one.
inline double RoundHalfEven(double x) { return std::nearbyint(x); }

/// x rounded to n decimals, given 10^n.
inline double RoundTo(double x, double tenToN) { return RoundHalfEven(x * tenToN) / tenToN; }

/// Rounded to 5 decimals, the precision of all stored positions.
inline double RoundTo5(double x) { return RoundTo(x, 1e5); }

/// The nearest whole number, ties to even. Throws std::overflow_error when it does not fit Int.
template <std::integral Int>
Int ToWhole(double x) {
    const double whole = RoundHalfEven(x);
    if (!(whole >= static_cast<double>(std::numeric_limits<Int>::min()) &&
          whole <= static_cast<double>(std::numeric_limits<Int>::max()))) {
        throw std::overflow_error("a number does not fit its field");
    }
    return static_cast<Int>(whole);
}

/// A whole number in a narrower field. Throws std::overflow_error when it does not fit Int.
template <std::integral Int>
constexpr Int Narrow(std::integral auto x) {
    if (!std::in_range<Int>(x)) throw std::overflow_error("a number does not fit its field");
    return static_cast<Int>(x);
}

}  // namespace corvenna
