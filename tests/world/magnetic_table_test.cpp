#include "world/magnetic_table.h"

#include <gmock/gmock.h>

#include "station/geometry.h"
#include "world/bgl_builder.h"
#include "world/errors.h"
#include "world/temp_folder.h"

namespace corvenna {
namespace {

using testing::Each;
using testing::HasSubstr;

constexpr std::int64_t Table = 200;

/// A table in which every value is 0, but for a few.
Bytes Magdec(const std::vector<std::pair<int, int>>& values) {
    ByteWriter file;
    file.PutLong(facility::magdec::TableOffset, Table).ZerosTo(Table + 8 + 2 * std::int64_t{65160});
    Bytes bytes = file.Get();
    for (const auto& [entry, value] : values) {
        const auto at = static_cast<std::size_t>(Table + 8 + 2 * std::int64_t{entry});
        bytes[at] = static_cast<std::uint8_t>(value & 0xFF);
        bytes[at + 1] = static_cast<std::uint8_t>(value >> 8 & 0xFF);
    }
    return bytes;
}

TEST(MagneticTable, EntriesStandByLongitudeAndThenLatitude) {
    TempFolder sim;
    sim.Write("Scenery/MAGDEC.bgl", Magdec({{0, 1}, {137, 3641}, {238 * 181 + 137, 3277}, {65159, 32767}}));
    Station station;
    LoadMagVarOf(sim.Path(), station);
    EXPECT_EQ(station.MagVarGrid[0], 1);
    EXPECT_EQ(station.MagVarGrid[65159], 32767);
    EXPECT_EQ(TrueToMagnetic(station, 100, 47, 0), 80);
    EXPECT_EQ(TrueToMagnetic(station, 100, 47.4, -0.4), 80);  // -0.4 rounds to 0 and stays there
    EXPECT_EQ(TrueToMagnetic(station, 100, 47, -0.6), 100);   // index 359
    EXPECT_EQ(TrueToMagnetic(station, 100, 47, -122), 82);    // index 238
}

TEST(MagneticTable, NegativeValuesComeOutOneTooHigh) {
    TempFolder sim;
    sim.Write("magdec.bgl", Magdec({{1, 0xFFFF}, {2, 0x8000}, {3, -3641}}));
    Station station;
    LoadMagVar(sim.Path("magdec.bgl"), station);
    EXPECT_EQ(station.MagVarGrid[1], 0);
    EXPECT_EQ(station.MagVarGrid[2], -32767);
    EXPECT_EQ(station.MagVarGrid[3], -3640);
}

TEST(MagneticTable, WithoutATableTheGridStaysAsItIs) {
    TempFolder sim;
    Station station;
    station.MagVarGrid.assign(MagVarGridSize, 5);
    for (const int offset : {0, -1}) {
        sim.Write("magdec.bgl", ByteWriter().PutLong(facility::magdec::TableOffset, offset).Get());
        LoadMagVar(sim.Path("magdec.bgl"), station);
        EXPECT_THAT(station.MagVarGrid, Each(5));
    }
}

TEST(MagneticTable, AMissingOrShortFileIsNamedAndChangesNothing) {
    TempFolder sim;
    Station station;
    station.MagVarGrid.assign(MagVarGridSize, 5);
    EXPECT_THAT(WhatIsThrown<FileError>([&] { LoadMagVarOf(sim.Path(), station); }), HasSubstr("magdec.bgl"));

    const Bytes whole = Magdec({{0, 1}});
    for (const std::size_t length : {std::size_t{0}, std::size_t{113}, std::size_t{114}, whole.size() - 1}) {
        sim.Write("magdec.bgl", Bytes(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(length)));
        EXPECT_THAT(WhatIsThrown<FileError>([&] { LoadMagVar(sim.Path("magdec.bgl"), station); }),
                    HasSubstr("magdec.bgl: byte "))
            << length;
    }
    sim.Write("magdec.bgl", ByteWriter().PutLong(facility::magdec::TableOffset, 0x7FFFFFFF).Get());
    EXPECT_THROW(LoadMagVar(sim.Path("magdec.bgl"), station), FileError);
    EXPECT_THAT(station.MagVarGrid, Each(5));
}

}  // namespace
}  // namespace corvenna
