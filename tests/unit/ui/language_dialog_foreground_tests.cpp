// How the language dialog comes to the front. The functions with which it does so are replaced: which
// window is in front is the affair of whatever else runs.
#include "support/module_patch.h"
#include "unit/ui/language_dialog_fixture.h"

#include <mutex>

namespace
{

using arvmui_test::DialogRequest;
using arvmui_test::ImportPatch;
using arvmui_test::LanguageDialogTest;
using arvmui_test::MakeEntry;
using arvmui_test::OpenDialog;

// What a dialog did to come to the front, and what the system answers.
struct Desktop
{
    HWND foreground = nullptr;
    BOOL attaches = TRUE;
    std::mutex mutex;
    std::vector<std::string> calls;

    void Add(const std::string& call)
    {
        const std::lock_guard lock(mutex);
        calls.push_back(call);
    }
};
Desktop* g_desktop = nullptr;

std::string Text(HWND window)
{
    return std::to_string(reinterpret_cast<ULONG_PTR>(window));
}

std::string OnThread(DWORD thread)
{
    return " on " + std::to_string(thread);
}

HWND WINAPI Foreground()
{
    return g_desktop->foreground;
}

BOOL WINAPI Attach(DWORD self, DWORD other, BOOL attach)
{
    g_desktop->Add((attach ? "attach " : "detach ") + std::to_string(self) + " " + std::to_string(other)
                   + OnThread(::GetCurrentThreadId()));
    return g_desktop->attaches;
}

BOOL WINAPI Raise(HWND window)
{
    g_desktop->Add("foreground " + Text(window) + OnThread(::GetCurrentThreadId()));
    return TRUE;
}

BOOL WINAPI BringToTop(HWND window)
{
    g_desktop->Add("top " + Text(window) + OnThread(::GetCurrentThreadId()));
    return TRUE;
}

class LanguageDialogForeground : public LanguageDialogTest
{
protected:
    LanguageDialogForeground() { g_desktop = &desktop_; }
    ~LanguageDialogForeground() override { g_desktop = nullptr; }

    static DialogRequest Request() { return {{MakeEntry(0x0409, L"en-US")}}; }

    static void Notify(const OpenDialog& dialog)
    {
        NMHDR notification = {dialog.Window(), IDOK, 0};
        ::SendMessageW(dialog.Window(), WM_NOTIFY, IDOK, reinterpret_cast<LPARAM>(&notification));
    }

    static DWORD ThreadOf(const OpenDialog& dialog) { return ::GetWindowThreadProcessId(dialog.Window(), nullptr); }

    // What raises the dialog, between attaching and detaching.
    static std::vector<std::string> Raised(const OpenDialog& dialog)
    {
        const std::string on = OnThread(ThreadOf(dialog));
        return {"foreground " + Text(dialog.Window()) + on, "top " + Text(dialog.Window()) + on};
    }

    static std::string Attached(const char* verb, const OpenDialog& dialog, DWORD other)
    {
        return std::string(verb) + " " + std::to_string(ThreadOf(dialog)) + " " + std::to_string(other)
               + OnThread(ThreadOf(dialog));
    }

    std::vector<std::string> Calls()
    {
        const std::lock_guard lock(desktop_.mutex);
        return std::move(desktop_.calls);
    }

