// The locale list that the library finds in the registry, for the user and for the machine: in the
// 32-bit view of the product's key.
#pragma once

#include <windows.h>

#include <string>

// The root key is HKEY_CURRENT_USER or HKEY_LOCAL_MACHINE. Results are the registry's codes; reading
// a list that is not there gives ERROR_FILE_NOT_FOUND, removing it succeeds.
LSTATUS ReadStoredLocaleList(HKEY root, std::wstring& list);
LSTATUS StoreLocaleList(HKEY root, const std::wstring& list);
LSTATUS RemoveStoredLocaleList(HKEY root);
