#include <gtest/gtest.h>

#include <algorithm>
#include <exception>
#include <limits>
#include <random>
#include <set>
#include <string>

#include "airspace/plain_tower.h"
#include "airspace/tower_control.h"
#include "station/geometry.h"
#include "station/runway_scan.h"

namespace corvenna {
namespace {

constexpr std::string_view Phases[] = {
    "",
    "Taxiing to runway",
    "Acknowledge Hold short",
    "Holding short in runway",
    "Acknowledge Takeoff",
    "Takingoff",
    "Acknowledge contact departure",
    "Contact Departure",
    "Acknowledge contact ARTCC (DEPARTURE)",
    "Contact ARTCC (DEPARTURE)",
    "Approach",
    "Acknowledge enter traffic pattern",
    "Flying traffic pattern",
    "Acknowledge Landing",
    "Landing",
    "Acknowledge going around",
    "Going Around",
    "Acknowledge contact approach",
    "Contact Approach",
    "Acknowledge contact ARTCC (GO AROUND)",
    "Contact ARTCC (GO AROUND)",
    "Acknowledge contact ground",
    "Contact Ground",
    "Contact tower",
    "no such phase",
};

/// Chance with a seed. The same seed gives the same pictures.
class Dice {
  public:
    explicit Dice(std::uint64_t seed) : engine_(seed) {}

    int Int(int low, int high) {
        return low + static_cast<int>(engine_() % static_cast<std::uint64_t>(high - low + 1));
    }
    double Real(double low, double high) {
        return low + (high - low) * (static_cast<double>(engine_() >> 11) / 9007199254740992.0);
    }
    bool Once(int in) { return Int(1, in) == 1; }
    template <class T>
    T Of(std::initializer_list<T> values) {
        return values.begin()[Int(0, static_cast<int>(values.size()) - 1)];
    }
    std::string_view Phase() { return Phases[Int(0, std::size(Phases) - 1)]; }

