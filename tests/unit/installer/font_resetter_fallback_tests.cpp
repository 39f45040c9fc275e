// The watch inside the Start action, where no helper process can be had, and its end by Stop.
#include "unit/installer/font_resetter_fixture.h"

#include <cwchar>
#include <thread>

namespace
{

using arvmui_test::StandInInstaller;

constexpr size_t kMinuteOfPasses = 600;  // one every 100 ms

HANDLE g_event = nullptr;
std::wstring g_eventName;
bool g_canCreateEvent = true;
std::vector<std::string> g_eventCalls;

HANDLE WINAPI CreateStopEvent(LPSECURITY_ATTRIBUTES security, BOOL manualReset, BOOL initial, LPCWSTR name)
{
    if (!name) return ARVMUI_REAL_FUNCTION(L"kernel32.dll", CreateEventW)(security, manualReset, initial, name);
    g_eventName = name;
    g_event = g_canCreateEvent
                  ? ARVMUI_REAL_FUNCTION(L"kernel32.dll", CreateEventW)(security, manualReset, initial, name)
                  : nullptr;
    return g_event;
}

DWORD g_openAccess = 0;

HANDLE WINAPI OpenStopEvent(DWORD access, BOOL inherit, LPCWSTR name)
{
    g_openAccess = access;
    return ARVMUI_REAL_FUNCTION(L"kernel32.dll", OpenEventW)(access, inherit, name);
}

bool IsOpen(HANDLE handle)
{
    DWORD flags = 0;
    return ::GetHandleInformation(handle, &flags) != FALSE;
}

DWORD RealWait(HANDLE handle)
{
    return ARVMUI_REAL_FUNCTION(L"kernel32.dll", WaitForSingleObject)(handle, 0);
}

class FontResetterFallback : public arvmui_test::FontResetterTest
{
protected:
    FontResetterFallback()
    {
        g_event = nullptr;
        g_eventName.clear();
        g_canCreateEvent = true;
        helper.starts = false;
        // The event's waits end at once, with what the event says.
        clock.onWait = [this](HANDLE handle)
        {
            if (handle != g_event) return;
            ++waits_;
            if (onEventWait) onEventWait(waits_);
            clock.handles = {handle};
            clock.answers.assign(waits_, RealWait(handle));
        };
    }

    size_t Passes()
    {
        EXPECT_EQ(Start(), 0U);
        return clock.Passes();
    }

