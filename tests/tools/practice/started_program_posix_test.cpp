#include <gmock/gmock.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <csignal>
#include <string>
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
    StartedProgram good({"/bin/sh", "-c", "exit 0"});
    EXPECT_EQ(EventualStatus(good), 0);
    StartedProgram bad({"/bin/sh", "-c", "exit 7"});
    EXPECT_EQ(EventualStatus(bad), 7);
    EXPECT_EQ(bad.End(), 7);
}

TEST(StartedProgramTest, WhatRunsHasNoStatusAndIsEndedWhenAsked) {
    StartedProgram child({"/bin/sleep", "1000"});
    EXPECT_EQ(child.Status(), std::nullopt);
    EXPECT_EQ(child.End(), 128 + SIGTERM);
}

TEST(StartedProgramTest, ItGetsTheStandardStreamsAndNothingElse) {
    const int open = dup(STDOUT_FILENO);
    ASSERT_GT(open, STDERR_FILENO);
    StartedProgram child(
        {"/bin/sh", "-c", "test -e /proc/self/fd/1 && test ! -e /proc/self/fd/" + std::to_string(open)});
    EXPECT_EQ(EventualStatus(child), 0);
    close(open);
}

TEST(StartedProgramTest, AProgramThatIsNotThereIsNamed) {
    try {
        StartedProgram child({"/nowhere/at-all"});
        FAIL();
    } catch (const std::system_error& error) {
        EXPECT_THAT(error.what(), testing::HasSubstr("/nowhere/at-all"));
        EXPECT_EQ(error.code().value(), ENOENT);
    }
}

TEST(StartedProgramTest, ItDoesNotInheritBlockedSignals) {
    sigset_t blocked, before;
    sigemptyset(&blocked);
    sigaddset(&blocked, SIGTERM);
    sigprocmask(SIG_BLOCK, &blocked, &before);
    StartedProgram child({"/bin/sleep", "1000"});
    EXPECT_EQ(child.End(), 128 + SIGTERM);
    sigprocmask(SIG_SETMASK, &before, nullptr);
}

}  // namespace
}  // namespace corvenna
