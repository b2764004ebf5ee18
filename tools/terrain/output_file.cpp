#include "tools/terrain/output_file.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>

#include "tools/terrain/terrain_error.h"

namespace corvenna {

namespace {

bool WriteAll(int file, std::string_view bytes) {
    while (!bytes.empty()) {
        const ssize_t written = write(file, bytes.data(), bytes.size());
        if (written < 0 && errno == EINTR) continue;
        if (written < 0) return false;
        bytes.remove_prefix(static_cast<std::size_t>(written));
    }
    return true;
}

/// errno tells why not.
bool WriteToDisk(const std::string& path, std::string_view bytes) {
    const int file = open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666);
    if (file < 0) return false;
    const bool written = WriteAll(file, bytes) && fsync(file) == 0;
    const int reason = errno;
    const bool closed = close(file) == 0;
    if (!written) errno = reason;
    return written && closed;
}

}  // namespace

void WriteWholeFile(const std::string& path, std::string_view bytes) {
    const std::string beside = path + ".part";
    if (WriteToDisk(beside, bytes) && std::rename(beside.c_str(), path.c_str()) == 0) return;
    const int reason = errno;
    unlink(beside.c_str());
    throw TerrainError(path, std::strerror(reason));
}

}  // namespace corvenna
