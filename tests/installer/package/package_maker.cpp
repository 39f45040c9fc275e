// Writes the package of the translation tests: package_maker FILE
#include "installer/package/translation_package.h"

#include <cstdio>
#include <exception>

int wmain(int argc, wchar_t** argv)
{
    if (argc != 2) return 2;
    try
    {
        arvmui_test::TranslationPackage(L"Arvmui Translation").Write(argv[1]);
        return 0;
    }
    catch (const std::exception& error)
    {
        std::fprintf(stderr, "%s\n", error.what());
        return 1;
    }
}
