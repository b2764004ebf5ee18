#include "station/menu.h"

#include <fmt/format.h>

#include "station/say.h"
#include "station/text.h"

namespace corvenna {

bool ChoiceIs(const Station& station, const PlayerRecord& pilot, std::string_view label) {
    if (pilot.Choice == 0) return false;
    fmt::memory_buffer words;
    Fill(words, station, pilot, label);
    fmt::memory_buffer option;
    fmt::format_to(fmt::appender(option), "{}", pilot.Choice);
    option.append(words);
    return ContainsIgnoringCase(pilot.MenuText, {option.data(), option.size()});
}

void ActOnChoice(Station& station, PlayerRecord& pilot, std::span<const MenuRow> rows) {
    for (const MenuRow& row : rows) {
        if (ChoiceIs(station, pilot, row.Label)) row.Act(station, pilot);
    }
}

}  // namespace corvenna
