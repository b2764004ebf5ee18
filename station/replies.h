#pragma once

#include <stdexcept>
#include <string_view>

#include "station/model.h"

namespace corvenna {

/// A reply that sorts like a digit but is no number from 0 to 255.
class ReplyError : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

/// Takes what a pilot typed, trimmed. Not under service he must address the station: "{AirportCode},{digit}".
/// Under service the whole text is the number, and "R" asks for a repeat. What is understood waits in
/// Choice for the next tick. Throws ReplyError, with the record unchanged.
void ApplyChatReply(const Station& station, PlayerRecord& pilot, std::string_view text);

}  // namespace corvenna
