// How long the settings dialog takes from the call to its end, against a dialog from the same template
// that does nothing. The program has no icon, so looking for one is part of it.
#include "interleaved.h"

#include <arvmui.h>

#include <cstdio>

namespace
{

constexpr int kRounds = 15;
constexpr int kRepetitions = 5;
constexpr UINT kClose = WM_APP + 1;
constexpr WORD kSettingsTemplate = 300;

BOOL CALLBACK CloseDialog(HWND window, LPARAM)
{
    wchar_t name[16] = L"";
    ::GetClassNameW(window, name, ARRAYSIZE(name));
    if (::CompareStringOrdinal(name, -1, L"#32770", -1, TRUE) == CSTR_EQUAL) ::EndDialog(window, IDCANCEL);
    return TRUE;
}

// A dialog fetches the message once it is up and waits for its user.
LRESULT CALLBACK CloseOnMessage(int code, WPARAM removed, LPARAM message)
{
    const MSG& fetched = *reinterpret_cast<const MSG*>(message);
    if (code == HC_ACTION && removed == PM_REMOVE && fetched.message == kClose)
        ::EnumThreadWindows(::GetCurrentThreadId(), CloseDialog, 0);
    return ::CallNextHookEx(nullptr, code, removed, message);
}

INT_PTR CALLBACK PlainProcedure(HWND, UINT message, WPARAM, LPARAM)
{
    return message == WM_INITDIALOG;
}

}  // namespace

int main()
{
    const HMODULE resources = ARVMUI_GetDescriptor()->resourceLibrary;
    const HHOOK hook = ::SetWindowsHookExW(WH_GETMESSAGE, CloseOnMessage, nullptr, ::GetCurrentThreadId());
    if (!resources || !hook) return 1;

    const auto ours = []
    {
        ::PostThreadMessageW(::GetCurrentThreadId(), kClose, 0, 0);
        ARVMUI_SettingDialogBoxW(nullptr, nullptr, nullptr, 0);
    };
    const auto theirs = [resources]
    {
        ::PostThreadMessageW(::GetCurrentThreadId(), kClose, 0, 0);
        ::DialogBoxParamW(resources, MAKEINTRESOURCEW(kSettingsTemplate), nullptr, PlainProcedure, 0);
    };
    std::printf("Dialogs: ours, a plain one from the same template\n");
    bench::Report("Settings dialog, shown and closed", bench::Compare(kRounds, kRepetitions, ours, theirs));
    ::UnhookWindowsHookEx(hook);
    return 0;
}
