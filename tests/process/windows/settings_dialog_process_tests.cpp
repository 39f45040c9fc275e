// The settings dialog of whole programs with their own installations: whatever resource libraries lie
// beside the DLL decides what the dialog is, and what is chosen in it decides about the next program.
// This program does not load the DLL itself: the programs it starts would take over its languages.
#include "arvmui.h"
#include "process/attach/private_installation.h"
#include "resources/resource_ids.h"
#include "running_host.h"
#include "support/built_locales.h"
#include "support/dialog_resources.h"
#include "support/dialog_window.h"
#include "support/resource_image.h"
#include "support/scratch_registry.h"

#include <gtest/gtest.h>

namespace
{

using namespace arvmui_test;

constexpr int kChosen = ARVMUI_CONTROL_CHOSEN_LIST;
constexpr int kAvailable = ARVMUI_CONTROL_AVAILABLE_LIST;
constexpr wchar_t kProductKey[] = L"SOFTWARE\\Pelkor\\MUI";
constexpr wchar_t kHost[] = L"settings_dialog_host.exe";
constexpr wchar_t kResourceFile[] = L"arvmuiUI.DLL";
constexpr size_t kLongest = 0xFFFF;  // characters that a string resource can hold

using Names = std::vector<std::wstring>;

// The registry that the host sees, in a key of the test's own.
class HostRegistry
{
public:
    // Below a key that does not last nothing lasting can be created.
    explicit HostRegistry(DWORD options = REG_OPTION_NON_VOLATILE)
    {
        LARGE_INTEGER ticks = {};
        ::QueryPerformanceCounter(&ticks);
        path_ = L"Software\\ArvmuiTestHost_" + std::to_wstring(::GetCurrentProcessId()) + L"_"
                + std::to_wstring(ticks.QuadPart);
        Create(path_, options);
        Create(path_ + L"\\machine", options);
        Create(path_ + L"\\user", options);
    }
    ~HostRegistry() { ::RegDeleteTreeW(HKEY_CURRENT_USER, path_.c_str()); }
    HostRegistry(const HostRegistry&) = delete;
    HostRegistry& operator=(const HostRegistry&) = delete;

    const std::wstring& Path() const { return path_; }
    std::wstring Stored(const std::wstring& hive) const
    {
        return StoredText(HKEY_CURRENT_USER, (path_ + L"\\" + hive + L"\\" + kProductKey).c_str(), L"UILocale");
    }
    void Store(const std::wstring& hive, const std::wstring& list) const
    {
        StoreText(HKEY_CURRENT_USER, (path_ + L"\\" + hive + L"\\" + kProductKey).c_str(), L"UILocale", list);
    }

private:
    static void Create(const std::wstring& path, DWORD options)
    {
        HKEY key = nullptr;
        EXPECT_EQ(
            ::RegCreateKeyExW(HKEY_CURRENT_USER, path.c_str(), 0, nullptr, options, KEY_READ, nullptr, &key, nullptr),
            ERROR_SUCCESS);
        ::RegCloseKey(key);
    }

    std::wstring path_;
};

std::wstring Translation(const std::wstring& locale, UINT id)
{
    const HMODULE library = ::LoadLibraryExW(BuiltResourceLibrary(locale).c_str(), nullptr, LOAD_LIBRARY_AS_DATAFILE);
    wchar_t text[512] = {};
    if (!library) return L"<no library>";
    ::LoadStringW(library, id, text, 512);
    ::FreeLibrary(library);
    return text;
}

// An installation beside the host, into which a test writes resource libraries.
class HostInstallation
{
public:
    HostInstallation() { installation_.Add(kHost, kHost); }

    void AddLocale(const std::wstring& folder, const Strings& strings) const
    {
        const auto file = installation_.Folder() / L"resource" / folder / kResourceFile;
        WriteResourceImage(file, strings);
        CopyDialogs(file, BuiltResourceLibrary(L"en"), {ARVMUI_DIALOG_SETTINGS, ARVMUI_DIALOG_ADD_LANGUAGES});
    }

