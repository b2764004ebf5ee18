#include "world/scenery_config.h"

#include <algorithm>
#include <cstdint>
#include <limits>
#include <stdexcept>

#include "station/text.h"
#include "world/errors.h"
#include "world/files.h"

namespace corvenna {

namespace {

constexpr std::string_view LineEnd = "\r\n";
constexpr std::string_view AreaHeader = "[area.";
constexpr std::string_view SceneryFolder = "scenery";
constexpr std::size_t DriveNameStart = 3;  // behind the letter, the colon and a blank
constexpr std::string_view ByteOrderMark = "\xEF\xBB\xBF";

/// The lines of a text, which end at CRLF or LF; what follows the last line end is a line if it is not empty.
std::vector<std::string_view> SplitLines(std::string_view content) {
    std::vector<std::string_view> lines;
    while (!content.empty()) {
        const std::size_t end = std::min(content.find('\n'), content.size());
        std::string_view line = content.substr(0, end);
        if (end < content.size() && line.ends_with('\r')) line.remove_suffix(1);
        lines.push_back(line);
        content.remove_prefix(std::min(end + 1, content.size()));
    }
    return lines;
}

bool IsHeader(std::string_view line) {
    const std::string_view trimmed = Trim(line);
    return trimmed.find('[') == 0 && trimmed.find(']') == trimmed.size() - 1;
}

/// The lines joined by CRLF, without the empty ones at the head.
std::string JoinLines(const std::vector<std::string_view>& lines) {
    std::string text;
    for (const std::string_view line : lines) {
        if (!text.empty()) text += LineEnd;
        text += line;
    }
    return text;
}

SceneryArea ReadArea(std::string_view section) {
    return {
        .Title = SceneryKey(section, "Title"),
        .Texture_ID = SceneryKey(section, "Texture_ID"),
        .Active = SceneryKey(section, "Active"),
        .Layer = SceneryKey(section, "Layer"),
        .Required = SceneryKey(section, "Required"),
        .Remote = SceneryKey(section, "Remote"),
        .Local = SceneryKey(section, "Local"),
    };
}

bool NamesSceneryFolder(const std::string& lower) {
    return lower == SceneryFolder || lower.ends_with("\\scenery");
}

/// With the drive's letter in place of its name, if that occurs; then all of it is in lower case.
std::string WithLetterOf(const std::string& drive, const std::string& local) {
    if (drive.size() <= DriveNameStart) return local;
    const std::string name = LowerCase(drive.substr(DriveNameStart));
    std::string lower = LowerCase(local);
    const std::size_t place = lower.find(name);
    return place == std::string::npos ? local : lower.replace(place, name.size(), drive, 0, 2);
}

std::string FixedLocal(std::string_view raw, std::string_view simFolder,
                       const std::vector<std::string>& drives) {
    std::string local(Trim(raw));
    std::replace(local.begin(), local.end(), '/', '\\');
    if (!NamesSceneryFolder(LowerCase(local))) local.append("\\").append(SceneryFolder);
    for (const std::string& drive : drives) local = WithLetterOf(drive, local);
    if (!FindFolder(local)) {  // not a path of its own: it counts from the simulator's folder
        local = std::string(simFolder).append("\\").append(local);
        std::replace(local.begin(), local.end(), '/', '\\');
    }
    local = LowerCase(local);
    return FindFolder(local) ? local : std::string();
}

}  // namespace

std::vector<SceneryArea> ParseSceneryCfg(std::string_view path) {
    try {
        return ParseSceneryText(ReadWholeFile(path));
    } catch (const std::overflow_error& failure) {
        throw FileError(path, failure.what());
    }
}

/// A section starts and ends where its header and the next one are first found from the search position on,
/// and sections other than areas leave that position alone. So of two equal headers in a row the first one
/// has an empty section.
std::vector<SceneryArea> ParseSceneryText(std::string_view content) {
    if (content.starts_with(ByteOrderMark)) content.remove_prefix(ByteOrderMark.size());
    const std::vector<std::string_view> lines = SplitLines(content);
    std::vector<std::string_view> headers;
    std::copy_if(lines.begin(), lines.end(), std::back_inserter(headers), IsHeader);
    const std::string text = JoinLines(lines);

    std::vector<SceneryArea> areas;
    std::size_t position = 0;
    for (std::size_t i = 0; i < headers.size(); ++i) {
        if (!ContainsIgnoringCase(headers[i], AreaHeader)) continue;
        if (areas.size() == std::numeric_limits<std::int16_t>::max()) {
            throw std::overflow_error("more than 32767 areas");
        }
        const std::size_t start = text.find(headers[i], position);
        const std::size_t end = i + 1 < headers.size() ? text.find(headers[i + 1], position) : text.size();
        areas.push_back(ReadArea(end > start ? std::string_view(text).substr(start, end - start) : ""));
        position = end > 0 ? end - 1 : 0;
    }
    return areas;
}

std::string SceneryKey(std::string_view section, std::string_view key) {
    const std::string wanted = LowerCase(key) + '=';
    const auto found = std::search(section.begin(), section.end(), wanted.begin(), wanted.end(),
                                   [](char x, char y) { return LowerCase(x) == y; });
    if (found == section.end()) return {};
    const std::string_view value =
        section.substr(static_cast<std::size_t>(found - section.begin()) + wanted.size());
    return std::string(value.substr(0, value.find(LineEnd)));
}

void FixSceneryPaths(std::vector<SceneryArea>& areas, std::string_view simFolder,
                     const std::vector<std::string>& drives) {
    for (SceneryArea& area : areas) {
        if (!area.Local.empty()) area.Local = FixedLocal(area.Local, simFolder, drives);
    }
}

}  // namespace corvenna
