// The icons of the language dialog: the caller's, and the program's own first one where the caller's are
// missing. This program has one icon, number 300.
#include "support/module_patch.h"
#include "unit/ui/language_dialog_fixture.h"

#include <atomic>

namespace
{

using arvmui_test::DialogRequest;
using arvmui_test::ImportPatch;
using arvmui_test::LanguageDialogTest;
using arvmui_test::MakeEntry;
using arvmui_test::OpenDialog;

std::atomic<int> g_searches{0};

BOOL WINAPI SearchIcons(HMODULE module, const wchar_t* type, ENUMRESNAMEPROCW callback, LONG_PTR context)
{
    ++g_searches;
    return ::EnumResourceNamesExW(module, type, callback, context, 0, 0);
}

BOOL WINAPI FindNoIcons(HMODULE, const wchar_t*, ENUMRESNAMEPROCW, LONG_PTR)
{
    return FALSE;
}

class LanguageDialogIcons : public LanguageDialogTest
{
protected:
    LanguageDialogIcons() { g_searches = 0; }

    static DialogRequest Request(const HICON* icons)
    {
        DialogRequest request = {{MakeEntry(0x0409, L"en-US")}};
        request.icons = icons;
        return request;
    }

    static HICON IconOf(const OpenDialog& dialog, WPARAM size)
    {
        return reinterpret_cast<HICON>(::SendMessageW(dialog.Window(), WM_GETICON, size, 0));
    }

    static void ExpectIcons(const HICON* icons, HICON smallIcon, HICON bigIcon)
    {
        const OpenDialog dialog(Request(icons));
        EXPECT_EQ(IconOf(dialog, ICON_SMALL), smallIcon);
        EXPECT_EQ(IconOf(dialog, ICON_BIG), bigIcon);
    }

    const HICON program_ = ::LoadIconW(::GetModuleHandleW(nullptr), MAKEINTRESOURCEW(300));
    const HICON question_ = ::LoadIconW(nullptr, IDI_QUESTION);
    const HICON hand_ = ::LoadIconW(nullptr, IDI_HAND);
    const ImportPatch search_{::GetModuleHandleW(nullptr), "EnumResourceNamesW", &SearchIcons};
};

TEST_F(LanguageDialogIcons, AreTheCallers)
{
    const HICON icons[] = {question_, hand_};
    ExpectIcons(icons, question_, hand_);
    EXPECT_EQ(g_searches, 0);
}

TEST_F(LanguageDialogIcons, AreTheProgramsWithoutTheCallers)
{
    ASSERT_NE(program_, nullptr);
    ExpectIcons(nullptr, program_, program_);
    EXPECT_GT(g_searches, 0);
}

TEST_F(LanguageDialogIcons, AreTheProgramsWhereBothAreNull)
{
    const HICON icons[] = {nullptr, nullptr};
    ExpectIcons(icons, program_, program_);
}

TEST_F(LanguageDialogIcons, MissingSmallOneIsTheProgramsAlone)
{
    const HICON icons[] = {nullptr, hand_};
    ExpectIcons(icons, program_, hand_);
}

TEST_F(LanguageDialogIcons, MissingBigOneIsTheProgramsAlone)
{
    const HICON icons[] = {question_, nullptr};
    ExpectIcons(icons, question_, program_);
}

TEST_F(LanguageDialogIcons, AreMissingInAProgramWithoutAny)
{
    const ImportPatch none(::GetModuleHandleW(nullptr), "EnumResourceNamesW", &FindNoIcons);
    ExpectIcons(nullptr, nullptr, nullptr);
    const HICON icons[] = {nullptr, hand_};
    ExpectIcons(icons, nullptr, hand_);
}

}  // namespace
