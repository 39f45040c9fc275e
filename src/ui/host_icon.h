// The icon of the program that uses the library, for the library's dialogs.
#pragma once

#include <windows.h>

namespace arvmui
{

// The program's first icon by number, or null. `identifier`, if given, receives its number or 0.
// The icon is shared and never destroyed.
HICON FindHostIcon(DWORD* identifier) noexcept;

}  // namespace arvmui
