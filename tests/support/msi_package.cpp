#include "support/msi_package.h"

#include "support/msi_database.h"
#include "support/temporary_folder.h"

#include <msiquery.h>
#include <objbase.h>

#include <algorithm>
#include <fstream>
#include <iterator>
#include <stdexcept>

namespace arvmui_test
{
namespace
{

void Require(UINT result, const std::string& what)
{
    if (result != ERROR_SUCCESS) throw std::runtime_error(what + " failed with " + std::to_string(result));
}

std::string Ascii(std::wstring_view text)
{
    std::string result;
    for (const wchar_t character : text) result += static_cast<char>(character);
    return result;
}

// Streams reach a record through a file.
void SetStream(MSIHANDLE record, UINT field, const std::string& bytes, const TemporaryFolder& folder)
{
    const std::filesystem::path file = folder.Path() / (L"stream" + std::to_wstring(field));
    std::ofstream(file, std::ios::binary | std::ios::trunc) << bytes;
    Require(::MsiRecordSetStreamW(record, field, file.c_str()), "MsiRecordSetStreamW");
}

void SetField(MSIHANDLE record, UINT field, const MsiField& value, const TemporaryFolder& folder)
{
    if (const auto* const text = std::get_if<std::wstring>(&value))
        Require(::MsiRecordSetStringW(record, field, text->c_str()), "MsiRecordSetStringW");
    else if (const auto* const number = std::get_if<int>(&value))
        Require(::MsiRecordSetInteger(record, field, *number), "MsiRecordSetInteger");
    else if (const auto* const stream = std::get_if<MsiStream>(&value))
        SetStream(record, field, stream->bytes, folder);
}

void Execute(MSIHANDLE database, const std::wstring& statement)
{
    MsiHandle view;
    Require(::MsiDatabaseOpenViewW(database, statement.c_str(), view.Slot()), Ascii(statement));
    Require(::MsiViewExecute(view.Get(), 0), Ascii(statement));
}

void WriteTable(MSIHANDLE database, const MsiTable& table)
{
    const TemporaryFolder folder;
    Execute(database, L"CREATE TABLE `" + table.name + L"` (" + table.columns + L")");
    MsiHandle view;
    const std::wstring query = L"SELECT * FROM `" + table.name + L"`";
    Require(::MsiDatabaseOpenViewW(database, query.c_str(), view.Slot()), Ascii(query));
    Require(::MsiViewExecute(view.Get(), 0), Ascii(query));
    for (const MsiRow& row : table.rows)
    {
        const MsiHandle record(::MsiCreateRecord(static_cast<UINT>(row.size())));
        for (UINT field = 0; field < row.size(); ++field) SetField(record.Get(), field + 1, row[field], folder);
        Require(::MsiViewModify(view.Get(), MSIMODIFY_INSERT, record.Get()), "a row of " + Ascii(table.name));
    }
}

void ForceCodePage(MSIHANDLE database, unsigned codePage)
{
    const TemporaryFolder folder;
    std::ofstream(folder.Path() / L"codepage.idt", std::ios::binary) << "\r\n\r\n"
                                                                     << codePage << "\t_ForceCodepage\r\n";
    Require(::MsiDatabaseImportW(database, folder.Path().c_str(), L"codepage.idt"), "MsiDatabaseImportW");
}

void WriteSummary(MSIHANDLE database)
{
    constexpr UINT kTemplate = 7;
    constexpr UINT kPackageCode = 9;
    constexpr UINT kPageCount = 14;
    constexpr UINT kWordCount = 15;
    constexpr INT kInstallerVersion = 200;
    constexpr INT kCompressedSources = 2;
    MsiHandle summary;
    Require(::MsiGetSummaryInformationW(database, nullptr, 4, summary.Slot()), "MsiGetSummaryInformationW");
    const auto setText = [&](UINT property, const wchar_t* text)
    {
        Require(::MsiSummaryInfoSetPropertyW(summary.Get(), property, VT_LPSTR, 0, nullptr, text),
            "MsiSummaryInfoSetPropertyW");
    };
    const auto setNumber = [&](UINT property, INT number)
    {
        Require(::MsiSummaryInfoSetPropertyW(summary.Get(), property, VT_I4, number, nullptr, nullptr),
            "MsiSummaryInfoSetPropertyW");
    };
    setText(kTemplate, L"x64;1033");
    setText(kPackageCode, NewMsiCode().c_str());
    setNumber(kPageCount, kInstallerVersion);
    setNumber(kWordCount, kCompressedSources);
    Require(::MsiSummaryInfoPersist(summary.Get()), "MsiSummaryInfoPersist");
}

std::wstring TableSuffix(std::wstring_view suffix)
{
    return L"_" + std::wstring(suffix);
}

}  // namespace

MsiField FileStream(const std::filesystem::path& file)
{
    std::ifstream stream(file, std::ios::binary);
    if (!stream) throw std::runtime_error("cannot read a file for a package");
    return MsiStream{{std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()}};
}

MsiTable& MsiPackage::Find(std::wstring_view name)
{
    const auto found =
        std::find_if(tables_.begin(), tables_.end(), [name](const MsiTable& table) { return table.name == name; });
    if (found == tables_.end()) throw std::runtime_error("no table " + Ascii(name));
    return *found;
}

MsiPackage& MsiPackage::Add(const MsiTable& table)
{
    const bool exists = std::any_of(
        tables_.begin(), tables_.end(), [&table](const MsiTable& other) { return other.name == table.name; });
    if (exists) return Add(table.name, table.rows);
    tables_.push_back(table);
    return *this;
}

MsiPackage& MsiPackage::Add(std::wstring_view table, const std::vector<MsiRow>& rows)
{
    std::vector<MsiRow>& all = Find(table).rows;
    all.insert(all.end(), rows.begin(), rows.end());
    return *this;
}

MsiPackage& MsiPackage::AddLocalized(std::wstring_view base, std::wstring_view suffix, const std::vector<MsiRow>& rows)
{
    return Add(MsiTable{std::wstring(base) + TableSuffix(suffix), Find(base).columns, rows});
}

MsiPackage& MsiPackage::Remove(std::wstring_view table)
{
    tables_.erase(tables_.begin() + (&Find(table) - tables_.data()));
    return *this;
}

void MsiPackage::Write(const std::filesystem::path& file, unsigned codePage) const
{
    MsiHandle database;
    Require(::MsiOpenDatabaseW(file.c_str(), MSIDBOPEN_CREATE, database.Slot()), "MsiOpenDatabaseW");
    if (codePage != 0) ForceCodePage(database.Get(), codePage);
    for (const MsiTable& table : tables_) WriteTable(database.Get(), table);
    WriteSummary(database.Get());
    Require(::MsiDatabaseCommit(database.Get()), "MsiDatabaseCommit");
}

std::wstring NewMsiCode()
{
    GUID id = {};
    if (::CoCreateGuid(&id) != S_OK) throw std::runtime_error("CoCreateGuid failed");
    wchar_t text[39] = {};
    ::StringFromGUID2(id, text, static_cast<int>(std::size(text)));
    return text;
}

MsiPackage InstallablePackage(
    const std::wstring& productName, const std::wstring& productCode, const std::wstring& upgradeCode)
{
    const std::vector<MsiRow> costing = {
        {L"CostInitialize", {}, 800}, {L"FileCost", {}, 900}, {L"CostFinalize", {}, 1000}};
    MsiPackage package;
    package
        .Add({L"Property", kPropertyColumns,
            {{L"ProductCode", productCode}, {L"ProductName", productName}, {L"ProductVersion", L"1.0.0"},
                {L"ProductLanguage", L"1033"}, {L"Manufacturer", L"Arvmui Tests"}, {L"UpgradeCode", upgradeCode},
                {L"ALLUSERS", L"1"}}})
        .Add({L"Directory",
            L"`Directory` CHAR(72) NOT NULL, `Directory_Parent` CHAR(72), `DefaultDir` CHAR(255) NOT NULL LOCALIZABLE "
            L"PRIMARY KEY `Directory`",
            {{L"TARGETDIR", {}, L"SourceDir"}, {L"ProgramFiles64Folder", L"TARGETDIR", L"."},
                {L"INSTALLDIR", L"ProgramFiles64Folder", productName}}})
        .Add({L"Component",
            L"`Component` CHAR(72) NOT NULL, `ComponentId` CHAR(38), `Directory_` CHAR(72) NOT NULL, "
            L"`Attributes` SHORT NOT NULL, `Condition` CHAR(255), `KeyPath` CHAR(72) PRIMARY KEY `Component`",
            {{L"Main", NewMsiCode(), L"INSTALLDIR", 256, {}, {}}}})
        .Add({L"Feature",
            L"`Feature` CHAR(38) NOT NULL, `Feature_Parent` CHAR(38), `Title` CHAR(64) LOCALIZABLE, "
            L"`Description` CHAR(255) LOCALIZABLE, `Display` SHORT, `Level` SHORT NOT NULL, `Directory_` CHAR(72), "
            L"`Attributes` SHORT NOT NULL PRIMARY KEY `Feature`",
            {{L"Complete", {}, L"All", {}, 1, 1, {}, 0}}})
        .Add({L"FeatureComponents",
            L"`Feature_` CHAR(38) NOT NULL, `Component_` CHAR(72) NOT NULL PRIMARY KEY `Feature_`, `Component_`",
            {{L"Complete", L"Main"}}})
        .Add({L"InstallExecuteSequence", kSequenceColumns,
            {{L"InstallValidate", {}, 1400}, {L"InstallInitialize", {}, 1500}, {L"ProcessComponents", {}, 1600},
                {L"UnpublishFeatures", {}, 1800}, {L"RegisterProduct", {}, 6100}, {L"PublishFeatures", {}, 6300},
                {L"PublishProduct", {}, 6400}, {L"InstallFinalize", {}, 6600}}})
        .Add(L"InstallExecuteSequence", costing)
        .Add({L"InstallUISequence", kSequenceColumns, {{L"ExecuteAction", {}, 1300}}})
        .Add(L"InstallUISequence", costing)
        .Add({L"AdminExecuteSequence", kSequenceColumns, costing})
        .Add({L"AdminUISequence", kSequenceColumns, costing});
    return package;
}

}  // namespace arvmui_test
