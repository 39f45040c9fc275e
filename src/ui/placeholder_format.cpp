#include "ui/placeholder_format.h"

#include "foundation/growable_text.h"
#include "foundation/text.h"

#include <algorithm>
#include <cwchar>

namespace arvmui
{
namespace
{

constexpr size_t kMaxFlags = 5;
constexpr size_t kMaxDigits = 3;  // of a width or precision
// More than any error code has. Some runtime libraries write beyond their own buffers where a number
// is much wider.
constexpr unsigned long kMaxNumberField = 20;
constexpr size_t kMaxPlaceholderChars = 2 + kMaxFlags + 2 * kMaxDigits + 1;  // "%" flags width "." precision type

// One placeholder, taken apart and put together again without its size prefix.
struct Placeholder
{
    const wchar_t* end = nullptr;  // behind the placeholder
    bool takesText = false;
    wchar_t format[kMaxPlaceholderChars + 1] = {};
};

class Result
{
public:
    Result(HeapBlock<wchar_t>& text, bool escape) noexcept : text_(text), escape_(escape) {}

    bool AppendPlain(wchar_t character) noexcept
    {
        if (length_ + 1 >= capacity_)
        {
            const size_t capacity = capacity_ * 2 + kFirstCapacity;
            if (!GrowText(text_.Slot(), capacity)) return false;
            capacity_ = capacity;
        }
        text_.Get()[length_++] = character;
        text_.Get()[length_] = L'\0';
        return true;
    }

    // A character that must still be there after all passes.
    bool AppendLiteral(wchar_t character) noexcept
    {
        if (character == L'%' && escape_ && !AppendPlain(L'%')) return false;
        return AppendPlain(character);
    }

    bool AppendLiteral(const wchar_t* text) noexcept
    {
        for (; *text; ++text)
            if (!AppendLiteral(*text)) return false;
        return true;
    }

private:
    static constexpr size_t kFirstCapacity = 128;

    HeapBlock<wchar_t>& text_;
    bool escape_;
    size_t length_ = 0;
    size_t capacity_ = 0;  // length_ < capacity_ once the block exists
};

size_t CountDigits(const wchar_t* text) noexcept
{
    size_t count = 0;
    while (text[count] >= L'0' && text[count] <= L'9') ++count;
    return count;
}

unsigned long NumberOf(const wchar_t* digits, size_t count) noexcept
{
    unsigned long number = 0;
    for (size_t i = 0; i < count; ++i) number = number * 10 + static_cast<unsigned long>(digits[i] - L'0');
    return number;
}

// Takes apart the placeholder at `percent`; FALSE when it is none that an argument could fill.
bool ParsePlaceholder(const wchar_t* percent, Placeholder& placeholder) noexcept
{
    const wchar_t* p = percent + 1;
    const size_t flags = std::wcsspn(p, L"-+ #0");
    p += flags;
    const size_t width = CountDigits(p);
    p += width;
    const wchar_t* const widthEnd = p;
    size_t precision = 0;
    if (*p == L'.')
    {
        precision = CountDigits(++p);
        p += precision;
    }
    if (flags > kMaxFlags || width > kMaxDigits || precision > kMaxDigits) return false;

    const unsigned long field = std::max(NumberOf(widthEnd - width, width), NumberOf(p - precision, precision));

    const size_t common = static_cast<size_t>(p - percent);
    const wchar_t sizePrefix = *p == L'l' || *p == L'w' ? *p++ : L'\0';
    placeholder.takesText = *p == L's';
    if (*p == L'\0' || !std::wcschr(L"sudixXo", *p)) return false;
    if (!placeholder.takesText && (sizePrefix == L'w' || field > kMaxNumberField)) return false;

    std::wmemcpy(placeholder.format, percent, common);
    placeholder.format[common] = *p;
    placeholder.format[common + 1] = L'\0';
    placeholder.end = p + 1;
    return true;
}

bool AppendArgument(Result& result, const Placeholder& placeholder, const PlaceholderArgument& argument) noexcept
{
    HeapBlock<wchar_t> text;
    const int length = argument.IsText() ? AppendFormat(text.Slot(), -1, placeholder.format, argument.Text())
                                         : AppendFormat(text.Slot(), -1, placeholder.format, argument.Number());
    return length >= 0 && result.AppendLiteral(text.Get());
}

}  // namespace

bool FillPlaceholders(HeapBlock<wchar_t>& result, PlaceholderPass pass, const wchar_t* format,
    const PlaceholderArgument* arguments, size_t argumentCount) noexcept
{
    if (!GrowText(result.Slot(), 1)) return false;
    result.Get()[0] = L'\0';

    Result out(result, pass == PlaceholderPass::kBeforeAnother);
    size_t used = 0;
    for (const wchar_t* p = format; *p;)
    {
        if (*p != L'%')
        {
            if (!out.AppendPlain(*p++)) return false;
            continue;
        }
        if (p[1] == L'%')
        {
            if (!out.AppendPlain(L'%')) return false;
            p += 2;
            continue;
        }
        Placeholder placeholder;
        if (used < argumentCount && ParsePlaceholder(p, placeholder)
            && placeholder.takesText == arguments[used].IsText())
        {
            if (!AppendArgument(out, placeholder, arguments[used++])) return false;
            p = placeholder.end;
            continue;
        }
        if (!out.AppendLiteral(*p++)) return false;
    }
    return true;
}

}  // namespace arvmui
