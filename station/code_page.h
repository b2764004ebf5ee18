#pragma once

#include <string>
#include <string_view>

/// The one place where texts change between the program's 8-bit code page, Windows-1252, and Unicode, in
/// which people read and type them. Pure functions, any thread.
namespace corvenna {

/// For the screen. The five bytes without a character become those of the same number, as Windows does it.
std::string CodePageToUtf8(std::string_view bytes);

/// From the keyboard. What the code page has no character for, and what is no UTF-8, becomes "?".
std::string Utf8ToCodePage(std::string_view utf8);

/// For people. A report may hold texts of the program as well as names of files, which are in UTF-8 on some
/// systems: what is UTF-8 stays, anything else is taken for text in the code page.
std::string ReportToUtf8(std::string_view report);

/// For the session, whose texts are UTF-16.
std::u16string CodePageToUtf16(std::string_view bytes);

/// From the session. What the code page has no character for becomes "?", each half of a pair by itself.
std::string Utf16ToCodePage(std::u16string_view utf16);

}  // namespace corvenna
