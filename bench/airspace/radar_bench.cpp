#include <benchmark/benchmark.h>
#include <fmt/format.h>

#include <cmath>
#include <random>

#include "airspace/approach_control.h"
#include "airspace/artcc_control.h"
#include "airspace/tower_control.h"
#include "station/geometry.h"
#include "station/tick.h"
#include "tests/airspace/plain_radar.h"

/// Ticks of a busy sky in which everybody has what he was last told, with the services as they are and with
/// their plain searches. The ratio of the two at the same number of pilots is what counts.
namespace corvenna {
namespace {

constexpr int Mountains = 300;

constexpr FrequencyService Fast[] = {{&Station::GroundFrequency, nullptr},
                                     {&Station::TowerFrequency, &TowerControl},
                                     {&Station::ApproachFrequency, &ApproachControl},
                                     {&Station::ArtccFrequency, &ArtccControl}};
constexpr FrequencyService Plain[] = {{&Station::GroundFrequency, nullptr},
                                      {&Station::TowerFrequency, &TowerControl},
                                      {&Station::ApproachFrequency, &plain::ApproachControl},
                                      {&Station::ArtccFrequency, &plain::ArtccControl}};

class CountingSender final : public ChatSender {
  public:
    int Sent = 0;

  private:
    void SendChat(std::string_view /*frequency*/, std::string_view /*text*/,
                  std::span<const std::int32_t> /*audience*/) override {
        ++Sent;
    }
};

class Sky {
  public:
    explicit Sky(std::int64_t pilots) {
        S.AirportName = "Test Field";
        S.AirportLatitude = S.RunwayLatitude = 47;
        S.AirportLongitude = S.RunwayLongitude = -122;
        S.GroundFrequency = "121.9";
        S.TowerFrequency = "118.3";
        S.ApproachFrequency = "124.2";
        S.ArtccFrequency = "Air Route Traffic Control Center";
        S.ActiveRunway = "16";
        S.RunwayElevation = 400;
        S.RunwayLength = 9000;
        S.RunwayWidth = 150;
        S.RunwayHeading = 160;
        S.RunwayHasIls = -1;
        ComputeSectorCentres(S);
        for (int i = 0; i < Mountains; ++i) AddMountain(i);
        for (std::int64_t i = 0; i < pilots; ++i) AddPilot(i);
        for (int turns = 0; turns < 20; ++turns) ServeAll();  // until nobody has anything new to hear
    }

    Station S;
    CountingSender Silence;

  private:
    double Real(double low, double high) {
        return std::uniform_real_distribution<double>(low, high)(random_);
    }

    /// As many on each square mile between two distances.
    GeoPoint Somewhere(double low, double high) {
        return ProjectNmExact(47, -122, Real(0, 360), std::sqrt(Real(low * low, high * high)));
    }

    /// A tick that is not sent: the first texts of a full session have a thousand million addressees.
    void ServeAll() {
        ++S.TicksBegun;
        S.TickInProgress = true;
        for (PlayerRecord& pilot : S.Players.Valid()) {
            UpdatePilotGeometry(S, pilot);
            for (const FrequencyService& service : Fast) {
                if (service.Serve == nullptr || pilot.TunedFrequency != S.*service.Label) continue;
                service.Serve(S, pilot);
                break;
            }
        }
        S.TickInProgress = false;
    }

    void AddMountain(int i) {
        GeoPoint mountain = Somewhere(0, 150);
        mountain.Name = fmt::format("Mountain No{}", i);
        mountain.Altitude = static_cast<std::int32_t>(Real(500, 9000));
        S.Mountains.insert(S.Mountains.begin() + S.MountainCount++, mountain);
    }

    /// All over the 190 miles that ARTCC serves, but for those whom one airport can hold: an eighth on the
    /// ground, an eighth with the Tower and a quarter with Approach, 60, 60 and 200 at most.
    void AddPilot(std::int64_t i) {
        PlayerRecord pilot;
        pilot.Name = fmt::format("N{}", i);
        pilot.Id = static_cast<std::int32_t>(i + 2);
        pilot.Role = Role::Player;
        pilot.AircraftName = "Boeing 737-400";
        pilot.InService = UnderService;
        pilot.Heading = static_cast<std::int16_t>(Real(0, 360));
        if (i % 8 == 0 && i / 8 < 60) {
            Put(pilot, Somewhere(0, 1), S.RunwayElevation);
            if (i % 16 == 0) pilot.TunedFrequency = S.GroundFrequency;
        } else if (i % 8 == 1 && i / 8 < 60) {
            Put(pilot, Somewhere(1, 14), Real(1000, 10000));
            pilot.TunedFrequency = S.TowerFrequency;
        } else if (i % 4 == 2 && i / 4 < 200) {
            Put(pilot, Somewhere(1, 19), Real(1000, 10000));
            pilot.TunedFrequency = S.ApproachFrequency;
            Ask(pilot, i, "Approach");
        } else {
            Put(pilot, Somewhere(20, 190), Real(1000, 40000));
            pilot.TunedFrequency = S.ArtccFrequency;
            Ask(pilot, i, i % 2 == 0 ? "Approach" : "En Route");
        }
        S.Players.Add(pilot);
    }

    static void Put(PlayerRecord& pilot, const GeoPoint& place, double feet) {
        pilot.Latitude = place.Latitude;
        pilot.Longitude = place.Longitude;
        pilot.Altitude = static_cast<std::int32_t>(feet);
    }

    /// Every fourth flies by eye, the others by radar.
    static void Ask(PlayerRecord& pilot, std::int64_t i, std::string_view phase) {
        if (i / 8 % 4 == 0) return;
        pilot.FlightRules = Ifr;
        pilot.Phase = phase;
    }

    std::mt19937 random_{2002};
};

void RunTicks(benchmark::State& state, std::span<const FrequencyService> services) {
    Sky sky(state.range(0));
    AtcTimer(sky.S, services, sky.Silence);  // and those on no frequency read their menu
    sky.Silence.Sent = 0;
    for (auto _ : state) AtcTimer(sky.S, services, sky.Silence);
    const auto pilots = static_cast<double>(state.range(0));
    state.counters["perPilot"] = benchmark::Counter(
        pilots, benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
    state.counters["sent"] = sky.Silence.Sent;
}

void FastTick(benchmark::State& state) { RunTicks(state, Fast); }
void PlainTick(benchmark::State& state) { RunTicks(state, Plain); }

BENCHMARK(PlainTick)->Arg(100)->Arg(1000)->Unit(benchmark::kMillisecond);
BENCHMARK(FastTick)->Arg(100)->Arg(1000)->Arg(10000)->Arg(32767)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace corvenna
