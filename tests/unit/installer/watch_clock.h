// Takes the place of time for the font watch: sleeping and waiting end at once, and each look over
// the windows is written down instead of done.
#pragma once

#include "support/module_patch.h"

#include <windows.h>

#include <functional>
#include <set>
#include <string>
#include <vector>

namespace arvmui_test
{

// For programs that link the library's objects. One at a time; other threads than the one that made it
// really wait.
class WatchClock
{
public:
    WatchClock();
    ~WatchClock();
    WatchClock(const WatchClock&) = delete;
    WatchClock& operator=(const WatchClock&) = delete;

    std::set<HANDLE> handles;    // whose waits are answered here; others really wait
    bool answersAll = false;     // or all waits are
    std::vector<DWORD> answers;  // to these waits, in order; then the time is up at each
    std::function<void(WNDENUMPROC callback, LPARAM context)> onLook;
    std::function<void(HANDLE handle)> onWait;  // for every handle, before the answer

    // "look", "sleep 100" or "wait 100" (in ms), in order.
    const std::vector<std::string>& Events() const { return events_; }
    size_t Count(const std::string& event) const;
    size_t Passes() const { return Count("look"); }

    void Restart(const std::vector<DWORD>& newAnswers);

private:
    static BOOL WINAPI Look(WNDENUMPROC callback, LPARAM context);
    static void WINAPI Sleep(DWORD milliseconds);
    static DWORD WINAPI Wait(HANDLE handle, DWORD milliseconds);

    static WatchClock* current_;
    DWORD thread_ = ::GetCurrentThreadId();

    std::vector<std::string> events_;
    size_t answered_ = 0;

    ImportPatch look_;
    ImportPatch sleep_;
    ImportPatch wait_;
};

}  // namespace arvmui_test