    Desktop desktop_;

private:
    const HMODULE program_ = ::GetModuleHandleW(nullptr);
    const ImportPatch foreground_{program_, "GetForegroundWindow", &Foreground};
    const ImportPatch attach_{program_, "AttachThreadInput", &Attach};
    const ImportPatch raise_{program_, "SetForegroundWindow", &Raise};
    const ImportPatch top_{program_, "BringWindowToTop", &BringToTop};
};

TEST_F(LanguageDialogForeground, IsNotAskedForBeforeANotification)
{
    const OpenDialog dialog(Request());
    ASSERT_NE(dialog.Window(), nullptr);
    EXPECT_EQ(Calls(), std::vector<std::string>());
}

TEST_F(LanguageDialogForeground, IsTakenFromAnotherThreadWithSharedInput)
{
    desktop_.foreground = ::CreateWindowW(L"STATIC", L"", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr, nullptr, nullptr);
    ASSERT_NE(desktop_.foreground, nullptr);
    const OpenDialog dialog(Request());
    Notify(dialog);
    std::vector<std::string> expected = Raised(dialog);
    expected.insert(expected.begin(), Attached("attach", dialog, ::GetCurrentThreadId()));
    expected.push_back(Attached("detach", dialog, ::GetCurrentThreadId()));
    EXPECT_EQ(Calls(), expected);
    ::DestroyWindow(desktop_.foreground);
}

TEST_F(LanguageDialogForeground, IsTakenWithoutSharingWhereInputCannotBeShared)
{
    desktop_.foreground = ::CreateWindowW(L"STATIC", L"", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr, nullptr, nullptr);
    desktop_.attaches = FALSE;
    const OpenDialog dialog(Request());
    Notify(dialog);
    std::vector<std::string> expected = Raised(dialog);
    expected.insert(expected.begin(), Attached("attach", dialog, ::GetCurrentThreadId()));
    EXPECT_EQ(Calls(), expected);
    ::DestroyWindow(desktop_.foreground);
}

TEST_F(LanguageDialogForeground, OfTheOwnThreadIsTakenDirectly)
{
    const OpenDialog dialog(Request());
    desktop_.foreground = dialog.Window();
    Notify(dialog);
    EXPECT_EQ(Calls(), Raised(dialog));
}

TEST_F(LanguageDialogForeground, IsTakenWhereNoWindowHasIt)
{
    desktop_.attaches = FALSE;  // there is no thread to share with
    const OpenDialog dialog(Request());
    Notify(dialog);
    std::vector<std::string> calls = Calls();
    if (!calls.empty() && calls.front() == Attached("attach", dialog, 0)) calls.erase(calls.begin());
    EXPECT_EQ(calls, Raised(dialog));
}

TEST_F(LanguageDialogForeground, IsTakenOnce)
{
    OpenDialog dialog(Request());
    desktop_.foreground = dialog.Window();
    Notify(dialog);
    Calls();
    Notify(dialog);
    Notify(dialog);
    EXPECT_EQ(Calls(), std::vector<std::string>());
    dialog.Press(IDOK);
    EXPECT_EQ(dialog.Outcome().answer, L"en-US");
}

TEST_F(LanguageDialogForeground, IsTakenAnewByTheNextDialog)
{
    for (int round = 0; round < 2; ++round)
    {
        OpenDialog dialog(Request());
        desktop_.foreground = dialog.Window();
        Notify(dialog);
        EXPECT_EQ(Calls(), Raised(dialog)) << round;
        dialog.Press(IDCANCEL);
        dialog.Outcome();
    }
}

// Of two dialogs, the one that is notified first takes it for both.
TEST_F(LanguageDialogForeground, IsTakenByOneOfTwoDialogs)
{
    const OpenDialog first(Request());
    const OpenDialog second(Request());
    desktop_.foreground = first.Window();
    Notify(first);
    EXPECT_EQ(Calls(), Raised(first));
    Notify(second);
    EXPECT_EQ(Calls(), std::vector<std::string>());
}

TEST_F(LanguageDialogForeground, IsTakenAnewOnceAnotherDialogComesUp)
{
    const OpenDialog first(Request());
    desktop_.foreground = first.Window();
    Notify(first);
    Calls();
    const OpenDialog second(Request());
    Notify(first);
    EXPECT_EQ(Calls(), Raised(first));
}

// With the system's own functions.
TEST_F(LanguageDialogTest, NotificationsLeaveTheDialogUsable)
{
    OpenDialog dialog(DialogRequest{{MakeEntry(0x0409, L"en-US")}});
    ASSERT_NE(dialog.Window(), nullptr);
    NMHDR notification = {dialog.Window(), IDOK, 0};
    for (int i = 0; i < 3; ++i)
        ::SendMessageW(dialog.Window(), WM_NOTIFY, IDOK, reinterpret_cast<LPARAM>(&notification));
    dialog.Press(IDOK);
    EXPECT_EQ(dialog.Outcome().answer, L"en-US");
}

}  // namespace
