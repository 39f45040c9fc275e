// Programs that are started with a settings file on their command line, or with a file out of the
// browser's cache, speak the language that it names.

#include "support/byte_file.h"
#include "support/child_process.h"
#include "support/temporary_folder.h"

#include <windows.h>

#include <gtest/gtest.h>
#include <shlobj.h>

#include <string>

namespace arvmui_test
{
namespace
{

struct Host
{
    std::wstring language;  // folder of the resource library
    std::wstring settings;
    std::wstring browser;
    std::wstring commandLine;
};

Host RunHost(const std::wstring& commandLine, const std::wstring& folder = L"")
{
    ChildSettings settings;
    settings.application = (TestProgramFolder() / L"settings_host.exe").wstring();
    settings.commandLine = commandLine;
    settings.folder = folder;
    ChildProcess child(settings);
    Host host;
    for (std::wstring* const value : {&host.language, &host.settings, &host.browser, &host.commandLine})
    {
        std::string line;
        EXPECT_TRUE(child.ReadLine(line)) << "the program says too little";
        *value = WideFromUtf8(line);
    }
    return host;
}

std::string Settings(const std::string& list)
{
    return "[General]\r\nName=x\r\n[Language]\r\nUILocale = " + list + "\r\n";
}

TEST(SettingsProcess, SpeaksTheLanguageOfItsSettingsFile)
{
    const TemporaryFolder folder;
    const std::wstring path = WriteBytes(folder.Path() / L"my settings.ini", Settings("ja")).wstring();
    const std::wstring line = L"settings_host.exe /x \"" + path + L"\" /y";
    const Host host = RunHost(line);
    EXPECT_EQ(host.language, L"ja");
    EXPECT_EQ(host.settings, L"ja");
    EXPECT_EQ(host.browser, L"");
    EXPECT_EQ(host.commandLine, line) << "a file stays on the line";
}

TEST(SettingsProcess, TriesTheLocalesOfItsSettingsFileInOrder)
{
    const TemporaryFolder folder;
    const std::wstring path = WriteBytes(folder.Path() / L"a.ini", Settings("xx, fr-CA, de")).wstring();
    EXPECT_EQ(RunHost(L"host \"" + path + L"\"").language, L"fr");
}

TEST(SettingsProcess, TakesRelativeNamesFromItsCurrentFolder)
{
    const TemporaryFolder folder;
    WriteBytes(folder.Path() / L"a.ini", Settings("es"));
    EXPECT_EQ(RunHost(L"host a.ini", folder.Path().wstring()).language, L"es");
}

TEST(SettingsProcess, OptionComesBeforeTheSettingsFile)
{
    const TemporaryFolder folder;
    const std::wstring path = WriteBytes(folder.Path() / L"a.ini", Settings("ja")).wstring();
    const Host host = RunHost(L"host /uilocale:fr \"" + path + L"\"");
    EXPECT_EQ(host.language, L"fr");
    EXPECT_EQ(host.settings, L"ja");
    EXPECT_EQ(host.commandLine, L"host \"" + path + L"\"");
}

TEST(SettingsProcess, OptionMayPointToTheSettingsFile)
{
    const TemporaryFolder folder;
    const std::wstring path = WriteBytes(folder.Path() / L"a.ini", Settings("ja")).wstring();
    EXPECT_EQ(RunHost(L"host /uilocale:kiv,fr \"" + path + L"\"").language, L"ja");
}

TEST(SettingsProcess, FileWithoutLocalesIsLookedAtAndChangesNothing)
{
    const TemporaryFolder folder;
    const std::wstring path = WriteBytes(folder.Path() / L"a.txt", "just some text\n").wstring();
    const Host host = RunHost(L"host /uilocale:kiv,es \"" + path + L"\"");
    EXPECT_EQ(host.settings, L"\t");
    EXPECT_EQ(host.language, L"es");
}

TEST(SettingsProcess, ItsOwnProgramFileIsNoSettingsFile)
{
    const std::wstring program = (TestProgramFolder() / L"settings_host.exe").wstring();
    EXPECT_EQ(RunHost(L"\"" + program + L"\"").settings, L"");
}

// A file in the browser's real cache folder, and languages in the browser's real key.
class BrowserCache
{
public:
    BrowserCache()
    {
        ::SHGetSpecialFolderPathW(nullptr, folder_, CSIDL_INTERNET_CACHE, TRUE);
        path_ = std::filesystem::path(folder_) / (L"arvmui_test_" + std::to_wstring(::GetCurrentProcessId()) + L".ini");
        WriteBytes(path_, "[x]\ny=1\n");

        ::RegCreateKeyExW(HKEY_CURRENT_USER, L"Software\\Microsoft\\Internet Explorer\\International", 0, nullptr, 0,
            KEY_READ | KEY_WRITE, nullptr, &key_, nullptr);
        DWORD bytes = sizeof(previous_) - sizeof(wchar_t);
        hadLanguages_ =
            ::RegQueryValueExW(key_, L"AcceptLanguage", nullptr, nullptr, reinterpret_cast<BYTE*>(previous_), &bytes)
            == ERROR_SUCCESS;
    }
    ~BrowserCache()
    {
        if (hadLanguages_)
            SetLanguages(previous_);
        else
            ::RegDeleteValueW(key_, L"AcceptLanguage");
        ::RegCloseKey(key_);
        std::error_code ignored;
        std::filesystem::remove(path_, ignored);
    }
    BrowserCache(const BrowserCache&) = delete;
    BrowserCache& operator=(const BrowserCache&) = delete;

    void SetLanguages(const std::wstring& list) const
    {
        ::RegSetValueExW(key_, L"AcceptLanguage", 0, REG_SZ, reinterpret_cast<const BYTE*>(list.c_str()),
            static_cast<DWORD>((list.size() + 1) * sizeof(wchar_t)));
    }

    std::wstring File() const { return path_.wstring(); }

private:
    wchar_t folder_[MAX_PATH] = {};
    std::filesystem::path path_;
    HKEY key_ = nullptr;
    bool hadLanguages_ = false;
    wchar_t previous_[512] = {};
};

TEST(BrowserProcess, SpeaksTheBrowsersLanguageForAFileOutOfItsCache)
{
    const BrowserCache cache;
    cache.SetLanguages(L"ja,en");
    const Host host = RunHost(L"host /uilocale:msie,es \"" + cache.File() + L"\"");
    EXPECT_EQ(host.language, L"ja");
    EXPECT_EQ(host.browser, L"ja,en");
    EXPECT_EQ(host.settings, L"\t");
}

TEST(BrowserProcess, BrowserWithoutLanguagesChangesNothing)
{
    const BrowserCache cache;
    cache.SetLanguages(L"");
    const Host host = RunHost(L"host /uilocale:msie,es \"" + cache.File() + L"\"");
    EXPECT_EQ(host.language, L"es");
    EXPECT_EQ(host.browser, L"\t");
}

}  // namespace
}  // namespace arvmui_test
