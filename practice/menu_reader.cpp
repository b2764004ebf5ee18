#include "practice/menu_reader.h"

#include <algorithm>

#include "station/text.h"

namespace corvenna {

namespace {

constexpr std::string_view MenuMark = ": ";
constexpr std::string_view Announcement = "Traffic, ";
constexpr std::string_view OfferWords = "Want to use our ATC services at ";
constexpr std::string_view OfferEnds = "?: ";

/// Options that only the opening dialogue has.
constexpr std::string_view OpeningLabels[] = {"Use ATC services", "VFR", "IFR"};

/// Whether an option begins at this place: a digit and a hyphen behind a blank.
bool OptionBegins(std::string_view text, std::size_t at) {
    return at > 0 && at + 1 < text.size() && text[at - 1] == ' ' && text[at] >= '0' && text[at] <= '9' &&
           text[at + 1] == '-';
}

bool IsOpening(const std::vector<MenuOption>& menu) {
    return std::any_of(menu.begin(), menu.end(), [](const MenuOption& option) {
        return std::find(std::begin(OpeningLabels), std::end(OpeningLabels), option.Label) !=
               std::end(OpeningLabels);
    });
}

}  // namespace

std::vector<MenuOption> ReadMenu(std::string_view text) {
    std::vector<MenuOption> menu;
    const std::size_t mark = text.rfind(MenuMark);
    if (mark == std::string_view::npos) return menu;
    for (std::size_t at = mark + MenuMark.size(); at < text.size(); ++at) {
        if (OptionBegins(text, at)) {
            menu.push_back({text[at], ""});
            ++at;
        } else if (!menu.empty()) {
            menu.back().Label.push_back(text[at]);
        }
    }
    for (MenuOption& option : menu) option.Label = Trim(option.Label);
    return menu;
}

bool IsAddressedTo(std::string_view text, std::string_view callsign) {
    if (text.starts_with(Announcement)) text.remove_prefix(Announcement.size());
    if (!text.starts_with(callsign) || text.size() == callsign.size()) return false;
    const char behind = text[callsign.size()];
    return behind == '.' || behind == ',';
}

std::optional<std::string> AirportOfWelcome(std::string_view text) {
    const std::size_t offer = text.find(OfferWords);
    if (offer == std::string_view::npos) return std::nullopt;
    const std::string_view name = text.substr(offer + OfferWords.size());
    const std::size_t end = name.find(OfferEnds);
    if (end == std::string_view::npos) return std::nullopt;
    return std::string(name.substr(0, end));
}

std::optional<std::string> ReplyFor(const std::vector<MenuOption>& menu, std::string_view label,
                                    std::string_view airportCode) {
    const auto option = std::find_if(menu.begin(), menu.end(), [&](const MenuOption& candidate) {
        return EqualIgnoringCase(candidate.Label, label);
    });
    if (option == menu.end()) return std::nullopt;
    const std::string digit(1, option->Digit);
    return IsOpening(menu) ? std::string(airportCode) + "," + digit : digit;
}

}  // namespace corvenna
