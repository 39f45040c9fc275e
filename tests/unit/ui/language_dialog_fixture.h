// Opens the language dialog as a real window on a thread of its own and reads what it shows.
#pragma once

#include "arvmui.h"
#include "support/locale_entry.h"
#include "support/modal_call.h"
#include "support/system_languages.h"

#include <gtest/gtest.h>

#include <initializer_list>
#include <iosfwd>
#include <optional>
#include <string>
#include <vector>

namespace arvmui_test
{

// Those texts of the dialog that follow the selection.
struct DialogTexts
{
    std::wstring title;
    std::wstring prompt;
    std::wstring ok;
    std::wstring cancel;

    bool operator==(const DialogTexts&) const = default;
};
void PrintTo(const DialogTexts& texts, std::ostream* output);

DialogTexts TextsOf(const LocaleEntry& entry);
DialogTexts ReadTexts(HWND dialog);

// What is asked of the dialog.
struct DialogRequest
{
    std::vector<LocaleEntry> entries;
    HWND owner = nullptr;
    const HICON* icons = nullptr;
    std::optional<DWORD> count = {};  // in place of the number of entries
    bool hasAnswer = true;            // whether a buffer is given
    DWORD answerSize = 64;
};

// What became of it.
struct DialogOutcome
{
    BOOL result;
    DWORD error;
    std::wstring answer;  // up to its terminator
    std::wstring buffer;  // with the '#' that stood in it before, also behind its end
};

// Carries the request out on the calling thread.
DialogOutcome ShowDialog(const DialogRequest& request);

// A dialog that is up. It is closed with the object.
class OpenDialog
{
public:
    explicit OpenDialog(const DialogRequest& request);

    // Null when there was none.
    HWND Window() const { return window_; }
    HWND List() const;

    // As the user does.
    void Press(int button) const;
    void Select(int index) const;

    // Waits for the end of the call.
    const DialogOutcome& Outcome();

private:
    DialogOutcome outcome_ = {};
    ModalCall call_;
    HWND window_;
};

// The library's state as far as the dialog looks at it. The system speaks English, and no keyboard is
// installed, unless a test says so.
class LanguageDialogTest : public testing::Test
{
protected:
    LanguageDialogTest();
    ~LanguageDialogTest() override;

    // Primary languages, ascending.
    void InstallKeyboards(std::initializer_list<WORD> languages);

    SystemLanguages languages;

private:
    std::vector<WORD> keyboards_;
    DWORD slot_;
};

}  // namespace arvmui_test
