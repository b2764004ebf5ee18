#include "world/files.h"

#include <gmock/gmock.h>

#ifndef _WIN32
#include <sys/resource.h>

#include <csignal>

#include "world/ordinary_user.h"
#endif

#include "world/errors.h"
#include "world/temp_folder.h"

namespace corvenna {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

std::string Found(const TempFolder& folder, std::string_view path) {
    const auto found = FindPath(folder.Path() + "/" + std::string(path));
    return found ? std::filesystem::relative(*found, folder.Path()).string() : "";
}

TEST(FindPath, TakesBothSeparatorsAndAnyCase) {
    TempFolder folder;
    folder.Write("Scenery/World/Scenery/AP.bgl", "");
    EXPECT_EQ(Found(folder, "Scenery/World/Scenery/AP.bgl"), "Scenery/World/Scenery/AP.bgl");
    EXPECT_EQ(Found(folder, "scenery\\world/SCENERY\\ap.BGL"), "Scenery/World/Scenery/AP.bgl");
    EXPECT_EQ(Found(folder, "scenery\\\\world\\"), "Scenery/World");
    EXPECT_EQ(Found(folder, "scenery/world/ap.bgl"), "");
    EXPECT_EQ(Found(folder, "scenery/world/scenery/ap.bgl/more"), "");
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

TEST(FindPath, TellsFoldersAndPlainFilesApart) {
    TempFolder folder;
    folder.Write("a/b", "");
    EXPECT_TRUE(FindFolder(folder.Path("A")).has_value());
    EXPECT_FALSE(FindFolder(folder.Path("A/B")).has_value());
    EXPECT_TRUE(FindPlainFile(folder.Path("A/B")).has_value());
    EXPECT_FALSE(FindPlainFile(folder.Path("A")).has_value());
    EXPECT_FALSE(FindPath("").has_value());
}

TEST(FindPath, LetsBytesAbove127DifferInCase) {
    TempFolder folder;
    folder.Write("M\xC3\xBC", "");
    EXPECT_EQ(Found(folder, "m\xC3\xBC"), "M\xC3\xBC");
    EXPECT_EQ(Found(folder, "m\xC3\x9C"), "");
}

TEST(ListBglFiles, ListsPlainFilesByTheEndOfTheirNameInOrderOfLowerCasedBytes) {
    TempFolder folder;
    for (const char* const name :
         {"b.bgl", "A.BGL", "c.Bgl", "_.bgl", "x.bglx", "bgl", "z.txt", ".bgl", "C.bgl"}) {
        folder.Write(name, "");
    }
    std::filesystem::create_directory(folder.Path("d.bgl"));
    EXPECT_THAT(ListBglFiles(folder.Path()),
                ElementsAre(".bgl", "_.bgl", "A.BGL", "b.bgl", "C.bgl", "c.Bgl"));
}

TEST(ListBglFiles, AFolderThatIsNotThereIsNamed) {
    TempFolder folder;
    EXPECT_THAT(WhatIsThrown<FileError>([&] { ListBglFiles(folder.Path("gone")); }),
                HasSubstr("gone: can't be listed: "));
}

TEST(ReadWholeFile, ReadsAnyBytesAndNoFolder) {
    TempFolder folder;
    std::string content(200000, 'x');
    content[70000] = '\0';
    content[70001] = '\r';
    folder.Write("File", content);
    EXPECT_EQ(ReadWholeFile(folder.Path("fILE")), content);
    EXPECT_THAT(WhatIsThrown<FileError>([&] { ReadWholeFile(folder.Path()); }), HasSubstr("is a folder"));
}

TEST(ReplaceFile, WritesThePiecesAndLeavesNothingElse) {
    TempFolder folder;
    folder.Write("file", "an older and longer content");
    ReplaceFile(folder.Path("file"), {"new ", "", "content"});
    EXPECT_EQ(folder.Read("file"), "new content");
    EXPECT_THAT(folder.Names(), ElementsAre("file"));
}

TEST(PathOfUtf8, LeadsToAFileWithAnUmlautWhoseBytesLeadThereToo) {
    TempFolder folder;
    const std::filesystem::path path = PathOf(folder.Path()) / PathOfUtf8(
                                                                   "Pr\xC3\xBC"
                                                                   "fung");
    ReplaceFile(BytesOf(path), {"x"});
    EXPECT_TRUE(std::filesystem::exists(path));
    EXPECT_EQ(path.filename().u16string(), u"Pr\u00FCfung");
    EXPECT_EQ(PathOf(BytesOf(path)), path);
    EXPECT_EQ(ReadWholeFile(BytesOf(path)), "x");
}

TEST(ReplaceFile, WhereThereIsNoFolderItFailsByName) {
    TempFolder folder;
    EXPECT_THAT(WhatIsThrown<FileError>([&] { ReplaceFile(folder.Path("no/file"), {"x"}); }),
                HasSubstr("no/file: can't be written: "));
}

TEST(ReplaceFile, AFolderInTheFilesPlaceIsAFailureThatLeavesNothing) {
    TempFolder folder;
    std::filesystem::create_directories(folder.Path("file/inner"));
    EXPECT_THROW(ReplaceFile(folder.Path("file"), {"x"}), FileError);
    EXPECT_THAT(folder.Names(), ElementsAre("file"));
}

#ifndef _WIN32
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
#endif

}  // namespace
}  // namespace corvenna
