#include "airspace/plain_tower.h"

#include <cmath>
#include <string>

#include "station/geometry.h"
#include "station/text.h"

namespace corvenna::plain {

namespace {

/// One call of the Tower for one pilot, with what it looks up all the time.
class Call {
  public:
    Call(Station& station, PlayerRecord& pilot) : S(station), P(pilot) {}

    void Run() {
        occupied_ = plain::ComputeRunwayOccupied(S, P);
        low_ = std::int64_t{P.Altitude} <= std::int64_t{S.RunwayElevation} + 300;
        below_ = std::int64_t{P.Altitude} < std::int64_t{S.RunwayElevation} + 300;
        if (S.DistanceToAirport == 15) return;
        if (P.FlightRules > 1) return;
        if (S.DistanceToAirport > 15) {
            OutOfRange();
        } else if (P.Choice != 0) {
            Choices();
            if (Chosen("-Close ATC Services")) ResetPilot(S, P);
        } else {
            Positions();
        }
    }

  private:
    bool Ifr() const { return P.FlightRules == 1; }
    bool In(const char* phase) const { return P.Phase == phase; }

    bool Chosen(const std::string& label) const {
        if (P.Choice == 0) return false;
        const std::string option = LowerCase(std::to_string(P.Choice) + label);
        return LowerCase(P.MenuText).find(option) != std::string::npos;
    }

    std::string Callsign(const std::string& words) const { return P.Name + words; }

    /// "{callsign}{words} Choose one of ... for the Tower frequency: {options}"
    std::string Menu(const std::string& words, const std::string& options,
                     const std::string& frequency = "Tower") const {
        return P.Name + words + " Choose one of the following options for the " + frequency +
               " frequency: " + options;
    }

    std::string OnTower() const { return Menu(".", "1-Close ATC Services"); }
    std::string Acknowledge(const std::string& words) const {
        return Menu(words, "1-Acknowledge 2-Close ATC Services");
    }
    std::string ContactArtcc() const {
        return Acknowledge(", Contact ARTCC (" + S.ArtccFrequency + "). Good day.");
    }
    std::string TuneArtcc() const { return Menu(".", "1-Tune ARTCC Frequency 2-Close ATC Services"); }
    std::string OfferCancel() const { return Menu(".", "1-Cancel Landing 2-Close ATC Services"); }
    std::string ClearedForTakeoff() const {
        return Acknowledge(", " + S.AirportName + " Tower, Cleared for takeoff on runway " + S.ActiveRunway +
                           ".");
    }
    std::string HoldShort() const {
        return Acknowledge(", " + S.AirportName + " Tower, Hold short on runway " + S.ActiveRunway + ".");
    }
    std::string NotCleared(const std::string& what) const {
        return Callsign(", You were not cleared for " + what + "." +
                        (Ifr() ? " Canceling IFR and turning to VFR." : "") + " Tower Services terminated.");
    }

    void Terminate(const std::string& text) {
        P.MenuText = text;
        P.Choice = 0;
        P.FlightRules = 0;
        P.TunedFrequency = "";
        P.Phase = "";
    }

    void OutOfRange() {
        if (!Ifr()) {
            Terminate("");
            return;
        }
        const std::string phase = LowerCase(P.Phase);
        const bool stays = In("Landing") || In("Takingoff") || phase.find("contact") != std::string::npos;
        if (!stays || phase.find("ground") != std::string::npos) {
            ResetPilot(S, P);
        } else if (In("Acknowledge contact departure") || In("Contact Departure")) {
            Change(Menu(".", "1-Close ATC Services", "Departure"), "Contact Departure", S.ApproachFrequency);
        } else if (In("Acknowledge contact ARTCC (DEPARTURE)") || In("Contact ARTCC (DEPARTURE)")) {
            Change("", "Departure", S.ArtccFrequency);
        } else if (In("Acknowledge contact approach") || In("Contact Approach")) {
            Change(Menu(".", "1-Close ATC Services", "Approach"), "Contact Approach", S.ApproachFrequency);
        } else if (In("Acknowledge contact ARTCC (GO AROUND)") || In("Contact ARTCC (GO AROUND)")) {
            Change("", "Missed Approach", S.ArtccFrequency);
        }
    }

