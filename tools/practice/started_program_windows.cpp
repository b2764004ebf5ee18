#include <windows.h>

#include <system_error>

#include "tools/practice/started_program.h"
#include "world/files.h"

namespace corvenna {

namespace {

/// One word of a command line, so that the program that splits the line gets it back as it is.
std::wstring Quoted(const std::string& word) {
    std::wstring quoted = L"\"";
    std::size_t backslashes = 0;
    for (const wchar_t c : PathOfUtf8(word).wstring()) {
        if (c == L'"') quoted.append(backslashes + 1, L'\\');
        backslashes = c == L'\\' ? backslashes + 1 : 0;
        quoted += c;
    }
    return quoted.append(backslashes, L'\\') + L'"';
}

/// How often a program with windows is asked to close those that are open by then.
constexpr DWORD AskAgain = 500;

BOOL CALLBACK CloseIfOf(HWND window, LPARAM process) {
    DWORD owner = 0;
    GetWindowThreadProcessId(window, &owner);
    if (owner == static_cast<DWORD>(process) && IsWindowVisible(window)) PostMessageW(window, WM_CLOSE, 0, 0);
    return TRUE;
}

[[noreturn]] void Fail(const std::string& program) {
    throw std::system_error(static_cast<int>(GetLastError()), std::system_category(), program);
}

}  // namespace

/// The job ends what is in it when this program is gone, whatever way it went.
struct StartedProgram::Process {
    HANDLE Job = CreateJobObjectW(nullptr, nullptr);
    PROCESS_INFORMATION Info{};

    ~Process() {
        CloseHandle(Info.hThread);
        CloseHandle(Info.hProcess);
        CloseHandle(Job);
    }

    std::optional<int> Wait(DWORD milliseconds) const {
        if (WaitForSingleObject(Info.hProcess, milliseconds) != WAIT_OBJECT_0) return std::nullopt;
        DWORD status = 0;
        GetExitCodeProcess(Info.hProcess, &status);
        return static_cast<int>(status);
    }
};

StartedProgram::StartedProgram(const std::vector<std::string>& command)
    : process_(std::make_unique<Process>()) {
    std::wstring line;
    for (const std::string& word : command) line += (line.empty() ? L"" : L" ") + Quoted(word);
    JOBOBJECT_EXTENDED_LIMIT_INFORMATION limits{};
    limits.BasicLimitInformation.LimitFlags = JOB_OBJECT_LIMIT_KILL_ON_JOB_CLOSE;
    SetInformationJobObject(process_->Job, JobObjectExtendedLimitInformation, &limits, sizeof limits);
    STARTUPINFOW startup{};
    startup.cb = sizeof startup;
    if (CreateProcessW(nullptr, line.data(), nullptr, nullptr, TRUE,
                       CREATE_NEW_PROCESS_GROUP | CREATE_SUSPENDED, nullptr, nullptr, &startup,
                       &process_->Info) == 0) {
        Fail(command[0]);
    }
    AssignProcessToJobObject(process_->Job, process_->Info.hProcess);
    ResumeThread(process_->Info.hThread);
}

StartedProgram::~StartedProgram() { End(); }

std::optional<int> StartedProgram::Status() {
    if (!status_) status_ = process_->Wait(0);
    return status_;
}

/// A program in a terminal hears Ctrl-Break, one with windows what their close boxes say.
int StartedProgram::End() {
    if (Status()) return *status_;
    const DWORD id = process_->Info.dwProcessId;
    GenerateConsoleCtrlEvent(CTRL_BREAK_EVENT, id);
    constexpr auto patience = static_cast<DWORD>(std::chrono::milliseconds(EndTime).count());
    for (DWORD waited = 0; waited < patience && !status_; waited += AskAgain) {
        EnumWindows(&CloseIfOf, static_cast<LPARAM>(id));
        status_ = process_->Wait(AskAgain);
    }
    if (!status_) {
        TerminateProcess(process_->Info.hProcess, 1);
        status_ = process_->Wait(INFINITE);
    }
    return status_.value_or(-1);
}

}  // namespace corvenna
