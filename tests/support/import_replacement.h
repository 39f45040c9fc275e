// Lets a test program put a function of its own in the place of a system function: the code under
// test calls system functions through pointers named __imp_<Function>, and a program that defines
// such a pointer itself gets that one linked. One program can replace a function once, so tests that
// replace functions live in programs of their own. Replacements forward unless a test arms them.
#pragma once

#include <windows.h>

// At global scope, behind the definition of the replacement.
#define ARVMUI_REPLACE_IMPORT(Function, replacement)                                                                   \
    extern "C" {                                                                                                       \
    extern decltype(&::Function) __imp_##Function;                                                                     \
    decltype(&::Function) __imp_##Function = (replacement);                                                            \
    }

// The system's own function, for replacements that forward.
#define ARVMUI_REAL_FUNCTION(Module, Function) (::arvmui_test::SystemFunction<decltype(&::Function)>(Module, #Function))

namespace arvmui_test
{

// Not inline code in the tests: GetProcAddress may itself be replaced, so it is found without it.
void* FindExport(const wchar_t* moduleName, const char* functionName);

template <typename Function>
Function SystemFunction(const wchar_t* moduleName, const char* functionName)
{
    return reinterpret_cast<Function>(FindExport(moduleName, functionName));
}

}  // namespace arvmui_test
