#include "installer/table_suffix.h"

#include "foundation/text_calls.h"

namespace arvmui
{

LocaleTableSuffix::LocaleTableSuffix(const LocaleEntry& entry) noexcept : length(entry.LocaleLength)
{
    // Ignored: the length, which the entry knows.
    CopyCut(text, ARVMUI_TAG_CHARS, entry.Locale);
    for (wchar_t* p = text; *p; ++p)
        if (*p == L'-') *p = L'_';
}

bool HasLocaleSuffix(const wchar_t* name, const wchar_t* suffix, DWORD suffixLength) noexcept
{
    const size_t nameLength = WideLength(name);
    const size_t length = suffixLength == kMeasureSuffix ? WideLength(suffix) : suffixLength;
    if (nameLength <= length + 1) return false;
    const wchar_t* const end = name + nameLength - length;
    return end[-1] == L'_' && CompareTextNoCaseN(end, suffix, length) == 0;
}

void CutLocaleSuffix(wchar_t* name, DWORD suffixLength) noexcept
{
    name[WideLength(name) - suffixLength - 1] = L'\0';
}

}  // namespace arvmui
