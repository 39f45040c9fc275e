#include "cmdline/tokens.h"

#include "foundation/text.h"

namespace arvmui
{
namespace
{

// Token under construction: characters beyond the capacity are dropped.
class TokenBuffer
{
public:
    TokenBuffer(wchar_t* text, size_t capacity) noexcept : text_(text), limit_(capacity - 1) {}

    void Append(wchar_t character) noexcept
    {
        if (length_ < limit_) text_[length_++] = character;
    }

    size_t Finish() noexcept
    {
        text_[length_] = L'\0';
        return length_;
    }

    size_t Discard() noexcept
    {
        length_ = 0;
        return Finish();
    }

private:
    wchar_t* text_;
    size_t limit_;
    size_t length_ = 0;  // length_ <= limit_
};

}  // namespace

size_t NextCommandLineToken(const wchar_t* text, wchar_t* token, size_t capacity, const wchar_t** next) noexcept
{
    if (capacity == 0) return 0;
    TokenBuffer buffer(token, capacity);
    const wchar_t* p = SkipSpace(text);
    if (*p != L'"')
    {
        for (; *p && !IsAsciiSpace(*p); ++p) buffer.Append(*p);
    }
    else
    {
        for (++p; *p != L'"' || p[1] == L'"'; ++p)
        {
            if (*p == L'\0') return buffer.Discard();
            if (*p == L'"') ++p;  // two quotes stand for one
            buffer.Append(*p);
        }
        ++p;
    }
    if (next) *next = p;
    return buffer.Finish();
}

}  // namespace arvmui
