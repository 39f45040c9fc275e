// Fills the placeholders of translated texts. The text comes from a translator and the arguments
// from anywhere, so nothing here trusts either: a placeholder without an argument of its kind comes
// out as it stands, and a '%' in an argument is just a character.
#pragma once

#include "foundation/heap.h"

namespace arvmui
{

class PlaceholderArgument
{
public:
    PlaceholderArgument() noexcept = default;
    explicit PlaceholderArgument(const wchar_t* text) noexcept : text_(text) {}
    explicit PlaceholderArgument(DWORD number) noexcept : number_(number) {}

    bool IsText() const noexcept { return text_ != nullptr; }
    const wchar_t* Text() const noexcept { return text_; }
    DWORD Number() const noexcept { return number_; }

private:
    const wchar_t* text_ = nullptr;
    DWORD number_ = 0;
};

enum class PlaceholderPass
{
    kBeforeAnother,  // the result is a format again: what must come out as itself is escaped
    kLast
};

// Replaces the printf-style placeholders of `format`, in order, by the arguments ("%s" and "%ls"
// text; "%u", "%lu", "%d", "%x" and their kin numbers; flags, width and precision count) and "%%"
// by a percent sign. FALSE when memory is lacking. `result` must be empty.
bool FillPlaceholders(HeapBlock<wchar_t>& result, PlaceholderPass pass, const wchar_t* format,
    const PlaceholderArgument* arguments, size_t argumentCount) noexcept;

}  // namespace arvmui
