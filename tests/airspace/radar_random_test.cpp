#include <fmt/format.h>

#include <random>

#include "airspace/fixes.h"
#include "airspace/radar_scene.h"
#include "airspace/traffic.h"
#include "airspace/vectors.h"
#include "tests/airspace/plain_radar.h"

/// The fast searches are held against the plain ones on random pictures of traffic and terrain, drawn so
/// that the thresholds are met often. Everything that the services can write is compared.
namespace corvenna {
namespace {

constexpr std::uint32_t Seed = 20021;
constexpr int Pictures = 60000;

class Draw {
  public:
    explicit Draw(std::uint32_t seed) : random_(seed) {}

    int Whole(int low, int high) { return std::uniform_int_distribution<int>(low, high)(random_); }
    double Real(double low, double high) {
        return std::uniform_real_distribution<double>(low, high)(random_);
    }
    bool OneIn(int n) { return Whole(1, n) == 1; }

    template <class Value, std::size_t N>
    Value Of(const Value (&values)[N]) {
        return values[static_cast<std::size_t>(Whole(0, static_cast<int>(N) - 1))];
    }

  private:
    std::mt19937 random_;
};

struct Place {
    double Latitude;
    double Longitude;
};

double ToFiveDecimals(double degrees) { return std::round(degrees * 1e5) / 1e5; }

/// Both hemispheres, the poles, the 180th meridian, and all between.
Place AnyAirport(Draw& draw) {
    static constexpr Place Corners[] = {{0, 0},          {47, -122},       {-33.9, 151.2},    {89.97, 10},
                                        {-89.98, -170},  {90, 0},          {-90, 180},        {10, 179.99},
                                        {-10, -179.995}, {0, 180},         {52, 0.003},       {-0.01, -0.01},
                                        {0, -180},       {64.5, -179.998}, {89.9999, 179.999}};
    if (draw.OneIn(3)) return {ToFiveDecimals(draw.Real(-90, 90)), ToFiveDecimals(draw.Real(-180, 180))};
    return draw.Of(Corners);
}

/// A place at a distance that some threshold hangs on, or at any.
Place Around(Draw& draw, const Place& centre) {
    static constexpr double Miles[] = {0,      0.4999, 0.5,    0.5001,  1,        1.4999,  1.5,     1.5001,
                                       2,      4,      4.4999, 4.49999, 4.5,      4.5001,  4.50001, 5,
                                       6.999,  7,      7.4999, 9.5,     14.4999,  14.5,    15.5,    19.499,
                                       19.501, 20.5,   30,     99.499,  100.4999, 199.499, 199.501};
    const double miles = draw.OneIn(3) ? draw.Real(0, 6) : draw.Of(Miles);
    const double bearing = draw.OneIn(2) ? draw.Whole(0, 72) * 5 : draw.Real(0, 360);
    const GeoPoint place = ProjectNmExact(centre.Latitude, centre.Longitude, bearing, miles);
    Place result{place.Latitude, place.Longitude};
    if (draw.OneIn(200)) {  // exactly opposite
        result = {-centre.Latitude, centre.Longitude > 0 ? centre.Longitude - 180 : centre.Longitude + 180};
    }
    if (draw.OneIn(200) && result.Longitude < 0)
        result.Longitude += 360;  // the same meridian, by another name
    if (draw.OneIn(300)) result = {draw.Real(-90, 90), draw.Real(-180, 180)};
    return InMagVarGrid(result.Latitude, result.Longitude) ? result : centre;  // others the pump refuses
}

std::vector<std::vector<std::int16_t>> VariationTables(Draw& draw) {
    std::vector<std::vector<std::int16_t>> tables(6, std::vector<std::int16_t>(MagVarGridSize));
    std::fill(tables[1].begin(), tables[1].end(), std::int16_t{3458});    // 18 degrees
    std::fill(tables[2].begin(), tables[2].end(), std::int16_t{-12345});  // -67 degrees
    std::fill(tables[3].begin(), tables[3].end(), std::int16_t{183});     // 1 degree
    for (std::size_t i = 4; i < 6; ++i) {
        for (std::int16_t& value : tables[i]) value = static_cast<std::int16_t>(draw.Whole(-32768, 32767));
    }
    return tables;
}

void DrawMountains(Draw& draw, Station& s) {
    s.Mountains.clear();
    s.MountainCount = draw.OneIn(4) ? 0 : draw.Whole(1, 12);
    for (int i = 0; i < s.MountainCount; ++i) {
        Place place = Around(draw, {s.RunwayLatitude, s.RunwayLongitude});
        if (draw.OneIn(3)) {
            const GeoPoint far = ProjectNmExact(s.RunwayLatitude, s.RunwayLongitude,
                                                s.SectorSouth + draw.Whole(-3, 3) * 22.5, draw.Real(0, 40));
            place = {far.Latitude, far.Longitude};
        }
        static constexpr std::int32_t Heights[] = {-500, 400, 401, 2400, 5000, 8399, 8401, 14000};
        s.Mountains.push_back({"M", "Mountain", place.Latitude, place.Longitude, draw.Of(Heights)});
    }
    s.Mountains.emplace_back();
}

void DrawStation(Draw& draw, Station& s, const std::vector<std::vector<std::int16_t>>& tables) {
    const Place airport = AnyAirport(draw);
    const Place runway = draw.OneIn(3) ? airport : Around(draw, airport);
    s.AirportLatitude = airport.Latitude;
    s.AirportLongitude = airport.Longitude;
    s.RunwayLatitude = runway.Latitude;
    s.RunwayLongitude = runway.Longitude;
    static constexpr std::int32_t Elevations[] = {0, 400, -1200, -2000, 14000};
    s.RunwayElevation = draw.Of(Elevations);
    s.RunwayHeading = static_cast<std::int16_t>(draw.OneIn(4) ? 0 : draw.Whole(0, 360));
    s.RunwayHasIls = static_cast<std::int16_t>(draw.Whole(-1, 1));
    if (draw.OneIn(5)) s.ApproachFrequency.clear();
    s.MagVarGrid = tables[static_cast<std::size_t>(draw.Whole(0, 5))];
    s.HighestTerrain = draw.Whole(0, 15000);
    ComputeSectorCentres(s);
    DrawMountains(draw, s);
}

void DrawPosition(Draw& draw, const Station& s, PlayerRecord& pilot, const Place& cluster) {
    static constexpr std::int32_t Feet[] = {0,    300,  301,  2400, 2999,  3000,  3001,  3300,
                                            5000, 5001, 6001, 9999, 10000, 12999, 13000, 60000};
    static constexpr std::int16_t Headings[] = {0,   360, 30,  60,  90,  120, 150,  180,  210,
                                                240, 270, 300, 330, 359, 1,   -180, 720,  721,
                                                800, -1,  450, 365, 45,  135, 225,  -359, 32767};
    const Place place = Around(draw, cluster);
    pilot.Latitude = place.Latitude;
    pilot.Longitude = place.Longitude;
    pilot.Altitude = s.RunwayElevation + draw.Of(Feet);
    if (draw.OneIn(500)) pilot.Altitude = std::numeric_limits<std::int32_t>::max();
    if (draw.OneIn(500)) pilot.Altitude = std::numeric_limits<std::int32_t>::min();
    pilot.Heading = draw.OneIn(2) ? draw.Of(Headings) : static_cast<std::int16_t>(draw.Whole(0, 360));
}

/// A chain built for him, or a fix with assigned values of its own.
void DrawTarget(Draw& draw, Station& s, PlayerRecord& pilot) {
    static constexpr const char* Names[] = {"Left Downwind Leg - west",
                                            "Right Downwind Leg - east",
                                            "Left Base Leg - southwest",
                                            "Right Base Leg - southeast",
                                            "Final Approach - south",
                                            "Final Approach",
                                            "Somewhere"};
    static constexpr const char* Quadrants[] = {"",          "west",      "east", "south",
                                                "southwest", "southeast", "north"};
    if (draw.OneIn(3)) return;
    if (draw.OneIn(2)) {
        UpdatePilotGeometry(s, pilot);
        BuildPatternFixes(s, pilot, "Approach");
        return;
    }
    const Place fix = Around(draw, {s.RunwayLatitude, s.RunwayLongitude});
    pilot.Target = {draw.Of(Names), "Waypoint", fix.Latitude, fix.Longitude, draw.Whole(0, 9000)};
    pilot.Quadrant = draw.Of(Quadrants);
    const auto heading =
        BearingTo(s, pilot.Latitude, pilot.Longitude, pilot.Target.Latitude, pilot.Target.Longitude);
    pilot.AssignedHeading = std::to_string(heading + (draw.OneIn(2) ? 0 : draw.Whole(-12, 12)));
    static constexpr const char* Altitudes[] = {"2400", "4400", "4401", "400", "6000", "9000", "-3000"};
    pilot.AssignedAltitude = draw.Of(Altitudes);
    if (draw.OneIn(2)) pilot.MenuText = "heading " + pilot.AssignedHeading + ".";
}

void DrawPlayers(Draw& draw, Station& s) {
    static constexpr const char* Names[] = {"N1",   "N12",   "n12",    "N2", "12",
                                            "GN27", "D-ABC", "d-abcd", "",   "N1"};
    static constexpr const char* Advised[] = {"", "", "N12, ", "GN27, N2, ", "d-ABCD, n1, "};
    static constexpr const char* Phases[] = {
        "",        "Departure",         "Approach",         "Missed Approach", "En Route",
        "Descent", "Contact Departure", "Contact Approach", "Contact tower",   "Acknowledge contact tower"};
    s.Players.Clear();
    const Place cluster = Around(draw, {s.AirportLatitude, s.AirportLongitude});
    const int count = draw.Whole(1, 9);
    for (int i = 0; i < count; ++i) {
        PlayerRecord pilot;
        pilot.Name = draw.Of(Names);
        pilot.Id = i + 2;
        pilot.Role = draw.OneIn(6) ? Role::Observer : Role::Player;
        pilot.AircraftName = draw.OneIn(2) ? UnknownAircraft : "Boeing 737-400";
        DrawPosition(draw, s, pilot, cluster);
        pilot.InService = UnderService;
        pilot.TunedFrequency = draw.OneIn(2) ? s.ArtccFrequency : s.ApproachFrequency;
        pilot.FlightRules = draw.OneIn(3) ? Vfr : Ifr;
        pilot.Phase = draw.Of(Phases);
        pilot.AdvisedTraffic = draw.Of(Advised);
        if (draw.OneIn(8)) pilot.Choice = static_cast<std::uint8_t>(draw.Whole(1, 3));
        DrawTarget(draw, s, pilot);
        s.Players.Add(pilot);
    }
}

class Recorder final : public ChatSender {
  public:
    std::string Sent;

