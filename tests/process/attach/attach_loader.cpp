// A program that arranges a system of its own in its process and then loads the DLL. Variables tell it
// what to arrange:
//   ARVMUI_TEST_LIBRARY          path of the DLL
//   ARVMUI_TEST_REGISTRY         key under the current user in whose subkeys "user" and "machine" the
//                                current user's and the local machine's keys are looked for
//   ARVMUI_TEST_USER_LANGUAGE, _SYSTEM_LANGUAGE, _USER_UI_LANGUAGE, _SYSTEM_UI_LANGUAGE
//                                what the system answers, decimal
//   ARVMUI_TEST_NO_THREAD_SLOTS  takes every thread-local slot
//   ARVMUI_TEST_OWN_SECTION      text: creates the section of this process's record, larger than need
//                                be, and fills it with that text; "event" makes an event of that name
#include "attach_report.h"

#include <cstring>
#include <cwchar>
#include <string>

namespace
{

std::wstring Variable(const wchar_t* name)
{
    wchar_t value[1024];
    const DWORD length = ::GetEnvironmentVariableW(name, value, 1024);
    return std::wstring(value, length < 1024 ? length : 0);
}

bool RedirectRegistry(HKEY predefined, const std::wstring& key)
{
    HKEY target = nullptr;
    if (::RegCreateKeyExW(HKEY_CURRENT_USER, key.c_str(), 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, &target, nullptr)
        != ERROR_SUCCESS)
        return false;
    const LSTATUS status = ::RegOverridePredefKey(predefined, target);
    ::RegCloseKey(target);
    return status == ERROR_SUCCESS;
}

// Makes a function of KERNEL32 return a constant: mov eax, value; ret. Its entry is at least that long.
bool Answer(const char* function, const std::wstring& value)
{
    if (value.empty()) return true;
    unsigned char code[] = {0xB8, 0, 0, 0, 0, 0xC3};
    const DWORD number = static_cast<DWORD>(std::wcstoul(value.c_str(), nullptr, 10));
    std::memcpy(code + 1, &number, sizeof(number));

    void* const entry = reinterpret_cast<void*>(::GetProcAddress(::GetModuleHandleW(L"kernel32.dll"), function));
    DWORD previous = 0;
    if (!entry || !::VirtualProtect(entry, sizeof(code), PAGE_EXECUTE_READWRITE, &previous)) return false;
    std::memcpy(entry, code, sizeof(code));
    ::VirtualProtect(entry, sizeof(code), previous, &previous);
    return ::FlushInstructionCache(::GetCurrentProcess(), entry, sizeof(code)) != FALSE;
}

bool MakeOwnSection(const std::wstring& content)
{
    constexpr DWORD kBytes = 8192;
    const std::wstring name = L"ARVMUI_" + std::to_wstring(::GetCurrentProcessId()) + L".IPC";
    if (content == L"event") return ::CreateEventW(nullptr, TRUE, FALSE, name.c_str()) != nullptr;
    const HANDLE section = ::CreateFileMappingW(INVALID_HANDLE_VALUE, nullptr, PAGE_READWRITE, 0, kBytes, name.c_str());
    void* const view = section ? ::MapViewOfFile(section, FILE_MAP_WRITE, 0, 0, 0) : nullptr;
    if (!view) return false;
    for (size_t i = 0; i < kBytes; ++i) static_cast<char*>(view)[i] = static_cast<char>(content[i % content.size()]);
    return true;
}

bool Arrange()
{
    const std::wstring registry = Variable(L"ARVMUI_TEST_REGISTRY");
    if (!registry.empty()
        && (!RedirectRegistry(HKEY_LOCAL_MACHINE, registry + L"\\machine")
            || !RedirectRegistry(HKEY_CURRENT_USER, registry + L"\\user")))
        return false;
    if (!Answer("GetUserDefaultLangID", Variable(L"ARVMUI_TEST_USER_LANGUAGE"))) return false;
    if (!Answer("GetSystemDefaultLangID", Variable(L"ARVMUI_TEST_SYSTEM_LANGUAGE"))) return false;
    if (!Answer("GetUserDefaultUILanguage", Variable(L"ARVMUI_TEST_USER_UI_LANGUAGE"))) return false;
    if (!Answer("GetSystemDefaultUILanguage", Variable(L"ARVMUI_TEST_SYSTEM_UI_LANGUAGE"))) return false;
    const std::wstring section = Variable(L"ARVMUI_TEST_OWN_SECTION");
    if (!section.empty() && !MakeOwnSection(section)) return false;
    if (!Variable(L"ARVMUI_TEST_NO_THREAD_SLOTS").empty())
    {
        ::LoadLibraryW(L"user32.dll");  // what the DLL needs needs slots itself
        ::LoadLibraryW(L"advapi32.dll");
        ::LoadLibraryW(L"shell32.dll");
        while (::TlsAlloc() != TLS_OUT_OF_INDEXES)
        {
        }
    }
    return true;
}

unsigned g_windows = 0;

LRESULT CALLBACK CountWindows(int code, WPARAM wParam, LPARAM lParam)
{
    if (code == HCBT_CREATEWND) ++g_windows;
    return ::CallNextHookEx(nullptr, code, wParam, lParam);
}

template <typename Function>
void Bind(HMODULE library, const char* name, Function& function)
{
    function = reinterpret_cast<Function>(reinterpret_cast<void*>(::GetProcAddress(library, name)));
}

}  // namespace

int main()
{
    if (!Arrange()) return 2;
    const HHOOK hook = ::SetWindowsHookExW(WH_CBT, CountWindows, nullptr, ::GetCurrentThreadId());
    if (!hook) return 3;
    const HMODULE module = ::LoadLibraryW(Variable(L"ARVMUI_TEST_LIBRARY").c_str());
    ::UnhookWindowsHookEx(hook);
    if (!module) return 4;

    arvmui_test::AttachedLibrary library = {};
    Bind(module, "ARVMUI_GetDescriptor", library.getDescriptor);
    Bind(module, "ARVMUI_GetLocaleW", library.getLocale);
    Bind(module, "ARVMUI_GetLangID", library.getLanguage);
    Bind(module, "ARVMUI_GetCommandLineA", library.getNarrowCommandLine);
    arvmui_test::WriteReport(library, g_windows);
    arvmui_test::RunChild();
    arvmui_test::WaitForTest();
    return 0;
}
