#include "world/files.h"

#include <fmt/format.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <limits>
#include <memory>
#include <span>

#ifdef _WIN32
#include <io.h>
#include <windows.h>
#undef ReplaceFile

#include "station/code_page.h"
#else
#include <unistd.h>
#endif

#include "station/text.h"
#include "world/errors.h"

namespace corvenna {

namespace {

namespace fs = std::filesystem;

constexpr std::size_t ChunkSize = 65536;
constexpr std::string_view BglEnding = ".bgl";

struct CloseFile {
    void operator()(std::FILE* file) const { std::fclose(file); }
};
using OpenedFile = std::unique_ptr<std::FILE, CloseFile>;

using KindOfEntry = bool (*)(const fs::path&);

bool IsThere(const fs::path& path) {
    std::error_code ignored;
    return fs::exists(path, ignored);
}

bool IsFolder(const fs::path& path) {
    std::error_code ignored;
    return fs::is_directory(path, ignored);
}

bool IsPlainFile(const fs::path& path) {
    std::error_code ignored;
    return fs::is_regular_file(path, ignored);
}

std::string LastError() { return std::strerror(errno); }

enum class OpenMode { Read, Write };

OpenedFile Open(const fs::path& path, OpenMode mode) {
#ifdef _WIN32
    return OpenedFile(_wfopen(path.c_str(), mode == OpenMode::Read ? L"rb" : L"wb"));
#else
    return OpenedFile(std::fopen(path.c_str(), mode == OpenMode::Read ? "rb" : "wb"));
#endif
}

OpenedFile OpenToRead(const fs::path& path) {
    if (IsFolder(path)) throw FileError(BytesOf(path), "is a folder, not a file");
    OpenedFile file = Open(path, OpenMode::Read);
    if (!file) throw FileError(BytesOf(path), "can't be opened: " + LastError());
    return file;
}

/// Appends up to `limit` bytes, piece by piece, so that memory follows the bytes that are really there.
template <class Bytes>
void AppendContent(const fs::path& path, std::FILE* file, std::size_t limit, Bytes& into) {
    typename Bytes::value_type chunk[ChunkSize];
    while (limit > 0) {
        const std::size_t read = std::fread(chunk, 1, std::min(limit, sizeof chunk), file);
        into.insert(into.end(), chunk, chunk + read);
        limit -= read;
        if (read == 0) break;
    }
    if (std::ferror(file) != 0) throw FileError(BytesOf(path), "can't be read: " + LastError());
}

/// Names in a folder that fit but for upper and lower case, the exact one first, the others sorted.
std::vector<std::string> FittingNames(const fs::path& folder, const std::string& name) {
    std::vector<std::string> names;
    std::error_code failure;
    for (fs::directory_iterator entry(folder.empty() ? "." : folder, failure), end; !failure && entry != end;
         entry.increment(failure)) {
        std::string found = BytesOf(entry->path().filename());
        if (found != name && EqualIgnoringCase(found, name)) names.push_back(std::move(found));
    }
    std::sort(names.begin(), names.end());
    names.insert(names.begin(), name);
    return names;
}

std::optional<fs::path> FindBelow(const fs::path& folder, std::span<const std::string> names,
                                  KindOfEntry fits) {
    const bool last = names.size() == 1;
    for (const std::string& name : FittingNames(folder, names.front())) {
        const fs::path next = folder / PathOf(name);
        if (last && fits(next)) return next;
        if (last || !IsFolder(next)) continue;
        if (auto found = FindBelow(next, names.subspan(1), fits)) return found;
    }
    return std::nullopt;
}

std::optional<fs::path> Find(std::string_view path, KindOfEntry fits) {
    std::string slashed(path);
    std::replace(slashed.begin(), slashed.end(), '\\', '/');
    const fs::path exact = PathOf(slashed);
    if (fits(exact)) return exact;

    std::vector<std::string> names;
    for (const fs::path& part : exact.relative_path()) {
        if (!part.empty()) names.push_back(BytesOf(part));
    }
    if (names.empty()) return std::nullopt;
    return FindBelow(exact.root_path(), names, fits);
}

bool FlushToDisk(std::FILE* file) {
    if (std::fflush(file) != 0) return false;
#ifdef _WIN32
    return _commit(_fileno(file)) == 0;
#else
    return fsync(fileno(file)) == 0;
#endif
}

bool WritePieces(std::FILE* file, const std::vector<std::string_view>& pieces) {
    for (const std::string_view piece : pieces) {
        if (std::fwrite(piece.data(), 1, piece.size(), file) != piece.size()) return false;
    }
    return FlushToDisk(file);
}

}  // namespace

fs::path PathOfUtf8(std::string_view utf8) { return fs::path(std::u8string(utf8.begin(), utf8.end())); }

#ifdef _WIN32
fs::path PathOf(std::string_view bytes) { return PathOfUtf8(CodePageToUtf8(bytes)); }

/// The short name of what is there stands in for one that the code page can't spell.
std::string BytesOf(const fs::path& path) {
    const std::string name = path.string();
    std::string bytes = Utf8ToCodePage(name);
    if (CodePageToUtf8(bytes) == name) return bytes;
    wchar_t shortName[MAX_PATH];
    const DWORD length = GetShortPathNameW(path.c_str(), shortName, MAX_PATH);
    return length == 0 || length >= MAX_PATH ? bytes : Utf8ToCodePage(fs::path(shortName).string());
}
#else
fs::path PathOf(std::string_view bytes) { return fs::path(bytes); }
std::string BytesOf(const fs::path& path) { return path.string(); }
#endif

std::string JoinPath(std::string_view folder, std::string_view name) {
    return fmt::format("{}/{}", folder, name);
}

std::optional<fs::path> FindPath(std::string_view path) { return Find(path, &IsThere); }
std::optional<fs::path> FindFolder(std::string_view path) { return Find(path, &IsFolder); }
std::optional<fs::path> FindPlainFile(std::string_view path) { return Find(path, &IsPlainFile); }

std::vector<std::string> ListBglFiles(const fs::path& folder) {
    struct Name {
        std::string Lower, Exact;
        // NOLINTNEXTLINE(modernize-use-nullptr): the nought in it is the compiler's own
        auto operator<=>(const Name&) const = default;
    };
    std::vector<Name> names;
    std::error_code failure;
    fs::directory_iterator entry(folder, failure);
    for (const fs::directory_iterator end; !failure && entry != end; entry.increment(failure)) {
        std::string exact = BytesOf(entry->path().filename());
        std::string lower = LowerCase(exact);
        std::error_code ignored;
        if (lower.ends_with(BglEnding) && entry->is_regular_file(ignored)) {
            names.push_back({std::move(lower), std::move(exact)});
        }
    }
    if (failure) throw FileError(BytesOf(folder), "can't be listed: " + failure.message());
    std::sort(names.begin(), names.end());
    std::vector<std::string> result;
    result.reserve(names.size());
    for (Name& name : names) result.push_back(std::move(name.Exact));
    return result;
}

std::string ReadWholeFile(std::string_view path) {
    const auto found = FindPath(path);
    if (!found) throw FileError(path, "is not there");
    const OpenedFile file = OpenToRead(*found);
    std::string content;
    std::error_code failure;
    const auto size = fs::file_size(*found, failure);
    if (!failure) content.reserve(static_cast<std::size_t>(size));
    AppendContent(*found, file.get(), std::numeric_limits<std::size_t>::max(), content);
    return content;
}

void ReadFileStart(const fs::path& file, std::size_t length, std::vector<std::uint8_t>& into) {
    into.clear();
    const OpenedFile opened = OpenToRead(file);
    AppendContent(file, opened.get(), length, into);
}

void ReplaceFile(std::string_view path, const std::vector<std::string_view>& pieces) {
    const std::string fresh = std::string(path) + ".new";
    OpenedFile file = Open(PathOf(fresh), OpenMode::Write);
    if (!file) throw FileError(path, "can't be written: " + LastError());

    bool written = WritePieces(file.get(), pieces);
    std::string reason = LastError();
    if (std::fclose(file.release()) != 0 && written) {
        written = false;
        reason = LastError();
    }
    std::error_code failure;
    if (written) {
        fs::rename(PathOf(fresh), PathOf(path), failure);
        if (!failure) return;
        reason = failure.message();
    }
    RemoveFile(fresh);
    throw FileError(path, fmt::format("can't be written: {}; nothing was changed", reason));
}

void RemoveFile(std::string_view path) {
    std::error_code ignored;
    fs::remove(PathOf(path), ignored);
}

}  // namespace corvenna
