#include "support/box_window.h"

#include <cwchar>

namespace arvmui_test
{
namespace
{

constexpr UINT kReplyMs = 5000;
constexpr size_t kTextChars = 2048;
constexpr wchar_t kDialogClass[] = L"#32770";

std::wstring ClassOf(HWND window)
{
    wchar_t name[64] = {};
    ::GetClassNameW(window, name, 64);
    return name;
}

// Asked by message: GetWindowText does not reach into the controls of another process.
std::wstring TextOf(HWND window)
{
    std::vector<wchar_t> text(kTextChars);
    DWORD_PTR length = 0;
    ::SendMessageTimeoutW(
        window, WM_GETTEXT, kTextChars, reinterpret_cast<LPARAM>(text.data()), SMTO_ABORTIFHUNG, kReplyMs, &length);
    return text.data();
}

BOOL CALLBACK ReadControl(HWND control, LPARAM context)
{
    BoxContents& contents = *reinterpret_cast<BoxContents*>(context);
    if (!(::GetWindowLongW(control, GWL_STYLE) & WS_VISIBLE)) return TRUE;
    const std::wstring className = ClassOf(control);
    if (className == L"Button")
        contents.buttons[::GetDlgCtrlID(control)] = TextOf(control);
    else if (contents.text.empty())
        contents.text = TextOf(control);
    return TRUE;
}

struct DialogSearch
{
    DWORD processId;
    std::vector<HWND> found;
};

BOOL CALLBACK AddDialog(HWND window, LPARAM context)
{
    DialogSearch& search = *reinterpret_cast<DialogSearch*>(context);
    DWORD processId = 0;
    ::GetWindowThreadProcessId(window, &processId);
    if (search.processId != 0 && processId != search.processId) return TRUE;
    if (::IsWindowVisible(window) && ClassOf(window) == kDialogClass) search.found.push_back(window);
    return TRUE;
}

}  // namespace

BoxContents ReadBox(HWND box)
{
    BoxContents contents;
    contents.caption = TextOf(box);
    ::EnumChildWindows(box, ReadControl, reinterpret_cast<LPARAM>(&contents));
    return contents;
}

std::vector<std::wstring> Labels(const BoxContents& contents)
{
    std::vector<std::wstring> labels;
    for (const auto& [id, label] : contents.buttons) labels.push_back(label);
    return labels;
}

bool PressButton(HWND box, int button)
{
    const HWND control = ::GetDlgItem(box, button);
    return control && ::PostMessageW(control, BM_CLICK, 0, 0);
}

std::vector<HWND> VisibleDialogsOfThread(DWORD threadId)
{
    DialogSearch search = {0, {}};
    ::EnumThreadWindows(threadId, AddDialog, reinterpret_cast<LPARAM>(&search));
    return search.found;
}

std::vector<HWND> VisibleDialogsOfProcess(DWORD processId)
{
    DialogSearch search = {processId, {}};
    ::EnumWindows(AddDialog, reinterpret_cast<LPARAM>(&search));
    return search.found;
}

}  // namespace arvmui_test
