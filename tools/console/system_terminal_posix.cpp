#include <poll.h>
#include <sys/signalfd.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <string>
#include <system_error>

#include "tools/console/system_terminal.h"

namespace corvenna {

namespace {

/// Whoever starts a program so that it ignores the loss of its terminal wants it to run on.
bool HangupIsIgnored() {
    struct sigaction action {};
    return sigaction(SIGHUP, nullptr, &action) == 0 && action.sa_handler == SIG_IGN;
}

sigset_t StopSignals() {
    sigset_t signals;
    sigemptyset(&signals);
    sigaddset(&signals, SIGINT);
    sigaddset(&signals, SIGTERM);
    if (!HangupIsIgnored()) sigaddset(&signals, SIGHUP);
    return signals;
}

}  // namespace

struct SystemTerminal::Platform {
    int Signals = -1;
    sigset_t MaskBefore{};
    bool EndOfInput = false;
    std::string Pending;  ///< what has been typed of the line in hand

    void ReadInput(TerminalInput& input);
};

SystemTerminal::SystemTerminal() : platform_(std::make_unique<Platform>()) {
    const sigset_t signals = StopSignals();
    platform_->Signals = signalfd(-1, &signals, SFD_CLOEXEC | SFD_NONBLOCK);
    if (platform_->Signals < 0) {
        throw std::system_error(errno, std::generic_category(), "signals can't be received");
    }
    sigprocmask(SIG_BLOCK, &signals, &platform_->MaskBefore);
    std::signal(SIGPIPE, SIG_IGN);
}

/// A wish to end that nobody has looked at would end the program now, while it ends properly.
SystemTerminal::~SystemTerminal() {
    signalfd_siginfo signal{};
    while (read(platform_->Signals, &signal, sizeof signal) > 0) continue;
    close(platform_->Signals);
    sigprocmask(SIG_SETMASK, &platform_->MaskBefore, nullptr);
}

TerminalInput SystemTerminal::Wait(std::chrono::milliseconds atMost) {
    std::array<pollfd, 2> sources{{{platform_->Signals, POLLIN, 0}, {STDIN_FILENO, POLLIN, 0}}};
    const nfds_t count = platform_->EndOfInput ? 1 : 2;
    if (poll(sources.data(), count, static_cast<int>(atMost.count())) < 0 && errno != EINTR) {
        throw std::system_error(errno, std::generic_category(), "the terminal can't be waited for");
    }
    TerminalInput input;
    signalfd_siginfo signal{};
    input.StopAsked = read(platform_->Signals, &signal, sizeof signal) > 0;
    if (!platform_->EndOfInput && sources[1].revents != 0) platform_->ReadInput(input);
    return input;
}

/// An input that fails has ended.
void SystemTerminal::Platform::ReadInput(TerminalInput& input) {
    std::array<char, 4096> buffer{};
    const ssize_t size = read(STDIN_FILENO, buffer.data(), buffer.size());
    if (size < 0 && (errno == EINTR || errno == EAGAIN)) return;
    if (size <= 0) {
        if (!Pending.empty()) input.Lines.push_back(std::move(Pending));
        Pending.clear();
        input.EndOfInput = EndOfInput = true;
        return;
    }
    Pending.append(buffer.data(), static_cast<std::size_t>(size));
    for (auto end = Pending.find('\n'); end != std::string::npos; end = Pending.find('\n')) {
        input.Lines.push_back(Pending.substr(0, end));
        Pending.erase(0, end + 1);
    }
}

}  // namespace corvenna
