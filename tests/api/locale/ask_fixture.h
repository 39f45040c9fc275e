// A search that meets "ask" while nobody has been asked yet: what it offers, and the dialog that it shows.
#pragma once

#include "arvmui.h"
#include "support/locale_entry.h"
#include "support/modal_call.h"
#include "support/module_patch.h"
#include "support/system_languages.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace arvmui_test
{

// What the descriptor's block holds while an installation asks.
struct InstallerBlock
{
    void* reserved;
    HICON smallIcon;
    HICON largeIcon;
    DWORD count;
    const LocaleEntry* entries;
};
static_assert(sizeof(InstallerBlock) == ARVMUI_INSTALLER_CONTEXT_BYTES);

// What a search offered, each candidate followed by '|', a null candidate as "(null)|".
struct Search
{
    DWORD result = 0;
    std::wstring offered;
};

// A consumer that accepts one candidate; nothing if it is empty, the null candidate if it is "(null)".
Search SearchFor(const wchar_t* list, const std::wstring& accepted = L"");

// A search that shows the dialog, which its thread waits for.
class AskingSearch
{
public:
    explicit AskingSearch(const std::wstring& list, const std::wstring& accepted = L"");

    // Null when there was none.
    HWND Dialog() const { return dialog_; }
    HWND List() const;

    void Choose(int index) const;
    void Refuse() const;

    // What became of it, once it has ended.
    const Search& Outcome();

private:
    Search search_;
    ModalCall call_;
    HWND dialog_;
};

// A process in which nothing is known about languages yet. An installation offers three.
class AskTest : public testing::Test
{
protected:
    AskTest();
    ~AskTest() override;

    static void SetHint(unsigned slot, const std::wstring& text);
    static std::wstring Hint(unsigned slot) { return ARVMUI_GetDescriptor()->LocaleHintTable[slot]; }

    void Offer(const std::vector<LocaleEntry>& entries, HICON smallIcon = nullptr, HICON largeIcon = nullptr);

    SystemLanguages languages;

private:
    std::vector<LocaleEntry> entries_;
};

// Such a process in which the dialog ends by itself.
class AnsweredAskTest : public AskTest
{
protected:
    AnsweredAskTest();

    // From here on: the number of an entry, 0 for a refusal, -1 where the dialog cannot be shown.
    static void Answer(INT_PTR answer);

    // How often the dialog was asked for.
    static int Dialogs();

private:
    const ImportPatch show_;
};

}  // namespace arvmui_test
