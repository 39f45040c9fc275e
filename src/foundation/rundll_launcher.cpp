#include "foundation/rundll_launcher.h"

#include "cmdline/argument_escape.h"
#include "foundation/growable_text.h"
#include "foundation/heap.h"
#include "foundation/paths.h"
#include "resources/process_state.h"
#include "resources/windows_folder.h"

namespace arvmui
{
namespace
{

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
    PathBuffer<wchar_t> launcher;
    FormatWindowsPath(launcher, kMaxPathChars, L"\\SYSTEM32\\%hs", "RUNDLL32.EXE");

    PathBuffer<wchar_t> ownPath = {};
    if (!libraryPath)
    {
        if (!GetModulePath(Descriptor().module, ownPath)) return FALSE;
        libraryPath = ownPath;
    }

    // The launcher cuts the path at a blank. The short form has none, except on volumes without short
    // names, where quotes help.
    PathBuffer<wchar_t> shortPath;
    if (!GetShortPath(libraryPath, shortPath)) return FALSE;
    const wchar_t* const format = TextCalls<wchar_t>::HoldsSpace(shortPath) ? L"\"%s\" \"%s\",%s" : L"\"%s\" %s,%s";

    HeapBlock<wchar_t> line;
    if (AppendFormat(line.Slot(), -1, format, launcher, shortPath, entryPoint) < 0) return FALSE;
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
