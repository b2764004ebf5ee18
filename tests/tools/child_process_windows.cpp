#include <windows.h>

#include <algorithm>
#include <array>
#include <filesystem>
#include <stdexcept>

#include "tools/child_process_system.h"

namespace corvenna {

namespace {

/// No word of a test has a quotation mark in it or a backslash at its end.
std::wstring CommandLineOf(const std::vector<std::string>& command) {
    std::wstring line;
    for (const std::string& word : command) {
        const std::u8string utf8(word.begin(), word.end());
        line += L'"' + std::filesystem::path(utf8).wstring() + L"\" ";
    }
    return line;
}

/// A pipe whose one end a program that is started gets.
struct Pipe {
    HANDLE Reads = nullptr;
    HANDLE Writes = nullptr;

    Pipe() {
        SECURITY_ATTRIBUTES handedOn{sizeof(SECURITY_ATTRIBUTES), nullptr, TRUE};
        if (CreatePipe(&Reads, &Writes, &handedOn, 0) == 0) throw std::runtime_error("no pipe can be had");
    }
};

void KeepHere(HANDLE handle) { SetHandleInformation(handle, HANDLE_FLAG_INHERIT, 0); }

}  // namespace

struct ChildProcess::Process::Handles {
    PROCESS_INFORMATION Info{};
    HANDLE Input = nullptr;
    HANDLE Output = nullptr;
};

ChildProcess::Process::Process(const std::vector<std::string>& command) : Of(std::make_unique<Handles>()) {
    const Pipe input, output;
    KeepHere(input.Writes);
    KeepHere(output.Reads);
    STARTUPINFOW startup{};
    startup.cb = sizeof startup;
    startup.dwFlags = STARTF_USESTDHANDLES;
    startup.hStdInput = input.Reads;
    startup.hStdOutput = startup.hStdError = output.Writes;
    std::wstring line = CommandLineOf(command);
    const BOOL started = CreateProcessW(nullptr, line.data(), nullptr, nullptr, TRUE,
                                        CREATE_NEW_PROCESS_GROUP, nullptr, nullptr, &startup, &Of->Info);
    CloseHandle(input.Reads);
    CloseHandle(output.Writes);
    Of->Input = input.Writes;
    Of->Output = output.Reads;
    if (started == 0) throw std::runtime_error(command[0] + " can't be started");
}

ChildProcess::Process::~Process() {
    Kill();
    EndInput();
    CloseHandle(Of->Output);
    CloseHandle(Of->Info.hThread);
    CloseHandle(Of->Info.hProcess);
}

/// Ctrl-Break reaches those who share a console with the sender; Wine does not know it.
bool ChildProcess::CanSignal() {
    const bool isWine = GetProcAddress(GetModuleHandleW(L"ntdll.dll"), "wine_get_version") != nullptr;
    return !isWine && GetConsoleCP() != 0;
}

void ChildProcess::Process::Signal(int) { GenerateConsoleCtrlEvent(CTRL_BREAK_EVENT, Of->Info.dwProcessId); }

void ChildProcess::Process::Kill() { TerminateProcess(Of->Info.hProcess, 1); }

bool ChildProcess::Process::Write(std::string_view text) {
    DWORD written = 0;
    return WriteFile(Of->Input, text.data(), static_cast<DWORD>(text.size()), &written, nullptr) != 0 &&
           written == text.size();
}

void ChildProcess::Process::EndInput() {
    if (Of->Input != nullptr) CloseHandle(Of->Input);
    Of->Input = nullptr;
}

bool ChildProcess::Process::ReadSome(std::string& into) {
    std::array<char, 4096> buffer{};
    DWORD size = 0;
    if (PeekNamedPipe(Of->Output, nullptr, 0, nullptr, &size, nullptr) == 0) return false;
    if (size == 0) {
        WaitForSingleObject(Of->Info.hProcess, static_cast<DWORD>(LookInterval.count()));
        return true;
    }
    size = std::min(size, static_cast<DWORD>(buffer.size()));
    if (ReadFile(Of->Output, buffer.data(), size, &size, nullptr) == 0) return false;
    into.append(buffer.data(), size);
    return true;
}

int ChildProcess::Process::Wait() {
    WaitForSingleObject(Of->Info.hProcess, INFINITE);
    DWORD status = 0;
    GetExitCodeProcess(Of->Info.hProcess, &status);
    return static_cast<int>(status);
}

}  // namespace corvenna
