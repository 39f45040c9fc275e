// The list of the language dialog: its names, their order and the entry that it opens on.
#include "support/dialog_controls.h"
#include "support/dialog_window.h"
#include "unit/ui/language_dialog_fixture.h"

#include <ostream>

namespace
{

using arvmui_test::ComboItems;
using arvmui_test::ComboSelection;
using arvmui_test::DialogOutcome;
using arvmui_test::DialogRequest;
using arvmui_test::LanguageDialogTest;
using arvmui_test::MakeEntry;
using arvmui_test::OpenDialog;
using arvmui_test::PassesUndisturbed;
using arvmui_test::PressKey;
using arvmui_test::ReadTexts;
using arvmui_test::SetText;
using arvmui_test::TextsOf;
using arvmui_test::WaitUntil;

using Names = std::vector<std::wstring>;

constexpr wchar_t kJapanese[] = L"\u65e5\u672c\u8a9e";
constexpr wchar_t kGreek[] = L"\u0395\u03bb\u03bb\u03b7\u03bd\u03b9\u03ba\u03ac";

LocaleEntry Named(LANGID language, const wchar_t* englishName, const wchar_t* nativeName)
{
    LocaleEntry entry = MakeEntry(language, L"xx");
    SetText(entry.EnglishName, englishName);
    SetText(entry.NativeName, nativeName);
    return entry;
}

TEST_F(LanguageDialogTest, ListsEveryEntryInTheCallersOrder)
{
    const DialogRequest request = {{Named(0x040C, L"b", L"\u017dlut\u00fd"), Named(0x0409, L"a", L"English"),
        Named(0x0407, L"d", L"Deutsch"), Named(0x0407, L"d", L"Deutsch"), Named(0x0410, L"c", L"")}};
    const OpenDialog dialog(request);
    EXPECT_EQ(ComboItems(dialog.List()), Names({L"\u017dlut\u00fd", L"English", L"Deutsch", L"Deutsch", L""}));
}

TEST_F(LanguageDialogTest, ListsLanguagesWithoutKeyboardByTheirOwnEnglishNames)
{
    const DialogRequest request = {{Named(0x0409, L"English", L"English"), Named(0x0411, L"Japanese", kJapanese),
        Named(0x0408, L"Greek", kGreek), Named(0x042A, L"Vietnamese", L"Ti\u1ebfng Vi\u1ec7t")}};
    const OpenDialog dialog(request);
    EXPECT_EQ(ComboItems(dialog.List()), Names({L"English", L"Japanese", L"Greek", L"Ti\u1ebfng Vi\u1ec7t"}));
}

TEST_F(LanguageDialogTest, ListsLanguagesWithKeyboardByTheirNativeNames)
{
    InstallKeyboards({0x09, 0x11});
    const DialogRequest request = {{Named(0x0409, L"English", L"English"), Named(0x0411, L"Japanese", kJapanese),
        Named(0x0408, L"Greek", kGreek)}};
    const OpenDialog dialog(request);
    EXPECT_EQ(ComboItems(dialog.List()), Names({L"English", kJapanese, L"Greek"}));
}

TEST_F(LanguageDialogTest, ListsNamesAsLongAsTheirFields)
{
    LocaleEntry entry = MakeEntry(0x0409, L"en-US");
    SetText(entry.NativeName, std::wstring(63, L'n'));
    LocaleEntry japanese = MakeEntry(0x0411, L"ja-JP");
    SetText(japanese.NativeName, std::wstring(63, L'\u65e5'));
    SetText(japanese.EnglishName, std::wstring(63, L'e'));
    const OpenDialog dialog(DialogRequest{{entry, japanese}});
    EXPECT_EQ(ComboItems(dialog.List()), Names({std::wstring(63, L'n'), std::wstring(63, L'e')}));
}

// A window procedure may hand on the first message of a dialog more than once.
TEST_F(LanguageDialogTest, InitialisingAgainFillsTheListAnew)
{
    const OpenDialog dialog(DialogRequest{{MakeEntry(0x0409, L"en-US"), MakeEntry(0x0407, L"de-DE")}});
    const Names names = ComboItems(dialog.List());
    dialog.Select(1);
    const LONG_PTR context = ::GetWindowLongPtrW(dialog.Window(), GWLP_USERDATA);
    ASSERT_NE(context, 0);
    EXPECT_EQ(::SendMessageW(dialog.Window(), WM_INITDIALOG, 0, context), TRUE);
    EXPECT_EQ(ComboItems(dialog.List()), names);
    EXPECT_EQ(ComboSelection(dialog.List()), 0);
}

// ---- The entry that the dialog opens on --------------------------------------------------------------------

struct InitialCase
{
    const char* name;
    LANGID user;
    LANGID system;
    std::vector<LANGID> entries;
    int selected;
};

void PrintTo(const InitialCase& value, std::ostream* output)
{
    *output << value.name;
}

class InitialSelection : public LanguageDialogTest, public testing::WithParamInterface<InitialCase>
{
};

TEST_P(InitialSelection, IsTheBestMatch)
{
    languages.user = GetParam().user;
    languages.system = GetParam().system;
    DialogRequest request;
    for (const LANGID language : GetParam().entries)
        request.entries.push_back(MakeEntry(language, std::to_wstring(request.entries.size())));
    OpenDialog dialog(request);
    EXPECT_EQ(ComboSelection(dialog.List()), GetParam().selected);
    EXPECT_EQ(ReadTexts(dialog.Window()), TextsOf(request.entries[static_cast<size_t>(GetParam().selected)]));
    dialog.Press(IDOK);
    EXPECT_EQ(dialog.Outcome().answer, std::to_wstring(GetParam().selected));
}

INSTANTIATE_TEST_SUITE_P(Languages, InitialSelection,
    testing::Values(InitialCase{"User", 0x0407, 0x040C, {0x0409, 0x040C, 0x0407}, 2},
        InitialCase{"UserSwissGermanWithGermanOnly", 0x0807, 0x040C, {0x0409, 0x040C, 0x0407}, 2},
        InitialCase{"UserGermanWithNeutralGermanOnly", 0x0407, 0x040C, {0x0409, 0x040C, 0x0007}, 2},
        InitialCase{"UserNeutralWithAnyGerman", 0x0007, 0x040C, {0x0409, 0x0C07, 0x0407}, 1},
        InitialCase{"ExactBehindSameLanguage", 0x0807, 0x040C, {0x0407, 0x0C07, 0x0807, 0x0409}, 2},
        InitialCase{"FirstOfEqualEntries", 0x0407, 0x040C, {0x0409, 0x0407, 0x0407}, 1},
        InitialCase{"FirstOfSameLanguage", 0x1407, 0x040C, {0x0409, 0x0807, 0x0407}, 1},
        InitialCase{"SameLanguageOfUserBeforeExactSystem", 0x0807, 0x040C, {0x0409, 0x040C, 0x0407}, 2},
        InitialCase{"System", 0x0411, 0x040C, {0x0409, 0x0407, 0x040C}, 2},
        InitialCase{"SameLanguageAsSystem", 0x0411, 0x0C0C, {0x0409, 0x0407, 0x040C}, 2},
        InitialCase{"SameLanguageAsSystemBeforeEnglish", 0x0411, 0x0C0C, {0x0407, 0x0409, 0x100C}, 2},
        InitialCase{"English", 0x0411, 0x0412, {0x0407, 0x040C, 0x0409}, 2},
        InitialCase{"UnitedStatesBehindOtherEnglish", 0x0411, 0x0412, {0x0407, 0x0809, 0x0409}, 2},
        InitialCase{"OtherEnglish", 0x0411, 0x0412, {0x0407, 0x040C, 0x0809}, 2},
        InitialCase{"FirstWithoutAny", 0x0411, 0x0412, {0x0407, 0x040C}, 0},
        InitialCase{"SubLanguageAloneIsNoMatch", 0x0411, 0x0412, {0x0407, 0x0413, 0x0409}, 2},
        InitialCase{"UnknownUserLanguage", 0x0000, 0x040C, {0x0409, 0x0407, 0x040C}, 2},
        InitialCase{"OnlyEntry", 0x0411, 0x0412, {0x0419}, 0}),
    [](const testing::TestParamInfo<InitialCase>& parameter) { return std::string(parameter.param.name); });

// ---- Many entries --------------------------------------------------------------------------------------------

class FortyEntries : public LanguageDialogTest
{
protected:
    static DialogRequest Request()
    {
        DialogRequest request;
        // Different languages, none of them English or one of another's variants.
        for (LANGID i = 0; i < 40; ++i)
            request.entries.push_back(MakeEntry(static_cast<LANGID>(0x0420 + i), std::to_wstring(100 + i)));
        return request;
    }
};

TEST_F(FortyEntries, AreAllListedAndTheirListScrolls)
{
    const DialogRequest request = Request();
    const OpenDialog dialog(request);
    EXPECT_EQ(ComboItems(dialog.List()).size(), request.entries.size());
    COMBOBOXINFO info = {};
    info.cbSize = sizeof(info);
    ASSERT_TRUE(::GetComboBoxInfo(dialog.List(), &info));
    EXPECT_TRUE(PassesUndisturbed(
        [&]
        {
            ::SendMessageW(dialog.List(), CB_SHOWDROPDOWN, TRUE, 0);
            return ::IsWindowVisible(info.hwndList) != FALSE;
        }));
    SCROLLINFO scroll = {};
    scroll.cbSize = sizeof(scroll);
    scroll.fMask = SIF_ALL;
    ASSERT_TRUE(::GetScrollInfo(info.hwndList, SB_VERT, &scroll));
    EXPECT_NE(::GetWindowLongW(info.hwndList, GWL_STYLE) & WS_VSCROLL, 0);
    EXPECT_GT(scroll.nMax - scroll.nMin, 0);
    EXPECT_LT(scroll.nPage, static_cast<UINT>(scroll.nMax - scroll.nMin + 1));
}

TEST_F(FortyEntries, TheLastCanBeChosenByKeyboard)
{
    const DialogRequest request = Request();
    OpenDialog dialog(request);
    PressKey(dialog.List(), VK_END);
    const auto& last = request.entries.back();
    EXPECT_TRUE(WaitUntil([&] { return ReadTexts(dialog.Window()) == TextsOf(last); }));
    PressKey(dialog.List(), VK_RETURN);
    EXPECT_EQ(dialog.Outcome().answer, last.Locale);
}

TEST_F(FortyEntries, AnyCanBeTheInitialOne)
{
    const DialogRequest request = Request();
    languages.user = request.entries[33].LangID;
    const OpenDialog dialog(request);
    EXPECT_EQ(ComboSelection(dialog.List()), 33);
}

}  // namespace