    void Change(const std::string& text, const std::string& phase, const std::string& frequency) {
        P.MenuText = text;
        P.Choice = 0;
        P.Phase = phase;
        P.TunedFrequency = frequency;
    }

    /// Text and next state, on the same frequency.
    void Go(const std::string& text, const std::string& phase) {
        P.MenuText = text;
        P.Choice = 0;
        P.Phase = phase;
    }

    void Choices() {
        const std::string tuneGround = "-Tune " + S.AirportName + " Ground Frequency";
        if (In("Taxiing to runway")) {
            if (Chosen(tuneGround)) {
                ToGround();
            } else if (Chosen(Ifr() ? "-Request IFR Takeoff Clearance" : "-Request VFR Takeoff Clearance")) {
                DecideTakeoff();
            }
        } else if (In("Contact Ground")) {
            if (Chosen(tuneGround)) ToGround();
        } else if (In("Acknowledge Hold short")) {
            if (Chosen("-Acknowledge")) Go(OnTower(), "Holding short in runway");
        } else if (In("Acknowledge Takeoff")) {
            if (Chosen("-Acknowledge")) Go(OnTower(), "Takingoff");
        } else if (In("Acknowledge contact ground")) {
            if (Chosen("-Acknowledge")) {
                Go(Menu(".", "1-Tune " + S.AirportName + " Ground Frequency 2-Close ATC Services"),
                   "Contact Ground");
            }
        } else if (Ifr()) {
            IfrChoices();
        } else {
            VfrChoices();
        }
    }

    void ToGround() { Change(Menu(".", "1-Close ATC Services", "Ground"), P.Phase, S.GroundFrequency); }

    void DecideTakeoff() {
        const bool waiting = !S.TakeoffQueue[0].empty() || !S.LandingQueue[0].empty();
        AddToTakeoffQueue(S, P);
        if (!waiting && !occupied_) {
            Go(ClearedForTakeoff(), "Acknowledge Takeoff");
        } else {
            Go(HoldShort(), "Acknowledge Hold short");
        }
    }

    void IfrChoices() {
        if (In("Acknowledge contact departure")) {
            if (Chosen("-Acknowledge")) {
                Go(Menu(".", "1-Tune Departure Frequency 2-Close ATC Services"), "Contact Departure");
            }
        } else if (In("Contact Departure")) {
            if (Chosen("-Tune Departure Frequency")) {
                Change(Menu(".", "1-Close ATC Services", "Departure"), "Contact Departure",
                       S.ApproachFrequency);
            }
        } else if (In("Acknowledge contact ARTCC (DEPARTURE)")) {
            if (Chosen("-Acknowledge")) Go(TuneArtcc(), "Contact ARTCC (DEPARTURE)");
        } else if (In("Contact ARTCC (DEPARTURE)")) {
            if (Chosen("-Tune ARTCC Frequency")) Change("", "Departure", S.ArtccFrequency);
        } else if (In("Acknowledge Landing")) {
            if (Chosen("-Acknowledge")) {
                Go(Menu(".", "1-Declare Missed Approach 2-Close ATC Services"), "Landing");
            }
        } else if (In("Landing")) {
            if (Chosen("-Declare Missed Approach")) {
                DeclareMissed();
            }
        } else if (In("Acknowledge contact approach")) {
            if (Chosen("-Acknowledge")) {
                Go(Menu(".", "1-Tune Approach Frequency 2-Close ATC Services"), "Contact Approach");
            }
        } else if (In("Contact Approach")) {
            if (Chosen("-Tune Approach Frequency")) {
                Change(Menu(".", "1-Close ATC Services", "Approach"), "Contact Approach",
                       S.ApproachFrequency);
            }
        } else if (In("Acknowledge contact ARTCC (GO AROUND)")) {
            if (Chosen("-Acknowledge")) Go(TuneArtcc(), "Contact ARTCC (GO AROUND)");
        } else if (In("Contact ARTCC (GO AROUND)")) {
            if (Chosen("-Tune ARTCC Frequency")) Change("", "Missed Approach", S.ArtccFrequency);
        }
    }

