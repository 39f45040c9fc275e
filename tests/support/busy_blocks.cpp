#include "support/busy_blocks.h"

#include <windows.h>

namespace arvmui_test
{

size_t CountBusyBlocks()
{
    const DWORD error = ::GetLastError();
    const HANDLE heap = ::GetProcessHeap();
    size_t count = 0;
    ::HeapLock(heap);
    PROCESS_HEAP_ENTRY entry = {};
    while (::HeapWalk(heap, &entry))
    {
        if (entry.wFlags & PROCESS_HEAP_ENTRY_BUSY) ++count;
    }
    ::HeapUnlock(heap);
    ::SetLastError(error);
    return count;
}

}  // namespace arvmui_test
