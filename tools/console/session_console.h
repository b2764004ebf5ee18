#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "link/joining.h"
#include "tools/console/console_station.h"

namespace corvenna {

/// Which session is to be joined, and as whom. Texts are bytes of the 8-bit code page.
struct SessionWish {
    std::string SessionName;  ///< empty: the only one there is
    std::string Callsign;     ///< empty: "{AirportCode}_Controller"
};

/// A station that joins somebody else's session and serves the pilots in it, in a terminal: the windows of
/// the connection and of the station one after the other, as lines on a printer. It has no clock and waits
/// for none, except in Join: the time since the start is handed in. One thread.
class SessionConsole {
  public:
    using SessionLayer = std::function<std::unique_ptr<SessionRoot>()>;

    /// station: with the fields of its airport filled. Connects by the second connection that the session
    /// layer offers.
    SessionConsole(Station station, SessionWish wish, SessionLayer layer, RadioPrinter& printer);

    /// Finds the session, enters it and asks for admission; waits for the network meanwhile. Throws
    /// NoSessionError, or SessionError when a session cannot be entered; nothing is left behind.
    void Join();

    /// The time from which on things are printed, for who waits in Join.
    void SetTime(std::chrono::milliseconds now) { station_.SetTime(now); }

    /// All that is to be done by this time. Throws SessionError when the host refuses the controller, and
    /// what cannot be mended; by then it has left the session.
    void Step(std::chrono::milliseconds now);

    /// When the next Step has something to do.
    std::chrono::milliseconds NextDue() const;

    /// A line that the operator typed, without blanks at its ends: "start" and "stop" the monitoring of
    /// traffic, "close" the station.
    void Type(std::string_view line);

    /// Leaves the session properly and says so. The second call does nothing.
    void Leave();

    /// Whether it has ended, by Leave or by what happened in the session.
    bool Over() const { return stage_ == Stage::Gone; }

    /// Whether the controller was ever let in.
    bool Admitted() const { return admitted_; }

    const Station& TheStation() const { return station_.TheStation(); }

  private:
    enum class Stage { Outside, Waiting, Serving, Gone };

    std::size_t ChooseSession() const;
    void OnConnected();
    void PrintStatus();
    void PrintNotices();
    std::string Explanation();

    SessionWish wish_;
    Stage stage_ = Stage::Outside;
    bool admitted_ = false;
    ConsoleStation station_;
    Joining joining_;
    std::string_view statusPrinted_ = JoiningStatus::Disconnected;
    std::string host_;                         ///< where the session chosen is
    std::optional<StationTimers> joinTimers_;  ///< while waiting for admission
};

/// No session that can be joined was found.
class NoSessionError : public SessionError {
  public:
    using SessionError::SessionError;
};

}  // namespace corvenna
