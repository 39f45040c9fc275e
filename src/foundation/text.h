// Lengths, character tests, comparisons and searches over terminated text. Comparisons go through
// the system: without regard to case in a fixed English locale, so that option words and file
// extensions match alike everywhere; with regard to case in the user's locale.
#pragma once

#include <windows.h>

#include <cstddef>

namespace arvmui
{

// No text is taken to be longer.
constexpr size_t kMaxTextChars = 0x7FFFFFFF;

// Characters before the terminator, at most kMaxTextChars (which is reported to the debugger).
size_t WideLength(const wchar_t* text) noexcept;

// Bytes before the terminator, at most kMaxTextChars.
size_t NarrowLength(const char* text) noexcept;

// Whether every character lies below U+0370 or in U+1E00 to U+1EFF. A negative count scans to the
// terminator; otherwise a terminator must lie within `count` characters, all of which are scanned.
BOOL IsLatinText(const wchar_t* text, ptrdiff_t count) noexcept;

// Whether a file name can hold the character. Deliberate: '*' and '?' pass.
BOOL IsFileNameChar(wchar_t character) noexcept;

// White space of command lines, lists and settings files: ASCII only, whatever the runtime library's tables say.
constexpr bool IsAsciiSpace(wchar_t character) noexcept
{
    return character == L' ' || (character >= L'\t' && character <= L'\r');
}
const wchar_t* SkipSpace(const wchar_t* text) noexcept;

// Whether the text is "." or "..", the names of a folder itself and of the one above it.
template <typename Char>
bool IsDots(const Char* text) noexcept
{
    return text[0] == Char{'.'} && (text[1] == Char{} || (text[1] == Char{'.'} && text[2] == Char{}));
}

// -1, 0 or 1; a failed comparison counts as 1.
int CompareText(const wchar_t* left, const wchar_t* right) noexcept;
int CompareText(const char* left, const char* right) noexcept;
int CompareTextNoCase(const wchar_t* left, const wchar_t* right) noexcept;
int CompareTextNoCase(const char* left, const char* right) noexcept;

// Whether CompareTextNoCase finds both alike. Plain words of ASCII letters, digits, blanks, '-', '_'
// and '.' are told without asking the system, which gives the same answer about them.
bool EqualsNoCase(const wchar_t* left, const wchar_t* right) noexcept;

// Deliberate: the wide forms compare `count` characters of both sides whatever they hold, so both
// must be that long; the narrow forms stop each side at its terminator.
int CompareTextN(const wchar_t* left, const wchar_t* right, size_t count) noexcept;
int CompareTextN(const char* left, const char* right, size_t count) noexcept;
int CompareTextNoCaseN(const wchar_t* left, const wchar_t* right, size_t count) noexcept;
int CompareTextNoCaseN(const char* left, const char* right, size_t count) noexcept;

// Whether text starts with a prefix of `count` characters, without regard to case. Text shorter
// than the prefix never does, and is not read beyond its terminator.
bool HasPrefixNoCase(const wchar_t* text, const wchar_t* prefix, size_t count) noexcept;
bool HasPrefixNoCase(const char* text, const char* prefix, size_t count) noexcept;

// First occurrence within the first `count` characters, or null.
const wchar_t* FindCharN(const wchar_t* text, wchar_t character, size_t count) noexcept;

// First and last occurrence of a character of the ANSI code page, or null. A double-byte character
// is given with its first byte highest; 0 finds the terminator.
const char* FindMbcsChar(const char* text, unsigned character) noexcept;
const char* FindLastMbcsChar(const char* text, unsigned character) noexcept;

}  // namespace arvmui
