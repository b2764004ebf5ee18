#pragma once

#include <fmt/format.h>
#include <gtest/gtest.h>

#include <array>
#include <chrono>
#include <memory>
#include <span>
#include <string>
#include <utility>

#include "practice/flown_session.h"
#include "practice/flown_transcript.h"
#include "support/practice_station.h"

/// Everybody who follows his clearances completes his plan.
namespace corvenna {

inline constexpr std::array PracticeAirports{"KSEA", "KBFI", "LOWI", "NZWN", "SCGE", "KFHR", "KBID", "S31"};
inline constexpr auto ControlledAirports = std::span(PracticeAirports).first<5>();
inline constexpr auto OtherAirports = std::span(PracticeAirports).last<3>();

/// Pilots at a practice airport: so many of them, the first of this number.
struct Practice {
    std::string Code;
    int Pilots;
    int FirstNumber = 0;
};

/// What a list of tests calls a practice.
inline std::string PracticeName(const testing::TestParamInfo<Practice>& test) {
    return fmt::format("{}With{}From{}", test.param.Code, test.param.Pilots, test.param.FirstNumber);
}

/// What keeps a flight from having been flown as planned; empty when nothing does.
inline std::string Missing(const FlownSession::Flown& flown) {
    const auto& stages = flown.Stages;
    if (!flown.Completed()) return "is not over";
    if (flown.Plan.Kind == FlightKind::InstrumentDeparture) {
        return stages.contains(FlightStage::Outbound) ? "" : "never was on his way";
    }
    if (!stages.contains(FlightStage::RollingOut)) return "never landed";
    if (!stages.contains(FlightStage::TaxiingIn)) return "never taxied in";
    if (flown.Plan.FromRamp() && !stages.contains(FlightStage::TakingOff)) return "never took off";
    if (flown.Plan.TurnsBack() && !stages.contains(FlightStage::Outbound)) return "never was on his way";
    if (flown.Plan.MissesFirstApproach && !stages.contains(FlightStage::GoingAround)) {
        return "did not miss his approach";
    }
    return "";
}

inline void ExpectEverybodyCompletes(const Practice& practice, std::unique_ptr<SessionCarrier> carrier) {
    FlownSession session(PracticeStation(CORVENNA_TEST_DATA, practice.Code), practice.Pilots,
                         practice.FirstNumber, {}, std::move(carrier));
    session.Run(std::chrono::hours(12));
    for (const FlownSession::Flown& flown : session.Pilots) {
        EXPECT_EQ(Missing(flown), "")
            << flown.Pilot->Name() << " in stage " << static_cast<int>(flown.Last) << " at "
            << Clock(session.Session.Now) << ": " << flown.Pilot->StandingText();
    }
    EXPECT_EQ(session.Session.SpoiltTicks, 0);
}

}  // namespace corvenna
