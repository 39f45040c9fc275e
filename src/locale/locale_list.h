// The text of locale lists: cutting a list into items, cleaning an item, deriving shorter tags, and
// the list of tags that a search has tried. Pure functions over text.
#pragma once

#include <windows.h>

#include <cstddef>

namespace arvmui
{

// Items that stand for a source of locales.
inline constexpr wchar_t kKeywordUser[] = L"user";
inline constexpr wchar_t kKeywordSystem[] = L"system";
inline constexpr wchar_t kKeywordUILanguage[] = L"uilang";
inline constexpr wchar_t kKeywordSettingsFile[] = L"kiv";
inline constexpr wchar_t kKeywordBrowser[] = L"msie";
inline constexpr wchar_t kKeywordAsk[] = L"ask";

// First character at or after `p` that is neither ',' nor ASCII white space.
const wchar_t* SkipListSeparators(const wchar_t* p) noexcept;

// End of the item that starts at `item`: before the ',' or the end of the list, without the white
// space that stands before it.
const wchar_t* FindListItemEnd(const wchar_t* item) noexcept;

// Copies an item and terminates it; FALSE, copying nothing, when it does not fit below `limit`.
BOOL CopyListItem(wchar_t* destination, const wchar_t* limit, const wchar_t* begin, const wchar_t* end) noexcept;

// Replaces characters that a file name cannot hold by '_', in place; returns the item.
wchar_t* SanitizeLocaleItem(wchar_t* item) noexcept;

// Whether the item is a number: decimal, "0x" hexadecimal or octal with a leading zero.
BOOL IsNumericItem(const wchar_t* item) noexcept;

// The language identifier of a numeric item: its low 16 bits.
LANGID ParseNumericItem(const wchar_t* item) noexcept;

// "en-US" of "en-US-x" or "en_US.UTF-8"; FALSE when the tag is not longer or room is below 6.
BOOL DeriveFullTag(const wchar_t* tag, wchar_t* destination, size_t room) noexcept;

// "en" of "en-US" and of longer tags; FALSE for other forms or when room is below 3.
BOOL DeriveLanguageTag(const wchar_t* tag, wchar_t* destination, size_t room) noexcept;

// Whether one of the terminated tags from listBegin up to listEnd is the candidate, or starts with
// it at the end of a word: a tried "en-US" makes "en" count as tried.
BOOL IsTagAlreadyTried(const wchar_t* listBegin, const wchar_t* listEnd, const wchar_t* candidate) noexcept;

}  // namespace arvmui
