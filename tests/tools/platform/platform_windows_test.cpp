#include <gmock/gmock.h>
#include <windows.h>

#include "support/has_form.h"
#include "tools/platform/platform.h"

namespace corvenna {
namespace {

TEST(CommandLine, IsTheOneTheSystemHas) {
    const CommandLine line(0, nullptr, Spelling::Utf8);
    ASSERT_GE(line.Count(), 1);
    EXPECT_THAT(line.Words()[0], testing::HasSubstr("platform_tests"));
}

TEST(ProgramFolder, HoldsTheProgram) {
    EXPECT_TRUE(std::filesystem::exists(ProgramFolder() / "platform_tests.exe"));
}

TEST(CacheFolder, IsTheUsersOwn) {
    EXPECT_EQ(CacheFolder(), std::filesystem::path(_wgetenv(L"LOCALAPPDATA")));
}

std::wstring OnTheClipboard() {
    if (OpenClipboard(nullptr) == 0) return L"(it can't be opened)";
    const HANDLE memory = GetClipboardData(CF_UNICODETEXT);
    std::wstring text = L"(nothing)";
    if (memory != nullptr) {
        text = static_cast<const wchar_t*>(GlobalLock(memory));
        GlobalUnlock(memory);
    }
    CloseClipboard();
    return text;
}

TEST(OfferOnClipboard, ReplacesWhatWasThereAndIsUnicode) {
    OfferOnClipboard("before");
    OfferOnClipboard("M\xFCnchen\r\n\x80 5");
    EXPECT_EQ(OnTheClipboard(), L"M\u00FCnchen\r\n\u20AC 5");
}

TEST(SystemVersion, NamesTheSystem) {
    EXPECT_THAT(SystemVersion(), HasForm("Windows [0-9]+[.][0-9]+[.][0-9]+.*"));
}

}  // namespace
}  // namespace corvenna
