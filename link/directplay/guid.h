#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace corvenna::directplay {

/// The name of an application or of a session. Pure, any thread.
struct Guid {
    std::uint32_t Data1 = 0;
    std::uint16_t Data2 = 0;
    std::uint16_t Data3 = 0;
    std::array<std::uint8_t, 8> Data4{};

    // NOLINTNEXTLINE(modernize-use-nullptr): the nought in it is the compiler's own
    auto operator<=>(const Guid&) const = default;
    bool IsZero() const { return *this == Guid{}; }
};

/// "{CC080A27-6D4E-11D0-8E21-00A0C90542EF}", letters in upper case.
std::string GuidText(const Guid& guid);

/// Reads what GuidText writes, in either case. Nothing for any other text.
std::optional<Guid> ParseGuid(std::string_view text);

Guid RandomGuid();

}  // namespace corvenna::directplay
