#pragma once

#include <condition_variable>
#include <cstdint>
#include <functional>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "practice/simulator_peer.h"

namespace corvenna {

/// A simulator that hosts a session on this computer, at ports of its own, on a thread of its own.
class HostThread {
  public:
    struct Options {
        std::string SessionName = "Friday evening";
        std::int32_t Players = 16;
        bool Admits = true;
    };

    explicit HostThread(Options options);
    HostThread() : HostThread(Options{}) {}
    ~HostThread();
    HostThread(const HostThread&) = delete;
    HostThread& operator=(const HostThread&) = delete;

    /// The port at which the session is searched.
    std::uint16_t Port() const { return port_; }

    void SetAdmits(bool admits);

    /// Does something in the simulator and waits until it is done.
    void Do(const std::function<void(SimulatorPeer&)>& action);

    /// Texts of the chat as they came in.
    std::vector<std::string> Heard();

  private:
    void Run();
    void RunSimulator();

    Options options_;
    std::mutex mutex_;
    std::condition_variable changed_;
    std::uint16_t port_ = 0;
    bool open_ = false;
    bool over_ = false;
    std::string failure_;
    std::function<void(SimulatorPeer&)> action_;
    std::vector<std::string> heard_;
    std::thread thread_;
};

}  // namespace corvenna
