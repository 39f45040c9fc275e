// Linked into a program, it arranges a system of the test's choice in its process before the program
// begins. Variables say what; none of them leaves the system as it is:
//   MUITOOL_TEST_REGISTRY   key under the current user in whose subkeys "user" and "machine" the current
//                           user's and the local machine's keys are looked for
//   MUITOOL_TEST_KEYBOARDS  the installed keyboards, languages as hexadecimal numbers between blanks
//   MUITOOL_TEST_LANGUAGES  those of the user, the system and Windows, in the same form
#include "support/module_patch.h"

#include <windows.h>

#include <cwchar>
#include <memory>
#include <string>
#include <vector>

namespace
{

using arvmui_test::FunctionPatch;

std::wstring Variable(const wchar_t* name)
{
    wchar_t value[1024];
    const DWORD length = ::GetEnvironmentVariableW(name, value, 1024);
    return std::wstring(value, length < 1024 ? length : 0);
}

std::vector<LANGID> Languages(const std::wstring& text)
{
    std::vector<LANGID> languages;
    const wchar_t* at = text.c_str();
    for (wchar_t* end = nullptr;; at = end)
    {
        const unsigned long language = std::wcstoul(at, &end, 16);
        if (end == at) return languages;
        languages.push_back(static_cast<LANGID>(language));
    }
}

void RequireSuccess(LSTATUS status)
{
    constexpr UINT kNotArranged = 99;
    if (status != ERROR_SUCCESS) ::ExitProcess(kNotArranged);
}

void Redirect(HKEY predefined, const std::wstring& key)
{
    HKEY target = nullptr;
    RequireSuccess(
        ::RegCreateKeyExW(HKEY_CURRENT_USER, key.c_str(), 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, &target, nullptr));
    RequireSuccess(::RegOverridePredefKey(predefined, target));
    ::RegCloseKey(target);
}

class Arrangement
{
public:
    Arrangement() : keyboards_(Languages(Variable(L"MUITOOL_TEST_KEYBOARDS")))
    {
        current_ = this;
        if (!keyboards_.empty())
            Replace(L"user32.dll", "GetKeyboardLayoutList", reinterpret_cast<void*>(&ListKeyboards));

        const std::vector<LANGID> languages = Languages(Variable(L"MUITOOL_TEST_LANGUAGES"));
        if (languages.size() == 3)
        {
            user_ = languages[0];
            system_ = languages[1];
            interface_ = languages[2];
            Replace(L"kernel32.dll", "GetUserDefaultLangID", reinterpret_cast<void*>(&User));
            Replace(L"kernel32.dll", "GetSystemDefaultLangID", reinterpret_cast<void*>(&System));
            Replace(L"kernel32.dll", "GetUserDefaultUILanguage", reinterpret_cast<void*>(&Interface));
            Replace(L"kernel32.dll", "GetSystemDefaultUILanguage", reinterpret_cast<void*>(&Interface));
        }

        // The last, as what comes before may look into the real one.
        const std::wstring registry = Variable(L"MUITOOL_TEST_REGISTRY");
        if (registry.empty()) return;
        Redirect(HKEY_LOCAL_MACHINE, registry + L"\\machine");
        Redirect(HKEY_CURRENT_USER, registry + L"\\user");
    }

private:
    void Replace(const wchar_t* module, const char* function, void* replacement)
    {
        void* const code = reinterpret_cast<void*>(::GetProcAddress(::LoadLibraryW(module), function));
        patches_.push_back(std::make_unique<FunctionPatch>(code, replacement));
    }

    static int WINAPI ListKeyboards(int capacity, HKL* layouts)
    {
        const std::vector<LANGID>& keyboards = current_->keyboards_;
        const int count = static_cast<int>(keyboards.size());
        if (capacity == 0) return count;
        const int stored = capacity < count ? capacity : count;
        // The layout itself lies in the upper half.
        for (int i = 0; i < stored; ++i)
            layouts[i] =
                reinterpret_cast<HKL>(static_cast<ULONG_PTR>(0xF0010000u | keyboards[static_cast<std::size_t>(i)]));
        return stored;
    }
    static LANGID WINAPI User() { return current_->user_; }
    static LANGID WINAPI System() { return current_->system_; }
    static LANGID WINAPI Interface() { return current_->interface_; }

    static inline Arrangement* current_ = nullptr;

    std::vector<LANGID> keyboards_;
    LANGID user_ = 0;
    LANGID system_ = 0;
    LANGID interface_ = 0;
    std::vector<std::unique_ptr<FunctionPatch>> patches_;
};

const Arrangement arrangement;

}  // namespace
