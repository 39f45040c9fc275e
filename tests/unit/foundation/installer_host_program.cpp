// Started under a name and in a folder that the test chooses: tells by its exit code whether the
// installer hosts the library, which is played by the module named in the argument.
#include "foundation/process_info.h"

#include <shellapi.h>

int main()
{
    int count = 0;
    wchar_t** const arguments = ::CommandLineToArgvW(::GetCommandLineW(), &count);
    if (!arguments || count < 2) return 90;
    const HMODULE library = ::LoadLibraryW(arguments[1]);
    if (!library) return 91;
    return arvmui::IsHostedByInstaller(library) ? 1 : 0;
}
