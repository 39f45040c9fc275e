#include "resources/windows_folder.h"

#include "foundation/text_calls.h"

#include <atomic>

namespace arvmui
{
namespace
{

constexpr DWORD kFolderChars = MAX_PATH;  // terminator included

// Empty until the variable has been read. The first character is stored last, so that a thread
// which sees it sees the whole text.
constinit wchar_t g_windowsFolder[kFolderChars] = {};

// Null when the environment names no folder; it is asked again next time.
const wchar_t* WindowsFolder() noexcept
{
    std::atomic_ref<wchar_t> first(g_windowsFolder[0]);
    if (first.load(std::memory_order_acquire) != L'\0') return g_windowsFolder;

    wchar_t folder[kFolderChars];
    const DWORD length = ::GetEnvironmentVariableW(L"windir", folder, kFolderChars);
    if (length == 0 || length >= kFolderChars) return nullptr;
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
