#include "link/directplay/endpoint.h"

#include <fmt/format.h>

#include <charconv>

namespace corvenna::directplay {

std::string IpText(std::uint32_t ip) {
    return fmt::format("{}.{}.{}.{}", ip >> 24, ip >> 16 & 255, ip >> 8 & 255, ip & 255);
}

std::string EndpointText(const Endpoint& endpoint) {
    return fmt::format("{}:{}", IpText(endpoint.Ip), endpoint.Port);
}

std::optional<std::uint32_t> ParseIp(std::string_view text) {
    const char* next = text.data();
    const char* const end = text.data() + text.size();
    std::uint32_t ip = 0;
    for (int i = 0; i < 4; ++i) {
        if (i > 0 && (next == end || *next++ != '.')) return std::nullopt;
        std::uint8_t part = 0;
        const auto [behind, error] = std::from_chars(next, end, part);
        if (error != std::errc{}) return std::nullopt;
        next = behind;
        ip = ip << 8 | part;
    }
    if (next != end) return std::nullopt;
    return ip;
}

}  // namespace corvenna::directplay
