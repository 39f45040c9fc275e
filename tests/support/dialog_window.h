// Works a dialog as its user does, from another thread or process, and reads back what it shows.
#pragma once

#include "support/dialog_controls.h"

#include <windows.h>

#include <functional>
#include <string>
#include <vector>

namespace arvmui_test
{

// The visible dialog or message box that belongs to a window; null when none appears in a while.
HWND WaitForOwnedDialog(HWND owner);

// Waits until a window is destroyed and the thread of `next` has finished what followed from that.
bool WaitUntilGone(HWND window, HWND next);

// The text of a window, however long it is.
std::wstring WindowText(HWND window);

std::vector<std::wstring> ListItems(HWND dialog, int list);
std::vector<int> SelectedItems(HWND dialog, int list);

// Selects these items and no others, and tells the dialog as the list does after a click.
void SelectItems(HWND dialog, int list, const std::vector<int>& items);

// A mouse click on an item; with the control key down it adds the item to the selection or takes it out.
void ClickItem(HWND dialog, int list, int item, bool withControlKey);

bool IsEnabled(HWND dialog, int control);

// As if the user had clicked it; returns when the dialog has handled that. False, doing nothing, for
// a button that is disabled or missing.
bool ClickButton(HWND dialog, int button);

// The letter behind the '&' of a control's label; 0 when it has none.
wchar_t AccessKeyOf(HWND control);

// Types a control's access key while the Alt key is down.
void PressAccessKeyOf(HWND dialog, int control);
void PressAccessKey(HWND dialog, wchar_t letter);

// Moves the keyboard to a control, as the Tab key does.
void FocusControl(HWND dialog, int control);

// Whether a round that needs the keyboard or the mouse passes. One during which a window of another
// program may have taken the keyboard away, or the real mouse pointer moved over the dialog, proves
// nothing, so there are several.
bool PassesUndisturbed(const std::function<bool()>& round);

}  // namespace arvmui_test
