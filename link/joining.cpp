#include "link/joining.h"

#include <fmt/format.h>

#include <exception>
#include <utility>

#include "link/fs_messages.h"

namespace corvenna {

namespace {

constexpr std::string_view SelectConnectionFirst = "Please Select one Type of Connection";
constexpr std::string_view UserCanceled = "User Canceled Connection.";
constexpr std::string_view EnumerationFailed = "Error in enumeration functions.";
constexpr std::string_view SelectSessionFirst = "Please select a FS Multiplayer Session.";
constexpr std::string_view WriteNicknameFirst = "Please write a nickname.";
constexpr std::string_view FailedToJoin = "Failed to Join Game.";
constexpr std::string_view FailedToCreatePlayer = "Failed to Create Player.";
constexpr std::string_view ConnectedToSession = "Connected to FS Session!";
constexpr std::string_view ConnectionRefused = "Connection Refused.";

constexpr std::string_view FormalName = "Player";

/// Seconds from one request to join to the next.
constexpr std::int16_t RetrySeconds = 30;

/// The list leaves out the first connection that the session layer has.
constexpr std::size_t ConnectionsLeftOut = 1;

void Tell(const std::function<void()>& event) {
    if (event) event();
}

}  // namespace

Joining::Joining(Station& station, SessionObjects& objects, OperatorDesk& desk, JoiningEvents events)
    : station_(station), objects_(objects), desk_(desk), events_(std::move(events)) {}

void Joining::Load() {
    form_ = JoiningForm{};
    form_.Text2 = station_.AirportCode + "_Controller";
    CreateSessionObjects(objects_);
    for (std::size_t i = ConnectionsLeftOut; i < objects_.DpConnections.size(); ++i) {
        form_.List1.push_back(objects_.DpConnections[i].Name);
    }
    Tell(events_.Repaint);
}

void Joining::Show(std::string_view status) {
    form_.Label6 = status;
    Tell(events_.Repaint);
}

/// Back to the start, ready for another try.
void Joining::TearDown() {
    CollectNotices();
    ReleaseSessionObjects(objects_);
    form_.List2.clear();
    form_.List2Selected.reset();
    form_.Timer1 = false;
    Show(JoiningStatus::Disconnected);
    CreateSessionObjects(objects_);
}

void Joining::CollectNotices() {
    if (!objects_.Dp) return;
    for (std::string& line : objects_.Dp->TakeNotices()) notices_.push_back(std::move(line));
}

std::vector<std::string> Joining::TakeNotices() {
    CollectNotices();
    return std::exchange(notices_, {});
}

// ---- Finding a session

void Joining::SelectConnection(std::size_t entry) {
    form_.List1Selected = entry;
    TearDown();
}

void Joining::SelectSession(std::size_t entry) { form_.List2Selected = entry; }

void Joining::WriteNickname(std::string nickname) { form_.Text2 = std::move(nickname); }

void Joining::Search() {
    TearDown();
    if (!form_.List1Selected) {
        desk_.ShowBox(BoxIcon::Information, SelectConnectionFirst);
        return TearDown();
    }
    Session& dp = objects_.OpenSession();
    dp.InitializeConnection(objects_.DpConnections.at(*form_.List1Selected + ConnectionsLeftOut).Address);
    Show(JoiningStatus::Searching);
    try {
        objects_.DpSessions = dp.GetDPEnumSessions(SessionRecord{});
    } catch (const std::exception& error) {
        notices_.push_back(error.what());
        desk_.ShowBox(BoxIcon::Information, UserCanceled);
        return TearDown();
    }
    try {
        ListSessions();
    } catch (const std::exception& error) {
        notices_.push_back(error.what());
        desk_.ShowBox(BoxIcon::Exclamation, EnumerationFailed);
        return TearDown();
    }
    if (form_.List2.empty()) return TearDown();
    Show(JoiningStatus::Done);
}

void Joining::ListSessions() {
    for (const SessionRecord& session : objects_.DpSessions) {
        form_.List2.push_back(
            fmt::format("{} ({}/{})", session.SessionName, session.CurrentPlayers, session.MaxPlayers));
    }
}

// ---- Entering it

void Joining::Join() {
    const bool selected = form_.List2Selected && !form_.List2.at(*form_.List2Selected).empty();
    if (!selected || form_.Text2.empty()) {
        if (!form_.List2Selected) desk_.ShowBox(BoxIcon::Exclamation, SelectSessionFirst);
        if (form_.Text2.empty()) desk_.ShowBox(BoxIcon::Exclamation, WriteNicknameFirst);
        return TearDown();
    }
    Session& dp = objects_.OpenSession();
    const SessionRecord session = objects_.DpSessions.at(*form_.List2Selected);
    station_.SessionGuid = session.GuidApplication;
    station_.SessionMaxPlayers = session.MaxPlayers;
    try {
        dp.Open(session, OpenMode::Join);
    } catch (const std::exception& error) {
        return FailJoin(FailedToJoin, error.what());
    }
    Show(JoiningStatus::CreatingPlayer);
    try {
        station_.ControllerId = dp.CreatePlayer(form_.Text2, std::string(FormalName));
    } catch (const std::exception& error) {
        return FailJoin(FailedToCreatePlayer, error.what());
    }
    Show(JoiningStatus::PlayerCreated);
    RequestToJoin();
    form_.RetryCountdown = RetrySeconds;
    form_.Timer1 = true;
    Show(JoiningStatus::FirstRequestSent);
}

void Joining::FailJoin(std::string_view text, const std::string& why) {
    notices_.push_back(why);
    desk_.ShowBox(BoxIcon::Exclamation, text);
    TearDown();
}

void Joining::RequestToJoin() {
    objects_.OpenSession().Send(station_.ControllerId, 0, WriteEmpty(MessageId::RequestJoinAsPlayer));
}

// ---- Waiting for admission

void Joining::RunTimer() {
    if (form_.RetryCountdown >= 1 && form_.RetryCountdown <= RetrySeconds) --form_.RetryCountdown;
    if (form_.RetryCountdown == 0) {
        objects_.OpenSession().Send(station_.ControllerId, 0, WriteEmpty(MessageId::JoinRequestRepeated));
        Show(JoiningStatus::ResendingRequest);
        RequestToJoin();
        Show(JoiningStatus::RequestResent);
        form_.RetryCountdown = RetrySeconds;
    }
    try {
        HandleAnswers();
    } catch (const std::exception&) {
        return;  // a message that cannot be read costs this tick, no more
    }
}

/// Messages that wait as the tick begins. After an admission or a refusal the rest of them is still gone
/// through; what comes later is for the pump.
void Joining::HandleAnswers() {
    DirectPlayMessage message;
    for (auto n = objects_.OpenSession().GetMessageCount(station_.ControllerId); n >= 1; --n) {
        objects_.OpenSession().Receive(message);
        const MessageHeader header = ReadHeader(message);
        if (header.Id == MessageId::AdmitPlayer) {
            if (message.ReadLong() == station_.ControllerId) Admitted();
        } else if (header.Id == MessageId::RefusePlayer) {
            Refused();
        }
    }
}

/// Without the group the station works all the same.
void Joining::Admitted() {
    Session& dp = objects_.OpenSession();
    for (const SessionMember& group : dp.GetDPEnumGroups()) {
        if (group.ShortName == RefuseParamsGroup) dp.AddPlayerToGroup(group.Id, station_.ControllerId);
    }
    desk_.ShowBox(BoxIcon::Information, ConnectedToSession);
    form_.Timer1 = false;
    Show(JoiningStatus::Connected);
    Tell(events_.Connected);
}

void Joining::Refused() {
    desk_.ShowBox(BoxIcon::Exclamation, ConnectionRefused);
    Show(JoiningStatus::FailedConnection);
    TearDown();
}

// ---- The window goes

/// An error leaves the rest undone.
void Joining::LeaveSession() {
    try {
        Session& dp = objects_.OpenSession();
        dp.DestroyPlayer(station_.ControllerId);
        dp.Close();
        CollectNotices();
        ReleaseSessionObjects(objects_);
        form_.List2.clear();
        form_.List2Selected.reset();
        form_.Timer1 = false;
        Show(JoiningStatus::Disconnected);
    } catch (const std::exception&) {
        return;
    }
}

void Joining::Close() {
    LeaveSession();
    Tell(events_.EndProgram);
}

void Joining::Unload() {
    if (form_.Label6 != JoiningStatus::Connected) LeaveSession();
}

}  // namespace corvenna
