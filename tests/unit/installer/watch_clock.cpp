#include "unit/installer/watch_clock.h"

#include <algorithm>

namespace arvmui_test
{

WatchClock* WatchClock::current_ = nullptr;

WatchClock::WatchClock()
    : look_(::GetModuleHandleW(nullptr), "EnumWindows", &Look), sleep_(::GetModuleHandleW(nullptr), "Sleep", &Sleep),
      wait_(::GetModuleHandleW(nullptr), "WaitForSingleObject", &Wait)
{
    current_ = this;
}

WatchClock::~WatchClock() = default;

size_t WatchClock::Count(const std::string& event) const
{
    return static_cast<size_t>(std::count(events_.begin(), events_.end(), event));
}

void WatchClock::Restart(const std::vector<DWORD>& newAnswers)
{
    answers = newAnswers;
    answered_ = 0;
    events_.clear();
}

BOOL WINAPI WatchClock::Look(WNDENUMPROC callback, LPARAM context)
{
    current_->events_.push_back("look");
    if (current_->onLook) current_->onLook(callback, context);
    return TRUE;
}

void WINAPI WatchClock::Sleep(DWORD milliseconds)
{
    current_->events_.push_back("sleep " + std::to_string(milliseconds));
}

DWORD WINAPI WatchClock::Wait(HANDLE handle, DWORD milliseconds)
{
    WatchClock& clock = *current_;
    if (::GetCurrentThreadId() != clock.thread_)
        return clock.wait_.Original<decltype(&::WaitForSingleObject)>()(handle, milliseconds);
    if (clock.onWait) clock.onWait(handle);
    if (!clock.answersAll && clock.handles.count(handle) == 0)
        return clock.wait_.Original<decltype(&::WaitForSingleObject)>()(handle, milliseconds);
    clock.events_.push_back("wait " + std::to_string(milliseconds));
    return clock.answered_ < clock.answers.size() ? clock.answers[clock.answered_++] : WAIT_TIMEOUT;
}

}  // namespace arvmui_test
