#include "airspace/radar_scene.h"
#include "link/services.h"
#include "support/allocation_count.h"

namespace corvenna {
namespace {

class Silence final : public ChatSender {
    void SendChat(std::string_view /*frequency*/, std::string_view /*text*/,
                  std::span<const std::int32_t> /*audience*/) override {}
};

/// Pilots in every phase, on every side of the runway, near each other and among mountains.
void FillTheSky(TestField& field) {
    static constexpr const char* Phases[] = {"",
                                             "Departure",
                                             "Acknowledge contact ARTCC (EN ROUTE)",
                                             "Contact ARTCC (EN ROUTE)",
                                             "Approach",
                                             "Missed Approach",
                                             "Acknowledge contact ARTCC (MISSED APPROACH)",
                                             "Acknowledge contact tower",
                                             "Contact tower",
                                             "En Route",
                                             "Descent",
                                             "Acknowledge contact approach (MISSED APPROACH)",
                                             "Contact approach (MISSED APPROACH)"};
    Station& s = field.S;
    for (int i = 0; i < 40; ++i) {
        const GeoPoint place = ProjectNm(47, -122, i * 31 % 360, i % 20);
        s.Mountains.insert(s.Mountains.begin(),
                           {"Mountain", "Mountain", place.Latitude, place.Longitude, i * 90});
        ++s.MountainCount;
    }
    int i = 0;
    for (const char* phase : Phases) {
        for (const std::uint8_t rules : {Vfr, Ifr}) {
            for (const std::string& frequency : {s.ApproachFrequency, s.ArtccFrequency}) {
                const std::string name = "A callsign of no small length " + std::to_string(++i);
                field.OnFrequency(name, frequency, phase, rules);
                field.Place(name, i * 45 % 360, 6 + i % 9, 1500 + i % 5 * 1000);
            }
        }
    }
}

TEST(QuietRadarTicks, TakeNoMemory) {
    TestField field;
    FillTheSky(field);
    Silence silence;
    std::vector<std::string> texts, before;
    const auto copyTexts = [&](std::vector<std::string>& to) {
        to.clear();
        for (const PlayerRecord& pilot : field.S.Players.Valid()) to.push_back(pilot.MenuText);
    };
    for (int tick = 0; tick < 20; ++tick) {
        AtcTimer(field.S, ControllerServices, silence);
        copyTexts(tick % 2 == 0 ? texts : before);
    }
    ASSERT_EQ(texts, before) << "nobody has anything new to hear";
    const std::size_t taken = AllocationCount();
    AtcTimer(field.S, ControllerServices, silence);
    EXPECT_EQ(AllocationCount(), taken);
}

/// Everybody has been called out to everybody, so that they meet in silence, now a few of them, now all.
TEST(QuietRadarTicks, TakeNoMemoryWhereverTheyFly) {
    TestField field;
    std::string everybody;
    for (int i = 0; i < 60; ++i) {
        const std::string name = "A callsign of no small length " + std::to_string(i);
        field.OnFrequency(name, field.S.ArtccFrequency, "En Route", Ifr).MenuText = "what he was told";
        everybody += name + ", ";
    }
    for (PlayerRecord& pilot : field.S.Players.Valid()) pilot.AdvisedTraffic = everybody;
    Silence silence;
    std::size_t taken = 0;
    for (int tick = 0; tick < 100; ++tick) {
        int i = 0;
        for (PlayerRecord& pilot : field.S.Players.Valid()) {
            ++i;
            const GeoPoint place = ProjectNm(47, -122, i * 37 + tick * 11, (i + 100 - tick) % (101 - tick));
            pilot.Latitude = place.Latitude;
            pilot.Longitude = place.Longitude;
            pilot.Altitude = 1000 + i * 100;
        }
        AtcTimer(field.S, ControllerServices, silence);
        if (tick == 0) taken = AllocationCount();
    }
    EXPECT_EQ(AllocationCount(), taken);
    for (const PlayerRecord& pilot : field.S.Players.Valid()) EXPECT_EQ(pilot.MenuText, "what he was told");
}

TEST(QuietRadarTicks, TakeNoMemoryForADigitThatFitsNothing) {
    TestField field;
    FillTheSky(field);
    Silence silence;
    for (int tick = 0; tick < 20; ++tick) AtcTimer(field.S, ControllerServices, silence);
    for (PlayerRecord& pilot : field.S.Players.Valid()) pilot.Choice = 7;
    AtcTimer(field.S, ControllerServices, silence);
    const std::size_t taken = AllocationCount();
    AtcTimer(field.S, ControllerServices, silence);
    EXPECT_EQ(AllocationCount(), taken);
}

}  // namespace
}  // namespace corvenna
