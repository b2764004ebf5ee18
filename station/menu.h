#pragma once

#include <span>
#include <string_view>

#include "station/model.h"

/// A menu is only text: an option stands in it as "{digit}-{label}". The digit of a label differs from menu
/// to menu, so a typed digit is understood by looking it up, with its label, in the menu last written.
namespace corvenna {

/// The mark that a repeat request leaves at the end of MenuText until the next tick.
inline constexpr std::string_view SayAgainMark = " (Say Again)";

/// An option that every menu but the welcome ends with.
inline constexpr std::string_view CloseLabel = "-Close ATC Services";

/// Whether the pilot's Choice is not 0 and stands, followed by this label, anywhere in his MenuText.
/// Letters of either case match. The label may hold the placeholders of Say.
bool ChoiceIs(const Station& station, const PlayerRecord& pilot, std::string_view label);

/// What is done when a pilot picks the option of this label. It clears Choice.
struct MenuRow {
    std::string_view Label;
    void (*Act)(Station&, PlayerRecord&);
};

/// Tries the rows from top to bottom and acts on those that are chosen. Acting clears Choice, so the rows
/// below it miss. A digit that fits no row stays in Choice and changes nothing.
void ActOnChoice(Station& station, PlayerRecord& pilot, std::span<const MenuRow> rows);

}  // namespace corvenna
