// Each of these needs those before it.
// clang-format off
#include <windows.h>
#include <winnetwk.h>
// clang-format on

#include <filesystem>

#include "station/code_page.h"
#include "world/drives.h"

namespace corvenna {

namespace {

constexpr DWORD LongestName = 1024;

/// While it lives, an empty drive fails instead of asking the user for a disk.
class NoQuestions {
  public:
    NoQuestions() { SetThreadErrorMode(SEM_FAILCRITICALERRORS, &before_); }
    ~NoQuestions() { SetThreadErrorMode(before_, nullptr); }
    NoQuestions(const NoQuestions&) = delete;
    NoQuestions& operator=(const NoQuestions&) = delete;

  private:
    DWORD before_ = 0;
};

std::string InCodePage(const wchar_t* text) { return Utf8ToCodePage(std::filesystem::path(text).string()); }

/// The system knows it without asking the server, which may be gone.
std::string NetworkName(wchar_t letter) {
    const wchar_t drive[] = {letter, L':', 0};
    wchar_t name[LongestName] = {};
    DWORD length = LongestName;
    return WNetGetConnectionW(drive, name, &length) == NO_ERROR ? InCodePage(name) : std::string();
}

std::string VolumeName(const wchar_t* root) {
    wchar_t name[MAX_PATH + 1] = {};
    if (GetVolumeInformationW(root, name, MAX_PATH + 1, nullptr, nullptr, nullptr, nullptr, 0) == 0)
        return {};
    return *name == 0 ? std::string() : "[" + InCodePage(name) + "]";
}

}  // namespace

std::vector<std::string> ListDrives() {
    const NoQuestions noQuestions;
    const DWORD there = GetLogicalDrives();
    std::vector<std::string> drives;
    for (char letter = 'a'; letter <= 'z'; ++letter) {
        if ((there >> (letter - 'a') & 1) == 0) continue;
        const auto wide = static_cast<wchar_t>(letter);
        const wchar_t root[] = {wide, L':', L'\\', 0};
        const bool remote = GetDriveTypeW(root) == DRIVE_REMOTE;
        const std::string name = remote ? NetworkName(wide) : VolumeName(root);
        drives.push_back(std::string(1, letter) + ':' + (name.empty() ? "" : " " + name));
    }
    return drives;
}

}  // namespace corvenna
