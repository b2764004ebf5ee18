#include <algorithm>
#include <stdexcept>

#include "fuzz/fuzz_input.h"
#include "world/scenery_config.h"

/// Any bytes as scenery.cfg. There are never more areas than brackets, and a value is part of one line.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace corvenna;
    constexpr std::size_t MostFolders = 4;  // looking for a folder takes long
    const std::string_view file = AsText(data, size);
    try {
        auto areas = ParseSceneryText(file);
        Require(std::ssize(areas) <= std::count(file.begin(), file.end(), '['), "an area has a header");
        for (const SceneryArea& area : areas) {
            for (const std::string* value : {&area.Title, &area.Texture_ID, &area.Active, &area.Layer,
                                             &area.Required, &area.Remote, &area.Local}) {
                Require(value->find('\n') == std::string::npos && file.find(*value) != std::string::npos,
                        "a value stands in one line of the file");
            }
        }
        areas.resize(std::min(areas.size(), MostFolders));
        FixSceneryPaths(areas, "no such simulator", {"c: [games]", "z: \\\\server\\games"});
        Require(std::all_of(areas.begin(), areas.end(),
                            [](const SceneryArea& area) {
                                return area.Local.empty() || area.Local.ends_with("scenery");
                            }),
                "an area's folder is a scenery folder or none");
    } catch (const std::overflow_error&) {
    }
    return 0;
}
