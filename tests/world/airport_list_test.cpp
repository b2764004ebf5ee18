#include "world/airport_list.h"

#include <gmock/gmock.h>

#include "world/errors.h"
#include "world/full_airport.h"
#include "world/temp_folder.h"

namespace corvenna {
namespace {

TEST(AirportList, AirportsWithTheSameLabelBothStayAndTheLastIsFound) {
    Airport late = Full();
    late.TowerFreq = "late";
    const AirportList list = ListOf({Full(), late, Blank()});
    EXPECT_EQ(AirportLabel(list.Fields(0)), "T\xE9st (KTST)");
    EXPECT_EQ(list.FindLast("T\xE9st (KTST)"), 1);
    EXPECT_EQ(list.FindLast(" ()"), 2);
    EXPECT_EQ(list.FindLast("t\xE9st (KTST)"), -1);
    EXPECT_EQ(list.FindLast(""), -1);
}

TEST(AirportList, ATextTooLongForItsLengthFieldIsRefusedAndTheListIsAsBefore) {
    AirportList list = ListOf({Full()});
    Airport a;
    a.CtafFreq.assign(65535, 'x');
    list.Add(a);
    EXPECT_EQ(list.Record(1), a);
    a.CtafFreq += 'x';
    EXPECT_THROW(list.Add(a), std::length_error);
    EXPECT_EQ(list.Count(), 2);
    EXPECT_EQ(AirportList::FromBytes(BytesOf(list) + AirportList::SpareRecord(), 2).Count(), 2);
}

TEST(AirportList, TakingAirportsBackLeavesTheOthers) {
    AirportList list = ListOf({Full(), Blank(), Full()});
    list.Truncate(5);
    EXPECT_EQ(list.Count(), 3);
    list.Truncate(1);
    list.Add(Blank());
    EXPECT_EQ(BytesOf(list), Text(FullOnDisk()) + std::string(76, '\0'));
}

TEST(AirportList, IsMadeOfTheBytesOfItsRecordsAndTakesLittleMore) {
    const std::string bytes = Text(FullOnDisk()) + AirportList::SpareRecord();
    const AirportList list = AirportList::FromBytes(bytes, 1);
    EXPECT_EQ(BytesOf(list), Text(FullOnDisk()));
    EXPECT_EQ(list.Record(0), Full());
    EXPECT_LE(list.MemoryInUse(), 2 * bytes.size());
}

TEST(AirportList, OfManyPiecesIsStillOneList) {
    constexpr std::int32_t Airports = 40;
    Airport big;
    big.CtafFreq.assign(65535, 'x');
    AirportList list;
    for (std::int32_t i = 0; i < Airports; ++i) {
        big.Name = std::to_string(i);
        list.Add(big);
    }
    EXPECT_GT(list.Pieces().size(), 2U);
    EXPECT_EQ(list.Record(17).Name, "17");
    EXPECT_EQ(list.FindLast("39 ()"), 39);
    const std::string bytes = BytesOf(list) + AirportList::SpareRecord();
    EXPECT_EQ(AirportList::FromBytes(bytes, Airports).Fields(38).Name, "38");

    list.Truncate(17);
    list.Add(Full());
    EXPECT_EQ(list.Record(16).Name, "16");
    EXPECT_EQ(list.Record(17), Full());
    EXPECT_EQ(BytesOf(list),
              bytes.substr(0, BytesOf(list).size() - FullOnDisk().size()) + Text(FullOnDisk()));
    list.Truncate(0);
    EXPECT_EQ(BytesOf(list), "");
    list.Add(Full());
    EXPECT_EQ(list.Record(0), Full());
}

TEST(AirportList, FieldsAreThoseOfTheRecord) {
    const AirportList list = ListOf({Blank(), Full()});
    EXPECT_EQ(list.Fields(1).Name, Full().Name);
    EXPECT_EQ(list.Fields(1).CtafFreq, Full().CtafFreq);
    EXPECT_EQ(list.Fields(1).MainRunwayHasIls, -1);
    EXPECT_EQ(list.Fields(0).Name, "");
}

}  // namespace
}  // namespace corvenna
