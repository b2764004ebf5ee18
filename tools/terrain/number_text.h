#pragma once

#include <charconv>
#include <cmath>
#include <optional>
#include <string_view>

/// Numbers out of text, all of it or nothing. Pure functions, any thread.
namespace corvenna {

template <class Number>
std::optional<Number> ParseNumber(std::string_view text) {
    if (text.starts_with('+')) text.remove_prefix(1);
    Number number{};
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error != std::errc{} || end != text.data() + text.size()) return std::nullopt;
    return number;
}

/// A finite decimal number.
inline std::optional<double> ParseReal(std::string_view text) {
    const auto number = ParseNumber<double>(text);
    return number && std::isfinite(*number) ? number : std::nullopt;
}

/// A whole number from lowest to highest.
inline std::optional<int> ParseWhole(std::string_view text, int lowest, int highest) {
    const auto number = ParseNumber<int>(text);
    return number && *number >= lowest && *number <= highest ? number : std::nullopt;
}

}  // namespace corvenna
