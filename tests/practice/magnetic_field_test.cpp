#include "practice/magnetic_field.h"

#include <gmock/gmock.h>

#include <nlohmann/json.hpp>
#include <stdexcept>

#include "practice/data_files.h"
#include "practice/json_file.h"
#include "station/geometry.h"
#include "station/model.h"

namespace corvenna {
namespace {

using testing::EndsWith;

nlohmann::json Document() {
    std::ifstream file(DataFile("igrf.json"));
    return nlohmann::json::parse(file);
}

std::string ComplaintAbout(const std::function<void(nlohmann::json&)>& change) {
    nlohmann::json document = Document();
    change(document);
    const TemporaryFile file(document.dump());
    return ComplaintOf<DataFileError>([&] { MagneticField::Load(file.Path()); });
}

class MagneticFieldIn2002 : public testing::Test {
  protected:
    MagneticField Field = MagneticField::Load(DataFile("igrf.json"));
};

TEST_F(MagneticFieldIn2002, DeclinationsAgreeWithTheCheckTableToThreeDecimals) {
    const auto document = Document();
    const auto& places = document.at("check_2002_0");
    ASSERT_EQ(places.size(), 12u);
    for (const auto& place : places) {
        const double declination = Field.Declination(place.at("lat"), place.at("lon"), 2002.0);
        EXPECT_NEAR(declination, place.at("declination_deg").get<double>(), 0.00051) << place.at("place");
    }
}

TEST_F(MagneticFieldIn2002, TheWholeDegreeTableHoldsTheRawValuesOfTheCheckTable) {
    const auto document = Document();
    const auto table = WholeDegreeTable(Field, 2002.0);
    for (const auto& place : document.at("check_2002_0")) {
        const auto& grid = place.at("grid_entry");
        const auto entry = grid.at("entry").get<std::size_t>();
        EXPECT_EQ(entry, grid.at("lon_index").get<std::size_t>() * 181 +
                             static_cast<std::size_t>(grid.at("lat").get<int>() + 90));
        EXPECT_EQ(table.at(entry), grid.at("raw_value").get<int>()) << place.at("place");
    }
}

TEST_F(MagneticFieldIn2002, TheStationReadsTheTableAsWholeDegreesTowardsZero) {
    Station station;
    station.MagVarGrid = WholeDegreeTable(Field, 2002.0);
    const auto document = Document();
    for (const auto& place : document.at("check_2002_0")) {
        const int whole = place.at("grid_entry").at("whole_degrees_towards_zero");
        EXPECT_EQ(TrueToMagnetic(station, 180, place.at("lat"), place.at("lon")), 180 - whole)
            << place.at("place");
    }
}

TEST_F(MagneticFieldIn2002, TheTableHasAnEntryForEveryWholeDegree) {
    EXPECT_EQ(WholeDegreeTable(Field, 2002.0).size(), MagVarGridSize);
}

TEST_F(MagneticFieldIn2002, AtThePolesTheValueIsThatOf89999Thousandths) {
    EXPECT_EQ(Field.Declination(90, 30, 2002.0), Field.Declination(89.999, 30, 2002.0));
    EXPECT_EQ(Field.Declination(-90, 30, 2002.0), Field.Declination(-89.999, 30, 2002.0));
    EXPECT_NE(Field.Declination(89.99, 30, 2002.0), Field.Declination(89.999, 30, 2002.0));
}

TEST_F(MagneticFieldIn2002, ATurnOfLongitudeChangesNothing) {
    EXPECT_NEAR(Field.Declination(47, -122, 2002.0), Field.Declination(47, 238, 2002.0), 1e-9);
}

TEST_F(MagneticFieldIn2002, TheYearLiesWithinTheCoefficients) {
    EXPECT_NO_THROW(Field.Declination(47, -122, 2000.0));
    EXPECT_NO_THROW(Field.Declination(47, -122, 2005.0));
    EXPECT_EQ(ComplaintOf<std::out_of_range>([&] { Field.Declination(47, -122, 1999.9); }),
              "the magnetic field is known from 2000 to 2005, not in 1999.9");
    EXPECT_THROW(Field.Declination(47, -122, 2005.1), std::out_of_range);
}

TEST_F(MagneticFieldIn2002, BetweenTheYearsTheFieldMovesOn) {
    const double early = Field.Declination(47.449, -122.309, 2000.0);
    const double late = Field.Declination(47.449, -122.309, 2005.0);
    const double between = Field.Declination(47.449, -122.309, 2002.0);
    EXPECT_LT(std::min(early, late), between);
    EXPECT_LT(between, std::max(early, late));
}

TEST(MagneticFieldFile, DamageIsNamedWithItsPlace) {
    EXPECT_THAT(ComplaintAbout([](auto& d) { d["coefficients"][3]["g"].erase(1); }),
                EndsWith(": coefficients[3].g does not hold one value for each epoch"));
    EXPECT_THAT(ComplaintAbout([](auto& d) { d["coefficients"][0]["n"] = 14; }),
                EndsWith(": coefficients[0].n is 14, not within 1 to 13"));
    EXPECT_THAT(ComplaintAbout([](auto& d) { d["coefficients"][0]["m"] = 2; }),
                EndsWith(": coefficients[0].m is 2, not within 0 to 1"));
    EXPECT_THAT(ComplaintAbout([](auto& d) { d["max_degree"] = 14; }),
                EndsWith(": max_degree is 14, not within 1 to 13"));
    EXPECT_THAT(ComplaintAbout([](auto& d) {
                    d["epochs"] = {2005.0, 2000.0};
                }),
                EndsWith(": epochs is not in order"));
    EXPECT_THAT(ComplaintAbout([](auto& d) { d["ellipsoid"].erase("b_km"); }),
                EndsWith(": ellipsoid.b_km is missing"));
}

}  // namespace
}  // namespace corvenna
