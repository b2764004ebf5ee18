#include "link/station_window.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <string>
#include <vector>

#include "support/plain_lists.h"
#include "support/scripted_session.h"
#include "support/session_field.h"

namespace corvenna {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using Lamp = StationConsole::Lamp;

class Window : public testing::Test {
  protected:
    const StationConsole& Console() const { return field.Window.Console(); }
    auto TimesClosed() const { return std::count(field.Seen.begin(), field.Seen.end(), "closed"); }

    SessionField field;
    Station& s = field.S;
};

// ---- Load

TEST_F(Window, AfterItsLoadMonitoringIsOffAndConnectionAndRefreshRun) {
    EXPECT_EQ(Console().Label1, "NOT MONITORING TRAFFIC");
    EXPECT_EQ(Console().Label1Colour, 32768);
    EXPECT_EQ(Console().Shape2, Lamp::CrossHatched);
    EXPECT_EQ(Console().Shape3, Lamp::Solid);
    EXPECT_FALSE(Console().Command1Enabled);
    EXPECT_TRUE(Console().Command2Enabled);
    EXPECT_TRUE(Console().Command3Enabled);
    EXPECT_FALSE(Console().AtcTimer);
    EXPECT_TRUE(Console().ConnectionTimer);
    EXPECT_TRUE(Console().RefreshPlayers);
    EXPECT_TRUE(field.Window.Loaded());
}

TEST_F(Window, TheLampsFillStylesAre0And7) {
    EXPECT_EQ(static_cast<int>(Lamp::Solid), 0);
    EXPECT_EQ(static_cast<int>(Lamp::CrossHatched), 7);
    EXPECT_EQ(StationConsole::DarkRed, 128);
    EXPECT_EQ(StationConsole::Green, 32768);
}

TEST_F(Window, ItsLoadStartsTheSessionAfresh) {
    s.SessionOpen = false;
    s.SessionHost = true;
    s.RunwayHeading = 20;
    field.Joins(2, "N1", MessageId::WhoAreYou);  // answered, and no record
    s.Players.Add(PlayerRecord{});
    s.TakeoffQueue.Add("N1");
    s.LandingQueue.Add("N1");
    s.TaxiRoutes.Add({});
    field.Window.Load();
    EXPECT_TRUE(s.SessionOpen);
    EXPECT_FALSE(s.SessionHost);
    EXPECT_EQ(s.SectorNorth, 20);
    EXPECT_EQ(s.SectorSouth, 200);
    EXPECT_EQ(AllOf(s.Players), std::vector<PlayerRecord>(1));
    EXPECT_EQ(AllOf(s.TakeoffQueue), std::vector<std::string>(1));
    EXPECT_EQ(AllOf(s.LandingQueue), std::vector<std::string>(1));
    EXPECT_EQ(AllOf(s.TaxiRoutes), std::vector<TaxiRouteRecord>(1));
}

TEST_F(Window, ItsLoadBlanksTheFixesOfTheStationBefore) {
    constexpr GeoPoint Station::*fixes[] = {&Station::LeftDownwindFix, &Station::RightDownwindFix,
                                            &Station::LeftBaseFix, &Station::RightBaseFix,
                                            &Station::FinalFix};
    for (auto fix : fixes) s.*fix = {"Fix", "Kind", 1, 2, 3};
    field.Window.Load();
    for (auto fix : fixes) EXPECT_EQ(s.*fix, GeoPoint{});
}

TEST_F(Window, ItsLoadAfterMonitoringIsNotMonitoring) {
    field.Window.StartMonitoring();
    field.Window.Load();
    EXPECT_FALSE(Console().AtcTimer);
    EXPECT_EQ(Console().Label1, "NOT MONITORING TRAFFIC");
}

// ---- Start and stop

TEST_F(Window, StartMonitoringLightsTheRedLampAndStartsTheTick) {
    field.Window.StartMonitoring();
    EXPECT_EQ(Console().Label1, "MONITORING TRAFFIC");
    EXPECT_EQ(Console().Label1Colour, 128);
    EXPECT_EQ(Console().Shape2, Lamp::Solid);
    EXPECT_EQ(Console().Shape3, Lamp::CrossHatched);
    EXPECT_TRUE(Console().AtcTimer);
    EXPECT_TRUE(Console().Command1Enabled);
    EXPECT_FALSE(Console().Command2Enabled);
    EXPECT_TRUE(Console().Command3Enabled);
    EXPECT_TRUE(Console().ConnectionTimer);
    EXPECT_TRUE(Console().RefreshPlayers);
    EXPECT_THAT(field.Seen, ElementsAre("repaint MONITORING TRAFFIC"));
}

TEST_F(Window, StopMonitoringLightsTheGreenLampAndStopsTheTickAlone) {
    field.Window.StartMonitoring();
    field.Window.StopMonitoring();
    EXPECT_EQ(Console().Label1, "NOT MONITORING TRAFFIC");
    EXPECT_EQ(Console().Label1Colour, 32768);
    EXPECT_EQ(Console().Shape2, Lamp::CrossHatched);
    EXPECT_EQ(Console().Shape3, Lamp::Solid);
    EXPECT_FALSE(Console().AtcTimer);
    EXPECT_FALSE(Console().Command1Enabled);
    EXPECT_TRUE(Console().Command2Enabled);
    EXPECT_TRUE(Console().Command3Enabled);
    EXPECT_TRUE(Console().ConnectionTimer);
    EXPECT_TRUE(Console().RefreshPlayers);
}

TEST_F(Window, AfterStopAndStartEveryPilotKeepsHisStateAndADigitTypedInBetweenIsActedOnAtTheFirstTick) {
    PlayerRecord& pilot = field.IsServed(2, "N1");
    field.FliesTo(2, 47, -122, 400, 0);
    EXPECT_EQ(field.Pump(), std::nullopt);
    field.Window.StartMonitoring();
    field.Tick();
    pilot.Phase = "Departure";
    const std::string menu = pilot.MenuText;
    field.Window.StopMonitoring();
    field.Types(2, "2");
    EXPECT_EQ(field.Pump(), std::nullopt);
    EXPECT_EQ(pilot.MenuText, menu);
    EXPECT_EQ(pilot.Phase, "Departure");
    EXPECT_EQ(pilot.Choice, 2);
    field.TakeSent();
    field.Window.StartMonitoring();
    field.Tick();
    EXPECT_EQ(pilot.TunedFrequency, s.GroundFrequency);
    EXPECT_EQ(pilot.Phase, "Departure");
    EXPECT_THAT(field.TakeSent(), ElementsAre(SessionField::To(
                                      2, WriteChat("N1. Choose one of the following options for the Ground "
                                                   "frequency: 1-Close ATC Services"))));
}

TEST_F(Window, WhileMonitoringIsOffPositionsAndListsAreKeptButNothingIsSaid) {
    field.Joins(2, "N1");
    field.FliesTo(2, 48, -122, 0, 0);
    EXPECT_EQ(field.Pump(), std::nullopt);
    EXPECT_EQ(field.Pilot("N1").Latitude, 48);
    EXPECT_EQ(field.Pilot("N1").MenuText, "");
    EXPECT_THAT(field.TakeSent(), IsEmpty());
}

// ---- The timers' bodies

TEST_F(Window, ItsTickSendsEachTextToTheWholeAudienceAndTellsItOnce) {
    std::vector<std::string> told;
    StationWindow window(s, field.Objects, field,
                         {{}, {}, [&](auto frequency, auto text) {
                              told.push_back(std::string(frequency) + "|" + std::string(text));
                          }});
    field.Joins(2, "N1");
    field.Joins(3, "N2", MessageId::AdmitObserver);
    window.RunAtcTimer();
    const std::string welcome =
        "N1. Welcome to Corvenna v1.3 (by Dravik). Want to use our ATC services at Test Field?: "
        "1-Use ATC services";
    EXPECT_THAT(field.TakeSent(), ElementsAre(SessionField::To(2, WriteChat(welcome)),
                                              SessionField::To(3, WriteChat(welcome))));
    EXPECT_THAT(told, ElementsAre("|" + welcome));
}

TEST_F(Window, WithoutASessionItsTickAndRefreshThrow) {
    field.Objects.Dp.reset();
    EXPECT_THROW(field.Window.RunAtcTimer(), SessionError);
    EXPECT_THROW(field.Window.RunRefreshPlayers(), SessionError);
    EXPECT_EQ(field.Window.RunConnectionTimer(), "there is no session");
}

// ---- Close

/// Everything of a station filled.
void FillStation(Station& s) {
    s.CtafFrequency = "122.8";
    s.AirportTaxiPoints.resize(4);
    s.AirportParkingSpots.resize(4);
    s.AirportTaxiPaths.resize(4);
    s.Mountains.resize(4);
    s.MountainCount = 3;
    s.HighestTerrain = 16000;
    s.MagVarGrid[5] = 7;
    s.SessionGuid = "guid";
    s.SessionHost = true;
    s.TakeoffQueue.Add("N1");
    s.LandingQueue.Add("N1");
    s.TaxiRoutes.Add({});
}

TEST_F(Window, ClosingShowsPleaseWaitAtOnceAndStopsAllTimers) {
    field.Window.StartMonitoring();
    field.Seen.clear();
    field.Window.Close();
    EXPECT_THAT(field.Seen, ElementsAre("repaint PLEASE WAIT...", "repaint PLEASE WAIT...", "closed"));
    EXPECT_EQ(Console().Label1, "PLEASE WAIT...");
    EXPECT_EQ(Console().Label1Colour, 32768);
    EXPECT_EQ(Console().Shape2, Lamp::CrossHatched);
    EXPECT_EQ(Console().Shape3, Lamp::Solid);
    EXPECT_FALSE(Console().AtcTimer);
    EXPECT_FALSE(Console().ConnectionTimer);
    EXPECT_FALSE(Console().RefreshPlayers);
    EXPECT_FALSE(field.Window.Loaded());
}

TEST_F(Window, ClosingEmptiesTheStation) {
    field.Joins(2, "N1");
    FillStation(s);
    field.Window.Close();
    for (auto text : {&Station::AirportName, &Station::AirportCode, &Station::GroundFrequency,
                      &Station::TowerFrequency, &Station::ApproachFrequency, &Station::ArtccFrequency,
                      &Station::CtafFrequency, &Station::ActiveRunway}) {
        EXPECT_EQ(s.*text, "");
    }
    EXPECT_EQ(s.RunwayLatitude, 0);
    EXPECT_EQ(s.RunwayLongitude, 0);
    EXPECT_EQ(s.RunwayElevation, 0);
    EXPECT_EQ(s.RunwayLength, 0);
    EXPECT_EQ(s.RunwayHeading, 0);
    EXPECT_EQ(s.RunwayHasIls, 0);
    EXPECT_EQ(s.MountainCount, 0);
    EXPECT_EQ(s.AirportTaxiPoints, std::vector<TaxiPoint>(1));
    EXPECT_EQ(s.AirportParkingSpots, std::vector<ParkingSpot>(1));
    EXPECT_EQ(s.AirportTaxiPaths, std::vector<TaxiPath>(1));
    EXPECT_EQ(s.Mountains, std::vector<GeoPoint>(1));
    EXPECT_EQ(AllOf(s.Players), std::vector<PlayerRecord>(1));
    EXPECT_EQ(AllOf(s.TakeoffQueue), std::vector<std::string>(1));
    EXPECT_EQ(AllOf(s.LandingQueue), std::vector<std::string>(1));
    EXPECT_EQ(AllOf(s.TaxiRoutes), std::vector<TaxiRouteRecord>(1));
}

TEST_F(Window, ClosingKeepsTheAirportsPlaceTheRunwaysWidthAndTheTerrain) {
    FillStation(s);
    field.Window.Close();
    EXPECT_EQ(s.AirportLatitude, 47);
    EXPECT_EQ(s.AirportLongitude, -122);
    EXPECT_EQ(s.RunwayWidth, 150);
    EXPECT_EQ(s.HighestTerrain, 16000);
    EXPECT_EQ(s.MagVarGrid[5], 7);
    EXPECT_EQ(s.SessionGuid, "guid");
    EXPECT_EQ(s.SessionMaxPlayers, 16);
    EXPECT_EQ(s.ControllerId, 1);
    EXPECT_TRUE(s.SessionHost);
}

TEST_F(Window, SessionOpenStaysTrueAfterTheCloseAction) {
    field.Window.Close();
    EXPECT_TRUE(s.SessionOpen);
}

TEST_F(Window, SessionOpenStaysTrueAfterTheCloseBox) {
    field.Window.Unload();
    EXPECT_TRUE(s.SessionOpen);
}

TEST_F(Window, SessionOpenIsFalseAfterARemovalAndTrueAgainAfterTheNextLoad) {
    field.Joins(2, "N1");
    field.Sends(2, WriteEmpty(MessageId::Removed));
    EXPECT_EQ(field.Pump(), std::nullopt);
    EXPECT_FALSE(s.SessionOpen);
    field.Window.Load();
    EXPECT_TRUE(s.SessionOpen);
}

TEST_F(Window, ClosingLeavesTheSession) {
    field.Window.Close();
    EXPECT_EQ(field.Objects.Dp, nullptr);
    EXPECT_EQ(field.Room->Record().CurrentPlayers, 0);
}

TEST_F(Window, TheCloseBoxWhileMonitoringIsTheSameAsTheCloseButton) {
    field.Joins(2, "N1");
    FillStation(s);
    field.Window.StartMonitoring();
    field.Seen.clear();
    field.Window.Unload();
    EXPECT_THAT(field.Seen, ElementsAre("repaint PLEASE WAIT...", "closed"));
    EXPECT_FALSE(Console().AtcTimer);
    EXPECT_FALSE(Console().ConnectionTimer);
    EXPECT_FALSE(Console().RefreshPlayers);
    EXPECT_EQ(field.Objects.Dp, nullptr);
    EXPECT_EQ(s.PlayerCount(), 0);
    EXPECT_EQ(s.AirportName, "");
    EXPECT_FALSE(field.Window.Loaded());
}

TEST_F(Window, ClosingTwiceChangesNothingAndReportsNothing) {
    field.Window.Close();
    field.Seen.clear();
    field.Window.Close();
    field.Window.Unload();
    EXPECT_THAT(field.Seen, IsEmpty());
    EXPECT_FALSE(field.Window.Loaded());
}

TEST_F(Window, ACloseThatComesLateDoesNotEmptyTheAirportSelectedSince) {
    field.Window.Close();
    s.AirportName = "Another Field";
    field.Window.Unload();
    EXPECT_EQ(s.AirportName, "Another Field");
}

TEST_F(Window, AClosedEventThatClosesTheWindowAgainIsToldOnce) {
    int closed = 0;
    StationWindow* itself = nullptr;
    StationWindow window(s, field.Objects, field,
                         {{},
                          [&] {
                              ++closed;
                              itself->Unload();  // as a window's own close handler does
                          },
                          {}});
    itself = &window;
    window.Load();
    window.Close();
    EXPECT_EQ(closed, 1);
}

TEST_F(Window, AStationCanBeOpenedAgainAfterItsClosing) {
    field.Window.Close();
    CreateSessionObjects(field.Objects);
    field.Room = field.Network.AddRoom([] {
        SessionRecord record;
        record.MaxPlayers = 4;
        return record;
    }());
    field.Objects.Dp->Open(field.Room->Record(), OpenMode::Join);
    s.ControllerId = field.Objects.Dp->CreatePlayer("KTST_Controller", "Player");
    field.Window.Load();
    field.Joins(2, "N1");
    EXPECT_EQ(s.PlayerCount(), 1);
    field.Window.Close();
    EXPECT_EQ(TimesClosed(), 2);
}

// ---- Close, as the session layer sees it

class Leaving : public testing::Test, public OperatorDesk {
  protected:
    Leaving() : window(s, objects, *this) {
        objects.MakeRoot = [this] { return std::make_unique<ScriptedRoot>(script); };
        CreateSessionObjects(objects);
        s.ControllerId = 7;
        s.AirportName = "Test Field";
        window.Load();
        script.Calls.clear();
    }

