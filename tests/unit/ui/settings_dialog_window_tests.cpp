// The settings dialog among other windows: its owner, dialogs of two threads, long lists, and what a
// hundred openings leave behind.
#include "settings_dialog_fixture.h"
#include "support/box_window.h"
#include "support/busy_blocks.h"
#include "support/gdi_objects.h"
#include "support/process_resources.h"

namespace
{

using namespace arvmui_test;

constexpr int kList = ARVMUI_CONTROL_CHOSEN_LIST;
constexpr int kAvailable = ARVMUI_CONTROL_AVAILABLE_LIST;

class SettingsDialogWindow : public SettingsDialog
{
};

// ---- The owner ---------------------------------------------------------------------------------------

constexpr UINT kGoAway = WM_APP;
constexpr wchar_t kOwnerClass[] = L"ArvmuiSettingsTestOwner";

LRESULT CALLBACK OwnerProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    if (message == kGoAway) return ::DestroyWindow(window);
    return ::DefWindowProcW(window, message, wParam, lParam);
}

// A window of the program that opens the dialog, and the dialog.
class OwnedSettings
{
public:
    OwnedSettings()
    {
        WNDCLASSW ownerClass = {};
        ownerClass.lpfnWndProc = OwnerProcedure;
        ownerClass.lpszClassName = kOwnerClass;
        ::RegisterClassW(&ownerClass);
        call_ = std::make_unique<ModalCall>(
            [this]
            {
                owner_ = ::CreateWindowW(kOwnerClass, L"Owner", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 0, 0, 300, 200,
                    nullptr, nullptr, nullptr, nullptr);
                const BOOL result = ARVMUI_SettingDialogBoxW(owner_, nullptr, nullptr, kUserScope);
                ownerIsEnabled_ = ::IsWindowEnabled(owner_) != FALSE;
                ::DestroyWindow(owner_);
                return result;
            });
        dialog_ = call_->WaitForBox();
    }

    HWND Owner() const { return owner_; }
    HWND Dialog() const { return dialog_; }
    BOOL Result() { return call_->Result(); }
    bool OwnerIsEnabledAfterwards() const { return ownerIsEnabled_; }

private:
    std::atomic<HWND> owner_{nullptr};
    HWND dialog_ = nullptr;
    bool ownerIsEnabled_ = false;
    std::unique_ptr<ModalCall> call_;
};

TEST_F(SettingsDialogWindow, OwnerIsDisabledWhileItIsUp)
{
    OwnedSettings settings;
    ASSERT_NE(settings.Dialog(), nullptr);
    EXPECT_EQ(::GetWindow(settings.Dialog(), GW_OWNER), settings.Owner());
    EXPECT_FALSE(::IsWindowEnabled(settings.Owner()));
    ASSERT_TRUE(ClickButton(settings.Dialog(), IDCANCEL));
    EXPECT_TRUE(settings.Result());
    EXPECT_TRUE(settings.OwnerIsEnabledAfterwards());
}

TEST_F(SettingsDialogWindow, GoesAwayWithItsOwnerAndStoresNothing)
{
    Store(L"de-DE,fr-FR");
    OwnedSettings settings;
    ASSERT_NE(settings.Dialog(), nullptr);
    SelectItems(settings.Dialog(), kList, {0});
    ASSERT_TRUE(ClickButton(settings.Dialog(), ARVMUI_CONTROL_REMOVE));
    ::PostMessageW(settings.Owner(), kGoAway, 0, 0);
    EXPECT_FALSE(settings.Result());
    EXPECT_FALSE(::IsWindow(settings.Dialog()));
    EXPECT_EQ(Stored(), L"de-DE,fr-FR");
}

TEST_F(SettingsDialogWindow, BothDialogsGoAwayWithTheOwner)
{
    Store(L"de-DE");
    OwnedSettings settings;
    ASSERT_NE(settings.Dialog(), nullptr);
    ::PostMessageW(::GetDlgItem(settings.Dialog(), ARVMUI_CONTROL_ADD), BM_CLICK, 0, 0);
    const HWND add = WaitForOwnedDialog(settings.Dialog());
    ASSERT_NE(add, nullptr);
    ::PostMessageW(settings.Owner(), kGoAway, 0, 0);
    EXPECT_FALSE(settings.Result());
    EXPECT_FALSE(::IsWindow(add));
    EXPECT_EQ(Stored(), L"de-DE");
}

