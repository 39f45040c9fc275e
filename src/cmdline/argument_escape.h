// Argument lists for entry points that are started in another process: every character is written
// so that neither the shell's quoting rules nor the ANSI code page can change it. One thing is lost: the
// last backslash of an argument that ends in one, which the closing quote swallows.
#pragma once

#include <windows.h>

namespace arvmui
{

// Append to growable text (see growable_text.h for `position` and ownership) the escaped, or the
// original, form of `text`. The characters appended, or -1 when the block could not grow.
int AppendEscapedArgument(wchar_t** buffer, int position, const wchar_t* text) noexcept;
int AppendUnescapedArgument(wchar_t** buffer, int position, const wchar_t* text) noexcept;

// The unescaped arguments of a command line: null-terminated pointers and their texts in one block,
// which the caller frees with ARVMUI_free; null on failure. `count`, if given, receives their number.
wchar_t** BuildArgumentVector(const char* commandLine, DWORD* count) noexcept;

}  // namespace arvmui
