#include "airspace/traffic.h"

#include "airspace/radar_scene.h"

namespace corvenna {
namespace {

using ::testing::HasSubstr;
using ::testing::StartsWith;

constexpr const char* Menu =
    " Choose one of the following options for the Approach frequency: 1-Report traffic in sight 2-Report "
    "traffic not in sight 3-Close ATC Services";

/// N1 at 47 north 122 west, 3400 ft, heading north; others around him.
class TrafficScan : public OnApproach {
  protected:
    TrafficScan() {
        N1().Latitude = 47;
        N1().Longitude = -122;
        N1().Altitude = 3400;
        Reads("text");
        Types(4);
    }

    PlayerRecord& Other(std::string_view name, double bearing, double miles, std::int32_t altitude = 3400) {
        PlayerRecord& other = Field.Enters(name);
        const GeoPoint place = ProjectNmExact(47, -122, bearing, miles);
        other.Latitude = place.Latitude;
        other.Longitude = place.Longitude;
        other.Altitude = altitude;
        return other;
    }

    void Scan() { ScanTraffic(S, N1(), "Approach"); }
    bool IsCalled() { return N1().MenuText != "text"; }

    std::string Clock() {
        const std::string& text = N1().MenuText;
        const auto from = text.find(" miles, ") + 8;
        return text.substr(from, text.find(',', from) - from);
    }
};

TEST_F(TrafficScan, CallsOutANearAircraft) {
    Other("N2", 45, 3, 4000).AircraftName = "Boeing 737-400";
    Scan();
    EXPECT_EQ(N1().MenuText, std::string("N1, Traffic is 3 miles, two o'clock, 4000 ft, type Boeing 737-400. "
                                         "Report them in sight.") +
                                 Menu);
    EXPECT_EQ(N1().Choice, 0);
    EXPECT_EQ(N1().AdvisedTraffic, "N2, ");
}

TEST_F(TrafficScan, WarnsOfAnAircraftLessThanTwoMilesAway) {
    Other("N2", 0, 1).AircraftName = "Learjet 45";
    Scan();
    EXPECT_EQ(N1().MenuText, std::string("N1, TRAFFIC ALERT!, 1 miles, twelve o'clock, 3400 ft, type Learjet "
                                         "45. Avoid traffic and report them.") +
                                 Menu);
    EXPECT_EQ(N1().Choice, 0);
    EXPECT_EQ(N1().AdvisedTraffic, "N2, ");
}

TEST_F(TrafficScan, ExactlyTwoMilesIsNoAlert) {
    Other("N2", 0, 2);
    Scan();
    EXPECT_THAT(N1().MenuText, StartsWith("N1, Traffic is 2 miles"));
}

TEST_F(TrafficScan, FiveMilesAreTooFar) {
    for (const auto& [miles, called] : {std::pair{4, true}, {5, false}, {6, false}}) {
        S.Players.Clear();
        Field.OnFrequency("N1", S.ApproachFrequency, "", Ifr).Altitude = 3400;
        N1().Latitude = 47;
        Reads("text");
        Other("N2", 90, miles);
        Scan();
        EXPECT_EQ(IsCalled(), called) << miles;
        EXPECT_EQ(N1().AdvisedTraffic, called ? "N2, " : "") << miles;
    }
}

TEST_F(TrafficScan, ThreeThousandFeetAreTooFar) {
    for (const auto& [feet, called] : {std::pair{2999, true}, {3000, false}, {3001, false}}) {
        for (const int sign : {1, -1}) {
            S.Players.Clear();
            Field.OnFrequency("N1", S.ApproachFrequency, "", Ifr).Altitude = 3400;
            N1().Latitude = 47;
            Reads("text");
            Other("N2", 90, 3, 3400 + sign * feet);
            Scan();
            EXPECT_EQ(IsCalled(), called) << feet * sign;
        }
    }
}

TEST_F(TrafficScan, AltitudesAtBothEndsOfTheFieldAreFarApart) {
    N1().Altitude = std::numeric_limits<std::int32_t>::max();
    Other("N2", 90, 1, std::numeric_limits<std::int32_t>::min());
    Scan();
    EXPECT_FALSE(IsCalled());
}

TEST_F(TrafficScan, AnAircraftIsCalledOutOnce) {
    Other("N2", 90, 3);
    Scan();
    Reads("text");
    Scan();
    EXPECT_FALSE(IsCalled());
    N1().AdvisedTraffic.clear();
    Scan();
    EXPECT_TRUE(IsCalled());
}

TEST_F(TrafficScan, UpperAndLowerCaseAreOneName) {
    Other("n2AbC", 90, 3);
    N1().AdvisedTraffic = "N2aBc, ";
    Scan();
    EXPECT_FALSE(IsCalled());
}

TEST_F(TrafficScan, ANameInsideALongerAdvisedNameCountsAsAdvised) {
    Other("N2", 90, 3);
    N1().AdvisedTraffic = "GN27, ";
    Scan();
    EXPECT_FALSE(IsCalled());
    EXPECT_EQ(N1().AdvisedTraffic, "GN27, ");
}

TEST_F(TrafficScan, ALongerNameThanTheAdvisedOneIsNew) {
    Other("N27", 90, 3);
    N1().AdvisedTraffic = "N2, ";
    Scan();
    EXPECT_TRUE(IsCalled());
}

TEST_F(TrafficScan, SomebodyWithoutANameIsNeverCalled) {
    Other("", 90, 3);
    Scan();
    EXPECT_FALSE(IsCalled());
}

TEST_F(TrafficScan, HisOwnNameIsNeverTrafficInWhateverRecord) {
    Other("N1", 90, 3);
    Scan();
    EXPECT_FALSE(IsCalled());
}

TEST_F(TrafficScan, ObserversAreTrafficToo) {
    Other("N2", 90, 3).Role = Role::Observer;
    Scan();
    EXPECT_TRUE(IsCalled());
}

TEST_F(TrafficScan, OfTwoNewAircraftTheLaterIsHeardAndBothAreEntered) {
    Other("N2", 90, 1);
    Other("N3", 270, 3);
    Scan();
    EXPECT_THAT(N1().MenuText, StartsWith("N1, Traffic is 3 miles, nine o'clock"));
    EXPECT_EQ(N1().AdvisedTraffic, "N2, N3, ");
    Reads("text");
    Scan();
    EXPECT_FALSE(IsCalled());
}

TEST_F(TrafficScan, OfTwoRecordsOfOneNameTheFirstIsCalled) {
    Other("N2", 90, 3);
    Other("N2", 270, 4);
    Scan();
    EXPECT_THAT(N1().MenuText, StartsWith("N1, Traffic is 3 miles, three o'clock"));
    EXPECT_EQ(N1().AdvisedTraffic, "N2, ");
}

TEST_F(TrafficScan, TheClockIsReadByTheHeading) {
    // Bearings of both edges of each arc, one degree inside and outside, seen on a heading of 100.
    const std::tuple<int, int, const char*> arcs[] = {
        {-30, 30, "twelve o'clock"},   {30, 60, "two o'clock"},     {-60, -30, "ten o'clock"},
        {60, 120, "three o'clock"},    {-120, -60, "nine o'clock"}, {120, 150, "five o'clock"},
        {-150, -120, "eight o'clock"}, {150, 210, "six o'clock"},
    };
    for (const auto& [low, high, word] : arcs) {
        for (int off = low; off < high; ++off) {
            S.Players.Clear();
            Field.OnFrequency("N1", S.ApproachFrequency, "", Ifr).Altitude = 3400;
            N1().Latitude = 0;
            N1().Longitude = 0;
            N1().Heading = 100;
            // The whole degree that BearingTo cuts to is the one above the true bearing.
            PlayerRecord& other = Field.Enters("N2");
            const GeoPoint place = ProjectNmExact(0, 0, (100 + off + 360) % 360 - 0.5, 4);
            other.Latitude = place.Latitude;
            other.Longitude = place.Longitude;
            other.Altitude = 3400;
            Scan();
            EXPECT_EQ(Clock(), word) << off;
        }
    }
}

TEST_F(TrafficScan, ABearingOf360FallsBetweenTheArcsWhenABoundIsNought) {
    N1().Heading = 210;     // five o'clock ends before 360, and six o'clock begins at 0, which leaves 360 out
    Other("N2", 359.5, 3);  // cut to 360
    Scan();
    EXPECT_EQ(Clock(), "");
}

TEST_F(TrafficScan, TheClockWordIsKeptFromTheTrafficBefore) {
    N1().Heading = 210;
    Other("N2", 300, 3);
    Other("N3", 359.5, 4);
    Scan();
    EXPECT_EQ(N1().MenuText, std::string("N1, Traffic is 4 miles, three o'clock, 3400 ft, type Unknown. "
                                         "Report them in sight.") +
                                 Menu);
    N1().AdvisedTraffic = "N2, ";
    Scan();
    EXPECT_EQ(Clock(), "") << "the word does not outlive the walk";
}

TEST_F(TrafficScan, AnArcThatEndsAtNoughtHoldsEveryBearing) {
    N1().Heading = 30;  // ten o'clock ends at 0; only the arcs behind it in the table still win
    Other("N2", 50, 3);
    Scan();
    EXPECT_EQ(Clock(), "ten o'clock");
    Other("N3", 120, 3);
    Scan();
    EXPECT_EQ(Clock(), "three o'clock");
}

TEST_F(TrafficScan, TheHeadingIsBroughtIntoRangeOnlyForTrafficThatIsCalledOut) {
    N1().Heading = 450;
    Other("N2", 90, 6);
    Other("N3", 90, 3, 9000);
    Other("N4", 90, 3);
    N1().AdvisedTraffic = "N4, ";
    Scan();
    EXPECT_EQ(N1().Heading, 450);
    Other("N5", 90, 3);
    Scan();
    EXPECT_EQ(N1().Heading, 90);
    EXPECT_EQ(Clock(), "twelve o'clock");
}

TEST_F(TrafficScan, EachTrafficCalledOutBringsTheHeadingOneTurnNearer) {
    N1().Heading = 1000;
    Other("N2", 90, 3);
    Scan();
    EXPECT_EQ(N1().Heading, 640);
    Other("N3", 90, 3);
    Other("N4", 90, 3);
    Scan();
    EXPECT_EQ(N1().Heading, 280);
}

TEST_F(TrafficScan, HeadingsOf0And360AreKept) {
    for (const std::int16_t heading : {std::int16_t{0}, std::int16_t{360}}) {
        N1().Heading = heading;
        N1().AdvisedTraffic.clear();
        if (S.PlayerCount() == 1) Other("N2", 0, 3);
        Scan();
        EXPECT_EQ(N1().Heading, heading);
        EXPECT_EQ(Clock(), "twelve o'clock") << heading;
    }
}

TEST_F(TrafficScan, ExtremeHeadingsAreNoError) {
    Other("N2", 0, 3);
    for (const std::int16_t heading :
         {std::numeric_limits<std::int16_t>::max(), std::numeric_limits<std::int16_t>::min()}) {
        N1().Heading = heading;
        N1().AdvisedTraffic.clear();
        EXPECT_NO_THROW(Scan());
        EXPECT_EQ(N1().AdvisedTraffic, "N2, ");
    }
}

TEST_F(TrafficScan, OneExactlyAtHisPlaceBearsDueNorth) {
    Other("N2", 0, 0);
    Scan();
    EXPECT_THAT(N1().MenuText, StartsWith("N1, TRAFFIC ALERT!, 0 miles, twelve o'clock"));
}

TEST_F(TrafficScan, TheServiceNamesItself) {
    Other("N2", 0, 3);
    ScanTraffic(S, N1(), "ARTCC");
    EXPECT_THAT(N1().MenuText, HasSubstr("for the ARTCC frequency: 1-Report"));
}

}  // namespace
}  // namespace corvenna
