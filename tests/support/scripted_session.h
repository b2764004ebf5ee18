#pragma once

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "link/session.h"

namespace corvenna {

/// A session layer that notes each call, and whose operations fail on demand.
struct SessionScript {
    std::vector<std::string> Calls;
    std::string Fails;  ///< the operation that throws
    std::vector<SessionRecord> Sessions;

    void Note(const std::string& operation, const std::string& call) {
        Calls.push_back(call);
        if (Fails == operation) throw SessionError(operation + " fails");
    }
};

class ScriptedSession final : public Session {
  public:
    explicit ScriptedSession(SessionScript& script) : script_(script) {}
    ~ScriptedSession() override { script_.Calls.emplace_back("released"); }
    ScriptedSession(const ScriptedSession&) = delete;
    ScriptedSession& operator=(const ScriptedSession&) = delete;

    std::vector<Connection> GetDPEnumConnections() override {
        script_.Note("GetDPEnumConnections", "GetDPEnumConnections");
        return {{"First", "1"}, {"Second", "2"}};
    }
    void InitializeConnection(const std::string& address) override { Note("InitializeConnection", address); }
    std::vector<SessionRecord> GetDPEnumSessions(const SessionRecord&) override {
        Note("GetDPEnumSessions", "");
        return script_.Sessions;
    }
    void Open(const SessionRecord& session, OpenMode) override { Note("Open", session.SessionName); }
    std::int32_t CreatePlayer(const std::string& friendlyName, const std::string&) override {
        Note("CreatePlayer", friendlyName);
        return 1;
    }
    void DestroyPlayer(std::int32_t playerId) override { Note("DestroyPlayer", std::to_string(playerId)); }
    void Close() override { Note("Close", ""); }
    std::vector<SessionMember> GetDPEnumGroups() override {
        Note("GetDPEnumGroups", "");
        return {};
    }
    std::int32_t CreateGroup(const std::string& name) override {
        Note("CreateGroup", name);
        return 1;
    }
    void AddPlayerToGroup(std::int32_t groupId, std::int32_t) override {
        Note("AddPlayerToGroup", std::to_string(groupId));
    }
    std::vector<SessionMember> GetDPEnumPlayers() override {
        Note("GetDPEnumPlayers", "");
        return {};
    }
    std::string GetPlayerFriendlyName(std::int32_t playerId) override {
        Note("GetPlayerFriendlyName", std::to_string(playerId));
        return "somebody";
    }
    std::int32_t GetMessageCount(std::int32_t playerId) override {
        Note("GetMessageCount", std::to_string(playerId));
        return 0;
    }
    Envelope Receive(DirectPlayMessage&) override {
        Note("Receive", "");
        return {};
    }
    void Send(std::int32_t, std::int32_t to, const DirectPlayMessage&) override {
        Note("Send", std::to_string(to));
    }

  private:
    void Note(const std::string& operation, const std::string& argument) {
        script_.Note(operation, argument.empty() ? operation : operation + " " + argument);
    }

    SessionScript& script_;
};

class ScriptedRoot final : public SessionRoot {
  public:
    explicit ScriptedRoot(SessionScript& script) : script_(script) {}
    std::unique_ptr<Session> DirectPlayCreate() override {
        script_.Note("DirectPlayCreate", "DirectPlayCreate");
        return std::make_unique<ScriptedSession>(script_);
    }

  private:
    SessionScript& script_;
};

}  // namespace corvenna
