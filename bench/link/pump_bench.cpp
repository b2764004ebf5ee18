#include <benchmark/benchmark.h>
#include <fmt/format.h>

#include "link/fs_messages.h"
#include "link/memory/memory_session.h"
#include "link/pump.h"

namespace corvenna {
namespace {

class NoDesk final : public OperatorDesk {
    void ShowBox(BoxIcon /*icon*/, std::string_view /*text*/) override {}
};

/// A session with so many participants whom the controller knows.
struct Session {
    explicit Session(std::int32_t players) {
        SessionRecord record;
        record.MaxPlayers = players + 1;
        Room = Network.AddRoom(record);
        Dp.Open(Room->Record(), OpenMode::Join);
        TheStation.ControllerId = Dp.CreatePlayer("Controller", "Player");
        TheStation.SessionOpen = true;
        for (std::int32_t id = 2; id < players + 2; ++id) {
            Room->Enter(id, fmt::format("N{}", id));
            Room->Post(id, TheStation.ControllerId, WriteAdmission(MessageId::AdmitPlayer, id).Bytes());
        }
        MessagePump(Pump);
    }

    MemoryNetwork Network;
    std::shared_ptr<MemoryRoom> Room;
    MemorySession Dp{Network};
    Station TheStation;
    PlayerDirectory Directory;
    NoDesk Desk;
    PumpContext Pump{TheStation, Dp, Directory, Desk, [] {}};
};

/// One pass of the pump over a position from everybody; the posting is not measured.
void PumpPositions(benchmark::State& state) {
    const auto players = static_cast<std::int32_t>(state.range(0));
    Session session(players);
    const DirectPlayMessage position = WritePosition(PackPosition(47.1, -122.3, 3000, 90));
    for (auto _ : state) {
        state.PauseTiming();
        for (std::int32_t id = 2; id < players + 2; ++id) {
            session.Room->Post(id, session.TheStation.ControllerId, position.Bytes());
        }
        state.ResumeTiming();
        if (MessagePump(session.Pump)) state.SkipWithError("a pass failed");
    }
    state.counters["perMessage"] = benchmark::Counter(
        players, benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}

void DecodePosition(benchmark::State& state) {
    const DirectPlayMessage position = WritePosition(PackPosition(47.1, -122.3, 3000, 90));
    DirectPlayMessage message;
    for (auto _ : state) {
        message.Assign(position.Bytes());
        const MessageHeader header = ReadHeader(message);
        benchmark::DoNotOptimize(ReadPosition(message, header.Id));
    }
}

BENCHMARK(DecodePosition);
BENCHMARK(PumpPositions)->Arg(100)->Arg(1000)->Arg(10000)->Arg(32766)->Unit(benchmark::kMicrosecond);

}  // namespace
}  // namespace corvenna
