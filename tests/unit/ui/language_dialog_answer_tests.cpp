// How the language dialog ends, and what its caller gets.
#include "resources/resource_ids.h"
#include "support/dialog_controls.h"
#include "unit/ui/language_dialog_fixture.h"

#include <ostream>

namespace
{

using arvmui_test::DialogOutcome;
using arvmui_test::DialogRequest;
using arvmui_test::LanguageDialogTest;
using arvmui_test::MakeEntry;
using arvmui_test::OpenDialog;
using arvmui_test::PressKey;
using arvmui_test::ReadTexts;
using arvmui_test::TextsOf;
using arvmui_test::WaitUntil;

DialogRequest ThreeLanguages()
{
    return {{MakeEntry(0x0409, L"en-US"), MakeEntry(0x0407, L"de-DE"), MakeEntry(0x040C, L"fr-FR")}};
}

// What stands in a buffer that was not written to.
std::wstring Untouched(const DialogOutcome& outcome)
{
    return std::wstring(outcome.buffer.size(), L'#');
}

TEST_F(LanguageDialogTest, OkAnswersWithTheSelectedTag)
{
    for (const int index : {0, 1, 2})
    {
        OpenDialog dialog(ThreeLanguages());
        dialog.Select(index);
        dialog.Press(IDOK);
        EXPECT_EQ(dialog.Outcome().result, TRUE);
        EXPECT_EQ(dialog.Outcome().answer, ThreeLanguages().entries[static_cast<size_t>(index)].Locale);
    }
}

// ---- Refusing -----------------------------------------------------------------------------------------------

struct Refusal
{
    const char* name;
    void (*act)(const OpenDialog& dialog);
};

void PrintTo(const Refusal& value, std::ostream* output)
{
    *output << value.name;
}

const Refusal kRefusals[] = {
    {"Cancel", [](const OpenDialog& dialog) { dialog.Press(IDCANCEL); }},
    {"Escape", [](const OpenDialog& dialog) { PressKey(dialog.List(), VK_ESCAPE); }},
    {"CloseMessage", [](const OpenDialog& dialog) { ::PostMessageW(dialog.Window(), WM_CLOSE, 0, 0); }},
    {"CloseOfTheSystemMenu",
        [](const OpenDialog& dialog) { ::PostMessageW(dialog.Window(), WM_SYSCOMMAND, SC_CLOSE, 0); }},
    {"OkWithoutSelection",
        [](const OpenDialog& dialog)
        {
            dialog.Select(-1);
            dialog.Press(IDOK);
        }},
    {"OkForAnItemThatIsNoEntry",
        [](const OpenDialog& dialog)
        {
            ::SendMessageW(dialog.List(), CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(L"Added"));
            dialog.Select(3);
            dialog.Press(IDOK);
        }},
    {"EndFromOutside", [](const OpenDialog& dialog) { ::EndDialog(dialog.Window(), 0); }},
};

class RefusedDialog : public LanguageDialogTest, public testing::WithParamInterface<Refusal>
{
};

TEST_P(RefusedDialog, IsAnEmptyAnswer)
{
    OpenDialog dialog(ThreeLanguages());
    ASSERT_NE(dialog.Window(), nullptr);
    dialog.Select(1);
    GetParam().act(dialog);
    const DialogOutcome& outcome = dialog.Outcome();
    EXPECT_EQ(outcome.result, TRUE);
    EXPECT_EQ(outcome.buffer, std::wstring(1, L'\0') + std::wstring(outcome.buffer.size() - 1, L'#'));
}

TEST_P(RefusedDialog, NeedsNoBuffer)
{
    DialogRequest request = ThreeLanguages();
    request.hasAnswer = false;
    OpenDialog dialog(request);
    ASSERT_NE(dialog.Window(), nullptr);
    GetParam().act(dialog);
    EXPECT_EQ(dialog.Outcome().result, TRUE);
}

INSTANTIATE_TEST_SUITE_P(Ways, RefusedDialog, testing::ValuesIn(kRefusals),
    [](const testing::TestParamInfo<Refusal>& parameter) { return std::string(parameter.param.name); });

// ---- The buffer ---------------------------------------------------------------------------------------------

struct CutCase
{
    const char* name;
    DWORD answerSize;
    const wchar_t* written;
};

void PrintTo(const CutCase& value, std::ostream* output)
{
    *output << value.name;
}

class CutAnswer : public LanguageDialogTest, public testing::WithParamInterface<CutCase>
{
};

TEST_P(CutAnswer, IsTerminatedInsideTheBuffer)
{
    DialogRequest request = ThreeLanguages();
    request.answerSize = GetParam().answerSize;
    OpenDialog dialog(request);
    dialog.Press(IDOK);
    const DialogOutcome& outcome = dialog.Outcome();
    EXPECT_EQ(outcome.result, TRUE);
    std::wstring expected = GetParam().written;
    expected += L'\0';
    expected.append(outcome.buffer.size() - expected.size(), L'#');
    EXPECT_EQ(outcome.buffer, expected);
}

INSTANTIATE_TEST_SUITE_P(Sizes, CutAnswer,
    testing::Values(CutCase{"Ample", 64, L"en-US"}, CutCase{"OneMoreThanNeeded", 7, L"en-US"},
        CutCase{"Exact", 6, L"en-US"}, CutCase{"OneTooSmall", 5, L"en-U"}, CutCase{"Two", 2, L"e"},
        CutCase{"One", 1, L""}),
    [](const testing::TestParamInfo<CutCase>& parameter) { return std::string(parameter.param.name); });

TEST_F(LanguageDialogTest, LongestTagIsAnsweredWhole)
{
    const std::wstring tag(63, L't');
    LocaleEntry entry = MakeEntry(0x0409, L"en-US");
    arvmui_test::SetText(entry.Locale, tag);
    OpenDialog dialog(DialogRequest{{entry}});
    dialog.Press(IDOK);
    EXPECT_EQ(dialog.Outcome().answer, tag);
}

TEST_F(LanguageDialogTest, ChoosingNeedsNoBuffer)
{
    DialogRequest request = ThreeLanguages();
    request.hasAnswer = false;
    OpenDialog dialog(request);
    dialog.Press(IDOK);
    EXPECT_EQ(dialog.Outcome().result, TRUE);
}

TEST_F(LanguageDialogTest, EmptyTagIsAnsweredAsItIs)
{
    DialogRequest request = ThreeLanguages();
    request.entries[0].Locale[0] = L'\0';
    OpenDialog dialog(request);
    dialog.Press(IDOK);
    EXPECT_EQ(dialog.Outcome().result, TRUE);
    EXPECT_EQ(dialog.Outcome().answer, L"");
}

// ---- Ends from outside --------------------------------------------------------------------------------------

TEST_F(LanguageDialogTest, NumberFromOutsideChoosesTheEntryBeforeIt)
{
    for (const INT_PTR number : {1, 2, 3})
    {
        OpenDialog dialog(ThreeLanguages());
        ::EndDialog(dialog.Window(), number);
        EXPECT_EQ(dialog.Outcome().result, TRUE);
        EXPECT_EQ(dialog.Outcome().answer, ThreeLanguages().entries[static_cast<size_t>(number) - 1].Locale);
    }
}

TEST_F(LanguageDialogTest, NumberFromOutsideThatNamesNoEntryIsAFailure)
{
    for (const INT_PTR number : {-1, -2, 4, 1000})
    {
        OpenDialog dialog(ThreeLanguages());
        ::EndDialog(dialog.Window(), number);
        EXPECT_EQ(dialog.Outcome().result, FALSE) << number;
    }
}

// A program may end the dialog while the user answers it.
TEST_F(LanguageDialogTest, TwoEndsAtOnceAreOneAnswer)
{
    OpenDialog dialog(ThreeLanguages());
    dialog.Press(IDOK);
    ::EndDialog(dialog.Window(), 3);
    EXPECT_EQ(dialog.Outcome().result, TRUE);
    EXPECT_NE(dialog.Outcome().answer, L"");
}

// ---- Preview ------------------------------------------------------------------------------------------------

class Preview : public LanguageDialogTest
{
protected:
    static DialogRequest Request()
    {
        DialogRequest request = ThreeLanguages();
        request.answerSize = 0;
        return request;
    }
};

TEST_F(Preview, DisablesOkOnly)
{
    const OpenDialog dialog(Request());
    EXPECT_FALSE(::IsWindowEnabled(::GetDlgItem(dialog.Window(), IDOK)));
    EXPECT_TRUE(::IsWindowEnabled(::GetDlgItem(dialog.Window(), IDCANCEL)));
    EXPECT_TRUE(::IsWindowEnabled(dialog.List()));
}

TEST_F(LanguageDialogTest, OkIsEnabledWhereAnAnswerIsWanted)
{
    DialogRequest request = ThreeLanguages();
    request.answerSize = 1;
    const OpenDialog dialog(request);
    EXPECT_TRUE(::IsWindowEnabled(::GetDlgItem(dialog.Window(), IDOK)));
}

TEST_F(LanguageDialogTest, OkIsEnabledWithoutBufferToo)
{
    DialogRequest request = ThreeLanguages();
    request.hasAnswer = false;
    const OpenDialog dialog(request);
    EXPECT_TRUE(::IsWindowEnabled(::GetDlgItem(dialog.Window(), IDOK)));
}

TEST_F(Preview, SpeaksTheSelectedLanguage)
{
    const OpenDialog dialog(Request());
    dialog.Select(2);
    EXPECT_EQ(ReadTexts(dialog.Window()), TextsOf(Request().entries[2]));
}

TEST_F(Preview, CancelWritesNothing)
{
    OpenDialog dialog(Request());
    dialog.Press(IDCANCEL);
    EXPECT_EQ(dialog.Outcome().result, TRUE);
    EXPECT_EQ(dialog.Outcome().buffer, Untouched(dialog.Outcome()));
}

TEST_F(Preview, ChoiceFromOutsideWritesNothing)
{
    OpenDialog dialog(Request());
    ::PostMessageW(dialog.Window(), WM_COMMAND, IDOK, 0);
    EXPECT_EQ(dialog.Outcome().result, TRUE);
    EXPECT_EQ(dialog.Outcome().buffer, Untouched(dialog.Outcome()));
}

TEST_F(Preview, NeedsNoBuffer)
{
    DialogRequest request = Request();
    request.hasAnswer = false;
    OpenDialog dialog(request);
    dialog.Press(IDCANCEL);
    EXPECT_EQ(dialog.Outcome().result, TRUE);
}

TEST_F(Preview, EnterDoesNotAnswer)
{
    OpenDialog dialog(Request());
    PressKey(dialog.List(), VK_RETURN);
    PressKey(dialog.List(), VK_END);  // comes behind it
    EXPECT_TRUE(WaitUntil([&] { return ReadTexts(dialog.Window()) == TextsOf(Request().entries[2]); }));
    dialog.Press(IDCANCEL);
    EXPECT_EQ(dialog.Outcome().result, TRUE);
}

// ---- The dialog procedure ----------------------------------------------------------------------------------

class DialogProcedureTest : public LanguageDialogTest
{
protected:
    DialogProcedureTest() : dialog_(ThreeLanguages())
    {
        procedure_ = reinterpret_cast<DLGPROC>(::GetWindowLongPtrW(dialog_.Window(), DWLP_DLGPROC));
    }

