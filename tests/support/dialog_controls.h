// Reads and works the controls of a dialog as a user does: by what they show and by keys. The dialog
// may belong to another thread or another process.
#pragma once

#include <windows.h>

#include <functional>
#include <string>
#include <vector>

namespace arvmui_test
{

// Until the condition holds, with patience for a busy machine; FALSE when it never does.
bool WaitUntil(const std::function<bool()>& condition);

// What a window shows as its text.
std::wstring TextOfWindow(HWND window);
std::wstring TextOfControl(HWND dialog, int control);

// The items of a combo box, in their order.
std::vector<std::wstring> ComboItems(HWND combo);

// The selected item; CB_ERR when none is.
LRESULT ComboSelection(HWND combo);

// Selects an item and tells the dialog, as the combo box does when the user selects.
void SelectComboItem(HWND dialog, int combo, int index);

// Presses and releases a key, which the dialog treats as one for the window whichever has the focus.
void PressKey(HWND window, WORD key);

// Presses a key that shows a character.
void TypeCharacter(HWND window, wchar_t character);

// The window of the dialog's thread that has the focus; null when none has.
HWND FocusOf(HWND dialog);

// Waits until a window of the dialog has the focus. What comes to the foreground meanwhile takes it away,
// so the dialog is brought back as often as need be.
bool WaitForFocus(HWND dialog, HWND window);

// Paints a window and its controls at once. The system keeps brushes and fonts from the first painting on,
// and on a busy machine a dialog may be gone before it was painted: counts of graphics objects begin here.
void PaintNow(HWND window);

}  // namespace arvmui_test