TEST_F(SettingsDialogWindow, ErrorBelongsToTheOwnerOfTheDialogThatCannotBeShown)
{
    Speak(EnglishTexts(), {});
    OwnedSettings settings;
    const HWND box = settings.Dialog();
    ASSERT_NE(box, nullptr);
    EXPECT_EQ(ReadBox(box).text.substr(0, 4), L"908:");
    EXPECT_EQ(::GetWindow(box, GW_OWNER), settings.Owner());
    ASSERT_TRUE(PressButton(box, ReadBox(box).buttons.begin()->first));
    EXPECT_FALSE(settings.Result());
}

// ---- Two threads -------------------------------------------------------------------------------------

TEST_F(SettingsDialogWindow, DialogsOfTwoThreadsDoNotInterfere)
{
    Store(L"fr-FR", HKEY_CURRENT_USER);
    Store(L"ja-JP", HKEY_LOCAL_MACHINE);
    OpenSettings user(kUserScope);
    OpenSettings machine(kMachineScope);
    ASSERT_NE(user.Window(), nullptr);
    ASSERT_NE(machine.Window(), nullptr);
    const HWND userAdd = user.OpenAdd();
    const HWND machineAdd = machine.OpenAdd();
    ASSERT_NE(userAdd, nullptr);
    ASSERT_NE(machineAdd, nullptr);
    SelectItems(userAdd, kAvailable, {0});
    SelectItems(machineAdd, kAvailable, {1});
    ASSERT_TRUE(ClickButton(userAdd, IDOK));
    ASSERT_TRUE(WaitUntilGone(userAdd, user.Window()));
    EXPECT_EQ(user.Chosen(), (Names{L"Fran\u00e7ais", L"Deutsch"}));
    EXPECT_EQ(machine.Chosen(), Names{L"Japanese"});
    ASSERT_TRUE(user.Click(IDOK));
    EXPECT_TRUE(user.Result());

    ASSERT_TRUE(ClickButton(machineAdd, IDOK));
    ASSERT_TRUE(WaitUntilGone(machineAdd, machine.Window()));
    EXPECT_EQ(machine.Chosen(), (Names{L"Japanese", L"English"}));
    machine.Select({0});
    ASSERT_TRUE(machine.Click(ARVMUI_CONTROL_DOWN));
    ASSERT_TRUE(machine.Click(IDOK));
    EXPECT_TRUE(machine.Result());
    EXPECT_EQ(Stored(HKEY_CURRENT_USER), L"fr-FR,de-DE");
    EXPECT_EQ(Stored(HKEY_LOCAL_MACHINE), L"en-US,ja-JP");
}

TEST_F(SettingsDialogWindow, BoxOfTheSameThreadOverTheDialogIsTranslated)
{
    Strings texts = EnglishTexts();
    texts[ARVMUI_STRING_BUTTON_OK] = L"Fine";
    Speak(texts, {ARVMUI_DIALOG_SETTINGS});
    OpenSettings settings;
    const HWND box = settings.OpenAdd();  // an error, as there is no template
    ASSERT_NE(box, nullptr);
    EXPECT_EQ(Labels(ReadBox(box)), Names{L"Fine"});
}

// ---- Long lists --------------------------------------------------------------------------------------

class SettingsDialogLongList : public SettingsDialog
{
protected:
    static constexpr int kLanguages = 40;

    SettingsDialogLongList()
    {
        for (const wchar_t* const folder : {L"de", L"en", L"fr", L"ja"}) Uninstall(folder);
        for (int i = 0; i < kLanguages; ++i)
        {
            const std::wstring tag = L"tag" + std::to_wstring(i);
            Install(tag, tag, static_cast<LANGID>(0x0400 + i + 1), L"English " + tag, L"Language " + tag);
            names.push_back(L"Language " + tag);
        }
    }

    // The item lies inside the list's window as a whole.
    static bool IsVisible(HWND dialog, int list, int item)
    {
        const HWND window = ::GetDlgItem(dialog, list);
        RECT place = {};
        RECT client = {};
        ::GetClientRect(window, &client);
        ::SendMessageW(window, LB_GETITEMRECT, static_cast<WPARAM>(item), reinterpret_cast<LPARAM>(&place));
        return place.top >= client.top && place.bottom <= client.bottom;
    }
    static bool HasScrollBar(HWND dialog, int list)
    {
        return (::GetWindowLongW(::GetDlgItem(dialog, list), GWL_STYLE) & WS_VSCROLL) != 0;
    }

    Names names;
};

