#include "support/shell_command.h"

#include <filesystem>
#include <string>

namespace corvenna {

namespace {

/// As long as it lives, the program works in another folder.
class WorkingFolder {
  public:
    explicit WorkingFolder(const std::filesystem::path& folder) { std::filesystem::current_path(folder); }
    ~WorkingFolder() {
        std::error_code ignored;
        std::filesystem::current_path(before_, ignored);
    }
    WorkingFolder(const WorkingFolder&) = delete;
    WorkingFolder& operator=(const WorkingFolder&) = delete;

  private:
    std::filesystem::path before_ = std::filesystem::current_path();
};

}  // namespace

ShellOutcome RunInShell(const TempFolder& folder, const std::string& line) {
    const WorkingFolder here(folder.Path());
    const int status = RunShell(line + " >out.txt 2>err.txt");
    return {status, folder.Read("out.txt"), WithoutReturns(folder.Read("err.txt"))};
}

std::string WithoutReturns(std::string text) {
    for (auto at = text.find("\r\n"); at != std::string::npos; at = text.find("\r\n", at)) text.erase(at, 1);
    return text;
}

}  // namespace corvenna
