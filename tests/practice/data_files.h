#pragma once

#include <filesystem>
#include <fstream>
#include <random>
#include <string>

namespace corvenna {

/// The data files that are shipped.
inline std::filesystem::path DataFile(const char* name) {
    return std::filesystem::path(CORVENNA_TEST_DATA) / name;
}

/// A file that lives as long as the object.
class TemporaryFile {
  public:
    explicit TemporaryFile(const std::string& text) {
        std::random_device random;
        path_ = std::filesystem::temp_directory_path() /
                ("corvenna-" + std::to_string(random()) + std::to_string(random()) + ".json");
        std::ofstream(path_, std::ios::binary) << text;
    }
    ~TemporaryFile() { std::filesystem::remove(path_); }
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;

    const std::filesystem::path& Path() const { return path_; }

  private:
    std::filesystem::path path_;
};

/// The words of the error that an operation throws; fails the test's expectation, as "", when it throws none.
template <class Error, class Operation>
std::string ComplaintOf(Operation operation) {
    try {
        operation();
    } catch (const Error& error) {
        return error.what();
    }
    return "";
}

}  // namespace corvenna
