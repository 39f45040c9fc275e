// The search that decides which locale a process speaks: walks a locale list, turns each item into
// candidate tags in a fixed order and offers each tag once, until a consumer accepts one.
#pragma once

#include "arvmui.h"

namespace arvmui
{

// Flag of SearchLocales: expand the list into plain tags, without derived forms and fallbacks; the
// keyword of a settings file that has not been looked at stays as it is.
constexpr DWORD kExpandOnly = 1;

// Longest list that the process decides on, terminator included; it must fit into a LocaleRecord.
constexpr DWORD kExpandedListChars = ARVMUI_TAG_CHARS;

// Offers the candidates of a list (text, a language identifier in place of the pointer, or null for
// the list of the process). Returns the consumer's first non-zero result, or 0. A null candidate
// means that the user refused to choose.
DWORD SearchLocales(const wchar_t* list, ARVMUI_LocaleCallbackW consumer, void* context, DWORD flags) noexcept;

// Writes the plain tags of a list, comma-separated, cut to fit and terminated; the length written.
DWORD ExpandLocaleList(const wchar_t* list, wchar_t* buffer, DWORD capacity) noexcept;

}  // namespace arvmui
