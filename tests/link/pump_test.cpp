#include "link/pump.h"

#include <gmock/gmock.h>

#include <string>
#include <vector>

#include "support/session_field.h"

namespace corvenna {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

const std::string NowHosting =
    "information: The original host had left the session, Corvenna is now hosting the session.";
const std::string ConnectionLost =
    "information: The FS multiplayer connection was lost, Corvenna closes multiplayer session.";
const std::string RemovedByHost =
    "information: The host had removed you from the multiplayer session, Corvenna closes multiplayer "
    "session.";

class Pump : public testing::Test {
  protected:
    /// One pass that must not fail.
    void Run() { EXPECT_EQ(field.Pump(), std::nullopt); }
    /// One pass that must.
    void RunAndFail() { EXPECT_NE(field.Pump(), std::nullopt); }

    /// The station takes over as host.
    void BecomeHost() { field.S.SessionHost = true; }

    void ExpectAnswers(std::int32_t id, const DirectPlayMessage& answer) {
        EXPECT_THAT(field.TakeSent(), ElementsAre(SessionField::To(id, answer)));
    }

    SessionField field;
    Station& s = field.S;
};

TEST_F(Pump, OfAnEmptyQueueDoesNothing) {
    Run();
    EXPECT_THAT(field.TakeSent(), IsEmpty());
    EXPECT_EQ(s.PlayerCount(), 0);
}

TEST_F(Pump, FetchesAllThatWaits) {
    field.Enters(2, "N1");
    field.Enters(3, "N2");
    field.Sends(2, WriteAdmission(MessageId::AdmitPlayer, 2));
    field.Sends(3, WriteAdmission(MessageId::AdmitPlayer, 3));
    Run();
    EXPECT_EQ(s.PlayerCount(), 2);
    EXPECT_EQ(field.Waiting(), 0);
}

TEST_F(Pump, CountsTheQueueOnce) {
    field.Enters(2, "N1");
    for (int i = 0; i < 2; ++i) field.Sends(2, WriteEmpty(MessageId::WhoAreYou));
    // Each answer brings another question.
    const auto countSent = field.Room->OnSend;
    field.Room->OnSend = [&, countSent](auto from, auto to, auto bytes) {
        countSent(from, to, bytes);
        field.Sends(2, WriteEmpty(MessageId::WhoAreYou));
    };
    Run();
    EXPECT_EQ(field.TakeSent().size(), 2u);
    EXPECT_EQ(field.Waiting(), 2);
}

TEST_F(Pump, EveryOtherMessageIsIgnored) {
    field.Joins(2, "N1");
    const PlayerRecord before = field.Pilot("N1");
    for (std::int32_t id : {0, -1, 4096, 4101, 4102, 4104, 4105, 4109, 4111, 4113, 4115, 4119, 4122, 4130,
                            4132, 2147483647, -2147483647 - 1}) {
        field.Sends(2, WriteEmpty(id));
    }
    Run();
    EXPECT_EQ(field.Waiting(), 0);
    EXPECT_EQ(field.Pilot("N1"), before);
    EXPECT_THAT(field.TakeSent(), IsEmpty());
}

// ---- Admission

TEST_F(Pump, WhenNotHostANewcomerGetsNoAnswer) {
    field.Enters(2, "N1");
    field.Sends(2, WriteEmpty(MessageId::RequestJoinAsPlayer));
    field.Sends(2, WriteEmpty(MessageId::RequestJoinAsObserver));
    Run();
    EXPECT_THAT(field.TakeSent(), IsEmpty());
}

TEST_F(Pump, AsHostANewcomerIsAdmittedWithoutARecord) {
    BecomeHost();
    field.Enters(2, "N1");
    field.Sends(2, WriteEmpty(MessageId::RequestJoinAsPlayer));
    Run();
    ExpectAnswers(2, WriteAdmission(MessageId::AdmitPlayer, 2));
    EXPECT_EQ(s.PlayerCount(), 0);
}

TEST_F(Pump, AsHostAnObserverIsAdmittedAsOne) {
    BecomeHost();
    field.Enters(2, "N1");
    field.Sends(2, WriteEmpty(MessageId::RequestJoinAsObserver));
    Run();
    ExpectAnswers(2, WriteAdmission(MessageId::AdmitObserver, 2));
}

TEST_F(Pump, AsHostAKnownParticipantIsRefused) {
    BecomeHost();
    field.Joins(2, "N1");
    field.Sends(2, WriteEmpty(MessageId::RequestJoinAsPlayer));
    Run();
    ExpectAnswers(2, WriteEmpty(MessageId::RefusePlayer));
    field.Sends(2, WriteEmpty(MessageId::RequestJoinAsObserver));
    Run();
    ExpectAnswers(2, WriteEmpty(MessageId::RefuseObserver));
}

TEST_F(Pump, AtTheSessionsMaximumANewcomerIsAdmittedAndOneAboveItRefused) {
    BecomeHost();
    s.SessionMaxPlayers = 2;
    field.Enters(9, "Newcomer");
    field.Joins(2, "N2");
    for (int count = 1; count <= 3; ++count) {
        field.Sends(9, WriteEmpty(MessageId::RequestJoinAsPlayer));
        field.Sends(9, WriteEmpty(MessageId::RequestJoinAsObserver));
        Run();
        const auto answers = field.TakeSent();
        if (count <= 2) {
            EXPECT_THAT(answers,
                        ElementsAre(SessionField::To(9, WriteAdmission(MessageId::AdmitPlayer, 9)),
                                    SessionField::To(9, WriteAdmission(MessageId::AdmitObserver, 9))));
        } else {
            EXPECT_THAT(answers, ElementsAre(SessionField::To(9, WriteEmpty(MessageId::RefusePlayer)),
                                             SessionField::To(9, WriteEmpty(MessageId::RefuseObserver))));
        }
        if (count < 3) field.Joins(2 + count, "N" + std::to_string(2 + count));
    }
}

// ---- New records

TEST_F(Pump, AnIntroductionMakesARecord) {
    field.Joins(2, "N1");
    PlayerRecord expected;
    expected.Name = "N1";
    expected.Id = 2;
    expected.Role = "player";
    expected.AircraftName = "Unknown";
    ASSERT_EQ(s.PlayerCount(), 1);
    EXPECT_EQ(s.Players[0], expected);
    EXPECT_EQ(s.Players[1], PlayerRecord{});

    field.Joins(3, "N2", MessageId::AdmitObserver);
    expected.Name = "N2";
    expected.Id = 3;
    expected.Role = "observer";
    EXPECT_EQ(s.Players[1], expected);
}

TEST_F(Pump, TheSenderIsThePlayerWhateverTheIntroductionTells) {
    field.Enters(2, "N1");
    field.Sends(2, WriteAdmission(MessageId::AdmitPlayer, 77));
    Run();
    EXPECT_EQ(field.Pilot("N1").Id, 2);
}

TEST_F(Pump, AnIntroductionFromAKnownSenderChangesNothing) {
    field.Joins(2, "N1");
    field.FliesTo(2, 47.5, -122.25, 1000, 90);
    Run();
    field.Pilot("N1").Phase = "Approach";
    const PlayerRecord before = field.Pilot("N1");
    field.Sends(2, WriteAdmission(MessageId::AdmitPlayer, 2));
    field.Sends(2, WriteAdmission(MessageId::AdmitObserver, 2));
    Run();
    EXPECT_EQ(s.PlayerCount(), 1);
    EXPECT_EQ(s.Players[0], before);
}

TEST_F(Pump, WhenTheSessionIsNotOpenIntroductionsAreIgnored) {
    s.SessionOpen = false;
    field.Enters(2, "N1");
    field.Sends(2, WriteAdmission(MessageId::AdmitPlayer, 2));
    field.Sends(2, WriteAdmission(MessageId::AdmitObserver, 2));
    Run();
    EXPECT_EQ(s.PlayerCount(), 0);
}

TEST_F(Pump, AnIntroductionOverwritesWhatAPurgeLeftInTheSpareElement) {
    field.Joins(2, "N1");
    field.Joins(3, "N2");
    field.Pilot("N2").Phase = "Approach";
    field.Room->Leave(2);
    field.Refresh();
    ASSERT_EQ(s.PlayerCount(), 0);
    ASSERT_EQ(s.Players[0].Name, "N2");  // outside the count
    field.Sends(3, WriteAdmission(MessageId::AdmitPlayer, 3));
    Run();
    EXPECT_EQ(s.PlayerCount(), 1);
    EXPECT_EQ(s.Players[0].Phase, "");
    EXPECT_EQ(s.Players[1], PlayerRecord{});
}

TEST_F(Pump, WhoAsksIsToldTheControllersId) {
    field.Enters(2, "N1");
    field.Sends(2, WriteEmpty(MessageId::WhoAreYou));
    Run();
    ExpectAnswers(2, WriteAdmission(MessageId::AdmitPlayer, 1));
}

// ---- Aircraft and position

TEST_F(Pump, AnAircraftsTextIsStored) {
    field.Joins(2, "N1");
    field.Joins(3, "N2");
    field.Sends(3, WriteAircraft("Boeing 737-400"));
    Run();
    EXPECT_EQ(field.Pilot("N1").AircraftName, "Unknown");
    EXPECT_EQ(field.Pilot("N2").AircraftName, "Boeing 737-400");
}

TEST_F(Pump, AnAircraftWhoseBytesRunOutStaysUnknownAndThePassEnds) {
    field.Joins(2, "N1");
    const DirectPlayMessage whole = WriteAircraft("Learjet");
    field.SendsBytes(2, whole.Bytes().first(whole.Bytes().size() - 1));
    RunAndFail();
    EXPECT_EQ(field.Pilot("N1").AircraftName, "Unknown");
}

TEST_F(Pump, APositionIsStoredWithTheMagneticHeading) {
    field.Joins(2, "N1");
    s.MagVarGrid.assign(MagVarGridSize, 1821);  // 10 degrees
    field.FliesTo(2, 47.5, -122.25, 1000, 90);
    Run();
    const PlayerRecord& pilot = field.Pilot("N1");
    EXPECT_EQ(pilot.Latitude, 47.5);
    EXPECT_EQ(pilot.Longitude, -122.25);
    EXPECT_EQ(pilot.Altitude, 1001);  // 305 m
    EXPECT_EQ(pilot.Heading, 80);
}

TEST_F(Pump, TheVariationIsThatOfThePositionJustDecoded) {
    field.Joins(2, "N1");
    s.MagVarGrid[50 + 90 + 10 * 181] = 1821;
    field.FliesTo(2, 50, 10, 0, 90);
    Run();
    EXPECT_EQ(field.Pilot("N1").Heading, 80);
}

TEST_F(Pump, ThePackedAttitudeOf4092Is360MadeMagnetic) {
    field.Joins(2, "N1");
    field.Sends(2, WritePosition({4092, 0, 0, 0}));
    Run();
    EXPECT_EQ(field.Pilot("N1").Heading, 360);
    s.MagVarGrid.assign(MagVarGridSize, -1821);
    field.Sends(2, WritePosition({4092, 0, 0, 0}));
    Run();
    EXPECT_EQ(field.Pilot("N1").Heading, 10);
    field.Sends(2, WritePosition({0, 0, 0, 0}));
    s.MagVarGrid.assign(MagVarGridSize, 0);
    Run();
    EXPECT_EQ(field.Pilot("N1").Heading, 0);
}

TEST_F(Pump, TheLongFormOfAPositionIsStoredToo) {
    field.Joins(2, "N1");
    DirectPlayMessage message;
    message.WriteLong(MessageId::PositionLong);
    message.WriteLong(50);
    for (int i = 0; i < 7; ++i) message.WriteLong(-1);
    message.WriteLong(2048);
    message.WriteLong(10001750 / 2);
    message.WriteLong(1073741824);
    message.WriteLong(100);
    for (int i = 0; i < 3; ++i) message.WriteShort(-1);
    field.Sends(2, message);
    Run();
    const PlayerRecord& pilot = field.Pilot("N1");
    EXPECT_EQ(pilot.Latitude, 45);
    EXPECT_EQ(pilot.Longitude, 90);
    EXPECT_EQ(pilot.Altitude, 328);
    EXPECT_EQ(pilot.Heading, 180);
}

TEST_F(Pump, APositionOfAnObserverIsStoredToo) {
    field.Joins(2, "N1", MessageId::AdmitObserver);
    field.FliesTo(2, 47.5, -122, 0, 0);
    Run();
    EXPECT_EQ(field.Pilot("N1").Latitude, 47.5);
}

TEST_F(Pump, WithoutARecordAPositionOrAnAircraftIsDroppedUnread) {
    field.Joins(2, "N1");
    field.Enters(3, "N2");
    field.Sends(3, WriteEmpty(MessageId::Position));  // too short to be read
    field.Sends(3, WriteEmpty(MessageId::Aircraft));
    Run();
    EXPECT_EQ(field.Waiting(), 0);
}

// ---- Chat

TEST_F(Pump, AChatSetsChoiceForTheNextTick) {
    field.Joins(2, "N1");
    field.Tick();
    field.Types(2, "KTST,1");
    Run();
    EXPECT_EQ(field.Pilot("N1").Choice, 1);
    EXPECT_THAT(field.Pilot("N1").MenuText, testing::HasSubstr("Welcome"));
}

TEST_F(Pump, ALaterDigitOverwritesAnEarlierOne) {
    field.IsServed(2, "N1");
    field.Types(2, "2");
    field.Types(2, "3");
    Run();
    EXPECT_EQ(field.Pilot("N1").Choice, 3);
}

TEST_F(Pump, AChatFromASenderWithNoRecordIsIgnored) {
    field.IsServed(2, "N1");
    field.Enters(3, "N2");
    field.Types(3, "1");
    Run();
    EXPECT_EQ(field.Pilot("N1").Choice, 0);
}

TEST_F(Pump, WhatAnybodySaysIsHeardByWhoListens) {
    field.IsServed(2, "N1");
    field.Enters(3, "N2");
    field.Types(2, " 3 ");
    field.Types(3, "hello");
    std::vector<std::string> heard;
    PlayerDirectory directory;
    PumpContext pump{s,
                     *field.Objects.Dp,
                     directory,
                     field,
                     [] {},
                     [&](std::string_view name, std::string_view text) {
                         heard.push_back(std::string(name) + ": " + std::string(text));
                     }};
    EXPECT_EQ(MessagePump(pump), std::nullopt);
    EXPECT_THAT(heard, ElementsAre("N1: 3", "N2: hello"));
    EXPECT_EQ(field.Pilot("N1").Choice, 3);
}

TEST_F(Pump, AChatConcernsEveryRecordOfTheSendersNameWhateverItsRole) {
    field.IsServed(2, "TWIN");
    field.Joins(3, "TWIN", MessageId::AdmitObserver);
    s.Players[1].InService = UnderService;
    field.IsServed(4, "N4");
    field.Types(3, "2");
    Run();
    EXPECT_EQ(s.Players[0].Choice, 2);
    EXPECT_EQ(s.Players[1].Choice, 2);
    EXPECT_EQ(field.Pilot("N4").Choice, 0);
}

TEST_F(Pump, AChatOfOneCharacterInTheControllersOwnFormatIsAccepted) {
    field.IsServed(2, "N1");
    field.Types(2, "3");
    Run();
    EXPECT_EQ(field.Pilot("N1").Choice, 3);
}

TEST_F(Pump, AChatWithAPayloadSizeOf1Or0OrLessIsIgnored) {
    field.IsServed(2, "N1");
    for (std::int32_t payloadSize : {1, 0, -1, -2147483647 - 1}) {
        DirectPlayMessage message;
        message.WriteLong(MessageId::Chat);
        message.WriteLong(payloadSize);
        message.WriteByte('3');
        field.Sends(2, message);
    }
    Run();
    EXPECT_EQ(field.Waiting(), 0);
    EXPECT_EQ(field.Pilot("N1").Choice, 0);
}

TEST_F(Pump, AnRMarksTheTextAndTheNextTickRepeatsIt) {
    field.IsServed(2, "N1");
    field.Tick();
    field.TakeSent();
    const std::string text = field.Pilot("N1").MenuText;
    field.Types(2, "R");
    field.Types(2, "r");
    Run();
    EXPECT_EQ(field.Pilot("N1").MenuText, text + " (Say Again)");
    field.Tick();
    ExpectAnswers(2, WriteChat(text));
}

// ---- The host goes, or removes the station

TEST_F(Pump, WhenTheHostHasGoneAndSomebodyIsLeftTheStationHosts) {
    field.Joins(2, "N1");
    field.Types(2, "KTST,1");
    field.Sends(2, WriteEmpty(MessageId::HostGone));
    field.Types(2, "KTST,2");
    Run();
    EXPECT_TRUE(s.SessionHost);
    EXPECT_TRUE(s.SessionOpen);
    EXPECT_THAT(field.Seen, ElementsAre(NowHosting));
    EXPECT_EQ(field.Pilot("N1").Choice, 2);  // the pass went on
    EXPECT_TRUE(field.Window.Loaded());
}

TEST_F(Pump, WhenTheHostHasGonePlayersWhoLeftArePurgedFirst) {
    field.Joins(2, "N1");
    field.Joins(3, "Host");
    field.Room->Leave(3);
    field.Sends(2, WriteEmpty(MessageId::HostGone));
    Run();
    EXPECT_EQ(s.PlayerCount(), 1);
    EXPECT_TRUE(s.SessionHost);
}

TEST_F(Pump, WhenTheHostHasGoneAndNobodyIsLeftTheStationClosesAfterTheBox) {
    field.Enters(2, "N1");
    field.Sends(2, WriteEmpty(MessageId::HostGone));
    Run();
    ASSERT_FALSE(field.Seen.empty());
    EXPECT_EQ(field.Seen.front(), ConnectionLost);
    EXPECT_EQ(field.Seen.back(), "closed");
    EXPECT_EQ(std::count(field.Seen.begin(), field.Seen.end(), "closed"), 1);
    EXPECT_FALSE(s.SessionOpen);
    EXPECT_FALSE(s.SessionHost);
    EXPECT_FALSE(field.Window.Loaded());
}

TEST_F(Pump, APurgeThatLosesTheLastPlayerToItsFixedEndClosesTheStationToo) {
    field.Joins(2, "Host");
    field.Joins(3, "N1");
    field.Room->Leave(2);
    field.Sends(3, WriteEmpty(MessageId::HostGone));
    Run();
    EXPECT_EQ(field.Seen.front(), ConnectionLost);
    EXPECT_FALSE(field.Window.Loaded());
}

TEST_F(Pump, ARemovalShowsItsBoxAndThenClosesTheStation) {
    field.Joins(2, "N1");
    field.Sends(2, WriteEmpty(MessageId::Removed));
    field.WhileBoxIsOpen = [&] {
        EXPECT_TRUE(s.SessionOpen);
        EXPECT_TRUE(field.Window.Console().ConnectionTimer);
        EXPECT_EQ(s.PlayerCount(), 1);
    };
    Run();
    EXPECT_THAT(field.Seen,
                ElementsAre(RemovedByHost, "repaint PLEASE WAIT...", "repaint PLEASE WAIT...", "closed"));
    EXPECT_FALSE(s.SessionOpen);
    EXPECT_EQ(s.PlayerCount(), 0);
    EXPECT_EQ(field.Objects.Dp, nullptr);
}

TEST_F(Pump, ARemovalLeavesTheRestOfTheQueueUnread) {
    field.Joins(2, "N1");
    field.Sends(2, WriteEmpty(MessageId::Removed));
    field.Sends(2, WriteEmpty(MessageId::WhoAreYou));
    Run();
    EXPECT_THAT(field.TakeSent(), IsEmpty());
}

TEST_F(Pump, WhileABoxIsOpenNoMessageIsFetched) {
    field.Joins(2, "N1");
    field.Sends(2, WriteEmpty(MessageId::HostGone));
    field.Sends(2, WriteEmpty(MessageId::WhoAreYou));
    field.WhileBoxIsOpen = [&] {
        EXPECT_EQ(field.Waiting(), 1);
        EXPECT_THAT(field.TakeSent(), IsEmpty());
    };
    Run();
    ExpectAnswers(2, WriteAdmission(MessageId::AdmitPlayer, 1));
}

// ---- Failures

TEST_F(Pump, AFailureEndsThePassAndWhatIsBehindWaitsForTheNext) {
    field.IsServed(2, "N1");
    field.Types(2, "2");
    field.Types(2, "1e3");  // qualifies, but is no number
    field.Types(2, "4");
    RunAndFail();
    EXPECT_EQ(field.Pilot("N1").Choice, 2);
    EXPECT_EQ(field.Waiting(), 1);
    Run();
    EXPECT_EQ(field.Pilot("N1").Choice, 4);
}

TEST_F(Pump, AFailureIsTold) {
    field.Joins(2, "N1");
    field.SendsBytes(2, {});
    EXPECT_EQ(field.Pump(), "a message ends too early");
}

TEST_F(Pump, WithoutASessionSaysSo) {
    field.Objects.Dp.reset();
    EXPECT_EQ(field.Pump(), "there is no session");
}

TEST_F(Pump, OfAClosedSessionFailsQuietly) {
    field.Objects.Dp->Close();
    RunAndFail();
    EXPECT_THAT(field.Seen, IsEmpty());
}

// A name is asked of the session for every record compared.
TEST_F(Pump, WithARecordAMessageFromSomebodyWhoHasGoneFailsItsPass) {
    field.Joins(2, "N1");
    BecomeHost();
    for (std::int32_t id : {4097, 4098, 4099, 4100, 4110, 4120, 4121}) {
        field.Sends(99, WriteAdmission(id, 99));
        RunAndFail();
    }
    field.Types(99, "1");
    RunAndFail();
    EXPECT_EQ(s.PlayerCount(), 1);
}

TEST_F(Pump, WithoutARecordAMessageFromSomebodyWhoHasGoneIsSkipped) {
    for (std::int32_t id : {4110, 4120, 4121}) field.Sends(99, WriteEmpty(id));
    field.Types(99, "1");
    Run();
    EXPECT_EQ(field.Waiting(), 0);
}

TEST_F(Pump, AnIntroductionFromSomebodyWhoHasGoneMakesNoRecord) {
    field.Sends(99, WriteAdmission(MessageId::AdmitPlayer, 99));
    RunAndFail();
    EXPECT_EQ(s.PlayerCount(), 0);
    EXPECT_EQ(s.Players[0], PlayerRecord{});
}

TEST_F(Pump, AnAnswerToSomebodyWhoHasGoneIsDroppedWithoutAFailure) {
    field.Sends(99, WriteEmpty(MessageId::WhoAreYou));
    Run();
    EXPECT_EQ(field.Waiting(), 0);
}

}  // namespace
}  // namespace corvenna
