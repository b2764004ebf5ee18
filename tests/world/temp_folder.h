#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <string>
#include <string_view>
#include <vector>

namespace corvenna {

/// A folder of a test's own, gone when the test is over.
class TempFolder {
  public:
    TempFolder() {
        static std::mt19937_64 numbers{std::random_device{}()};
        do {
            path_ = std::filesystem::temp_directory_path() / ("corvenna-test-" + std::to_string(numbers()));
        } while (!std::filesystem::create_directory(path_));
    }
    ~TempFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(path_, ignored);
    }
    TempFolder(const TempFolder&) = delete;
    TempFolder& operator=(const TempFolder&) = delete;

    std::string Path() const { return path_.string(); }
    std::string Path(std::string_view name) const { return (path_ / name).string(); }

    /// Writes a file, its folders included.
    void Write(std::string_view name, std::string_view content) const {
        std::filesystem::create_directories((path_ / name).parent_path());
        std::ofstream(path_ / name, std::ios::binary) << content;
    }
    void Write(std::string_view name, const std::vector<std::uint8_t>& content) const {
        Write(name, std::string_view(reinterpret_cast<const char*>(content.data()), content.size()));
    }

    std::string Read(std::string_view name) const {
        std::ifstream file(path_ / name, std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }
    bool Has(std::string_view name) const { return std::filesystem::exists(path_ / name); }
    std::vector<std::string> Names() const {
        std::vector<std::string> names;
        for (const auto& entry : std::filesystem::directory_iterator(path_)) {
            names.push_back(entry.path().filename().string());
        }
        std::sort(names.begin(), names.end());
        return names;
    }

  private:
    std::filesystem::path path_;
};

/// The message of the exception of a type that an action throws; a failure if it throws none.
template <class Exception, class Action>
std::string WhatIsThrown(Action action) {
    try {
        action();
    } catch (const Exception& exception) {
        return exception.what();
    }
    ADD_FAILURE() << "nothing was thrown";
    return {};
}

}  // namespace corvenna
