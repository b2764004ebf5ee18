#pragma once

#include <chrono>
#include <functional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace corvenna {

/// An error that escaped the body of a timer. The words name the timer.
class HandlerError : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

struct StationTimer {
    std::string_view Name;  ///< for complaints: "the tick"
    std::chrono::milliseconds Interval;
    std::function<bool()> Enabled;
    std::function<void()> Handle;
};

/// The timers of a station on one thread and on a clock that is handed in. One handler at a time, each to
/// its end; a timer that came due several times during a long handler is served once.
class StationTimers {
  public:
    StationTimers(std::vector<StationTimer> timers, std::chrono::milliseconds now);

    /// Serves the timers that are due, in their order. What a handler throws comes out as HandlerError, and
    /// the timers behind it are not served.
    void Run(std::chrono::milliseconds now);

    std::chrono::milliseconds NextDue() const;

  private:
    struct Entry {
        StationTimer Timer;
        std::chrono::milliseconds Due;
    };
    std::vector<Entry> entries_;
};

}  // namespace corvenna
