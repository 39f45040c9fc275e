// Reads and answers message boxes and dialogs as a user does, in this process or another.
#pragma once

#include <windows.h>

#include <map>
#include <string>
#include <vector>

namespace arvmui_test
{

struct BoxContents
{
    std::wstring caption;
    std::wstring text;                    // of the first control that shows text
    std::map<int, std::wstring> buttons;  // labels by control identifier
};

BoxContents ReadBox(HWND box);

// The labels in the order of the controls, for boxes whose control identifiers are the system's affair.
std::vector<std::wstring> Labels(const BoxContents& contents);

// As if the user had clicked it; FALSE without such a button.
bool PressButton(HWND box, int button);

// Visible dialogs of a thread, or of all threads of a process, the topmost first.
std::vector<HWND> VisibleDialogsOfThread(DWORD threadId);
std::vector<HWND> VisibleDialogsOfProcess(DWORD processId);

}  // namespace arvmui_test
