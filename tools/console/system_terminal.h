#pragma once

#include <chrono>
#include <memory>

#include "tools/console/run_loop.h"

namespace corvenna {

/// Standard input, the wish to end, and the clock of the system: all that the console needs of the platform
/// stands here. At most one at a time.
class SystemTerminal final : public Terminal {
  public:
    /// From here on Ctrl-C and whatever else ends programs (SIGINT, SIGTERM and SIGHUP; closing the window)
    /// ask for the end, and writing to nobody is an ordinary failure.
    SystemTerminal();
    ~SystemTerminal() override;
    SystemTerminal(const SystemTerminal&) = delete;
    SystemTerminal& operator=(const SystemTerminal&) = delete;

    std::chrono::milliseconds Now() override {
        return std::chrono::duration_cast<std::chrono::milliseconds>(std::chrono::steady_clock::now() -
                                                                     start_);
    }
    TerminalInput Wait(std::chrono::milliseconds atMost) override;

  private:
    struct Platform;
    std::unique_ptr<Platform> platform_;
    std::chrono::steady_clock::time_point start_ = std::chrono::steady_clock::now();
};
}  // namespace corvenna
