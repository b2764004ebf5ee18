#include <benchmark/benchmark.h>
#include <fmt/format.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <csignal>
#include <fstream>
#include <memory>
#include <stdexcept>
#include <thread>

#include "link/directplay/directplay_session.h"
#include "link/fs_messages.h"
#include "link/pump.h"

namespace corvenna {
namespace {

using std::chrono::steady_clock;

DirectPlayOptions OptionsOnThisComputer() {
    DirectPlayOptions options;
    options.Sockets.BindIp = 0x7F000001;
    options.Sockets.Tcp = options.Sockets.Udp = {};
    options.Sockets.NameServer = 0;
    options.Sockets.Bounds.MessagesPerSecond = 1000000;  // the crowd is small for what it sends
    options.EnumerationSettle = directplay::milliseconds(0);
    return options;
}

/// Pilots in a process of their own, so that what the station's costs can be told from what theirs do.
class Crowd {
  public:
    /// To be made before there are threads.
    Crowd(int pilots, int messagesPerSecond) {
        if (pipe(orders_) != 0 || pipe(answers_) != 0) throw std::runtime_error("no pipe");
        child_ = fork();
        if (child_ != 0) return;
        close(orders_[1]);
        try {
            Live(pilots, messagesPerSecond);
        } catch (const std::exception& trouble) {
            fmt::print(stderr, "the crowd: {}\n", trouble.what());
        }
        _exit(1);
    }
    ~Crowd() {
        kill(child_, SIGKILL);
        waitpid(child_, nullptr, 0);
        for (const int end : {orders_[0], orders_[1], answers_[0], answers_[1]}) close(end);
    }
    Crowd(const Crowd&) = delete;
    Crowd& operator=(const Crowd&) = delete;

    void Joins(std::uint16_t nameServer) {
        char done = 0;
        if (write(orders_[1], &nameServer, sizeof(nameServer)) != sizeof(nameServer) ||
            read(answers_[0], &done, 1) != 1) {
            throw std::runtime_error("the crowd did not join");
        }
    }

    void Begins() {
        if (write(orders_[1], "b", 1) != 1) throw std::runtime_error("the crowd did not begin");
    }

  private:
    struct Pilot {
        std::unique_ptr<DirectPlaySession> Dp;
        std::int32_t Id = 0;
    };

    void Live(int count, int messagesPerSecond) {
        DirectPlayOptions options = OptionsOnThisComputer();
        std::uint16_t nameServer = 0;
        if (read(orders_[0], &nameServer, sizeof(nameServer)) != sizeof(nameServer)) return;
        options.AskHost = [&] { return fmt::format("127.0.0.1:{}", nameServer); };
        std::vector<Pilot> pilots;
        std::int32_t station = 0;
        for (int i = 0; i < count; ++i) {
            Pilot pilot{std::make_unique<DirectPlaySession>(options), 0};
            pilot.Dp->InitializeConnection(std::string(ConnectionAddress::TcpIp));
            pilot.Dp->Open(pilot.Dp->GetDPEnumSessions({}).at(0), OpenMode::Join);
            pilot.Id = pilot.Dp->CreatePlayer(fmt::format("N{}", i), "Player");
            station = pilot.Dp->GetDPEnumPlayers().at(0).Id;
            pilot.Dp->Send(pilot.Id, station, WriteAdmission(MessageId::AdmitPlayer, pilot.Id));
            pilots.push_back(std::move(pilot));
        }
        char order = 0;
        if (write(answers_[1], "j", 1) != 1 || read(orders_[0], &order, 1) != 1) return;
        Fly(pilots, station, messagesPerSecond);
    }

    [[noreturn]] static void Fly(std::vector<Pilot>& pilots, std::int32_t station, int messagesPerSecond) {
        const DirectPlayMessage position = WritePosition(PackPosition(47.1, -122.3, 3000, 90));
        const auto step = std::chrono::nanoseconds(1000000000LL / messagesPerSecond);
        auto next = steady_clock::now();
        for (std::size_t i = 0;; ++i) {
            const Pilot& pilot = pilots[i % pilots.size()];
            pilot.Dp->SendUnguaranteed(pilot.Id, station, position);
            next += step;
            if (next > steady_clock::now() + std::chrono::milliseconds(1))
                std::this_thread::sleep_until(next);
        }
    }

    int orders_[2]{};
    int answers_[2]{};
    pid_t child_ = -1;
};

class NoDesk final : public OperatorDesk {
    void ShowBox(BoxIcon /*icon*/, std::string_view /*text*/) override {}
};

/// A station that hosts a session and pumps its messages.
struct Tower {
    Tower() : Dp(Options) {
        Dp.Open({}, OpenMode::Create);
        TheStation.ControllerId = Dp.CreatePlayer("Tower", "Player");
        TheStation.SessionOpen = true;
    }

    /// Pumps ten times a second, as the station's timer does, and gives the messages taken.
    std::size_t PumpsFor(std::chrono::milliseconds time) {
        std::size_t messages = 0;
        for (const auto end = steady_clock::now() + time; steady_clock::now() < end;) {
            messages += static_cast<std::size_t>(Dp.GetMessageCount(TheStation.ControllerId));
            MessagePump(Pump);
            std::this_thread::sleep_for(std::chrono::milliseconds(100));
        }
        return messages;
    }

