#include "practice/practice_airports.h"

#include <fmt/format.h>

#include <algorithm>
#include <stdexcept>

#include "practice/json_file.h"
#include "station/text.h"

namespace corvenna {

namespace {

constexpr double HighestElevationMetres = 5000;
constexpr double LowestElevationMetres = -500;

double Latitude(const JsonValue& json) { return json["lat"].NumberWithin(-90, 90); }
double Longitude(const JsonValue& json) { return json["lon"].NumberWithin(-180, 180); }
double Elevation(const JsonValue& json) {
    return json["elevation_m"].NumberWithin(LowestElevationMetres, HighestElevationMetres);
}

PracticeRunwayEnd ReadRunwayEnd(const JsonValue& json) {
    PracticeRunwayEnd end;
    end.Designator = json["designator"].Text();
    end.Number = json["number"].WholeWithin(1, 36);
    end.SuffixCode = json["suffix_code"].WholeWithin(0, 3);
    end.Latitude = Latitude(json);
    end.Longitude = Longitude(json);
    end.ElevationMetres = Elevation(json);
    end.HeadingTrue = json["heading_true"].NumberWithin(0, 360);
    end.HasIls = json["ils"].Truth();
    return end;
}

PracticeRunway ReadRunway(const JsonValue& json) {
    PracticeRunway runway;
    runway.LengthFeet = json["length_ft"].WholeWithin(1, 30000);
    runway.WidthFeet = json["width_ft"].WholeWithin(1, 1000);
    const auto ends = json["ends"].Elements();
    if (ends.size() != 2) throw json["ends"].Complaint("does not hold two ends");
    runway.Ends = {ReadRunwayEnd(ends[0]), ReadRunwayEnd(ends[1])};
    return runway;
}

PracticeRadio ReadRadio(const JsonValue& json) {
    using enum PracticeRadio::Kind;
    const int code = json["code"].WholeWithin(static_cast<int>(Ctaf), static_cast<int>(Centre));
    const auto use = static_cast<PracticeRadio::Kind>(code);
    const auto known = {Ctaf, Ground, Tower, Approach, Departure, Centre};
    if (std::find(known.begin(), known.end(), use) == known.end()) {
        throw json["code"].Complaint(fmt::format("is {}, which is no kind of frequency", code));
    }
    return {use, json["mhz"].NumberWithin(108, 137)};
}

PracticeTaxiPoint ReadTaxiPoint(const JsonValue& json) {
    return {json["kind"].WholeWithin(1, 2), Latitude(json), Longitude(json)};
}

PracticeParking ReadParking(const JsonValue& json) {
    PracticeParking spot;
    spot.Name = json["name"].Text();
    spot.NameCode = json["name_code"].WholeWithin(1, 37);
    spot.Number = json["number"].WholeWithin(0, 8191);
    spot.Latitude = Latitude(json);
    spot.Longitude = Longitude(json);
    spot.RadiusMetres = json["radius_m"].NumberWithin(1, 200);
    return spot;
}

PracticeTaxiPath ReadTaxiPath(const JsonValue& json, const PracticeAirport& airport) {
    const auto placeIn = [&](const char* key, const auto& list) {
        const int place = json[key].WholeWithin(0, 32767);
        if (static_cast<std::size_t>(place) >= list.size()) {
            throw json[key].Complaint(
                fmt::format("is {}, but there are {} to choose from", place, list.size()));
        }
        return place;
    };
    PracticeTaxiPath path;
    path.Kind = json["kind"].WholeWithin(0, 2);
    path.Start = placeIn("start", airport.TaxiPoints);
    path.End = path.Kind == 2 ? placeIn("end", airport.Parking) : placeIn("end", airport.TaxiPoints);
    path.Name = json["name"].Text();
    return path;
}

PracticeAirport ReadAirport(const JsonValue& json) {
    PracticeAirport airport;
    airport.Code = json["icao"].Text();
    airport.Name = json["name"].Text();
    airport.Latitude = Latitude(json);
    airport.Longitude = Longitude(json);
    airport.ElevationMetres = Elevation(json);
    for (const auto& runway : json["runways"].Elements()) airport.Runways.push_back(ReadRunway(runway));
    for (const auto& radio : json["com"].Elements()) airport.Radios.push_back(ReadRadio(radio));
    for (const auto& point : json["taxi_points"].Elements())
        airport.TaxiPoints.push_back(ReadTaxiPoint(point));
    for (const auto& spot : json["parking"].Elements()) airport.Parking.push_back(ReadParking(spot));
    for (const auto& path : json["taxi_paths"].Elements())
        airport.TaxiPaths.push_back(ReadTaxiPath(path, airport));
    if (airport.Runways.empty()) throw json["runways"].Complaint("is empty");
    return airport;
}

}  // namespace

std::vector<PracticeAirport> LoadPracticeAirports(const std::filesystem::path& path) {
    const JsonFile file(path);
    std::vector<PracticeAirport> airports;
    for (const auto& airport : file.Root()["airports"].Elements()) airports.push_back(ReadAirport(airport));
    return airports;
}

const PracticeAirport& FindPracticeAirport(const std::vector<PracticeAirport>& airports,
                                           std::string_view code) {
    std::string known;
    for (const PracticeAirport& airport : airports) {
        if (EqualIgnoringCase(airport.Code, code)) return airport;
        known += (known.empty() ? "" : ", ") + airport.Code;
    }
    throw std::invalid_argument(fmt::format("there is no airport {}; known are {}", code, known));
}

}  // namespace corvenna
