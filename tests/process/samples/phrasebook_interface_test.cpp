// The phrasebook's resource libraries as files: every language has the whole interface, translated, and
// its keys do not collide.
#include "phrasebook_ids.h"
#include "process/samples/phrasebook_fixture.h"
#include "support/child_process.h"

#include <commctrl.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cwctype>
#include <map>
#include <set>
#include <string>
#include <vector>

namespace arvmui_test
{
namespace
{

class InterfaceFile
{
public:
    explicit InterfaceFile(const std::wstring& locale)
        : module_(::LoadLibraryExW(
            (PhrasebookFolder() / L"resource" / locale / L"phraseUI.DLL").c_str(), nullptr, LOAD_LIBRARY_AS_DATAFILE))
    {
    }
    ~InterfaceFile() { ::FreeLibrary(module_); }
    InterfaceFile(const InterfaceFile&) = delete;
    InterfaceFile& operator=(const InterfaceFile&) = delete;

    HMODULE Module() const { return module_; }

private:
    HMODULE module_;
};

// The letter behind the '&', in upper case; 0 without one.
wchar_t AccessKey(const std::wstring& text)
{
    const size_t at = text.find(L'&');
    return at == std::wstring::npos || at + 1 == text.size() ? L'\0'
                                                             : static_cast<wchar_t>(std::towupper(text[at + 1]));
}

// Items with the same access key, or without one.
std::vector<std::wstring> Unreachable(const std::vector<std::wstring>& texts)
{
    std::set<wchar_t> keys = {L'\0'};
    std::vector<std::wstring> unreachable;
    for (const std::wstring& text : texts)
        if (!keys.insert(AccessKey(text)).second) unreachable.push_back(text);
    return unreachable;
}

struct Menu
{
    std::vector<std::wstring> popups;
    std::vector<std::vector<std::wstring>> items;  // of each popup, separators apart
    std::map<UINT, std::wstring> commands;
    std::vector<UINT> order;  // the commands, a popup's end as 0
};

std::wstring ItemText(HMENU menu, int position)
{
    wchar_t text[128] = {};
    ::GetMenuStringW(menu, static_cast<UINT>(position), text, 128, MF_BYPOSITION);
    return text;
}

Menu ReadMenu(HMODULE module)
{
    Menu result;
    const HMENU menu = ::LoadMenuW(module, MAKEINTRESOURCEW(MENU_ID_MAIN));
    for (int i = 0; i < ::GetMenuItemCount(menu); ++i)
    {
        const HMENU popup = ::GetSubMenu(menu, i);
        result.popups.push_back(ItemText(menu, i));
        result.items.emplace_back();
        for (int j = 0; j < ::GetMenuItemCount(popup); ++j)
        {
            const UINT command = ::GetMenuItemID(popup, j);
            result.order.push_back(command);
            if (command == 0) continue;  // a separator
            result.commands[command] = ItemText(popup, j);
            result.items.back().push_back(ItemText(popup, j));
        }
        result.order.push_back(0);
    }
    ::DestroyMenu(menu);
    return result;
}

// Keys by command, as menus name them: L"F5", L"+Q" for one with the control key.
std::map<UINT, std::wstring> ReadKeys(HMODULE module)
{
    const HACCEL table = ::LoadAcceleratorsW(module, MAKEINTRESOURCEW(ACCELERATORS_ID_MAIN));
    std::vector<ACCEL> entries(static_cast<size_t>(::CopyAcceleratorTableW(table, nullptr, 0)));
    ::CopyAcceleratorTableW(table, entries.data(), static_cast<int>(entries.size()));
    ::DestroyAcceleratorTable(table);
    std::map<UINT, std::wstring> keys;
    for (const ACCEL& entry : entries)
    {
        const std::wstring key = entry.key >= VK_F1 && entry.key <= VK_F12
                                     ? L"F" + std::to_wstring(entry.key - VK_F1 + 1)
                                     : std::wstring(1, static_cast<wchar_t>(entry.key));
        keys[entry.cmd] = (entry.fVirt & FCONTROL ? L"+" : L"") + key;
    }
    return keys;
}

struct Dialog
{
    std::wstring title;
    std::vector<std::wstring> texts;  // of the controls that have one
    std::vector<int> ids;
    std::vector<std::wstring> classes;
};

BOOL CALLBACK ReadControl(HWND control, LPARAM context)
{
    Dialog& dialog = *reinterpret_cast<Dialog*>(context);
    wchar_t className[64] = {};
    ::GetClassNameW(control, className, 64);
    dialog.ids.push_back(::GetDlgCtrlID(control));
    dialog.classes.emplace_back(className);
    const std::wstring text = WindowText(control);
    if (!text.empty()) dialog.texts.push_back(text);
    return TRUE;
}

INT_PTR CALLBACK IgnoreMessages(HWND, UINT, WPARAM, LPARAM)
{
    return FALSE;
}

// From the hidden window that the template makes.
Dialog ReadDialog(HMODULE module, WORD id)
{
    Dialog dialog;
    const HWND window = ::CreateDialogParamW(module, MAKEINTRESOURCEW(id), nullptr, IgnoreMessages, 0);
    if (!window) return dialog;
    dialog.title = WindowText(window);
    ::EnumChildWindows(window, ReadControl, reinterpret_cast<LPARAM>(&dialog));
    ::DestroyWindow(window);
    return dialog;
}

class PhrasebookInterface : public testing::TestWithParam<PhrasebookLanguage>
{
protected:
    static void SetUpTestSuite()
    {
        INITCOMMONCONTROLSEX controls = {sizeof(controls), ICC_BAR_CLASSES};
        ::InitCommonControlsEx(&controls);
        WNDCLASSW windowClass = {};
        windowClass.style = CS_GLOBALCLASS;
        windowClass.lpfnWndProc = ::DefDlgProcW;
        windowClass.cbWndExtra = DLGWINDOWEXTRA;
        windowClass.hInstance = ::GetModuleHandleW(nullptr);
        windowClass.lpszClassName = TEXT(MAIN_WINDOW_CLASS);
        ::RegisterClassW(&windowClass);
    }

