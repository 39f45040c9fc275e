// What the phrasebook's commands do: its message boxes, its dialog and the library's.
#include "phrasebook_ids.h"
#include "process/samples/phrasebook_fixture.h"
#include "support/box_window.h"
#include "support/child_process.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <string>
#include <vector>

namespace arvmui_test
{
namespace
{

constexpr UINT kButtonTexts = 100;  // string of a button: this plus the button's identifier
constexpr UINT kSettingsTitle = 320;

class PhrasebookCommand : public testing::Test
{
protected:
    explicit PhrasebookCommand(const std::wstring& locale = L"de") : locale_(locale), phrasebook(L"/uilocale:" + locale)
    {
    }

    void SetUp() override
    {
        window = phrasebook.Window();
        ASSERT_NE(window, nullptr);
    }

    // The dialog or box that a command shows.
    HWND Show(WORD command) const
    {
        GiveCommand(window, command);
        return WaitForDialogOf(window);
    }

    // Presses a button and waits for what follows in the main window.
    void Close(HWND dialog, int button) const
    {
        ASSERT_TRUE(PressButton(dialog, button));
        ASSERT_TRUE(WaitUntilGone(dialog, window));
    }

    bool StatusBecomes(const std::wstring& text) const
    {
        return WaitUntil([&] { return TextOfControl(window, CONTROL_ID_STATUS) == text; });
    }

    std::wstring Own(UINT id) const { return PhrasebookText(locale_, id); }

    // The language that is translated into at the beginning.
    std::wstring TargetLocale() const
    {
        const std::wstring label = TextOfControl(window, CONTROL_ID_TRANSLATION_LABEL);
        for (const PhrasebookLanguage& language : kPhrasebookLanguages)
        {
            const std::wstring name = PhrasebookText(language.folder, TEXT_ID_LANGUAGE_NAME);
            if (label == Filled(Own(TEXT_ID_TRANSLATION_LABEL), name)) return language.folder;
        }
        return {};
    }

private:
    const std::wstring locale_;

protected:
    const Phrasebook phrasebook;
    HWND window = nullptr;
};

TEST_F(PhrasebookCommand, AboutNamesTheLanguage)
{
    const HWND box = Show(COMMAND_ID_ABOUT);
    ASSERT_NE(box, nullptr);
    const BoxContents contents = ReadBox(box);
    EXPECT_EQ(contents.caption, L"Sprachführer");
    EXPECT_EQ(contents.text, Filled(Own(TEXT_ID_ABOUT), L"Deutsch", L"de-DE"));
    EXPECT_EQ(Labels(contents), std::vector<std::wstring>{LibraryText(L"de", kButtonTexts + IDOK)});
}

TEST_F(PhrasebookCommand, QuestionHasAnswersInTheUsersLanguage)
{
    const HWND box = Show(COMMAND_ID_QUESTION);
    ASSERT_NE(box, nullptr);
    const BoxContents contents = ReadBox(box);
    EXPECT_EQ(contents.caption, L"Sprachführer");
    EXPECT_EQ(contents.buttons, (std::map<int, std::wstring>{{IDYES, LibraryText(L"de", kButtonTexts + IDYES)},
                                    {IDNO, LibraryText(L"de", kButtonTexts + IDNO)}}));
}

struct Answer
{
    const char* name;
    int round;  // questions asked before
    int button;
    UINT status;
};

class PhrasebookAnswer : public PhrasebookCommand, public testing::WithParamInterface<Answer>
{
};

// Every other question, from the second on, offers the meaning of the next phrase.
INSTANTIATE_TEST_SUITE_P(Phrasebook, PhrasebookAnswer,
    testing::Values(Answer{"YesToATrueOne", 0, IDYES, TEXT_ID_ANSWER_RIGHT},
        Answer{"NoToATrueOne", 0, IDNO, TEXT_ID_ANSWER_WRONG}, Answer{"YesToATrap", 1, IDYES, TEXT_ID_ANSWER_WRONG},
        Answer{"NoToATrap", 1, IDNO, TEXT_ID_ANSWER_RIGHT}),
    [](const auto& answer) { return std::string(answer.param.name); });

TEST_P(PhrasebookAnswer, IsJudgedInTheStatusBar)
{
    for (int i = 0; i < GetParam().round; ++i)
    {
        const HWND earlier = Show(COMMAND_ID_QUESTION);
        ASSERT_NE(earlier, nullptr);
        Close(earlier, IDYES);
    }
    const UINT asked = TEXT_ID_FIRST_PHRASE + static_cast<UINT>(GetParam().round);
    const bool isTrap = GetParam().round % 2 != 0;
    const std::wstring phrase = PhrasebookText(TargetLocale(), asked);

    const HWND box = Show(COMMAND_ID_QUESTION);
    ASSERT_NE(box, nullptr);
    EXPECT_EQ(ReadBox(box).text, Filled(Own(TEXT_ID_QUESTION), phrase, Own(isTrap ? asked + 1 : asked)));
    Close(box, GetParam().button);
    EXPECT_TRUE(StatusBecomes(Filled(Own(GetParam().status), phrase, Own(asked))))
        << Utf8FromWide(TextOfControl(window, CONTROL_ID_STATUS));
}

// In French: sorted by name, the user's own language is not the first.
class PhrasebookTarget : public PhrasebookCommand
{
protected:
    PhrasebookTarget() : PhrasebookCommand(L"fr") {}

