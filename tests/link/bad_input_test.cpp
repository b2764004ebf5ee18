// What peers may send by mistake or in malice: none of it stops the station, and none costs another pilot
// more than the pass in which it is found.

#include <gmock/gmock.h>

#include <cstdint>
#include <limits>
#include <random>
#include <string>
#include <vector>

#include "link/pump.h"
#include "support/session_field.h"

namespace corvenna {
namespace {

constexpr std::int32_t Smallest = std::numeric_limits<std::int32_t>::min();
constexpr std::int32_t Largest = std::numeric_limits<std::int32_t>::max();

/// N1 (id 2) sends the bad input, N2 (id 3) types 3 behind it. Both are under service.
class BadInput : public testing::Test {
  protected:
    BadInput() {
        field.IsServed(2, "N1");
        field.IsServed(3, "N2");
        field.Tick();
        field.TakeSent();
    }

    /// Pumps the bad message and N2's digit behind it; N2's reply must arrive, in this pass or the next.
    bool PassFails() {
        field.Pilot("N2").Choice = 0;
        field.Types(3, "3");
        const bool failed = field.Pump().has_value();
        EXPECT_EQ(field.Waiting(), failed ? 1 : 0);
        if (failed) {
            EXPECT_EQ(field.Pump(), std::nullopt);
        }
        EXPECT_EQ(field.Pilot("N2").Choice, 3);
        EXPECT_TRUE(field.Window.Loaded());
        EXPECT_NO_THROW(field.Tick());
        EXPECT_NO_THROW(field.Refresh());
        return failed;
    }

    /// A reply of N1: whether it failed its pass, and his Choice before a tick could act on it.
    struct Outcome {
        bool Failed;
        int Choice;
    };
    Outcome Reply(std::string_view text) {
        field.Pilot("N1").Choice = 77;
        field.Types(2, text);
        const bool failed = field.Pump().has_value();
        const int choice = field.Pilot("N1").Choice;
        EXPECT_EQ(field.Waiting(), 0);
        EXPECT_FALSE(PassFails());
        return {failed, choice};
    }

    void ExpectRefused(std::string_view text) {
        const Outcome outcome = Reply(text);
        EXPECT_TRUE(outcome.Failed) << text;
        EXPECT_EQ(outcome.Choice, 77) << text;
    }

    void ExpectIgnored(std::string_view text) {
        const Outcome outcome = Reply(text);
        EXPECT_FALSE(outcome.Failed) << text;
        EXPECT_EQ(outcome.Choice, 77) << text;
    }

    void ExpectTaken(std::string_view text, int choice) {
        const Outcome outcome = Reply(text);
        EXPECT_FALSE(outcome.Failed) << text;
        EXPECT_EQ(outcome.Choice, choice) << text;
    }