  private:
    std::mt19937_64 engine_;
};

/// An airport anywhere: both hemispheres, near the poles, at the 180th meridian, with a variation.
void MakeField(Station& s, Dice& dice) {
    s.AirportName = "Test Field";
    s.GroundFrequency = "121.9";
    s.TowerFrequency = "118.3";
    s.ApproachFrequency = dice.Once(3) ? "" : "124.2";
    s.ArtccFrequency = "Centre";
    s.ActiveRunway = "16";
    s.RunwayLatitude = dice.Of({dice.Real(-89.9, 89.9), 47.01, -33.9, 0.0, 89.99, -89.99, 90.0, -90.0});
    s.RunwayLongitude = dice.Of({dice.Real(-180, 180), -122.0, 151.2, 0.0, 179.999, -179.999, 180.0});
    s.AirportLatitude = s.RunwayLatitude;
    s.AirportLongitude = s.RunwayLongitude;
    s.RunwayElevation = dice.Of({0, 400, -200, 5300});
    s.RunwayLength = dice.Of({0, 2500, 9000, 32767, 32768, 50000, -1});
    s.RunwayWidth = dice.Of({0, 1, 75, 149, 150, 151, 2000, 20000, -1});
    s.RunwayHeading =
        static_cast<std::int16_t>(dice.Of({0, 360, 1, 359, 29, 30, 31, 160, 330, dice.Int(0, 360)}));
    ComputeSectorCentres(s);
    const auto variation = static_cast<std::int16_t>(dice.Of({0, 3641, -3641, dice.Int(-32768, 32767)}));
    for (std::int16_t& entry : s.MagVarGrid) entry = variation;
}

/// Near the runway's edges: its sides within 4 ft, its end within 8.
GeoPoint OnRunway(const Station& s, Dice& dice) {
    const double length = std::min(std::max(s.RunwayLength, 100), 32767);
    const double feet = dice.Once(3) ? length + dice.Real(-8, 8) : dice.Real(0, length);
    const GeoPoint axis = ProjectNmExact(s.RunwayLatitude, s.RunwayLongitude, s.SectorNorth, feet / 6080);
    const double aside = dice.Once(3) ? 0 : std::max(s.RunwayWidth, 0) / 2.0 + dice.Real(-4, 4);
    const double side = dice.Once(2) ? 90 : -90;
    return ProjectNmExact(axis.Latitude, axis.Longitude, s.SectorNorth + side, aside / 6080);
}

/// Along the edges of the runway's sectors, at 2, 9 and 15 miles, and anywhere else.
GeoPoint AroundRunway(const Station& s, Dice& dice) {
    const double bearing = s.SectorNorth + dice.Of({0.0, 29.0, 29.5, 30.0, 30.5, -29.5, -30.0, -30.5, -31.0,
                                                    180.0, 150.0, 210.0, dice.Real(0, 360)});
    double miles = dice.Of({0.0, 0.1, 0.3, 1.49, 1.51, 2.0, 5.389, 5.4, 8.49, 8.51, 9.0, 14.49, 14.51, 15.0,
                            15.49, 15.51, 16.0, dice.Real(0, 20)});
    if (dice.Once(50)) miles = dice.Real(0, 10800);
    return ProjectNmExact(s.RunwayLatitude, s.RunwayLongitude, bearing, miles);
}

void PlacePilot(const Station& s, PlayerRecord& pilot, Dice& dice) {
    const GeoPoint place = dice.Once(3) ? OnRunway(s, dice) : AroundRunway(s, dice);
    pilot.Latitude = place.Latitude;
    pilot.Longitude = place.Longitude;
    if (dice.Once(30)) {
        pilot.Latitude = s.RunwayLatitude;
        pilot.Longitude = s.RunwayLongitude;
    }
    pilot.Altitude =
        s.RunwayElevation + dice.Of({-5, 0, 0, 0, 100, 299, 300, 301, 1000, 20000, dice.Int(0, 600)});
    if (dice.Once(100)) {
        pilot.Altitude =
            dice.Of({std::numeric_limits<std::int32_t>::min(), std::numeric_limits<std::int32_t>::max()});
    }
    pilot.Heading = NormalizeHeading(
        s.SectorNorth + dice.Of({0, -9, -10, -11, 9, 10, 11, 180, -s.SectorNorth, dice.Int(0, 360)}));
}

std::string Name(Dice& dice) { return dice.Once(20) ? "" : "N" + std::to_string(dice.Int(1, 6)); }

/// Pilots, some of the same name, and queues with some of them.
void MakeTraffic(Station& s, Dice& dice) {
    ClearTraffic(s);
    for (int i = dice.Int(1, 5); i > 0; --i) {
        PlayerRecord pilot;
        pilot.Name = Name(dice);
        pilot.Id = i;
        pilot.Role = dice.Of({Role::Player, Role::Player, Role::Observer, Role::Unknown});
        pilot.InService = UnderService;
        pilot.TunedFrequency = s.TowerFrequency;
        pilot.FlightRules = static_cast<std::uint8_t>(dice.Once(40) ? 2 : dice.Int(0, 1));
        pilot.Phase = dice.Phase();
        if (dice.Once(3))
            pilot.Phase = dice.Of({"Landing", "Takingoff", "Holding short in runway", "Taxiing to runway"});
        PlacePilot(s, pilot, dice);
        s.Players.Add(pilot);
    }
    for (int i = dice.Of({0, 0, 1, 2}); i > 0; --i) s.TakeoffQueue.Add(Name(dice));
    for (int i = dice.Of({0, 0, 1, 2}); i > 0; --i) s.LandingQueue.Add(Name(dice));
}

/// A turn of somebody, whose error is told as text.
std::string Serve(Station& s, std::int32_t place, void (*serve)(Station&, PlayerRecord&)) {
    try {
        UpdatePilotGeometry(s, s.Players[place]);
        serve(s, s.Players[place]);
        return "";
    } catch (const std::exception& e) {
        return e.what();
    }
}

template <class Element>
bool SameList(const SpareList<Element>& a, const SpareList<Element>& b) {
    if (a.Count() != b.Count()) return false;
    for (std::int32_t i = 0; i <= a.Count(); ++i) {
        if (!(a[i] == b[i])) return false;
    }
    return true;
}

void ShowPilot(const Station& s, std::int32_t place) {
    const PlayerRecord& p = s.Players[place];
    ADD_FAILURE() << '"' << p.Name << "\" " << p.Phase << " | " << p.MenuText << " | " << p.TunedFrequency
                  << " choice " << int{p.Choice} << " rules " << int{p.FlightRules} << " heading "
                  << p.Heading << " queues " << s.TakeoffQueueCount() << " " << s.LandingQueueCount();
}

/// What the pictures were about, so that a test of nothing is noticed.
struct Tally {
    int Scans = 0;
    int Occupied = 0;
    int Errors = 0;
    std::set<std::string> Steps;  // "rules, phase from > phase to", by position or by choice
};

std::string Step(const PlayerRecord& before, const PlayerRecord& after) {
    return std::to_string(before.FlightRules) + (before.Choice == 0 ? " " : " answers ") + before.Phase +
           " > " + after.Phase;
}

/// Four ticks of the same traffic through both forms, with digits and jumps between them.
void PlayPicture(Station& fast, Station& slow, Dice& dice, Tally& tally) {
    for (int tick = 0; tick < 4; ++tick) {
        for (std::int32_t i = 0; i < fast.PlayerCount(); ++i) {
            PlayerRecord& pilot = fast.Players[i];
            const bool occupied = ComputeRunwayOccupied(fast, pilot);
            ASSERT_EQ(occupied, plain::ComputeRunwayOccupied(fast, pilot));
            const PlayerRecord before = pilot;
            const std::string error = Serve(fast, i, &TowerControl);
            ASSERT_EQ(error, Serve(slow, i, &plain::TowerControl));
            if (!SameList(fast.Players, slow.Players) || !SameList(fast.TakeoffQueue, slow.TakeoffQueue) ||
                !SameList(fast.LandingQueue, slow.LandingQueue)) {
                ShowPilot(fast, i);
                ShowPilot(slow, i);
                FAIL();
            }
            ++tally.Scans;
            tally.Occupied += occupied ? 1 : 0;
            tally.Errors += error.empty() ? 0 : 1;
            tally.Steps.insert(Step(before, pilot));

            if (pilot.Choice == 0 && dice.Once(2)) pilot.Choice = static_cast<std::uint8_t>(dice.Int(1, 3));
            if (dice.Once(10)) pilot.Choice = 0;
            if (dice.Once(2)) PlacePilot(fast, pilot, dice);
            slow.Players[i] = pilot;
        }
    }
}

TEST(TowerAgainstThePlainForm, BothAgreeOnRandomTraffic) {
    constexpr std::uint64_t seed = 20020611;
    constexpr int fields = 600;
    constexpr int picturesPerField = 100;
    Dice dice(seed);
    Tally tally;
    for (int field = 0; field < fields; ++field) {
        Station fast;
        MakeField(fast, dice);
        Station slow = fast;
        for (int picture = 0; picture < picturesPerField; ++picture) {
            SCOPED_TRACE("seed " + std::to_string(seed) + ", field " + std::to_string(field) + ", picture " +
                         std::to_string(picture));
            MakeTraffic(fast, dice);
            slow.Players = fast.Players;
            slow.TakeoffQueue = fast.TakeoffQueue;
            slow.LandingQueue = fast.LandingQueue;
            PlayPicture(fast, slow, dice, tally);
            if (HasFatalFailure()) return;
        }
    }
    EXPECT_GT(tally.Occupied, tally.Scans / 20);
    EXPECT_GT(tally.Errors, 1000);
    EXPECT_GT(tally.Steps.size(), 250U);
}

}  // namespace
}  // namespace corvenna
