// Runs a call that shows a message box or dialog on a thread of its own, so that the test can look at
// the window and answer it.
#pragma once

#include <windows.h>

#include <atomic>
#include <functional>
#include <thread>

namespace arvmui_test
{

class ModalCall
{
public:
    explicit ModalCall(std::function<int()> call);

    // Closes what the call still shows and waits for it.
    ~ModalCall();
    ModalCall(const ModalCall&) = delete;
    ModalCall& operator=(const ModalCall&) = delete;

    // The dialog that the call shows, other than `known`; null when the call ends without one, or none
    // appears in a while.
    HWND WaitForBox(HWND known = nullptr) const;

    // Waits for the end of the call; its result.
    int Result();

private:
    std::atomic<DWORD> threadId_{0};
    std::atomic<bool> ended_{false};
    int result_ = 0;
    std::thread thread_;
};

}  // namespace arvmui_test
