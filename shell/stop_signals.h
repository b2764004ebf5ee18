#pragma once

#include <QSocketNotifier>
#include <functional>
#include <memory>

namespace corvenna {

/// The system's ways to ask a program to end: SIGINT, SIGTERM and SIGHUP, where there are signals. To be made
/// before any thread starts.
class StopSignals {
  public:
    StopSignals();
    ~StopSignals();
    StopSignals(const StopSignals&) = delete;
    StopSignals& operator=(const StopSignals&) = delete;

    /// Calls stop, from the event loop, for each signal from here on. Needs the application object.
    void Watch(std::function<void()> stop);

  private:
    int signals_ = -1;
    std::unique_ptr<QSocketNotifier> notifier_;
};

}  // namespace corvenna
