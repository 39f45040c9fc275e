// Locale tags as the library sees them.
#pragma once

#include <windows.h>

#include <string>

// The library's tag for a language identifier; empty where it has none.
std::wstring TagOfLanguage(LANGID language);
