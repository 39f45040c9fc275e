// Receives what processes write for a debugger, as a debug viewer does: text in the ANSI code page.
// There is one listener at a time on a system, so tests that use it hold the resource lock
// "debug_listener".
#pragma once

#include <windows.h>

#include <condition_variable>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

namespace arvmui_test
{

class DebugListener
{
public:
    // Hears one process; the own one by default.
    explicit DebugListener(DWORD processId = ::GetCurrentProcessId());
    ~DebugListener();
    DebugListener(const DebugListener&) = delete;
    DebugListener& operator=(const DebugListener&) = delete;

    // FALSE when the system's objects could not be made, or another listener has them.
    bool IsListening() const { return thread_.joinable(); }

    // What was written so far, once at least `count` texts have arrived or five seconds have passed.
    std::vector<std::string> WaitForTexts(size_t count);

private:
    void Listen();

    DWORD processId_;
    HANDLE bufferReady_ = nullptr;
    HANDLE dataReady_ = nullptr;
    HANDLE section_ = nullptr;
    HANDLE stop_ = nullptr;
    void* view_ = nullptr;
    std::mutex mutex_;
    std::condition_variable arrived_;
    std::vector<std::string> texts_;
    std::thread thread_;
};

}  // namespace arvmui_test
