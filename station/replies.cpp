#include "station/replies.h"

#include <string>

#include "station/menu.h"
#include "station/text.h"

namespace corvenna {

namespace {

/// Texts are compared byte by byte. So "12" qualifies and "9" does not: no menu may use option 9. An empty
/// text qualifies too, and is no number.
bool SortsBeforeNine(std::string_view text) { return text < "9"; }

std::uint8_t NumberOf(std::string_view text) {
    const auto number = ReadReplyNumber(text);
    if (!number) throw ReplyError("a reply is no number from 0 to 255: \"" + std::string(text) + "\"");
    return *number;
}

/// The one character between the code and the digit may be anything; text behind the digit is ignored.
void ApplyAddressedReply(const Station& station, PlayerRecord& pilot, std::string_view text) {
    const std::size_t codeLength = station.AirportCode.size();
    if (!EqualIgnoringCase(text.substr(0, codeLength), station.AirportCode)) return;
    const std::string_view digit = text.substr(std::min(codeLength + 1, text.size()), 1);
    if (SortsBeforeNine(digit)) pilot.Choice = NumberOf(digit);
}

}  // namespace

void ApplyChatReply(const Station& station, PlayerRecord& pilot, std::string_view text) {
    if (pilot.InService == OpeningDialogue) {
        ApplyAddressedReply(station, pilot, text);
        return;
    }
    if (pilot.InService != UnderService) return;
    if (SortsBeforeNine(text)) pilot.Choice = NumberOf(text);
    if (EqualIgnoringCase(text, "r") && pilot.MenuText.find(SayAgainMark) == std::string::npos) {
        pilot.Choice = 0;
        pilot.MenuText += SayAgainMark;
    }
}

}  // namespace corvenna
