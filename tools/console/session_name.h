#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace corvenna {

/// More than any simulator has room for, and still one line.
inline constexpr std::size_t LongestSessionName = 255;

/// A name that a person typed in UTF-8, of a session or of somebody in it, as the session carries it: in the
/// 8-bit code page. Throws std::invalid_argument for one that is longer than LongestSessionName characters,
/// or has a character that the code page lacks or that cannot be seen; the words begin with what it names.
std::string NameInSession(std::string_view utf8, std::string_view what);

}  // namespace corvenna
