#include "shell/stop_signals.h"

#ifdef __linux__
#include <sys/signalfd.h>
#include <unistd.h>

#include <csignal>
#endif

namespace corvenna {

#ifdef __linux__

StopSignals::StopSignals() {
    sigset_t stopping;
    sigemptyset(&stopping);
    for (const int signal : {SIGINT, SIGTERM, SIGHUP}) sigaddset(&stopping, signal);
    signals_ = signalfd(-1, &stopping, SFD_CLOEXEC | SFD_NONBLOCK);
    if (signals_ >= 0) sigprocmask(SIG_BLOCK, &stopping, nullptr);
}

StopSignals::~StopSignals() {
    notifier_.reset();
    if (signals_ >= 0) close(signals_);
}

void StopSignals::Watch(std::function<void()> stop) {
    if (signals_ < 0) return;
    notifier_ = std::make_unique<QSocketNotifier>(signals_, QSocketNotifier::Read);
    QObject::connect(notifier_.get(), &QSocketNotifier::activated, [this, stop = std::move(stop)] {
        signalfd_siginfo received;
        while (read(signals_, &received, sizeof received) > 0) stop();
    });
}

#else

StopSignals::StopSignals() = default;
StopSignals::~StopSignals() = default;
void StopSignals::Watch(std::function<void()>) {}

#endif

}  // namespace corvenna
