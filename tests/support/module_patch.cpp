#include "support/module_patch.h"

#include <cstring>
#include <stdexcept>
#include <string>

namespace arvmui_test
{
namespace
{

template <typename Type>
Type* At(HMODULE module, size_t offset)
{
    return reinterpret_cast<Type*>(reinterpret_cast<BYTE*>(module) + offset);
}

void** FindImportSlot(HMODULE importer, const char* function)
{
    const auto* const headers =
        At<const IMAGE_NT_HEADERS>(importer, static_cast<size_t>(At<const IMAGE_DOS_HEADER>(importer, 0)->e_lfanew));
    const DWORD place = headers->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT].VirtualAddress;
    for (const auto* from = At<const IMAGE_IMPORT_DESCRIPTOR>(importer, place); from->Name != 0; ++from)
    {
        const auto* name = At<const IMAGE_THUNK_DATA>(importer, from->OriginalFirstThunk);
        void** slot = At<void*>(importer, from->FirstThunk);
        for (; name->u1.AddressOfData != 0; ++name, ++slot)
        {
            if (IMAGE_SNAP_BY_ORDINAL(name->u1.Ordinal)) continue;
            const auto* const import = At<const IMAGE_IMPORT_BY_NAME>(importer, name->u1.AddressOfData);
            if (std::strcmp(reinterpret_cast<const char*>(import->Name), function) == 0) return slot;
        }
    }
    throw std::runtime_error(std::string("not imported: ") + function);
}

void Overwrite(void* target, const void* source, size_t bytes, DWORD protection)
{
    DWORD previous = 0;
    if (!::VirtualProtect(target, bytes, protection, &previous)) throw std::runtime_error("VirtualProtect failed");
    std::memcpy(target, source, bytes);
    ::VirtualProtect(target, bytes, previous, &previous);
    ::FlushInstructionCache(::GetCurrentProcess(), target, bytes);
}

// The function itself where the linker put a jump to it in its place, as it does for quick relinking.
unsigned char* BehindJump(void* function)
{
    unsigned char* const code = static_cast<unsigned char*>(function);
    if (*code != 0xE9) return code;
    INT32 distance = 0;
    std::memcpy(&distance, code + 1, sizeof(distance));
    return code + 5 + distance;
}

}  // namespace

ImportPatch::ImportPatch(HMODULE importer, const char* function, void* replacement)
    : slot_(FindImportSlot(importer, function)), original_(*slot_)
{
    Overwrite(slot_, &replacement, sizeof(replacement), PAGE_READWRITE);
}

ImportPatch::~ImportPatch()
{
    Overwrite(slot_, &original_, sizeof(original_), PAGE_READWRITE);
}

FunctionPatch::FunctionPatch(void* function, void* replacement) : code_(BehindJump(function))
{
    std::memcpy(original_.data(), code_, kJumpBytes);
    std::array<unsigned char, kJumpBytes> jump = {0x48, 0xB8, 0, 0, 0, 0, 0, 0, 0, 0, 0xFF, 0xE0};
    std::memcpy(jump.data() + 2, &replacement, sizeof(replacement));
    Overwrite(code_, jump.data(), kJumpBytes, PAGE_EXECUTE_READWRITE);
}

FunctionPatch::~FunctionPatch()
{
    Overwrite(code_, original_.data(), kJumpBytes, PAGE_EXECUTE_READWRITE);
}

HMODULE LibraryUnderTest()
{
    return ::GetModuleHandleW(L"arvmui64.dll");
}

}  // namespace arvmui_test
