#include "practice/json_file.h"

#include <gmock/gmock.h>

#include "practice/data_files.h"

namespace corvenna {
namespace {

using testing::EndsWith;

constexpr const char* Sample = R"({"a": {"list": [1, 2.5, "x\u00e9"]}, "yes": true})";

/// What is said about a place of the sample.
template <class Ask>
std::string Complaint(Ask ask) {
    const TemporaryFile file(Sample);
    return ComplaintOf<DataFileError>([&] {
        const JsonFile json(file.Path());
        ask(json.Root());
    });
}

TEST(JsonFile, ValuesAreReadFromTheirPlaces) {
    const TemporaryFile file(Sample);
    const JsonFile json(file.Path());
    const auto list = json.Root()["a"]["list"].Elements();
    ASSERT_EQ(list.size(), 3u);
    EXPECT_EQ(list[0].WholeWithin(1, 1), 1);
    EXPECT_EQ(list[1].Number(), 2.5);
    EXPECT_EQ(list[2].Text(), "x\xE9");  // in the code page
    EXPECT_TRUE(json.Root()["yes"].Truth());
    EXPECT_TRUE(json.Root().Has("a"));
    EXPECT_FALSE(json.Root().Has("b"));
}

TEST(JsonFile, AMissingFileIsNamed) {
    const auto words = ComplaintOf<DataFileError>([] { JsonFile("no-such-folder/x.json"); });
    EXPECT_EQ(words, "no-such-folder/x.json: the file can't be read");
}

TEST(JsonFile, AFolderIsNoFile) {
    const auto words =
        ComplaintOf<DataFileError>([] { JsonFile file(std::filesystem::temp_directory_path()); });
    EXPECT_THAT(words, EndsWith(": the file can't be read"));
}

TEST(JsonFile, WhatIsNoJsonIsNamedWithItsLine) {
    const TemporaryFile file("{\n\"a\": 1,\n\"b\": ?\n}");
    const auto words = ComplaintOf<DataFileError>([&] { JsonFile{file.Path()}; });
    EXPECT_EQ(words, file.Path().string() + ": line 3: not JSON");
}

TEST(JsonFile, AnEmptyFileIsNoJson) {
    const TemporaryFile file("");
    EXPECT_THAT(ComplaintOf<DataFileError>([&] { JsonFile{file.Path()}; }), EndsWith(": line 1: not JSON"));
}

TEST(JsonFile, EveryComplaintNamesThePlace) {
    EXPECT_THAT(Complaint([](const JsonValue& root) { root["b"]; }), EndsWith(".json: b is missing"));
    EXPECT_THAT(Complaint([](const JsonValue& root) { root["a"]["b"]; }), EndsWith(".json: a.b is missing"));
    EXPECT_THAT(Complaint([](const JsonValue& root) { root["yes"]["b"]; }), EndsWith(": yes.b is missing"));
    EXPECT_THAT(Complaint([](const JsonValue& root) { root["a"].Elements(); }), EndsWith(": a is no list"));
    EXPECT_THAT(Complaint([](const JsonValue& root) { root["a"].Number(); }), EndsWith(": a is no number"));
    EXPECT_THAT(Complaint([](const JsonValue& root) { root["a"].Text(); }), EndsWith(": a is no text"));
    EXPECT_THAT(Complaint([](const JsonValue& root) { root["a"].Truth(); }),
                EndsWith(": a is neither true nor false"));
    EXPECT_THAT(Complaint([](const JsonValue& root) { root["a"]["list"].Elements()[1].WholeWithin(0, 9); }),
                EndsWith(": a.list[1] is no whole number"));
    EXPECT_THAT(Complaint([](const JsonValue& root) { throw root.Complaint("is odd"); }),
                EndsWith(".json: is odd"));
}

TEST(JsonFile, ANumberOutsideItsBoundsIsNamedWithThem) {
    const auto within = [](double lowest, double highest) {
        return Complaint(
            [=](const JsonValue& root) { root["a"]["list"].Elements()[1].NumberWithin(lowest, highest); });
    };
    EXPECT_EQ(within(2.5, 3), "");
    EXPECT_EQ(within(2, 2.5), "");
    EXPECT_THAT(within(2.6, 3), EndsWith(": a.list[1] is 2.5, not within 2.6 to 3"));
    EXPECT_THAT(within(2, 2.4), EndsWith(": a.list[1] is 2.5, not within 2 to 2.4"));
}

}  // namespace
}  // namespace corvenna
