#include "resources/resource_loading.h"

#include "foundation/code_page.h"
#include "foundation/handles.h"
#include "resources/resource_ids.h"
#include "ui/error_dialog.h"

namespace arvmui
{
namespace
{

HMODULE OpenLibrary(const wchar_t* path, ResourceLoadMode mode) noexcept
{
    if (mode == ResourceLoadMode::kFindLoaded) return ::GetModuleHandleW(path);
    if (mode != ResourceLoadMode::kLoad) return nullptr;
    const QuietSystemErrors quiet;
    return ::LoadLibraryW(path);
}

BOOL SearchResourceLibrary(ResourceLoadMode mode, UINT failureMessage, HMODULE module, const wchar_t* fileName,
    const wchar_t* locales, HMODULE* library) noexcept
{
    if (library) *library = nullptr;
    ResourceLoadContext context;
    context.mode = mode;
    // Ignored below: whether a box was shown. The error reaches the caller all the same.
    if (!context.format.Build(module, fileName))
    {
        ARVMUI_ErrorDialogBoxW(
            nullptr, 0, ::GetLastError(), MAKEINTRESOURCEW(ARVMUI_STRING_PATH_FORMAT_FAILED), nullptr, 0);
        return FALSE;
    }

    // Ignored: the context tells what became of the search.
    ARVMUI_EnumLocalesW(locales, AcceptResourceLibrary, &context);
    if (library) *library = context.library;
    if (context.error == ERROR_SUCCESS) return TRUE;

    const wchar_t* const name = context.format.FileName();
    ARVMUI_ErrorDialogBoxW(nullptr, 0, context.error, MAKEINTRESOURCEW(failureMessage), &name, 1);
    ::SetLastError(context.error);
    return FALSE;
}

}  // namespace

DWORD ARVMUI_CALLBACK AcceptResourceLibrary(const wchar_t* locale, void* context)
{
    ResourceLoadContext& load = *static_cast<ResourceLoadContext*>(context);
    if (!locale)
    {
        load.error = ERROR_CANCELLED;
        return 1;
    }
    PathBuffer<wchar_t> path;
    if (!load.format.Format(locale, path)) return 0;
    load.library = OpenLibrary(path, load.mode);
    if (!load.library) return 0;
    load.error = ERROR_SUCCESS;
    return 1;
}

}  // namespace arvmui

BOOL ARVMUI_CALL ARVMUI_LoadResourceLibraryW(
    HMODULE module, const WCHAR* fileName, const WCHAR* locales, HMODULE* library)
{
    using namespace arvmui;
    return SearchResourceLibrary(
        ResourceLoadMode::kLoad, ARVMUI_STRING_LIBRARY_NOT_FOUND, module, fileName, locales, library);
}

BOOL ARVMUI_CALL ARVMUI_LoadResourceLibraryA(
    HMODULE module, const char* fileName, const char* locales, HMODULE* library)
{
    const arvmui::WideArgument wideFile(fileName);
    const arvmui::WideArgument wideLocales(locales);
    if (wideFile.Failed() || wideLocales.Failed()) return FALSE;
    return ARVMUI_LoadResourceLibraryW(module, wideFile.Get(), wideLocales.Get(), library);
}

BOOL ARVMUI_CALL ARVMUI_GetResourceHandleW(
    HMODULE module, const WCHAR* fileName, const WCHAR* locales, HMODULE* library)
{
    using namespace arvmui;
    return SearchResourceLibrary(
        ResourceLoadMode::kFindLoaded, ARVMUI_STRING_LIBRARY_NOT_LOADED, module, fileName, locales, library);
}

BOOL ARVMUI_CALL ARVMUI_GetResourceHandleA(HMODULE module, const char* fileName, const char* locales, HMODULE* library)
{
    const arvmui::WideArgument wideFile(fileName);
    const arvmui::WideArgument wideLocales(locales);
    if (wideFile.Failed() || wideLocales.Failed()) return FALSE;
    return ARVMUI_GetResourceHandleW(module, wideFile.Get(), wideLocales.Get(), library);
}
