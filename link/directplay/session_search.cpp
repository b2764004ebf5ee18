#include "link/directplay/session_search.h"

#include <algorithm>

#include "link/directplay/wire_frame.h"

namespace corvenna::directplay {

namespace {

/// Enough for every session of a large network party; an answer beyond it is ignored.
constexpr std::size_t MaxFound = 256;

/// Longest name that is shown.
constexpr std::size_t MaxNameUnits = 4096;

}  // namespace

const Guid SessionSearch::OlderSimulator{
    0xCC080A27, 0x6D4E, 0x11D0, {0x8E, 0x21, 0x00, 0xA0, 0xC9, 0x05, 0x42, 0xEF}};

void SessionSearch::Begin(Wanted wanted, TimePoint now) {
    wanted_ = std::move(wanted);
    begun_ = nextAsking_ = now;
    streamTrouble_.clear();
    found_.clear();
    Advance(now);
}

void SessionSearch::End() {
    if (wanted_ && wanted_->Stream) network_.Disconnect(*wanted_->Stream);
    wanted_.reset();
}

void SessionSearch::Advance(TimePoint now) {
    if (!wanted_ || now < nextAsking_) return;
    nextAsking_ = now + timing_.SearchRepeat;
    Ask(wanted_->Application, now);
    const bool nobodyYet = found_.empty() && now - begun_ >= timing_.SearchOlder;
    if (nobodyYet && wanted_->Application.IsZero()) Ask(OlderSimulator, now);
}

void SessionSearch::Ask(const Guid& application, TimePoint now) {
    EnumSessions question{application, std::nullopt, wanted_->Flags};
    if (!wanted_->Password.empty()) question.Password = wanted_->Password;
    const auto frame =
        std::make_shared<const Bytes>(Frame(network_.TcpPort(), EncodeSystemMessage(question)));
    for (const Endpoint& place : wanted_->Datagrams) network_.SendDatagram(place, frame);
    if (!found_.empty() || !wanted_->Stream || now - begun_ < timing_.SearchByStream) return;
    network_.SendFrame(*wanted_->Stream, frame);
}

void SessionSearch::OnUnreachable(const Endpoint& tcp, const std::string& why) {
    if (wanted_ && wanted_->Stream == tcp) streamTrouble_ = why;
}

void SessionSearch::OnReply(const Endpoint& host, const EnumSessionsReply& reply, TimePoint now) {
    if (!wanted_) return;
    FoundSession session{reply.Description, reply.Name.value_or(u"").substr(0, MaxNameUnits), host};
    const auto known = std::find_if(found_.begin(), found_.end(), [&](const FoundSession& f) {
        return f.Description.Instance == reply.Description.Instance;
    });
    if (known != found_.end()) {
        *known = std::move(session);
    } else if (found_.size() < MaxFound) {
        found_.push_back(std::move(session));
        lastFound_ = now;
    }
}

}  // namespace corvenna::directplay
