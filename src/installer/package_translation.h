// Rewrites an opened package for one locale: its localized tables become the package's tables, the
// tables of other locales and the library's own actions go. The caller commits.
#pragma once

#include "installer/installer_library.h"

namespace arvmui
{

// A package that was installed with transforms keeps its font actions. `language` receives the
// locale's identifier. Windows error codes.
UINT TranslateLocalPackageTables(
    MSIHANDLE database, const wchar_t* locale, bool withTransforms, LANGID* language) noexcept;

// Sets the database's code page by way of a temporary file, the one way that the installer has.
UINT ImportCodepageIdt(MSIHANDLE database, DWORD codePage) noexcept;

}  // namespace arvmui
