// Sets or removes an environment variable for as long as a test lasts.
#pragma once

#include <windows.h>

#include <optional>
#include <string>

namespace arvmui_test
{

class EnvironmentVariable
{
public:
    // A null value removes the variable.
    EnvironmentVariable(const wchar_t* name, const wchar_t* value) : name_(name)
    {
        const DWORD size = ::GetEnvironmentVariableW(name, nullptr, 0);
        if (size != 0)
        {
            std::wstring old(size, L'\0');
            old.resize(::GetEnvironmentVariableW(name, old.data(), size));
            previous_ = old;
        }
        ::SetEnvironmentVariableW(name, value);
    }
    ~EnvironmentVariable() { ::SetEnvironmentVariableW(name_.c_str(), previous_ ? previous_->c_str() : nullptr); }
    EnvironmentVariable(const EnvironmentVariable&) = delete;
    EnvironmentVariable& operator=(const EnvironmentVariable&) = delete;

private:
    std::wstring name_;
    std::optional<std::wstring> previous_;
};

}  // namespace arvmui_test
