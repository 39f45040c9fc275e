#include "installer/installer_library.h"

#include "foundation/heap.h"
#include "foundation/system_functions.h"

namespace arvmui
{
namespace
{

// Written by every action, always with the same values.
constinit InstallerEntryPoints g_entryPoints = {};

constexpr DWORD kSpareChars = 32;  // room beyond the length that the installer reports

// Reads a text in the two calls of which the first tells the length.
template <typename Read>
UINT ReadText(Read read, wchar_t** value) noexcept
{
    *value = nullptr;
    wchar_t empty[1] = L"";
    DWORD length = 0;
    UINT result = read(empty, &length);
    if (result == ERROR_SUCCESS) return ERROR_FUNCTION_FAILED;  // no text fits into nothing
    if (result != ERROR_MORE_DATA) return result;

    length += kSpareChars;
    HeapBlock<wchar_t> text;
    if (!text.Resize(length)) return ERROR_FUNCTION_FAILED;
    result = read(text.Get(), &length);
    if (result == ERROR_SUCCESS) *value = text.Release();
    return result;
}

UINT FetchRows(MSIHANDLE database, MSIHANDLE view, DWORD flags, QueryCallback callback, void* context) noexcept
{
    for (;;)
    {
        UniqueInstallerHandle record;
        UINT result = Installer().MsiViewFetch(view, record.Slot());
        if (result == ERROR_NO_MORE_ITEMS)
            return flags & QUERY_NOTIFY_END ? callback(database, view, 0, context) : ERROR_SUCCESS;
        if (result != ERROR_SUCCESS) return result;
        result = callback(database, view, record.Get(), context);
        if (result != ERROR_SUCCESS) return result;
    }
}

}  // namespace

UINT BindInstallerLibrary(HMODULE module) noexcept
{
    if (!module) return ERROR_FUNCTION_FAILED;
#define ARVMUI_BIND(function)                                                                                          \
    g_entryPoints.function = FindModuleFunction<decltype(&::function)>(module, #function);                             \
    if (!g_entryPoints.function) return ERROR_FUNCTION_FAILED;
    ARVMUI_INSTALLER_FUNCTIONS(ARVMUI_BIND)
#undef ARVMUI_BIND
    return ERROR_SUCCESS;
}

UINT BindLoadedInstallerLibrary(HMODULE* module) noexcept
{
    const HMODULE loaded = ::GetModuleHandleW(L"MSI.DLL");
    if (module) *module = loaded;
    return BindInstallerLibrary(loaded);
}

const InstallerEntryPoints& Installer() noexcept
{
    return g_entryPoints;
}

UINT GetInstallerProperty(MSIHANDLE session, const wchar_t* name, wchar_t** value) noexcept
{
    return ReadText([=](wchar_t* buffer, DWORD* size) noexcept
        { return Installer().MsiGetPropertyW(session, name, buffer, size); },
        value);
}

UINT GetRecordString(MSIHANDLE record, UINT field, wchar_t** value) noexcept
{
    return ReadText([=](wchar_t* buffer, DWORD* size) noexcept
        { return Installer().MsiRecordGetStringW(record, field, buffer, size); },
        value);
}

UINT RunQuery(MSIHANDLE database, const wchar_t* sql, DWORD flags, QueryCallback callback, void* context) noexcept
{
    UniqueInstallerHandle view;
    UINT result = Installer().MsiDatabaseOpenViewW(database, sql, view.Slot());
    if (result == ERROR_BAD_QUERY_SYNTAX && (flags & QUERY_TOLERATE_BAD_SYNTAX)) return ERROR_SUCCESS;
    if (result != ERROR_SUCCESS) return result;

    result = Installer().MsiViewExecute(view.Get(), 0);
    if (result == ERROR_SUCCESS)
    {
        if (!(flags & QUERY_EXECUTE_ONLY))
            result = FetchRows(database, view.Get(), flags, callback, context);
        else if (callback)
            result = callback(database, view.Get(), 0, context);
    }
    // Ignored: the view goes in any case, and what happened to the rows is known already.
    Installer().MsiViewClose(view.Get());
    return result;
}

UINT ExecuteStatement(MSIHANDLE database, const wchar_t* sql, DWORD flags) noexcept
{
    return RunQuery(database, sql, flags | QUERY_EXECUTE_ONLY, nullptr, nullptr);
}

}  // namespace arvmui
