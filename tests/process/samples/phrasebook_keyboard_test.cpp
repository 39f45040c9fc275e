// The phrasebook without a mouse, with the keys of each language.
#include "phrasebook_ids.h"
#include "process/samples/phrasebook_fixture.h"
#include "support/child_process.h"

#include <gtest/gtest.h>

#include <string>

namespace arvmui_test
{
namespace
{

constexpr UINT kSettingsTitle = 320;

class PhrasebookKeyboard : public testing::TestWithParam<PhrasebookLanguage>
{
protected:
    void SetUp() override
    {
        window = phrasebook.Window();
        ASSERT_NE(window, nullptr);
    }

    // The dialog or box that has come up.
    HWND Shown() const { return WaitForDialogOf(window); }

    bool HasDialog() const { return !::IsWindowEnabled(window); }

    const PhrasebookLanguage& language = GetParam();
    const Phrasebook phrasebook{L"/uilocale:" + std::wstring(language.folder)};
    HWND window = nullptr;
};

INSTANTIATE_TEST_SUITE_P(
    Phrasebook, PhrasebookKeyboard, testing::ValuesIn(kPhrasebookLanguages), testing::PrintToStringParamName());

TEST_P(PhrasebookKeyboard, ExitIsInTheFirstMenu)
{
    EXPECT_TRUE(ChooseFromMenu(window, language.fileMenu, language.exitItem, [this] { return !::IsWindow(window); }));
    EXPECT_EQ(phrasebook.ExitCode(), 0u);
}

TEST_P(PhrasebookKeyboard, PreferredLanguagesAreInTheSecondMenu)
{
    ASSERT_TRUE(ChooseFromMenu(window, language.languagesMenu, language.preferredItem, [this] { return HasDialog(); }));
    const HWND dialog = Shown();
    ASSERT_NE(dialog, nullptr);
    EXPECT_EQ(WindowText(dialog), LibraryText(language.folder, kSettingsTitle));
}

TEST_P(PhrasebookKeyboard, ExitHasAKey)
{
    EXPECT_TRUE(PressWithControl(window, language.exitKey, [this] { return !::IsWindow(window); }));
    EXPECT_EQ(phrasebook.ExitCode(), 0u);
}

TEST_P(PhrasebookKeyboard, PreferredLanguagesHaveAKey)
{
    ASSERT_TRUE(PressWithControl(window, language.preferredKey, [this] { return HasDialog(); }));
    const HWND dialog = Shown();
    ASSERT_NE(dialog, nullptr);
    EXPECT_EQ(WindowText(dialog), LibraryText(language.folder, kSettingsTitle));
}

TEST_P(PhrasebookKeyboard, LanguageToTranslateIntoHasAKey)
{
    ASSERT_TRUE(PressWithControl(window, language.targetKey, [this] { return HasDialog(); }));
    const HWND dialog = Shown();
    ASSERT_NE(dialog, nullptr);
    EXPECT_NE(::GetDlgItem(dialog, CONTROL_ID_TARGETS), nullptr);
}

TEST_P(PhrasebookKeyboard, QuestionHasAKey)
{
    PressKeyInFocus(window, VK_F5);
    const HWND box = Shown();
    ASSERT_NE(box, nullptr);
    EXPECT_NE(::GetDlgItem(box, IDYES), nullptr);
}

TEST_P(PhrasebookKeyboard, AboutHasAKey)
{
    PressKeyInFocus(window, VK_F1);
    const HWND box = Shown();
    ASSERT_NE(box, nullptr);
    EXPECT_EQ(::GetDlgItem(box, IDYES), nullptr);
}

class PhrasebookList : public testing::Test
{
protected:
    void SetUp() override
    {
        window = phrasebook.Window();
        ASSERT_NE(window, nullptr);
        list = ::GetDlgItem(window, CONTROL_ID_PHRASES);
        ASSERT_TRUE(WaitForFocus(window, list));
    }

    const Phrasebook phrasebook{L"/uilocale:en"};
    HWND window = nullptr;
    HWND list = nullptr;
};

TEST_F(PhrasebookList, ArrowShowsTheNextTranslation)
{
    const std::wstring first = TextOfControl(window, CONTROL_ID_TRANSLATION);
    PressKey(list, VK_DOWN);
    EXPECT_TRUE(WaitUntil([&] { return TextOfControl(window, CONTROL_ID_TRANSLATION) != first; }));
    const std::wstring second = TextOfControl(window, CONTROL_ID_TRANSLATION);
    bool isSecondPhrase = false;
    for (const PhrasebookLanguage& language : kPhrasebookLanguages)
        isSecondPhrase = isSecondPhrase || PhrasebookText(language.folder, TEXT_ID_FIRST_PHRASE + 1) == second;
    EXPECT_TRUE(isSecondPhrase) << Utf8FromWide(second);
}

TEST_F(PhrasebookList, TabLeadsToTheTranslationAndBack)
{
    const HWND translation = ::GetDlgItem(window, CONTROL_ID_TRANSLATION);
    PressKey(list, VK_TAB);
    ASSERT_TRUE(WaitForFocus(window, translation));
    PressKey(translation, VK_TAB);
    EXPECT_TRUE(WaitForFocus(window, list));
}

// Escape closes dialogs, not the program.
TEST_F(PhrasebookList, EscapeLeavesTheWindowOpen)
{
    PressKey(list, VK_ESCAPE);
    PressKey(list, VK_TAB);  // handled after it
    EXPECT_TRUE(WaitForFocus(window, ::GetDlgItem(window, CONTROL_ID_TRANSLATION)));
}

}  // namespace
}  // namespace arvmui_test
