#include "tools/console/data_folder.h"

#include <fmt/format.h>

#include <stdexcept>
#include <vector>

#include "world/files.h"

namespace corvenna {

namespace {

constexpr const char* KnownFile = "practice-airports.json";

}  // namespace

std::filesystem::path FindDataFolder(const std::optional<std::string>& given,
                                     const std::filesystem::path& programFolder) {
    std::vector<std::filesystem::path> places;
    if (given) {
        places = {PathOfUtf8(*given)};
    } else {
        places = {programFolder / ".." / "share" / "corvenna", programFolder, CORVENNA_SOURCE_DATA};
    }
    std::string looked;
    for (const auto& place : places) {
        if (std::filesystem::exists(place / KnownFile)) return place;
        looked += (looked.empty() ? "" : ", ") + place.string();
    }
    throw std::runtime_error(fmt::format("there is no {} in {}", KnownFile, looked));
}

}  // namespace corvenna
