#include "link/directplay/wire_messages.h"

#include <gtest/gtest.h>

#include <random>

#include "directplay/hex.h"
#include "directplay/wire_vectors.h"
#include "link/directplay/wire_frame.h"

namespace corvenna::directplay {
namespace {

struct Seen {
    std::string_view Name;
    std::string_view Hex;
};

/// All system messages but V10, which has its sender's memory in it.
constexpr Seen SystemMessages[] = {
    {"V1", vectors::V1},   {"V2", vectors::V2},   {"V3", vectors::V3},   {"V4", vectors::V4},
    {"V5", vectors::V5},   {"V6", vectors::V6},   {"V7", vectors::V7},   {"V8", vectors::V8},
    {"V9", vectors::V9},   {"V11", vectors::V11}, {"V12", vectors::V12}, {"V14", vectors::V14},
    {"V15", vectors::V15}, {"V16", vectors::V16}, {"V17", vectors::V17}, {"V18", vectors::V18},
    {"V19", vectors::V19}, {"V22", vectors::V22}, {"V23", vectors::V23}, {"V24", vectors::V24},
    {"V25", vectors::V25}, {"V26", vectors::V26}, {"V27", vectors::V27}, {"V28", vectors::V28},
    {"V29", vectors::V29}, {"V30", vectors::V30}, {"V31", vectors::V31}, {"V32", vectors::V32},
    {"V33", vectors::V33}, {"V34", vectors::V34}, {"V35", vectors::V35}, {"V36", vectors::V36},
    {"V37", vectors::V37}, {"V38", vectors::V38}, {"V39", vectors::V39}, {"V40", vectors::V40},
    {"L1", vectors::L1},   {"L2", vectors::L2},   {"L3", vectors::L3},   {"L4", vectors::L4},
    {"L6", vectors::L6},   {"L7", vectors::L7},
};

DecodedMessage Decode(std::string_view hex) {
    const Bytes frame = FromHex(hex);
    return DecodeSystemMessage(SortFrame(frame).Body);
}

template <class Message>
Message As(std::string_view hex) {
    return std::get<Message>(Decode(hex).Message);
}

class SystemMessageSeen : public testing::TestWithParam<Seen> {};

TEST_P(SystemMessageSeen, ComesOutByteForByteAfterReading) {
    const Bytes frame = FromHex(GetParam().Hex);
    const Incoming incoming = SortFrame(frame);
    const DecodedMessage decoded = DecodeSystemMessage(incoming.Body);
    const Bytes again = EncodeSystemMessage(decoded.Message, decoded.Version);
    EXPECT_EQ(ToHex(Frame(incoming.Port, again)), ToHex(frame));
}

TEST_P(SystemMessageSeen, CutAnywhereItIsReadWholeOrRefused) {
    const Bytes frame = FromHex(GetParam().Hex);
    const ByteSpan body = SortFrame(frame).Body;
    for (std::size_t size = 0; size < body.size(); ++size) {
        const Bytes cut(body.begin(), body.begin() + static_cast<std::ptrdiff_t>(size));
        try {
            DecodeSystemMessage(cut);
        } catch (const WireError&) {
            continue;
        }
        EXPECT_GE(size, EnvelopeSize);
    }
}

TEST_P(SystemMessageSeen, WithAnyWordAtItsExtremesItIsReadOrRefused) {
    const Bytes frame = FromHex(GetParam().Hex);
    const ByteSpan body = SortFrame(frame).Body;
    for (const std::byte filler : {std::byte{0x00}, std::byte{0x7F}, std::byte{0xFF}}) {
        for (std::size_t place = 0; place < body.size(); ++place) {
            Bytes bent(body.begin(), body.end());
            for (std::size_t i = place; i < std::min(place + 4, bent.size()); ++i) bent[i] = filler;
            try {
                const DecodedMessage decoded = DecodeSystemMessage(bent);
                if (std::holds_alternative<UnknownMessage>(decoded.Message)) continue;
                const Bytes again = EncodeSystemMessage(decoded.Message, decoded.Version);
                EXPECT_EQ(DecodeSystemMessage(again).Message, decoded.Message) << "word at " << place;
            } catch (const WireError&) {
                continue;
            }
        }
    }
}

INSTANTIATE_TEST_SUITE_P(All, SystemMessageSeen, testing::ValuesIn(SystemMessages),
                         [](const auto& row) { return std::string(row.param.Name); });

// ---- What the fields say

TEST(EnumSessionsMessage, HasApplicationPasswordAndFlags) {
    const auto one = As<EnumSessions>(vectors::V1);
    EXPECT_EQ(GuidText(one.Application), "{0BA552A0-E0FF-11CF-9C4E-00A0C905425E}");
    EXPECT_EQ(one.Password, u"Password");
    EXPECT_EQ(one.Flags, EnumFlag::All);

    const auto two = As<EnumSessions>(vectors::V3);
    EXPECT_EQ(GuidText(two.Application), "{99797420-F5F5-11CF-9827-00A0241496C8}");
    EXPECT_FALSE(two.Password);
    EXPECT_EQ(two.Flags, 0x81u);
    EXPECT_TRUE(As<EnumSessions>(vectors::L1).Application.IsZero());
}

TEST(EnumSessionsReplyMessage, HasTheDescriptionAndTheName) {
    const auto one = As<EnumSessionsReply>(vectors::V2);
    EXPECT_EQ(one.Name, u"LOTHAIR");
    EXPECT_EQ(one.Description.Flags, SessionFlag::PasswordRequired | SessionFlag::MigrateHost);
    EXPECT_EQ(GuidText(one.Description.Instance), "{8EA0FA21-FC42-46B5-AFD3-5E1584FBBB60}");
    EXPECT_EQ(one.Description.MaxPlayers, 1000u);
    EXPECT_EQ(one.Description.CurrentPlayers, 1u);
    EXPECT_EQ(one.Description.Reserved1, 0x1E52A0A1u);
    EXPECT_EQ(one.Description.User, (std::array<std::uint32_t, 4>{0, 2, 3, 4}));

    const auto two = As<EnumSessionsReply>(vectors::V4);
    EXPECT_EQ(two.Name, u"test            Canal Crossing ");
    EXPECT_EQ(two.Description.Reserved1, 0x08D80E77u);
}

TEST(SessionDescChangedMessage, IsReadPastTheSendersPointersAndTrailingBytes) {
    const auto changed = As<SessionDescChanged>(vectors::V10);
    EXPECT_EQ(changed.Name, u"test            Canal Crossing ");
    EXPECT_EQ(changed.Password, u"");
    EXPECT_EQ(changed.Description.CurrentPlayers, 2u);
    EXPECT_EQ(changed.Description.User[0], 0x4F020001u);
    EXPECT_EQ(changed.Description.Reserved1, 0x08D80E77u);
}

TEST(SessionDescChangedMessage, IsWrittenWithTheSameOffsetsAndNoPointers) {
    const Bytes seen = FromHex(vectors::V10);
    Bytes expected(seen.begin(), seen.begin() + 186);
    expected[0] = std::byte{186};
    expected[1] = std::byte{0};
    std::fill(expected.begin() + 88, expected.begin() + 96, std::byte{0});
    const Bytes message = EncodeSystemMessage(As<SessionDescChanged>(vectors::V10));
    EXPECT_EQ(ToHex(Frame(2300, message)), ToHex(expected));
}

TEST(RequestMessages, TellPlayersGroupsAndSystemPlayersApart) {
    EXPECT_EQ(As<RequestId>(vectors::V5), (RequestId{Command::RequestPlayerId, 9}));
    EXPECT_EQ(As<RequestId>(vectors::V38), (RequestId{Command::RequestGroupId, 8}));
}

TEST(RequestPlayerReplyMessage, HasTheIdOrTheReason) {
    EXPECT_EQ(As<RequestPlayerReply>(vectors::V6), (RequestPlayerReply{0x08D90E75, false, Result::Ok}));
    EXPECT_EQ(As<RequestPlayerReply>(vectors::V25), (RequestPlayerReply{0, false, Result::CantCreatePlayer}));
}

TEST(RequestPlayerReplyMessage, MayHaveNamesOfProvidersBehindIt) {
    Bytes frame = FromHex(vectors::V6);
    frame.resize(frame.size() + 64);
    const auto reply = std::get<RequestPlayerReply>(DecodeSystemMessage(SortFrame(frame).Body).Message);
    EXPECT_EQ(reply.Id, 0x08D90E75u);
}

TEST(RequestPlayerReplyMessage, IsSecureWhenItNamesASecurityProvider) {
    Bytes frame = FromHex(vectors::V6);
    frame[56] = std::byte{68 - 20};
    EXPECT_TRUE(std::get<RequestPlayerReply>(DecodeSystemMessage(SortFrame(frame).Body).Message).Secure);
}

TEST(AddForwardRequestMessage, HasThePortsThePasswordAndTheSessionsKey) {
    const auto request = As<AddForwardRequest>(vectors::V7);
    EXPECT_EQ(request.Player.Id, 0x08D90E75u);
    EXPECT_EQ(request.Player.Flags, 9u);
    EXPECT_EQ(ParseServiceProviderData(request.Player.Provider), (ServiceProviderData{{0, 2301}, {0, 2351}}));
    EXPECT_EQ(request.Password, u"");
    EXPECT_EQ(request.SessionKey, 0x08D80E77u);
    EXPECT_EQ(As<AddForwardRequest>(vectors::V17).Password, u"hadouken");
    EXPECT_EQ(As<AddForwardRequest>(vectors::V17).SessionKey, 0xAABBCCDDu);
    EXPECT_EQ(As<AddForwardRequest>(vectors::L2).Password, u"Sesam");
    EXPECT_EQ(Decode(vectors::L2).Version, 11);
}

TEST(AddForwardMessages, TellOfAMachineAndAreAcknowledged) {
    const auto forward = As<AddForward>(vectors::V14);
    EXPECT_EQ(forward.Player.Id, 0x7734u);
    EXPECT_EQ(ParseServiceProviderData(forward.Player.Provider), (ServiceProviderData{{0, 2348}, {0, 2398}}));
    EXPECT_EQ(As<AddForwardAck>(vectors::V15).Id, 0x7734u);
    EXPECT_EQ(As<AddForwardReply>(vectors::V16).Error, Result::InvalidPassword);
}

TEST(NameTableMessage, HasEverybodyWithNamesDataAndPorts) {
    const auto table = As<NameTable>(vectors::V8);
    EXPECT_EQ(table.Name, u"test            Canal Crossing ");
    EXPECT_EQ(table.Description.MaxPlayers, 10u);
    ASSERT_EQ(table.Players.size(), 3u);
    EXPECT_EQ(table.Players[0].Id, 0x08D90E75u);
    EXPECT_EQ(table.Players[0].SystemPlayerId, 0x08D90E75u);
    EXPECT_EQ(table.Players[0].Version, 14u);
    EXPECT_EQ(ParseServiceProviderData(table.Players[0].Provider),
              (ServiceProviderData{{0x7F000001, 2301}, {0x7F000001, 2351}}));
    EXPECT_EQ(table.Players[1].Flags, 0xFu);
    EXPECT_EQ(table.Players[2].ShortName, u"unit");
    EXPECT_EQ(table.Players[2].LongName, u"unit");
    EXPECT_EQ(table.Players[2].SystemPlayerId, 0x08D90E77u);
    EXPECT_EQ(table.Players[2].Data.size(), 21u);
    EXPECT_EQ(table.Players[2].Data[19], std::byte{0x50});
}

TEST(NameTableMessage, HasGroupsWithTheirMembers) {
    const auto table = As<NameTable>(vectors::V24);
    ASSERT_EQ(table.Players.size(), 4u);
    ASSERT_EQ(table.Groups.size(), 1u);
    EXPECT_EQ(table.Players[2].LongName, u"long name");
    EXPECT_FALSE(table.Players[3].ShortName);
    EXPECT_EQ(table.Groups[0].Id, 0x5E7u);
    EXPECT_EQ(table.Groups[0].Flags, 0x48u);
    EXPECT_EQ(table.Groups[0].Members, std::vector<std::uint32_t>{0x000D00DE});
}

TEST(NameTableMessage, OfAClientServerSessionHasRecordsOfTheOtherForm) {
    const auto table = As<NameTable>(vectors::V40);
    EXPECT_EQ(table.What, Command::EnumPlayersReply);
    ASSERT_EQ(table.Players.size(), 1u);
    EXPECT_EQ(table.Players[0].Id, 0x08D90E77u);
    EXPECT_EQ(table.Name, u"S");
}

/// A group as large as its widths allow, with all that a record can have.
TEST(NameTableMessage, WidthsOfLengthsFollowTheLengths) {
    for (const std::size_t size : {0u, 1u, 255u, 256u, 65535u, 65536u}) {
        NameTable table;
        PackedPlayer group;
        group.Id = 7;
        group.SystemPlayerId = 3;
        group.Data.resize(size);
        group.Members.resize(size / 4, 0x01020304);
        group.ParentId = 9;
        table.Groups.push_back(group);
        const Bytes bytes = EncodeSystemMessage(table);
        EXPECT_EQ(std::get<NameTable>(DecodeSystemMessage(bytes).Message), table) << size;
    }
}

TEST(NameTableMessage, ClaimingMorePlayersThanItHasIsRefused) {
    Bytes frame = FromHex(vectors::V8);
    frame[28] = std::byte{4};
    EXPECT_THROW(DecodeSystemMessage(SortFrame(frame).Body), WireError);
    std::fill(frame.begin() + 28, frame.begin() + 32, std::byte{0xFF});
    EXPECT_THROW(DecodeSystemMessage(SortFrame(frame).Body), WireError);
}

TEST(CreatePlayerMessage, HasNamesPortsAndData) {
    const auto create = As<CreateMember>(vectors::V9);
    EXPECT_EQ(create.What, Command::CreatePlayer);
    EXPECT_EQ(create.Member.Id, 0x08D90E74u);
    EXPECT_EQ(create.Member.SystemPlayerId, 0x08D90E75u);
    EXPECT_EQ(create.Member.ShortName, u"unit");
    EXPECT_EQ(create.Member.Data.size(), 21u);
    EXPECT_FALSE(As<CreateMember>(vectors::V12).Member.LongName);
    EXPECT_EQ(As<CreateMember>(vectors::L3).Member.LongName, u"Player");
}

TEST(CreateGroupMessage, IsReadWithAndWithoutItsTrailer) {
    Bytes frame = FromHex(vectors::V26);
    const auto with = std::get<CreateMember>(DecodeSystemMessage(SortFrame(frame).Body).Message);
    EXPECT_EQ(with.Member.ShortName, u"ABC");
    frame.resize(frame.size() - 6);
    EXPECT_EQ(std::get<CreateMember>(DecodeSystemMessage(SortFrame(frame).Body).Message), with);
}

TEST(MembershipMessages, NameThePlayerAndTheGroup) {
    EXPECT_EQ(As<ChangeMember>(vectors::V11), (ChangeMember{Command::DeletePlayer, 0x08D90E76, 0}));
    EXPECT_EQ(As<ChangeMember>(vectors::V18), (ChangeMember{Command::AddPlayerToGroup, 0x7734, 0x5E7}));
    EXPECT_EQ(As<ChangeMember>(vectors::V27),
              (ChangeMember{Command::DeletePlayerFromGroup, 0x08D90E74, 0x08D90E73}));
    EXPECT_EQ(As<ChangeMember>(vectors::V28), (ChangeMember{Command::DeleteGroup, 0, 0x08D90E73}));
}

TEST(ChangeMessages, HaveTheNewDataOrNames) {
    EXPECT_EQ(ToHex(As<DataChanged>(vectors::V19).Data), "08 07 06 05 04 03 02 01");
    EXPECT_EQ(As<DataChanged>(vectors::V19).What, Command::GroupDataChanged);
    EXPECT_EQ(ToHex(As<DataChanged>(vectors::V30).Data), "01 02 03");
    EXPECT_EQ(As<NameChanged>(vectors::V29).ShortName, u"New");
    EXPECT_EQ(As<NameChanged>(vectors::V29).LongName, u"Player");
}

TEST(LivenessMessages, CarryTheSpeakerAndTheTick) {
    EXPECT_EQ(As<Ping>(vectors::V22), (Ping{Command::Ping, 0x00051573, 0x44332211}));
    EXPECT_EQ(As<Ping>(vectors::V23), (Ping{Command::PingReply, 0x12345678, 0x44332211}));
    EXPECT_EQ(As<IAmNameServer>(vectors::V31).Host, 0x08D90E75u);
    EXPECT_EQ(ParseServiceProviderData(As<IAmNameServer>(vectors::V31).Provider),
              (ServiceProviderData{{0, 2301}, {0, 2351}}));
}

TEST(WrappedMessages, AreUnwrapped) {
    const auto wrapper = As<PlayerWrapper>(vectors::V36);
    EXPECT_EQ(wrapper.From, 0x08D90E76u);
    EXPECT_EQ(wrapper.To, 0x08D90E74u);
    EXPECT_EQ(ToHex(wrapper.Payload), "aa bb cc dd");
    EXPECT_EQ(As<Chat>(vectors::V35).Text, u"Hi");
    const auto packet = As<Packet>(vectors::V33);
    EXPECT_EQ(packet.Index, 1u);
    EXPECT_EQ(packet.Offset, 16u);
    EXPECT_EQ(packet.MessageSize, 24u);
    EXPECT_EQ(packet.Data.size(), 8u);
    const auto inner = DecodeSystemMessage(As<Multicast>(vectors::V37).Message);
    EXPECT_EQ(std::get<ChangeMember>(inner.Message).PlayerId, 0x08D90E74u);
}

TEST(UnknownMessages, AreToldByTheirNumberAndHaveNoForm) {
    const Bytes message = FromHex("70 6c 61 79 36 00 0e 00 01 02");
    const DecodedMessage decoded = DecodeSystemMessage(message);
    EXPECT_EQ(std::get<UnknownMessage>(decoded.Message).Command, 0x36);
    EXPECT_THROW(EncodeSystemMessage(decoded.Message), WireError);
    EXPECT_THROW(DecodeSystemMessage(FromHex("70 6c 61 78 36 00 0e 00")), WireError);
}

TEST(PackedPlayers, KeepProviderDataOfAnyLength) {
    CreateMember create{Command::CreatePlayer, {}};
    create.Member.Id = 5;
    create.Member.Provider.resize(11);
    const auto again = std::get<CreateMember>(DecodeSystemMessage(EncodeSystemMessage(create)).Message);
    EXPECT_EQ(again, create);
    EXPECT_FALSE(ParseServiceProviderData(again.Member.Provider));
}

TEST(SessionDescriptions, ShorterThanTheirFieldsAreRefusedLongerOnesRead) {
    Bytes frame = FromHex(vectors::V2);
    frame[28] = std::byte{79};
    EXPECT_THROW(DecodeSystemMessage(SortFrame(frame).Body), WireError);
    frame[28] = std::byte{96};
    EXPECT_EQ(std::get<EnumSessionsReply>(DecodeSystemMessage(SortFrame(frame).Body).Message).Name,
              u"LOTHAIR");
}

TEST(SystemMessagesBentAtRandom, AreReadOrRefused) {
    const std::uint32_t seed = std::random_device{}();
    SCOPED_TRACE(seed);
    std::mt19937 random(seed);
    for (int round = 0; round < 20000; ++round) {
        const Seen& seen = SystemMessages[random() % std::size(SystemMessages)];
        Bytes frame = FromHex(seen.Hex);
        for (unsigned bends = 1 + random() % 4; bends > 0; --bends) {
            const std::size_t place = HeaderSize + random() % (frame.size() - HeaderSize);
            frame[place] = static_cast<std::byte>(random());
        }
        try {
            DecodeSystemMessage(ByteSpan(frame).subspan(HeaderSize));
        } catch (const WireError&) {
            continue;
        }
    }
}

}  // namespace
}  // namespace corvenna::directplay
