#include <gmock/gmock.h>

#include <algorithm>

#include "practice/everybody_completes.h"
#include "practice/flown_transcript.h"
#include "practice/traffic_session.h"
#include "support/system_limits.h"

// The whole service at once, on a clock that runs as fast as it can: real pilots in a real session before a
// real station, from the world of the practice with its terrain.
namespace corvenna {
namespace {

using namespace std::chrono_literals;
using testing::IsEmpty;

#ifdef CORVENNA_SHORT_RUNS
constexpr auto LongRun = 2h;
constexpr auto UnrulyRun = 2h;
constexpr int Crowd = 12;
#else
constexpr auto LongRun = 24h;
constexpr auto UnrulyRun = 6h;
constexpr int Crowd = 40;
#endif

// ---- Everybody who follows his clearances completes his plan

class EverybodyCompletes : public testing::TestWithParam<Practice> {};

TEST_P(EverybodyCompletes, HisPlan) {
    ExpectEverybodyCompletes(GetParam(), std::make_unique<MemoryCarrier>());
}

std::vector<Practice> Practices() {
    std::vector<Practice> practices;
    for (const char* code : ControlledAirports) {
        for (const int plan : {0, 1, 2, 3, 4, 5, 6, 7}) practices.push_back({code, 1, plan});
    }
    for (const char* code : OtherAirports) {
        for (const int plan : {0, 1}) practices.push_back({code, 1, plan});
    }
    for (const char* code : PracticeAirports) {
        practices.push_back({code, 6, 0});
        practices.push_back({code, 6, 6});
        practices.push_back({code, Crowd, 0});
    }
    return practices;
}

INSTANTIATE_TEST_SUITE_P(AtEachAirport, EverybodyCompletes, testing::ValuesIn(Practices()), PracticeName);

// ---- Word by word

TEST(WholeSession, AVisualCircuitIsHeardWordByWord) { ExpectTranscript("KSEA", 0, "visual_circuit.txt"); }

TEST(WholeSession, AnInstrumentFlightOutAndBackIsHeardWordByWord) {
    ExpectTranscript("KSEA", 1, "instrument_round_trip.txt");
}

TEST(WholeSession, TheSamePilotsAreHeardTheSameTwice) {
    EXPECT_EQ(TranscriptOf("LOWI", 4), TranscriptOf("LOWI", 4));
}

// ---- With unruly pilots among them

/// Whether the pilot of a callsign is one of the bad ones.
bool IsUnruly(const std::string& callsign) {
    return Unruliness::IsOf((std::stoi(callsign.substr(1)) - 101) / 13);
}

TEST(WholeSession, WithUnrulyPilotsNobodyElsesFlightIsLost) {
    for (const char* code : {"KSEA", "SCGE", "KFHR"}) {
        SCOPED_TRACE(code);
        TrafficSession session(code, {.Pilots = 6, .Seed = 3, .Unruly = true}, 1s);
        session.RunFor(UnrulyRun);
        std::erase_if(session.Lost, IsUnruly);
        EXPECT_THAT(session.Lost, IsEmpty());
        EXPECT_GT(session.Completed, 5);
    }
}

class NobodyIsStuck : public testing::TestWithParam<const char*> {};

TEST_P(NobodyIsStuck, AfterAnHour) {
    TrafficSession session(GetParam(), {.Pilots = 6});
    session.RunFor(1h);
    for (const PilotTrouble& trouble : session.Log.Troubles(session.Session.Now)) {
        ADD_FAILURE() << trouble.Name << ": " << trouble.What;
    }
    EXPECT_GT(session.Completed, 1);
}

INSTANTIATE_TEST_SUITE_P(AtEachAirport, NobodyIsStuck, testing::ValuesIn(PracticeAirports));

TEST(WholeSession, OverADayTheStationDoesNotGrow) {
    TrafficSession session("KSEA", {.Pilots = 6, .Seed = 1, .Unruly = true}, 1s);
    const auto inUse = [] { return static_cast<double>(HeapBytesInUse()); };
    session.RunFor(1h);
    const double before = inUse();
    for (auto hour = 1h; hour < LongRun; hour += 1h) {
        session.RunFor(1h);
        const Station& station = session.Session.TheStation;
        EXPECT_LE(station.Players.Valid().size(), 8u);
        EXPECT_LE(station.TaxiRoutes.Valid().size(), 8u);
        EXPECT_LE(station.TakeoffQueue.Valid().size(), 12u);
        EXPECT_LE(station.LandingQueue.Valid().size(), 12u);
        EXPECT_LE(station.AirportParkingSpots.size(), 75u);
        for (const PlayerRecord& record : station.Players.Valid()) {
            EXPECT_LT(record.MenuText.size() + record.AdvisedTraffic.size(), 2000u);
        }
    }
    EXPECT_LT(inUse() - before, 1 << 20);
    EXPECT_GT(session.Completed, 3 * LongRun / 1h);
}

}  // namespace
}  // namespace corvenna
