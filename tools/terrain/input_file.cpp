#include "tools/terrain/input_file.h"

#include <fmt/format.h>
#include <zlib.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <filesystem>

#include "station/text.h"
#include "world/errors.h"
#include "world/files.h"

namespace corvenna {

namespace {

gzFile Handle(void* file) { return static_cast<gzFile>(file); }

gzFile Open(const std::string& path) {
#ifdef _WIN32
    return gzopen_w(PathOf(path).c_str(), "rb");
#else
    return gzopen(path.c_str(), "rb");
#endif
}

std::string FailureOf(gzFile file) {
    int code = Z_OK;
    const char* const words = gzerror(file, &code);
    if (code == Z_ERRNO) return std::strerror(errno);
    if (code == Z_BUF_ERROR) return "the compressed data breaks off";
    return words;
}

}  // namespace

void InputFile::Closer::operator()(void* file) const { gzclose(Handle(file)); }

InputFile::InputFile(std::string path) : path_(std::move(path)) {
    if (std::error_code ignored; std::filesystem::is_directory(PathOf(path_), ignored)) {
        throw FileError(path_, "is a folder, not a file");
    }
    file_.reset(Open(path_));
    if (!file_) throw FileError(path_, std::strerror(errno));
    gzbuffer(Handle(file_.get()), 1 << 17);
}

std::size_t InputFile::Read(std::span<char> into) {
    constexpr std::size_t MostAtOnce = 1 << 20;
    std::size_t filled = 0;
    while (filled < into.size()) {
        const auto wanted = static_cast<unsigned>(std::min(into.size() - filled, MostAtOnce));
        const int got = gzread(Handle(file_.get()), into.data() + filled, wanted);
        int code = Z_OK;
        gzerror(Handle(file_.get()), &code);
        if (got < 0 || (code != Z_OK && code != Z_STREAM_END)) {
            throw FileError(path_, FailureOf(Handle(file_.get())));
        }
        if (got == 0) break;
        filled += static_cast<std::size_t>(got);
    }
    return filled;
}

std::string InputFile::ReadAll(std::size_t limit) {
    std::string bytes;
    char chunk[1 << 16];
    while (const std::size_t got = Read(chunk)) {
        bytes.append(chunk, got);
        if (bytes.size() > limit) throw FileError(path_, fmt::format("more than {} bytes", limit));
    }
    return bytes;
}

bool HasExtension(std::string_view path, std::string_view extension) {
    std::string lower = LowerCase(path);
    if (lower.ends_with(".gz")) lower.resize(lower.size() - 3);
    return lower.ends_with(extension);
}

}  // namespace corvenna
