#include "station/text.h"

#include <algorithm>
#include <charconv>

#include "station/numbers.h"

namespace corvenna {

namespace {

bool IsDigit(char c) { return c >= '0' && c <= '9'; }

/// Cuts the characters that fit off the front of a text.
template <class Fits>
std::string_view TakeWhile(std::string_view& text, Fits fits) {
    const auto end = std::find_if_not(text.begin(), text.end(), fits);
    const auto taken = text.substr(0, static_cast<std::size_t>(end - text.begin()));
    text.remove_prefix(taken.size());
    return taken;
}

}  // namespace

char LowerCase(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }

char UpperCase(char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c; }

std::string LowerCase(std::string_view text) {
    std::string lower(text);
    for (char& c : lower) c = LowerCase(c);
    return lower;
}

std::string UpperCase(std::string_view text) {
    std::string upper(text);
    for (char& c : upper) c = UpperCase(c);
    return upper;
}

bool EqualIgnoringCase(std::string_view a, std::string_view b) {
    return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                      [](char x, char y) { return LowerCase(x) == LowerCase(y); });
}

bool ContainsIgnoringCase(std::string_view text, std::string_view needle) {
    return FindIgnoringCase(text, needle) != std::string_view::npos;
}

/// Goes from one occurrence of the first character to the next.
std::size_t FindIgnoringCase(std::string_view text, std::string_view needle) {
    if (needle.empty()) return 0;
    if (needle.size() > text.size()) return std::string_view::npos;
    const char lower = LowerCase(needle.front());
    const char upper = UpperCase(needle.front());
    const std::size_t last = text.size() - needle.size();
    for (std::size_t at = 0; at <= last; ++at) {
        if (text[at] != lower && text[at] != upper) continue;
        if (EqualIgnoringCase(text.substr(at, needle.size()), needle)) return at;
    }
    return std::string_view::npos;
}

std::string_view Trim(std::string_view text) {
    const auto first = text.find_first_not_of(' ');
    if (first == std::string_view::npos) return {};
    return text.substr(first, text.find_last_not_of(' ') - first + 1);
}

std::optional<std::uint8_t> ReadReplyNumber(std::string_view text) {
    TakeWhile(text, [](char c) { return c == ' '; });
    const bool negative = text.starts_with('-');
    if (negative || text.starts_with('+')) text.remove_prefix(1);

    const std::string_view digits = text;
    const std::string_view wholePart = TakeWhile(text, IsDigit);
    if (wholePart.empty()) return std::nullopt;
    if (text.starts_with('.')) {
        text.remove_prefix(1);
        if (TakeWhile(text, IsDigit).empty()) return std::nullopt;
    }
    if (!text.empty()) return std::nullopt;

    double value = 0;
    const auto read =
        std::from_chars(digits.data(), digits.data() + digits.size(), value, std::chars_format::fixed);
    // With hundreds of digits a number can be too large for a double, or too small: then value stays 0.
    const bool belowOne = wholePart.find_first_not_of('0') == std::string_view::npos;
    if (read.ec != std::errc{} && !belowOne) return std::nullopt;
    const double whole = RoundHalfEven(negative ? -value : value);
    if (whole < 0 || whole > 255) return std::nullopt;
    return static_cast<std::uint8_t>(whole);
}

}  // namespace corvenna
