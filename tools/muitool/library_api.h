// The library, loaded at run time: the tool has to see its own command line before the library takes
// the option "/uilocale:" out of it.
#pragma once

#include <arvmui.h>

#define MUITOOL_LIBRARY_FUNCTIONS(X)                                                                                   \
    X(ARVMUI_free)                                                                                                     \
    X(ARVMUI_GetDescriptor)                                                                                            \
    X(ARVMUI_EnumLocalesW)                                                                                             \
    X(ARVMUI_GetLangID)                                                                                                \
    X(ARVMUI_GetLocaleW)                                                                                               \
    X(ARVMUI_GetACP)                                                                                                   \
    X(ARVMUI_GetResourceFileFormatW)                                                                                   \
    X(ARVMUI_EnumResourceFoldersW)                                                                                     \
    X(ARVMUI_LoadResourceLibraryW)                                                                                     \
    X(ARVMUI_ReadTextFileW)                                                                                            \
    X(ARVMUI_TextEncodingToCodePageW)                                                                                  \
    X(ARVMUI_GetPrivateProfileStringW)                                                                                 \
    X(ARVMUI_SetMessagePopup)                                                                                          \
    X(ARVMUI_FormatMessageW)                                                                                           \
    X(ARVMUI_MessageBoxW)                                                                                              \
    X(ARVMUI_SettingDialogBoxW)

struct LibraryApi
{
#define MUITOOL_MEMBER(function) decltype(&::function) function;
    MUITOOL_LIBRARY_FUNCTIONS(MUITOOL_MEMBER)
#undef MUITOOL_MEMBER
};

// The library beside the program, loaded at the first call; a ToolError where it is missing.
const LibraryApi& Library();
