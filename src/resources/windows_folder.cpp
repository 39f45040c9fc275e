#include "resources/windows_folder.h"

#include "foundation/paths.h"

#include <atomic>

namespace arvmui
{
namespace
{

// Empty until the variable has been read. The first character is stored last, so that a thread
// which sees it sees the whole text.
constinit PathBuffer<wchar_t> g_windowsFolder = {};

// Null when the environment names no folder; it is asked again next time.
const wchar_t* WindowsFolder() noexcept
{
    std::atomic_ref<wchar_t> first(g_windowsFolder[0]);
    if (first.load(std::memory_order_acquire) != L'\0') return g_windowsFolder;

    PathBuffer<wchar_t> folder;
    const DWORD length = ::GetEnvironmentVariableW(L"windir", folder, kMaxPathChars);
    if (length == 0 || length >= kMaxPathChars) return nullptr;
    std::wmemcpy(g_windowsFolder + 1, folder + 1, length);  // with the terminator
    first.store(folder[0], std::memory_order_release);
    return g_windowsFolder;
}

}  // namespace

DWORD FormatWindowsPath(wchar_t* buffer, DWORD capacity, const wchar_t* format, ...) noexcept
{
    if (capacity == 0) return 0;
    const wchar_t* const folder = WindowsFolder();
    const size_t length = CopyCut(buffer, capacity, folder ? folder : L"C:\\WINDOWS");

    va_list arguments;
    va_start(arguments, format);
    // Ignored: text that does not fit is cut and terminated, which the length returned shows.
    TextCalls<wchar_t>::FormatV(buffer + length, capacity - length, _TRUNCATE, format, arguments);
    va_end(arguments);
    return static_cast<DWORD>(WideLength(buffer));
}

}  // namespace arvmui
