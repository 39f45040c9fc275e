// Catches the helper process that an action starts: nothing is started, and the waiting for it ends
// at once, as a test says.
#pragma once

#include "support/module_patch.h"

#include <windows.h>

#include <functional>
#include <set>
#include <string>
#include <vector>

namespace arvmui_test
{

// For programs that link the library's objects. One at a time.
class HelperStart
{
public:
    HelperStart();
    ~HelperStart();
    HelperStart(const HelperStart&) = delete;
    HelperStart& operator=(const HelperStart&) = delete;

    bool starts = true;
    DWORD waitResult = WAIT_OBJECT_0;  // of waiting for the helper
    std::function<void()> onStart;

    const std::vector<std::wstring>& Lines() const { return lines_; }  // command lines, one for each start
    const std::vector<DWORD>& Waits() const { return waits_; }         // times waited for a helper, in ms

    void Forget();

    // What the system gave out for the helpers, minus what was closed.
    size_t OpenHandles() const { return processes_.size() + threads_.size(); }

    // As the library starts an entry point of a file, without the arguments.
    static std::wstring LineWithoutArguments(const std::wstring& file, const std::wstring& entryPoint);

private:
    static BOOL WINAPI Create(LPCWSTR application, LPWSTR line, LPSECURITY_ATTRIBUTES processSecurity,
        LPSECURITY_ATTRIBUTES threadSecurity, BOOL inherit, DWORD flags, LPVOID environment, LPCWSTR folder,
        LPSTARTUPINFOW startup, LPPROCESS_INFORMATION process);
    static DWORD WINAPI Wait(HANDLE handle, DWORD milliseconds);
    static BOOL WINAPI Close(HANDLE handle);

    static HelperStart* current_;

    std::vector<std::wstring> lines_;
    std::vector<DWORD> waits_;
    std::set<HANDLE> processes_;
    std::set<HANDLE> threads_;

    ImportPatch create_;
    ImportPatch wait_;
    ImportPatch close_;
};

// The program under test, whose file counts as the library's when its objects are linked.
std::wstring ProgramPath();

}  // namespace arvmui_test
