#include "world/scenery_scan.h"

#include <gmock/gmock.h>

#include "world/airport_database.h"
#include "world/bgl_builder.h"
#include "world/errors.h"
#include "world/temp_folder.h"

namespace corvenna {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

Bytes FileWith(std::string_view name) {
    return BglBuilder().First(name, AirportBuilder().Position(47, -122).Ident("KTST")).Get();
}

struct Notes final : ScanObserver {
    void EntersArea(std::string_view title) override { Titles.emplace_back(title); }
    void FilesDone(std::int32_t files) override { Done = files; }
    void Skipped(std::string_view path, std::string_view reason) override {
        Skips.push_back(std::string(path) + ": " + std::string(reason));
    }

    std::vector<std::string> Titles, Skips;
    std::int32_t Done = 0;
};

/// A simulator's folder, its scan, and what came of it.
struct Scenery {
    void Area(std::string_view title, std::string_view local) {
        config += "[Area." + std::to_string(++areas) + "]\r\nTitle=" + std::string(title) +
                  "\r\nLocal=" + std::string(local) + "\r\n";
    }

    std::vector<std::string> Scan() {
        sim.Write("scenery.cfg", config);
        SceneryScan scan(station, sim.Path(), notes);
        total = scan.TotalBglFiles();
        ticks = 0;
        while (scan.Tick()) ++ticks;
        std::vector<std::string> names;
        for (std::int32_t i = 0; i < scan.Airports().Count(); ++i)
            names.emplace_back(scan.Airports().Fields(i).Name);
        return names;
    }

