#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// What a pilot makes of the controller's texts. Pure functions, any thread.
namespace corvenna {

struct MenuOption {
    char Digit = '0';
    std::string Label;  ///< without the hyphen: "Close ATC Services"

    bool operator==(const MenuOption&) const = default;
};

/// The numbered options at the end of a text; none when it has no menu.
std::vector<MenuOption> ReadMenu(std::string_view text);

/// Whether a text is meant for the pilot of this name, on a frequency that others share. His own
/// announcements on an advisory frequency are: they bring his next menu.
bool IsAddressedTo(std::string_view text, std::string_view callsign);

/// The name of the airport that a welcome offers the services of; nothing in any other text.
std::optional<std::string> AirportOfWelcome(std::string_view text);

/// What to type for the option of a label, or nothing when the menu does not offer it. In the opening
/// dialogue the station has to be addressed: "KSEA,1".
std::optional<std::string> ReplyFor(const std::vector<MenuOption>& menu, std::string_view label,
                                    std::string_view airportCode);

}  // namespace corvenna
