// Between the UTF-8 of the command line, the output and JSON, and the UTF-16 of the library; and
// comparison of names as Windows compares them.
#pragma once

#include <string>
#include <string_view>

// Ill-formed text becomes U+FFFD.
std::wstring Wide(std::string_view utf8);
std::string Utf8(std::wstring_view wide);

// Upper and lower case alike, whatever the user's language.
bool IsSameName(std::wstring_view left, std::wstring_view right);
bool StartsWithName(std::wstring_view text, std::wstring_view start);
bool EndsWithName(std::wstring_view text, std::wstring_view end);
