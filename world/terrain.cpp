#include "world/terrain.h"

#include <charconv>
#include <cmath>

#include "station/geometry.h"
#include "station/numbers.h"
#include "world/airport_database.h"
#include "world/errors.h"
#include "world/facility_layout.h"
#include "world/files.h"

namespace corvenna {

namespace {

constexpr std::int16_t MountainReachNm = 100;
constexpr std::int32_t Margin = 2000;  // feet on top of the highest point

/// What a line of the file says. The words of a failure go behind the file's name and the line's number.
class TerrainLine {
  public:
    explicit TerrainLine(std::string_view line) : rest_(line) {}

    double NextNumber(std::string_view what) {
        const std::size_t blank = rest_.find(' ');
        if (blank == std::string_view::npos) {
            throw std::invalid_argument(
                fmt::format("three numbers and two blanks expected, \"{:.40}\" found", rest_));
        }
        const std::string_view field = rest_.substr(0, blank);
        rest_.remove_prefix(blank + 1);
        return Number(field, what);
    }

    double LastNumber(std::string_view what) const { return Number(rest_, what); }

  private:
    /// A decimal number: sign, digits, a point, and nothing else.
    static double Number(std::string_view field, std::string_view what) {
        std::string_view digits = field;
        if (digits.starts_with('+') && !digits.starts_with("+-")) digits.remove_prefix(1);
        double value = 0;
        const auto [end, failure] =
            std::from_chars(digits.data(), digits.data() + digits.size(), value, std::chars_format::fixed);
        if (failure != std::errc{} || end != digits.data() + digits.size() || !std::isfinite(value)) {
            throw std::invalid_argument(fmt::format("{} \"{:.40}\" is no decimal number", what, field));
        }
        return value;
    }

    std::string_view rest_;
};

/// Collects what the lines add to the station.
class TerrainLoad {
  public:
    TerrainLoad(const Station& station, const SearchBox& box) : station_(station), box_(box) {}

    void ReadLine(std::string_view text) {
        TerrainLine line(text);
        const double latitude = RoundTo5(line.NextNumber("latitude"));
        const double longitude = RoundTo5(line.NextNumber("longitude"));
        const auto metres = ToWhole<std::int32_t>(line.LastNumber("elevation"));
        const auto feet = ToWhole<std::int32_t>(metres / facility::MetresPerFoot);
        if (!box_.Holds(latitude, longitude)) return;

        const std::int16_t distance =
            DistanceNm(station_.AirportLatitude, station_.AirportLongitude, latitude, longitude);
        if (feet > highest_) highest_ = feet;
        if (distance <= MountainReachNm) AddMountain(latitude, longitude, feet);
    }

    void Store(Station& station) {
        station.HighestTerrain = Narrow<std::int32_t>(std::int64_t{highest_} + Margin);
        station.Mountains.resize(static_cast<std::size_t>(station.MountainCount));
        for (GeoPoint& mountain : mountains_) station.Mountains.push_back(std::move(mountain));
        station.MountainCount = static_cast<std::int32_t>(station.Mountains.size());
        station.Mountains.emplace_back();
    }

  private:
    void AddMountain(double latitude, double longitude, std::int32_t feet) {
        mountains_.push_back({.Name = fmt::format("Mountain No{}", mountains_.size() + 1),
                              .Kind = "Mountain",
                              .Latitude = latitude,
                              .Longitude = longitude,
                              .Altitude = feet});
    }

    const Station& station_;
    const SearchBox& box_;
    std::int32_t highest_ = 0;
    std::vector<GeoPoint> mountains_;
};

}  // namespace

void LoadTerrain(Station& station, std::string_view appFolder, const SearchBox& box) {
    const std::string path = JoinPath(appFolder, TerrainName);
    LoadTerrainText(station, ReadWholeFile(path), box, path);
}

void LoadTerrainText(Station& station, std::string_view content, const SearchBox& box,
                     std::string_view name) {
    TerrainLoad load(station, box);
    for (std::int64_t number = 1; !content.empty(); ++number) {
        const std::size_t end = std::min(content.find('\n'), content.size());
        std::string_view line = content.substr(0, end);
        content.remove_prefix(std::min(end + 1, content.size()));
        if (line.ends_with('\r')) line.remove_suffix(1);
        try {
            load.ReadLine(line);
        } catch (const std::exception& failure) {
            throw FileError(name, fmt::format("line {}: {}", number, failure.what()));
        }
    }
    load.Store(station);
}

}  // namespace corvenna
