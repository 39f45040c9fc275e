// Locale hints from files that are named on a command line: their settings, and the browser's languages
// where they lie in the browser's cache.

#include "arvmui.h"
#include "resources/process_state.h"
#include "support/byte_file.h"
#include "support/import_replacement.h"
#include "support/temporary_folder.h"

#include <gtest/gtest.h>

#include <cstring>
#include <cwchar>
#include <ostream>
#include <string>

namespace arvmui_test
{
namespace
{

const std::wstring kNothingFound = L"\t";
constexpr wchar_t kBrowserKey[] = L"Software\\Microsoft\\Internet Explorer\\International";

// What the system says about the browser's cache.
struct CacheFolder
{
    bool exists = true;  // whether the system has the function
    BOOL answer = TRUE;
    std::wstring path;
    int questions = 0;
    bool askedRightly = true;
} g_cache;

BOOL WINAPI AnswerCacheFolder(HWND owner, wchar_t* path, int folder, BOOL create)
{
    ++g_cache.questions;
    g_cache.askedRightly = g_cache.askedRightly && !owner && folder == 0x20 && !create;
    std::wmemcpy(path, g_cache.path.c_str(), g_cache.path.size() + 1);
    return g_cache.answer;
}

FARPROC WINAPI FindFunction(HMODULE module, LPCSTR name)
{
    static const auto real = ARVMUI_REAL_FUNCTION(L"kernel32.dll", GetProcAddress);
    const bool isName = reinterpret_cast<ULONG_PTR>(name) > 0xFFFF;
    if (!isName || std::strcmp(name, "SHGetSpecialFolderPathW") != 0) return real(module, name);
    if (!g_cache.exists) return nullptr;
    return reinterpret_cast<FARPROC>(reinterpret_cast<void*>(&AnswerCacheFolder));
}

bool g_everythingIsADevice = false;

DWORD WINAPI AnswerFileType(HANDLE file)
{
    static const auto real = ARVMUI_REAL_FUNCTION(L"kernel32.dll", GetFileType);
    return g_everythingIsADevice ? FILE_TYPE_CHAR : real(file);
}

struct Hints
{
    std::wstring settings;
    std::wstring browser;

    bool operator==(const Hints&) const = default;
};

std::ostream& operator<<(std::ostream& stream, const Hints& hints)
{
    return stream << "settings " << testing::PrintToString(hints.settings) << ", browser "
                  << testing::PrintToString(hints.browser);
}

class FileHintsTest : public testing::Test
{
protected:
    FileHintsTest()
    {
        g_cache = CacheFolder{};
        g_everythingIsADevice = false;
        g_cache.path = (folder_.Path() / L"Cache").wstring();
        for (unsigned slot = 0; slot < ARVMUI_HINT_COUNT; ++slot) SetSlot(slot, nullptr);
        ::GetCurrentDirectoryW(MAX_PATH, currentFolder_);
        ::SetCurrentDirectoryW(folder_.Path().c_str());
    }
    ~FileHintsTest() override { ::SetCurrentDirectoryW(currentFolder_); }

    std::wstring Write(std::wstring_view name, std::string_view bytes) const
    {
        return WriteBytes(folder_.Path() / name, bytes).make_preferred().wstring();
    }

    std::wstring WriteLocale(std::wstring_view name, const std::string& list) const
    {
        return Write(name, "[Settings]\nUILocale=" + list + "\n");
    }

    static void SetSlot(unsigned slot, const wchar_t* text) { arvmui::SetLocaleHint(arvmui::Descriptor(), slot, text); }

    // The hints behind a line that is not changed by being parsed.
    static Hints Parse(const std::wstring& line)
    {
        std::wstring edited = line;
        EXPECT_EQ(ARVMUI_ParseCommandLineW(edited.data()), TRUE);
        EXPECT_EQ(edited, line);
        return {arvmui::GetLocaleHint(arvmui::Descriptor(), HINT_SETTINGS_FILE),
            arvmui::GetLocaleHint(arvmui::Descriptor(), HINT_BROWSER)};
    }

