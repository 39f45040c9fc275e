#include "support/stand_in_installer.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cwchar>
#include <string_view>

namespace arvmui_test
{
namespace
{

unsigned char g_module;  // only its address counts

std::wstring Joined(const InstallerRow& row)
{
    std::wstring text;
    for (size_t i = 0; i < row.size(); ++i) text += (i == 0 ? L"" : L"|") + row[i];
    return text;
}

bool IsInstallerFile(const wchar_t* path)
{
    const wchar_t* const slash = std::wcsrchr(path, L'\\');
    return std::wstring_view(slash ? slash + 1 : path) == L"MSI.DLL";
}

}  // namespace

StandInInstaller* StandInInstaller::current_ = nullptr;

// The functions as the code under test calls them.
struct StandInInstaller::Functions
{
    static StandInInstaller& Me() { return *current_; }

    static UINT WINAPI CloseHandle(MSIHANDLE handle)
    {
        const auto found = Me().handles_.find(handle);
        if (found == Me().handles_.end())
        {
            ADD_FAILURE() << "closed what is not open: " << handle;
            return ERROR_INVALID_HANDLE;
        }
        const Object& object = found->second;
        const std::wstring about = object.kind == Kind::View     ? L"view " + object.statement
                                   : object.kind == Kind::Record ? L"record " + Joined(object.row)
                                                                 : L"database";
        UINT result = ERROR_SUCCESS;
        // Closed whatever the answer is: nobody tries twice.
        Me().IsScripted(L"MsiCloseHandle " + about, result);
        Me().handles_.erase(handle);
        return result;
    }

    static UINT WINAPI DatabaseOpenView(MSIHANDLE database, LPCWSTR statement, MSIHANDLE* view)
    {
        UINT result = ERROR_SUCCESS;
        if (Me().IsScripted(std::wstring(L"MsiDatabaseOpenViewW ") + statement, result)) return result;
        if (!Me().Find(database, Kind::Database)) return ERROR_INVALID_HANDLE;
        *view = Me().Add({Kind::View, statement});
        return ERROR_SUCCESS;
    }

    static MSIHANDLE WINAPI GetActiveDatabase(MSIHANDLE session)
    {
        UINT result = ERROR_SUCCESS;
        if (Me().IsScripted(L"MsiGetActiveDatabase", result)) return 0;
        EXPECT_EQ(session, kSession);
        return Me().hasActiveDatabase ? Me().MakeDatabase() : 0;
    }

    static UINT WINAPI GetProperty(MSIHANDLE session, LPCWSTR name, LPWSTR value, LPDWORD size)
    {
        UINT result = ERROR_SUCCESS;
        if (Me().IsScripted(std::wstring(L"MsiGetPropertyW ") + name + L" size " + std::to_wstring(*size), result))
            return result;
        EXPECT_EQ(session, kSession);
        const auto found = Me().properties.find(name);
        return CopyText(found == Me().properties.end() ? std::wstring() : found->second, value, size);
    }

    static int WINAPI RecordGetInteger(MSIHANDLE record, UINT field)
    {
        Object* const object = Me().Find(record, Kind::Record);
        if (!object) return MSI_NULL_INTEGER;
        UINT result = 0;
        if (Me().IsScripted(L"MsiRecordGetInteger " + std::to_wstring(field) + L" of " + Joined(object->row), result))
            return static_cast<int>(result);
        if (field > object->row.size()) return MSI_NULL_INTEGER;
        wchar_t* end = nullptr;
        const std::wstring& text = object->row[field - 1];
        const long number = std::wcstol(text.c_str(), &end, 10);
        return text.empty() || *end ? MSI_NULL_INTEGER : static_cast<int>(number);
    }

    static UINT WINAPI RecordGetString(MSIHANDLE record, UINT field, LPWSTR value, LPDWORD size)
    {
        Object* const object = Me().Find(record, Kind::Record);
        if (!object) return ERROR_INVALID_HANDLE;
        UINT result = ERROR_SUCCESS;
        if (Me().IsScripted(L"MsiRecordGetStringW " + std::to_wstring(field) + L" of " + Joined(object->row) + L" size "
                                + std::to_wstring(*size),
                result))
            return result;
        return CopyText(field <= object->row.size() ? object->row[field - 1] : std::wstring(), value, size);
    }

    static UINT WINAPI SetProperty(MSIHANDLE session, LPCWSTR name, LPCWSTR value)
    {
        UINT result = ERROR_SUCCESS;
        if (Me().IsScripted(std::wstring(L"MsiSetPropertyW ") + name + L"=" + value, result)) return result;
        EXPECT_EQ(session, kSession);
        Me().properties[name] = value;
        return ERROR_SUCCESS;
    }

