#include "support/dialog_window.h"

#include "support/box_window.h"

namespace arvmui_test
{
namespace
{

constexpr int kRounds = 10;
constexpr DWORD kLongerEachRoundMs = 100;

LRESULT Ask(HWND dialog, int control, UINT message, WPARAM wParam = 0, LPARAM lParam = 0)
{
    return ::SendMessageW(::GetDlgItem(dialog, control), message, wParam, lParam);
}

// Returns when the window's thread has handled what was posted and sent to it before.
void LetHandle(HWND window)
{
    ::SendMessageW(window, WM_NULL, 0, 0);
}

}  // namespace

HWND WaitForOwnedDialog(HWND owner)
{
    const DWORD thread = ::GetWindowThreadProcessId(owner, nullptr);
    HWND found = nullptr;
    WaitUntil(
        [&]
        {
            for (const HWND dialog : VisibleDialogsOfThread(thread))
                if (::GetWindow(dialog, GW_OWNER) == owner) found = dialog;
            return found != nullptr || !::IsWindow(owner);
        });
    return found;
}

bool WaitUntilGone(HWND window, HWND next)
{
    const bool gone = WaitUntil([=] { return !::IsWindow(window); });
    LetHandle(next);
    return gone;
}

std::wstring WindowText(HWND window)
{
    std::wstring text(static_cast<size_t>(::SendMessageW(window, WM_GETTEXTLENGTH, 0, 0)) + 1, L'\0');
    const LRESULT length =
        ::SendMessageW(window, WM_GETTEXT, static_cast<WPARAM>(text.size()), reinterpret_cast<LPARAM>(text.data()));
    text.resize(static_cast<size_t>(length));
    return text;
}

std::vector<std::wstring> ListItems(HWND dialog, int list)
{
    std::vector<std::wstring> items;
    for (WPARAM i = 0;; ++i)
    {
        const LRESULT length = Ask(dialog, list, LB_GETTEXTLEN, i);
        if (length < 0) return items;  // behind the last
        std::wstring text(static_cast<size_t>(length) + 1, L'\0');
        text.resize(static_cast<size_t>(Ask(dialog, list, LB_GETTEXT, i, reinterpret_cast<LPARAM>(text.data()))));
        items.push_back(text);
    }
}

std::vector<int> SelectedItems(HWND dialog, int list)
{
    std::vector<int> selected;
    const LRESULT count = Ask(dialog, list, LB_GETCOUNT);
    for (int i = 0; i < count; ++i)
        if (Ask(dialog, list, LB_GETSEL, static_cast<WPARAM>(i)) > 0) selected.push_back(i);
    return selected;
}

void SelectItems(HWND dialog, int list, const std::vector<int>& items)
{
    constexpr LPARAM kAll = -1;
    Ask(dialog, list, LB_SETSEL, FALSE, kAll);
    for (const int item : items) Ask(dialog, list, LB_SETSEL, TRUE, item);
    ::SendMessageW(
        dialog, WM_COMMAND, MAKEWPARAM(list, LBN_SELCHANGE), reinterpret_cast<LPARAM>(::GetDlgItem(dialog, list)));
}

void ClickItem(HWND dialog, int list, int item, bool withControlKey)
{
    RECT place = {};
    Ask(dialog, list, LB_GETITEMRECT, static_cast<WPARAM>(item), reinterpret_cast<LPARAM>(&place));
    const LPARAM point = MAKELPARAM(place.left + 2, (place.top + place.bottom) / 2);
    const WPARAM keys = withControlKey ? MK_CONTROL : 0;
    Ask(dialog, list, WM_LBUTTONDOWN, keys | MK_LBUTTON, point);
    Ask(dialog, list, WM_LBUTTONUP, keys, point);
}

bool IsEnabled(HWND dialog, int control)
{
    return ::IsWindowEnabled(::GetDlgItem(dialog, control)) != FALSE;
}

bool ClickButton(HWND dialog, int button)
{
    if (!::GetDlgItem(dialog, button) || !IsEnabled(dialog, button)) return false;
    Ask(dialog, button, BM_CLICK);
    return true;
}

wchar_t AccessKeyOf(HWND control)
{
    const std::wstring label = WindowText(control);
    size_t at = label.find(L'&');
    while (at != std::wstring::npos && label[at + 1] == L'&') at = label.find(L'&', at + 2);  // "&&" shows one
    return at == std::wstring::npos ? L'\0' : label[at + 1];
}

void PressAccessKeyOf(HWND dialog, int control)
{
    PressAccessKey(dialog, AccessKeyOf(::GetDlgItem(dialog, control)));
}

void PressAccessKey(HWND dialog, wchar_t letter)
{
    constexpr LPARAM kAltIsDown = 0x20000000;
    ::PostMessageW(dialog, WM_SYSCHAR, letter, kAltIsDown | 1);
}

void FocusControl(HWND dialog, int control)
{
    ::SendMessageW(dialog, WM_NEXTDLGCTL, reinterpret_cast<WPARAM>(::GetDlgItem(dialog, control)), TRUE);
}

bool PassesUndisturbed(const std::function<bool()>& round)
{
    for (int i = 0; i < kRounds; ++i)
    {
        if (round()) return true;
        // What disturbed it may stay for a while.
        ::Sleep(static_cast<DWORD>(i) * kLongerEachRoundMs);
    }
    return false;
}

}  // namespace arvmui_test
