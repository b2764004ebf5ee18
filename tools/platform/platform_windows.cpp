// Each of these needs those before it.
// clang-format off
#include <windows.h>
#include <shellapi.h>
// clang-format on

#include <fcntl.h>
#include <io.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "station/code_page.h"
#include "tools/platform/platform.h"

namespace corvenna {

namespace {

constexpr UINT OwnCodePage = 1252;

/// The file system library spells names in UTF-8 on this system.
std::string Utf8(const wchar_t* text) { return std::filesystem::path(text).string(); }

template <class Pointer>
Pointer Operation(HMODULE library, const char* name) {
    return reinterpret_cast<Pointer>(reinterpret_cast<void*>(GetProcAddress(library, name)));
}

/// Whether it is a console; from then on it obeys escape sequences, such as those for colours.
bool IsConsole(DWORD which) {
    const HANDLE output = GetStdHandle(which);
    DWORD mode = 0;
    return GetConsoleMode(output, &mode) != 0 &&
           SetConsoleMode(output, mode | ENABLE_VIRTUAL_TERMINAL_PROCESSING) != 0;
}

HGLOBAL GlobalCopy(const std::u16string& text) {
    const std::size_t size = (text.size() + 1) * sizeof(char16_t);
    const HGLOBAL memory = GlobalAlloc(GMEM_MOVEABLE, size);
    if (memory == nullptr) return nullptr;
    std::memcpy(GlobalLock(memory), text.c_str(), size);
    GlobalUnlock(memory);
    return memory;
}

}  // namespace

CommandLine::CommandLine(int, const char* const*, Spelling spelling) {
    int count = 0;
    wchar_t** const wide = CommandLineToArgvW(GetCommandLineW(), &count);
    for (int i = 0; wide != nullptr && i < count; ++i) {
        const std::string word = Utf8(wide[i]);
        words_.push_back(spelling == Spelling::Utf8 ? word : Utf8ToCodePage(word));
    }
    LocalFree(wide);
    for (const std::string& word : words_) pointers_.push_back(word.c_str());
}

ConsoleSpelling::ConsoleSpelling(Spelling spelling) : before_(GetConsoleOutputCP()) {
    SetConsoleOutputCP(spelling == Spelling::Utf8 ? CP_UTF8 : OwnCodePage);
}

ConsoleSpelling::~ConsoleSpelling() { SetConsoleOutputCP(before_); }

void KeepLineEnds() { _setmode(_fileno(stdout), _O_BINARY); }

bool OutputTakesColour() { return std::getenv("NO_COLOR") == nullptr && IsConsole(STD_OUTPUT_HANDLE); }

bool InputIsTerminal() { return _isatty(_fileno(stdin)) != 0; }

void LeaveInputToOthers() {
    const int nothing = _open("NUL", _O_RDONLY);
    if (nothing < 0) return;
    _dup2(nothing, _fileno(stdin));
    _close(nothing);
    SetStdHandle(STD_INPUT_HANDLE, reinterpret_cast<HANDLE>(_get_osfhandle(_fileno(stdin))));
}

/// The system counts only files of the C library, and has no limit for sockets.
void AllowManyOpenFiles() {}

bool ErrorOutputIsTerminal() { return IsConsole(STD_ERROR_HANDLE); }

std::filesystem::path CacheFolder() {
    const wchar_t* const local = _wgetenv(L"LOCALAPPDATA");
    return local == nullptr ? std::filesystem::temp_directory_path() : std::filesystem::path(local);
}

std::filesystem::path ProgramFolder() {
    std::wstring name(32768, L'\0');
    name.resize(GetModuleFileNameW(nullptr, name.data(), static_cast<DWORD>(name.size())));
    return std::filesystem::path(name).parent_path();
}

/// Straight from the system: what it tells ordinary programs depends on what they are made for.
std::string SystemVersion() {
    const HMODULE system = GetModuleHandleW(L"ntdll.dll");
    RTL_OSVERSIONINFOW version{};
    version.dwOSVersionInfoSize = sizeof version;
    const auto getVersion = Operation<LONG(WINAPI*)(RTL_OSVERSIONINFOW*)>(system, "RtlGetVersion");
    if (getVersion == nullptr || getVersion(&version) != 0) return "Windows";
    std::string words = "Windows " + std::to_string(version.dwMajorVersion) + '.' +
                        std::to_string(version.dwMinorVersion) + '.' + std::to_string(version.dwBuildNumber);
    const auto wineVersion = Operation<const char*(CDECL*)()>(system, "wine_get_version");
    return wineVersion == nullptr ? words : words + " under Wine " + wineVersion();
}

void OfferOnClipboard(std::string_view text) {
    if (OpenClipboard(nullptr) == 0) return;
    EmptyClipboard();
    const HGLOBAL memory = GlobalCopy(CodePageToUtf16(text));
    if (memory != nullptr && SetClipboardData(CF_UNICODETEXT, memory) == nullptr) GlobalFree(memory);
    CloseClipboard();
}

}  // namespace corvenna
