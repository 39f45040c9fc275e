#include "installer/session_tables.h"

#include "foundation/growable_text.h"
#include "foundation/heap.h"
#include "foundation/text.h"
#include "installer/changed_properties.h"
#include "installer/table_suffix.h"

namespace arvmui
{
namespace
{

constexpr wchar_t kPropertyTable[] = L"Property";
constexpr wchar_t kBinaryTable[] = L"Binary";

struct PropertyMerge
{
    MSIHANDLE session;
    const ChangedPropertySet* changed;
};

// A localized property counts unless somebody has changed the property before.
UINT SetLocalizedProperty(MSIHANDLE, MSIHANDLE, MSIHANDLE record, void* context)
{
    const PropertyMerge& merge = *static_cast<const PropertyMerge*>(context);
    HeapBlock<wchar_t> name;
    UINT result = GetRecordString(record, 1, name.Slot());
    if (result != ERROR_SUCCESS || merge.changed->Contains(name.Get())) return result;
    HeapBlock<wchar_t> value;
    result = GetRecordString(record, 2, value.Slot());
    if (result != ERROR_SUCCESS) return result;
    return Installer().MsiSetPropertyW(merge.session, name.Get(), value.Get());
}

UINT MergeProperties(MSIHANDLE session, MSIHANDLE database, const wchar_t* localizedQuery) noexcept
{
    ChangedPropertySet changed;
    const UINT result = changed.Read(session, database);
    if (result != ERROR_SUCCESS) return result;
    PropertyMerge merge = {session, &changed};
    return RunQuery(database, localizedQuery, 0, SetLocalizedProperty, &merge);
}

struct BinaryReplacement
{
    const wchar_t* name;
    MSIHANDLE localizedRecord;
};

// Whether a row of the query is really the one asked for. Once a row has been deleted, not every
// installer keeps to the condition when it fetches the next one.
bool IsNamed(MSIHANDLE record, const wchar_t* name) noexcept
{
    HeapBlock<wchar_t> found;
    return GetRecordString(record, 1, found.Slot()) != ERROR_SUCCESS || CompareText(found.Get(), name) == 0;
}

UINT ReplaceBinaryRow(MSIHANDLE, MSIHANDLE view, MSIHANDLE record, void* context)
{
    const BinaryReplacement& replacement = *static_cast<const BinaryReplacement*>(context);
    if (record == 0) return Installer().MsiViewModify(view, MSIMODIFY_INSERT_TEMPORARY, replacement.localizedRecord);
    if (!IsNamed(record, replacement.name)) return ERROR_SUCCESS;
    return Installer().MsiViewModify(view, MSIMODIFY_DELETE, record);
}

UINT MergeBinaryRow(MSIHANDLE database, MSIHANDLE, MSIHANDLE record, void* context)
{
    const wchar_t* const baseQuery = static_cast<const wchar_t*>(context);
    HeapBlock<wchar_t> name;
    const UINT result = GetRecordString(record, 1, name.Slot());
    if (result != ERROR_SUCCESS) return result;
    HeapBlock<wchar_t> sql;
    if (AppendFormat(sql.Slot(), -1, L"%s WHERE `Name`='%s'", baseQuery, name.Get()) < 1) return ERROR_FUNCTION_FAILED;
    BinaryReplacement replacement = {name.Get(), record};
    return RunQuery(database, sql.Get(), QUERY_NOTIFY_END, ReplaceBinaryRow, &replacement);
}

// Inserts a row into the view that the context names.
UINT InsertRow(MSIHANDLE, MSIHANDLE, MSIHANDLE record, void* context)
{
    return Installer().MsiViewModify(*static_cast<const MSIHANDLE*>(context), MSIMODIFY_INSERT_TEMPORARY, record);
}

// As InsertRow, but a row whose key is there already stays out.
UINT InsertMissingRow(MSIHANDLE database, MSIHANDLE view, MSIHANDLE record, void* context)
{
    const UINT result = InsertRow(database, view, record, context);
    return result == ERROR_FUNCTION_FAILED ? ERROR_SUCCESS : result;
}

// Called with the view of the localized table: completes it by the base rows that it lacks.
UINT CompleteLocalizedTable(MSIHANDLE database, MSIHANDLE view, MSIHANDLE, void* context)
{
    return RunQuery(database, static_cast<const wchar_t*>(context), 0, InsertMissingRow, &view);
}

// Empties the base table and fills it from the completed localized one.
UINT ReplaceBaseRow(MSIHANDLE database, MSIHANDLE view, MSIHANDLE record, void* context)
{
    if (record != 0) return Installer().MsiViewModify(view, MSIMODIFY_DELETE, record);
    return RunQuery(database, static_cast<const wchar_t*>(context), 0, InsertRow, &view);
}

UINT MergeRows(MSIHANDLE database, wchar_t* baseQuery, wchar_t* localizedQuery) noexcept
{
    const UINT result = RunQuery(database, localizedQuery, QUERY_EXECUTE_ONLY, CompleteLocalizedTable, baseQuery);
    if (result != ERROR_SUCCESS) return result;
    return RunQuery(database, baseQuery, QUERY_NOTIFY_END, ReplaceBaseRow, localizedQuery);
}

struct TableWalk
{
    MSIHANDLE session;
    const LocaleTableSuffix& suffix;
};

UINT MergeTable(MSIHANDLE database, MSIHANDLE, MSIHANDLE record, void* context)
{
    const TableWalk& walk = *static_cast<const TableWalk*>(context);
    HeapBlock<wchar_t> name;
    const UINT result = GetRecordString(record, 1, name.Slot());
    if (result != ERROR_SUCCESS) return result;
    if (!HasLocaleSuffix(name.Get(), walk.suffix.text, walk.suffix.length)) return ERROR_SUCCESS;
    CutLocaleSuffix(name.Get(), walk.suffix.length);
    if (CompareText(name.Get(), kBinaryTable) == 0) return ERROR_SUCCESS;  // merged before all others
    return MergeLocalizedTable(walk.session, database, name.Get(), walk.suffix.text);
}

}  // namespace

UINT MergeLocalizedTable(
    MSIHANDLE session, MSIHANDLE database, const wchar_t* baseTable, const wchar_t* suffix) noexcept
{
    HeapBlock<wchar_t> baseQuery;
    HeapBlock<wchar_t> localizedQuery;
    if (AppendFormat(baseQuery.Slot(), -1, L"SELECT * FROM `%s`", baseTable) < 1
        || AppendFormat(localizedQuery.Slot(), -1, L"SELECT * FROM `%s_%s`", baseTable, suffix) < 1)
        return ERROR_FUNCTION_FAILED;

    if (CompareText(baseTable, kPropertyTable) == 0) return MergeProperties(session, database, localizedQuery.Get());
    if (CompareText(baseTable, kBinaryTable) == 0)
        return RunQuery(database, localizedQuery.Get(), 0, MergeBinaryRow, baseQuery.Get());
    return MergeRows(database, baseQuery.Get(), localizedQuery.Get());
}

UINT TranslateSessionTables(MSIHANDLE session, MSIHANDLE database, const LocaleEntry& entry) noexcept
{
    const LocaleTableSuffix suffix(entry);
    // Ignored: most packages have no localized binary data.
    MergeLocalizedTable(session, database, kBinaryTable, suffix.text);
    TableWalk walk = {session, suffix};
    return RunQuery(database, L"SELECT `Name` FROM `_Tables`", 0, MergeTable, &walk);
}

}  // namespace arvmui
