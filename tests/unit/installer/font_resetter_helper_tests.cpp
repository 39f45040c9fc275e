// The helper's entry point of the font watch: which names it watches for, and for how long.
#include "unit/installer/font_resetter_fixture.h"

#include <cwchar>

namespace
{

constexpr DWORD kParent = 4711;
constexpr size_t kHourOfPasses = 36000;  // one every 100 ms

struct Open
{
    DWORD access;
    BOOL inherit;
    DWORD process;
    bool operator==(const Open&) const = default;
};

std::vector<Open> g_opens;
HANDLE g_parent = nullptr;     // what opening the parent gives
bool g_isParentGiven = false;  // then it is the library's
bool g_knowsParent = true;
std::wstring g_title;
bool g_hasMatched = false;
arvmui_test::ImportPatch* g_lookUp = nullptr;

HANDLE WINAPI OpenAProcess(DWORD access, BOOL inherit, DWORD process)
{
    if (process == ::GetCurrentProcessId())
        return ARVMUI_REAL_FUNCTION(L"kernel32.dll", OpenProcess)(access, inherit, process);
    g_opens.push_back({access, inherit, process});
    g_isParentGiven = true;
    return g_parent;
}

LONG WINAPI QueryProcess(HANDLE, int, void* information, ULONG size, ULONG*)
{
    if (!g_knowsParent) return -1;
    ULONG_PTR* const fields = static_cast<ULONG_PTR*>(information);
    fields[size / sizeof(ULONG_PTR) - 1] = kParent;
    return 0;
}

FARPROC WINAPI LookUp(HMODULE module, LPCSTR name)
{
    if (std::string(name) == "NtQueryInformationProcess")
        return reinterpret_cast<FARPROC>(reinterpret_cast<void*>(&QueryProcess));
    return g_lookUp->Original<decltype(&::GetProcAddress)>()(module, name);
}

int WINAPI TellTitle(HWND, LPWSTR buffer, int)
{
    std::wcscpy(buffer, g_title.c_str());
    return static_cast<int>(g_title.size());
}

BOOL WINAPI NoteMatch(HWND, WNDENUMPROC, LPARAM)
{
    g_hasMatched = true;
    return TRUE;
}

class FontResetterHelper : public arvmui_test::FontResetterTest
{
protected:
    FontResetterHelper()
    {
        g_opens.clear();
        g_knowsParent = true;
        g_lookUp = &lookUp_;
        g_parent = ::CreateEventW(nullptr, TRUE, FALSE, nullptr);
        g_isParentGiven = false;
        clock.handles = {g_parent};
    }
    ~FontResetterHelper() override
    {
        if (g_parent && !g_isParentGiven) ::CloseHandle(g_parent);
    }

    // Asked before anything can fail: a failure opens handles, one of which may get the same number.
    static bool IsParentOpen()
    {
        DWORD flags = 0;
        return ::GetHandleInformation(g_parent, &flags) != FALSE;
    }

    static void Run(const std::string& commandLine)
    {
        std::string line = commandLine;
        ARVMUI_RUNDLL32_FontResetter(nullptr, nullptr, line.data(), SW_SHOWNORMAL);
    }

