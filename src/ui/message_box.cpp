#include "foundation/code_page.h"
#include "foundation/system_functions.h"
#include "resources/process_state.h"
#include "resources/resource_ids.h"

// Message boxes whose buttons speak the language in use, and the language of the common controls.

namespace arvmui
{
namespace
{

constexpr int kButtonTextChars = 64;  // terminator included
constexpr int kFirstButton = IDOK;
constexpr int kLastButton = 11;  // IDCONTINUE

// One message box in progress, on the stack of the thread that shows it. The thread's value points
// to the innermost one.
struct MessageBoxFrame
{
    MessageBoxFrame* outer;
    HHOOK hook;  // shared by nested boxes
    const wchar_t* caption;
    bool hasSingleButton;
};

MessageBoxFrame* InnermostFrame() noexcept
{
    void* const value = GetThreadValue(Descriptor());
    return value == NoThreadSlot() ? nullptr : static_cast<MessageBoxFrame*>(value);
}

// The button whose label a control bears. Where a box has one button only, some systems give OK the
// number of Cancel, so that the escape key closes the box.
int ButtonOfControl(HWND control, const MessageBoxFrame& frame) noexcept
{
    const int id = ::GetDlgCtrlID(control);
    if (id == IDCANCEL && frame.hasSingleButton && !::GetDlgItem(::GetParent(control), IDOK)) return IDOK;
    return id;
}

BOOL CALLBACK TranslateButton(HWND control, LPARAM context)
{
    const int button = ButtonOfControl(control, *reinterpret_cast<const MessageBoxFrame*>(context));
    if (button < kFirstButton || button > kLastButton) return TRUE;
    wchar_t text[kButtonTextChars];
    const UINT string = static_cast<UINT>(ARVMUI_STRING_BUTTON_BASE + button);
    // Ignored: a label that is missing or cannot be set stays the system's.
    if (::LoadStringW(Descriptor().resourceLibrary, string, text, kButtonTextChars) > 0)
        ::SetWindowTextW(control, text);
    return TRUE;
}

void TranslateBox(HWND box, const MessageBoxFrame& frame) noexcept
{
    // A box that was created through the narrow path has lost what the ANSI code page cannot hold.
    if (!::IsWindowUnicode(box) && !IsIntegerIdentifier(frame.caption))
        // Ignored: the box then keeps the caption that it has.
        ::DefWindowProcW(box, WM_SETTEXT, 0, reinterpret_cast<LPARAM>(frame.caption));
    if (Descriptor().resourceLibrary) ::EnumChildWindows(box, TranslateButton, reinterpret_cast<LPARAM>(&frame));
}

LRESULT CALLBACK HookProcedure(int code, WPARAM wParam, LPARAM lParam)
{
    const MessageBoxFrame* const frame = InnermostFrame();
    if (code == HC_ACTION && frame)
    {
        const CWPSTRUCT& message = *reinterpret_cast<const CWPSTRUCT*>(lParam);
        if (message.message == WM_INITDIALOG) TranslateBox(message.hwnd, *frame);
    }
    if (!frame || !frame->hook) return 0;
    return ::CallNextHookEx(frame->hook, code, wParam, lParam);
}

}  // namespace
}  // namespace arvmui

int ARVMUI_CALL ARVMUI_MessageBoxW(HWND owner, const WCHAR* text, const WCHAR* caption, UINT type)
{
    using namespace arvmui;
    const LibraryDescriptor& descriptor = Descriptor();
    void* const value = GetThreadValue(descriptor);
    const bool isOutermost = value == nullptr;
    MessageBoxFrame* const outer = value == NoThreadSlot() ? nullptr : static_cast<MessageBoxFrame*>(value);

    HHOOK hook = outer ? outer->hook : nullptr;
    if (isOutermost) hook = ::SetWindowsHookExW(WH_CALLWNDPROC, HookProcedure, nullptr, ::GetCurrentThreadId());

    MessageBoxFrame frame = {outer, hook, caption, (type & MB_TYPEMASK) == MB_OK};
    // Ignored: without a slot there is no hook either, and the box is shown untranslated.
    SetThreadValue(descriptor, &frame);
    const int result = ::MessageBoxW(owner, text, caption, type);
    const LastErrorKeeper keep;
    // Ignored in what follows: without a slot there is nothing to put back, and a hook that is gone
    // needs no removal.
    SetThreadValue(descriptor, outer);
    if (isOutermost && hook) ::UnhookWindowsHookEx(hook);
    return result;
}

int ARVMUI_CALL ARVMUI_MessageBoxA(HWND owner, const char* text, const char* caption, UINT type)
{
    const arvmui::WideArgument wideText(text);
    const arvmui::WideArgument wideCaption(caption);
    if (wideText.Failed() || wideCaption.Failed()) return ::MessageBoxA(owner, text, caption, type);
    return ARVMUI_MessageBoxW(owner, wideText.Get(), wideCaption.Get(), type);
}

LANGID ARVMUI_CALL ARVMUI_InitCommonControlsLanguage(void)
{
    using SetLanguage = void(WINAPI*)(LANGID);
    using GetLanguage = LANGID(WINAPI*)();
    const LANGID language = ARVMUI_GetLangID(nullptr);
    if (language == 0) return 0;
    const auto setLanguage = arvmui::FindSystemFunction<SetLanguage>("COMCTL32.DLL", "InitMUILanguage");
    const auto getLanguage = arvmui::FindSystemFunction<GetLanguage>("COMCTL32.DLL", "GetMUILanguage");
    if (!setLanguage || !getLanguage) return 0;
    setLanguage(language);
    return getLanguage();
}
