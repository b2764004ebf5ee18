#include "world/facility_decoder.h"

#include <gmock/gmock.h>

#include <cmath>
#include <limits>
#include <random>

#include "station/geometry.h"
#include "station/numbers.h"
#include "world/bgl_builder.h"
#include "world/errors.h"
#include "world/temp_folder.h"

namespace corvenna {
namespace {

using facility::com::Approach;
using facility::com::Departure;
using testing::HasSubstr;

constexpr double Latitude = 47.5;
constexpr double Longitude = -122.25;

AirportBuilder AtField() { return AirportBuilder().Position(Latitude, Longitude); }

AirportList Scan(const Bytes& buffer, const Station& station = {}) {
    AirportList airports;
    ScanFacilities(buffer, station, airports);
    return airports;
}

/// The one airport of a file in which these records stand under the name "Test Field".
Airport Decode(const AirportBuilder& records, const Station& station = {}) {
    const AirportList airports = Scan(BglBuilder().First("Test Field", records).Buffer(), station);
    EXPECT_EQ(airports.Count(), 1);
    return airports.Count() == 1 ? airports.Record(0) : Airport{};
}

std::string WhyDamaged(const AirportBuilder& records) {
    return WhatIsThrown<DamagedData>([&] { Scan(BglBuilder().First("Test Field", records).Buffer()); });
}

// ---- Chains and name lists

TEST(FacilityChains, AFileWithoutTheOneAt144HoldsNothing) {
    Bytes buffer = BglBuilder().First("Test Field", AtField()).Buffer();
    for (const int word : {0, 2, 255}) {
        buffer[facility::header::HasFacilities] = static_cast<std::uint8_t>(word);
        EXPECT_EQ(Scan(buffer).Count(), 0) << word;
    }
}

TEST(FacilityChains, ChainsAtOffsetsOfNoughtOrLessAreNotWalked) {
    Bytes buffer = BglBuilder().First("Test Field", AtField()).Buffer();
    buffer[facility::header::FirstChain + 3] = 0x80;
    EXPECT_EQ(Scan(buffer).Count(), 0);
    EXPECT_EQ(Scan(BglBuilder().Buffer()).Count(), 0);
}

TEST(FacilityChains, NamesStandInBothChains) {
    const AirportList airports = Scan(
        BglBuilder().First("One", AtField()).Second("Two", AtField()).First("Three", AtField()).Buffer());
    ASSERT_EQ(airports.Count(), 3);
    EXPECT_EQ(airports.Fields(0).Name, "One");
    EXPECT_EQ(airports.Fields(1).Name, "Three");
    EXPECT_EQ(airports.Fields(2).Name, "Two");
}

/// Header, the data of one airport, then chain entries of the test's own.
struct ChainFile {
    ChainFile() {
        file.ZerosTo(BglBuilder::HeaderLength);
        file.PutLong(facility::header::HasFacilities, 1);
        data = file.Size();
        file.Append(BglBuilder::FacilityData(AtField()));
    }
    Bytes Names(std::string_view name) const {
        return BglBuilder::NameList(
            {BglBuilder::ListEntry(name, data, facility::AirportType, facility::ListEntryId)});
    }
    void Begin(std::int64_t headerField) { file.PutLong(headerField, file.Size()); }
    Bytes Buffer() const { return ByteWriter(file).Byte(0).Get(); }