    std::filesystem::path Program() const { return installation_.Folder() / kHost; }

private:
    PrivateInstallation installation_;
};

// ---- The built resource libraries --------------------------------------------------------------------

TEST(SettingsProcess, DialogSpeaksTheLanguageOfTheCommandLine)
{
    const HostRegistry registry;
    for (const std::wstring& locale : BuiltLocales())
    {
        for (const wchar_t* const scope : {L"0", L"1"})
        {
            const RunningHost host(
                TestProgramFolder() / kHost, L"/uilocale:" + locale + L" " + registry.Path() + L" " + scope);
            const HWND dialog = host.WaitForBox();
            ASSERT_NE(dialog, nullptr) << locale;
            const UINT title =
                *scope == L'1' ? ARVMUI_STRING_SETTINGS_TITLE_MACHINE : ARVMUI_STRING_SETTINGS_TITLE_USER;
            EXPECT_EQ(WindowText(dialog), Translation(locale, title));
            EXPECT_TRUE(ClickButton(dialog, IDCANCEL));
            EXPECT_EQ(host.ExitCode(), DWORD{0});
        }
    }
}

TEST(SettingsProcess, ChosenLanguageIsThatOfTheNextProgram)
{
    const HostRegistry registry;
    const auto program = TestProgramFolder() / kHost;
    for (const wchar_t* const locale : {L"ja", L"de"})
    {
        registry.Store(L"user", L"xx-YY," + Translation(locale, ARVMUI_STRING_LOCALE_TAG));
        const RunningHost first(program, L"/uilocale:en " + registry.Path() + L" 0");
        const HWND dialog = first.WaitForBox();
        ASSERT_NE(dialog, nullptr);
        EXPECT_EQ(WindowText(dialog), Translation(L"en", ARVMUI_STRING_SETTINGS_TITLE_USER));
        SelectItems(dialog, kChosen, {0});
        ASSERT_TRUE(ClickButton(dialog, ARVMUI_CONTROL_REMOVE));
        ASSERT_TRUE(ClickButton(dialog, IDOK));
        EXPECT_EQ(first.ExitCode(), DWORD{0});
        EXPECT_EQ(registry.Stored(L"user"), Translation(locale, ARVMUI_STRING_LOCALE_TAG));

        const RunningHost next(program, registry.Path() + L" 0");
        const HWND translated = next.WaitForBox();
        ASSERT_NE(translated, nullptr);
        EXPECT_EQ(WindowText(translated), Translation(locale, ARVMUI_STRING_SETTINGS_TITLE_USER));
    }
}

TEST(SettingsProcess, MachinesListStaysApartFromTheUsers)
{
    const HostRegistry registry;
    registry.Store(L"user", L"first");
    registry.Store(L"machine", L"second,third");
    const RunningHost host(TestProgramFolder() / kHost, L"/uilocale:en " + registry.Path() + L" 1");
    const HWND dialog = host.WaitForBox();
    ASSERT_NE(dialog, nullptr);
    EXPECT_EQ(ListItems(dialog, kChosen), (Names{L"second", L"third"}));
    SelectItems(dialog, kChosen, {1});
    ASSERT_TRUE(ClickButton(dialog, ARVMUI_CONTROL_UP));
    ASSERT_TRUE(ClickButton(dialog, IDOK));
    EXPECT_EQ(host.ExitCode(), DWORD{0});
    EXPECT_EQ(registry.Stored(L"user"), L"first");
    EXPECT_EQ(registry.Stored(L"machine"), L"third,second");
}

// ---- Poor and extreme installations ------------------------------------------------------------------

TEST(SettingsProcess, WithoutResourceLibraryFails)
{
    const HostRegistry registry;
    const HostInstallation installation;
    const RunningHost host(installation.Program(), registry.Path() + L" 0");
    EXPECT_EQ(host.WaitForBox(), nullptr);
    EXPECT_EQ(host.ExitCode(), DWORD{ERROR_INVALID_DATA});
}

// Tag and identifier alone: the library has no name, the keywords and the title have none, and a
// failure has no message.
TEST(SettingsProcess, LibraryWithoutTextsHasAWorkingDialog)
{
    const HostRegistry registry(REG_OPTION_VOLATILE);
    const HostInstallation installation;
    installation.AddLocale(L"en", {{ARVMUI_STRING_LOCALE_TAG, L"en-US"}, {ARVMUI_STRING_LANGUAGE_ID, L"1033"}});
    const RunningHost host(installation.Program(), L"/uilocale:en " + registry.Path() + L" 1");
    const HWND dialog = host.WaitForBox();
    ASSERT_NE(dialog, nullptr);
    EXPECT_EQ(WindowText(dialog), Translation(L"en", ARVMUI_STRING_SETTINGS_TITLE_USER)) << "the template's";

    ::PostMessageW(::GetDlgItem(dialog, ARVMUI_CONTROL_ADD), BM_CLICK, 0, 0);
    const HWND add = WaitForOwnedDialog(dialog);
    ASSERT_NE(add, nullptr);
    EXPECT_EQ(ListItems(add, kAvailable), (Names{L"user", L"system", L"uilang", L"kiv", L"msie"}));
    SelectItems(add, kAvailable, {1});
    ASSERT_TRUE(ClickButton(add, IDOK));
    ASSERT_TRUE(WaitUntilGone(add, dialog));
    ::PostMessageW(::GetDlgItem(dialog, IDOK), BM_CLICK, 0, 0);
    EXPECT_NE(host.ExitCode(), DWORD{0});
    EXPECT_EQ(registry.Stored(L"machine"), L"<none>");
}

TEST(SettingsProcess, LongestTextsAreCutWhereTheyHaveNoRoomAndWholeElsewhere)
{
    const HostRegistry registry(REG_OPTION_VOLATILE);
    const HostInstallation installation;
    Strings strings;
    for (unsigned id = 1; id < 1000; ++id)
    {
        const bool isRead = id <= 4 || (id >= 80 && id <= 84) || (id >= 101 && id <= 111) || id == 320 || id >= 900;
        if (isRead) strings[id] = std::wstring(kLongest, static_cast<wchar_t>(L'A' + id % 26));
    }
    strings[ARVMUI_STRING_LANGUAGE_ID] = L"1033";
    installation.AddLocale(L"en", strings);
    const RunningHost host(installation.Program(), L"/uilocale:en " + registry.Path() + L" 0");
    const HWND dialog = host.WaitForBox();
    ASSERT_NE(dialog, nullptr);
    EXPECT_EQ(WindowText(dialog), strings[ARVMUI_STRING_SETTINGS_TITLE_USER]);

    ::PostMessageW(::GetDlgItem(dialog, ARVMUI_CONTROL_ADD), BM_CLICK, 0, 0);
    const HWND add = WaitForOwnedDialog(dialog);
    ASSERT_NE(add, nullptr);
    Names expected = {strings[ARVMUI_STRING_NATIVE_NAME].substr(0, 63)};
    for (UINT id = ARVMUI_STRING_KEYWORD_USER; id <= ARVMUI_STRING_KEYWORD_MSIE; ++id)
        expected.push_back(strings[id].substr(0, 63));
    EXPECT_EQ(ListItems(add, kAvailable), expected);
    SelectItems(add, kAvailable, {0});
    ASSERT_TRUE(ClickButton(add, IDOK));
    ASSERT_TRUE(WaitUntilGone(add, dialog));

    ::PostMessageW(::GetDlgItem(dialog, IDOK), BM_CLICK, 0, 0);
    const HWND box = WaitForOwnedDialog(dialog);
    ASSERT_NE(box, nullptr);
    EXPECT_EQ(WindowText(box), strings[ARVMUI_STRING_ERROR_CAPTION]);
    const BoxContents contents = ReadBox(box);
    EXPECT_EQ(contents.text.substr(0, 100), strings[ARVMUI_STRING_SETTING_NOT_WRITTEN].substr(0, 100));
    ASSERT_TRUE(PressButton(box, contents.buttons.begin()->first));
    EXPECT_NE(host.ExitCode(), DWORD{0});
}

}  // namespace
