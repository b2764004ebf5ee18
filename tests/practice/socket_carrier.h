#pragma once

#include <chrono>
#include <map>
#include <stdexcept>
#include <string>
#include <thread>

#include "link/directplay/directplay_session.h"
#include "practice/session_carrier.h"

namespace corvenna {

/// Over sockets on this computer's own address. Each participant counts what he sends to whom, so that a
/// test's clock can stand still until all of it has arrived: what is said over sockets is said at the same
/// second as within one process.
class SocketCarrier final : public SessionCarrier {
  public:
    SocketCarrier() {
        options_.AskHost = [this] { return "127.0.0.1:" + std::to_string(host_->NameServerPort()); };
        options_.EnumerationSettle = std::chrono::milliseconds(0);
        options_.Sockets.BindIp = 0x7F000001;
        options_.Sockets.Tcp = options_.Sockets.Udp = {};
        options_.Sockets.NameServer = 0;
    }

    std::unique_ptr<Session> MakeSession() override { return std::make_unique<Counting>(*this); }

    void Settle() override {
        const auto deadline = std::chrono::steady_clock::now() + Patience;
        while (!IsSettled()) {
            if (std::chrono::steady_clock::now() > deadline) throw std::runtime_error("a message is lost");
            std::this_thread::yield();
        }
    }

  private:
    /// The limit at which a test gives up what should have happened long before.
    static constexpr std::chrono::seconds Patience{60};

    /// One participant, who has one player.
    class Counting final : public Session {
      public:
        explicit Counting(SocketCarrier& carrier) : carrier_(carrier), dp_(carrier.options_) {}
        ~Counting() override { Forget(); }
        Counting(const Counting&) = delete;
        Counting& operator=(const Counting&) = delete;

        std::vector<Connection> GetDPEnumConnections() override { return dp_.GetDPEnumConnections(); }
        void InitializeConnection(const std::string& address) override { dp_.InitializeConnection(address); }
        std::vector<SessionRecord> GetDPEnumSessions(const SessionRecord& wanted) override {
            dp_.InitializeConnection(std::string(ConnectionAddress::TcpIp));
            return dp_.GetDPEnumSessions(wanted);
        }
        void Open(const SessionRecord& session, OpenMode mode) override {
            if (mode == OpenMode::Create) carrier_.host_ = &dp_;
            dp_.Open(session, mode);
        }
        std::int32_t CreatePlayer(const std::string& friendlyName, const std::string& formalName) override {
            id_ = dp_.CreatePlayer(friendlyName, formalName);
            carrier_.present_[id_] = this;
            carrier_.Settle();
            return id_;
        }
        void DestroyPlayer(std::int32_t playerId) override {
            Forget();
            dp_.DestroyPlayer(playerId);
            carrier_.Settle();
        }
        void Close() override {
            Forget();
            dp_.Close();
        }
        std::vector<SessionMember> GetDPEnumGroups() override { return dp_.GetDPEnumGroups(); }
        std::int32_t CreateGroup(const std::string& name) override { return dp_.CreateGroup(name); }
        void AddPlayerToGroup(std::int32_t groupId, std::int32_t playerId) override {
            dp_.AddPlayerToGroup(groupId, playerId);
        }
        std::vector<SessionMember> GetDPEnumPlayers() override { return dp_.GetDPEnumPlayers(); }
        std::string GetPlayerFriendlyName(std::int32_t playerId) override {
            return dp_.GetPlayerFriendlyName(playerId);
        }
        std::int32_t GetMessageCount(std::int32_t playerId) override { return dp_.GetMessageCount(playerId); }
        Envelope Receive(DirectPlayMessage& message) override {
            ++received_;
            return dp_.Receive(message);
        }
        void Send(std::int32_t from, std::int32_t to, const DirectPlayMessage& message) override {
            for (const auto& [id, participant] : carrier_.present_) {
                if (to == id || (to == 0 && id != from)) ++participant->sentToHim_;
            }
            dp_.Send(from, to, message);
        }

        bool HasReceivedAll() { return sentToHim_ == received_ + dp_.GetMessageCount(id_); }
        bool Sees(std::size_t players) { return dp_.GetDPEnumPlayers().size() == players; }

      private:
        void Forget() {
            carrier_.present_.erase(id_);
            id_ = 0;
            sentToHim_ = received_ = 0;
        }

        SocketCarrier& carrier_;
        DirectPlaySession dp_;
        std::int32_t id_ = 0;
        std::int64_t sentToHim_ = 0;
        std::int64_t received_ = 0;
    };

    bool IsSettled() const {
        for (const auto& [id, participant] : present_) {
            if (!participant->HasReceivedAll() || !participant->Sees(present_.size())) return false;
        }
        return true;
    }

    DirectPlayOptions options_;
    DirectPlaySession* host_ = nullptr;
    std::map<std::int32_t, Counting*> present_;
};

}  // namespace corvenna
