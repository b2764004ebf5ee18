#include "airspace/artcc_control.h"

#include "airspace/artcc_service.h"
#include "airspace/radar_phases.h"
#include "airspace/traffic.h"
#include "airspace/vectors.h"

namespace corvenna {

void ArtccControl(Station& station, PlayerRecord& pilot) {
    if (station.DistanceToAirport >= 200) {
        if (pilot.FlightRules == Vfr || pilot.FlightRules == Ifr) ResetPilot(station, pilot);
        return;
    }
    ScanTraffic(station, pilot, ServiceWord::Artcc);
    SteerToTarget(station, pilot, ServiceWord::Artcc);
    if (pilot.FlightRules == Vfr) {
        RunVfrArtcc(station, pilot);
    } else if (pilot.FlightRules == Ifr) {
        RunIfrArtcc(station, pilot);
    }
}

}  // namespace corvenna
