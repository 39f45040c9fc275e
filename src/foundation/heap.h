// The process heap: the exported ARVMUI_realloc and ARVMUI_free, and the guard that owns a block.
#pragma once

#include "arvmui.h"
#include "foundation/handles.h"

#include <cstddef>
#include <cstdint>

namespace arvmui
{

// Pointer-sized values below this are integer identifiers, not addresses.
constexpr ULONG_PTR kFirstAddress = 0x10000;

template <typename T>
bool IsIntegerIdentifier(const T* pointer) noexcept
{
    return reinterpret_cast<ULONG_PTR>(pointer) < kFirstAddress;
}

// Owns one block of the process heap.
template <typename T>
class HeapBlock
{
public:
    HeapBlock() noexcept = default;
    explicit HeapBlock(T* block) noexcept : block_(block) {}
    ~HeapBlock()
    {
        if (!block_) return;
        const LastErrorKeeper keep;  // freeing must not hide the error being reported
        ARVMUI_free(block_);
    }
    HeapBlock(const HeapBlock&) = delete;
    HeapBlock& operator=(const HeapBlock&) = delete;

    T* Get() const noexcept { return block_; }
    explicit operator bool() const noexcept { return block_ != nullptr; }

    // For functions that may move the block; it stays owned whatever they return.
    T** Slot() noexcept { return &block_; }

    T* Release() noexcept
    {
        T* const block = block_;
        block_ = nullptr;
        return block;
    }

    // Gives the block room for `count` elements; on failure the old block stays.
    bool Resize(size_t count) noexcept
    {
        if (count > SIZE_MAX / sizeof(T)) return false;
        void* const block = ARVMUI_realloc(block_, count * sizeof(T));
        if (!block) return false;
        block_ = static_cast<T*>(block);
        return true;
    }

private:
    T* block_ = nullptr;
};

}  // namespace arvmui
