#include "world/airport_diagram.h"

#include <gmock/gmock.h>

#include <limits>

#include "world/diagram_field.h"

namespace corvenna {
namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

TEST(AirportDiagram, ShowsNamesRadiiDesignatorsFrequenciesAndVariation) {
    EXPECT_THAT(DrawAirport(Field(), static_cast<std::int16_t>(-15)),
                AllOf(HasSubstr(">Test Field (KTST)<"), HasSubstr(">16L<"), HasSubstr(">34R<"),
                      HasSubstr(">A<"), HasSubstr(">GATE<"), HasSubstr(">1<"), HasSubstr(">85 ft<"),
                      HasSubstr("Tower 118.3"), HasSubstr(">N<"), HasSubstr(">VAR 15 W<"), HasSubstr("ft ("),
                      HasSubstr("6000 x 150 ft, heading 160")));
}

TEST(AirportDiagram, NamesArePlainTextWhateverTheyHold) {
    Airport a = Field();
    a.Name = "A <b> & \"M\xFCnchen\x01\"";
    EXPECT_THAT(DrawAirport(a, std::nullopt),
                AllOf(HasSubstr("A &lt;b&gt; &amp; &quot;M\xC3\xBCnchen &quot;"), Not(HasSubstr("<b>"))));
}

TEST(AirportDiagram, AnAirportOfNothingOrNonsenseIsDrawnAllTheSame) {
    Airport nonsense = Field();
    nonsense.Latitude = std::numeric_limits<double>::infinity();
    Airport odd = Field();
    odd.MainRunwayLength = std::numeric_limits<std::int32_t>::max();
    odd.MainRunwayWidth = std::numeric_limits<std::int32_t>::min();
    for (TaxiPoint& point : *odd.TaxiPoints) point = odd.TaxiPoints->front();
    odd.ParkingSpots->at(1) = odd.ParkingSpots->at(0);
    odd.ParkingSpots->at(0).Radius = std::numeric_limits<std::int32_t>::min();
    for (const Airport& airport : {Airport{}, nonsense, odd}) {
        const std::string drawing = DrawAirport(airport, std::nullopt);
        EXPECT_THAT(drawing, HasSubstr("</svg>"));
        for (const char* const number : {"\"nan", "\"-nan", "\"inf", "\"-inf", " nan", " inf"}) {
            EXPECT_THAT(drawing, Not(HasSubstr(number)));
        }
    }
}

TEST(AirportDiagram, CrowdedParkingIsShownASecondTimeAndLarger) {
    Airport a = Field();
    EXPECT_THAT(DrawAirport(a, std::nullopt), Not(HasSubstr("times larger")));
    a.MainRunwayLength = 12000;
    a.ParkingSpots.emplace();
    for (int i = 0; i < 20; ++i)
        a.ParkingSpots->push_back({"GATE C " + std::to_string(i), 85, 47 + i * 0.0003, -122.008, 0});
    EXPECT_THAT(DrawAirport(a, std::nullopt), HasSubstr("times larger"));
}

}  // namespace
}  // namespace corvenna
