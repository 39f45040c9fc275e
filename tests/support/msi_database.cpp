#include "support/msi_database.h"

#include <algorithm>
#include <stdexcept>

namespace arvmui_test
{
namespace
{

void Require(UINT result, const char* what)
{
    if (result != ERROR_SUCCESS) throw std::runtime_error(std::string(what) + " failed with " + std::to_string(result));
}

std::wstring RecordText(MSIHANDLE record, UINT field)
{
    wchar_t none[1] = {};
    DWORD length = 0;
    const UINT result = ::MsiRecordGetStringW(record, field, none, &length);
    if (result != ERROR_MORE_DATA) return {};
    std::wstring text(++length, L'\0');
    Require(::MsiRecordGetStringW(record, field, text.data(), &length), "MsiRecordGetStringW");
    text.resize(length);
    return text;
}

std::wstring StreamText(MSIHANDLE record, UINT field)
{
    std::wstring text;
    for (;;)
    {
        char part[4096];
        DWORD size = sizeof(part);
        Require(::MsiRecordReadStream(record, field, part, &size), "MsiRecordReadStream");
        if (size == 0) return text;
        for (DWORD i = 0; i < size; ++i) text += static_cast<unsigned char>(part[i]);
    }
}

bool IsStream(MSIHANDLE types, UINT field)
{
    const std::wstring type = RecordText(types, field);
    return !type.empty() && (type[0] == L'v' || type[0] == L'V');
}

}  // namespace

void MsiHandle::Close()
{
    if (handle_ != 0) ::MsiCloseHandle(std::exchange(handle_, 0));
}

MsiHandle OpenMsiDatabase(const std::filesystem::path& file)
{
    MsiHandle database;
    Require(::MsiOpenDatabaseW(file.c_str(), MSIDBOPEN_READONLY, database.Slot()), "MsiOpenDatabaseW");
    return database;
}

MsiHandle OpenMsiSession(const std::filesystem::path& file)
{
    ::MsiSetInternalUI(INSTALLUILEVEL_NONE, nullptr);
    MsiHandle session;
    Require(::MsiOpenPackageW(file.c_str(), session.Slot()), "MsiOpenPackageW");
    return session;
}

MsiHandle ActiveDatabase(MSIHANDLE session)
{
    return MsiHandle(::MsiGetActiveDatabase(session));
}

std::wstring SessionProperty(MSIHANDLE session, const std::wstring& name)
{
    wchar_t none[1] = {};
    DWORD length = 0;
    if (::MsiGetPropertyW(session, name.c_str(), none, &length) != ERROR_MORE_DATA) return {};
    std::wstring value(++length, L'\0');
    Require(::MsiGetPropertyW(session, name.c_str(), value.data(), &length), "MsiGetPropertyW");
    value.resize(length);
    return value;
}

MsiRows ReadMsiRows(MSIHANDLE database, const std::wstring& query)
{
    MsiHandle view;
    Require(::MsiDatabaseOpenViewW(database, query.c_str(), view.Slot()), "MsiDatabaseOpenViewW");
    Require(::MsiViewExecute(view.Get(), 0), "MsiViewExecute");
    MsiHandle types;
    Require(::MsiViewGetColumnInfo(view.Get(), MSICOLINFO_TYPES, types.Slot()), "MsiViewGetColumnInfo");

    MsiRows rows;
    for (;;)
    {
        MsiHandle record;
        const UINT result = ::MsiViewFetch(view.Get(), record.Slot());
        if (result == ERROR_NO_MORE_ITEMS) return rows;
        Require(result, "MsiViewFetch");
        std::vector<std::wstring> row;
        for (UINT field = 1; field <= ::MsiRecordGetFieldCount(record.Get()); ++field)
            row.push_back(
                IsStream(types.Get(), field) ? StreamText(record.Get(), field) : RecordText(record.Get(), field));
        rows.push_back(row);
    }
}

MsiRows SortedMsiRows(MSIHANDLE database, const std::wstring& query)
{
    MsiRows rows = ReadMsiRows(database, query);
    std::sort(rows.begin(), rows.end());
    return rows;
}

bool HasMsiTable(MSIHANDLE database, const std::wstring& name)
{
    const MsiRows tables = ReadMsiRows(database, L"SELECT `Name` FROM `_Tables`");
    return std::any_of(tables.begin(), tables.end(), [&name](const auto& row) { return row[0] == name; });
}

}  // namespace arvmui_test
