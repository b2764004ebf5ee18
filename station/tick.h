#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "station/model.h"

namespace corvenna {

/// Where the tick's texts go. The text is the same for everybody in the audience.
class ChatSender {
  public:
    virtual ~ChatSender() = default;

    /// Sends a text, guaranteed, to each player id of the audience in its order. frequency is the label
    /// that they all have tuned, empty for those on none. A failure is thrown and ends the tick.
    virtual void SendChat(std::string_view frequency, std::string_view text,
                          std::span<const std::int32_t> audience) = 0;
};

/// A service of the tick: it has every pilot whose TunedFrequency equals the label. It changes the
/// pilot's record and sends nothing itself. Without an operation the frequency stays silent.
struct FrequencyService {
    std::string Station::*Label;
    void (*Serve)(Station&, PlayerRecord&);
};

/// The body of ATC_Timer: with nobody in Players nothing, otherwise one pass over them by ControllerTick.
/// Services are tried in the order given. An error ends the pass and is thrown; what was sent stays sent.
void AtcTimer(Station& station, std::span<const FrequencyService> services, ChatSender& chat);

/// One pass over Players: each one's turn, and the sending of a text that changed in his own turn.
void ControllerTick(Station& station, std::span<const FrequencyService> services, ChatSender& chat);

/// Sends a text to every record, of whatever role, that has the pilot's frequency tuned, himself among them.
void SendChatToFrequency(Station& station, const PlayerRecord& pilot, std::string_view text,
                         ChatSender& chat);

}  // namespace corvenna
