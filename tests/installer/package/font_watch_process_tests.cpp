// The font watch in processes of its own, over real windows.
#include "installer/package/helper_process.h"
#include "support/dialog_controls.h"
#include "support/msi_package.h"
#include "support/temporary_folder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

namespace
{

using arvmui_test::ChildProcess;
using arvmui_test::WaitUntil;

std::wstring UniqueTitle()
{
    return L"Arvmui Watch " + arvmui_test::NewMsiCode();
}

// ---- Files to be deleted at the next restart, in pairs of a file and its new name.

constexpr wchar_t kManagerKey[] = L"System\\CurrentControlSet\\Control\\Session Manager";
constexpr wchar_t kPendingValue[] = L"PendingFileRenameOperations";

std::vector<std::wstring> PendingFiles()
{
    std::vector<wchar_t> text(1 << 16);
    DWORD bytes = static_cast<DWORD>(text.size() * sizeof(wchar_t));
    if (::RegGetValueW(
            HKEY_LOCAL_MACHINE, kManagerKey, kPendingValue, RRF_RT_REG_MULTI_SZ, nullptr, text.data(), &bytes)
        != ERROR_SUCCESS)
        return {};
    // Empty texts stand among them, so the end is known by the size only: a last terminator ends the list.
    std::vector<std::wstring> files;
    const wchar_t* const end = text.data() + bytes / sizeof(wchar_t) - 1;
    for (const wchar_t* p = text.data(); p < end; p += files.back().size() + 1) files.emplace_back(p);
    return files;
}

void StorePendingFiles(const std::vector<std::wstring>& files)
{
    std::wstring text;
    for (const std::wstring& file : files) text += file + L'\0';
    text += L'\0';
    if (files.empty())
        ::RegDeleteKeyValueW(HKEY_LOCAL_MACHINE, kManagerKey, kPendingValue);
    else
        ::RegSetKeyValueW(HKEY_LOCAL_MACHINE, kManagerKey, kPendingValue, REG_MULTI_SZ, text.data(),
            static_cast<DWORD>(text.size() * sizeof(wchar_t)));
}

// The place of a pair whose file is below the folder; the number of texts if there is none.
size_t FindPending(const std::vector<std::wstring>& files, const std::filesystem::path& folder)
{
    for (size_t i = 0; i + 1 < files.size(); i += 2)
        if (files[i].find(folder.filename().wstring()) != std::wstring::npos) return i;
    return files.size();
}

// ---- A process that starts the watch.

class FontWatchProcess : public testing::Test
{
protected:
    FontWatchProcess()
    {
        arvmui_test::InstallablePackage(title, arvmui_test::NewMsiCode(), arvmui_test::NewMsiCode()).Write(package);
    }
    // The file that was to be deleted at the next restart goes with the test's folder.
    ~FontWatchProcess() override
    {
        std::vector<std::wstring> files = PendingFiles();
        const size_t place = FindPending(files, folder.Path());
        if (place == files.size()) return;
        files.erase(
            files.begin() + static_cast<std::ptrdiff_t>(place), files.begin() + static_cast<std::ptrdiff_t>(place) + 2);
        StorePendingFiles(files);
    }

    arvmui_test::ChildSettings Host(const std::wstring& mode) const
    {
        arvmui_test::ChildSettings settings;
        settings.application = arvmui_test::TestProgramFolder() / L"font_watch_host.exe";
        settings.commandLine =
            L"font_watch_host \"" + library.wstring() + L"\" \"" + package.wstring() + L"\" \"" + title + L"\" " + mode;
        return settings;
    }

    // What the host says up to its "end".
    static std::vector<std::string> Lines(ChildProcess& host)
    {
        std::vector<std::string> lines;
        std::string line;
        while (host.ReadLine(line) && line != "end") lines.push_back(line);
        return lines;
    }

    // The helpers among what a host said.
    static std::vector<DWORD> Helpers(const std::vector<std::string>& lines)
    {
        std::vector<DWORD> helpers;
        for (const std::string& line : lines)
            if (line.rfind("helper ", 0) == 0) helpers.push_back(static_cast<DWORD>(std::stoul(line.substr(7))));
        return helpers;
    }

