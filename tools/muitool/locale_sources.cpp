#include "locale_sources.h"

#include "library_api.h"
#include "locale_tags.h"
#include "stored_locale_list.h"
#include "text_conversion.h"

#include <tlhelp32.h>

#include <cstdio>
#include <cwchar>
#include <iterator>

namespace
{

constexpr std::wstring_view kOption = L"/uilocale:";

std::optional<std::wstring> ReadRegistryList(HKEY root)
{
    std::wstring list;
    if (ReadStoredLocaleList(root, list) != ERROR_SUCCESS || list.empty()) return {};
    return list;
}

DWORD ParentProcessId()
{
    const HANDLE snapshot = ::CreateToolhelp32Snapshot(TH32CS_SNAPPROCESS, 0);
    if (snapshot == INVALID_HANDLE_VALUE) return 0;
    PROCESSENTRY32W entry = {};
    entry.dwSize = sizeof(entry);
    DWORD parent = 0;
    for (BOOL found = ::Process32FirstW(snapshot, &entry); found; found = ::Process32NextW(snapshot, &entry))
        if (entry.th32ProcessID == ::GetCurrentProcessId()) parent = entry.th32ParentProcessID;
    ::CloseHandle(snapshot);
    return parent;
}

// The list that the parent publishes, if it uses the library.
std::optional<std::wstring> ReadParentList()
{
    wchar_t name[64];
    std::swprintf(name, std::size(name), L"ARVMUI_%lu.IPC", ParentProcessId());
    const HANDLE mapping = ::OpenFileMappingW(FILE_MAP_READ, FALSE, name);
    if (!mapping) return {};
    std::optional<std::wstring> list;
    if (const void* const view = ::MapViewOfFile(mapping, FILE_MAP_READ, 0, 0, sizeof(LocaleRecord)))
    {
        const LocaleRecord& record = *static_cast<const LocaleRecord*>(view);
        // Read as the library reads it: a larger record will do, and room for a terminator is kept.
        if (record.size >= sizeof(LocaleRecord) && record.locales[0] != L'\0')
            list.emplace(record.locales, ::wcsnlen(record.locales, std::size(record.locales) - 1));
        ::UnmapViewOfFile(view);
    }
    ::CloseHandle(mapping);
    return list;
}

// A slot that has not been looked at is empty; a tab says that nothing was found.
std::optional<std::wstring> ReadHint(LocaleHintSlot slot)
{
    const std::wstring hint = Library().ARVMUI_GetDescriptor()->LocaleHintTable[slot];
    if (hint.empty() || hint == L"\t") return {};
    return hint;
}

std::optional<std::wstring> DescribeLanguage(LANGID id)
{
    if (id == 0) return {};
    wchar_t number[16];
    std::swprintf(number, std::size(number), L"0x%04X", id);
    return TagOfLanguage(id) + L" (" + number + L")";
}

std::optional<std::wstring> DescribeKeyboards()
{
    const LibraryDescriptor& descriptor = *Library().ARVMUI_GetDescriptor();
    std::wstring text;
    for (DWORD i = 0; i < descriptor.keyboardLanguageCount; ++i)
    {
        const std::optional<std::wstring> language = DescribeLanguage(descriptor.keyboardLanguages[i]);
        if (!language) continue;
        if (!text.empty()) text += L", ";
        text += *language;
    }
    if (text.empty()) return {};
    return text;
}

}  // namespace

bool IsLocaleOption(const std::wstring& argument)
{
    return StartsWithName(argument, kOption);
}

std::optional<std::wstring> FindLocaleOption(const std::vector<std::wstring>& arguments)
{
    // One without a value is passed over.
    for (const std::wstring& argument : arguments)
        if (argument.size() > kOption.size() && IsLocaleOption(argument)) return argument.substr(kOption.size());
    return {};
}

std::vector<LocaleSource> ReadLocaleSources(const std::optional<std::wstring>& option)
{
    return {
        {"option", "option /uilocale:", option},
        {"parent", "parent process", ReadParentList()},
        {"registryUser", "registry, user", ReadRegistryList(HKEY_CURRENT_USER)},
        {"registryMachine", "registry, machine", ReadRegistryList(HKEY_LOCAL_MACHINE)},
        {"kiv", "\"kiv\", settings file", ReadHint(HINT_SETTINGS_FILE)},
        {"msie", "\"msie\", browser", ReadHint(HINT_BROWSER)},
        {"ask", "\"ask\", the user's answer", ReadHint(HINT_ASKED)},
        {"user", "\"user\", language of the user", DescribeLanguage(::GetUserDefaultLangID())},
        {"system", "\"system\", language of the system", DescribeLanguage(::GetSystemDefaultLangID())},
        {"uilang", "\"uilang\", language of Windows", DescribeLanguage(::GetUserDefaultUILanguage())},
        {"keyboards", "keyboards, for what can be read", DescribeKeyboards()},
    };
}

const LocaleSource* FindDecidingSource(const std::vector<LocaleSource>& sources)
{
    for (const LocaleSource& source : sources)
    {
        if (source.id == "kiv") break;  // from here on they are what keywords stand for
        if (source.value) return &source;
    }
    return nullptr;
}
