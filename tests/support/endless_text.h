// Text without a terminator that is longer than any text may be: one piece of memory that appears
// again and again at consecutive addresses.
#pragma once

#include <windows.h>

#include <cstddef>
#include <vector>

namespace arvmui_test
{

class EndlessText
{
public:
    // 0x80000000 wide characters, or twice as many narrow ones; each wide one is 'x', each narrow one
    // 'x' or, where `narrow` is not set, zero.
    explicit EndlessText(bool narrow);
    ~EndlessText();
    EndlessText(const EndlessText&) = delete;
    EndlessText& operator=(const EndlessText&) = delete;

    // Null when there is no such stretch of addresses.
    const void* Get() const { return views_.empty() ? nullptr : views_.front(); }

private:
    bool MapAt(BYTE* base);

    HANDLE section_ = nullptr;
    std::vector<void*> views_;
};

}  // namespace arvmui_test
