#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "airspace/height.h"
#include "station/menu.h"
#include "station/say.h"

/// The two sides of the Tower, takeoff and landing: each is a table of states, which TowerControl looks
/// through. Station's thread.
namespace corvenna {

/// Whose state it is.
enum class Rules : std::uint8_t { VfrOnly, IfrOnly, Either };

/// One state of the Tower's dialogue. In a turn either the choices are tried or the pilot is watched,
/// never both: while a digit waits nobody looks at his position.
struct TowerState {
    Rules For;
    std::string_view Phase;
    std::span<const MenuRow> Choices;        ///< for a waiting digit, without CloseLabel, which ends them all
    void (*Watch)(Station&, PlayerRecord&);  ///< for a turn without a digit
};

std::span<const TowerState> TowerDepartureStates();
std::span<const TowerState> TowerArrivalStates();

/// What both sides, or one side and TowerControl, say and do alike.
namespace TowerShared {

// ---- Texts. {approach}, {artcc} and {ground} are the labels of those frequencies.

inline constexpr std::string_view NoText;

inline constexpr std::string_view OnTower =
    "{callsign}. Choose one of the following options for the Tower frequency: 1-Close ATC Services";
inline constexpr std::string_view OnGround =
    "{callsign}. Choose one of the following options for the Ground frequency: 1-Close ATC Services";
inline constexpr std::string_view OnDeparture =
    "{callsign}. Choose one of the following options for the Departure frequency: 1-Close ATC Services";
inline constexpr std::string_view OnApproach =
    "{callsign}. Choose one of the following options for the Approach frequency: 1-Close ATC Services";

inline constexpr std::string_view NotClearedForTakeoff =
    "{callsign}, You were not cleared for take off. Tower Services terminated.";
inline constexpr std::string_view NotClearedForTakeoffIfr =
    "{callsign}, You were not cleared for take off. Canceling IFR and turning to VFR. "
    "Tower Services terminated.";

inline constexpr std::string_view ContactArtcc =
    "{callsign}, Contact ARTCC ({artcc}). Good day. "
    "Choose one of the following options for the Tower frequency: 1-Acknowledge 2-Close ATC Services";
inline constexpr std::string_view TuneArtcc =
    "{callsign}. Choose one of the following options for the Tower frequency: "
    "1-Tune ARTCC Frequency 2-Close ATC Services";

// ---- Labels.

inline constexpr std::string_view AcknowledgeLabel = "-Acknowledge";
inline constexpr std::string_view TuneGroundLabel = "-Tune {airport} Ground Frequency";
inline constexpr std::string_view TuneArtccLabel = "-Tune ARTCC Frequency";

// ---- The limit of 300 ft above the runway. At the limit itself a pilot is low, but not below.

inline bool IsLow(const Station& station, const PlayerRecord& pilot) {
    return FeetAboveRunway(station, pilot) <= 300;
}
inline bool IsHigh(const Station& station, const PlayerRecord& pilot) { return !IsLow(station, pilot); }
inline bool IsBelow(const Station& station, const PlayerRecord& pilot) {
    return FeetAboveRunway(station, pilot) < 300;
}

// ---- Steps.

/// Say and Answer with the Tower's placeholders.
void TowerSay(const Station& station, PlayerRecord& pilot, std::string_view text);
void TowerAnswer(const Station& station, PlayerRecord& pilot, std::string_view text);

/// TowerAnswer, and the state that follows from it.
void TowerAnswer(const Station& station, PlayerRecord& pilot, std::string_view text, std::string_view phase);

/// Ends the service with a last word: no frequency, no state, and VFR from now on. The queues stay.
void Terminate(const Station& station, PlayerRecord& pilot, std::string_view text);

/// Terminate with the words on a takeoff without clearance that fit his flight rules.
void TerminateForTakeoff(const Station& station, PlayerRecord& pilot);

/// TowerAnswer, and another frequency. The state stays, for the next service to take him by.
void Tune(const Station& station, PlayerRecord& pilot, std::string_view text, const std::string& frequency);

/// Acts on TuneGroundLabel.
void TuneToGround(Station& station, PlayerRecord& pilot);

}  // namespace TowerShared

}  // namespace corvenna
