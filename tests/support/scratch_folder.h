#pragma once

#include <stdlib.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <string>
#include <string_view>

namespace corvenna {

/// An empty folder of its own for a test, gone with all it holds at the test's end.
class ScratchFolder {
  public:
    ScratchFolder() {
        std::string pattern = (std::filesystem::temp_directory_path() / "corvenna-test-XXXXXX").string();
        if (mkdtemp(pattern.data()) == nullptr) throw std::runtime_error("no scratch folder: " + pattern);
        path_ = pattern;
    }
    ~ScratchFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(path_, ignored);
    }
    ScratchFolder(const ScratchFolder&) = delete;
    ScratchFolder& operator=(const ScratchFolder&) = delete;

    std::string Path(std::string_view name) const { return (path_ / name).string(); }

    /// Writes a file and gives its path.
    std::string Write(std::string_view name, std::string_view bytes) const {
        std::ofstream(path_ / name, std::ios::binary).write(bytes.data(), static_cast<long>(bytes.size()));
        return Path(name);
    }

    static std::string Read(const std::string& path) {
        std::ifstream file(path, std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }

  private:
    std::filesystem::path path_;
};

}  // namespace corvenna