  private:
    void SendChat(std::string_view frequency, std::string_view text,
                  std::span<const std::int32_t> audience) override {
        fmt::format_to(std::back_inserter(Sent), "{}|{}|{}\n", frequency, text, audience.size());
    }
};

template <auto Serve>
void AfterPlainGeometry(Station& station, PlayerRecord& pilot) {
    plain::UpdatePilotGeometry(station, pilot);
    Serve(station, pilot);
}

constexpr FrequencyService Fast[] = {{&Station::ApproachFrequency, &ApproachControl},
                                     {&Station::ArtccFrequency, &ArtccControl}};
constexpr FrequencyService Plain[] = {
    {&Station::ApproachFrequency, &AfterPlainGeometry<&plain::ApproachControl>},
    {&Station::ArtccFrequency, &AfterPlainGeometry<&plain::ArtccControl>}};

/// A tick, or each pilot's service called by itself, outside a pass.
void ServeAll(Station& station, std::span<const FrequencyService> services, bool inPass, Recorder& recorder) {
    try {
        if (inPass) {
            AtcTimer(station, services, recorder);
            return;
        }
        for (PlayerRecord& pilot : station.Players.Valid()) {
            UpdatePilotGeometry(station, pilot);
            for (const FrequencyService& service : services) {
                if (pilot.TunedFrequency != station.*service.Label) continue;
                service.Serve(station, pilot);
                break;
            }
        }
    } catch (const std::exception& error) {
        recorder.Sent += error.what();
    }
}

std::string Words(const PlayerRecord& p) {
    return fmt::format("{} {} {} {} heading {} '{}' advised '{}' assigned {} {} target '{}' {} {} {} {} '{}'",
                       p.Name, p.Latitude, p.Longitude, p.Altitude, p.Heading, p.MenuText, p.AdvisedTraffic,
                       p.AssignedHeading, p.AssignedAltitude, p.Target.Name, p.Target.Latitude,
                       p.Target.Longitude, p.Target.Altitude, p.Quadrant, p.Phase);
}

void ExpectSame(const Station& fast, const Station& plain) {
    for (std::int32_t i = 0; i < fast.PlayerCount(); ++i) {
        EXPECT_EQ(fast.Players[i], plain.Players[i]) << Words(fast.Players[i]) << "\n"
                                                     << Words(plain.Players[i]);
    }
    EXPECT_EQ(fast.LeftDownwindFix, plain.LeftDownwindFix);
    EXPECT_EQ(fast.RightDownwindFix, plain.RightDownwindFix);
    EXPECT_EQ(fast.LeftBaseFix, plain.LeftBaseFix);
    EXPECT_EQ(fast.RightBaseFix, plain.RightBaseFix);
    EXPECT_EQ(fast.FinalFix, plain.FinalFix);
}

TEST(RandomPictures, TheFastServicesDoWhatThePlainOnesDo) {
    Draw draw(Seed);
    const auto tables = VariationTables(draw);
    TestField field;
    Station& fast = field.S;
    Station plain = fast;
    int called = 0;
    int steered = 0;
    for (int picture = 0; picture < Pictures; ++picture) {
        SCOPED_TRACE(fmt::format("seed {}, picture {}", Seed, picture));
        if (picture % 8 == 0) {
            fast.ApproachFrequency = "124.2";
            DrawStation(draw, fast, tables);
            plain = fast;
        }
        if (picture % 8 == 4) {  // other mountains behind the services' back
            DrawMountains(draw, fast);
            plain.Mountains = fast.Mountains;
            plain.MountainCount = fast.MountainCount;
        }
        DrawPlayers(draw, fast);
        plain.Players = fast.Players;
        plain.LeftDownwindFix = fast.LeftDownwindFix;
        plain.RightDownwindFix = fast.RightDownwindFix;
        plain.LeftBaseFix = fast.LeftBaseFix;
        plain.RightBaseFix = fast.RightBaseFix;
        plain.FinalFix = fast.FinalFix;
        for (int tick = 0; tick < 2; ++tick) {
            const bool inPass = !draw.OneIn(4);
            Recorder fastSends, plainSends;
            ServeAll(fast, Fast, inPass, fastSends);
            ServeAll(plain, Plain, inPass, plainSends);
            ExpectSame(fast, plain);
            EXPECT_EQ(fastSends.Sent, plainSends.Sent);
            called += fastSends.Sent.find("raffic is") != std::string::npos;
            steered += fastSends.Sent.find("heading") != std::string::npos;
            if (testing::Test::HasFailure()) return;
            for (std::int32_t i = 0; i < fast.PlayerCount(); ++i) {  // they fly on
                if (draw.OneIn(2)) continue;
                DrawPosition(draw, fast, fast.Players[i],
                             {fast.Players[i].Latitude, fast.Players[i].Longitude});
                plain.Players[i].Latitude = fast.Players[i].Latitude;
                plain.Players[i].Longitude = fast.Players[i].Longitude;
                plain.Players[i].Altitude = fast.Players[i].Altitude;
                plain.Players[i].Heading = fast.Players[i].Heading;
            }
        }
    }
    // The pictures are worth nothing if nobody meets anybody in them.
    EXPECT_GT(called, Pictures / 20);
    EXPECT_GT(steered, Pictures / 10);
}

TEST(RandomPictures, TheFastGeometryIsThePlainOne) {
    Draw draw(Seed + 1);
    const auto tables = VariationTables(draw);
    Station s = TestField().S;
    for (int picture = 0; picture < Pictures; ++picture) {
        SCOPED_TRACE(fmt::format("seed {}, picture {}", Seed + 1, picture));
        if (picture % 16 == 0) DrawStation(draw, s, tables);
        PlayerRecord fast;
        DrawPosition(draw, s, fast, {s.RunwayLatitude, s.RunwayLongitude});
        static constexpr const char* Quadrants[] = {"", "north", "south", "east", "southwest", "nowhere"};
        fast.Quadrant = draw.Of(Quadrants);
        PlayerRecord plain = fast;
        UpdatePilotGeometry(s, fast);
        const std::tuple numbers{s.DistanceToAirport, s.DistanceToRunway, s.BearingFromRunway};
        plain::UpdatePilotGeometry(s, plain);
        ASSERT_EQ(numbers, (std::tuple{s.DistanceToAirport, s.DistanceToRunway, s.BearingFromRunway}));
        ASSERT_EQ(fast.Quadrant, plain.Quadrant);
    }
}

TEST(RandomPictures, TheFastTerrainSearchFindsWhatThePlainOneFinds) {
    Draw draw(Seed + 2);
    const auto tables = VariationTables(draw);
    Station s = TestField().S;
    int found = 0;
    for (int picture = 0; picture < Pictures; ++picture) {
        SCOPED_TRACE(fmt::format("seed {}, picture {}", Seed + 2, picture));
        if (picture % 16 == 0) DrawStation(draw, s, tables);
        if (picture % 2 == 0) DrawMountains(draw, s);
        if (s.MountainCount > 0 && draw.OneIn(3)) {  // one field of one mountain
            GeoPoint& mountain = s.Mountains[static_cast<std::size_t>(draw.Whole(0, s.MountainCount - 1))];
            mountain.Altitude += draw.Whole(-2000, 2000);
        }
        s.TickInProgress = draw.OneIn(2);  // another one each time, as far as the search can tell
        ++s.TicksBegun;
        const auto place = [&] {
            GeoPoint point;
            const bool onMountain = s.MountainCount > 0 && draw.OneIn(6);
            const Place at = onMountain ? Place{s.Mountains[0].Latitude, s.Mountains[0].Longitude}
                                        : Around(draw, {s.RunwayLatitude, s.RunwayLongitude});
            point.Latitude = at.Latitude;
            point.Longitude = at.Longitude;
            return point;
        };
        const GeoPoint from = place();
        for (int i = 0; i < 3; ++i) {
            const GeoPoint to = place();
            const std::int32_t altitude = draw.Whole(-1000, 6000);
            const auto expected = plain::RouteTerrainAltitude(s, altitude, from, to);
            ASSERT_EQ(RouteTerrainAltitude(s, altitude, from, to), expected)
                << from.Latitude << " " << from.Longitude << " to " << to.Latitude << " " << to.Longitude;
            found += expected != altitude;
        }
    }
    EXPECT_GT(found, Pictures / 10);
}

/// A whole crowd at once, so that the cells hold more than one and buckets are shared.
TEST(RandomPictures, ACrowdIsServedAlike) {
    Draw draw(Seed + 3);
    const auto tables = VariationTables(draw);
    for (int picture = 0; picture < 12; ++picture) {
        SCOPED_TRACE(fmt::format("seed {}, picture {}", Seed + 3, picture));
        Station fast = TestField().S;
        DrawStation(draw, fast, tables);
        const Place centre{fast.AirportLatitude, fast.AirportLongitude};
        for (int i = 0; i < 600; ++i) {
            PlayerRecord pilot;
            pilot.Name = fmt::format("N{}", i);
            pilot.Id = i + 2;
            pilot.Role = Role::Player;
            const GeoPoint place =
                ProjectNmExact(centre.Latitude, centre.Longitude, draw.Real(0, 360), draw.Real(0, 60));
            pilot.Latitude = place.Latitude;
            pilot.Longitude = place.Longitude;
            pilot.Altitude = fast.RunwayElevation + draw.Whole(0, 12000);
            pilot.Heading = static_cast<std::int16_t>(draw.Whole(0, 360));
            pilot.InService = UnderService;
            pilot.TunedFrequency = draw.OneIn(2) ? fast.ArtccFrequency : fast.ApproachFrequency;
            pilot.FlightRules = draw.OneIn(3) ? Vfr : Ifr;
            pilot.Phase = draw.OneIn(2) ? "Approach" : "";
            fast.Players.Add(pilot);
        }
        Station plain = fast;
        for (int tick = 0; tick < 3; ++tick) {
            Recorder fastSends, plainSends;
            ServeAll(fast, Fast, true, fastSends);
            ServeAll(plain, Plain, true, plainSends);
            ExpectSame(fast, plain);
            ASSERT_EQ(fastSends.Sent, plainSends.Sent);
        }
    }
}

}  // namespace
}  // namespace corvenna
