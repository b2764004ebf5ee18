#include <windows.h>

#include <array>
#include <condition_variable>
#include <filesystem>
#include <mutex>
#include <string>
#include <thread>
#include <utility>

#include "tools/console/system_terminal.h"

namespace corvenna {

namespace {

/// What the thread that reads and the system's own thread for Ctrl-C hand over. It outlives the terminal, as
/// a read can't be called off.
struct Mailbox {
    std::mutex Lock;
    std::condition_variable Arrived;
    TerminalInput Input;
    bool StopAsked = false;
};

Mailbox& TheMailbox() {
    static Mailbox* const mailbox = new Mailbox;
    return *mailbox;
}

template <class Change>
void Post(Change change) {
    Mailbox& mailbox = TheMailbox();
    const std::scoped_lock lock(mailbox.Lock);
    change(mailbox);
    mailbox.Arrived.notify_one();
}

/// Ctrl-C and Ctrl-Break are over with the answer. Behind all else, such as the window's close box, the
/// program is gone as soon as this returns: it does not, and the program ends by itself.
BOOL WINAPI OnStopAsked(DWORD event) {
    Post([](Mailbox& mailbox) { mailbox.StopAsked = true; });
    if (event != CTRL_C_EVENT && event != CTRL_BREAK_EVENT) Sleep(INFINITE);
    return TRUE;
}

/// Bytes of UTF-8 from whatever standard input is; empty at its end.
std::string ReadSome() {
    const HANDLE input = GetStdHandle(STD_INPUT_HANDLE);
    DWORD size = 0;
    if (DWORD mode = 0; GetConsoleMode(input, &mode) != 0) {
        std::array<wchar_t, 4096> typed{};
        if (ReadConsoleW(input, typed.data(), static_cast<DWORD>(typed.size()), &size, nullptr) == 0)
            return {};
        return std::filesystem::path(std::wstring(typed.data(), size)).string();
    }
    std::array<char, 4096> buffer{};
    if (ReadFile(input, buffer.data(), static_cast<DWORD>(buffer.size()), &size, nullptr) == 0) return {};
    return {buffer.data(), size};
}

std::string WithoutReturn(std::string line) {
    if (line.ends_with('\r')) line.pop_back();
    return line;
}

void ReadToTheEnd() {
    std::string pending;
    for (std::string bytes = ReadSome(); !bytes.empty(); bytes = ReadSome()) {
        pending += bytes;
        for (auto end = pending.find('\n'); end != std::string::npos; end = pending.find('\n')) {
            Post([&](Mailbox& mailbox) {
                mailbox.Input.Lines.push_back(WithoutReturn(pending.substr(0, end)));
            });
            pending.erase(0, end + 1);
        }
    }
    Post([&](Mailbox& mailbox) {
        if (!pending.empty()) mailbox.Input.Lines.push_back(WithoutReturn(pending));
        mailbox.Input.EndOfInput = true;
    });
}

}  // namespace

struct SystemTerminal::Platform {};

SystemTerminal::SystemTerminal() : platform_(std::make_unique<Platform>()) {
    SetConsoleCtrlHandler(&OnStopAsked, TRUE);
    std::thread(&ReadToTheEnd).detach();
}

SystemTerminal::~SystemTerminal() { SetConsoleCtrlHandler(&OnStopAsked, FALSE); }

TerminalInput SystemTerminal::Wait(std::chrono::milliseconds atMost) {
    Mailbox& mailbox = TheMailbox();
    std::unique_lock lock(mailbox.Lock);
    mailbox.Arrived.wait_for(lock, atMost, [&] {
        return mailbox.StopAsked || mailbox.Input.EndOfInput || !mailbox.Input.Lines.empty();
    });
    mailbox.Input.StopAsked = std::exchange(mailbox.StopAsked, false);
    return std::exchange(mailbox.Input, {});
}

}  // namespace corvenna
