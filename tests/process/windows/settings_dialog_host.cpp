// A program that loads the library and shows the settings dialog, for tests to read and work:
//
//   settings_dialog_host [/uilocale:list] <key> <scope>
//
// The key lies below the current user; its subkeys "user" and "machine" stand for the current user's
// and the machine's registry in this program. Exit code: 0 when the dialog succeeded, else the last
// error. Codes from kNotLoaded on are the program's own.
#include "arvmui.h"

#include <cwchar>
#include <string>

namespace
{

constexpr int kNotLoaded = 200;
constexpr int kWrongArguments = 201;
constexpr int kNoRegistry = 202;
constexpr int kFailedWithoutCode = 203;

bool RedirectRegistry(HKEY predefined, const std::wstring& key)
{
    HKEY target = nullptr;
    if (::RegOpenKeyExW(HKEY_CURRENT_USER, key.c_str(), 0, KEY_ALL_ACCESS, &target) != ERROR_SUCCESS) return false;
    const LSTATUS status = ::RegOverridePredefKey(predefined, target);
    ::RegCloseKey(target);
    return status == ERROR_SUCCESS;
}

int ShowSettings(HMODULE library, DWORD scope)
{
    const auto show = reinterpret_cast<decltype(&::ARVMUI_SettingDialogBoxW)>(
        reinterpret_cast<void*>(::GetProcAddress(library, "ARVMUI_SettingDialogBoxW")));
    if (!show) return kNotLoaded;
    if (show(nullptr, nullptr, nullptr, scope)) return 0;
    const DWORD error = ::GetLastError();
    return error != ERROR_SUCCESS && error < kNotLoaded ? static_cast<int>(error) : kFailedWithoutCode;
}

}  // namespace

extern "C" int wmain(int argc, wchar_t** argv)
{
    int first = 1;
    while (first < argc && argv[first][0] == L'/') ++first;
    if (first + 1 >= argc) return kWrongArguments;
    const std::wstring key = argv[first];
    if (!RedirectRegistry(HKEY_LOCAL_MACHINE, key + L"\\machine")
        || !RedirectRegistry(HKEY_CURRENT_USER, key + L"\\user"))
        return kNoRegistry;
    const HMODULE library = ::LoadLibraryW(L"arvmui64.dll");
    return library ? ShowSettings(library, static_cast<DWORD>(std::wcstoul(argv[first + 1], nullptr, 0))) : kNotLoaded;
}
