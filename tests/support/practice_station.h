#pragma once

#include <filesystem>
#include <map>
#include <random>
#include <string>
#include <string_view>

#include "practice/practice_folder.h"

namespace corvenna {

/// A folder with the practice world and its airport database, gone when the program ends.
class PracticeDatabase {
  public:
    explicit PracticeDatabase(const std::filesystem::path& data)
        : folder_(std::filesystem::temp_directory_path() /
                  ("corvenna-practice-" + std::to_string(std::random_device{}()))) {
        CompletePracticeFolder(folder_, data, [](std::string_view) {});
    }
    ~PracticeDatabase() {
        std::error_code ignored;
        std::filesystem::remove_all(folder_, ignored);
    }
    PracticeDatabase(const PracticeDatabase&) = delete;
    PracticeDatabase& operator=(const PracticeDatabase&) = delete;

    const Station& At(const std::string& code) {
        const auto [station, isNew] = stations_.try_emplace(code);
        if (isNew) SelectByName(station->second, folder_, code);
        return station->second;
    }

  private:
    std::filesystem::path folder_;
    std::map<std::string, Station> stations_;
};

/// A station at one of the shipped airports, as a scan of the practice world, the database and the selection
/// give it. `data` is the folder of the shipped data.
inline Station PracticeStation(const std::filesystem::path& data, std::string_view code) {
    static PracticeDatabase database(data);
    return database.At(std::string(code));
}

}  // namespace corvenna
