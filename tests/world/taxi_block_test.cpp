#include "world/taxi_block.h"

#include <gmock/gmock.h>

#include <limits>

#include "station/geometry.h"
#include "world/bgl_builder.h"
#include "world/errors.h"
#include "world/facility_decoder.h"
#include "world/temp_folder.h"

namespace corvenna {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

constexpr double Latitude = 47.5;
constexpr double Longitude = -122.25;

AirportBuilder AtField() { return AirportBuilder().Position(Latitude, Longitude); }

Airport Decode(const AirportBuilder& records) {
    AirportList airports;
    ScanFacilities(BglBuilder().First("Test Field", records).Buffer(), {}, airports);
    return airports.Record(0);
}

Airport DecodeBlock(const TaxiBlockBuilder& block) { return Decode(AtField().TaxiBlock(block)); }

std::string WhyDamaged(const AirportBuilder& records) {
    return WhatIsThrown<DamagedData>([&] { Decode(records); });
}

std::vector<std::string> PathNames(const Airport& airport) {
    std::vector<std::string> names;
    for (const TaxiPath& path : airport.TaxiPaths.value()) names.push_back(path.Name);
    return names;
}

std::vector<std::string> SpotNamesOf(const std::vector<std::int32_t>& packed) {
    std::vector<TaxiBlockBuilder::Spot> spots;
    for (const std::int32_t word : packed) spots.push_back({0, 0, 10, word});
    const Airport airport = DecodeBlock(TaxiBlockBuilder().Spots(spots).Names({}));
    std::vector<std::string> names;
    for (const ParkingSpot& spot : airport.ParkingSpots.value()) names.push_back(spot.Name);
    return names;
}

// ---- Points

TEST(TaxiPoints, KeepTheirKindAndAreAsManyAsTheListSays) {
    const Airport a = DecodeBlock(TaxiBlockBuilder().Points({{1, 0, 0}, {-7, 1, 1}, {99, 2, 2}}).Names({}));
    ASSERT_EQ(a.TaxiPoints->size(), 3u);
    EXPECT_EQ(a.TaxiPointCount, 3);
    EXPECT_EQ(a.TaxiPoints->at(1).Kind, -7);
    EXPECT_EQ(a.TaxiPoints->at(2).Kind, 99);
}

TEST(TaxiPoints, WithoutOffsetsStandExactlyOnTheReferencePosition) {
    const Airport a = DecodeBlock(TaxiBlockBuilder().Points({{1, 0, 0}}).Names({}));
    EXPECT_EQ(a.TaxiPoints->at(0).Latitude, a.Latitude);
    EXPECT_EQ(a.TaxiPoints->at(0).Longitude, a.Longitude);
}

TEST(TaxiPoints, EachAxisIsProjectedAlone) {
    const Airport a = DecodeBlock(
        TaxiBlockBuilder().Points({{1, 250.5F, 0}, {1, -250.5F, 0}, {1, 0, 800}, {1, 0, -800}}).Names({}));
    const auto& points = *a.TaxiPoints;
    EXPECT_EQ(points[0].Longitude, ProjectMetres(a.Latitude, a.Longitude, 90, 250.5).Longitude);
    EXPECT_EQ(points[0].Latitude, a.Latitude);
    EXPECT_EQ(points[1].Longitude, ProjectMetres(a.Latitude, a.Longitude, 270, 250.5).Longitude);
    EXPECT_EQ(points[2].Latitude, ProjectMetres(a.Latitude, a.Longitude, 0, 800).Latitude);
    EXPECT_EQ(points[2].Longitude, a.Longitude);
    EXPECT_EQ(points[3].Latitude, ProjectMetres(a.Latitude, a.Longitude, 180, 800).Latitude);
    EXPECT_NEAR((points[0].Longitude - a.Longitude) * 60 * 1852 * std::cos(Latitude / 57.29578), 250.5, 0.1);
    EXPECT_NEAR((points[3].Latitude - a.Latitude) * 60 * 1852, -800, 0.1);
}

TEST(TaxiPoints, AnOffsetThatIsNoNumberIsDamage) {
    for (const float offset :
         {std::numeric_limits<float>::infinity(), std::numeric_limits<float>::quiet_NaN()}) {
        EXPECT_THAT(WhyDamaged(AtField().TaxiBlock(TaxiBlockBuilder().Points({{1, offset, 0}}).Names({}))),
                    HasSubstr("no number"));
    }
}

// ---- Parking

TEST(ParkingSpots, TheRadiusIsWholeFeet) {
    const Airport a = DecodeBlock(TaxiBlockBuilder().Spots({{3, -4, 26, PackedSpot(1, 10)}}).Names({}));
    EXPECT_EQ(a.ParkingSpotCount, 1);
    EXPECT_EQ(a.ParkingSpots->at(0).Radius, 85);
    EXPECT_EQ(a.ParkingSpots->at(0).Spare, 0);
    EXPECT_EQ(a.ParkingSpots->at(0).Longitude, ProjectMetres(a.Latitude, a.Longitude, 90, 3).Longitude);
    EXPECT_EQ(a.ParkingSpots->at(0).Latitude, ProjectMetres(a.Latitude, a.Longitude, 180, 4).Latitude);
}

TEST(ParkingSpots, ARadiusBeyondItsFieldIsDamage) {
    EXPECT_THAT(WhyDamaged(AtField().TaxiBlock(TaxiBlockBuilder().Spots({{0, 0, 1e10F, 0}}).Names({}))),
                HasSubstr("does not fit"));
}

TEST(ParkingSpots, HaveTheTextOfTheirCodeInUpperCase) {
    const std::vector<std::string> expected = {
        "PARKING 5",    "N PARKING 5", "NE PARKING 5", "E PARKING 5", "SE PARKING 5", "S PARKING 5",
        "SW PARKING 5", "W PARKING 5", "NW PARKING 5", "GATE 5",      "DOCK 5",
    };
    for (int code = 1; code <= 11; ++code) {
        EXPECT_THAT(SpotNamesOf({PackedSpot(5, code)}),
                    ElementsAre(expected[static_cast<std::size_t>(code - 1)]));
    }
    for (int code = 12; code <= 37; ++code) {
        EXPECT_THAT(SpotNamesOf({PackedSpot(31, code)}),
                    ElementsAre(std::string("GATE ") + static_cast<char>('A' + code - 12) + " 31"));
    }
}

TEST(ParkingSpots, ACodeThatNamesNothingRepeatsTheTextBefore) {
    EXPECT_THAT(SpotNamesOf({PackedSpot(1, 0), PackedSpot(2, 10), PackedSpot(3, 38), PackedSpot(4, 0)}),
                ElementsAre(" 1", "GATE 2", "GATE 3", "GATE 4"));
}

TEST(ParkingSpots, TheNumberIsRoundedHalfToEvenSoHighCodesRaiseIt) {
    EXPECT_THAT(SpotNamesOf({PackedSpot(4, 63)}), ElementsAre(" 4"));
    EXPECT_THAT(SpotNamesOf({PackedSpot(4, 64)}), ElementsAre(" 4"));  // 4.5 to the even 4
    EXPECT_THAT(SpotNamesOf({PackedSpot(5, 64)}), ElementsAre(" 6"));
    EXPECT_THAT(SpotNamesOf({PackedSpot(4, 65)}), ElementsAre(" 5"));
}

TEST(ParkingSpots, OfThePackedWordOnlyTheLowTwentyBitsCount) {
    EXPECT_THAT(SpotNamesOf({PackedSpot(7, 10) | 0x7FA00000}), ElementsAre("GATE 7"));
    EXPECT_THAT(SpotNamesOf({static_cast<std::int32_t>(0xFFF00000) | PackedSpot(8191, 10)}),
                ElementsAre("GATE 8191"));
}

TEST(ParkingSpots, TheTextBeforeOutlivesTheListButNotTheAirport) {
    AirportList airports;
    const auto named = AtField().TaxiBlock(TaxiBlockBuilder()
                                               .Spots({{0, 0, 1, PackedSpot(1, 10)}})
                                               .Spots({{0, 0, 1, PackedSpot(2, 0)}})
                                               .Names({}));
    const auto unnamed =
        AtField().TaxiBlock(TaxiBlockBuilder().Spots({{0, 0, 1, PackedSpot(3, 0)}}).Names({}));
    ScanFacilities(BglBuilder().First("One", named).First("Two", unnamed).Buffer(), {}, airports);
    EXPECT_EQ(airports.Record(0).ParkingSpots->at(0).Name, "GATE 2");
    EXPECT_EQ(airports.Record(1).ParkingSpots->at(0).Name, " 3");
}

// ---- Paths and names

TEST(TaxiPaths, OfOtherKindsKeepTheDecimalTextOfTheirNameIndex) {
    const Airport a = DecodeBlock(
        TaxiBlockBuilder().Paths({{2, 3, 4, 0}, {7, -5, 6, -12}, {2, 0, 0, 2147483647}}).Names({"A"}));
    EXPECT_EQ(a.TaxiPathCount, 3);
    EXPECT_EQ(a.TaxiPaths->at(0), (TaxiPath{2, 3, 4, "0"}));
    EXPECT_EQ(a.TaxiPaths->at(1), (TaxiPath{7, -5, 6, "-12"}));
    EXPECT_EQ(a.TaxiPaths->at(2).Name, "2147483647");
}

TEST(TaxiPaths, TaxiwaysTakeTheNameOfTheTable) {
    EXPECT_THAT(
        PathNames(DecodeBlock(
            TaxiBlockBuilder().Paths({{0, 0, 1, 1}, {0, 1, 2, 0}, {0, 2, 3, 1}}).Names({"A", "B12"}))),
        ElementsAre("B12", "A", "B12"));
}

TEST(TaxiPaths, AnElementThatNoPathUsesHasNoEffectAndAnIndexBeyondTheTableKeepsItsNumber) {
    EXPECT_THAT(
        PathNames(DecodeBlock(TaxiBlockBuilder().Paths({{0, 0, 1, 2}, {0, 0, 1, -1}}).Names({"A", "B"}))),
        ElementsAre("2", "-1"));
}

TEST(TaxiPaths, ANameThatIsTheNumberOfALaterNameIsReplacedByThat) {
    EXPECT_THAT(PathNames(DecodeBlock(
                    TaxiBlockBuilder()
                        .Paths({{0, 0, 1, 0}, {0, 0, 1, 1}, {0, 0, 1, 2}, {0, 0, 1, 3}, {0, 0, 1, 4}})
                        .Names({"2", "0", "3", "C", "04"}))),
                ElementsAre("C", "0", "C", "C", "04"));
}

TEST(TaxiPaths, ASecondNameTableFindsTheNamesAsTheyStand) {
    const Airport a =
        Decode(AtField()
                   .TaxiBlock(TaxiBlockBuilder().Paths({{0, 0, 1, 0}, {0, 0, 1, 5}}).Names({"1"}))
                   .TaxiBlock(TaxiBlockBuilder().Names({"no", "Late", "", "", "", "Five"})));
    EXPECT_THAT(PathNames(a), ElementsAre("Late", "Five"));
}

TEST(TaxiPaths, RunwayPathsTakeTheRunwaysNameAlsoWithAnEmptyTable) {
    const auto runways = AtField().Runway(9000, 150, 16, 1).Runway(5000, 75, 4);
    const auto paths = TaxiBlockBuilder().Paths({{1, 0, 1, 1}, {1, 0, 1, 0}});
    EXPECT_THAT(
        PathNames(Decode(AirportBuilder(runways).TaxiBlock(TaxiBlockBuilder(paths).Names({"A", "B"})))),
        ElementsAre("Runway 4", "Runway 16L"));
    EXPECT_THAT(PathNames(Decode(AirportBuilder(runways).TaxiBlock(TaxiBlockBuilder(paths).Names({})))),
                ElementsAre("Runway 4", "Runway 16L"));
}

TEST(TaxiPaths, WithoutANameTableRunwayPathsKeepTheirNumber) {
    const auto block = TaxiBlockBuilder().Paths({{1, 0, 1, 0}}).Head(1, 77);
    EXPECT_THAT(PathNames(Decode(AtField().Runway(9000, 150, 16).TaxiBlock(block))), ElementsAre("0"));
}

TEST(TaxiPaths, ARunwayPathWhoseNameIsNoNumberKeepsIt) {
    const Airport a = Decode(AtField()
                                 .Runway(9000, 150, 16)
                                 .TaxiBlock(TaxiBlockBuilder().Paths({{1, 0, 1, 0}}).Names({}))
                                 .TaxiBlock(TaxiBlockBuilder().Names({})));
    EXPECT_THAT(PathNames(a), ElementsAre("Runway 16"));
}

TEST(TaxiPaths, ARunwayNumberBeyondTheRunwaysIsDamage) {
    const auto block = [](int index) { return TaxiBlockBuilder().Paths({{1, 0, 1, index}}).Names({}); };
    const auto runway = AtField().Runway(9000, 150, 16);
    EXPECT_THAT(PathNames(Decode(AirportBuilder(runway).TaxiBlock(block(0)))), ElementsAre("Runway 16"));
    EXPECT_THAT(WhyDamaged(AirportBuilder(runway).TaxiBlock(block(1))), HasSubstr("runway number 1 of 1"));
    EXPECT_THAT(WhyDamaged(AirportBuilder(runway).TaxiBlock(block(-1))), HasSubstr("runway number -1 of 1"));
    EXPECT_THAT(WhyDamaged(AtField().TaxiBlock(block(0)).Runway(9000, 150, 16)),
                HasSubstr("runway number 0 of 0"));
}

// ---- The block

TEST(TaxiBlock, AnEmptyListIsItsHeadAlone) {
    const Airport a =
        DecodeBlock(TaxiBlockBuilder().Head(0, 12).Head(-3, 20).Paths({{0, 0, 1, 0}}).Names({"A"}));
    EXPECT_FALSE(a.TaxiPoints.has_value());
    EXPECT_FALSE(a.ParkingSpots.has_value());
    EXPECT_EQ(a.ParkingSpotCount, 0);
    EXPECT_THAT(PathNames(a), ElementsAre("A"));
}

TEST(TaxiBlock, AListOfAnUnknownElementSizeEndsIt) {
    const Airport a =
        DecodeBlock(TaxiBlockBuilder().Points({{1, 0, 0}}).Head(1, 16).Points({{2, 0, 0}, {2, 0, 0}}));
    EXPECT_EQ(a.TaxiPointCount, 1);
}

TEST(TaxiBlock, TheNameTableEndsIt) {
    const Airport a = DecodeBlock(TaxiBlockBuilder().Names({"A"}).Points({{2, 0, 0}}));
    EXPECT_FALSE(a.TaxiPoints.has_value());
}

TEST(TaxiBlock, ALaterListOfTheSameKindReplacesTheEarlierOne) {
    const Airport a =
        DecodeBlock(TaxiBlockBuilder().Points({{1, 0, 0}, {2, 0, 0}}).Points({{3, 0, 0}}).Names({}));
    ASSERT_EQ(a.TaxiPointCount, 1);
    EXPECT_EQ(a.TaxiPoints->at(0).Kind, 3);
}

TEST(TaxiBlock, TheStreamGoesOnBehindTheBlocksOwnSizeWhateverTheListsConsumed) {
    // The block says it is 8 bytes shorter than its lists, so that a record is read out of the name.
    const Bytes ident = RecordBuilder(facility::AirportIdentId).Text("HIDN").Get();
    Bytes block = RecordBuilder(facility::TaxiBlockId).Append(TaxiBlockBuilder().Head(2, 8).Get()).Get();
    const Airport a = Decode(AtField().Record(block).Record(ident).Record(ByteWriter().ZerosTo(16).Get()));
    EXPECT_EQ(a.Icao, "HIDN");
}

TEST(TaxiBlock, MoreThan32767ElementsAreDamage) {
    for (const int size : {12, 20, 32, 8}) {
        EXPECT_THAT(WhyDamaged(AtField().TaxiBlock(TaxiBlockBuilder().Head(32768, size))),
                    HasSubstr("a list of 32768 elements"));
    }
    const std::vector<TaxiBlockBuilder::Point> most(32767, TaxiBlockBuilder::Point{1, 0, 0});
    EXPECT_EQ(DecodeBlock(TaxiBlockBuilder().Points(most).Names({})).TaxiPointCount, 32767);
}

TEST(TaxiBlock, ACountBeyondTheBytesPresentIsDamageBeforeAnyMemoryIsTaken) {
    EXPECT_THAT(WhyDamaged(AtField().TaxiBlock(TaxiBlockBuilder().Head(30000, 32))),
                HasSubstr("leaves the file"));
}

}  // namespace
}  // namespace corvenna
