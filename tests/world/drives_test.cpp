#include "world/drives.h"

#include <gmock/gmock.h>

#include <algorithm>

namespace corvenna {
namespace {

#ifdef _WIN32
TEST(ListDrives, EachHasItsLetterAndItsNameBehindABlankInTheirOrder) {
    const std::vector<std::string> drives = ListDrives();
    ASSERT_FALSE(drives.empty());
    EXPECT_TRUE(std::is_sorted(drives.begin(), drives.end()));
    for (const std::string& drive : drives) {
        EXPECT_TRUE(drive[0] >= 'a' && drive[0] <= 'z') << drive;
        EXPECT_EQ(drive[1], ':');
        EXPECT_TRUE(drive.size() == 2 || (drive.size() > 3 && drive[2] == ' ')) << drive;
    }
}
#else
TEST(ListDrives, WithoutLettersThereAreNone) { EXPECT_THAT(ListDrives(), testing::IsEmpty()); }
#endif

}  // namespace
}  // namespace corvenna
