#include <gmock/gmock.h>

#include <chrono>
#include <system_error>

#include "tools/practice/started_program.h"

namespace corvenna {
namespace {

std::optional<int> EventualStatus(StartedProgram& child) {
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(60);
    while (!child.Status() && std::chrono::steady_clock::now() < deadline) {
    }
    return child.Status();
}

TEST(StartedProgramTest, TellsTheStatusOfWhatHasEnded) {
    StartedProgram good({"cmd", "/c", "exit", "0"});
    EXPECT_EQ(EventualStatus(good), 0);
    StartedProgram bad({"cmd", "/c", "exit", "7"});
    EXPECT_EQ(EventualStatus(bad), 7);
    EXPECT_EQ(bad.End(), 7);
}

TEST(StartedProgramTest, WhatRunsHasNoStatusAndIsEndedWhenAsked) {
    StartedProgram child({CORVENNA_PRACTICE, "host", "--port", "0"});
    EXPECT_EQ(child.Status(), std::nullopt);
    child.End();
    EXPECT_TRUE(child.Status().has_value());
}

TEST(StartedProgramTest, AProgramThatIsNotThereIsNamed) {
    try {
        StartedProgram child({"nowhere\\at-all.exe"});
        FAIL();
    } catch (const std::system_error& error) {
        EXPECT_THAT(error.what(), testing::HasSubstr("nowhere\\at-all.exe"));
    }
}

}  // namespace
}  // namespace corvenna
