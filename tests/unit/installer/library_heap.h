// The blocks that the library has allocated and not freed, and allocations that fail on demand. Unlike
// counting blocks of the process heap it leaves out what tests and fixtures allocate themselves.
#pragma once

#include "support/module_patch.h"

#include <windows.h>

#include <cstddef>
#include <optional>
#include <set>
#include <vector>

namespace arvmui_test
{

// For programs that link the library's objects. One at a time.
class LibraryHeap
{
public:
    LibraryHeap();
    ~LibraryHeap();
    LibraryHeap(const LibraryHeap&) = delete;
    LibraryHeap& operator=(const LibraryHeap&) = delete;

    size_t LiveBlocks() const { return blocks_.size(); }

    // Bytes asked for, one for each allocation or resizing, in order.
    const std::vector<size_t>& Sizes() const { return sizes_; }
    void ForgetSizes() { sizes_.clear(); }

    // The allocation of that number from now on, from 0, fails with that last-error code; none for ever.
    void FailAt(size_t number, DWORD error = ERROR_NOT_ENOUGH_MEMORY);
    void FailNever() { allocationsLeft_.reset(); }
    bool HasFailed() const { return hasFailed_; }

private:
    static void* Resize(void* block, unsigned long long bytes);
    static void Free(void* block);

    static LibraryHeap* current_;

    std::set<void*> blocks_;
    std::vector<size_t> sizes_;
    std::optional<size_t> allocationsLeft_;
    DWORD error_ = ERROR_SUCCESS;
    bool hasFailed_ = false;

    FunctionPatch resize_;
    FunctionPatch free_;
};

}  // namespace arvmui_test
