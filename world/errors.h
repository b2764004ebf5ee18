#pragma once

#include <fmt/format.h>

#include <cstdint>
#include <stdexcept>
#include <string>
#include <string_view>

namespace corvenna {

/// Bytes that do not hold together. `what` tells the place, counted from the first byte read, and the reason.
class DamagedData : public std::runtime_error {
  public:
    DamagedData(std::int64_t offset, std::string_view reason)
        : std::runtime_error(fmt::format("byte {}: {}", offset, reason)) {}
};

/// A file that could not be read or written or makes no sense. `what` is one line for people: the file, the
/// place in it if there is one, the reason.
class FileError : public std::runtime_error {
  public:
    FileError(std::string_view file, std::string_view reason)
        : std::runtime_error(fmt::format("{}: {}", file, reason)), reason_(reason) {}

    /// The reason alone, for lines that name the file already.
    const std::string& Reason() const { return reason_; }

  private:
    std::string reason_;
};

}  // namespace corvenna
