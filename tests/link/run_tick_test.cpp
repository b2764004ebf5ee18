#include "link/run_tick.h"

#include <gmock/gmock.h>

#include <stdexcept>
#include <string>
#include <vector>

#include "station/spare_list.h"

namespace corvenna {
namespace {

using testing::ElementsAre;

TEST(RunTick, AnEmptiedQueueCostsOneLine) {
    std::vector<std::string> told;
    RunTick([] { throw EmptyListError("the takeoff queue is empty"); },
            [&](std::string_view words) { told.emplace_back(words); });
    EXPECT_THAT(told, ElementsAre("The rest of this tick was skipped: the takeoff queue is empty."));
}

TEST(RunTick, AnyOtherErrorGoesOn) {
    EXPECT_THROW(RunTick([] { throw std::runtime_error("x"); }, [](std::string_view) { FAIL(); }),
                 std::runtime_error);
}

TEST(RunTick, AGoodTickSaysNothing) {
    bool ran = false;
    RunTick([&] { ran = true; }, [](std::string_view) { FAIL(); });
    EXPECT_TRUE(ran);
}

}  // namespace
}  // namespace corvenna
