// The locales for which the library's own resources are installed, as the dialogs offer them.
#pragma once

#include "arvmui.h"

#include <cstddef>

namespace arvmui
{

// A LocaleEntry without its dialog texts: a language or keyword that only has to be named.
struct ShortLocaleEntry
{
    LANGID LangID;
    WCHAR Locale[ARVMUI_TAG_CHARS];
    DWORD LocaleLength;
    WCHAR EnglishName[ARVMUI_TAG_CHARS];
    WCHAR NativeName[ARVMUI_TAG_CHARS];
};
static_assert(sizeof(ShortLocaleEntry) == offsetof(LocaleEntry, LanguageSelectionTitle));

// Element sizes in bytes: the whole of a LocaleEntry, and its part without dialog texts.
constexpr size_t kFullEntryBytes = sizeof(LocaleEntry);
constexpr size_t kShortEntryBytes = sizeof(ShortLocaleEntry);

// Builds an array of `elementSize` bytes an element, each the beginning of a LocaleEntry, ordered by
// language; short entries are followed by one for each keyword. The caller frees it with
// ARVMUI_free. FALSE, storing nothing, when the folders cannot be named, when an element
// has no room for its language or, for short entries, when
// there are no English resources or no memory.
BOOL EnumInstalledLocales(size_t elementSize, void** entries, DWORD* count) noexcept;

}  // namespace arvmui