    ByteWriter file;
    std::int64_t data = 0;
};

TEST(FacilityChains, TheFirstChainIsARunOfNameListsThatAnyOtherIdEnds) {
    ChainFile f;
    f.Begin(facility::header::FirstChain);
    f.file.Append(f.Names("One")).Append(f.Names("Two"));
    f.file.Append(RecordBuilder(facility::SkipEntryId).Put(8, 0).Get());
    f.file.Append(f.Names("Never met")).Long(0).Long(0);
    const AirportList airports = Scan(f.Buffer());
    ASSERT_EQ(airports.Count(), 2);
    EXPECT_EQ(airports.Fields(1).Name, "Two");
}

TEST(FacilityChains, TheSecondChainStepsOnFromTheRunsFirstEntryByTheSizeOfTheEntryThatEndedIt) {
    ChainFile f;
    const Bytes one = f.Names("One");
    const Bytes two = f.Names("Two");
    // The run is One, Two; the entry behind it has a size that leads from One's start onto Two.
    f.Begin(facility::header::SecondChain);
    f.file.Append(one).Append(two).Long(0).Long(std::ssize(one) - 8);
    // From Two the same entry leads to the place one.size() behind Two's start: zeros, the end.
    f.file.ZerosTo(f.file.Size() + 64);
    const AirportList airports = Scan(f.Buffer());
    ASSERT_EQ(airports.Count(), 3);
    EXPECT_EQ(airports.Fields(0).Name, "One");
    EXPECT_EQ(airports.Fields(1).Name, "Two");
    EXPECT_EQ(airports.Fields(2).Name, "Two");
}

TEST(FacilityChains, TheIdThatEndedARunEndsNothingElseInTheSecondChain) {
    ChainFile f;
    const Bytes one = f.Names("One");
    f.Begin(facility::header::SecondChain);
    f.file.Append(one).Long(99).Long(std::ssize(one));  // leads to the place 8 behind this entry's start
    f.file.Append(f.Names("Two")).Long(0).Long(0).ZerosTo(f.file.Size() + 64);
    const AirportList airports = Scan(f.Buffer());
    ASSERT_EQ(airports.Count(), 2);
    EXPECT_EQ(airports.Fields(1).Name, "Two");
}

TEST(FacilityChains, SkipEntriesInTheSecondChainAreSteppedOverByTheirSize) {
    ChainFile f;
    f.Begin(facility::header::SecondChain);
    f.file.Append(RecordBuilder(facility::SkipEntryId).Put(20, 0x30001).Get());
    f.file.Append(RecordBuilder(facility::SkipEntryId).Put(8, 1).Get());
    f.file.Append(f.Names("One")).Long(0).Long(0);
    EXPECT_EQ(Scan(f.Buffer()).Count(), 1);
}

TEST(FacilityChains, AnEntryOfNoLengthIsDamage) {
    for (const int size : {-8, -9, std::numeric_limits<int>::min()}) {
        ChainFile f;
        f.Begin(facility::header::SecondChain);
        f.file.Long(facility::SkipEntryId).Long(size).ZerosTo(f.file.Size() + 64);
        EXPECT_THAT(WhatIsThrown<DamagedData>([&] { Scan(f.Buffer()); }), HasSubstr("an entry of")) << size;
    }
}

TEST(NameLists, EntriesWithOtherIdsAreSteppedOver) {
    const Bytes data = BglBuilder::FacilityData(AtField());
    const AirportList airports = Scan(BglBuilder()
                                          .Entry("Other id", data, facility::AirportType, 0x30003)
                                          .Entry("Other type", data, 0x50002)
                                          .Entry("No data", {})
                                          .First("Real", AtField())
                                          .Buffer());
    ASSERT_EQ(airports.Count(), 1);
    EXPECT_EQ(airports.Fields(0).Name, "Real");
}

TEST(NameLists, ALastEntryWithAnotherIdMayBeLongerThanTheFile) {
    ChainFile f;
    f.Begin(facility::header::FirstChain);
    const Bytes real = BglBuilder::ListEntry("Real", f.data, facility::AirportType, facility::ListEntryId);
    const Bytes endless = ByteWriter().Long(0x30003).Long(std::numeric_limits<std::int32_t>::max()).Get();
    f.file.Append(BglBuilder::NameList({real, endless})).Long(0).Long(0);
    EXPECT_EQ(Scan(f.Buffer()).Count(), 1);
}

TEST(NameLists, OfTheFourWordsTheFirstAndTheThirdMustBe1) {
    const AirportList airports = Scan(BglBuilder()
                                          .Entry("Third word 2", BglBuilder::FacilityData(AtField(), 1, 2))
                                          .Entry("First word 2", BglBuilder::FacilityData(AtField(), 2, 1))
                                          .Entry("Right", BglBuilder::FacilityData(AtField(), 1, 1))
                                          .Buffer());
    ASSERT_EQ(airports.Count(), 1);
    EXPECT_EQ(airports.Fields(0).Name, "Right");
}

TEST(NameLists, ZeroBytesInANameAreSkippedAndEndNothing) {
    using namespace std::string_view_literals;
    const AirportList airports = Scan(BglBuilder().First("A\0B\0\0\xFCz\0"sv, AtField()).Buffer());
    EXPECT_EQ(airports.Fields(0).Name, "AB\xFCz");
}

TEST(NameLists, DataBeyondTheFileIsDamageForAnyKindOfEntry) {
    ChainFile f;
    f.Begin(facility::header::FirstChain);
    f.file.Append(
        BglBuilder::NameList({BglBuilder::ListEntry("Far", 1 << 30, 0x50002, facility::ListEntryId)}));
    f.file.Long(0).Long(0);
    EXPECT_THAT(WhatIsThrown<DamagedData>([&] { Scan(f.Buffer()); }), HasSubstr("leaves the file"));
}

TEST(NameLists, ACountBeyondTheEntriesIsDamage) {
    ChainFile f;
    f.Begin(facility::header::FirstChain);
    f.file.Append(RecordBuilder(facility::NameListId).Put(facility::name_list::Count, 2000000000).Get());
    EXPECT_THROW(Scan(f.Buffer()), DamagedData);
}

TEST(NameLists, ANegativeCountIsAnEmptyList) {
    ChainFile f;
    f.Begin(facility::header::FirstChain);
    f.file.Append(RecordBuilder(facility::NameListId).Put(facility::name_list::Count, -1).Get())
        .Long(0)
        .Long(0);
    EXPECT_EQ(Scan(f.Buffer()).Count(), 0);
}

// ---- Positions

TEST(AirportRecords, PositionsAreRoundedTo6Decimals) {
    const Airport a = Decode(AtField());
    EXPECT_EQ(a.Latitude, RoundTo(LatitudeWord(Latitude) * 90.0 / 10001750.0, 1e6));
    EXPECT_EQ(a.Longitude, RoundTo(LongitudeWord(Longitude) * 360.0 / 4294967296.0, 1e6));
    EXPECT_NEAR(a.Latitude, Latitude, 1e-5);
    EXPECT_NEAR(a.Longitude, Longitude, 1e-6);
}

TEST(AirportRecords, ASecondPositionMovesTheAirportButNotItsTaxiNetwork) {
    const auto network = TaxiBlockBuilder().Points({{1, 0, 0}}).Names({});
    const Airport plain = Decode(AtField().TaxiBlock(network));
    const Airport moved = Decode(AtField().SecondPosition(10, 20).TaxiBlock(network));
    EXPECT_NEAR(moved.Latitude, 10, 1e-5);
    EXPECT_NEAR(moved.Longitude, 20, 1e-6);
    EXPECT_EQ(moved.TaxiPoints, plain.TaxiPoints);
}

TEST(AirportRecords, ATaxiNetworkAheadOfThePositionHangsOn0And0) {
    const Airport a = Decode(AirportBuilder()
                                 .TaxiBlock(TaxiBlockBuilder().Points({{1, 0, 0}}).Names({}))
                                 .Position(Latitude, Longitude));
    EXPECT_EQ(a.TaxiPoints->front().Latitude, 0);
    EXPECT_EQ(a.TaxiPoints->front().Longitude, 0);
}

// ---- Runways

TEST(Runways, TheLongestOneIsTheMainRunway) {
    const Airport a = Decode(AtField().Runway(3000, 100, 9).Runway(9000, 150, 16, 2).Runway(5000, 75, 4));
    EXPECT_EQ(a.MainRunwayId, "16R");
    EXPECT_EQ(a.MainRunwayLength, 9000);
    EXPECT_EQ(a.MainRunwayWidth, 150);
    EXPECT_EQ(a.MainRunwayHasIls, 0);
}

TEST(Runways, OfTwoEquallyLongOnesTheFirstStays) {
    EXPECT_EQ(Decode(AtField().Runway(9000, 150, 9).Runway(9000, 200, 27)).MainRunwayId, "9");
    EXPECT_EQ(Decode(AtField().Runway(9000, 150, 9).Runway(9001, 200, 27)).MainRunwayId, "27");
}

TEST(Runways, OneWithoutLengthIsNoMainRunway) {
    EXPECT_EQ(Decode(AtField().Runway(0, 150, 9).Runway(-5, 150, 10)).MainRunwayId, "");
}

TEST(Runways, SuffixesAreNothingLRCAndH) {
    const char* const expected[] = {"8", "8L", "8R", "8C", "8H"};
    for (int suffix = 0; suffix < 5; ++suffix) {
        EXPECT_EQ(Decode(AtField().Runway(1, 1, 8, suffix)).MainRunwayId, expected[suffix]);
    }
}

TEST(Runways, ANumberAbove36OrASuffixAbove4RepeatsTheDesignatorBefore) {
    EXPECT_EQ(Decode(AtField().Runway(1, 1, 36)).MainRunwayId, "36");
    EXPECT_EQ(Decode(AtField().Runway(1, 1, 37)).MainRunwayId, "");
    EXPECT_EQ(Decode(AtField().Runway(1, 1, 12).Runway(2, 1, 37)).MainRunwayId, "12");
    EXPECT_EQ(Decode(AtField().Runway(1, 1, 12).Runway(2, 1, 13, 5)).MainRunwayId, "12");
}

TEST(Runways, AnExtraOfKind4DirectlyBehindTheMainRunwayIsItsIls) {
    EXPECT_EQ(Decode(AtField().Runway(9000, 150, 9).RunwayExtra(4)).MainRunwayHasIls, -1);
    EXPECT_EQ(Decode(AtField().Runway(9000, 150, 9).RunwayExtra(3).RunwayExtra(4)).MainRunwayHasIls, -1);
    EXPECT_EQ(Decode(AtField().Runway(9000, 150, 9).RunwayExtra(3).RunwayExtra(5)).MainRunwayHasIls, 0);
}

TEST(Runways, AnExtraBehindAnotherRecordIsSteppedOver) {
    EXPECT_EQ(Decode(AtField().Runway(9000, 150, 9).Ident("KTST").RunwayExtra(4)).MainRunwayHasIls, 0);
}

TEST(Runways, AnExtraBehindAShorterRunwayCountsOnlyIfTheDesignatorIsTheMainOne) {
    EXPECT_EQ(Decode(AtField().Runway(9000, 150, 9).Runway(3000, 75, 4).RunwayExtra(4)).MainRunwayHasIls, 0);
    EXPECT_EQ(Decode(AtField().Runway(9000, 150, 9).Runway(3000, 75, 9).RunwayExtra(4)).MainRunwayHasIls, -1);
}

TEST(Runways, ALongerRunwayWithoutIlsTakesTheIlsAway) {
    EXPECT_EQ(Decode(AtField().Runway(3000, 150, 9).RunwayExtra(4).Runway(9000, 75, 4)).MainRunwayHasIls, 0);
}

TEST(RunwayEnds, TheMainRunwaysEndGivesThreshold) {
    const Airport a =
        Decode(AtField().Runway(9000, 150, 16, 1).RunwayEnd(47.512345, -122.3, 132, 180.34, 16, 1));
    EXPECT_EQ(a.MainRunwayLatitude, RoundTo5(LatitudeWord(47.512345) * 90.0 / 10001750.0));
    EXPECT_EQ(a.MainRunwayLongitude, RoundTo5(LongitudeWord(-122.3) * 360.0 / 4294967296.0));
    EXPECT_EQ(a.MainRunwayElevation, 433);
    EXPECT_EQ(a.MainRunwayHeading, 180);
}

TEST(RunwayEnds, AnotherDesignatorIsIgnored) {
    const Airport a = Decode(AtField().Runway(9000, 150, 16, 1).RunwayEnd(1, 2, 3, 4, 34, 2));
    EXPECT_EQ(a.MainRunwayLatitude, 0);
    EXPECT_EQ(a.MainRunwayElevation, 0);
}

TEST(RunwayEnds, AnEndAheadOfItsRunwayFindsNoMatch) {
    const Airport a =
        Decode(AtField().Runway(100, 1, 5).RunwayEnd(47.5, -122, 132, 180, 16).Runway(9000, 150, 16));
    EXPECT_EQ(a.MainRunwayElevation, 0);
}

TEST(RunwayEnds, AnEndOfALaterAndLongerRunwayOverwrites) {
    const Airport a = Decode(AtField()
                                 .Runway(5000, 1, 5)
                                 .RunwayEnd(1, 1, 100, 50, 5)
                                 .Runway(9000, 150, 16)
                                 .RunwayEnd(2, 2, 200, 160, 16));
    EXPECT_EQ(a.MainRunwayElevation, 656);
    EXPECT_EQ(a.MainRunwayHeading, 160);
}

TEST(RunwayEnds, OneThatIsNotToBeDecodedRepeatsTheEndBefore) {
    const auto runway = AtField().Runway(9000, 150, 16);
    EXPECT_EQ(Decode(AirportBuilder(runway).RunwayEnd(1, 1, 100, 0, 16, 0, 0)).MainRunwayElevation, 0);
    EXPECT_EQ(Decode(AirportBuilder(runway).RunwayEnd(1, 1, 100, 0, 16, 0, 1)).MainRunwayElevation, 328);
    EXPECT_EQ(
        Decode(AirportBuilder(runway).RunwayEnd(1, 1, 100, 0, 16, 0, 1).RunwayEnd(1, 1, 200, 0, 34, 0, 0))
            .MainRunwayElevation,
        656);
    EXPECT_EQ(Decode(AirportBuilder(runway).RunwayEnd(1, 1, 100, 0, 16).RunwayEnd(1, 1, 200, 0, 37))
                  .MainRunwayElevation,
              656);
    EXPECT_EQ(Decode(AirportBuilder(runway).RunwayEnd(1, 1, 100, 0, 16).RunwayEnd(1, 1, 200, 0, 34, 5))
                  .MainRunwayElevation,
              656);
}

TEST(RunwayEnds, WithoutARunwayAnUndecodedEndMatchesTheEmptyDesignator) {
    EXPECT_EQ(Decode(AtField().RunwayEnd(1, 1, 100, 0, 16, 0, 0)).MainRunwayElevation, 328);
    EXPECT_EQ(Decode(AtField().RunwayEnd(1, 1, 100, 0, 16, 0, 1)).MainRunwayElevation, 0);
}

TEST(RunwayEnds, TheHeadingIsMagnetic) {
    Station station;
    station.MagVarGrid.assign(MagVarGridSize, 18 * 65536 / 360 + 1);  // 18 degrees east
    const auto heading = [&](double headingTrue) {
        return Decode(AtField().Runway(9000, 150, 9).RunwayEnd(47.5, -122.25, 0, headingTrue, 9), station)
            .MainRunwayHeading;
    };
    EXPECT_EQ(heading(90), 72);
    EXPECT_EQ(heading(270), 252);
    EXPECT_EQ(heading(10), 352);
    EXPECT_EQ(heading(112.5), 94);  // 112.5 rounds to the even 112
    EXPECT_EQ(heading(67.5), 50);   // 67.5 to 68
    EXPECT_EQ(heading(18), 0);
}

TEST(RunwayEnds, APlaceOffTheMagneticTableIsDamage) {
    const Bytes end = RecordBuilder(facility::RunwayEndId)
                          .Put(facility::runway_end::Latitude, std::numeric_limits<std::int32_t>::min())
                          .Put(facility::runway_end::Number, 9)
                          .Put(facility::runway_end::Decoded, 1)
                          .Get();
    EXPECT_THAT(WhyDamaged(AtField().Runway(1, 1, 9).Record(end)), HasSubstr("magnetic variation table"));
}

TEST(RunwayEnds, AnElevationBeyondItsFieldIsDamage) {
    EXPECT_THAT(WhyDamaged(AtField().Runway(1, 1, 9).RunwayEnd(1, 1, std::numeric_limits<int>::max(), 0, 9)),
                HasSubstr("does not fit its field"));
}

// ---- Identifier and frequencies

TEST(AirportIdent, IsUpperCase) {
    EXPECT_EQ(Decode(AtField().Ident("ktst")).Icao, "KTST");
    EXPECT_EQ(Decode(AtField().Ident("s\xE9")).Icao, "S\xE9");
    EXPECT_EQ(Decode(AtField().Ident("")).Icao, "");
}

TEST(Frequencies, GoWhereTheirTypeSays) {
    const Airport a = Decode(AtField()
                                 .Com(4, 0x1228000)
                                 .Com(5, 0x1219000)
                                 .Com(6, 0x1183000)
                                 .Com(7, 0x1111111)
                                 .Com(8, 0x1180500)
                                 .Com(10, 0x1200000)
                                 .Com(11, 0x1111111));
    EXPECT_EQ(a.CtafFreq, "122.8");
    EXPECT_EQ(a.GroundFreq, "121.9");
    EXPECT_EQ(a.TowerFreq, "118.3");
    EXPECT_EQ(a.ApproachFreq, "118.05");
    EXPECT_EQ(a.CenterFreq, "120");
}

TEST(Frequencies, DepartureStandsInOnlyWhereThereIsNoApproach) {
    EXPECT_EQ(Decode(AtField().Com(Departure, 0x1204000)).ApproachFreq, "120.4");
    EXPECT_EQ(Decode(AtField().Com(Departure, 0x1204000).Com(Approach, 0x1192000)).ApproachFreq, "119.2");
    EXPECT_EQ(Decode(AtField().Com(Approach, 0x1192000).Com(Departure, 0x1204000)).ApproachFreq, "119.2");
    EXPECT_EQ(Decode(AtField().Com(Departure, 0x1204000).Com(Departure, 0x1205000)).ApproachFreq, "120.4");
}

TEST(Frequencies, ALaterOneOfTheSameTypeOverwrites) {
    EXPECT_EQ(Decode(AtField().Com(6, 0x1183000).Com(6, 0x1184000)).TowerFreq, "118.4");
}

TEST(Frequencies, TheHexadecimalDigitsAreTheDecimalOnes) {
    const auto text = [](std::int64_t word) { return Decode(AtField().Com(6, word)).TowerFreq; };
    EXPECT_EQ(text(0), "0");
    EXPECT_EQ(text(0x1), "0.0001");
    EXPECT_EQ(text(0x10), "0.001");
    EXPECT_EQ(text(0x10000), "1");
    EXPECT_EQ(text(0x1182750), "118.275");
    EXPECT_EQ(text(0x99999999), "9999.9999");
}

TEST(Frequencies, AWordWithALetterAmongItsDigitsIsPassedOver) {
    EXPECT_EQ(Decode(AtField().Com(6, 0x1183000).Com(6, 0x118A000)).TowerFreq, "118.3");
    EXPECT_EQ(Decode(AtField().Com(6, 0xFFFFFFFF)).TowerFreq, "");
}

// ---- The stream

TEST(RecordStream, AnUnknownRecordEndsTheAirportWithWhatItHas) {
    const Airport a = Decode(AtField().Ident("KTST").Record(RecordBuilder(0x10007).Get()).Com(6, 0x1183000));
    EXPECT_EQ(a.Icao, "KTST");
    EXPECT_EQ(a.TowerFreq, "");
}

TEST(RecordStream, ARecordOfNoLengthIsDamage) {
    EXPECT_THAT(WhyDamaged(AtField().Record(ByteWriter().Long(0x10004).Long(-8).Get())),
                HasSubstr("an entry of 0"));
}

TEST(RecordStream, DamageTakesBackWhatTheFileHadAddedAndNothingElse) {
    AirportList airports;
    ScanFacilities(BglBuilder().First("Before", AtField()).Buffer(), {}, airports);
    const Bytes damaged = BglBuilder()
                              .First("Good", AtField())
                              .First("Bad", AtField().Record(ByteWriter().Long(0x10004).Long(-8).Get()))
                              .Buffer();
    EXPECT_THROW(ScanFacilities(damaged, {}, airports), DamagedData);
    ASSERT_EQ(airports.Count(), 1);
    EXPECT_EQ(airports.Fields(0).Name, "Before");
}

TEST(RecordStream, AFileCutAnywhereIsDamageOrWhole) {
    const Bytes whole =
        BglBuilder()
            .First("Test Field", AtField()
                                     .Ident("KTST")
                                     .Runway(9000, 150, 16)
                                     .RunwayEnd(1, 1, 1, 1, 16)
                                     .Com(6, 0x1183000)
                                     .TaxiBlock(TaxiBlockBuilder().Points({{1, 5, 5}}).Names({"A"})))
            .Get();
    for (std::size_t length = 0; length < whole.size(); ++length) {
        Bytes cut(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(length));
        cut.push_back(0);
        // Of the chain's last entry only the id is looked at.
        if (length >= whole.size() - 5) {
            EXPECT_EQ(Scan(cut).Count(), 1) << length;
        } else {
            EXPECT_THROW(Scan(cut), DamagedData) << length;
        }
    }
}

TEST(RecordStream, AFewEntriesMaySharePlacesButASmallFileCanNotFillTheMemory) {
    const auto sharedBy = [](int entries) {
        ChainFile f;
        f.Begin(facility::header::FirstChain);
        const Bytes entry = BglBuilder::ListEntry("", f.data, facility::AirportType, facility::ListEntryId);
        f.file.Append(BglBuilder::NameList(std::vector<Bytes>(static_cast<std::size_t>(entries), entry)));
        f.file.Long(0).Long(0);
        return f.Buffer();
    };
    EXPECT_EQ(Scan(sharedBy(1000)).Count(), 1000);
    EXPECT_THAT(WhatIsThrown<DamagedData>([&] { Scan(sharedBy(200000)); }), HasSubstr("again and again"));
}

TEST(RecordStream, RandomDamageIsDamageOrAnAirportAndNothingElse) {
    const std::random_device::result_type seed = std::random_device{}();
    SCOPED_TRACE(seed);
    std::mt19937 random(seed);
    const Bytes whole =
        BglBuilder()
            .First("One", AtField().Ident("KTST").Runway(9000, 150, 16).Com(6, 0x1183000))
            .Second("Two", AtField().TaxiBlock(
                               TaxiBlockBuilder().Points({{1, 5, 5}}).Paths({{0, 0, 0, 0}}).Names({"A"})))
            .Buffer();
    for (int round = 0; round < 20000; ++round) {
        Bytes damaged = whole;
        for (int i = 0; i < 3; ++i) {
            damaged[std::uniform_int_distribution<std::size_t>(140, damaged.size() - 1)(random)] =
                static_cast<std::uint8_t>(std::uniform_int_distribution<int>(0, 255)(random));
        }
        AirportList airports;
        try {
            ScanFacilities(damaged, {}, airports);
        } catch (const DamagedData&) {
            EXPECT_EQ(airports.Count(), 0);
        }
    }
}

}  // namespace
}  // namespace corvenna
