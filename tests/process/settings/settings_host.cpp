// Tells what the library made of the command line that this program was started with: one value a
// line, in UTF-8.
#include "arvmui.h"

#include <cstdio>
#include <filesystem>
#include <string>

namespace
{

void Write(const std::wstring& text)
{
    char utf8[4096];
    const int size = ::WideCharToMultiByte(CP_UTF8, 0, text.c_str(), -1, utf8, sizeof(utf8), nullptr, nullptr);
    std::printf("%s\n", size > 0 ? utf8 : "");
}

}  // namespace

int main()
{
    const LibraryDescriptor& descriptor = *ARVMUI_GetDescriptor();
    wchar_t library[MAX_PATH] = {};
    if (descriptor.resourceLibrary) ::GetModuleFileNameW(descriptor.resourceLibrary, library, MAX_PATH);
    Write(std::filesystem::path(library).parent_path().filename().wstring());
    Write(descriptor.LocaleHintTable[HINT_SETTINGS_FILE]);
    Write(descriptor.LocaleHintTable[HINT_BROWSER]);
    Write(::GetCommandLineW());
    return 0;
}
