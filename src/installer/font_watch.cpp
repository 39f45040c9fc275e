#include "installer/font_watch.h"

#include "foundation/growable_text.h"
#include "foundation/text.h"

namespace arvmui
{
namespace
{

constexpr int kTitleChars = 256;  // terminators included
constexpr int kClassChars = 64;
constexpr DWORD kMaxStatics = 16;

// What a window offers: its first push button and its first texts.
struct WindowControls
{
    HWND button;
    DWORD staticCount;
    HWND statics[kMaxStatics];
};

BOOL CALLBACK CollectControl(HWND window, LPARAM context)
{
    WindowControls& controls = *reinterpret_cast<WindowControls*>(context);
    wchar_t className[kClassChars];
    if (::GetClassNameW(window, className, kClassChars) == 0) return TRUE;
    if (!controls.button && EqualsNoCase(className, L"button"))
        controls.button = window;
    else if (controls.staticCount < kMaxStatics && EqualsNoCase(className, L"static"))
        controls.statics[controls.staticCount++] = window;
    return TRUE;
}

void ResetFonts(HWND window) noexcept
{
    WindowControls controls = {};
    // Ignored: what the callback returns last.
    ::EnumChildWindows(window, CollectControl, reinterpret_cast<LPARAM>(&controls));
    const LRESULT font = controls.button ? ::SendMessageW(controls.button, WM_GETFONT, 0, 0) : 0;
    for (DWORD i = 0; i < controls.staticCount; ++i)
        // Ignored: a text whose window has just gone needs no font.
        ::PostMessageW(controls.statics[i], WM_SETFONT, static_cast<WPARAM>(font), TRUE);
}

BOOL CALLBACK LookAtWindow(HWND window, LPARAM context)
{
    const FontResetterNames& names = *reinterpret_cast<const FontResetterNames*>(context);
    wchar_t title[kTitleChars];
    if (::GetWindowTextW(window, title, kTitleChars) > 0 && names.Contains(title)) ResetFonts(window);
    return TRUE;
}

}  // namespace

FontResetterNames::~FontResetterNames()
{
    for (DWORD i = 0; i < count_; ++i) ARVMUI_free(names_[i]);
}

void FontResetterNames::Add(wchar_t* name) noexcept
{
    HeapBlock<wchar_t> owned(name);
    if (!owned || *name == L'\0' || count_ == kMaxNames || Contains(name)) return;
    names_[count_++] = owned.Release();
}

void FontResetterNames::AddCopy(const wchar_t* name) noexcept
{
    HeapBlock<wchar_t> copy;
    if (AppendFormat(copy.Slot(), -1, L"%s", name) > 0) Add(copy.Release());
}

bool FontResetterNames::Contains(const wchar_t* name) const noexcept
{
    for (DWORD i = 0; i < count_; ++i)
        if (CompareText(names_[i], name) == 0) return true;
    return false;
}

bool RunFontResetterLoop(HANDLE handle, DWORD interval, DWORD total, const FontResetterNames& names) noexcept
{
    if (handle)
    {
        const DWORD state = ::WaitForSingleObject(handle, 0);
        if (state != WAIT_TIMEOUT) return state == WAIT_OBJECT_0;
    }
    for (DWORD remaining = total; remaining >= 1; remaining = remaining > interval ? remaining - interval : 0)
    {
        // Ignored: what the callback returns last.
        ::EnumWindows(LookAtWindow, reinterpret_cast<LPARAM>(&names));
        if (!handle)
        {
            ::Sleep(interval);
            continue;
        }
        const DWORD state = ::WaitForSingleObject(handle, interval);
        if (state != WAIT_TIMEOUT) return state == WAIT_OBJECT_0;
    }
    return false;
}

}  // namespace arvmui
