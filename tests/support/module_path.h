// Lets the DLL see a path of a test's choice as that of every module, for paths that no real module can
// have here. One at a time.
#pragma once

#include "support/module_patch.h"

#include <cstring>
#include <string>

namespace arvmui_test
{

class ModulePath
{
public:
    explicit ModulePath(const std::wstring& path)
        : wide_(LibraryUnderTest(), "GetModuleFileNameW", &Wide),
          narrow_(LibraryUnderTest(), "GetModuleFileNameA", &Narrow)
    {
        path_ = path;
    }

private:
    // As the system does it: cut and terminated, with an error, when the buffer is too small.
    template <typename Char>
    static DWORD Answer(Char* buffer, DWORD size)
    {
        const DWORD length = static_cast<DWORD>(path_.size()) < size ? static_cast<DWORD>(path_.size()) : size - 1;
        for (DWORD i = 0; i < length; ++i) buffer[i] = static_cast<Char>(path_[i]);
        buffer[length] = Char{};
        if (length == path_.size()) return length;
        ::SetLastError(ERROR_INSUFFICIENT_BUFFER);
        return size;
    }
    static DWORD WINAPI Wide(HMODULE, wchar_t* buffer, DWORD size) { return Answer(buffer, size); }
    static DWORD WINAPI Narrow(HMODULE, char* buffer, DWORD size) { return Answer(buffer, size); }

    static inline std::wstring path_;

    ImportPatch wide_;
    ImportPatch narrow_;
};

}  // namespace arvmui_test
