#include "cmdline/argument_escape.h"

#include "foundation/code_page.h"
#include "foundation/growable_text.h"
#include "foundation/text_calls.h"

#include <shellapi.h>

#include <cwctype>

namespace arvmui
{
namespace
{

constexpr size_t kEscapeChars = 6;  // "\uXXXX"
constexpr size_t kHexDigits = 4;

bool StaysItself(wchar_t character) noexcept
{
    return character >= 0x20 && character <= 0x7E && character != L'"';
}

size_t EscapedLength(wchar_t character) noexcept
{
    if (character == L'\\') return 2;
    return StaysItself(character) ? 1 : kEscapeChars;
}

bool IsUnicodeEscape(const wchar_t* text) noexcept
{
    if (text[0] != L'\\' || text[1] != L'u') return false;
    for (size_t i = 0; i < kHexDigits; ++i)
    {
        if (!std::iswctype(text[2 + i], _HEX)) return false;
    }
    return true;
}

// Digits of other scripts give odd values, but always some value.
unsigned HexDigitValue(wchar_t digit) noexcept
{
    if (std::iswctype(digit, _DIGIT)) return static_cast<unsigned>(digit) - L'0';
    return static_cast<unsigned>(std::towupper(digit)) - 55u;  // 'A' is 10
}

// Takes one character off escaped text and steps over it; FALSE at the text's end, which is also
// where a backslash starts no escape.
bool NextUnescaped(const wchar_t*& text, wchar_t& character) noexcept
{
    if (*text == L'\0') return false;
    if (*text != L'\\')
    {
        character = *text++;
        return true;
    }
    if (text[1] == L'\\')
    {
        character = L'\\';
        text += 2;
        return true;
    }
    if (!IsUnicodeEscape(text)) return false;
    unsigned value = 0;
    for (size_t i = 0; i < kHexDigits; ++i) value = (value << 4) + HexDigitValue(text[2 + i]);
    character = static_cast<wchar_t>(value & 0xFFFF);
    text += kEscapeChars;
    return true;
}

// Appends the arguments behind the pointer table and stores the offset of each in its table entry,
// as the block may still move. The number of arguments for which there was memory.
DWORD AppendArguments(HeapBlock<wchar_t>& block, wchar_t* const* arguments, DWORD count, size_t firstOffset) noexcept
{
    size_t offset = firstOffset;
    for (DWORD i = 0; i < count; ++i)
    {
        const int length = AppendUnescapedArgument(block.Slot(), static_cast<int>(offset), arguments[i]);
        if (length < 0) return i;
        reinterpret_cast<size_t*>(block.Get())[i] = offset;
        offset += static_cast<size_t>(length) + 1;
    }
    return count;
}

}  // namespace

int AppendEscapedArgument(wchar_t** buffer, int position, const wchar_t* text) noexcept
{
    const size_t start = AppendIndex(*buffer, position);
    size_t length = 0;
    for (const wchar_t* p = text; *p; ++p) length += EscapedLength(*p);
    if (!GrowText(buffer, start + length + 1)) return -1;

    wchar_t* out = *buffer + start;
    for (const wchar_t* p = text; *p; ++p)
    {
        const size_t size = EscapedLength(*p);
        if (size == 1)
        {
            *out = *p;
        }
        else
        {
            // One more element: each escape is terminated until the next character overwrites that.
            // Ignored: the length, which is known.
            const wchar_t* const format = size == kEscapeChars ? L"\\u%04X" : L"\\\\";
            FormatFixed<wchar_t>(out, size + 1, format, static_cast<unsigned>(*p));
        }
        out += size;
    }
    *out = L'\0';
    return static_cast<int>(length);
}

int AppendUnescapedArgument(wchar_t** buffer, int position, const wchar_t* text) noexcept
{
    const size_t start = AppendIndex(*buffer, position);
    size_t length = 0;
    wchar_t character = L'\0';
    for (const wchar_t* p = text; NextUnescaped(p, character);) ++length;
    if (!GrowText(buffer, start + length + 1)) return -1;

    wchar_t* out = *buffer + start;
    for (const wchar_t* p = text; NextUnescaped(p, character);) *out++ = character;
    *out = L'\0';
    return static_cast<int>(length);
}

wchar_t** BuildArgumentVector(const char* commandLine, DWORD* count) noexcept
{
    if (count) *count = 0;
    const WideArgument wide(commandLine);
    if (wide.Failed() || IsIntegerIdentifier(wide.Get())) return nullptr;

    int argumentCount = 0;
    UniqueLocalMemory arguments;
    const wchar_t* const line = SkipSpace(wide.Get());
    if (*line)
    {
        arguments = UniqueLocalMemory(::CommandLineToArgvW(line, &argumentCount));
        if (!arguments) return nullptr;
    }

    const DWORD wanted = static_cast<DWORD>(argumentCount);
    const size_t tableChars = (wanted + 1) * sizeof(wchar_t*) / sizeof(wchar_t);
    HeapBlock<wchar_t> block;
    if (!block.Resize(tableChars)) return nullptr;
    const DWORD built = AppendArguments(block, static_cast<wchar_t* const*>(arguments.Get()), wanted, tableChars);

    wchar_t** const table = reinterpret_cast<wchar_t**>(block.Get());
    for (DWORD i = 0; i < built; ++i) table[i] = block.Get() + reinterpret_cast<const size_t*>(table)[i];
    table[built] = nullptr;
    if (count) *count = built;
    static_cast<void>(block.Release());  // the table lies at the start of the block
    return table;
}

}  // namespace arvmui
