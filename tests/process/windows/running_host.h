// A program that shows a dialog or box, started by a test and ended with the object if it has not
// ended by itself.
#pragma once

#include "support/box_window.h"

#include <windows.h>

#include <filesystem>
#include <string>

namespace arvmui_test
{

class RunningHost
{
public:
    RunningHost(const std::filesystem::path& program, const std::wstring& arguments)
    {
        std::wstring line = L"\"" + program.wstring() + L"\" " + arguments;
        STARTUPINFOW startup = {};
        startup.cb = sizeof(startup);
        started_ =
            ::CreateProcessW(nullptr, line.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &startup, &process_)
            != FALSE;
    }
    ~RunningHost()
    {
        if (!started_) return;
        if (::WaitForSingleObject(process_.hProcess, 0) == WAIT_TIMEOUT) ::TerminateProcess(process_.hProcess, 1);
        ::CloseHandle(process_.hThread);
        ::CloseHandle(process_.hProcess);
    }
    RunningHost(const RunningHost&) = delete;
    RunningHost& operator=(const RunningHost&) = delete;

    // The dialog or box that the program shows; null when it ends without one or none appears in a while.
    HWND WaitForBox() const
    {
        const ULONGLONG end = ::GetTickCount64() + kPatienceMs;
        while (started_ && ::GetTickCount64() < end)
        {
            const auto boxes = VisibleDialogsOfProcess(process_.dwProcessId);
            if (!boxes.empty()) return boxes.front();
            if (::WaitForSingleObject(process_.hProcess, kPollMs) != WAIT_TIMEOUT) return nullptr;
        }
        return nullptr;
    }

    // The program's exit code once it has ended.
    DWORD ExitCode() const
    {
        DWORD code = STILL_ACTIVE;
        if (::WaitForSingleObject(process_.hProcess, static_cast<DWORD>(kPatienceMs)) == WAIT_OBJECT_0)
            ::GetExitCodeProcess(process_.hProcess, &code);
        return code;
    }

private:
    static constexpr ULONGLONG kPatienceMs = 20000;
    static constexpr DWORD kPollMs = 10;

    PROCESS_INFORMATION process_ = {};
    bool started_ = false;
};

}  // namespace arvmui_test
