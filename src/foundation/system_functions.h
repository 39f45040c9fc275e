// Functions of system DLLs that are looked up by name because a system may lack them.
#pragma once

#include <windows.h>

namespace arvmui
{

// The function if its module is loaded and has it, else null. Loads nothing.
template <typename Function>
Function FindSystemFunction(const char* moduleName, const char* functionName) noexcept
{
    const HMODULE module = ::GetModuleHandleA(moduleName);
    if (!module) return nullptr;
    // Through void*: the generic type that GetProcAddress returns fits no function.
    return reinterpret_cast<Function>(reinterpret_cast<void*>(::GetProcAddress(module, functionName)));
}

}  // namespace arvmui
