#include "link/pump.h"

#include <exception>

#include "link/fs_messages.h"
#include "link/refresh.h"
#include "station/geometry.h"
#include "station/replies.h"

namespace corvenna {

namespace {

constexpr std::string_view ConnectionLost =
    "The FS multiplayer connection was lost, Corvenna closes multiplayer session.";
constexpr std::string_view NowHosting =
    "The original host had left the session, Corvenna is now hosting the session.";
constexpr std::string_view RemovedByHost =
    "The host had removed you from the multiplayer session, Corvenna closes multiplayer session.";

/// The message in hand.
struct Incoming {
    std::int32_t Sender = 0;
    MessageHeader Header;
    DirectPlayMessage& Message;
};

enum class Next { Message, EndPass };

/// The sender's name is asked for every message, never kept: who is renamed matches no record from that
/// moment on, and a message from somebody who has gone fails. With no record at all there is nothing to
/// compare, and nothing is asked.
std::int32_t FirstFullMatch(PumpContext& pump, std::int32_t sender) {
    if (pump.TheStation.PlayerCount() == 0) return PlayerDirectory::None;
    return pump.Directory.FirstFullMatch(pump.TheStation, sender, pump.Dp.GetPlayerFriendlyName(sender));
}

/// Runs handle(record) for each record that is a full match of the sender.
template <class Handle>
void ForEachFullMatch(PumpContext& pump, std::int32_t sender, Handle handle) {
    std::int32_t place = FirstFullMatch(pump, sender);
    while (place != PlayerDirectory::None) {
        handle(pump.TheStation.Players[place]);
        place = pump.Directory.NextFullMatch(pump.TheStation, place);
    }
}

void Reply(PumpContext& pump, const Incoming& incoming, const DirectPlayMessage& message) {
    pump.Dp.Send(pump.TheStation.ControllerId, incoming.Sender, message);
}

// ---- The handlers, one for each kind of message

/// The record itself is made when the newcomer announces himself. One more than the maximum gets in.
Next DecideAdmission(PumpContext& pump, const Incoming& incoming, std::int32_t admit, std::int32_t refuse) {
    const bool known = FirstFullMatch(pump, incoming.Sender) != PlayerDirectory::None;
    if (!known && pump.TheStation.PlayerCount() <= pump.TheStation.SessionMaxPlayers) {
        Reply(pump, incoming, WriteAdmission(admit, incoming.Sender));
    } else {
        Reply(pump, incoming, WriteEmpty(refuse));
    }
    return Next::Message;
}

Next OnJoinRequest(PumpContext& pump, Incoming& incoming) {
    if (!pump.TheStation.SessionHost) return Next::Message;
    if (incoming.Header.Id == MessageId::RequestJoinAsPlayer) {
        return DecideAdmission(pump, incoming, MessageId::AdmitPlayer, MessageId::RefusePlayer);
    }
    return DecideAdmission(pump, incoming, MessageId::AdmitObserver, MessageId::RefuseObserver);
}

Next OnIntroduction(PumpContext& pump, Incoming& incoming) {
    if (!pump.TheStation.SessionOpen) return Next::Message;
    incoming.Message.ReadLong();  // the player id told; the sender is taken as the player
    if (FirstFullMatch(pump, incoming.Sender) != PlayerDirectory::None) return Next::Message;

    PlayerRecord record;
    record.Name = pump.Dp.GetPlayerFriendlyName(incoming.Sender);
    record.Id = incoming.Sender;
    record.Role = incoming.Header.Id == MessageId::AdmitPlayer ? Role::Player : Role::Observer;
    record.AircraftName = UnknownAircraft;
    pump.TheStation.Players.Add(std::move(record));
    return Next::Message;
}

Next OnWhoAreYou(PumpContext& pump, Incoming& incoming) {
    Reply(pump, incoming, WriteAdmission(MessageId::AdmitPlayer, pump.TheStation.ControllerId));
    return Next::Message;
}

Next OnAircraft(PumpContext& pump, Incoming& incoming) {
    ForEachFullMatch(pump, incoming.Sender, [&](PlayerRecord& pilot) {
        pilot.AircraftName = ReadAircraft(incoming.Message, incoming.Header.PayloadSize);
    });
    return Next::Message;
}

Next OnPosition(PumpContext& pump, Incoming& incoming) {
    ForEachFullMatch(pump, incoming.Sender, [&](PlayerRecord& pilot) {
        const PositionReport report = ReadPosition(incoming.Message, incoming.Header.Id);
        const double latitude = report.LatitudeDegrees();
        const double longitude = report.LongitudeDegrees();
        const std::int32_t altitude = report.AltitudeFeet();
        const std::int16_t heading =
            TrueToMagnetic(pump.TheStation, UnpackHeading(report.PackedAttitude), latitude, longitude);
        pilot.Latitude = latitude;
        pilot.Longitude = longitude;
        pilot.Altitude = altitude;
        pilot.Heading = heading;
    });
    return Next::Message;
}

/// A chat concerns every record of the sender's name, whatever its role and id.
Next OnChat(PumpContext& pump, Incoming& incoming) {
    if (incoming.Header.PayloadSize <= 1) return Next::Message;
    const std::string text = ReadChat(incoming.Message, incoming.Header.PayloadSize);
    Station& station = pump.TheStation;
    if (station.PlayerCount() == 0) return Next::Message;
    const std::string name = pump.Dp.GetPlayerFriendlyName(incoming.Sender);
    if (pump.Heard) pump.Heard(name, text);
    std::int32_t place = pump.Directory.FirstNameMatch(station, name);
    for (; place != PlayerDirectory::None; place = pump.Directory.NextNameMatch(place)) {
        ApplyChatReply(station, station.Players[place], text);
    }
    return Next::Message;
}

Next LeaveSession(PumpContext& pump) {
    pump.TheStation.SessionOpen = false;
    pump.CloseStation();
    return Next::EndPass;
}

Next OnHostGone(PumpContext& pump, Incoming& /*incoming*/) {
    PurgeLeftPlayers(pump.TheStation, pump.Dp);
    if (pump.TheStation.PlayerCount() == 0) {
        pump.Desk.ShowBox(BoxIcon::Information, ConnectionLost);
        return LeaveSession(pump);
    }
    pump.TheStation.SessionHost = true;
    pump.Desk.ShowBox(BoxIcon::Information, NowHosting);
    return Next::Message;
}

Next OnRemoved(PumpContext& pump, Incoming& /*incoming*/) {
    pump.Desk.ShowBox(BoxIcon::Information, RemovedByHost);
    return LeaveSession(pump);
}

struct Handler {
    std::int32_t Id;
    Next (*Handle)(PumpContext&, Incoming&);
};

constexpr Handler Handlers[] = {
    {MessageId::RequestJoinAsPlayer, &OnJoinRequest},
    {MessageId::RequestJoinAsObserver, &OnJoinRequest},
    {MessageId::AdmitPlayer, &OnIntroduction},
    {MessageId::AdmitObserver, &OnIntroduction},
    {MessageId::WhoAreYou, &OnWhoAreYou},
    {MessageId::Aircraft, &OnAircraft},
    {MessageId::HostGone, &OnHostGone},
    {MessageId::Removed, &OnRemoved},
    {MessageId::Position, &OnPosition},
    {MessageId::PositionLong, &OnPosition},
    {MessageId::Chat, &OnChat},
};

Next HandleMessage(PumpContext& pump, Incoming& incoming) {
    for (const Handler& handler : Handlers) {
        if (handler.Id == incoming.Header.Id) return handler.Handle(pump, incoming);
    }
    return Next::Message;
}

}  // namespace

std::optional<std::string> MessagePump(PumpContext& pump) {
    try {
        DirectPlayMessage message;
        for (auto n = pump.Dp.GetMessageCount(pump.TheStation.ControllerId); n > 0; --n) {
            const Envelope envelope = pump.Dp.Receive(message);
            Incoming incoming{envelope.From, ReadHeader(message), message};
            if (HandleMessage(pump, incoming) == Next::EndPass) break;
        }
        return std::nullopt;
    } catch (const std::exception& error) {
        return error.what();
    }
}

}  // namespace corvenna
