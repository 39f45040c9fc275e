// Loads, or finds, the first resource library of a module that a locale search offers.
#pragma once

#include "arvmui.h"
#include "resources/resource_path.h"

namespace arvmui
{

enum class ResourceLoadMode : DWORD
{
    kFindLoaded = 0,  // without a reference of its own
    kLoad = 1
};

// Context of one search for a resource library.
struct ResourceLoadContext
{
    DWORD error = ERROR_MOD_NOT_FOUND;  // ERROR_SUCCESS once a library was found
    HMODULE library = nullptr;
    ResourceLoadMode mode = ResourceLoadMode::kLoad;
    ResourcePathFormat<wchar_t> format;
};

// Consumer of the search; its context is a ResourceLoadContext. Accepts the locale whose library
// loads, and the null with which the user refuses to choose.
DWORD ARVMUI_CALLBACK AcceptResourceLibrary(const wchar_t* locale, void* context);

}  // namespace arvmui
