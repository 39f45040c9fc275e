// The language dialog without a mouse.
#include "resources/resource_ids.h"
#include "support/dialog_controls.h"
#include "support/dialog_window.h"
#include "unit/ui/language_dialog_fixture.h"

namespace
{

using arvmui_test::ComboSelection;
using arvmui_test::DialogRequest;
using arvmui_test::LanguageDialogTest;
using arvmui_test::MakeEntry;
using arvmui_test::OpenDialog;
using arvmui_test::PassesUndisturbed;
using arvmui_test::PressKey;
using arvmui_test::ReadTexts;
using arvmui_test::SetText;
using arvmui_test::TextsOf;
using arvmui_test::WaitForFocus;
using arvmui_test::WaitUntil;

class LanguageDialogKeyboard : public LanguageDialogTest
{
protected:
    static DialogRequest Request()
    {
        DialogRequest request = {{MakeEntry(0x0407, L"de-DE"), MakeEntry(0x0409, L"en-US"), MakeEntry(0x040C, L"fr-FR"),
            MakeEntry(0x0410, L"it-IT")}};
        SetText(request.entries[0].NativeName, L"Deutsch");
        SetText(request.entries[1].NativeName, L"English");
        SetText(request.entries[2].NativeName, L"Fran\u00e7ais");
        SetText(request.entries[3].NativeName, L"Italiano");
        return request;
    }

    static void ExpectSelected(const OpenDialog& dialog, size_t index)
    {
        const LocaleEntry entry = Request().entries[index];
        EXPECT_TRUE(WaitUntil([&] { return ReadTexts(dialog.Window()) == TextsOf(entry); }))
            << testing::PrintToString(entry.Locale);
        EXPECT_EQ(ComboSelection(dialog.List()), static_cast<LRESULT>(index));
    }

    static HWND Control(const OpenDialog& dialog, int id) { return ::GetDlgItem(dialog.Window(), id); }
};

TEST_F(LanguageDialogKeyboard, ArrowsSelectAndTheDialogSpeaksTheNewLanguage)
{
    const OpenDialog dialog(Request());
    PressKey(dialog.List(), VK_DOWN);
    ExpectSelected(dialog, 2);
    PressKey(dialog.List(), VK_DOWN);
    ExpectSelected(dialog, 3);
    PressKey(dialog.List(), VK_UP);
    ExpectSelected(dialog, 2);
    PressKey(dialog.List(), VK_HOME);
    ExpectSelected(dialog, 0);
    PressKey(dialog.List(), VK_END);
    ExpectSelected(dialog, 3);
}

TEST_F(LanguageDialogKeyboard, FirstLetterSelects)
{
    const OpenDialog dialog(Request());
    arvmui_test::TypeCharacter(dialog.List(), L'f');
    ExpectSelected(dialog, 2);
}

TEST_F(LanguageDialogKeyboard, EnterAnswersAndEscapeRefuses)
{
    OpenDialog answered(Request());
    PressKey(answered.List(), VK_DOWN);
    PressKey(answered.List(), VK_RETURN);
    EXPECT_EQ(answered.Outcome().answer, L"fr-FR");

    OpenDialog refused(Request());
    PressKey(refused.List(), VK_DOWN);
    PressKey(refused.List(), VK_ESCAPE);
    EXPECT_EQ(refused.Outcome().result, TRUE);
    EXPECT_EQ(refused.Outcome().answer, L"");
}

TEST_F(LanguageDialogKeyboard, EnterAndEscapeCloseAnOpenListFirst)
{
    const auto opensAndCloses = [](const OpenDialog& dialog, WORD key)
    {
        const auto isOpen = [&] { return ::SendMessageW(dialog.List(), CB_GETDROPPEDSTATE, 0, 0) != FALSE; };
        PressKey(dialog.List(), VK_F4);
        if (!WaitUntil(isOpen)) return false;
        PressKey(dialog.List(), key);
        return WaitUntil([&] { return !isOpen(); }) && ::IsWindow(dialog.Window());
    };
    // A list closes by itself when another window takes the keyboard.
    EXPECT_TRUE(PassesUndisturbed(
        [&]
        {
            OpenDialog dialog(Request());
            if (!opensAndCloses(dialog, VK_RETURN) || !opensAndCloses(dialog, VK_ESCAPE)) return false;
            PressKey(dialog.List(), VK_RETURN);
            return dialog.Outcome().answer == L"en-US";
        }));
}

// The order in which the Tab key visits the controls, without the key: keys need the foreground.
TEST_F(LanguageDialogKeyboard, TabVisitsTheListThenOkThenCancel)
{
    const OpenDialog dialog(Request());
    const auto next = [&](HWND control) { return ::GetNextDlgTabItem(dialog.Window(), control, FALSE); };
    EXPECT_EQ(next(nullptr), dialog.List());
    EXPECT_EQ(next(dialog.List()), Control(dialog, IDOK));
    EXPECT_EQ(next(Control(dialog, IDOK)), Control(dialog, IDCANCEL));
    EXPECT_EQ(next(Control(dialog, IDCANCEL)), dialog.List());
}

TEST_F(LanguageDialogKeyboard, TabPassesOverOkInAPreview)
{
    DialogRequest request = Request();
    request.answerSize = 0;
    const OpenDialog dialog(request);
    EXPECT_EQ(::GetNextDlgTabItem(dialog.Window(), dialog.List(), FALSE), Control(dialog, IDCANCEL));
}

TEST_F(LanguageDialogKeyboard, OkIsTheDefaultButton)
{
    const OpenDialog dialog(Request());
    const LRESULT answer = ::SendMessageW(dialog.Window(), DM_GETDEFID, 0, 0);
    EXPECT_EQ(HIWORD(answer), DC_HASDEFID);
    EXPECT_EQ(LOWORD(answer), IDOK);
}

TEST_F(LanguageDialogKeyboard, OpensWithTheListFocused)
{
    const OpenDialog dialog(Request());
    EXPECT_TRUE(WaitForFocus(dialog.Window(), dialog.List()));
}

// Tab to Cancel, then Enter: the focused button is pressed, not the default one.
TEST_F(LanguageDialogKeyboard, TabAndEnterReachCancel)
{
    OpenDialog dialog(Request());
    ASSERT_TRUE(WaitForFocus(dialog.Window(), dialog.List()));
    PressKey(dialog.List(), VK_TAB);
    ASSERT_TRUE(WaitForFocus(dialog.Window(), Control(dialog, IDOK)));
    PressKey(Control(dialog, IDOK), VK_TAB);
    ASSERT_TRUE(WaitForFocus(dialog.Window(), Control(dialog, IDCANCEL)));
    PressKey(Control(dialog, IDCANCEL), VK_RETURN);
    EXPECT_EQ(dialog.Outcome().result, TRUE);
    EXPECT_EQ(dialog.Outcome().answer, L"");
}

}  // namespace
