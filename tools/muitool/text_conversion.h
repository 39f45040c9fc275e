// Between the UTF-8 of the command line, the output and JSON, and the UTF-16 of the library.
#pragma once

#include <string>
#include <string_view>

// Ill-formed text becomes U+FFFD.
std::wstring Wide(std::string_view utf8);
std::string Utf8(std::wstring_view wide);
