#pragma once

namespace corvenna {

/// How an aircraft flies. Speeds in knots, rates in feet a minute.
struct Performance {
    double RotateKnots = 60;
    double ClimbKnots = 80;
    double CruiseKnots = 120;
    double PatternKnots = 90;  ///< in the circuit and under vectors near the airport
    double FinalKnots = 70;
    double ClimbRate = 800;
    double DescentRate = 800;
};

enum class FlightKind {
    VisualCircuit,        ///< from the ramp, once around, back to the ramp
    VisualRoundTrip,      ///< from the ramp, out to TurnBackMiles and back to the ramp
    VisualArrival,        ///< from the air to the ramp
    InstrumentRoundTrip,  ///< from the ramp, out to TurnBackMiles and back to the ramp
    InstrumentArrival,    ///< from the air to the ramp
    InstrumentDeparture,  ///< from the ramp and out of the controller's reach
    SelfAnnounced,        ///< a circuit where nobody controls
};

struct FlightPlan {
    FlightKind Kind = FlightKind::VisualCircuit;
    bool Instrument = false;  ///< what he asks for; SelfAnnounced may be either
    Performance Aircraft;
    double OutboundCourse = 0;  ///< degrees true, once on his own
    double CruiseFeet = 5000;   ///< above sea level
    double TurnBackMiles = 40;  ///< of a round trip, from the airport
    bool MissesFirstApproach = false;

    bool FromRamp() const {
        return Kind != FlightKind::VisualArrival && Kind != FlightKind::InstrumentArrival;
    }
    bool StaysInCircuit() const {
        return Kind == FlightKind::VisualCircuit || Kind == FlightKind::SelfAnnounced;
    }
    bool TurnsBack() const {
        return Kind == FlightKind::VisualRoundTrip || Kind == FlightKind::InstrumentRoundTrip;
    }
};

}  // namespace corvenna