    INT_PTR Call(HWND window, UINT message, WPARAM wParam) const { return procedure_(window, message, wParam, 0); }
    INT_PTR Call(UINT message, WPARAM wParam) const { return Call(dialog_.Window(), message, wParam); }

    OpenDialog dialog_;
    DLGPROC procedure_;
};

TEST_F(DialogProcedureTest, HandlesNothingElse)
{
    for (const UINT message : {UINT{WM_NULL}, UINT{WM_TIMER}, UINT{WM_KEYDOWN}, UINT{WM_SYSCOMMAND}, UINT{WM_HELP},
             UINT{WM_CTLCOLORDLG}, UINT{WM_ACTIVATE}, UINT{WM_QUERYENDSESSION}, UINT{WM_USER}, UINT{WM_APP}})
        EXPECT_EQ(Call(message, 0), FALSE) << message;
    for (const int control : {int{ARVMUI_CONTROL_LANGUAGE_PROMPT}, 0, IDABORT, IDHELP, 0xFFFF})
        EXPECT_EQ(Call(WM_COMMAND, MAKEWPARAM(control, 0)), FALSE) << control;
    EXPECT_EQ(Call(WM_COMMAND, MAKEWPARAM(ARVMUI_CONTROL_LANGUAGE_LIST, CBN_DROPDOWN)), FALSE);
}

// A dialog for each, because the first message ends it.
TEST_F(LanguageDialogTest, ProcedureHandlesWhatEndsTheDialog)
{
    constexpr struct
    {
        UINT message;
        WPARAM control;
    } kEnds[] = {{WM_CLOSE, 0}, {WM_COMMAND, IDCANCEL}, {WM_COMMAND, IDOK}};
    for (const auto& end : kEnds)
    {
        const OpenDialog dialog(ThreeLanguages());
        ASSERT_NE(dialog.Window(), nullptr);
        const auto procedure = reinterpret_cast<DLGPROC>(::GetWindowLongPtrW(dialog.Window(), DWLP_DLGPROC));
        EXPECT_NE(procedure(dialog.Window(), end.message, end.control, 0), FALSE) << end.message << " " << end.control;
    }
}

// Windows sends messages before the first one that hands over the entries.
TEST_F(DialogProcedureTest, HandlesNoCommandBeforeItsDialogIsInitialised)
{
    const HWND window = ::CreateWindowW(L"STATIC", L"", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr, nullptr, nullptr);
    ASSERT_NE(window, nullptr);
    for (const WPARAM command : {WPARAM{IDOK}, WPARAM{IDCANCEL}, MAKEWPARAM(ARVMUI_CONTROL_LANGUAGE_LIST, 1)})
        EXPECT_EQ(Call(window, WM_COMMAND, command), FALSE);
    ::DestroyWindow(window);
}

}  // namespace
