#pragma once

#include <filesystem>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "station/model.h"

namespace corvenna {

/// Makes the airport database that is missing in a folder: writes the practice world into it, from the facts
/// in the data folder, scans that, and puts the terrain file beside it. What is there already stays. tell
/// hears what is being done. Throws FileError and std::filesystem::filesystem_error.
void CompletePracticeFolder(const std::filesystem::path& folder, const std::filesystem::path& data,
                            const std::function<void(std::string_view)>& tell);

/// The labels of a folder's airports, in the order of the database: "Boeing Field King Co Intl (KBFI)".
std::vector<std::string> AirportLabels(const std::filesystem::path& folder);

/// Selects an airport of a folder, with the variation table of the simulator's folder that its database was
/// made from, and with the terrain around it. Named by its code or its whole label. Throws FileError for
/// what the files lack, and std::runtime_error for an airport that is not among them.
void SelectByName(Station& station, const std::filesystem::path& folder, std::string_view codeOrLabel);

}  // namespace corvenna
