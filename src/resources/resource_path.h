// Paths of a module's resource files: the path format with one "%s" for the locale, and a locale
// put in its place. Folders and file names may themselves hold a '%', so the place is remembered
// and the format is never handed to a printf function.
#pragma once

#include "foundation/paths.h"

namespace arvmui
{

// Writes the path format of `module` (null: the program) into `buffer`; see
// ARVMUI_GetResourceFileFormatW for the arguments, the result and the last-error codes.
// `localeOffset`, if given, receives the index of the "%s" that stands for the locale.
DWORD WritePathFormat(
    HMODULE module, const wchar_t* fileName, wchar_t* buffer, DWORD capacity, DWORD* localeOffset) noexcept;
DWORD WritePathFormat(HMODULE module, const char* fileName, char* buffer, DWORD capacity, DWORD* localeOffset) noexcept;

// Splits a module's path: `path` receives the folder without its last backslash, the result is the
// file name behind it, in the same buffer; null with the last error set on failure.
wchar_t* SplitModulePath(HMODULE module, PathBuffer<wchar_t>& path) noexcept;
char* SplitModulePath(HMODULE module, PathBuffer<char>& path) noexcept;

template <typename Char>
class ResourcePathFormat
{
public:
    // FALSE with the last error set when the format cannot be built.
    BOOL Build(HMODULE module, const Char* fileName) noexcept
    {
        length_ = WritePathFormat(module, fileName, text_, kMaxPathChars, &localeOffset_);
        return length_ != 0;
    }

    // The format's part behind its last backslash.
    const Char* FileName() const noexcept;

    // Writes the path of a locale, cut at kMaxPathChars and terminated; whether all of it fits.
    bool Format(const Char* locale, PathBuffer<Char>& path) const noexcept;

private:
    PathBuffer<Char> text_ = {};
    DWORD length_ = 0;
    DWORD localeOffset_ = 0;  // of "%s": localeOffset_ + 2 <= length_ once built
};

extern template class ResourcePathFormat<wchar_t>;
extern template class ResourcePathFormat<char>;

}  // namespace arvmui
