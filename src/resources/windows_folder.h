// Paths under the Windows folder, which is taken from the environment and remembered.
#pragma once

#include <windows.h>

namespace arvmui
{

// Writes the Windows folder and the formatted text behind it, cut to fit and terminated; the length
// written, which callers that only pass the path on may ignore. The format is always the library's own; "%hs" takes narrow text.
DWORD FormatWindowsPath(wchar_t* buffer, DWORD capacity, const wchar_t* format, ...) noexcept;

}  // namespace arvmui
