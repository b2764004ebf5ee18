#include <gmock/gmock.h>
#include <windows.h>

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
    StartedProgram good({CORVENNA_PRACTICE, "--version"});
    EXPECT_EQ(EventualStatus(good), 0);
    StartedProgram bad({CORVENNA_PRACTICE, "nothing like that"});
    EXPECT_EQ(EventualStatus(bad), 2);
    EXPECT_EQ(bad.End(), 2);
}

TEST(StartedProgramTest, WhatRunsHasNoStatusAndIsEndedWhenAsked) {
    StartedProgram child({CORVENNA_PRACTICE, "host", "--port", "0"});
    EXPECT_EQ(child.Status(), std::nullopt);
    child.End();
    EXPECT_TRUE(child.Status().has_value());
}

TEST(StartedProgramTest, ItGetsTheStandardStreamsAndNothingElse) {
    SECURITY_ATTRIBUTES handedOn{sizeof(SECURITY_ATTRIBUTES), nullptr, TRUE};
    HANDLE reads = nullptr;
    HANDLE writes = nullptr;
    ASSERT_NE(CreatePipe(&reads, &writes, &handedOn, 0), 0);
    StartedProgram child({CORVENNA_PRACTICE, "host", "--port", "0"});
    CloseHandle(writes);
    EXPECT_EQ(PeekNamedPipe(reads, nullptr, 0, nullptr, nullptr, nullptr), 0);
    EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_BROKEN_PIPE));
    EXPECT_EQ(child.Status(), std::nullopt);
    CloseHandle(reads);
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
