#include "locale/locale_list.h"

#include "foundation/text.h"

#include <cwchar>
#include <cwctype>

namespace arvmui
{
namespace
{

constexpr size_t kFullTagChars = 5;      // "en-US"
constexpr size_t kLanguageTagChars = 2;  // "en"

// Whether the text starts with two letters, '-' or '_', and two letters.
bool StartsAsFullTag(const wchar_t* text) noexcept
{
    return std::iswalpha(text[0]) && std::iswalpha(text[1]) && (text[2] == L'-' || text[2] == L'_')
           && std::iswalpha(text[3]) && std::iswalpha(text[4]);
}

void WriteTag(wchar_t* destination, const wchar_t* tag, size_t length) noexcept
{
    std::wmemcpy(destination, tag, length);
    destination[length] = L'\0';
}

}  // namespace

const wchar_t* SkipListSeparators(const wchar_t* p) noexcept
{
    while (*p == L',' || IsAsciiSpace(*p)) ++p;
    return p;
}

const wchar_t* FindListItemEnd(const wchar_t* item) noexcept
{
    const wchar_t* end = item;  // behind the last character that is no white space
    for (const wchar_t* p = item; *p && *p != L','; ++p)
    {
        if (!IsAsciiSpace(*p)) end = p + 1;
    }
    return end;
}

BOOL CopyListItem(wchar_t* destination, const wchar_t* limit, const wchar_t* begin, const wchar_t* end) noexcept
{
    const ptrdiff_t length = end - begin;
    if (length + 1 > limit - destination) return FALSE;
    WriteTag(destination, begin, static_cast<size_t>(length));
    return TRUE;
}

wchar_t* SanitizeLocaleItem(wchar_t* item) noexcept
{
    for (wchar_t* p = item; *p; ++p)
    {
        if (!IsFileNameChar(*p)) *p = L'_';
    }
    return item;
}

BOOL IsNumericItem(const wchar_t* item) noexcept
{
    wchar_t* end = nullptr;
    // Ignored: the value is asked for by ParseNumericItem.
    static_cast<void>(std::wcstoul(item, &end, 0));
    return end != item && *end == L'\0';
}

LANGID ParseNumericItem(const wchar_t* item) noexcept
{
    return static_cast<LANGID>(std::wcstoul(item, nullptr, 0) & 0xFFFF);
}

BOOL DeriveFullTag(const wchar_t* tag, wchar_t* destination, size_t room) noexcept
{
    if (!StartsAsFullTag(tag) || tag[5] == L'\0' || std::iswalpha(tag[5])) return FALSE;
    if (room < kFullTagChars + 1) return FALSE;
    WriteTag(destination, tag, kFullTagChars);
    return TRUE;
}

BOOL DeriveLanguageTag(const wchar_t* tag, wchar_t* destination, size_t room) noexcept
{
    if (!StartsAsFullTag(tag) || std::iswalpha(tag[5])) return FALSE;
    if (room < kLanguageTagChars + 1) return FALSE;
    WriteTag(destination, tag, kLanguageTagChars);
    return TRUE;
}

BOOL IsTagAlreadyTried(const wchar_t* listBegin, const wchar_t* listEnd, const wchar_t* candidate) noexcept
{
    const size_t candidateLength = WideLength(candidate);
    for (const wchar_t* entry = listBegin; entry < listEnd;)
    {
        const size_t length = WideLength(entry);
        if (length >= candidateLength && CompareTextNoCaseN(entry, candidate, candidateLength) == 0
            && !std::iswalnum(entry[candidateLength]))
        {
            return TRUE;
        }
        entry += length + 1;
    }
    return FALSE;
}

}  // namespace arvmui
