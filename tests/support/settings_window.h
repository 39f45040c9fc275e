// The settings dialog, opened on a thread of its own and worked from outside. In a header, so that it
// serves programs that link the DLL and those that link its objects.
#pragma once

#include "arvmui.h"
#include "resources/resource_ids.h"
#include "support/dialog_window.h"
#include "support/modal_call.h"

#include <atomic>
#include <memory>
#include <ostream>
#include <string>
#include <vector>

namespace arvmui_test
{

using Names = std::vector<std::wstring>;
using Positions = std::vector<int>;

constexpr DWORD kUserScope = 0;
constexpr DWORD kMachineScope = 1;

// Where the dialog stores the list.
constexpr wchar_t kProductKey[] = L"SOFTWARE\\Pelkor\\MUI";
constexpr wchar_t kListValue[] = L"UILocale";

// Which of the buttons that change the list can be pressed.
struct ButtonStates
{
    bool up;
    bool down;
    bool remove;
    bool add;
    bool operator==(const ButtonStates&) const = default;
};

inline std::ostream& operator<<(std::ostream& output, const ButtonStates& states)
{
    return output << (states.up ? "Up " : "") << (states.down ? "Down " : "") << (states.remove ? "Remove " : "")
                  << (states.add ? "Add" : "");
}

class OpenSettings
{
public:
    explicit OpenSettings(DWORD scope = kUserScope, const HICON* icons = nullptr, HWND owner = nullptr)
    {
        call_ = std::make_unique<ModalCall>(
            [=, this]
            {
                ::SetLastError(ERROR_SUCCESS);
                const BOOL result = ARVMUI_SettingDialogBoxW(owner, icons, nullptr, scope);
                lastError_ = ::GetLastError();
                ended_ = true;
                return result;
            });
        window_ = call_->WaitForBox();
    }

    // The first window of the call, which may be an error box; null when it ended without one.
    HWND Window() const { return window_; }

    // Whether the call ends by itself in a while.
    bool Ends() const
    {
        return WaitUntil([this] { return ended_.load(); });
    }
    BOOL Result() { return call_->Result(); }
    DWORD LastError()
    {
        call_->Result();
        return lastError_;
    }

    Names Chosen() const { return ListItems(window_, ARVMUI_CONTROL_CHOSEN_LIST); }
    Positions Selected() const { return SelectedItems(window_, ARVMUI_CONTROL_CHOSEN_LIST); }
    void Select(const Positions& items) const { SelectItems(window_, ARVMUI_CONTROL_CHOSEN_LIST, items); }
    ButtonStates Buttons() const
    {
        return {IsEnabled(window_, ARVMUI_CONTROL_UP), IsEnabled(window_, ARVMUI_CONTROL_DOWN),
            IsEnabled(window_, ARVMUI_CONTROL_REMOVE), IsEnabled(window_, ARVMUI_CONTROL_ADD)};
    }
    bool Click(int button) const { return ClickButton(window_, button); }

    // A click that does not wait until the dialog has handled it, as it may show another.
    void Press(int button) const { ::PostMessageW(::GetDlgItem(window_, button), BM_CLICK, 0, 0); }

    // What the dialog gets when a button is pressed, also for one that is disabled.
    void SendCommand(int button) const
    {
        ::SendMessageW(window_, WM_COMMAND, MAKEWPARAM(button, BN_CLICKED),
            reinterpret_cast<LPARAM>(::GetDlgItem(window_, button)));
    }

    // Opens the dialog that adds languages.
    HWND OpenAdd() const
    {
        Press(ARVMUI_CONTROL_ADD);
        return WaitForOwnedDialog(window_);
    }

    // Opens it, selects, presses OK and waits for the end of it. False when something of that fails.
    bool Add(const Positions& items) const
    {
        const HWND add = OpenAdd();
        if (!add) return false;
        SelectItems(add, ARVMUI_CONTROL_AVAILABLE_LIST, items);
        return ClickButton(add, IDOK) && WaitUntilGone(add, window_);
    }

private:
    HWND window_ = nullptr;
    DWORD lastError_ = 0;
    std::atomic<bool> ended_{false};
    std::unique_ptr<ModalCall> call_;
};

}  // namespace arvmui_test
