#include "foundation/code_page.h"
#include "foundation/text.h"

#include <cwchar>

// The names by which people call text encodings, as code pages of the system.

namespace arvmui
{
namespace
{

struct EncodingName
{
    wchar_t name[16];
    DWORD codePage;
};

// Both tables are in the order of CompareTextNoCase, which the look-up relies on. Deliberate: two
// names stand for 0, the system's ANSI code page, as an unknown name does.
constexpr EncodingName kShortNames[] = {
    {L"EUC-JP", 51932},
    {L"ISO8859_1", CP_ACP},
    {L"SJIS", 932},
    {L"UTF8", CP_UTF8},
};

constexpr EncodingName kRegisteredNames[] = {
    {L"GB18030", 54936},
    {L"GBK", 936},
    {L"ISO-8859-1", 28591},
    {L"Shift_JIS", 932},
    {L"US-ASCII", CP_ACP},
    {L"UTF-16BE", 1201},
    {L"UTF-8", CP_UTF8},
};

struct NumericPrefix
{
    const wchar_t* text;
    size_t length;
};

constexpr NumericPrefix kNumericPrefixes[] = {{L"CP", 2}, {L"MS", 2}, {L"windows-", 8}};
constexpr unsigned long kFirstInvalidCodePage = 0x10000;

template <size_t Count>
const EncodingName* FindName(const EncodingName (&table)[Count], const wchar_t* name) noexcept
{
    size_t low = 0;
    size_t high = Count;
    while (low < high)  // rows before low come before the name, rows from high on behind it
    {
        const size_t middle = (low + high - 1) / 2;
        const int order = CompareTextNoCase(table[middle].name, name);
        if (order == 0) return &table[middle];
        if (order < 0)
            low = middle + 1;
        else
            high = middle;
    }
    return nullptr;
}

const wchar_t* SkipNumericPrefix(const wchar_t* name) noexcept
{
    for (const NumericPrefix& prefix : kNumericPrefixes)
    {
        if (HasPrefixNoCase(name, prefix.text, prefix.length)) return name + prefix.length;
    }
    return name;
}

DWORD ParseCodePage(const wchar_t* number) noexcept
{
    wchar_t* end = nullptr;
    const unsigned long value = std::wcstoul(number, &end, 10);
    if (end == number || *end != L'\0' || value >= kFirstInvalidCodePage) return 0;
    return value;
}

}  // namespace
}  // namespace arvmui

DWORD ARVMUI_CALL ARVMUI_TextEncodingToCodePageW(const WCHAR* name)
{
    using namespace arvmui;
    if (IsIntegerIdentifier(name)) return 0;
    if (const EncodingName* row = FindName(kShortNames, name)) return row->codePage;
    if (const EncodingName* row = FindName(kRegisteredNames, name)) return row->codePage;
    return ParseCodePage(SkipNumericPrefix(name));
}

DWORD ARVMUI_CALL ARVMUI_TextEncodingToCodePageA(const char* name)
{
    const arvmui::WideArgument wide(name);
    return ARVMUI_TextEncodingToCodePageW(wide.Get());
}
