#pragma once

#include <cstddef>
#include <filesystem>
#include <nlohmann/json.hpp>
#include <stdexcept>
#include <string>
#include <vector>

namespace corvenna {

/// A data file that can't be read or does not hold what it should. The words name the file and the place.
class DataFileError : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

/// A value somewhere in a JSON file that knows its place, so that every complaint about it can name the
/// place as "igrf.json: coefficients[3].g[1]". The document must outlive it.
class JsonValue {
  public:
    JsonValue(const nlohmann::json& value, std::string place) : value_(&value), place_(std::move(place)) {}

    /// A member of an object. Throws DataFileError when it is missing.
    JsonValue operator[](const std::string& key) const;

    /// The elements of a list.
    std::vector<JsonValue> Elements() const;

    double Number() const;
    double NumberWithin(double lowest, double highest) const;
    int WholeWithin(int lowest, int highest) const;
    bool Truth() const;
    std::string Text() const;  ///< in the 8-bit code page

    bool Has(const std::string& key) const { return value_->is_object() && value_->contains(key); }

    /// To be thrown about this place.
    DataFileError Complaint(const std::string& words) const;

  private:
    const nlohmann::json* value_;
    std::string place_;
};

/// A JSON file, read whole.
class JsonFile {
  public:
    explicit JsonFile(const std::filesystem::path& path);
    JsonValue Root() const { return {document_, name_ + ": "}; }

  private:
    std::string name_;
    nlohmann::json document_;
};

}  // namespace corvenna
