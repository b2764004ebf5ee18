#pragma once

#include <string_view>

#include "station/model.h"

namespace corvenna {

/// Fills MagVarGrid from a file with the layout of magdec.bgl. A file that says it holds no table leaves the
/// grid as it is. Throws FileError when the file is missing or short; the grid is as before then.
void LoadMagVar(std::string_view path, Station& station);

/// The same from the file's content; `name` stands for the file in errors.
void LoadMagVarBytes(std::string_view content, Station& station, std::string_view name);

/// LoadMagVar from the place where the simulator keeps the file, scenery\magdec.bgl.
void LoadMagVarOf(std::string_view simFolder, Station& station);

}  // namespace corvenna
