// The language dialog among the other windows of a program: its owner, other dialogs, other threads, and what
// it leaves behind.
#include "support/box_window.h"
#include "support/busy_blocks.h"
#include "support/dialog_controls.h"
#include "support/gdi_objects.h"
#include "unit/ui/language_dialog_fixture.h"

#include <atomic>

namespace
{

using arvmui_test::ComboItems;
using arvmui_test::CountBusyBlocks;
using arvmui_test::CountGdiObjects;
using arvmui_test::DialogOutcome;
using arvmui_test::DialogRequest;
using arvmui_test::LanguageDialogTest;
using arvmui_test::MakeEntry;
using arvmui_test::ModalCall;
using arvmui_test::OpenDialog;
using arvmui_test::PressButton;
using arvmui_test::ReadTexts;
using arvmui_test::ShowDialog;
using arvmui_test::TextsOf;
using arvmui_test::WaitUntil;

DialogRequest English()
{
    return {{MakeEntry(0x0409, L"en-US")}};
}

DialogRequest German()
{
    return {{MakeEntry(0x0407, L"de-DE"), MakeEntry(0x0807, L"de-CH")}};
}

constexpr UINT kShowInner = WM_APP;
constexpr wchar_t kOwnerClass[] = L"ArvmuiTestLanguageDialogOwner";

DialogOutcome g_inner;

// A window of the program that asks for another language while a dialog is up.
LRESULT CALLBACK OwnerProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    if (message != kShowInner) return ::DefWindowProcW(window, message, wParam, lParam);
    g_inner = ShowDialog(German());
    return 0;
}

// Shows a dialog for an owner of its own thread.
class OwnedDialog : public LanguageDialogTest
{
protected:
    OwnedDialog()
    {
        WNDCLASSW ownerClass = {};
        ownerClass.lpfnWndProc = OwnerProcedure;
        ownerClass.lpszClassName = kOwnerClass;
        ::RegisterClassW(&ownerClass);
    }
    ~OwnedDialog() override { ::UnregisterClassW(kOwnerClass, nullptr); }

    DialogOutcome Show()
    {
        owner_ = ::CreateWindowW(
            kOwnerClass, L"Owner", WS_OVERLAPPEDWINDOW, 0, 0, 200, 200, nullptr, nullptr, nullptr, nullptr);
        DialogRequest request = English();
        request.owner = owner_;
        DialogOutcome outcome = ShowDialog(request);
        wasEnabled_ = ::IsWindowEnabled(owner_);
        ::DestroyWindow(owner_);
        return outcome;
    }

    std::atomic<HWND> owner_{nullptr};
    BOOL wasEnabled_ = FALSE;  // after the dialog
};

TEST_F(OwnedDialog, DisablesItsOwnerWhileItIsUp)
{
    DialogOutcome outcome = {};
    ModalCall call(
        [&]
        {
            outcome = Show();
            return 0;
        });
    const HWND dialog = call.WaitForBox();
    ASSERT_NE(dialog, nullptr);
    EXPECT_EQ(::GetWindow(dialog, GW_OWNER), owner_.load());
    EXPECT_FALSE(::IsWindowEnabled(owner_));
    EXPECT_TRUE(PressButton(dialog, IDOK));
    call.Result();
    EXPECT_TRUE(wasEnabled_);
    EXPECT_EQ(outcome.answer, L"en-US");
}

TEST_F(OwnedDialog, IsRefusedWhenItsOwnerGoesAway)
{
    DialogOutcome outcome = {};
    ModalCall call(
        [&]
        {
            outcome = Show();
            return 0;
        });
    ASSERT_NE(call.WaitForBox(), nullptr);
    ::PostMessageW(owner_, WM_CLOSE, 0, 0);
    call.Result();
    EXPECT_EQ(outcome.result, TRUE);
    EXPECT_EQ(outcome.answer, L"");
}

TEST_F(OwnedDialog, MayOpenAnother)
{
    g_inner = {};
    DialogOutcome outcome = {};
    ModalCall call(
        [&]
        {
            outcome = Show();
            return 0;
        });
    const HWND outer = call.WaitForBox();
    ASSERT_NE(outer, nullptr);
    ASSERT_TRUE(::PostMessageW(owner_, kShowInner, 0, 0));
    const HWND inner = call.WaitForBox(outer);
    ASSERT_NE(inner, nullptr);
    EXPECT_EQ(ReadTexts(inner), TextsOf(German().entries[0]));
    EXPECT_EQ(ReadTexts(outer), TextsOf(English().entries[0]));
    arvmui_test::SelectComboItem(inner, 202, 1);
    EXPECT_TRUE(PressButton(inner, IDOK));
    EXPECT_TRUE(WaitUntil([=] { return !::IsWindow(inner); }));
    EXPECT_TRUE(PressButton(outer, IDOK));
    call.Result();
    EXPECT_EQ(g_inner.answer, L"de-CH");
    EXPECT_EQ(outcome.answer, L"en-US");
}

TEST_F(LanguageDialogTest, NeedsNoOwner)
{
    const OpenDialog dialog(English());
    ASSERT_NE(dialog.Window(), nullptr);
    EXPECT_EQ(::GetWindow(dialog.Window(), GW_OWNER), nullptr);
}

TEST_F(LanguageDialogTest, OnTwoThreadsAtOnceKeepsTheirEntriesApart)
{
    OpenDialog first(English());
    OpenDialog second(German());
    EXPECT_EQ(ComboItems(first.List()), std::vector<std::wstring>{English().entries[0].NativeName});
    EXPECT_EQ(ComboItems(second.List()).size(), size_t{2});
    second.Select(1);
    EXPECT_EQ(ReadTexts(first.Window()), TextsOf(English().entries[0]));
    EXPECT_EQ(ReadTexts(second.Window()), TextsOf(German().entries[1]));
    first.Press(IDOK);
    EXPECT_EQ(first.Outcome().answer, L"en-US");
    second.Press(IDOK);
    EXPECT_EQ(second.Outcome().answer, L"de-CH");
}

// ---- What is left behind -------------------------------------------------------------------------------------

void OpenAndClose()
{
    OpenDialog dialog(German());
    dialog.Select(1);
    dialog.Press(IDOK);
    EXPECT_EQ(dialog.Outcome().answer, L"de-CH");
}

TEST_F(LanguageDialogTest, AHundredLeaveNoGraphicsObjectsAndNoMemoryBehind)
{
    {
        const OpenDialog first(German());
        ASSERT_NE(first.Window(), nullptr);
        arvmui_test::PaintNow(first.Window());
    }
    OpenAndClose();
    const size_t objects = CountGdiObjects();
    const size_t blocks = CountBusyBlocks();
    ASSERT_GT(objects, size_t{0});
    for (int i = 0; i < 100; ++i) OpenAndClose();
    // The system may keep some for the next dialog, but not one for each.
    EXPECT_LT(CountGdiObjects(), objects + 10);
    EXPECT_LT(CountBusyBlocks(), blocks + 10);
}

}  // namespace
