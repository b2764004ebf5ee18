#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace corvenna {

/// An area of the simulator's scenery library: the raw texts behind the equals signs, empty where the key is
/// missing. Only Title and Local are used afterwards; inactive areas are scanned like all others.
struct SceneryArea {
    std::string Title;
    std::string Texture_ID;
    std::string Active;
    std::string Layer;
    std::string Required;
    std::string Remote;
    std::string Local;

    bool operator==(const SceneryArea&) const = default;
};

/// The areas of a scenery.cfg, in the order of the file. Throws FileError when the file can't be read or has
/// more than 32767 areas.
std::vector<SceneryArea> ParseSceneryCfg(std::string_view path);

/// The same from the file's content; std::overflow_error when there are too many.
std::vector<SceneryArea> ParseSceneryText(std::string_view content);

/// The value of a key in a section: what stands behind the first "key=", wherever that is, up to the end
/// of the line. Upper and lower case of the key do not matter. Empty when it does not occur.
std::string SceneryKey(std::string_view section, std::string_view key);

/// Turns each Local into the lower-case path of a folder named "scenery" that exists, or into the empty text.
/// The name of a drive in it, as ListDrives tells them, gives way to the drive's letter.
void FixSceneryPaths(std::vector<SceneryArea>& areas, std::string_view simFolder,
                     const std::vector<std::string>& drives);

}  // namespace corvenna
