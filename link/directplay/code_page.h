#pragma once

#include <string>
#include <string_view>

/// Texts of the program are bytes of the Windows-1252 code page, texts of the session are UTF-16.
/// Pure functions, any thread.
namespace corvenna::directplay {

/// The five bytes without a character of their own become the control character of the same number.
std::u16string ToUtf16(std::string_view codePageText);

/// What the code page does not have becomes '?', one for each UTF-16 unit.
std::string ToCodePage(std::u16string_view text);

}  // namespace corvenna::directplay
