#include "unit/installer/helper_start.h"

namespace arvmui_test
{

HelperStart* HelperStart::current_ = nullptr;

HelperStart::HelperStart()
    : create_(::GetModuleHandleW(nullptr), "CreateProcessW", &Create),
      wait_(::GetModuleHandleW(nullptr), "WaitForSingleObject", &Wait),
      close_(::GetModuleHandleW(nullptr), "CloseHandle", &Close)
{
    current_ = this;
}

HelperStart::~HelperStart() = default;

void HelperStart::Forget()
{
    lines_.clear();
    waits_.clear();
}

std::wstring HelperStart::LineWithoutArguments(const std::wstring& file, const std::wstring& entryPoint)
{
    wchar_t windows[MAX_PATH] = {};
    ::GetEnvironmentVariableW(L"windir", windows, MAX_PATH);
    wchar_t shortPath[MAX_PATH] = {};
    ::GetShortPathNameW(file.c_str(), shortPath, MAX_PATH);
    return L"\"" + std::wstring(windows) + L"\\SYSTEM32\\RUNDLL32.EXE\" " + shortPath + L"," + entryPoint;
}

// The handles are real ones, so that no other handle has the same value.
BOOL WINAPI HelperStart::Create(LPCWSTR, LPWSTR line, LPSECURITY_ATTRIBUTES, LPSECURITY_ATTRIBUTES, BOOL, DWORD, LPVOID,
    LPCWSTR, LPSTARTUPINFOW, LPPROCESS_INFORMATION process)
{
    current_->lines_.push_back(line);
    if (current_->onStart) current_->onStart();
    if (!current_->starts) return FALSE;
    process->hProcess = ::CreateEventW(nullptr, TRUE, TRUE, nullptr);
    process->hThread = ::CreateEventW(nullptr, TRUE, TRUE, nullptr);
    current_->processes_.insert(process->hProcess);
    current_->threads_.insert(process->hThread);
    return TRUE;
}

DWORD WINAPI HelperStart::Wait(HANDLE handle, DWORD milliseconds)
{
    if (current_->processes_.count(handle) == 0)
        return current_->wait_.Original<decltype(&::WaitForSingleObject)>()(handle, milliseconds);
    current_->waits_.push_back(milliseconds);
    return current_->waitResult;
}

BOOL WINAPI HelperStart::Close(HANDLE handle)
{
    current_->processes_.erase(handle);
    current_->threads_.erase(handle);
    return current_->close_.Original<decltype(&::CloseHandle)>()(handle);
}

std::wstring ProgramPath()
{
    wchar_t path[MAX_PATH] = {};
    ::GetModuleFileNameW(nullptr, path, MAX_PATH);
    return path;
}

}  // namespace arvmui_test
