#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "station/tick.h"

namespace corvenna {

/// "Test Field" (KTST) with runway 16, 400 ft high, and whoever is about: a station without a session.
/// Variation is zero, so magnetic and true are the same. The tick runs all services.
class TestField final : public ChatSender {
  public:
    TestField();

    /// A player nobody has greeted yet, at the airport's reference point, on the ground.
    PlayerRecord& Enters(std::string_view name, std::string_view role = Role::Player);

    /// A player under service, on a frequency (empty: none) in a phase.
    PlayerRecord& OnFrequency(std::string_view name, std::string_view frequency, std::string_view phase,
                              std::uint8_t flightRules = Vfr);

    PlayerRecord& Pilot(std::string_view name);

    /// Puts a pilot at a distance and bearing from the runway's threshold, so many feet above the runway.
    void Place(std::string_view name, int bearing, int nauticalMiles, int feetAboveRunway);

    void Types(std::string_view name, std::string_view text);
    void Tick(int times = 1);

    /// The texts that a pilot heard in the last Tick call, in order.
    std::vector<std::string> Heard(std::string_view name) const;
    /// The last of them, or "".
    std::string LastHeard(std::string_view name) const;

    Station S;

  private:
    void SendChat(std::string_view frequency, std::string_view text,
                  std::span<const std::int32_t> audience) override;

    struct Transmission {
        std::string Text;
        std::vector<std::int32_t> Audience;
    };
    std::vector<Transmission> air_;
};

}  // namespace corvenna
