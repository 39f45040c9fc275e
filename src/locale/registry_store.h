// Text values in the registry: the product's own settings, always in the 32-bit view, other fixed
// places that the library reads, and lists of registry locations.
//
// Readers return the length of the text, 0 on failure or for an empty value, and set the last-error
// code: 0 on success, 13 for a value that is no text, else the registry's own code.
#pragma once

#include <windows.h>

namespace arvmui
{

inline constexpr wchar_t kProductKey[] = L"SOFTWARE\\Pelkor\\MUI";
constexpr REGSAM kProductKeyRead = KEY_READ | KEY_WOW64_32KEY;
constexpr REGSAM kProductKeyWrite = KEY_WRITE | KEY_WOW64_32KEY;

// The value's text with environment variables expanded where its type says so, cut to fit.
DWORD ReadRegistryString(REGSAM access, HKEY root, const wchar_t* subkey, const wchar_t* valueName, wchar_t* buffer,
    DWORD capacity) noexcept;

// Writes the text, or deletes the value when text is null. Deliberate: deleting always reports
// FALSE; the last-error code is 0 when the value is gone.
BOOL WriteRegistryString(
    REGSAM access, HKEY root, const wchar_t* subkey, const wchar_t* valueName, const wchar_t* text) noexcept;

// The first text that is not empty among the locations of a list such as
// "HKLM\SOFTWARE\X\Value,X\Value,Value": a location without a root is looked for under the current
// user, then the local machine; one without a key under the product's key.
DWORD ReadRegistryList(const wchar_t* locations, wchar_t* buffer, DWORD capacity) noexcept;

// Null for a name that is no root key.
HKEY RootKeyFromName(const wchar_t* name) noexcept;

// The locale list of a user or the machine.
DWORD ReadUILocale(HKEY root, wchar_t* buffer, DWORD capacity) noexcept;
BOOL WriteUILocale(HKEY root, const wchar_t* text) noexcept;

// The locale chosen when a product was installed.
DWORD ReadInstallUILocale(const wchar_t* product, wchar_t* buffer, DWORD capacity) noexcept;

DWORD ReadBrowserLanguages(wchar_t* buffer, DWORD capacity) noexcept;
DWORD ReadBrowserCacheFolder(wchar_t* buffer, DWORD capacity) noexcept;
DWORD ReadPackageOpenCommand(wchar_t* buffer, DWORD capacity) noexcept;

}  // namespace arvmui
