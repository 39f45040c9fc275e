#include "process/samples/phrasebook_fixture.h"

#include "phrasebook_ids.h"
#include "support/box_window.h"
#include "support/temporary_folder.h"

#include <algorithm>
#include <iterator>
#include <stdexcept>

namespace arvmui_test
{
namespace
{

constexpr DWORD kPatienceMs = 20000;
constexpr int kStartTries = 3;
constexpr DWORD kRoundMs = 3000;
constexpr DWORD kPollMs = 2;
constexpr DWORD kStillRunning = 0xFFFFFFFF;
constexpr wchar_t kDialogClass[] = L"#32770";
constexpr wchar_t kMenuClass[] = L"#32768";

struct WindowSearch
{
    DWORD processId;
    const wchar_t* className;
    HWND found;
};

BOOL CALLBACK ConsiderWindow(HWND window, LPARAM context)
{
    WindowSearch& search = *reinterpret_cast<WindowSearch*>(context);
    DWORD processId = 0;
    ::GetWindowThreadProcessId(window, &processId);
    wchar_t className[64] = {};
    ::GetClassNameW(window, className, 64);
    if (processId != search.processId || !::IsWindowVisible(window) || ::lstrcmpW(className, search.className) != 0)
        return TRUE;
    search.found = window;
    return FALSE;
}

HWND FindVisibleWindow(DWORD processId, const wchar_t* className)
{
    WindowSearch search = {processId, className, nullptr};
    ::EnumWindows(ConsiderWindow, reinterpret_cast<LPARAM>(&search));
    return search.found;
}

// For what may have to be tried again.
bool WaitAWhile(const std::function<bool()>& condition)
{
    const ULONGLONG end = ::GetTickCount64() + kRoundMs;
    while (!condition() && ::GetTickCount64() < end) ::Sleep(kPollMs);
    return condition();
}

struct DialogSearch
{
    HWND owner;
    HWND found;
};

BOOL CALLBACK ConsiderDialog(HWND window, LPARAM context)
{
    DialogSearch& search = *reinterpret_cast<DialogSearch*>(context);
    wchar_t className[64] = {};
    ::GetClassNameW(window, className, 64);
    if (::GetWindow(window, GW_OWNER) != search.owner || ::lstrcmpW(className, kDialogClass) != 0) return TRUE;
    search.found = window;
    return FALSE;
}

// Whether it is visible or not yet.
HWND FindDialogOf(HWND owner)
{
    DialogSearch search = {owner, nullptr};
    ::EnumThreadWindows(::GetWindowThreadProcessId(owner, nullptr), ConsiderDialog, reinterpret_cast<LPARAM>(&search));
    return search.found;
}

void Replace(std::wstring& text, const std::wstring& placeholder, const std::wstring& value)
{
    const size_t at = text.find(placeholder);
    if (at != std::wstring::npos) text.replace(at, placeholder.size(), value);
}

}  // namespace

const PhrasebookLanguage kPhrasebookLanguages[5] = {
    {L"de", L"de-DE", L"Sprachführer", L'd', L'b', L's', L'b', 'Q', 'U', 'B'},
    {L"en", L"en-US", L"Phrasebook", L'f', L'x', L'l', L'p', 'Q', 'T', 'L'},
    {L"es", L"es-ES", L"Guía de conversación", L'a', L's', L'i', L'i', 'Q', 'T', 'I'},
    {L"fr", L"fr-FR", L"Guide de conversation", L'f', L'q', L'l', L'l', 'Q', 'T', 'L'},
    {L"ja", L"ja-JP", L"会話集", L'f', L'x', L'l', L'p', 'Q', 'T', 'L'},
};

const PhrasebookLanguage& LanguageOf(const std::wstring& folder)
{
    const auto found = std::find_if(std::begin(kPhrasebookLanguages), std::end(kPhrasebookLanguages),
        [&](const PhrasebookLanguage& language) { return folder == language.folder; });
    if (found == std::end(kPhrasebookLanguages)) throw std::runtime_error("no such language");
    return *found;
}

void PrintTo(const PhrasebookLanguage& language, std::ostream* output)
{
    *output << std::filesystem::path(language.folder).string();
}

std::filesystem::path PhrasebookFolder()
{
    return TestProgramFolder() / L"phrasebook";
}

std::wstring InstalledText(const std::wstring& locale, const wchar_t* file, UINT id)
{
    const auto path = PhrasebookFolder() / L"resource" / locale / file;
    const HMODULE library = ::LoadLibraryExW(path.c_str(), nullptr, LOAD_LIBRARY_AS_DATAFILE);
    if (!library) return {};
    const wchar_t* text = nullptr;
    const int length = ::LoadStringW(library, id, reinterpret_cast<LPWSTR>(&text), 0);
    const std::wstring copy(text, static_cast<size_t>(length));
    ::FreeLibrary(library);
    return copy;
}

std::wstring PhrasebookText(const std::wstring& locale, UINT id)
{
    return InstalledText(locale, L"phraseUI.DLL", id);
}

std::wstring LibraryText(const std::wstring& locale, UINT id)
{
    return InstalledText(locale, L"arvmuiUI.DLL", id);
}

std::wstring Filled(std::wstring text, const std::wstring& first, const std::wstring& second)
{
    Replace(text, L"%1", first);
    Replace(text, L"%2", second);
    return text;
}

Phrasebook::Phrasebook(const std::wstring& arguments, const std::filesystem::path& folder)
{
    const std::wstring program = (folder / L"phrasebook.exe").wstring();
    std::wstring line = L"\"" + program + L"\" " + arguments;
    STARTUPINFOW startup = {};
    startup.cb = sizeof(startup);
    // Once in a thousand times Wine fails to start a program.
    for (int i = 0; i < kStartTries; ++i)
        if (::CreateProcessW(
                program.c_str(), line.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &startup, &process_))
            return;
    throw std::runtime_error("phrasebook.exe does not start");
}

Phrasebook::~Phrasebook()
{
    if (::WaitForSingleObject(process_.hProcess, 0) == WAIT_TIMEOUT) ::TerminateProcess(process_.hProcess, 1);
    ::CloseHandle(process_.hThread);
    ::CloseHandle(process_.hProcess);
}

HWND Phrasebook::WaitFor(const std::function<HWND()>& find) const
{
    HWND window = nullptr;
    WaitUntil(
        [&]
        {
            window = find();
            return window || ::WaitForSingleObject(process_.hProcess, 0) != WAIT_TIMEOUT;
        });
    return window;
}

HWND Phrasebook::Window() const
{
    return WaitFor([this] { return FindVisibleWindow(ProcessId(), TEXT(MAIN_WINDOW_CLASS)); });
}

HWND Phrasebook::WaitForBox() const
{
    return WaitFor(
        [this]
        {
            const auto boxes = VisibleDialogsOfProcess(ProcessId());
            return boxes.empty() ? nullptr : boxes.front();
        });
}

DWORD Phrasebook::ExitCode() const
{
    DWORD code = kStillRunning;
    if (::WaitForSingleObject(process_.hProcess, kPatienceMs) == WAIT_OBJECT_0)
        ::GetExitCodeProcess(process_.hProcess, &code);
    return code;
}

HWND WaitForDialogOf(HWND owner)
{
    HWND dialog = nullptr;
    WaitUntil([&] { return (dialog = FindDialogOf(owner)) != nullptr || !::IsWindow(owner); });
    if (!dialog || WaitAWhile([dialog] { return ::IsWindowVisible(dialog); })) return dialog;
    // Wine gives up showing a dialog when the window behind which it would stand is destroyed at that moment,
    // which windows of other programs are.
    ::ShowWindowAsync(dialog, SW_SHOWNORMAL);
    return WaitUntil([dialog] { return ::IsWindowVisible(dialog); }) ? dialog : nullptr;
}

void GiveCommand(HWND window, WORD command)
{
    ::PostMessageW(window, WM_COMMAND, command, 0);
}

bool ChooseFromMenu(HWND window, wchar_t menu, wchar_t item, const std::function<bool()>& condition)
{
    DWORD processId = 0;
    ::GetWindowThreadProcessId(window, &processId);
    const auto isOpen = [=] { return FindVisibleWindow(processId, kMenuClass) != nullptr; };
    return PassesUndisturbed(
        [&]
        {
            ::PostMessageW(window, WM_SYSCOMMAND, SC_KEYMENU, menu);
            if (!WaitAWhile(isOpen)) return false;
            ::PostMessageW(window, WM_CHAR, item, 1);
            return WaitAWhile(condition);
        });
}

bool PressWithControl(HWND window, char key, const std::function<bool()>& condition)
{
    constexpr BYTE kDown = 0x80;
    const DWORD self = ::GetCurrentThreadId();
    const DWORD thread = ::GetWindowThreadProcessId(window, nullptr);
    if (!::AttachThreadInput(self, thread, TRUE)) return false;
    BYTE released[256] = {};
    BYTE pressed[256] = {};
    pressed[VK_CONTROL] = kDown;
    ::SetKeyboardState(pressed);
    PressKeyInFocus(window, static_cast<WORD>(key));
    const bool fulfilled = WaitUntil(condition);
    ::SetKeyboardState(released);
    ::AttachThreadInput(self, thread, FALSE);
    return fulfilled;
}

void PressKeyInFocus(HWND window, WORD key)
{
    const HWND focus = FocusOf(window);
    PressKey(focus ? focus : window, key);
}

}  // namespace arvmui_test