    void ShowBox(BoxIcon, std::string_view text) override { ADD_FAILURE() << text; }

    SessionScript script;
    SessionObjects objects;
    Station s;
    StationWindow window;
};

TEST_F(Leaving, ThePlayerGoesThenTheSessionThenTheObjects) {
    window.Close();
    EXPECT_THAT(script.Calls, ElementsAre("DestroyPlayer 7", "Close", "released"));
    EXPECT_TRUE(objects.DpConnections.empty());
}

TEST_F(Leaving, TheCloseBoxLeavesInTheSameWay) {
    window.Unload();
    EXPECT_THAT(script.Calls, ElementsAre("DestroyPlayer 7", "Close", "released"));
}

TEST_F(Leaving, AnErrorSkipsTheReleaseAndTheClosingGoesOn) {
    script.Fails = "Close";
    window.Close();
    // The unload tries once more.
    EXPECT_THAT(script.Calls, ElementsAre("DestroyPlayer 7", "Close", "DestroyPlayer 7", "Close"));
    EXPECT_NE(objects.Dp, nullptr);
    EXPECT_EQ(s.AirportName, "");
    EXPECT_FALSE(window.Loaded());
}

TEST_F(Leaving, AnErrorOfTheFirstStepSkipsTheOthers) {
    script.Fails = "DestroyPlayer";
    window.Close();
    EXPECT_THAT(script.Calls, ElementsAre("DestroyPlayer 7", "DestroyPlayer 7"));
    EXPECT_EQ(s.AirportName, "");
}

TEST_F(Leaving, ASessionThatIsGoneAlreadyIsNoFailure) {
    ReleaseSessionObjects(objects);
    window.Close();
    EXPECT_EQ(s.AirportName, "");
    EXPECT_FALSE(window.Loaded());
}

}  // namespace
}  // namespace corvenna
