/*
 * The dialogs of languages that are written from right to left: mirrored as a whole, and only those.
 */
#include "dialog_template.h"
#include "resources/resource_ids.h"
#include "support/built_locales.h"

#include <gtest/gtest.h>

#include <cwchar>

namespace
{

using namespace arvmui_test;

constexpr WORD kDialogs[] = {ARVMUI_DIALOG_SETTINGS, ARVMUI_DIALOG_ADD_LANGUAGES};

class MirroredDialogs : public testing::TestWithParam<std::wstring>
{
protected:
    MirroredDialogs()
        : library_(::LoadLibraryExW(BuiltResourceLibrary(GetParam()).c_str(), nullptr, LOAD_LIBRARY_AS_DATAFILE))
    {
    }
    ~MirroredDialogs() override { ::FreeLibrary(library_); }

    bool IsRightToLeft() const
    {
        wchar_t identifier[32] = {};
        ::LoadStringW(library_, ARVMUI_STRING_LANGUAGE_ID, identifier, 32);
        wchar_t layout[8] = {};
        EXPECT_NE(::GetLocaleInfoW(std::wcstoul(identifier, nullptr, 0), LOCALE_IREADINGLAYOUT, layout, 8), 0);
        return layout[0] == L'1';  // "0" is from left to right
    }

    HWND Create(WORD dialog) const
    {
        const auto ignore = [](HWND, UINT, WPARAM, LPARAM) -> INT_PTR { return FALSE; };
        return ::CreateDialogParamW(library_, MAKEINTRESOURCEW(dialog), nullptr, ignore, 0);
    }

    HMODULE library_;
};

TEST_P(MirroredDialogs, TemplatesAreMirroredWhereTheLanguageIs)
{
    const DWORD expected = IsRightToLeft() ? WS_EX_LAYOUTRTL : 0;
    for (const WORD dialog : kDialogs)
        EXPECT_EQ(ReadDialogTemplate(library_, dialog).extendedStyle, expected) << dialog;
}

TEST_P(MirroredDialogs, ControlsAreMirroredWithTheirDialog)
{
    const bool isRightToLeft = IsRightToLeft();
    for (const WORD dialog : kDialogs)
    {
        const HWND window = Create(dialog);
        ASSERT_NE(window, nullptr) << dialog;
        for (HWND control = ::GetWindow(window, GW_CHILD); control != nullptr;
             control = ::GetWindow(control, GW_HWNDNEXT))
        {
            const LONG_PTR style = ::GetWindowLongPtrW(control, GWL_EXSTYLE);
            EXPECT_EQ((style & WS_EX_LAYOUTRTL) != 0, isRightToLeft) << dialog << ' ' << ::GetDlgCtrlID(control);
            EXPECT_EQ(style & (WS_EX_RTLREADING | WS_EX_RIGHT | WS_EX_LEFTSCROLLBAR), 0)
                << dialog << ' ' << ::GetDlgCtrlID(control);
        }
        ::DestroyWindow(window);
    }
}

TEST_P(MirroredDialogs, OkComesBeforeCancelInTheDirectionOfReading)
{
    const bool isRightToLeft = IsRightToLeft();
    for (const WORD dialog : kDialogs)
    {
        const HWND window = Create(dialog);
        ASSERT_NE(window, nullptr) << dialog;
        RECT ok = {};
        RECT cancel = {};
        ::GetWindowRect(::GetDlgItem(window, IDOK), &ok);
        ::GetWindowRect(::GetDlgItem(window, IDCANCEL), &cancel);
        ::DestroyWindow(window);
        EXPECT_EQ(ok.left > cancel.left, isRightToLeft) << dialog;
    }
}

INSTANTIATE_TEST_SUITE_P(Locales, MirroredDialogs, testing::ValuesIn(BuiltLocales()), LocaleTestName);

}  // namespace
