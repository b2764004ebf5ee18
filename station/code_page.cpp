#include "station/code_page.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <iterator>

namespace corvenna {

namespace {

/// The bytes 80h to 9Fh; all others have the number of their character.
constexpr std::array<char32_t, 32> Middle = {
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021,  // 80h
    0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0x008D, 0x017D, 0x008F,  // 88h
    0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014,  // 90h
    0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178,  // 98h
};
constexpr char32_t MiddleBegin = 0x80;
constexpr char32_t MiddleEnd = 0xA0;

constexpr char Unknown = '?';
constexpr char32_t NoCharacter = 0xFFFFFFFF;

void AppendUtf8(std::string& utf8, char32_t character) {
    if (character < 0x80) {
        utf8.push_back(static_cast<char>(character));
        return;
    }
    if (character < 0x800) {
        utf8.push_back(static_cast<char>(0xC0 | (character >> 6)));
    } else {
        utf8.push_back(static_cast<char>(0xE0 | (character >> 12)));
        utf8.push_back(static_cast<char>(0x80 | ((character >> 6) & 0x3F)));
    }
    utf8.push_back(static_cast<char>(0x80 | (character & 0x3F)));
}

char32_t CharacterOf(char c) {
    const auto byte = static_cast<std::uint8_t>(c);
    const bool middle = byte >= MiddleBegin && byte < MiddleEnd;
    return middle ? Middle[byte - MiddleBegin] : byte;
}

char ByteOf(char32_t character) {
    const auto middle = std::find(Middle.begin(), Middle.end(), character);
    if (middle != Middle.end()) {
        return static_cast<char>(MiddleBegin + static_cast<char32_t>(std::distance(Middle.begin(), middle)));
    }
    const bool sameNumber = character < MiddleBegin || (character >= MiddleEnd && character <= 0xFF);
    return sameNumber ? static_cast<char>(character) : Unknown;
}

/// How many bytes a character has that begins with this one; 0 for one that can't begin any.
std::size_t LengthOf(std::uint8_t first) {
    if (first < 0x80) return 1;
    if (first >= 0xC2 && first < 0xE0) return 2;
    if (first >= 0xE0 && first < 0xF0) return 3;
    if (first >= 0xF0 && first < 0xF5) return 4;
    return 0;
}

/// Takes the next character off the front; what is broken is taken byte by byte.
char32_t TakeCharacter(std::string_view& utf8) {
    const auto byte = [&](std::size_t i) { return static_cast<std::uint8_t>(utf8[i]); };
    const std::size_t length = LengthOf(byte(0));
    char32_t character = length > 1 ? byte(0) & (0x7Fu >> length) : byte(0);
    bool whole = length != 0 && length <= utf8.size();
    for (std::size_t i = 1; whole && i < length; ++i) {
        whole = (byte(i) & 0xC0) == 0x80;
        character = (character << 6) | (byte(i) & 0x3Fu);
    }
    utf8.remove_prefix(whole ? length : 1);
    const bool tooLong = (length == 3 && character < 0x800) || (length == 4 && character < 0x10000);
    return whole && !tooLong ? character : NoCharacter;
}

}  // namespace

std::string CodePageToUtf8(std::string_view bytes) {
    std::string utf8;
    for (const char c : bytes) AppendUtf8(utf8, CharacterOf(c));
    return utf8;
}

std::string ReportToUtf8(std::string_view report) {
    for (std::string_view rest = report; !rest.empty();) {
        if (TakeCharacter(rest) == NoCharacter) return CodePageToUtf8(report);
    }
    return std::string(report);
}

std::string Utf8ToCodePage(std::string_view utf8) {
    std::string bytes;
    while (!utf8.empty()) bytes.push_back(ByteOf(TakeCharacter(utf8)));
    return bytes;
}

std::u16string CodePageToUtf16(std::string_view bytes) {
    std::u16string utf16;
    for (const char c : bytes) utf16.push_back(static_cast<char16_t>(CharacterOf(c)));
    return utf16;
}

std::string Utf16ToCodePage(std::u16string_view utf16) {
    std::string bytes;
    for (const char16_t unit : utf16) bytes.push_back(ByteOf(unit));
    return bytes;
}

}  // namespace corvenna
