#include "ui/preferred_locales.h"

#include "foundation/growable_text.h"
#include "foundation/text_calls.h"
#include "locale/locale_list.h"
#include "locale/registry_store.h"

#include <cstring>

namespace arvmui
{
namespace
{

constexpr DWORD kStoredListChars = 256;  // terminator included

}  // namespace

bool PreferredLocales::ReadInstalled() noexcept
{
    void* entries = nullptr;
    // Ignored: what fails stores nothing, and the count stays 0.
    EnumInstalledLocales(kShortEntryBytes, &entries, &count);
    *rows.Slot() = static_cast<ShortLocaleEntry*>(entries);
    return count != 0;
}

bool PreferredLocales::Reserve() noexcept
{
    return chosen.Resize(count) && available.Resize(count);
}

bool PreferredLocales::ChooseStored(HKEY store) noexcept
{
    wchar_t list[kStoredListChars];
    // Ignored: what cannot be read counts as an empty list.
    ReadUILocale(store, list, kStoredListChars);
    for (const wchar_t* item = SkipListSeparators(list); *item;)
    {
        const wchar_t* const end = FindListItemEnd(item);
        wchar_t locale[kStoredListChars];
        // Ignored: a part of the list always fits.
        CopyListItem(locale, locale + kStoredListChars, item, end);
        if (!ChooseLocale(locale)) return false;
        item = SkipListSeparators(end);
    }
    RebuildAvailable();
    return true;
}

bool PreferredLocales::FormatChosen(HeapBlock<wchar_t>& text) const noexcept
{
    for (DWORD i = 0; i < chosenCount; ++i)
    {
        const wchar_t* const locale = rows.Get()[chosen.Get()[i]].Locale;
        if (AppendFormat(text.Slot(), -1, i == 0 ? L"%s" : L",%s", locale) < 0) return false;
    }
    return true;
}

void PreferredLocales::RebuildAvailable() noexcept
{
    availableCount = 0;
    for (DWORD row = 0; row < count; ++row)
        if (!IsChosen(row)) available.Get()[availableCount++] = row;
}

void PreferredLocales::Swap(DWORD first, DWORD second) noexcept
{
    const DWORD row = chosen.Get()[first];
    chosen.Get()[first] = chosen.Get()[second];
    chosen.Get()[second] = row;
}

void PreferredLocales::Remove(DWORD position) noexcept
{
    DWORD* const removed = chosen.Get() + position;
    std::memmove(removed, removed + 1, (chosenCount - position - 1) * sizeof(*removed));
    --chosenCount;
}

bool PreferredLocales::IsChosen(DWORD row) const noexcept
{
    for (DWORD i = 0; i < chosenCount; ++i)
        if (chosen.Get()[i] == row) return true;
    return false;
}

bool PreferredLocales::AddRow(const wchar_t* locale) noexcept
{
    const size_t needed = static_cast<size_t>(count) + 1;
    if (!rows.Resize(needed) || !chosen.Resize(needed) || !available.Resize(needed)) return false;
    ShortLocaleEntry& row = rows.Get()[count];
    row = {};
    row.LocaleLength = static_cast<DWORD>(CopyCut(row.Locale, ARVMUI_TAG_CHARS, locale));
    CopyCut(row.EnglishName, ARVMUI_TAG_CHARS, locale);
    CopyCut(row.NativeName, ARVMUI_TAG_CHARS, locale);
    ++count;
    return true;
}

bool PreferredLocales::ChooseLocale(const wchar_t* locale) noexcept
{
    DWORD row = 0;
    while (row < count && !EqualsNoCase(rows.Get()[row].Locale, locale)) ++row;
    if (row == count && !AddRow(locale)) return false;
    if (!IsChosen(row)) Choose(row);
    return true;
}

}  // namespace arvmui
