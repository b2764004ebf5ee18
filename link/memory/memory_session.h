#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <functional>
#include <memory>
#include <span>
#include <string>
#include <unordered_map>
#include <vector>

#include "link/session.h"

/// The session layer within one process: for replay and for tests.
/// All of it on one thread. Messages wait in their addressee's queue until he fetches them.
namespace corvenna {

class MemorySession;

/// One session: who is in it, what is under way to whom, and who is its host.
class MemoryRoom {
  public:
    explicit MemoryRoom(SessionRecord record) : record_(std::move(record)) {}

    /// Sees each message once for each addressee, also one who is not there.
    std::function<void(std::int32_t from, std::int32_t to, std::span<const std::byte> bytes)> OnSend;

    /// A participant without a Session of his own: he is listed, and what is sent to him is dropped. An
    /// id that is listed already gets a second entry; the first one gives the name.
    void Enter(std::int32_t id, std::string name);
    void Leave(std::int32_t id);
    void Rename(std::int32_t id, const std::string& name);

    /// Puts bytes into a participant's queue, as sent by anybody.
    void Post(std::int32_t from, std::int32_t to, std::span<const std::byte> bytes);

    /// The id that the next CreatePlayer gets; counted on from there.
    void NumberNextPlayer(std::int32_t id) { nextId_ = id; }

    SessionRecord Record() const;
    const MemorySession* Host() const { return endpoints_.empty() ? nullptr : endpoints_.front(); }

  private:
    friend class MemorySession;

    struct Letter {
        Envelope Addresses;
        std::vector<std::byte> Bytes;
    };
    struct Group {
        std::int32_t Id = 0;
        std::string Name;
        std::vector<std::int32_t> Players;
    };

    const SessionMember* Find(std::int32_t id);
    std::vector<std::int32_t> Addressees(const MemorySession& sender, std::int32_t to) const;

    SessionRecord record_;
    std::int32_t nextId_ = 1;
    std::vector<SessionMember> members_;
    std::unordered_map<std::int32_t, std::size_t> places_;  ///< first entry of each id; empty when stale
    std::vector<Group> groups_;
    std::unordered_map<std::int32_t, MemorySession*> owners_;
    std::vector<MemorySession*> endpoints_;  ///< in the order of joining; the first one is the host
};

/// The sessions of one process.
class MemoryNetwork {
  public:
    /// Opens a room that anybody of this network can join, also before it has a host.
    std::shared_ptr<MemoryRoom> AddRoom(SessionRecord record);

  private:
    friend class MemorySession;
    std::vector<std::shared_ptr<MemoryRoom>> rooms_;
    int roomsMade_ = 0;
};

class MemorySession final : public Session {
  public:
    explicit MemorySession(MemoryNetwork& network) : network_(network) {}
    ~MemorySession() override;
    MemorySession(const MemorySession&) = delete;
    MemorySession& operator=(const MemorySession&) = delete;

    std::vector<Connection> GetDPEnumConnections() override;
    void InitializeConnection(const std::string& address) override;
    std::vector<SessionRecord> GetDPEnumSessions(const SessionRecord& wanted) override;
    void Open(const SessionRecord& session, OpenMode mode) override;
    std::int32_t CreatePlayer(const std::string& friendlyName, const std::string& formalName) override;
    void DestroyPlayer(std::int32_t playerId) override;
    void Close() override;
    std::vector<SessionMember> GetDPEnumGroups() override;
    std::int32_t CreateGroup(const std::string& name) override;
    void AddPlayerToGroup(std::int32_t groupId, std::int32_t playerId) override;
    std::vector<SessionMember> GetDPEnumPlayers() override;
    std::string GetPlayerFriendlyName(std::int32_t playerId) override;
    std::int32_t GetMessageCount(std::int32_t playerId) override;
    Envelope Receive(DirectPlayMessage& message) override;
    void Send(std::int32_t from, std::int32_t to, const DirectPlayMessage& message) override;

  private:
    friend class MemoryRoom;

    MemoryRoom& Room() const;
    void LeaveRoom();

    MemoryNetwork& network_;
    std::shared_ptr<MemoryRoom> room_;
    std::deque<MemoryRoom::Letter> queue_;
    std::vector<std::int32_t> players_;
};

class MemoryRoot final : public SessionRoot {
  public:
    explicit MemoryRoot(MemoryNetwork& network) : network_(network) {}
    std::unique_ptr<Session> DirectPlayCreate() override { return std::make_unique<MemorySession>(network_); }

  private:
    MemoryNetwork& network_;
};

}  // namespace corvenna
