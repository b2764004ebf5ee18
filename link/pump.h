#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "link/operator_desk.h"
#include "link/player_directory.h"
#include "link/session.h"
#include "station/model.h"

namespace corvenna {

/// What a pass of the pump works on.
struct PumpContext {
    Station& TheStation;
    Session& Dp;
    PlayerDirectory& Directory;
    OperatorDesk& Desk;
    std::function<void()> CloseStation;  ///< the Close the ATC Station action; Dp is gone when it returns

    /// Hears each text that somebody says in the chat, before it is applied. May be missing.
    std::function<void(std::string_view name, std::string_view text)> Heard = {};
};

/// The body of Connection_Timer, one pass: fetches the messages that wait as it begins, and handles each.
/// Any failure ends the pass: the message in hand is lost and changes nothing more, those behind it wait
/// for the next pass. Returns why the pass failed, or nothing; never throws. Station's thread.
std::optional<std::string> MessagePump(PumpContext& context);

}  // namespace corvenna
