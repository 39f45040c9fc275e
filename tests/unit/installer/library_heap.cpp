#include "unit/installer/library_heap.h"

#include "foundation/heap.h"

#include <cstring>

namespace arvmui_test
{
namespace
{

size_t SizeOf(void* block)
{
    return block ? ::HeapSize(::GetProcessHeap(), 0, block) : 0;
}

}  // namespace

LibraryHeap* LibraryHeap::current_ = nullptr;

LibraryHeap::LibraryHeap()
    : resize_(reinterpret_cast<void*>(&ARVMUI_realloc), reinterpret_cast<void*>(&Resize)),
      free_(reinterpret_cast<void*>(&ARVMUI_free), reinterpret_cast<void*>(&Free))
{
    current_ = this;
}

LibraryHeap::~LibraryHeap()
{
    for (void* const block : blocks_) ::HeapFree(::GetProcessHeap(), 0, block);
}

void LibraryHeap::FailAt(size_t number, DWORD error)
{
    allocationsLeft_ = number;
    error_ = error;
    hasFailed_ = false;
}

// New memory is filled, as that of a heap in long use is.
void* LibraryHeap::Resize(void* block, unsigned long long bytes)
{
    LibraryHeap& heap = *current_;
    heap.sizes_.push_back(bytes);
    if (heap.allocationsLeft_ && (*heap.allocationsLeft_)-- == 0)
    {
        heap.allocationsLeft_.reset();
        heap.hasFailed_ = true;
        ::SetLastError(heap.error_);
        return nullptr;
    }
    const size_t oldBytes = SizeOf(block);
    void* const resized =
        block ? ::HeapReAlloc(::GetProcessHeap(), 0, block, bytes) : ::HeapAlloc(::GetProcessHeap(), 0, bytes);
    if (!resized) return nullptr;
    if (bytes > oldBytes) std::memset(static_cast<char*>(resized) + oldBytes, 'x', bytes - oldBytes);
    heap.blocks_.erase(block);
    heap.blocks_.insert(resized);
    return resized;
}

void LibraryHeap::Free(void* block)
{
    if (current_->blocks_.erase(block) != 0) ::HeapFree(::GetProcessHeap(), 0, block);
}

}  // namespace arvmui_test