    arvmui_test::TemporaryFolder folder;
    std::wstring title = UniqueTitle();
    std::filesystem::path package = folder.Path() / L"product.msi";
    // A copy, because the watch has the library's file deleted at the next restart.
    std::filesystem::path library = folder.CopyIn(arvmui_test::LibraryPath(), L"a folder\\library.dll");
};

TEST_F(FontWatchProcess, IsLeftToOneHelperThatEndsWithTheProcess)
{
    ChildProcess host(Host(L"plain"));
    const auto lines = Lines(host);
    ASSERT_GE(lines.size(), 2U);
    EXPECT_EQ(lines[0], "started");
    EXPECT_EQ(lines[1], "font of system") << "a window without a button has its texts in the system font";
    ASSERT_EQ(Helpers(lines).size(), 1U);
    const HANDLE helper = ::OpenProcess(SYNCHRONIZE, FALSE, Helpers(lines)[0]);
    ASSERT_NE(helper, nullptr);
    EXPECT_EQ(::WaitForSingleObject(helper, 0), static_cast<DWORD>(WAIT_TIMEOUT));
    host.CloseInput();
    EXPECT_TRUE(host.Wait().has_value());
    EXPECT_TRUE(WaitUntil([helper] { return ::WaitForSingleObject(helper, 0) == WAIT_OBJECT_0; }));
    ::CloseHandle(helper);
}

TEST_F(FontWatchProcess, HasTheLibrarysFileDeletedAtTheNextRestart)
{
    ChildProcess host(Host(L"plain"));
    Lines(host);
    const std::vector<std::wstring> files = PendingFiles();
    const size_t place = FindPending(files, folder.Path());
    ASSERT_LT(place, files.size());
    EXPECT_TRUE(files[place].ends_with(library.filename().wstring()));
    EXPECT_EQ(files[place + 1], L"") << "it is to be deleted, not renamed";
    EXPECT_TRUE(std::filesystem::exists(library));
}

// No folder of Windows, no RUNDLL32: the action itself watches.
TEST_F(FontWatchProcess, StaysInStartWithoutAHelperUntilStop)
{
    auto settings = Host(L"stop");
    settings.environment = {{L"windir", L"Q:\\nowhere"}};
    ChildProcess host(settings);
    const auto lines = Lines(host);
    EXPECT_EQ(lines, (std::vector<std::string>{"started", "font of button"}));
}

// ---- The helper's entry point.

struct Window
{
    HWND window;
    HWND text;
};

class FontWatchEntryPoint : public testing::Test
{
protected:
    ~FontWatchEntryPoint() override
    {
        for (const Window& window : windows_) ::DestroyWindow(window.window);
        ::DeleteObject(font_);
    }

    Window Make(const std::wstring& title)
    {
        const HWND window = ::CreateWindowExW(
            0, L"#32770", title.c_str(), WS_OVERLAPPED, 0, 0, 50, 50, nullptr, nullptr, nullptr, nullptr);
        const HWND text = ::CreateWindowExW(0, L"static", L"", WS_CHILD, 0, 0, 9, 9, window, nullptr, nullptr, nullptr);
        windows_.push_back({window, text});
        GiveFont(windows_.back());
        return windows_.back();
    }
    void GiveFont(const Window& window) const
    {
        ::SendMessageW(window.text, WM_SETFONT, reinterpret_cast<WPARAM>(font_), FALSE);
    }
    bool HasOwnFont(const Window& window) const
    {
        MSG message;
        while (::PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) ::DispatchMessageW(&message);
        return ::SendMessageW(window.text, WM_GETFONT, 0, 0) == reinterpret_cast<LRESULT>(font_);
    }
    bool WaitForReset(const Window& window) const
    {
        return WaitUntil([&] { return !HasOwnFont(window); });
    }

private:
    HFONT font_ = ::CreateFontW(20, 0, 0, 0, FW_NORMAL, FALSE, FALSE, FALSE, DEFAULT_CHARSET, 0, 0, 0, 0, L"Tahoma");
    std::vector<Window> windows_;
};

TEST_F(FontWatchEntryPoint, WatchesForTheFirstSixteenTitlesOnly)
{
    const std::wstring title = UniqueTitle() + L" \u65E5 \"x\" ";
    std::wstring arguments;
    for (int i = 1; i <= 17; ++i) arguments += arvmui_test::EscapedArgument(title + std::to_wstring(i)) + L" ";
    const Window first = Make(title + L"1");
    const Window seventeenth = Make(title + L"17");
    const Window sixteenth = Make(title + L"16");

    ChildProcess helper(
        arvmui_test::HelperSettings(arvmui_test::LibraryPath(), L"ARVMUI_RUNDLL32_FontResetter", arguments));
    EXPECT_TRUE(WaitForReset(first));
    EXPECT_TRUE(WaitForReset(sixteenth));
    GiveFont(sixteenth);
    EXPECT_TRUE(WaitForReset(sixteenth)) << "the watch is to go on";
    // By now it has looked at all windows at least once.
    EXPECT_TRUE(HasOwnFont(seventeenth));
    // It would last as long as this process.
    EXPECT_EQ(::WaitForSingleObject(helper.Process(), 0), static_cast<DWORD>(WAIT_TIMEOUT));
    ::TerminateProcess(helper.Process(), 0);
}

TEST_F(FontWatchEntryPoint, FindsWindowsThatComeLater)
{
    const std::wstring title = UniqueTitle();
    const Window marker = Make(title + L" marker");
    ChildProcess helper(arvmui_test::HelperSettings(arvmui_test::LibraryPath(), L"ARVMUI_RUNDLL32_FontResetter",
        arvmui_test::EscapedArgument(title) + L" " + arvmui_test::EscapedArgument(title + L" marker")));
    EXPECT_TRUE(WaitForReset(marker));
    EXPECT_TRUE(WaitForReset(Make(title)));
    ::TerminateProcess(helper.Process(), 0);
}

}  // namespace
