// Tells by its exit code whether the locale list of its process is its only argument.
#include "arvmui.hpp"

extern "C" int wmain(int argc, wchar_t** argv)
{
    constexpr int kSame = 42;
    constexpr int kDifferent = 43;
    constexpr int kOptionLeft = 44;

    arvmui::ParseArguments(argc, argv);
    if (argc != 2) return kOptionLeft;
    const std::wstring_view list = arvmui::Descriptor().LocaleHintTable[HINT_COMMAND_LINE];
    return list == argv[1] ? kSame : kDifferent;
}