    void DeclareMissed() {
        P.Choice = 0;
        if (S.ApproachFrequency.empty()) {
            P.MenuText = Acknowledge(", Roger. Contact ARTCC (" + S.ArtccFrequency + "). Good day.");
            RemoveFromLandingQueue(S, P);
            P.Phase = "Acknowledge contact ARTCC (GO AROUND)";
        } else {
            P.MenuText = Acknowledge(", Roger. Contact Approach on " + S.ApproachFrequency + ". Good day.");
            RemoveFromLandingQueue(S, P);
            P.Phase = "Acknowledge contact approach";
        }
    }

    void VfrChoices() {
        if (In("")) {
            if (Chosen("-Request Full Stop Landing")) EnterPattern();
            if (Chosen("-Tune Approach Frequency")) {
                Change(Menu(".", "1-Close ATC Services", "Approach"), "", S.ApproachFrequency);
            }
            if (Chosen("-Tune ARTCC Frequency")) {
                Change(Menu(".", "1-Close ATC Services", "ARTCC"), "", S.ArtccFrequency);
            }
        } else if (In("Acknowledge enter traffic pattern")) {
            if (Chosen("-Acknowledge")) Go(OfferCancel(), "Flying traffic pattern");
        } else if (In("Acknowledge Landing")) {
            if (Chosen("-Acknowledge")) {
                Go(Menu(".", "1-Cancel Landing 2-Report Go Around 3-Close ATC Services"), "Landing");
            }
        } else if (In("Acknowledge going around")) {
            if (Chosen("-Acknowledge")) Go(OfferCancel(), "Going Around");
        } else if (In("Flying traffic pattern") || In("Landing") || In("Going Around")) {
            const bool landing = In("Landing");
            if (Chosen("-Cancel Landing")) {
                P.MenuText = Menu(", Roger landing cancel received.", "1-Close ATC Services");
                P.Choice = 0;
                RemoveFromLandingQueue(S, P);
                P.Phase = "";
            } else if (landing && Chosen("-Report Go Around")) {
                P.MenuText = Menu(", Roger.", "1-Cancel Landing 2-Close ATC Services");
                P.Choice = 0;
                RemoveFromLandingQueue(S, P);
                P.Phase = "Going Around";
            }
        }
    }

    void EnterPattern() {
        const std::string& q = P.Quadrant;
        std::string entry;
        if (q == "north" || q == "northwest" || q == "west") entry = "Enter left downwind";
        if (q == "northeast" || q == "east") entry = "Enter right downwind";
        if (q == "southeast" || q == "southwest") entry = "Fly on base to";
        if (q == "south") entry = "Fly straight in";
        if (entry.empty()) return;
        Go(Acknowledge(", " + S.AirportName + " Tower, " + entry + " runway " + S.ActiveRunway + "."),
           "Acknowledge enter traffic pattern");
    }