    static UINT WINAPI ViewClose(MSIHANDLE view)
    {
        Object* const object = Me().Find(view, Kind::View);
        if (!object) return ERROR_INVALID_HANDLE;
        UINT result = ERROR_SUCCESS;
        if (!Me().IsScripted(L"MsiViewClose " + object->statement, result)) object->isExecuted = false;
        return result;
    }

    static UINT WINAPI ViewExecute(MSIHANDLE view, MSIHANDLE parameters)
    {
        Object* const object = Me().Find(view, Kind::View);
        if (!object) return ERROR_INVALID_HANDLE;
        UINT result = ERROR_SUCCESS;
        if (Me().IsScripted(L"MsiViewExecute " + object->statement, result)) return result;
        EXPECT_EQ(parameters, 0U);
        object->isExecuted = true;
        object->nextRow = 0;
        return ERROR_SUCCESS;
    }

    static UINT WINAPI ViewFetch(MSIHANDLE view, MSIHANDLE* record)
    {
        Object* const object = Me().Find(view, Kind::View);
        if (!object) return ERROR_INVALID_HANDLE;
        UINT result = ERROR_SUCCESS;
        if (Me().IsScripted(L"MsiViewFetch " + object->statement, result)) return result;
        EXPECT_TRUE(object->isExecuted) << "fetched from a view that was not executed";
        const std::vector<InstallerRow>& rows = Me().rows[object->statement];
        if (object->nextRow >= rows.size()) return ERROR_NO_MORE_ITEMS;
        *record = Me().MakeRecord(rows[object->nextRow++]);
        return ERROR_SUCCESS;
    }

    static UINT WINAPI ViewModify(MSIHANDLE view, MSIMODIFY mode, MSIHANDLE record)
    {
        Object* const object = Me().Find(view, Kind::View);
        Object* const row = Me().Find(record, Kind::Record);
        if (!object || !row) return ERROR_INVALID_HANDLE;
        UINT result = ERROR_SUCCESS;
        if (Me().IsScripted(L"MsiViewModify " + std::to_wstring(static_cast<int>(mode)) + L" " + Joined(row->row)
                                + L" into " + object->statement,
                result))
            return result;
        EXPECT_TRUE(object->isExecuted) << "modified a view that was not executed";
        return ERROR_SUCCESS;
    }

    static UINT WINAPI OpenDatabase(LPCWSTR path, LPCWSTR mode, MSIHANDLE* database)
    {
        UINT result = ERROR_SUCCESS;
        // The modes are small numbers in the guise of a path.
        const std::wstring number = std::to_wstring(reinterpret_cast<ULONG_PTR>(mode));
        if (Me().IsScripted(std::wstring(L"MsiOpenDatabaseW ") + path + L" mode " + number, result)) return result;
        *database = Me().MakeDatabase();
        return ERROR_SUCCESS;
    }

    static UINT WINAPI DatabaseCommit(MSIHANDLE database)
    {
        UINT result = ERROR_SUCCESS;
        if (Me().IsScripted(L"MsiDatabaseCommit", result)) return result;
        return Me().Find(database, Kind::Database) ? ERROR_SUCCESS : ERROR_INVALID_HANDLE;
    }

    static UINT WINAPI DatabaseImport(MSIHANDLE database, LPCWSTR folder, LPCWSTR file)
    {
        UINT result = ERROR_SUCCESS;
        if (Me().IsScripted(std::wstring(L"MsiDatabaseImportW ") + folder + L" " + file, result)) return result;
        return Me().Find(database, Kind::Database) ? ERROR_SUCCESS : ERROR_INVALID_HANDLE;
    }

    static void* ByName(const std::string& name)
    {
        static const std::map<std::string, void*> functions = {
            {"MsiCloseHandle", reinterpret_cast<void*>(&CloseHandle)},
            {"MsiDatabaseOpenViewW", reinterpret_cast<void*>(&DatabaseOpenView)},
            {"MsiGetActiveDatabase", reinterpret_cast<void*>(&GetActiveDatabase)},
            {"MsiGetPropertyW", reinterpret_cast<void*>(&GetProperty)},
            {"MsiRecordGetInteger", reinterpret_cast<void*>(&RecordGetInteger)},
            {"MsiRecordGetStringW", reinterpret_cast<void*>(&RecordGetString)},
            {"MsiSetPropertyW", reinterpret_cast<void*>(&SetProperty)},
            {"MsiViewClose", reinterpret_cast<void*>(&ViewClose)},
            {"MsiViewExecute", reinterpret_cast<void*>(&ViewExecute)},
            {"MsiViewFetch", reinterpret_cast<void*>(&ViewFetch)},
            {"MsiViewModify", reinterpret_cast<void*>(&ViewModify)},
            {"MsiOpenDatabaseW", reinterpret_cast<void*>(&OpenDatabase)},
            {"MsiDatabaseCommit", reinterpret_cast<void*>(&DatabaseCommit)},
            {"MsiDatabaseImportW", reinterpret_cast<void*>(&DatabaseImport)},
        };
        Me().lookedUp_.push_back(name);
        const auto found = functions.find(name);
        return found == functions.end() || Me().missing.count(name) != 0 ? nullptr : found->second;
    }

