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

/// For as long as it lives nobody moves: what is found out about positions and terrain holds for all turns.
class Pass {
  public:
    explicit Pass(Station& station) : station_(station) { Set(true); }
    ~Pass() { Set(false); }
    Pass(const Pass&) = delete;
    Pass& operator=(const Pass&) = delete;

  private:
    void Set(bool inProgress) {
        station_.PassInProgress = inProgress;
        station_.Traffic.Forget();
        station_.Terrain.Forget();
    }

    Station& station_;
};

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
    const Pass pass(station);
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
