#include "foundation/diagnostic_log.h"

#include "foundation/growable_text.h"
#include "foundation/heap.h"
#include "foundation/text_calls.h"
#include "resources/process_state.h"

namespace arvmui
{
namespace
{

constexpr size_t kLineChars = 256;  // in the stack buffer, terminator included

template <typename Char>
bool StartsWith(const Char* text, const Char* prefix, size_t count) noexcept
{
    return TextCalls<Char>::LengthN(text, count) == count && std::memcmp(text, prefix, count * sizeof(Char)) == 0;
}

// Fixed line under construction: each piece must have a character and must fit.
template <typename Char>
class StackLine
{
public:
    bool Append(const Char* format, ...) noexcept
    {
        va_list arguments;
        va_start(arguments, format);
        const bool fits = AppendV(format, arguments);
        va_end(arguments);
        return fits;
    }

    bool AppendV(const Char* format, va_list arguments) noexcept
    {
        const size_t room = kLineChars - length_;
        const int count = TextCalls<Char>::FormatV(text_ + length_, room, room - 1, format, arguments);
        if (count <= 0) return false;
        length_ += static_cast<size_t>(count);
        text_[length_] = Char{};
        return true;
    }

    Char* Text() noexcept { return text_; }

private:
    Char text_[kLineChars];
    size_t length_ = 0;  // length_ < kLineChars
};

template <typename Char>
bool BuildOnHeap(HeapBlock<Char>& line, const Char* format, va_list arguments) noexcept
{
    return AppendFormat(line.Slot(), -1, ARVMUI_TEXT(Char, "QEL_ARVMUI@%u: "), ::GetCurrentThreadId()) >= 1
           && AppendFormatV(line.Slot(), -1, format, arguments) >= 1
           && AppendFormat(line.Slot(), -1, ARVMUI_TEXT(Char, "%s"), ARVMUI_TEXT(Char, "\r\n")) >= 1;
}

// A message that ends in a colon and a blank, as one with an empty detail does, ends in a full stop.
// Deliberate: only the first kLineChars characters are looked at.
template <typename Char>
void TidyEnd(Char* line) noexcept
{
    constexpr size_t kTailChars = 4;
    const size_t length = TextCalls<Char>::LengthN(line, kLineChars);
    if (length < kTailChars) return;
    Char* const tail = line + length - kTailChars;
    if (std::memcmp(tail, ARVMUI_TEXT(Char, ": \r\n"), kTailChars * sizeof(Char)) != 0) return;
    std::memcpy(tail, ARVMUI_TEXT(Char, ".\r\n"), kTailChars * sizeof(Char));  // with the terminator
}

// Takes the product's prefix off the name of the reporting function.
template <typename Char>
void TidyStart(Char* line) noexcept
{
    constexpr size_t kPrefixChars = 11;
    const Char* const colon = TextCalls<Char>::FindFirst(line, ':');
    if (!colon || colon[1] == Char{}) return;
    Char* const message = line + (colon - line) + 2;  // behind the colon and its blank
    if (!StartsWith(message, ARVMUI_TEXT(Char, "QEL_ARVMUI_"), kPrefixChars)) return;
    const Char* const rest = message + kPrefixChars;
    std::memmove(message, rest, (TextCalls<Char>::Length(rest) + 1) * sizeof(Char));
}

template <typename Char>
void LogLineV(const Char* format, va_list arguments) noexcept
{
    StackLine<Char> fixed;
    HeapBlock<Char> grown;
    Char* line = fixed.Text();

    va_list copy;
    va_copy(copy, arguments);
    const bool fits = fixed.Append(ARVMUI_TEXT(Char, "QEL_ARVMUI@%u: "), ::GetCurrentThreadId())
                      && fixed.AppendV(format, copy)
                      && fixed.Append(ARVMUI_TEXT(Char, "%s"), ARVMUI_TEXT(Char, "\r\n"));
    va_end(copy);
    if (!fits)
    {
        if (!BuildOnHeap(grown, format, arguments)) return;
        line = grown.Get();
    }

    TidyEnd(line);
    TidyStart(line);
    if (TextCalls<Char>::LengthN(line, kLineChars) > 0) TextCalls<Char>::Debug(line);
}

}  // namespace

void LogLineW(const wchar_t* format, ...) noexcept
{
    va_list arguments;
    va_start(arguments, format);
    LogLineV(format, arguments);
    va_end(arguments);
}

void LogLineA(const char* format, ...) noexcept
{
    va_list arguments;
    va_start(arguments, format);
    LogLineV(format, arguments);
    va_end(arguments);
}

}  // namespace arvmui

void ARVMUI_CALL ARVMUI_SetMessagePopup(BOOL enable, BOOL* previous)
{
    LibraryDescriptor& descriptor = arvmui::Descriptor();
    if (previous) *previous = descriptor.showMessagePopup;
    descriptor.showMessagePopup = enable != FALSE;
}

void ARVMUI_CALL ARVMUI_LogSetCallTable(void*)
{
    // Deliberate: hosts may call it, and it does nothing.
}
