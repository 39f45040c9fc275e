// Starts one of the library's entry points in a process of its own through RUNDLL32.EXE.
#pragma once

#include <windows.h>

namespace arvmui
{

// `libraryPath` null means this library; arguments end at `argumentCount` or at the first null. On
// TRUE the caller owns the two handles in `process`. Both records are written on every path that
// reaches the start.
BOOL LaunchLibraryEntryPoint(STARTUPINFOW* startup, PROCESS_INFORMATION* process, const wchar_t* libraryPath,
    const wchar_t* entryPoint, DWORD argumentCount, const wchar_t* const* arguments) noexcept;

}  // namespace arvmui
