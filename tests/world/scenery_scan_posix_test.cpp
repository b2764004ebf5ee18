#include <gmock/gmock.h>

#include "world/bgl_builder.h"
#include "world/ordinary_user.h"
#include "world/scenery_scan.h"
#include "world/temp_folder.h"

namespace corvenna {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

struct Notes final : ScanObserver {
    void EntersArea(std::string_view) override {}
    void FilesDone(std::int32_t) override {}
    void Skipped(std::string_view path, std::string_view reason) override {
        Skips.push_back(std::string(path) + ": " + std::string(reason));
    }
    std::vector<std::string> Skips;
};

TEST(SceneryScan, AFolderOrFileWithoutPermissionIsSkippedAndTheScanGoesOn) {
    using std::filesystem::perms;
    TempFolder sim;
    const auto field = BglBuilder().First("Field", AirportBuilder().Position(47, -122).Ident("KTST")).Get();
    for (const char* const name : {"a/scenery/1.bgl", "b/scenery/2.bgl", "b/scenery/3.bgl"}) {
        sim.Write(name, field);
    }
    sim.Write("scenery.cfg", "[Area.1]\r\nTitle=a\r\nLocal=a\r\n[Area.2]\r\nTitle=b\r\nLocal=b\r\n");
    std::filesystem::permissions(sim.Path("a/scenery"), perms::none);
    std::filesystem::permissions(sim.Path("b/scenery/2.bgl"), perms::none);
    Station station;
    Notes notes;
    {
        const OrdinaryUser user;
        SceneryScan scan(station, sim.Path(), notes);
        while (scan.Tick()) {
        }
        EXPECT_EQ(scan.Airports().Count(), 1);
    }
    EXPECT_THAT(notes.Skips, ElementsAre(HasSubstr("a/scenery: can't be listed: Permission denied"),
                                         HasSubstr("2.bgl: can't be opened: Permission denied")));
    std::filesystem::permissions(sim.Path("a/scenery"), perms::owner_all);
}

}  // namespace
}  // namespace corvenna
