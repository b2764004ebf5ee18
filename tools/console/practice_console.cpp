#include "tools/console/practice_console.h"

#include <fmt/format.h>

#include <algorithm>

#include "link/fs_messages.h"
#include "practice/practice_scripts.h"
#include "station/code_page.h"

namespace corvenna {

namespace {

using namespace std::chrono_literals;

constexpr auto PumpInterval = 100ms;
constexpr auto TickInterval = 1000ms;
constexpr auto RefreshInterval = 30000ms;

constexpr std::string_view SessionName = "Corvenna Practice";
constexpr std::int32_t BesidesThePilots = 3;  // host, controller and the person at the keyboard

}  // namespace

PracticeConsole::PracticeConsole(Station station, const PracticeParty& party, RadioPrinter& printer)
    : printer_(printer),
      station_(std::move(station)),
      window_(station_, objects_, *this,
              {.Repaint = {},
               .Closed = {},
               .Transmitted = [this](auto frequency, auto text) { OnTransmitted(frequency, text); }}),
      timers_(Timers(), now_),
      host_(std::make_unique<MemorySession>(network_), std::string(SessionName),
            party.Pilots + BesidesThePilots),
      person_(std::make_unique<MemorySession>(network_), std::string(SessionName), station_.AirportCode,
              ScriptOfOnlooker(station_, party.Person), PrintReplies()),
      traffic_(
          station_, [this] { return std::make_unique<MemorySession>(network_); }, std::string(SessionName),
          party.Pilots, PrintReplies()) {
    printer_.SetFrequencyWidth(std::max({RadioPrinter::PartyLine.size(), station_.GroundFrequency.size(),
                                         station_.TowerFrequency.size(), station_.ApproachFrequency.size()}));
    Join(party);
    window_.Load();
    window_.StartMonitoring();
    LetPersonIn();
    PrintOpening();
}

PracticeConsole::~PracticeConsole() {
    if (window_.Loaded()) window_.Close();
}

void PracticeConsole::Step(std::chrono::milliseconds now) {
    now_ = now;
    try {
        RunTraffic();
        timers_.Run(now_);
    } catch (...) {
        if (window_.Loaded()) window_.Close();
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
    if (window_.Loaded()) window_.Close();
    if (totalsPrinted_) return;
    totalsPrinted_ = true;
    printer_.Note(now_, fmt::format("The session is left. Pilots served: {}, texts sent: {}.", PilotsServed(),
                                    TextsSent()));
}

// ---- Joining

void PracticeConsole::Join(const PracticeParty& party) {
    const std::string name =
        party.Controller.empty() ? station_.AirportCode + "_Controller" : party.Controller;
    objects_.MakeRoot = [this] { return std::make_unique<MemoryRoot>(network_); };
    CreateSessionObjects(objects_);
    Session& dp = *objects_.Dp;
    objects_.DpSessions = dp.GetDPEnumSessions({});
    const SessionRecord& session = objects_.DpSessions.at(0);
    station_.SessionGuid = session.GuidApplication;
    station_.SessionMaxPlayers = session.MaxPlayers;
    dp.Open(session, OpenMode::Join);
    station_.ControllerId = dp.CreatePlayer(name, "Player");
    dp.Send(station_.ControllerId, 0, WriteEmpty(MessageId::RequestJoinAsPlayer));
    host_.Step();
    if (!Admitted()) throw SessionError("the host has not admitted the controller");
    for (const SessionMember& group : dp.GetDPEnumGroups()) {
        if (group.ShortName == RefuseParamsGroup) dp.AddPlayerToGroup(group.Id, station_.ControllerId);
    }
}

bool PracticeConsole::Admitted() {
    DirectPlayMessage message;
    while (objects_.Dp->GetMessageCount(station_.ControllerId) > 0) {
        objects_.Dp->Receive(message);
        if (ReadHeader(message).Id == MessageId::AdmitPlayer && message.ReadLong() == station_.ControllerId) {
            return true;
        }
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
    printer_.Note(now_, fmt::format("{} ({}), runway {}: monitoring traffic. Ctrl-C leaves the session.",
                                    station_.AirportName, station_.AirportCode, station_.ActiveRunway));
    printer_.Note(now_, fmt::format("You are {}; what you hear is marked *. Answer the welcome with {},1 and "
                                    "every later menu with its digit; R asks for a repeat.",
                                    person_.Name(), station_.AirportCode));
}

// ---- The timers

std::vector<StationTimer> PracticeConsole::Timers() {
    return {
        {"the pump", PumpInterval, [this] { return window_.Console().ConnectionTimer; },
         [this] { window_.RunConnectionTimer(); }},
        {"the tick", TickInterval, [this] { return window_.Console().AtcTimer; },
         [this] {
             RunTick([this] { window_.RunAtcTimer(); },
                     [this](std::string_view words) { printer_.Note(now_, words); });
             NotePilotsUnderService();
         }},
        {"the refresh of the player list", RefreshInterval,
         [this] { return window_.Console().RefreshPlayers; }, [this] { window_.RunRefreshPlayers(); }},
    };
}

void PracticeConsole::NotePilotsUnderService() {
    for (const PlayerRecord& pilot : station_.Players.Valid()) {
        if (pilot.InService == UnderService && !served_.contains(pilot.Name)) served_.insert(pilot.Name);
    }
}

// ---- What is shown

const PlayerRecord* PracticeConsole::RecordOf(std::string_view name) const {
    const auto players = station_.Players.Valid();
    const auto found =
        std::find_if(players.begin(), players.end(), [&](const auto& record) { return record.Name == name; });
    return found == players.end() ? nullptr : &*found;
}

void PracticeConsole::OnTransmitted(std::string_view frequency, std::string_view text) {
    ++textsSent_;
    const PlayerRecord* you = RecordOf(person_.Name());
    printer_.Controller(now_, frequency, text, you != nullptr && you->TunedFrequency == frequency);
}

void PracticeConsole::OnSaid(std::string_view name, std::string_view text) {
    const PlayerRecord* pilot = RecordOf(name);
    printer_.Pilot(now_, pilot == nullptr ? std::string_view() : pilot->TunedFrequency, name, text);
}

void PracticeConsole::ShowBox(BoxIcon /*icon*/, std::string_view text) { printer_.Note(now_, text); }

PilotEvents PracticeConsole::PrintReplies() {
    return {.Heard = {}, .Said = [this](auto name, auto text) { OnSaid(name, text); }};
}

}  // namespace corvenna
