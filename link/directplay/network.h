#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "link/directplay/endpoint.h"
#include "link/directplay/wire_bytes.h"

namespace corvenna::directplay {

/// A frame that goes to several machines is kept once.
using SharedBytes = std::shared_ptr<const Bytes>;

/// The sockets, as the participant sees them. Nothing here waits.
class Network {
  public:
    virtual ~Network() = default;

    /// Where this machine listens and sends from.
    virtual std::uint16_t TcpPort() const = 0;
    virtual std::uint16_t UdpPort() const = 0;

    /// Sends a frame to a listening port, over the one connection to it, which is opened by the first frame.
    /// Frames arrive in order. What was on its way when a connection broke off is lost.
    virtual void SendFrame(const Endpoint& tcp, SharedBytes frame) = 0;

    virtual void SendDatagram(const Endpoint& udp, SharedBytes datagram) = 0;

    /// Ends the connection to a port once all that waits for it has been sent.
    virtual void Disconnect(const Endpoint& tcp) = 0;

    /// Ends at once the connection to a port, and those that its machine made to us.
    virtual void CutOff(const Endpoint& tcp) = 0;

    /// Tries whether somebody listens. OnProbed brings the answer.
    virtual void Probe(const Endpoint& tcp) = 0;

    /// Opens the ports at which sessions are searched. False when another program has them.
    virtual bool OpenNameServerPorts() = 0;
};

/// What the sockets tell. Called by one thread at a time.
class NetworkEvents {
  public:
    virtual ~NetworkEvents() = default;

    virtual void OnFrame(std::uint32_t sourceIp, ByteSpan frame) = 0;
    virtual void OnDatagram(const Endpoint& source, ByteSpan datagram) = 0;

    /// A connection to us ended that had brought frames of the machine that listens there.
    virtual void OnConnectionLost(const Endpoint& tcp) = 0;

    /// The connection to a port was ended from the other side.
    virtual void OnDisconnected(const Endpoint& tcp) = 0;

    /// Nothing can be sent to a port any more. The words say why.
    virtual void OnUnreachable(const Endpoint& tcp, const std::string& why) = 0;

    /// A connection brought more, or worse, than anybody may send, and was closed.
    virtual void OnMisbehaved(const Endpoint& tcp, const std::string& why) = 0;

    virtual void OnProbed(const Endpoint& tcp, bool reached) = 0;

    /// Comes ten times a second.
    virtual void OnTimer() = 0;
};

}  // namespace corvenna::directplay
