// The locales that an installer package offers, from its tables ARVUILocale and ARVUIText.
#pragma once

#include "arvmui.h"
#include "installer/installer_library.h"

namespace arvmui
{

// One entry for each row of ARVUILocale, in the order of display, with or without the texts of the
// language dialog. The caller frees `entries` with ARVMUI_free. A Windows error code; nothing is
// stored on failure.
UINT ReadPackageLocales(MSIHANDLE database, bool withTexts, LocaleEntry** entries, DWORD* count) noexcept;

// The first entry of the locale, without regard to case, or null.
const LocaleEntry* FindPackageLocale(const LocaleEntry* entries, DWORD count, const wchar_t* locale) noexcept;

}  // namespace arvmui
