#include "link/memory/memory_session.h"

#include <fmt/format.h>

#include <algorithm>

#include "station/numbers.h"

namespace corvenna {

// ---- MemoryRoom

void MemoryRoom::Enter(std::int32_t id, std::string name) {
    if (!places_.empty() || members_.empty()) places_.emplace(id, members_.size());
    members_.push_back({id, std::move(name)});
}

void MemoryRoom::Leave(std::int32_t id) {
    std::erase_if(members_, [&](const SessionMember& member) { return member.Id == id; });
    for (Group& group : groups_) std::erase(group.Players, id);
    owners_.erase(id);
    places_.clear();
}

void MemoryRoom::Rename(std::int32_t id, const std::string& name) {
    for (SessionMember& member : members_) {
        if (member.Id == id) member.ShortName = name;
    }
}

void MemoryRoom::Post(std::int32_t from, std::int32_t to, std::span<const std::byte> bytes) {
    const auto owner = owners_.find(to);
    if (owner == owners_.end()) return;
    owner->second->queue_.push_back({{from, to}, {bytes.begin(), bytes.end()}});
}

SessionRecord MemoryRoom::Record() const {
    SessionRecord record = record_;
    record.CurrentPlayers = Narrow<std::int32_t>(members_.size());
    return record;
}

const SessionMember* MemoryRoom::Find(std::int32_t id) {
    if (places_.empty()) {
        for (std::size_t place = 0; place < members_.size(); ++place)
            places_.emplace(members_[place].Id, place);
    }
    const auto found = places_.find(id);
    return found == places_.end() ? nullptr : &members_[found->second];
}

std::vector<std::int32_t> MemoryRoom::Addressees(const MemorySession& sender, std::int32_t to) const {
    const auto group =
        std::find_if(groups_.begin(), groups_.end(), [&](const Group& g) { return g.Id == to; });
    if (group != groups_.end()) return group->Players;
    if (to != 0) return {to};
    std::vector<std::int32_t> everybodyElse;
    for (const SessionMember& member : members_) {
        const auto& own = sender.players_;
        if (std::find(own.begin(), own.end(), member.Id) == own.end()) everybodyElse.push_back(member.Id);
    }
    return everybodyElse;
}

// ---- MemoryNetwork

std::shared_ptr<MemoryRoom> MemoryNetwork::AddRoom(SessionRecord record) {
    record.GuidInstance = fmt::format("memory session {}", ++roomsMade_);
    return rooms_.emplace_back(std::make_shared<MemoryRoom>(std::move(record)));
}

// ---- MemorySession

MemorySession::~MemorySession() {
    if (room_) LeaveRoom();
}

MemoryRoom& MemorySession::Room() const {
    if (!room_) throw SessionError("the session is not open");
    return *room_;
}

void MemorySession::LeaveRoom() {
    for (const std::int32_t player : players_) room_->Leave(player);
    std::erase(room_->endpoints_, this);
    if (room_->endpoints_.empty()) std::erase(network_.rooms_, room_);
    players_.clear();
    queue_.clear();
    room_.reset();
}

std::vector<Connection> MemorySession::GetDPEnumConnections() {
    return {{"Practice Session On This Computer", "memory"}};
}

void MemorySession::InitializeConnection(const std::string& /*address*/) {}

std::vector<SessionRecord> MemorySession::GetDPEnumSessions(const SessionRecord& wanted) {
    std::vector<SessionRecord> found;
    for (const auto& room : network_.rooms_) {
        const SessionRecord record = room->Record();
        const bool fits = wanted.GuidApplication.empty() || wanted.GuidApplication == record.GuidApplication;
        if (fits && record.CurrentPlayers < record.MaxPlayers) found.push_back(record);
    }
    return found;
}

void MemorySession::Open(const SessionRecord& session, OpenMode mode) {
    if (room_) throw SessionError("the session is open already");
    if (mode == OpenMode::Create) {
        room_ = network_.AddRoom(session);
    } else {
        const auto room = std::find_if(network_.rooms_.begin(), network_.rooms_.end(), [&](const auto& r) {
            return r->Record().GuidInstance == session.GuidInstance;
        });
        if (room == network_.rooms_.end()) {
            throw SessionError(fmt::format("there is no session \"{}\" any more", session.SessionName));
        }
        room_ = *room;
    }
    room_->endpoints_.push_back(this);
}

std::int32_t MemorySession::CreatePlayer(const std::string& friendlyName, const std::string& /*formalName*/) {
    MemoryRoom& room = Room();
    const SessionRecord record = room.Record();
    if (record.CurrentPlayers >= record.MaxPlayers) {
        throw SessionError(fmt::format("the session \"{}\" is full", record.SessionName));
    }
    const std::int32_t id = room.nextId_++;
    room.Enter(id, friendlyName);
    room.owners_[id] = this;
    players_.push_back(id);
    return id;
}

void MemorySession::DestroyPlayer(std::int32_t playerId) {
    MemoryRoom& room = Room();
    if (std::erase(players_, playerId) == 0) {
        throw SessionError(fmt::format("participant {} is not of this program", playerId));
    }
    room.Leave(playerId);
}

void MemorySession::Close() {
    Room();
    LeaveRoom();
}

std::vector<SessionMember> MemorySession::GetDPEnumGroups() {
    std::vector<SessionMember> groups;
    for (const auto& group : Room().groups_) groups.push_back({group.Id, group.Name});
    return groups;
}

std::int32_t MemorySession::CreateGroup(const std::string& name) {
    const std::int32_t id = Room().nextId_++;
    room_->groups_.push_back({id, name, {}});
    return id;
}

void MemorySession::AddPlayerToGroup(std::int32_t groupId, std::int32_t playerId) {
    auto& groups = Room().groups_;
    const auto group =
        std::find_if(groups.begin(), groups.end(), [&](const auto& g) { return g.Id == groupId; });
    if (group == groups.end()) throw SessionError(fmt::format("there is no group {}", groupId));
    auto& players = group->Players;
    if (std::find(players.begin(), players.end(), playerId) == players.end()) players.push_back(playerId);
}

std::vector<SessionMember> MemorySession::GetDPEnumPlayers() { return Room().members_; }

std::string MemorySession::GetPlayerFriendlyName(std::int32_t playerId) {
    const SessionMember* member = Room().Find(playerId);
    if (member == nullptr) throw SessionError(fmt::format("participant {} has left the session", playerId));
    return member->ShortName;
}

std::int32_t MemorySession::GetMessageCount(std::int32_t playerId) {
    Room();
    return Narrow<std::int32_t>(std::count_if(
        queue_.begin(), queue_.end(), [&](const auto& letter) { return letter.Addresses.To == playerId; }));
}

Envelope MemorySession::Receive(DirectPlayMessage& message) {
    Room();
    if (queue_.empty()) throw SessionError("no message waits");
    const Envelope addresses = queue_.front().Addresses;
    message.Assign(queue_.front().Bytes);
    queue_.pop_front();
    return addresses;
}

void MemorySession::Send(std::int32_t from, std::int32_t to, const DirectPlayMessage& message) {
    MemoryRoom& room = Room();
    for (const std::int32_t addressee : room.Addressees(*this, to)) {
        if (room.OnSend) room.OnSend(from, addressee, message.Bytes());
        room.Post(from, addressee, message.Bytes());
    }
}

}  // namespace corvenna
