#include <gmock/gmock.h>
#include <sys/resource.h>
#include <unistd.h>

#include "support/has_form.h"
#include "tools/platform/platform.h"

namespace corvenna {
namespace {

TEST(CommandLine, HandsOnItsWordsAsTheyAre) {
    const char* const given[] = {"program", "K\xC3\xB6ln", "a b", ""};
    const CommandLine line(4, given, Spelling::Files);
    EXPECT_THAT(std::vector<std::string>(line.Words(), line.Words() + line.Count()),
                testing::ElementsAre("program", "K\xC3\xB6ln", "a b", ""));
}

TEST(OutputTakesColour, NotWhenItIsNoTerminal) {
    int ends[2];
    ASSERT_EQ(pipe(ends), 0);
    const int saved = dup(STDOUT_FILENO);
    dup2(ends[1], STDOUT_FILENO);
    EXPECT_FALSE(OutputTakesColour());
    dup2(saved, STDOUT_FILENO);
    close(saved);
    close(ends[0]);
    close(ends[1]);
}

TEST(ProgramFolder, HoldsTheProgram) {
    EXPECT_TRUE(std::filesystem::exists(ProgramFolder() / "platform_tests"));
}

TEST(AllowManyOpenFiles, RaisesTheLimitToTheHighest) {
    AllowManyOpenFiles();
    rlimit limit{};
    ASSERT_EQ(getrlimit(RLIMIT_NOFILE, &limit), 0);
    EXPECT_EQ(limit.rlim_cur, limit.rlim_max);
}

TEST(SystemVersion, NamesTheSystem) { EXPECT_THAT(SystemVersion(), HasForm("[A-Za-z]+ [0-9]+[.].*")); }

}  // namespace
}  // namespace corvenna
