#pragma once

#include <cstdint>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "link/direct_play_message.h"

/// The session layer: what the controller and the practice pilots need of a multiplayer session. All of it
/// is called from one thread, that of the station. Names are texts in the 8-bit code page.
namespace corvenna {

/// What a session layer operation throws: the session is not open, the name asked for belongs to nobody,
/// nothing answers. The words name the thing and the place.
class SessionError : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

/// A way to reach sessions, as offered to the operator.
struct Connection {
    std::string Name;
    std::string Address;
};

/// What is known of a session: as found by an enumeration, or as wanted by who looks for one or hosts one.
struct SessionRecord {
    std::string GuidApplication;
    std::string SessionName;
    std::string SessionPassword;
    std::int32_t MaxPlayers = 0;
    std::int32_t CurrentPlayers = 0;
    std::string GuidInstance;  ///< which session of those found

    // For who wants to see more of it.
    std::uint32_t Flags = 0;  ///< as the host gave them
    std::string Host;         ///< address and port of the host
};

/// An entry of the enumeration of players or groups.
struct SessionMember {
    std::int32_t Id = 0;
    std::string ShortName;
};

/// Sender and addressee of a message; addressee 0 is everybody.
struct Envelope {
    std::int32_t From = 0;
    std::int32_t To = 0;
};

enum class OpenMode { Join, Create };

/// One participant's access to a session. After Open every operation works until Close; before and after
/// they throw SessionError.
class Session {
  public:
    virtual ~Session() = default;

    virtual std::vector<Connection> GetDPEnumConnections() = 0;

    /// Chooses a connection by its address; may ask the user for details.
    virtual void InitializeConnection(const std::string& address) = 0;

    /// The sessions available to join, of any application when the record's is empty. Throws when the
    /// user gave up.
    virtual std::vector<SessionRecord> GetDPEnumSessions(const SessionRecord& wanted) = 0;

    /// Joins the session of a record that an enumeration gave, or creates one of that name and size.
    virtual void Open(const SessionRecord& session, OpenMode mode) = 0;

    /// Makes a player of one's own and returns his id, which is above 0.
    virtual std::int32_t CreatePlayer(const std::string& friendlyName, const std::string& formalName) = 0;
    virtual void DestroyPlayer(std::int32_t playerId) = 0;

    /// Leaves. A session whose host leaves goes on with another participant as its host.
    virtual void Close() = 0;

    virtual std::vector<SessionMember> GetDPEnumGroups() = 0;
    virtual std::int32_t CreateGroup(const std::string& name) = 0;
    virtual void AddPlayerToGroup(std::int32_t groupId, std::int32_t playerId) = 0;

    virtual std::vector<SessionMember> GetDPEnumPlayers() = 0;

    /// Throws for an id that has gone. A participant who is renamed is known by his new name at once.
    virtual std::string GetPlayerFriendlyName(std::int32_t playerId) = 0;

    /// How many messages wait for one's own player.
    virtual std::int32_t GetMessageCount(std::int32_t playerId) = 0;

    /// Takes the next message that waits for any player of one's own. Throws when none does.
    virtual Envelope Receive(DirectPlayMessage& message) = 0;

    /// Sends from a player of one's own to a player, a group, or (0) to everybody else. Delivery is
    /// guaranteed and in order. A message to somebody who has gone is dropped without a word.
    virtual void Send(std::int32_t from, std::int32_t to, const DirectPlayMessage& message) = 0;

    /// As Send, for what is soon sent anew: such a message may be lost, or overtaken.
    virtual void SendUnguaranteed(std::int32_t from, std::int32_t to, const DirectPlayMessage& message) {
        Send(from, to, message);
    }

    /// What happened in the session that the operator may want to read, a line each, oldest first. Each is
    /// told once; only so many are kept. Also before Open and after Close.
    virtual std::vector<std::string> TakeNotices() { return {}; }
};

/// Where sessions come from: the root object of the session layer.
class SessionRoot {
  public:
    virtual ~SessionRoot() = default;
    virtual std::unique_ptr<Session> DirectPlayCreate() = 0;
};

}  // namespace corvenna
