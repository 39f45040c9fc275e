// The dialog that adds languages to the chosen ones.
#include "arvmui.h"
#include "resources/process_state.h"
#include "settings_dialog_fixture.h"
#include "support/box_window.h"

#include <algorithm>

namespace
{

using namespace arvmui_test;

const wchar_t* const kGerman = L"Deutsch";
const wchar_t* const kEnglish = L"English";
const wchar_t* const kFrench = L"Fran\u00e7ais";
const wchar_t* const kJapanese = L"Japanese";

Names Available(HWND add)
{
    return ListItems(add, ARVMUI_CONTROL_AVAILABLE_LIST);
}

// What is offered when everything is, in the order of the rows.
Names AllNames()
{
    Names names = {kGerman, kEnglish, kFrench, kJapanese};
    names.insert(names.end(), kKeywordNames.begin(), kKeywordNames.end());
    return names;
}

Names Without(Names names, const Names& others)
{
    for (const std::wstring& other : others) names.erase(std::remove(names.begin(), names.end(), other), names.end());
    return names;
}

class SettingsAddDialog : public SettingsDialog
{
};

TEST_F(SettingsAddDialog, OffersAllRowsInOrder)
{
    const OpenSettings settings;
    const HWND add = settings.OpenAdd();
    ASSERT_NE(add, nullptr);
    EXPECT_EQ(Available(add), AllNames());
    EXPECT_EQ(SelectedItems(add, ARVMUI_CONTROL_AVAILABLE_LIST), Positions{});
}

TEST_F(SettingsAddDialog, OffersWhatIsNotChosen)
{
    Store(L"kiv,fr-FR,de-DE,x");
    const OpenSettings settings;
    EXPECT_EQ(Available(settings.OpenAdd()), Without(AllNames(), {kKeywordNames[3], kFrench, kGerman}));
}

TEST_F(SettingsAddDialog, IsOrderedByLanguageWhateverTheFoldersNames)
{
    Install(L"0", L"ru-RU", 0x0419, L"Russian", L"Russian");
    Install(L"z", L"ar-SA", 0x0401, L"Arabic", L"Arabic");
    Install(L"y", L"de-CH", 0x0807, L"Swiss German", L"Swiss German");
    const OpenSettings settings;
    Names names = Available(settings.OpenAdd());
    ASSERT_GE(names.size(), size_t{7});
    names.resize(7);
    EXPECT_EQ(names, (Names{L"Arabic", kGerman, L"Swiss German", kEnglish, kFrench, kJapanese, L"Russian"}));
}

TEST_F(SettingsAddDialog, BelongsToTheSettingsDialog)
{
    const OpenSettings settings;
    const HWND add = settings.OpenAdd();
    ASSERT_NE(add, nullptr);
    EXPECT_FALSE(::IsWindowEnabled(settings.Window()));
    ASSERT_TRUE(ClickButton(add, IDCANCEL));
    ASSERT_TRUE(WaitUntilGone(add, settings.Window()));
    EXPECT_TRUE(::IsWindowEnabled(settings.Window()));
}

TEST_F(SettingsAddDialog, OkNeedsASelection)
{
    const OpenSettings settings;
    const HWND add = settings.OpenAdd();
    ASSERT_NE(add, nullptr);
    EXPECT_FALSE(IsEnabled(add, IDOK));
    EXPECT_TRUE(IsEnabled(add, IDCANCEL));
    SelectItems(add, ARVMUI_CONTROL_AVAILABLE_LIST, {2});
    EXPECT_TRUE(IsEnabled(add, IDOK));
    SelectItems(add, ARVMUI_CONTROL_AVAILABLE_LIST, {0, 1, 3});
    EXPECT_TRUE(IsEnabled(add, IDOK));
    SelectItems(add, ARVMUI_CONTROL_AVAILABLE_LIST, {});
    EXPECT_FALSE(IsEnabled(add, IDOK));
}

TEST_F(SettingsAddDialog, OkFollowsClicksOfTheMouse)
{
    EXPECT_TRUE(PassesUndisturbed(
        []
        {
            const OpenSettings settings;
            const HWND add = settings.OpenAdd();
            const auto isRight = [add](const Positions& selected) {
                return SelectedItems(add, ARVMUI_CONTROL_AVAILABLE_LIST) == selected
                       && IsEnabled(add, IDOK) != selected.empty();
            };
            ClickItem(add, ARVMUI_CONTROL_AVAILABLE_LIST, 1, false);
            if (!isRight({1})) return false;
            ClickItem(add, ARVMUI_CONTROL_AVAILABLE_LIST, 3, true);
            if (!isRight({1, 3})) return false;
            ClickItem(add, ARVMUI_CONTROL_AVAILABLE_LIST, 1, true);
            ClickItem(add, ARVMUI_CONTROL_AVAILABLE_LIST, 3, true);
            return isRight({});
        }));
}

TEST_F(SettingsAddDialog, AppendsOneToTheEnd)
{
    Store(L"fr-FR");
    OpenSettings settings;
    ASSERT_TRUE(settings.Add({0}));
    EXPECT_EQ(settings.Chosen(), (Names{kFrench, kGerman}));
    ASSERT_TRUE(settings.Click(IDOK));
    EXPECT_TRUE(settings.Result());
    EXPECT_EQ(Stored(), L"fr-FR,de-DE");
}

TEST_F(SettingsAddDialog, AppendsSeveralInListOrder)
{
    Store(L"x");
    OpenSettings settings;
    ASSERT_TRUE(settings.Add({4, 0, 2}));
    EXPECT_EQ(settings.Chosen(), (Names{L"x", kGerman, kFrench, kKeywordNames[0]}));
    ASSERT_TRUE(settings.Click(IDOK));
    EXPECT_TRUE(settings.Result());
    EXPECT_EQ(Stored(), L"x,de-DE,fr-FR,user");
}

TEST_F(SettingsAddDialog, AppendsEverything)
{
    OpenSettings settings;
    ASSERT_TRUE(settings.Add({0, 1, 2, 3, 4, 5, 6, 7, 8}));
    EXPECT_EQ(settings.Chosen(), AllNames());
    EXPECT_FALSE(settings.Buttons().add);
    ASSERT_TRUE(settings.Click(IDOK));
    EXPECT_TRUE(settings.Result());
    EXPECT_EQ(Stored(), L"de-DE,en-US,fr-FR,ja-JP,user,system,uilang,kiv,msie");
}

TEST_F(SettingsAddDialog, OffersTheRestTheNextTime)
{
    const OpenSettings settings;
    ASSERT_TRUE(settings.Add({1, 3}));
    EXPECT_EQ(Available(settings.OpenAdd()), Without(AllNames(), {kEnglish, kJapanese}));
}

TEST_F(SettingsAddDialog, RemovedRowsReturnToTheirPlaces)
{
    Store(L"x,ja-JP,de-DE,fr-FR");
    OpenSettings settings;
    settings.Select({0, 2, 3});
    ASSERT_TRUE(settings.Click(ARVMUI_CONTROL_REMOVE));
    Names expected = Without(AllNames(), {kJapanese});
    expected.emplace_back(L"x");  // its row was added last
    const HWND add = settings.OpenAdd();
    EXPECT_EQ(Available(add), expected);

    SelectItems(add, ARVMUI_CONTROL_AVAILABLE_LIST, {2, static_cast<int>(expected.size()) - 1});
    ASSERT_TRUE(ClickButton(add, IDOK));
    ASSERT_TRUE(WaitUntilGone(add, settings.Window()));
    ASSERT_TRUE(settings.Click(IDOK));
    EXPECT_TRUE(settings.Result());
    EXPECT_EQ(Stored(), L"ja-JP,fr-FR,x");
}

TEST_F(SettingsAddDialog, SelectedItemIsNoLongerTheLast)
{
    Store(L"de-DE,fr-FR");
    const OpenSettings settings;
    settings.Select({1});
    EXPECT_FALSE(settings.Buttons().down);
    ASSERT_TRUE(settings.Add({0}));
    EXPECT_EQ(settings.Selected(), Positions{1});
    EXPECT_EQ(settings.Buttons(), (ButtonStates{true, true, true, true}));
}

TEST_F(SettingsAddDialog, ManyRoundsKeepEveryRowOnce)
{
    const OpenSettings settings;
    ASSERT_TRUE(settings.Add({0, 2, 4, 6, 8}));
    settings.Select({1, 3});
    ASSERT_TRUE(settings.Click(ARVMUI_CONTROL_REMOVE));
    ASSERT_TRUE(settings.Add({5, 0}));
    settings.Select({0});
    ASSERT_TRUE(settings.Click(ARVMUI_CONTROL_DOWN));
    settings.Select({0, 4});
    ASSERT_TRUE(settings.Click(ARVMUI_CONTROL_REMOVE));

    Names rows = settings.Chosen();
    const Names offered = Available(settings.OpenAdd());
    EXPECT_EQ(offered, Without(AllNames(), rows));
    rows.insert(rows.end(), offered.begin(), offered.end());
    Names all = AllNames();
    std::sort(rows.begin(), rows.end());
    std::sort(all.begin(), all.end());
    EXPECT_EQ(rows, all);
}

// ---- Not adding --------------------------------------------------------------------------------------

enum class Refusal
{
    kCancelButton,
    kCloseButton,
    kEndedFromOutside,
    kOkWithoutSelection,
};

struct RefusalRow
{
    const char* name;
    Refusal way;
};

void PrintTo(const RefusalRow& row, std::ostream* output)
{
    *output << row.name;
}

class SettingsAddDialogRefused : public SettingsDialog, public testing::WithParamInterface<RefusalRow>
{
};

TEST_P(SettingsAddDialogRefused, AddsNothing)
{
    Store(L"de-DE");
    OpenSettings settings;
    const HWND add = settings.OpenAdd();
    ASSERT_NE(add, nullptr);
    const bool selects = GetParam().way != Refusal::kOkWithoutSelection;
    SelectItems(add, ARVMUI_CONTROL_AVAILABLE_LIST, selects ? Positions{0, 1} : Positions{});
    switch (GetParam().way)
    {
        case Refusal::kCancelButton: ASSERT_TRUE(ClickButton(add, IDCANCEL)); break;
        case Refusal::kCloseButton: ::PostMessageW(add, WM_SYSCOMMAND, SC_CLOSE, 0); break;
        case Refusal::kEndedFromOutside:
            ::EndDialog(add, 7);
            ::PostMessageW(add, WM_NULL, 0, 0);
            break;
        case Refusal::kOkWithoutSelection: ::PostMessageW(add, WM_COMMAND, IDOK, 0); break;
    }
    ASSERT_TRUE(WaitUntilGone(add, settings.Window()));
    EXPECT_EQ(settings.Chosen(), Names{kGerman});
    const HWND again = settings.OpenAdd();
    EXPECT_EQ(Available(again), Without(AllNames(), {kGerman}));
    EXPECT_FALSE(IsEnabled(again, IDOK));
    ASSERT_TRUE(ClickButton(again, IDCANCEL));
    ASSERT_TRUE(WaitUntilGone(again, settings.Window()));
    ASSERT_TRUE(settings.Click(IDOK));
    EXPECT_TRUE(settings.Result());
    EXPECT_EQ(Stored(), L"de-DE");
}

INSTANTIATE_TEST_SUITE_P(Ways, SettingsAddDialogRefused,
    testing::Values(RefusalRow{"Cancel", Refusal::kCancelButton}, RefusalRow{"Close", Refusal::kCloseButton},
        RefusalRow{"EndedFromOutside", Refusal::kEndedFromOutside},
        RefusalRow{"OkWithoutSelection", Refusal::kOkWithoutSelection}),
    [](const auto& row) { return std::string(row.param.name); });

// ---- Failing to be shown -----------------------------------------------------------------------------

TEST_F(SettingsAddDialog, MissingTemplateIsReportedAndEndsTheSettings)
{
    Speak(EnglishTexts(), {ARVMUI_DIALOG_SETTINGS});
    Store(L"de-DE,fr-FR");
    OpenSettings settings;
    settings.Select({0});
    ASSERT_TRUE(settings.Click(ARVMUI_CONTROL_REMOVE));
    const HWND box = settings.OpenAdd();
    ASSERT_NE(box, nullptr);
    const BoxContents contents = ReadBox(box);
    EXPECT_EQ(contents.caption, L"Error");
    EXPECT_EQ(contents.text, L"908:" + std::to_wstring(ERROR_RESOURCE_NAME_NOT_FOUND));
    ASSERT_TRUE(PressButton(box, contents.buttons.begin()->first));
    ASSERT_TRUE(settings.Ends());
    EXPECT_FALSE(settings.Result());
    EXPECT_EQ(Stored(), L"de-DE,fr-FR");
}

TEST_F(SettingsAddDialog, MissingTemplateEndsTheSettingsWhilePopupsAreOff)
{
    Speak(EnglishTexts(), {ARVMUI_DIALOG_SETTINGS});
    arvmui::Descriptor().showMessagePopup = FALSE;
    OpenSettings settings;
    ASSERT_NE(settings.Window(), nullptr);
    settings.Press(ARVMUI_CONTROL_ADD);
    ASSERT_TRUE(settings.Ends());
    EXPECT_FALSE(settings.Result());
}

// ---- Ended from outside while both are up ------------------------------------------------------------

TEST_F(SettingsAddDialog, SettingsEndedMeanwhileEndAfterIt)
{
    Store(L"de-DE");
    OpenSettings settings;
    const HWND add = settings.OpenAdd();
    ASSERT_NE(add, nullptr);
    ::EndDialog(settings.Window(), 1);
    SelectItems(add, ARVMUI_CONTROL_AVAILABLE_LIST, {0});
    ASSERT_TRUE(ClickButton(add, IDOK));
    ASSERT_TRUE(settings.Ends());
    EXPECT_TRUE(settings.Result());
    EXPECT_EQ(Stored(), L"de-DE");
}

}  // namespace