    void SetUp() override
    {
        PhrasebookCommand::SetUp();
        dialog = Show(COMMAND_ID_TARGET);
        ASSERT_NE(dialog, nullptr);
    }

    void Select(const std::wstring& language) const
    {
        const auto items = ListItems(dialog, CONTROL_ID_TARGETS);
        const auto at = std::find(items.begin(), items.end(), language) - items.begin();
        ::SendMessageW(::GetDlgItem(dialog, CONTROL_ID_TARGETS), LB_SETCURSEL, static_cast<WPARAM>(at), 0);
    }

    HWND dialog = nullptr;
};

TEST_F(PhrasebookTarget, DialogSpeaksTheUsersLanguage)
{
    EXPECT_EQ(WindowText(dialog), L"Traduire en");
    EXPECT_EQ(TextOfControl(dialog, IDCANCEL), L"&Annuler");
}

TEST_F(PhrasebookTarget, DialogListsTheLanguagesInOrderAndSelectsTheOneInUse)
{
    const auto items = ListItems(dialog, CONTROL_ID_TARGETS);
    EXPECT_TRUE(std::is_sorted(items.begin(), items.end()));
    const std::vector<int> selected = SelectedItems(dialog, CONTROL_ID_TARGETS);
    ASSERT_EQ(selected.size(), size_t{1});
    EXPECT_EQ(items[static_cast<size_t>(selected[0])], PhrasebookText(TargetLocale(), TEXT_ID_LANGUAGE_NAME));
}

TEST_F(PhrasebookTarget, ChoiceIsTranslatedInto)
{
    ::SendMessageW(::GetDlgItem(window, CONTROL_ID_PHRASES), LB_SETCURSEL, 3, 0);
    Select(L"日本語");
    Close(dialog, IDOK);
    const std::wstring phrase = PhrasebookText(L"ja", TEXT_ID_FIRST_PHRASE + 3);
    EXPECT_TRUE(WaitUntil([&] { return TextOfControl(window, CONTROL_ID_TRANSLATION) == phrase; }));
    EXPECT_EQ(TargetLocale(), L"ja");
}

TEST_F(PhrasebookTarget, DoubleClickChooses)
{
    Select(L"Español");
    ::PostMessageW(dialog, WM_COMMAND, MAKEWPARAM(CONTROL_ID_TARGETS, LBN_DBLCLK),
        reinterpret_cast<LPARAM>(::GetDlgItem(dialog, CONTROL_ID_TARGETS)));
    ASSERT_TRUE(WaitUntilGone(dialog, window));
    EXPECT_TRUE(WaitUntil([&] { return TargetLocale() == L"es"; }));
}

TEST_F(PhrasebookTarget, CancelChangesNothing)
{
    const std::wstring before = TargetLocale();
    const std::wstring translation = TextOfControl(window, CONTROL_ID_TRANSLATION);
    Select(before == L"ja" ? L"Español" : L"日本語");
    Close(dialog, IDCANCEL);
    EXPECT_EQ(TargetLocale(), before);
    EXPECT_EQ(TextOfControl(window, CONTROL_ID_TRANSLATION), translation);
    const HWND again = Show(COMMAND_ID_TARGET);
    ASSERT_NE(again, nullptr);
    Close(again, IDOK);
    EXPECT_EQ(TargetLocale(), before);
}

TEST_F(PhrasebookCommand, PreferredLanguagesAreChosenInTheLibrarysDialog)
{
    const HWND dialog = Show(COMMAND_ID_PREFERRED_LANGUAGES);
    ASSERT_NE(dialog, nullptr);
    EXPECT_EQ(WindowText(dialog), LibraryText(L"de", kSettingsTitle));
    EXPECT_FALSE(::IsWindowEnabled(window));
    Close(dialog, IDCANCEL);
    EXPECT_TRUE(::IsWindowEnabled(window));
    EXPECT_TRUE(StatusBecomes(Own(TEXT_ID_STATUS_NEXT_START)));
}

TEST_F(PhrasebookCommand, ExitEndsTheProgram)
{
    GiveCommand(window, COMMAND_ID_EXIT);
    EXPECT_EQ(phrasebook.ExitCode(), 0u);
}

TEST_F(PhrasebookCommand, ClosingTheWindowEndsTheProgram)
{
    ::PostMessageW(window, WM_SYSCOMMAND, SC_CLOSE, 0);
    EXPECT_EQ(phrasebook.ExitCode(), 0u);
}

}  // namespace
}  // namespace arvmui_test
