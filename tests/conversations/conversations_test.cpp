#include <gtest/gtest.h>

#include <cmath>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "tools/replay/script.h"

/// Every script of this folder is run, and what the station did is compared with the transcript beside it,
/// line by line. A new transcript is made by corvenna-replay, and read before it is kept.
namespace corvenna {
namespace {

namespace fs = std::filesystem;

constexpr std::string_view ScriptEnding = ".jsonl";
constexpr std::string_view TranscriptEnding = ".transcript.jsonl";

std::vector<std::string> AllConversations() {
    std::vector<std::string> names;
    for (const auto& entry : fs::directory_iterator("conversations")) {
        const std::string name = entry.path().filename().string();
        if (!name.ends_with(ScriptEnding) || name.ends_with(TranscriptEnding)) continue;
        names.push_back(name.substr(0, name.size() - ScriptEnding.size()));
    }
    std::sort(names.begin(), names.end());
    return names;
}

/// Numbers with a fraction agree within 1e-9; what a failure says is for people and is not compared.
bool Agree(const Json& a, const Json& b) {
    if (a.is_number() && b.is_number()) return std::abs(a.get<double>() - b.get<double>()) <= 1e-9;
    if (a.type() != b.type() || a.size() != b.size()) return false;
    if (a.is_object()) {
        return std::all_of(a.items().begin(), a.items().end(), [&](const auto& member) {
            return b.contains(member.key()) &&
                   (member.key() == "what" || Agree(member.value(), b[member.key()]));
        });
    }
    if (a.is_array()) return std::equal(a.begin(), a.end(), b.begin(), &Agree);
    return a == b;
}

std::vector<std::string> Lines(std::istream& stream) {
    std::vector<std::string> lines;
    for (std::string line; std::getline(stream, line);) lines.push_back(line);
    return lines;
}

class Conversation : public testing::TestWithParam<std::string> {};

TEST_P(Conversation, GoesAsItsTranscriptSays) {
    const fs::path folder = "conversations";
    std::ifstream transcript(folder / (GetParam() + std::string(TranscriptEnding)));
    ASSERT_TRUE(transcript) << "there is no transcript";
    const auto expected = Lines(transcript);

    std::stringstream output;
    Replay replay(output);
    RunScript(ReadScript(folder / (GetParam() + std::string(ScriptEnding))), replay);
    const auto actual = Lines(output);

    for (std::size_t i = 0; i < std::min(expected.size(), actual.size()); ++i) {
        ASSERT_TRUE(Agree(Json::parse(expected[i]), Json::parse(actual[i])))
            << "line " << i + 1 << "\nexpected " << expected[i] << "\nactual   " << actual[i];
    }
    EXPECT_EQ(actual.size(), expected.size()) << "lines";
}

INSTANTIATE_TEST_SUITE_P(All, Conversation, testing::ValuesIn(AllConversations()),
                         [](const auto& script) { return script.param; });

TEST(Conversations, ThereAreAtLeastForty) { EXPECT_GE(AllConversations().size(), 40u); }

}  // namespace
}  // namespace corvenna
