#include "support/dialog_controls.h"

namespace arvmui_test
{
namespace
{

constexpr ULONGLONG kPatienceMs = 20000;
constexpr DWORD kPollMs = 2;
constexpr UINT kReplyMs = 5000;
constexpr size_t kTextChars = 2048;

LRESULT Ask(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    DWORD_PTR answer = 0;
    if (!::SendMessageTimeoutW(window, message, wParam, lParam, SMTO_ABORTIFHUNG, kReplyMs, &answer)) return -1;
    return static_cast<LRESULT>(answer);
}

}  // namespace

bool WaitUntil(const std::function<bool()>& condition)
{
    const ULONGLONG end = ::GetTickCount64() + kPatienceMs;
    while (!condition())
    {
        if (::GetTickCount64() >= end) return false;
        ::Sleep(kPollMs);
    }
    return true;
}

// Asked by message: GetWindowText does not reach into the controls of another process.
std::wstring TextOfWindow(HWND window)
{
    std::vector<wchar_t> text(kTextChars);
    Ask(window, WM_GETTEXT, kTextChars, reinterpret_cast<LPARAM>(text.data()));
    return text.data();
}

std::wstring TextOfControl(HWND dialog, int control)
{
    return TextOfWindow(::GetDlgItem(dialog, control));
}

std::vector<std::wstring> ComboItems(HWND combo)
{
    std::vector<std::wstring> items;
    const LRESULT count = Ask(combo, CB_GETCOUNT, 0, 0);
    for (LRESULT i = 0; i < count; ++i)
    {
        wchar_t text[kTextChars] = {};
        Ask(combo, CB_GETLBTEXT, static_cast<WPARAM>(i), reinterpret_cast<LPARAM>(text));
        items.emplace_back(text);
    }
    return items;
}

LRESULT ComboSelection(HWND combo)
{
    // 32 bits, whatever the process that the answer comes from makes of the rest.
    return static_cast<int>(Ask(combo, CB_GETCURSEL, 0, 0));
}

void SelectComboItem(HWND dialog, int combo, int index)
{
    const HWND control = ::GetDlgItem(dialog, combo);
    Ask(control, CB_SETCURSEL, static_cast<WPARAM>(index), 0);
    Ask(dialog, WM_COMMAND, MAKEWPARAM(combo, CBN_SELCHANGE), reinterpret_cast<LPARAM>(control));
}

void PressKey(HWND window, WORD key)
{
    ::PostMessageW(window, WM_KEYDOWN, key, 1);
    ::PostMessageW(window, WM_KEYUP, key, static_cast<LPARAM>(0xC0000001));
}

void TypeCharacter(HWND window, wchar_t character)
{
    ::PostMessageW(window, WM_CHAR, character, 1);
}

HWND FocusOf(HWND dialog)
{
    GUITHREADINFO info = {};
    info.cbSize = sizeof(info);
    return ::GetGUIThreadInfo(::GetWindowThreadProcessId(dialog, nullptr), &info) ? info.hwndFocus : nullptr;
}

bool WaitForFocus(HWND dialog, HWND window)
{
    return WaitUntil(
        [=]
        {
            if (FocusOf(dialog) == window) return true;
            if (!FocusOf(dialog)) ::SetForegroundWindow(dialog);
            return false;
        });
}

void PaintNow(HWND window)
{
    ::RedrawWindow(window, nullptr, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_FRAME | RDW_ALLCHILDREN | RDW_UPDATENOW);
}

}  // namespace arvmui_test
