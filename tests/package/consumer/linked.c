/* Prints the greeting in the language of this process, in UTF-8. */
#include <stdio.h>
#include <windows.h>

#include <arvmui.h>

int main(void)
{
    HMODULE texts;
    WCHAR greeting[32] = L"";
    char utf8[96] = "";

    if (!ARVMUI_LoadResourceLibraryW(NULL, NULL, NULL, &texts)) return 1;
    LoadStringW(texts, 100, greeting, 32);
    WideCharToMultiByte(CP_UTF8, 0, greeting, -1, utf8, (int)sizeof(utf8), NULL, NULL);
    printf("%s\n", utf8);
    FreeLibrary(texts);
    return 0;
}
