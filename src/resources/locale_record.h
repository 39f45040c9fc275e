// The shared-memory record by which a process hands its locale list to its children. Whatever
// another process has written there is only ever taken as text of at most 64 characters.
#pragma once

#include "arvmui.h"

namespace arvmui
{

// Publishes the list, cut at 63 characters, under this process's identifier. The record lives until
// the section handle, the caller's, is closed; null when it cannot be published.
HANDLE PublishLocale(const wchar_t* list) noexcept;

// Writes the list that the parent process published, cut to fit and terminated; the length written,
// 0 when there is none.
DWORD ReadParentLocale(wchar_t* buffer, DWORD capacity) noexcept;

}  // namespace arvmui
