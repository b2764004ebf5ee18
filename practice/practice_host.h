#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "link/session.h"

namespace corvenna {

inline constexpr std::string_view PracticeHostName = "Practice_Host";

/// The simulator that a practice session is hosted on. Its own pilot only watches: he is an observer to all,
/// asks for no service, and admits everybody. Station's thread.
class PracticeHost {
  public:
    /// Creates the session, with the group that admitted players enter.
    PracticeHost(std::unique_ptr<Session> session, const std::string& sessionName, std::int32_t maxPlayers);

    /// Answers whatever has arrived since the last time.
    void Step();

  private:
    void Answer(std::int32_t sender, std::int32_t messageId);

    std::unique_ptr<Session> session_;
    std::int32_t id_ = 0;
};

}  // namespace corvenna
