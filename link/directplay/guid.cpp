#include "link/directplay/guid.h"

#include <fmt/format.h>

#include <charconv>
#include <random>

namespace corvenna::directplay {

namespace {

constexpr std::string_view Pattern = "{XXXXXXXX-XXXX-XXXX-XXXX-XXXXXXXXXXXX}";

/// The hexadecimal digits alone, or nothing for a text of another shape.
std::optional<std::string> Digits(std::string_view text) {
    constexpr std::string_view hexadecimal = "0123456789abcdefABCDEF";
    if (text.size() != Pattern.size()) return std::nullopt;
    std::string digits;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (Pattern[i] != 'X' && text[i] != Pattern[i]) return std::nullopt;
        if (Pattern[i] != 'X') continue;
        if (hexadecimal.find(text[i]) == std::string_view::npos) return std::nullopt;
        digits.push_back(text[i]);
    }
    return digits;
}

template <class Number>
void Parse(const std::string& digits, std::size_t start, Number& number) {
    const char* first = digits.data() + start;
    std::from_chars(first, first + sizeof(Number) * 2, number, 16);
}

}  // namespace

std::string GuidText(const Guid& guid) {
    const auto& d = guid.Data4;
    return fmt::format("{{{:08X}-{:04X}-{:04X}-{:02X}{:02X}-{:02X}{:02X}{:02X}{:02X}{:02X}{:02X}}}",
                       guid.Data1, guid.Data2, guid.Data3, d[0], d[1], d[2], d[3], d[4], d[5], d[6], d[7]);
}

std::optional<Guid> ParseGuid(std::string_view text) {
    const std::optional<std::string> digits = Digits(text);
    if (!digits) return std::nullopt;
    Guid guid;
    Parse(*digits, 0, guid.Data1);
    Parse(*digits, 8, guid.Data2);
    Parse(*digits, 12, guid.Data3);
    for (std::size_t i = 0; i < guid.Data4.size(); ++i) Parse(*digits, 16 + 2 * i, guid.Data4[i]);
    return guid;
}

Guid RandomGuid() {
    std::random_device random;
    Guid guid;
    guid.Data1 = random();
    guid.Data2 = static_cast<std::uint16_t>(random());
    guid.Data3 = static_cast<std::uint16_t>((random() & 0x0FFF) | 0x4000);  // version 4: random
    for (std::uint8_t& byte : guid.Data4) byte = static_cast<std::uint8_t>(random());
    guid.Data4[0] = static_cast<std::uint8_t>((guid.Data4[0] & 0x3F) | 0x80);
    return guid;
}

}  // namespace corvenna::directplay
