#pragma once

#include <chrono>
#include <csignal>
#include <filesystem>
#include <string>

#include "tools/console/run_loop.h"

namespace corvenna {

/// Standard input, signals and the clock of a system of the POSIX family: all that the console needs of
/// the platform stands here. At most one at a time.
class PosixTerminal final : public Terminal {
  public:
    /// From here on SIGINT, SIGTERM and SIGHUP ask for the end, and writing to nobody is an ordinary failure.
    PosixTerminal();
    ~PosixTerminal() override;
    PosixTerminal(const PosixTerminal&) = delete;
    PosixTerminal& operator=(const PosixTerminal&) = delete;

    std::chrono::milliseconds Now() override;
    TerminalInput Wait(std::chrono::milliseconds atMost) override;

  private:
    void ReadInput(TerminalInput& input);

    std::chrono::steady_clock::time_point start_ = std::chrono::steady_clock::now();
    int signals_ = -1;
    sigset_t maskBefore_{};
    bool endOfInput_ = false;
    std::string pending_;  ///< what has been typed of the line in hand
};

/// Whether standard output is a terminal whose user has nothing against colour.
bool OutputTakesColour();

/// Where programs keep what they can make again: the user's cache, or the folder for temporary files.
std::filesystem::path CacheFolder();

/// The folder of the program file.
std::filesystem::path ProgramFolder();

}  // namespace corvenna
