#include "foundation/growable_text.h"

#include "foundation/heap.h"
#include "foundation/text_calls.h"

#include <cerrno>

namespace arvmui
{
namespace
{

constexpr size_t kStep = 4096;  // from here on sizes grow by addition
constexpr size_t kSmallFormatGuess = 256;
constexpr size_t kFirstResourceSize = 64;

size_t NextFormatGuess(size_t guess) noexcept
{
    if (guess < kSmallFormatGuess) return guess + kSmallFormatGuess;
    return guess < kStep ? guess * 2 : guess + kStep;
}

size_t NextResourceSize(size_t size) noexcept
{
    if (size == 0) return kFirstResourceSize;
    return size < kStep ? size * 2 : size + kStep;
}

template <typename Char>
size_t AppendIndexAs(const Char* text, int position) noexcept
{
    if (position >= 0) return static_cast<size_t>(position);
    return text ? TextCalls<Char>::Length(text) : 0;
}

template <typename Char>
bool GrowTextAs(Char** text, size_t count) noexcept
{
    if (count > kMaxTextChars) return false;
    void* const block = ARVMUI_realloc(*text, count * sizeof(Char));
    if (!block) return false;
    *text = static_cast<Char*>(block);
    return true;
}

template <typename Char>
int AppendFormatVAs(Char** text, int position, const Char* format, va_list arguments) noexcept
{
    const size_t start = AppendIndexAs(*text, position);
    size_t guess = 2 * TextCalls<Char>::Length(format) + 1;
    for (;;)
    {
        guess = NextFormatGuess(guess);
        if (!GrowTextAs(text, start + guess)) return -1;

        errno = 0;
        va_list copy;  // every attempt reads the arguments from the first one on
        va_copy(copy, arguments);
        const int length = TextCalls<Char>::FormatV(*text + start, guess, _TRUNCATE, format, copy);
        va_end(copy);
        if (length >= 0) return length;

        if (errno == EILSEQ) return -1;  // not cut but inconvertible, which no amount of room mends
    }
}

}  // namespace

size_t AppendIndex(const wchar_t* text, int position) noexcept
{
    return AppendIndexAs(text, position);
}

bool GrowText(wchar_t** text, size_t count) noexcept
{
    return GrowTextAs(text, count);
}

int AppendFormatV(wchar_t** text, int position, const wchar_t* format, va_list arguments) noexcept
{
    return AppendFormatVAs(text, position, format, arguments);
}

int AppendFormatV(char** text, int position, const char* format, va_list arguments) noexcept
{
    return AppendFormatVAs(text, position, format, arguments);
}

int AppendFormat(wchar_t** text, int position, const wchar_t* format, ...) noexcept
{
    va_list arguments;
    va_start(arguments, format);
    const int length = AppendFormatVAs(text, position, format, arguments);
    va_end(arguments);
    return length;
}

int AppendFormat(char** text, int position, const char* format, ...) noexcept
{
    va_list arguments;
    va_start(arguments, format);
    const int length = AppendFormatVAs(text, position, format, arguments);
    va_end(arguments);
    return length;
}

int AppendResourceString(HMODULE module, UINT id, wchar_t** text, int position) noexcept
{
    const size_t start = AppendIndexAs(*text, position);
    size_t size = 0;
    for (;;)
    {
        size = NextResourceSize(size);
        if (!GrowTextAs(text, start + size)) return -1;
        const int length = ::LoadStringW(module, id, *text + start, static_cast<int>(size));
        if (length <= 0)
        {
            (*text)[start] = L'\0';  // some systems leave the buffer as it was
            return 0;
        }
        if (static_cast<size_t>(length) + 1 < size) return length;  // else it may have been cut
    }
}

}  // namespace arvmui
