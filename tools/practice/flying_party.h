#pragma once

#include <chrono>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "practice/practice_log.h"
#include "practice/practice_traffic.h"
#include "tools/console/run_loop.h"
#include "tools/practice/session_access.h"

namespace corvenna {

/// Each pilot needs three ports of his own in ranges of fifty; host, controller and guests want some too.
inline constexpr int MostPilots = 40;

/// Practice pilots in a session over real sockets, with the log of what they do. It has no clock and never
/// waits, except for the session while a pilot joins. One thread.
class FlyingParty {
  public:
    /// A line for the person who looks on, in UTF-8. May be missing.
    using Print = std::function<void(std::chrono::milliseconds time, const std::string& line)>;

    /// The session is found at once; throws SessionError when there is none, or no room.
    FlyingParty(Station station, const SessionAccess& access, const TrafficPlan& plan, bool keepsTracks,
                Print print);

    void Step(std::chrono::milliseconds now);

    /// Everybody leaves the session.
    void Leave();

    /// What has been done so far, several lines. Gone pilots are in it, and who is stuck.
    std::string Summary() const;

    /// Writes what has happened as a drawing. Throws FileError.
    void DrawPicture(const std::filesystem::path& file) const;

    const PracticeLog& Log() const { return log_; }

  private:
    TrafficEvents Events();
    void PrintLine(std::string_view name, std::string_view what) const;
    void OnFailed(const PracticePilot& pilot, const std::string& why);
    void OnAbandoned(std::string_view name);

    Station station_;
    std::shared_ptr<const AirportChart> chart_;
    DirectPlayOptions reach_;
    TrafficPlan plan_;
    Print print_;
    std::chrono::milliseconds now_{0};
    std::optional<std::chrono::milliseconds> controllerLeft_;
    std::string lastFailure_;
    int failures_ = 0;
    PracticeLog log_;
    std::optional<PracticeTraffic> traffic_;
};

/// Lets a party fly until the length is over, the terminal asks for the end, or goOn says no; it is asked in
/// each turn with the time since the beginning. The party is still in the session when it returns.
void FlyUntil(FlyingParty& party, Terminal& terminal, std::optional<std::chrono::milliseconds> length,
              const std::function<bool(std::chrono::milliseconds now)>& goOn);

}  // namespace corvenna
