#pragma once

#include <chrono>
#include <cstddef>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "practice/practice_pilot.h"

namespace corvenna {

/// Who has a pilot, as his last menu tells.
enum class ServiceHeard { None, Ground, Tower, Departure, Approach, Artcc, Advisory };

/// Read out of a text; what does not tell leaves the service as it is.
ServiceHeard ReadService(std::string_view text, ServiceHeard before);

/// What one pilot has heard and done.
struct PilotLog {
    struct Spot {
        std::chrono::milliseconds Time{0};
        AircraftState Where;
        ServiceHeard On = ServiceHeard::None;
    };
    struct Heard {
        std::chrono::milliseconds Time{0};
        AircraftState Where;
        std::string Text;
    };

    std::string Name;
    std::vector<Spot> Track;   ///< only in a log that keeps tracks
    std::vector<Heard> Texts;  ///< likewise: those that were meant for him

    bool Present = true;  ///< in the session
    bool Unruly = false;  ///< behaves badly on purpose
    ServiceHeard On = ServiceHeard::None;
    AircraftState Where;
    bool Served = false;  ///< under service at least once
    bool Airborne = false;
    bool Asks = false;  ///< waits for something to be offered or said
    std::string LastText;
    std::chrono::milliseconds CameAt{0};
    std::optional<std::chrono::milliseconds> Unanswered;  ///< when he first typed what nobody has answered
    std::chrono::milliseconds MovedAt{0};  ///< when he last was elsewhere, or changed between air and ground
    Place StandsAt;
};

struct PracticeTotals {
    int Pilots = 0;     ///< who came
    int Served = 0;     ///< those of them who came under service
    int Completed = 0;  ///< flew their flight to its end
    int Clearances = 0;
    int Vectors = 0;  ///< headings assigned
    int Handoffs = 0;
    int Landings = 0;
    int GoArounds = 0;
};

/// A pilot with whom something is wrong at the end.
struct PilotTrouble {
    std::string Name;
    std::string What;
};

/// Writes down what the pilots of a practice hear and do, and finds out who is stuck. Fed by the events of
/// PracticeTraffic. One thread.
class PracticeLog {
  public:
    /// On the ground: how long one may stand still, and for how long at most when meanwhile others take off
    /// and land: then he waits for his turn. In the air: how long one may fly.
    static constexpr std::chrono::minutes LongestStand{15};
    static constexpr std::chrono::minutes LongestTurn{45};
    static constexpr std::chrono::minutes LongestFlight{120};
    /// How long the controller may leave an answer of somebody who expects to hear something.
    static constexpr std::chrono::minutes LongestSilence{3};

    /// fieldFeet: the height of the airport. A log that keeps tracks keeps MostSpots of them in all.
    PracticeLog(double fieldFeet, bool keepsTracks) : fieldFeet_(fieldFeet), keepsTracks_(keepsTracks) {}
    static constexpr std::size_t MostSpots = 500'000;

    void Came(const PracticePilot& pilot, std::chrono::milliseconds now);
    void Left(std::string_view name, bool completed);
    void Heard(std::string_view name, std::string_view text, std::chrono::milliseconds now);
    void Said(std::string_view name, std::string_view text, std::chrono::milliseconds now);
    void Flies(const PracticePilot& pilot, std::chrono::milliseconds now);

    PracticeTotals Totals() const { return totals_; }

    /// Those in the session with whom something is wrong now, by name. Who behaves badly on purpose is told
    /// apart: with him something may well be wrong.
    std::vector<PilotTrouble> Troubles(std::chrono::milliseconds now) const;
    std::vector<PilotTrouble> UnrulyTroubles(std::chrono::milliseconds now) const;

    /// Everybody who is in the session, and in a log that keeps tracks also those who were.
    const std::map<std::string, PilotLog, std::less<>>& Pilots() const { return pilots_; }

    /// Something that is worth a line; may be missing.
    std::function<void(std::string_view name, std::string_view what)> Remarkable;

  private:
    PilotLog* Find(std::string_view name);
    void CountInstructions(const PilotLog& log, std::string_view text);
    void NoteMovement(PilotLog& log, std::chrono::milliseconds now);
    void KeepTrack(PilotLog& log, std::chrono::milliseconds now);
    std::vector<PilotTrouble> TroublesOf(bool unruly, std::chrono::milliseconds now) const;
    std::string WhatIsWrong(const PilotLog& log, std::chrono::milliseconds now) const;
    void Remark(std::string_view name, std::string_view what) const;

    double fieldFeet_;
    bool keepsTracks_;
    std::size_t spots_ = 0;
    std::chrono::milliseconds runwayUsedAt_{0};
    PracticeTotals totals_;
    std::map<std::string, PilotLog, std::less<>> pilots_;
};

}  // namespace corvenna