    // ---- The system's functions through which the module is found.

    static HMODULE WINAPI ModuleHandle(LPCWSTR name)
    {
        if (name && IsInstallerFile(name)) return Me().isLoaded ? Me().Module() : nullptr;
        return Me().moduleHandle_.Original<decltype(&::GetModuleHandleW)>()(name);
    }

    static FARPROC WINAPI ProcAddress(HMODULE module, LPCSTR name)
    {
        if (module == Me().Module()) return reinterpret_cast<FARPROC>(ByName(name));
        return Me().procAddress_.Original<decltype(&::GetProcAddress)>()(module, name);
    }

    static HMODULE WINAPI Load(LPCWSTR path)
    {
        if (!IsInstallerFile(path)) return Me().load_.Original<decltype(&::LoadLibraryW)>()(path);
        Me().loadedPaths_.push_back(path);
        if (!Me().canBeLoaded) return nullptr;
        ++Me().loads_;
        return Me().Module();
    }

    static BOOL WINAPI Unload(HMODULE module)
    {
        if (module != Me().Module()) return Me().unload_.Original<decltype(&::FreeLibrary)>()(module);
        --Me().loads_;
        return TRUE;
    }
};

StandInInstaller::StandInInstaller(HMODULE importer)
    : moduleHandle_(importer, "GetModuleHandleW", &Functions::ModuleHandle),
      procAddress_(importer, "GetProcAddress", &Functions::ProcAddress),
      load_(importer, "LoadLibraryW", &Functions::Load), unload_(importer, "FreeLibrary", &Functions::Unload)
{
    current_ = this;
}

StandInInstaller::~StandInInstaller() = default;

HMODULE StandInInstaller::Module() const
{
    return reinterpret_cast<HMODULE>(&g_module);
}

void StandInInstaller::Answer(const std::wstring& call, UINT result, unsigned nth)
{
    answers_.push_back({call, result, nth});
}

std::vector<std::wstring> StandInInstaller::CallsOf(const std::wstring& function) const
{
    std::vector<std::wstring> calls;
    for (const std::wstring& call : calls_)
        if (call.substr(0, call.find(L' ')) == function) calls.push_back(call);
    return calls;
}

size_t StandInInstaller::CountCalls(const std::wstring& call) const
{
    return static_cast<size_t>(std::count(calls_.begin(), calls_.end(), call));
}

std::vector<std::wstring> StandInInstaller::Statements() const
{
    std::vector<std::wstring> statements = CallsOf(L"MsiDatabaseOpenViewW");
    for (std::wstring& statement : statements) statement.erase(0, statement.find(L' ') + 1);
    return statements;
}

MSIHANDLE StandInInstaller::MakeDatabase()
{
    return Add({Kind::Database});
}

MSIHANDLE StandInInstaller::MakeRecord(const InstallerRow& row)
{
    return Add({Kind::Record, {}, row});
}

MSIHANDLE StandInInstaller::Add(Object object)
{
    handles_.emplace(nextHandle_, std::move(object));
    return nextHandle_++;
}

StandInInstaller::Object* StandInInstaller::Find(MSIHANDLE handle, Kind kind)
{
    const auto found = handles_.find(handle);
    if (found != handles_.end() && found->second.kind == kind) return &found->second;
    ADD_FAILURE() << "not an open handle of the wanted kind: " << handle;
    return nullptr;
}

bool StandInInstaller::IsScripted(const std::wstring& call, UINT& result)
{
    calls_.push_back(call);
    if (onCall) onCall(call);
    bool isScripted = false;
    for (ScriptedAnswer& answer : answers_)
    {
        if (answer.call != call || (++answer.seen != answer.nth && answer.nth != 0)) continue;
        result = answer.result;
        isScripted = true;
    }
    return isScripted;
}

UINT StandInInstaller::CopyText(const std::wstring& text, wchar_t* buffer, DWORD* size)
{
    const DWORD capacity = *size;
    *size = static_cast<DWORD>(text.size());
    if (capacity <= text.size()) return ERROR_MORE_DATA;
    std::wmemcpy(buffer, text.c_str(), text.size() + 1);
    return ERROR_SUCCESS;
}

}  // namespace arvmui_test
