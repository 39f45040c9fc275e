// The Windows Installer as the library uses it: its functions, bound at run time so that nothing
// links to the installer, and the reading of texts and rows on top of them.
//
// Results are Windows error codes. The installer's own pass through; what fails in here is 1627.
#pragma once

#include "foundation/handles.h"

#include <msi.h>
#include <msiquery.h>

#define ARVMUI_INSTALLER_FUNCTIONS(X)                                                                                  \
    X(MsiCloseHandle)                                                                                                  \
    X(MsiDatabaseOpenViewW)                                                                                            \
    X(MsiGetActiveDatabase)                                                                                            \
    X(MsiGetPropertyW)                                                                                                 \
    X(MsiRecordGetInteger)                                                                                             \
    X(MsiRecordGetStringW)                                                                                             \
    X(MsiSetPropertyW)                                                                                                 \
    X(MsiViewClose)                                                                                                    \
    X(MsiViewExecute)                                                                                                  \
    X(MsiViewFetch)                                                                                                    \
    X(MsiViewModify)                                                                                                   \
    X(MsiOpenDatabaseW)                                                                                                \
    X(MsiDatabaseCommit)                                                                                               \
    X(MsiDatabaseImportW)

namespace arvmui
{

struct InstallerEntryPoints
{
#define ARVMUI_MEMBER(function) decltype(&::function) function;
    ARVMUI_INSTALLER_FUNCTIONS(ARVMUI_MEMBER)
#undef ARVMUI_MEMBER
};

// Binds the functions of a loaded "MSI.DLL"; 1627 when the module is null or lacks one. Every action
// binds before it does anything else; until then nothing below may be called.
UINT BindInstallerLibrary(HMODULE module) noexcept;

// Binds the "MSI.DLL" that the process has loaded, if it has.
UINT BindLoadedInstallerLibrary(HMODULE* module = nullptr) noexcept;

// The functions as bound last.
const InstallerEntryPoints& Installer() noexcept;

struct InstallerHandlePolicy
{
    using Value = MSIHANDLE;
    static Value Invalid() noexcept { return 0; }
    static void Close(Value value) noexcept { Installer().MsiCloseHandle(value); }
};
using UniqueInstallerHandle = UniqueResource<InstallerHandlePolicy>;

// A property of the session, or a text field of a record. The caller frees `value` with ARVMUI_free;
// it is null on failure. An empty text is a text too.
UINT GetInstallerProperty(MSIHANDLE session, const wchar_t* name, wchar_t** value) noexcept;
UINT GetRecordString(MSIHANDLE record, UINT field, wchar_t** value) noexcept;

// Called for each row of a query; any result but 0 ends the query and becomes its result.
using QueryCallback = UINT (*)(MSIHANDLE database, MSIHANDLE view, MSIHANDLE record, void* context);

constexpr DWORD QUERY_EXECUTE_ONLY = 1;  // one call without a record in place of the rows; the callback may be null
constexpr DWORD QUERY_NOTIFY_END = 2;    // one more call, without a record, behind the last row
constexpr DWORD QUERY_TOLERATE_BAD_SYNTAX =
    4;  // a statement that the installer rejects, as for a missing table, is no failure

UINT RunQuery(MSIHANDLE database, const wchar_t* sql, DWORD flags, QueryCallback callback, void* context) noexcept;

// Runs a statement that yields no rows.
UINT ExecuteStatement(MSIHANDLE database, const wchar_t* sql, DWORD flags = 0) noexcept;

}  // namespace arvmui
