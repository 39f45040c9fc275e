// Functions of system DLLs that are looked up by name, because a system may lack them or the library
// is not to be linked to their DLL.
#pragma once

#include <windows.h>

namespace arvmui
{

// The module's function, or null.
template <typename Function>
Function FindModuleFunction(HMODULE module, const char* functionName) noexcept
{
    // Through void*: the generic type that GetProcAddress returns fits no function.
    return reinterpret_cast<Function>(reinterpret_cast<void*>(::GetProcAddress(module, functionName)));
}

// The function if its module is loaded and has it, else null. Loads nothing.
template <typename Function>
Function FindSystemFunction(const char* moduleName, const char* functionName) noexcept
{
    const HMODULE module = ::GetModuleHandleA(moduleName);
    return module ? FindModuleFunction<Function>(module, functionName) : nullptr;
}

}  // namespace arvmui
