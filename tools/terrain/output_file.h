#pragma once

#include <string>
#include <string_view>

namespace corvenna {

/// Writes a file whole or not at all: beside it first, under its name only when the disk has it. Throws
/// TerrainError; whatever stood under the name before is then still there.
void WriteWholeFile(const std::string& path, std::string_view bytes);

}  // namespace corvenna
