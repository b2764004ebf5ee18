#pragma once

#include <stdexcept>
#include <string>

namespace corvenna {

/// What stops the making of a terrain file, in words for the person who started it: the file, the place in
/// it, what is wrong.
class TerrainError : public std::runtime_error {
  public:
    TerrainError(const std::string& file, const std::string& reason)
        : std::runtime_error(file + ": " + reason) {}
};

}  // namespace corvenna
