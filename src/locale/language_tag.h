// Language identifiers to locale tags, through a table that is data of its own and deliberately
// independent of the system's.
#pragma once

#include <windows.h>

#include <cstddef>

namespace arvmui
{

// Writes the tag of an identifier ("en-US", or "en" where its sublanguage has no country), cut and
// terminated. FALSE for identifiers without a row in the table and for tags that do not fit.
BOOL FormatLanguageTagW(LANGID id, wchar_t* buffer, size_t capacity) noexcept;
BOOL FormatLanguageTagA(LANGID id, char* buffer, size_t capacity) noexcept;

}  // namespace arvmui
