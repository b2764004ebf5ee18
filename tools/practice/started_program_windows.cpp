#include <windows.h>

#include <algorithm>
#include <system_error>
#include <vector>

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

/// What a started program gets of this one: the standard streams. A socket that it held would stay open when
/// it is closed here, and what waits for that socket would wait on.
class HandedOn {
  public:
    HandedOn() {
        for (const DWORD stream : {STD_INPUT_HANDLE, STD_OUTPUT_HANDLE, STD_ERROR_HANDLE})
            Add(GetStdHandle(stream));
        SIZE_T size = 0;
        InitializeProcThreadAttributeList(nullptr, 1, 0, &size);
        memory_.resize(size);
        InitializeProcThreadAttributeList(List(), 1, 0, &size);
        if (handles_.empty()) return;
        UpdateProcThreadAttribute(List(), 0, PROC_THREAD_ATTRIBUTE_HANDLE_LIST, handles_.data(),
                                  handles_.size() * sizeof(HANDLE), nullptr, nullptr);
    }
    ~HandedOn() { DeleteProcThreadAttributeList(List()); }
    HandedOn(const HandedOn&) = delete;
    HandedOn& operator=(const HandedOn&) = delete;

    LPPROC_THREAD_ATTRIBUTE_LIST List() {
        return reinterpret_cast<LPPROC_THREAD_ATTRIBUTE_LIST>(memory_.data());
    }
    bool Any() const { return !handles_.empty(); }

  private:
    /// The system takes none twice, and none that may not be inherited.
    void Add(HANDLE handle) {
        DWORD flags = 0;
        if (GetHandleInformation(handle, &flags) == 0 || (flags & HANDLE_FLAG_INHERIT) == 0) return;
        if (std::find(handles_.begin(), handles_.end(), handle) == handles_.end()) handles_.push_back(handle);
    }

    std::vector<HANDLE> handles_;
    std::vector<char> memory_;
};

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
    HandedOn handedOn;
    STARTUPINFOEXW startup{};
    startup.StartupInfo.cb = sizeof startup;
    startup.StartupInfo.dwFlags = STARTF_USESTDHANDLES;
    startup.StartupInfo.hStdInput = GetStdHandle(STD_INPUT_HANDLE);
    startup.StartupInfo.hStdOutput = GetStdHandle(STD_OUTPUT_HANDLE);
    startup.StartupInfo.hStdError = GetStdHandle(STD_ERROR_HANDLE);
    startup.lpAttributeList = handedOn.List();
    constexpr DWORD How = CREATE_NEW_PROCESS_GROUP | CREATE_SUSPENDED | EXTENDED_STARTUPINFO_PRESENT;
    if (CreateProcessW(nullptr, line.data(), nullptr, nullptr, handedOn.Any(), How, nullptr, nullptr,
                       &startup.StartupInfo, &process_->Info) == 0) {
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
