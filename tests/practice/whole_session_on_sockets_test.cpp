#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "practice/everybody_completes.h"
#include "practice/flown_transcript.h"
#include "practice/socket_carrier.h"
#include "practice/traffic_session.h"

// The whole service once more, with everybody on sockets of his own.
namespace corvenna {
namespace {

using namespace std::chrono_literals;

#ifdef CORVENNA_SHORT_RUNS
constexpr auto LongRun = 30min;
constexpr int Flights = 1;
#else
constexpr auto LongRun = 60min;
constexpr int Flights = 2;
#endif

TEST(WholeSessionOnSockets, AVisualCircuitIsHeardWordByWord) {
    ExpectTranscript("KSEA", 0, "visual_circuit.txt", std::make_unique<SocketCarrier>());
}

TEST(WholeSessionOnSockets, AnInstrumentFlightOutAndBackIsHeardWordByWord) {
    ExpectTranscript("KSEA", 1, "instrument_round_trip.txt", std::make_unique<SocketCarrier>());
}

class EverybodyCompletesOnSockets : public testing::TestWithParam<Practice> {};

TEST_P(EverybodyCompletesOnSockets, HisPlan) {
    ExpectEverybodyCompletes(GetParam(), std::make_unique<SocketCarrier>());
}

std::vector<Practice> AtEachAirport(int pilots) {
    std::vector<Practice> practices;
    for (const char* code : PracticeAirports) practices.push_back({code, pilots});
    return practices;
}

INSTANTIATE_TEST_SUITE_P(OnePilot, EverybodyCompletesOnSockets, testing::ValuesIn(AtEachAirport(1)),
                         PracticeName);
#ifndef CORVENNA_SHORT_RUNS
INSTANTIATE_TEST_SUITE_P(SixPilots, EverybodyCompletesOnSockets, testing::ValuesIn(AtEachAirport(6)),
                         PracticeName);
INSTANTIATE_TEST_SUITE_P(TwelvePilots, EverybodyCompletesOnSockets,
                         testing::Values(Practice{"LOWI", 12}, Practice{"KFHR", 12}), PracticeName);
#endif

// Two minutes each: ./test crowds runs them.
INSTANTIATE_TEST_SUITE_P(DISABLED_FortyPilots, EverybodyCompletesOnSockets,
                         testing::ValuesIn(AtEachAirport(40)), PracticeName);

class NobodyIsStuckOnSockets : public testing::TestWithParam<const char*> {};

TEST_P(NobodyIsStuckOnSockets, AfterAWhile) {
    TrafficSession session(GetParam(), {.Pilots = 6}, 250ms, std::make_unique<SocketCarrier>());
    session.RunFor(LongRun);
    for (const PilotTrouble& trouble : session.Log.Troubles(session.Session.Now)) {
        ADD_FAILURE() << trouble.Name << ": " << trouble.What;
    }
    EXPECT_GE(session.Completed, Flights);
    EXPECT_EQ(session.Lost, std::vector<std::string>());
}

INSTANTIATE_TEST_SUITE_P(WithAndWithoutATower, NobodyIsStuckOnSockets, testing::Values("KSEA", "KFHR"));

}  // namespace
}  // namespace corvenna