    DirectPlayOptions Options = OptionsOnThisComputer();
    DirectPlaySession Dp;
    Station TheStation;
    PlayerDirectory Directory;
    NoDesk Desk;
    PumpContext Pump{TheStation, Dp, Directory, Desk, [] {}};
};

double ProcessorSeconds() {
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    const auto seconds = [](const timeval& time) {
        return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) * 1e-6;
    };
    return seconds(usage.ru_utime) + seconds(usage.ru_stime);
}

double ResidentBytes() {
    std::ifstream status("/proc/self/statm");
    double all = 0;
    double resident = 0;
    status >> all >> resident;
    return resident * static_cast<double>(sysconf(_SC_PAGESIZE));
}

/// The station's share of one core while so many pilots tell their positions five times a second.
void StationAmongPilots(benchmark::State& state) {
    const auto pilots = static_cast<int>(state.range(0));
    for (auto _ : state) {
        Crowd crowd(pilots, 5 * pilots);
        Tower tower;
        crowd.Joins(tower.Dp.NameServerPort());
        crowd.Begins();
        tower.PumpsFor(std::chrono::seconds(1));
        constexpr std::chrono::seconds time(10);
        const double before = ProcessorSeconds();
        const std::size_t messages = tower.PumpsFor(time);
        state.counters["percentOfCore"] =
            100 * (ProcessorSeconds() - before) / static_cast<double>(time.count());
        state.counters["messagesPerSecond"] =
            static_cast<double>(messages) / static_cast<double>(time.count());
    }
}

/// How many positions a second of one core's time takes from the sockets to Players.
void PositionsToPlayers(benchmark::State& state) {
    for (auto _ : state) {
        Crowd crowd(16, 60000);
        Tower tower;
        crowd.Joins(tower.Dp.NameServerPort());
        crowd.Begins();
        tower.PumpsFor(std::chrono::seconds(1));
        const double before = ProcessorSeconds();
        const std::size_t messages = tower.PumpsFor(std::chrono::seconds(5));
        const double seconds = ProcessorSeconds() - before;
        if (messages < 50000) state.SkipWithError("too little arrived to measure by");
        state.counters["messagesPerCoreSecond"] = static_cast<double>(messages) / seconds;
        state.counters["arrivedPerSecond"] = static_cast<double>(messages) / 5;
    }
}

/// From a pilot's Send to the queue that the pump reads.
void SendToQueue(benchmark::State& state) {
    Tower tower;
    DirectPlayOptions options = OptionsOnThisComputer();
    options.AskHost = [&] { return fmt::format("127.0.0.1:{}", tower.Dp.NameServerPort()); };
    DirectPlaySession pilot(options);
    pilot.InitializeConnection(std::string(ConnectionAddress::TcpIp));
    pilot.Open(pilot.GetDPEnumSessions({}).at(0), OpenMode::Join);
    const std::int32_t id = pilot.CreatePlayer("N1", "Player");
    const DirectPlayMessage position = WritePosition(PackPosition(47.1, -122.3, 3000, 90));
    const bool guaranteed = state.range(0) != 0;
    std::vector<double> microseconds;
    for (auto _ : state) {
        const auto begun = steady_clock::now();
        if (guaranteed) {
            pilot.Send(id, tower.TheStation.ControllerId, position);
        } else {
            pilot.SendUnguaranteed(id, tower.TheStation.ControllerId, position);
        }
        while (tower.Dp.GetMessageCount(tower.TheStation.ControllerId) == 0) std::this_thread::yield();
        microseconds.push_back(
            std::chrono::duration<double, std::micro>(steady_clock::now() - begun).count());
        DirectPlayMessage taken;
        tower.Dp.Receive(taken);
    }
    std::sort(microseconds.begin(), microseconds.end());
    state.counters["medianUs"] = microseconds[microseconds.size() / 2];
    state.counters["p99Us"] = microseconds[microseconds.size() * 99 / 100];
}

/// What the process grows by for each pilot who is in the session and says nothing.
void MemoryOfIdlePilot(benchmark::State& state) {
    constexpr int pilots = 64;
    for (auto _ : state) {
        Crowd crowd(pilots, 1);
        Tower tower;
        const double before = ResidentBytes();
        crowd.Joins(tower.Dp.NameServerPort());
        tower.PumpsFor(std::chrono::seconds(1));
        state.counters["KiBPerPilot"] = (ResidentBytes() - before) / 1024 / pilots;
    }
}

BENCHMARK(MemoryOfIdlePilot)->Iterations(1);
BENCHMARK(StationAmongPilots)->Arg(64)->Iterations(1)->Unit(benchmark::kMillisecond);
BENCHMARK(PositionsToPlayers)->Iterations(1)->Unit(benchmark::kMillisecond);
BENCHMARK(SendToQueue)->ArgName("guaranteed")->Arg(0)->Arg(1)->Iterations(5000);

}  // namespace
}  // namespace corvenna
