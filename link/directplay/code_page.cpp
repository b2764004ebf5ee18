#include "link/directplay/code_page.h"

#include <algorithm>
#include <iterator>

namespace corvenna::directplay {

namespace {

/// The characters of bytes 0x80 to 0x9F. All other bytes have the character of the same number.
constexpr char16_t MiddleBlock[] = {
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0x008D, 0x017D, 0x008F, 0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178,
};
constexpr unsigned BlockStart = 0x80;
constexpr unsigned BlockEnd = 0xA0;

char16_t Widen(char c) {
    const auto byte = static_cast<unsigned char>(c);
    return byte >= BlockStart && byte < BlockEnd ? MiddleBlock[byte - BlockStart] : char16_t{byte};
}

char Narrow(char16_t unit) {
    if (unit < BlockStart || (unit >= BlockEnd && unit <= 0xFF)) return static_cast<char>(unit);
    const auto* place = std::find(std::begin(MiddleBlock), std::end(MiddleBlock), unit);
    if (place == std::end(MiddleBlock)) return '?';
    return static_cast<char>(BlockStart + static_cast<unsigned>(place - std::begin(MiddleBlock)));
}

}  // namespace

std::u16string ToUtf16(std::string_view codePageText) {
    std::u16string text;
    text.reserve(codePageText.size());
    for (const char c : codePageText) text.push_back(Widen(c));
    return text;
}

std::string ToCodePage(std::u16string_view text) {
    std::string codePageText;
    codePageText.reserve(text.size());
    for (const char16_t unit : text) codePageText.push_back(Narrow(unit));
    return codePageText;
}

}  // namespace corvenna::directplay
