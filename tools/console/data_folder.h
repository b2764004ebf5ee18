#pragma once

#include <filesystem>
#include <optional>
#include <string>

namespace corvenna {

/// The folder of the shipped data files: the one given; else the one installed beside the program's folder
/// (share/corvenna), the program's folder itself, or that of the source tree the program was built from.
/// Throws std::runtime_error, naming the places, when there is none.
std::filesystem::path FindDataFolder(const std::optional<std::string>& given,
                                     const std::filesystem::path& programFolder);

}  // namespace corvenna