    SessionField field;
    Station& s = field.S;
};

// ---- Replies

TEST_F(BadInput, AReplyOf200DigitsFailsItsPass) { ExpectRefused(std::string(200, '7')); }

TEST_F(BadInput, AReplyOf200LettersIsIgnored) { ExpectIgnored(std::string(200, 'x')); }

TEST_F(BadInput, AReplyOf200ZerosIs0) { ExpectTaken(std::string(200, '0'), 0); }

TEST_F(BadInput, AReplyOfBlanksOnlyIsEmptyAndFailsItsPass) { ExpectRefused("     "); }

TEST_F(BadInput, AReplyOfZeroBytesIsEmptyAndFailsItsPass) { ExpectRefused(std::string(4, '\0')); }

TEST_F(BadInput, AReplyOf8BitCharactersIsIgnored) {
    ExpectIgnored("\xE9\xE8\xFF");
    ExpectIgnored("\x80");
}

TEST_F(BadInput, AReplyOfADigitAndAn8BitCharacterFailsItsPass) { ExpectRefused("3\xB2"); }

TEST_F(BadInput, AReplyOfMinus1FailsItsPass) { ExpectRefused("-1"); }

TEST_F(BadInput, AReplyOf3Point5Is4) { ExpectTaken("3.5", 4); }

TEST_F(BadInput, AReplyOf2Point5Is2) { ExpectTaken("2.5", 2); }

TEST_F(BadInput, AReplyOf1e3FailsItsPass) { ExpectRefused("1e3"); }

TEST_F(BadInput, AnEmptyReplyHasNoPayloadAndIsIgnored) { ExpectIgnored(""); }

TEST_F(BadInput, InTheOpeningDialogueTheSameRepliesDoNoHarmEither) {
    for (const std::string& text : {std::string(200, '7'), std::string("     "), std::string("\xE9"),
                                    std::string("-1"), std::string("1e3"), std::string("")}) {
        field.Pilot("N1").InService = OpeningDialogue;
        ExpectIgnored(text);
    }
    field.Pilot("N1").InService = OpeningDialogue;
    ExpectRefused("KTST");
}

// ---- Sizes and cuts

/// A message of every kind as N1 would send it, and how many bytes of it the pump needs.
struct Kind {
    DirectPlayMessage Message;
    std::size_t Needed;
};

DirectPlayMessage LongPosition() {
    DirectPlayMessage message;
    message.WriteLong(MessageId::PositionLong);
    message.WriteLong(50);
    for (int i = 0; i < 11; ++i) message.WriteLong(1000);
    for (int i = 0; i < 3; ++i) message.WriteShort(0);
    return message;
}

std::vector<Kind> EveryKind() {
    std::vector<Kind> kinds = {
        {WriteAdmission(MessageId::AdmitPlayer, 2), 12},
        {WriteAdmission(MessageId::AdmitObserver, 2), 12},
        {WriteAircraft("Learjet"), 8 + 2 + 7 + 1},
        {WritePosition(PackPosition(47.5, -122, 1000, 90)), 42},
        {LongPosition(), 58},
        {WriteChat("2     "), 8 + 12},  // PayloadSize is twice the six characters
    };
    for (std::int32_t id : {4096, 4097, 4098, 4101, 4102, 4103, 4104, 4111, 4114, 4132}) {
        kinds.push_back({WriteAdmission(id, 2), 8});
    }
    return kinds;
}

TEST_F(BadInput, EveryMessageKindCutAtEveryLengthFailsBelowWhatIsNeededAndChangesNothing) {
    for (bool host : {false, true}) {
        for (const Kind& kind : EveryKind()) {
            for (std::size_t length = 0; length <= kind.Message.Bytes().size(); ++length) {
                DirectPlayMessage id = kind.Message;
                SCOPED_TRACE(testing::Message() << id.ReadLong() << " cut to " << length);
                s.SessionHost = host;
                const PlayerRecord before = field.Pilot("N1");
                field.SendsBytes(2, kind.Message.Bytes().first(length));
                field.Types(3, "3");
                const bool failed = field.Pump().has_value();
                EXPECT_EQ(failed, length < kind.Needed);
                if (failed) {
                    EXPECT_EQ(field.Pilot("N1"), before);
                    EXPECT_EQ(field.Pump(), std::nullopt);
                }
                EXPECT_EQ(std::exchange(field.Pilot("N2").Choice, std::uint8_t{0}), 3);
                EXPECT_EQ(s.PlayerCount(), 2);
            }
        }
    }
}

TEST(BadInputRemoval, ARemovalCutBelowItsHeaderFailsAndClosesNothing) {
    const DirectPlayMessage removed = WriteEmpty(MessageId::Removed);
    for (std::size_t length = 0; length <= 8; ++length) {
        SessionField field;
        field.Joins(2, "N1");
        field.SendsBytes(2, removed.Bytes().first(length));
        EXPECT_EQ(field.Pump().has_value(), length < 8) << length;
        EXPECT_EQ(field.Window.Loaded(), length < 8) << length;
    }
}

TEST_F(BadInput, APayloadSizeThatLiesHarmsNobody) {
    for (const Kind& kind : EveryKind()) {
        for (std::int32_t payloadSize : {Smallest, -2, -1, 0, 1, 2, 13, 100, 65536, Largest - 1, Largest}) {
            DirectPlayMessage id = kind.Message;
            SCOPED_TRACE(testing::Message() << id.ReadLong() << " with PayloadSize " << payloadSize);
            std::vector<std::byte> bytes = BytesOf(kind.Message);
            DirectPlayMessage size;
            size.WriteLong(payloadSize);
            std::copy(size.Bytes().begin(), size.Bytes().end(), bytes.begin() + 4);
            field.SendsBytes(2, bytes);
            PassFails();
            EXPECT_EQ(s.PlayerCount(), 2);
        }
    }
}

TEST_F(BadInput, AHugePayloadSizeOfAChatFailsItsPass) {
    DirectPlayMessage message;
    message.WriteLong(MessageId::Chat);
    message.WriteLong(Largest);
    message.WriteByte('2');
    field.Sends(2, message);
    EXPECT_TRUE(PassFails());
    EXPECT_EQ(field.Pilot("N1").Choice, 0);
}

TEST_F(BadInput, AHugePayloadSizeOfAnAircraftFailsItsPass) {
    DirectPlayMessage message;
    message.WriteLong(MessageId::Aircraft);
    message.WriteLong(Largest);
    message.WriteLong(0x41414141);
    field.Sends(2, message);
    EXPECT_TRUE(PassFails());
    EXPECT_EQ(field.Pilot("N1").AircraftName, "Unknown");
}

TEST_F(BadInput, ANegativePayloadSizeOfAnAircraftIsAnEmptyText) {
    DirectPlayMessage message;
    message.WriteLong(MessageId::Aircraft);
    message.WriteLong(-1);
    message.WriteShort(0);
    field.Sends(2, message);
    EXPECT_FALSE(PassFails());
    EXPECT_EQ(field.Pilot("N1").AircraftName, "");
}

TEST_F(BadInput, RandomBytesBehindAnyHeaderHarmNobody) {
    for (unsigned seed = 1; seed <= 3000; ++seed) {
        SCOPED_TRACE(testing::Message() << "seed " << seed);
        std::mt19937 random(seed);
        DirectPlayMessage message;
        auto id = static_cast<std::int32_t>(4095 + random() % 39);
        if (id == MessageId::Removed) id = MessageId::Position;  // a removal is a removal
        message.WriteLong(id);
        message.WriteLong(random() % 4 == 0 ? static_cast<std::int32_t>(random())
                                            : static_cast<std::int32_t>(random() % 64));
        for (auto count = random() % 70; count > 0; --count) {
            message.WriteByte(static_cast<std::uint8_t>(random() % 3 == 0 ? random() % 16 + '0' : random()));
        }
        field.Sends(2, message);
        PassFails();
        ASSERT_EQ(s.PlayerCount(), 2);
    }
}

// ---- Who it is

TEST_F(BadInput, MessagesFromIdsNobodyHasFailOrAreSkippedAndHarmNobody) {
    const std::vector<PlayerRecord> before(s.Players.Valid().begin(), s.Players.Valid().end());
    for (std::int32_t nobody : {0, -1, 99, Smallest, Largest}) {
        for (const Kind& kind : EveryKind()) {
            field.Sends(nobody, kind.Message);
            PassFails();
        }
    }
    ASSERT_EQ(s.PlayerCount(), 2);
    EXPECT_EQ(s.Players[0].Latitude, before[0].Latitude);
    EXPECT_EQ(s.Players[0].Choice, before[0].Choice);
}

TEST_F(BadInput, OfTwoParticipantsOfOneNameEachHasHisOwnPositionAndBothHaveTheDigit) {
    field.IsServed(4, "N1");
    field.FliesTo(4, 48, -122, 0, 0);
    field.FliesTo(2, 46, -122, 0, 0);
    field.Types(4, "4");
    EXPECT_EQ(field.Pump(), std::nullopt);
    EXPECT_EQ(s.Players[0].Latitude, 46);
    EXPECT_EQ(s.Players[2].Latitude, 48);
    EXPECT_EQ(s.Players[0].Choice, 4);
    EXPECT_EQ(s.Players[2].Choice, 4);
    EXPECT_FALSE(PassFails());
}

TEST_F(BadInput, AParticipantNamedAsTheControllerIsNeverAskedWhoHeIs) {
    field.Enters(9, "KTST_Controller");
    field.Refresh();
    for (const auto& sent : field.TakeSent()) EXPECT_NE(sent.To, 9);
}

TEST_F(BadInput, AParticipantRenamedInMidDialogueIsUnmatchedAtOnce) {
    field.FliesTo(2, 46, -122, 0, 0);
    EXPECT_EQ(field.Pump(), std::nullopt);
    field.Room->Rename(2, "N9");
    field.FliesTo(2, 48, -122, 0, 0);
    field.Types(2, "4");
    EXPECT_EQ(field.Pump(), std::nullopt);
    EXPECT_EQ(field.Pilot("N1").Latitude, 46);
    EXPECT_EQ(field.Pilot("N1").Choice, 0);
    EXPECT_FALSE(PassFails());
}

TEST_F(BadInput, AParticipantRenamedToAnothersNameTypesForHim) {
    field.Room->Rename(2, "N2");
    field.Types(2, "4");
    EXPECT_EQ(field.Pump(), std::nullopt);
    EXPECT_EQ(field.Pilot("N1").Choice, 0);
    EXPECT_EQ(field.Pilot("N2").Choice, 4);
}

// 32,766 observers behind N1 and N2 fill the 16-bit count; whoever comes then has no record.
TEST(BadInputCrowd, The32768thParticipantCostsOnlyHisOwnPass) {
    SessionField field;
    field.IsServed(2, "N1");
    for (std::int32_t id = 3; id <= 32768; ++id) {
        field.Enters(id, "P" + std::to_string(id));
        field.Sends(id, WriteAdmission(MessageId::AdmitObserver, id));
    }
    EXPECT_EQ(field.Pump(), std::nullopt);
    ASSERT_EQ(field.S.PlayerCount(), 32767);

    field.Enters(40000, "One too many");
    field.Sends(40000, WriteAdmission(MessageId::AdmitPlayer, 40000));
    field.Types(2, "3");
    EXPECT_NE(field.Pump(), std::nullopt);
    EXPECT_EQ(field.S.PlayerCount(), 32767);
    EXPECT_EQ(field.S.Players[32766].Name, "P32768");
    EXPECT_EQ(field.S.Players[32767], PlayerRecord{});
    EXPECT_EQ(field.Pump(), std::nullopt);
    EXPECT_EQ(field.Pilot("N1").Choice, 3);

    field.TakeSent();
    field.Pilot("N1").Choice = 0;
    field.Tick();  // one text for everybody on no frequency
    EXPECT_EQ(field.TakeSent().size(), 32767u);
    field.Refresh();
    EXPECT_THAT(field.TakeSent(),
                testing::ElementsAre(SessionField::To(40000, WriteEmpty(MessageId::WhoAreYou)),
                                     SessionField::To(2, WriteEmpty(MessageId::AskAircraft))));
}

TEST(BadInputCrowd, AllOf32767ParticipantsCanLeaveAtOnce) {
    SessionField field;
    for (std::int32_t id = 2; id <= 32768; ++id) {
        field.Enters(id, "P" + std::to_string(id));
        field.Sends(id, WriteAdmission(MessageId::AdmitPlayer, id));
    }
    EXPECT_EQ(field.Pump(), std::nullopt);
    ASSERT_EQ(field.S.PlayerCount(), 32767);
    SessionRecord record;
    record.MaxPlayers = 2;
    // The list is emptied in one stroke: the controller goes to a session of his own.
    auto& dp = *field.Objects.Dp;
    dp.Close();
    field.Room = field.Network.AddRoom(record);
    dp.Open(field.Room->Record(), OpenMode::Join);
    field.S.ControllerId = dp.CreatePlayer("KTST_Controller", "Player");
    field.Refresh();
    EXPECT_EQ(field.S.PlayerCount(), 0);
}

// ---- Places out of this world

TEST_F(BadInput, APositionOverThePoleWhoseEntryIsOutsideTheTableFailsAndStoresNothing) {
    const PlayerRecord before = field.Pilot("N1");
    field.FliesTo(2, 95, -1, 1000, 90);  // entry 65164
    EXPECT_NE(field.Pump(), std::nullopt);
    EXPECT_EQ(field.Pilot("N1"), before);
    field.FliesTo(2, -95, 0, 1000, 90);  // entry -5
    EXPECT_NE(field.Pump(), std::nullopt);
    EXPECT_EQ(field.Pilot("N1"), before);
    EXPECT_FALSE(PassFails());
}

TEST_F(BadInput, APositionOverThePoleWhoseEntryIsStillInsideIsStored) {
    field.FliesTo(2, 95, 0, 1000, 90);  // entry 185
    EXPECT_FALSE(PassFails());
    EXPECT_EQ(field.Pilot("N1").Latitude, 95);
}

TEST_F(BadInput, TheLastEntriesOfTheTableAreStoredAndTheFirstBeyondThemAreNot) {
    field.FliesTo(2, 90, -1, 0, 0);  // 65159
    EXPECT_FALSE(PassFails());
    EXPECT_EQ(field.Pilot("N1").Latitude, 90);
    field.FliesTo(2, 91, -1, 0, 0);  // 65160
    EXPECT_TRUE(PassFails());
    EXPECT_EQ(field.Pilot("N1").Latitude, 90);
    field.FliesTo(2, -90, 0, 0, 0);  // 0
    EXPECT_FALSE(PassFails());
    EXPECT_EQ(field.Pilot("N1").Latitude, -90);
    field.FliesTo(2, -91, 0, 0, 0);  // -1
    EXPECT_TRUE(PassFails());
    EXPECT_EQ(field.Pilot("N1").Latitude, -90);
}

TEST_F(BadInput, AnAltitudeBeyondItsFieldFailsAndStoresNothing) {
    const PlayerRecord before = field.Pilot("N1");
    for (std::int32_t metres : {Largest, Smallest, 654553016, -654553017}) {
        field.Sends(2, WritePosition({0, 5000000, 0, metres}));
        EXPECT_NE(field.Pump(), std::nullopt) << metres;
        EXPECT_EQ(field.Pilot("N1"), before) << metres;
    }
    EXPECT_FALSE(PassFails());
}

TEST_F(BadInput, TheHighestAndTheLowestAltitudeOfTheFieldAreServed) {
    for (std::int32_t metres : {654553015, -654553016}) {
        field.Sends(2, WritePosition({0, 5000000, 0, metres}));
        EXPECT_FALSE(PassFails()) << metres;
    }
}

TEST_F(BadInput, NoPositionStopsTheTick) {
    for (unsigned seed = 1; seed <= 3000; ++seed) {
        SCOPED_TRACE(testing::Message() << "seed " << seed);
        std::mt19937 random(seed);
        const auto word = [&](unsigned extremeIn) {
            const auto any = static_cast<std::int32_t>(random());
            if (random() % extremeIn != 0) return any;
            return std::vector{Smallest, Smallest + 1, -1, 0, 1, Largest - 1, Largest}[random() % 7];
        };
        const auto latitude = random() % 2 == 0 ? word(2) : word(2) % 20003500;
        field.Sends(
            2, WritePosition({word(4), latitude, word(4), word(2) / static_cast<int>(random() % 8 + 1)}));
        PassFails();
    }
}

}  // namespace
}  // namespace corvenna
