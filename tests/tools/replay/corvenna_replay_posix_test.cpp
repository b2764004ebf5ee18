#include <gmock/gmock.h>
#include <sys/wait.h>

#include <cstdlib>

#include "world/temp_folder.h"

namespace corvenna {
namespace {

using testing::MatchesRegex;
using testing::StartsWith;

/// The program, run in a folder of its own.
class ReplayTool : public testing::Test {
  protected:
    struct Outcome {
        int Status;
        std::string Out, Err;
    };

    Outcome Run(const std::string& arguments, const std::string& output = "out.txt") {
        const std::string command = "cd '" + folder.Path() + "' && '" CORVENNA_REPLAY_TOOL "' " + arguments +
                                    " >" + output + " 2>err.txt";
        const int status = std::system(command.c_str());
        return {WEXITSTATUS(status), folder.Read("out.txt"), folder.Read("err.txt")};
    }

    TempFolder folder;
};

TEST_F(ReplayTool, AHandlerThatFailsIsOutputAndNoFailureOfTheProgram) {
    folder.Write("s.jsonl",
                 "# bytes from somebody who never came\n\n"
                 R"({"do":"open","controller_id":1,"controller_name":"C","max_players":9})"
                 "\n"
                 R"({"do":"message","from":2,"hex":"0710"})"
                 "\n"
                 R"({"do":"pump"})"
                 "\n");
    const Outcome run = Run("s.jsonl");
    EXPECT_EQ(run.Status, 0);
    EXPECT_THAT(run.Out, StartsWith(R"({"failed":{"handler":"pump",)"));
    EXPECT_EQ(run.Err, "");
}

TEST_F(ReplayTool, AWrongScriptIsOneLineAndStatusTwo) {
    folder.Write("sub/s.jsonl", "{\"do\":\"dump\"}\n{\"do\":\"dump\"\n");
    const Outcome run = Run("sub/s.jsonl");
    EXPECT_EQ(run.Status, 2);
    EXPECT_EQ(run.Out, "");
    EXPECT_EQ(run.Err, "corvenna-replay: sub/s.jsonl:2: byte 13: not JSON\n");
}

TEST_F(ReplayTool, PathsBeginAtTheFolderOfTheScript) {
    folder.Write("magdec.bgl", "not the one");
    folder.Write("sub/s.jsonl", "{\"do\":\"magdec\",\"file\":\"magdec.bgl\"}\n");
    const Outcome run = Run("sub/s.jsonl");
    EXPECT_EQ(run.Status, 2);
    EXPECT_THAT(run.Err, MatchesRegex("corvenna-replay: sub/s.jsonl:1: sub/magdec.bgl: [^\n]*\n"));
}

TEST_F(ReplayTool, OutputThatCanNotBeWrittenIsAFailureWithOneLine) {
    folder.Write("s.jsonl", "{\"do\":\"dump\"}\n");
    const Outcome run = Run("s.jsonl", "/dev/full");
    EXPECT_EQ(run.Status, 1);
    EXPECT_EQ(run.Err, "corvenna-replay: standard output can't be written\n");
}

}  // namespace
}  // namespace corvenna
