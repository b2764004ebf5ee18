#include "tools/terrain/summits.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <numbers>
#include <string_view>

#include "station/numbers.h"
#include "tools/terrain/input_file.h"
#include "tools/terrain/number_text.h"
#include "world/errors.h"

namespace corvenna {

namespace {

constexpr std::size_t LongestList = 100'000'000;  // bytes
constexpr double NmPerDegree = 60;

std::vector<std::string_view> Split(std::string_view line) {
    std::vector<std::string_view> fields;
    for (;;) {
        const std::size_t comma = line.find(',');
        fields.push_back(line.substr(0, comma));
        if (comma == std::string_view::npos) return fields;
        line.remove_prefix(comma + 1);
    }
}

/// One list: its columns by the names in its first line, then a summit a line.
class SummitList {
  public:
    SummitList(const std::string& path, std::string_view header) : path_(path) {
        const auto names = Split(header);
        columns_ = names.size();
        const auto find = [&](std::string_view name) {
            const auto found = std::find(names.begin(), names.end(), name);
            if (found == names.end()) Fail(fmt::format("the first line names no column \"{}\"", name));
            return static_cast<std::size_t>(found - names.begin());
        };
        latitude_ = find("lat");
        longitude_ = find("lon");
        elevation_ = find("elevation_m");
    }

    Summit Read(std::string_view line) {
        ++line_;
        const auto fields = Split(line);
        if (fields.size() != columns_) {
            Fail(fmt::format("{} columns, the first line has {}", fields.size(), columns_));
        }
        return {.Latitude = Number(fields[latitude_], -90, 90, "latitude"),
                .Longitude = Number(fields[longitude_], -180, 180, "longitude"),
                .Elevation =
                    static_cast<int>(RoundHalfEven(Number(fields[elevation_], -500, 9000, "elevation")))};
    }

  private:
    double Number(std::string_view text, double lowest, double highest, std::string_view what) const {
        const auto number = ParseReal(text);
        if (!number || *number < lowest || *number > highest) {
            Fail(fmt::format("\"{}\" is no {} from {} to {}", text, what, lowest, highest));
        }
        return *number;
    }

    [[noreturn]] void Fail(const std::string& reason) const {
        throw FileError(path_, fmt::format("line {}: {}", line_, reason));
    }

    const std::string& path_;
    std::size_t columns_ = 0, latitude_ = 0, longitude_ = 0, elevation_ = 0;
    int line_ = 1;
};

/// Cuts the first line off a text, without its line end.
std::string_view TakeLine(std::string_view& text) {
    const std::size_t end = std::min(text.find('\n'), text.size());
    std::string_view line = text.substr(0, end);
    text.remove_prefix(std::min(end + 1, text.size()));
    if (line.ends_with('\r')) line.remove_suffix(1);
    return line;
}

double Radians(double degrees) { return degrees * (std::numbers::pi / 180); }

double Nm(double latitude1, double longitude1, double latitude2, double longitude2) {
    const double halfNorth = std::sin(Radians(latitude2 - latitude1) / 2);
    const double halfEast = std::sin(Radians(longitude2 - longitude1) / 2);
    const double h = halfNorth * halfNorth +
                     std::cos(Radians(latitude1)) * std::cos(Radians(latitude2)) * halfEast * halfEast;
    return 2 * std::asin(std::min(1.0, std::sqrt(h))) * (180 / std::numbers::pi) * NmPerDegree;
}

bool LowerLatitude(const Summit& a, const Summit& b) { return a.Latitude < b.Latitude; }

}  // namespace

void ReadSummits(const std::string& path, std::vector<Summit>& summits) {
    const std::string bytes = InputFile(path).ReadAll(LongestList);
    std::string_view rest = bytes;
    SummitList list(path, TakeLine(rest));
    while (!rest.empty()) summits.push_back(list.Read(TakeLine(rest)));
}

SummitIndex::SummitIndex(std::vector<Summit> summits) : byLatitude_(std::move(summits)) {
    std::sort(byLatitude_.begin(), byLatitude_.end(), LowerLatitude);
}

int SummitIndex::HighestNear(double latitude, double longitude, double nauticalMiles, int lowest) const {
    const double reach = nauticalMiles / NmPerDegree * 1.001;  // wider than any rounding
    int highest = 0;
    for (auto summit = std::lower_bound(byLatitude_.begin(), byLatitude_.end(),
                                        Summit{.Latitude = latitude - reach}, LowerLatitude);
         summit != byLatitude_.end() && summit->Latitude <= latitude + reach; ++summit) {
        if (summit->Elevation < lowest || summit->Elevation <= highest) continue;
        if (Nm(latitude, longitude, summit->Latitude, summit->Longitude) <= nauticalMiles) {
            highest = summit->Elevation;
        }
    }
    return highest;
}

}  // namespace corvenna
