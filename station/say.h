#pragma once

#include <fmt/format.h>

#include <iterator>
#include <string>
#include <string_view>

#include "station/model.h"

namespace corvenna {

/// Writes a text with its placeholders filled in behind what stands in a string or memory buffer: {callsign},
/// {airport}, {runway} and {tower} always, others as named arguments (fmt::arg). Station's thread.
template <class Buffer, class... Named>
void FillBehind(Buffer& buffer, const Station& station, const PlayerRecord& pilot, std::string_view text,
                const Named&... named) {
    fmt::format_to(std::back_inserter(buffer), fmt::runtime(text), fmt::arg("callsign", pilot.Name),
                   fmt::arg("airport", station.AirportName), fmt::arg("runway", station.ActiveRunway),
                   fmt::arg("tower", station.TowerFrequency), named...);
}

/// FillBehind over an emptied text. The memory of `into` is used again, so a text rewritten each second costs
/// no allocation. `into` must not be among the values.
template <class... Named>
void Fill(std::string& into, const Station& station, const PlayerRecord& pilot, std::string_view text,
          const Named&... named) {
    into.clear();
    FillBehind(into, station, pilot, text, named...);
}

/// Makes a text the pilot's MenuText. It is sent by the tick, if it differs from what he had before.
template <class... Named>
void Say(const Station& station, PlayerRecord& pilot, std::string_view text, const Named&... named) {
    Fill(pilot.MenuText, station, pilot, text, named...);
}

/// Say, in answer to a digit: Choice is done with.
template <class... Named>
void Answer(const Station& station, PlayerRecord& pilot, std::string_view text, const Named&... named) {
    Say(station, pilot, text, named...);
    pilot.Choice = 0;
}

}  // namespace corvenna
