// The icon of the program that uses the library, for the library's dialogs.
#pragma once

#include <windows.h>

namespace arvmui
{

// The program's first icon by number, or null. `identifier`, if given, receives its number or 0.
// The icon is shared and never destroyed.
HICON FindHostIcon(DWORD* identifier) noexcept;

// Gives a dialog its icons; the host's stands in for one that is null.
void SetDialogIcons(HWND dialog, HICON smallIcon, HICON bigIcon, HICON hostIcon) noexcept;

}  // namespace arvmui
