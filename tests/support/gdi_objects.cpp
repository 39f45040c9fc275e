#include "support/gdi_objects.h"

#include <windows.h>

namespace arvmui_test
{
namespace
{

// One entry of the table to which the process's environment block points.
struct GdiEntry
{
    void* object;
    WORD processId;
    WORD count;
    WORD unique;
    BYTE type;
    BYTE flags;
    void* userData;
};
static_assert(sizeof(GdiEntry) == 24);

constexpr size_t kEntryCount = 0x4000;
constexpr size_t kTableOffset = 0xF8;  // in the process environment block

// Wine answers GetGuiResources with 0 and keeps the table of one process only.
size_t CountTableEntries()
{
    using CurrentBlock = const BYTE*(NTAPI*)();
    const HMODULE system = ::GetModuleHandleW(L"ntdll.dll");
    const CurrentBlock currentBlock =
        reinterpret_cast<CurrentBlock>(reinterpret_cast<void*>(::GetProcAddress(system, "RtlGetCurrentPeb")));
    if (!currentBlock) return 0;
    const BYTE* const block = currentBlock();
    const GdiEntry* const table = *reinterpret_cast<const GdiEntry* const*>(block + kTableOffset);
    if (!table) return 0;
    size_t count = 0;
    for (size_t i = 0; i < kEntryCount; ++i)
        if (table[i].type != 0) ++count;
    return count;
}

}  // namespace

size_t CountGdiObjects()
{
    const DWORD count = ::GetGuiResources(::GetCurrentProcess(), GR_GDIOBJECTS);
    return count != 0 ? count : CountTableEntries();
}

}  // namespace arvmui_test