    std::function<void(size_t number)> onEventWait;

private:
    size_t waits_ = 0;
    arvmui_test::ImportPatch createEvent_{::GetModuleHandleW(nullptr), "CreateEventW", &CreateStopEvent};
    arvmui_test::ImportPatch openEvent_{::GetModuleHandleW(nullptr), "OpenEventW", &OpenStopEvent};
};

TEST_F(FontResetterFallback, WatchesForAMinute)
{
    EXPECT_EQ(Passes(), kMinuteOfPasses);
    EXPECT_EQ(clock.Count("wait 0"), 1U);
    EXPECT_EQ(clock.Count("wait 100"), kMinuteOfPasses);
    EXPECT_EQ(clock.Events().size(), 1 + 2 * kMinuteOfPasses) << "there are other waits";
}

TEST_F(FontResetterFallback, NamesItsEventAfterTheProcess)
{
    Passes();
    EXPECT_EQ(g_eventName, EventName());
}

TEST_F(FontResetterFallback, BeginsWithAnEventThatIsUnsetAndStaysSet)
{
    onEventWait = [](size_t number)
    {
        if (number == 1)
        {
            EXPECT_EQ(RealWait(g_event), static_cast<DWORD>(WAIT_TIMEOUT));
            return;
        }
        ::SetEvent(g_event);
        EXPECT_EQ(RealWait(g_event), WAIT_OBJECT_0);
        EXPECT_EQ(RealWait(g_event), WAIT_OBJECT_0) << "a wait has reset it";
    };
    EXPECT_EQ(Passes(), 1U);
}

TEST_F(FontResetterFallback, ClosesItsEvent)
{
    Passes();
    ASSERT_NE(g_event, nullptr);
    EXPECT_FALSE(IsOpen(g_event));
}

TEST_F(FontResetterFallback, EndsWhenAnotherThreadStopsIt)
{
    onEventWait = [](size_t number)
    {
        if (number != 4) return;
        UINT result = ERROR_FUNCTION_FAILED;
        std::thread stopper([&result] { result = ARVMUI_MSI_StopFontResetter(StandInInstaller::kSession); });
        stopper.join();
        EXPECT_EQ(result, static_cast<UINT>(ERROR_SUCCESS));
    };
    EXPECT_EQ(Passes(), 3U);
}

TEST_F(FontResetterFallback, SleepsWithoutAnEvent)
{
    g_canCreateEvent = false;
    EXPECT_EQ(Passes(), kMinuteOfPasses);
    EXPECT_EQ(clock.Count("sleep 100"), kMinuteOfPasses);
    EXPECT_EQ(clock.Events().size(), 2 * kMinuteOfPasses);
}

bool g_hasMatched = false;

int WINAPI TellTitle(HWND, LPWSTR buffer, int)
{
    std::wcscpy(buffer, L"Produkt");
    return static_cast<int>(std::wcslen(buffer));
}

BOOL WINAPI NoteMatch(HWND, WNDENUMPROC, LPARAM)
{
    g_hasMatched = true;
    return TRUE;
}

TEST_F(FontResetterFallback, WatchesForTheCollectedNames)
{
    const arvmui_test::ImportPatch text(::GetModuleHandleW(nullptr), "GetWindowTextW", &TellTitle);
    const arvmui_test::ImportPatch children(::GetModuleHandleW(nullptr), "EnumChildWindows", &NoteMatch);
    clock.onLook = [](WNDENUMPROC callback, LPARAM context) { callback(nullptr, context); };
    onEventWait = [](size_t number)
    {
        if (number == 2) ::SetEvent(g_event);
    };
    g_hasMatched = false;
    EXPECT_EQ(Passes(), 1U);
    EXPECT_TRUE(g_hasMatched);
}

// ---- When there is no helper.

TEST_F(FontResetterFallback, IsNeededWhenTheHelperDoesNotStart)
{
    EXPECT_EQ(Passes(), kMinuteOfPasses);
    EXPECT_EQ(helper.Lines().size(), 1U);
    EXPECT_TRUE(helper.Waits().empty());
}

struct EndCase
{
    const char* name;
    DWORD waitResult;
    size_t passes;
};

class FontResetterHelperEnd : public FontResetterFallback, public testing::WithParamInterface<EndCase>
{
};

TEST_P(FontResetterHelperEnd, DecidesAboutTheFallback)
{
    helper.starts = true;
    helper.waitResult = GetParam().waitResult;
    EXPECT_EQ(Passes(), GetParam().passes);
    EXPECT_EQ(helper.Waits(), std::vector<DWORD>{1000});
    EXPECT_EQ(helper.OpenHandles(), 0U);
}

INSTANTIATE_TEST_SUITE_P(Waits, FontResetterHelperEnd,
    testing::Values(EndCase{"StillRuns", WAIT_TIMEOUT, 0}, EndCase{"HasEnded", WAIT_OBJECT_0, kMinuteOfPasses},
        EndCase{"CannotBeWaitedFor", WAIT_FAILED, kMinuteOfPasses},
        EndCase{"WasAbandoned", WAIT_ABANDONED, kMinuteOfPasses}),
    [](const auto& row) { return std::string(row.param.name); });

TEST_F(FontResetterFallback, IsNeededWhereFilesCannotBeDeletedLater)
{
    helper.starts = true;
    lookUps.hasMoveFile = false;
    EXPECT_EQ(Passes(), kMinuteOfPasses);
    EXPECT_TRUE(helper.Lines().empty());
}

TEST_F(FontResetterFallback, IsNeededWhenTheFileCannotBeDeletedLater)
{
    helper.starts = true;
    lookUps.moveResult = FALSE;
    EXPECT_EQ(Passes(), kMinuteOfPasses);
    EXPECT_EQ(lookUps.moves.size(), 1U);
    EXPECT_TRUE(helper.Lines().empty());
}

DWORD g_pathLength = 0;

DWORD WINAPI TellPath(HMODULE, LPWSTR buffer, DWORD size)
{
    EXPECT_EQ(size, 260U);
    buffer[0] = L'\0';
    return g_pathLength;
}

TEST_F(FontResetterFallback, IsNeededWhenTheFileIsNotKnown)
{
    helper.starts = true;
    const arvmui_test::ImportPatch path(::GetModuleHandleW(nullptr), "GetModuleFileNameW", &TellPath);
    for (const DWORD length : {0UL, 260UL})  // failed, or cut
    {
        clock.Restart({});
        g_pathLength = length;
        EXPECT_EQ(Passes(), kMinuteOfPasses);
        EXPECT_TRUE(lookUps.moves.empty());
        EXPECT_TRUE(helper.Lines().empty());
    }
}

// ---- Stop.

TEST_F(FontResetterFallback, StopWithoutAWatchDoesNothing)
{
    EXPECT_EQ(ARVMUI_MSI_StopFontResetter(StandInInstaller::kSession), 0U);
    EXPECT_TRUE(g_eventName.empty()) << "an event was made";
    EXPECT_TRUE(installer.Calls().empty());
}

TEST_F(FontResetterFallback, StopBeforeStartStopsNothing)
{
    ARVMUI_MSI_StopFontResetter(StandInInstaller::kSession);
    EXPECT_EQ(Passes(), kMinuteOfPasses);
}

TEST_F(FontResetterFallback, StopSetsTheEventWithNoOtherRight)
{
    const HANDLE event = ::CreateEventW(nullptr, TRUE, FALSE, EventName().c_str());
    EXPECT_EQ(ARVMUI_MSI_StopFontResetter(0), 0U);
    EXPECT_EQ(RealWait(event), WAIT_OBJECT_0);
    EXPECT_EQ(g_openAccess, static_cast<DWORD>(EVENT_MODIFY_STATE));
    ::CloseHandle(event);
    EXPECT_EQ(::OpenEventW(SYNCHRONIZE, FALSE, EventName().c_str()), nullptr) << "Stop still holds the event";
}

TEST_F(FontResetterFallback, StopOfAnotherProcessIsNotHeard)
{
    const std::wstring foreign = L"ARVMUI_MSI_FontResetter." + std::to_wstring(::GetCurrentProcessId() + 1);
    const HANDLE event = ::CreateEventW(nullptr, TRUE, TRUE, foreign.c_str());
    EXPECT_EQ(Passes(), kMinuteOfPasses);
    ::CloseHandle(event);
}

}  // namespace
