/* Loads the library's own German texts. */
#include <windows.h>

#include <arvmui.h>

int main(void)
{
    HMODULE texts;
    if (!ARVMUI_LoadResourceLibraryW(GetModuleHandleW(L"arvmui64.dll"), NULL, L"de", &texts)) return 1;
    FreeLibrary(texts);
    return 0;
}
