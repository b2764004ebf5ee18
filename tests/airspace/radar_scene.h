#pragma once

#include <gmock/gmock.h>

#include <string>
#include <string_view>

#include "airspace/approach_control.h"
#include "airspace/artcc_control.h"
#include "airspace/radar_phases.h"
#include "station/geometry.h"
#include "support/test_field.h"

namespace corvenna {

/// One pilot, "N1", on a radar frequency of the test field, with his distances given and not flown: tests
/// of single rows call the service itself, so that each threshold can be met exactly.
class RadarScene : public ::testing::Test {
  protected:
    using Service = void (*)(Station&, PlayerRecord&);

    RadarScene(Service service, std::string Station::*frequency) : service_(service) {
        Field.OnFrequency("N1", S.*frequency, "", Ifr);
        At(12, 3000);
    }

    PlayerRecord& N1() { return Field.Pilot("N1"); }

    void Rules(std::uint8_t rules) { N1().FlightRules = rules; }
    void Phase(std::string_view phase) { N1().Phase = phase; }
    void Reads(std::string_view text) { N1().MenuText = text; }
    void Types(std::uint8_t digit) { N1().Choice = digit; }

    /// Whole miles from the airport and feet above the runway.
    void At(int miles, std::int32_t feet) {
        S.DistanceToAirport = static_cast<std::int16_t>(miles);
        N1().Altitude = S.RunwayElevation + feet;
    }

    /// On the side of the runway and at the distance from its threshold, where he really is put.
    void PlacedAt(int bearing, int miles, int feet) {
        Field.Place("N1", bearing, miles, feet);
        UpdateGeometry();
    }
    void UpdateGeometry() { UpdatePilotGeometry(S, N1()); }

    void Serve() { service_(S, N1()); }

    /// Something to forget in each field that a wipe empties. The target has no name, so nobody steers.
    void Remember() {
        N1().AdvisedTraffic = "N7, ";
        N1().AssignedHeading = "123";
        N1().AssignedAltitude = "4567";
        N1().Target = {"", "Waypoint", 1, 2, 3};
    }
    bool VectorsForgotten() {
        return N1().AssignedHeading.empty() && N1().AssignedAltitude.empty() && N1().Target == GeoPoint{};
    }
    bool AllForgotten() { return N1().AdvisedTraffic.empty() && VectorsForgotten(); }
    bool NothingForgotten() {
        return N1().AdvisedTraffic == "N7, " && N1().AssignedHeading == "123" &&
               N1().AssignedAltitude == "4567" && N1().Target == GeoPoint{"", "Waypoint", 1, 2, 3};
    }

    /// A reset pilot is as one whom nobody has greeted.
    bool IsReset() { return N1().InService == OpeningDialogue && N1().TunedFrequency.empty(); }

    void AddMountain(double latitude, double longitude, std::int32_t feet) {
        S.Mountains.insert(S.Mountains.begin() + S.MountainCount,
                           {"Mountain", "Mountain", latitude, longitude, feet});
        ++S.MountainCount;
    }

    TestField Field;
    Station& S{Field.S};

  private:
    Service service_;
};

class OnApproach : public RadarScene {
  protected:
    OnApproach() : RadarScene(&ApproachControl, &Station::ApproachFrequency) {}
};

class OnArtcc : public RadarScene {
  protected:
    OnArtcc() : RadarScene(&ArtccControl, &Station::ArtccFrequency) {}
};

}  // namespace corvenna
