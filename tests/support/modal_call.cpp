#include "support/modal_call.h"

#include "support/box_window.h"

#include <utility>

namespace arvmui_test
{
namespace
{

constexpr ULONGLONG kPatienceMs = 20000;
constexpr DWORD kPollMs = 5;

}  // namespace

ModalCall::ModalCall(std::function<int()> call)
{
    thread_ = std::thread(
        [this, call = std::move(call)]
        {
            threadId_ = ::GetCurrentThreadId();
            result_ = call();
            ended_ = true;
        });
}

ModalCall::~ModalCall()
{
    if (!thread_.joinable()) return;
    while (!ended_)
    {
        for (const HWND box : VisibleDialogsOfThread(threadId_)) ::EndDialog(box, IDCANCEL);
        ::Sleep(kPollMs);
    }
    thread_.join();
}

HWND ModalCall::WaitForBox(HWND known) const
{
    const ULONGLONG end = ::GetTickCount64() + kPatienceMs;
    while (!ended_ && ::GetTickCount64() < end)
    {
        if (threadId_ != 0)
        {
            for (const HWND box : VisibleDialogsOfThread(threadId_))
                if (box != known) return box;
        }
        ::Sleep(kPollMs);
    }
    return nullptr;
}

int ModalCall::Result()
{
    if (thread_.joinable()) thread_.join();
    return result_;
}

}  // namespace arvmui_test