    void Positions() {
        if (In("Taxiing to runway")) {
            if (low_) {
                P.MenuText =
                    Menu(".", "1-Tune " + S.AirportName + " Ground Frequency 2-Request " +
                                  (Ifr() ? "IFR" : "VFR") + " Takeoff Clearance 3-Close ATC Services");
            } else {
                Terminate(NotCleared("take off"));
            }
        } else if (In("Acknowledge Hold short")) {
            if (low_) {
                P.MenuText = HoldShort();
            } else {
                Terminate(NotCleared("take off"));
                RemoveFromTakeoffQueue(S, P);
            }
        } else if (In("Holding short in runway")) {
            Holding();
        } else if (In("Acknowledge Takeoff")) {
            P.MenuText = ClearedForTakeoff();
        } else if (In("Takingoff")) {
            TakingOff();
        } else if (In("Landing")) {
            Landing();
        } else if (In("Acknowledge contact ground")) {
            P.MenuText = Acknowledge(", Contact Ground on " + S.GroundFrequency + ". Good day.");
            if (!low_) Terminate(NotCleared("take off"));
        } else if (In("Contact Ground")) {
            P.MenuText = Menu(".", "1-Tune " + S.AirportName + " Ground Frequency 2-Close ATC Services");
            if (!low_) Terminate(NotCleared("take off"));
        } else if (Ifr()) {
            IfrPositions();
        } else {
            VfrPositions();
        }
    }

    void Holding() {
        P.MenuText = OnTower();
        if (!low_) {
            Terminate(NotCleared("take off"));
            RemoveFromTakeoffQueue(S, P);
        }
        if (S.TakeoffQueue[0] == P.Name && S.LandingQueue[0].empty() && !occupied_) {
            Go(ClearedForTakeoff(), "Acknowledge Takeoff");
        }
    }

    void TakingOff() {
        if (low_ || !Ifr()) P.MenuText = OnTower();
        if (low_) return;
        P.Choice = 0;
        if (!Ifr()) {
            RemoveFromTakeoffQueue(S, P);
            P.Phase = "";
        } else if (!S.ApproachFrequency.empty()) {
            P.MenuText = Acknowledge(", Contact Departure on " + S.ApproachFrequency + ". Good day.");
            RemoveFromTakeoffQueue(S, P);
            P.Phase = "Acknowledge contact departure";
        } else {
            P.MenuText = ContactArtcc();
            RemoveFromTakeoffQueue(S, P);
            P.Phase = "Acknowledge contact ARTCC (DEPARTURE)";
        }
    }

    void Landing() {
        if (S.DistanceToRunway < 2) {
            for (std::int32_t i = 0; i < S.PlayerCount(); ++i) {
                const PlayerRecord& other = S.Players[i];
                if (other.Name == P.Name) continue;
                if (other.Phase == "Landing" || other.Phase == "Takingoff" || occupied_) {
                    CommandGoAround();
                    return;
                }
            }
        }
        if (low_) {
            P.MenuText = Menu(", Exit runway when able.", "1-Close ATC Services");
            P.Choice = 0;
        }
        const std::int16_t lo = NormalizeHeading(S.SectorNorth - 10);
        const std::int16_t hi = NormalizeHeading(S.SectorNorth + 10);
        if (low_ && !HeadingInSector(P.Heading, lo, hi)) {
            Go(Acknowledge(", Contact Ground on " + S.GroundFrequency + ". Good day."),
               "Acknowledge contact ground");
            RemoveFromLandingQueue(S, P);
        }
    }

    void CommandGoAround() {
        if (!Ifr()) {
            Go(Acknowledge(", Go around."), "Acknowledge going around");
        } else if (S.ApproachFrequency.empty()) {
            Go(Acknowledge(", Go around. Contact ARTCC (" + S.ArtccFrequency + "). Good day."),
               "Acknowledge contact ARTCC (GO AROUND)");
        } else {
            Go(Acknowledge(", Go around. Contact Approach on " + S.ApproachFrequency + ". Good day."),
               "Acknowledge contact approach");
        }
        RemoveFromLandingQueue(S, P);
    }

    void LandingGate() {
        if (P.Quadrant != "south" || S.DistanceToRunway >= 9) return;
        AddToLandingQueue(S, P);
        Go(Acknowledge(", You are cleared to land on runway " + S.ActiveRunway + ". Number " +
                       std::to_string(S.LandingQueueCount()) + " for landing."),
           "Acknowledge Landing");
    }

