#include <fcntl.h>
#include <sys/resource.h>
#include <sys/utsname.h>
#include <unistd.h>

#include <cstdlib>
#include <system_error>

#include "tools/platform/platform.h"

namespace corvenna {

CommandLine::CommandLine(int count, const char* const* words, Spelling) : pointers_(words, words + count) {}

ConsoleSpelling::ConsoleSpelling(Spelling) {}
ConsoleSpelling::~ConsoleSpelling() = default;

void KeepLineEnds() {}

bool OutputTakesColour() { return isatty(STDOUT_FILENO) == 1 && std::getenv("NO_COLOR") == nullptr; }

bool InputIsTerminal() { return isatty(STDIN_FILENO) == 1; }

void LeaveInputToOthers() {
    const int nothing = open("/dev/null", O_RDONLY | O_CLOEXEC);
    if (nothing < 0) return;
    dup2(nothing, STDIN_FILENO);
    close(nothing);
}

void AllowManyOpenFiles() {
    rlimit limit{};
    if (getrlimit(RLIMIT_NOFILE, &limit) != 0) return;
    limit.rlim_cur = limit.rlim_max;
    setrlimit(RLIMIT_NOFILE, &limit);
}

bool ErrorOutputIsTerminal() { return isatty(STDERR_FILENO) == 1; }

std::filesystem::path CacheFolder() {
    if (const char* const cache = std::getenv("XDG_CACHE_HOME"); cache != nullptr && *cache != 0)
        return cache;
    if (const char* const home = std::getenv("HOME"); home != nullptr && *home != 0) {
        return std::filesystem::path(home) / ".cache";
    }
    return std::filesystem::temp_directory_path();
}

std::filesystem::path ProgramFolder() {
    std::error_code error;
    return std::filesystem::read_symlink("/proc/self/exe", error).parent_path();
}

std::string SystemVersion() {
    utsname system{};
    if (uname(&system) != 0) return "unknown";
    return std::string(system.sysname) + ' ' + system.release + ' ' + system.machine;
}

void OfferOnClipboard(std::string_view) {}

}  // namespace corvenna
