/*
 * Starts a program, describes the first message box that it shows and presses one of its buttons:
 *
 *   answer_box <button's control identifier> <program> [argument...]
 *
 * Arguments with blanks are not supported. Exit code: the program's; 1 for a wrong command line, 2
 * when the program could not be started or no box with that button came within 20 seconds.
 */
#include <windows.h>

#include <array>
#include <string>

#include "text_output.h"

namespace
{

constexpr int kWrongCommandLine = 1;
constexpr int kNoBox = 2;
constexpr DWORD kPatienceMilliseconds = 20000;
constexpr DWORD kPollMilliseconds = 50;
constexpr UINT kReplyMilliseconds = 5000;

/** Search for the message box of a process. */
struct BoxSearch
{
    DWORD processId;
    HWND box;
};

std::wstring WindowClass(HWND window)
{
    std::array<wchar_t, 64> name = {};
    ::GetClassNameW(window, name.data(), static_cast<int>(name.size()));
    return name.data();
}

/** Asks the window itself: GetWindowText does not reach into controls of another process. */
std::wstring WindowText(HWND window)
{
    std::array<wchar_t, 512> text = {};
    DWORD_PTR length = 0;
    ::SendMessageTimeoutW(window, WM_GETTEXT, text.size(), reinterpret_cast<LPARAM>(text.data()), SMTO_ABORTIFHUNG,
        kReplyMilliseconds, &length);
    return text.data();
}

BOOL CALLBACK FindBox(HWND window, LPARAM parameter)
{
    auto& search = *reinterpret_cast<BoxSearch*>(parameter);
    DWORD processId = 0;
    ::GetWindowThreadProcessId(window, &processId);
    if (processId != search.processId || !::IsWindowVisible(window) || WindowClass(window) != L"#32770") return TRUE;
    search.box = window;
    return FALSE;
}

BOOL CALLBACK AppendControl(HWND control, LPARAM parameter)
{
    auto& description = *reinterpret_cast<std::wstring*>(parameter);
    const std::wstring text = WindowText(control);
    if (text.empty() || !::IsWindowVisible(control)) return TRUE;
    if (WindowClass(control) == L"Button")
        description += L" [" + text + L"]";
    else
        description += L" \"" + text + L"\"";
    return TRUE;
}

/** Waits for the process's box; NULL when the process ends or patience does. */
HWND WaitForBox(const PROCESS_INFORMATION& process)
{
    BoxSearch search = {process.dwProcessId, nullptr};
    for (DWORD waited = 0; waited < kPatienceMilliseconds; waited += kPollMilliseconds)
    {
        ::EnumWindows(FindBox, reinterpret_cast<LPARAM>(&search));
        if (search.box != nullptr) return search.box;
        if (::WaitForSingleObject(process.hProcess, kPollMilliseconds) != WAIT_TIMEOUT) return nullptr;
    }
    return nullptr;
}

bool AnswerBox(const PROCESS_INFORMATION& process, int button)
{
    const HWND box = WaitForBox(process);
    const HWND control = box != nullptr ? ::GetDlgItem(box, button) : nullptr;
    if (control == nullptr) return false;

    std::wstring description = L"Box \"" + WindowText(box) + L"\":";
    ::EnumChildWindows(box, AppendControl, reinterpret_cast<LPARAM>(&description));
    PrintLine(description);
    PrintLine(L"Pressing [" + WindowText(control) + L"]");
    return ::PostMessageW(control, BM_CLICK, 0, 0) != FALSE;
}

}  // namespace

extern "C" int wmain(int argc, wchar_t** argv)
{
    const int button = argc >= 3 ? ::_wtoi(argv[1]) : 0;
    if (button == 0)
    {
        PrintErrorLine(L"Usage: answer_box <button's control identifier> <program> [argument...]");
        return kWrongCommandLine;
    }

    std::wstring commandLine;
    for (int i = 2; i < argc; ++i) commandLine += (i == 2 ? L"" : L" ") + std::wstring(argv[i]);
    STARTUPINFOW startup = {};
    startup.cb = sizeof startup;
    PROCESS_INFORMATION process = {};
    if (!::CreateProcessW(nullptr, commandLine.data(), nullptr, nullptr, TRUE, 0, nullptr, nullptr, &startup, &process))
    {
        PrintErrorLine(L"answer_box: could not start: " + commandLine);
        return kNoBox;
    }

    DWORD exitCode = kNoBox;
    if (AnswerBox(process, button) && ::WaitForSingleObject(process.hProcess, kPatienceMilliseconds) == WAIT_OBJECT_0)
    {
        ::GetExitCodeProcess(process.hProcess, &exitCode);
    }
    else
    {
        PrintErrorLine(L"answer_box: no box with that button.");
        ::TerminateProcess(process.hProcess, kNoBox);
    }
    ::CloseHandle(process.hThread);
    ::CloseHandle(process.hProcess);
    return static_cast<int>(exitCode);
}
