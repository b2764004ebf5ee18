#include "station/tick.h"

#include "station/advisory.h"
#include "station/geometry.h"
#include "station/menu.h"
#include "station/opening.h"

namespace corvenna {

namespace {

void RemoveSayAgainMarks(std::string& text) {
    for (auto at = text.find(SayAgainMark); at != std::string::npos; at = text.find(SayAgainMark, at)) {
        text.erase(at, SayAgainMark.size());
    }
}

/// The span in which services may rely on positions and on the airport, ended by an error too.
class TickSpan {
  public:
    explicit TickSpan(Station& station) : station_(station) {
        ++station_.TicksBegun;
        station_.TickInProgress = true;
    }
    ~TickSpan() { station_.TickInProgress = false; }
    TickSpan(const TickSpan&) = delete;
    TickSpan& operator=(const TickSpan&) = delete;

  private:
    Station& station_;
};

void DispatchToService(Station& station, PlayerRecord& pilot, std::span<const FrequencyService> services) {
    if (!pilot.TunedFrequency.empty()) {
        for (const FrequencyService& service : services) {
            if (pilot.TunedFrequency != station.*service.Label) continue;
            if (service.Serve != nullptr) service.Serve(station, pilot);
            return;
        }
    } else if (station.TowerFrequency.empty() || station.GroundFrequency.empty()) {
        AdvisoryService(station, pilot);
    } else {
        RunFrequencyMenu(station, pilot);
    }
}

/// A repeat request takes the whole turn: the text without its mark differs from the one with it, and so
/// goes out again.
void TakeTurn(Station& station, PlayerRecord& pilot, std::span<const FrequencyService> services) {
    if (pilot.MenuText.find(SayAgainMark) != std::string::npos) {
        RemoveSayAgainMarks(pilot.MenuText);
    } else if (pilot.InService == OpeningDialogue) {
        RunOpeningDialogue(station, pilot);
    } else if (pilot.InService == UnderService) {
        UpdatePilotGeometry(station, pilot);
        DispatchToService(station, pilot, services);
    }
}

}  // namespace

void AtcTimer(Station& station, std::span<const FrequencyService> services, ChatSender& chat) {
    if (station.PlayerCount() > 0) ControllerTick(station, services, chat);
}

void ControllerTick(Station& station, std::span<const FrequencyService> services, ChatSender& chat) {
    const TickSpan span(station);
    std::string& before = station.TextBefore;
    for (PlayerRecord& pilot : station.Players.Valid()) {
        if (pilot.Role != Role::Player) continue;
        before = pilot.MenuText;
        TakeTurn(station, pilot, services);
        if (pilot.MenuText != before && !pilot.MenuText.empty()) {
            SendChatToFrequency(station, pilot, pilot.MenuText, chat);
        }
    }
}

void SendChatToFrequency(Station& station, const PlayerRecord& pilot, std::string_view text,
                         ChatSender& chat) {
    std::vector<std::int32_t>& audience = station.Audience;
    audience.clear();
    for (const PlayerRecord& listener : station.Players.Valid()) {
        if (listener.TunedFrequency == pilot.TunedFrequency) audience.push_back(listener.Id);
    }
    chat.SendChat(pilot.TunedFrequency, text, audience);
}

}  // namespace corvenna
