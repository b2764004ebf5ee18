#pragma once

#include <condition_variable>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "link/directplay/directplay_session.h"
#include "practice/simulator_peer.h"

namespace corvenna {

/// A simulator that hosts a session on this computer, at ports of its own, on a thread of its own.
class HostThread {
  public:
    struct Options {
        std::string SessionName = "Friday evening";
        std::int32_t Players = 16;
        bool Admits = true;
        bool Answers = true;  ///< false: it is there, but busy with something else
    };

    explicit HostThread(Options options);
    HostThread() : HostThread(Options{}) {}
    ~HostThread();
    HostThread(const HostThread&) = delete;
    HostThread& operator=(const HostThread&) = delete;

    /// The port at which the session is searched.
    std::uint16_t Port() const { return port_; }

    void SetAdmits(bool admits);
    void SetAnswers(bool answers);

    /// Another pilot comes, and has been admitted. He flies on when the host has left.
    void Joins(const std::string& pilot);

    /// Does something in the simulator and waits until it is done.
    void Do(const std::function<void(SimulatorPeer&)>& action);

    /// Texts of the chat as they came in.
    std::vector<std::string> Heard();

  private:
    void Run();
    void RunSimulator();
    void Step(SimulatorPeer& simulator, std::chrono::milliseconds now);

    Options options_;
    std::mutex mutex_;
    std::condition_variable changed_;
    std::uint16_t port_ = 0;
    bool open_ = false;
    bool over_ = false;
    std::string failure_;
    std::function<void(SimulatorPeer&)> action_;
    std::vector<std::string> heard_;
    DirectPlayOptions sockets_;
    DirectPlayOptions guestSockets_;
    std::unique_ptr<SimulatorPeer> guest_;  // the thread's own
    std::thread thread_;
};

}  // namespace corvenna
