#pragma once

#include <chrono>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "link/fs_messages.h"
#include "link/memory/memory_session.h"
#include "practice/simulator_peer.h"

namespace corvenna {

inline constexpr const char* TestSessionName = "Test Session";

/// The simulator that hosts a test's session, and admits everybody.
class TestHost {
  public:
    static constexpr const char* Name = "Test_Host";

    TestHost(MemoryNetwork& network, std::int32_t maxPlayers)
        : peer_(std::make_unique<MemorySession>(network), {.Name = Name, .Observer = true, .Where = {}}) {
        peer_.Host(TestSessionName, maxPlayers);
    }

    void Step() { peer_.Step(std::chrono::milliseconds(0)); }

  private:
    SimulatorPeer peer_;
};

/// A participant that a test plays by hand.
class HandPlayed {
  public:
    struct Letter {
        std::int32_t From = 0;
        std::int32_t To = 0;
        std::int32_t MessageId = 0;
        DirectPlayMessage Message;  ///< read as far as behind the header
        std::int32_t PayloadSize = 0;
    };

    HandPlayed(MemoryNetwork& network, const std::string& name) : session_(network) {
        for (const auto& session : session_.GetDPEnumSessions({})) {
            if (session.SessionName == TestSessionName) session_.Open(session, OpenMode::Join);
        }
        Id = session_.CreatePlayer(name, "Player");
    }

    void Send(std::int32_t to, const DirectPlayMessage& message) { session_.Send(Id, to, message); }

    /// What has arrived since the last call.
    std::vector<Letter> Received() {
        std::vector<Letter> letters;
        while (session_.GetMessageCount(Id) > 0) {
            Letter letter;
            const Envelope envelope = session_.Receive(letter.Message);
            const MessageHeader header = ReadHeader(letter.Message);
            letter.From = envelope.From;
            letter.To = envelope.To;
            letter.MessageId = header.Id;
            letter.PayloadSize = header.PayloadSize;
            letters.push_back(std::move(letter));
        }
        return letters;
    }

    /// Those of one kind among what has arrived since the last call.
    std::vector<Letter> Received(std::int32_t messageId) {
        std::vector<Letter> letters = Received();
        std::erase_if(letters, [&](const Letter& letter) { return letter.MessageId != messageId; });
        return letters;
    }

    /// The chat texts among what has arrived since the last call.
    std::vector<std::string> Texts() {
        std::vector<std::string> texts;
        for (Letter& letter : Received(MessageId::Chat)) {
            texts.push_back(ReadChat(letter.Message, letter.PayloadSize));
        }
        return texts;
    }

    std::int32_t IdOf(std::string_view name) {
        for (const SessionMember& member : session_.GetDPEnumPlayers()) {
            if (member.ShortName == name) return member.Id;
        }
        return 0;
    }

    std::int32_t Id = 0;

  private:
    MemorySession session_;
};

}  // namespace corvenna
