#pragma once

#include <array>
#include <asio.hpp>
#include <functional>
#include <memory>

#include "link/directplay/network.h"
#include "link/directplay/socket_options.h"
#include "link/directplay/wire_frame.h"

namespace corvenna::directplay {

/// A connection that somebody made to us, and over which his frames come in. Input/output thread only.
class InboundConnection : public std::enable_shared_from_this<InboundConnection> {
  public:
    struct Events {
        std::function<void(std::uint32_t sourceIp, ByteSpan frame)> OnFrame;
        /// The last thing heard of it. The words are there when it brought more than anybody may send.
        std::function<void(InboundConnection&, const std::string& flood)> OnEnd;
    };

    InboundConnection(asio::ip::tcp::socket socket, std::uint32_t sourceIp, const SocketOptions& options,
                      Events events);

    void Start() { Read(); }
    void Close();

    /// Looks whether it has been silent for too long where silence is no right of its.
    void Check(TimePoint now);

    /// Where the sender listens, by the header of his last frame. No port before the first.
    const Endpoint& Sender() const { return sender_; }
    TimePoint LastFrame() const { return lastFrame_; }

    /// Bytes of a frame that it has begun.
    std::size_t Pending() const { return cutter_.Pending(); }

  private:
    void Read();
    void CutFrames();
    bool CountAgainstRate();
    void End(const std::string& flood = {});

    asio::ip::tcp::socket socket_;
    const SocketOptions& options_;
    Events events_;
    Endpoint sender_;
    bool ended_ = false;
    std::array<std::byte, 8192> readBuffer_{};
    FrameCutter cutter_;
    TimePoint lastFrame_;
    TimePoint lastBytes_;
    TimePoint secondStart_{};
    std::size_t framesThisSecond_ = 0;
};

}  // namespace corvenna::directplay