    void IfrPositions() {
        if (In("Acknowledge contact departure")) {
            P.MenuText = Acknowledge(", Contact Departure on " + S.ApproachFrequency + ". Good day.");
        } else if (In("Contact Departure")) {
            P.MenuText = Menu(".", "1-Tune Departure Frequency 2-Close ATC Services");
        } else if (In("Acknowledge contact ARTCC (DEPARTURE)")) {
            P.MenuText = ContactArtcc();
        } else if (In("Contact ARTCC (DEPARTURE)")) {
            P.MenuText = TuneArtcc();
        } else if (In("Approach")) {
            P.MenuText = OnTower();
            if (below_) Terminate(NotCleared("land"));
            LandingGate();
        } else if (In("Acknowledge contact approach")) {
            P.MenuText = Acknowledge(", Contact Approach on " + S.ApproachFrequency + ". Good day.");
            if (below_) Terminate(NotCleared("land"));
        } else if (In("Contact Approach")) {
            P.MenuText = Menu(".", "1-Tune Approach Frequency 2-Close ATC Services");
            if (below_) Terminate(NotCleared("land"));
        } else if (In("Acknowledge contact ARTCC (GO AROUND)")) {
            P.MenuText = ContactArtcc();
            if (below_) Terminate(NotCleared("land"));
        } else if (In("Contact ARTCC (GO AROUND)")) {
            P.MenuText = TuneArtcc();
            if (below_) Terminate(NotCleared("land"));
        }
    }

    void VfrPositions() {
        if (In("")) {
            if (below_) {
                Terminate("");
            } else if (!low_) {
                const std::string other = S.ApproachFrequency.empty() ? "ARTCC" : "Approach";
                P.MenuText = Menu(
                    ".", "1-Request Full Stop Landing 2-Tune " + other + " Frequency 3-Close ATC Services");
            }
        } else if (In("Acknowledge enter traffic pattern")) {
            if (below_) Terminate(NotCleared("land"));
        } else if (In("Flying traffic pattern")) {
            P.MenuText = OfferCancel();
            if (below_) Terminate(NotCleared("land"));
            LandingGate();
        } else if (In("Going Around")) {
            LandingGate();
        }
    }

    Station& S;
    PlayerRecord& P;
    bool occupied_ = false;
    bool low_ = false;
    bool below_ = false;
};

}  // namespace

bool ComputeRunwayOccupied(const Station& s, const PlayerRecord& pilot) {
    bool occupied = false;
    for (std::int32_t i = 0; i < s.PlayerCount(); ++i) {
        const PlayerRecord& other = s.Players[i];
        if (other.Name == pilot.Name) continue;
        std::int16_t b = BearingTo(s, s.RunwayLatitude, s.RunwayLongitude, other.Latitude, other.Longitude);
        const std::int16_t lo = NormalizeHeading(s.SectorNorth - 30);
        const std::int16_t hi = NormalizeHeading(s.SectorNorth + 30);
        if (!HeadingInSector(b, lo, hi)) continue;
        if (std::int64_t{other.Altitude} >= std::int64_t{s.RunwayElevation} + 300) continue;
        const std::int16_t d =
            DistanceFeet(s.RunwayLatitude, s.RunwayLongitude, other.Latitude, other.Longitude);
        if (d >= s.RunwayLength) continue;
        const GeoPoint p = ProjectFeet(s.RunwayLatitude, s.RunwayLongitude, s.SectorNorth, d);
        const double halfWidth = std::nearbyint(s.RunwayWidth / 2.0);
        if (DistanceFeet(p.Latitude, p.Longitude, other.Latitude, other.Longitude) < halfWidth)
            occupied = true;
    }
    return occupied;
}

void TowerControl(Station& station, PlayerRecord& pilot) { Call(station, pilot).Run(); }

}  // namespace corvenna::plain
