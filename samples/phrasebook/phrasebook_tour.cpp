/*
 * Uses the phrasebook as a user would and prints what its windows say, for demonstrations that run by
 * themselves:
 *
 *   phrasebook_tour [/prefer:<language>] [argument for the phrasebook...]
 *
 * With /prefer the tour opens the dialog for preferred languages and stores that one, by the name that
 * the dialog shows. Exit code: the phrasebook's, or 2 when something did not come up within 20 seconds.
 *
 * The tour does not load ARVMUI: programs that it starts would speak its language.
 */
#include <windows.h>

#include <functional>
#include <string>
#include <string_view>

#include "phrasebook_ids.h"
#include "text_output.h"

namespace
{

constexpr int kFailed = 2;
constexpr DWORD kPatienceMilliseconds = 20000;
constexpr DWORD kPollMilliseconds = 20;
constexpr UINT kReplyMilliseconds = 5000;
constexpr wchar_t kDialogClass[] = L"#32770";

// Controls of ARVMUI's own dialogs
constexpr int kChosenList = 302;
constexpr int kRemoveButton = 306;
constexpr int kAddButton = 307;
constexpr int kAvailableList = 311;

bool WaitUntil(const std::function<bool()>& condition)
{
    for (DWORD waited = 0; waited < kPatienceMilliseconds; waited += kPollMilliseconds)
    {
        if (condition()) return true;
        ::Sleep(kPollMilliseconds);
    }
    return false;
}

std::wstring ClassName(HWND window)
{
    std::wstring name(64, L'\0');
    name.resize(static_cast<std::size_t>(::GetClassNameW(window, name.data(), static_cast<int>(name.size()))));
    return name;
}

// A message with an answer; 0 from a window that does not answer.
DWORD_PTR Ask(HWND window, UINT message, WPARAM wParam, const void* data)
{
    DWORD_PTR result = 0;
    ::SendMessageTimeoutW(
        window, message, wParam, reinterpret_cast<LPARAM>(data), SMTO_ABORTIFHUNG, kReplyMilliseconds, &result);
    return result;
}

// Asks the window itself: GetWindowText does not reach into controls of another process.
std::wstring WindowText(HWND window)
{
    std::wstring text(1024, L'\0');
    text.resize(Ask(window, WM_GETTEXT, text.size(), text.data()));
    return text;
}

std::wstring ListItems(HWND list)
{
    std::wstring items;
    const auto count = static_cast<LONG_PTR>(Ask(list, LB_GETCOUNT, 0, nullptr));
    for (LONG_PTR i = 0; i < count; ++i)
    {
        std::wstring item(256, L'\0');
        item.resize(Ask(list, LB_GETTEXT, static_cast<WPARAM>(i), item.data()));
        items += (i == 0 ? L"" : L" | ") + item;
    }
    return items;
}

BOOL CALLBACK PrintControl(HWND control, LPARAM)
{
    const std::wstring kind = ClassName(control);
    if (kind == L"ListBox")
        PrintLine(L"  <" + ListItems(control) + L">");
    else if (kind == L"Button")
        PrintLine(L"  [" + WindowText(control) + L"]");
    else
        PrintLine(L"  " + WindowText(control));
    return TRUE;
}

void PrintWindow(HWND window)
{
    PrintLine(L"\"" + WindowText(window) + L"\"");
    ::EnumChildWindows(window, PrintControl, 0);
}

struct Search
{
    DWORD processId;
    std::wstring_view className;
    HWND other;  // a window that is not meant
    HWND found;
};

BOOL CALLBACK FindWindowOfProcess(HWND window, LPARAM parameter)
{
    auto& search = *reinterpret_cast<Search*>(parameter);
    DWORD processId = 0;
    ::GetWindowThreadProcessId(window, &processId);
    if (processId != search.processId || window == search.other || !::IsWindowVisible(window)) return TRUE;
    if (ClassName(window) != search.className) return TRUE;
    search.found = window;
    return FALSE;
}

/** The phrasebook as a process of its own; ended if it does not end by itself. */
class Phrasebook
{
public:
    explicit Phrasebook(const std::wstring& arguments)
    {
        std::wstring commandLine = L"phrasebook.exe" + arguments;
        STARTUPINFOW startup = {};
        startup.cb = sizeof startup;
        ::CreateProcessW(
            nullptr, commandLine.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &startup, &process_);
    }
    Phrasebook(const Phrasebook&) = delete;
    Phrasebook& operator=(const Phrasebook&) = delete;
    ~Phrasebook()
    {
        if (process_.hProcess == nullptr) return;
        ::TerminateProcess(process_.hProcess, kFailed);  // nothing happens where it has ended
        ::CloseHandle(process_.hThread);
        ::CloseHandle(process_.hProcess);
    }

