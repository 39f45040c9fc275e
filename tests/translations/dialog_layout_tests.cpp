/*
 * The dialogs in the resource libraries: the controls that the code expects, where they stand, and that
 * all languages have the same ones.
 */
#include "dialog_template.h"
#include "resources/resource_ids.h"
#include "support/built_locales.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <map>

namespace
{

using namespace arvmui_test;

constexpr std::array<WORD, 2> kDialogs = {ARVMUI_DIALOG_SETTINGS, ARVMUI_DIALOG_ADD_LANGUAGES};
constexpr DWORD kLabel = 0xFFFF;

/* What turns a window from left to right, the one difference that a language may make. */
constexpr DWORD kDirection = WS_EX_LAYOUTRTL | WS_EX_RTLREADING | WS_EX_RIGHT | WS_EX_LEFTSCROLLBAR;

/* In the order in which the Tab key visits them. */
const std::map<WORD, std::vector<std::pair<DWORD, std::wstring>>> kControls = {
    {ARVMUI_DIALOG_SETTINGS,
        {{kLabel, L"Static"}, {302, L"ListBox"}, {307, L"Button"}, {306, L"Button"}, {304, L"Button"}, {305, L"Button"},
            {IDOK, L"Button"}, {IDCANCEL, L"Button"}, {303, L"Button"}}},
    {ARVMUI_DIALOG_ADD_LANGUAGES, {{kLabel, L"Static"}, {311, L"ListBox"}, {IDOK, L"Button"}, {IDCANCEL, L"Button"}}},
};

bool Overlap(const DialogRect& a, const DialogRect& b)
{
    return a.x < b.x + b.width && b.x < a.x + a.width && a.y < b.y + b.height && b.y < a.y + a.height;
}

class DialogLayout : public testing::TestWithParam<std::wstring>
{
protected:
    static DialogTemplate Read(const std::wstring& locale, WORD dialog)
    {
        const HMODULE library =
            ::LoadLibraryExW(BuiltResourceLibrary(locale).c_str(), nullptr, LOAD_LIBRARY_AS_DATAFILE);
        const DialogTemplate result = ReadDialogTemplate(library, dialog);
        ::FreeLibrary(library);
        return result;
    }
    static DialogTemplate Read(WORD dialog) { return Read(GetParam(), dialog); }
};

TEST_P(DialogLayout, HasTheControlsInTabOrder)
{
    for (const WORD dialog : kDialogs)
    {
        std::vector<std::pair<DWORD, std::wstring>> controls;
        for (const DialogControl& control : Read(dialog).controls) controls.emplace_back(control.id, control.className);
        EXPECT_EQ(controls, kControls.at(dialog)) << dialog;
    }
}

TEST_P(DialogLayout, ListsTakeSeveralSelectionsScrollAndStayInOrder)
{
    int lists = 0;
    for (const WORD dialog : kDialogs)
    {
        for (const DialogControl& control : Read(dialog).controls)
        {
            if (control.className != L"ListBox") continue;
            ++lists;
            EXPECT_NE(control.style & (LBS_EXTENDEDSEL | LBS_MULTIPLESEL), 0u) << dialog;
            EXPECT_NE(control.style & WS_VSCROLL, 0u) << dialog;
            EXPECT_NE(control.style & LBS_NOTIFY, 0u) << dialog;
            EXPECT_EQ(control.style & (LBS_SORT | LBS_NOSEL | LBS_MULTICOLUMN | LBS_OWNERDRAWFIXED | LBS_NODATA), 0u)
                << dialog;
        }
    }
    EXPECT_EQ(lists, 2);
}

TEST_P(DialogLayout, OkAloneIsTheDefaultButton)
{
    for (const WORD dialog : kDialogs)
    {
        for (const DialogControl& control : Read(dialog).controls)
        {
            if (control.className != L"Button") continue;
            const DWORD expected = control.id == IDOK ? BS_DEFPUSHBUTTON : BS_PUSHBUTTON;
            EXPECT_EQ(control.style & BS_TYPEMASK, expected) << dialog << ' ' << control.id;
        }
    }
}

TEST_P(DialogLayout, AllButLabelsStopTheTabKeyAndAllAreVisibleAndEnabled)
{
    for (const WORD dialog : kDialogs)
    {
        for (const DialogControl& control : Read(dialog).controls)
        {
            EXPECT_EQ((control.style & WS_TABSTOP) != 0, control.id != kLabel) << dialog << ' ' << control.id;
            EXPECT_NE(control.style & WS_VISIBLE, 0u) << dialog << ' ' << control.id;
            EXPECT_EQ(control.style & WS_DISABLED, 0u) << dialog << ' ' << control.id;
        }
    }
}

TEST_P(DialogLayout, DialogsHaveCaptionSystemMenuAndTheSystemsFont)
{
    for (const WORD dialog : kDialogs)
    {
        const DialogTemplate read = Read(dialog);
        EXPECT_EQ(read.style & (WS_CAPTION | WS_SYSMENU | WS_POPUP), DWORD{WS_CAPTION | WS_SYSMENU | WS_POPUP});
        EXPECT_EQ(read.style & (DS_MODALFRAME | DS_SHELLFONT), DWORD{DS_MODALFRAME | DS_SHELLFONT}) << dialog;
        EXPECT_EQ(read.style & (WS_CHILD | WS_DISABLED), 0u) << dialog;
        EXPECT_EQ(read.fontName, L"MS Shell Dlg") << dialog;
        EXPECT_EQ(read.fontPoints, 8) << dialog;
    }
}

TEST_P(DialogLayout, ControlsLieInsideTheDialogAndApart)
{
    for (const WORD dialog : kDialogs)
    {
        const DialogTemplate read = Read(dialog);
        for (size_t i = 0; i < read.controls.size(); ++i)
        {
            const DialogRect& place = read.controls[i].place;
            EXPECT_GT(place.width, 0) << dialog << ' ' << i;
            EXPECT_GT(place.height, 0) << dialog << ' ' << i;
            EXPECT_GE(place.x, 0) << dialog << ' ' << i;
            EXPECT_GE(place.y, 0) << dialog << ' ' << i;
            EXPECT_LE(place.x + place.width, read.place.width) << dialog << ' ' << i;
            EXPECT_LE(place.y + place.height, read.place.height) << dialog << ' ' << i;
            for (size_t k = 0; k < i; ++k)
                EXPECT_FALSE(Overlap(place, read.controls[k].place)) << dialog << ' ' << i << ' ' << k;
        }
    }
}

TEST_P(DialogLayout, IsThatOfTheEnglishOne)
{
    for (const WORD dialog : kDialogs)
    {
        const DialogTemplate own = Read(dialog);
        const DialogTemplate english = Read(L"en", dialog);
        EXPECT_EQ(own.style, english.style) << dialog;
        EXPECT_EQ(own.extendedStyle & ~kDirection, english.extendedStyle & ~kDirection) << dialog;
        EXPECT_EQ(own.place, english.place) << dialog;
        ASSERT_EQ(own.controls.size(), english.controls.size()) << dialog;
        for (size_t i = 0; i < own.controls.size(); ++i)
        {
            const DialogControl& a = own.controls[i];
            const DialogControl& b = english.controls[i];
            EXPECT_EQ(a.id, b.id) << dialog << ' ' << i;
            EXPECT_EQ(a.style, b.style) << dialog << ' ' << i;
            EXPECT_EQ(a.extendedStyle & ~kDirection, b.extendedStyle & ~kDirection) << dialog << ' ' << i;
            EXPECT_EQ(a.place, b.place) << dialog << ' ' << i;
        }
    }
}

TEST_P(DialogLayout, HasNoOtherDialogs)
{
    const HMODULE library =
        ::LoadLibraryExW(BuiltResourceLibrary(GetParam()).c_str(), nullptr, LOAD_LIBRARY_AS_DATAFILE);
    ASSERT_NE(library, nullptr);
    std::vector<WORD> dialogs;
    ::EnumResourceNamesW(
        library, RT_DIALOG,
        [](HMODULE, LPCWSTR, LPWSTR name, LONG_PTR context) -> BOOL
        {
            reinterpret_cast<std::vector<WORD>*>(context)->push_back(LOWORD(reinterpret_cast<ULONG_PTR>(name)));
            return TRUE;
        },
        reinterpret_cast<LONG_PTR>(&dialogs));
    ::FreeLibrary(library);
    EXPECT_THAT(dialogs, testing::UnorderedElementsAreArray(kDialogs));
}

INSTANTIATE_TEST_SUITE_P(Locales, DialogLayout, testing::ValuesIn(BuiltLocales()), LocaleTestName);

}  // namespace
