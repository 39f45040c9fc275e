#include "foundation/code_page.h"
#include "foundation/handles.h"
#include "foundation/text_calls.h"
#include "resources/resource_ids.h"
#include "resources/resource_path.h"
#include "ui/error_dialog.h"

// The exports that name a module's resource files and list its locale folders.

namespace arvmui
{
namespace
{

template <typename Char>
struct FileNameSearch
{
    ResourcePathFormat<Char> format;
    DWORD error = ERROR_FILE_NOT_FOUND;
    PathBuffer<Char> path = {};
};

// Accepts a locale for which something of the file's name exists.
template <typename Char>
DWORD ARVMUI_CALLBACK AcceptExistingFile(const Char* locale, void* context)
{
    FileNameSearch<Char>& search = *static_cast<FileNameSearch<Char>*>(context);
    if (!locale)
    {
        search.error = ERROR_CANCELLED;
        return 1;
    }
    // Ignored: a path that is cut is asked for as it is.
    static_cast<void>(search.format.Format(locale, search.path));
    if (TextCalls<Char>::FileAttributes(search.path) == INVALID_FILE_ATTRIBUTES) return 0;
    search.error = ERROR_SUCCESS;
    return 1;
}

// Ignored in what follows: whether a box was shown. The error reaches the caller all the same.
void ReportMissingFile(DWORD error, const wchar_t* fileName) noexcept
{
    ARVMUI_ErrorDialogBoxW(nullptr, 0, error, MAKEINTRESOURCEW(ARVMUI_STRING_FILE_NOT_FOUND), &fileName, 1);
}

void ReportMissingFile(DWORD error, const char* fileName) noexcept
{
    const WideArgument wide(fileName);
    if (!wide.Failed()) ReportMissingFile(error, wide.Get());
}

template <typename Char>
DWORD GetResourceFileName(
    HMODULE module, const Char* fileName, const Char* locales, Char* buffer, DWORD capacity) noexcept
{
    if (!buffer || capacity == 0)
    {
        ::SetLastError(capacity == 0 ? ERROR_BUFFER_OVERFLOW : ERROR_INVALID_PARAMETER);
        return 0;
    }
    buffer[0] = Char{};

    FileNameSearch<Char> search;
    if (!search.format.Build(module, fileName))
    {
        ARVMUI_ErrorDialogBoxW(
            nullptr, 0, ::GetLastError(), MAKEINTRESOURCEW(ARVMUI_STRING_PATH_FORMAT_FAILED), nullptr, 0);
        return 0;
    }
    // Ignored: the search's error tells what became of it.
    TextCalls<Char>::EnumLocales(locales, AcceptExistingFile<Char>, &search);
    if (search.error != ERROR_SUCCESS)
    {
        ReportMissingFile(search.error, search.format.FileName());
        ::SetLastError(search.error);
        return 0;
    }
    return static_cast<DWORD>(CopyCut(buffer, capacity, static_cast<const Char*>(search.path)));
}

template <typename Char, typename Callback>
DWORD EnumResourceFolders(HMODULE module, Callback callback, void* context) noexcept
{
    if (!callback) return 0;
    PathBuffer<Char> pattern;
    const Char* const moduleName = SplitModulePath(module, pattern);
    if (!moduleName) return 0;
    const size_t folderLength = static_cast<size_t>(moduleName - pattern) - 1;
    if (FormatFixed<Char>(pattern + folderLength, kMaxPathChars - folderLength, ARVMUI_TEXT(Char, "%s"),
            ARVMUI_TEXT(Char, "\\resource\\*"))
        < 0)
    {
        ::SetLastError(ERROR_BUFFER_OVERFLOW);
        return 0;
    }

    typename TextCalls<Char>::FindData entry;
    const UniqueFind find(TextCalls<Char>::FindFirstEntry(pattern, &entry));
    if (!find) return 0;
    do
    {
        if (!(entry.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY)) continue;
        if (IsDots(static_cast<const Char*>(entry.cFileName))) continue;
        const DWORD result = callback(entry.cFileName, context);
        if (result != 0)
        {
            ::SetLastError(ERROR_SUCCESS);
            return result;
        }
    } while (TextCalls<Char>::FindNextEntry(find.Get(), &entry));
    return 0;
}

}  // namespace
}  // namespace arvmui

DWORD ARVMUI_CALL ARVMUI_GetResourceFileFormatW(HMODULE module, const WCHAR* fileName, WCHAR* buffer, DWORD capacity)
{
    return arvmui::WritePathFormat(module, fileName, buffer, capacity, nullptr);
}

DWORD ARVMUI_CALL ARVMUI_GetResourceFileFormatA(HMODULE module, const char* fileName, char* buffer, DWORD capacity)
{
    return arvmui::WritePathFormat(module, fileName, buffer, capacity, nullptr);
}

DWORD ARVMUI_CALL ARVMUI_GetResourceFileNameW(
    HMODULE module, const WCHAR* fileName, const WCHAR* locales, WCHAR* buffer, DWORD capacity)
{
    return arvmui::GetResourceFileName(module, fileName, locales, buffer, capacity);
}

DWORD ARVMUI_CALL ARVMUI_GetResourceFileNameA(
    HMODULE module, const char* fileName, const char* locales, char* buffer, DWORD capacity)
{
    return arvmui::GetResourceFileName(module, fileName, locales, buffer, capacity);
}

DWORD ARVMUI_CALL ARVMUI_EnumResourceFoldersW(HMODULE module, ARVMUI_FolderCallbackW callback, void* context)
{
    return arvmui::EnumResourceFolders<wchar_t>(module, callback, context);
}

DWORD ARVMUI_CALL ARVMUI_EnumResourceFoldersA(HMODULE module, ARVMUI_FolderCallbackA callback, void* context)
{
    return arvmui::EnumResourceFolders<char>(module, callback, context);
}
