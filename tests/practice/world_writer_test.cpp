// The practice world is written, scanned as if it were a simulator's, and held against what it was made from.

#include "practice/world_writer.h"

#include <gmock/gmock.h>

#include <cmath>
#include <fstream>
#include <iomanip>
#include <map>
#include <nlohmann/json.hpp>
#include <sstream>

#include "practice/data_files.h"
#include "practice/made_up_airports.h"
#include "practice/magnetic_field.h"
#include "station/geometry.h"
#include "station/numbers.h"
#include "world/errors.h"
#include "world/magnetic_table.h"
#include "world/scenery_scan.h"
#include "world/temp_folder.h"

namespace corvenna {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr double Year = 2002.0;
constexpr double MetresPerFoot = 0.3048;

/// Half a unit of the latitude words, which are a metre, and the rounding to 6 or 5 decimals.
constexpr double NearAirport = 5.1e-6;
constexpr double NearThreshold = 1.01e-5;
/// Taxi networks hang on the reference as it is read, in finer units.
constexpr double NearTaxiPoint = 1.1e-6;

const std::vector<std::int16_t>& TableOf2002() {
    static const auto table = WholeDegreeTable(MagneticField::Load(DataFile("igrf.json")), Year);
    return table;
}

class Onlooker final : public ScanObserver {
  public:
    void Skipped(std::string_view path, std::string_view why) override {
        Complaints.push_back(std::string(path) + ": " + std::string(why));
    }
    std::vector<std::string> Complaints;
};

/// A practice world in a folder of its own, and what a scan finds in it.
class ScannedWorld {
  public:
    explicit ScannedWorld(int madeUp = 0)
        : Table(TableOf2002()),
          Real(LoadPracticeAirports(DataFile("practice-airports.json"))),
          MadeUp(MakeUpAirports(madeUp, 11, Table)) {
        WritePracticeWorld(Folder(), Real, MadeUp, Table);
        LoadMagVarOf(Folder(), S);
        SceneryScan scan(S, Folder(), Looker);
        while (scan.Tick()) {
        }
        for (std::int32_t i = 0; i < scan.Airports().Count(); ++i) {
            Airport airport = scan.Airports().Record(i);
            Found[airport.Icao].push_back(std::move(airport));
        }
    }

    std::string Folder() const { return folder_.Path("world"); }

    const Airport& Scanned(const std::string& code) const {
        static const Airport none;
        const auto found = Found.find(code);
        EXPECT_TRUE(found != Found.end() && found->second.size() == 1) << code;
        return found == Found.end() ? none : found->second.front();
    }

    std::vector<std::int16_t> Table;
    std::vector<PracticeAirport> Real;
    std::vector<PracticeAirport> MadeUp;
    Station S;
    Onlooker Looker;
    std::map<std::string, std::vector<Airport>> Found;

