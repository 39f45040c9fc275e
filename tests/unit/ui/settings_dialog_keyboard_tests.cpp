// The settings dialog without a mouse: the order of its controls, keys and access keys.
#include "settings_dialog_fixture.h"

namespace
{

using namespace arvmui_test;

const wchar_t* const kGerman = L"Deutsch";
const wchar_t* const kEnglish = L"English";
const wchar_t* const kFrench = L"Fran\u00e7ais";

// The controls that the Tab key visits, from the list on, until it comes round.
Positions TabOrder(HWND dialog, int list, bool backwards = false)
{
    Positions order;
    const HWND first = ::GetDlgItem(dialog, list);
    HWND control = first;
    do
    {
        order.push_back(::GetDlgCtrlID(control));
        control = ::GetNextDlgTabItem(dialog, control, backwards);
    } while (control && control != first && order.size() < 20);
    return order;
}

int DefaultButton(HWND dialog)
{
    return LOWORD(::SendMessageW(dialog, DM_GETDEFID, 0, 0));
}

class SettingsDialogKeyboard : public SettingsDialog
{
protected:
    SettingsDialogKeyboard() { Store(L"de-DE,fr-FR,en-US"); }
};

TEST_F(SettingsDialogKeyboard, TabGoesThroughAllControlsInOrder)
{
    const OpenSettings settings;
    settings.Select({1});
    EXPECT_EQ(TabOrder(settings.Window(), 302), (Positions{302, 307, 306, 304, 305, IDOK, IDCANCEL, 303}));
    EXPECT_EQ(TabOrder(settings.Window(), 302, true), (Positions{302, 303, IDCANCEL, IDOK, 305, 304, 306, 307}));
}

TEST_F(SettingsDialogKeyboard, TabLeavesOutWhatIsDisabled)
{
    const OpenSettings settings;
    EXPECT_EQ(TabOrder(settings.Window(), 302), (Positions{302, 307, IDOK, IDCANCEL, 303}));
}

TEST_F(SettingsDialogKeyboard, TabGoesThroughTheControlsOfTheAddDialog)
{
    const OpenSettings settings;
    const HWND add = settings.OpenAdd();
    EXPECT_EQ(TabOrder(add, 311), (Positions{311, IDCANCEL}));
    SelectItems(add, 311, {0});
    EXPECT_EQ(TabOrder(add, 311), (Positions{311, IDOK, IDCANCEL}));
}

TEST_F(SettingsDialogKeyboard, OkIsTheDefault)
{
    const OpenSettings settings;
    EXPECT_EQ(DefaultButton(settings.Window()), IDOK);
    EXPECT_EQ(DefaultButton(settings.OpenAdd()), IDOK);
}

TEST_F(SettingsDialogKeyboard, ListsHaveTheFocusAtFirst)
{
    EXPECT_TRUE(PassesUndisturbed(
        []
        {
            const OpenSettings settings;
            ::SetForegroundWindow(settings.Window());
            if (FocusOf(settings.Window()) != ::GetDlgItem(settings.Window(), 302)) return false;
            const HWND add = settings.OpenAdd();
            ::SetForegroundWindow(add);
            return FocusOf(add) == ::GetDlgItem(add, 311);
        }));
}

TEST_F(SettingsDialogKeyboard, TabKeyMovesTheFocus)
{
    EXPECT_TRUE(PassesUndisturbed(
        []
        {
            const OpenSettings settings;
            const HWND dialog = settings.Window();
            ::SetForegroundWindow(dialog);
            settings.Select({1});
            FocusControl(dialog, 302);
            for (const int next : {307, 306, 304, 305, IDOK, IDCANCEL, 303, 302})
            {
                const HWND before = FocusOf(dialog);
                PressKey(before, VK_TAB);
                WaitUntil([=] { return FocusOf(dialog) != before; });
                if (FocusOf(dialog) != ::GetDlgItem(dialog, next)) return false;
            }
            return true;
        }));
}

TEST_F(SettingsDialogKeyboard, EnterSaves)
{
    OpenSettings settings;
    settings.Select({0});
    ASSERT_TRUE(settings.Click(ARVMUI_CONTROL_REMOVE));
    FocusControl(settings.Window(), 302);
    PressKey(::GetDlgItem(settings.Window(), 302), VK_RETURN);
    ASSERT_TRUE(settings.Ends());
    EXPECT_TRUE(settings.Result());
    EXPECT_EQ(Stored(), L"fr-FR,en-US");
}

TEST_F(SettingsDialogKeyboard, EscapeCancels)
{
    OpenSettings settings;
    settings.Select({0});
    ASSERT_TRUE(settings.Click(ARVMUI_CONTROL_REMOVE));
    PressKey(::GetDlgItem(settings.Window(), 302), VK_ESCAPE);
    ASSERT_TRUE(settings.Ends());
    EXPECT_TRUE(settings.Result());
    EXPECT_EQ(Stored(), L"de-DE,fr-FR,en-US");
}

TEST_F(SettingsDialogKeyboard, ArrowKeysSelectAndChangeTheButtons)
{
    const OpenSettings settings;
    const HWND list = ::GetDlgItem(settings.Window(), 302);
    ASSERT_NE(list, nullptr);
    PressKey(list, VK_END);
    ASSERT_TRUE(WaitUntil([&] { return settings.Selected() == Positions{2} && settings.Buttons().up; }));
    EXPECT_EQ(settings.Buttons(), (ButtonStates{true, false, true, true}));
    PressKey(list, VK_UP);
    ASSERT_TRUE(WaitUntil([&] { return settings.Selected() == Positions{1} && settings.Buttons().down; }));
    EXPECT_EQ(settings.Buttons(), (ButtonStates{true, true, true, true}));
    PressKey(list, VK_HOME);
    ASSERT_TRUE(WaitUntil([&] { return settings.Selected() == Positions{0} && !settings.Buttons().up; }));
    EXPECT_EQ(settings.Buttons(), (ButtonStates{false, true, true, true}));
}

// Everything that the dialog can do, by keys alone.
TEST_F(SettingsDialogKeyboard, AccessKeysPressTheButtons)
{
    OpenSettings settings;
    const HWND dialog = settings.Window();
    const HWND list = ::GetDlgItem(dialog, 302);
    ASSERT_NE(list, nullptr);

    PressKey(list, VK_HOME);
    ASSERT_TRUE(WaitUntil([&] { return settings.Buttons().down; }));
    PressAccessKeyOf(dialog, ARVMUI_CONTROL_DOWN);
    ASSERT_TRUE(WaitUntil([&] { return settings.Chosen() == Names{kFrench, kGerman, kEnglish}; }));
    PressAccessKeyOf(dialog, ARVMUI_CONTROL_UP);
    ASSERT_TRUE(WaitUntil([&] { return settings.Chosen() == Names{kGerman, kFrench, kEnglish}; }));
    PressAccessKeyOf(dialog, ARVMUI_CONTROL_REMOVE);
    ASSERT_TRUE(WaitUntil([&] { return settings.Chosen() == Names{kFrench, kEnglish}; }));

    PressAccessKeyOf(dialog, ARVMUI_CONTROL_ADD);
    const HWND add = WaitForOwnedDialog(dialog);
    ASSERT_NE(add, nullptr);
    PressKey(::GetDlgItem(add, 311), VK_HOME);
    ASSERT_TRUE(WaitUntil([=] { return IsEnabled(add, IDOK); }));
    PressAccessKeyOf(add, IDOK);
    ASSERT_TRUE(WaitUntilGone(add, dialog));
    EXPECT_EQ(settings.Chosen(), (Names{kFrench, kEnglish, kGerman}));

    PressAccessKeyOf(dialog, ARVMUI_CONTROL_APPLY);
    ASSERT_TRUE(WaitUntil([] { return Stored() == L"fr-FR,en-US,de-DE"; }));
    PressAccessKeyOf(dialog, IDCANCEL);
    ASSERT_TRUE(settings.Ends());
    EXPECT_TRUE(settings.Result());
}

TEST_F(SettingsDialogKeyboard, AccessKeyOfADisabledButtonDoesNothing)
{
    OpenSettings settings;
    const HWND dialog = settings.Window();
    ASSERT_NE(dialog, nullptr);
    settings.Select({0});
    PressAccessKeyOf(dialog, ARVMUI_CONTROL_UP);
    PressAccessKeyOf(dialog, IDOK);
    ASSERT_TRUE(settings.Ends());
    EXPECT_TRUE(settings.Result());
    EXPECT_EQ(Stored(), L"de-DE,fr-FR,en-US");
}

TEST_F(SettingsDialogKeyboard, EnterAddsAndEscapeDoesNot)
{
    const OpenSettings settings;
    const HWND dialog = settings.Window();
    HWND add = settings.OpenAdd();
    ASSERT_NE(add, nullptr);
    SelectItems(add, 311, {0});
    PressKey(::GetDlgItem(add, 311), VK_ESCAPE);
    ASSERT_TRUE(WaitUntilGone(add, dialog));
    EXPECT_EQ(settings.Chosen().size(), size_t{3});

    add = settings.OpenAdd();
    ASSERT_NE(add, nullptr);
    SelectItems(add, 311, {0});
    FocusControl(add, 311);
    PressKey(::GetDlgItem(add, 311), VK_RETURN);
    ASSERT_TRUE(WaitUntilGone(add, dialog));
    EXPECT_EQ(settings.Chosen().size(), size_t{4});
}

TEST_F(SettingsDialogKeyboard, EnterWithoutSelectionLeavesTheAddDialogOpen)
{
    const OpenSettings settings;
    const HWND add = settings.OpenAdd();
    ASSERT_NE(add, nullptr);
    FocusControl(add, 311);
    PressKey(::GetDlgItem(add, 311), VK_RETURN);
    PressKey(::GetDlgItem(add, 311), VK_HOME);  // handled after the other
    ASSERT_TRUE(WaitUntil([=] { return SelectedItems(add, 311) == Positions{0} || !::IsWindow(add); }));
    EXPECT_TRUE(::IsWindowVisible(add));
}

}  // namespace
