// Makes a running installation speak one locale: merges the localized tables of the package into the
// tables that the session works with. The rows are temporary; the package file stays as it is.
#pragma once

#include "arvmui.h"
#include "installer/installer_library.h"

namespace arvmui
{

// Merges every table that has a localized one for the entry's locale. A Windows error code.
UINT TranslateSessionTables(MSIHANDLE session, MSIHANDLE database, const LocaleEntry& entry) noexcept;

// Merges <baseTable>_<suffix> into the base table. A Windows error code.
UINT MergeLocalizedTable(
    MSIHANDLE session, MSIHANDLE database, const wchar_t* baseTable, const wchar_t* suffix) noexcept;

}  // namespace arvmui
