#pragma once

#include <string_view>

/// The state words of a pilot on the Ground frequency, and the two by which Ground and Tower hand him on.
/// Words are compared exactly, blanks and capitals included.
namespace corvenna::Phase {

inline constexpr std::string_view None{};  ///< nothing asked for yet

// To the runway. The Tower takes over a pilot who is still in TaxiingToRunway.
inline constexpr std::string_view AcknowledgeTaxiToRunway = "Acknowledge taxi to runway";
inline constexpr std::string_view TaxiingToRunway = "Taxiing to runway";

// On hold, on the way to the runway or from it.
inline constexpr std::string_view AcknowledgeHoldPosition = "Acknowledge hold position";
inline constexpr std::string_view HoldPosition = "Hold position";

// To a gate or other parking. ContactGround is how the Tower hands a landed pilot over.
inline constexpr std::string_view ContactGround = "Contact Ground";
inline constexpr std::string_view AcknowledgeTaxiToGate = "Acknowledge taxi to gate";
inline constexpr std::string_view TaxiingToGate = "Taxiing to gate";

}  // namespace corvenna::Phase
