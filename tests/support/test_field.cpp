#include "support/test_field.h"

#include <algorithm>
#include <stdexcept>

#include "link/services.h"
#include "station/geometry.h"
#include "station/replies.h"

namespace corvenna {

TestField::TestField() {
    S.AirportName = "Test Field";
    S.AirportCode = "KTST";
    S.AirportLatitude = 47.0;
    S.AirportLongitude = -122.0;
    S.GroundFrequency = "121.9";
    S.TowerFrequency = "118.3";
    S.ApproachFrequency = "124.2";
    S.ArtccFrequency = "Air Route Traffic Control Center";
    S.ActiveRunway = "16";
    S.RunwayLatitude = 47.01;
    S.RunwayLongitude = -122.0;
    S.RunwayElevation = 400;
    S.RunwayLength = 9000;
    S.RunwayWidth = 150;
    S.RunwayHeading = 160;
    S.RunwayHasIls = -1;
    S.SessionOpen = true;
    S.SessionMaxPlayers = 16;
    S.ControllerId = 1;
    ComputeSectorCentres(S);
}

PlayerRecord& TestField::Enters(std::string_view name, std::string_view role) {
    PlayerRecord pilot;
    pilot.Name = name;
    pilot.Id = S.PlayerCount() + 2;
    pilot.Role = role;
    pilot.Latitude = S.AirportLatitude;
    pilot.Longitude = S.AirportLongitude;
    pilot.Altitude = S.RunwayElevation;
    pilot.AircraftName = UnknownAircraft;
    S.Players.Add(pilot);
    return S.Players[S.PlayerCount() - 1];
}

PlayerRecord& TestField::OnFrequency(std::string_view name, std::string_view frequency,
                                     std::string_view phase, std::uint8_t flightRules) {
    PlayerRecord& pilot = Enters(name);
    pilot.InService = UnderService;
    pilot.TunedFrequency = frequency;
    pilot.Phase = phase;
    pilot.FlightRules = flightRules;
    return pilot;
}

PlayerRecord& TestField::Pilot(std::string_view name) {
    const auto players = S.Players.Valid();
    const auto pilot =
        std::find_if(players.begin(), players.end(), [&](const auto& p) { return p.Name == name; });
    if (pilot == players.end()) throw std::logic_error("no pilot " + std::string(name));
    return *pilot;
}

void TestField::Place(std::string_view name, int bearing, int nauticalMiles, int feetAboveRunway) {
    const GeoPoint place = ProjectNm(S.RunwayLatitude, S.RunwayLongitude, bearing, nauticalMiles);
    PlayerRecord& pilot = Pilot(name);
    pilot.Latitude = place.Latitude;
    pilot.Longitude = place.Longitude;
    pilot.Altitude = S.RunwayElevation + feetAboveRunway;
}

void TestField::Types(std::string_view name, std::string_view text) { ApplyChatReply(S, Pilot(name), text); }

void TestField::Tick(int times) {
    air_.clear();
    for (int i = 0; i < times; ++i) AtcTimer(S, ControllerServices, *this);
}

std::vector<std::string> TestField::Heard(std::string_view name) const {
    std::vector<std::string> texts;
    for (const PlayerRecord& listener : S.Players.Valid()) {
        if (listener.Name != name) continue;
        for (const Transmission& transmission : air_) {
            const auto& audience = transmission.Audience;
            if (std::find(audience.begin(), audience.end(), listener.Id) != audience.end()) {
                texts.push_back(transmission.Text);
            }
        }
    }
    return texts;
}

std::string TestField::LastHeard(std::string_view name) const {
    const auto texts = Heard(name);
    return texts.empty() ? "" : texts.back();
}

void TestField::SendChat(std::string_view /*frequency*/, std::string_view text,
                         std::span<const std::int32_t> audience) {
    air_.push_back({std::string(text), {audience.begin(), audience.end()}});
}

}  // namespace corvenna
