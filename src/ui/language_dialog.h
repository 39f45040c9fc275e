// Door to the dialog that asks the user for a language.
//
// The search for locales shows it for the keyword "ask" although it stands above the search. It
// starts no search itself; only the error box that it may show does, and by then the keyword is
// marked as asked, so the door is not entered again from behind it.
#pragma once

#include "arvmui.h"

namespace arvmui
{

// Asks, and writes the chosen tag, cut at answerSize - 1 characters; an empty answer means that the
// user refused. `answerSize` counts characters, terminator included; 0 shows the dialog without the
// choice. `icons` is null or two icons, small and big. TRUE when the dialog ended by an answer or a
// refusal; FALSE with the last-error code when it could not be shown (13: there is no language to choose from).
BOOL ShowLanguageSelectionDialog(HWND owner, const HICON* icons, const LocaleEntry* entries, DWORD count,
    wchar_t* answer, DWORD answerSize) noexcept;

}  // namespace arvmui
