// Facts about the process and its user: whether the Windows Installer hosts the library, the parent
// process, the user's security identifier. Failures answer FALSE (or kNoProcess) and leave the
// failing call's last-error code.
#pragma once

#include <windows.h>

namespace arvmui
{

constexpr DWORD kNoProcess = 0xFFFFFFFF;

// Whether the library runs from the installer's cache or in the installer's own program.
BOOL IsHostedByInstaller(HMODULE library) noexcept;

// TRUE for a 32-bit process on 64-bit Windows.
BOOL IsWow64() noexcept;

// The process that created the given one, or kNoProcess.
DWORD GetParentProcessId(DWORD processId) noexcept;

// The textual security identifier ("S-1-5-...") of a user of this system, of the current user where
// the name is null or empty. The caller frees it with ARVMUI_free.
BOOL GetUserSidText(const wchar_t* userName, wchar_t** text) noexcept;

// Appends the textual form of a valid security identifier to growable text.
bool AppendSidText(PSID sid, wchar_t** text) noexcept;

}  // namespace arvmui
