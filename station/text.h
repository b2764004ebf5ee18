#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

/// Texts are bytes of the 8-bit code page. Upper and lower case concern ASCII letters only.
/// Pure functions, any thread.
namespace corvenna {

char LowerCase(char c);
char UpperCase(char c);
std::string LowerCase(std::string_view text);
std::string UpperCase(std::string_view text);

/// Whether two texts are the same but for upper and lower case.
bool EqualIgnoringCase(std::string_view a, std::string_view b);

/// Whether needle occurs anywhere in text, but for upper and lower case. An empty needle always does.
bool ContainsIgnoringCase(std::string_view text, std::string_view needle);

/// Where needle first occurs in text, but for upper and lower case, or npos.
std::size_t FindIgnoringCase(std::string_view text, std::string_view needle);

/// Without the blanks (20h) at both ends.
std::string_view Trim(std::string_view text);

/// A reply read as a number: optional blanks, a sign, digits, a fraction; rounded half to even.
/// Nothing when the text is not of that form or the number lies outside 0 to 255.
std::optional<std::uint8_t> ReadReplyNumber(std::string_view text);

}  // namespace corvenna
