#pragma once

#include <cctype>
#include <string>
#include <string_view>

#include "link/directplay/wire_bytes.h"

namespace corvenna::directplay {

/// Bytes from two digits each, blanks between them ignored.
inline Bytes FromHex(std::string_view text) {
    std::string digits;
    for (const char c : text) {
        if (c != ' ') digits.push_back(c);
    }
    Bytes bytes;
    for (std::size_t i = 0; i + 1 < digits.size(); i += 2) {
        bytes.push_back(static_cast<std::byte>(std::stoul(digits.substr(i, 2), nullptr, 16)));
    }
    return bytes;
}

inline std::string ToHex(ByteSpan bytes) {
    constexpr std::string_view digits = "0123456789abcdef";
    std::string text;
    for (const std::byte byte : bytes) {
        const auto value = std::to_integer<unsigned>(byte);
        if (!text.empty()) text.push_back(' ');
        text.push_back(digits[value >> 4]);
        text.push_back(digits[value & 15]);
    }
    return text;
}

}  // namespace corvenna::directplay
