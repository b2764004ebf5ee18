#include "station/menu.h"

#include <fmt/format.h>

#include "station/say.h"
#include "station/text.h"

namespace corvenna {

bool ChoiceIs(const Station& station, const PlayerRecord& pilot, std::string_view label) {
    if (pilot.Choice == 0) return false;
    fmt::memory_buffer option;  // on the stack: a digit that fits nothing is looked up each second
    fmt::format_to(std::back_inserter(option), "{}", pilot.Choice);
    FillBehind(option, station, pilot, label);
    return ContainsIgnoringCase(pilot.MenuText, {option.data(), option.size()});
}

void ActOnChoice(Station& station, PlayerRecord& pilot, std::span<const MenuRow> rows) {
    for (const MenuRow& row : rows) {
        if (ChoiceIs(station, pilot, row.Label)) row.Act(station, pilot);
    }
}

}  // namespace corvenna
