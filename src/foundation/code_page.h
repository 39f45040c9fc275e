// Conversions between UTF-16 and the system's ANSI code page. Integer identifiers in place of text
// pass through unchanged, and ARVMUI_free ignores them, so callers need not tell the two apart.
#pragma once

#include "foundation/heap.h"

namespace arvmui
{

// A converted copy that the caller frees with ARVMUI_free, or null on failure. With a length of -1
// the text ends at its terminator, which is converted too.
wchar_t* DupWideFromAnsi(const char* text, int length) noexcept;
char* DupAnsiFromWide(const wchar_t* text, int length) noexcept;

// A narrow text argument of an exported function, converted for as long as the call lasts.
class WideArgument
{
public:
    explicit WideArgument(const char* text) noexcept : given_(text != nullptr), wide_(DupWideFromAnsi(text, -1)) {}

    bool Failed() const noexcept { return given_ && !wide_; }
    const wchar_t* Get() const noexcept { return wide_.Get(); }

private:
    bool given_;
    HeapBlock<wchar_t> wide_;
};

}  // namespace arvmui
