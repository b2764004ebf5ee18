#include "shell/host_thread.h"

#include <memory>
#include <stdexcept>
#include <utility>

#include "link/directplay/directplay_session.h"

namespace corvenna {

namespace {

using namespace std::chrono_literals;

constexpr std::uint32_t ThisComputer = 0x7F000001;
constexpr auto StepInterval = 5ms;

DirectPlayOptions HostOptions() {
    DirectPlayOptions options;
    options.Sockets.BindIp = ThisComputer;
    options.Sockets.Tcp = {};
    options.Sockets.Udp = {};
    options.Sockets.NameServer = 0;
    return options;
}

}  // namespace

HostThread::HostThread(Options options)
    : options_(std::move(options)), sockets_(HostOptions()), thread_([this] { Run(); }) {
    std::unique_lock lock(mutex_);
    changed_.wait(lock, [this] { return open_ || over_; });
    if (!failure_.empty()) {
        lock.unlock();
        thread_.join();
        throw std::runtime_error(failure_);
    }
}

HostThread::~HostThread() {
    {
        const std::lock_guard lock(mutex_);
        over_ = true;
    }
    changed_.notify_all();
    thread_.join();
}

void HostThread::SetAdmits(bool admits) {
    const std::lock_guard lock(mutex_);
    options_.Admits = admits;
}

void HostThread::SetAnswers(bool answers) {
    const std::lock_guard lock(mutex_);
    options_.Answers = answers;
}

void HostThread::Joins(const std::string& pilot) {
    Do([&](SimulatorPeer&) {
        guestSockets_ = HostOptions();
        guestSockets_.Sockets.NameServer = Port();
        auto session = std::make_unique<DirectPlaySession>(guestSockets_);
        session->InitializeConnection(std::string(ConnectionAddress::ThisComputer));
        const auto sessions = session->GetDPEnumSessions({});
        SimulatorPilot guest;
        guest.Name = pilot;
        guest_ = std::make_unique<SimulatorPeer>(std::move(session), guest);
        guest_->Join(sessions.at(0));
    });
    for (bool flies = false; !flies;) {
        Do([&](SimulatorPeer&) { flies = guest_->InStage() == SimulatorPeer::Stage::Flying; });
    }
}

void HostThread::Do(const std::function<void(SimulatorPeer&)>& action) {
    std::unique_lock lock(mutex_);
    action_ = action;
    changed_.notify_all();
    changed_.wait(lock, [this] { return !action_ || over_; });
    if (!failure_.empty()) throw std::runtime_error(failure_);
}

std::vector<std::string> HostThread::Heard() {
    const std::lock_guard lock(mutex_);
    return heard_;
}

void HostThread::Run() {
    try {
        RunSimulator();
    } catch (const std::exception& error) {
        const std::lock_guard lock(mutex_);
        failure_ = error.what();
        over_ = true;
    }
    changed_.notify_all();
}

void HostThread::RunSimulator() {
    auto session = std::make_unique<DirectPlaySession>(sockets_);
    DirectPlaySession& dp = *session;
    SimulatorPeer simulator(
        std::move(session),
        {.Name = "Practice_Host", .Aircraft = "Practice aircraft", .Observer = false, .Where = {}},
        {.Heard =
             [this](std::string_view, std::string_view text) {
                 const std::lock_guard lock(mutex_);
                 heard_.emplace_back(text);
             },
         .Noted = {},
         .Admits =
             [this](std::string_view) {
                 const std::lock_guard lock(mutex_);
                 return options_.Admits;
             }});
    simulator.Host(options_.SessionName, options_.Players);
    const auto start = std::chrono::steady_clock::now();
    std::unique_lock lock(mutex_);
    port_ = dp.NameServerPort();
    open_ = true;
    changed_.notify_all();
    while (!over_) {
        changed_.wait_for(lock, StepInterval);
        const auto action = action_;
        const bool answers = options_.Answers;
        lock.unlock();
        if (action) action(simulator);
        if (answers) {
            Step(simulator, std::chrono::duration_cast<std::chrono::milliseconds>(
                                std::chrono::steady_clock::now() - start));
        }
        lock.lock();
        if (!action) continue;
        action_ = nullptr;
        changed_.notify_all();
    }
    lock.unlock();
    if (guest_) guest_->Leave();
    guest_.reset();
    if (simulator.InStage() == SimulatorPeer::Stage::Flying) simulator.Leave();
}

void HostThread::Step(SimulatorPeer& simulator, std::chrono::milliseconds now) {
    if (simulator.InStage() == SimulatorPeer::Stage::Flying) simulator.Step(now);
    if (guest_) guest_->Step(now);
}

}  // namespace corvenna