    void SetUp() override
    {
        ASSERT_NE(file.Module(), nullptr);
        ASSERT_NE(english.Module(), nullptr);
    }

    bool IsEnglish() const { return locale == L"en"; }

    const std::wstring locale = GetParam().folder;
    const InterfaceFile file{locale};
    const InterfaceFile english{L"en"};
};

INSTANTIATE_TEST_SUITE_P(
    Phrasebook, PhrasebookInterface, testing::ValuesIn(kPhrasebookLanguages), testing::PrintToStringParamName());

TEST_P(PhrasebookInterface, NamesItsLanguage)
{
    EXPECT_EQ(PhrasebookText(locale, TEXT_ID_LOCALE_TAG), GetParam().tag);
    EXPECT_EQ(PhrasebookText(locale, TEXT_ID_LANGUAGE_ID), LibraryText(locale, TEXT_ID_LANGUAGE_ID));
    EXPECT_EQ(PhrasebookText(locale, TEXT_ID_TITLE), GetParam().title);
}

TEST_P(PhrasebookInterface, HasEveryTextWithItsPlaceholders)
{
    for (UINT id = TEXT_ID_LANGUAGE_NAME; id <= TEXT_ID_ABOUT; ++id)
    {
        const std::wstring text = PhrasebookText(locale, id);
        const std::wstring original = PhrasebookText(L"en", id);
        EXPECT_FALSE(text.empty()) << id;
        for (const wchar_t* const placeholder : {L"%1", L"%2", L"%"})
            EXPECT_EQ(text.find(placeholder) == std::wstring::npos, original.find(placeholder) == std::wstring::npos)
                << id << Utf8FromWide(placeholder);
    }
}

// As many as in English, without a gap, and none twice.
TEST_P(PhrasebookInterface, HasEveryPhrase)
{
    std::set<std::wstring> phrases;
    UINT id = TEXT_ID_FIRST_PHRASE;
    for (; !PhrasebookText(L"en", id).empty(); ++id) phrases.insert(PhrasebookText(locale, id));
    EXPECT_EQ(phrases.size(), id - TEXT_ID_FIRST_PHRASE);
    EXPECT_EQ(phrases.count(L""), 0u);
    EXPECT_EQ(PhrasebookText(locale, id), L"");
}

TEST_P(PhrasebookInterface, IsTranslated)
{
    if (IsEnglish()) return;
    for (UINT id = TEXT_ID_LANGUAGE_NAME; id <= TEXT_ID_ABOUT; ++id)
        EXPECT_NE(PhrasebookText(locale, id), PhrasebookText(L"en", id)) << id;
    for (UINT id = TEXT_ID_FIRST_PHRASE; !PhrasebookText(L"en", id).empty(); ++id)
        EXPECT_NE(PhrasebookText(locale, id), PhrasebookText(L"en", id)) << id;
    const Menu menu = ReadMenu(file.Module());
    const Menu original = ReadMenu(english.Module());
    for (size_t i = 0; i < menu.popups.size(); ++i) EXPECT_NE(menu.popups[i], original.popups[i]);
    for (const auto& [command, text] : menu.commands) EXPECT_NE(text, original.commands.at(command));
    EXPECT_NE(ReadDialog(file.Module(), DIALOG_ID_TARGET).title, ReadDialog(english.Module(), DIALOG_ID_TARGET).title);
}

TEST_P(PhrasebookInterface, MenuHasTheSameCommandsInEveryLanguage)
{
    const std::vector<UINT> order = ReadMenu(file.Module()).order;
    EXPECT_THAT(order, testing::IsSupersetOf({UINT{COMMAND_ID_QUESTION}, UINT{COMMAND_ID_EXIT}, UINT{COMMAND_ID_TARGET},
                           UINT{COMMAND_ID_PREFERRED_LANGUAGES}, UINT{COMMAND_ID_ABOUT}}));
    EXPECT_EQ(order, ReadMenu(english.Module()).order);
}

TEST_P(PhrasebookInterface, EveryMenuItemCanBeReachedByItsAccessKey)
{
    for (const auto& items : ReadMenu(file.Module()).items) EXPECT_THAT(Unreachable(items), testing::IsEmpty());
}

// The labels above list and translation count, too: their keys work in the same window.
TEST_P(PhrasebookInterface, AccessKeysOfTheMainWindowDoNotCollide)
{
    std::vector<std::wstring> texts = ReadMenu(file.Module()).popups;
    const Dialog window = ReadDialog(file.Module(), DIALOG_ID_MAIN);
    ASSERT_EQ(window.texts.size(), size_t{1}) << "the label of the phrases";
    texts.push_back(window.texts.front());
    texts.push_back(PhrasebookText(locale, TEXT_ID_TRANSLATION_LABEL));
    EXPECT_THAT(Unreachable(texts), testing::IsEmpty());
}

TEST_P(PhrasebookInterface, AccessKeysOfTheDialogDoNotCollide)
{
    const Dialog dialog = ReadDialog(file.Module(), DIALOG_ID_TARGET);
    ASSERT_EQ(dialog.texts.size(), size_t{3}) << "label and buttons";
    EXPECT_THAT(Unreachable(dialog.texts), testing::IsEmpty());
}

TEST_P(PhrasebookInterface, WindowsHaveTheSameControlsInEveryLanguage)
{
    for (const WORD id : {WORD{DIALOG_ID_MAIN}, WORD{DIALOG_ID_TARGET}})
    {
        const Dialog dialog = ReadDialog(file.Module(), id);
        const Dialog original = ReadDialog(english.Module(), id);
        EXPECT_FALSE(dialog.title.empty());
        EXPECT_GE(dialog.ids.size(), size_t{4});
        EXPECT_EQ(dialog.ids, original.ids);
        EXPECT_EQ(dialog.classes, original.classes);
    }
}

// What a menu item shows behind the tab is what the accelerator table has.
TEST_P(PhrasebookInterface, MenuNamesTheKeys)
{
    const std::map<UINT, std::wstring> keys = ReadKeys(file.Module());
    for (const auto& [command, text] : ReadMenu(file.Module()).commands)
    {
        ASSERT_EQ(keys.count(command), 1u) << command;
        const size_t tab = text.find(L'\t');
        ASSERT_NE(tab, std::wstring::npos) << command;
        const std::wstring shown = text.substr(tab + 1);
        const size_t plus = shown.find(L'+');
        EXPECT_EQ(plus == std::wstring::npos ? shown : shown.substr(plus), keys.at(command));
    }
}

TEST_P(PhrasebookInterface, KeysDoNotCollide)
{
    const std::map<UINT, std::wstring> keys = ReadKeys(file.Module());
    std::set<std::wstring> different;
    for (const auto& [command, key] : keys) different.insert(key);
    EXPECT_EQ(different.size(), keys.size());
    EXPECT_EQ(keys.size(), size_t{5});
}

}  // namespace
}  // namespace arvmui_test
