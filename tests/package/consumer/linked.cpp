// As linked.c, with the C++ layer.
#include <arvmui.hpp>

#include <cstdio>
#include <string>

int main()
{
    const auto texts = arvmui::ResourceLibrary::Load();
    if (!texts) return 1;
    const std::wstring greeting(texts->String(100));
    char utf8[96] = "";
    WideCharToMultiByte(CP_UTF8, 0, greeting.c_str(), -1, utf8, static_cast<int>(sizeof(utf8)), nullptr, nullptr);
    std::printf("%s\n", utf8);
    return 0;
}
