#pragma once

#include <gmock/gmock.h>

#include <string>
#include <string_view>
#include <vector>

#include "support/test_field.h"

namespace corvenna {

/// "N1" on the Tower frequency of "Test Field", beside runway 16 (not on it), with whoever a test adds.
class TowerScene {
  public:
    explicit TowerScene(std::string_view phase, std::uint8_t flightRules = Vfr) {
        Adds("N1", phase, flightRules);
    }

    /// Another pilot of the Tower, at the same place.
    PlayerRecord& Adds(std::string_view name, std::string_view phase, std::uint8_t flightRules = Vfr) {
        Field.OnFrequency(name, S.TowerFrequency, phase, flightRules);
        Field.Place(name, 340, 1, 0);
        return Field.Pilot(name);
    }

    PlayerRecord& N1() { return Field.Pilot("N1"); }

    /// "N1" where he is, so many feet above the runway.
    void IsAt(int feetAboveRunway) { N1().Altitude = S.RunwayElevation + feetAboveRunway; }

    /// "N1" in a quadrant, so many miles from the threshold and so many feet above the runway.
    void IsIn(std::string_view quadrant, int nauticalMiles, int feetAboveRunway) {
        Field.Place("N1", BearingOf(quadrant), nauticalMiles, feetAboveRunway);
    }

    /// "N1" reads this text and types a digit; then comes the tick.
    void Answers(std::string_view text, std::string_view digit) {
        N1().MenuText = text;
        Field.Types("N1", digit);
        Field.Tick();
    }

    std::vector<std::string> TakeoffQueue() const { return Names(S.TakeoffQueue); }
    std::vector<std::string> LandingQueue() const { return Names(S.LandingQueue); }

    void QueueForTakeoff(std::string_view name) { S.TakeoffQueue.Add(std::string(name)); }
    void QueueForLanding(std::string_view name) { S.LandingQueue.Add(std::string(name)); }

    TestField Field;
    Station& S = Field.S;

  private:
    static std::vector<std::string> Names(const SpareList<std::string>& queue) {
        return {queue.Valid().begin(), queue.Valid().end()};
    }

    /// Degrees, for a runway heading of 160.
    static int BearingOf(std::string_view quadrant) {
        if (quadrant == "north") return 160;
        if (quadrant == "northeast") return 205;
        if (quadrant == "northwest") return 115;
        if (quadrant == "east") return 250;
        if (quadrant == "west") return 70;
        if (quadrant == "southeast") return 295;
        if (quadrant == "southwest") return 25;
        return 340;  // south
    }
};

/// What a turn left in the pilot's record.
struct Outcome {
    std::string Text;
    std::string Phase;
    std::string Frequency;
    int Rules = Vfr;
    int Choice = 0;

    bool operator==(const Outcome&) const = default;
};

inline std::ostream& operator<<(std::ostream& out, const Outcome& o) {
    return out << "\n  text      \"" << o.Text << "\"\n  phase     \"" << o.Phase << "\"\n  frequency \""
               << o.Frequency << "\"\n  rules     " << o.Rules << "\n  choice    " << o.Choice;
}

inline Outcome OutcomeOf(const PlayerRecord& pilot) {
    return {pilot.MenuText, pilot.Phase, pilot.TunedFrequency, pilot.FlightRules, pilot.Choice};
}

inline constexpr std::string_view Tower = "118.3";
inline constexpr std::string_view Ground = "121.9";
inline constexpr std::string_view ApproachLabel = "124.2";
inline constexpr std::string_view Artcc = "Air Route Traffic Control Center";

inline constexpr std::uint8_t BothRules[] = {Vfr, Ifr};

/// The pilot still has the Tower's frequency.
inline Outcome OnTowerWith(std::string_view text, std::string_view phase, int rules) {
    return {std::string(text), std::string(phase), std::string(Tower), rules};
}

/// The pilot is out of the Tower's hands, with last words.
inline Outcome Terminated(std::string_view text) { return {std::string(text), "", "", Vfr}; }

}  // namespace corvenna
