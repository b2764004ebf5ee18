#include "world/object_walker.h"

#include <gmock/gmock.h>

#include <map>
#include <set>

#include "world/bgl_builder.h"
#include "world/errors.h"
#include "world/temp_folder.h"

namespace corvenna {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

constexpr std::int64_t List = 16;

/// An object whose first byte and size can be told, with a stream of opcodes.
Bytes Object(const Bytes& stream, int firstByte = 5, int size = -1) {
    ByteWriter object;
    object.Byte(firstByte)
        .ZerosTo(10)
        .Word(size < 0 ? static_cast<int>(stream.size()) + 12 : size)
        .Append(stream);
    return object.Get();
}

/// A file with one list entry that leads to objects back to back.
Bytes FileOf(const std::vector<Bytes>& objects) {
    ByteWriter file;
    file.ZerosTo(List).Byte(21).ZerosTo(List + 5).Long(16).ZerosTo(List + 16);
    for (const Bytes& object : objects) file.Append(object);
    return file.Byte(0).Get();
}

constexpr std::int64_t FirstObject = List + 16;

std::vector<std::string> Walk(const Bytes& file, std::int64_t list = List) {
    std::vector<std::string> logs;
    WalkObjects(file, list, "name.bgl", [&](const std::string& log) { logs.push_back(log); });
    return logs;
}

std::string Head(std::int64_t offset) {
    return "BGL Filename: name.bgl\r\nObject offset: " + std::to_string(offset) + "\r\nOpcodes List:\r\n";
}

TEST(ObjectWalker, LogsTheNameTheOffsetAndTheOpcodesInUpperCaseHexadecimal) {
    EXPECT_THAT(Walk(FileOf({Object({0x0A, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0xAE, 0, 0x16})})),
                ElementsAre(Head(FirstObject) + "0xA\r\n0xAE\r\n0x16\r\n"));
}

TEST(ObjectWalker, AnObjectOfSize12HasAnEmptyStream) {
    EXPECT_THAT(Walk(FileOf({Object({})})), ElementsAre(Head(FirstObject)));
}

TEST(ObjectWalker, AnEndingOpcodeEndsTheStreamAndTheWalkGoesOnWithTheNextObject) {
    for (const int opcode : {0x00, 0x01, 0x16, 0x9A, 0xA3}) {
        const Bytes object = Object({static_cast<std::uint8_t>(opcode), 0x61, 0x61});
        const auto logs = Walk(FileOf({object, Object({0x02, 0})}));
        ASSERT_THAT(logs, SizeIs(2)) << opcode;
        EXPECT_EQ(logs[1], Head(FirstObject + std::ssize(object)) + "0x2\r\n");
    }
}

TEST(ObjectWalker, ObjectsBeginWith5Or8Or11) {
    EXPECT_THAT(Walk(FileOf({Object({}, 5), Object({}, 8), Object({}, 11), Object({}, 6), Object({}, 5)})),
                SizeIs(3));
}

TEST(ObjectWalker, AListIsARunOfEntriesThatEachCountFromTheList) {
    ByteWriter file;
    file.ZerosTo(List);
    file.Byte(21).ZerosTo(List + 5).Long(40);
    file.Byte(21).ZerosTo(List + 14).Long(60);
    file.Byte(20).ZerosTo(List + 40).Append(Object({})).ZerosTo(List + 60).Append(Object({}, 8)).Byte(0);
    EXPECT_THAT(Walk(file.Get()), ElementsAre(Head(List + 40), Head(List + 60)));
    EXPECT_THAT(Walk(file.Get(), List + 18), IsEmpty());
}

// ---- Lengths

/// An opcode with operands, then one that says whether the walk has found its end.
std::vector<std::string> After(Bytes opcode, std::size_t length) {
    opcode.resize(length, 0xFF);
    opcode.push_back(0x02);
    opcode.push_back(0);
    const auto logs = Walk(FileOf({Object(opcode)}));
    std::vector<std::string> opcodes;
    std::string rest = logs.at(0).substr(Head(FirstObject).size());
    for (std::size_t end; (end = rest.find("\r\n")) != std::string::npos; rest.erase(0, end + 2)) {
        opcodes.push_back(rest.substr(0, end));
    }
    return opcodes;
}

struct LengthRow {
    std::size_t Length;
    const char* Opcodes;
};

constexpr LengthRow FixedLengthRows[] = {
    {2, "2 4 5 8 9 C 22 38 76 7D 7F 85 AE"},
    {3, "86"},
    {4,
     "D F 10 12 13 14 17 1E 1F 23 30 32 3F 47 48 50 51 52 53 56 59 5A 5B 5E 65 66 67 71 75 80 81 87 8E 92 93 "
     "99 A4 "
     "A5 AC"},
    {6, "26 2B 2D 2E 3B 41 4D 4E 4F 54 5C 74 7E 88 89 8A 8F 96 97 9C 9F"},
    {8, "6 7 E 37 39 5D 5F 68 6A 6C 6D 6F 8B 9B A2 A6"},
    {10, "A B 24 28 33 34 55 57 58 69 6B 6E 78 79 7C 84 95 A1"},
    {12, "11 2C 3A 40 4A 91 94 A8"},
    {14, "25 9D B3"},
    {16, "19 1C 35 45 4C 73"},
    {18, "31 49"},
    {20, "63 72 82 9E"},
    {22, "1B 21 46 98 A7 A9"},
    {24, "18 3D"},
    {28, "3C"},
    {30, "AD"},
    {32, "2F 77 83"},
    {38, "AB"},
    {40, "42 44"},
    {44, "B2"},
    {158, "8D"},
};

TEST(OpcodeLengths, AreFixedForMostOpcodes) {
    for (const LengthRow& row : FixedLengthRows) {
        std::istringstream opcodes(row.Opcodes);
        for (std::string hex; opcodes >> hex;) {
            const auto opcode = static_cast<std::uint8_t>(std::stoi(hex, nullptr, 16));
            EXPECT_THAT(After({opcode}, row.Length), ElementsAre("0x" + hex, "0x2"));
        }
    }
}

TEST(OpcodeLengths, AreComputedForOthers) {
    struct Row {
        Bytes Opcode;
        std::size_t Length;
    };
    const std::vector<Row> rows = {
        {{0x15, 0, 2, 0, 3, 0}, 18 + 3 * 2 * 3},
        {{0x03, 0, 5, 0}, 8 + 2 * 5},
        {{0x1D, 0, 5, 0}, 16 + 2 * 5},
        {{0x27, 0, 5, 0}, 14 + 2 * 5},
        {{0x2A, 0, 5, 0}, 14 + 2 * 5},
        {{0x3E, 0, 0, 1}, 14 + 2 * 256},
        {{0x20, 0, 5, 0}, 14 + 6 * 5},
        {{0x60, 0, 5, 0}, 14 + 6 * 5},
        {{0x7A, 0, 5, 0}, 14 + 6 * 5},
        {{0x7B, 0, 5, 0}, 16 + 6 * 5},
        {{0x1A, 0, 9, 9, 5, 0}, 6 + 6 * 5},
        {{0x29, 0, 9, 9, 5, 0}, 6 + 12 * 5},
        {{0x62, 0, 9, 9, 5, 0}, 6 + 2 * 5},
        {{0x64, 0, 9, 9, 5, 0}, 6 + 2 * 5},
        {{0x70, 0, 9, 9, 5, 0}, 6 + 4 * 5},
        {{0x36, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 32, 0}, 16 + 2 * (32 / 16 + 1)},
        {{0x8C, 0, 0, 0, 0, 0, 0, 0, 5, 0}, 6 + 5},
        {{0x43, 0, 7, 0}, 7},
        {{0x4B, 0, 7, 0}, 7},
        {{0xA0, 0, 7, 0}, 7},
        {{0xAA, 0, 7, 0}, 7},
        {{0x90, 0, 4, 0}, 20},
        {{0x90, 0, 5, 0}, 20},
    };
    for (const Row& row : rows) {
        EXPECT_THAT(After(row.Opcode, row.Length), ElementsAre(fmt::format("0x{:X}", row.Opcode[0]), "0x2"));
    }
}

TEST(OpcodeLengths, Opcode8CWithNothingBehindItIs6Long) {
    EXPECT_THAT(After({0x8C, 0, 0, 0, 0, 0, 0x02, 0, 0, 0}, 10), ElementsAre("0x8C", "0x2", "0x0"));
}

TEST(OpcodeLengths, ThoseOf36CanEndBetweenTwoBytesAndTheNextPositionIsRounded) {
    const auto with = [](int operand) {
        Bytes stream(15 + 40, 0);
        stream[0] = 0x36;
        stream[14] = static_cast<std::uint8_t>(operand);
        for (std::size_t i = 16; i < stream.size(); ++i)
            stream[i] = static_cast<std::uint8_t>(i % 2 == 0 ? 0x9A : 0xA3);
        return Walk(FileOf({Object(stream)})).at(0).substr(Head(FirstObject).size());
    };
    EXPECT_EQ(with(0), "0x36\r\n0x9A\r\n");   // 18
    EXPECT_EQ(with(3), "0x36\r\n0x9A\r\n");   // 18.375
    EXPECT_EQ(with(4), "0x36\r\n0x9A\r\n");   // 18.5, to the even 18
    EXPECT_EQ(with(5), "0x36\r\n0xA3\r\n");   // 18.625
    EXPECT_EQ(with(12), "0x36\r\n0x9A\r\n");  // 19.5, to the even 20
}

TEST(OpcodeLengths, AStreamIsLeftOnceItsLastByteHasBeenPassed) {
    Bytes stream(19, 0x9A);
    stream[0] = 0x36;
    stream[14] = 4;  // to 18.5, beyond the last byte, number 18
    stream[15] = 0;
    EXPECT_EQ(Walk(FileOf({Object(stream)})).at(0), Head(FirstObject) + "0x36\r\n");
}

// ---- Errors

OpcodeError ErrorOf(const Bytes& file) {
    try {
        Walk(file);
    } catch (const OpcodeError& error) {
        return error;
    }
    ADD_FAILURE() << "no error";
    return {"", ""};
}

TEST(OpcodeErrors, AnUnknownOpcodeIsToldWithItsPlaceAndTheOneBefore) {
    const OpcodeError error = ErrorOf(FileOf({Object({0xAE, 0, 0x61})}));
    EXPECT_EQ(error.Log(), Head(FirstObject) + "0xAE\r\n0x61\r\n - Error Here!");
    EXPECT_STREQ(error.what(), "Error - Current Opcode: 61  Current File Offset: 46  Previous Opcode: AE");
}

TEST(OpcodeErrors, ThePreviousOpcodeIs0AtFirstAndKeptFromObjectToObject) {
    EXPECT_THAT(ErrorOf(FileOf({Object({0xFF})})).what(), HasSubstr("Previous Opcode: 0"));
    EXPECT_THAT(ErrorOf(FileOf({Object({0x9A}), Object({}), Object({0xFF})})).what(),
                HasSubstr("Previous Opcode: 9A"));
}

TEST(OpcodeErrors, APositionBetweenTwoBytesIsToldWithItsFraction) {
    Bytes stream(40, 0x61);
    stream[0] = 0x36;
    stream[14] = 1;
    stream[15] = 0;
    EXPECT_THAT(ErrorOf(FileOf({Object(stream)})).what(), HasSubstr("Current File Offset: 62.125  Previous"));
}

TEST(OpcodeErrors, ComputedLengthsOf0AreErrors) {
    for (const int opcode : {0x43, 0x4B, 0xA0, 0xAA}) {
        EXPECT_THAT(ErrorOf(FileOf({Object({static_cast<std::uint8_t>(opcode), 0, 0, 0})})).what(),
                    HasSubstr(fmt::format("Current Opcode: {:X} ", opcode)));
    }
}

TEST(OpcodeErrors, TheUnknownOpcodesAreThese) {
    std::set<int> unknown;
    for (int opcode = 0; opcode < 256; ++opcode) {
        Bytes stream(400, 0);
        stream[0] = static_cast<std::uint8_t>(opcode);
        stream[2] = 1;  // so that no computed length is 0
        try {
            Walk(FileOf({Object(stream)}));
        } catch (const OpcodeError& error) {
            if (error.Log().ends_with(fmt::format("List:\r\n0x{:X}\r\n - Error Here!", opcode)))
                unknown.insert(opcode);
        }
    }
    std::set<int> expected = {0x61, 0xAF, 0xB0, 0xB1};
    for (int opcode = 0xB4; opcode < 256; ++opcode) expected.insert(opcode);
    EXPECT_EQ(unknown, expected);
}

TEST(OpcodeErrors, OffsetsThatLeaveTheFileAreDamage) {
    EXPECT_THROW(Walk(FileOf({}), -1), DamagedData);
    EXPECT_THROW(Walk(FileOf({}), 1 << 30), DamagedData);
    EXPECT_THROW(Walk(FileOf({Object({0x02, 0}, 5, 60000)})), DamagedData);
    for (const std::int64_t offset : {std::int64_t{0x7FFFFFFF}, std::int64_t{-0x7FFFFFFF}}) {
        EXPECT_THROW(Walk(ByteWriter().ZerosTo(List).Byte(21).ZerosTo(List + 5).Long(offset).Get()),
                     DamagedData);
    }
}

TEST(OpcodeErrors, AnObjectOf0BytesIsDamageBecauseTheWalkWouldStandStill) {
    EXPECT_THAT(WhatIsThrown<DamagedData>([] { Walk(FileOf({Object({}, 5, 0)})); }),
                HasSubstr("an object of 0 bytes"));
    EXPECT_THAT(Walk(FileOf({Object({}, 5, 11)})), SizeIs(1));
}

TEST(OpcodeErrors, EntriesThatLeadToTheSameObjectsAgainAndAgainAreDamage) {
    constexpr int Entries = 4000;
    constexpr int Objects = List + 9 * Entries + 1;
    ByteWriter file;
    file.ZerosTo(List);
    for (int entry = 0; entry < Entries; ++entry) {
        const int place = List + 9 * entry + 5;
        file.Byte(21).ZerosTo(place).Long(Objects - List);
    }
    file.ZerosTo(Objects);
    for (int object = 0; object < 1000; ++object) {
        const int length = Objects + 12 * object + 10;
        file.Byte(5).ZerosTo(length).Word(12);
    }
    std::size_t logs = 0;
    EXPECT_THROW(WalkObjects(file.Byte(0).Byte(0).Get(), List, "x.bgl", [&](const std::string&) { ++logs; }),
                 DamagedData);
    EXPECT_LT(logs, 100'000U);
}

}  // namespace
}  // namespace corvenna
