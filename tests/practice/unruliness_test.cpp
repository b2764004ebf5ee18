#include "practice/unruliness.h"

#include <gmock/gmock.h>

#include "practice/practice_session.h"
#include "support/has_form.h"

namespace corvenna {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;

/// A bad pilot who has been admitted at time 0.
class UnrulinessTest : public testing::Test {
  protected:
    UnrulinessTest() {
        Pilot.Step(0ms);
        Host.Step();
        Pilot.Step(0ms);
        Controller.Received();
    }

    static PilotScript Script() {
        PilotScript script;
        script.Name = "N1";
        script.Start = {47, -122, 400, 90, 0};
        script.Stays = true;
        return script;
    }

    double ToldLatitude(std::chrono::milliseconds now) {
        Pilot.Step(now);
        auto letters = Controller.Received(MessageId::Position);
        return letters.empty() ? 0
                               : ReadPosition(letters.back().Message, MessageId::Position).LatitudeDegrees();
    }

    MemoryNetwork Network;
    TestHost Host{Network, 8};
    HandPlayed Controller{Network, "KTST_Controller"};
    PracticePilot Pilot{std::make_unique<MemorySession>(Network), TestSessionName, "KTST", Script()};
    Unruliness Bad{7};
};

TEST_F(UnrulinessTest, TypesADigitThatNobodyHasAskedFor) {
    Bad.Commit(Unruliness::Misdeed::WrongDigit, Pilot, 1s);
    EXPECT_THAT(Controller.Texts(), ElementsAre(HasForm("[0-9]")));
}

TEST_F(UnrulinessTest, ChatsNonsense) {
    Bad.Commit(Unruliness::Misdeed::Nonsense, Pilot, 1s);
    EXPECT_THAT(Controller.Texts(), testing::SizeIs(1));
}

TEST_F(UnrulinessTest, ClosesTheServicesWhereThatIsOffered) {
    Bad.Commit(Unruliness::Misdeed::CloseServices, Pilot, 1s);
    EXPECT_THAT(Controller.Texts(), IsEmpty());
    Controller.Send(Controller.IdOf("N1"),
                    WriteChat("N1. Choose one of the following options: 1-Tune X 2-Close ATC Services"));
    Pilot.Step(1s);
    Bad.Commit(Unruliness::Misdeed::CloseServices, Pilot, 1s);
    EXPECT_THAT(Controller.Texts(), ElementsAre("2"));
}

TEST_F(UnrulinessTest, IsSomewhereElseForAMoment) {
    Bad.Commit(Unruliness::Misdeed::Jump, Pilot, 1s);
    EXPECT_NEAR(ToldLatitude(1s), 46, 1e-4);
    Bad.Step(Pilot, 1s + Unruliness::JumpTime);
    EXPECT_NEAR(ToldLatitude(1s + Unruliness::JumpTime), 47, 1e-4);
}

TEST_F(UnrulinessTest, FreezesForAWhile) {
    Bad.Commit(Unruliness::Misdeed::Silence, Pilot, 1s);
    EXPECT_TRUE(Bad.Freezes(1s));
    EXPECT_TRUE(Bad.Freezes(1s + Unruliness::SilenceTime - 1ms));
    EXPECT_FALSE(Bad.Freezes(1s + Unruliness::SilenceTime));
}

TEST_F(UnrulinessTest, VanishesForGood) {
    Bad.Commit(Unruliness::Misdeed::Vanish, Pilot, 1s);
    EXPECT_TRUE(Pilot.Gone());
    EXPECT_FALSE(Bad.Returns());
}

TEST_F(UnrulinessTest, LeavesAndComesAgain) {
    Bad.Commit(Unruliness::Misdeed::Reconnect, Pilot, 1s);
    EXPECT_TRUE(Pilot.Gone());
    EXPECT_TRUE(Bad.Returns());
}

TEST_F(UnrulinessTest, TheSameSeedGivesTheSameMisdeeds) {
    const auto talk = [&](std::uint32_t seed) {
        Unruliness bad(seed);
        std::vector<std::string> said;
        PracticePilot pilot(std::make_unique<MemorySession>(Network), TestSessionName, "KTST",
                            [] {
                                PilotScript script = Script();
                                script.Name = "N2";
                                return script;
                            }(),
                            {.Heard = {}, .Said = [&](auto, auto text) { said.emplace_back(text); }});
        for (auto now = 0ms; now < 1h; now += 1s) {
            bad.Step(pilot, now);
            if (pilot.Gone()) break;
            pilot.Step(now);
            Host.Step();
        }
        pilot.Leave();
        return said;
    };
    const auto first = talk(3);
    EXPECT_THAT(first, testing::Not(IsEmpty()));
    EXPECT_EQ(talk(3), first);
    EXPECT_NE(talk(4), first);
}

TEST(UnrulinessOfNumbersTest, EveryThirdPilotIsABadOne) {
    EXPECT_FALSE(Unruliness::IsOf(0));
    EXPECT_FALSE(Unruliness::IsOf(1));
    EXPECT_TRUE(Unruliness::IsOf(2));
    EXPECT_TRUE(Unruliness::IsOf(5));
}

}  // namespace
}  // namespace corvenna
