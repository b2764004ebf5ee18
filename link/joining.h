#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "link/operator_desk.h"
#include "link/session_objects.h"
#include "station/model.h"

namespace corvenna {

/// The words of Label6. They are the window's state as well as its display.
namespace JoiningStatus {
inline constexpr std::string_view Disconnected = "Disconnected";
inline constexpr std::string_view Searching = "Searching for FS Multiplayer Sessions";
inline constexpr std::string_view Done = "Done";
inline constexpr std::string_view CreatingPlayer = "Creating Player";
inline constexpr std::string_view PlayerCreated = "Player created";
inline constexpr std::string_view FirstRequestSent = "First Request Sent";
inline constexpr std::string_view ResendingRequest = "Resending Request";
inline constexpr std::string_view RequestResent = "Request Resent";
inline constexpr std::string_view Connected = "Connected to Session";
inline constexpr std::string_view FailedConnection = "Failed Connection";
}  // namespace JoiningStatus

/// What the connection window shows, and whether its timer runs.
struct JoiningForm {
    std::vector<std::string>
        List1;  ///< types of connection, without the first one that the session layer has
    std::optional<std::size_t> List1Selected;
    std::string Text2 = "-None-";    ///< the controller's name in the session
    std::vector<std::string> List2;  ///< sessions found, "name (current/maximum)"
    std::optional<std::size_t> List2Selected;
    std::string_view Label6 = JoiningStatus::Disconnected;

    bool Timer1 = false;              ///< 1000 ms
    std::int16_t RetryCountdown = 0;  ///< seconds until the next request to join
};

/// How the window's surroundings hear of it.
struct JoiningEvents {
    std::function<void()> Repaint;     ///< the form changed, and is to be seen at once
    std::function<void()> Connected;   ///< admitted: this window goes, the station window is loaded and shown
    std::function<void()> EndProgram;  ///< the operator closed the window by its button
};

/// Finding a session, entering it, and waiting for the simulator's admission: the connection window without
/// widgets. Station's thread, one handler at a time, each to its end. A failure is shown to the operator as
/// the window shows it; what the session layer knows about it comes out of TakeNotices.
class Joining {
  public:
    /// All that is referred to must live as long as this.
    Joining(Station& station, SessionObjects& objects, OperatorDesk& desk, JoiningEvents events = {});

    void Load();

    void SelectConnection(std::size_t entry);  ///< a click in List1; abandons a join in progress
    void SelectSession(std::size_t entry);     ///< a click in List2
    void WriteNickname(std::string nickname);  ///< Text2

    void Search();  ///< Command1
    void Join();    ///< Command2
    void Close();   ///< Command3

    /// The body of Timer1. Throws when the request cannot be repeated.
    void RunTimer();

    void Unload();  ///< the window goes; leaves the session unless the station is in it

    const JoiningForm& Form() const { return form_; }

    /// Why things failed and what to try next, a line each, each told once.
    std::vector<std::string> TakeNotices();

  private:
    void Show(std::string_view status);
    void TearDown();
    void ListSessions();
    void FailJoin(std::string_view text, const std::string& why);
    void LeaveSession();
    void RequestToJoin();
    void HandleAnswers();
    void Admitted();
    void Refused();
    void CollectNotices();

    Station& station_;
    SessionObjects& objects_;
    OperatorDesk& desk_;
    JoiningEvents events_;
    JoiningForm form_;
    std::vector<std::string> notices_;
};

}  // namespace corvenna
