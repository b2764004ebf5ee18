#pragma once

/// What "N1" reads from the Tower of "Test Field" when he arrives on runway 16.
namespace corvenna::Heard {

inline constexpr char OfferLandingOrApproach[] =
    "N1. Choose one of the following options for the Tower frequency: 1-Request Full Stop Landing 2-Tune "
    "Approach Frequency 3-Close ATC Services";
inline constexpr char OfferLandingOrArtcc[] =
    "N1. Choose one of the following options for the Tower frequency: 1-Request Full Stop Landing 2-Tune "
    "ARTCC Frequency 3-Close ATC Services";
inline constexpr char LeftDownwind[] =
    "N1, Test Field Tower, Enter left downwind runway 16. Choose one of the following options for the Tower "
    "frequency: 1-Acknowledge 2-Close ATC Services";
inline constexpr char RightDownwind[] =
    "N1, Test Field Tower, Enter right downwind runway 16. Choose one of the following options for the Tower "
    "frequency: 1-Acknowledge 2-Close ATC Services";
inline constexpr char OnBase[] =
    "N1, Test Field Tower, Fly on base to runway 16. Choose one of the following options for the Tower "
    "frequency: 1-Acknowledge 2-Close ATC Services";
inline constexpr char StraightIn[] =
    "N1, Test Field Tower, Fly straight in runway 16. Choose one of the following options for the Tower "
    "frequency: 1-Acknowledge 2-Close ATC Services";
inline constexpr char OnApproach[] =
    "N1. Choose one of the following options for the Approach frequency: 1-Close ATC Services";
inline constexpr char OnArtcc[] =
    "N1. Choose one of the following options for the ARTCC frequency: 1-Close ATC Services";
inline constexpr char OfferCancel[] =
    "N1. Choose one of the following options for the Tower frequency: 1-Cancel Landing 2-Close ATC Services";
inline constexpr char NotCleared[] = "N1, You were not cleared for land. Tower Services terminated.";
inline constexpr char NotClearedIfr[] =
    "N1, You were not cleared for land. Canceling IFR and turning to VFR. Tower Services terminated.";
inline constexpr char ClearedToLand1[] =
    "N1, You are cleared to land on runway 16. Number 1 for landing. Choose one of the following options for "
    "the Tower frequency: 1-Acknowledge 2-Close ATC Services";
inline constexpr char ClearedToLand2[] =
    "N1, You are cleared to land on runway 16. Number 2 for landing. Choose one of the following options for "
    "the Tower frequency: 1-Acknowledge 2-Close ATC Services";
inline constexpr char OfferGoAround[] =
    "N1. Choose one of the following options for the Tower frequency: 1-Cancel Landing 2-Report Go Around "
    "3-Close ATC Services";
inline constexpr char OfferMissed[] =
    "N1. Choose one of the following options for the Tower frequency: 1-Declare Missed Approach 2-Close ATC "
    "Services";
inline constexpr char CancelReceived[] =
    "N1, Roger landing cancel received. Choose one of the following options for the Tower frequency: 1-Close "
    "ATC Services";
inline constexpr char GoAroundReceived[] =
    "N1, Roger. Choose one of the following options for the Tower frequency: 1-Cancel Landing 2-Close ATC "
    "Services";
inline constexpr char MissedContactApproach[] =
    "N1, Roger. Contact Approach on 124.2. Good day. Choose one of the following options for the Tower "
    "frequency: 1-Acknowledge 2-Close ATC Services";
inline constexpr char MissedContactArtcc[] =
    "N1, Roger. Contact ARTCC (Air Route Traffic Control Center). Good day. Choose one of the following "
    "options for the Tower frequency: 1-Acknowledge 2-Close ATC Services";
inline constexpr char GoAround[] =
    "N1, Go around. Choose one of the following options for the Tower frequency: 1-Acknowledge 2-Close ATC "
    "Services";
inline constexpr char GoAroundContactApproach[] =
    "N1, Go around. Contact Approach on 124.2. Good day. Choose one of the following options for the Tower "
    "frequency: 1-Acknowledge 2-Close ATC Services";
inline constexpr char GoAroundContactArtcc[] =
    "N1, Go around. Contact ARTCC (Air Route Traffic Control Center). Good day. Choose one of the following "
    "options for the Tower frequency: 1-Acknowledge 2-Close ATC Services";
inline constexpr char ExitRunway[] =
    "N1, Exit runway when able. Choose one of the following options for the Tower frequency: 1-Close ATC "
    "Services";
inline constexpr char ContactGround[] =
    "N1, Contact Ground on 121.9. Good day. Choose one of the following options for the Tower frequency: "
    "1-Acknowledge 2-Close ATC Services";
inline constexpr char TuneGround[] =
    "N1. Choose one of the following options for the Tower frequency: 1-Tune Test Field Ground Frequency "
    "2-Close ATC Services";
inline constexpr char ContactApproach[] =
    "N1, Contact Approach on 124.2. Good day. Choose one of the following options for the Tower frequency: "
    "1-Acknowledge 2-Close ATC Services";
inline constexpr char TuneApproach[] =
    "N1. Choose one of the following options for the Tower frequency: 1-Tune Approach Frequency 2-Close ATC "
    "Services";
inline constexpr char OnTower[] =
    "N1. Choose one of the following options for the Tower frequency: 1-Close ATC Services";
inline constexpr char OnGround[] =
    "N1. Choose one of the following options for the Ground frequency: 1-Close ATC Services";
inline constexpr char NotClearedTakeoff[] =
    "N1, You were not cleared for take off. Tower Services terminated.";
inline constexpr char NotClearedTakeoffIfr[] =
    "N1, You were not cleared for take off. Canceling IFR and turning to VFR. Tower Services terminated.";
inline constexpr char ContactArtcc[] =
    "N1, Contact ARTCC (Air Route Traffic Control Center). Good day. Choose one of the following options for "
    "the Tower frequency: 1-Acknowledge 2-Close ATC Services";
inline constexpr char TuneArtcc[] =
    "N1. Choose one of the following options for the Tower frequency: 1-Tune ARTCC Frequency 2-Close ATC "
    "Services";
inline constexpr char OldText[] = "N1, what he was last told";

}  // namespace corvenna::Heard