    static Hints ParseName(const std::wstring& name) { return Parse(L"prog \"" + name + L"\""); }

    TemporaryFolder folder_;

private:
    wchar_t currentFolder_[MAX_PATH] = {};
};

TEST_F(FileHintsTest, SettingsFileNamesTheLocales)
{
    EXPECT_EQ(ParseName(WriteLocale(L"a.ini", "ja, de")), (Hints{L"ja, de", L""}));
}

TEST_F(FileHintsTest, LocalesMayStandInAnySection)
{
    EXPECT_EQ(ParseName(Write(L"a.ini", "uilocale=fr\n[x]\nUILocale=de\n")).settings, L"fr");
}

TEST_F(FileHintsTest, LocalesMayStandBehindADeclaredEncoding)
{
    EXPECT_EQ(ParseName(Write(L"a.ini", "[Encoding]\nInputEncoding=UTF-8\n[x]\nUILocale=\xE6\x97\xA5\n")).settings,
        L"\x65E5");
}

TEST_F(FileHintsTest, FileWithoutLocalesIsMarkedAsLookedAt)
{
    EXPECT_EQ(ParseName(Write(L"a.ini", "[x]\ny=1\n")), (Hints{kNothingFound, L""}));
}

TEST_F(FileHintsTest, EmptyListIsMarkedAsLookedAt)
{
    EXPECT_EQ(ParseName(WriteLocale(L"a.ini", "")).settings, kNothingFound);
}

TEST_F(FileHintsTest, KeyWithoutEqualsSignIsMarkedAsLookedAt)
{
    EXPECT_EQ(ParseName(Write(L"a.ini", "UILocale\nUILocale=de\n")).settings, kNothingFound);
}

TEST_F(FileHintsTest, EmptyFileIsMarkedAsLookedAt)
{
    EXPECT_EQ(ParseName(Write(L"a.ini", "")).settings, kNothingFound);
}

TEST_F(FileHintsTest, FolderIsMarkedAsLookedAt)
{
    EXPECT_EQ(ParseName(folder_.MakeFolder(L"folder").wstring()).settings, kNothingFound);
}

TEST_F(FileHintsTest, FileThatCannotBeOpenedIsMarkedAsLookedAt)
{
    const std::wstring path = WriteLocale(L"a.ini", "de");
    const HANDLE writer =
        ::CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
    ASSERT_NE(writer, INVALID_HANDLE_VALUE);
    EXPECT_EQ(ParseName(path).settings, kNothingFound);
    ::CloseHandle(writer);
}

TEST_F(FileHintsTest, NameOfNoFileLeavesTheSlotsEmpty)
{
    EXPECT_EQ(ParseName((folder_.Path() / L"missing.ini").wstring()), (Hints{L"", L""}));
    EXPECT_EQ(Parse(L"prog a|b * ?"), (Hints{L"", L""}));
}

TEST_F(FileHintsTest, LookingAtArgumentsLeavesTheLastErrorAlone)
{
    constexpr DWORD kMark = 4711;
    const std::wstring file = WriteLocale(L"a.ini", "de");
    for (const std::wstring& line : {std::wstring(L"missing.ini"), file, L"\"" + file + L"\" /uilocale:fr"})
    {
        std::wstring copy = line;
        ::SetLastError(kMark);
        ARVMUI_ParseCommandLineW(copy.data());
        EXPECT_EQ(::GetLastError(), kMark) << std::string(line.begin(), line.end());
    }
}

// Reading a device, such as the console, could wait for ever.
TEST_F(FileHintsTest, DeviceIsMarkedAsLookedAtWithoutReading)
{
    g_everythingIsADevice = true;
    EXPECT_EQ(ParseName(WriteLocale(L"a.ini", "ja")).settings, kNothingFound);
}

TEST_F(FileHintsTest, LongListIsCutAt255Characters)
{
    EXPECT_EQ(ParseName(WriteLocale(L"a.ini", std::string(254, 'x'))).settings, std::wstring(254, L'x'));
    SetSlot(HINT_SETTINGS_FILE, nullptr);
    EXPECT_EQ(ParseName(WriteLocale(L"b.ini", std::string(255, 'x'))).settings, std::wstring(255, L'x'));
    SetSlot(HINT_SETTINGS_FILE, nullptr);
    EXPECT_EQ(ParseName(WriteLocale(L"c.ini", std::string(270, 'x'))).settings, std::wstring(255, L'x'));
}

TEST_F(FileHintsTest, ProgramIsSkippedInAnyCase)
{
    for (const wchar_t* const name : {L"prog.exe", L"PROG.EXE", L"a.b.Exe", L".exe"})
    {
        WriteLocale(name, "de");
        EXPECT_EQ(ParseName((folder_.Path() / name).wstring()), (Hints{L"", L""})) << testing::PrintToString(name);
    }
}

TEST_F(FileHintsTest, OnlyTheExtensionMakesAProgram)
{
    for (const wchar_t* const name : {L"prog.exe.ini", L"prog.exec", L"prog.ex", L"prog", L"exe", L"a.exe/b"})
    {
        SetSlot(HINT_SETTINGS_FILE, nullptr);
        EXPECT_EQ(ParseName(WriteLocale(name, "de")).settings, L"de") << testing::PrintToString(name);
    }
}

TEST_F(FileHintsTest, FileBehindTheProgramCounts)
{
    WriteLocale(L"prog.exe", "fr");
    WriteLocale(L"a.ini", "de");
    EXPECT_EQ(Parse(L"prog.exe a.ini").settings, L"de");
}

TEST_F(FileHintsTest, FirstFileWins)
{
    WriteLocale(L"a.ini", "de");
    WriteLocale(L"b.ini", "fr");
    EXPECT_EQ(Parse(L"prog x a.ini b.ini").settings, L"de");
}

TEST_F(FileHintsTest, FirstFileWinsEvenWithoutLocales)
{
    Write(L"a.ini", "");
    WriteLocale(L"b.ini", "fr");
    EXPECT_EQ(Parse(L"prog a.ini b.ini").settings, kNothingFound);
}

TEST_F(FileHintsTest, WhatAttachFoundIsKept)
{
    WriteLocale(L"a.ini", "de");
    SetSlot(HINT_SETTINGS_FILE, L"ja");
    EXPECT_EQ(Parse(L"prog a.ini").settings, L"ja");
    SetSlot(HINT_SETTINGS_FILE, L"\t");
    EXPECT_EQ(Parse(L"prog a.ini").settings, kNothingFound);
}

TEST_F(FileHintsTest, QuotedNameMayHoldBlanks)
{
    WriteLocale(L"my settings.ini", "de");
    EXPECT_EQ(Parse(L"prog \"my settings.ini\"").settings, L"de");
}

TEST_F(FileHintsTest, UnquotedNameEndsAtABlank)
{
    WriteLocale(L"my settings.ini", "de");
    EXPECT_EQ(Parse(L"prog my settings.ini").settings, L"");
}

TEST_F(FileHintsTest, RelativeNamesStartFromTheCurrentFolder)
{
    WriteLocale(L"below/a.ini", "de");
    EXPECT_EQ(Parse(L"prog below\\a.ini").settings, L"de");
    SetSlot(HINT_SETTINGS_FILE, nullptr);
    EXPECT_EQ(Parse(L"prog .\\below\\..\\below/a.ini").settings, L"de");
}

TEST_F(FileHintsTest, FirstTokenMayBeTheFile)
{
    WriteLocale(L"a.ini", "de");
    EXPECT_EQ(Parse(L"a.ini").settings, L"de");
}

// Options of the host; the root folder, too, is called "/".
TEST_F(FileHintsTest, TokenThatBeginsWithASlashIsNoFile)
{
    WriteLocale(L"a.ini", "de");
    EXPECT_EQ(Parse(L"prog / /a.ini /uilocal"), (Hints{L"", L""}));
}

TEST_F(FileHintsTest, FileBehindTheOptionCounts)
{
    WriteLocale(L"a.ini", "de");
    wchar_t line[] = L"prog /uilocale:fr a.ini";
    ARVMUI_ParseCommandLineW(line);
    EXPECT_STREQ(line, L"prog a.ini");
    EXPECT_STREQ(arvmui::GetLocaleHint(arvmui::Descriptor(), HINT_COMMAND_LINE), L"fr");
    EXPECT_STREQ(arvmui::GetLocaleHint(arvmui::Descriptor(), HINT_SETTINGS_FILE), L"de");
}

TEST_F(FileHintsTest, FileBehindAnEmptyTokenIsNotReached)
{
    WriteLocale(L"a.ini", "de");
    EXPECT_EQ(Parse(L"prog \"\" a.ini").settings, L"");
}

TEST_F(FileHintsTest, NarrowLineNamesFilesToo)
{
    WriteLocale(L"a.ini", "de");
    char line[] = "prog a.ini";
    EXPECT_EQ(ARVMUI_ParseCommandLineA(line), TRUE);
    EXPECT_STREQ(arvmui::GetLocaleHint(arvmui::Descriptor(), HINT_SETTINGS_FILE), L"de");
}

// The browser's languages, in a registry of this test's own.
class BrowserSettings
{
public:
    BrowserSettings()
    {
        HKEY key = nullptr;
        ::RegCreateKeyExW(HKEY_CURRENT_USER, path_.c_str(), 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, &key, nullptr);
        ::RegOverridePredefKey(HKEY_CURRENT_USER, key);
        ::RegCloseKey(key);
    }
    ~BrowserSettings()
    {
        ::RegOverridePredefKey(HKEY_CURRENT_USER, nullptr);
        ::RegDeleteTreeW(HKEY_CURRENT_USER, path_.c_str());
    }
    BrowserSettings(const BrowserSettings&) = delete;
    BrowserSettings& operator=(const BrowserSettings&) = delete;

