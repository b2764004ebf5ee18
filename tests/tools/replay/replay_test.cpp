#include "tools/replay/replay.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <fstream>
#include <sstream>

#include "tools/replay/script.h"

namespace corvenna {
namespace {

using testing::EndsWith;
using testing::HasSubstr;
using testing::StartsWith;

constexpr const char* TestField =
    R"({"do":"station","AirportName":"Test Field","AirportCode":"KTST","AirportLatitude":47.0,"AirportLongitude":-122.0,)"
    R"("GroundFrequency":"121.9","TowerFrequency":"118.3","ArtccFrequency":"Center","RunwayElevation":400})";
constexpr const char* Open =
    R"({"do":"open","controller_id":1,"controller_name":"KTST_Controller","max_players":16})";

/// A script as a file of its own for the length of a test.
class ScriptFile {
  public:
    explicit ScriptFile(const std::string& text)
        : path_(std::filesystem::temp_directory_path() /
                (std::string("corvenna-") + testing::UnitTest::GetInstance()->current_test_info()->name() +
                 ".jsonl")) {
        std::ofstream(path_, std::ios::binary) << text;
    }
    ~ScriptFile() { std::filesystem::remove(path_); }
    ScriptFile(const ScriptFile&) = delete;
    ScriptFile& operator=(const ScriptFile&) = delete;

    std::string Run() const {
        std::stringstream output;
        Replay replay(output);
        RunScript(ReadScript(path_), replay);
        return output.str();
    }

    std::string Error() const {
        try {
            Run();
        } catch (const ScriptError& error) {
            return error.what();
        }
        return "no error";
    }

