#include "tools/terrain/input_file.h"

#include <zlib.h>

#include "terrain/terrain_scene.h"
#include "world/temp_folder.h"

namespace corvenna {
namespace {

using testing::EndsWith;
using testing::StartsWith;

std::string WriteGzipped(const TempFolder& folder, const std::string& name, const std::string& bytes) {
    const gzFile file = gzopen(folder.Path(name).c_str(), "wb");
    gzwrite(file, bytes.data(), static_cast<unsigned>(bytes.size()));
    gzclose(file);
    return folder.Path(name);
}

TEST(InputFile, PlainAndGzippedBytesAreReadTheSame) {
    const TempFolder folder;
    const std::string bytes("grid\0 of bytes\n", 15);
    EXPECT_EQ(InputFile(Written(folder, "plain", bytes)).ReadAll(100), bytes);
    EXPECT_EQ(InputFile(WriteGzipped(folder, "packed.gz", bytes)).ReadAll(100), bytes);
}

TEST(InputFile, AReadGivesFewerBytesOnlyAtTheEnd) {
    const TempFolder folder;
    InputFile file(Written(folder, "five", "12345"));
    char three[3];
    EXPECT_EQ(file.Read(three), 3u);
    EXPECT_EQ(file.Read(three), 2u);
    EXPECT_EQ(file.Read(three), 0u);
}

TEST(InputFile, AMissingFileIsNamedWithTheReason) {
    EXPECT_EQ(ErrorOf([] { InputFile file("/nowhere/grid.asc"); }),
              "/nowhere/grid.asc: No such file or directory");
}

TEST(InputFile, AFolderIsNoFile) {
    const TempFolder folder;
    EXPECT_THAT(ErrorOf([&] { InputFile(folder.Path()).ReadAll(10); }), EndsWith("is a folder, not a file"));
}

TEST(InputFile, CompressedDataThatBreaksOffAnywhereIsToldAndNotTakenForTheEnd) {
    const TempFolder folder;
    std::string bytes;
    for (int i = 0; i < 3000; ++i) bytes += std::to_string(i * 7919 % 10007);
    const std::string packed = BytesOf(WriteGzipped(folder, "whole.gz", bytes));
    for (std::size_t length = 2; length < packed.size(); length += 101) {
        const std::string path = Written(folder, "cut.gz", packed.substr(0, length));
        EXPECT_THAT(ErrorOf([&] { InputFile(path).ReadAll(1 << 20); }), StartsWith(path)) << length;
    }
}

TEST(InputFile, AChangedByteOfCompressedDataIsFound) {
    const TempFolder folder;
    std::string packed = BytesOf(WriteGzipped(folder, "whole.gz", std::string(5000, 'x') + "y"));
    packed[packed.size() - 6] ^= 1;  // in the check sum
    const std::string path = Written(folder, "changed.gz", packed);
    EXPECT_THAT(ErrorOf([&] { InputFile(path).ReadAll(1 << 20); }), StartsWith(path));
}

TEST(InputFile, ReadAllTakesAsManyBytesAsAllowedAndNoMore) {
    const TempFolder folder;
    const std::string path = Written(folder, "ten", "0123456789");
    EXPECT_EQ(InputFile(path).ReadAll(10).size(), 10u);
    EXPECT_EQ(ErrorOf([&] { InputFile(path).ReadAll(9); }), path + ": more than 9 bytes");
}

TEST(InputFile, AnExtensionCountsInAnyCaseAndAheadOfGz) {
    EXPECT_TRUE(HasExtension("a/N47E011.hgt", ".hgt"));
    EXPECT_TRUE(HasExtension("N47E011.HGT.GZ", ".hgt"));
    EXPECT_FALSE(HasExtension("hgt.gz", ".hgt"));
    EXPECT_FALSE(HasExtension("grid.asc.bak", ".asc"));
}

}  // namespace
}  // namespace corvenna
