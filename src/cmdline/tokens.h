// Cuts a command line into tokens by the library's own rules, which are not those of the shell.
#pragma once

#include <cstddef>

namespace arvmui
{

constexpr size_t kTokenChars = 512;  // in a token buffer, terminator included

// Copies the next token into `token`, cut at capacity - 1 characters and terminated; its length, 0
// when there is none. Deliberate: an empty quoted token is indistinguishable from the end, and a
// quoted token without its closing quote is none. `next`, if given, receives the position behind
// the token.
size_t NextCommandLineToken(const wchar_t* text, wchar_t* token, size_t capacity, const wchar_t** next) noexcept;

}  // namespace arvmui
