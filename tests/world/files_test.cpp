#include "world/files.h"

#include <gmock/gmock.h>

#include "world/errors.h"
#include "world/temp_folder.h"

namespace corvenna {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

/// Whether a path in the folder leads to what is there under a name.
bool LeadsTo(const TempFolder& folder, std::string_view path, std::string_view name) {
    const auto found = FindPath(folder.Path() + "/" + std::string(path));
    return found && std::filesystem::equivalent(*found, folder.Path(name));
}

TEST(FindPath, TakesBothSeparatorsAndAnyCase) {
    TempFolder folder;
    folder.Write("Scenery/World/Scenery/AP.bgl", "");
    constexpr std::string_view file = "Scenery/World/Scenery/AP.bgl";
    EXPECT_TRUE(LeadsTo(folder, file, file));
    EXPECT_TRUE(LeadsTo(folder, "scenery\\world/SCENERY\\ap.BGL", file));
    EXPECT_TRUE(FindFolder(folder.Path() + "/scenery\\\\world\\").has_value());
    EXPECT_FALSE(FindPath(folder.Path("scenery/world/ap.bgl")).has_value());
    EXPECT_FALSE(FindPath(folder.Path("scenery/world/scenery/ap.bgl/more")).has_value());
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

TEST(ListBglFiles, ListsPlainFilesByTheEndOfTheirNameInOrderOfLowerCasedBytes) {
    TempFolder folder;
    for (const char* const name : {"b.bgl", "A.BGL", "c.Bgl", "_.bgl", "x.bglx", "bgl", "z.txt", ".bgl"}) {
        folder.Write(name, "");
    }
    std::filesystem::create_directory(folder.Path("d.bgl"));
    EXPECT_THAT(ListBglFiles(folder.Path()), ElementsAre(".bgl", "_.bgl", "A.BGL", "b.bgl", "c.Bgl"));
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

}  // namespace
}  // namespace corvenna
