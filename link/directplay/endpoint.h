#pragma once

#include <compare>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace corvenna::directplay {

/// An address and a port of the Internet protocol, version 4. Ip counts 127.0.0.1 as 0x7F000001.
struct Endpoint {
    std::uint32_t Ip = 0;
    std::uint16_t Port = 0;

    // NOLINTNEXTLINE(modernize-use-nullptr): the nought in it is the compiler's own
    auto operator<=>(const Endpoint&) const = default;
};

constexpr bool IsLoopback(std::uint32_t ip) { return ip >> 24 == 127; }

std::string IpText(std::uint32_t ip);                ///< "127.0.0.1"
std::string EndpointText(const Endpoint& endpoint);  ///< "127.0.0.1:2300"

/// Four decimal numbers from 0 to 255 with points between them; nothing for any other text.
std::optional<std::uint32_t> ParseIp(std::string_view text);

}  // namespace corvenna::directplay
