#include "cmdline/file_hints.h"

#include "foundation/handles.h"
#include "foundation/system_functions.h"
#include "foundation/text.h"
#include "locale/registry_store.h"
#include "resources/process_state.h"

#include <cwchar>

namespace arvmui
{
namespace
{

constexpr int kInternetCacheFolder = 0x20;  // CSIDL_INTERNET_CACHE

bool IsEmpty(LocaleHintSlot slot) noexcept
{
    return *GetLocaleHint(Descriptor(), slot) == L'\0';
}

// Looks the function up instead of linking it: the host need not have loaded the shell.
bool GetBrowserCacheFolder(wchar_t (&folder)[MAX_PATH]) noexcept
{
    using Function = BOOL(WINAPI*)(HWND, wchar_t*, int, BOOL);
    const Function function = FindSystemFunction<Function>("SHELL32.DLL", "SHGetSpecialFolderPathW");
    folder[0] = L'\0';
    return function && function(nullptr, folder, kInternetCacheFolder, FALSE) && ::wcsnlen(folder, MAX_PATH) < MAX_PATH;
}

bool LiesInBrowserCache(const wchar_t* path) noexcept
{
    wchar_t folder[MAX_PATH];
    if (!GetBrowserCacheFolder(folder)) return false;
    const size_t length = WideLength(folder);
    return HasPrefixNoCase(path, folder, length) && path[length] == L'\\';
}

// Devices have names that look like files'; reading one could wait for ever, and at attach the whole
// process with it.
bool IsOnDisk(const wchar_t* path) noexcept
{
    UniqueFile file(::CreateFileW(path, FILE_READ_ATTRIBUTES, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
        nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
    return file && ::GetFileType(file.Get()) == FILE_TYPE_DISK;
}

void RecordSettingsFile(const wchar_t* path) noexcept
{
    const WCHAR* const anySection = reinterpret_cast<const WCHAR*>(~ULONG_PTR{0});
    wchar_t list[ARVMUI_HINT_CHARS];
    const bool found =
        IsOnDisk(path)
        && ARVMUI_GetPrivateProfileStringW(anySection, L"UILocale", nullptr, list, ARVMUI_HINT_CHARS, path) != 0;
    SetLocaleHint(Descriptor(), HINT_SETTINGS_FILE, found ? list : kNothingFound);
}

void RecordBrowserLanguages() noexcept
{
    wchar_t list[ARVMUI_HINT_CHARS];
    const DWORD length = ReadBrowserLanguages(list, ARVMUI_HINT_CHARS);
    SetLocaleHint(Descriptor(), HINT_BROWSER, length != 0 ? list : kNothingFound);
}

}  // namespace

bool IsDataFile(const wchar_t* path) noexcept
{
    const QuietSystemErrors quiet;  // an argument may name a drive without a disk
    if (::GetFileAttributesW(path) == INVALID_FILE_ATTRIBUTES) return false;
    const wchar_t* const extension = std::wcsrchr(path, L'.');
    return !extension || CompareTextNoCase(extension, L".EXE") != 0;
}

void RecordFileHints(const wchar_t* path) noexcept
{
    if (IsEmpty(HINT_SETTINGS_FILE)) RecordSettingsFile(path);
    if (IsEmpty(HINT_BROWSER) && LiesInBrowserCache(path)) RecordBrowserLanguages();
}

}  // namespace arvmui
