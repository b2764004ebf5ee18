// Names that differ in case only, full disks and permissions: what a posix system has and Windows has not, or
// has otherwise.

#include <gmock/gmock.h>
#include <sys/resource.h>

#include <csignal>

#include "world/errors.h"
#include "world/files.h"
#include "world/ordinary_user.h"
#include "world/temp_folder.h"

namespace corvenna {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

std::string Found(const TempFolder& folder, std::string_view path) {
    const auto found = FindPath(folder.Path() + "/" + std::string(path));
    return found ? std::filesystem::relative(*found, folder.Path()).string() : "";
}

TEST(FindPath, TellsTheNamesAsTheyAreOnDisk) {
    TempFolder folder;
    folder.Write("Scenery/World/Scenery/AP.bgl", "");
    EXPECT_EQ(Found(folder, "scenery\\world/SCENERY\\ap.BGL"), "Scenery/World/Scenery/AP.bgl");
}

TEST(FindPath, PrefersTheExactNameAndThenTheOneThatSortsFirst) {
    TempFolder folder;
    folder.Write("Name", "");
    folder.Write("nAme", "");
    EXPECT_EQ(Found(folder, "Name"), "Name");
    EXPECT_EQ(Found(folder, "nAme"), "nAme");
    EXPECT_EQ(Found(folder, "name"), "Name");
}

TEST(FindPath, GoesOnLookingWhereAnExactNameLeadsNowhere) {
    TempFolder folder;
    folder.Write("one/other", "");
    folder.Write("ONE/two", "");
    EXPECT_EQ(Found(folder, "one/two"), "ONE/two");
}

TEST(FindPath, IsNotMisledByAFolderWithTheNameOfAFile) {
    TempFolder folder;
    std::filesystem::create_directory(folder.Path("name"));
    folder.Write("NAME", "");
    EXPECT_EQ(FindPlainFile(folder.Path("name")), folder.Path("NAME"));
    EXPECT_EQ(FindFolder(folder.Path("NAME")), folder.Path("name"));
}

TEST(FindPath, LetsBytesAbove127DifferInCase) {
    TempFolder folder;
    folder.Write("M\xC3\xBC", "");
    EXPECT_EQ(Found(folder, "m\xC3\xBC"), "M\xC3\xBC");
    EXPECT_EQ(Found(folder, "m\xC3\x9C"), "");
}

TEST(ListBglFiles, PutsNamesThatDifferInCaseOnlyInTheOrderOfTheirBytes) {
    TempFolder folder;
    for (const char* const name : {"c.Bgl", "b.bgl", "C.bgl"}) folder.Write(name, "");
    EXPECT_THAT(ListBglFiles(folder.Path()), ElementsAre("b.bgl", "C.bgl", "c.Bgl"));
}

/// The system refuses to let files grow beyond a size, as it does on a full disk.
class SmallDisk {
  public:
    explicit SmallDisk(rlim_t bytes) {
        handler_ = std::signal(SIGXFSZ, SIG_IGN);
        getrlimit(RLIMIT_FSIZE, &before_);
        rlimit small = before_;
        small.rlim_cur = bytes;
        setrlimit(RLIMIT_FSIZE, &small);
    }
    ~SmallDisk() {
        setrlimit(RLIMIT_FSIZE, &before_);
        std::signal(SIGXFSZ, handler_);
    }

  private:
    rlimit before_{};
    void (*handler_)(int);
};

TEST(ReplaceFile, OnAFullDiskTheOldFileStaysAndTheMessageSaysSo) {
    TempFolder folder;
    folder.Write("file", "old");
    const std::string content(300000, 'x');
    std::string what;
    {
        const SmallDisk disk(100000);
        what = WhatIsThrown<FileError>([&] { ReplaceFile(folder.Path("file"), {content, content}); });
    }
    EXPECT_THAT(what, HasSubstr("file: can't be written: "));
    EXPECT_THAT(what, HasSubstr("nothing was changed"));
    EXPECT_EQ(folder.Read("file"), "old");
    EXPECT_THAT(folder.Names(), ElementsAre("file"));
}

// ---- Without permission

TEST(Permission, AFolderThatMustNotBeListedIsNamedWithTheReason) {
    TempFolder folder;
    folder.Write("locked/a.bgl", "");
    std::filesystem::permissions(folder.Path("locked"), std::filesystem::perms::none);
    const OrdinaryUser user;
    EXPECT_THAT(WhatIsThrown<FileError>([&] { ListBglFiles(folder.Path("locked")); }),
                HasSubstr("locked: can't be listed: Permission denied"));
    EXPECT_TRUE(FindFolder(folder.Path("LOCKED")).has_value());
    EXPECT_FALSE(FindPath(folder.Path("locked/a.bgl")).has_value());
    EXPECT_FALSE(FindPath(folder.Path("locked/A.BGL")).has_value());
}

TEST(Permission, AFileThatMustNotBeReadIsNamedWithTheReason) {
    TempFolder folder;
    folder.Write("file", "secret");
    std::filesystem::permissions(folder.Path("file"), std::filesystem::perms::none);
    const OrdinaryUser user;
    EXPECT_THAT(WhatIsThrown<FileError>([&] { ReadWholeFile(folder.Path("file")); }),
                HasSubstr("file: can't be opened: Permission denied"));
}

TEST(Permission, AFileInAFolderThatMustNotBeChangedStaysAsItIs) {
    using std::filesystem::perms;
    TempFolder folder;
    folder.Write("fixed/file", "old");
    std::filesystem::permissions(folder.Path("fixed"), perms::owner_read | perms::owner_exec |
                                                           perms::others_read | perms::others_exec);
    {
        const OrdinaryUser user;
        EXPECT_THAT(WhatIsThrown<FileError>([&] { ReplaceFile(folder.Path("fixed/file"), {"new"}); }),
                    HasSubstr("file: can't be written: Permission denied"));
    }
    EXPECT_EQ(folder.Read("fixed/file"), "old");
    std::filesystem::permissions(folder.Path("fixed"), perms::owner_all);
}

}  // namespace
}  // namespace corvenna
