#include <gmock/gmock.h>

#include "support/test_field.h"

namespace corvenna {
namespace {

TEST(OpeningDialogue, ANewPlayerIsGreetedOnceAndCanAskForTheFlightType) {
    TestField field;
    field.Enters("N12345");
    field.Tick();
    EXPECT_EQ(field.LastHeard("N12345"),
              "N12345. Welcome to Corvenna v1.3 (by Dravik). Want to use our ATC services at Test Field?: "
              "1-Use ATC services");
    field.Tick();
    EXPECT_EQ(field.LastHeard("N12345"), "");

    field.Types("N12345", "KTST,1");
    field.Tick();
    EXPECT_EQ(field.LastHeard("N12345"),
              "N12345. What type of flight you want to fly?: 1-VFR 2-IFR 3-Close ATC Services");
}

}  // namespace
}  // namespace corvenna
