#include "tools/console/session_list.h"

#include <gmock/gmock.h>

#include <sstream>

namespace corvenna {
namespace {

using testing::HasSubstr;

SessionRecord Friday() {
    SessionRecord record;
    record.SessionName = "Friday";
    record.CurrentPlayers = 3;
    record.MaxPlayers = 16;
    record.Host = "10.0.0.5:2300";
    record.Flags = 0x44;
    record.GuidInstance = "{00000000-0000-0000-0000-000000000001}";
    record.GuidApplication = "{00000000-0000-0000-0000-000000000002}";
    return record;
}

std::string Printed(const std::vector<SessionRecord>& sessions) {
    std::ostringstream out;
    PrintSessions(out, sessions);
    return out.str();
}

TEST(SessionList, ShowsAllThatIsKnownOfASession) {
    EXPECT_EQ(Printed({Friday()}),
              "Friday\n"
              "  players      3 of 16\n"
              "  host         10.0.0.5:2300\n"
              "  flags        0x00000044\n"
              "  session      {00000000-0000-0000-0000-000000000001}\n"
              "  application  {00000000-0000-0000-0000-000000000002}\n");
}

TEST(SessionList, HasAnEmptyLineBetweenSessions) {
    EXPECT_THAT(Printed({Friday(), Friday()}), HasSubstr("0002}\n\nFriday\n"));
    EXPECT_EQ(Printed({}), "");
}

TEST(SessionList, SaysWhenThereIsNoLimit) {
    SessionRecord record = Friday();
    record.MaxPlayers = 0;
    EXPECT_THAT(Printed({record}), HasSubstr("  players      3, no limit\n"));
}

TEST(SessionList, ShowsNamesWithoutTheirControlCharacters) {
    SessionRecord record = Friday();
    record.SessionName = "Z\xFCrich\x1B[2J";
    EXPECT_THAT(Printed({record}), HasSubstr("Z\xC3\xBCrich?[2J\n"));
}

TEST(SessionList, SaysWhyASessionTakesNobody) {
    SessionRecord record = Friday();
    EXPECT_EQ(WhyClosed(record), "");
    record.CurrentPlayers = 15;
    EXPECT_EQ(WhyClosed(record), "");
    record.CurrentPlayers = 16;
    EXPECT_THAT(WhyClosed(record), HasSubstr("full"));
    EXPECT_THAT(Printed({record}), HasSubstr("  closed       it is full"));
    record = Friday();
    for (const std::uint32_t flag : {0x1u, 0x20u}) {
        record.Flags = 0x44 | flag;
        EXPECT_THAT(WhyClosed(record), HasSubstr("lets nobody in"));
    }
    for (const std::uint32_t flag : {0x200u, 0x400u}) {
        record.Flags = 0x44 | flag;
        EXPECT_THAT(WhyClosed(record), HasSubstr("password"));
    }
}

TEST(SessionList, GoesIntoASentence) {
    SessionRecord other = Friday();
    other.SessionName = "Saturday";
    other.Host = "10.0.0.6:2300";
    EXPECT_EQ(SessionsInWords({Friday()}), "is \"Friday\" (3/16) at 10.0.0.5:2300");
    EXPECT_EQ(SessionsInWords({Friday(), other, other}),
              "are \"Friday\" (3/16) at 10.0.0.5:2300, \"Saturday\" (3/16) at 10.0.0.6:2300 and \"Saturday\" "
              "(3/16) at 10.0.0.6:2300");
}

}  // namespace
}  // namespace corvenna
