#include "link/player_directory.h"

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

namespace corvenna {
namespace {

PlayerRecord Record(std::int32_t id, std::string name) {
    PlayerRecord record;
    record.Id = id;
    record.Name = std::move(name);
    return record;
}

using Places = std::vector<std::int32_t>;

Places FullMatches(PlayerDirectory& directory, const Station& s, std::int32_t id, std::string_view name) {
    Places places;
    for (auto place = directory.FirstFullMatch(s, id, name); place != PlayerDirectory::None;
         place = directory.NextFullMatch(s, place)) {
        places.push_back(place);
    }
    return places;
}

Places NameMatches(PlayerDirectory& directory, const Station& s, std::string_view name) {
    Places places;
    for (auto place = directory.FirstNameMatch(s, name); place != PlayerDirectory::None;
         place = directory.NextNameMatch(place)) {
        places.push_back(place);
    }
    return places;
}

/// The plain walk over Players.
template <class Fits>
Places Walk(const Station& s, Fits fits) {
    Places places;
    for (std::int32_t i = 0; i < s.PlayerCount(); ++i) {
        if (fits(s.Players[i])) places.push_back(i);
    }
    return places;
}

TEST(PlayerDirectory, OfAnEmptyListFindsNobody) {
    Station s;
    PlayerDirectory directory;
    EXPECT_EQ(directory.FirstFullMatch(s, 0, ""), PlayerDirectory::None);  // the spare element is no record
    EXPECT_EQ(directory.FirstNameMatch(s, ""), PlayerDirectory::None);
}

TEST(PlayerDirectory, AFullMatchWantsBothIdAndName) {
    Station s;
    PlayerDirectory directory;
    s.Players.Add(Record(2, "N1"));
    EXPECT_EQ(directory.FirstFullMatch(s, 2, "N1"), 0);
    EXPECT_EQ(directory.FirstFullMatch(s, 2, "n1"), PlayerDirectory::None);
    EXPECT_EQ(directory.FirstFullMatch(s, 3, "N1"), PlayerDirectory::None);
}

TEST(PlayerDirectory, ANameMatchAsksForTheNameAlone) {
    Station s;
    PlayerDirectory directory;
    for (std::int32_t id : {2, 3}) s.Players.Add(Record(id, "TWIN"));
    s.Players.Add(Record(4, "N4"));
    s.Players.Add(Record(5, "TWIN"));
    EXPECT_EQ(NameMatches(directory, s, "TWIN"), (Places{0, 1, 3}));
    EXPECT_EQ(FullMatches(directory, s, 3, "TWIN"), (Places{1}));
}

TEST(PlayerDirectory, RecordsAddedSinceAreFound) {
    Station s;
    PlayerDirectory directory;
    s.Players.Add(Record(2, "N1"));
    EXPECT_EQ(directory.FirstFullMatch(s, 3, "N2"), PlayerDirectory::None);
    s.Players.Add(Record(3, "N2"));
    EXPECT_EQ(directory.FirstFullMatch(s, 3, "N2"), 1);
}

TEST(PlayerDirectory, RecordsRemovedOrMovedAreFollowed) {
    Station s;
    PlayerDirectory directory;
    for (std::int32_t id : {2, 3, 4}) s.Players.Add(Record(id, "N" + std::to_string(id)));
    EXPECT_EQ(directory.FirstNameMatch(s, "N4"), 2);
    s.Players.PurgeWalk([](const PlayerRecord& record) { return record.Id != 4; });
    EXPECT_EQ(directory.FirstNameMatch(s, "N4"), PlayerDirectory::None);
    EXPECT_EQ(directory.FirstNameMatch(s, "N3"), 1);
    s.Players.Clear();
    EXPECT_EQ(directory.FirstNameMatch(s, "N2"), PlayerDirectory::None);
}

TEST(PlayerDirectory, ANameWrittenFromOutsideIsFoundOnceTold) {
    Station s;
    PlayerDirectory directory;
    s.Players.Add(Record(2, "N1"));
    EXPECT_EQ(directory.FirstNameMatch(s, "N1"), 0);
    s.Players[0].Name = "N9";
    s.Players.MarkChanged();
    EXPECT_EQ(directory.FirstNameMatch(s, "N1"), PlayerDirectory::None);
    EXPECT_EQ(directory.FirstNameMatch(s, "N9"), 0);
}

TEST(PlayerDirectory, AnswersAsAPlainWalkWouldWhateverHappensToPlayers) {
    for (unsigned seed = 1; seed <= 400; ++seed) {
        SCOPED_TRACE(testing::Message() << "seed " << seed);
        std::mt19937 random(seed);
        const auto anyId = [&] { return static_cast<std::int32_t>(random() % 6); };
        const auto anyName = [&] { return std::string(random() % 4, 'N'); };  // empty names too
        Station s;
        PlayerDirectory directory;
        for (int step = 0; step < 120; ++step) {
            const auto what = random() % 12;
            if (what < 6) {
                s.Players.Add(Record(anyId(), anyName()));
            } else if (what == 6) {
                s.Players.PurgeWalk([&](const PlayerRecord&) { return random() % 3 != 0; });
            } else if (what < 9 && s.PlayerCount() > 0) {
                const auto count = static_cast<unsigned>(s.PlayerCount());
                s.Players[static_cast<std::int32_t>(random() % count)] = Record(anyId(), anyName());
                s.Players.MarkChanged();
            } else if (what == 9 && random() % 8 == 0) {
                s.Players.Clear();
            }
            if (random() % 3 == 0) continue;  // several changes between two questions
            const auto id = anyId();
            const auto name = anyName();
            ASSERT_EQ(FullMatches(directory, s, id, name),
                      Walk(s, [&](const PlayerRecord& r) { return r.Id == id && r.Name == name; }));
            ASSERT_EQ(NameMatches(directory, s, name),
                      Walk(s, [&](const PlayerRecord& r) { return r.Name == name; }));
        }
    }
}

}  // namespace
}  // namespace corvenna
