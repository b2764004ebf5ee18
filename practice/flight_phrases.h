#pragma once

#include <string>
#include <string_view>
#include <vector>

/// What the controller tells a pilot to do, read out of his texts. Pure functions, any thread.
namespace corvenna {

enum class Order {
    TaxiToRunway,  ///< Taxiways
    TaxiToSpot,    ///< Name: the spot; Taxiways
    HoldPosition,
    ContinueTaxi,
    HoldShort,
    TakeOff,
    LeftDownwind,
    RightDownwind,
    Base,
    StraightIn,
    Land,
    GoAround,
    ExitRunway,
    TurnLeft,   ///< Number: degrees magnetic
    TurnRight,  ///< Number: degrees magnetic
    Climb,      ///< Number: feet
    Descend,    ///< Number: feet
    FlyApproach,
    OwnNavigation,
    ContactApproach,  ///< Name: the frequency, which may be empty
};

struct Instruction {
    Order What = Order::HoldPosition;
    std::string Name;
    double Number = 0;
    std::vector<std::string> Taxiways;  ///< in the order told, upper case; a runway as "RUNWAY 16L"

    bool operator==(const Instruction&) const = default;
};

/// The instructions in a text, in the order of the table of phrases. What stands in its menu is none.
std::vector<Instruction> ReadInstructions(std::string_view text);

/// Whether the read-back of a text brings another text: that of a vector brings none.
bool IsFollowedByText(std::string_view text);

}  // namespace corvenna
