#include "world/record_stream.h"

#include <gmock/gmock.h>

#include "world/airport_list.h"
#include "world/full_airport.h"
#include "world/temp_folder.h"

namespace corvenna {
namespace {

using testing::HasSubstr;
using testing::StartsWith;

TEST(RecordStream, NumbersAreLittleEndianWithoutPadding) {
    std::string bytes;
    RecordWriter writer(bytes);
    writer.Number<std::uint8_t>(0xFE);
    writer.Number<std::int16_t>(-2);
    writer.Number<std::int32_t>(0x01020304);
    writer.Number(1.0);
    EXPECT_EQ(bytes, std::string("\xFE\xFE\xFF\4\3\2\1\0\0\0\0\0\0\xF0\x3F", 15));
}

TEST(RecordStream, WhatWasWrittenIsReadBack) {
    std::string bytes;
    RecordWriter writer(bytes);
    writer.Text("a\0\xFF");
    writer.Text("");
    writer.Number<std::int32_t>(-2147483647 - 1);
    writer.Number(-0.0);
    RecordReader reader(bytes, 0);
    std::string text, empty = "x";
    std::int32_t number = 0;
    double real = 1;
    reader.Text(text);
    reader.Text(empty);
    reader.Number(number);
    reader.Number(real);
    EXPECT_EQ(text, "a\0\xFF");
    EXPECT_EQ(empty, "");
    EXPECT_EQ(number, -2147483647 - 1);
    EXPECT_TRUE(std::signbit(real));
    EXPECT_EQ(reader.At(), bytes.size());
}

TEST(RecordStream, AReadBeyondTheBytesTellsThePlaceAndWhatWasExpected) {
    const std::string bytes("\5\0abc", 5);
    std::string text = "before";
    RecordReader reader(bytes, 0);
    EXPECT_EQ(WhatIsThrown<DamagedData>([&] { reader.Text(text); }),
              "byte 2: a text of 5 bytes expected, 3 bytes are left");
    EXPECT_EQ(text, "before");
}

TEST(RecordStream, AnArrayThatWasNeverAllocatedIsANoughtAndAnEmptyOneItsHead) {
    const auto nothing = [](auto&, auto&) {};
    std::string bytes;
    RecordWriter writer(bytes);
    DynamicArray<TaxiPoint> array;
    writer.Array(array, 20, nothing);
    array.emplace();
    writer.Array(array, 20, nothing);
    EXPECT_EQ(bytes, std::string("\0\0\1\0\0\0\0\0\0\0\0\0", 12));
    RecordReader reader(bytes, 0);
    reader.Array(array, 20, nothing);
    EXPECT_FALSE(array.has_value());
    reader.Array(array, 20, nothing);
    EXPECT_TRUE(array.has_value() && array->empty());
}

TEST(RecordStream, ArrayHeadsAreCheckedBeforeMemoryIsTaken) {
    const auto withHead = [](int dimensions, std::int64_t count, std::int64_t lowerBound) {
        Bytes bytes =
            ByteWriter().ZerosTo(64).Word(dimensions).Long(count).Long(lowerBound).ZerosTo(300).Get();
        return WhatIsThrown<DamagedData>([&] { AirportList::FromBytes(Text(bytes), 1); });
    };
    EXPECT_THAT(withHead(2, 1, 0), StartsWith("byte 64: an array of 1 dimension from 0 expected, found 2"));
    EXPECT_THAT(withHead(1, 1, 1), HasSubstr("from 1"));
    EXPECT_THAT(withHead(1, 2147483647, 0), HasSubstr("2147483647 elements can't stand"));
    EXPECT_THAT(withHead(1, -1, 0), HasSubstr("-1 elements can't stand"));
}

}  // namespace
}  // namespace corvenna
