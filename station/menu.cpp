#include "station/menu.h"

#include <fmt/format.h>

#include "station/say.h"
#include "station/text.h"

namespace corvenna {

bool ChoiceIs(const Station& station, const PlayerRecord& pilot, std::string_view label) {
    if (pilot.Choice == 0) return false;
    std::string option;
    Fill(option, station, pilot, label);
    return ContainsIgnoringCase(pilot.MenuText, std::to_string(pilot.Choice) + option);
}

void ActOnChoice(Station& station, PlayerRecord& pilot, std::span<const MenuRow> rows) {
    for (const MenuRow& row : rows) {
        if (ChoiceIs(station, pilot, row.Label)) row.Act(station, pilot);
    }
}

}  // namespace corvenna
