#pragma once

#include <optional>
#include <string>
#include <vector>

#include "link/directplay/limits.h"
#include "link/directplay/network.h"
#include "link/directplay/wire_messages.h"

namespace corvenna::directplay {

/// A session as its host describes it, and where the host listens.
struct FoundSession {
    SessionDescription Description;
    std::u16string Name;
    Endpoint Host;
};

/// Looking for sessions: asks again and again, by datagram, later also by stream, and when nobody answers
/// for any game, for the older simulator by name. One thread.
class SessionSearch {
  public:
    struct Wanted {
        std::vector<Endpoint> Datagrams;  ///< where to ask: a host, or the network's broadcast addresses
        std::optional<Endpoint> Stream;   ///< a host that may be asked over a connection too
        Guid Application;                 ///< zero: any, then the older simulator
        std::u16string Password;
        std::uint32_t Flags = EnumFlag::Available;
    };

    /// The application under which the simulator of 1998 plays.
    static const Guid OlderSimulator;

    SessionSearch(Network& network, const Timing& timing) : network_(network), timing_(timing) {}

    void Begin(Wanted wanted, TimePoint now);
    void End();
    void Advance(TimePoint now);

    /// An answer that is not asked for any more is ignored.
    void OnReply(const Endpoint& host, const EnumSessionsReply& reply, TimePoint now);

    void OnUnreachable(const Endpoint& tcp, const std::string& why);

    /// Why the host could not be asked over a connection; empty when it could, or was not asked.
    const std::string& StreamTrouble() const { return streamTrouble_; }

    /// Every session that answered since Begin, its newest description.
    const std::vector<FoundSession>& Found() const { return found_; }

    /// When the last session was added to Found.
    TimePoint LastFound() const { return lastFound_; }

  private:
    void Ask(const Guid& application, TimePoint now);

    Network& network_;
    const Timing& timing_;
    std::optional<Wanted> wanted_;
    TimePoint begun_{};
    TimePoint nextAsking_{};
    TimePoint lastFound_{};
    std::string streamTrouble_;
    std::vector<FoundSession> found_;
};

}  // namespace corvenna::directplay