    // Whether each of the titles is watched for when the helper has this command line.
    std::vector<bool> Matches(const std::string& commandLine, const std::vector<std::wstring>& titles)
    {
        std::vector<bool> matches;
        clock.Restart({WAIT_TIMEOUT, WAIT_OBJECT_0});  // one pass
        clock.onLook = [&](WNDENUMPROC callback, LPARAM context)
        {
            for (const std::wstring& title : titles)
            {
                g_title = title;
                g_hasMatched = false;
                EXPECT_TRUE(callback(nullptr, context)) << "the enumeration would end";
                matches.push_back(g_hasMatched);
            }
        };
        Run(commandLine);
        return matches;
    }

private:
    arvmui_test::ImportPatch open_{::GetModuleHandleW(nullptr), "OpenProcess", &OpenAProcess};
    arvmui_test::ImportPatch lookUp_{::GetModuleHandleW(nullptr), "GetProcAddress", &LookUp};
    arvmui_test::ImportPatch text_{::GetModuleHandleW(nullptr), "GetWindowTextW", &TellTitle};
    arvmui_test::ImportPatch children_{::GetModuleHandleW(nullptr), "EnumChildWindows", &NoteMatch};
};

TEST_F(FontResetterHelper, WatchesForItsUnescapedArguments)
{
    EXPECT_EQ(Matches("\"one\" \"two \\u65E5\" three\\\\x", {L"one", L"two \x65E5", L"three\\x", L"four", L"One", L""}),
        (std::vector<bool>{true, true, true, false, false, false}));
}

TEST_F(FontResetterHelper, TakesSixteenArgumentsThoughSomeAreTheSame)
{
    std::string line;
    for (int i = 0; i < 15; ++i) line += "\"same\" ";
    line += "\"sixteenth\" \"seventeenth\"";
    EXPECT_EQ(Matches(line, {L"same", L"sixteenth", L"seventeenth"}), (std::vector<bool>{true, true, false}));
}

TEST_F(FontResetterHelper, TakesSixteenDifferentArguments)
{
    std::string line;
    std::vector<std::wstring> titles;
    for (int i = 1; i <= 17; ++i)
    {
        line += "\"name" + std::to_string(i) + "\" ";
        titles.push_back(L"name" + std::to_wstring(i));
    }
    std::vector<bool> expected(17, true);
    expected[16] = false;
    EXPECT_EQ(Matches(line, titles), expected);
}

TEST_F(FontResetterHelper, OpensItsParentToWaitForItOnly)
{
    Matches("\"one\"", {});
    EXPECT_FALSE(IsParentOpen()) << "the handle is left";
    EXPECT_EQ(g_opens, (std::vector<Open>{{SYNCHRONIZE, FALSE, kParent}}));
}

TEST_F(FontResetterHelper, EndsWithItsParent)
{
    clock.Restart({WAIT_TIMEOUT, WAIT_TIMEOUT, WAIT_TIMEOUT, WAIT_OBJECT_0});
    Run("\"one\"");
    EXPECT_EQ(clock.Events(),
        (std::vector<std::string>{"wait 0", "look", "wait 100", "look", "wait 100", "look", "wait 100"}));
}

TEST_F(FontResetterHelper, DoesNotLookWhenItsParentHasEnded)
{
    clock.Restart({WAIT_OBJECT_0});
    Run("\"one\"");
    EXPECT_EQ(clock.Passes(), 0U);
}

TEST_F(FontResetterHelper, EndsAfterAnHour)
{
    Run("\"one\"");
    EXPECT_FALSE(IsParentOpen());
    EXPECT_EQ(clock.Passes(), kHourOfPasses);
    EXPECT_EQ(clock.Count("wait 100"), kHourOfPasses);
}

TEST_F(FontResetterHelper, SleepsForAnHourWhenItsParentCannotBeOpened)
{
    ::CloseHandle(g_parent);
    g_parent = nullptr;
    Run("\"one\"");
    EXPECT_EQ(clock.Count("sleep 100"), kHourOfPasses);
    EXPECT_EQ(clock.Events().size(), 2 * kHourOfPasses);
}

TEST_F(FontResetterHelper, SleepsForAnHourWhenItsParentIsNotKnown)
{
    g_knowsParent = false;
    Run("\"one\"");
    EXPECT_TRUE(g_opens.empty()) << "a process that is not the parent was opened";
    EXPECT_EQ(clock.Count("sleep 100"), kHourOfPasses);
}

TEST_F(FontResetterHelper, SwitchesMessageBoxesOff)
{
    ARVMUI_SetMessagePopup(TRUE, nullptr);
    Matches("\"one\"", {});
    BOOL previous = TRUE;
    ARVMUI_SetMessagePopup(FALSE, &previous);
    EXPECT_FALSE(previous);
}

TEST_F(FontResetterHelper, NeedsNoInstaller)
{
    const size_t before = installer.LookedUp().size();
    Matches("\"one\"", {L"one"});
    EXPECT_EQ(installer.LookedUp().size(), before);
    EXPECT_TRUE(installer.LoadedPaths().empty());
}

TEST_F(FontResetterHelper, NoLackOfMemoryLeavesAnythingBehind)
{
    ExpectEachLackOfMemory(
        [this]
        {
            clock.Restart({WAIT_OBJECT_0});
            Run("\"one\" \"two\"");
            return static_cast<UINT>(ERROR_SUCCESS);
        },
        ERROR_SUCCESS);
}

}  // namespace
