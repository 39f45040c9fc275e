// The buttons that change the list of the settings dialog: when they can be pressed, and what they do.
#include "settings_dialog_fixture.h"

namespace
{

using namespace arvmui_test;

const wchar_t* const kGerman = L"Deutsch";
const wchar_t* const kEnglish = L"English";
const wchar_t* const kFrench = L"Fran\u00e7ais";

// Every row there is, so that nothing is left to be added.
const wchar_t* const kEverything = L"de-DE,en-US,fr-FR,ja-JP,user,system,uilang,kiv,msie";

class SettingsDialogButtons : public SettingsDialog
{
};

// ---- States ------------------------------------------------------------------------------------------

struct StateRow
{
    const char* name;
    std::wstring stored;
    Positions selected;
    ButtonStates states;
};

void PrintTo(const StateRow& row, std::ostream* output)
{
    *output << row.name;
}

class SettingsDialogStates : public SettingsDialog, public testing::WithParamInterface<StateRow>
{
};

TEST_P(SettingsDialogStates, FollowTheSelection)
{
    Store(GetParam().stored);
    OpenSettings settings;
    ASSERT_NE(settings.Window(), nullptr);
    settings.Select(GetParam().selected);
    ASSERT_EQ(settings.Selected(), GetParam().selected);
    EXPECT_EQ(settings.Buttons(), GetParam().states);
    for (const int button : {IDOK, IDCANCEL, ARVMUI_CONTROL_APPLY})
        EXPECT_TRUE(IsEnabled(settings.Window(), button)) << button;
}

INSTANTIATE_TEST_SUITE_P(Selections, SettingsDialogStates,
    testing::Values(StateRow{"EmptyList", L"", {}, {false, false, false, true}},
        StateRow{"OnlyItem", L"de-DE", {0}, {false, false, true, true}},
        StateRow{"None", L"de-DE,fr-FR,x", {}, {false, false, false, true}},
        StateRow{"First", L"de-DE,fr-FR,x", {0}, {false, true, true, true}},
        StateRow{"Middle", L"de-DE,fr-FR,x", {1}, {true, true, true, true}},
        StateRow{"Last", L"de-DE,fr-FR,x", {2}, {true, false, true, true}},
        StateRow{"FirstTwo", L"de-DE,fr-FR,x", {0, 1}, {false, false, true, true}},
        StateRow{"LastTwo", L"de-DE,fr-FR,x", {1, 2}, {false, false, true, true}},
        StateRow{"FirstAndLast", L"de-DE,fr-FR,x", {0, 2}, {false, false, true, true}},
        StateRow{"All", L"de-DE,fr-FR,x", {0, 1, 2}, {false, false, true, true}},
        StateRow{"FirstOfTwo", L"de-DE,fr-FR", {0}, {false, true, true, true}},
        StateRow{"SecondOfTwo", L"de-DE,fr-FR", {1}, {true, false, true, true}},
        StateRow{"NothingLeftToAdd", kEverything, {}, {false, false, false, false}},
        StateRow{"NothingLeftToAddAndOneSelected", kEverything, {4}, {true, true, true, false}}),
    [](const auto& row) { return std::string(row.param.name); });

TEST_F(SettingsDialogButtons, StatesAreRightWhenTheDialogOpens)
{
    Store(L"de-DE,fr-FR");
    const OpenSettings settings;
    ASSERT_NE(settings.Window(), nullptr);
    EXPECT_EQ(settings.Selected(), Positions{});
    EXPECT_EQ(settings.Buttons(), (ButtonStates{false, false, false, true}));
}

TEST_F(SettingsDialogButtons, StatesFollowClicksOfTheMouse)
{
    Store(L"de-DE,fr-FR,en-US");
    EXPECT_TRUE(PassesUndisturbed(
        []
        {
            const OpenSettings settings;
            const auto click = [&settings](int item, bool withControlKey)
            { ClickItem(settings.Window(), ARVMUI_CONTROL_CHOSEN_LIST, item, withControlKey); };
            const auto isRight = [&settings](const Positions& selected, const ButtonStates& states)
            { return settings.Selected() == selected && settings.Buttons() == states; };
            click(1, false);
            if (!isRight({1}, {true, true, true, true})) return false;
            click(2, true);
            if (!isRight({1, 2}, {false, false, true, true})) return false;
            click(1, true);
            if (!isRight({2}, {true, false, true, true})) return false;
            click(2, true);
            return isRight({}, {false, false, false, true});
        }));
}

// ---- Up and Down -------------------------------------------------------------------------------------

TEST_F(SettingsDialogButtons, UpMovesTheSelectedItemToTheTop)
{
    Store(L"de-DE,fr-FR,en-US");
    OpenSettings settings;
    settings.Select({2});
    ASSERT_TRUE(settings.Click(ARVMUI_CONTROL_UP));
    EXPECT_EQ(settings.Chosen(), (Names{kGerman, kEnglish, kFrench}));
    EXPECT_EQ(settings.Selected(), Positions{1});
    EXPECT_EQ(settings.Buttons(), (ButtonStates{true, true, true, true}));
    ASSERT_TRUE(settings.Click(ARVMUI_CONTROL_UP));
    EXPECT_EQ(settings.Chosen(), (Names{kEnglish, kGerman, kFrench}));
    EXPECT_EQ(settings.Selected(), Positions{0});
    EXPECT_EQ(settings.Buttons(), (ButtonStates{false, true, true, true}));
    ASSERT_TRUE(settings.Click(IDOK));
    EXPECT_TRUE(settings.Result());
    EXPECT_EQ(Stored(), L"en-US,de-DE,fr-FR");
}

TEST_F(SettingsDialogButtons, DownMovesTheSelectedItemToTheEnd)
{
    Store(L"de-DE,fr-FR,en-US");
    OpenSettings settings;
    settings.Select({0});
    ASSERT_TRUE(settings.Click(ARVMUI_CONTROL_DOWN));
    EXPECT_EQ(settings.Chosen(), (Names{kFrench, kGerman, kEnglish}));
    EXPECT_EQ(settings.Selected(), Positions{1});
    EXPECT_EQ(settings.Buttons(), (ButtonStates{true, true, true, true}));
    ASSERT_TRUE(settings.Click(ARVMUI_CONTROL_DOWN));
    EXPECT_EQ(settings.Chosen(), (Names{kFrench, kEnglish, kGerman}));
    EXPECT_EQ(settings.Selected(), Positions{2});
    EXPECT_EQ(settings.Buttons(), (ButtonStates{true, false, true, true}));
    ASSERT_TRUE(settings.Click(IDOK));
    EXPECT_TRUE(settings.Result());
    EXPECT_EQ(Stored(), L"fr-FR,en-US,de-DE");
}

TEST_F(SettingsDialogButtons, MovedNameIsTheOneShownBefore)
{
    Store(L"ja-JP,x");
    const OpenSettings settings;
    ASSERT_EQ(settings.Chosen(), (Names{L"Japanese", L"x"}));
    settings.Select({0});
    ASSERT_TRUE(settings.Click(ARVMUI_CONTROL_DOWN));
    EXPECT_EQ(settings.Chosen(), (Names{L"x", L"Japanese"}));
}

struct IgnoredCommand
{
    const char* name;
    Positions selected;
    int button;
};

void PrintTo(const IgnoredCommand& command, std::ostream* output)
{
    *output << command.name;
}

class SettingsDialogIgnored : public SettingsDialog, public testing::WithParamInterface<IgnoredCommand>
{
};

// Commands may arrive although their button is disabled: another program can send them.
TEST_P(SettingsDialogIgnored, CommandChangesNothing)
{
    Store(L"de-DE,fr-FR,en-US");
    OpenSettings settings;
    ASSERT_NE(settings.Window(), nullptr);
    settings.Select(GetParam().selected);
    settings.SendCommand(GetParam().button);
    EXPECT_EQ(settings.Chosen(), (Names{kGerman, kFrench, kEnglish}));
    EXPECT_EQ(settings.Selected(), GetParam().selected);
    ASSERT_TRUE(settings.Click(IDOK));
    EXPECT_TRUE(settings.Result());
    EXPECT_EQ(Stored(), L"de-DE,fr-FR,en-US");
}

INSTANTIATE_TEST_SUITE_P(Commands, SettingsDialogIgnored,
    testing::Values(IgnoredCommand{"UpOfTheFirst", {0}, ARVMUI_CONTROL_UP},
        IgnoredCommand{"DownOfTheLast", {2}, ARVMUI_CONTROL_DOWN}, IgnoredCommand{"UpOfTwo", {1, 2}, ARVMUI_CONTROL_UP},
        IgnoredCommand{"DownOfTwo", {0, 1}, ARVMUI_CONTROL_DOWN}, IgnoredCommand{"UpOfNone", {}, ARVMUI_CONTROL_UP},
        IgnoredCommand{"DownOfNone", {}, ARVMUI_CONTROL_DOWN},
        IgnoredCommand{"RemoveOfNone", {}, ARVMUI_CONTROL_REMOVE}, IgnoredCommand{"UnknownControl", {1}, 301}),
    [](const auto& command) { return std::string(command.param.name); });

// ---- Remove ------------------------------------------------------------------------------------------

struct Removal
{
    const char* name;
    Positions selected;
    Names left;
    std::wstring stored;
};

void PrintTo(const Removal& removal, std::ostream* output)
{
    *output << removal.name;
}

class SettingsDialogRemoval : public SettingsDialog, public testing::WithParamInterface<Removal>
{
};

TEST_P(SettingsDialogRemoval, KeepsTheOrderOfTheRest)
{
    Store(L"fr-FR,x,de-DE,y,en-US");
    OpenSettings settings;
    settings.Select(GetParam().selected);
    ASSERT_TRUE(settings.Click(ARVMUI_CONTROL_REMOVE));
    EXPECT_EQ(settings.Chosen(), GetParam().left);
    EXPECT_EQ(settings.Selected(), Positions{});
    EXPECT_EQ(settings.Buttons(), (ButtonStates{false, false, false, true}));
    ASSERT_TRUE(settings.Click(IDOK));
    EXPECT_TRUE(settings.Result());
    EXPECT_EQ(Stored(), GetParam().stored);
}

INSTANTIATE_TEST_SUITE_P(Selections, SettingsDialogRemoval,
    testing::Values(Removal{"First", {0}, {L"x", kGerman, L"y", kEnglish}, L"x,de-DE,y,en-US"},
        Removal{"Middle", {2}, {kFrench, L"x", L"y", kEnglish}, L"fr-FR,x,y,en-US"},
        Removal{"Last", {4}, {kFrench, L"x", kGerman, L"y"}, L"fr-FR,x,de-DE,y"},
        Removal{"FirstAndLast", {0, 4}, {L"x", kGerman, L"y"}, L"x,de-DE,y"},
        Removal{"Neighbours", {1, 2}, {kFrench, L"y", kEnglish}, L"fr-FR,y,en-US"},
        Removal{"EveryOther", {0, 2, 4}, {L"x", L"y"}, L"x,y"}, Removal{"AllButOne", {0, 1, 3, 4}, {kGerman}, L"de-DE"},
        Removal{"All", {0, 1, 2, 3, 4}, {}, kNoValue}),
    [](const auto& removal) { return std::string(removal.param.name); });

TEST_F(SettingsDialogButtons, RemovedItemCanBeAddedAgain)
{
    Store(kEverything);
    const OpenSettings settings;
    settings.Select({1});
    EXPECT_FALSE(settings.Buttons().add);
    ASSERT_TRUE(settings.Click(ARVMUI_CONTROL_REMOVE));
    EXPECT_TRUE(settings.Buttons().add);
    const HWND add = settings.OpenAdd();
    EXPECT_EQ(ListItems(add, ARVMUI_CONTROL_AVAILABLE_LIST), Names{kEnglish});
}

TEST_F(SettingsDialogButtons, ItemMovedAfterARemovalIsTheRightOne)
{
    Store(L"fr-FR,x,de-DE,y,en-US");
    OpenSettings settings;
    settings.Select({0, 2});
    ASSERT_TRUE(settings.Click(ARVMUI_CONTROL_REMOVE));
    settings.Select({2});
    ASSERT_TRUE(settings.Click(ARVMUI_CONTROL_UP));
    EXPECT_EQ(settings.Chosen(), (Names{L"x", kEnglish, L"y"}));
    ASSERT_TRUE(settings.Click(IDOK));
    EXPECT_TRUE(settings.Result());
    EXPECT_EQ(Stored(), L"x,en-US,y");
}

// ---- The keyboard stays in the dialog ----------------------------------------------------------------

struct DisabledButton
{
    const char* name;
    Positions selected;
    int button;  // disabled by its own action
};

void PrintTo(const DisabledButton& button, std::ostream* output)
{
    *output << button.name;
}

class SettingsDialogFocus : public SettingsDialog, public testing::WithParamInterface<DisabledButton>
{
};

TEST_P(SettingsDialogFocus, GoesToTheListWhenTheButtonIsDisabled)
{
    Store(L"de-DE,fr-FR");
    EXPECT_TRUE(PassesUndisturbed(
        []
        {
            const OpenSettings settings;
            const HWND dialog = settings.Window();
            ::SetForegroundWindow(dialog);
            settings.Select(GetParam().selected);
            FocusControl(dialog, GetParam().button);
            if (FocusOf(dialog) != ::GetDlgItem(dialog, GetParam().button)) return false;
            settings.SendCommand(GetParam().button);
            if (IsEnabled(dialog, GetParam().button)) return false;
            return FocusOf(dialog) == ::GetDlgItem(dialog, ARVMUI_CONTROL_CHOSEN_LIST);
        }));
}

INSTANTIATE_TEST_SUITE_P(Buttons, SettingsDialogFocus,
    testing::Values(DisabledButton{"Up", {1}, ARVMUI_CONTROL_UP}, DisabledButton{"Down", {0}, ARVMUI_CONTROL_DOWN},
        DisabledButton{"Remove", {0}, ARVMUI_CONTROL_REMOVE}),
    [](const auto& button) { return std::string(button.param.name); });

TEST_F(SettingsDialogButtons, FocusGoesToTheListWhenNothingIsLeftToAdd)
{
    Store(L"de-DE,en-US,fr-FR,ja-JP,user,system,uilang,kiv");
    EXPECT_TRUE(PassesUndisturbed(
        []
        {
            const OpenSettings settings;
            const HWND dialog = settings.Window();
            ::SetForegroundWindow(dialog);
            FocusControl(dialog, ARVMUI_CONTROL_ADD);
            if (!settings.Add({0}) || settings.Buttons().add) return false;
            return FocusOf(dialog) == ::GetDlgItem(dialog, ARVMUI_CONTROL_CHOSEN_LIST);
        }));
}

TEST_F(SettingsDialogButtons, FocusStaysOnAButtonThatIsStillEnabled)
{
    Store(L"de-DE,fr-FR,en-US");
    EXPECT_TRUE(PassesUndisturbed(
        []
        {
            const OpenSettings settings;
            const HWND dialog = settings.Window();
            ::SetForegroundWindow(dialog);
            settings.Select({2});
            FocusControl(dialog, ARVMUI_CONTROL_UP);
            settings.SendCommand(ARVMUI_CONTROL_UP);
            return settings.Selected() == Positions{1} && FocusOf(dialog) == ::GetDlgItem(dialog, ARVMUI_CONTROL_UP);
        }));
}

}  // namespace
