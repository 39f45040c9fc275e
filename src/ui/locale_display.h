// Which text about a language the user can read: its own, or English.
#pragma once

#include <windows.h>

namespace arvmui
{

// Whether the user can read a text in the language: it is Latin text, or a keyboard of the language
// is installed. An empty text counts as readable.
bool IsReadable(LANGID language, const wchar_t* text) noexcept;

// The name under which a language is listed.
const wchar_t* DisplayName(LANGID language, const wchar_t* nativeName, const wchar_t* englishName) noexcept;

}  // namespace arvmui
