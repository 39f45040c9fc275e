// Names of tables or properties, packed one behind the other in one block.
#pragma once

#include "foundation/heap.h"

namespace arvmui
{

class NameList
{
public:
    // FALSE when memory is lacking; the list then stays as it was.
    bool Append(const wchar_t* name) noexcept;

    size_t Count() const noexcept { return count_; }

    // The first name, and the name behind a given one; null behind the last. Valid until the list grows.
    const wchar_t* First() const noexcept { return used_ != 0 ? names_.Get() : nullptr; }
    const wchar_t* Next(const wchar_t* name) const noexcept;

private:
    HeapBlock<wchar_t> names_;
    size_t used_ = 0;  // characters, terminators included; used_ <= capacity_
    size_t capacity_ = 0;
    size_t count_ = 0;
};

}  // namespace arvmui