  private:
    TempFolder folder_;
};

// ---- One airport, field by field

/// "121.7", "120": no trailing noughts.
std::string FrequencyLabel(double megahertz) {
    std::ostringstream label;
    label << std::setprecision(7) << megahertz;
    return label.str();
}

std::string LabelOf(const PracticeAirport& facts, PracticeRadio::Kind use) {
    for (const PracticeRadio& radio : facts.Radios) {
        if (radio.Use == use) return FrequencyLabel(radio.Megahertz);
    }
    return "";
}

void ExpectFrequencies(const PracticeAirport& facts, const Airport& scanned) {
    using enum PracticeRadio::Kind;
    const std::string approach = LabelOf(facts, Approach);
    EXPECT_EQ(scanned.GroundFreq, LabelOf(facts, Ground));
    EXPECT_EQ(scanned.TowerFreq, LabelOf(facts, Tower));
    EXPECT_EQ(scanned.ApproachFreq, approach.empty() ? LabelOf(facts, Departure) : approach);
    EXPECT_EQ(scanned.CenterFreq, LabelOf(facts, Centre));
    EXPECT_EQ(scanned.CtafFreq, LabelOf(facts, Ctaf));
}

void ExpectMainRunway(const PracticeAirport& facts, const Station& station, const Airport& scanned) {
    const PracticeRunway* longest = &facts.Runways.front();
    for (const PracticeRunway& runway : facts.Runways) {
        if (runway.LengthFeet > longest->LengthFeet) longest = &runway;
    }
    const PracticeRunwayEnd& end = longest->Ends[0];
    EXPECT_EQ(scanned.MainRunwayId, end.Designator);
    EXPECT_NEAR(scanned.MainRunwayLatitude, end.Latitude, NearThreshold);
    EXPECT_NEAR(scanned.MainRunwayLongitude, end.Longitude, NearThreshold);
    EXPECT_EQ(scanned.MainRunwayElevation, ToWhole<std::int32_t>(end.ElevationMetres / MetresPerFoot));
    EXPECT_EQ(scanned.MainRunwayLength, longest->LengthFeet);
    EXPECT_EQ(scanned.MainRunwayWidth, longest->WidthFeet);
    EXPECT_EQ(scanned.MainRunwayHasIls, end.HasIls ? -1 : 0);
    // Half a degree has no exact word, so it may be rounded either way.
    const double halfWay = std::abs(std::remainder(end.HeadingTrue, 1)) == 0.5 ? 1 : 0;
    const int heading =
        TrueToMagnetic(station, ToWhole<std::int32_t>(end.HeadingTrue), end.Latitude, end.Longitude);
    EXPECT_LE(std::abs(std::remainder(scanned.MainRunwayHeading - heading, 360)), halfWay)
        << scanned.MainRunwayHeading << " for " << heading;
}

void ExpectTaxiPoints(const PracticeAirport& facts, const Airport& scanned) {
    ASSERT_EQ(scanned.TaxiPoints.has_value(), !facts.TaxiPoints.empty());
    ASSERT_EQ(static_cast<std::size_t>(scanned.TaxiPointCount), facts.TaxiPoints.size());
    for (std::size_t i = 0; i < facts.TaxiPoints.size(); ++i) {
        const TaxiPoint& point = scanned.TaxiPoints->at(i);
        EXPECT_EQ(point.Kind, facts.TaxiPoints[i].Kind) << "point " << i;
        EXPECT_NEAR(point.Latitude, facts.TaxiPoints[i].Latitude, NearTaxiPoint) << "point " << i;
        EXPECT_NEAR(point.Longitude, facts.TaxiPoints[i].Longitude, NearTaxiPoint) << "point " << i;
    }
}

void ExpectParking(const PracticeAirport& facts, const Airport& scanned) {
    ASSERT_EQ(scanned.ParkingSpots.has_value(), !facts.Parking.empty());
    ASSERT_EQ(static_cast<std::size_t>(scanned.ParkingSpotCount), facts.Parking.size());
    for (std::size_t i = 0; i < facts.Parking.size(); ++i) {
        const ParkingSpot& spot = scanned.ParkingSpots->at(i);
        EXPECT_EQ(spot.Name, facts.Parking[i].Name);
        EXPECT_EQ(spot.Radius, ToWhole<std::int32_t>(facts.Parking[i].RadiusMetres / MetresPerFoot))
            << spot.Name;
        EXPECT_NEAR(spot.Latitude, facts.Parking[i].Latitude, NearTaxiPoint) << spot.Name;
        EXPECT_NEAR(spot.Longitude, facts.Parking[i].Longitude, NearTaxiPoint) << spot.Name;
    }
}

/// Ties have no names; they keep the number that stands in the file.
void ExpectTaxiPaths(const PracticeAirport& facts, const Airport& scanned) {
    ASSERT_EQ(scanned.TaxiPaths.has_value(), !facts.TaxiPaths.empty());
    ASSERT_EQ(static_cast<std::size_t>(scanned.TaxiPathCount), facts.TaxiPaths.size());
    for (std::size_t i = 0; i < facts.TaxiPaths.size(); ++i) {
        const TaxiPath& path = scanned.TaxiPaths->at(i);
        EXPECT_EQ(path.Kind, facts.TaxiPaths[i].Kind) << "path " << i;
        EXPECT_EQ(path.StartPoint, facts.TaxiPaths[i].Start) << "path " << i;
        EXPECT_EQ(path.EndPoint, facts.TaxiPaths[i].End) << "path " << i;
        EXPECT_EQ(path.Name, path.Kind == TaxiPath::ParkingTie ? "0" : facts.TaxiPaths[i].Name)
            << "path " << i;
    }
}

void ExpectFacts(const PracticeAirport& facts, const Station& station, const Airport& scanned) {
    SCOPED_TRACE(facts.Code);
    EXPECT_EQ(scanned.Name, facts.Name);
    EXPECT_EQ(scanned.Icao, facts.Code);
    EXPECT_NEAR(scanned.Latitude, facts.Latitude, NearAirport);
    EXPECT_NEAR(scanned.Longitude, facts.Longitude, NearAirport);
    ExpectFrequencies(facts, scanned);
    ExpectMainRunway(facts, station, scanned);
    ExpectTaxiPoints(facts, scanned);
    ExpectParking(facts, scanned);
    ExpectTaxiPaths(facts, scanned);
}

TEST(PracticeWorld, AScanGivesBackTheRealAirportsFieldByField) {
    const ScannedWorld world;
    ASSERT_EQ(world.Real.size(), 8u);
    EXPECT_EQ(world.Found.size(), world.Real.size());
    for (const PracticeAirport& facts : world.Real) ExpectFacts(facts, world.S, world.Scanned(facts.Code));
    EXPECT_THAT(world.Looker.Complaints, IsEmpty());
}

TEST(PracticeWorld, TheMainRunwaysAreThoseThatTheFactsExpect) {
    const ScannedWorld world;
    std::ifstream file(DataFile("practice-airports.json"));
    const nlohmann::json document = nlohmann::json::parse(file);
    ASSERT_EQ(document.at("airports").size(), 8u);
    for (const auto& facts : document.at("airports")) {
        const Airport& scanned = world.Scanned(facts.at("icao"));
        const auto& expected = facts.at("expected_main_runway");
        SCOPED_TRACE(scanned.Icao);
        EXPECT_EQ(scanned.MainRunwayId, expected.at("id").get<std::string>());
        EXPECT_NEAR(scanned.MainRunwayLatitude, expected.at("lat"), NearThreshold);
        EXPECT_NEAR(scanned.MainRunwayLongitude, expected.at("lon"), NearThreshold);
        EXPECT_EQ(scanned.MainRunwayElevation, expected.at("elevation_ft").get<int>());
        EXPECT_EQ(scanned.MainRunwayLength, expected.at("length").get<int>());
        EXPECT_EQ(scanned.MainRunwayWidth, expected.at("width").get<int>());
        EXPECT_EQ(scanned.MainRunwayHeading, expected.at("heading_magnetic").get<int>());
    }
}

TEST(PracticeWorld, AScanGivesBackMadeUpAirportsToo) {
    const ScannedWorld world(600);
    EXPECT_EQ(world.Found.size(), world.Real.size() + 600);
    for (const PracticeAirport& facts : world.MadeUp) ExpectFacts(facts, world.S, world.Scanned(facts.Code));
    EXPECT_THAT(world.Looker.Complaints, IsEmpty());
}

TEST(PracticeWorld, TheMagneticTableIsReadAsItWasMadeButForNegativeValuesOneHigher) {
    const ScannedWorld world;
    ASSERT_EQ(world.S.MagVarGrid.size(), world.Table.size());
    int negative = 0;
    for (std::size_t i = 0; i < world.Table.size(); ++i) {
        negative += world.Table[i] < 0;
        ASSERT_EQ(world.S.MagVarGrid[i], world.Table[i] + (world.Table[i] < 0 ? 1 : 0)) << i;
    }
    EXPECT_GT(negative, 10000);
}

TEST(PracticeWorld, ItsLibraryHasAreasOfEveryKind) {
    const ScannedWorld world(1);
    auto areas = ParseSceneryCfg(world.Folder() + "/scenery.cfg");
    std::vector<std::string> locals;
    locals.reserve(areas.size());
    for (const SceneryArea& area : areas) locals.push_back(area.Local);
    EXPECT_THAT(locals,
                ElementsAre("Scenery", "Scenery\\NAmer", "Scenery/SAmer",
                            (std::filesystem::path(world.Folder()) / "Addon Scenery/Eurafrica").string(),
                            "Scenery\\Pacific\\Scenery", "Scenery\\MadeUp", "Scenery\\NotInstalled"));
    FixSceneryPaths(areas, world.Folder(), {});
    EXPECT_EQ(areas.back().Local, "");
    areas.pop_back();
    for (const SceneryArea& area : areas) EXPECT_NE(area.Local, "") << area.Title;
}

TEST(PracticeWorld, HasAnEmptySimulator) {
    const ScannedWorld world;
    EXPECT_EQ(std::filesystem::file_size(world.Folder() + "/fs2002.exe"), 0u);
}

TEST(PracticeWorld, IsNotWrittenIntoAFolderThatHoldsAnything) {
    const TempFolder folder;
    folder.Write("sim/FS2002.EXE", "MZ");
    const std::string simulator = folder.Path("sim");
    EXPECT_EQ(ComplaintOf<FileError>([&] { WritePracticeWorld(simulator, {}, {}, TableOf2002()); }),
              simulator + ": is not empty; name a folder that is new or empty");
    EXPECT_FALSE(folder.Has("sim/scenery.cfg"));
}

TEST(PracticeWorld, TakesAnEmptyFolderAndMakesThoseAboveIt) {
    const TempFolder folder;
    std::filesystem::create_directory(folder.Path("empty"));
    EXPECT_NO_THROW(WritePracticeWorld(folder.Path("empty"), {}, {}, TableOf2002()));
    EXPECT_NO_THROW(WritePracticeWorld(folder.Path("a/b/c"), {}, {}, TableOf2002()));
    EXPECT_TRUE(folder.Has("a/b/c/scenery/magdec.bgl"));
}

TEST(PracticeWorld, AFileInTheWayIsNamed) {
    const TempFolder folder;
    folder.Write("file", "");
    const std::string inside = folder.Path("file/world");
    EXPECT_EQ(ComplaintOf<FileError>([&] { WritePracticeWorld(inside, {}, {}, TableOf2002()); }),
              inside + ": Not a directory");
}

}  // namespace
}  // namespace corvenna
