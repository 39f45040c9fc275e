#include "installer/package_translation.h"

#include "foundation/growable_text.h"
#include "foundation/heap.h"
#include "foundation/paths.h"
#include "installer/action_names.h"
#include "installer/name_list.h"
#include "installer/package_locales.h"
#include "installer/table_suffix.h"

namespace arvmui
{
namespace
{

struct Package
{
    MSIHANDLE database;
    const LocaleEntry* entries;
    DWORD count;
    const LocaleEntry* selected;
};

// Executes a statement whose format takes up to two names; 1627 when it cannot be formatted.
UINT ExecuteFormatted(
    MSIHANDLE database, const wchar_t* format, const wchar_t* first, const wchar_t* second = L"") noexcept
{
    HeapBlock<wchar_t> sql;
    if (AppendFormat(sql.Slot(), -1, format, first, second) < 1) return ERROR_FUNCTION_FAILED;
    return ExecuteStatement(database, sql.Get());
}

UINT AssignRow(MSIHANDLE, MSIHANDLE, MSIHANDLE record, void* context)
{
    return Installer().MsiViewModify(*static_cast<const MSIHANDLE*>(context), MSIMODIFY_ASSIGN, record);
}

// Called with the view of the base table: writes the rows of a query into it.
UINT AssignRows(MSIHANDLE database, MSIHANDLE view, MSIHANDLE, void* context)
{
    return RunQuery(database, static_cast<const wchar_t*>(context), 0, AssignRow, &view);
}

UINT FoldTable(MSIHANDLE database, const wchar_t* base, const wchar_t* suffix) noexcept
{
    HeapBlock<wchar_t> baseQuery;
    HeapBlock<wchar_t> localizedQuery;
    if (AppendFormat(baseQuery.Slot(), -1, L"SELECT * FROM `%s`", base) < 1) return ERROR_FUNCTION_FAILED;
    // A translation never changes which product this is.
    const int length = CompareText(base, L"Property") == 0
                           ? AppendFormat(localizedQuery.Slot(), -1,
                               L"SELECT * FROM `Property_%s` WHERE `Property`<>'ProductCode'", suffix)
                           : AppendFormat(localizedQuery.Slot(), -1, L"SELECT * FROM `%s_%s`", base, suffix);
    if (length < 1) return ERROR_FUNCTION_FAILED;
    return RunQuery(database, baseQuery.Get(), QUERY_EXECUTE_ONLY, AssignRows, localizedQuery.Get());
}

// `base` names the table without its suffix.
UINT TreatSelectedTable(const Package& package, const wchar_t* base, const wchar_t* suffix) noexcept
{
    // The tables of the package itself are English.
    if (PRIMARYLANGID(package.selected->LangID) != LANG_ENGLISH)
    {
        const UINT result = FoldTable(package.database, base, suffix);
        if (result != ERROR_SUCCESS) return result;
    }
    // Ignored: a table that could not be dropped shows in the next statement's result only.
    ExecuteFormatted(package.database, L"DROP TABLE `%s_%s`", base, suffix);
    return ExecuteFormatted(package.database, L"DELETE FROM `_Validation` WHERE `Table`='%s_%s'", base, suffix);
}

bool BelongsToOtherLocale(const Package& package, const wchar_t* name) noexcept
{
    for (DWORD i = 0; i < package.count; ++i)
    {
        if (&package.entries[i] == package.selected) continue;
        const LocaleTableSuffix suffix(package.entries[i]);
        if (HasLocaleSuffix(name, suffix.text, suffix.length)) return true;
    }
    return false;
}

UINT TreatTable(const Package& package, const wchar_t* name) noexcept
{
    const LocaleTableSuffix suffix(*package.selected);
    if (HasLocaleSuffix(name, suffix.text, suffix.length))
    {
        HeapBlock<wchar_t> base;
        if (AppendFormat(base.Slot(), -1, L"%s", name) < 1) return ERROR_FUNCTION_FAILED;
        CutLocaleSuffix(base.Get(), suffix.length);
        return TreatSelectedTable(package, base.Get(), suffix.text);
    }
    if (!BelongsToOtherLocale(package, name)) return ERROR_SUCCESS;
    // Ignored: as above.
    ExecuteFormatted(package.database, L"DROP TABLE `%s`", name);
    return ExecuteFormatted(package.database, L"DELETE FROM `_Validation` WHERE `Table`='%s'", name);
}

UINT CollectName(MSIHANDLE, MSIHANDLE, MSIHANDLE record, void* context)
{
    HeapBlock<wchar_t> name;
    const UINT result = GetRecordString(record, 1, name.Slot());
    if (result != ERROR_SUCCESS) return result;
    return static_cast<NameList*>(context)->Append(name.Get()) ? ERROR_SUCCESS : ERROR_FUNCTION_FAILED;
}

void TreatTables(const Package& package) noexcept
{
    // All names are taken before the first table goes: the catalogue of tables changes as they go.
    NameList names;
    // Ignored: the tables that were named are treated, and the package is cleaned up in any case.
    RunQuery(package.database, L"SELECT `Name` FROM `_Tables`", 0, CollectName, &names);
    for (const wchar_t* name = names.First(); name; name = names.Next(name))
        if (TreatTable(package, name) != ERROR_SUCCESS) return;
}

void DeleteAction(MSIHANDLE database, const wchar_t* table, const wchar_t* action) noexcept
{
    // Ignored: a package may lack the table or the action.
    ExecuteFormatted(database, L"DELETE FROM `%s` WHERE `Action`='%s'", table, action);
}

// Removes what chose the language. Ignored in all of it: a package may lack each part.
void RemoveLanguageSelection(MSIHANDLE database, bool withTransforms) noexcept
{
    constexpr wchar_t kExecuteSequence[] = L"InstallExecuteSequence";
    DeleteAction(database, L"AdminExecuteSequence", kSetLocaleAction);
    DeleteAction(database, L"AdminUISequence", kSetLocaleAction);
    DeleteAction(database, kExecuteSequence, kSetLocaleAction);
    if (!withTransforms)
    {
        DeleteAction(database, kExecuteSequence, kStartFontResetterAction);
        DeleteAction(database, kExecuteSequence, kStopFontResetterAction);
    }
    DeleteAction(database, kExecuteSequence, kTranslateLocalPackageAction);
    DeleteAction(database, L"InstallUISequence", kSetLocaleAction);
    ExecuteStatement(database, L"DELETE FROM `_Validation` WHERE `Table`='ARVUILocale'");
    ExecuteStatement(database, L"DELETE FROM `_Validation` WHERE `Table`='ARVUIText'");
    ExecuteStatement(database, L"DROP TABLE `ARVUILocale`");
    ExecuteStatement(database, L"DROP TABLE `ARVUIText`");
    ExecuteStatement(database, L"DELETE FROM `ArvDialogMapping` WHERE `Dialog_`='Language_Selection_Dialog'",
        QUERY_TOLERATE_BAD_SYNTAX);
}

// Writes the whole text; FALSE when only part of it got there.
bool WriteTextFile(const wchar_t* path, const char* text, DWORD length) noexcept
{
    const UniqueFile file(
        ::CreateFileW(path, GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr));
    DWORD written = 0;
    return file && ::WriteFile(file.Get(), text, length, &written, nullptr) && written == length;
}

}  // namespace

UINT TranslateLocalPackageTables(
    MSIHANDLE database, const wchar_t* locale, bool withTransforms, LANGID* language) noexcept
{
    HeapBlock<LocaleEntry> entries;
    DWORD count = 0;
    const UINT result = ReadPackageLocales(database, false, entries.Slot(), &count);
    if (result != ERROR_SUCCESS) return result;
    const LocaleEntry* const selected = FindPackageLocale(entries.Get(), count, locale);
    if (!selected) return ERROR_FUNCTION_FAILED;
    *language = selected->LangID;

    TreatTables({database, entries.Get(), count, selected});
    RemoveLanguageSelection(database, withTransforms);
    // Ignored: the package may hold the property already.
    ExecuteFormatted(database, L"INSERT INTO `Property` (`Property`,`Value`) VALUES ('UILOCALE','%s')", locale);
    return ERROR_SUCCESS;
}

UINT ImportCodepageIdt(MSIHANDLE database, DWORD codePage) noexcept
{
    wchar_t folder[kMaxPathChars];
    const DWORD folderLength = ::GetTempPathW(kMaxPathChars, folder);
    if (folderLength == 0 || folderLength >= kMaxPathChars) return ERROR_FUNCTION_FAILED;
    wchar_t path[kMaxPathChars];
    if (FormatFixed(path, kMaxPathChars, L"%sARVMUI%lu.IDT", folder, ::GetCurrentProcessId()) < 1)
        return ERROR_FUNCTION_FAILED;
    char text[256];
    const int length = FormatFixed(text, ARRAYSIZE(text), "\r\n\r\n%u\t_ForceCodepage\r\n", codePage);
    if (length < 1) return ERROR_FUNCTION_FAILED;

    UINT result = ERROR_FUNCTION_FAILED;
    if (WriteTextFile(path, text, static_cast<DWORD>(length)))
        result = Installer().MsiDatabaseImportW(database, folder, path + folderLength);
    // Ignored: a file that cannot be deleted is one of many in the temporary folder.
    ::DeleteFileW(path);
    return result;
}

}  // namespace arvmui
