#pragma once

#include <asio.hpp>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <vector>

#include "link/directplay/network.h"
#include "link/directplay/socket_options.h"
#include "link/directplay/wire_frame.h"

namespace corvenna::directplay {

/// A connection over which frames go out, in their order. Frames may be put in by any thread; all else
/// happens on the input/output thread.
class OutboundConnection : public std::enable_shared_from_this<OutboundConnection> {
  public:
    enum class End {
        Closed,        ///< by us, after everything was sent
        Disconnected,  ///< by the other side
        Unreachable,   ///< it never came about
        Stuck,         ///< the other side does not read
    };

    struct Events {
        std::function<void(ByteSpan frame)> OnFrame;  ///< nobody should send any, but it happens
        /// The last thing heard of it.
        std::function<void(const OutboundConnection&, End end, const std::string& why)> OnEnd;
    };

    OutboundConnection(asio::io_context& io, const Endpoint& place, const SocketOptions& options,
                       Events events);

    const Endpoint& Place() const { return place_; }

    /// False once the connection has come to its end.
    bool Put(SharedBytes frame);

    /// Ends the connection when all frames put in so far are sent, unless another one follows.
    void CloseWhenSent();

    /// Ends it now, without a word.
    void Abort();

    /// Looks at the deadlines.
    void Check(TimePoint now);

  private:
    enum class State { Idle, Connecting, Ready, Ended };

    void Kick();
    void Connect();
    void WriteNext();
    void Read();
    void CutFrames();
    void Finish(End end, const std::string& why);

    const Endpoint place_;
    const SocketOptions& options_;
    Events events_;

    // For any thread.
    std::mutex mutex_;
    std::deque<SharedBytes> queue_;
    std::size_t waitingBytes_ = 0;
    bool closeWhenSent_ = false;
    bool kicked_ = false;
    bool ended_ = false;

    // For the input/output thread.
    asio::io_context& io_;
    asio::ip::tcp::socket socket_;
    State state_ = State::Idle;
    TimePoint deadline_ = TimePoint::max();
    std::vector<SharedBytes> writing_;
    bool peerClosed_ = false;
    std::array<std::byte, 512> readBuffer_{};
    FrameCutter cutter_;
};

}  // namespace corvenna::directplay
