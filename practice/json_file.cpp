#include "practice/json_file.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <fstream>

#include "station/code_page.h"

namespace corvenna {

namespace {

std::string ReadWhole(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    std::string text;
    std::array<char, 65536> piece{};
    while (file.read(piece.data(), piece.size()) || file.gcount() > 0) {
        text.append(piece.data(), static_cast<std::size_t>(file.gcount()));
    }
    if (!file.is_open() || file.bad()) {
        throw DataFileError(fmt::format("{}: the file can't be read", path.string()));
    }
    return text;
}

std::size_t LineOf(const std::string& text, std::size_t byte) {
    const auto end = text.begin() + static_cast<std::ptrdiff_t>(std::min(byte, text.size()));
    return 1 + static_cast<std::size_t>(std::count(text.begin(), end, '\n'));
}

}  // namespace

JsonFile::JsonFile(const std::filesystem::path& path) : name_(path.string()) {
    const std::string text = ReadWhole(path);
    try {
        document_ = nlohmann::json::parse(text);
    } catch (const nlohmann::json::parse_error& error) {
        throw DataFileError(fmt::format("{}: line {}: not JSON", name_, LineOf(text, error.byte)));
    }
}

DataFileError JsonValue::Complaint(const std::string& words) const {
    const bool atRoot = place_.ends_with(": ");
    return DataFileError(atRoot ? place_ + words : place_ + " " + words);
}

JsonValue JsonValue::operator[](const std::string& key) const {
    const std::string place = place_.ends_with(": ") ? place_ + key : place_ + "." + key;
    if (!Has(key)) throw JsonValue(*value_, place).Complaint("is missing");
    return {value_->at(key), place};
}

std::vector<JsonValue> JsonValue::Elements() const {
    if (!value_->is_array()) throw Complaint("is no list");
    std::vector<JsonValue> elements;
    for (std::size_t i = 0; i < value_->size(); ++i) {
        elements.emplace_back((*value_)[i], fmt::format("{}[{}]", place_, i));
    }
    return elements;
}

double JsonValue::Number() const {
    if (!value_->is_number()) throw Complaint("is no number");
    return value_->get<double>();
}

double JsonValue::NumberWithin(double lowest, double highest) const {
    const double number = Number();
    if (!(number >= lowest && number <= highest)) {
        throw Complaint(fmt::format("is {}, not within {} to {}", number, lowest, highest));
    }
    return number;
}

int JsonValue::WholeWithin(int lowest, int highest) const {
    const double number = NumberWithin(lowest, highest);
    if (number != static_cast<int>(number)) throw Complaint("is no whole number");
    return static_cast<int>(number);
}

bool JsonValue::Truth() const {
    if (!value_->is_boolean()) throw Complaint("is neither true nor false");
    return value_->get<bool>();
}

std::string JsonValue::Text() const {
    if (!value_->is_string()) throw Complaint("is no text");
    return Utf8ToCodePage(value_->get<std::string>());
}

}  // namespace corvenna
