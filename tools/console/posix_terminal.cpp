#include "tools/console/posix_terminal.h"

#include <poll.h>
#include <sys/signalfd.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <system_error>

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

PosixTerminal::PosixTerminal() {
    const sigset_t signals = StopSignals();
    signals_ = signalfd(-1, &signals, SFD_CLOEXEC | SFD_NONBLOCK);
    if (signals_ < 0) throw std::system_error(errno, std::generic_category(), "signals can't be received");
    sigprocmask(SIG_BLOCK, &signals, &maskBefore_);
    std::signal(SIGPIPE, SIG_IGN);
}

PosixTerminal::~PosixTerminal() {
    close(signals_);
    sigprocmask(SIG_SETMASK, &maskBefore_, nullptr);
}

std::chrono::milliseconds PosixTerminal::Now() {
    return std::chrono::duration_cast<std::chrono::milliseconds>(std::chrono::steady_clock::now() - start_);
}

TerminalInput PosixTerminal::Wait(std::chrono::milliseconds atMost) {
    std::array<pollfd, 2> sources{{{signals_, POLLIN, 0}, {STDIN_FILENO, POLLIN, 0}}};
    const nfds_t count = endOfInput_ ? 1 : 2;
    if (poll(sources.data(), count, static_cast<int>(atMost.count())) < 0 && errno != EINTR) {
        throw std::system_error(errno, std::generic_category(), "the terminal can't be waited for");
    }
    TerminalInput input;
    signalfd_siginfo signal;
    input.StopAsked = read(signals_, &signal, sizeof signal) > 0;
    if (!endOfInput_ && sources[1].revents != 0) ReadInput(input);
    return input;
}

/// An input that fails has ended.
void PosixTerminal::ReadInput(TerminalInput& input) {
    std::array<char, 4096> buffer{};
    const ssize_t size = read(STDIN_FILENO, buffer.data(), buffer.size());
    if (size < 0 && (errno == EINTR || errno == EAGAIN)) return;
    if (size <= 0) {
        if (!pending_.empty()) input.Lines.push_back(std::move(pending_));
        pending_.clear();
        input.EndOfInput = endOfInput_ = true;
        return;
    }
    pending_.append(buffer.data(), static_cast<std::size_t>(size));
    for (auto end = pending_.find('\n'); end != std::string::npos; end = pending_.find('\n')) {
        input.Lines.push_back(pending_.substr(0, end));
        pending_.erase(0, end + 1);
    }
}

bool OutputTakesColour() { return isatty(STDOUT_FILENO) == 1 && std::getenv("NO_COLOR") == nullptr; }

std::filesystem::path CacheFolder() {
    if (const char* const cache = std::getenv("XDG_CACHE_HOME"); cache != nullptr && *cache != 0)
        return cache;
    if (const char* const home = std::getenv("HOME"); home != nullptr && *home != 0) {
        return std::filesystem::path(home) / ".cache";
    }
    return std::filesystem::temp_directory_path();
}

std::filesystem::path ProgramFolder() {
    std::error_code error;
    return std::filesystem::read_symlink("/proc/self/exe", error).parent_path();
}

}  // namespace corvenna
