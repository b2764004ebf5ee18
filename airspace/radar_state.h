#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "airspace/height.h"
#include "station/model.h"

/// The state tables of the radar services as data, and the one walk that runs them.
namespace corvenna {

/// What a row makes of the controller's memory of a pilot.
enum class Forget {
    Nothing,
    Vectors,     ///< the assigned heading and altitude and the target
    Everything,  ///< the traffic called out as well: it may be called out again
};

/// One row of a state table: what happens to a pilot in a phase upon an input. What is left out stays as it
/// is, but Choice is always 0 afterwards.
struct StateRow {
    /// Inputs that are no label. A position row waits until no digit stands.
    static constexpr std::string_view NoChoice = "no choice";
    static constexpr std::string_view EveryCall = "every call";

    std::string_view Phase;
    std::string_view Input;                                 ///< the label of an option, or one of the above
    bool (*When)(Station&, const PlayerRecord&) = nullptr;  ///< a further condition
    std::optional<std::string_view> Text = std::nullopt;    ///< becomes MenuText
    Forget Forgets = Forget::Nothing;
    std::string Station::*Tunes = nullptr;                ///< the frequency he is passed to
    void (*Act)(Station&, PlayerRecord&) = nullptr;       ///< what else is done; it may write Phase itself
    std::optional<std::string_view> Next = std::nullopt;  ///< the phase behind all that
};

/// Runs the first row that fits the pilot's phase and input. Where a digit fits no row, closing the services
/// is tried last; a digit that fits nothing stays. service is the word of the texts' {service}.
/// Returns whether the table has the pilot's phase at all.
bool RunStates(Station& station, PlayerRecord& pilot, std::string_view service,
               std::span<const StateRow> rows);

/// Say and Answer with the radar services' own placeholders: {service}, {artcc}, {approach}, {heading} and
/// {altitude}.
void RadarSay(Station& station, PlayerRecord& pilot, std::string_view service, std::string_view text);
void RadarAnswer(Station& station, PlayerRecord& pilot, std::string_view service, std::string_view text);

/// Whether MenuText is this text as RadarSay would write it now.
bool MenuIs(Station& station, const PlayerRecord& pilot, std::string_view service, std::string_view text);

/// No fix is assigned any more. AssignedHeading and AssignedAltitude stay.
void DropTarget(PlayerRecord& pilot);

/// The pilot is as one whom no radar service has seen yet: traffic may be called out to him again.
void Wipe(PlayerRecord& pilot);

/// A whole number that stands in a text; 0 for a text that is none.
std::int64_t WholeNumber(std::string_view text);

}  // namespace corvenna
