#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

namespace corvenna {

/// A BGL file of so many made-up airports, with the byte more that the scan wants. The same seed gives the
/// same file.
std::vector<std::uint8_t> MadeUpScenery(int airports, unsigned seed);

/// A whole simulator's folder in a place of its own, gone when the object goes.
class MadeUpWorld {
  public:
    explicit MadeUpWorld(int airports);
    ~MadeUpWorld();
    MadeUpWorld(const MadeUpWorld&) = delete;
    MadeUpWorld& operator=(const MadeUpWorld&) = delete;

    std::string SimFolder() const { return (folder_ / "sim").string(); }
    std::string AppFolder() const { return (folder_ / "app").string(); }

  private:
    std::filesystem::path folder_;
};

}  // namespace corvenna
