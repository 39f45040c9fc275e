// Door to the box in which the library shows its own errors.
//
// Searching and loading resources report through it although it stands above them, and it searches
// resources itself for the language of the system's text. That ends there: the search it starts
// tries files quietly and reports nothing, so the door is never entered from behind it.
#pragma once

#include "arvmui.h"

namespace arvmui
{

// Shows a message while message popups are on; the box's result, 0 when none was shown.
// `type` 0 stands for MB_ICONHAND. `format` is text or the number of a string of the resource
// library; its placeholders take the `arguments`, then, escaped once ("%%lu", "%%s"), the error code
// and the system's text for it. Keeps the last-error code.
int ARVMUI_ErrorDialogBoxW(HWND owner, UINT type, DWORD error, const wchar_t* format, const wchar_t* const* arguments,
    DWORD argumentCount) noexcept;

}  // namespace arvmui
