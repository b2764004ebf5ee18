#include "tools/console/practice_console.h"

#include <fmt/format.h>

#include "link/fs_messages.h"
#include "practice/practice_scripts.h"
#include "station/code_page.h"

namespace corvenna {

namespace {

constexpr std::string_view SessionName = "Corvenna Practice";
constexpr std::int32_t BesidesThePilots = 3;  // host, controller and the person at the keyboard

}  // namespace

PracticeConsole::PracticeConsole(Station station, const PracticeParty& party, RadioPrinter& printer)
    : station_(std::move(station), printer),
      host_(std::make_unique<MemorySession>(network_), std::string(SessionName),
            party.Pilots + BesidesThePilots),
      person_(std::make_unique<MemorySession>(network_), std::string(SessionName), TheStation().AirportCode,
              ScriptOfOnlooker(TheStation(), party.Person), PrintReplies()),
      traffic_(
          TheStation(), [this] { return std::make_unique<MemorySession>(network_); },
          std::string(SessionName), party.Pilots, PrintReplies()) {
    station_.ListenAs(person_.Name());
    Join(party);
    station_.Open();
    LetPersonIn();
    PrintOpening();
}

void PracticeConsole::Step(std::chrono::milliseconds now) {
    now_ = now;
    station_.SetTime(now);
    try {
        RunTraffic();
        station_.RunTimers();
    } catch (...) {
        station_.Close();
        throw;
    }
}

void PracticeConsole::RunTraffic() {
    try {
        host_.Step();
        person_.Step(now_);
        SayTypedLine();
        traffic_.Step(now_);
    } catch (const std::exception& error) {
        throw HandlerError(fmt::format("the practice traffic failed: {}", error.what()));
    }
}

void PracticeConsole::Type(std::string_view line) {
    if (typed_.size() < MostLinesWaiting) typed_.push_back(Utf8ToCodePage(line));
}

void PracticeConsole::SayTypedLine() {
    if (typed_.empty() || person_.StandingText().empty() || now_ < nextTyping_) return;
    person_.Say(typed_.front());
    typed_.pop_front();
    nextTyping_ = now_ + TypingInterval;
}

void PracticeConsole::Leave() {
    station_.Close();
    station_.PrintTotals();
}

// ---- Joining

void PracticeConsole::Join(const PracticeParty& party) {
    Station& station = station_.TheStation();
    SessionObjects& objects = station_.Objects();
    const std::string name =
        party.Controller.empty() ? station.AirportCode + "_Controller" : party.Controller;
    objects.MakeRoot = [this] { return std::make_unique<MemoryRoot>(network_); };
    CreateSessionObjects(objects);
    Session& dp = *objects.Dp;
    objects.DpSessions = dp.GetDPEnumSessions({});
    const SessionRecord& session = objects.DpSessions.at(0);
    station.SessionGuid = session.GuidApplication;
    station.SessionMaxPlayers = session.MaxPlayers;
    dp.Open(session, OpenMode::Join);
    station.ControllerId = dp.CreatePlayer(name, "Player");
    dp.Send(station.ControllerId, 0, WriteEmpty(MessageId::RequestJoinAsPlayer));
    host_.Step();
    if (!Admitted()) throw SessionError("the host has not admitted the controller");
    for (const SessionMember& group : dp.GetDPEnumGroups()) {
        if (group.ShortName == RefuseParamsGroup) dp.AddPlayerToGroup(group.Id, station.ControllerId);
    }
}

bool PracticeConsole::Admitted() {
    Session& dp = *station_.Objects().Dp;
    const std::int32_t controller = TheStation().ControllerId;
    DirectPlayMessage message;
    while (dp.GetMessageCount(controller) > 0) {
        dp.Receive(message);
        if (ReadHeader(message).Id == MessageId::AdmitPlayer && message.ReadLong() == controller) return true;
    }
    return false;
}

/// So that nothing he types is lost.
void PracticeConsole::LetPersonIn() {
    person_.Step(now_);
    host_.Step();
    person_.Step(now_);
    if (!person_.InSession()) throw SessionError(fmt::format("the host has not admitted {}", person_.Name()));
}

void PracticeConsole::PrintOpening() {
    station_.PrintOpening();
    station_.Note(
        fmt::format("You are {}; what you hear is marked *. Answer the welcome with {},1 and "
                    "every later menu with its digit; R asks for a repeat.",
                    person_.Name(), TheStation().AirportCode));
}

PilotEvents PracticeConsole::PrintReplies() {
    return {.Heard = {}, .Said = [this](auto name, auto text) { station_.PrintPilot(name, text); }};
}

}  // namespace corvenna
