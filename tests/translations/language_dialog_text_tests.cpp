/*
 * The texts with which a resource library fills the language dialog, whose template lies in the DLL:
 * short enough for its controls.
 */
#include "resources/resource_ids.h"
#include "support/built_locales.h"

#include <gtest/gtest.h>

#include <windows.h>

namespace
{

using namespace arvmui_test;

struct Place
{
    int control;
    UINT text;
};

class LanguageDialogTexts : public testing::TestWithParam<std::wstring>
{
protected:
    void SetUp() override
    {
        dll_ = ::LoadLibraryExW((TestProgramFolder() / L"arvmui64.dll").c_str(), nullptr, LOAD_LIBRARY_AS_DATAFILE);
        library_ = ::LoadLibraryExW(BuiltResourceLibrary(GetParam()).c_str(), nullptr, LOAD_LIBRARY_AS_DATAFILE);
        const auto ignore = [](HWND, UINT, WPARAM, LPARAM) -> INT_PTR { return FALSE; };
        dialog_ = ::CreateDialogParamW(dll_, MAKEINTRESOURCEW(ARVMUI_DIALOG_LANGUAGE), nullptr, ignore, 0);
        ASSERT_NE(dialog_, nullptr);
    }

    void TearDown() override
    {
        ::DestroyWindow(dialog_);
        ::FreeLibrary(library_);
        ::FreeLibrary(dll_);
    }

    std::wstring Load(UINT id) const
    {
        wchar_t text[256] = {};
        ::LoadStringW(library_, id, text, 256);
        return text;
    }

    /* Room for a text inside a control, and what the text needs in lines of that width. */
    SIZE Room(int control) const
    {
        RECT client = {};
        ::GetClientRect(::GetDlgItem(dialog_, control), &client);
        return {client.right, client.bottom};
    }

    SIZE Needed(const std::wstring& text, LONG width) const
    {
        const HDC screen = ::GetDC(nullptr);
        const HFONT font = reinterpret_cast<HFONT>(::SendMessageW(dialog_, WM_GETFONT, 0, 0));
        const HGDIOBJ previous = ::SelectObject(screen, font);
        RECT bounds = {0, 0, width, 0};
        ::DrawTextW(screen, text.c_str(), -1, &bounds, DT_CALCRECT | DT_WORDBREAK | DT_NOPREFIX);
        ::SelectObject(screen, previous);
        ::ReleaseDC(nullptr, screen);
        return {bounds.right, bounds.bottom};
    }

    HMODULE dll_ = nullptr;
    HMODULE library_ = nullptr;
    HWND dialog_ = nullptr;
};

TEST_P(LanguageDialogTexts, PromptFitsIntoItsLines)
{
    const SIZE room = Room(ARVMUI_CONTROL_LANGUAGE_PROMPT);
    const SIZE needed = Needed(Load(ARVMUI_STRING_LANGUAGE_DIALOG_TEXT), room.cx);
    EXPECT_LE(needed.cx, room.cx);
    EXPECT_LE(needed.cy, room.cy);
}

TEST_P(LanguageDialogTexts, ButtonLabelsFitTheirButtons)
{
    constexpr Place kButtons[] = {{IDOK, ARVMUI_STRING_BUTTON_OK}, {IDCANCEL, ARVMUI_STRING_BUTTON_CANCEL}};
    RECT borders = {0, 0, 4, 0};
    ASSERT_TRUE(::MapDialogRect(dialog_, &borders));
    for (const Place& button : kButtons)
        EXPECT_LE(Needed(Load(button.text), 10000).cx + borders.right, Room(button.control).cx) << button.control;
}

INSTANTIATE_TEST_SUITE_P(Locales, LanguageDialogTexts, testing::ValuesIn(BuiltLocales()), LocaleTestName);

}  // namespace
