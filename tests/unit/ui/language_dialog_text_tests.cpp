// What the language dialog says: its title, its prompt and its buttons speak the language that is selected
// in its list, or English where the user could not read them.
#include "resources/resource_ids.h"
#include "support/dialog_controls.h"
#include "unit/ui/language_dialog_fixture.h"

#include <ostream>

namespace
{

using arvmui_test::DialogRequest;
using arvmui_test::DialogTexts;
using arvmui_test::LanguageDialogTest;
using arvmui_test::MakeEntry;
using arvmui_test::OpenDialog;
using arvmui_test::ReadTexts;
using arvmui_test::SetText;
using arvmui_test::TextsOf;

// An entry with texts for which a user needs fonts and keyboards of the language.
LocaleEntry Japanese()
{
    LocaleEntry entry = MakeEntry(0x0411, L"ja-JP");
    SetText(entry.NativeName, L"\u65e5\u672c\u8a9e");
    SetText(entry.LanguageSelectionTitle, L"\u8a00\u8a9e");
    SetText(entry.LanguageSelectionDesc, L"\u9078\u629e");
    SetText(entry.OK, L"\u306f\u3044");
    SetText(entry.Cancel, L"\u53d6\u6d88");
    return entry;
}

TEST_F(LanguageDialogTest, SpeaksTheLanguageThatIsSelected)
{
    const DialogRequest request = {
        {MakeEntry(0x0409, L"en-US"), MakeEntry(0x0407, L"de-DE"), MakeEntry(0x040C, L"fr-FR")}};
    const OpenDialog dialog(request);
    for (const int index : {2, 1, 0, 2})
    {
        dialog.Select(index);
        EXPECT_EQ(ReadTexts(dialog.Window()), TextsOf(request.entries[static_cast<size_t>(index)]));
    }
}

TEST_F(LanguageDialogTest, SpeaksEnglishForALanguageWithoutKeyboard)
{
    languages.user = 0x0411;
    const DialogRequest request = {{MakeEntry(0x0407, L"de-DE"), Japanese(), MakeEntry(0x0409, L"en-US")}};
    const OpenDialog dialog(request);
    EXPECT_EQ(ReadTexts(dialog.Window()), TextsOf(request.entries[2]));
    dialog.Select(0);
    EXPECT_EQ(ReadTexts(dialog.Window()), TextsOf(request.entries[0]));
    dialog.Select(1);
    EXPECT_EQ(ReadTexts(dialog.Window()), TextsOf(request.entries[2]));
}

TEST_F(LanguageDialogTest, SpeaksALanguageWithKeyboard)
{
    InstallKeyboards({0x07, 0x09, 0x11});
    languages.user = 0x0411;
    const DialogRequest request = {{MakeEntry(0x0409, L"en-US"), Japanese()}};
    const OpenDialog dialog(request);
    EXPECT_EQ(ReadTexts(dialog.Window()), TextsOf(request.entries[1]));
}

// Each text is judged by itself.
TEST_F(LanguageDialogTest, OnlyTheTextsThatCannotBeReadAreEnglish)
{
    const LocaleEntry english = MakeEntry(0x0409, L"en-US");
    const DialogTexts fallback = TextsOf(english);
    LocaleEntry title = MakeEntry(0x0411, L"1");
    SetText(title.LanguageSelectionTitle, Japanese().LanguageSelectionTitle);
    LocaleEntry prompt = MakeEntry(0x0411, L"2");
    SetText(prompt.LanguageSelectionDesc, Japanese().LanguageSelectionDesc);
    LocaleEntry ok = MakeEntry(0x0411, L"3");
    SetText(ok.OK, Japanese().OK);
    LocaleEntry cancel = MakeEntry(0x0411, L"4");
    SetText(cancel.Cancel, Japanese().Cancel);

    const OpenDialog dialog(DialogRequest{{english, title, prompt, ok, cancel}});
    dialog.Select(1);
    EXPECT_EQ(ReadTexts(dialog.Window()), (DialogTexts{fallback.title, L"Prompt 1", L"OK 1", L"Cancel 1"}));
    dialog.Select(2);
    EXPECT_EQ(ReadTexts(dialog.Window()), (DialogTexts{L"Title 2", fallback.prompt, L"OK 2", L"Cancel 2"}));
    dialog.Select(3);
    EXPECT_EQ(ReadTexts(dialog.Window()), (DialogTexts{L"Title 3", L"Prompt 3", fallback.ok, L"Cancel 3"}));
    dialog.Select(4);
    EXPECT_EQ(ReadTexts(dialog.Window()), (DialogTexts{L"Title 4", L"Prompt 4", L"OK 4", fallback.cancel}));
}

TEST_F(LanguageDialogTest, OneForeignCharacterMakesATextUnreadable)
{
    LocaleEntry entry = MakeEntry(0x0411, L"ja-JP");
    SetText(entry.LanguageSelectionTitle, L"Language (\u8a00\u8a9e)");
    const DialogRequest request = {{MakeEntry(0x0409, L"en-US"), entry}};
    const OpenDialog dialog(request);
    dialog.Select(1);
    EXPECT_EQ(ReadTexts(dialog.Window()).title, TextsOf(request.entries[0]).title);
}

// Empty texts can be read by anybody.
TEST_F(LanguageDialogTest, EmptyTextsAreShownEmpty)
{
    LocaleEntry empty = {};
    empty.LangID = 0x0411;
    const OpenDialog dialog(DialogRequest{{MakeEntry(0x0409, L"en-US"), empty}});
    dialog.Select(1);
    EXPECT_EQ(ReadTexts(dialog.Window()), DialogTexts());
}

TEST_F(LanguageDialogTest, EmptyEnglishTextsStandInToo)
{
    LocaleEntry english = {};
    english.LangID = 0x0409;
    const OpenDialog dialog(DialogRequest{{english, Japanese()}});
    dialog.Select(1);
    EXPECT_EQ(ReadTexts(dialog.Window()), DialogTexts());
}

TEST_F(LanguageDialogTest, TextsAsLongAsTheirFieldsAreShownWhole)
{
    LocaleEntry entry = MakeEntry(0x0409, L"en-US");
    SetText(entry.LanguageSelectionTitle, std::wstring(255, L't'));
    SetText(entry.LanguageSelectionDesc, std::wstring(255, L'p'));
    SetText(entry.OK, std::wstring(31, L'o'));
    SetText(entry.Cancel, std::wstring(31, L'c'));
    const DialogRequest request = {{entry}};
    const OpenDialog dialog(request);
    EXPECT_EQ(ReadTexts(dialog.Window()), TextsOf(entry));
}

// ---- Which entry is the English one -------------------------------------------------------------------------

struct EnglishCase
{
    const char* name;
    std::vector<LANGID> entries;  // behind a Japanese one
    size_t english;
};

void PrintTo(const EnglishCase& value, std::ostream* output)
{
    *output << value.name;
}

class EnglishEntry : public LanguageDialogTest, public testing::WithParamInterface<EnglishCase>
{
};

TEST_P(EnglishEntry, SpeaksForOthers)
{
    DialogRequest request = {{Japanese()}};
    for (const LANGID language : GetParam().entries)
        request.entries.push_back(MakeEntry(language, std::to_wstring(request.entries.size())));
    const OpenDialog dialog(request);
    dialog.Select(0);
    EXPECT_EQ(ReadTexts(dialog.Window()), TextsOf(request.entries[GetParam().english]));
}

INSTANTIATE_TEST_SUITE_P(Entries, EnglishEntry,
    testing::Values(EnglishCase{"UnitedStates", {0x0407, 0x0409}, 2},
        EnglishCase{"UnitedStatesBehindOthers", {0x0809, 0x1009, 0x0409}, 3},
        EnglishCase{"FirstOfOthers", {0x0407, 0x1009, 0x0809}, 2}, EnglishCase{"Neutral", {0x0407, 0x0009}, 2},
        EnglishCase{"FirstOfEqual", {0x0409, 0x0409}, 1}, EnglishCase{"NoneLeavesTheOwn", {0x0407, 0x040C}, 0}),
    [](const testing::TestParamInfo<EnglishCase>& parameter) { return std::string(parameter.param.name); });

TEST_F(LanguageDialogTest, EnglishTextsAreShownWhateverTheirLetters)
{
    LocaleEntry english = MakeEntry(0x0409, L"en-US");
    SetText(english.LanguageSelectionTitle, L"\u0395\u03bb");
    const OpenDialog dialog(DialogRequest{{english, Japanese()}});
    EXPECT_EQ(ReadTexts(dialog.Window()).title, english.LanguageSelectionTitle);
    dialog.Select(1);
    EXPECT_EQ(ReadTexts(dialog.Window()).title, english.LanguageSelectionTitle);
}

TEST_F(LanguageDialogTest, EnglishNameInTheListIsTheEntrysOwn)
{
    LocaleEntry japanese = Japanese();
    SetText(japanese.EnglishName, L"Japanese");
    const OpenDialog dialog(DialogRequest{{MakeEntry(0x0409, L"en-US"), japanese}});
    EXPECT_EQ(arvmui_test::ComboItems(dialog.List())[1], L"Japanese");
}

// ---- When the texts change ----------------------------------------------------------------------------------

TEST_F(LanguageDialogTest, TextsStayWhenNothingIsSelected)
{
    const DialogRequest request = {{MakeEntry(0x0409, L"en-US"), MakeEntry(0x0407, L"de-DE")}};
    const OpenDialog dialog(request);
    dialog.Select(1);
    dialog.Select(-1);
    EXPECT_EQ(ReadTexts(dialog.Window()), TextsOf(request.entries[1]));
}

TEST_F(LanguageDialogTest, TextsStayForAnItemThatIsNoEntry)
{
    const DialogRequest request = {{MakeEntry(0x0409, L"en-US"), MakeEntry(0x0407, L"de-DE")}};
    const OpenDialog dialog(request);
    dialog.Select(1);
    ASSERT_EQ(::SendMessageW(dialog.List(), CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(L"Added")), 2);
    dialog.Select(2);
    EXPECT_EQ(ReadTexts(dialog.Window()), TextsOf(request.entries[1]));
}

TEST_F(LanguageDialogTest, OtherNotificationsOfTheListChangeNothing)
{
    const DialogRequest request = {{MakeEntry(0x0409, L"en-US"), MakeEntry(0x0407, L"de-DE")}};
    const OpenDialog dialog(request);
    ::SendMessageW(dialog.List(), CB_SETCURSEL, 1, 0);
    for (const int notification : {CBN_ERRSPACE, CBN_DBLCLK, CBN_SETFOCUS, CBN_KILLFOCUS, CBN_EDITCHANGE,
             CBN_EDITUPDATE, CBN_DROPDOWN, CBN_CLOSEUP, CBN_SELENDOK, CBN_SELENDCANCEL})
    {
        ::SendMessageW(dialog.Window(), WM_COMMAND, MAKEWPARAM(ARVMUI_CONTROL_LANGUAGE_LIST, notification),
            reinterpret_cast<LPARAM>(dialog.List()));
        EXPECT_EQ(ReadTexts(dialog.Window()), TextsOf(request.entries[0])) << notification;
    }
}

TEST_F(LanguageDialogTest, TheSelectionOfAnotherControlChangesNothing)
{
    const DialogRequest request = {{MakeEntry(0x0409, L"en-US"), MakeEntry(0x0407, L"de-DE")}};
    const OpenDialog dialog(request);
    ::SendMessageW(dialog.List(), CB_SETCURSEL, 1, 0);
    ::SendMessageW(dialog.Window(), WM_COMMAND, MAKEWPARAM(ARVMUI_CONTROL_LANGUAGE_PROMPT, CBN_SELCHANGE), 0);
    EXPECT_EQ(ReadTexts(dialog.Window()), TextsOf(request.entries[0]));
}

}  // namespace
