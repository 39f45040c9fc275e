#include "foundation/heap.h"

#include "resources/process_state.h"
#include "resources/resource_ids.h"

namespace
{

// Characters in each text of the out-of-memory box, terminator included.
constexpr int kOutOfMemoryTextChars = 64;

// Uses the stack and the system only: there is no memory for anything else.
void ShowOutOfMemory() noexcept
{
    const LibraryDescriptor& descriptor = arvmui::Descriptor();
    if (!descriptor.showMessagePopup || !descriptor.resourceLibrary) return;

    wchar_t caption[kOutOfMemoryTextChars];
    wchar_t text[kOutOfMemoryTextChars];
    if (::LoadStringW(descriptor.resourceLibrary, ARVMUI_STRING_ERROR_CAPTION, caption, kOutOfMemoryTextChars) <= 0)
        return;
    if (::LoadStringW(descriptor.resourceLibrary, ARVMUI_STRING_OUT_OF_MEMORY, text, kOutOfMemoryTextChars) <= 0)
        return;
    ::MessageBoxW(nullptr, text, caption, MB_ICONHAND);
}

}  // namespace

void* ARVMUI_CALL ARVMUI_realloc(void* memory, SIZE_T size)
{
    const HANDLE heap = ::GetProcessHeap();
    void* const block = memory ? ::HeapReAlloc(heap, 0, memory, size) : ::HeapAlloc(heap, 0, size);
    if (!block) ShowOutOfMemory();
    return block;
}

void ARVMUI_CALL ARVMUI_free(void* memory)
{
    if (arvmui::IsIntegerIdentifier(memory)) return;
    // Ignored: there is nothing left to do with a block that the heap refuses.
    ::HeapFree(::GetProcessHeap(), 0, memory);
}
