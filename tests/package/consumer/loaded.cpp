// As loaded.c. The header's declarations say what the functions look like.
#include <cstdio>
#include <windows.h>

#include <arvmui.h>

int main()
{
    const HMODULE library = LoadLibraryW(L"arvmui64.dll");
    if (!library) return 1;
    const auto loadResourceLibrary = reinterpret_cast<decltype(&ARVMUI_LoadResourceLibraryW)>(
        reinterpret_cast<void*>(GetProcAddress(library, "ARVMUI_LoadResourceLibraryW")));
    HMODULE texts = nullptr;
    if (!loadResourceLibrary || !loadResourceLibrary(nullptr, nullptr, nullptr, &texts)) return 2;
    wchar_t greeting[32] = L"";
    LoadStringW(texts, 100, greeting, 32);
    char utf8[96] = "";
    WideCharToMultiByte(CP_UTF8, 0, greeting, -1, utf8, static_cast<int>(sizeof(utf8)), nullptr, nullptr);
    std::printf("%s\n", utf8);
    FreeLibrary(texts);
    FreeLibrary(library);
    return 0;
}
