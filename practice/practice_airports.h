#pragma once

#include <array>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace corvenna {

// Facts about the real airports of the practice world, as practice-airports.json holds them: metres, MHz,
// degrees true. Latitudes and longitudes in degrees, north and east positive.

struct PracticeRunwayEnd {
    std::string Designator;  ///< number without leading zero and suffix letter: "16L"
    int Number = 0;          ///< 1 to 36
    int SuffixCode = 0;      ///< 0 none, 1 L, 2 R, 3 C
    double Latitude = 0;
    double Longitude = 0;
    double ElevationMetres = 0;
    double HeadingTrue = 0;
    bool HasIls = false;
};

struct PracticeRunway {
    int LengthFeet = 0;
    int WidthFeet = 0;
    std::array<PracticeRunwayEnd, 2> Ends;
};

struct PracticeRadio {
    enum class Kind { Ctaf = 4, Ground = 5, Tower = 6, Approach = 8, Departure = 9, Centre = 10 };

    Kind Use = Kind::Ctaf;
    double Megahertz = 0;
};

struct PracticeTaxiPoint {
    int Kind = 0;  ///< 1 ordinary point, 2 holding point beside a runway
    double Latitude = 0;
    double Longitude = 0;
};

struct PracticeTaxiPath {
    int Kind = 0;   ///< 0 taxiway, 1 runway, 2 tie of a parking spot
    int Start = 0;  ///< place in TaxiPoints
    int End = 0;    ///< place in TaxiPoints; of a tie, place in Parking
    std::string Name;
};

struct PracticeParking {
    std::string Name;  ///< upper case, with its number: "GATE A 1"
    int NameCode = 0;  ///< 1 Parking, 2 to 9 N to NW Parking, 10 Gate, 11 Dock, 12 to 37 Gate A to Gate Z
    int Number = 0;
    double Latitude = 0;
    double Longitude = 0;
    double RadiusMetres = 0;
};

struct PracticeAirport {
    std::string Code;
    std::string Name;
    double Latitude = 0;
    double Longitude = 0;
    double ElevationMetres = 0;
    std::vector<PracticeRunway> Runways;
    std::vector<PracticeRadio> Radios;
    std::vector<PracticeTaxiPoint> TaxiPoints;
    std::vector<PracticeTaxiPath> TaxiPaths;
    std::vector<PracticeParking> Parking;
};

/// Reads practice-airports.json. Throws DataFileError, naming the file and the place in it, for anything
/// that is missing, of the wrong kind, or points nowhere.
std::vector<PracticeAirport> LoadPracticeAirports(const std::filesystem::path& path);

/// The airport of a code, whatever its case. Throws std::invalid_argument, naming those that are known.
const PracticeAirport& FindPracticeAirport(const std::vector<PracticeAirport>& airports,
                                           std::string_view code);

}  // namespace corvenna
