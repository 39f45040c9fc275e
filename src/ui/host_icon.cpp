#include "ui/host_icon.h"

#include "foundation/heap.h"

namespace arvmui
{
namespace
{

// The smallest icon number above `floor`; 0 when there is none.
struct NextIcon
{
    DWORD floor;
    DWORD number;
};

BOOL CALLBACK ConsiderIcon(HMODULE, const wchar_t*, wchar_t* name, LONG_PTR context)
{
    NextIcon& next = *reinterpret_cast<NextIcon*>(context);
    if (!IsIntegerIdentifier(name)) return TRUE;
    const DWORD number = static_cast<DWORD>(reinterpret_cast<ULONG_PTR>(name));
    if (number > next.floor && (next.number == 0 || number < next.number)) next.number = number;
    return TRUE;
}

DWORD NextIconNumber(HMODULE module, DWORD floor) noexcept
{
    NextIcon next = {floor, 0};
    // Ignored: a module without icons fails here and has no next one.
    ::EnumResourceNamesW(module, RT_GROUP_ICON, ConsiderIcon, reinterpret_cast<LONG_PTR>(&next));
    return next.number;
}

}  // namespace

HICON FindHostIcon(DWORD* identifier) noexcept
{
    // Only numbers that exist are tried: asking for all 65,535 takes seconds in a program without icons.
    const HMODULE program = ::GetModuleHandleA(nullptr);
    for (DWORD number = NextIconNumber(program, 0); number != 0; number = NextIconNumber(program, number))
    {
        const HICON icon = ::LoadIconW(program, MAKEINTRESOURCEW(number));
        if (!icon) continue;
        if (identifier) *identifier = number;
        return icon;
    }
    if (identifier) *identifier = 0;
    return nullptr;
}

void SetDialogIcons(HWND dialog, HICON smallIcon, HICON bigIcon, HICON hostIcon) noexcept
{
    ::SendMessageW(dialog, WM_SETICON, ICON_SMALL, reinterpret_cast<LPARAM>(smallIcon ? smallIcon : hostIcon));
    ::SendMessageW(dialog, WM_SETICON, ICON_BIG, reinterpret_cast<LPARAM>(bigIcon ? bigIcon : hostIcon));
}

}  // namespace arvmui
