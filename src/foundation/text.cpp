#include "foundation/text.h"

#include "foundation/plain_characters.h"

#include <cstring>
#include <cwchar>

namespace arvmui
{
namespace
{

// English (United States) whatever the user speaks.
constexpr LCID kFixedLocale = 0x0409;
constexpr DWORD kIgnoreCase = NORM_IGNORECASE | SORT_STRINGSORT;
constexpr DWORD kRespectCase = SORT_STRINGSORT;
constexpr int kWhole = -1;

void ReportInvalidLength() noexcept
{
    ::OutputDebugStringA("Invalid parameter for ARV_wcsnlen_s()");
}

int ToOrder(int comparison) noexcept
{
    switch (comparison)
    {
        case CSTR_LESS_THAN: return -1;
        case CSTR_EQUAL: return 0;
        default: return 1;
    }
}

int BoundedLength(const char* text, size_t count) noexcept
{
    const void* const end = std::memchr(text, '\0', count);
    return static_cast<int>(end ? static_cast<const char*>(end) - text : static_cast<ptrdiff_t>(count));
}

// Calls visit(position, value) for every character before the terminator until it returns true.
template <typename Visit>
void WalkMbcs(const char* text, Visit visit) noexcept
{
    for (;;)
    {
        const char* const next = ::CharNextExA(CP_ACP, text, 0);
        if (next <= text) return;
        unsigned value = 0;
        for (const char* byte = text; byte < next; ++byte) value = value << 8 | static_cast<unsigned char>(*byte);
        if (visit(text, value)) return;
        text = next;
    }
}

}  // namespace

size_t WideLength(const wchar_t* text) noexcept
{
    const size_t length = ::wcsnlen(text, kMaxTextChars);
    if (length >= kMaxTextChars) ReportInvalidLength();
    return length;
}

size_t NarrowLength(const char* text) noexcept
{
    return ::strnlen(text, kMaxTextChars);
}

BOOL IsLatinText(const wchar_t* text, ptrdiff_t count) noexcept
{
    size_t length = 0;
    if (count < 0)
    {
        length = WideLength(text);
    }
    else
    {
        length = static_cast<size_t>(count);
        if (::wcsnlen(text, length) == length)
        {
            ReportInvalidLength();
            return FALSE;
        }
    }
    for (const wchar_t* const end = text + length; text != end; ++text)
    {
        if (*text >= 0x0370 && (*text < 0x1E00 || *text > 0x1EFF)) return FALSE;
    }
    return TRUE;
}

BOOL IsFileNameChar(wchar_t character) noexcept
{
    if (character < 32) return FALSE;
    switch (character)
    {
        case L'"':
        case L'/':
        case L':':
        case L'<':
        case L'>':
        case L'\\':
        case L'|': return FALSE;
        default: return TRUE;
    }
}

const wchar_t* SkipSpace(const wchar_t* text) noexcept
{
    while (IsAsciiSpace(*text)) ++text;
    return text;
}

int CompareText(const wchar_t* left, const wchar_t* right) noexcept
{
    return ToOrder(::CompareStringW(LOCALE_USER_DEFAULT, kRespectCase, left, kWhole, right, kWhole));
}

int CompareText(const char* left, const char* right) noexcept
{
    return ToOrder(::CompareStringA(LOCALE_USER_DEFAULT, kRespectCase, left, kWhole, right, kWhole));
}

int CompareTextNoCase(const wchar_t* left, const wchar_t* right) noexcept
{
    return ToOrder(::CompareStringW(kFixedLocale, kIgnoreCase, left, kWhole, right, kWhole));
}

int CompareTextNoCase(const char* left, const char* right) noexcept
{
    return ToOrder(::CompareStringA(kFixedLocale, kIgnoreCase, left, kWhole, right, kWhole));
}

bool EqualsNoCase(const wchar_t* left, const wchar_t* right) noexcept
{
    bool same = true;
    size_t i = 0;
    for (; left[i] != L'\0' && right[i] != L'\0'; ++i)
    {
        const char plainLeft = PlainCharacter(left[i]);
        const char plainRight = PlainCharacter(right[i]);
        if (plainLeft == '\0' || plainRight == '\0') return CompareTextNoCase(left, right) == 0;
        same = same && plainLeft == plainRight;
    }
    // What is left of the longer text could still be nothing to the system.
    for (const wchar_t* rest = left[i] != L'\0' ? left + i : right + i; *rest != L'\0'; ++rest)
    {
        if (PlainCharacter(*rest) == '\0') return CompareTextNoCase(left, right) == 0;
        same = false;
    }
    return same;
}

int CompareTextN(const wchar_t* left, const wchar_t* right, size_t count) noexcept
{
    const int length = static_cast<int>(count);
    return ToOrder(::CompareStringW(LOCALE_USER_DEFAULT, kRespectCase, left, length, right, length));
}

int CompareTextN(const char* left, const char* right, size_t count) noexcept
{
    return ToOrder(::CompareStringA(
        LOCALE_USER_DEFAULT, kRespectCase, left, BoundedLength(left, count), right, BoundedLength(right, count)));
}

int CompareTextNoCaseN(const wchar_t* left, const wchar_t* right, size_t count) noexcept
{
    const int length = static_cast<int>(count);
    return ToOrder(::CompareStringW(kFixedLocale, kIgnoreCase, left, length, right, length));
}

int CompareTextNoCaseN(const char* left, const char* right, size_t count) noexcept
{
    return ToOrder(::CompareStringA(
        kFixedLocale, kIgnoreCase, left, BoundedLength(left, count), right, BoundedLength(right, count)));
}

bool HasPrefixNoCase(const wchar_t* text, const wchar_t* prefix, size_t count) noexcept
{
    return ::wcsnlen(text, count) == count && CompareTextNoCaseN(text, prefix, count) == 0;
}

bool HasPrefixNoCase(const char* text, const char* prefix, size_t count) noexcept
{
    return CompareTextNoCaseN(text, prefix, count) == 0;
}

const wchar_t* FindCharN(const wchar_t* text, wchar_t character, size_t count) noexcept
{
    return std::wmemchr(text, character, count);
}

const char* FindMbcsChar(const char* text, unsigned character) noexcept
{
    if (character == 0) return text + NarrowLength(text);

    const char* found = nullptr;
    WalkMbcs(text,
        [&](const char* position, unsigned value)
        {
            if (value == character) found = position;
            return found != nullptr;
        });
    return found;
}

const char* FindLastMbcsChar(const char* text, unsigned character) noexcept
{
    if (character == 0) return text + NarrowLength(text);

    const char* found = nullptr;
    WalkMbcs(text,
        [&](const char* position, unsigned value)
        {
            if (value == character) found = position;
            return false;
        });
    return found;
}

}  // namespace arvmui
