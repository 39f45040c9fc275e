#include "locale/registry_store.h"

#include "foundation/growable_text.h"
#include "foundation/handles.h"
#include "foundation/heap.h"
#include "foundation/text_calls.h"

namespace arvmui
{
namespace
{

constexpr wchar_t kUILocaleValue[] = L"UILocale";

// Where a text that is read goes, and its length.
struct TextResult
{
    wchar_t* buffer;
    DWORD capacity;
    DWORD length = 0;
};

// Closes the key; a failure becomes the last error only where nothing else went wrong.
void CloseReportingFailure(UniqueRegKey& key) noexcept
{
    const LSTATUS status = ::RegCloseKey(key.Release());
    if (status != ERROR_SUCCESS && ::GetLastError() == ERROR_SUCCESS) ::SetLastError(static_cast<DWORD>(status));
}

// Reads a text value into a new block, terminated wherever its data ends.
bool ReadTextValue(HKEY key, const wchar_t* valueName, HeapBlock<wchar_t>& text, DWORD& type) noexcept
{
    DWORD bytes = 0;
    LSTATUS status = ::RegQueryValueExW(key, valueName, nullptr, &type, nullptr, &bytes);
    if (status == ERROR_SUCCESS && type != REG_SZ && type != REG_EXPAND_SZ) status = ERROR_INVALID_DATA;
    if (status == ERROR_SUCCESS && !text.Resize(bytes / sizeof(wchar_t) + 2)) status = ERROR_NOT_ENOUGH_MEMORY;
    if (status == ERROR_SUCCESS)
        status = ::RegQueryValueExW(key, valueName, nullptr, nullptr, reinterpret_cast<BYTE*>(text.Get()), &bytes);
    if (status != ERROR_SUCCESS)
    {
        ::SetLastError(static_cast<DWORD>(status));
        return false;
    }
    text.Get()[bytes / sizeof(wchar_t)] = L'\0';
    return true;
}

// Expands environment variables; FALSE when the result is empty or does not fit.
bool ExpandInto(const wchar_t* text, wchar_t* buffer, DWORD capacity) noexcept
{
    const DWORD size = ::ExpandEnvironmentStringsW(text, buffer, capacity);
    return size != 0 && size <= capacity;
}

// One location that starts with a root key's name. `first` and `last` are its outer backslashes.
// FALSE when memory is lacking.
bool ReadRootedLocation(
    HKEY root, const wchar_t* first, const wchar_t* last, const wchar_t* end, TextResult& result) noexcept
{
    HeapBlock<wchar_t> key;
    HeapBlock<wchar_t> value;
    if (AppendFormat(value.Slot(), -1, L"%.*s", static_cast<int>(end - last - 1), last + 1) < 0) return false;
    if (first != last && AppendFormat(key.Slot(), -1, L"%.*s", static_cast<int>(last - first - 1), first + 1) < 0)
        return false;
    const wchar_t* const subkey = first == last ? kProductKey : key.Get();
    result.length = ReadRegistryString(kProductKeyRead, root, subkey, value.Get(), result.buffer, result.capacity);
    return true;
}

bool IsLocationSpace(wchar_t character) noexcept
{
    return character == L' ' || character == L'\t';
}

// Walks a list until a location gives text. FALSE when memory is lacking for a location's texts.
bool ReadLocations(const wchar_t* locations, TextResult& result) noexcept;

// One location from `begin` to `end`.
bool ReadLocation(const wchar_t* begin, const wchar_t* end, TextResult& result) noexcept
{
    const int itemLength = static_cast<int>(end - begin);
    const wchar_t* const first = FindCharN(begin, L'\\', static_cast<size_t>(itemLength));
    HeapBlock<wchar_t> text;
    if (!first)
    {
        return AppendFormat(text.Slot(), -1, L"%s\\%s\\%.*s,%s\\%s\\%.*s", L"HKCU", kProductKey, itemLength, begin,
                   L"HKLM", kProductKey, itemLength, begin)
                   >= 0
               && ReadLocations(text.Get(), result);
    }

    if (AppendFormat(text.Slot(), -1, L"%.*s", static_cast<int>(first - begin), begin) < 0) return false;
    const HKEY root = RootKeyFromName(text.Get());
    if (!root)
    {
        return AppendFormat(
                   text.Slot(), 0, L"%s\\%.*s,%s\\%.*s", L"HKCU", itemLength, begin, L"HKLM", itemLength, begin)
                   >= 0
               && ReadLocations(text.Get(), result);
    }

    const wchar_t* last = end - 1;
    while (*last != L'\\') --last;  // first <= last
    return ReadRootedLocation(root, first, last, end, result);
}

bool ReadLocations(const wchar_t* locations, TextResult& result) noexcept
{
    for (const wchar_t* p = locations;;)
    {
        while (*p == L',' || IsLocationSpace(*p)) ++p;
        if (*p == L'\0') return true;

        const wchar_t* next = p;
        while (*next && *next != L',') ++next;
        const wchar_t* end = next;
        while (IsLocationSpace(end[-1])) --end;  // p < end: the item starts with no white space

        if (!ReadLocation(p, end, result)) return false;
        if (result.length != 0) return true;
        p = next;
    }
}

}  // namespace

DWORD ReadRegistryString(
    REGSAM access, HKEY root, const wchar_t* subkey, const wchar_t* valueName, wchar_t* buffer, DWORD capacity) noexcept
{
    if (capacity == 0) return 0;
    buffer[0] = L'\0';

    UniqueRegKey key;
    const LSTATUS opened = ::RegOpenKeyExW(root, subkey, 0, access, key.Slot());
    if (opened != ERROR_SUCCESS)
    {
        ::SetLastError(static_cast<DWORD>(opened));
        return 0;
    }

    ::SetLastError(ERROR_SUCCESS);
    DWORD type = REG_NONE;
    DWORD length = 0;
    {
        HeapBlock<wchar_t> text;
        if (!ReadTextValue(key.Get(), valueName, text, type)) return 0;
        if (type != REG_EXPAND_SZ || !ExpandInto(text.Get(), buffer, capacity)) CopyCut(buffer, capacity, text.Get());
        buffer[capacity - 1] = L'\0';
        length = static_cast<DWORD>(WideLength(buffer));
    }
    CloseReportingFailure(key);
    return length;
}

BOOL WriteRegistryString(
    REGSAM access, HKEY root, const wchar_t* subkey, const wchar_t* valueName, const wchar_t* text) noexcept
{
    UniqueRegKey key;
    LSTATUS status =
        ::RegCreateKeyExW(root, subkey, 0, nullptr, REG_OPTION_NON_VOLATILE, access, nullptr, key.Slot(), nullptr);
    if (status != ERROR_SUCCESS)
    {
        ::SetLastError(static_cast<DWORD>(status));
        return FALSE;
    }

    ::SetLastError(ERROR_SUCCESS);
    if (!text)
    {
        status = ::RegDeleteValueW(key.Get(), valueName);
        if (status != ERROR_SUCCESS && status != ERROR_FILE_NOT_FOUND) ::SetLastError(static_cast<DWORD>(status));
        // Deliberate: a deletion reports FALSE and leaves its key open; callers rely on the
        // last-error code alone.
        static_cast<void>(key.Release());
        return FALSE;
    }

    const size_t length = WideLength(text);
    if (length >= kMaxTextChars)
    {
        // Deliberate: as for a deletion.
        static_cast<void>(key.Release());
        return FALSE;
    }
    status = ::RegSetValueExW(key.Get(), valueName, 0, REG_SZ, reinterpret_cast<const BYTE*>(text),
        static_cast<DWORD>((length + 1) * sizeof(wchar_t)));
    if (status != ERROR_SUCCESS) ::SetLastError(static_cast<DWORD>(status));
    CloseReportingFailure(key);
    return status == ERROR_SUCCESS;
}

DWORD ReadRegistryList(const wchar_t* locations, wchar_t* buffer, DWORD capacity) noexcept
{
    TextResult result = {buffer, capacity};
    return ReadLocations(locations, result) ? result.length : 0;
}

HKEY RootKeyFromName(const wchar_t* name) noexcept
{
    // Not constexpr: predefined keys are numbers in disguise, which no constant pointer can hold.
    const struct
    {
        const wchar_t* name;
        HKEY root;
    } roots[] = {
        {L"HKEY_CURRENT_USER", HKEY_CURRENT_USER},
        {L"HKCU", HKEY_CURRENT_USER},
        {L"HKEY_LOCAL_MACHINE", HKEY_LOCAL_MACHINE},
        {L"HKLM", HKEY_LOCAL_MACHINE},
        {L"HKEY_CLASSES_ROOT", HKEY_CLASSES_ROOT},
        {L"HKCR", HKEY_CLASSES_ROOT},
        {L"HKEY_USERS", HKEY_USERS},
        {L"HKU", HKEY_USERS},
    };
    for (const auto& entry : roots)
    {
        if (CompareTextNoCase(name, entry.name) == 0) return entry.root;
    }
    return nullptr;
}

DWORD ReadUILocale(HKEY root, wchar_t* buffer, DWORD capacity) noexcept
{
    return ReadRegistryString(kProductKeyRead, root, kProductKey, kUILocaleValue, buffer, capacity);
}

BOOL WriteUILocale(HKEY root, const wchar_t* text) noexcept
{
    return WriteRegistryString(kProductKeyWrite, root, kProductKey, kUILocaleValue, text);
}

DWORD ReadInstallUILocale(const wchar_t* product, wchar_t* buffer, DWORD capacity) noexcept
{
    HeapBlock<wchar_t> key;
    if (AppendFormat(key.Slot(), -1, L"%s\\%s", kProductKey, product) < 0) return 0;
    return ReadRegistryString(kProductKeyRead, HKEY_LOCAL_MACHINE, key.Get(), L"InstallUILocale", buffer, capacity);
}

DWORD ReadBrowserLanguages(wchar_t* buffer, DWORD capacity) noexcept
{
    return ReadRegistryString(kProductKeyRead, HKEY_CURRENT_USER,
        L"Software\\Microsoft\\Internet Explorer\\International", L"AcceptLanguage", buffer, capacity);
}

DWORD ReadBrowserCacheFolder(wchar_t* buffer, DWORD capacity) noexcept
{
    return ReadRegistryString(kProductKeyRead, HKEY_CURRENT_USER,
        L"Software\\Microsoft\\Windows\\CurrentVersion\\Explorer\\Shell Folders", L"Cache", buffer, capacity);
}

DWORD ReadPackageOpenCommand(wchar_t* buffer, DWORD capacity) noexcept
{
    return ReadRegistryString(
        kProductKeyRead, HKEY_CLASSES_ROOT, L"Msi.Package\\shell\\Open\\command", nullptr, buffer, capacity);
}

}  // namespace arvmui
