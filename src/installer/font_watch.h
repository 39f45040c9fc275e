// The watch over an installation's windows: whenever a window with one of the product's names as its
// title is there, its texts get the font of its buttons.
#pragma once

#include "foundation/heap.h"

namespace arvmui
{

// At most 16 distinct window titles, none of them empty.
class FontResetterNames
{
public:
    static constexpr DWORD kMaxNames = 16;

    FontResetterNames() noexcept = default;
    ~FontResetterNames();
    FontResetterNames(const FontResetterNames&) = delete;
    FontResetterNames& operator=(const FontResetterNames&) = delete;

    // Takes over a heap block, null included; what the list does not want is freed.
    void Add(wchar_t* name) noexcept;
    void AddCopy(const wchar_t* name) noexcept;

    bool Contains(const wchar_t* name) const noexcept;
    DWORD Count() const noexcept { return count_; }
    const wchar_t* const* Items() const noexcept { return names_; }

private:
    wchar_t* names_[kMaxNames] = {};
    DWORD count_ = 0;
};

// Looks over all windows every `interval` milliseconds for `total` milliseconds. TRUE when the
// handle, which may be null, was signalled; FALSE when the time is up or the handle cannot be waited for.
bool RunFontResetterLoop(HANDLE handle, DWORD interval, DWORD total, const FontResetterNames& names) noexcept;

}  // namespace arvmui
