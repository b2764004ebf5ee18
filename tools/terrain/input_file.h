#pragma once

#include <cstddef>
#include <memory>
#include <span>
#include <string>
#include <string_view>

namespace corvenna {

/// A file read from front to end, plain or gzipped: its first bytes tell which. One thread at a time.
class InputFile {
  public:
    /// Throws FileError when the file can't be opened.
    explicit InputFile(std::string path);

    /// Fills `into` and gives the number of bytes read, fewer only at the file's end. Throws FileError
    /// when the file can't be read or its compressed bytes are damaged.
    std::size_t Read(std::span<char> into);

    /// The rest of the file. Throws FileError also when it is longer than `limit` bytes.
    std::string ReadAll(std::size_t limit);

    const std::string& Path() const { return path_; }

  private:
    struct Closer {
        void operator()(void* file) const;
    };

    std::string path_;
    std::unique_ptr<void, Closer> file_;
};

/// Whether a path ends in an extension such as ".hgt", with or without ".gz" behind it, in any case.
bool HasExtension(std::string_view path, std::string_view extension);

}  // namespace corvenna