    // Null when none comes up.
    HWND WaitForWindow(std::wstring_view className, HWND other = nullptr) const
    {
        Search search = {process_.dwProcessId, className, other, nullptr};
        if (process_.hProcess == nullptr) return nullptr;
        WaitUntil(
            [&search]
            {
                ::EnumWindows(FindWindowOfProcess, reinterpret_cast<LPARAM>(&search));
                return search.found != nullptr;
            });
        return search.found;
    }

    int WaitForExit() const
    {
        DWORD exitCode = kFailed;
        if (::WaitForSingleObject(process_.hProcess, kPatienceMilliseconds) == WAIT_OBJECT_0)
            ::GetExitCodeProcess(process_.hProcess, &exitCode);
        return static_cast<int>(exitCode);
    }

private:
    PROCESS_INFORMATION process_ = {};
};

// Posted, not sent: what a button opens may last.
void Click(HWND dialog, int button)
{
    ::PostMessageW(::GetDlgItem(dialog, button), BM_CLICK, 0, 0);
}

bool ClickAndWaitForEnd(HWND dialog, int button)
{
    Click(dialog, button);
    return WaitUntil([dialog] { return !::IsWindow(dialog); });
}

// Selects an item, or with -1 all, and tells the dialog as the user's click would.
void SelectItem(HWND dialog, int list, LONG_PTR item)
{
    const HWND control = ::GetDlgItem(dialog, list);
    ::SendMessageW(control, LB_SETSEL, TRUE, item);
    ::SendMessageW(dialog, WM_COMMAND, MAKEWPARAM(list, LBN_SELCHANGE), reinterpret_cast<LPARAM>(control));
}

bool AddLanguage(const Phrasebook& phrasebook, HWND settings, const std::wstring& language)
{
    Click(settings, kAddButton);
    const HWND dialog = phrasebook.WaitForWindow(kDialogClass, settings);
    if (dialog == nullptr) return false;
    PrintWindow(dialog);
    const auto item = static_cast<LONG_PTR>(
        Ask(::GetDlgItem(dialog, kAvailableList), LB_FINDSTRINGEXACT, static_cast<WPARAM>(-1), language.c_str()));
    if (item < 0) return false;
    SelectItem(dialog, kAvailableList, item);
    return ClickAndWaitForEnd(dialog, IDOK);
}

bool Prefer(const Phrasebook& phrasebook, HWND window, const std::wstring& language)
{
    const HWND status = ::GetDlgItem(window, CONTROL_ID_STATUS);
    const std::wstring before = WindowText(status);
    ::PostMessageW(window, WM_COMMAND, COMMAND_ID_PREFERRED_LANGUAGES, 0);
    const HWND settings = phrasebook.WaitForWindow(kDialogClass);
    if (settings == nullptr) return false;
    PrintWindow(settings);

    SelectItem(settings, kChosenList, -1);
    ::SendMessageW(::GetDlgItem(settings, kRemoveButton), BM_CLICK, 0, 0);
    if (!AddLanguage(phrasebook, settings, language) || !ClickAndWaitForEnd(settings, IDOK)) return false;
    if (!WaitUntil([&] { return WindowText(status) != before; })) return false;
    PrintLine(WindowText(status));
    return true;
}

int Tour(const std::wstring& preferred, const std::wstring& arguments)
{
    const Phrasebook phrasebook(arguments);
    const HWND window = phrasebook.WaitForWindow(TEXT(MAIN_WINDOW_CLASS));
    if (window == nullptr) return kFailed;
    PrintWindow(window);
    if (!preferred.empty() && !Prefer(phrasebook, window, preferred)) return kFailed;
    ::PostMessageW(window, WM_CLOSE, 0, 0);
    return phrasebook.WaitForExit();
}

}  // namespace

extern "C" int wmain(int argc, wchar_t** argv)
{
    constexpr std::wstring_view kPrefer = L"/prefer:";
    std::wstring preferred;
    std::wstring arguments;
    for (int i = 1; i < argc; ++i)
    {
        const std::wstring_view argument = argv[i];
        if (argument.starts_with(kPrefer))
            preferred = argument.substr(kPrefer.size());
        else
            arguments += L" \"" + std::wstring(argument) + L"\"";
    }
    return Tour(preferred, arguments);
}
