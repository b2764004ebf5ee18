#include "station/spare_list.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <string>

#include "support/plain_lists.h"

namespace corvenna {
namespace {

using Numbers = SpareList<int>;  // 0 is the blank element

Numbers ListOf(std::initializer_list<int> elements) {
    Numbers list;
    for (int element : elements) list.Add(element);
    return list;
}

auto Is(int wanted) {
    return [wanted](int element) { return element == wanted; };
}

auto IsOneOf(const std::vector<int>& wanted) {
    return [wanted](int element) { return std::find(wanted.begin(), wanted.end(), element) != wanted.end(); };
}

TEST(SpareList, StartsWithOneBlankElementAndCount0) {
    const Numbers list;
    EXPECT_EQ(list.Count(), 0);
    EXPECT_EQ(AllOf(list), (std::vector{0}));
}

TEST(SpareList, ElementNCanBeReadWithCountNAndIsBlank) {
    const Numbers list = ListOf({7, 8});
    EXPECT_EQ(list.Count(), 2);
    EXPECT_EQ(list[2], 0);
    EXPECT_TRUE(list.Holds(2));
    EXPECT_FALSE(list.Holds(3));
    EXPECT_FALSE(list.Holds(-1));
}

TEST(SpareList, TheValidElementsLeaveTheSpareOneOut) {
    Numbers list = ListOf({7, 8});
    EXPECT_EQ(list.Valid().size(), 2u);
    EXPECT_EQ(list.Valid()[1], 8);
}

TEST(SpareList, ClearGoesBackToOneBlankElement) {
    Numbers list = ListOf({7, 8});
    list[2] = 9;
    list.Clear();
    EXPECT_EQ(AllOf(list), (std::vector{0}));
}

TEST(SpareList, TheCountIs16BitAndAnOverflowIsAnError) {
    Numbers list;
    for (int i = 1; i <= 32767; ++i) list.Add(i);
    EXPECT_EQ(list.Count(), 32767);
    EXPECT_THROW(list.Add(32768), std::overflow_error);
    EXPECT_EQ(list.Count(), 32767);
    EXPECT_EQ(list[32766], 32767);
    EXPECT_EQ(list[32767], 0);
}

TEST(SpareList, RemovingTakesOutTheElementThatWasHit) {
    Numbers list = ListOf({1, 2, 3});
    list.RemoveLastHit(Is(2), "");
    EXPECT_EQ(AllOf(list), (std::vector{1, 3, 0}));
}

TEST(SpareList, RemovingWithoutAHitCostsTheFirstElementItsPlace) {
    Numbers list = ListOf({1, 2, 3});
    list.RemoveLastHit(Is(9), "");
    EXPECT_EQ(AllOf(list), (std::vector{2, 3, 0}));
}

TEST(SpareList, OfSeveralHitsEachIsBlankedAndTheLastIsTakenOut) {
    Numbers list = ListOf({5, 1, 5, 2});
    list.RemoveLastHit(Is(5), "");
    EXPECT_EQ(AllOf(list), (std::vector{0, 1, 2, 0}));
}

TEST(SpareList, TheSpareElementIsNoHitOfARemoval) {
    Numbers list = ListOf({1, 2});
    list[2] = 5;
    list.RemoveLastHit(Is(5), "");
    EXPECT_EQ(AllOf(list), (std::vector{2, 5}));
}

TEST(SpareList, RemovingFromAnEmptyListThrowsAndLeavesOneBlankElement) {
    Numbers list;
    list[0] = 5;
    EXPECT_THROW(list.RemoveLastHit(Is(5), "empty"), EmptyListError);
    EXPECT_EQ(AllOf(list), (std::vector{0}));
    list.Add(6);
    EXPECT_EQ(AllOf(list), (std::vector{6, 0}));
}

TEST(SpareList, TheErrorOfAnEmptyListBearsItsWords) {
    Numbers list;
    try {
        list.RemoveLastHit(Is(1), "the queue is empty");
        FAIL() << "nothing was thrown";
    } catch (const EmptyListError& error) {
        EXPECT_STREQ(error.what(), "the queue is empty");
    }
}

TEST(SpareList, RandomRemovalsEqualThePlainOnes) {
    for (unsigned seed = 1; seed <= 2000; ++seed) {
        SCOPED_TRACE(testing::Message() << "seed " << seed);
        std::mt19937 random(seed);
        Numbers list;
        PlainList<int> plain;
        for (int step = 0; step < 40; ++step) {
            const int element = static_cast<int>(random() % 4);  // duplicates, and blanks
            if (random() % 2 == 0) {
                list.Add(element);
                plain.Add(element);
            } else if (plain.Remove(Is(element))) {
                list.RemoveLastHit(Is(element), "");
            } else {
                EXPECT_THROW(list.RemoveLastHit(Is(element), ""), EmptyListError);
            }
            ASSERT_EQ(AllOf(list), plain.Elements);
        }
    }
}

// ---- The purge

TEST(PurgeWalk, WhenEverybodyStaysNothingChanges) {
    Numbers list = ListOf({1, 2, 3});
    list.PurgeWalk(IsOneOf({1, 2, 3}));
    EXPECT_EQ(AllOf(list), (std::vector{1, 2, 3, 0}));
}

TEST(PurgeWalk, OfTwoTheFirstGoesTheSecondMovesUpUnseenAndIsCutOffWithTheBlankOne) {
    Numbers list = ListOf({1, 2});
    std::vector<int> offered;
    list.PurgeWalk([&](int element) {
        offered.push_back(element);
        return element == 2;
    });
    EXPECT_EQ(offered, (std::vector{1, 0}));
    EXPECT_EQ(AllOf(list), (std::vector{2}));  // he stands outside the count, as the spare element
    EXPECT_EQ(list.Count(), 0);
}

TEST(PurgeWalk, TheLastOfThreeGoesWithoutHarmToTheOthers) {
    Numbers list = ListOf({1, 2, 3});
    list.PurgeWalk(IsOneOf({1, 2}));
    EXPECT_EQ(AllOf(list), (std::vector{1, 2, 0}));
}

TEST(PurgeWalk, AnElementThatMovedUpWaitsForTheNextPurge) {
    Numbers list = ListOf({1, 2, 3, 4, 5, 6});
    list.PurgeWalk(IsOneOf({3, 4, 5, 6}));
    EXPECT_EQ(AllOf(list), (std::vector{2, 3, 4, 5, 6}));  // 2 has moved to 1's place, 6 is the spare one
    EXPECT_EQ(list.Count(), 4);
}

TEST(PurgeWalk, BeyondTheArrayItOffersBlankElements) {
    Numbers list = ListOf({1, 9, 2, 9, 9});
    std::vector<int> offered;
    list.PurgeWalk([&](int element) {
        offered.push_back(element);
        return element == 9;
    });
    EXPECT_EQ(offered, (std::vector{1, 2, 9, 0, 0}));
    EXPECT_EQ(AllOf(list), (std::vector{9, 9}));
    EXPECT_EQ(list.Count(), 1);
}

TEST(PurgeWalk, ASpareElementThatIsNotBlankCanBeFoundPresent) {
    Numbers list = ListOf({1, 2, 3});
    list.PurgeWalk(IsOneOf({2, 3}));  // 3 becomes the spare element
    ASSERT_EQ(AllOf(list), (std::vector{2, 3}));
    list.PurgeWalk(IsOneOf({3}));
    EXPECT_EQ(AllOf(list), (std::vector{3}));
}

TEST(PurgeWalk, OfAnEmptyListOffersNothing) {
    Numbers list;
    list.PurgeWalk([](int) -> bool { throw std::logic_error("offered"); });
    EXPECT_EQ(AllOf(list), (std::vector{0}));
}

/// Each purge of a list must offer the same elements in the same order as the plain one, and leave the same
/// array behind. present says for each number whether it stays, and at place 0 whether blank elements do.
void PurgeBoth(Numbers& list, PlainList<int>& plain, const std::vector<bool>& present) {
    const auto stays = [&](int element) { return present[static_cast<std::size_t>(element)]; };
    std::vector<int> offered;
    std::vector<int> plainOffered;
    list.PurgeWalk([&](int element) {
        offered.push_back(element);
        return stays(element);
    });
    plain.Purge(
        [&](int element) {
            plainOffered.push_back(element);
            return stays(element);
        },
        [](int) {});
    ASSERT_EQ(offered, plainOffered);
    ASSERT_EQ(AllOf(list), plain.Elements);
    ASSERT_EQ(list.Count(), plain.Count);
}

TEST(PurgeWalk, EqualsThePlainWalkForEveryPresencePatternOfUpToTenElements) {
    for (int count = 0; count <= 10; ++count) {
        for (unsigned pattern = 0; pattern < (2u << count); ++pattern) {
            SCOPED_TRACE(testing::Message() << count << " elements, pattern " << pattern);
            Numbers list;
            PlainList<int> plain;
            std::vector<bool> present;
            for (int i = 0; i <= count; ++i) present.push_back((pattern >> i & 1) != 0);  // bit 0: blank ones
            for (int i = 1; i <= count; ++i) {
                list.Add(i);
                plain.Add(i);
            }
            PurgeBoth(list, plain, present);
            PurgeBoth(list, plain, present);
            if (HasFatalFailure()) return;
        }
    }
}

TEST(PurgeWalk, EqualsThePlainWalkOnRandomListsPurgedAgainAndAgain) {
    for (unsigned seed = 1; seed <= 5000; ++seed) {
        SCOPED_TRACE(testing::Message() << "seed " << seed);
        std::mt19937 random(seed);
        const auto gonePerHundred = random() % 100;
        Numbers list;
        PlainList<int> plain;
        int last = 0;
        for (int purge = 0; purge < 6; ++purge) {
            for (auto newcomers = random() % 12; newcomers > 0; --newcomers) {
                list.Add(++last);
                plain.Add(last);
            }
            std::vector<bool> present;
            for (int i = 0; i <= last; ++i) present.push_back(random() % 100 >= gonePerHundred);
            present[0] = random() % 8 == 0;
            PurgeBoth(list, plain, present);
            if (HasFatalFailure()) return;
        }
    }
}

TEST(SpareList, TheRevisionTellsRemovalsAndChangesButNotAdditions) {
    Numbers list;
    auto before = list.Revision();
    const auto changed = [&] { return std::exchange(before, list.Revision()) != list.Revision(); };
    list.Add(1);
    list.Add(2);
    EXPECT_FALSE(changed());
    list.RemoveLastHit(Is(1), "");
    EXPECT_TRUE(changed());
    list.PurgeWalk(Is(2));
    EXPECT_TRUE(changed());
    list.MarkChanged();
    EXPECT_TRUE(changed());
    list.Clear();
    EXPECT_TRUE(changed());
}

}  // namespace
}  // namespace corvenna
