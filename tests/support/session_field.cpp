#include "support/session_field.h"

#include <stdexcept>

namespace corvenna {

std::vector<std::byte> BytesOf(const DirectPlayMessage& message) {
    return {message.Bytes().begin(), message.Bytes().end()};
}

SessionField::SessionField(std::int32_t maxPlayers)
    : S(field_.S),
      Window(S, Objects, *this,
             {[this] { Seen.push_back("repaint " + std::string(Window.Console().Label1)); },
              [this] { Seen.push_back("closed"); },
              {}}) {
    SessionRecord record;
    record.SessionName = "Test session";
    record.MaxPlayers = maxPlayers;
    Room = Network.AddRoom(record);

    Objects.MakeRoot = [this] { return std::make_unique<MemoryRoot>(Network); };
    CreateSessionObjects(Objects);
    Objects.Dp->Open(Room->Record(), OpenMode::Join);
    S.ControllerId = Objects.Dp->CreatePlayer("KTST_Controller", "Player");
    S.SessionMaxPlayers = maxPlayers;
    Room->OnSend = [this](std::int32_t, std::int32_t to, std::span<const std::byte> bytes) {
        sent_.push_back({to, {bytes.begin(), bytes.end()}});
    };
    Window.Load();
    Seen.clear();
}

void SessionField::Joins(std::int32_t id, const std::string& name, std::int32_t announcement) {
    Enters(id, name);
    Sends(id, WriteAdmission(announcement, id));
    if (const auto failure = Pump()) throw std::logic_error(name + " did not join: " + *failure);
}

PlayerRecord& SessionField::IsServed(std::int32_t id, const std::string& name) {
    Joins(id, name);
    PlayerRecord& pilot = S.Players[S.PlayerCount() - 1];
    pilot.InService = UnderService;
    return pilot;
}

void SessionField::FliesTo(std::int32_t id, double latitude, double longitude, double feet, double heading) {
    Sends(id, WritePosition(PackPosition(latitude, longitude, feet, heading)));
}

void SessionField::ShowBox(BoxIcon icon, std::string_view text) {
    Seen.push_back((icon == BoxIcon::Information ? "information: " : "exclamation: ") + std::string(text));
    if (WhileBoxIsOpen) WhileBoxIsOpen();
}

}  // namespace corvenna
