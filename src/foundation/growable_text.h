// Growable text: a block of the process heap that the caller owns and that appending may move.
// `position` is the index at which to write, or negative for the end of the text (a null block is
// empty text). Results are the characters appended, or -1 when the block could not grow; the old
// block then stays valid and the caller's.
#pragma once

#include <windows.h>

#include <cstdarg>
#include <cstddef>

namespace arvmui
{

// The index that `position` stands for in the text.
size_t AppendIndex(const wchar_t* text, int position) noexcept;

// Gives the block room for `count` characters, terminator included; its text stays as it is.
bool GrowText(wchar_t** text, size_t count) noexcept;

// Printf-style; "%s" takes text of the format's own width. The format is always the library's own.
int AppendFormatV(wchar_t** text, int position, const wchar_t* format, va_list arguments) noexcept;
int AppendFormatV(char** text, int position, const char* format, va_list arguments) noexcept;
int AppendFormat(wchar_t** text, int position, const wchar_t* format, ...) noexcept;
int AppendFormat(char** text, int position, const char* format, ...) noexcept;

// A string resource of any length; 0 when the module has no such string.
int AppendResourceString(HMODULE module, UINT id, wchar_t** text, int position) noexcept;

}  // namespace arvmui
