#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// The file system as the simulator knows it: names without regard to case, both separators, files that
/// are replaced as a whole. A path is a text of bytes. Failures are FileErrors. Any thread.
namespace corvenna {

/// The file system's form of a path that is a text, and back. Names are bytes to most systems and stay as
/// they are; to Windows they are Unicode, and the text has them in the code page.
std::filesystem::path PathOf(std::string_view bytes);
std::string BytesOf(const std::filesystem::path& path);

/// The path that a text in UTF-8 names, such as one typed; the library's own form would take it for something
/// else on Windows. Where names are bytes, any bytes will do.
std::filesystem::path PathOfUtf8(std::string_view utf8);

/// Two parts of a path with a separator between them.
std::string JoinPath(std::string_view folder, std::string_view name);

/// The file or folder at a path, which may be written with \ or / and in any case. Names that fit exactly
/// go first, among others the one that sorts first. Nothing when there is none.
std::optional<std::filesystem::path> FindPath(std::string_view path);

std::optional<std::filesystem::path> FindFolder(std::string_view path);
std::optional<std::filesystem::path> FindPlainFile(std::string_view path);

/// The plain files of a folder whose names end in ".bgl" in any case, in the order of their lower-cased
/// bytes.
std::vector<std::string> ListBglFiles(const std::filesystem::path& folder);

/// The content of a file that may be written in any case.
std::string ReadWholeFile(std::string_view path);

/// The first `length` bytes of a file, or as many as it has, in `into`, whose memory is used again.
void ReadFileStart(const std::filesystem::path& file, std::size_t length, std::vector<std::uint8_t>& into);

/// Replaces a file by the pieces, one behind the other: whatever happens on the way, there is either the
/// old file or the new one. The path is taken as it stands.
void ReplaceFile(std::string_view path, const std::vector<std::string_view>& pieces);

/// Deletes a file if it is there; a failure is ignored.
void RemoveFile(std::string_view path);

}  // namespace corvenna