TEST_F(SettingsDialogLongList, OffersAllAndScrollsToTheLast)
{
    const OpenSettings settings;
    const HWND add = settings.OpenAdd();
    ASSERT_NE(add, nullptr);
    Names expected = names;
    expected.insert(expected.end(), kKeywordNames.begin(), kKeywordNames.end());
    EXPECT_EQ(ListItems(add, kAvailable), expected);
    EXPECT_TRUE(HasScrollBar(add, kAvailable));
    const int last = static_cast<int>(expected.size()) - 1;
    EXPECT_TRUE(IsVisible(add, kAvailable, 0));
    EXPECT_FALSE(IsVisible(add, kAvailable, last));
    PressKey(::GetDlgItem(add, kAvailable), VK_END);
    ASSERT_TRUE(WaitUntil([=] { return IsVisible(add, kAvailable, last); }));
    EXPECT_FALSE(IsVisible(add, kAvailable, 0));
}

TEST_F(SettingsDialogLongList, ShowsTheItemThatIsMovedOutOfView)
{
    OpenSettings settings;
    Positions all;
    for (int i = 0; i < kLanguages; ++i) all.push_back(i);
    ASSERT_TRUE(settings.Add(all));
    const HWND dialog = settings.Window();
    EXPECT_EQ(settings.Chosen(), names);
    EXPECT_TRUE(HasScrollBar(dialog, kList));
    EXPECT_FALSE(IsVisible(dialog, kList, kLanguages - 1));
    settings.Select({0});
    for (int i = 1; i < kLanguages; ++i)
    {
        ASSERT_TRUE(settings.Click(ARVMUI_CONTROL_DOWN)) << i;
        ASSERT_TRUE(IsVisible(dialog, kList, i)) << i;
    }
    EXPECT_FALSE(settings.Buttons().down);
    EXPECT_EQ(settings.Chosen().back(), names[0]);
    for (int i = kLanguages - 2; i >= 0; --i)
    {
        ASSERT_TRUE(settings.Click(ARVMUI_CONTROL_UP)) << i;
        ASSERT_TRUE(IsVisible(dialog, kList, i)) << i;
    }
    EXPECT_EQ(settings.Chosen(), names);
}

TEST_F(SettingsDialogLongList, ScrollBarAppearsWithTheItems)
{
    const OpenSettings settings;
    EXPECT_FALSE(HasScrollBar(settings.Window(), kList));
    ASSERT_TRUE(settings.Add({0, 1, 2}));
    EXPECT_FALSE(HasScrollBar(settings.Window(), kList));
    Positions rest;
    for (int i = 0; i < kLanguages - 3; ++i) rest.push_back(i);
    ASSERT_TRUE(settings.Add(rest));
    EXPECT_TRUE(HasScrollBar(settings.Window(), kList));
}

// ---- What is left behind -----------------------------------------------------------------------------

BOOL CALLBACK CountWindow(HWND window, LPARAM context)
{
    DWORD process = 0;
    ::GetWindowThreadProcessId(window, &process);
    if (process == ::GetCurrentProcessId()) ++*reinterpret_cast<size_t*>(context);
    return TRUE;
}

size_t CountWindows()
{
    size_t count = 0;
    ::EnumWindows(CountWindow, reinterpret_cast<LPARAM>(&count));
    return count;
}

// Opens both dialogs and ends them. What is stored stays as it was.
bool UseOnce()
{
    OpenSettings settings;
    settings.Select({0});
    return settings.Window() && settings.Click(ARVMUI_CONTROL_DOWN) && settings.Add({0}) && settings.Click(IDCANCEL)
           && settings.Result();
}

TEST_F(SettingsDialogWindow, AHundredOpeningsLeaveNothingBehind)
{
    constexpr int kOpenings = 100;
    // The system itself keeps a few things for the next dialog, but not one for each.
    constexpr size_t kSystems = kOpenings / 2;
    Store(L"de-DE,fr-FR");
    for (int i = 0; i < 10; ++i) ASSERT_TRUE(UseOnce()) << i;

    const size_t graphicsObjects = CountGdiObjects();
    const size_t windows = CountWindows();
    const size_t handles = CountHandles();
    const size_t blocks = CountBusyBlocks();
    ASSERT_GT(graphicsObjects, size_t{0});
    ASSERT_GT(handles, size_t{0});
    for (int i = 0; i < kOpenings; ++i) ASSERT_TRUE(UseOnce()) << i;
    EXPECT_LT(CountGdiObjects(), graphicsObjects + kSystems);
    EXPECT_EQ(CountWindows(), windows);
    EXPECT_LT(CountHandles(), handles + kSystems);
    EXPECT_LT(CountBusyBlocks(), blocks + kSystems);
}

}  // namespace
