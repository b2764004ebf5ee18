#pragma once

#include <functional>
#include <memory>

namespace corvenna {

/// The system's ways to ask a program with windows to end: SIGINT, SIGTERM and SIGHUP where there are
/// signals, else the end of the user's time at the computer. To be made before any thread starts.
class StopSignals {
  public:
    StopSignals();
    ~StopSignals();
    StopSignals(const StopSignals&) = delete;
    StopSignals& operator=(const StopSignals&) = delete;

    /// Calls stop, from the event loop, for each of them from here on; maybe once more at the program's own
    /// end. Needs the application object.
    void Watch(std::function<void()> stop);

  private:
    struct Platform;
    std::unique_ptr<Platform> platform_;
};

}  // namespace corvenna
