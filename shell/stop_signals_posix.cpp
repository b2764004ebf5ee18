#include <sys/signalfd.h>
#include <unistd.h>

#include <QSocketNotifier>
#include <csignal>

#include "shell/stop_signals.h"

namespace corvenna {

struct StopSignals::Platform {
    int Signals = -1;
    std::unique_ptr<QSocketNotifier> Notifier;

    ~Platform() {
        Notifier.reset();
        if (Signals >= 0) close(Signals);
    }
};

StopSignals::StopSignals() : platform_(std::make_unique<Platform>()) {
    sigset_t stopping;
    sigemptyset(&stopping);
    for (const int signal : {SIGINT, SIGTERM, SIGHUP}) sigaddset(&stopping, signal);
    platform_->Signals = signalfd(-1, &stopping, SFD_CLOEXEC | SFD_NONBLOCK);
    if (platform_->Signals >= 0) sigprocmask(SIG_BLOCK, &stopping, nullptr);
}

StopSignals::~StopSignals() = default;

void StopSignals::Watch(std::function<void()> stop) {
    const int heard = platform_->Signals;
    if (heard < 0) return;
    platform_->Notifier = std::make_unique<QSocketNotifier>(heard, QSocketNotifier::Read);
    QObject::connect(platform_->Notifier.get(), &QSocketNotifier::activated, [heard, stop = std::move(stop)] {
        signalfd_siginfo received{};
        while (read(heard, &received, sizeof received) > 0) stop();
    });
}

}  // namespace corvenna