    TempFolder sim;
    std::string config;
    int areas = 0;
    Station station;
    Notes notes;
    std::int32_t total = 0;
    int ticks = 0;
};

TEST(SceneryScan, ReadsTheFilesOfAllAreasInOrder) {
    Scenery s;
    s.sim.Write("Scenery/One/Scenery/b.bgl", FileWith("b"));
    s.sim.Write("Scenery/One/Scenery/A.BGL", FileWith("a"));
    s.sim.Write("Scenery/Two/Scenery/c.bgl", FileWith("c"));
    s.sim.Write("Scenery/Two/Scenery/readme.txt", FileWith("no"));
    s.Area("Second", "Scenery\\Two");
    s.Area("Gone", "Scenery\\Gone");
    s.Area("First", "Scenery\\One");
    EXPECT_THAT(s.Scan(), ElementsAre("c", "a", "b"));
    EXPECT_EQ(s.total, 3);
    EXPECT_EQ(s.notes.Done, 3);
    EXPECT_THAT(s.notes.Titles, ElementsAre("Second", "Second", "First", "First", "First"));
}

TEST(SceneryScan, ATickReadsOneFileOrClosesOneArea) {
    Scenery s;
    s.sim.Write("a/scenery/1.bgl", FileWith("1"));
    s.sim.Write("a/scenery/2.bgl", FileWith("2"));
    s.Area("a", "a");
    s.Area("gone", "gone");
    s.Scan();
    EXPECT_EQ(s.ticks, 2 + 1 + 1);
}

TEST(SceneryScan, WithoutFilesTheEndComesAfterOneTickForEachArea) {
    Scenery s;
    std::filesystem::create_directories(s.sim.Path("a/scenery"));
    s.Area("a", "a");
    s.Area("gone", "gone");
    EXPECT_THAT(s.Scan(), IsEmpty());
    EXPECT_EQ(s.total, 0);
    EXPECT_EQ(s.ticks, 2);
}

TEST(SceneryScan, AnAreaWithTheFolderOfTheOneBeforeAddsNothing) {
    Scenery s;
    s.sim.Write("a/scenery/1.bgl", FileWith("1"));
    s.Area("a", "a");
    s.Area("a again", "A/Scenery");
    EXPECT_THAT(s.Scan(), ElementsAre("1"));
    EXPECT_EQ(s.total, 2);
    EXPECT_EQ(s.notes.Done, 1);
}

TEST(SceneryScan, AreasWithTheSameFolderThatStandApartBothCount) {
    Scenery s;
    s.sim.Write("a/scenery/1.bgl", FileWith("1"));
    s.sim.Write("b/scenery/2.bgl", FileWith("2"));
    s.Area("a", "a");
    s.Area("b", "b");
    s.Area("a again", "a");
    EXPECT_THAT(s.Scan(), ElementsAre("1", "2", "1"));
}

TEST(SceneryScan, AnAreaThatIsGoneDoesNotPartTwoWithTheSameFolder) {
    Scenery s;
    s.sim.Write("a/scenery/1.bgl", FileWith("1"));
    s.Area("a", "a");
    s.Area("gone", "gone");
    s.Area("a again", "a");
    EXPECT_THAT(s.Scan(), ElementsAre("1"));
}

TEST(SceneryScan, TwoSpellingsOfAFolderAreTwoFolders) {
    Scenery s;
    s.sim.Write("a/scenery/1.bgl", FileWith("1"));
    s.Area("relative", "a");
    s.Area("absolute", s.sim.Path("a//scenery"));
    EXPECT_THAT(s.Scan(), ElementsAre("1", "1"));
}

TEST(SceneryScan, FilesWithoutTheMarkerOrTooShortForItArePassedOverInSilence) {
    Scenery s;
    Bytes other = FileWith("other");
    other[facility::header::Marker] ^= 1;
    s.sim.Write("a/scenery/1.bgl", other);
    s.sim.Write("a/scenery/2.bgl", "");
    s.sim.Write("a/scenery/3.bgl", Bytes(121, 0));
    Bytes shortest = FileWith("short");
    shortest.resize(122);
    s.sim.Write("a/scenery/4.bgl", shortest);
    s.sim.Write("a/scenery/5.bgl", FileWith("5"));
    s.Area("a", "a");
    EXPECT_THAT(s.Scan(), ElementsAre("5"));
    ASSERT_THAT(s.notes.Skips, SizeIs(1));
    EXPECT_THAT(s.notes.Skips[0], HasSubstr("4.bgl: byte 144: a read of 4 bytes leaves the file"));
    EXPECT_EQ(s.notes.Done, 5);
}

TEST(SceneryScan, ADamagedFileIsSkippedWholeWithItsNamePlaceAndReason) {
    Scenery s;
    const auto good = AirportBuilder().Position(1, 1);
    const auto bad = AirportBuilder().Position(1, 1).TaxiBlock(TaxiBlockBuilder().Head(40000, 12));
    s.sim.Write("a/scenery/1.bgl", FileWith("1"));
    s.sim.Write("a/scenery/2.bgl", BglBuilder().First("good", good).First("bad", bad).Get());
    s.sim.Write("a/scenery/3.bgl", FileWith("3"));
    s.Area("a", "a");
    EXPECT_THAT(s.Scan(), ElementsAre("1", "3"));
    ASSERT_THAT(s.notes.Skips, SizeIs(1));
    EXPECT_THAT(s.notes.Skips[0], HasSubstr("2.bgl: byte "));
    EXPECT_THAT(s.notes.Skips[0], HasSubstr("a list of 40000 elements"));
}

TEST(SceneryScan, AFolderThatVanishesInTheMidstIsSkipped) {
    Scenery s;
    s.sim.Write("a/scenery/1.bgl", FileWith("1"));
    s.Area("a", "a");
    s.sim.Write("scenery.cfg", s.config);
    SceneryScan scan(s.station, s.sim.Path(), s.notes);
    std::filesystem::remove_all(s.sim.Path("a"));
    while (scan.Tick()) {
    }
    EXPECT_THAT(s.notes.Skips, ElementsAre(HasSubstr("can't be listed")));
}

TEST(SceneryScan, AFileThatVanishesInTheMidstIsSkipped) {
    Scenery s;
    s.sim.Write("a/scenery/1.bgl", FileWith("1"));
    s.sim.Write("a/scenery/2.bgl", FileWith("2"));
    s.Area("a", "a");
    s.sim.Write("scenery.cfg", s.config);
    SceneryScan scan(s.station, s.sim.Path(), s.notes);
    scan.Tick();
    std::filesystem::remove(s.sim.Path("a/scenery/2.bgl"));
    while (scan.Tick()) {
    }
    EXPECT_THAT(s.notes.Skips, ElementsAre(HasSubstr("2.bgl: can't be opened")));
    EXPECT_EQ(scan.Airports().Count(), 1);
}

TEST(SceneryScan, NamesKeepTheirEightBitCharacters) {
    Scenery s;
    s.sim.Write("a/scenery/1.bgl", FileWith("M\xFCnchen \x80"));
    s.Area("\xC4rea", "a");
    EXPECT_THAT(s.Scan(), ElementsAre("M\xFCnchen \x80"));
    EXPECT_EQ(s.notes.Titles[0], "\xC4rea");
}

// ---- The whole build

TEST(DatabaseBuild, AFolderWithoutTheSimulatorChangesNothing) {
    TempFolder sim, app;
    app.Write("Corvenna.cfg", "old");
    app.Write("world_airports.dat", "old");
    EXPECT_THAT(WhatIsThrown<FileError>([&] { BeginDatabase(sim.Path(), app.Path()); }),
                HasSubstr("fs2002.exe"));
    EXPECT_THAT(app.Names(), ElementsAre("Corvenna.cfg", "world_airports.dat"));
}

TEST(DatabaseBuild, RemovesTheOldFilesNotesTheFolderAndAtTheEndTheCount) {
    TempFolder sim, app;
    sim.Write("FS2002.EXE", "");
    sim.Write("scenery.cfg", "[Area.1]\nLocal=a\n");
    sim.Write("a/scenery/1.bgl", FileWith("1"));
    app.Write("Corvenna.cfg",
              "an old one, longer than the new one will be, which goes with the rest of the old files");
    app.Write("world_airports.dat", "old");

    BeginDatabase(sim.Path(), app.Path());
    EXPECT_THAT(app.Names(), ElementsAre("Corvenna.cfg"));
    EXPECT_EQ(ReadConfig(app.Path()), (ConfigRecord{sim.Path(), 0}));

    Station station;
    Notes notes;
    SceneryScan scan(station, sim.Path(), notes);
    while (scan.Tick()) {
    }
    FinishDatabase(scan, sim.Path(), app.Path());
    EXPECT_EQ(ReadConfig(app.Path()), (ConfigRecord{sim.Path(), 1}));
    EXPECT_EQ(app.Read("Corvenna.cfg").size(), 2 + sim.Path().size() + 4);
    EXPECT_EQ(ReadDatabase(app.Path()).Fields(0).Icao, "KTST");
}

}  // namespace
}  // namespace corvenna
