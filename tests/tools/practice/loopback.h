#pragma once

#include <chrono>
#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "link/directplay/directplay_session.h"
#include "practice/practice_folder.h"
#include "practice/simulator_peer.h"
#include "tools/child_process.h"

namespace corvenna {

/// A folder with the database of the practice world, made once for all tests of a program.
inline const std::filesystem::path& PracticeApp() {
    static const std::filesystem::path folder = [] {
        const std::filesystem::path made = CORVENNA_TEST_APP;
        CompletePracticeFolder(made, CORVENNA_TEST_DATA, [](std::string_view) {});
        return made;
    }();
    return folder;
}

/// A session on an address of this computer's own that nobody else uses, hosted by somebody whom a test
/// moves.
class LoopbackHost {
  public:
    /// name: the host is an observer unless it is to be the controller.
    LoopbackHost(const std::string& address, std::int32_t maxPlayers, const std::string& name = "Test_Host")
        : Peer(Session(address), {.Name = name, .Observer = true, .Where = {}},
               {.Heard = [this](auto from,
                                auto text) { Said.push_back(std::string(from) + ": " + std::string(text)); },
                .Noted = {},
                .Admits = [this](auto) { return Admits; }}) {
        Peer.Host("Test Session", maxPlayers);
    }

    void Step() { Peer.Step(std::chrono::milliseconds(0)); }
    std::function<void()> Stepper() {
        return [this] { Step(); };
    }

    /// Steps until it is so; a test that waits in vain has failed.
    void Until(const std::function<bool()>& isSo) {
        const auto deadline = std::chrono::steady_clock::now() + ChildProcess::Patience;
        while (!isSo() && std::chrono::steady_clock::now() < deadline) Step();
        ASSERT_TRUE(isSo());
    }

    std::int32_t IdOf(const std::string& name) {
        for (const SessionMember& member : Peer.Dp().GetDPEnumPlayers()) {
            if (member.ShortName == name) return member.Id;
        }
        return 0;
    }

    bool Admits = true;
    std::vector<std::string> Said;

  private:
    std::unique_ptr<DirectPlaySession> Session(const std::string& address) {
        options_.Sockets.BindIp = *directplay::ParseIp(address);
        return std::make_unique<DirectPlaySession>(options_);
    }

    DirectPlayOptions options_;

  public:
    SimulatorPeer Peer;
};

}  // namespace corvenna
