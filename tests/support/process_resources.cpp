#include "support/process_resources.h"

#include <vector>

namespace arvmui_test
{
namespace
{

// One entry of what NtQuerySystemInformation stores for class 64.
struct HandleEntry
{
    void* object;
    ULONG_PTR processId;
    ULONG_PTR handle;
    ULONG grantedAccess;
    USHORT creatorBackTraceIndex;
    USHORT objectTypeIndex;
    ULONG handleAttributes;
    ULONG reserved;
};

struct HandleTable
{
    ULONG_PTR count;
    ULONG_PTR reserved;
    HandleEntry entries[1];
};

}  // namespace

size_t CountHandles()
{
    using Query = LONG(NTAPI*)(ULONG, void*, ULONG, ULONG*);
    constexpr ULONG kExtendedHandles = 64;
    const HMODULE system = ::GetModuleHandleW(L"ntdll.dll");
    const Query query =
        reinterpret_cast<Query>(reinterpret_cast<void*>(::GetProcAddress(system, "NtQuerySystemInformation")));

    std::vector<unsigned char> buffer(1 << 20);
    ULONG needed = 0;
    while (query(kExtendedHandles, buffer.data(), static_cast<ULONG>(buffer.size()), &needed) != 0)
    {
        if (buffer.size() > (size_t{1} << 28)) return 0;
        buffer.resize(buffer.size() * 2);
    }

    const HandleTable* const table = reinterpret_cast<const HandleTable*>(buffer.data());
    const HandleEntry* const entries = table->entries;
    size_t count = 0;
    for (ULONG_PTR i = 0; i < table->count; ++i)
    {
        if (entries[i].processId == ::GetCurrentProcessId()) ++count;
    }
    return count;
}

size_t CountFreeThreadSlots()
{
    std::vector<DWORD> slots;
    slots.reserve(2048);
    for (DWORD slot = ::TlsAlloc(); slot != TLS_OUT_OF_INDEXES; slot = ::TlsAlloc()) slots.push_back(slot);
    for (const DWORD slot : slots) ::TlsFree(slot);
    return slots.size();
}

}  // namespace arvmui_test
