#pragma once

#include <asio.hpp>
#include <functional>
#include <vector>

#include "directplay/raw_peer.h"
#include "link/directplay/socket_options.h"
#include "support/system_limits.h"

namespace corvenna::directplay {

inline constexpr std::uint32_t ThisComputer = 0x7F000001;

/// Sockets whose input/output thread is the test's own.
struct IoScene {
    asio::io_context Io;
    SocketOptions Options;

    /// Serves the sockets until it is so; false when it never was.
    bool Until(const std::function<bool()>& isSo) {
        const auto deadline = Clock::now() + Patience;
        while (!isSo()) {
            if (Clock::now() > deadline) return false;
            Io.restart();
            Io.run_one_until(deadline);
        }
        return true;
    }

    /// Serves what is due by now, and nothing later.
    void ServeWhatIsDue() {
        Io.restart();
        Io.poll();
    }
};

/// A whole frame of a sender who listens at a port.
inline Bytes FrameFrom(std::uint16_t port, std::size_t payload = 0) {
    return Frame(port, Bytes(PlayerIdsSize + payload));
}

inline Bytes operator+(Bytes front, const Bytes& back) {
    front.insert(front.end(), back.begin(), back.end());
    return front;
}

}  // namespace corvenna::directplay
