#include "support/import_replacement.h"

#include <cstring>

namespace arvmui_test
{

// Reads the module's export table. Forwarded exports are followed to the module they name.
void* FindExport(const wchar_t* moduleName, const char* functionName)
{
    const BYTE* const module = reinterpret_cast<const BYTE*>(::GetModuleHandleW(moduleName));
    if (!module) return nullptr;
    const auto* const dos = reinterpret_cast<const IMAGE_DOS_HEADER*>(module);
    const auto* const headers = reinterpret_cast<const IMAGE_NT_HEADERS*>(module + dos->e_lfanew);
    const IMAGE_DATA_DIRECTORY& place = headers->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_EXPORT];
    const auto* const exports = reinterpret_cast<const IMAGE_EXPORT_DIRECTORY*>(module + place.VirtualAddress);
    const auto* const names = reinterpret_cast<const DWORD*>(module + exports->AddressOfNames);
    const auto* const ordinals = reinterpret_cast<const WORD*>(module + exports->AddressOfNameOrdinals);
    const auto* const functions = reinterpret_cast<const DWORD*>(module + exports->AddressOfFunctions);

    for (DWORD i = 0; i < exports->NumberOfNames; ++i)
    {
        if (std::strcmp(reinterpret_cast<const char*>(module + names[i]), functionName) != 0) continue;
        const DWORD offset = functions[ordinals[i]];
        if (offset - place.VirtualAddress >= place.Size) return const_cast<BYTE*>(module) + offset;

        // "OTHER.Name" in place of code.
        const char* const target = reinterpret_cast<const char*>(module + offset);
        const char* const dot = std::strchr(target, '.');
        if (!dot) return nullptr;
        wchar_t otherModule[MAX_PATH] = {};
        for (size_t k = 0; target + k < dot && k + 5 < MAX_PATH; ++k) otherModule[k] = static_cast<wchar_t>(target[k]);
        ::lstrcatW(otherModule, L".dll");
        return FindExport(otherModule, dot + 1);
    }
    return nullptr;
}

}  // namespace arvmui_test
