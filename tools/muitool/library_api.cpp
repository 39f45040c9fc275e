#include "library_api.h"

#include "tool_error.h"

namespace
{

LibraryApi LoadApi()
{
    const HMODULE module = ::LoadLibraryW(L"arvmui64.dll");
    if (!module)
        throw ToolError(
            "arvmui64.dll could not be loaded; it has to lie beside muitool.exe: " + SystemErrorText(::GetLastError()));
    LibraryApi api = {};
    // Through void*: the generic type that GetProcAddress returns fits no function.
#define MUITOOL_BIND(function)                                                                                         \
    api.function =                                                                                                     \
        reinterpret_cast<decltype(&::function)>(reinterpret_cast<void*>(::GetProcAddress(module, #function)));         \
    if (!api.function) throw ToolError("arvmui64.dll is too old: it lacks " #function);
    MUITOOL_LIBRARY_FUNCTIONS(MUITOOL_BIND)
#undef MUITOOL_BIND
    return api;
}

}  // namespace

const LibraryApi& Library()
{
    static const LibraryApi api = LoadApi();
    return api;
}
