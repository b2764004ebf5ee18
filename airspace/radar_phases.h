#pragma once

#include <string_view>

/// The words of the two radar services, in one place so that a misspelling does not compile.
namespace corvenna {

/// What PlayerRecord::Phase holds on the Approach and the ARTCC frequency. "Approach" has another meaning
/// once the Tower has the pilot: there he waits for his landing clearance.
namespace RadarPhase {
inline constexpr std::string_view None{};

inline constexpr std::string_view ContactDeparture = "Contact Departure";
inline constexpr std::string_view Departure = "Departure";
inline constexpr std::string_view AcknowledgeContactArtccEnRoute = "Acknowledge contact ARTCC (EN ROUTE)";
inline constexpr std::string_view ContactArtccEnRoute = "Contact ARTCC (EN ROUTE)";

inline constexpr std::string_view ContactApproach = "Contact Approach";
inline constexpr std::string_view Approach = "Approach";
inline constexpr std::string_view MissedApproach = "Missed Approach";
inline constexpr std::string_view AcknowledgeContactArtccApproach = "Acknowledge contact ARTCC (APPROACH)";
inline constexpr std::string_view ContactArtccApproach = "Contact ARTCC (APPROACH)";
inline constexpr std::string_view AcknowledgeContactArtccMissedApproach =
    "Acknowledge contact ARTCC (MISSED APPROACH)";
inline constexpr std::string_view ContactArtccMissedApproach = "Contact ARTCC (MISSED APPROACH)";
inline constexpr std::string_view AcknowledgeContactTower = "Acknowledge contact tower";
inline constexpr std::string_view ContactTower = "Contact tower";

inline constexpr std::string_view EnRoute = "En Route";
inline constexpr std::string_view Descent = "Descent";
inline constexpr std::string_view AcknowledgeContactApproach = "Acknowledge contact approach";
inline constexpr std::string_view ContactApproachFrequency = "Contact approach";
inline constexpr std::string_view AcknowledgeContactApproachMissedApproach =
    "Acknowledge contact approach (MISSED APPROACH)";
inline constexpr std::string_view ContactApproachFrequencyMissedApproach =
    "Contact approach (MISSED APPROACH)";
}  // namespace RadarPhase

/// The options of the radar menus.
namespace RadarLabel {
inline constexpr std::string_view Acknowledge = "-Acknowledge";
inline constexpr std::string_view TrafficInSight = "-Report traffic in sight";
inline constexpr std::string_view TrafficNotInSight = "-Report traffic not in sight";
inline constexpr std::string_view TuneTower = "-Tune {airport} Tower Frequency";
inline constexpr std::string_view TuneApproach = "-Tune Approach Frequency";
inline constexpr std::string_view TuneArtcc = "-Tune ARTCC Frequency";
inline constexpr std::string_view ThisAirport = "-{airport}";
inline constexpr std::string_view AnotherAirport = "-Another Airport";
}  // namespace RadarLabel

/// What goes into the {service} of a text.
namespace ServiceWord {
inline constexpr std::string_view Approach = "Approach";
inline constexpr std::string_view Departure = "Departure";
inline constexpr std::string_view Artcc = "ARTCC";
}  // namespace ServiceWord

/// Words of PlayerRecord::Quadrant, the sides of the runway.
namespace Side {
inline constexpr std::string_view North = "north";
inline constexpr std::string_view Northeast = "northeast";
inline constexpr std::string_view Northwest = "northwest";
inline constexpr std::string_view East = "east";
inline constexpr std::string_view West = "west";
inline constexpr std::string_view Southeast = "southeast";
inline constexpr std::string_view Southwest = "southwest";
inline constexpr std::string_view South = "south";
}  // namespace Side

}  // namespace corvenna
