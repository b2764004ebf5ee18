#include "tools/console/session_console.h"

#include <fmt/format.h>

#include <algorithm>
#include <vector>

#include "tools/console/session_list.h"

namespace corvenna {

namespace {

using namespace std::chrono_literals;

constexpr auto JoinTimerInterval = 1000ms;

/// The first entry of the window's list.
constexpr std::size_t FirstConnection = 0;

}  // namespace

SessionConsole::SessionConsole(Station station, SessionWish wish, SessionLayer layer, RadioPrinter& printer)
    : wish_(std::move(wish)),
      station_(std::move(station), printer),
      joining_(
          station_.TheStation(), station_.Objects(), station_,
          {.Repaint = [this] { PrintStatus(); }, .Connected = [this] { OnConnected(); }, .EndProgram = {}}) {
    station_.Objects().MakeRoot = std::move(layer);
}

// ---- Joining

void SessionConsole::Join() {
    joining_.Load();
    joining_.SelectConnection(FirstConnection);
    joining_.Search();
    if (joining_.Form().List2.empty()) throw NoSessionError(Explanation());

    const std::size_t chosen = ChooseSession();
    host_ = station_.Objects().DpSessions.at(chosen).Host;
    joining_.SelectSession(chosen);
    if (!wish_.Callsign.empty()) joining_.WriteNickname(wish_.Callsign);
    joining_.Join();
    if (!joining_.Form().Timer1) throw SessionError(Explanation());

    stage_ = Stage::Waiting;
    joinTimers_.emplace(std::vector<StationTimer>{{"the wait for admission", JoinTimerInterval,
                                                   [this] { return joining_.Form().Timer1; },
                                                   [this] { joining_.RunTimer(); }}},
                        station_.Now());
    PrintNotices();
}

std::size_t SessionConsole::ChooseSession() const {
    const std::vector<SessionRecord>& sessions = station_.Objects().DpSessions;
    std::vector<std::size_t> fitting;
    for (std::size_t i = 0; i < sessions.size(); ++i) {
        if (wish_.SessionName.empty() || sessions[i].SessionName == wish_.SessionName) fitting.push_back(i);
    }
    if (fitting.size() == 1) return fitting.front();

    if (fitting.empty()) {
        throw SessionError(fmt::format("there is no session \"{}\"; there {}", Printable(wish_.SessionName),
                                       SessionsInWords(sessions)));
    }
    if (wish_.SessionName.empty()) {
        throw SessionError(fmt::format("there {}; choose one by --session NAME", SessionsInWords(sessions)));
    }
    throw SessionError(
        fmt::format("several sessions bear that name: there {}; join one by the address of its host alone",
                    SessionsInWords(sessions)));
}

/// What the session layer knows about a failure.
std::string SessionConsole::Explanation() {
    std::string lines;
    for (const std::string& line : joining_.TakeNotices()) {
        if (!lines.empty()) lines += '\n';
        lines += Printable(line);
    }
    return lines;
}

void SessionConsole::OnConnected() {
    joining_.Unload();
    admitted_ = true;
    stage_ = Stage::Serving;
    station_.Open();
    station_.PrintOpening();
}

// ---- Running

void SessionConsole::Step(std::chrono::milliseconds now) {
    station_.SetTime(now);
    try {
        if (stage_ == Stage::Waiting) {
            joinTimers_->Run(now);
        } else if (stage_ == Stage::Serving) {
            station_.RunTimers();
        }
        PrintNotices();
    } catch (...) {
        Leave();
        throw;
    }
    if (stage_ == Stage::Waiting && !joining_.Form().Timer1) {
        stage_ = Stage::Gone;
        throw SessionError(
            fmt::format("the host at {} refuses the controller. Its pilot decides who may join: ask him to "
                        "let {} in, then try again",
                        host_, Printable(joining_.Form().Text2)));
    }
    if (stage_ == Stage::Serving && !station_.IsOpen()) Leave();
}

std::chrono::milliseconds SessionConsole::NextDue() const {
    return stage_ == Stage::Serving ? station_.NextDue() : joinTimers_->NextDue();
}

void SessionConsole::Type(std::string_view line) {
    const bool serving = stage_ == Stage::Serving;
    if (line == "start" && serving) {
        station_.StartMonitoring();
    } else if (line == "stop" && serving) {
        station_.StopMonitoring();
    } else if (line == "close") {
        Leave();
    } else {
        station_.Note(serving ? "Type \"stop\" or \"start\" for the monitoring, or \"close\"."
                              : "The host has not admitted the controller yet. \"close\" gives up.");
    }
}

void SessionConsole::Leave() {
    const Stage left = std::exchange(stage_, Stage::Gone);
    if (left == Stage::Waiting) {
        joining_.Close();
        station_.Note("The session is left; the controller was not admitted.");
    } else if (left == Stage::Serving) {
        station_.Close();
        station_.PrintTotals();
    }
}

// ---- What is shown

void SessionConsole::PrintStatus() {
    const std::string_view status = joining_.Form().Label6;
    if (status == statusPrinted_) return;
    statusPrinted_ = status;
    station_.Note(fmt::format("Status: {}", status));
}

void SessionConsole::PrintNotices() {
    for (const std::string& line : joining_.TakeNotices()) station_.Note(line);
}

}  // namespace corvenna
