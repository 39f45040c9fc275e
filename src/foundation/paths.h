// Paths as the system hands them out, all in buffers of one size. A path that does not fit counts as
// failed: cut short, it would name something else.
#pragma once

#include "foundation/text_calls.h"

namespace arvmui
{

constexpr DWORD kMaxPathChars = 260;  // terminator included

template <typename Char>
using PathBuffer = Char[kMaxPathChars];

// Path of a module; null stands for the program.
template <typename Char>
bool GetModulePath(HMODULE module, PathBuffer<Char>& path) noexcept
{
    const DWORD length = TextCalls<Char>::ModuleFileName(module, path, kMaxPathChars);
    return length != 0 && length < kMaxPathChars;
}

// The path in its short form, in which no component holds a blank where the volume keeps such names.
inline bool GetShortPath(const wchar_t* path, PathBuffer<wchar_t>& shortPath) noexcept
{
    const DWORD length = ::GetShortPathNameW(path, shortPath, kMaxPathChars);
    return length != 0 && length < kMaxPathChars;
}

}  // namespace arvmui
