#include "installer/package_locales.h"

#include "foundation/growable_text.h"
#include "foundation/heap.h"
#include "foundation/text_calls.h"

namespace arvmui
{
namespace
{

constexpr DWORD kFirstEntries = 8;

struct LocaleReading
{
    bool withTexts;
    HeapBlock<LocaleEntry> entries;
    DWORD count;
    DWORD capacity;
};

bool GrowEntries(LocaleReading& reading) noexcept
{
    const DWORD growth = reading.capacity != 0 ? reading.capacity : kFirstEntries;
    const size_t capacity = static_cast<size_t>(reading.capacity) + growth;
    if (!reading.entries.Resize(capacity)) return false;
    std::memset(reading.entries.Get() + reading.capacity, 0, growth * sizeof(LocaleEntry));
    reading.capacity += growth;
    return true;
}

// Copies a text field, cut to fit. `length`, if given, receives the length copied.
template <size_t kChars>
UINT ReadField(MSIHANDLE record, UINT field, wchar_t (&text)[kChars], DWORD* length = nullptr) noexcept
{
    HeapBlock<wchar_t> value;
    const UINT result = GetRecordString(record, field, value.Slot());
    if (result != ERROR_SUCCESS) return result;
    const size_t copied = CopyCut(text, kChars, value.Get());
    if (length) *length = static_cast<DWORD>(copied);
    return ERROR_SUCCESS;
}

// A row of ARVUIText; later rows of the same key overwrite earlier ones.
UINT ReadTextRow(MSIHANDLE, MSIHANDLE, MSIHANDLE record, void* context)
{
    LocaleEntry& entry = *static_cast<LocaleEntry*>(context);
    HeapBlock<wchar_t> key;
    const UINT result = GetRecordString(record, 1, key.Slot());
    if (result != ERROR_SUCCESS) return result;
    constexpr UINT kText = 2;
    if (EqualsNoCase(key.Get(), L"LanguageSelectionTitle"))
        return ReadField(record, kText, entry.LanguageSelectionTitle);
    if (EqualsNoCase(key.Get(), L"LanguageSelectionDesc")) return ReadField(record, kText, entry.LanguageSelectionDesc);
    if (EqualsNoCase(key.Get(), L"OK")) return ReadField(record, kText, entry.OK);
    if (EqualsNoCase(key.Get(), L"Cancel")) return ReadField(record, kText, entry.Cancel);
    return ERROR_SUCCESS;
}

UINT ReadTexts(MSIHANDLE database, LocaleEntry& entry) noexcept
{
    HeapBlock<wchar_t> sql;
    if (AppendFormat(sql.Slot(), -1, L"SELECT `Key`,`Text` FROM `ARVUIText` WHERE `Locale`='%s'", entry.Locale) < 1)
        return ERROR_FUNCTION_FAILED;
    return RunQuery(database, sql.Get(), 0, ReadTextRow, &entry);
}

// A row of ARVUILocale. The entry counts only once all of it has been read.
UINT ReadLocaleRow(MSIHANDLE database, MSIHANDLE, MSIHANDLE record, void* context)
{
    LocaleReading& reading = *static_cast<LocaleReading*>(context);
    if (reading.count == reading.capacity && !GrowEntries(reading))
    {
        const DWORD error = ::GetLastError();
        return error != ERROR_SUCCESS ? error : ERROR_NOT_ENOUGH_MEMORY;  // the heap sets no code of its own
    }
    LocaleEntry& entry = reading.entries.Get()[reading.count];

    UINT result = ReadField(record, 1, entry.Locale, &entry.LocaleLength);
    if (result != ERROR_SUCCESS) return result;
    entry.LangID = static_cast<LANGID>(Installer().MsiRecordGetInteger(record, 2));
    result = ReadField(record, 3, entry.EnglishName);
    if (result != ERROR_SUCCESS) return result;
    result = ReadField(record, 4, entry.NativeName);
    if (result == ERROR_SUCCESS && reading.withTexts) result = ReadTexts(database, entry);
    if (result == ERROR_SUCCESS) ++reading.count;
    return result;
}

}  // namespace

UINT ReadPackageLocales(MSIHANDLE database, bool withTexts, LocaleEntry** entries, DWORD* count) noexcept
{
    LocaleReading reading = {};
    reading.withTexts = withTexts;
    const UINT result = RunQuery(database,
        L"SELECT `Locale`,`LangID`,`EnglishName`,`NativeName` FROM `ARVUILocale` ORDER BY `DisplayOrder`", 0,
        ReadLocaleRow, &reading);
    if (result != ERROR_SUCCESS) return result;
    *count = reading.count;
    *entries = reading.entries.Release();
    return ERROR_SUCCESS;
}

const LocaleEntry* FindPackageLocale(const LocaleEntry* entries, DWORD count, const wchar_t* locale) noexcept
{
    for (DWORD i = 0; i < count; ++i)
        if (EqualsNoCase(entries[i].Locale, locale)) return &entries[i];
    return nullptr;
}

}  // namespace arvmui
