#include "foundation/rundll_launcher.h"

#include "cmdline/argument_escape.h"
#include "foundation/growable_text.h"
#include "foundation/heap.h"
#include "resources/process_state.h"
#include "resources/windows_folder.h"

namespace arvmui
{
namespace
{

constexpr DWORD kPathChars = MAX_PATH;  // terminator included
static_assert(sizeof(STARTUPINFOW) == 104);
static_assert(sizeof(PROCESS_INFORMATION) == 24);

bool AppendArgument(HeapBlock<wchar_t>& line, const wchar_t* argument) noexcept
{
    return AppendFormat(line.Slot(), -1, L" \"") >= 0 && AppendEscapedArgument(line.Slot(), -1, argument) >= 0
           && AppendFormat(line.Slot(), -1, L"\"") >= 0;
}

}  // namespace

BOOL LaunchLibraryEntryPoint(STARTUPINFOW* startup, PROCESS_INFORMATION* process, const wchar_t* libraryPath,
    const wchar_t* entryPoint, DWORD argumentCount, const wchar_t* const* arguments) noexcept
{
    wchar_t launcher[kPathChars];
    FormatWindowsPath(launcher, kPathChars, L"\\SYSTEM32\\%hs", "RUNDLL32.EXE");

    wchar_t ownPath[kPathChars];
    if (!libraryPath)
    {
        const DWORD length = ::GetModuleFileNameW(Descriptor().module, ownPath, kPathChars);
        if (length == 0 || length >= kPathChars) return FALSE;
        libraryPath = ownPath;
    }

    // The short form holds no blanks, at which the launcher would cut.
    wchar_t shortPath[kPathChars];
    const DWORD shortLength = ::GetShortPathNameW(libraryPath, shortPath, kPathChars);
    if (shortLength == 0 || shortLength >= kPathChars) return FALSE;

    HeapBlock<wchar_t> line;
    if (AppendFormat(line.Slot(), -1, L"\"%s\" %s,%s", launcher, shortPath, entryPoint) < 0) return FALSE;
    for (DWORD i = 0; i < argumentCount && arguments[i]; ++i)
    {
        if (!AppendArgument(line, arguments[i])) return FALSE;
    }

    *startup = {};
    startup->cb = sizeof(*startup);
    *process = {};
    return ::CreateProcessW(nullptr, line.Get(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, startup, process);
}

}  // namespace arvmui