    static LSTATUS SetLanguages(const std::wstring& list)
    {
        return ::RegSetKeyValueW(HKEY_CURRENT_USER, kBrowserKey, L"AcceptLanguage", REG_SZ, list.c_str(),
            static_cast<DWORD>((list.size() + 1) * sizeof(wchar_t)));
    }

private:
    const std::wstring path_ = L"Software\\arvmui_browser_" + std::to_wstring(::GetCurrentProcessId());
};

class BrowserHintsTest : public FileHintsTest
{
protected:
    BrowserHintsTest() { EXPECT_EQ(BrowserSettings::SetLanguages(L"ja,de-AT"), ERROR_SUCCESS); }

    std::wstring InCache(std::wstring_view name = L"page.ini") const
    {
        return WriteLocale(L"Cache/" + std::wstring(name), "fr");
    }

private:
    BrowserSettings settings_;
};

TEST_F(BrowserHintsTest, FileInTheCacheBringsTheBrowsersLanguages)
{
    EXPECT_EQ(ParseName(InCache()), (Hints{L"fr", L"ja,de-AT"}));
    EXPECT_TRUE(g_cache.askedRightly);
}

TEST_F(BrowserHintsTest, FileInAFolderOfTheCacheDoesToo)
{
    EXPECT_EQ(ParseName(InCache(L"x/y.ini")).browser, L"ja,de-AT");
}

TEST_F(BrowserHintsTest, CacheIsFoundInAnyCase)
{
    std::wstring path = InCache();
    for (wchar_t& character : g_cache.path)
    {
        if (character >= L'a' && character <= L'z') character = static_cast<wchar_t>(character - 32);
    }
    EXPECT_EQ(ParseName(path).browser, L"ja,de-AT");
}

TEST_F(BrowserHintsTest, BrowserWithoutLanguagesIsMarkedAsLookedAt)
{
    BrowserSettings::SetLanguages(L"");
    EXPECT_EQ(ParseName(InCache()).browser, kNothingFound);
    SetSlot(HINT_BROWSER, nullptr);
    ::RegDeleteTreeW(HKEY_CURRENT_USER, L"Software");
    EXPECT_EQ(ParseName(InCache()).browser, kNothingFound);
}

TEST_F(BrowserHintsTest, LanguageListMayFillTheSlot)
{
    BrowserSettings::SetLanguages(std::wstring(255, L'x'));
    EXPECT_EQ(ParseName(InCache()).browser, std::wstring(255, L'x'));
}

TEST_F(BrowserHintsTest, FileElsewhereLeavesTheSlotEmpty)
{
    EXPECT_EQ(ParseName(WriteLocale(L"a.ini", "fr")), (Hints{L"fr", L""}));
}

TEST_F(BrowserHintsTest, FolderWhoseNameOnlyBeginsLikeTheCacheIsNotTheCache)
{
    EXPECT_EQ(ParseName(WriteLocale(L"Cache2/a.ini", "fr")).browser, L"");
    EXPECT_EQ(ParseName(WriteLocale(L"Cache.ini", "fr")).browser, L"");
}

TEST_F(BrowserHintsTest, CacheFolderItselfIsNotInTheCache)
{
    EXPECT_EQ(ParseName(folder_.MakeFolder(L"Cache").wstring()).browser, L"");
}

TEST_F(BrowserHintsTest, FolderMustBeSetOffByABackslash)
{
    InCache();
    EXPECT_EQ(ParseName(g_cache.path + L"/page.ini"), (Hints{L"fr", L""}));
}

TEST_F(BrowserHintsTest, RelativeNameDoesNotBeginWithTheCache)
{
    InCache();
    EXPECT_EQ(Parse(L"prog Cache\\page.ini"), (Hints{L"fr", L""}));
}

TEST_F(BrowserHintsTest, ProgramInTheCacheIsSkipped)
{
    EXPECT_EQ(ParseName(InCache(L"setup.exe")), (Hints{L"", L""}));
}

TEST_F(BrowserHintsTest, LaterFileInTheCacheCountsWhenTheFirstLiesElsewhere)
{
    WriteLocale(L"a.ini", "ja");
    EXPECT_EQ(Parse(L"prog a.ini \"" + InCache() + L"\""), (Hints{L"ja", L"ja,de-AT"}));
}

TEST_F(BrowserHintsTest, WhatWasFoundIsKept)
{
    SetSlot(HINT_BROWSER, L"es");
    EXPECT_EQ(ParseName(InCache()).browser, L"es");
    SetSlot(HINT_BROWSER, L"\t");
    EXPECT_EQ(ParseName(InCache()).browser, kNothingFound);
}

TEST_F(BrowserHintsTest, SystemWithoutTheFunctionHasNoCache)
{
    g_cache.exists = false;
    EXPECT_EQ(ParseName(InCache()), (Hints{L"fr", L""}));
    EXPECT_EQ(g_cache.questions, 0);
}

TEST_F(BrowserHintsTest, SystemThatDoesNotKnowTheFolderHasNoCache)
{
    g_cache.answer = FALSE;
    EXPECT_EQ(ParseName(InCache()), (Hints{L"fr", L""}));
    EXPECT_EQ(g_cache.questions, 1);
}

}  // namespace
}  // namespace arvmui_test

ARVMUI_REPLACE_IMPORT(GetProcAddress, &arvmui_test::FindFunction)
ARVMUI_REPLACE_IMPORT(GetFileType, &arvmui_test::AnswerFileType)
