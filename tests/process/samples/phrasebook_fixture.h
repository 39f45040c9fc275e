// The phrasebook as a user has it: installed in a folder, started, worked through its windows.
#pragma once

#include "support/dialog_window.h"

#include <windows.h>

#include <filesystem>
#include <functional>
#include <ostream>
#include <string>

namespace arvmui_test
{

// A language that the phrasebook speaks. Keys are letters as they stand in the menus.
struct PhrasebookLanguage
{
    const wchar_t* folder;
    const wchar_t* tag;
    const wchar_t* title;
    wchar_t fileMenu;
    wchar_t exitItem;
    wchar_t languagesMenu;
    wchar_t preferredItem;
    char exitKey;  // with the control key, as the next ones
    char targetKey;
    char preferredKey;
};

extern const PhrasebookLanguage kPhrasebookLanguages[5];
const PhrasebookLanguage& LanguageOf(const std::wstring& folder);

// GoogleTest names the tests after this.
void PrintTo(const PhrasebookLanguage& language, std::ostream* output);

// The folder of the installation that the build has made.
std::filesystem::path PhrasebookFolder();

// A text of a resource library, `file` being L"phraseUI.DLL" or L"arvmuiUI.DLL"; empty where there is none.
std::wstring InstalledText(const std::wstring& locale, const wchar_t* file, UINT id);
std::wstring PhrasebookText(const std::wstring& locale, UINT id);
std::wstring LibraryText(const std::wstring& locale, UINT id);

// A text with its placeholders %1 and %2 filled in.
std::wstring Filled(std::wstring text, const std::wstring& first, const std::wstring& second = {});

// The program, running; ended with the object if it has not ended by itself.
class Phrasebook
{
public:
    explicit Phrasebook(const std::wstring& arguments, const std::filesystem::path& folder = PhrasebookFolder());
    ~Phrasebook();
    Phrasebook(const Phrasebook&) = delete;
    Phrasebook& operator=(const Phrasebook&) = delete;

    // The main window; null when the program ends without one or none appears in a while.
    HWND Window() const;

    // A box that the program shows before it has a window.
    HWND WaitForBox() const;

    // The exit code once the program has ended.
    DWORD ExitCode() const;

    DWORD ProcessId() const { return process_.dwProcessId; }

private:
    HWND WaitFor(const std::function<HWND()>& find) const;

    PROCESS_INFORMATION process_ = {};
};

// The dialog or box that belongs to a window; null when none appears in a while.
HWND WaitForDialogOf(HWND owner);

// A command as the menu gives it; returns at once, because a command may show a dialog.
void GiveCommand(HWND window, WORD command);

// Opens a menu by its access key and chooses an item in it by its own, until the condition holds; false
// when it never does. Once may not be enough: the menu closes when another program takes the foreground.
bool ChooseFromMenu(HWND window, wchar_t menu, wchar_t item, const std::function<bool()>& condition);

// A key together with the control key, held down until the condition holds; false when it never does.
bool PressWithControl(HWND window, char key, const std::function<bool()>& condition);

// A key for the window of the program that has the keyboard.
void PressKeyInFocus(HWND window, WORD key);

}  // namespace arvmui_test
