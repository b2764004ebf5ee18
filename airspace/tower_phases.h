#pragma once

#include "station/phases.h"

/// The state words of a pilot on the Tower frequency, and those with which the Tower hands him on. The same
/// word can mean something else on another frequency.
namespace corvenna::Phase {

// Takeoff, behind TaxiingToRunway.
inline constexpr std::string_view AcknowledgeHoldShort = "Acknowledge Hold short";
inline constexpr std::string_view HoldingShort = "Holding short in runway";
inline constexpr std::string_view AcknowledgeTakeoff = "Acknowledge Takeoff";
inline constexpr std::string_view TakingOff = "Takingoff";

// To the Departure service: on the Approach frequency, or by ARTCC, where he arrives with Departure.
inline constexpr std::string_view AcknowledgeContactDeparture = "Acknowledge contact departure";
inline constexpr std::string_view ContactDeparture = "Contact Departure";
inline constexpr std::string_view AcknowledgeContactArtccDeparture = "Acknowledge contact ARTCC (DEPARTURE)";
inline constexpr std::string_view ContactArtccDeparture = "Contact ARTCC (DEPARTURE)";
inline constexpr std::string_view Departure = "Departure";

// Landing. Approach is how an IFR pilot is handed over by those who vectored him.
inline constexpr std::string_view Approach = "Approach";
inline constexpr std::string_view AcknowledgeEnterPattern = "Acknowledge enter traffic pattern";
inline constexpr std::string_view FlyingPattern = "Flying traffic pattern";
inline constexpr std::string_view AcknowledgeLanding = "Acknowledge Landing";
inline constexpr std::string_view Landing = "Landing";
inline constexpr std::string_view AcknowledgeGoingAround = "Acknowledge going around";
inline constexpr std::string_view GoingAround = "Going Around";

// Off the runway, to Ground with ContactGround.
inline constexpr std::string_view AcknowledgeContactGround = "Acknowledge contact ground";

// A missed approach: to the Approach frequency, or by ARTCC, where he arrives with MissedApproach.
inline constexpr std::string_view AcknowledgeContactApproach = "Acknowledge contact approach";
inline constexpr std::string_view ContactApproach = "Contact Approach";
inline constexpr std::string_view AcknowledgeContactArtccGoAround = "Acknowledge contact ARTCC (GO AROUND)";
inline constexpr std::string_view ContactArtccGoAround = "Contact ARTCC (GO AROUND)";
inline constexpr std::string_view MissedApproach = "Missed Approach";

}  // namespace corvenna::Phase
