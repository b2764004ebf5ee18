#pragma once

#include <fmt/format.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <fstream>
#include <memory>
#include <string>
#include <vector>

#include "practice/flown_session.h"
#include "support/practice_station.h"

/// What is said and heard in a whole flight, to be compared with what was reviewed and kept.
namespace corvenna {

inline std::string Clock(std::chrono::milliseconds time) {
    const auto seconds = time / std::chrono::seconds(1);
    return fmt::format("{:02}:{:02}:{:02}", seconds / 3600, seconds / 60 % 60, seconds % 60);
}

/// All that is said and heard while one pilot is about.
inline std::vector<std::string> TranscriptOf(
    const std::string& code, int number,
    std::unique_ptr<SessionCarrier> carrier = std::make_unique<MemoryCarrier>()) {
    std::vector<std::string> lines;
    std::chrono::milliseconds now{0};
    const auto said = [&](auto name, auto text) {
        lines.push_back(fmt::format("{} {}: {}", Clock(now), name, text));
    };
    FlownSession session(PracticeStation(CORVENNA_TEST_DATA, code), 1, number, {.Heard = {}, .Said = said},
                         std::move(carrier));
    session.Session.Transmitted = [&](auto frequency, auto text) {
        lines.push_back(fmt::format("{} [{}] {}", Clock(now), frequency, text));
    };
    while (session.Session.Now < std::chrono::hours(6) && !session.AllGone()) {
        now = session.Session.Now;
        session.Step();
    }
    return lines;
}

inline std::vector<std::string> LinesOfFile(const std::string& name) {
    std::ifstream in(std::string(CORVENNA_TRANSCRIPTS) + "/" + name);
    std::vector<std::string> lines;
    for (std::string line; std::getline(in, line);) lines.push_back(line);
    return lines;
}

/// What was heard now is left beside the test's temporary files, to be read and kept.
inline void ExpectTranscript(const std::string& code, int number, const std::string& name,
                             std::unique_ptr<SessionCarrier> carrier = std::make_unique<MemoryCarrier>()) {
    const auto heard = TranscriptOf(code, number, std::move(carrier));
    const auto kept = LinesOfFile(name);
    if (heard == kept) return;
    std::ofstream out(testing::TempDir() + name);
    for (const std::string& line : heard) out << line << '\n';
    const auto [a, b] = std::mismatch(heard.begin(), heard.end(), kept.begin(), kept.end());
    ADD_FAILURE() << name << " differs in line " << a - heard.begin() + 1
                  << "\n heard: " << (a == heard.end() ? "(end)" : *a)
                  << "\n  kept: " << (b == kept.end() ? "(end)" : *b) << "\nWhat was heard is in "
                  << testing::TempDir() << name;
}

}  // namespace corvenna
