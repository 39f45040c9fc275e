// What a resource library says of itself, and what stands for one that says nothing.
#pragma once

#include <windows.h>

namespace arvmui
{

constexpr LANGID kDefaultLanguage = 1033;  // English (United States)

// The language identifier of a resource library; FALSE when it has none.
bool LoadLanguageId(HMODULE library, LANGID& language) noexcept;

}  // namespace arvmui
