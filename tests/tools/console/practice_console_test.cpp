#include "tools/console/practice_console.h"

#include <gmock/gmock.h>

#include <algorithm>

#include "tools/console/practice_field.h"

namespace corvenna {
namespace {

using namespace std::chrono_literals;
using testing::AllOf;
using testing::Contains;
using testing::Each;
using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

/// A practice on a clock of its own, with everything that it printed.
class PracticeConsoleTest : public testing::Test {
  protected:
    void Open(std::string_view code, int pilots, const std::string& controller = "") {
        Practice.emplace(PracticeField(code), PracticeParty{controller, "YOU1", pilots}, Printer);
    }

    void RunTo(std::chrono::milliseconds until) {
        for (; Now <= until; Now += 100ms) Practice->Step(Now);
    }

    std::vector<std::string> Lines() const { return LinesOf(Out); }

    const PlayerRecord* Record(std::string_view name) const {
        for (const PlayerRecord& record : Practice->TheStation().Players.Valid()) {
            if (record.Name == name) return &record;
        }
        return nullptr;
    }

    std::ostringstream Out;
    RadioPrinter Printer{Out, false};
    std::optional<PracticeConsole> Practice;
    std::chrono::milliseconds Now{0};
};

// ---- A whole minute

TEST_F(PracticeConsoleTest, AMinuteAtSeattleIsHeardFromWelcomeToFrequency) {
    Open("KSEA", 4);
    RunTo(60s);
    const auto lines = Lines();
    for (const char* callsign : {"YOU1", "N101CV", "N114CV", "N127CV", "N140CV"}) {
        EXPECT_THAT(lines,
                    Contains(HasSubstr(std::string("---    ") + callsign + ". Welcome to Corvenna v1.3")));
    }
    EXPECT_THAT(lines, Contains(EndsWith("N101CV: KSEA,1")));
    EXPECT_THAT(lines, Contains(EndsWith("N114CV: KSEA,2")));
    EXPECT_EQ(Record("N101CV")->FlightRules, Vfr);
    EXPECT_EQ(Record("N114CV")->FlightRules, Ifr);
    const std::string menu =
        "N101CV. Choose one of the following options: 1-Close ATC Services 2-Tune Seattle-Tacoma Intl Ground "
        "Frequency";
    EXPECT_EQ(
        std::count_if(lines.begin(), lines.end(), [&](const auto& line) { return line.ends_with(menu); }),
        2);  // once more because he asked for it
    EXPECT_THAT(lines, Contains(EndsWith("---    N101CV: R")));
    EXPECT_THAT(lines,
                Contains(HasSubstr("121.7  N101CV. Choose one of the following options for the Ground")));
    EXPECT_THAT(lines, Contains(HasSubstr("2-Tune Approach Frequency 3-Tune Seattle-Tacoma Intl Tower")));
    EXPECT_THAT(lines,
                Contains(HasSubstr("119.9  N127CV. Choose one of the following options for the Tower")));
    EXPECT_EQ(Practice->PilotsServed(), 4u);  // you have not answered
}

TEST_F(PracticeConsoleTest, AMinuteWithoutATowerIsHeardAsAnnouncements) {
    Open("KFHR", 2);
    RunTo(60s);
    EXPECT_THAT(Lines(), Contains(HasSubstr("N101CV. Choose one of the following options for the Advisory "
                                            "frequency (CTAF - 128.25): 1-Announce Taxi to Runway")));
    EXPECT_THAT(Lines(),
                Contains(HasSubstr("Traffic, N114CV, taxiing to runway 16 at Friday Harbor airport.")));
    EXPECT_EQ(Record("N101CV")->FlightRules, Vfr);
    EXPECT_EQ(Record("N114CV")->FlightRules, Ifr);
}

TEST_F(PracticeConsoleTest, EveryPracticeAirportLastsTenMinutes) {
    for (const char* code : {"KSEA", "LOWI", "KBFI", "SCGE", "KFHR", "KBID", "NZWN", "S31"}) {
        SCOPED_TRACE(code);
        Now = 0ms;
        Practice.reset();
        Open(code, 6);
        RunTo(10min);
        EXPECT_FALSE(Practice->Over());
        EXPECT_GE(Practice->PilotsServed(), 6u);
    }
}

TEST_F(PracticeConsoleTest, TheSameMinuteIsHeardTheSameTwice) {
    Open("KSEA", 4);
    RunTo(60s);
    const std::string first = Out.str();
    Practice.reset();
    Out.str("");
    Now = 0ms;
    Open("KSEA", 4);
    RunTo(60s);
    EXPECT_EQ(Out.str(), first);
}

TEST_F(PracticeConsoleTest, PilotsMove) {
    Open("KSEA", 3);
    RunTo(5s);
    ASSERT_NE(Record("N101CV"), nullptr);
    const double parked = Record("N101CV")->Latitude;
    RunTo(120s);
    EXPECT_NE(Record("N101CV")->Latitude, parked);
}

TEST_F(PracticeConsoleTest, PilotsLeaveAndOthersFollow) {
    Open("KSEA", 3);
    RunTo(20min);
    EXPECT_EQ(Record("N127CV"), nullptr);
    EXPECT_GT(Practice->PilotsServed(), 3u);
}

// ---- Whole flights

/// Which texts a pilot heard and typed, one after the other, without times and frequencies.
std::vector<std::string> RadioOf(std::string_view name, const std::vector<std::string>& lines) {
    std::vector<std::string> radio;
    for (const auto& line : lines) {
        const auto at = line.find(name);
        if (at != std::string::npos) radio.push_back(line.substr(at));
    }
    return radio;
}

/// Whether texts with these words come in this order.
bool ComeInOrder(const std::vector<std::string>& lines, std::initializer_list<std::string_view> words) {
    auto line = lines.begin();
    for (const auto word : words) {
        line = std::find_if(line, lines.end(),
                            [&](const auto& text) { return text.find(word) != std::string::npos; });
        if (line == lines.end()) {
            ADD_FAILURE() << "nothing said: " << word;
            return false;
        }
        ++line;
    }
    return true;
}

TEST_F(PracticeConsoleTest, AVisualCircuitLeadsFromRampToRamp) {
    Open("KSEA", 1);
    RunTo(30min);
    EXPECT_TRUE(ComeInOrder(RadioOf("N101CV", Lines()),
                            {"1-Request Taxi to Runway", "Taxi to and hold short runway 16L using taxiway",
                             "Tune Seattle-Tacoma Intl Tower", "Cleared for takeoff", "Enter left downwind",
                             "You are cleared to land on runway 16L. Number 1", "Exit runway when able",
                             "Contact Ground", "Taxi to GATE", "Report us when you are parked", "Welcome"}));
    EXPECT_EQ(Record("N101CV"), nullptr);
}

TEST_F(PracticeConsoleTest, AnInstrumentFlightLeadsFromRampToRamp) {
    Open("KSEA", 2);
    RunTo(70min);
    EXPECT_TRUE(ComeInOrder(
        RadioOf("N114CV", Lines()),
        {"1-Request Taxi IFR", "Taxi to and hold short runway 16L", "Cleared for takeoff",
         "Contact Departure", "Contact ARTCC", "assume own navigation", "What is your destination airport",
         "expect vectors", "Turn ", "Contact approach frequency", "Cleared for the ILS runway 16L approach",
         "You are cleared to land", "Exit runway when able", "Contact Ground", "Taxi to GATE",
         "Report us when you are parked", "Welcome"}));
    EXPECT_EQ(Record("N114CV"), nullptr);
}

TEST_F(PracticeConsoleTest, WithoutATowerACircuitIsAnnouncedStepByStep) {
    Open("KFHR", 1);
    RunTo(20min);
    EXPECT_TRUE(ComeInOrder(RadioOf("N101CV", Lines()),
                            {"taxiing to runway 16", "takingoff, runway 16", " miles, ", "landing, runway 16",
                             "taxiing to gate or parking", "Welcome"}));
}

// ---- Who is there

TEST_F(PracticeConsoleTest, TheControllerIsInTheSessionAndMonitors) {
    Open("KSEA", 0);
    EXPECT_FALSE(Practice->Over());
    EXPECT_GT(Practice->TheStation().ControllerId, 0);
    EXPECT_TRUE(Practice->TheStation().SessionOpen);
    EXPECT_EQ(Practice->TheStation().SessionMaxPlayers, 3);
    EXPECT_THAT(Lines().at(0), HasSubstr("Seattle-Tacoma Intl (KSEA), runway 16L: monitoring traffic."));
}

TEST_F(PracticeConsoleTest, TheHostIsKnownAsAnObserverAfterTheFirstRefresh) {
    Open("KSEA", 0);
    RunTo(29900ms);
    EXPECT_EQ(Record(PracticeHostName), nullptr);
    RunTo(30500ms);
    ASSERT_NE(Record(PracticeHostName), nullptr);
    EXPECT_EQ(Record(PracticeHostName)->Role, Role::Observer);
}

TEST_F(PracticeConsoleTest, TheRefreshAsksEverybodyForHisAircraft) {
    Open("KSEA", 1);
    RunTo(31s);
    EXPECT_EQ(Record("YOU1")->AircraftName, "Cessna Skylane 182S");
}

TEST_F(PracticeConsoleTest, YouStandAtAParkingSpot) {
    Open("KSEA", 0);
    RunTo(3s);
    const Station& station = Practice->TheStation();
    EXPECT_NEAR(Record("YOU1")->Latitude, station.AirportParkingSpots[0].Latitude, 0.00005);
    EXPECT_NEAR(Record("YOU1")->Longitude, station.AirportParkingSpots[0].Longitude, 0.00005);
    EXPECT_NEAR(Record("YOU1")->Altitude, station.RunwayElevation, 2);
}

// ---- At the keyboard

TEST_F(PracticeConsoleTest, WhatIsTypedIsSaid) {
    Open("KSEA", 0);
    RunTo(1500ms);
    Practice->Type("KSEA,1");
    RunTo(3s);
    EXPECT_THAT(Lines(), Contains(EndsWith("---    YOU1: KSEA,1")));
    EXPECT_THAT(Lines(), Contains(HasSubstr("YOU1. What type of flight you want to fly?")));
}

TEST_F(PracticeConsoleTest, LinesTypedAheadWaitForTheWelcomeAndForEachOther) {
    Open("KSEA", 0);
    for (const char* line : {"KSEA,1", "KSEA,2", "2"}) Practice->Type(line);
    RunTo(10s);
    EXPECT_EQ(Record("YOU1")->FlightRules, Ifr);
    EXPECT_EQ(Record("YOU1")->TunedFrequency, "121.7");
}

TEST_F(PracticeConsoleTest, MoreThanAHundredLinesTypedAheadAreDropped) {
    Open("KSEA", 0);
    for (int i = 0; i < 150; ++i) Practice->Type("KSEA,8");
    RunTo(400s);
    const auto lines = Lines();
    EXPECT_EQ(
        std::count_if(lines.begin(), lines.end(), [](const auto& l) { return l.ends_with("YOU1: KSEA,8"); }),
        100);
}

TEST_F(PracticeConsoleTest, YouHearThePartyLineUntilYouTune) {
    Open("KSEA", 2);
    for (const char* line : {"KSEA,1", "KSEA,1", "2"}) Practice->Type(line);
    RunTo(60s);
    EXPECT_THAT(Lines(), Contains(AllOf(StartsWith("00:01 * ---"), HasSubstr("N101CV. Welcome"))));
    EXPECT_THAT(Lines(), Contains(AllOf(HasSubstr(" * 121.7"), HasSubstr("N114CV. "))));
    std::vector<std::string> partyLineLater;
    for (const auto& line : Lines()) {
        if (line > "00:20" && line.find(" * ---") != std::string::npos) partyLineLater.push_back(line);
    }
    EXPECT_THAT(partyLineLater, Each(Not(HasSubstr("N1"))));
}

TEST_F(PracticeConsoleTest, TypedUtf8IsSentInTheCodePage) {
    Open("KSEA", 0);
    RunTo(1500ms);
    Practice->Type(
        "Gr\xC3\xBC\xC3\x9F"
        "e");
    RunTo(2s);
    EXPECT_THAT(Out.str(), HasSubstr("YOU1: Gr\xC3\xBC\xC3\x9F"
                                     "e"));
}

// ---- The end

TEST_F(PracticeConsoleTest, LeavingPrintsTheTotalsOnce) {
    Open("KSEA", 1);
    RunTo(10s);
    const auto texts = Practice->TextsSent();
    EXPECT_GT(texts, 0u);
    Practice->Leave();
    Practice->Leave();
    EXPECT_TRUE(Practice->Over());
    const auto lines = Lines();
    EXPECT_THAT(
        lines.back(),
        EndsWith("The session is left. Pilots served: 1, texts sent: " + std::to_string(texts) + "."));
    EXPECT_EQ(std::count_if(lines.begin(), lines.end(),
                            [](const auto& l) { return l.find("The session is left") != std::string::npos; }),
              1);
}

TEST_F(PracticeConsoleTest, AnErrorThatEscapesATimerLeavesTheSessionFirst) {
    Open("KSEA", 1);
    RunTo(900ms);
    Out.setstate(std::ios::badbit);  // the welcome can't be printed
    try {
        RunTo(2s);
        FAIL();
    } catch (const HandlerError& error) {
        EXPECT_STREQ(error.what(), "the tick failed: standard output can't be written");
    }
    EXPECT_TRUE(Practice->Over());
}

TEST_F(PracticeConsoleTest, NobodyComesUnderTheControllersName) {
    const PracticeParty party{"N101CV", "N101CV", 2};
    EXPECT_THROW(Practice.emplace(PracticeField("KSEA"), party, Printer), SessionError);
}

}  // namespace
}  // namespace corvenna
