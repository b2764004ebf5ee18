#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "link/fs_messages.h"
#include "link/memory/memory_session.h"
#include "link/operator_desk.h"
#include "link/station_window.h"
#include "support/test_field.h"

namespace corvenna {

/// The bytes of a message, to be compared or sent in part.
std::vector<std::byte> BytesOf(const DirectPlayMessage& message);

/// "Test Field" in a session within this process: the controller has joined as player 1, and the station
/// window is loaded. Everybody else is a name in the session's list whose messages the test posts.
class SessionField final : public OperatorDesk {
  public:
    explicit SessionField(std::int32_t maxPlayers = 16);

    /// Appears in the session's list; and announces himself too, which the pump takes up at once.
    void Enters(std::int32_t id, const std::string& name) { Room->Enter(id, name); }
    void Joins(std::int32_t id, const std::string& name, std::int32_t announcement = MessageId::AdmitPlayer);

    /// Joins, and is under service on no frequency.
    PlayerRecord& IsServed(std::int32_t id, const std::string& name);

    void Sends(std::int32_t id, const DirectPlayMessage& message) { Room->Post(id, 1, message.Bytes()); }
    void SendsBytes(std::int32_t id, std::span<const std::byte> bytes) { Room->Post(id, 1, bytes); }
    void Types(std::int32_t id, std::string_view text) { Sends(id, WriteChat(text)); }
    void FliesTo(std::int32_t id, double latitude, double longitude, double feet, double heading);

    /// One pass each. The pump's answer is why it failed.
    std::optional<std::string> Pump() { return Window.RunConnectionTimer(); }
    void Tick() { Window.RunAtcTimer(); }
    void Refresh() { Window.RunRefreshPlayers(); }

    std::int32_t Waiting() { return Objects.Dp->GetMessageCount(1); }
    PlayerRecord& Pilot(std::string_view name) { return field_.Pilot(name); }

    struct Sent {
        std::int32_t To = 0;
        std::vector<std::byte> Bytes;
        bool operator==(const Sent&) const = default;
    };
    static Sent To(std::int32_t id, const DirectPlayMessage& message) { return {id, BytesOf(message)}; }

    /// What the station sent since the last call.
    std::vector<Sent> TakeSent() { return std::exchange(sent_, {}); }

    /// What the operator saw, in order: the boxes with their icon, each repaint with the label that it
    /// shows, "closed".
    std::vector<std::string> Seen;
    std::function<void()> WhileBoxIsOpen;

  private:
    void ShowBox(BoxIcon icon, std::string_view text) override;

    TestField field_;
    std::vector<Sent> sent_;

  public:
    Station& S;
    MemoryNetwork Network;
    std::shared_ptr<MemoryRoom> Room;
    SessionObjects Objects;
    StationWindow Window;
};

}  // namespace corvenna
