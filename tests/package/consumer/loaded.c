/* As linked.c, with the DLL loaded when it is wanted. */
#include <stdio.h>
#include <windows.h>

#include <arvmui.h>

typedef BOOL(ARVMUI_CALL* LoadResourceLibrary)(HMODULE, const WCHAR*, const WCHAR*, HMODULE*);

int main(void)
{
    const HMODULE library = LoadLibraryW(L"arvmui64.dll");
    LoadResourceLibrary loadResourceLibrary;
    HMODULE texts;
    WCHAR greeting[32] = L"";
    char utf8[96] = "";

    if (!library) return 1;
    loadResourceLibrary = (LoadResourceLibrary)(void*)GetProcAddress(library, "ARVMUI_LoadResourceLibraryW");
    if (!loadResourceLibrary || !loadResourceLibrary(NULL, NULL, NULL, &texts)) return 2;
    LoadStringW(texts, 100, greeting, 32);
    WideCharToMultiByte(CP_UTF8, 0, greeting, -1, utf8, (int)sizeof(utf8), NULL, NULL);
    printf("%s\n", utf8);
    FreeLibrary(texts);
    FreeLibrary(library);
    return 0;
}