  private:
    std::filesystem::path path_;
};

std::string Lines(std::initializer_list<std::string> lines) {
    std::string text;
    for (const std::string& line : lines) text += line + "\n";
    return text;
}

std::string ErrorOf(const std::string& line) { return ScriptFile(Lines({"# a comment", "", line})).Error(); }

TEST(Replay, TheWelcomeIsPrintedWithItsBytesAndItsText) {
    const ScriptFile script(
        Lines({TestField, Open, R"({"do":"enter","id":2,"name":"N12345"})",
               R"({"do":"announce","id":2,"role":"player"})", R"({"do":"pump"})", R"({"do":"tick"})"}));
    const std::string output = script.Run();
    EXPECT_THAT(output, StartsWith(R"({"send":{"to":2,"hex":"23100000da0000004e3132333435)"));
    EXPECT_THAT(output,
                HasSubstr(R"("text":"N12345. Welcome to Corvenna v1.3 (by Dravik). Want to use our ATC )"
                          R"(services at Test Field?: 1-Use ATC services"}})"));
}

TEST(Replay, AByteOfATextIsTheCharacterOfTheSameNumber) {
    const ScriptFile script(
        Lines({Open, R"({"do":"enter","id":2,"name":"J\u00fcrg\u0080ÿ"})",
               R"({"do":"announce","id":2,"role":"player"})", R"({"do":"pump"})", R"({"do":"tick"})"}));
    const std::string output = script.Run();
    EXPECT_THAT(output, HasSubstr("4afc726780ff2e"));
    EXPECT_THAT(output, HasSubstr(R"("text":"J\u00fcrg\u0080\u00ff. Welcome)"));
}

TEST(Replay, NoCharacterOfATextEndsALineOfTheOutput) {
    const std::string output = ScriptFile(Lines({R"({"do":"station","AirportName":"a\u0085b\nc\u001ed"})",
                                                 R"({"do":"dump-station"})"}))
                                   .Run();
    EXPECT_THAT(output, StartsWith(R"({"station":{"AirportName":"a\u0085b\nc\u001ed",)"));
    EXPECT_EQ(std::count(output.begin(), output.end(), '\n'), 1);
}

TEST(Replay, BeforeTheFirstOpeningAndAfterTheClosingNothingHappens) {
    const std::string handlers =
        Lines({R"({"do":"pump"})", R"({"do":"tick"})", R"({"do":"refresh"})", R"({"do":"close"})",
               R"({"do":"enter","id":2,"name":"N1"})", R"({"do":"chat","id":2,"text":"1"})",
               R"({"do":"leave","id":2})", R"({"do":"rename","id":3,"name":"N2"})"});
    EXPECT_EQ(ScriptFile(handlers).Run(), "");
    EXPECT_EQ(ScriptFile(Lines({Open, R"({"do":"close"})"}) + handlers).Run(), "{\"closed\":true}\n");
}

TEST(Replay, TimesMayBeNought) {
    const ScriptFile script(Lines({TestField, Open, R"({"do":"enter","id":2,"name":"N1"})",
                                   R"({"do":"refresh","times":0})", R"({"do":"refresh","times":2})"}));
    EXPECT_EQ(script.Run(),
              "{\"send\":{\"to\":2,\"hex\":\"0710000000000000\"}}\n{\"send\":{\"to\":2,\"hex\":"
              "\"0710000000000000\"}}\n");
}

TEST(Replay, AnUnknownPilotIsNotSet) {
    EXPECT_EQ(ScriptFile(Lines({Open, R"({"do":"pilot","name":"N1","set":{"Phase":"x"}})"})).Run(), "");
}

TEST(Replay, ATargetReplacesTheWholeFix) {
    const std::string output =
        ScriptFile(Lines({Open, R"({"do":"enter","id":2,"name":"N1"})",
                          R"({"do":"announce","id":2,"role":"player"})", R"({"do":"pump"})",
                          R"({"do":"pilot","name":"N1","set":{"Target":{"Name":"A","Altitude":7}}})",
                          R"({"do":"pilot","name":"N1","set":{"Target":{"Kind":"B"}}})", R"({"do":"dump"})"}))
            .Run();
    EXPECT_THAT(output,
                HasSubstr(R"("Target":{"Name":"","Kind":"B","Latitude":0.0,"Longitude":0.0,"Altitude":0})"));
}

TEST(Replay, EveryFieldOfTheStationComesBackInItsForm) {
    const std::string station =
        R"({"do":"station","AirportName":"F","AirportLatitude":1.5,"AirportLongitude":-2.25,"AirportCode":"C",)"
        R"("GroundFrequency":"g","TowerFrequency":"t","ApproachFrequency":"a","ArtccFrequency":"r","CtafFrequency":"c",)"
        R"("ActiveRunway":"09","RunwayLatitude":3.125,"RunwayLongitude":4.0,"RunwayElevation":-5,"RunwayLength":6,)"
        R"("RunwayWidth":7,"RunwayHeading":8,"RunwayHasIls":-1,"HighestTerrain":9,)"
        R"("AirportTaxiPoints":[[1,2.5,3.5]],"AirportParkingSpots":[["GATE 1",80,1.0,2.0]],)"
        R"("AirportTaxiPaths":[[2,0,1,"A"],[0,1,0,""]],"Mountains":[[10.0,20.0,3000]]})";
    std::string expected = station;
    expected.replace(0, std::string(R"({"do":"station",)").size(), "{\"station\":{");
    expected.insert(expected.size() - 1, ",\"MountainCount\":1}");
    expected += "\n";
    EXPECT_EQ(ScriptFile(Lines({station, R"({"do":"dump-station"})"})).Run(), expected);
}

TEST(Replay, AStationFieldNotGivenIsZeroOrEmptyAgain) {
    const std::string output =
        ScriptFile(Lines({TestField, R"({"do":"station","Mountains":[],"AirportTaxiPaths":[]})",
                          R"({"do":"dump-station"})"}))
            .Run();
    EXPECT_THAT(output, HasSubstr(R"("AirportName":"","AirportLatitude":0.0)"));
    EXPECT_THAT(output,
                HasSubstr(R"("AirportTaxiPoints":[[0,0.0,0.0]],"AirportParkingSpots":[["",0,0.0,0.0]],)"
                          R"("AirportTaxiPaths":[[0,0,0,""]],"Mountains":[],"MountainCount":0)"));
}

TEST(ScriptErrors, NameFileLineAndReason) {
    EXPECT_THAT(ErrorOf(R"({"do":"enter","id":2})"), HasSubstr(".jsonl:3: \"name\" is missing"));
    EXPECT_THAT(ReadScript("conversations/nobody_about.jsonl").Steps.size(), testing::Gt(0u));
    EXPECT_THROW(ReadScript("conversations/no such file.jsonl"), ScriptError);
    EXPECT_THROW(ReadScript("conversations"), ScriptError);
}

TEST(ScriptErrors, OneWrongLineAndNothingIsDone) {
    EXPECT_THAT(ScriptFile(Lines({Open, R"({"do":"dump"})", "{"})).Error(), HasSubstr(".jsonl:3: "));
}

TEST(ScriptErrors, WhatIsNotJsonIsToldByItsByte) {
    EXPECT_THAT(ErrorOf(R"({"do":"tick",})"), EndsWith(".jsonl:3: byte 14: not JSON"));
    EXPECT_THAT(ErrorOf(R"({"do":"tick"} {"do":"tick"})"), EndsWith(".jsonl:3: byte 15: not JSON"));
    EXPECT_THAT(ErrorOf("{\"do\":\"tick\"}" + std::string(1, '\0') + "x"),
                EndsWith(".jsonl:3: byte 14: not JSON"));
    EXPECT_THAT(ErrorOf(R"({"do":"tick","times":1e999})"), EndsWith(".jsonl:3: a number is too large"));
}

TEST(ScriptErrors, AQueueIsToldByItsName) {
    EXPECT_THAT(ErrorOf(R"({"do":"queues","LandingQueue":[1]})"),
                EndsWith(R"(.jsonl:3: "LandingQueue": a text is expected)"));
}

TEST(ScriptErrors, UnknownWordsAndFields) {
    EXPECT_THAT(ErrorOf(R"({"do":"fly"})"), HasSubstr("\"do\": \"fly\" is unknown"));
    EXPECT_THAT(ErrorOf(R"({"id":2})"), HasSubstr("\"do\" is missing"));
    EXPECT_THAT(ErrorOf(R"({"do":"pump","time":2})"), HasSubstr("\"time\" is unknown here"));
    EXPECT_THAT(ErrorOf(R"({"do":"station","AirportNam":"x"})"), HasSubstr("\"AirportNam\""));
    EXPECT_THAT(ErrorOf(R"({"do":"pilot","name":"N1","set":{"Heigth":1}})"), HasSubstr("\"Heigth\""));
    EXPECT_THAT(ErrorOf(R"({"do":"pilot","name":"N1","set":{"Target":{"Nam":""}}})"), HasSubstr("\"Nam\""));
    EXPECT_THAT(ErrorOf(R"([1])"), HasSubstr("a JSON object is expected"));
    EXPECT_THAT(ErrorOf(R"({"do":"pump"} x)"), HasSubstr(":3: "));
}

TEST(ScriptErrors, ValuesThatDoNotFitTheirFields) {
    for (const char* line : {
             R"({"do":"enter","id":2147483648,"name":"N1"})",
             R"({"do":"enter","id":2.5,"name":"N1"})",
             R"({"do":"enter","id":"2","name":"N1"})",
             R"({"do":"enter","id":2,"name":7})",
             R"({"do":"enter","id":2,"name":"€"})",
             R"({"do":"station","RunwayHeading":32768})",
             R"({"do":"station","RunwayHeading":null})",
             R"({"do":"station","AirportTaxiPoints":[[1,2]]})",
             R"({"do":"station","AirportParkingSpots":[["A",1,2,3,0]]})",
             R"({"do":"station","AirportTaxiPaths":[[0,1,2,3]]})",
             R"({"do":"station","AirportTaxiPaths":{}})",
             R"({"do":"station","Mountains":[[1,2,3.5]]})",
             R"({"do":"station","MagVarGrid":40000})",
             R"({"do":"pilot","name":"N1","set":{"Choice":256}})",
             R"({"do":"pilot","name":"N1","set":{"Choice":-1}})",
             R"({"do":"pilot","name":"N1","set":{"Target":"A"}})",
             R"({"do":"pilot","name":"N1","set":[]})",
             R"({"do":"queues","TakeoffQueue":"N1"})",
             R"({"do":"queues","LandingQueue":[1]})",
             R"({"do":"message","from":2,"hex":"123"})",
             R"({"do":"message","from":2,"hex":"zz"})",
             R"({"do":"announce","id":2,"role":"pilot"})",
             R"({"do":"position","id":2,"lat":1e9,"lon":0,"alt":0,"heading":0})",
             R"({"do":"position","id":2,"lat":1,"lon":0,"alt":0})",
             R"({"do":"tick","times":-1})",
         }) {
        EXPECT_THAT(ErrorOf(line), HasSubstr(".jsonl:3: ")) << line;
    }
}

}  // namespace
}  // namespace corvenna
