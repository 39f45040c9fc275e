// The language dialog as the author of a package previews it.
#include "installer/session/session_fixture.h"
#include "support/box_window.h"
#include "support/dialog_controls.h"
#include "support/modal_call.h"

#include <future>
#include <thread>
#include <utility>

namespace
{

using arvmui_test::ComboItems;
using arvmui_test::IsContextPublished;
using arvmui_test::ModalCall;
using arvmui_test::PressButton;
using arvmui_test::SelectComboItem;
using arvmui_test::SessionTest;
using arvmui_test::TextOfWindow;

constexpr UINT kFailed = 1627;
constexpr int kList = 202;
constexpr wchar_t kInstallerClass[] = L"MsiDialogCloseClass";

// A dialog of the installer's, for as long as it lives, on a thread that answers for it: a dialog that it
// owns disables it by a message.
class InstallerWindow
{
public:
    InstallerWindow()
    {
        std::promise<HWND> created;
        std::future<HWND> window = created.get_future();
        thread_ = std::thread([&created] { Run(created); });
        window_ = window.get();
    }
    ~InstallerWindow()
    {
        ::PostMessageW(window_, WM_CLOSE, 0, 0);
        thread_.join();
    }
    InstallerWindow(const InstallerWindow&) = delete;
    InstallerWindow& operator=(const InstallerWindow&) = delete;

    HWND Get() const { return window_; }

private:
    static LRESULT CALLBACK Handle(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
    {
        if (message == WM_DESTROY) ::PostQuitMessage(0);
        return ::DefWindowProcW(window, message, wParam, lParam);
    }

    static void Run(std::promise<HWND>& created)
    {
        WNDCLASSW windowClass = {};
        windowClass.lpfnWndProc = Handle;
        windowClass.hInstance = ::GetModuleHandleW(nullptr);
        windowClass.lpszClassName = kInstallerClass;
        ::RegisterClassW(&windowClass);
        created.set_value(::CreateWindowExW(0, kInstallerClass, L"Installer", WS_OVERLAPPEDWINDOW, 0, 0, 200, 100,
            nullptr, nullptr, windowClass.hInstance, nullptr));
        MSG message = {};
        while (::GetMessageW(&message, nullptr, 0, 0) > 0) ::DispatchMessageW(&message);
        ::UnregisterClassW(kInstallerClass, windowClass.hInstance);
    }

    std::thread thread_;
    HWND window_ = nullptr;
};

class SessionPreview : public SessionTest
{
protected:
    int Preview() { return static_cast<int>(ARVMUI_MSI_SelectionDialogBoxPreview(Session())); }
};

TEST_F(SessionPreview, ListsThePackagesLanguages)
{
    Open();
    ModalCall call([this] { return Preview(); });
    const HWND dialog = call.WaitForBox();
    ASSERT_NE(dialog, nullptr);
    EXPECT_EQ(ComboItems(::GetDlgItem(dialog, kList)).size(), 3U);
    SelectComboItem(dialog, kList, 1);
    EXPECT_EQ(TextOfWindow(dialog), package.DialogTitle(L"de"));
}

TEST_F(SessionPreview, CannotBeAnswered)
{
    Open();
    ModalCall call([this] { return Preview(); });
    const HWND dialog = call.WaitForBox();
    ASSERT_NE(dialog, nullptr);
    EXPECT_FALSE(::IsWindowEnabled(::GetDlgItem(dialog, IDOK)));
    EXPECT_TRUE(::IsWindowEnabled(::GetDlgItem(dialog, IDCANCEL)));
}

TEST_F(SessionPreview, SucceedsHoweverItEnds)
{
    Open();
    for (const UINT message : {WM_COMMAND, WM_CLOSE})
    {
        ModalCall call([this] { return Preview(); });
        const HWND dialog = call.WaitForBox();
        ASSERT_NE(dialog, nullptr);
        ::PostMessageW(dialog, message, message == WM_COMMAND ? IDCANCEL : 0, 0);
        EXPECT_EQ(call.Result(), ERROR_SUCCESS);
    }
}

TEST_F(SessionPreview, ChangesNothing)
{
    Open();
    ModalCall call([this] { return Preview(); });
    const HWND dialog = call.WaitForBox();
    ASSERT_NE(dialog, nullptr);
    EXPECT_FALSE(IsContextPublished());
    SelectComboItem(dialog, kList, 1);
    PressButton(dialog, IDCANCEL);
    EXPECT_EQ(call.Result(), ERROR_SUCCESS);
    EXPECT_EQ(Get(L"UILOCALE"), L"");
    EXPECT_EQ(Tables(), arvmui_test::EnglishTables());
}

TEST_F(SessionPreview, IsOwnedByTheInstallersWindow)
{
    Open();
    const InstallerWindow owner;
    ASSERT_NE(owner.Get(), nullptr);
    ModalCall call([this] { return Preview(); });
    const HWND dialog = call.WaitForBox();
    ASSERT_NE(dialog, nullptr);
    EXPECT_EQ(::GetWindow(dialog, GW_OWNER), owner.Get());
    EXPECT_FALSE(::IsWindowEnabled(owner.Get()));
    PressButton(dialog, IDCANCEL);
    EXPECT_EQ(call.Result(), ERROR_SUCCESS);
    EXPECT_TRUE(::IsWindowEnabled(owner.Get()));
}

TEST_F(SessionPreview, NeedsTheTableOfLocales)
{
    package.tables.Remove(L"ARVUILocale");
    Open();
    EXPECT_EQ(static_cast<UINT>(Preview()), kFailed);
}

}  // namespace
