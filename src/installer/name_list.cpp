#include "installer/name_list.h"

#include "foundation/text.h"

#include <cstring>

namespace arvmui
{
namespace
{

constexpr size_t kFirstChars = 256;
constexpr size_t kMaxGrowthChars = 65536;

}  // namespace

bool NameList::Append(const wchar_t* name) noexcept
{
    const size_t length = WideLength(name) + 1;
    size_t capacity = capacity_;
    while (length > capacity - used_)
    {
        if (capacity == 0)
            capacity = kFirstChars;
        else
            capacity += capacity < kMaxGrowthChars ? capacity : kMaxGrowthChars;
    }
    if (capacity != capacity_)
    {
        if (!names_.Resize(capacity)) return false;
        capacity_ = capacity;
    }
    std::memcpy(names_.Get() + used_, name, length * sizeof(wchar_t));
    used_ += length;
    ++count_;
    return true;
}

const wchar_t* NameList::Next(const wchar_t* name) const noexcept
{
    const wchar_t* const next = name + WideLength(name) + 1;
    return next < names_.Get() + used_ ? next : nullptr;
}

}  // namespace arvmui
